#!/bin/bash
# Runs fuzz targets one after the other and prints a row of figures for each.
# Usage: tests/fuzz/run.sh BUDGET [TARGET]...
#   BUDGET: executions (10000000) or seconds (60s), for each target
#   TARGET: AREA_NAME, as probe_flv or settings_ini; all of them without one
# AREA is a folder here: its make_seeds.sh FOLDER writes the seeds (FOLDER/NAME, or one for all),
# `options` holds libFuzzer's. The corpus grows in out/fuzz/TARGET/corpus; what is found lands
# beside it.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
case ${1:-} in
    *[0-9]s) budget=-max_total_time=${1%s} ;;
    [1-9]*) budget=-runs=$1 ;;
    *) sed -n '3,5s/^# //p' "$0" >&2; exit 2 ;;
esac
shift
cd "$root"
mkdir -p out/fuzz
cmake --preset fuzz >out/fuzz/build.log
if [ $# -eq 0 ]; then
    mapfile -t targets < <(cmake --build out/build/fuzz --target help | grep -o 'fuzz_[a-z0-9_]*$' |
        sed 's/^fuzz_//' | sort)
    set -- "${targets[@]}"
fi
[ ! -w /dev/shm ] || export TMPDIR=/dev/shm # some targets write every input to a file
worst=0
for target; do
    area=${target%%_*} name=${target#*_}
    folder=out/fuzz/$target
    seeds=out/fuzz/seeds/$area
    cmake --build out/build/fuzz --target "fuzz_$target" >>out/fuzz/build.log
    mkdir -p "$folder/corpus" "$seeds"
    "tests/fuzz/$area/make_seeds.sh" "$seeds" >>out/fuzz/build.log
    [ ! -d "$seeds/$name" ] || seeds=$seeds/$name
    options=$(cat "tests/fuzz/$area/options")
    dictionary=tests/fuzz/$area/dictionaries/$name.dict
    [ ! -e "$dictionary" ] || options="$options -dict=$dictionary"
    status=0
    nice -n 15 "out/build/fuzz/tests/fuzz/$area/fuzz_$target" "$budget" $options -timeout=60 \
        -rss_limit_mb=1024 -print_final_stats=1 -artifact_prefix="$folder/" "$folder/corpus" "$seeds" \
        >"$folder/log.txt" 2>&1 || status=$?
    printf '%-18s %12s executions, %s, status %s\n' "$target" \
        "$(sed -n 's/^stat::number_of_executed_units: *//p' "$folder/log.txt")" \
        "$(grep -o 'cov: [0-9]* ft: [0-9]*' "$folder/log.txt" | tail -1)" "$status"
    [ "$status" = 0 ] || worst=1
done
exit "$worst"
