#!/bin/bash
# The frame's life between runs, as the window manager sees it: the first start's place and
# window class; a move and a corner drag (the window manager stops at the smallest size,
# during the drag too); a maximised frame reopening maximised; each stored by a close through
# the window manager. The placement rules themselves are tested in tests/core, the windows
# offscreen in tests/shell.
#
# The stored placement is in twips (15 to a pixel), of the outer frame (decorations included)
# or of the client area, the game's own business: it passes when either reading matches
# within 3 pixels.
#
# usage: start_and_close.sh PATH/TO/Quillop2 [ARTIFACTS_DIR]
source "$(dirname "$0")/lib.sh"
e2e_init start_and_close "$1" "${2:-}"
e2e_start_x

close_frame() { # close_frame SHOT: the screen kept, the frame closed through the window manager
    e2e_shot "$1" >/dev/null
    e2e_wm_close "$FRAME" || die "$1: the game still runs 10 s after the close"
    check "$1: the game exits with status 0" test "$GAME_RC" -eq 0
}
# shown_at LEFT TOP WIDTH HEIGHT (twips): the frame of the last e2e_geometry, read as client
# area or as outer frame, is there within 3 px
shown_at() {
    local client="$WX $WY $WW $WH" outer="$((WX - FL)) $((WY - FT)) $((WW + FL + FR)) $((WH + FT + FB))"
    awk -v want="$*" -v c="$client" -v o="$outer" 'BEGIN { split(want, w); split(c, a); split(o, b)
        for (i = 1; i <= 4; i++) { bad_a += (w[i] / 15 - a[i]) ^ 2 > 9; bad_b += (w[i] / 15 - b[i]) ^ 2 > 9 }
        exit !(w[4] != "" && (!bad_a || !bad_b)) }' || { log "  want $* twips, client $client, outer $outer px"; return 1; }
}
stored() { echo "$(conf_get MDI Left) $(conf_get MDI Top) $(conf_get MDI Width) $(conf_get MDI Height)"; }

# --- an empty home: the default placement, and the window class naming the desktop entry
e2e_open
check "first start: WM_CLASS is Quillop2, io.github.quillop.Quillop" \
    grep -qx 'WM_CLASS(STRING) = "Quillop2", "io.github.quillop.Quillop"' <(xprop -id "$FRAME" WM_CLASS)
check "first start: shown at the default 300, 300, 7000 x 6000 twips" shown_at 300 300 7000 6000
close_frame 1-first-start

# --- moved, then the bottom-right corner dragged far up and left ------------
e2e_open
xdotool windowmove "$FRAME" 90 60
sleep 0.5
e2e_geometry "$FRAME"
CX=$((WX + WW + FR - 1)) CY=$((WY + WH + FB - 1))
xdotool mousemove "$CX" "$CY" mousedown 1 mousemove $((CX - 300)) $((CY - 280)) sleep 0.5 \
    mousemove $((CX - 290)) $((CY - 270)) sleep 0.5
not_below_minimum() { # 6000 x 5000 twips outside
    e2e_geometry "$FRAME"
    [ "$((WW + FL + FR))" -ge 397 ] && [ "$((WH + FT + FB))" -ge 330 ] ||
        { log "  client ${WW}x${WH}, frame extents $FL $FR $FT $FB"; return 1; }
}
check "corner dragged: not below 6000 x 5000 twips while dragging" not_below_minimum
xdotool mouseup 1
sleep 1
check "corner dragged: not below 6000 x 5000 twips after the drag" not_below_minimum
close_frame 2-moved
check "moved and dragged: stored where it was shown" shown_at $(stored)

# --- stored maximised: reopens maximised and keeps the normal placement -----
NORMAL=$(stored)
sed -i '/^\[MDI\]/,/^\[/s/^Windowstate=.*/Windowstate=2/' "$CONF"
e2e_open
maximised() { local s; s=$(xprop -id "$FRAME" _NET_WM_STATE); [[ $s == *MAXIMIZED_VERT* && $s == *MAXIMIZED_HORZ* ]]; }
check "Windowstate=2: opens maximised" wait_for 2 maximised
close_frame 3-maximised
check "maximised: Windowstate = 2 stored, and the normal placement ($NORMAL): $(conf_get MDI Windowstate), $(stored)" \
    test "$(conf_get MDI Windowstate), $(stored)" = "2, $NORMAL"
