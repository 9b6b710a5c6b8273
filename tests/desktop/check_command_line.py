#!/usr/bin/env python3
# Quillop2 --help and --version answer on a terminal without a display, and an unknown
# option is refused.
#
# usage: check_command_line.py PATH/TO/Quillop2 VERSION
import os
import subprocess
import sys

game, version = sys.argv[1:3]
failures = []


def check(ok, what):
    print(("ok   - " if ok else "FAIL - ") + what)
    if not ok:
        failures.append(what)


def run(*args, **env):
    # No display of any kind: a program that tried to open a window would fail here.
    clean = {k: v for k, v in os.environ.items() if k not in ("DISPLAY", "WAYLAND_DISPLAY")}
    clean["QT_QPA_PLATFORM"] = "xcb"
    clean.update(env)
    return subprocess.run([game, *args], env=clean, capture_output=True, text=True, timeout=10)


shown = run("--help")
check(shown.returncode == 0 and shown.stdout.startswith("Usage: Quillop2 [options]\n"),
      "--help prints the usage and exits 0 without a display (exit %d, %r)"
      % (shown.returncode, (shown.stdout or shown.stderr)[:120]))
answer = run("--version")
check(answer.returncode == 0 and answer.stdout == "Quillop %s\n" % version,
      "--version prints 'Quillop %s' and exits 0 without a display (got %r, exit %d)"
      % (version, answer.stdout or answer.stderr[:120], answer.returncode))

refused = run("--frobnicate", QT_QPA_PLATFORM="offscreen")
check(refused.returncode == 2 and "Unknown option 'frobnicate'" in refused.stderr,
      "an unknown option is refused with a message (exit %d, %r)" % (refused.returncode, refused.stderr[-160:]))

sys.exit(1 if failures else 0)
