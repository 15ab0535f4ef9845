#!/bin/bash
# A private headless desktop: Xvfb + session D-Bus + AT-SPI + window manager.
#
#   eval "$(desk.sh start [--dir DIR] [--size 1600x1000] [--wm xfwm4|openbox|none] [--home])"
#   desk.sh env | status | stop   [--dir DIR]      (DIR defaults to $DESK_DIR; logs: DIR/*.log)
#   desk.sh run [start options] -- COMMAND...      start, run COMMAND inside, stop; exit code is COMMAND's
#
# --home also gives the programs a private HOME and XDG_*_HOME, so that no settings are shared.
# Only processes started here are ended, each by its recorded pid and start time.
set -u

readonly LAUNCHER=/usr/libexec/at-spi-bus-launcher
dir=${DESK_DIR:-} size=1600x1000 wm=xfwm4 home=false

die() {
    echo "desk.sh: $*" >&2
    exit 1
}

give_up() { # MESSAGE: the desktop could not be started
    do_stop
    die "$1"
}

need() { # PROGRAM...
    local program
    for program in "$@"; do
        command -v "$program" >/dev/null || die "$program is not installed: ./dev setup does it"
    done
}

wait_for() { # COMMAND...: five seconds at most
    local tenths=50
    until "$@" >/dev/null 2>&1; do
        ((--tenths > 0)) || return 1
        sleep 0.1
    done
}

# ---- processes, named by number and start time, since numbers are used again

read_stat() { # PID: the words of its stat line after the command's name: state, parent, group, session, ...
    local line
    { read -r line <"/proc/$1/stat"; } 2>/dev/null || return 1
    read -ra stat <<<"${line##*) }"
}

is_alive() { read_stat "$1" && [ "${stat[19]}" = "$2" ]; } # PID START-TIME

record() { # NAME PID
    local stat=()
    read_stat "$2"
    echo "$1 $2 ${stat[19]:-}" >>"$dir/pids"
}

spawn() { # NAME COMMAND...: in a session of its own, output to DIR/NAME.log
    local name=$1
    shift
    setsid "$@" >"$dir/$name.log" 2>&1 </dev/null &
    record "$name" $!
}

# "PID START-TIME" of all processes in the sessions that we started: children of the bus, of the launcher and
# so on. A leader may be gone while its children live on: a session's number is not reused while they do.
session_processes() {
    local sessions=" " process pid stat
    while read -r _ pid _; do sessions+="$pid "; done <"$dir/pids"
    for process in /proc/[0-9]*; do
        read_stat "${process#/proc/}" || continue
        [[ $sessions != *" ${stat[3]} "* ]] || echo "${process#/proc/} ${stat[19]}"
    done
}

end_processes() { # asks first; whoever is left after half a second is killed
    local all=$1 twentieths left pid started
    for ((twentieths = 0; twentieths < 40; ++twentieths)); do
        left=()
        while read -r pid started; do
            [ -z "$pid" ] || ! is_alive "$pid" "$started" || left+=("$pid")
        done <<<"$all"
        [ ${#left[@]} -gt 0 ] || return
        ((twentieths > 0)) || kill "${left[@]}" 2>/dev/null
        ((twentieths < 10)) || kill -9 "${left[@]}" 2>/dev/null
        sleep 0.05
    done
}

# ---- start, one function for each part

make_folder() {
    local made=given
    if [ -z "$dir" ]; then
        dir=$(mktemp -d /tmp/desk.XXXXXX)
        made=auto
    fi
    mkdir -p "$dir" || die "cannot make $dir"
    dir=$(cd "$dir" && pwd)
    [ ${#dir} -le 80 ] || die "the path $dir is too long for the sockets below it"
    [ ! -f "$dir/pids" ] || die "a desktop is recorded in $dir: stop it first"
    : >"$dir/pids"
    echo $made >"$dir/made"
    mkdir -p "$dir/run"
    chmod 700 "$dir/run"
}

start_display() { # Xvfb chooses a free display itself and writes its number
    local number=""
    rm -f "$dir/display"
    mkfifo "$dir/display"
    setsid Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp -noreset -dpi 96 +extension RANDR \
        3<>"$dir/display" >"$dir/xvfb.log" 2>&1 </dev/null &
    record xvfb $!
    read -r -t 10 number <"$dir/display"
    rm -f "$dir/display"
    [ -n "$number" ] || give_up "Xvfb did not start, see $dir/xvfb.log"
    export DISPLAY=:$number
}

start_session_bus() {
    unset DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS WAYLAND_DISPLAY SESSION_MANAGER XAUTHORITY
    export XDG_RUNTIME_DIR=$dir/run
    export DBUS_SESSION_BUS_ADDRESS="unix:path=$dir/run/bus"
    spawn dbus dbus-daemon --session --nofork --nopidfile --address="$DBUS_SESSION_BUS_ADDRESS"
    wait_for test -S "$dir/run/bus" || give_up "no D-Bus session, see $dir/dbus.log"
}

on_session_bus() { dbus-send --session --print-reply=literal "$@"; }

is_on_session_bus() { # NAME
    on_session_bus --dest=org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus.NameHasOwner \
        "string:$1" | grep -q true
}

accessibility_address() { on_session_bus --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress; }

start_accessibility() {
    spawn atspi $LAUNCHER --launch-immediately
    wait_for is_on_session_bus org.a11y.Bus || give_up "no AT-SPI bus, see $dir/atspi.log"
    wait_for accessibility_address || give_up "the AT-SPI bus has no address, see $dir/atspi.log"
    AT_SPI_BUS_ADDRESS=$(accessibility_address | sed 's/^ *//')
    # this call makes the accessibility bus start the registry
    dbus-send --bus="$AT_SPI_BUS_ADDRESS" --print-reply --dest=org.a11y.atspi.Registry \
        /org/a11y/atspi/accessible/root org.freedesktop.DBus.Peer.Ping >/dev/null 2>&1 ||
        give_up "no AT-SPI registry, see $dir/atspi.log"
    on_session_bus --dest=org.a11y.Bus /org/a11y/bus org.freedesktop.DBus.Properties.Set \
        string:org.a11y.Status string:IsEnabled variant:boolean:true >/dev/null 2>&1
}

has_window_manager() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }

start_window_manager() {
    case $wm in
        none) return ;;
        openbox) spawn wm openbox --sm-disable ;;
        xfwm4) NO_AT_BRIDGE=1 spawn wm xfwm4 --compositor=off ;; # and keep it off the accessibility bus
        *) NO_AT_BRIDGE=1 spawn wm "$wm" ;;
    esac
    wait_for has_window_manager || give_up "the window manager did not start, see $dir/wm.log"
}

environment() {
    cat <<END
export DESK_DIR='$dir'
export DISPLAY='$DISPLAY'
export DBUS_SESSION_BUS_ADDRESS='$DBUS_SESSION_BUS_ADDRESS'
export AT_SPI_BUS_ADDRESS='$AT_SPI_BUS_ADDRESS'
export XDG_RUNTIME_DIR='$XDG_RUNTIME_DIR'
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_ACCESSIBILITY=1 QT_QPA_PLATFORM=xcb
export QT_QPA_PLATFORMTHEME= QT_AUTO_SCREEN_SCALE_FACTOR=0 QT_SCALE_FACTOR=1 QT_FONT_DPI=96
export LANG=C.UTF-8 LC_ALL=C.UTF-8
unset WAYLAND_DISPLAY SESSION_MANAGER XAUTHORITY XDG_CURRENT_DESKTOP XMODIFIERS QT_IM_MODULE
END
    $home || return 0
    mkdir -p "$dir/home/.config" "$dir/home/.local/share" "$dir/home/.cache"
    cat <<END
export HOME='$dir/home' XDG_CONFIG_HOME='$dir/home/.config'
export XDG_DATA_HOME='$dir/home/.local/share' XDG_CACHE_HOME='$dir/home/.cache'
END
}

# ---- the commands

do_start() {
    need Xvfb dbus-daemon xdotool xprop setsid
    [ "$wm" = none ] || need "$wm"
    [ -x $LAUNCHER ] || die "at-spi2-core is not installed: ./dev setup does it"
    make_folder
    start_display
    start_session_bus
    start_accessibility
    start_window_manager
    environment >"$dir/env"
}

need_desktop() {
    [ -n "$dir" ] || die "give --dir or set DESK_DIR"
    [ -f "$dir/pids" ] || die "no desktop in '$dir'"
}

do_env() {
    need_desktop
    cat "$dir/env"
}

do_stop() {
    need_desktop
    end_processes "$(session_processes)"
    rm -f "$dir/pids" "$dir/env"
    if [ "$(cat "$dir/made" 2>/dev/null)" = auto ]; then
        rm -rf "$dir"
    elif [ -f "$dir/made" ]; then
        rm -rf "${dir:?}/run" "${dir:?}/home" "${dir:?}/made"
    fi
}

do_status() {
    need_desktop
    local name pid started status=0
    while read -r name pid started; do
        if is_alive "$pid" "$started"; then
            echo "$name $pid running"
        else
            echo "$name $pid gone"
            status=1
        fi
    done <"$dir/pids"
    return $status
}

do_run() { # COMMAND...
    [ $# -gt 0 ] || die "run needs -- COMMAND"
    local status=0
    do_start
    eval "$(do_env)"
    trap 'do_stop; exit 130' INT TERM
    "$@" || status=$?
    do_stop
    return $status
}

command=${1:-}
[ $# -eq 0 ] || shift
case $command in start | run) dir="" ;; esac # a new desktop never goes into the one we are in
while [ $# -gt 0 ]; do
    case $1 in
        --dir | --size | --wm)
            [ $# -gt 1 ] || die "$1 needs a value"
            declare "${1#--}=$2"
            shift
            ;;
        --home) home=true ;;
        --)
            shift
            break
            ;;
        *) die "unknown option $1" ;;
    esac
    shift
done

case $command in
    start) do_start && do_env ;;
    env) do_env ;;
    stop | status) "do_$command" ;;
    run) do_run "$@" ;;
    *)
        sed -n '2,9s/^# \{0,1\}//p' "$0"
        exit 2
        ;;
esac
