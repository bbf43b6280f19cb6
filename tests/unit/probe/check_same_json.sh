#!/bin/bash
# The native and the Windows build of mediaprobe print the same JSON for the same files.
# Usage: check_same_json.sh NATIVE_MEDIAPROBE MEDIAPROBE_EXE PROBE_SAMPLES [FOLDER]
# FOLDER holds further files. WINE_RUN is the command that runs a Windows program (wine).
set -u
native=$(readlink -f "$1")
windows=$(readlink -f "$2")
samples=$(readlink -f "$3")
more=${4:+$(readlink -f "$4")}
. "$(dirname "$0")/checks.sh"
run=${WINE_RUN:-wine}
need "$run"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/all"
"$samples" "$work/all"
cp "$work/all/wave_pcm_stereo" "$work/all/한국어 녹화.wav"
cd "$work" || exit 2
export WINEDEBUG=-all LC_ALL=C.UTF-8 WINEDLLOVERRIDES=mscoree,mshtml=

missing=("" missing.avi missing/ missing/one.avi all/wave_pcm_stereo/one.avi all/one.avi)
"$native" --json -r all ${more:+"$more"} "${missing[@]}" >native.txt 2>native.err
nativeStatus=$?
"$run" "$windows" --json -r all ${more:+"$more"} "${missing[@]}" >windows.txt 2>windows.err
expect "the exit status" "$nativeStatus" $?
expect "one line per file" "$(($(find all $more -type f | wc -l) + ${#missing[@]}))" "$(wc -l <native.txt)"
difference=$(diff native.txt windows.txt | head -4)
expect "the JSON" "" "$difference"
grep ERROR native.err >native.lines
grep ERROR windows.err >windows.lines
expect "the diagnostic lines" "" "$(diff native.lines windows.lines | head -4)"
finish
