#!/usr/bin/env python3
# When sounds were heard: a recording of the null sink's monitor, timed on the wall clock,
# and the delays from the game's logged sound requests to what the recording holds.
#
#   onsets.py record RAW               records s16 mono 44100 Hz until SIGTERM or the server's
#                                      end; writes RAW and RAW.times (arrival time of each read, bytes so far) as it goes
#   onsets.py heard RAW FROM_NS TO_NS  "PEAK LOUD_MS" between two wall-clock times
#   onsets.py delays RAW GAME_LOG FROM_NS
#                                      one line per logged request (quillop-sound NS NAME) after
#                                      FROM_NS that follows 100 ms of silence: "NAME DELAY_MS", or
#                                      "NAME none" when nothing was heard within 500 ms
#
# A sound's delay runs from its request to the arrival of the read that holds its first loud
# sample: the recorder's own delay (a read every few milliseconds) only ever adds to it.
# Requests made while another sound is still heard are left out: their onset cannot be told.
# A null sink with nothing to play may send nothing, so samples are placed in time by their
# reads, not by their count.

import array
import os
import signal
import subprocess
import sys
import time

RATE = 44100
LOUD = 300  # above the null sink's silence and any dither
MS = 1_000_000


def record(raw):
    parec = subprocess.Popen(["parec", "-d", "e2e.monitor", "--format=s16le", "--rate=%d" % RATE,
                              "--channels=1", "--latency-msec=2"], stdout=subprocess.PIPE)
    signal.signal(signal.SIGTERM, lambda *_: parec.terminate())  # its output then ends
    # unbuffered, so that the recording can be read while it goes on
    with open(raw, "wb", buffering=0) as out, open(raw + ".times", "w", buffering=1) as times:
        for chunk in iter(lambda: os.read(parec.stdout.fileno(), 4096), b""):
            out.write(chunk)
            times.write("%d %d\n" % (time.time_ns(), out.tell()))


def load(raw):
    # the samples, and the reads as (arrival time, samples so far)
    samples = array.array("h", open(raw, "rb").read())
    reads = [(int(f[0]), min(int(f[1]) // 2, len(samples))) for f in map(str.split, open(raw + ".times"))
             if len(f) == 2]  # the last line may be half written: its count is cut to the samples
    return samples, reads


def arrived(reads, from_ns, to_ns):
    # the samples that arrived between two times, as a slice
    begin = max((n for now, n in reads if now <= from_ns), default=0)
    return slice(begin, max(begin, max((n for now, n in reads if now <= to_ns), default=0)))


def heard(raw, from_ns, to_ns):
    samples, reads = load(raw)
    part = samples[arrived(reads, from_ns, to_ns)]
    # how long it was loud, in blocks of 10 ms
    loud = sum(max(map(abs, part[i:i + RATE // 100])) > LOUD for i in range(0, len(part), RATE // 100))
    print(max(map(abs, part), default=0), loud * 10)


def delays(raw, log, from_ns):
    samples, reads = load(raw)
    for f in map(str.split, open(log, errors="replace")):
        if len(f) != 3 or f[0] != "quillop-sound" or int(f[1]) < from_ns:
            continue
        ns, name = int(f[1]), f[2]
        if not reads or ns + 500 * MS > reads[-1][0]:
            print(name, "asked for too near the end of the recording", file=sys.stderr)
        elif max(map(abs, samples[arrived(reads, ns - 100 * MS, ns)]), default=0) > LOUD:
            print(name, "asked for while another sound still played", file=sys.stderr)
        else:
            part = arrived(reads, ns, ns + 500 * MS)
            onset = next((k for k in range(part.start, part.stop) if abs(samples[k]) > LOUD), None)
            came = onset is not None and next(now for now, n in reads if n > onset)
            print(name, "none" if onset is None else "%.1f" % ((came - ns) / MS))


if __name__ == "__main__":
    cmd, raw, *rest = sys.argv[1:]
    {"record": record, "heard": heard, "delays": delays}[cmd](raw, *(int(a) if a.isdigit() else a for a in rest))
