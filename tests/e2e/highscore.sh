#!/bin/bash
# A game lost on purpose and the new best score that follows: with an empty
# home the best score is 0, so any finished game beats it.  The pointer is
# parked in the playfield's bottom-left corner, away from the puck, and every
# puck soon dies on an Arse; Drop serves the next one until the lives are
# gone.  Then the modal "Congrats!" dialog takes a name with a space in it,
# a click on OK with the pointer stores it, the caption names the new holder, "Insert Coin" shows
# above the Play button, and both the settings file and the next start
# remember the holder and the score.
#
# usage: highscore.sh PATH/TO/Quillop2 [ARTIFACTS_DIR]
source "$(dirname "$0")/lib.sh"
e2e_init highscore "$1" "${2:-}"
e2e_start_x
e2e_start_game

NAME="Ada Lovelace"
PREFIX="Quillop High Score by "
LIMIT=120                     # seconds for the whole game to be lost

e2e_find_frame
FIRST_TITLE=$(e2e_title "$FRAME")
log "frame client $FW x $FH at $FX,$FY; caption '$FIRST_TITLE'"
[ "$FIRST_TITLE" = "${PREFIX}Ormswell - 0" ] || die "an empty home should start at a best score of 0"

S=$(e2e_shot 01-ready)
read -r PX PY BW BH < <($PIX button "$S" "$CLIENT" $((FX + 227)) $((FY + 210))) \
    || die "no Play button found on the ready field (see $S)"
IFS=, read -r PFX PFY PFW PFH <<<"$($PIX field "$S" "$PX" "$PY" "$BW" "$BH")"
log "Play ${BW}x${BH} at $PX,$PY; playfield inside ${PFW}x${PFH} at $PFX,$PFY"
# where the puck will seldom come: the paddle lies low in the far corner
PARKX=$((PFX + 2)) PARKY=$((PFY + PFH - 3))
# only the button's surroundings are read while playing: a whole-field read
# is too slow for a puck that lives a second
AROUND="$((PX - BW)),$((PY - BH)),$((2 * BW)),$((2 * BH))"

congrats_window() { xdotool search --onlyvisible --name '^Congrats!$' 2>/dev/null | head -1 || true; }

# the lit block at the field's centre, while nothing modal is up
button_at_centre() {
    local s x y at
    s=$(e2e_shot "$1")
    # "|| true": a failed search in a substitution would set off the ERR trap
    at=$($PIX button "$s" "$AROUND" "$PX" "$PY" || true)
    [ -n "$at" ] || return 1
    read -r x y _ <<<"$at"
    (( x > PX - 6 && x < PX + 6 && y > PY - 6 && y < PY + 6 ))
}

# --- play to the end -----------------------------------------------------
xdotool mousemove "$PX" "$PY" click 1 mousemove "$PARKX" "$PARKY"
T0=$(date +%s)
DROPS=0 LOOK=0 DIALOG=""
while :; do
    DIALOG=$(congrats_window)
    [ -n "$DIALOG" ] && break
    game_alive || die "the game exited during play (see $ART/game.log)"
    (( $(date +%s) - T0 < LIMIT )) || die "no 'Congrats!' within $LIMIT s ($DROPS Drop click(s)); last shot $ART/wait-$LOOK.png"
    LOOK=$((LOOK + 1))
    if button_at_centre "wait-$LOOK" && [ -z "$(congrats_window)" ]; then
        DROPS=$((DROPS + 1))
        log "Drop #$DROPS after $(( $(date +%s) - T0 )) s"
        xdotool mousemove "$PX" "$PY" click 1 mousemove "$PARKX" "$PARKY"
        sleep 0.3
    fi
    # keep only the latest few waiting shots
    rm -f "$ART/wait-$((LOOK - 3)).png"
done
log "'Congrats!' after $(( $(date +%s) - T0 )) s and $DROPS Drop click(s)"
# three lives, each lost with a new puck served by Drop in between
check "Drop was offered after the lost pucks ($DROPS click(s), at least 2 for three lives)" test "$DROPS" -ge 2

sleep 0.8
D=$(e2e_shot 02-congrats)
e2e_geometry "$DIALOG"
log "dialog client ${WW}x${WH} at $WX,$WY"
check "Congrats!: client about 372x138 px (5580x2070 twips; got ${WW}x${WH})" \
    bash -c "(( $WW >= 369 && $WW <= 375 && $WH >= 135 && $WH <= 141 ))"
# centred with its decorations, within a few pixels
centred() {
    local cx=$((WX + WW / 2)) cy=$((WY + WH / 2)) ox=$((WX + (WW + FR - FL) / 2)) oy=$((WY + (WH + FB - FT) / 2))
    log "  client centre $cx,$cy; outer centre $ox,$oy"
    near "$ox" 640 5 && near "$oy" 512 5
}
check "Congrats!: centred on the screen" centred
# no control box: the dialog asks the window manager for no minimise,
# maximise or close (Motif functions 8, 16, 32; 1 would be all of them).
# openbox draws its buttons anyway, so the request is what is judged.
no_control_box() {
    local h flags funcs
    h=$(xprop -id "$DIALOG" _MOTIF_WM_HINTS)
    read -r flags funcs _ <<<"$(sed -n 's/.*= *//p' <<<"$h" | tr -d ',')"
    (( ${flags:-0} & 1 )) && (( (${funcs:-1} & (1 | 8 | 16 | 32)) == 0 )) || { log "  $h"; return 1; }
}
check "Congrats!: no minimise, maximise or close asked for" no_control_box
# the score in green right of "Your High Score: " (168,16 px in, 185x25)
check "Congrats!: green score digits" test "$($PIX count "$D" "$((WX + 168)),$((WY + 16)),185,25" 00FF00 40)" -ge 20
check "Congrats!: white 'Your High Score:' text" test "$($PIX count "$D" "$((WX + 16)),$((WY + 16)),145,25" FFFFFF 40)" -ge 20
# nothing names the new holder before the name is in
check "while Congrats! is up the caption is unchanged" test "$(e2e_title "$FRAME")" = "$FIRST_TITLE"

# the name box has the focus: type straight away
xdotool windowactivate --sync "$DIALOG" >/dev/null 2>&1 || true
xdotool type --delay 40 "$NAME"
sleep 0.3
e2e_shot 03-congrats-typed >/dev/null
# OK (2520, 1440 twips, 97x25 px) clicked with the real pointer: press, a pause in which
# the pressed button repaints, release
xdotool mousemove $((WX + 216)) $((WY + 108)) mousedown 1
sleep 0.3
xdotool mouseup 1
check "a click on OK closes Congrats!" e2e_wait_gone "$DIALOG" 5

new_caption() {
    local t
    for t in $(seq 30); do
        TITLE=$(e2e_title "$FRAME")
        [[ $TITLE == "$PREFIX$NAME - "* ]] && return 0
        sleep 0.1
    done
    log "  caption is '$TITLE'"
    return 1
}
TITLE=""
check "caption names '$NAME'" new_caption
SCORE=${TITLE#"$PREFIX$NAME - "}
log "caption '$TITLE', score '$SCORE'"
# every lost puck is a kill worth 1000 at least, and the game had three
check "caption ends with a whole score of at least 3000" \
    bash -c "[[ '$SCORE' =~ ^[1-9][0-9]*$ ]] && (( $SCORE >= 3000 ))"

sleep 0.5
E=$(e2e_shot 04-game-over)
# a sprite passing over the button hides its outline for a moment
play_back() {
    local t
    for t in 1 2 3 4 5 6; do button_at_centre 05-play-back && return 0; sleep 0.3; done
    return 1
}
check "game over: the Play button is back at the centre" play_back
# "Insert Coin": orange, 169x33 px, 10 px above the Play button
ORANGE=$($PIX count "$E" "$((PX - 90)),$((PY - BH / 2 - 48)),180,42" FF8000 40)
check "game over: orange 'Insert Coin' above Play ($ORANGE px)" test "$ORANGE" -ge 60
# and none of it cut off: the label is 169 px wide and centred in the field,
# so the lettering has to end short of its right edge
LABEL_RIGHT=$((PFX + (PFW + 169) / 2))
INK_RIGHT=$($PIX blobs "$E" "$((PX - 90)),$((PY - BH / 2 - 48)),180,42" FF8000 40 |
    awk '$1 + $3 > m { m = $1 + $3 } END { print m + 0 }')
check "game over: 'Insert Coin' whole (lettering ends at x=$INK_RIGHT, label edge $LABEL_RIGHT)" \
    test "$INK_RIGHT" -le $((LABEL_RIGHT - 2))

e2e_wm_close "$FRAME"
if e2e_wait_exit 10; then pass "frame close ends the process"; else die "still running 10 s after the close"; fi
check "settings file written" conf_file
log "settings in $CONF"
check "stored [Gorvane] Highscorer = $NAME" conf_is Gorvane Highscorer "$NAME"
check "stored [Gorvane] Highscore = $SCORE" conf_is Gorvane Highscore "$SCORE"

# --- the next start ------------------------------------------------------
e2e_start_game
FRAME=$(e2e_wait_window '^Quillop' 20) || die "no frame on the second start"
check "second start: caption '$PREFIX$NAME - $SCORE'" \
    bash -c "for t in \$(seq 50); do [ \"\$(xdotool getwindowname $FRAME)\" = '$PREFIX$NAME - $SCORE' ] && exit 0; sleep 0.1; done; exit 1"
log "second start caption '$(e2e_title "$FRAME")'"
e2e_shot 06-second-start >/dev/null
e2e_wm_close "$FRAME"
e2e_wait_exit 10 || fail "second start: still running 10 s after the close"
