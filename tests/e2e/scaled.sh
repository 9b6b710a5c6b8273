#!/bin/bash
# The game on a scaled desktop: the frame grows by the scale, a played field
# keeps no bits of the puck's outline where it has been, the score panel's
# captions stay apart from their values, the help window holds the tips and the
# about picture keeps its own colours (no smoothing).  The screenshots of each
# step are kept for looking at.
#
# usage: scaled.sh PATH/TO/Quillop2 SCALE [ARTIFACTS_DIR]
#   SCALE 1.5 is given per screen (QT_SCREEN_SCALE_FACTORS), any other as
#   QT_SCALE_FACTOR, the two ways a desktop asks Qt to scale.
source "$(dirname "$0")/lib.sh"
SCALE=$2
e2e_init "scaled-$SCALE" "$1" "${3:-}"
e2e_start_x
if [ "$SCALE" = 1.5 ]; then export QT_SCREEN_SCALE_FACTORS=$SCALE; else export QT_SCALE_FACTOR=$SCALE; fi
e2e_start_game
px() { $PYTHON -c "import sys; print(int(round(float(sys.argv[1]) * $SCALE)))" "$1"; }

sleep 1
e2e_find_frame
log "frame client ${FW}x${FH} at $FX,$FY"
# 7000 x 6000 twips outside: 465 px wide inside at 1x
check "frame scaled: client $FW px wide, about $(px 465)" near "$FW" "$(px 465)" "$(px 4)"
S=$(e2e_shot 1-ready)
log "ready: the score panel, the help and the about box first, then a game"
read -r PX PY BW BH < <($PIX button "$S" "$CLIENT" $((FX + FW / 2)) $((FY + FH / 2))) || die "no Play button (see $S)"
FIELD=$($PIX field "$S" "$PX" "$PY" "$BW" "$BH")
# "Level:" in white, its value in yellow: the ink of the two stays apart
apart() {
    local s x y h white
    s=$(e2e_shot 2-score-panel)
    # the value label starts 232 px in, its caption 48 px before; the panel is the top
    # 50 px of the client below the menu bar
    read -r x y _ h _ < <($PIX blobs "$s" "$((FX + $(px 200))),$FY,$(px 80),$(px 50)" FFFF00 40 | sort -n) || return 1
    white=$($PIX blobs "$s" "$((x - $(px 48))),$y,$(px 48),$h" FFFFFF 40 |
        awk '$1 + $3 > m { m = $1 + $3 } END { print m + 0 }')
    log "  'Level:' ink ends at x=$white, its value starts at x=$x"
    [ "$white" -gt 0 ] && [ $((x - white)) -ge "$(px 6)" ]
}
check "score panel: 'Level:' and its value apart" apart

# the help window (the game pauses), with the tips: four lines, no scroll bar
xdotool key --clearmodifiers alt+h; sleep 0.4; xdotool key h
HELP=$(e2e_wait_window '^Help$' 10 | tail -1) || die "no Help window"
sleep 0.5
e2e_geometry "$HELP"
xdotool mousemove $((WX + $(px 310))) $((WY + $(px 364))) click 1    # Tips
sleep 0.5
H=$(e2e_shot 3-help-tips)
# a scroll bar would fill the box's right edge with greys; the text leaves a few
# blended pixels there at most
STRIP="$((WX + $(px 320))),$((WY + $(px 10))),$(px 14),$(px 70)"
check "help: the tips need no scroll bar" \
    test "$($PIX other "$H" "$STRIP" 000080 FFFFFF 000000)" -lt $(($(px 14) * $(px 70) / 4))
xdotool mousemove $((WX + $(px 310))) $((WY + $(px 396))) click 1    # Close
e2e_wait_gone "$HELP" 5 || fail "help: Close did not close it"

# the about box: its 139 x 214 picture shown in blocks of its own 145 colours
xdotool key --clearmodifiers alt+h; sleep 0.4; xdotool key a
ABOUT=$(e2e_wait_window '^About Quillop$' 10 | tail -1) || die "no About window"
sleep 0.5
e2e_geometry "$ABOUT"
A=$(e2e_shot 4-about)
COLOURS=$($CONVERT "$A" -crop "$(px 139)x$(px 214)+$((WX + $(px 16)))+$((WY + $(px 16)))" +repage -format %k info:)
check "about: the picture keeps its colours ($COLOURS, at most 145)" test "$COLOURS" -le 145
e2e_wm_close "$ABOUT"
e2e_wait_gone "$ABOUT" 5 || fail "about: not closed"

# eight seconds of play; a click where Play was serves again if the puck was lost (Drop
# sits there), else it only drops a mine
for _ in $(seq 8); do
    xdotool mousemove "$PX" "$PY" click 1 mousemove "$PX" $((PY + $(px 80)))
    for _ in $(seq 5); do xdotool mousemove_relative -- $((RANDOM % 41 - 20)) 0; sleep 0.2; done
done
P=$(e2e_shot 5-playing)
# the puck's light-grey outline left behind where it was: grey bits with nothing but
# black round them (every figure that has this grey has other colours next to it)
STRAY=$($PIX stray "$P" "$FIELD" C0C0C0 "$(px 4)")
check "field: no bits of the puck's outline left behind ($STRAY pixels)" test "$STRAY" -eq 0

# a game lost meanwhile asks for the name of the new best score: answer it
CONGRATS=$(xdotool search --onlyvisible --name '^Congrats!$' 2>/dev/null | head -1 || true)
if [ -n "$CONGRATS" ]; then
    log "the game ended with a new best score; naming its holder"
    xdotool windowactivate --sync "$CONGRATS" type "e2e"
    xdotool key Return
    e2e_wait_gone "$CONGRATS" 5 || die "Congrats! stayed up"
fi

e2e_wm_close "$FRAME"
e2e_wait_exit 10 || fail "still running 10 s after the close"
