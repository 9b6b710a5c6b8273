#!/bin/bash
# The frame's life between runs, as the window manager sees it: the first
# start's place and window class, a close through the window manager, a
# placement of the window manager's stored, a maximised frame reopening
# maximised and a minimised one reopening normal.  The placement rules
# themselves (defaults, fallbacks, the smallest size) are tested in tests/core.
#
# Sizes: the stored placement is in twips (15 to a pixel).  Whether the
# game maps it onto the outer frame (decorations included) or onto the client
# area is its own business, so a size or place passes when either reading
# matches within 3 pixels (45 twips).
#
# usage: start_and_close.sh PATH/TO/Quillop2 [ARTIFACTS_DIR]
source "$(dirname "$0")/lib.sh"
e2e_init start_and_close "$1" "${2:-}"
e2e_start_x

CAPTION="Quillop High Score by Ormswell - 0"

# frame_like LEFT TOP WIDTH HEIGHT (twips): the frame on screen matches
frame_like() {
    e2e_geometry "$FRAME"
    $PYTHON - "$@" "$WX" "$WY" "$WW" "$WH" "$FL" "$FR" "$FT" "$FB" <<'EOF'
import sys
l, t, w, h, wx, wy, ww, wh, fl, fr, ft, fb = map(float, sys.argv[1:])
client = (wx, wy, ww, wh)
outer = (wx - fl, wy - ft, ww + fl + fr, wh + ft + fb)
want = (l / 15, t / 15, w / 15, h / 15)
ok = [name for name, g in (("client", client), ("outer", outer))
      if all(abs(a - b) <= 3 for a, b in zip(g, want))]
print("  want %.0f,%.0f %.0fx%.0f px; client %s; outer %s; matches: %s"
      % (want + (client, outer, ok or "none")))
sys.exit(0 if ok else 1)
EOF
}

# wait until the caption is the high-score one (the design caption "Quillop"
# may show for a moment while the playfield loads)
wait_caption() {
    local t
    for t in $(seq 50); do
        [ "$(e2e_title "$FRAME")" = "$CAPTION" ] && return 0
        sleep 0.1
    done
    log "  title is '$(e2e_title "$FRAME")'"
    return 1
}

start_frame() {
    e2e_start_game
    FRAME=$(e2e_wait_window '^Quillop' 20) || die "no frame window appeared"
    sleep 0.5
}

close_frame() {
    e2e_wm_close "$FRAME"
    if e2e_wait_exit 10; then
        pass "$1: the process ended after a window-manager close (exit status $GAME_RC)"
    else
        fail "$1: the process is still running 10 s after the close"
        kill "$GAME_PID"; e2e_wait_exit 5 || true
    fi
}

wm_state() { xprop -id "$FRAME" _NET_WM_STATE; }

# --- 1. empty home ------------------------------------------------------
[ -z "$(ls -A "$XDG_CONFIG_HOME")" ] || die "home not empty"
start_frame
check "first start: caption is '$CAPTION'" wait_caption
# the window class names the desktop entry, so the desktop shows the game's icon
check "first start: WM_CLASS is Quillop2, io.github.quillop.Quillop" \
    grep -qx 'WM_CLASS(STRING) = "Quillop2", "io.github.quillop.Quillop"' <(xprop -id "$FRAME" WM_CLASS)
e2e_shot 1-first-start >/dev/null
close_frame "first start"
check "settings file written" conf_file
cp "$CONF" "$ART/after-first-run.conf" 2>/dev/null || true
for kv in "MDI Top 300" "MDI Left 300" "MDI Width 7000" "MDI Height 6000" \
          "Gorvane Left 100" "Gorvane Top 400" "Gorvane Width 6620" "Gorvane Height 4700"; do
    set -- $kv
    check "stored [$1] $2 ~ $3" conf_near "$1" "$2" "$3" 45
done
check "stored [MDI] Windowstate = 0" conf_is MDI Windowstate 0
check "stored [Gorvane] Windowstate = 0" conf_is Gorvane Windowstate 0
check "stored [Gorvane] Highscore = 0" conf_is Gorvane Highscore 0
check "stored [Gorvane] Highscorer = Ormswell" conf_is Gorvane Highscorer Ormswell
check "nothing stored for the help window" test -z "$(conf_get Help Top)$(conf_get Help Left)"
# whole twips are written without a decimal part
whole_numbers() { [ -s "$CONF" ] && ! grep -E '^(Top|Left|Width|Height)=.*[.,]' "$CONF"; }
check "placements written as whole numbers" whole_numbers

# --- 2. a placement of our own, then the corner dragged below the smallest size
start_frame
check "second start: same place and size" frame_like 300 300 7000 6000
xdotool windowmove "$FRAME" 90 60
sleep 0.5
# the user drags the bottom-right corner far up and left: the window manager stops at the
# smallest size, during the drag as well as after it
e2e_geometry "$FRAME"
CX=$((WX + WW + FR - 1)) CY=$((WY + WH + FB - 1))
xdotool mousemove "$CX" "$CY" mousedown 1
xdotool mousemove $((CX - 300)) $((CY - 280))
sleep 0.5
xdotool mousemove $((CX - 290)) $((CY - 270))
sleep 0.5
not_below_minimum() {
    e2e_geometry "$FRAME"
    [ "$((WW + FL + FR))" -ge 397 ] && [ "$((WH + FT + FB))" -ge 330 ] ||
        { log "  client ${WW}x${WH}, frame extents $FL $FR $FT $FB"; return 1; }
}
check "corner dragged: not below 6000x5000 twips while dragging" not_below_minimum
xdotool mouseup 1
sleep 1
check "corner dragged: not below 6000x5000 twips after the drag" not_below_minimum
e2e_geometry "$FRAME"
# what the frame should store, outer reading and client reading
ML=$(((WX - FL) * 15)) MT=$(((WY - FT) * 15)) MW=$(((WW + FL + FR) * 15)) MH=$(((WH + FT + FB) * 15))
e2e_shot 2-moved >/dev/null
close_frame "after a move and a drag"
cp "$CONF" "$ART/after-move.conf"
# Accept the placement in either convention: outer numbers as computed, or
# the client's (FL,FT further in, the decorations smaller).
placed() {
    local key=$1 outer=$2 inner=$3 v
    v=$(conf_get MDI "$key")
    $PYTHON -c 'import sys; v,a,b=map(float,sys.argv[1:]); sys.exit(0 if min(abs(v-a),abs(v-b))<=45 else 1)' \
        "${v:-nan}" "$outer" "$inner" || { log "  [MDI] $key = '$v', want $outer or $inner"; return 1; }
}
check "moved frame: Left stored" placed Left "$ML" "$((WX * 15))"
check "moved frame: Top stored" placed Top "$MT" "$((WY * 15))"
check "dragged frame: the Width on screen stored" placed Width "$MW" "$((WW * 15))"
check "dragged frame: the Height on screen stored" placed Height "$MH" "$((WH * 15))"
check "playfield follows the frame: [Gorvane] Width = MDI Width - 380" \
    conf_near Gorvane Width "$($PYTHON -c "print(float('$(conf_get MDI Width)') - 380)")" 20

# --- 3. stored maximised ---------------------------------------------------
SAVED="$(conf_get MDI Left) $(conf_get MDI Top) $(conf_get MDI Width) $(conf_get MDI Height)"
$PYTHON - "$CONF" <<'EOF'
import re, sys
p = sys.argv[1]; s = open(p).read()
# only the frame's state: the [MDI] section
s = re.sub(r"(\[MDI\][^\[]*?)Windowstate=\d+", r"\1Windowstate=2", s, flags=re.S)
s = re.sub(r"(\[Gorvane\][^\[]*?)Windowstate=\d+", r"\1Windowstate=0", s, flags=re.S)
open(p, "w").write(s)
EOF
start_frame
sleep 0.5
maximised() {
    local st
    st=$(wm_state)
    [[ $st == *MAXIMIZED_VERT* && $st == *MAXIMIZED_HORZ* ]] || { log "  $st"; return 1; }
}
check "Windowstate=2: frame opens maximised (_NET_WM_STATE)" maximised
e2e_geometry "$FRAME"
check "maximised frame fills the screen width" near "$((WW + FL + FR))" 1280 4
check "maximised: caption still the high-score one" wait_caption
e2e_shot 3-maximised >/dev/null
close_frame "maximised"
check "maximised close stores Windowstate = 2" conf_is MDI Windowstate 2
read -r L T W H <<<"$SAVED"
for kv in "Left $L" "Top $T" "Width $W" "Height $H"; do
    set -- $kv
    check "maximised close keeps the normal [MDI] $1 ($2)" conf_near MDI "$1" "$2" 1
done

# --- 4. stored minimised: reopens normal ------------------------------------
$PYTHON - "$CONF" <<'EOF'
import re, sys
p = sys.argv[1]; s = open(p).read()
s = re.sub(r"(\[MDI\][^\[]*?)Windowstate=\d+", r"\1Windowstate=1", s, flags=re.S)
open(p, "w").write(s)
EOF
start_frame
normal_viewable() {
    local st
    st=$(wm_state)
    [[ $st != *HIDDEN* && $st != *MAXIMIZED* ]] && xwininfo -id "$FRAME" | grep -q IsViewable ||
        { log "  $st"; return 1; }
}
check "Windowstate=1: frame opens normal and viewable" normal_viewable
check "Windowstate=1: at the stored normal placement" frame_like "$L" "$T" "$W" "$H"
close_frame "after minimised"
check "normal close stores Windowstate = 0" conf_is MDI Windowstate 0
