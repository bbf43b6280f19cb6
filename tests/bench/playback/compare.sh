#!/bin/sh
# Playing in the unit against mpv on a display of its own, in turn: compare.sh [ROUNDS]
# After ./run or ./test has built everything; needs mpv, libx11-dev and an otherwise idle machine
# without another unit. Prints processor time over five seconds in hundredths of a second (the
# display's and wineserver's included), the pictures seen and the longest standstill, then the same
# processor time while the player is paused and while it is stopped.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
rounds=${1:-3}
work=$root/out/bench-playback
unit=$work/device
headunit="$root/out/build/native/simulator/command/headunit"
mkdir -p "$work"
clip=$work/clip.mp4
[ -f "$clip" ] || ffmpeg -nostdin -v error -y -f lavfi -i testsrc2=size=800x480:rate=25 \
    -f lavfi -i sine=330 -t 60 -c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac "$clip"
g++ -O2 "$root/tests/bench/playback/screen_watch.cpp" -o "$work/screen_watch" -lX11
trap '"$headunit" kill --device "$unit" >"$work/log" 2>&1 || true' EXIT

ticks() {
    total=0
    for pid in "$@"; do
        used=$(sed 's/.*) //' "/proc/$pid/stat" 2>"$work/log" | awk '{ print $12 + $13 }')
        total=$((total + ${used:-0}))
    done
    echo "$total"
}
over_five_seconds() {
    before=$(ticks "$@")
    sleep 5
    echo $(($(ticks "$@") - before))
}
display_server() { pgrep -f "Xvfb.* $1|Xvfb $1" | head -n 1; }

measure_unit() {
    "$headunit" boot --headless --device "$unit" "$clip" >"$work/log"
    DISPLAY=$(cat "$unit/.unit/display")
    export DISPLAY
    sleep 8  # the control bar hides after six seconds
    "$work/screen_watch" 0 0 104 40 6 >"$work/seen" &
    watch=$!
    # shellcheck disable=SC2046  # process numbers
    set -- $(pgrep -f 'apps.movie.exe') $(pgrep -x wineserver64) $(pgrep Xvfb)
    playing=$(over_five_seconds "$@")
    wait "$watch"
    "$headunit" key --device "$unit" play >"$work/log"
    sleep 1
    paused=$(over_five_seconds "$@")
    "$headunit" send --device "$unit" MSG_ProcessManagertoMovie 20506 0 >"$work/log"
    sleep 1
    stopped=$(over_five_seconds "$@")
    "$headunit" kill --device "$unit" >"$work/log"
    echo "player: cpu=$playing paused=$paused stopped=$stopped $(cat "$work/seen")"
}

measure_mpv() {
    rm -f "$work/number"
    mkfifo "$work/number"
    Xvfb -displayfd 3 -screen 0 800x480x24 -nolisten tcp 3>"$work/number" 2>"$work/log" &
    server=$!
    read -r number <"$work/number"
    DISPLAY=":$number"
    export DISPLAY
    mpv --no-config --vo=x11 --ao=null --geometry=800x480+0+0 "$clip" >"$work/log" 2>&1 &
    player=$!
    sleep 4
    "$work/screen_watch" 0 0 104 40 6 >"$work/seen" &
    watch=$!
    playing=$(over_five_seconds "$player" "$server")
    wait "$watch"
    kill "$player"
    wait "$player" || true
    kill "$server"
    echo "mpv: cpu=$playing $(cat "$work/seen")"
}

round=0
while [ "$round" -lt "$rounds" ]; do
    measure_unit
    measure_mpv
    round=$((round + 1))
done
