#!/usr/bin/env python3
"""Snapshots of a replayed game against its trace.

  replay_check.py ticks TRACE                      three ticks worth a look (puck in play, Arses up)
  replay_check.py insert SCENARIO OUT DIR T...     the scenario with `snapshot DIR/replay-T.png` after tick T
  replay_check.py compare TRACE DIR T...           each snapshot shows every active Arse and the puck
                                                   where the trace has them
"""
import collections
import json
import subprocess
import sys

CONVERT = "/usr/bin/convert"


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


def pixels(png):
    w, h = map(int, subprocess.check_output(["identify", "-format", "%w %h", png]).split())
    raw = subprocess.check_output([CONVERT, png, "-depth", "8", "rgb:-"])
    return w, h, [tuple(raw[i:i + 3]) for i in range(0, len(raw), 3)]


def compare(path, where, at):
    lines, bad = trace(path), []
    for t in map(int, at):
        line = lines[t - 1]
        w, h, px = pixels("%s/replay-%d.png" % (where, t))
        back = collections.Counter(px).most_common(1)[0][0]

        def share(x, y, bw, bh, test):
            box = [px[j * w + i] for j in range(max(int(y), 0), min(int(y + bh), h))
                   for i in range(max(int(x), 0), min(int(x + bw), w))]
            return sum(map(test, box)) / max(len(box), 1)

        for name in ("rowa", "rowb"):
            for k, (x, y, active) in enumerate(line[name]):
                if active and 0 <= x <= w - 24 and 0 <= y <= h - 22:
                    s = share(x, y, 24, 22, lambda p: p != back)
                    if s < 0.3:
                        bad.append("tick %d: %s[%d] at %g,%g shows %.0f%% of a figure" % (t, name, k, x, y, 100 * s))
        x, y, pw, ph, visible, _, style, colour = line["puck"]
        fill = (colour & 255, colour >> 8 & 255, colour >> 16 & 255)
        # a solid puck is mostly its colour; a hatched one (style 7) only along its lines
        if visible and share(x + 1, y + 1, pw - 2, ph - 2, lambda p: p == fill) < (0.3 if style == 0 else 0.1):
            bad.append("tick %d: no puck of colour %s at %g,%g" % (t, fill, x, y))
    for b in bad:
        print(b)
    sys.exit(1 if bad else 0)


if __name__ == "__main__":
    cmd, args = sys.argv[1], sys.argv[2:]
    if cmd == "ticks":
        ticks(*args)
    elif cmd == "insert":
        insert(args[0], args[1], args[2], args[3:])
    else:
        compare(args[0], args[1], args[2:])
