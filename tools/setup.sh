#!/usr/bin/env bash
# Sourced by run and check: what a fresh machine needs, and the builds. Says what it does, and nothing when all is there.

# ensure_packages FILE...: installs what is missing of the packages named in the files. "a | b" is one or the other.
ensure_packages() {
    local missing=() line choice
    while IFS= read -r line; do
        line=${line%%#*}
        [ -n "${line// /}" ] || continue
        choice=$(pick_package "$line")
        [ "$choice" = installed ] || missing+=("$choice")
    done < <(cat "$@")
    [ ${#missing[@]} -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "These packages are missing; please install them as root: ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing packages: ${missing[*]}"
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq)
    "${apt[@]}" update
    "${apt[@]}" -y -o Dpkg::Use-Pty=0 install --no-install-recommends "${missing[@]}" >/dev/null
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# pick_package "a | b": prints "installed" when one of them is, else the first that apt knows, else the first.
pick_package() {
    local names name
    IFS='|' read -ra names <<<"${1// /}"
    for name in "${names[@]}"; do
        if is_installed "$name"; then
            echo installed
            return
        fi
    done
    for name in "${names[@]}"; do
        if apt-cache show "$name" >/dev/null 2>&1; then
            echo "$name"
            return
        fi
    done
    echo "${names[0]}"
}

# build_preset ROOT PRESET TARGET...: configures and builds without noise; the configuration's output shows only when
# it fails.
build_preset() {
    local root=$1 preset=$2
    shift 2
    local log="$root/build/configure-$preset.log"
    mkdir -p "$root/build"
    if ! (cd "$root" && cmake --preset "$preset") >"$log" 2>&1; then
        cat "$log" >&2
        return 1
    fi
    ninja -C "$root/build/$preset" --quiet "$@"
}
