#!/bin/bash
# Installs what the project needs and is quick when all of it is there.
. "$(dirname "$0")/common.sh"

# Debian 12 has Node.js 18; another one that is on the PATH already serves as well.
have_node() {
    local version
    command -v npm >/dev/null || return 1
    version=$(node --version 2>/dev/null) || return 1
    version=${version#v}
    ((${version%%.*} >= 18))
}

wanted() {
    local line node=false
    have_node && node=true
    while read -r line; do
        line=${line%%#*}
        case $line in
            "") ;;
            node:*) $node || echo "${line#node:}" ;;
            *) echo "$line" ;;
        esac
    done <tools/dev/packages.txt
}

missing() {
    local packages installed
    mapfile -t packages < <(wanted)
    installed=$(dpkg-query -W -f '${db:Status-Abbrev}${Package}\n' "${packages[@]}" 2>/dev/null |
        sed -n 's/^ii //p' || true)
    comm -23 <(printf '%s\n' "${packages[@]}" | sort) <(sort <<<"$installed")
}

install_packages() {
    local packages
    mapfile -t packages < <(missing)
    [ ${#packages[@]} -gt 0 ] || return 0
    command -v apt-get >/dev/null || die "install these packages (named as in Debian 12): ${packages[*]}"
    say "installing ${#packages[@]} packages: ${packages[*]}"
    as_root apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${packages[@]}"
}

# A network with a certificate authority of its own has it in the system's store, where npm does not look.
readonly AUTHORITIES=/etc/ssl/certs/ca-certificates.crt
[ ! -f $AUTHORITIES ] || export NODE_EXTRA_CA_CERTS=${NODE_EXTRA_CA_CERTS:-$AUTHORITIES}

# npm's own folder does not tell which lock file it was made from: a stamp does.
install_node_packages() { # FOLDER WHAT
    local folder=$1 stamp=$1/node_modules/.lock-sha256 lock
    [ -f "$folder/package-lock.json" ] || die "$folder/package-lock.json is not there"
    lock=$(sha256sum <"$folder/package-lock.json")
    [ "$(cat "$stamp" 2>/dev/null)" != "$lock" ] || return 0
    say "installing $2"
    (cd "$folder" && npm ci --no-audit --no-fund --loglevel=error)
    echo "$lock" >"$stamp"
}

install_packages
install_node_packages demoserver "the demo server's packages"
install_node_packages tools/node "the formatter of JavaScript"
