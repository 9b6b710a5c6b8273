#!/usr/bin/env python3
"""Plays scenarios through quillop-sim and checks facts that follow from the game's rules:
the serve's numbers recomputed from the generator, the Seeker launch tick and its first step,
puck losses and Drop, the level change, the end of the game, the high-score entry, the
window commands, determinism and the scenario checks.

usage: check_sim.py SIM CASE   (CASE: game, highscore, commands, snapshot, badinput)
"""
import json
import math
import os
import struct
import subprocess
import sys
import tempfile
import zlib

SIM = os.path.abspath(sys.argv[1])
HERE = os.path.dirname(os.path.abspath(__file__))
failures = []


def check(cond, what):
    if not cond:
        failures.append(what)


def run(args, stdin=None, cwd=None):
    p = subprocess.run([SIM] + args, input=stdin, capture_output=True, cwd=cwd)
    return p.returncode, p.stdout, p.stderr.decode()


def trace(name, cwd=None):
    rc, out, err = run([os.path.join(HERE, name)], cwd=cwd)
    if rc != 0:
        sys.exit("%s: exit %d: %s" % (name, rc, err))
    return [json.loads(l) for l in out.decode().splitlines()]


def f32(x):
    return struct.unpack("f", struct.pack("f", x))[0]


def draw(seed, n):
    """Value of the n-th draw since start: two unseeded draws at load, then the seed."""
    s = 327680
    for k in range(1, n + 1):
        if k == 3:
            s = seed
        s = (s * 1140671485 + 12820163) % 16777216
    return s / 16777216.0


def command_positions(name):
    """For each command: how many trace lines come before it (every tick assumed to run)."""
    ticks, out = 0, []
    for line in open(os.path.join(HERE, name)):
        words = line.split()
        if not words or words[0].startswith("#"):
            continue
        if words[0] == "tick":
            ticks += int(words[1])
        else:
            out.append((words[0], ticks))
    return out, ticks


PARKED_RED = [10, -10000, 8, 8, False, 4, 0, 0x0000C0]
THRESHOLDS = [15]  # the kill counts that end a level, as far as the games here reach


def check_serve(line, prev_draws, seed, width, at):
    """First tick after a serve: no bounce, so the move is drag applied to the drawn direction."""
    pi = 3.1415926
    r0, r1, r2 = (draw(seed, prev_draws + k) for k in (1, 2, 3))
    left0 = math.floor(width * r0 + 1)
    x = math.cos(r1 * 180 * 2 * pi / 360) * 0.998
    y = (math.sin(r2 * 180 * 2 * pi / 360) + 0.5) * 0.998
    check(line["move"] == [x, y, 1.2], "%s: move %r, expected %r" % (at, line["move"], [x, y, 1.2]))
    check(line["puck"][:2] == [f32(left0 + x * 1.2), f32(y * 1.2)],
          "%s: puck at %r" % (at, line["puck"][:2]))
    check(line["puck"][2:] == [8, 8, True, 3, 0, 0xFFFFFF], "%s: puck look %r" % (at, line["puck"]))
    check(line["inplay"] and not line["drop"] and line["seekert"] == 1 and line["eticks"] == 1,
          "%s: serve state" % at)


def game_facts(lines, scenario, seed):
    positions, total = command_positions(scenario)
    check(len(lines) == total, "every tick runs once the game is on: %d lines" % len(lines))
    check([l["t"] for l in lines] == list(range(1, len(lines) + 1)), "t counts 1, 2, 3 ...")

    first = lines[0]
    check((first["level"], first["lives"], first["kills"], first["formation"], first["score"]) == (1, 3, 0, 1, 0),
          "first tick: level 1, 3 lives, formation 1")
    check(not first["gameover"] and not first["play"] and first["label"] == "", "first tick: game on")
    check(all(a[2] for a in first["rowa"]) and not any(b[2] for b in first["rowb"]), "row A armed, row B not")
    # Play came before any tick: load drew 2, setvars 6 Speeds, then the serve.
    check_serve(first, 2 + 6, seed, 440, "first serve")

    for cmd, before in positions:
        if cmd == "drop" and 0 < before < len(lines) and lines[before - 1]["drop"]:
            check_serve(lines[before], lines[before - 1]["draws"], seed, 440, "serve after tick %d" % before)

    losses, launched, leveled = 0, None, None
    for prev, line in zip(lines, lines[1:]):
        at = "tick %d" % line["t"]
        check(line["kills"] % 2 == 0 and 0 <= line["jitter"] <= 3 and 0 <= line["eticks"] <= 200, at + ": counters")
        check(line["draws"] > prev["draws"], at + ": the enemies draw every tick")
        if line["lives"] == prev["lives"] - 1 and line["lives"] >= 0:
            losses += 1
            check(line["dead"] and not line["inplay"], at + ": a lost puck is dead, out of play")
            check(line["puck"] == PARKED_RED, at + ": parked red rounded square, got %r" % line["puck"])
            check(line["drop"] == (line["lives"] > 0), at + ": Drop offered only while lives remain")
            check(line["score"] >= prev["score"] + 1000, at + ": the kill still scores")
        # A Seeker launches when the timer passes 200 with a puck in play; its first step goes a
        # fifteenth of the way to the puck's corner, in Singles. The launch draw is the tick's last.
        if prev["seekert"] == 200 and prev["inplay"] and not prev["seekers"][0][2]:
            s = line["seekers"][0]
            top0 = f32(draw(seed, line["draws"]) * 300)
            pl, pt = line["puck"][0], line["puck"][1]
            check(line["seekert"] == 0 and s[2], at + ": Seeker 0 launched")
            check(s[:2] == [f32(-15 + f32(f32(pl + 15) / 15)), f32(top0 + f32(f32(pt - top0) / 15))],
                  at + ": Seeker 0 first step %r" % s)
            launched = launched or line["t"]
        for k in THRESHOLDS:
            if prev["kills"] < k < line["kills"]:
                if line["lives"] > 0:
                    lost = 1 if line["dead"] else 0
                    check((line["level"], line["formation"]) == (2, 2), at + ": level 2, formation 2")
                    check(line["lives"] == prev["lives"] + 1 - lost, at + ": a life for the level")
                    check(all(b[2] for b in line["rowb"]) and not any(a[2] for a in line["rowa"]),
                          at + ": row B armed after the last of row A")
                    leveled = line["t"]
                else:
                    check(line["level"] == 1, at + ": no level change on the last life")
    check(losses == 4, "three lives and the one level 2 gave lost, got %d" % losses)
    check(launched == 201, "first Seeker on tick 201, got %r" % launched)
    check(leveled is not None, "level 2 reached")

    end = next(i for i, l in enumerate(lines) if l["lives"] == 0)
    check(not any(l["gameover"] for l in lines[: end + 1]), "no game over before the tick after the last loss")
    check(not lines[end]["drop"], "no Drop after the last life")
    for l in lines[end + 1:]:
        check(l["gameover"] and l["lives"] == -1 and l["label"] == "Insert Coin" and l["play"]
              and not l["puck"][4], "tick %d: Insert Coin, Play shown, puck hidden" % l["t"])
    # Kill 16 came with the last life: the threshold 31 was passed without a level change.
    check(lines[end]["kills"] == 32 and lines[end]["level"] == 2, "threshold on the last life: still level 2")
    return end


def case_game():
    lines = trace("full_game.scn")
    game_facts(lines, "full_game.scn", 11)
    for l in lines:
        check(l["highscore"] == 1000000 and l["highscorer"] == "Ormswell"
              and l["caption"] == "Quillop High Score by Ormswell - 1000000", "tick %d: best score kept" % l["t"])


def case_highscore():
    plain = trace("full_game.scn")
    lines = trace("highscore.scn")
    # Names that are not UTF-8 still give JSON, each stray byte as U+FFFD.
    text = open(os.path.join(HERE, "highscore.scn"), "rb").read()
    text = text.replace(b"highscorer Old Timer", b"highscorer Old\xff\xc3Timer").replace(b"name Zed Q", b"name Zed\xe2\x82Q")
    rc, out, err = run(["-"], stdin=text)
    try:
        odd = [json.loads(l) for l in out.decode("utf-8").splitlines()]
        check((odd[0]["highscorer"], odd[-1]["highscorer"]) == ("Old\ufffd\ufffdTimer", "Zed\ufffd\ufffdQ"),
              "holders not UTF-8: %r" % ((odd[0]["highscorer"], odd[-1]["highscorer"]),))
    except ValueError as e:
        check(False, "holders not UTF-8: trace is not JSON: %s" % e)
    end = game_facts(lines, "highscore.scn", 11)
    shown = ("highscore", "highscorer", "caption")
    check(all({k: v for k, v in a.items() if k not in shown} == {k: v for k, v in b.items() if k not in shown}
              for a, b in zip(plain, lines)), "the dialog changes nothing in the game")
    for l in lines[: end + 1]:
        check((l["highscore"], l["highscorer"], l["caption"]) == (500, "Old Timer", "Quillop High Score by Old Timer - 500"),
              "tick %d: old best score" % l["t"])
    score = lines[end + 1]["score"]
    for l in lines[end + 1:]:
        check((l["highscore"], l["highscorer"], l["caption"]) == (score, "Zed Q", "Quillop High Score by Zed Q - %d" % score),
              "tick %d: new best score %r" % (l["t"], (l["highscore"], l["highscorer"], l["caption"])))


def case_commands():
    lines = trace("commands.scn")
    t = [l["t"] for l in lines]
    check(t == list(range(1, 45)), "ticks that ran: %r" % t)
    if len(lines) != 44:
        return
    ready, help_after, game = lines[0:3], lines[3:5], lines[5:15]
    check(all(l["gameover"] and l["play"] and not l["inplay"] for l in ready + help_after),
          "before Play: ready state (Play ignored while help was open)")
    check(lines[3]["paddle"] == [204, 278, 236, 32], "the move during help was ignored")
    check(all(not l["gameover"] and l["inplay"] and l["level"] == 1 for l in game + lines[15:22]), "game running")
    check(lines[21]["t"] == 22 and lines[22]["gameover"] and lines[22]["play"] and lines[22]["inplay"],
          "after New Game: ready state, the serve's PuckInPlay left on")
    check(lines[22]["catfish"][1] == 187.5 and lines[3]["catfish"][1] == 287.5, "Catfish at the bottom: H - 75/6")
    after = lines[24:]
    check((after[0]["level"], after[0]["lives"], after[0]["kills"]) == (1, 3, 0) and not after[0]["gameover"],
          "new game after the resize")
    check(all(l["catfish"][1] == 187.5 for l in after), "Catfish stays at the new bottom")
    check(all(l["puck"][0] + 8 <= 300 and l["puck"][1] + 8 <= 200 for l in after if l["puck"][4]),
          "the puck bounces inside 300 x 200")


def case_snapshot():
    results = []
    for _ in range(2):
        with tempfile.TemporaryDirectory() as d:
            rc, out, err = run([os.path.join(HERE, "snapshot.scn")], cwd=d)
            check(rc == 0, "snapshot scenario: exit %d %s" % (rc, err))
            results.append((out, open(os.path.join(d, "snapshot.png"), "rb").read()))
    check(results[0] == results[1], "same scenario, same trace and picture, byte for byte")
    png = results[0][1]
    check(png[:8] == b"\x89PNG\r\n\x1a\n" and png[12:16] == b"IHDR", "a PNG file")
    check(struct.unpack(">II", png[16:24]) == (320, 240), "picture of the 320 x 240 field")
    # The field's pixels (each row after its filter byte): sprites are painted, not a blank field.
    idat, pos = b"", 8
    while pos < len(png):
        n, kind = struct.unpack(">I4s", png[pos:pos + 8])
        idat += png[pos + 8:pos + 8 + n] if kind == b"IDAT" else b""
        pos += 12 + n
    raw = zlib.decompress(idat)
    stride = len(raw) // 240
    check(len({raw[k:k + stride][1:] for k in range(0, len(raw), stride)}) > 20, "sprites are painted, not a blank field")


def case_badinput():
    cases = [
        ("tick 2\nfoo 3\n", 2, "unknown command"),
        ("move 1\n", 1, "move"),
        ("move 1 2 3\n", 1, "move"),
        ("tick 1.5\n", 1, "tick"),
        ("tick -1\n", 1, "tick"),
        ("tick 1e3\n", 1, "number"),
        ("tick inf\n", 1, "number"),
        ("move 5. 3\n", 1, "number"),
        ("\n# note\nseed 16777216\n", 3, "seed"),
        ("play\nseed 4\n", 2, "seed"),
        ("tick 1\nhighscorer Bob\n", 2, "highscorer"),
        ("newgame maybe\n", 1, "newgame"),
        ("newgame\n", 1, "newgame"),
        ("tick 1\nsnapshot   \n", 2, "snapshot"),
        ("size 0 10\n", 1, "size"),
        ("resize 10 -1\n", 1, "resize"),
        ("Move 1 2\n", 1, "unknown command"),
        ("move +.5 -.5\ntick 3\nplay 1\n", 3, "play"),
        ("during 0 move 1 1\n", 1, "wait number"),
        ("during 2 tick 1\n", 1, "during a wait"),
        ("during 2 during 2 move 1 1\n", 1, "during a wait"),
        ("during 3 move 1 1\nduring 2 move 1 1\n", 2, "comes after"),
        ("answer maybe\n", 1, "answer"),
        ("expect 1 2\n", 1, "expect"),
        ("tick 1\nsnapshot a\0b.png\n", 2, "a\\x00b.png"),  # not a file named "a"
        ("fo\x1b[2Jo\xff 1\n", 1, "fo\\x1B[2Jo\\xFF"),        # shown, never sent to the terminal
    ]
    with tempfile.TemporaryDirectory() as d:
        for text, line, word in cases:
            p = subprocess.run([SIM, "-"], input=text.encode("latin-1"), capture_output=True, cwd=d)
            rc, out, err = p.returncode, p.stdout, p.stderr.decode("utf-8", "replace")
            raw = any(b < 0x20 or b == 0x7F for b in p.stderr[:-1]) or "\ufffd" in err
            check(rc == 2 and out == b"" and err.startswith("line %d: " % line) and word in err and not raw
                  and err.count("\n") == 1, "%r: exit %d, stdout %r, stderr %r" % (text, rc, out[:60], err))
        check(os.listdir(d) == [], "files written: %r" % os.listdir(d))
    rc, out, err = run(["/nonexistent/dir/scn"])
    check(rc == 2 and out == b"" and err.startswith("cannot read scenario /nonexistent/dir/scn: "),
          "missing file: %d %r" % (rc, err))
    # Valid odd forms: CRLF, leading blanks, signs, 3.0 as a count.
    rc, out, err = run(["-"], stdin=b"seed 3\r\n  move +10.5 -.5\r\n\ttick 3.0\r\n")
    check(rc == 0 and len(out.splitlines()) == 3, "CRLF scenario: %d %r" % (rc, err))


def case_recorded():
    """What a game recorded in the window adds: events inside the explosion's waits, a question
    left open while ticks run, and checks of where the game got to."""
    start = "seed 3\nmove 220 280\nplay\ntick 12\n"   # the 13th tick loses the puck
    rc, out, err = run(["-"], stdin=(start + "during 5 move 100 250\ntick 2\n").encode())
    lines = [json.loads(l) for l in out.decode().splitlines()]
    check(rc == 0 and lines[12]["dead"] and lines[12]["paddle"][0] == 84 and lines[11]["paddle"][0] == 204,
          "a move during the explosion's wait shows in that tick: %d %r" % (rc, err))
    asked = start + "newgame ask\ntick 3\nanswer no\ntick 1\n%snewgame ask\ntick 1\nanswer yes\ntick 5\n"
    rc, out, err = run(["-"], stdin=(asked % "").encode())
    lines = [json.loads(l) for l in out.decode().splitlines()]
    check(rc == 0 and [l["t"] for l in lines] == list(range(1, 18)) and not lines[16]["gameover"],
          "ticks run while the question is open, none after Yes: %d %r" % (rc, err))
    expect = "expect 16 %d %d\n" % (lines[15]["score"], lines[15]["draws"])
    check(run(["-"], stdin=(asked % expect).encode())[0] == 0, "expect at the state of tick 16 passes")
    for text, line, word in [
            (start + "during 25 move 1 1\ntick 1\n", 5, "only 24 waits"),
            (start + "during 2 move 1 1\n", 5, "no tick follows"),
            (start + "newgame ask\ntick 2\n", 5, "no answer"),
            (start + "answer yes\n", 5, "no question"),
            (asked % expect.replace("expect 16", "expect 15"), 9, "expected 15")]:
        rc, out, err = run(["-"], stdin=text.encode())
        check(rc == 4 and err.startswith("line %d: " % line) and word in err, "%r: %d %r" % (text[-40:], rc, err))


CASES = {"recorded": case_recorded, "game": case_game, "highscore": case_highscore, "commands": case_commands,
         "snapshot": case_snapshot, "badinput": case_badinput}

if __name__ == "__main__":
    CASES[sys.argv[2]]()
    for f in failures[:30]:
        print("FAIL:", f)
    if failures:
        print("%d failed checks" % len(failures))
        sys.exit(1)
    print("ok")
