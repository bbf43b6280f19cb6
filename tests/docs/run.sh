#!/bin/bash
# Follows the pages word by word in a fresh clone: every command that stands in one is run as it stands
# there, in the order of the page. Usage: tests/docs/run.sh [PAGE...]
# A command of its own, because it builds a clone and boots a unit. Prints PASS or FAIL for each command and
# leaves what they printed in out/docs/.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$root/out/docs
log=$work/log
rm -rf "$work"
mkdir -p "$log"
git clone --quiet "$root" "$work/checkout" || exit 2
cd "$work/checkout" || exit 2
unset DISPLAY  # the unit runs without a display, so that nobody's desktop is in the way

# What is not run here, and why.
left_out() {
    case $1 in
        ./test*) echo "it is what runs the tests" ;;
        tests/mutants/* | tests/fuzz/*) echo "it takes hours" ;;
        tests/soak/* | tests/view/* | tests/bench/* | tests/coverage.sh*)
            echo "it measures, or installs more" ;;
        *) return 1 ;;
    esac
}

passed=0
failed=0
number=0
# shellcheck disable=SC2046  # file names without spaces
[ $# -gt 0 ] || set -- README.md CONTRIBUTING.md $(git ls-files 'docs/*.md')
while IFS=$'\t' read -r place command; do
    if reason=$(left_out "$command"); then
        echo "NOT RUN $place: $command ($reason)"
        continue
    fi
    number=$((number + 1))
    if timeout 900 bash -c "$command" >"$log/$number" 2>&1 </dev/null; then
        echo "PASS $place: $command"
        passed=$((passed + 1))
    else
        echo "FAIL $place: $command"
        tail -n 5 "$log/$number" | sed 's/^/     /'
        failed=$((failed + 1))
    fi
done < <(PYTHONPATH=tests/docs python3 -c '
import sys
from pages import ROOT, commands
for name in sys.argv[1:]:
    for number, command in commands(ROOT / name):
        print(f"{name}:{number}\t{command}")' "$@")
./headunit kill >"$log/kill" 2>&1
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
