#!/bin/sh
# Prints the lines and branches that the native tests reach, by folder: tests/coverage.sh [FOLDER]...
# With folders, the lines of them that are never reached as well. Needs gcovr.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/out/build/coverage
command -v gcovr >/dev/null || { echo "coverage: gcovr is missing" >&2; exit 2; }
cd "$root"
mkdir -p out
{
    cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="--coverage -O0 -fno-inline" &&
        cmake --build "$build" -j "$(nproc)"
} >out/coverage.log 2>&1 || { tail -n 40 out/coverage.log >&2; exit 1; }
find "$build" -name '*.gcda' -delete
ctest --test-dir "$build" -j "$(nproc)" >>out/coverage.log 2>&1 ||
    { tail -n 20 out/coverage.log >&2; exit 1; }
report() {
    gcovr --root "$root" --object-directory "$build" --exclude tests/ --exclude-throw-branches \
        --exclude-unreachable-branches --gcov-ignore-parse-errors "$@" "$build"
}
report --csv --output out/coverage.csv >>out/coverage.log 2>&1
awk -F, '
    NR > 1 {
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
for folder; do
    report --filter "$folder/" --txt 2>>out/coverage.log | awk '/%/ && $4 != "100%"'
done
