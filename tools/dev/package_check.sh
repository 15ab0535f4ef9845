#!/bin/bash
# tools/dev/package_check.sh PACKAGE.deb
# Installs the package on a fresh Debian 12 made for it in a folder, starts the program there on a virtual desktop,
# opens a project as a double click would, and removes the package: nothing of it may stay.
. "$(dirname "$0")/common.sh"

package=$(realpath "${1:?usage: package_check.sh PACKAGE.deb}")
readonly package WINDOW_SECONDS=60
readonly MIRROR=${TAVELIN_MIRROR:-http://deb.debian.org/debian}
root=$(mktemp -d)
readonly root

clean_up() {
    local folder
    for folder in proc dev/shm; do
        ! mountpoint -q "$root/$folder" || as_root umount "$root/$folder"
    done
    as_root rm -rf --one-file-system "$root"
}
trap clean_up EXIT

inside() {
    as_root chroot "$root" \
        env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}

as_engineer() { inside runuser -u engineer -- env HOME=/home/engineer "$@"; }

make_root() {
    say "a fresh Debian 12 in $root"
    as_root mmdebstrap --quiet --variant=apt --include=ca-certificates bookworm "$root" "$MIRROR"
    as_root mount -t proc proc "$root/proc"
    as_root mkdir -p "$root/dev/shm"
    as_root mount -t tmpfs tmpfs "$root/dev/shm"
}

install_package() {
    say "installing the package"
    inside apt-get -q update >/dev/null
    inside apt-get -q -y --no-install-recommends install desktop-file-utils shared-mime-info xdg-utils libglib2.0-bin \
        xvfb xauth xdotool procps dbus dbus-x11 openssl >/dev/null
    as_root cp "$package" "$root/tmp/tavelin.deb"
    inside apt-get -q -y --no-install-recommends install /tmp/tavelin.deb >/dev/null
}

# The questions of a first start are answered beforehand: nobody is there.
prepare_user() {
    inside useradd --create-home engineer
    as_root tee "$root/home/engineer/prepare" >/dev/null <<'EOS'
set -e
own=$HOME/.config/korvanda/tavelin/PKI/own
mkdir -p "$own/certs" "$own/private"
chmod 700 "$own/private"
openssl req -x509 -newkey rsa:2048 -nodes -days 365 -sha256 -outform DER -subj "/O=Korvanda/CN=Tavelin@$(hostname)" \
    -addext "basicConstraints=critical,CA:FALSE" \
    -addext "keyUsage=critical,nonRepudiation,digitalSignature,keyEncipherment,dataEncipherment,keyCertSign" \
    -addext "extendedKeyUsage=critical,serverAuth,clientAuth" \
    -addext "subjectAltName=URI:urn:$(hostname):Korvanda:Tavelin@$(hostname),DNS:$(hostname)" \
    -keyout "$own/private/tavelin_key.pem" -out "$own/certs/tavelin.der" 2>/dev/null
printf '%s\n' '[General]' 'AutomaticUpdate.CheckForUpdates=false' '' '[AutomaticUpdate]' \
    'AutomaticUpdate.CheckForUpdates=false' '' '[QlumTipWindow]' 'ShowTip=false' \
    >"$HOME/.config/korvanda/tavelin/tavelin.ini"
printf '%s\n' '[General]' 'Name=plant' >"$HOME/plant 1.uap"
EOS
    as_engineer sh /home/engineer/prepare
}

# Runs a script on a virtual desktop as that user.
on_desktop() {
    as_engineer dbus-run-session -- xvfb-run -a -s '-screen 0 1400x1000x24' sh -ec "$1"
}

start_program() {
    say "starting it"
    on_desktop "tavelin '/home/engineer/plant 1.uap' & program=\$!
        timeout $WINDOW_SECONDS xdotool search --sync --onlyvisible --name ' - plant 1' >/dev/null
        kill \$program; wait \$program || true" || die "the program showed no window with the project"
}

# The way of a double click: the type of the file, the program of the type, its start.
open_by_type() {
    say "opening a project by its type"
    local type program
    type=$(as_engineer gio info -a standard::content-type '/home/engineer/plant 1.uap')
    [[ $type == *" application/vnd.korvanda.tavelin-project" ]] || die "what the desktop says of the file: $type"
    program=$(as_engineer xdg-mime query default application/vnd.korvanda.tavelin-project)
    [ "$program" = com.korvanda.tavelin.desktop ] || die "files of this type are opened by '$program'"
    on_desktop "gio open '/home/engineer/plant 1.uap'
        timeout $WINDOW_SECONDS xdotool search --sync --onlyvisible --name ' - plant 1' >/dev/null
        pkill -u engineer -x tavelin" || die "opening the file did not show a window with the project"
}

remove_package() {
    say "removing it"
    local licences
    licences=$(inside dpkg -L tavelin | grep -c '/tavelin/lic/.') || true
    ((licences > 1)) || die "the licences are not beside the program"
    inside apt-get -q -y purge tavelin >/dev/null
    local left
    left=$(inside find / -xdev -not -path '/tmp/*' -iname '*tavelin*' |
        grep -v '^/home/' || true)
    [ -z "$left" ] || die "left behind: $left"
}

main() {
    make_root
    install_package
    prepare_user
    start_program
    open_by_type
    remove_package
    say "the package installs, starts, opens a project and goes without a trace"
}
main
