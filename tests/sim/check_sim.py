#!/usr/bin/env python3
# Plays scenarios through quillop-sim and checks facts that follow from the game's rules:
# the serve's numbers recomputed from the generator, the Seeker launch tick and its first step,
# puck losses and Drop, the level change, the end of the game, the high-score entry, the
# window commands, determinism and the scenario checks.
#
# usage: check_sim.py SIM CASE   (CASE: game, highscore, commands, snapshot, badinput, recorded)
import json
import math
import os
import struct
import subprocess
import sys
import tempfile

SIM = os.path.abspath(sys.argv[1])
HERE = os.path.dirname(os.path.abspath(__file__))
failures = []
PARKED_RED = [10, -10000, 8, 8, False, 4, 0, 0x0000C0]


def check(cond, what):
    if not cond:
        failures.append(what)


def expect(line, what, **want):
    got = {k: line[k] for k in want}
    check(got == want, "%s: %r, want %r" % (what, got, want))


def run(args, stdin=None, cwd=None):
    p = subprocess.run([SIM] + args, input=stdin, capture_output=True, cwd=cwd)
    return p.returncode, p.stdout, p.stderr.decode("utf-8", "replace")


def play(text):
    # a scenario's text, given on stdin -> exit status, trace lines, message
    rc, out, err = run(["-"], text if isinstance(text, bytes) else text.encode("latin-1"))
    return rc, [json.loads(l) for l in out.decode().splitlines()], err


def trace(name, edit=lambda text: text):
    rc, lines, err = play(edit(open(os.path.join(HERE, name), "rb").read()))
    if rc != 0:
        sys.exit("%s: exit %d: %s" % (name, rc, err))
    return lines


def f32(x):
    return struct.unpack("f", struct.pack("f", x))[0]


def draw(seed, n):
    # the n-th draw since start: two unseeded draws at load, then the seed
    s = 327680
    for k in range(1, n + 1):
        if k == 3:
            s = seed
        s = (s * 1140671485 + 12820163) % 16777216
    return s / 16777216.0


def armed(line):
    return [a[2] for a in line["rowa"]], [b[2] for b in line["rowb"]]


def best(line, score, name):
    expect(line, "tick %d: best score" % line["t"], highscore=score, highscorer=name,
           caption="Quillop High Score by %s - %d" % (name, score))


def check_serve(line, prev_draws, seed, at):
    # the first tick after a serve: no bounce yet, so the move is the drawn direction with drag
    pi = 3.1415926
    r0, r1, r2 = (draw(seed, prev_draws + k) for k in (1, 2, 3))
    x = math.cos(r1 * 180 * 2 * pi / 360) * 0.998
    y = (math.sin(r2 * 180 * 2 * pi / 360) + 0.5) * 0.998
    puck = [f32(math.floor(440 * r0 + 1) + x * 1.2), f32(y * 1.2), 8, 8, True, 3, 0, 0xFFFFFF]
    expect(line, at, move=[x, y, 1.2], puck=puck, inplay=True, drop=False, seekert=1, eticks=1)


def game_facts(lines, scenario, seed):
    total = sum(int(w[1]) for w in map(str.split, open(os.path.join(HERE, scenario))) if w[:1] == ["tick"])
    check([l["t"] for l in lines] == list(range(1, total + 1)), "every tick runs once the game is on, t counts 1, 2, 3")
    expect(lines[0], "first tick", level=1, lives=3, kills=0, formation=1, score=0, gameover=False, play=False, label="")
    check(armed(lines[0]) == ([True] * 8, [False] * 8), "row A armed, row B not")
    # Play came before any tick: load drew 2, setvars 6 Speeds, then the serve.
    check_serve(lines[0], 2 + 6, seed, "first serve")

    losses, serves, launched, leveled = 0, 0, None, None
    for prev, line in zip(lines, lines[1:]):
        at = "tick %d" % line["t"]
        check(line["kills"] % 2 == 0 and 0 <= line["jitter"] <= 3 and 0 <= line["eticks"] <= 200, at + ": counters")
        check(line["draws"] > prev["draws"], at + ": the enemies draw every tick")
        if prev["drop"] and not line["drop"]:  # Drop was clicked
            serves += 1
            check_serve(line, prev["draws"], seed, at + ": serve by Drop")
        if line["lives"] == prev["lives"] - 1 and line["lives"] >= 0:
            losses += 1
            # dead, out of play, parked as a red rounded square; Drop only while lives remain
            expect(line, at + ": lost puck", dead=True, inplay=False, puck=PARKED_RED, drop=line["lives"] > 0)
            check(line["score"] >= prev["score"] + 1000, at + ": the kill still scores")
        # A Seeker launches when the timer passes 200 with a puck in play; its first step goes a
        # fifteenth of the way to the puck's corner, in Singles. The launch draw is the tick's last.
        if prev["seekert"] == 200 and prev["inplay"] and not prev["seekers"][0][2]:
            top0 = f32(draw(seed, line["draws"]) * 300)
            pl, pt = line["puck"][0], line["puck"][1]
            step = [f32(-15 + f32(f32(pl + 15) / 15)), f32(top0 + f32(f32(pt - top0) / 15)), True]
            expect(line, at + ": Seeker 0 launched", seekert=0, seekers=[step] + line["seekers"][1:])
            launched = launched or line["t"]
        # the one level threshold the games here pass with lives left (the next one comes with the last)
        if prev["kills"] < 15 < line["kills"] and line["lives"] > 0:
            expect(line, at + ": level 2 with a life for it", level=2, formation=2, lives=prev["lives"] + 1 - line["dead"])
            check(armed(line) == ([False] * 8, [True] * 8), at + ": row B armed after the last of row A")
            leveled = line["t"]
    check((losses, serves, launched, leveled is not None) == (4, 3, 201, True), "lives lost (three and level 2's), "
          "serves by Drop, first Seeker's tick, level 2 reached: %r" % ((losses, serves, launched, leveled),))

    end = next(i for i, l in enumerate(lines) if l["lives"] == 0)
    check(not any(l["gameover"] for l in lines[: end + 1]), "no game over before the tick after the last loss")
    # Kill 16 came with the last life: the threshold 31 was passed without a level change.
    expect(lines[end], "the last loss", drop=False, kills=32, level=2)
    for l in lines[end + 1:]:
        expect(l, "tick %d: Insert Coin, Play shown, puck hidden" % l["t"], gameover=True, lives=-1,
               label="Insert Coin", play=True, puck=l["puck"][:4] + [False] + l["puck"][5:])
    return end


def case_game():
    lines = trace("full_game.scn")
    game_facts(lines, "full_game.scn", 11)
    for l in lines:
        best(l, 1000000, "Ormswell")


def case_highscore():
    plain, lines = trace("full_game.scn"), trace("highscore.scn")
    # Names that are not UTF-8 still give JSON, each stray byte as U+FFFD.
    odd = trace("highscore.scn", lambda text: text.replace(b"highscorer Old Timer", b"highscorer Old\xff\xc3Timer")
                .replace(b"name Zed Q", b"name Zed\xe2\x82Q"))
    check((odd[0]["highscorer"], odd[-1]["highscorer"]) == ("Old\ufffd\ufffdTimer", "Zed\ufffd\ufffdQ"),
          "holders not UTF-8: %r" % ((odd[0]["highscorer"], odd[-1]["highscorer"]),))
    end = game_facts(lines, "highscore.scn", 11)
    shown = ("highscore", "highscorer", "caption")
    rest = [[{k: v for k, v in l.items() if k not in shown} for l in game] for game in (plain, lines)]
    check(rest[0] == rest[1], "the dialog changes nothing in the game")
    for l in lines:
        best(l, 500, "Old Timer") if l["t"] <= end + 1 else best(l, lines[end + 1]["score"], "Zed Q")


def case_commands():
    lines = trace("commands.scn")
    check([l["t"] for l in lines] == list(range(1, 45)), "ticks that ran: %r" % [l["t"] for l in lines])
    if len(lines) != 44:
        return
    ready, help_after, game = lines[0:3], lines[3:5], lines[5:15]
    check(all(l["gameover"] and l["play"] and not l["inplay"] for l in ready + help_after),
          "before Play: ready state (Play ignored while help was open)")
    check(lines[3]["paddle"] == [204, 278, 236, 32], "the move during help was ignored")
    check(all(not l["gameover"] and l["inplay"] and l["level"] == 1 for l in game + lines[15:22]), "game running")
    check(lines[21]["t"] == 22 and lines[22]["gameover"] and lines[22]["play"] and lines[22]["inplay"],
          "after New Game: ready state, the serve's PuckInPlay left on")
    check(not any(a[2] for l in lines[22:24] for a in l["rowa"] + l["rowb"]), "after New Game: no Arse armed")
    check(lines[22]["catfish"][1] == 187.5 and lines[3]["catfish"][1] == 287.5, "Catfish at the bottom: H - 75/6")
    expect(lines[24], "new game after the resize", level=1, lives=3, kills=0, gameover=False)
    check(all(l["catfish"][1] == 187.5 for l in lines[24:]), "Catfish stays at the new bottom")
    check(all(l["puck"][0] + 8 <= 300 and l["puck"][1] + 8 <= 200 for l in lines[24:] if l["puck"][4]),
          "the puck bounces inside 300 x 200")


def case_snapshot():
    results = []
    for _ in range(2):
        with tempfile.TemporaryDirectory() as d:
            rc, out, err = run([os.path.join(HERE, "snapshot.scn")], cwd=d)
            check(rc == 0, "snapshot scenario: exit %d %s" % (rc, err))
            results.append((out, open(os.path.join(d, "snapshot.png"), "rb").read()))
            # format, size and number of colours: a blank field has one
            seen = subprocess.run(["identify", "-format", "%m %w %h %k", "snapshot.png"], cwd=d,
                                  capture_output=True, text=True).stdout.split()
    check(results[0] == results[1], "same scenario, same trace and picture, byte for byte")
    check(seen[:3] == ["PNG", "320", "240"] and int(seen[3]) >= 10, "a PNG of the 320 x 240 field, sprites painted: %r" % seen)


def refused(cases, status, cwd=None):
    # each scenario refused with STATUS and one line naming its line, control characters escaped
    for text, line, word in cases:
        rc, out, err = run(["-"], text.encode("latin-1"), cwd)
        raw = any(c < " " or c == "\x7f" for c in err[:-1]) or "\ufffd" in err
        check(rc == status and (status != 2 or out == b"") and err.startswith("line %d: " % line) and word in err
              and not raw and err.count("\n") == 1, "%r: exit %d, stdout %r, stderr %r" % (text[-40:], rc, out[:60], err))


def case_badinput():
    with tempfile.TemporaryDirectory() as d:
        refused([  # a line each for the commands, the numbers, the waits and the texts
            ("tick 2\nfoo 3\n", 2, "unknown command"), ("Move 1 2\n", 1, "unknown command"),
            ("move 1\n", 1, "move"), ("move 1 2 3\n", 1, "move"), ("tick 1.5\n", 1, "tick"), ("tick -1\n", 1, "tick"),
            ("\n# note\nseed 16777216\n", 3, "seed"), ("play\nseed 4\n", 2, "seed"), ("answer maybe\n", 1, "answer"),
            ("newgame maybe\n", 1, "newgame"), ("newgame\n", 1, "newgame"), ("tick 1\nhighscorer Bob\n", 2, "highscorer"),
            ("size 0 10\n", 1, "size"), ("resize 10 -1\n", 1, "resize"), ("expect 1 2\n", 1, "expect"),
            ("move +.5 -.5\ntick 3\nplay 1\n", 3, "play"), ("tick 1\nsnapshot   \n", 2, "snapshot"),
            ("tick 1e3\n", 1, "number"), ("tick inf\n", 1, "number"), ("move 5. 3\n", 1, "number"),
            ("during 0 move 1 1\n", 1, "wait number"), ("during 2 tick 1\n", 1, "during a wait"),
            ("during 2 during 2 move 1 1\n", 1, "during a wait"), ("during 3 move 1 1\nduring 2 move 1 1\n", 2, "comes after"),
            # shown escaped, never sent to the terminal nor taken as a file named "a"
            ("tick 1\nsnapshot a\0b.png\n", 2, "a\\x00b.png"), ("fo\x1b[2Jo\xff 1\n", 1, "fo\\x1B[2Jo\\xFF"),
        ], 2, d)
        check(os.listdir(d) == [], "files written: %r" % os.listdir(d))
    rc, out, err = run(["/nonexistent/dir/scn"])
    check(rc == 2 and out == b"" and err.startswith("cannot read scenario /nonexistent/dir/scn: "),
          "missing file: %d %r" % (rc, err))
    # Valid odd forms: CRLF, leading blanks, signs, 3.0 as a count.
    rc, lines, err = play("seed 3\r\n  move +10.5 -.5\r\n\ttick 3.0\r\n")
    check(rc == 0 and len(lines) == 3, "CRLF scenario: %d %r" % (rc, err))


def case_recorded():
    # What a game recorded in the window adds: events inside the explosion's waits, a question
    # left open while ticks run, and checks of where the game got to.
    start = "seed 3\nmove 220 280\nplay\ntick 12\n"   # the 13th tick loses the puck
    rc, lines, err = play(start + "during 5 move 100 250\ntick 2\n")
    check(rc == 0 and lines[12]["dead"] and lines[12]["paddle"][0] == 84 and lines[11]["paddle"][0] == 204,
          "a move during the explosion's wait shows in that tick: %d %r" % (rc, err))
    asked = start + "newgame ask\ntick 3\nanswer no\ntick 1\n%snewgame ask\ntick 1\nanswer yes\ntick 5\n"
    rc, lines, err = play(asked % "")
    check(rc == 0 and [l["t"] for l in lines] == list(range(1, 18)) and not lines[16]["gameover"],
          "ticks run while the question is open, none after Yes: %d %r" % (rc, err))
    expected = "expect 16 %d %d\n" % (lines[15]["score"], lines[15]["draws"])
    check(play(asked % expected)[0] == 0, "expect at the state of tick 16 passes")
    refused([(start + "during 25 move 1 1\ntick 1\n", 5, "only 24 waits"),
             (start + "during 2 move 1 1\n", 5, "no tick follows"),
             (start + "newgame ask\ntick 2\n", 5, "no answer"),
             (start + "answer yes\n", 5, "no question"),
             (asked % expected.replace("expect 16", "expect 15"), 9, "expected 15")], 4)


if __name__ == "__main__":
    globals()["case_" + sys.argv[2]]()
    print(*["FAIL: " + f for f in failures[:30]], "%d failed checks" % len(failures) if failures else "ok", sep="\n")
    sys.exit(1 if failures else 0)
