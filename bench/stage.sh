#!/usr/bin/env bash
# Sourced by bench/measure, bench/ratios and bench/compare: the pictures they are run with, and the display they run on.

pictures=${pictures:-"$here/build/bench-pictures"}
mkdir -p "$pictures"

# make_from SOURCE NAME COMMAND...: makes a picture once, by COMMAND SOURCE NAME.
make_from() {
    local source="$pictures/$1" name=$2
    shift 2
    [ -f "$pictures/$name" ] && return
    "$@" "$source" "$pictures/part-$name"
    mv "$pictures/part-$name" "$pictures/$name"
}

# marks WIDTH HEIGHT: fills the array `drawn` with nine marks, where the screen is probed.
marks() {
    local x y
    drawn=()
    for x in 12 50 88; do
        for y in 12 50 88; do
            drawn+=(-draw "rectangle $(($1 * x / 100 - $1 / 25)),$(($2 * y / 100 - $2 / 25)) $(($1 * x / 100 + $1 / 25)),$(($2 * y / 100 + $2 / 25))")
        done
    done
}

# make_picture NAME WIDTH HEIGHT [COLOUR OF THE MARKS]: noise that costs a decoder what a photograph does, with marks.
make_picture() {
    local drawn
    [ -f "$pictures/$1" ] && return
    marks "$2" "$3"
    convert -size "$(($2 / 4))x$(($3 / 4))" -seed 7 plasma:fractal -resize "$2x$3!" -attenuate 0.3 -seed 7 \
        +noise Gaussian -fill "${4:-#ff00ff}" "${drawn[@]}" -quality 90 "$pictures/part-$1"
    mv "$pictures/part-$1" "$pictures/$1"
}

# make_tiled NAME WIDTH HEIGHT TILE: the same of a picture that is laid side by side, where noise would take more
# memory than the tool is allowed.
make_tiled() {
    local drawn
    [ -f "$pictures/$1" ] && return
    marks "$2" "$3"
    convert -size "$2x$3" "tile:$pictures/$4" -fill '#ff00ff' "${drawn[@]}" -quality 90 "$pictures/part-$1"
    mv "$pictures/part-$1" "$pictures/$1"
}

# make_walk: a folder of 40 of 24 MP, whose marks' colours tell each from its neighbours. Six files under forty names:
# to a viewer a picture is its path.
make_walk() {
    local colours=('#ff0000' '#00ff00' '#ffff00' '#0000ff' '#ff00ff' '#00ffff') i
    walk="$pictures/walk"
    mkdir -p "$walk"
    for i in $(seq 0 5); do
        make_picture "walk-$i.jpg" 6000 4000 "${colours[$i]}"
    done
    for i in $(seq 0 39); do
        ln -f "$pictures/walk-$((i % 6)).jpg" "$walk/$(printf %02d "$i").jpg"
    done
}

# start_display WORK [ARGUMENT...]: an X server of its own with WORK as its place for files; sets DISPLAY and `server`,
# its process id. ARGUMENTs go to the server.
start_display() {
    local work=$1 _
    shift
    Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp "$@" 3>"$work/display" >/dev/null 2>&1 &
    # shellcheck disable=SC2034 # for who sources this
    server=$!
    for _ in $(seq 100); do
        [ -s "$work/display" ] && break
        sleep 0.05
    done
    DISPLAY=":$(cat "$work/display")"
    export DISPLAY
}

# fresh_home DIRECTORY: makes DIRECTORY the home of what is started from now on, with nothing of the user's.
fresh_home() {
    mkdir -p "$1/run"
    chmod 700 "$1/run"
    export HOME="$1" XDG_RUNTIME_DIR="$1/run" QUORVIA_ROOT="$1/root" HALVEXA_MACHINE_STORE="$1/machine.db"
    unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_STATE_HOME XDG_CACHE_HOME
}
