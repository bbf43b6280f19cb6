#!/bin/sh
# The probe's seeds are the samples of its tests, and what fuzzing has found: make_seeds.sh FOLDER.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
(cd "$root" && cmake --preset native && cmake --build out/build/native --target probe_samples)
mkdir -p "$1"
"$root/out/build/native/tests/unit/probe/probe_samples" "$1"
"$root/tests/fuzz/probe/unpack_findings.sh" "$1"
