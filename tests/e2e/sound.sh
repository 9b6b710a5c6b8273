#!/bin/bash
# Sound reaches the desktop's sound server, under the game's own name, promptly, lets the
# device rest, comes back after the server restarts, and a bad wave file in the current
# directory costs neither memory nor the sound.
#
# The game runs against a private sound server (PulseAudio, or PipeWire's PulseAudio
# service: whichever is installed) whose default sink is a null sink; its monitor is
# recorded on the wall clock, and the game logs when it asks for each sound
# (QUILLOP_SOUND_LOG), so the delay from an event to its sound is measured. It starts in a
# directory holding a "drop.wav" of one hertz and a megabyte of samples. The about box,
# which plays "arsedeath.wav" when it opens, is the event used while no game runs.
#
# As root, pulseaudio starts only with -n (no system default.pa) and the modules named on
# the command line. If no server can start this test fails: it never skips.
#
# usage: sound.sh PATH/TO/Quillop2 [ARTIFACTS_DIR]
source "$(dirname "$0")/lib.sh"
e2e_init sound "$1" "${2:-}"
ONSETS="$PYTHON $E2E_DIR/onsets.py"
# Worst delay allowed from a sound asked for to its being heard (the recorder's own few
# milliseconds included); the budget is 30 ms, the rest is room for a loaded test machine.
MAX_DELAY_MS=${QUILLOP_MAX_SOUND_DELAY_MS:-45}
# One recording per run of the server, from its start: a null sink that nobody listens to
# sleeps in long blocks and would start a new stream late, where a real device would not.
REC=""
start_recorder() { # start_recorder NAME: records until the next call or the end
    REC_RAW=$WORK/$1.raw
    $ONSETS record "$REC_RAW" &
    REC=$!
    E2E_PIDS+=($REC)
    local t
    for t in $(seq 50); do
        pactl list source-outputs 2>/dev/null | grep -q 'application.name = "parec"' && break
        sleep 0.1
    done
    sleep 0.2
}
stop_recorder() {
    [ -n "$REC" ] || return 0
    kill -TERM "$REC" 2>/dev/null || true
    wait "$REC" 2>/dev/null || true
    REC=""
}
now() { date +%s%N; }
# heard_between FROM_NS TO_NS -> "PEAK LOUD_MS" of what was recorded between two times
heard_between() { sleep 0.1; $ONSETS heard "$REC_RAW" "$1" "$2"; }
check_delays() { # check_delays WHAT FROM_NS: every sound since then heard in time
    local name ms n=0
    sleep 0.1
    while read -r name ms; do
        n=$((n + 1))
        log "  $1: $name heard after $ms ms"
        check "$1: $name heard within $MAX_DELAY_MS ms ($ms)" \
            $PYTHON -c 'import sys; sys.exit(0 if sys.argv[1] != "none" and float(sys.argv[1]) <= float(sys.argv[2]) else 1)' "$ms" "$MAX_DELAY_MS"
    done < <($ONSETS delays "$REC_RAW" "$WORK/game.log" "$2")
    check "$1: a sound asked for after silence ($n)" test "$n" -ge 1
}
our_sink_inputs() { pactl list sink-inputs | grep -c 'application.name = "Quillop"' || true; }
# "yes" or "no" for each of the game's streams: whether it is paused
our_streams_corked() { pactl list sink-inputs | awk '/^Sink Input/ {c = ""} /Corked:/ {c = $2} /application.name = "Quillop"/ {print c}'; }

e2e_start_x
e2e_start_sound_server
start_recorder first

# A wave file no event sound can be: one hertz, a megabyte of samples (resampled, gigabytes).
CWD=$WORK/cwd
mkdir -p "$CWD"
$PYTHON - "$CWD/drop.wav" <<'EOF'
import struct, sys
data = bytes(range(256)) * 4096
fmt = struct.pack("<HHIIHH", 1, 1, 1, 2, 2, 16)
body = b"WAVE" + b"fmt " + struct.pack("<I", len(fmt)) + fmt + b"data" + struct.pack("<I", len(data)) + data
open(sys.argv[1], "wb").write(b"RIFF" + struct.pack("<I", len(body)) + body)
EOF

T=$(now)
(cd "$CWD" && QUILLOP_SOUND_LOG=1 exec "$GAME_BIN") >>"$WORK/game.log" 2>&1 &
GAME_PID=$!
E2E_PIDS+=($GAME_PID)
log "game started in $CWD, pid $GAME_PID"
FRAME=$(e2e_wait_window '^Quillop' 20) || die "no frame window"
sleep 1
# The stream is open for a while after the start-up sound: the mixer sees the game's name.
clients=$(pactl list clients)
check "the mixer shows the client as Quillop with the game's icon" \
    grep -q 'application.icon_name = "io.github.quillop.Quillop"' <<<"$clients"
grep -q 'application.name = "Quillop"' <<<"$clients" || fail "no client named Quillop: $(grep application.name <<<"$clients")"
check "the mixer shows the stream as Quillop" test "$(our_sink_inputs)" -eq 1
sleep 2.5
read -r peak ms < <(heard_between "$T" "$(now)")
log "start-up: peak $peak, $ms ms loud"
check "start-up sets off a sound (peak $peak, $ms ms)" test "$peak" -ge 1000 -a "$ms" -ge 30

T=$(now)
sleep 0.6
read -r peak ms < <(heard_between "$T" "$(now)")
check "silence while nothing happens (peak $peak)" test "$peak" -lt 300
sleep 1.5
check "the stream is paused after a few seconds without a sound" test "$(our_streams_corked)" = yes

xdotool windowactivate --sync "$FRAME" >/dev/null
e2e_geometry "$FRAME"
S=$(e2e_shot ready)
read -r PX PY _ < <($PIX button "$S" "$WX,$WY,$WW,$WH" $((WX + 227)) $((WY + 210))) \
    || die "no Play button found (see $S)"
about_box() { # opens the about box (a sound), waits, closes it
    xdotool windowactivate --sync "$FRAME" >/dev/null
    xdotool key --clearmodifiers alt+h; sleep 0.4; xdotool key a
    local about
    about=$(e2e_wait_window '^About Quillop$' 5) || { fail "no about box"; return; }
    sleep 0.8
    xdotool windowactivate --sync "$about" >/dev/null; xdotool key Escape; e2e_wait_gone "$about" 5 || true
}

T=$(now)
about_box
check_delays "about box, the device at rest before" "$T"

e2e_stop_sound_server
stop_recorder
sleep 1
e2e_start_sound_server
start_recorder restarted
sleep 2  # the game looks for the server again every second
T=$(now)
about_box
check_delays "about box after the sound server restarted" "$T"
check "game still running" game_alive

T=$(now)
xdotool mousemove "$PX" "$PY" click 1
sleep 0.8
check_delays "Play with a refused drop.wav in the current directory" "$T"

hwm=$(awk '/^VmHWM/ {print int($2 / 1024)}' "/proc/$GAME_PID/status")
log "peak memory: $hwm MB"
check "memory stays under 60 MB with the bad wave file around ($hwm MB)" test "$hwm" -lt 60

e2e_wm_close "$FRAME"
if e2e_wait_exit 10; then pass "the game exits (status $GAME_RC)"; else fail "still running after the close"; fi
check "the game exits with status 0" test "${GAME_RC:-1}" -eq 0
