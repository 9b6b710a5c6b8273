#!/usr/bin/env python3
# The set-up script on a Debian 12 GNOME desktop's audio stack, planned with apt-get -s
# against a copy of the dpkg database: neither the play nor the test set-up may remove a
# package (so the tests' sound server is the desktop's PipeWire, and the play set-up asks
# for none), and a package that would need one removed is refused with a clear message.
# Works offline from apt's cached package lists.
#
# usage: gnome_dry_run.py SOURCE_DIR
import os
import re
import shutil
import subprocess
import sys
import tempfile

SETUP = os.path.join(sys.argv[1], "scripts", "setup.sh")
failures = 0


def check(what, ok, log):
    global failures
    failures += not ok
    print("ok   - " + what if ok else "FAIL - %s\n  %s" % (what, log.strip().replace("\n", "\n  ")))


def run(*command, **env):
    out = subprocess.run(command, capture_output=True, text=True, env=dict(os.environ, LC_ALL="C", **env))
    return out.returncode, out.stdout + out.stderr


# The fields of an installed package's entry in dpkg's database (the archive's Filename,
# checksums and the like are refused there).
STATUS_FIELDS = ("Package", "Priority", "Section", "Installed-Size", "Maintainer", "Architecture",
                 "Multi-Arch", "Source", "Version", "Replaces", "Provides", "Depends", "Pre-Depends",
                 "Recommends", "Suggests", "Breaks", "Conflicts", "Description", "Homepage")


def installed_stanza(stanza):
    fields = [f[0] for f in re.finditer(r"^([\w-]+):.*(?:\n[ \t].*)*", stanza, re.M) if f[1] in STATUS_FIELDS]
    return "\n".join(fields[:1] + ["Status: install ok installed"] + fields[1:])  # Package first


# Leaf packages of the set-up's lists, taken out of the copy so that there is something to plan.
NOT_YET_THERE = ("cmake", "libpulse-dev", "libgtest-dev", "libgmock-dev", "xvfb", "xdotool", "openbox", "pulseaudio-utils")


# This machine's package database with PipeWire's audio stack installed the way GNOME has it
# (pipewire-audio in, everything it conflicts with out) and without a few of the packages
# Quillop asks for.
def gnome_audio_database(admindir):
    status = os.path.join(admindir, "status")
    shutil.copy("/var/lib/dpkg/status", status)
    rc, log = run("apt-get", "-s", "-o", "Dir::State::status=" + status, "install", "--no-install-recommends",
                  "pipewire-audio")
    if rc != 0:
        sys.exit("cannot plan pipewire-audio from the cached lists:\n" + log)
    added = re.findall(r"^Inst (\S+) (?:\[\S+\] )?\((\S+)", log, re.M)
    gone = set(re.findall(r"^Remv (\S+)", log, re.M)) | set(NOT_YET_THERE) | {n for n, _ in added}
    kept = [s for s in open(status).read().strip().split("\n\n") if re.search(r"^Package: (\S+)", s, re.M)[1] not in gone]
    shown = subprocess.check_output(["apt-cache", "show", "--no-all-versions"] + [f"{n}={v}" for n, v in added], text=True)
    with open(status, "w") as f:
        f.write("\n\n".join(kept + [installed_stanza(s) for s in shown.strip().split("\n\n")]) + "\n")


with tempfile.TemporaryDirectory() as admindir:
    gnome_audio_database(admindir)
    for args, first in (((), "libpulse-dev"), (("--test",), "xdotool")):
        rc, log = run("sh", SETUP, "--dry-run", *args, QUILLOP_DPKG_ADMINDIR=admindir, QUILLOP_SOUND_SERVER="")
        check("the %s set-up plans adding %s without removing anything" % ("test" if args else "play", first),
              rc == 0 and "Remv" not in log and re.search(r"^Inst %s " % first, log, re.M), log)
    rc, log = run("sh", SETUP, "--dry-run", "--test", QUILLOP_DPKG_ADMINDIR=admindir, QUILLOP_SOUND_SERVER="pulseaudio")
    check("asked for pulseaudio anyway, it refuses and names what would go",
          rc != 0 and "would remove" in log and "pipewire-audio" in log and "Inst " not in log, log)

sys.exit(1 if failures else 0)
