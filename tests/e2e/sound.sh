#!/bin/bash
# Sound reaches the audio server: the game runs against a private PulseAudio
# whose default sink is a null sink; the sink's monitor is recorded while
# Play is pressed (the serve plays "drop.wav"), and the recording must hold
# sound.  The about box, which plays "arsedeath.wav" when it opens, is checked first,
# while no game runs, so that nothing else can make a noise.
#
# As root, pulseaudio starts only with -n (no system default.pa) and the
# modules named on the command line; it warns that it is not meant for root
# and then works.  If it cannot start this test fails: it never skips.
#
# usage: sound.sh PATH/TO/Quillop2 [ARTIFACTS_DIR]
source "$(dirname "$0")/lib.sh"
e2e_init sound "$1" "${2:-}"
e2e_start_x
e2e_start_pulse
# record SECONDS FILE command...: the monitor of the null sink while the
# command runs; low latency so that a stopped parec has written it all.
record() {
    local secs=$1 out=$2; shift 2
    parec -d e2e.monitor --format=s16le --rate=44100 --channels=2 --latency-msec=20 >"$out" &
    local rec=$!
    sleep 0.5
    "$@"
    sleep "$secs"
    kill -INT "$rec"; wait "$rec" 2>/dev/null || true
}

# loudness FILE -> "RMS PEAK LOUD_MS" of the s16 stereo recording
loudness() {
    $PYTHON - "$1" <<'EOF'
import array, math, sys
a = array.array("h", open(sys.argv[1], "rb").read())
if not a:
    print(0, 0, 0); sys.exit()
rms = math.sqrt(sum(x * x for x in a) / len(a))
block = 441 * 2                     # 10 ms of stereo frames
loud = sum(1 for i in range(0, len(a), block) if max(map(abs, a[i:i + block])) > 300)
print("%.1f %d %d" % (rms, max(map(abs, a)), loud * 10))
EOF
}

# Start-up prepares a game, which plays "begin.wav"; recording until it has
# ended also leaves the later recordings to what the clicks set off.
record 3.5 "$WORK/start.raw" e2e_start_game
FRAME=$(e2e_wait_window '^Quillop' 20) || die "no frame window"
read -r rms peak ms < <(loudness "$WORK/start.raw")
log "start-up: rms $rms peak $peak, $ms ms loud"
check "start-up sets off a sound (peak $peak, $ms ms)" test "$peak" -ge 1000 -a "$ms" -ge 30
xdotool windowactivate --sync "$FRAME" >/dev/null
e2e_geometry "$FRAME"
S=$(e2e_shot ready)
read -r PX PY _ < <($PIX button "$S" "$WX,$WY,$WW,$WH" $((WX + 227)) $((WY + 210))) \
    || die "no Play button found (see $S)"

record 0.5 "$WORK/idle.raw" true
read -r rms peak ms < <(loudness "$WORK/idle.raw")
log "idle: rms $rms peak $peak, $ms ms loud"
check "silence while nothing happens (peak $peak)" test "$peak" -lt 300

xdotool windowactivate --sync "$FRAME" >/dev/null
open_about() { xdotool key --clearmodifiers alt+h; sleep 0.4; xdotool key a; }
record 1.5 "$WORK/about.raw" open_about
read -r rms peak ms < <(loudness "$WORK/about.raw")
log "about box: rms $rms peak $peak, $ms ms loud"
check "opening the about box sets off a sound (peak $peak)" test "$peak" -ge 1000 -a "$ms" -ge 30
ABOUT=$(e2e_wait_window '^About Quillop$' 5) && { xdotool windowactivate --sync "$ABOUT" >/dev/null; xdotool key Escape; e2e_wait_gone "$ABOUT" 5; } \
    || fail "no about box to close"
sleep 1


record 1.5 "$WORK/play.raw" xdotool mousemove "$PX" "$PY" click 1
cp "$WORK/play.raw" "$ART/play.s16le-44100-stereo.raw"
read -r rms peak ms < <(loudness "$WORK/play.raw")
log "after Play: rms $rms peak $peak, $ms ms loud"
check "Play sets off a sound (peak $peak, $ms ms above the noise floor)" \
    test "$peak" -ge 1000 -a "$ms" -ge 30
check "game still running" game_alive


e2e_wm_close "$FRAME"
if e2e_wait_exit 10; then pass "the game exits (status $GAME_RC)"; else fail "still running after the close"; fi
check "the game exits with status 0" test "${GAME_RC:-1}" -eq 0
