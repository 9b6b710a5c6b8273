#!/usr/bin/env python3
# Snapshots put into a recorded game, at three ticks worth a look (the puck in play, Arses up):
#
#   replay_check.py TRACE SCENARIO OUT DIR   writes OUT, the SCENARIO with `snapshot DIR/replay-T.png`
#                                            after tick T, and prints the three T
import json
import sys

trace, scenario, out, where = sys.argv[1:]
good = [l["t"] for l in map(json.loads, open(trace)) if l["puck"][4] and l["inplay"] and not l["dead"]
        and sum(a[2] for a in l["rowa"] + l["rowb"]) >= 4]
if len(good) < 3:
    sys.exit("fewer than three ticks with the puck in play and Arses up")
at = sorted({good[len(good) // 6], good[len(good) // 2], good[-1 - len(good) // 6]})
done, text = 0, []
for line in open(scenario).read().splitlines():
    word = line.split()
    if word[:1] == ["tick"]:
        n = int(word[1])
        for t in [t for t in at if done < t <= done + n]:  # the tick line split at T
            text += ["tick %d" % (t - done), "snapshot %s/replay-%d.png" % (where, t)]
            n, done = n - (t - done), t
        done += n
        line = "tick %d" % n if n else None
    if line is not None:
        text.append(line)
open(out, "w").write("\n".join(text) + "\n")
print(*at)
