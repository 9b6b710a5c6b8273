#!/bin/bash
# A game played with the real pointer is kept, and plays back exactly.  The game runs with
# --trace and no sound server (it has to run silently without one); the player moves the
# pointer all the time (some moves land in the explosion's waits), drops mines, opens and
# closes the help window, minimises and restores the frame, resizes it, answers New Game No
# and then Yes, and plays a second game to its end, typing a name into Congrats! and clicking
# its OK; the window manager shows the dialog centred, and the help's place is stored.  Then:
# quillop-sim on the kept recording prints the window's own trace, byte for byte; the
# window's replay of it (with three snapshots put in) prints it too, and its snapshots are
# quillop-sim's, pixel for pixel.  A recording edited by hand is refused at its line, and
# the frame still closes while the message says so.
#
# usage: QUILLOP_SIM=PATH/TO/quillop-sim record_replay.sh PATH/TO/Quillop2 [ARTIFACTS_DIR]
source "$(dirname "$0")/lib.sh"
e2e_init record_replay "$1" "${2:-}"
SIM=$(readlink -f "${QUILLOP_SIM:-}") && [ -x "$SIM" ] || die "no quillop-sim at QUILLOP_SIM '${QUILLOP_SIM:-}'"
e2e_start_x
REPLAYS=$HOME/.local/share/Quillop/replays

e2e_open --trace "$WORK/window.trace"
e2e_find_play 01-ready

# sweep SECONDS: the pointer sweeps the lower field, 50 moves a second, as a player's hand does
sweep() {
    xdotool $(for ((k = 0; k < $1 * 50; k++)); do
        echo mousemove $((PFX + 20 + (k * 37) % (PFW - 40))) $((PFY + PFH - 30 - (k * 13) % 60)) sleep 0.02; done)
}
new_game() { # new_game y|n: File, New Game, and the answer
    e2e_menu f n
    BOX=$(e2e_wait_window '^Quillop$' 5) || return 1
    sleep 0.5   # ticks run while the question is up
    xdotool windowactivate --sync "$BOX" >/dev/null; xdotool key --clearmodifiers "alt+$1"
    e2e_wait_gone "$BOX" 5
}

# --- first game: pointer, mines, a lost puck, the windows ------------------
xdotool mousemove "$PX" "$PY" click 1
sleep 0.1; xdotool mousemove $((PFX + PFW / 2)) $((PFY + PFH / 2)) click 1   # a mine
sweep 3                       # the unguided puck is lost meanwhile; Drop waits
e2e_shot 02-playing >/dev/null
e2e_menu h h
HELP=$(e2e_wait_window '^Help$' 10) || die "no Help window"
sleep 0.5; e2e_geometry "$HELP"
OL=$(( (WX - FL) * 15 )) OT=$(( (WY - FT) * 15 )) CL=$((WX * 15)) CT=$((WY * 15))   # its place in twips, outer or client
xdotool mousemove $((WX + 308)) $((WY + 396)) click 1   # Close
e2e_wait_gone "$HELP" 5 || die "Close did not close the help window"
xdotool windowminimize --sync "$FRAME"; sleep 0.5
xdotool windowactivate --sync "$FRAME" >/dev/null; sleep 0.5
xdotool windowsize --sync "$FRAME" $((FW + 40)) $((FH + 24)); sleep 0.5
e2e_find_frame
new_game n || die "New Game asked nothing while a game was running"
new_game y || die "New Game asked nothing the second time"

# --- second game, played to its end ---------------------------------------
e2e_find_play 03-second-ready
T0=$(date +%s)
until CONGRATS=$(xdotool search --onlyvisible --name '^Congrats!$' 2>/dev/null | head -1) && [ -n "$CONGRATS" ]; do
    (( $(date +%s) - T0 < 90 )) || die "no Congrats! within 90 s"
    xdotool mousemove "$PX" "$PY" click 1   # Play, Drop, or a mine
    sweep 1
done
sleep 0.5; e2e_geometry "$CONGRATS"
check "Congrats!: centred on the screen with its decorations" \
    eval 'within 5 $((WX + (WW + FR - FL) / 2)) 640 && within 5 $((WY + (WH + FB - FT) / 2)) 512'
# no control box: no minimise, maximise or close asked of the window manager (Motif
# functions 8, 16, 32; 1 would be all); openbox draws its buttons anyway
read -r flags funcs _ <<<"$(xprop -id "$CONGRATS" _MOTIF_WM_HINTS | sed -n 's/.*= *//p' | tr -d ',')"
check "Congrats!: no minimise, maximise or close asked for" bash -c "(( (${flags:-0} & 1) && (${funcs:-1} & 57) == 0 ))"
xdotool windowactivate --sync "$CONGRATS" key ctrl+a; xdotool type --delay 30 "Replayer"
# OK (2520, 1440 twips, 97x25 px) clicked with the real pointer: press, a pause in which the
# pressed button repaints, release
xdotool mousemove $((WX + 216)) $((WY + 108)) mousedown 1; sleep 0.3; xdotool mouseup 1
check "the caption names the new holder" \
    wait_for 3 eval "xdotool getwindowname $FRAME | grep -q '^Quillop High Score by Replayer - [1-9][0-9]*\$'"
wait_for 10 eval 'ls "$REPLAYS"/*.scn >/dev/null 2>&1' || die "no recording kept at the game's end"
e2e_shot 04-game-over >/dev/null
e2e_wm_close "$FRAME" || die "the game did not end on close"
cp "$CONF" "$WORK/settings-after-play.conf" || die "no settings file after the game"
NAME=$(conf_get Gorvane Highscorer)
check "the name entered with a click on OK is stored ($NAME)" test "$NAME" = Replayer
check "stored [Help] Left and Top where the window manager put it, within 3 px" \
    eval 'within 45 "$(conf_get Help Left)" $OL $CL && within 45 "$(conf_get Help Top)" $OT $CT'

REC=$(ls "$REPLAYS"/*.scn | head -1)
cp "$REC" "$ART/recording.scn"; cp "$WORK/window.trace" "$ART/window.trace"
# what the game was put through reached the recording: a move inside the explosion's waits,
# the question answered both ways, the windows
for c in 'during [0-9]+ move ' 'answer no' 'answer yes' help closehelp minimize restore 'resize ' 'press '; do
    check "the recording has '$c'" grep -Eq "^(during [0-9]+ )?$c" "$REC"
done
check "the recording ends with the score reached, which quillop-sim checks" grep -q '^expect ' <(tail -1 "$REC")
"$SIM" "$REC" > "$WORK/sim.trace" || die "quillop-sim refused the recording (exit $?)"
N=$(wc -l < "$WORK/sim.trace")
check "quillop-sim prints the window's trace byte for byte ($N ticks)" \
    cmp -s "$WORK/sim.trace" <(head -n "$N" "$WORK/window.trace")

# --- the window's replay, with snapshots at three ticks ---------------------
AT=($($PYTHON "$E2E_DIR/replay_check.py" "$WORK/sim.trace" "$REC" "$WORK/shots.scn" "$ART"))
# the snapshots taken headless first, and put aside for the window's
"$SIM" "$WORK/shots.scn" >/dev/null && mkdir "$WORK/sim" && mv "$ART"/replay-*.png "$WORK/sim/" ||
    die "quillop-sim refused its snapshots"
e2e_start_game --replay "$WORK/shots.scn" --trace "$WORK/replay.trace"
wait_for 180 eval "grep -q 'played to its end\|does not play back' '$WORK/game.log' || ! game_alive" ||
    die "the replay did not reach its end within 180 s"
e2e_shot 05-replay-end >/dev/null
check "the replay plays to its end" grep -q 'played to its end' "$WORK/game.log"
e2e_wm_close "$(xdotool search --onlyvisible --name '^Quillop High Score by ' | head -1)" || die "the replay did not end on close"
check "the window's replay prints the same trace" cmp -s "$WORK/sim.trace" "$WORK/replay.trace"
# The window shows, pixel for pixel, what quillop-sim paints (what it paints is tested against
# the rules in tests/shell and tests/sim).
for t in "${AT[@]}"; do
    check "the replay's snapshot at tick $t is the headless tool's, pixel for pixel" \
        test "$(compare -metric AE "$ART/replay-$t.png" "$WORK/sim/replay-$t.png" null: 2>&1)" = 0
done
check "a replay leaves the settings file alone" cmp -s "$CONF" "$WORK/settings-after-play.conf"
check "a replay keeps no recording of its own" test "$(ls "$REPLAYS" | wc -l)" -eq 1

# --- an edited recording: the window names the line, and still closes ----------
printf 'size 400 300\nseed 5\ntick 3\nexpect 3 10 0\ntick 5\n' > "$WORK/edited.scn"
e2e_start_game --replay "$WORK/edited.scn"
check "an edited recording is refused at its line" wait_for 10 grep -q 'does not play back: line 4: ' "$WORK/game.log"
e2e_wm_close "$(xdotool search --onlyvisible --name '^Quillop High Score by ' | head -1)" ||
    die "the frame did not close while the message was up"

