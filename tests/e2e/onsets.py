#!/usr/bin/env python3
"""When sounds were heard: a recording of the null sink's monitor, timed on the wall clock,
and the delays from the game's logged sound requests to what the recording holds.

  onsets.py record RAW               records s16 mono 44100 Hz until SIGTERM/SIGINT; writes
                                     RAW and RAW.times (arrival time and size of each read)
                                     as it goes
  onsets.py heard RAW FROM_NS TO_NS  "PEAK LOUD_MS" between two wall-clock times
  onsets.py delays RAW GAME_LOG [FROM_NS]
                                     one line per logged request (quillop-sound NS NAME) that
                                     follows 100 ms of silence: "NAME DELAY_MS", or
                                     "NAME none" when nothing was heard within 500 ms

A sound's delay runs from its request to the arrival of the read that holds its first loud
sample: the recorder's own delay (a read every few milliseconds) only ever adds to it.
Requests made while another sound is still heard are left out: their onset cannot be told."""
import array
import os
import signal
import subprocess
import sys
import time

RATE = 44100
LOUD = 300          # above the null sink's silence and any dither
QUIET_BEFORE_MS = 100
ANSWER_WITHIN_MS = 500


def record(raw):
    parec = subprocess.Popen(["parec", "-d", "e2e.monitor", "--format=s16le", "--rate=%d" % RATE,
                              "--channels=1", "--latency-msec=2"], stdout=subprocess.PIPE)
    stop = []
    signal.signal(signal.SIGTERM, lambda *_: stop.append(1))
    signal.signal(signal.SIGINT, lambda *_: stop.append(1))
    total = 0
    # Unbuffered, so that the recording can be read while it goes on.
    with open(raw, "wb", buffering=0) as out, open(raw + ".times", "w", buffering=1) as times:
        fd = parec.stdout.fileno()
        while not stop:
            try:
                chunk = os.read(fd, 4096)
            except InterruptedError:
                continue
            now = time.time_ns()
            if not chunk:
                break
            out.write(chunk)
            total += len(chunk)
            times.write("%d %d\n" % (now, total))
    parec.terminate()
    parec.wait()


def load(raw):
    """The samples and the reads as (arrival time, samples so far). A null sink with nothing
    to play may send nothing, so the samples are placed in time by their reads, not by their
    count."""
    samples = array.array("h", open(raw, "rb").read())
    reads = []
    with open(raw + ".times") as times:
        for line in times:
            f = line.split()
            if len(f) == 2 and line.endswith("\n"):  # the last line may be half written
                reads.append((int(f[0]), min(int(f[1]) // 2, len(samples))))
    return samples, reads


def arrived(reads, from_ns, to_ns):
    """The samples that arrived between two times, as a range of indexes."""
    first = next((k for k, (now, _) in enumerate(reads) if now > from_ns), len(reads))
    begin = reads[first - 1][1] if first > 0 else 0
    end = max((n for now, n in reads if now <= to_ns), default=0)
    return begin, max(begin, end)


def heard(raw, from_ns, to_ns):
    samples, reads = load(raw)
    part = samples[slice(*arrived(reads, from_ns, to_ns))]
    peak = max(map(abs, part), default=0)
    block = RATE // 100
    loud = sum(1 for i in range(0, len(part), block) if max(map(abs, part[i:i + block])) > LOUD)
    print(peak, loud * 10)


def delays(raw, log, from_ns=0):
    samples, reads = load(raw)
    last = reads[-1][0] if reads else 0
    for line in open(log, errors="replace"):
        f = line.split()
        if len(f) != 3 or f[0] != "quillop-sound" or int(f[1]) < from_ns:
            continue
        ns, name = int(f[1]), f[2]
        if ns + ANSWER_WITHIN_MS * 1_000_000 > last:
            print("%s: asked for too near the end of the recording" % name, file=sys.stderr)
            continue
        before = samples[slice(*arrived(reads, ns - QUIET_BEFORE_MS * 1_000_000, ns))]
        if max(map(abs, before), default=0) > LOUD:
            print("%s: another sound still playing" % name, file=sys.stderr)
            continue
        begin, end = arrived(reads, ns, ns + ANSWER_WITHIN_MS * 1_000_000)
        onset = next((k for k in range(begin, end) if abs(samples[k]) > LOUD), None)
        if onset is None:
            print(name, "none")
            continue
        came = next(now for now, n in reads if n > onset)
        print(name, "%.1f" % ((came - ns) / 1e6))


if __name__ == "__main__":
    cmd = sys.argv[1]
    if cmd == "record":
        record(sys.argv[2])
    elif cmd == "heard":
        heard(sys.argv[2], int(sys.argv[3]), int(sys.argv[4]))
    elif cmd == "delays":
        delays(sys.argv[2], sys.argv[3], int(sys.argv[4]) if len(sys.argv) > 4 else 0)
    else:
        sys.exit(__doc__)
