#!/bin/sh
# From the pointer's press to the pressed face on screen, of the player and of an empty window,
# which stand side by side on one display and are pressed in turn: with the picture running, and
# paused.
# Usage: tests/bench/ui/press.sh [ROUNDS], after ./run or ./test has built everything.
# The second line of each pair is what is left when the empty window fills through a back buffer
# too. Exit status 1 when a ratio to the plain empty window is above 1.5.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
rounds=${1:-101}
build=$root/out/build/device
unit=$root/out/bench-press
mkdir -p "$unit"
cmake --preset device -S "$root" >"$unit.log"
cmake --build "$build" --target empty_window >>"$unit.log"
g++ -std=c++20 -O2 "$root/tests/bench/ui/press_watch.cpp" -o "$unit.watch" -lX11 -ldl

headunit() { "$root/headunit" "$@" --device "$unit"; }
trap 'headunit kill' EXIT
headunit boot --headless --passive --pip \
    "$root/out/samples/SDMMCDisk/Record/20260314_081500_F.avi"
cp "$build/tests/bench/unit/empty_window.exe" "$unit/"

DISPLAY=$(cat "$unit/.unit/display")
export DISPLAY WINEPREFIX="$unit/.unit/prefix" WINEDEBUG=-all LC_ALL=C.UTF-8

# The stop key of the half-width screen; the empty window's key has the same size.
measure() {
    cd "$unit"
    /usr/lib/wine/wine64 'h:\empty_window.exe' "$1" >>"$unit.log" 2>&1 &
    window=$!
    sleep 3
    "$unit.watch" "$rounds" player 600 450 570 430 600 420 empty 140 390 102 362 140 300
    kill "$window"
    wait "$window" 2>>"$unit.log" || true
}
above=0
for picture in running paused; do
    line=$(measure press)
    echo "picture $picture: $line"
    echo "$line" | awk '{ exit $NF > 1.5 }' || above=1
    echo "  with a back buffer of the screen's size in the empty window: $(measure press-buffered)"
    headunit key play
    sleep 1
done
exit "$above"
