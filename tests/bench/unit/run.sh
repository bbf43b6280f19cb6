#!/bin/sh
# The player's start and its listings, each against a bare program, in one run.
# Usage: tests/bench/unit/run.sh [RUNS], after ./run or ./test has built everything.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
runs=${1:-11}
build=$root/out/build/device
work=$root/out/bench
unit=$work/device
cmake --build "$build" --target bench_start empty_window bench_listing >"$root/out/bench-build.log"
rm -rf "$work"
mkdir -p "$unit/ResidentFlash2/Data" "$unit/ResidentFlash/Image" "$unit/ResidentFlash/apps" \
    "$unit/SDMMCDisk/Many"
ln -s "$root/out/skin" "$unit/ResidentFlash/Image/Movie"
cp "$build/shell/movie.exe" "$build/simulator/coredll/coredll.dll" "$build/simulator/board/"*.dll \
    "$unit/ResidentFlash/apps/"
cp "$build/tests/bench/unit/"*.exe "$unit/"
number=0
while [ "$number" -lt 10000 ]; do
    : >"$unit/SDMMCDisk/Many/recording_$((number * 7919 % 10000)).avi"
    number=$((number + 1))
done

"$root/out/build/native/simulator/command/headunit" prepare "$work/prefix" --device "$unit"
mkfifo "$work/number"
Xvfb -displayfd 3 -screen 0 800x480x24 -nolisten tcp -noreset 3>"$work/number" 2>/dev/null &
server=$!
trap 'WINEPREFIX=$work/prefix wineserver -k; kill $server' EXIT
read -r display <"$work/number"
export DISPLAY=":$display" WINEPREFIX="$work/prefix" WINEDEBUG=-all LC_ALL=C.UTF-8
export WINEPATH="Z:$root/out/build/device/simulator/coredll"
export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe=' ALSA_CONFIG_PATH="$root/out/null-sound.conf"
cd "$work/prefix/dosdevices/h:/"
/usr/lib/wine/wine64 explorer /desktop=bench,800x480 'h:\bench_start.exe' "$runs" \
    'h:\ResidentFlash\apps\movie.exe' 'h:\empty_window.exe' | grep pixel
/usr/lib/wine/wine64 'h:\bench_listing.exe' '\SDMMCDisk\Many' "$runs"
