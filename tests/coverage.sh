#!/bin/sh
# Prints the lines and branches that the native tests reach, by folder.
# Usage: tests/coverage.sh [FOLDER]...
# With folders only what their own tests (tests/unit/FOLDER) reach of them, and the lines that are
# never reached. Needs gcovr.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/out/build/coverage
command -v gcovr >/dev/null || { echo "coverage: gcovr is missing" >&2; exit 2; }
cd "$root"
mkdir -p out
: >out/coverage.log
quietly() { "$@" >>out/coverage.log 2>&1 || { tail -n 40 out/coverage.log >&2; exit 1; }; }

quietly cmake -S . -B "$build" -G "Unix Makefiles" -DCMAKE_BUILD_TYPE=None \
    -DCMAKE_CXX_FLAGS="--coverage -O0 -fno-inline -fprofile-abs-path"
find "$build" -name '*.gcda' -delete
[ $# -gt 0 ] || set -- .
for folder; do
    tests=$build/tests/unit/$folder
    [ "$folder" != . ] || tests=$build
    quietly make -C "$tests" -j "$(nproc)" all
    # The package is built anew for its check, without counters.
    quietly ctest --test-dir "$tests" -j "$(nproc)" -E '^check_package$'
done

report() {
    gcovr "$build" --root "$root" --exclude tests/ --exclude-throw-branches \
        --exclude-unreachable-branches "$@" 2>>out/coverage.log
}
filters=
[ "$1" = . ] || filters=$(printf -- "--filter $root/%s/ " "$@")
report $filters --csv --output out/coverage.csv
awk -F, '
    NR > 1 {
        sub(/^out\/build\/coverage\/scope\/[^\/]*\//, "", $1) # headers, through the folders of the layers
        split($1, part, "/")
        folder = part[1] == "simulator" ? part[1] "/" part[2] : part[1]
        lines[folder] += $2; reached[folder] += $3; branches[folder] += $5; taken[folder] += $6
    }
    END {
        printf "%-20s %7s %8s %9s %8s\n", "folder", "lines", "reached", "branches", "taken"
        for (folder in lines)
            printf "%-20s %7d %7.1f%% %9d %7.1f%%\n", folder, lines[folder],
                100 * reached[folder] / (lines[folder] ? lines[folder] : 1), branches[folder],
                100 * taken[folder] / (branches[folder] ? branches[folder] : 1) | "sort"
    }' out/coverage.csv
[ "$1" = . ] || report $filters --txt | awk '
    !/%/ { name = $1; next } # a long name stands on a line of its own
    !/100%/ && $1 != "TOTAL" { print ($1 ~ /^[0-9]/ ? name : "") $0 }'
