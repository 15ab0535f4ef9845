#!/bin/bash
# ./dev package [--check]
# Makes the Debian package in build/package and lets lintian judge it. With --check it is installed on a fresh Debian,
# in a folder, started there on a virtual desktop with a project, and removed again.
. "$(dirname "$0")/common.sh"

readonly OUT=$ROOT/build/package
check=false

parse() {
    while [ $# -gt 0 ]; do
        case $1 in
            --check) check=true ;;
            *) die "usage: ./dev package [--check]" ;;
        esac
        shift
    done
}

# What only packages need; the rest is installed by ./dev setup.
install_tools() {
    local wanted=(lintian desktop-file-utils appstream dpkg-dev fakeroot) missing=() name
    ! $check || wanted+=(mmdebstrap)
    for name in "${wanted[@]}"; do
        dpkg-query -W -f '${db:Status-Abbrev}' "$name" 2>/dev/null | grep -q '^ii' || missing+=("$name")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    say "installing ${missing[*]}"
    as_root apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
}

make_package() {
    build release tavelin tavelin_desktop
    rm -rf "$OUT"
    mkdir -p "$OUT"
    (cd build/release && cpack -G DEB -B "$OUT") >"$OUT/cpack.log" || { cat "$OUT/cpack.log" >&2 && die "no package"; }
    package=$(find "$OUT" -maxdepth 1 -name '*.deb')
    [ -f "$package" ] || die "cpack made no package"
}

judge() {
    say "checking $(basename "$package")"
    desktop-file-validate packaging/com.korvanda.tavelin.desktop
    xmllint --noout packaging/com.korvanda.tavelin.mime.xml
    appstreamcli validate --no-net build/release/desktop/com.korvanda.tavelin.metainfo.xml
    lintian --allow-root --fail-on error,warning --info --tag-display-limit 0 "$package"
}

main() {
    parse "$@"
    tools/dev/setup.sh
    install_tools
    make_package
    judge
    ! $check || tools/dev/package_check.sh "$package"
    echo "$package"
}
main "$@"
