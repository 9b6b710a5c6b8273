#!/usr/bin/env python3
# Quillop2 --help and --version answer on a terminal without a display, the manual page
# lists the options --help lists, in the same words, and an unknown option is refused.
#
# usage: check_command_line.py PATH/TO/Quillop2 PATH/TO/Quillop2.6 VERSION
import os
import re
import subprocess
import sys

game, manpage, version = sys.argv[1:4]
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


# {'-h, --help': 'Displays this help.', ...} from the Options: block of --help.
def help_options(text):
    block = text.split("Options:\n", 1)[1]
    return dict(re.split(r"\s{2,}", line.strip(), maxsplit=1) for line in block.splitlines() if line.strip())


def man_text(line):
    line = re.sub(r"\\f[BIRP]", "", line).replace("\\-", "-")
    if line.startswith("."):  # a font macro (.BR ...): its words, quoted or bare, run together
        line = "".join(q or w for q, w in re.findall(r'"([^"]*)"|(\S+)', line.split(" ", 1)[1]))
    return line


# The .TP entries of the OPTIONS section: first line the option names, second what it does.
def man_options(source):
    section = source.split(".SH OPTIONS\n", 1)[1].split("\n.SH ", 1)[0]
    options = {}
    for entry in section.split(".TP\n")[1:]:
        lines = entry.splitlines()
        options[man_text(lines[0])] = man_text(lines[1])
    return options


shown = run("--help")
check(shown.returncode == 0 and shown.stdout.startswith("Usage: Quillop2 [options]\n"),
      "--help prints the usage and exits 0 without a display (exit %d, %r)"
      % (shown.returncode, (shown.stdout or shown.stderr)[:120]))
for flag in ("--version", "-v"):
    answer = run(flag)
    check(answer.returncode == 0 and answer.stdout == "Quillop %s\n" % version,
          "%s prints 'Quillop %s' and exits 0 without a display (got %r, exit %d)"
          % (flag, version, answer.stdout or answer.stderr[:120], answer.returncode))

source = open(manpage, encoding="utf-8").read()
if shown.returncode == 0:
    in_help = help_options(shown.stdout)
    in_man = man_options(source)
    check(in_help == in_man, "the manual page's options are --help's: %s vs %s" % (in_man, in_help))
    description = shown.stdout.splitlines()[1]
    check(description in source.split(".SH DESCRIPTION\n", 1)[1], "the manual page opens with --help's description")
check(re.search(r'^\.TH QUILLOP2 6 "[^"]*" "Quillop %s"' % re.escape(version), source, re.M) is not None,
      "the manual page carries version %s" % version)

refused = run("--frobnicate", QT_QPA_PLATFORM="offscreen")
check(refused.returncode == 2 and "Unknown option 'frobnicate'" in refused.stderr,
      "an unknown option is refused with a message (exit %d, %r)" % (refused.returncode, refused.stderr[-160:]))

sys.exit(1 if failures else 0)
