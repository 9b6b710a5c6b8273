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

# --- 2. a placement of the window manager's ----------------------------------
start_frame
xdotool windowmove "$FRAME" 90 60 windowsize "$FRAME" 600 480
sleep 1
e2e_geometry "$FRAME"
# what the frame should store, outer reading and client reading
ML=$(((WX - FL) * 15)) MT=$(((WY - FT) * 15)) MW=$(((WW + FL + FR) * 15)) MH=$(((WH + FT + FB) * 15))
e2e_shot 2-moved >/dev/null
close_frame "after a move"
cp "$CONF" "$ART/after-move.ini"
# Either convention: the outer numbers, or the client's (FL,FT further in).
check "moved frame: Left stored" conf_either MDI Left "$ML" "$((WX * 15))"
check "moved frame: Top stored" conf_either MDI Top "$MT" "$((WY * 15))"
check "moved frame: Width stored" conf_either MDI Width "$MW" "$((WW * 15))"
check "moved frame: Height stored" conf_either MDI Height "$MH" "$((WH * 15))"

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
