#!/bin/bash
# Benchmark, not a test: prints figures and fails only when it cannot measure.
#   start-up: launch to the frame being mapped, and to the Play button being drawn (first
#             screen grab that shows it), over RUNS launches
#   playing:  CPU of the game (and of the X server) over SECONDS of play, as a percentage of
#             one core, from utime+stime in /proc/PID/stat; then the game's CPU while the
#             pointer sweeps the field 50 times a second
#   memory:   VmRSS and VmHWM of the game after the play
#   pace:     how many times a second the playfield's pixels change
#   replayed: the game's CPU while it replays the same game (seed 11, the paddle off the
#             field, a serve after every loss): what one build costs against another,
#             without the chance of a live game's course
#
# usage: perf.sh PATH/TO/Quillop2 [ARTIFACTS_DIR]   (env: RUNS=3 SECONDS_PLAYED=10)
source "$(dirname "$0")/lib.sh"
e2e_init perf "$1" "${2:-}"
e2e_start_x
XPID=${E2E_PIDS[0]}  # Xvfb
RUNS=${RUNS:-3}
PLAY_S=${SECONDS_PLAYED:-10}
ms_since() { echo $(( ($(date +%s%N) - $1) / 1000000 )); }
cpu() { awk '{print $14 + $15}' "/proc/$1/stat"; }
status() { awk -v k="$1:" '$1 == k {print $2}' "/proc/$GAME_PID/status"; }
median() { printf '%s\n' "$@" | sort -n | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}'; }
pct() { awk -v t="$1" -v ms="$2" -v hz="$(getconf CLK_TCK)" 'BEGIN { printf "%.1f", 100 * t / hz / (ms / 1000) }'; }
# during COMMAND...: runs it; then GAME_CPU and X_CPU are the game's and Xvfb's share of one
# core meanwhile, and TOOK how many ms it ran
during() {
    local g0 x0 t0
    g0=$(cpu "$GAME_PID") x0=$(cpu "$XPID") t0=$(date +%s%N)
    "$@"
    TOOK=$(ms_since "$t0")
    GAME_CPU=$(pct $(($(cpu "$GAME_PID") - g0)) "$TOOK") X_CPU=$(pct $(($(cpu "$XPID") - x0)) "$TOOK")
}
MAPPED=() DRAWN=()
for run in $(seq "$RUNS"); do
    rm -rf "$XDG_CONFIG_HOME/Quillop"          # every launch from an empty home
    e2e_start_game
    until FRAME=$(xdotool search --onlyvisible --name '^Quillop' 2>/dev/null | head -1) && [ -n "$FRAME" ]; do
        game_alive || die "the game ended before its frame showed"
        sleep 0.005
    done
    MAPPED+=("$(ms_since "$GAME_T0")")
    e2e_geometry "$FRAME"
    seen=$($PIX waitlit $((WX + 227)) $((WY + 210)) 10) || die "the Play button never showed at $((WX + 227)),$((WY + 210))"
    DRAWN+=("$(( (seen - GAME_T0) / 1000000 ))")
    log "launch $run: mapped ${MAPPED[-1]} ms, Play drawn ${DRAWN[-1]} ms"
    if [ "$run" -lt "$RUNS" ]; then e2e_wm_close "$FRAME" || die "no exit"; fi
done

# --- a game of PLAY_S seconds ----------------------------------------------
e2e_find_frame
e2e_find_play ready
rss_ready=$(status VmRSS)
xdotool mousemove "$PX" "$PY" click 1 mousemove "$PX" $((PY + 110))
sleep 0.2
wiggle() {  # the paddle wiggled now and then, as a player would
    for _ in $(seq $((PLAY_S * 2))); do
        xdotool mousemove_relative -- $((RANDOM % 41 - 20)) 0
        sleep 0.5
    done
}
during wiggle
PLAYED="game $GAME_CPU% of one core, Xvfb $X_CPU%"
# then the pointer sweeps to and fro across the field, 50 moves a second as a player's mouse
# reports them, from one xdotool so that starting it costs nothing per move
SWEEP=()
for i in $(seq 0 $((PLAY_S * 50 - 1))); do
    k=$((i % 60)); [ $k -lt 30 ] || k=$((60 - k))
    SWEEP+=(mousemove $((PX - 150 + k * 10)) $((PY + 110)) sleep 0.02)
done
during xdotool "${SWEEP[@]}"
SWEPT="game $GAME_CPU% of one core ($((PLAY_S * 50)) moves in $TOOK ms)"
game_alive || die "the game died while playing"
e2e_shot playing >/dev/null
# The field is repainted once per tick: how often its pixels change gives the tick pace from
# outside (a lower bound: a tick that changes nothing visible is not seen). Measured after the
# CPU figures, as the polling itself loads the X server.
read -r redraws grabs < <($PIX changes "$((WX + 8)),$((PY - 150)),$((WW - 16)),260" 3)

memory="VmRSS $((rss_ready / 1024)) MB ready, $(($(status VmRSS) / 1024)) MB playing; VmHWM $(($(status VmHWM) / 1024)) MB; $(status Threads) threads"
e2e_wm_close "$FRAME" || fail "no exit after the close"

# --- the same recorded game, replayed ---------------------------------------
{ printf '# Quillop recorded game\nsize 440 300\nseed 11\nhighscore 1000000\nhighscorer Ormswell\nmove -500 -500\n'
  for _ in $(seq 20); do printf 'play\n'; for _ in 1 2 3 4; do printf 'tick 150\ndrop\n'; done; done; } > "$WORK/roam.scn"
e2e_start_game --replay "$WORK/roam.scn"
REPLAY=$(e2e_wait_window '^Quillop' 20) || die "the replay showed no frame"
sleep 2
during sleep "$PLAY_S"
REPLAYED="game $GAME_CPU% of one core (the same ${PLAY_S}s of play on every run)"
game_alive || die "the game died while replaying"
e2e_shot replayed >/dev/null

echo "=== Quillop2 under Xvfb 1280x1024 + openbox, $(nproc) cores ==="
echo "start-up to frame mapped:   $(median "${MAPPED[@]}") ms median (${MAPPED[*]})"
echo "start-up to Play drawn:     $(median "${DRAWN[@]}") ms median (${DRAWN[*]})"
echo "CPU while playing ${PLAY_S}s:     $PLAYED"
echo "CPU, pointer sweeping:      $SWEPT"
echo "memory:                     $memory"
echo "field redraws:              $redraws a second (of $grabs screen polls a second; the tick pace, seen from outside)"
echo "CPU, a game replayed:       $REPLAYED"
e2e_wm_close "$REPLAY" || fail "no exit after the replay's close"
