# Shared harness of the end-to-end scripts; sourced, never run.
#
# Every script gets its own X server (Xvfb on a free display number, so
# parallel ctest runs and other people's servers never collide), an openbox window manager, an empty HOME and, if it asks for one,
# its own PulseAudio daemon.  Everything started here is stopped by the EXIT
# trap, also when a check fails half-way.

set -euo pipefail

E2E_DIR=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# the system's python starts in a tenth of the time of a version manager's shim
if [ -x /usr/bin/python3 ]; then PYTHON=/usr/bin/python3; else PYTHON=python3; fi
PIX="$PYTHON $E2E_DIR/pixels.py"
# The pixel reader needs ImageMagick's own convert, the one Debian installs,
# whatever else of that name comes first on the PATH.
if [ -x /usr/bin/convert ]; then CONVERT=/usr/bin/convert; else CONVERT=convert; fi
export CONVERT

E2E_PIDS=()        # background processes to stop, newest last
E2E_FAILS=0
GAME_PID=""

log()  { printf '[%s %s] %s\n' "$E2E_NAME" "$(date +%H:%M:%S.%N | cut -c1-12)" "$*"; }
die()  { log "FATAL: $*"; exit 1; }
pass() { log "ok   - $*"; }
fail() { log "FAIL - $*"; E2E_FAILS=$((E2E_FAILS + 1)); }
check() { # check "description" command...
    local what=$1; shift
    if "$@"; then pass "$what"; else fail "$what"; fi
}

# e2e_init NAME GAME_BINARY [ARTIFACTS_DIR]   (artefacts by default in the game's build
# folder, see e2e_default_artifacts)
e2e_init() {
    E2E_NAME=$1
    GAME_BIN=$(readlink -f "$2")
    [ -x "$GAME_BIN" ] || die "no executable at $2"
    ART=${3:-$(e2e_default_artifacts)}/$E2E_NAME
    mkdir -p "$ART"
    rm -f "$ART"/*.png "$ART"/*.log "$ART"/*.conf 2>/dev/null || true
    WORK=$(mktemp -d "/tmp/quillop-e2e-$E2E_NAME.XXXXXX")
    export HOME=$WORK/home
    export XDG_CONFIG_HOME=$HOME/.config
    export XDG_RUNTIME_DIR=$HOME/run
    mkdir -p "$XDG_CONFIG_HOME" "$XDG_RUNTIME_DIR"
    chmod 700 "$XDG_RUNTIME_DIR"
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
    local rc=$?
    trap - ERR
    set +e
    [ -n "$GAME_PID" ] && kill "$GAME_PID" 2>/dev/null
    if [ -n "${PULSE_STARTED:-}" ]; then pulseaudio --kill 2>/dev/null; fi
    local i
    for ((i = ${#E2E_PIDS[@]} - 1; i >= 0; i--)); do
        kill "${E2E_PIDS[i]}" 2>/dev/null
    done
    for ((i = ${#E2E_PIDS[@]} - 1; i >= 0; i--)); do
        for _ in 1 2 3 4 5 6 7 8 9 10; do
            kill -0 "${E2E_PIDS[i]}" 2>/dev/null || break
            sleep 0.1
        done
        kill -9 "${E2E_PIDS[i]}" 2>/dev/null
        wait "${E2E_PIDS[i]}" 2>/dev/null
    done
    [ -f "$CONF" ] && cp "$CONF" "$ART/"
    [ -f "$WORK/game.log" ] && cp "$WORK/game.log" "$ART/game.log"
    [ -n "${KEEP_WORK:-}" ] || rm -rf "$WORK"
    if [ $rc -eq 0 ] && [ "$E2E_FAILS" -gt 0 ]; then rc=1; fi
    log "done: $E2E_FAILS failed check(s), exit $rc"
    exit $rc
}

e2e_start_x() {
    # A display number of our own, away from the low numbers other tools
    # pick; a race with another server only costs one more try.  -noreset:
    # by default the server resets when its last client leaves (our probe),
    # and a client connecting during the reset is turned away.
    local n t
    for n in $(shuf -i 100-899 -n 40); do
        [ -e "/tmp/.X$n-lock" ] || [ -e "/tmp/.X11-unix/X$n" ] && continue
        Xvfb ":$n" -screen 0 1280x1024x24 -nolisten tcp -noreset >"$WORK/xvfb.log" 2>&1 &
        local pid=$!
        for t in $(seq 100); do
            [ -S "/tmp/.X11-unix/X$n" ] && xdpyinfo -display ":$n" >/dev/null 2>&1 && break
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.05
        done
        if kill -0 "$pid" 2>/dev/null && xdpyinfo -display ":$n" >/dev/null 2>&1; then
            E2E_PIDS+=($pid)
            export DISPLAY=:$n
            break
        fi
        kill "$pid" 2>/dev/null; wait "$pid" 2>/dev/null || true
    done
    [ -n "${DISPLAY:-}" ] || die "Xvfb did not start: $(tail -3 "$WORK/xvfb.log")"
    openbox --sm-disable >"$WORK/openbox.log" 2>&1 &
    E2E_PIDS+=($!)
    for t in $(seq 100); do
        xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
        sleep 0.05
    done
    xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id' || die "openbox did not start"
    log "X on $DISPLAY with openbox"
}

# A private PulseAudio with a null sink as the default; we run as root here,
# where pulseaudio refuses nothing once told not to read the system config
# (-n) and loads only what we name.
e2e_start_pulse() {
    pulseaudio --daemon -n --exit-idle-time=-1 --disallow-exit \
        --load=module-native-protocol-unix --load="module-null-sink sink_name=e2e" \
        --log-target=file:"$WORK/pulse.log" \
        || die "pulseaudio did not start: $(tail -5 "$WORK/pulse.log" 2>/dev/null)"
    PULSE_STARTED=1
    local t
    for t in $(seq 50); do
        pactl info >/dev/null 2>&1 && break
        sleep 0.1
    done
    pactl set-default-sink e2e || die "no null sink: $(tail -5 "$WORK/pulse.log")"
    log "pulseaudio up: $(pactl info | grep -E 'Default Sink')"
}

# Runs the game from its own folder (the sounds are looked up by bare name in
# the current directory).
e2e_start_game() {
    (cd "$(dirname "$GAME_BIN")" && exec "$GAME_BIN") >>"$WORK/game.log" 2>&1 &
    GAME_PID=$!
    E2E_PIDS+=($GAME_PID)
    GAME_T0=$(date +%s%N)
    log "game started, pid $GAME_PID"
}

game_alive() { kill -0 "$GAME_PID" 2>/dev/null && ! grep -q '^State:.*zombie' "/proc/$GAME_PID/status" 2>/dev/null; }

# e2e_wait_window REGEX [SECONDS] -> prints the id of the first visible match.
# Qt creates helper windows too, so only viewable ones of our game count.
e2e_wait_window() {
    local re=$1 limit=${2:-20} t w
    for t in $(seq $((limit * 10))); do
        for w in $(xdotool search --onlyvisible --name "$re" 2>/dev/null); do
            echo "$w"
            return 0
        done
        game_alive || { log "game exited while waiting for '$re'"; return 1; }
        sleep 0.1
    done
    return 1
}

e2e_wait_gone() { # e2e_wait_gone WINDOW [SECONDS]
    local t
    for t in $(seq $((${2:-10} * 10))); do
        xwininfo -id "$1" 2>/dev/null | grep -q 'IsViewable' || return 0
        sleep 0.1
    done
    return 1
}

# Client-area geometry of a window: sets WX WY WW WH (absolute, pixels) and
# the frame extents FL FR FT FB that openbox adds around it.
# The frame window with the high-score caption, activated; sets FRAME, its client area
# FX FY FW FH and CLIENT ("x,y,w,h" for pixels.py).
e2e_find_frame() {
    FRAME=$(e2e_wait_window '^Quillop High Score by ' 20) || die "no frame with the high-score caption"
    sleep 1
    xdotool windowactivate --sync "$FRAME" >/dev/null
    e2e_geometry "$FRAME"
    FX=$WX FY=$WY FW=$WW FH=$WH
    CLIENT="$FX,$FY,$FW,$FH"
}

e2e_geometry() {
    local info
    info=$(xwininfo -id "$1")
    WX=$(sed -n 's/.*Absolute upper-left X: *//p' <<<"$info")
    WY=$(sed -n 's/.*Absolute upper-left Y: *//p' <<<"$info")
    WW=$(sed -n 's/.*Width: *//p' <<<"$info")
    WH=$(sed -n 's/.*Height: *//p' <<<"$info")
    read -r FL FR FT FB < <(xprop -id "$1" _NET_FRAME_EXTENTS | sed -n 's/.*= *//p' | tr -d ',' ; echo 0 0 0 0) || true
    : "${FL:=0}" "${FR:=0}" "${FT:=0}" "${FB:=0}"
}

e2e_title() { xdotool getwindowname "$1"; }

# Closes a window the way a user does: through the window manager, which
# sends WM_DELETE_WINDOW (openbox binds alt+F4 to Close).
e2e_wm_close() {
    xdotool windowactivate --sync "$1" >/dev/null 2>&1 || true
    sleep 0.2
    xdotool key --clearmodifiers alt+F4
}

e2e_wait_exit() { # e2e_wait_exit SECONDS -> 0 when the game process ended
    local t
    for t in $(seq $((${1:-10} * 10))); do
        if ! kill -0 "$GAME_PID" 2>/dev/null; then wait "$GAME_PID" 2>/dev/null; GAME_RC=$?; GAME_PID=""; return 0; fi
        sleep 0.1
    done
    return 1
}

e2e_shot() { # e2e_shot NAME -> path of $ART/NAME.png
    local f=$ART/$1.png
    import -window root "$f" 2>>"$WORK/import.log" || die "screenshot failed"
    echo "$f"
}

# Whether the game has written its settings file.
conf_file() {
    [ -s "$CONF" ] && return 0
    log "  no settings file under $XDG_CONFIG_HOME/Quillop: $(ls -A "$XDG_CONFIG_HOME/Quillop" 2>&1)"
    return 1
}

# conf_get SECTION KEY -> value in the settings file, or nothing
conf_get() {
    $PYTHON - "$CONF" "$1" "$2" <<'EOF'
import configparser, sys
c = configparser.RawConfigParser(strict=False)
c.optionxform = str
c.read(sys.argv[1])
try:
    print(c.get(sys.argv[2], sys.argv[3]))
except (configparser.Error, KeyError):
    pass
EOF
}

# conf_near SECTION KEY EXPECTED TOLERANCE: the stored number is within
# TOLERANCE of EXPECTED.
conf_near() {
    local v
    v=$(conf_get "$1" "$2")
    $PYTHON -c 'import sys; v,e,t=sys.argv[1:]; sys.exit(0 if v and abs(float(v)-float(e))<=float(t) else 1)' "$v" "$3" "$4" \
        || { log "  [$1] $2 = '${v}', want $3 +- $4"; return 1; }
}

conf_is() { # conf_is SECTION KEY VALUE
    local v
    v=$(conf_get "$1" "$2")
    [ "$v" = "$3" ] || { log "  [$1] $2 = '$v', want '$3'"; return 1; }
}

near() { # near VALUE EXPECTED TOLERANCE
    $PYTHON -c 'import sys; v,e,t=map(float,sys.argv[1:]); sys.exit(0 if abs(v-e)<=t else 1)' "$1" "$2" "$3" \
        || { log "  $1 is not within $3 of $2"; return 1; }
}

# The e2e-artifacts folder of the build folder that holds the game (the nearest folder
# above it with a CMakeCache.txt), where CTest keeps them too; beside the game if it was
# not built by CMake.
e2e_default_artifacts() {
    local dir
    dir=$(dirname "$GAME_BIN")
    while [ "$dir" != / ] && [ ! -f "$dir/CMakeCache.txt" ]; do dir=$(dirname "$dir"); done
    [ "$dir" = / ] && dir=$(dirname "$GAME_BIN")
    echo "$dir/e2e-artifacts"
}

# A private sound server with a null sink "e2e" as the default: the one installed, PulseAudio
# first, else PipeWire with its PulseAudio service (and WirePlumber, which wants a session
# bus: it gets one of its own). QUILLOP_E2E_SOUND_SERVER=pipewire|pulseaudio picks one.
e2e_start_sound_server() {
    SOUND_SERVER=${QUILLOP_E2E_SOUND_SERVER:-}
    if [ -z "$SOUND_SERVER" ]; then
        if command -v pulseaudio >/dev/null; then SOUND_SERVER=pulseaudio; else SOUND_SERVER=pipewire; fi
    fi
    if [ "$SOUND_SERVER" = pulseaudio ]; then
        e2e_start_pulse
        return
    fi
    local bus=unix:path=$XDG_RUNTIME_DIR/bus t
    command -v pipewire-pulse >/dev/null && command -v wireplumber >/dev/null \
        || die "no sound server to start: pipewire-pulse and wireplumber are not installed (nor pulseaudio)"
    if [ -z "${PW_BUS_PID:-}" ]; then
        dbus-daemon --session --address="$bus" --nofork --nopidfile >>"$WORK/dbus.log" 2>&1 &
        PW_BUS_PID=$!
        E2E_PIDS+=($PW_BUS_PID)
        for t in $(seq 50); do [ -S "$XDG_RUNTIME_DIR/bus" ] && break; sleep 0.1; done
    fi
    PW_PIDS=()
    local prog
    for prog in pipewire wireplumber pipewire-pulse; do
        DBUS_SESSION_BUS_ADDRESS=$bus $prog >>"$WORK/$prog.log" 2>&1 &
        PW_PIDS+=($!)
        E2E_PIDS+=($!)
        [ $prog = pipewire ] && sleep 0.3
    done
    for t in $(seq 50); do
        pactl info >/dev/null 2>&1 && break
        sleep 0.1
    done
    # the service may answer before the graph is ready for a new sink
    for t in $(seq 50); do
        pactl load-module module-null-sink sink_name=e2e >/dev/null 2>&1 && break
        sleep 0.1
    done
    for t in $(seq 50); do
        pactl set-default-sink e2e 2>/dev/null && break
        sleep 0.1
    done
    pactl info | grep -q 'Default Sink: e2e$' || die "no null sink: $(tail -5 "$WORK/pipewire-pulse.log")"
    log "pipewire up: $(pactl info | grep -E 'Server Name|Default Sink' | tr '\n' ' ')"
}

# Kills the sound server the way a crash or a restart by the user does.
e2e_stop_sound_server() {
    if [ "$SOUND_SERVER" = pulseaudio ]; then
        pulseaudio --kill
        local t
        for t in $(seq 50); do pactl info >/dev/null 2>&1 || break; sleep 0.1; done
    else
        kill -9 "${PW_PIDS[@]}" 2>/dev/null || true
        wait "${PW_PIDS[@]}" 2>/dev/null || true
    fi
    log "$SOUND_SERVER stopped"
}

# conf_either SECTION KEY A B: the stored number is within 45 twips (3 px) of A or of B,
# a placement read either as the outer frame or as the client area
conf_either() {
    local v
    v=$(conf_get "$1" "$2")
    $PYTHON -c 'import sys; v,a,b=map(float,sys.argv[1:]); sys.exit(0 if min(abs(v-a),abs(v-b))<=45 else 1)' \
        "${v:-nan}" "$3" "$4" || { log "  [$1] $2 = '$v', want $3 or $4"; return 1; }
}
