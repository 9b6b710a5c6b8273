#!/usr/bin/env python3
"""Snapshots put into a replayed game.

  replay_check.py ticks TRACE                      three ticks worth a look (puck in play, Arses up)
  replay_check.py insert SCENARIO OUT DIR T...     the scenario with `snapshot DIR/replay-T.png` after tick T
"""
import json
import sys


def trace(path):
    return [json.loads(l) for l in open(path)]


def ticks(path):
    lines = trace(path)
    good = [l["t"] for l in lines if l["puck"][4] and l["inplay"] and not l["dead"]
            and sum(a[2] for a in l["rowa"] + l["rowb"]) >= 4]
    if len(good) < 3:
        sys.exit("fewer than three ticks with the puck in play and Arses up")
    print(good[len(good) // 6], good[len(good) // 2], good[-1 - len(good) // 6])


def insert(path, out, where, at):
    at, done, text = sorted(int(t) for t in at), 0, []
    for line in open(path).read().splitlines():
        word = line.split()
        if word[:1] == ["tick"]:
            n = int(word[1])
            while at and done < at[0] <= done + n:
                text.append("tick %d" % (at[0] - done))
                n -= at[0] - done
                done = at[0]
                text.append("snapshot %s/replay-%d.png" % (where, at.pop(0)))
            done += n
            line = "tick %d" % n if n else None
        if line is not None:
            text.append(line)
    open(out, "w").write("\n".join(text) + "\n")


if __name__ == "__main__":
    cmd, args = sys.argv[1], sys.argv[2:]
    if cmd == "ticks":
        ticks(*args)
    elif cmd == "insert":
        insert(args[0], args[1], args[2], args[3:])

