#!/bin/bash
# Sound reaches the desktop's sound server under the game's own name, promptly, lets the
# device rest, and comes back after the server restarts.
#
# The game runs against a private sound server (PulseAudio, or PipeWire's PulseAudio service:
# whichever is installed) whose default sink is a null sink; its monitor is recorded on the
# wall clock, and the game logs when it asks for each sound (QUILLOP_SOUND_LOG), so the delay
# from an event to its sound is measured. The about box, which plays a sound as it opens, is
# the event, with the stream at rest and with it running. If no server can start this test
# fails: it never skips.
#
# usage: sound.sh PATH/TO/Quillop2 [ARTIFACTS_DIR]
#   QUILLOP_SOUND_ROUNDS=8: a benchmark of the delays as well, the about box opened that many
#   times in each state, the median and worst of each printed
#   QUILLOP_E2E_SOUND_SERVER=pipewire|pulseaudio picks the server (default: the installed one)
source "$(dirname "$0")/lib.sh"
e2e_init sound "$1" "${2:-}"
# Worst delay allowed from a sound asked for to its being heard (the recorder's own few
# milliseconds included); the budget is 30 ms, the rest is room for a loaded test machine.
MAX_DELAY_MS=${QUILLOP_MAX_SOUND_DELAY_MS:-45}
ROUNDS=${QUILLOP_SOUND_ROUNDS:-1}
# record_sink NAME: records the null sink's monitor into $WORK/NAME.raw (onsets.py) until the
# server or the test ends. One recording per run of the server, from its start: a null sink
# that nobody listens to sleeps in long blocks and would start a new stream late, where a real
# device would not.
record_sink() {
    SINK_RAW=$WORK/$1.raw
    $PYTHON "$E2E_DIR/onsets.py" record "$SINK_RAW" &
    E2E_PIDS+=($!)
    wait_for 5 eval "pactl list source-outputs 2>/dev/null | grep -q 'application.name = \"parec\"'" || true
    sleep 0.2
}
heard_since() { # heard_since NS -> "PEAK LOUD_MS" of what was recorded since then
    sleep 0.1
    $PYTHON "$E2E_DIR/onsets.py" heard "$SINK_RAW" "$1" "$(date +%s%N)"
}
# about_box_heard KIND WHAT: the about box, which plays a sound as it opens, opened from the
# frame and closed again; its sound heard in time
about_box_heard() {
    local t name ms n=0 about
    t=$(date +%s%N)
    xdotool windowactivate --sync "$FRAME" >/dev/null
    xdotool key --clearmodifiers alt+h; sleep 0.4; xdotool key a
    about=$(e2e_wait_window '^About Quillop$' 5) || die "no about box"
    sleep 0.6
    xdotool windowactivate --sync "$about" >/dev/null; xdotool key Escape; e2e_wait_gone "$about" 5 || true
    sleep 0.1
    while read -r name ms; do
        n=$((n + 1))
        echo "$1:$ms" >>"$WORK/delays"
        check "$2: $name heard within $MAX_DELAY_MS ms ($ms)" within "$MAX_DELAY_MS" "$ms" 0
    done < <($PYTHON "$E2E_DIR/onsets.py" delays "$SINK_RAW" "$WORK/game.log" "$t")
    check "$2: a sound asked for after silence" test "$n" -ge 1
}
# the game's streams on the server, one line each: "yes" when the stream is paused (corked)
our_streams() { pactl list sink-inputs | awk '/^Sink Input/ {c = ""} /Corked:/ {c = $2} /application.name = "Quillop"/ {print c}'; }

e2e_start_x
e2e_start_sound_server
record_sink first
export QUILLOP_SOUND_LOG=1
T=$(date +%s%N)
e2e_start_game
FRAME=$(e2e_wait_window '^Quillop' 20) || die "no frame window"
sleep 1
# The stream is open for a while after the start-up sound: the mixer sees the game's name.
check "the mixer shows the client as Quillop with the game's icon" test "$(pactl list clients |
    grep -c -e 'application.name = "Quillop"' -e 'application.icon_name = "io.github.quillop.Quillop"')" -eq 2
check "the mixer shows one stream of Quillop" test "$(our_streams | wc -l)" -eq 1
sleep 2.5
read -r peak ms < <(heard_since "$T")
check "start-up sets off a sound (peak $peak, $ms ms)" test "$peak" -ge 1000 -a "$ms" -ge 30
T=$(date +%s%N)
sleep 0.6
read -r peak ms < <(heard_since "$T")
check "silence while nothing happens (peak $peak)" test "$peak" -lt 300
sleep 1.5
check "the stream is paused after a few seconds without a sound" test "$(our_streams)" = yes
for k in $(seq "$ROUNDS"); do
    [ "$k" = 1 ] || sleep 4
    about_box_heard "at rest" "the stream at rest"
done
for _ in $(seq "$ROUNDS"); do
    sleep 0.3
    check "the stream running: not paused a second after a sound" test "$(our_streams)" = no
    about_box_heard running "the stream running"
done

e2e_stop_sound_server
sleep 1
e2e_start_sound_server
record_sink restarted
sleep 2  # the game looks for the server again every second
about_box_heard restarted "the sound server restarted"
# the figures, for the benchmark
sort -t: -k1,1 -k2n "$WORK/delays" | awk -F: -v s="$SOUND_SERVER" '$1 != k { show(); k = $1; n = 0 } { v[++n] = $2 }
    function show() { if (n) printf "%s, %s: %d sounds, median %.1f ms, worst %.1f ms\n", s, k, n, (v[int((n + 1) / 2)] + v[int(n / 2) + 1]) / 2, v[n] }
    END { show() }'
e2e_wm_close "$FRAME"
e2e_wait_exit 10 || die "still running 10 s after the close"
check "the game exits with status 0" test "$GAME_RC" -eq 0
