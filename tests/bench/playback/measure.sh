#!/bin/sh
# What playing costs: measure.sh NAME COMMAND...
# Runs COMMAND, which plays a recording with a running counter in the upper left corner of DISPLAY
# for at least ten seconds, and prints one line: pictures and standstills as screen_watch sees them,
# and the processor time of the display, of wineserver and of everything that COMMAND started, over
# five seconds in hundredths of a second. DISPLAY must be an Xvfb that nothing else draws on.
# Compare runs of `mpv --no-config --vo=x11 --ao=null --geometry=800x480+0+0 FILE` and of the
# player.
set -eu
[ $# -ge 2 ] || { echo "usage: measure.sh NAME COMMAND..." >&2; exit 2; }
name=$1
shift
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
g++ -O2 "$here/screen_watch.cpp" -o "$work/screen_watch" -lX11

# Ticks of user and system time of one process.
ticks() { sed 's/.*) //' "/proc/$1/stat" 2>/dev/null | awk '{ print $12 + $13 }'; }
# The process and all below it.
tree() {
    echo "$1"
    for child in $(pgrep -P "$1" || true); do tree "$child"; done
}
sum() {
    total=0
    for pid in "$@"; do
        used=$(ticks "$pid")
        total=$((total + ${used:-0}))
    done
    echo "$total"
}

display=$(pgrep -f "Xvfb $DISPLAY( |\$)" | head -n 1)
[ -n "$display" ] || { echo "measure.sh: no Xvfb on $DISPLAY" >&2; exit 1; }
"$@" >"$work/out" 2>&1 &
program=$!
"$work/screen_watch" 0 0 104 40 9 >"$work/seen" &
watch=$!
sleep 3
# shellcheck disable=SC2046  # process numbers
before=$(sum "$display" $(pgrep -x wineserver64 || true) $(tree "$program"))
sleep 5
# shellcheck disable=SC2046
after=$(sum "$display" $(pgrep -x wineserver64 || true) $(tree "$program"))
wait "$watch"
echo "$name: cpu=$((after - before)) $(cat "$work/seen")"
kill "$program" 2>/dev/null || true
wait "$program" 2>/dev/null || true
