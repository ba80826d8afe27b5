#!/usr/bin/env bash
# Sourced by run, check and the scripts of tools and bench: what a fresh machine needs, and the builds. Says what it does, and nothing when all is there.

# ensure_packages FILE...: installs what is missing of the packages named in the files. "a | b" is one or the other.
ensure_packages() {
    local missing=() chosen=() as_root=() line
    while IFS= read -r line; do
        line=${line%%#*}
        [ -z "${line// /}" ] || is_installed "$line" || missing+=("$line")
    done < <(cat "$@")
    [ ${#missing[@]} -gt 0 ] || return 0

    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "These packages are missing; please install them as root: ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq)
    "${apt[@]}" update
    for line in "${missing[@]}"; do
        chosen+=("$(first_known "$line")")
    done
    echo "Installing packages: ${chosen[*]}"
    local log
    log=$(mktemp)
    if ! "${apt[@]}" -y -o Dpkg::Use-Pty=0 install --no-install-recommends "${chosen[@]}" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

# is_installed "a | b": true when one of them is.
is_installed() {
    local names name
    IFS='|' read -ra names <<<"${1// /}"
    for name in "${names[@]}"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" != installed ] || return 0
    done
    return 1
}

# first_known "a | b": prints the first one that apt knows, else the first.
first_known() {
    local names name
    IFS='|' read -ra names <<<"${1// /}"
    for name in "${names[@]}"; do
        if apt-cache show "$name" >/dev/null 2>&1; then
            echo "$name"
            return
        fi
    done
    echo "${names[0]}"
}

# build_bench ROOT TARGET...: builds programs of bench in the release build.
build_bench() {
    local root=$1
    shift
    mkdir -p "$root/build"
    (cd "$root" && cmake --preset release -DQUORVIA_BENCH=ON >/dev/null)
    ninja -C "$root/build/release" --quiet "$@"
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
