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
source "$(dirname "$0")/lib.sh"
e2e_init sound "$1" "${2:-}"
# Worst delay allowed from a sound asked for to its being heard (the recorder's own few
# milliseconds included); the budget is 30 ms, the rest is room for a loaded test machine.
MAX_DELAY_MS=45
# start_sound_server NAME: a private sound server with a null sink "e2e" as the default, the
# one installed: PulseAudio first, else PipeWire with its PulseAudio service (and WirePlumber,
# which wants a session bus: it gets one of its own); the sink's monitor recorded into
# $WORK/NAME.raw (onsets.py) until the server or the test ends. One recording per run of the
# server, from its start: a null sink that nobody listens to sleeps in long blocks and would
# start a new stream late, where a real device would not.
start_sound_server() {
    SOUND_SERVER=$(command -v pulseaudio >/dev/null && echo pulseaudio || echo pipewire)
    if [ "$SOUND_SERVER" = pulseaudio ]; then
        # as root, pulseaudio refuses nothing once told not to read the system config (-n)
        # and loads only what is named
        pulseaudio --daemon -n --exit-idle-time=-1 --disallow-exit --log-target=file:"$WORK/pulseaudio.log" \
            --load=module-native-protocol-unix --load="module-null-sink sink_name=e2e" \
            || die "pulseaudio did not start: $(tail -5 "$WORK/pulseaudio.log" 2>/dev/null)"
        PULSE_STARTED=1
    else
        local bus=unix:path=$XDG_RUNTIME_DIR/bus prog
        command -v pipewire-pulse >/dev/null && command -v wireplumber >/dev/null \
            || die "no sound server to start: pipewire-pulse and wireplumber are not installed (nor pulseaudio)"
        # the bus outlives a restart of the server
        test -S "$XDG_RUNTIME_DIR/bus" ||
            spawn dbus-daemon --session --address="$bus" --nofork --nopidfile >>"$WORK/dbus.log" 2>&1
        wait_for 5 test -S "$XDG_RUNTIME_DIR/bus" || true
        PW_PIDS=()
        for prog in pipewire wireplumber pipewire-pulse; do
            spawn env DBUS_SESSION_BUS_ADDRESS="$bus" $prog >>"$WORK/$prog.log" 2>&1
            PW_PIDS+=($!)
            [ $prog != pipewire ] || sleep 0.3
        done
        wait_for 5 eval 'pactl info >/dev/null 2>&1' || true
        # the service may answer before the graph is ready for a new sink
        wait_for 5 eval 'pactl load-module module-null-sink sink_name=e2e >/dev/null 2>&1' || true
    fi
    wait_for 5 eval 'pactl set-default-sink e2e 2>/dev/null' || true
    pactl info | grep -q 'Default Sink: e2e$' || die "no null sink: $(tail -5 "$WORK/$SOUND_SERVER"*.log)"
    log "$SOUND_SERVER up: $(pactl info | grep -E 'Server Name|Default Sink' | tr '\n' ' ')"
    SINK_RAW=$WORK/$1.raw
    spawn $PYTHON "$E2E_DIR/onsets.py" record "$SINK_RAW"
    wait_for 5 eval "pactl list source-outputs 2>/dev/null | grep -q 'application.name = \"parec\"'" || true
    sleep 0.2
}
# about_box_heard KIND WHAT: the about box, which plays a sound as it opens, opened from the
# frame and closed again; its sound heard in time
about_box_heard() {
    local t name ms n=0 about
    t=$(date +%s%N)
    e2e_menu h a
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
start_sound_server first
export QUILLOP_SOUND_LOG=1
T=$(date +%s%N)
e2e_open
# The stream is open for a while after the start-up sound: the mixer sees the game's name.
check "the mixer shows the client as Quillop with the game's icon" test "$(pactl list clients |
    grep -c -e 'application.name = "Quillop"' -e 'application.icon_name = "io.github.quillop.Quillop"')" -eq 2
check "the mixer shows one stream of Quillop" test "$(our_streams | wc -l)" -eq 1
sleep 2.6
read -r peak ms < <($PYTHON "$E2E_DIR/onsets.py" heard "$SINK_RAW" "$T" "$(date +%s%N)")
check "start-up sets off a sound (peak $peak, $ms ms)" test "$peak" -ge 1000 -a "$ms" -ge 30
sleep 2.1
check "the stream is paused after a few seconds without a sound" test "$(our_streams)" = yes
for k in $(seq "${QUILLOP_SOUND_ROUNDS:-1}"); do
    [ "$k" = 1 ] || sleep 4
    about_box_heard "at rest" "the stream at rest"
    sleep 0.3
    check "the stream running: not paused a second after a sound" test "$(our_streams)" = no
    about_box_heard running "the stream running"
done

# the server killed, as a crash or a restart by the user does
if [ "$SOUND_SERVER" = pulseaudio ]; then pulseaudio --kill; else kill -9 "${PW_PIDS[@]}" 2>/dev/null || true; fi
wait_for 5 eval '! pactl info >/dev/null 2>&1' || true
sleep 1
start_sound_server restarted
sleep 2  # the game looks for the server again every second
about_box_heard restarted "the sound server restarted"
# the figures, for the benchmark
sort -t: -k1,1 -k2n "$WORK/delays" | awk -F: -v s="$SOUND_SERVER" '{ v[$1, ++n[$1]] = $2 }
    END { for (k in n) printf "%s, %s: %d sounds, median %.1f ms, worst %.1f ms\n", s, k, n[k],
        (v[k, int((n[k] + 1) / 2)] + v[k, int(n[k] / 2) + 1]) / 2, v[k, n[k]] }'
e2e_wm_close "$FRAME" || die "still running 10 s after the close"
check "the game exits with status 0" test "$GAME_RC" -eq 0
