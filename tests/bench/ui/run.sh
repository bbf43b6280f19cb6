#!/bin/sh
# Builds and runs the benchmarks of the screens under Wine: tests/bench/ui/run.sh
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
"$root/skin/build.sh" "$root/out/skin" >/dev/null
cd "$root"
cmake --preset device >/dev/null
cmake --build out/build/device --target bench_screens -j "$(nproc)" >/dev/null
exec .ci/wine-run out/build/device/tests/bench/ui/bench_screens.exe
