#!/bin/bash
# Runs fuzz targets of the probe one after the other and prints a row of figures for each.
# Usage: tests/fuzz/probe/run.sh SECONDS [TARGET]...      (run from the checkout)
# The seeds are the test samples; what is found lands in out/fuzz/TARGET/.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
seconds=$1
shift
[ $# -gt 0 ] || set -- whole image riff mp4 asf ogg mpegps mpegaudio flac ape flv
cd "$root"
cmake --preset fuzz >/dev/null
cmake --preset native >/dev/null
cmake --build out/build/native --target probe_samples >/dev/null
mkdir -p out/fuzz/seeds
out/build/native/tests/unit/probe/probe_samples out/fuzz/seeds
for target; do
    cmake --build out/build/fuzz --target "fuzz_probe_$target" >/dev/null
    mkdir -p "out/fuzz/$target/corpus"
    dictionary=tests/fuzz/probe/dictionaries/$target.dict
    if [ -e "$dictionary" ]; then dictionary=-dict=$dictionary; else dictionary=; fi
    status=0
    nice -n 15 "out/build/fuzz/tests/fuzz/probe/fuzz_probe_$target" \
        -max_total_time="$seconds" -max_len=600000 -timeout=10 -rss_limit_mb=1024 \
        -print_final_stats=1 -artifact_prefix="out/fuzz/$target/" \
        $dictionary \
        "out/fuzz/$target/corpus" out/fuzz/seeds >"out/fuzz/$target/log.txt" 2>&1 || status=$?
    printf '%-10s %12s executions, coverage %s, status %s\n' "$target" \
        "$(sed -n 's/^stat::number_of_executed_units: *//p' "out/fuzz/$target/log.txt")" \
        "$(grep -o 'cov: [0-9]* ft: [0-9]*' "out/fuzz/$target/log.txt" | tail -1)" "$status"
done
