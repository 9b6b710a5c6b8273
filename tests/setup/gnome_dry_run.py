#!/usr/bin/env python3
# The set-up script on a Debian 12 GNOME desktop's audio stack, planned with apt-get -s
# against a copy of the dpkg database: neither the play nor the test set-up may remove a
# package, and a package that would need one removed is refused with a clear message.
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


def check(what, ok, detail=""):
    global failures
    print(("ok   - " if ok else "FAIL - ") + what)
    if not ok:
        failures += 1
        if detail:
            print("  " + detail.strip().replace("\n", "\n  "))


def apt_plan(status, *packages):
    out = subprocess.run(["apt-get", "-s", "-o", "Dir::State::status=" + status, "install",
                          "--no-install-recommends", *packages],
                         capture_output=True, text=True, env=dict(os.environ, LC_ALL="C"))
    inst = re.findall(r"^Inst (\S+) (?:\[\S+\] )?\((\S+)", out.stdout, re.M)
    remv = re.findall(r"^Remv (\S+)", out.stdout, re.M)
    return out.returncode, inst, remv, out.stdout + out.stderr


def stanzas(text):
    return [s for s in text.split("\n\n") if s.strip()]


# The fields of an installed package's entry in dpkg's database (the archive's Filename,
# checksums and the like are refused there).
STATUS_FIELDS = ("Package", "Priority", "Section", "Installed-Size", "Maintainer", "Architecture",
                 "Multi-Arch", "Source", "Version", "Replaces", "Provides", "Depends", "Pre-Depends",
                 "Recommends", "Suggests", "Breaks", "Conflicts", "Description", "Homepage")


def installed_stanza(stanza):
    lines, keep = [], False
    for line in stanza.splitlines():
        if not line.startswith((" ", "\t")):
            keep = line.split(":", 1)[0] in STATUS_FIELDS
        if keep:
            lines.append(line)
            if line.startswith("Package:"):
                lines.append("Status: install ok installed")
    return "\n".join(lines)


# Leaf packages of the set-up's lists, taken out of the copy so that there is something to plan.
NOT_YET_THERE = ("cmake", "libpulse-dev", "libgtest-dev", "libgmock-dev", "xvfb", "xdotool", "openbox", "pulseaudio-utils")


# This machine's package database with PipeWire's audio stack installed the way GNOME has it
# (pipewire-audio in, everything it conflicts with out) and without a few of the packages
# Quillop asks for.
def gnome_audio_database(admindir):
    status = os.path.join(admindir, "status")
    shutil.copy("/var/lib/dpkg/status", status)
    for sub in ("info", "updates"):
        os.makedirs(os.path.join(admindir, sub), exist_ok=True)
    rc, inst, remv, log = apt_plan(status, "pipewire-audio")
    if rc != 0:
        sys.exit("cannot plan pipewire-audio from the cached lists:\n" + log)
    gone = set(remv) | set(NOT_YET_THERE) | {n for n, _ in inst}
    kept = [s for s in stanzas(open(status).read()) if re.search(r"^Package: (\S+)", s, re.M).group(1) not in gone]
    shown = subprocess.run(["apt-cache", "show", "--no-all-versions"] + [f"{n}={v}" for n, v in inst],
                           capture_output=True, text=True, check=True).stdout
    kept += [installed_stanza(stanza) for stanza in stanzas(shown)]
    with open(status, "w") as f:
        f.write("\n\n".join(kept) + "\n")
    return status, [n for n, _ in inst]


def setup(admindir, *args, server=None):
    env = dict(os.environ, QUILLOP_DPKG_ADMINDIR=admindir, LC_ALL="C", QUILLOP_SOUND_SERVER=server or "")
    out = subprocess.run(["sh", SETUP, "--dry-run", *args], capture_output=True, text=True, env=env)
    return out.returncode, out.stdout + out.stderr


with tempfile.TemporaryDirectory() as admindir:
    status, added = gnome_audio_database(admindir)
    rc, _, remv, log = apt_plan(status, "pulseaudio")
    check("on the simulated desktop, adding pulseaudio would remove pipewire-audio",
          "pipewire-audio" in remv, log)

    rc, log = setup(admindir)
    check("the play set-up plans without removing anything",
          rc == 0 and "Remv" not in log and re.search(r"^Inst libpulse-dev ", log, re.M), log)
    check("the play set-up asks for no sound server",
          not re.search(r"^Inst (pulseaudio|pipewire) ", log, re.M), log)

    rc, log = setup(admindir, "--test")
    check("the test set-up plans without removing anything",
          rc == 0 and "Remv" not in log and re.search(r"^Inst xdotool ", log, re.M), log)
    check("the test set-up picks the desktop's PipeWire, not pulseaudio",
          not re.search(r"\bpulseaudio\b(?!-)", log), log)

    rc, log = setup(admindir, "--test", server="pulseaudio")
    check("asked for pulseaudio anyway, it refuses and names what would go",
          rc != 0 and "would remove" in log and "pipewire-audio" in log and "Inst " not in log, log)

sys.exit(1 if failures else 0)
