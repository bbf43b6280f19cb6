#!/bin/sh
# What the player's own code costs, in instructions of x86-64 as valgrind counts them (the same in
# every run), and what that would be in milliseconds on a processor of 500 MHz that does one
# instruction a cycle: an estimate, as a unit's processor has another instruction set and waits for
# its memory.
# Usage: tests/bench/costs/run.sh FILE..., after ./run has built everything. Needs valgrind.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
cmake --preset native -S "$root" >/dev/null
cmake --build "$root/out/build/native" --target player_costs >/dev/null
program=$root/out/build/native/tests/bench/costs/player_costs

# row NAME WORD...
row() {
    name=$1
    shift
    instructions=$(valgrind --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect=counted \
        "$program" "$@" 2>&1 >/dev/null | sed -n 's/.*Collected : //p')
    echo "$name $instructions" | awk '{ printf "| %s | %d | %.2f ms |\n", $1, $2, $2 / 500000 }'
}

echo "| | instructions | at 500 MHz |"
echo "|---|---:|---:|"
for file; do
    row "probe:$(basename "$file")" probe "$file"
done
row "listing-of-10000" list 10000
row "full-width-screen" paint
