#!/usr/bin/env python3
# Snapshots put into a recorded game, at three ticks worth a look (the puck in play, Arses up,
# no question on the screen: a snapshot is what the screen shows):
#
#   replay_check.py TRACE SCENARIO OUT DIR   writes OUT, the SCENARIO a tick a line with
#                                            `snapshot DIR/replay-T.png` after tick T, and prints the three T
import json
import sys

trace, scenario, out, where = sys.argv[1:]
lines, ticks, asked, under = [], 0, False, set()
for line in open(scenario).read().splitlines():
    n = int(line.split()[1]) if line.startswith("tick ") else 0
    lines += ["tick 1"] * n if n else [line]
    under |= set(range(ticks + 1, ticks + n + 1)) if asked else set()
    ticks += n
    asked = line == "newgame ask" or asked and not line.startswith("answer ")
good = [l["t"] for l in map(json.loads, open(trace)) if l["puck"][4] and l["inplay"] and not l["dead"]
        and l["t"] not in under and sum(a[2] for a in l["rowa"] + l["rowb"]) >= 4]
if len(good) < 3:
    sys.exit("fewer than three ticks with the puck in play and Arses up")
at = sorted({good[len(good) // 6], good[len(good) // 2], good[-1 - len(good) // 6]})
done, text = 0, []
for line in lines:
    done += line == "tick 1"
    text += [line] + ["snapshot %s/replay-%d.png" % (where, done)] * (line == "tick 1" and done in at)
open(out, "w").write("\n".join(text) + "\n")
print(*at)
