#!/bin/bash
# Benchmark: the delay from an event to its sound, on a private sound server's null sink.
# The about box (which plays "arsedeath.wav" as it opens) is opened and closed ROUNDS times
# with the stream running, then ROUNDS times more after the stream has gone to rest; each
# sound's delay runs from the game's request (QUILLOP_SOUND_LOG) to the recording's first
# loud read (see onsets.py). Prints every figure and the median and worst of each kind.
#
# usage: sound_delay.sh PATH/TO/Quillop2 [ROUNDS]
#   QUILLOP_E2E_SOUND_SERVER=pipewire|pulseaudio picks the server (default: the installed one)
source "$(dirname "$0")/lib.sh"
e2e_init sound_delay "$1" "${TMPDIR:-/tmp}/quillop-sound-delay"
ROUNDS=${2:-8}
e2e_start_x
e2e_start_sound_server
$PYTHON "$E2E_DIR/onsets.py" record "$WORK/rec.raw" &
E2E_PIDS+=($!)
sleep 0.5
export QUILLOP_SOUND_LOG=1
e2e_start_game
FRAME=$(e2e_wait_window '^Quillop' 20) || die "no frame window"
sleep 1.5

about_box() {
    xdotool windowactivate --sync "$FRAME" >/dev/null
    xdotool key --clearmodifiers alt+h; sleep 0.3; xdotool key a
    local about
    about=$(e2e_wait_window '^About Quillop$' 5) || die "no about box"
    sleep 0.5
    xdotool windowactivate --sync "$about" >/dev/null; xdotool key Escape; e2e_wait_gone "$about" 5 || true
}
measure() { # measure KIND PAUSE_S
    local k
    for k in $(seq "$ROUNDS"); do
        sleep "$2"
        local t; t=$(date +%s%N)
        about_box
        sleep 0.2
        $PYTHON "$E2E_DIR/onsets.py" delays "$WORK/rec.raw" "$WORK/game.log" "$t" 2>/dev/null \
            | awk -v kind="$1" '{print kind, $2}' | tee -a "$WORK/delays"
    done
}
measure running 0.3
measure rested 4
$PYTHON - "$WORK/delays" "$SOUND_SERVER" <<'EOF'
import statistics, sys
rows = [l.split() for l in open(sys.argv[1])]
for kind in ("running", "rested"):
    ms = [float(v) for k, v in rows if k == kind and v != "none"]
    missed = sum(1 for k, v in rows if k == kind and v == "none")
    if ms:
        print("%s, stream %s: %d sounds, median %.1f ms, worst %.1f ms, none heard: %d"
              % (sys.argv[2], kind, len(ms), statistics.median(ms), max(ms), missed))
EOF
e2e_wm_close "$FRAME"
e2e_wait_exit 10 || true
