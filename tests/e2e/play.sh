#!/bin/bash
# A short game driven like a player would: Play, the paddle under the
# pointer, Jester mines, the help window (pausing the game), the about box
# (not pausing it), New Game's question answered No and then Yes, and the
# close.  There is deliberately no sound server here: the game has to run
# silently without one.
#
# The pictures are judged from their pixels: the yellow paddle where the
# pointer is, the puck (a white disc in play; teal before the first serve),
# coloured enemy sprites on the black field, the green score, the help
# window's navy text box.  Every screenshot is kept in the artifacts folder.
#
# usage: play.sh PATH/TO/Quillop2 [ARTIFACTS_DIR]
source "$(dirname "$0")/lib.sh"
e2e_init play "$1" "${2:-}"
e2e_start_x
e2e_start_game
e2e_find_frame
log "frame client $FW x $FH at $FX,$FY"

# The playfield: 100,400 twips into the frame's client area (below the menu
# bar), 6620 x 4700 twips; the Play button sits at its centre.
S=$(e2e_shot 01-ready)
read -r PX PY BW BH < <($PIX button "$S" "$CLIENT" $((FX + 227)) $((FY + 210))) \
    || die "no Play button found on the ready field (see $S)"
log "Play button ${BW}x${BH} centred at $PX,$PY"
check "ready field: Play button near the playfield's centre" near "$PX" $((FX + 227)) 30
FIELD=$($PIX field "$S" "$PX" "$PY" "$BW" "$BH")        # the playfield's inside
IFS=, read -r PFX PFY PFW PFH <<<"$FIELD"
log "playfield inside: ${PFW}x${PFH} at $PFX,$PFY"
check "ready field: playfield inside ~441x313 px (6620x4700 twips less its border)" \
    bash -c "(( $PFW >= 425 && $PFW <= 441 && $PFH >= 297 && $PFH <= 313 ))"
check "ready field: black around the Play button" \
    test "$($PIX other "$S" "$((PX - 140)),$((PY - 120)),280,70" 000000)" -lt 20

# --- play ------------------------------------------------------------------
# The puck enters at the top; the Arses spread from the centre at up to six
# pixels a tick, so a puck often lives for less than a second.  The first
# shots come straight after the serve, and a lost puck is served again with
# Drop (up to twice) until one shot shows it.
xdotool mousemove "$PX" "$PY" click 1
MX=$PX MY=$((PY + 110))           # the pointer, low in the playfield
# three Jester mines from high up, then the paddle low
xdotool mousemove "$PX" $((PY - 70))
for _ in 1 2 3; do xdotool click 1; sleep 0.05; done
xdotool mousemove "$MX" "$MY"
for i in 1 2 3 4 5; do e2e_shot "02-playing-$i" >/dev/null; sleep 0.1; done
check "game still running after Play and mine drops" game_alive

SHOTS=("$ART"/02-playing-?.png)
BUTTON="$((PX - BW / 2 - 2)),$((PY - BH / 2 - 2)),$((BW + 4)),$((BH + 4))"
yellow=0 puck=0 sprites=0 moved=0
# the puck: white disc in play, teal hatched square energized, yellow-green
# square when the energy runs out; the Play/Drop button's place is left out
puck_in() { $PIX puck "$1" "$FIELD" "$BUTTON" >/dev/null; }
for s in "${SHOTS[@]}"; do
    n=$($PIX count "$s" "$((MX - 24)),$((MY - 8)),48,14" FFFF00 40)
    [ "$n" -ge 10 ] && yellow=$((yellow + 1))
    # in play the puck is a white disc; energized, a teal one
    if puck_in "$s"; then puck=$((puck + 1)); fi
    # enemies, pods, mines: coloured pixels that are neither the black
    # field, the paddle, the puck nor window greys
    n=$($PIX other "$s" "$PFX,$PFY,$PFW,$((MY - 12 - PFY))" \
        000000 FFFFFF C0C0C0 808080 FFFF00)
    [ "$n" -ge 40 ] && sprites=$((sprites + 1))
done
for ((i = 1; i < ${#SHOTS[@]}; i++)); do
    [ "$($PIX diff "${SHOTS[i - 1]}" "${SHOTS[i]}" "$FIELD")" -gt 0 ] && moved=$((moved + 1))
done
check "paddle: yellow under the pointer in $yellow of 5 shots" test "$yellow" -ge 4
serves=1
while [ "$puck" -eq 0 ] && [ "$serves" -lt 3 ]; do
    # the Drop button sits where Play was
    read -r dx dy _ < <($PIX button "$(e2e_shot 02-lost-$serves)" "$CLIENT" "$PX" "$PY") || break
    log "no puck seen; serving again with Drop at $dx,$dy"
    xdotool mousemove "$dx" "$dy" click 1 mousemove "$MX" "$MY"
    serves=$((serves + 1))
    for i in 1 2 3; do
        s=$(e2e_shot "02-serve-$serves-$i")
        if puck_in "$s"; then puck=$((puck + 1)); fi
    done
done
check "puck: seen after $serves serve(s)" test "$puck" -ge 1
check "sprites: coloured figures above the paddle in $sprites of 5 shots" test "$sprites" -ge 3
check "field animates: $moved of 4 shot pairs differ" test "$moved" -ge 3
check "Play button gone while playing" \
    test "$($PIX count "${SHOTS[0]}" "$((PX - BW / 2 + 4)),$((PY - BH / 2 + 4)),$((BW - 8)),$((BH - 8))" 808080 8)" -lt $((BW * BH / 2))
check "score panel: green score digits" test "$($PIX count "${SHOTS[0]}" "$FX,$FY,$FW,60" 00FF00 40)" -ge 5

# Whatever happens next, a modal "Congrats!" (a game over with a score) is
# answered so the script can go on; it is reported.
congrats() {
    local w
    w=$(xdotool search --onlyvisible --name '^Congrats!$' 2>/dev/null | head -1) || true
    [ -n "$w" ] || return 1
    log "a 'Congrats!' dialog is up (the game ended with a new best score)"
    e2e_shot congrats >/dev/null
    # a key meant for the frame may have landed in the name box first: replace it all
    xdotool windowactivate --sync "$w" key ctrl+a
    xdotool type --delay 30 "e2e"
    xdotool key Return
    CONGRATS=1
}
CONGRATS=0

# The paddle does not chase the puck, so the game may have ended (or be waiting for a
# serve) by the time a step needs a running game: answer "Congrats!", then click the
# centred Play or Drop button if one shows.
ensure_game() {
    local shot x y
    congrats || true
    sleep 0.3
    shot=$(e2e_shot ensure-game)
    if read -r x y _ < <($PIX button "$shot" "$CLIENT" "$PX" "$PY") &&
       (( x > PX - 6 && x < PX + 6 && y > PY - 6 && y < PY + 6 )); then
        log "a centred button shows: clicking it to have a game running"
        xdotool mousemove "$x" "$y" click 1; sleep 0.3
        xdotool mousemove "$MX" "$MY"
    fi
}

# --- help window: modal, pauses the game -----------------------------------
ensure_game
xdotool windowactivate --sync "$FRAME" >/dev/null; sleep 0.2
xdotool key --clearmodifiers alt+h; sleep 0.4; xdotool key h
HELP=$(e2e_wait_window '^Help$' 10) || { congrats; die "no Help window after Help, Help Window"; }
sleep 0.8
e2e_geometry "$HELP"
HX=$WX HY=$WY HOLE="$((WX - FL)),$((WY - FT)),$((WW + FL + FR)),$((WH + FT + FB))"
HELP_OUTER="$(( (WX - FL) * 15 )) $(( (WY - FT) * 15 ))" HELP_CLIENT="$((WX * 15)) $((WY * 15))"
check "help window: client 354x420 px (got ${WW}x${WH})" \
    bash -c "(( ${WW} >= 351 && ${WW} <= 357 && ${WH} >= 417 && ${WH} <= 423 ))"
A=$(e2e_shot 03-help)
check "help window: navy text box" test "$($PIX count "$A" "$HX,$HY,354,100" 000080 8)" -ge 2000
check "help window: teal puck pictures" test "$($PIX count "$A" "$HX,$HY,354,200" 00C0C0 30)" -ge 10
sleep 0.7
B=$(e2e_shot 04-help-later)
check "help open: the game is paused (frame unchanged outside the help window)" \
    test "$($PIX diff "$A" "$B" "$CLIENT" "$HOLE")" -eq 0
xdotool mousemove $((HX + 308)) $((HY + 364)) click 1; sleep 0.5     # Tips
C=$(e2e_shot 05-help-tips)
check "help window: Tips changes the text box" test "$($PIX diff "$B" "$C" "$HX,$HY,354,80")" -gt 0
xdotool mousemove $((HX + 308)) $((HY + 396)) click 1                # Close
check "help window: Close closes it" e2e_wait_gone "$HELP" 5
xdotool mousemove "$MX" "$MY"; sleep 0.3
A=$(e2e_shot 06-after-help); sleep 0.5; B=$(e2e_shot 07-after-help-later)
congrats || check "help closed: the game runs again" test "$($PIX diff "$A" "$B" "$FIELD")" -gt 0

# --- about box: modeless, the game keeps running ----------------------------
xdotool windowactivate --sync "$FRAME" >/dev/null; sleep 0.2
xdotool key --clearmodifiers alt+h; sleep 0.4; xdotool key a
ABOUT=$(e2e_wait_window '^About Quillop$' 10) || { congrats; die "no 'About Quillop' window"; }
sleep 0.6
e2e_geometry "$ABOUT"
HOLE="$((WX - FL)),$((WY - FT)),$((WW + FL + FR)),$((WH + FT + FB))"
check "about box: client 296x255 px (got ${WW}x${WH})" \
    bash -c "(( ${WW} >= 293 && ${WW} <= 299 && ${WH} >= 252 && ${WH} <= 258 ))"
A=$(e2e_shot 08-about); sleep 0.5; B=$(e2e_shot 09-about-later)
congrats || check "about open: the game keeps running behind it" \
    test "$($PIX diff "$A" "$B" "$CLIENT" "$HOLE")" -gt 0
xdotool windowactivate --sync "$ABOUT" >/dev/null; xdotool key Escape
check "about box: Esc closes it" e2e_wait_gone "$ABOUT" 5

# --- New Game during a game: the question -----------------------------------
# The game may end (and "Congrats!" take the keys) between starting it and asking: then
# answer it, start another game and ask again.
ask_new_game() {
    local try
    for try in 1 2 3; do
        ensure_game
        xdotool windowactivate --sync "$FRAME" >/dev/null; sleep 0.2
        xdotool key --clearmodifiers alt+f; sleep 0.4; xdotool key n
        BOX=$(e2e_wait_window '^Quillop$' 5) && return 0
        congrats || return 1
    done
    return 1
}
if ask_new_game; then
    pass "New Game while playing: a box titled 'Quillop' asks"
    e2e_shot 10-new-game-question >/dev/null
    xdotool windowactivate --sync "$BOX" >/dev/null; xdotool key --clearmodifiers alt+n
    check "answer No closes the box" e2e_wait_gone "$BOX" 5
    xdotool mousemove "$MX" "$MY"; sleep 0.3
    A=$(e2e_shot 11-after-no); sleep 0.5; B=$(e2e_shot 12-after-no-later)
    congrats || check "after No the game goes on" test "$($PIX diff "$A" "$B" "$FIELD")" -gt 0
    if ask_new_game; then
        xdotool windowactivate --sync "$BOX" >/dev/null; xdotool key --clearmodifiers alt+y
        check "answer Yes closes the box" e2e_wait_gone "$BOX" 5
        sleep 0.5
        A=$(e2e_shot 13-after-yes); sleep 0.6; B=$(e2e_shot 14-after-yes-later)
        check "after Yes the field is still (timer stopped)" test "$($PIX diff "$A" "$B" "$FIELD")" -eq 0
        play_back() {
            local x y
            read -r x y _ < <($PIX button "$B" "$CLIENT" "$PX" "$PY") || return 1
            (( x > PX - 6 && x < PX + 6 && y > PY - 6 && y < PY + 6 )) || { log "  a button at $x,$y"; return 1; }
        }
        check "after Yes the Play button is back at the centre" play_back
    else
        congrats || true
        fail "second New Game asked nothing"
    fi
else
    congrats || true
    fail "New Game while playing: no box titled 'Quillop' (CONGRATS=$CONGRATS)"
fi
check "caption after the game: still the high-score caption" \
    bash -c "xdotool getwindowname $FRAME | grep -q '^Quillop High Score by '"

# --- close ----------------------------------------------------------------
e2e_wm_close "$FRAME"
if e2e_wait_exit 10; then pass "frame close ends the process (status $GAME_RC)"; else fail "still running after the close"; fi
check "the game exits with status 0 (no sound server here)" test "${GAME_RC:-1}" -eq 0
check "settings file written" conf_file
if [ "$CONGRATS" -eq 0 ]; then
    check "stored [Gorvane] Highscore = 0 (no game finished)" conf_is Gorvane Highscore 0
    check "stored [Gorvane] Highscorer = Ormswell" conf_is Gorvane Highscorer Ormswell
else
    check "stored [Gorvane] Highscorer = e2e (typed in Congrats!)" conf_is Gorvane Highscorer e2e
fi
either() { # either SECTION KEY A B: the stored number is within 45 of A or of B
    local v
    v=$(conf_get "$1" "$2")
    $PYTHON -c 'import sys; v,a,b=map(float,sys.argv[1:]); sys.exit(0 if min(abs(v-a),abs(v-b))<=45 else 1)' \
        "${v:-nan}" "$3" "$4" || { log "  [$1] $2 = '$v', want $3 or $4"; return 1; }
}
read -r OL OT <<<"$HELP_OUTER"; read -r CL CT <<<"$HELP_CLIENT"
check "stored [Help] Left where the help window was" either Help Left "$OL" "$CL"
check "stored [Help] Top where the help window was" either Help Top "$OT" "$CT"
near_default() { near "$(conf_get Help Left)" 200 360 && near "$(conf_get Help Top)" 400 360; }
check "stored [Help] Left/Top near the 200/400 default" near_default
check "stored [MDI] Windowstate = 0" conf_is MDI Windowstate 0
