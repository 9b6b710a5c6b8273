#!/usr/bin/env python3
# Quillop2 --help and --version answer on a terminal without a display, an unknown option
# is refused with a message, and the manual page lists the options --help lists.
#
# usage: check_command_line.py PATH/TO/Quillop2 VERSION PATH/TO/Quillop2.6
import os
import re
import subprocess
import sys

game, version, manpage = sys.argv[1:4]
# No display of any kind: a program that tried to open a window would fail here.
no_display = {k: v for k, v in os.environ.items() if k not in ("DISPLAY", "WAYLAND_DISPLAY")}
failures, said = 0, {}
# the option, the platform plugin asked for, the exit status, and what stdout (on success)
# or stderr matches from its start
for option, platform, status, says in (("--help", "xcb", 0, r"Usage: Quillop2 \[options\]\n"),
                                       ("--version", "xcb", 0, r"Quillop %s\n\Z" % re.escape(version)),
                                       ("--frobnicate", "offscreen", 2, r"(?s).*Unknown option 'frobnicate'")):
    run = subprocess.run([game, option], env=dict(no_display, QT_QPA_PLATFORM=platform),
                         capture_output=True, text=True, timeout=10)
    said[option] = run.stdout if status == 0 else run.stderr
    ok = run.returncode == status and re.match(says, said[option])
    print("%s - %s: exit %d, %r" % ("ok  " if ok else "FAIL", option, run.returncode, said[option][:160]))
    failures += not ok
# the long options --help lists, and those the manual page's OPTIONS section lists
helped = set(re.findall(r"--[a-z][a-z-]*", said["--help"]))
man = open(manpage, encoding="utf-8").read().split(".SH OPTIONS", 1)[1].split("\n.SH ", 1)[0]
in_step = helped == set(re.findall(r"--[a-z][a-z-]*", man.replace("\\-", "-"))) and len(helped) >= 4
print("%s - the manual page's options are --help's: %s" % ("ok  " if in_step else "FAIL", sorted(helped)))
sys.exit(1 if failures or not in_step else 0)
