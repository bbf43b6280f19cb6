#!/usr/bin/env bash
# Has the player exit again and again, and holds each exit to its line on the tape, which must be there
# when `headunit shutdown` returns.
# Usage: tests/soak/exits.sh [TIMES [UNITS]]     after ./run or ./test has built everything; 1000 times
# in 4 units side by side unless told, about a second each. The moments are the same in every run.
# Exit status 0 when no line was missing.
# shellcheck disable=SC2034  # lib.sh reads it
name=exits
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "$0")/lib.sh"
times=${1:-1000}
units=${2:-4}
begin
per_file=$(((times + units - 1) / units))
for ((file = 0; file < units; ++file)); do
  {
    echo "put $PWD/tests/scenarios/media/clip.avi SDMMCDisk/Record/a.avi"
    echo 'boot SDMMCDisk/Record/a.avi'
    for ((i = file * per_file; i < (file + 1) * per_file && i < times; ++i)); do
      # An exit at every moment of a start and of playing: 0 to 400 ms behind it.
      printf 'section "exit %d"\nrestart\nwait %dms of its start\nshutdown --stay\n' "$i" $((i * 37 % 400))
      echo 'expect process movie.exe ended exit 0 within 0ms'
    done
  } >"$work/exits$file.scn"
done
"$program" scenario -j "$units" "$work"/exits*.scn >"$work/report.txt" || true
grep '^FAIL' "$work/report.txt" || true
exits=$(grep -c '^PASS [^ ]*: "\?exit ' "$work/report.txt" || true)
echo "exits: $exits of $times exits with status 0 and with their line on the tape at once"
[ "$exits" = "$times" ]
