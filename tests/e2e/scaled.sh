#!/bin/bash
# The game on a scaled desktop: the frame grows by the scale, and the screen shows a played
# field as the game painted it. A repaint of part of the field whose pixels reach the screen
# rounded otherwise than they were painted leaves bits of the puck or a sprite behind; with
# the game paused, exposing every window (xrefresh) shows the field afresh from what was
# painted, and the two screenshots must agree. What the game paints at 1.5x and 2x, and the
# dialogs there, are tested offscreen in tests/shell.
#
# usage: scaled.sh PATH/TO/Quillop2 SCALE [ARTIFACTS_DIR]
#   SCALE 1.5 is given per screen (QT_SCREEN_SCALE_FACTORS), any other as QT_SCALE_FACTOR,
#   the two ways a desktop asks Qt to scale.
source "$(dirname "$0")/lib.sh"
SCALE=$2
e2e_init "scaled-$SCALE" "$1" "${3:-}"
e2e_start_x
if [ "$SCALE" = 1.5 ]; then export QT_SCREEN_SCALE_FACTORS=$SCALE; else export QT_SCALE_FACTOR=$SCALE; fi
mkdir -p "${CONF%/*}"
printf '[Gorvane]\nHighscore=99999999\n' >"$CONF"   # a best score out of reach: no Congrats! to answer
px() { awk -v v="$1" -v s="$SCALE" 'BEGIN { printf "%d", v * s + 0.5 }'; }
e2e_open
# 7000 twips outside: 465 px wide inside at 1x
check "frame scaled: client $FW px wide, about $(px 465)" within "$(px 4)" "$FW" "$(px 465)"
e2e_find_play 1-ready

# eight seconds of play; a click where Play was serves again if the puck was lost (Drop sits
# there), else it drops a mine
for _ in $(seq 8); do
    xdotool mousemove "$PX" "$PY" click 1 mousemove "$PX" $((PY + $(px 80)))
    for _ in $(seq 5); do xdotool mousemove_relative -- $((RANDOM % 41 - 20)) 0; sleep 0.2; done
done
e2e_menu h h   # the help window pauses the game
HELP=$(e2e_wait_window '^Help$' 5) || die "no Help window (see $(e2e_shot no-help))"
xdotool windowmove --sync "$HELP" 1240 1000   # all but a corner off the screen, clear of the field
sleep 0.5
P=$(e2e_shot 2-paused)
xrefresh
sleep 0.5
differ() { compare -metric AE "$1[${PFW}x${PFH}+$PFX+$PFY]" "$2[${PFW}x${PFH}+$PFX+$PFY]" null: 2>&1 || true; }
PLAYED=$(differ "$SHOT" "$P")
check "field: played ($PLAYED pixels changed)" test "$PLAYED" -gt 1000
check "field: the same when shown afresh" test "$(differ "$P" "$(e2e_shot 3-exposed)")" = 0
