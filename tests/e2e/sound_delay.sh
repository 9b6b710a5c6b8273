#!/bin/bash
# Benchmark: the delay from an event to its sound, on a private sound server's null sink.
# The about box (which plays a sound as it opens) is opened and closed ROUNDS times with the
# stream running, then ROUNDS times more after the stream has gone to rest; each sound's delay
# runs from the game's request (QUILLOP_SOUND_LOG) to the recording's first loud read (see
# onsets.py). Prints every figure and the median and worst of each kind.
#
# usage: sound_delay.sh PATH/TO/Quillop2 [ROUNDS]
#   QUILLOP_E2E_SOUND_SERVER=pipewire|pulseaudio picks the server (default: the installed one)
source "$(dirname "$0")/lib.sh"
e2e_init sound_delay "$1" "${TMPDIR:-/tmp}/quillop-sound-delay"
e2e_start_x
e2e_start_sound_server
e2e_record_sink all
export QUILLOP_SOUND_LOG=1
e2e_start_game
FRAME=$(e2e_wait_window '^Quillop' 20) || die "no frame window"
sleep 1.5
for kind in running:0.3 rested:4; do
    for _ in $(seq "${2:-8}"); do
        sleep "${kind#*:}"
        t=$(date +%s%N)
        e2e_about_box
        sleep 0.2
        $PYTHON "$E2E_DIR/onsets.py" delays "$SINK_RAW" "$WORK/game.log" "$t" 2>/dev/null |
            sed "s/^[^ ]*/${kind%:*}/" | tee -a "$WORK/delays"
    done
    awk -v k="${kind%:*}" '$1 == k { print $2 }' "$WORK/delays" | sort -n | awk -v k="${kind%:*}" -v s="$SOUND_SERVER" '
        $1 == "none" { none++; next } { v[++n] = $1 }
        END { if (n) printf "%s, stream %s: %d sounds, median %.1f ms, worst %.1f ms, none heard: %d\n",
                            s, k, n, (v[int((n + 1) / 2)] + v[int(n / 2) + 1]) / 2, v[n], none }'
done
e2e_wm_close "$FRAME"
e2e_wait_exit 10 || true
