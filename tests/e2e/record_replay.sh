#!/bin/bash
# A game played with the real pointer is kept, and plays back exactly.  The game runs with
# --trace and no sound server (it has to run silently without one); the player moves the
# pointer all the time (some moves land in the explosion's waits), drops mines, opens and
# closes the help window, minimises and restores the frame, resizes it, answers New Game No
# and then Yes, and plays a second game to its end, typing a name into Congrats!.  On the
# way, screenshots show the paddle under the pointer, the sprites and the green score, and
# the window manager shows the help window's size and the dialog centred.  Then:
# quillop-sim on the kept recording prints the window's own trace, byte for byte; the
# window's replay of it (with three snapshots put in) prints it too, and its snapshots are
# quillop-sim's, pixel for pixel.  A recording edited by hand is refused at its line, and
# the frame still closes while the message says so.
#
# usage: record_replay.sh PATH/TO/Quillop2 PATH/TO/quillop-sim [ARTIFACTS_DIR]
source "$(dirname "$0")/lib.sh"
SIM=$(readlink -f "$2")
e2e_init record_replay "$1" "${3:-}"
e2e_start_x
REPLAYS=$HOME/.local/share/Quillop/replays

e2e_start_game --trace "$WORK/window.trace"
e2e_find_frame
S=$(e2e_shot 01-ready)
read -r PX PY BW BH < <($PIX button "$S" "$CLIENT" $((FX + FW / 2)) $((FY + FH / 2))) \
    || die "no Play button on the ready field (see $S)"
IFS=, read -r PFX PFY PFW PFH <<<"$($PIX field "$S" "$PX" "$PY" "$BW" "$BH")"
log "Play at $PX,$PY; playfield ${PFW}x${PFH} at $PFX,$PFY"

# The pointer sweeps the lower field for a while, as a player's hand does.
sweep() { # sweep SECONDS
    local end=$(( $(date +%s%N) + $1 * 1000000000 )) k=0
    while (( $(date +%s%N) < end )); do
        xdotool mousemove $((PFX + 20 + (k * 37) % (PFW - 40))) $((PFY + PFH - 30 - (k * 13) % 60))
        k=$((k + 1)); sleep 0.02
    done
}
new_game() { # new_game y|n: File, New Game, and the answer
    xdotool windowactivate --sync "$FRAME" >/dev/null; sleep 0.2
    xdotool key --clearmodifiers alt+f; sleep 0.4; xdotool key n
    local box
    box=$(e2e_wait_window '^Quillop$' 5) || return 1
    sleep 0.5   # ticks run while the question is up
    xdotool windowactivate --sync "$box" >/dev/null; xdotool key --clearmodifiers "alt+$1"
    e2e_wait_gone "$box" 5
}

# --- first game: pointer, mines, a lost puck, the windows ------------------
xdotool mousemove "$PX" "$PY" click 1
sleep 0.1; xdotool mousemove $((PFX + PFW / 2)) $((PFY + PFH / 2)) click 1   # a mine
MX=$PX MY=$((PY + 110))
xdotool mousemove "$MX" "$MY"; sleep 0.2
A=$(e2e_shot 02-playing); sleep 0.2; B=$(e2e_shot 02-playing-later)
check "paddle: yellow under the pointer" test "$($PIX count "$A" "$((MX - 24)),$((MY - 8)),48,14" FFFF00 40)" -ge 10
# enemies, pods, mines: colours that are neither the field, the paddle, the puck nor greys
check "sprites: coloured figures on the field" \
    test "$($PIX other "$A" "$PFX,$PFY,$PFW,$((MY - 12 - PFY))" 000000 FFFFFF C0C0C0 808080 FFFF00)" -ge 40
check "the field animates" test "$($PIX diff "$A" "$B" "$PFX,$PFY,$PFW,$PFH")" -gt 0
check "score panel: green score digits" test "$($PIX count "$A" "$FX,$FY,$FW,60" 00FF00 40)" -ge 5
sweep 3                       # the unguided puck is lost meanwhile; Drop waits
xdotool key --clearmodifiers alt+h; sleep 0.4; xdotool key h
HELP=$(e2e_wait_window '^Help$' 10) || die "no Help window"
sleep 0.5; e2e_geometry "$HELP"
HELP_AT="$(( (WX - FL) * 15 )) $(( (WY - FT) * 15 )) $((WX * 15)) $((WY * 15))"
check "help window: client 354x420 px (got ${WW}x${WH})" eval 'within 3 $WW 354 && within 3 $WH 420'
check "help window: navy text box" test "$($PIX count "$(e2e_shot 03-help)" "$WX,$WY,354,100" 000080 8)" -ge 2000
xdotool mousemove $((WX + 308)) $((WY + 396)) click 1
e2e_wait_gone "$HELP" 5 || die "Close did not close the help window"
xdotool windowminimize --sync "$FRAME"; sleep 0.5
xdotool windowactivate --sync "$FRAME" >/dev/null; sleep 0.5
xdotool windowsize --sync "$FRAME" $((FW + 40)) $((FH + 24)); sleep 0.5
e2e_find_frame
new_game n || die "New Game asked nothing while a game was running"
new_game y || die "New Game asked nothing the second time"

# --- second game, played to its end ---------------------------------------
S=$(e2e_shot 02-second-ready)
read -r PX PY BW BH < <($PIX button "$S" "$CLIENT" $((FX + FW / 2)) $((FY + FH / 2))) || die "no Play after Yes"
IFS=, read -r PFX PFY PFW PFH <<<"$($PIX field "$S" "$PX" "$PY" "$BW" "$BH")"
T0=$(date +%s)
until ls "$REPLAYS"/*.scn >/dev/null 2>&1; do
    (( $(date +%s) - T0 < 90 )) || die "no recording kept within 90 s"
    box=$(xdotool search --onlyvisible --name '^Congrats!$' 2>/dev/null | head -1 || true)
    if [ -n "$box" ]; then
        sleep 0.5; e2e_geometry "$box"
        check "Congrats!: client about 372x138 px (got ${WW}x${WH})" eval 'within 3 $WW 372 && within 3 $WH 138'
        check "Congrats!: centred on the screen with its decorations" \
            eval 'within 5 $((WX + (WW + FR - FL) / 2)) 640 && within 5 $((WY + (WH + FB - FT) / 2)) 512'
        # no control box: no minimise, maximise or close asked of the window manager (Motif
        # functions 8, 16, 32; 1 would be all); openbox draws its buttons anyway
        read -r flags funcs _ <<<"$(xprop -id "$box" _MOTIF_WM_HINTS | sed -n 's/.*= *//p' | tr -d ',')"
        check "Congrats!: no minimise, maximise or close asked for" \
            bash -c "(( (${flags:-0} & 1) && (${funcs:-1} & 57) == 0 ))"
        xdotool windowactivate --sync "$box" key ctrl+a; xdotool type --delay 30 "Replayer"
        # OK (2520, 1440 twips, 97x25 px) clicked with the real pointer: press, a pause in
        # which the pressed button repaints, release
        xdotool mousemove $((WX + 216)) $((WY + 108)) mousedown 1; sleep 0.3; xdotool mouseup 1
        check "the caption names the new holder" \
            wait_for 3 eval "xdotool getwindowname $FRAME | grep -q '^Quillop High Score by Replayer - [1-9][0-9]*\$'"
    else
        xdotool mousemove "$PX" "$PY" click 1   # Play, Drop, or a mine
        sweep 1
    fi
done
e2e_shot 03-game-over >/dev/null
e2e_wm_close "$FRAME"
e2e_wait_exit 10 || die "the game did not end on close"
check "the game exits with status 0 (no sound server here)" test "${GAME_RC:-1}" -eq 0
cp "$XDG_CONFIG_HOME/Quillop/Quillop.conf" "$WORK/settings-after-play.conf" || die "no settings file after the game"
CONF=$XDG_CONFIG_HOME/Quillop/Quillop.conf
check "the name entered with a click on OK is stored" conf_is Gorvane Highscorer Replayer
CONF=$WORK/settings-after-play.conf
read -r OL OT CL CT <<<"$HELP_AT"
check "stored [Help] Left where the window manager put it" conf_either Help Left "$OL" "$CL"
check "stored [Help] Top where the window manager put it" conf_either Help Top "$OT" "$CT"

REC=$(ls "$REPLAYS"/*.scn | head -1)
cp "$REC" "$ART/recording.scn"; cp "$WORK/window.trace" "$ART/window.trace"
log "kept $(basename "$REC"): $(wc -l < "$REC") lines, $(wc -c < "$REC") bytes; $(grep -c '^during ' "$REC") in waits"
check "the recording has moves during the explosion's waits" grep -q '^during [0-9]* move ' "$REC"
check "the recording has the question left open, answered both ways" \
    bash -c "grep -q '^answer no' '$REC' && grep -q '^answer yes' '$REC'"
for c in help closehelp minimize restore 'resize ' 'press '; do
    check "the recording has '$c'" grep -Eq "^(during [0-9]+ )?$c" "$REC"
done
"$SIM" "$REC" > "$WORK/sim.trace" || die "quillop-sim refused the recording (exit $?)"
N=$(wc -l < "$WORK/sim.trace")
check "quillop-sim prints the window's trace byte for byte ($N ticks)" \
    cmp -s "$WORK/sim.trace" <(head -n "$N" "$WORK/window.trace")
check "the trace's last line shows the recorded score" \
    bash -c "tail -1 '$WORK/sim.trace' | grep -q \"\\\"score\\\":\$(awk '/^expect/{print \$3}' '$REC' | tail -1),\""

# --- the window's replay, with snapshots at three ticks ---------------------
read -r -a AT < <($PYTHON "$E2E_DIR/replay_check.py" ticks "$WORK/sim.trace")
$PYTHON "$E2E_DIR/replay_check.py" insert "$REC" "$WORK/shots.scn" "$ART" "${AT[@]}"
e2e_start_game --replay "$WORK/shots.scn" --trace "$WORK/replay.trace"
T0=$(date +%s)
until grep -q 'played to its end\|does not play back' "$WORK/game.log"; do
    (( $(date +%s) - T0 < 180 )) || die "the replay did not reach its end within 180 s"
    game_alive || die "the replay ended by itself (see $ART/game.log)"
    sleep 0.5
done
e2e_shot 04-replay-end >/dev/null
check "the replay plays to its end" grep -q 'played to its end' "$WORK/game.log"
e2e_wm_close "$(xdotool search --onlyvisible --name '^Quillop High Score by ' | head -1)"
e2e_wait_exit 10 || die "the replay did not end on close"
check "the window's replay prints the same trace" cmp -s "$WORK/sim.trace" "$WORK/replay.trace"
# The same snapshots taken headless: the window shows, pixel for pixel, what quillop-sim paints
# (what it paints is tested against the rules in tests/shell and tests/sim).
$PYTHON "$E2E_DIR/replay_check.py" insert "$REC" "$WORK/sim-shots.scn" "$WORK" "${AT[@]}"
"$SIM" "$WORK/sim-shots.scn" >/dev/null || die "quillop-sim refused its snapshots (exit $?)"
same_pictures() {
    local t n
    for t in "${AT[@]}"; do
        n=$(compare -metric AE "$ART/replay-$t.png" "$WORK/replay-$t.png" null: 2>&1) || true
        [ "$n" = 0 ] || { log "  tick $t: $n pixels differ"; return 1; }
    done
}
check "the replay's snapshots are the headless tool's, pixel for pixel" same_pictures
check "a replay leaves the settings file alone" cmp -s "$XDG_CONFIG_HOME/Quillop/Quillop.conf" "$WORK/settings-after-play.conf"
check "a replay keeps no recording of its own" test "$(ls "$REPLAYS" | wc -l)" -eq 1

# --- an edited recording: the window names the line, and still closes ----------
printf 'size 400 300\nseed 5\ntick 3\nexpect 3 10 0\ntick 5\n' > "$WORK/edited.scn"
: > "$WORK/game.log"
e2e_start_game --replay "$WORK/edited.scn"
check "an edited recording is refused at its line" wait_for 10 grep -q 'does not play back: line 4: ' "$WORK/game.log"
e2e_wm_close "$(xdotool search --onlyvisible --name '^Quillop High Score by ' | head -1)"
e2e_wait_exit 10 || die "the frame did not close while the message was up"

log "done: $E2E_FAILS failed check(s)"
exit $((E2E_FAILS > 0))
