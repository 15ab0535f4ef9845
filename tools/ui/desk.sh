#!/bin/bash
# shellcheck disable=SC2086,SC2015 # lists of numbers and commands are split on purpose
# A private headless desktop: Xvfb + session D-Bus + AT-SPI + window manager.
#
#   eval "$(desk.sh start [--dir DIR] [--size 1600x1000] [--wm xfwm4|openbox|none] [--home])"
#   desk.sh env | status | stop   [--dir DIR]      (DIR defaults to $DESK_DIR; logs: DIR/*.log)
#   desk.sh run [start options] -- COMMAND...      start, run COMMAND inside, stop; exit code is COMMAND's
#
# --home also gives the programs a private HOME and XDG_*_HOME, so that no settings are shared.
# Only processes started here are ended, each by its recorded pid and start time.
set -u
die() { echo "desk.sh: $*" >&2; exit 1; }
need() { local p; for p in "$@"; do command -v "$p" >/dev/null || die "$p is not installed: ./dev setup does it"; done; }

cmd=${1:-}; [ $# -gt 0 ] && shift
dir=${DESK_DIR:-}; size=1600x1000; wm=xfwm4; home=0
case $cmd in start | run) dir= ;; esac      # a new desktop never goes into the one we are in
while [ $# -gt 0 ]; do
  case $1 in
    --dir) dir=$2; shift 2 ;;
    --size) size=$2; shift 2 ;;
    --wm) wm=$2; shift 2 ;;
    --home) home=1; shift ;;
    --) shift; break ;;
    *) die "unknown option $1" ;;
  esac
done

starttime() { # of a pid: field 22 of its stat line, counted after the command name's ')'
  local s; { read -r s < "/proc/$1/stat"; } 2>/dev/null || return 1
  s=${s##*) }; set -- $s; echo "${20}"
}
record() { echo "$1 $2 $(starttime "$2")" >> "$dir/pids"; }   # NAME PID
spawn() { # NAME COMMAND...: in a session of its own, output to DIR/NAME.log
  local name=$1; shift
  setsid "$@" >"$dir/$name.log" 2>&1 </dev/null &
  record "$name" $!
}
alive() { [ "$(starttime "$1" 2>/dev/null)" = "$2" ]; }
until_ok() { # TENTHS COMMAND...
  local n=$1; shift
  while ! "$@" >/dev/null 2>&1; do n=$((n - 1)); [ $n -le 0 ] && return 1; sleep 0.1; done
}

has_owner() { dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus.NameHasOwner "string:$1" | grep -q true; }
do_env() { cat "$dir/env" 2>/dev/null || die "no desktop in $dir"; }

do_stop() {
  [ -n "$dir" ] && [ -f "$dir/pids" ] || die "no desktop in '${dir}'"
  # every process in a session that we started: children of the bus, of the launcher and so on.
  # A leader may be gone while its children live on: a session's number is not reused while they do.
  local name pid st p s sids=" " all="" left n=40
  while read -r name pid st; do sids="$sids$pid "; done < "$dir/pids"
  for p in /proc/[0-9]*; do
    { read -r s < "$p/stat"; } 2>/dev/null || continue
    s=${s##*) }; set -- $s
    case $sids in *" $4 "*) all="$all ${p#/proc/}:${20}" ;; esac
  done
  while :; do
    left=""
    for p in $all; do
      s=$(starttime "${p%%:*}") && [ "$s" = "${p##*:}" ] && left="$left ${p%%:*}"
    done
    [ -z "$left" ] && break
    [ $n -eq 40 ] && kill $left 2>/dev/null
    [ $n -le 30 ] && kill -9 $left 2>/dev/null
    n=$((n - 1))
    [ $n -le 0 ] && break
    sleep 0.05
  done
  rm -f "$dir/pids" "$dir/env"
  if [ "$(cat "$dir/made" 2>/dev/null)" = auto ]; then rm -rf "$dir"
  elif [ -f "$dir/made" ]; then rm -rf "${dir:?}/run" "${dir:?}/home" "${dir:?}/made"; fi
  return 0
}

do_start() {
  need Xvfb dbus-daemon xdotool xprop setsid
  case $wm in none) ;; *) need "$wm" ;; esac
  local launcher=/usr/libexec/at-spi-bus-launcher
  [ -x $launcher ] || die "at-spi2-core is not installed"
  local made=given
  [ -n "$dir" ] || { dir=$(mktemp -d /tmp/desk.XXXXXX); made=auto; }
  mkdir -p "$dir" || die "cannot make $dir"
  dir=$(cd "$dir" && pwd)
  [ ${#dir} -le 80 ] || die "the path $dir is too long for the sockets below it"
  [ -f "$dir/pids" ] && die "a desktop is recorded in $dir: stop it first"
  : > "$dir/pids"; echo $made > "$dir/made"
  mkdir -p "$dir/run"; chmod 700 "$dir/run"

  # Xvfb chooses a free display itself and writes its number
  rm -f "$dir/display"; mkfifo "$dir/display"
  setsid Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp -noreset -dpi 96 +extension RANDR \
    3<>"$dir/display" >"$dir/xvfb.log" 2>&1 </dev/null &
  record xvfb $!
  local d=""
  read -r -t 10 d < "$dir/display"
  rm -f "$dir/display"
  [ -n "$d" ] || { do_stop; die "Xvfb did not start, see $dir/xvfb.log"; }
  export DISPLAY=:$d

  unset DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS WAYLAND_DISPLAY SESSION_MANAGER XAUTHORITY
  export XDG_RUNTIME_DIR=$dir/run
  export DBUS_SESSION_BUS_ADDRESS="unix:path=$dir/run/bus"
  spawn dbus dbus-daemon --session --nofork --nopidfile --address="$DBUS_SESSION_BUS_ADDRESS"
  until_ok 50 test -S "$dir/run/bus" || { do_stop; die "no D-Bus session, see $dir/dbus.log"; }

  spawn atspi $launcher --launch-immediately
  local q="dbus-send --session --print-reply=literal --dest=org.a11y.Bus /org/a11y/bus"
  until_ok 50 has_owner org.a11y.Bus && until_ok 50 $q org.a11y.Bus.GetAddress || { do_stop; die "no AT-SPI bus, see $dir/atspi.log"; }
  local a11y; a11y=$($q org.a11y.Bus.GetAddress | sed 's/^ *//')
  # this call makes the accessibility bus start the registry
  dbus-send --bus="$a11y" --print-reply --dest=org.a11y.atspi.Registry /org/a11y/atspi/accessible/root \
    org.freedesktop.DBus.Peer.Ping >/dev/null 2>&1 || { do_stop; die "no AT-SPI registry, see $dir/atspi.log"; }
  dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.freedesktop.DBus.Properties.Set \
    string:org.a11y.Status string:IsEnabled variant:boolean:true >/dev/null 2>&1

  if [ "$wm" != none ]; then
    case $wm in
      openbox) spawn wm openbox --sm-disable ;;
      xfwm4) NO_AT_BRIDGE=1 spawn wm xfwm4 --compositor=off ;;   # and keep it off the accessibility bus
      *) NO_AT_BRIDGE=1 spawn wm "$wm" ;;
    esac
    until_ok 50 sh -c "xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'" ||
      { do_stop; die "the window manager did not start, see $dir/wm.log"; }
  fi

  {
    echo "export DESK_DIR='$dir'"
    echo "export DISPLAY='$DISPLAY'"
    echo "export DBUS_SESSION_BUS_ADDRESS='$DBUS_SESSION_BUS_ADDRESS'"
    echo "export AT_SPI_BUS_ADDRESS='$a11y'"
    echo "export XDG_RUNTIME_DIR='$XDG_RUNTIME_DIR'"
    echo "export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_ACCESSIBILITY=1 QT_QPA_PLATFORM=xcb"
    echo "export QT_QPA_PLATFORMTHEME= QT_AUTO_SCREEN_SCALE_FACTOR=0 QT_SCALE_FACTOR=1 QT_FONT_DPI=96"
    echo "export LANG=C.UTF-8 LC_ALL=C.UTF-8"
    echo "unset WAYLAND_DISPLAY SESSION_MANAGER XAUTHORITY XDG_CURRENT_DESKTOP XMODIFIERS QT_IM_MODULE"
    if [ $home = 1 ]; then
      mkdir -p "$dir/home/.config" "$dir/home/.local/share" "$dir/home/.cache"
      echo "export HOME='$dir/home' XDG_CONFIG_HOME='$dir/home/.config'"
      echo "export XDG_DATA_HOME='$dir/home/.local/share' XDG_CACHE_HOME='$dir/home/.cache'"
    fi
  } > "$dir/env"
}

case $cmd in
  start) do_start; do_env ;;
  env) [ -n "$dir" ] || die "give --dir or set DESK_DIR"; do_env ;;
  stop) do_stop ;;
  status)
    [ -n "$dir" ] && [ -f "$dir/pids" ] || die "no desktop in '${dir}'"
    rc=0
    while read -r name pid st; do
      if alive "$pid" "$st"; then echo "$name $pid running"; else echo "$name $pid gone"; rc=1; fi
    done < "$dir/pids"
    exit $rc ;;
  run)
    [ $# -gt 0 ] || die "run needs -- COMMAND"
    do_start
    eval "$(do_env)"
    trap 'do_stop; exit 130' INT TERM
    "$@"; rc=$?
    do_stop
    exit $rc ;;
  *) sed -n '3,11p' "$0" | sed 's/^# \{0,1\}//'; exit 2 ;;
esac
