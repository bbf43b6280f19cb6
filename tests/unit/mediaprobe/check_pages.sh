#!/bin/bash
# The pages and verdicts of samples, held against tests/golden/mediaprobe/pages.txt. The samples are
# those that stand in it.
# Usage: check_pages.sh MEDIAPROBE PROBE_SAMPLES [--update-golden]
set -u
probe=$(readlink -f "$1")
samples=$(readlink -f "$2")
here=$(readlink -f "$(dirname "$0")")
golden=$here/../../golden/mediaprobe/pages.txt
. "$here/../probe/checks.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$samples" "$work"
cd "$work" || exit 2

# A page begins with its path at the start of the line, all its other lines are indented.
mapfile -t names < <(grep -v '^ ' "$golden")
# How much was read is the probe's own affair, and has tests there.
"$probe" --explain "${names[@]}" 2>errors.txt |
    sed '/^  Read: /d; s/ ([0-9]* reads*, [0-9]* bytes)$//' >pages.txt
if [ "${3:-}" = --update-golden ]; then
    cp pages.txt "$golden"
    exit
fi
expect "samples in the golden file" yes "$([ ${#names[@]} -ge 60 ] && echo yes)"
expect "the pages" "" "$(diff "$golden" pages.txt | head -20)"
finish
