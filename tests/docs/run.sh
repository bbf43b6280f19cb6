#!/bin/bash
# Follows the pages word by word: every command that stands in one is run as it stands there, in the
# order of the page, in a copy of the checkout that nobody has built or run yet.
# Usage: tests/docs/run.sh [--reuse] [PAGE...]
# With --reuse the copy takes over what this checkout has built, and what builds is run in the
# checkout itself. Prints PASS or FAIL for each command and leaves what they printed in
# out/docs/log/. Exit status 0: all passed; 1: one failed; 2: it could not begin.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$root/out/docs
copy=$work/checkout
log=$work/log
reuse=no
[ "${1:-}" != --reuse ] || { reuse=yes; shift; }
unset DISPLAY  # the unit runs without a display, so that nobody's desktop is in the way

# Everything that git knows of, as it stands here, with its times to the last digit: the prefix goes
# by them.
make_copy() {
    [ ! -x "$copy/headunit" ] || "$copy/headunit" kill >/dev/null 2>&1
    rm -rf "$work" && mkdir -p "$log" && git clone --quiet --no-checkout "$root" "$copy" &&
        (cd "$root" && git ls-files -z |
            tar -c --format=posix --null -T - --ignore-failed-read) | tar -x -C "$copy" &&
        git -C "$copy" reset --quiet
}

# What ./run makes: programs, skin, Wine prefix, recordings.
take_over() {
    local program
    mkdir -p "$copy/out"
    for program in $(cd "$root" && find out/build/device -name '*.exe' -o -name '*.dll') \
        out/build/native/simulator/command/headunit out/build/native/mediaprobe/mediaprobe; do
        (cd "$root" && cp -l --parents "$program" "$copy") || return 1
    done
    # It is as new as its sources even where the build had nothing to do; ./headunit goes by the
    # time.
    touch "$copy/out/build/native/simulator/command/headunit"
    cp -al "$root/out/skin" "$root/out/samples" "$root/out/prefix" "$copy/out" &&
        rm "$copy"/out/prefix/*.reg && cp -p "$root"/out/prefix/*.reg "$copy/out/prefix" &&
        ln -s build/native/mediaprobe/mediaprobe "$copy/out/mediaprobe" && touch "$copy/out/.built"
}

# What is not run here, and why.
left_out() {
    case $1 in
        ./test*) echo "it is what runs the tests" ;;
        packaging/*) [ $reuse = yes ] && echo "tests/package runs it" ;;
        tests/mutants/* | tests/fuzz/*) echo "it takes hours" ;;
        tests/soak/* | tests/view/* | tests/bench/* | tests/coverage.sh*)
            echo "it measures, or installs more" ;;
        *) return 1 ;;
    esac
}

# Where a command is run.
place_of() {
    case $reuse$1 in
        yescmake* | yesout/build/*) echo "$root" ;;
        *) echo "$copy" ;;
    esac
}

make_copy || { echo "the checkout could not be copied to $copy" >&2; exit 2; }
trap '"$copy/headunit" kill >"$log/kill" 2>&1' EXIT
[ $reuse = no ] || take_over || { echo "there is no build to reuse: ./run first" >&2; exit 2; }
cd "$copy" || exit 2
# shellcheck disable=SC2046  # file names without spaces
[ $# -gt 0 ] || set -- README.md CONTRIBUTING.md $(git ls-files 'docs/*.md')
commands=$(PYTHONPATH=tests/docs python3 -c '
import sys
from pages import ROOT, commands
for name in sys.argv[1:]:
    for number, command in commands(ROOT / name):
        print(f"{name}:{number}\t{command}")' "$@") || exit 2

passed=0
failed=0
number=0
while IFS=$'\t' read -r place command; do
    if reason=$(left_out "$command"); then
        echo "NOT RUN $place: $command ($reason)"
        continue
    fi
    number=$((number + 1))
    began=$SECONDS
    if (cd "$(place_of "$command")" && timeout 900 bash -c "$command") >"$log/$number" 2>&1 </dev/null
    then
        echo "PASS $place: $command ($((SECONDS - began)) s)"
        passed=$((passed + 1))
    else
        echo "FAIL $place: $command"
        tail -n 5 "$log/$number" | sed 's/^/     /'
        failed=$((failed + 1))
    fi
done <<<"$commands"
echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]
