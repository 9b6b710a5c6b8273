# Shared harness of the end-to-end scripts; sourced, never run.
#
# Every script gets its own X server (Xvfb on a free display number, so parallel ctest runs
# and other people's servers never collide), an openbox window manager, an empty HOME and, if
# it asks for one, its own sound server. Everything started here is stopped by the EXIT trap,
# also when a check fails half-way.

set -euo pipefail

E2E_DIR=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# the system's python starts in a tenth of the time of a version manager's shim
if [ -x /usr/bin/python3 ]; then PYTHON=/usr/bin/python3; else PYTHON=python3; fi
PIX="$PYTHON $E2E_DIR/pixels.py"
# ImageMagick's own convert, the one Debian installs, whatever else of that name comes first
if [ -x /usr/bin/convert ]; then CONVERT=/usr/bin/convert; else CONVERT=convert; fi

E2E_PIDS=()        # background processes to stop, newest last
E2E_FAILS=0 GAME_PID=""

log()  { printf '[%s %s] %s\n' "$E2E_NAME" "$(date +%H:%M:%S.%N | cut -c1-12)" "$*"; }
die()  { log "FATAL: $*"; exit 1; }
fail() { log "FAIL - $*"; E2E_FAILS=$((E2E_FAILS + 1)); }
check() { if "${@:2}"; then log "ok   - $1"; else fail "$1"; fi; }  # check "description" command...
spawn() { "$@" & E2E_PIDS+=($!); }  # spawn COMMAND...: in the background, stopped at the end
wait_for() { # wait_for SECONDS command...: tries every tenth of a second until it succeeds
    local n=$(($1 * 10)); shift
    until "$@"; do [ $((n -= 1)) -gt 0 ] || return 1; sleep 0.1; done
}

# e2e_init NAME GAME_BINARY [ARTIFACTS_DIR]   (by default build/e2e-artifacts for a game
# built as build/shell/Quillop2, where CTest keeps them too)
e2e_init() {
    E2E_NAME=$1
    GAME_BIN=$(readlink -f "$2")
    [ -x "$GAME_BIN" ] || die "no executable at $2"
    ART=${3:-$(dirname "$(dirname "$GAME_BIN")")/e2e-artifacts}/$E2E_NAME
    mkdir -p "$ART"
    rm -f "$ART"/*.png "$ART"/*.log "$ART"/*.conf 2>/dev/null || true
    WORK=$(mktemp -d "/tmp/quillop-e2e-$E2E_NAME.XXXXXX")
    export HOME=$WORK/home XDG_CONFIG_HOME=$WORK/home/.config XDG_RUNTIME_DIR=$WORK/home/run
    mkdir -p -m 700 "$XDG_CONFIG_HOME" "$XDG_RUNTIME_DIR"
    CONF=$XDG_CONFIG_HOME/Quillop/Quillop.conf  # the game's settings file
    # No sound server unless a script starts one, and never a spawned one.
    printf 'autospawn = no\n' > "$WORK/pulse-client.conf"
    export PULSE_CLIENTCONFIG=$WORK/pulse-client.conf
    unset PULSE_SERVER DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER DISPLAY || true
    export QT_QPA_PLATFORM=xcb
    set -E
    trap 'log "FATAL: line $LINENO of ${BASH_SOURCE[0]##*/}: \"$BASH_COMMAND\" failed"' ERR
    trap e2e_cleanup EXIT
    trap 'exit 130' INT TERM
    log "work dir $WORK, artifacts $ART"
}

e2e_cleanup() {
    local rc=$? i
    trap - ERR
    set +e
    [ -n "$GAME_PID" ] && kill "$GAME_PID" 2>/dev/null
    [ -n "${PULSE_STARTED:-}" ] && pulseaudio --kill 2>/dev/null
    for ((i = ${#E2E_PIDS[@]} - 1; i >= 0; i--)); do   # the X server last, after its clients
        kill "${E2E_PIDS[i]}" 2>/dev/null && wait_for 1 eval "! kill -0 ${E2E_PIDS[i]} 2>/dev/null"
        kill -9 "${E2E_PIDS[i]}" 2>/dev/null
        wait "${E2E_PIDS[i]}" 2>/dev/null
    done
    cp "$CONF" "$WORK/game.log" "$ART/" 2>/dev/null
    rm -rf "$WORK"
    if [ $rc -eq 0 ] && [ "$E2E_FAILS" -gt 0 ]; then rc=1; fi
    log "done: $E2E_FAILS failed check(s), exit $rc"
    exit $rc
}

e2e_start_x() {
    # Xvfb picks a free display number itself and names it when it takes connections.
    # -noreset: by default the server resets when its last client leaves (a probe), and a
    # client connecting during the reset is turned away.
    spawn Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$WORK/display" >"$WORK/xvfb.log" 2>&1
    wait_for 10 test -s "$WORK/display" || die "Xvfb did not start: $(tail -3 "$WORK/xvfb.log")"
    export DISPLAY=:$(cat "$WORK/display")
    spawn openbox --sm-disable >"$WORK/openbox.log" 2>&1
    wait_for 5 eval "xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'" \
        || die "openbox did not start"
    log "X on $DISPLAY with openbox"
}

# e2e_start_game [ARGS...]: the game, from its own folder (where it would find sound files
# by their bare names)
e2e_start_game() {
    spawn env -C "$(dirname "$GAME_BIN")" "$GAME_BIN" "$@" >>"$WORK/game.log" 2>&1
    GAME_PID=$!
    GAME_T0=$(date +%s%N)
    log "game started, pid $GAME_PID"
}

game_alive() { kill -0 "$GAME_PID" 2>/dev/null && ! grep -q '^State:.*zombie' "/proc/$GAME_PID/status" 2>/dev/null; }

# e2e_wait_window REGEX [SECONDS] -> the id of the first visible match, while the game runs
# (Qt creates helper windows too, so only viewable ones count)
e2e_wait_window() {
    wait_for "${2:-20}" eval "xdotool search --onlyvisible --name '$1' >/dev/null 2>&1 || ! game_alive" &&
        game_alive && xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1
}

e2e_wait_gone() { wait_for "${2:-10}" eval "! xwininfo -id $1 2>/dev/null | grep -q IsViewable"; }  # WINDOW [SECONDS]

e2e_open() { e2e_start_game "$@"; e2e_find_frame; }  # e2e_open [ARGS...]: the game and its frame

# The frame window with the high-score caption, activated; sets FRAME and its client area
# FX FY FW FH.
e2e_find_frame() {
    FRAME=$(e2e_wait_window '^Quillop High Score by ' 20) || die "no frame with the high-score caption"
    sleep 1
    xdotool windowactivate --sync "$FRAME" >/dev/null
    e2e_geometry "$FRAME"
    FX=$WX FY=$WY FW=$WW FH=$WH
}

# Client-area geometry of a window: sets WX WY WW WH (absolute, pixels) and the frame
# extents FL FR FT FB that openbox adds around it.
e2e_geometry() {
    eval "$(xwininfo -id "$1" | sed -n 's/^ *Absolute upper-left X: */WX=/p; s/^ *Absolute upper-left Y: */WY=/p
        s/^ *Width: */WW=/p; s/^ *Height: */WH=/p')"
    read -r FL FR FT FB < <(xprop -id "$1" _NET_FRAME_EXTENTS | sed -n 's/.*= *//p' | tr -d ','; echo 0 0 0 0) || true
}

# e2e_wm_close WINDOW: closed the way a user does, through the window manager, which sends
# WM_DELETE_WINDOW (openbox binds alt+F4 to Close); fails unless the game then ends within
# 10 s, with its status in GAME_RC
e2e_wm_close() {
    xdotool windowactivate --sync "$1" >/dev/null 2>&1 || true
    sleep 0.2
    xdotool key --clearmodifiers alt+F4
    wait_for 10 eval '! kill -0 "$GAME_PID" 2>/dev/null' || return 1
    wait "$GAME_PID" 2>/dev/null && GAME_RC=0 || GAME_RC=$?
    GAME_PID=""
}

# e2e_shot NAME -> path of $ART/NAME.png, the whole screen
e2e_shot() { import -window root "$ART/$1.png" 2>>"$WORK/import.log" || die "screenshot failed"; echo "$ART/$1.png"; }

conf_get() { # conf_get SECTION KEY -> the value in the settings file, or nothing
    awk -v s="[$1]" -v k="$2=" '/^\[/ { on = $0 == s } on && index($0, k) == 1 { print substr($0, length(k) + 1); exit }' \
        "$CONF" 2>/dev/null || true
}


within() { # within TOLERANCE VALUE A [B]: VALUE is a number within TOLERANCE of A or of B
    awk -v t="$1" -v v="$2" -v a="$3" -v b="${4:-$3}" \
        'BEGIN { exit !(v ~ /^-?[0-9.]+$/ && ((v - a) ^ 2 <= t ^ 2 || (v - b) ^ 2 <= t ^ 2)) }' ||
        { log "  '$2' is not within $1 of $3${4:+ or $4}"; return 1; }
}

# e2e_menu MENU ITEM: a menu item of the frame chosen with the keyboard, by the letters
# underlined in the menu's and the item's names
e2e_menu() {
    xdotool windowactivate --sync "$FRAME" >/dev/null; sleep 0.2
    xdotool key --clearmodifiers "alt+$1"; sleep 0.4; xdotool key "$2"
}

# e2e_find_play NAME: on a new screenshot NAME (its path in SHOT), the Play button's centre
# PX PY and the black playfield round it, PFX PFY PFW PFH. ImageMagick's connected components
# of the frame's lit and dark parts ("ID: WxH+X+Y CENTROID AREA COLOUR"): Play is the solid lit
# block some tens of pixels across nearest the centre, the playfield the largest dark part round it.
e2e_find_play() {
    SHOT=$(e2e_shot "$1")
    read -r PX PY PFX PFY PFW PFH < <($CONVERT "$SHOT" -crop "${FW}x$FH+$FX+$FY" +repage -grayscale Average \
        -threshold 11.8% -define connected-components:verbose=true -connected-components 4 null: |
        awk -F'[ x+:]+' -v cx=$((FW / 2)) -v cy=$((FH / 2)) -v fx="$FX" -v fy="$FY" '
        $NF == "gray(255)" && $3 >= 40 && $3 <= 300 && $4 >= 15 && $4 <= 100 && $8 >= 0.6 * $3 * $4 {
            x = $5 + int($3 / 2); y = $6 + int($4 / 2); d = (x - cx) ^ 2 + (y - cy) ^ 2
            if (!found++ || d < best) { best = d; bx = x; by = y } }
        $NF == "gray(0)" { w[++n] = $3; h[n] = $4; l[n] = $5; t[n] = $6; a[n] = $8 }
        END { for (i = 1; i <= n; i++) if (l[i] <= bx && bx < l[i] + w[i] && t[i] <= by && by < t[i] + h[i] && a[i] > a[k]) k = i
              if (found && k) print fx + bx, fy + by, fx + l[k], fy + t[k], w[k], h[k] }') ||
        die "no Play button (see $SHOT)"
    log "Play at $PX,$PY; playfield ${PFW}x${PFH} at $PFX,$PFY"
}
