#!/bin/bash
# Runs the fuzz targets of the settings one after the other and prints a row of figures for each.
# Usage: tests/fuzz/settings/run.sh SECONDS [TARGET]...
# What is found lands in out/fuzz/TARGET/.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
seconds=$1
shift
[ $# -gt 0 ] || set -- ini movie_dat
cd "$root"
mkdir -p out/fuzz
cmake --preset fuzz >out/fuzz/build.log
tests/fuzz/settings/make_seeds.sh out/fuzz/seeds-settings
[ ! -w /dev/shm ] || export TMPDIR=/dev/shm # every input is written to a file
for target; do
    cmake --build out/build/fuzz --target "fuzz_settings_$target" >>out/fuzz/build.log
    mkdir -p "out/fuzz/$target/corpus"
    status=0
    nice -n 15 "out/build/fuzz/tests/fuzz/settings/fuzz_settings_$target" \
        -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=1024 \
        -print_final_stats=1 -artifact_prefix="out/fuzz/$target/" \
        "out/fuzz/$target/corpus" "out/fuzz/seeds-settings/$target" \
        >"out/fuzz/$target/log.txt" 2>&1 || status=$?
    printf '%-10s %12s executions, coverage %s, status %s\n' "$target" \
        "$(sed -n 's/^stat::number_of_executed_units: *//p' "out/fuzz/$target/log.txt")" \
        "$(grep -o 'cov: [0-9]* ft: [0-9]*' "out/fuzz/$target/log.txt" | tail -1)" "$status"
done
