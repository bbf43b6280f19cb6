#!/bin/sh
# The probe's seeds are the samples of its tests, and what fuzzing has found, packed: make_seeds.sh
# FOLDER.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
unit=$root/out/build/native/tests/unit
(cd "$root" && cmake --preset native && cmake --build out/build/native --target probe_samples fuzz_pack)
files=$(mktemp -d)
trap 'rm -rf "$files"' EXIT
"$unit/probe/probe_samples" "$files"
"$root/tests/fuzz/probe/unpack_findings.sh" "$files"
"$unit/fuzz_pack" "$files" "$1"
