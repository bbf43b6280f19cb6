#!/usr/bin/env bash
# Where the time goes from the player's start to its first picture, and from the play key to the
# picture of a file played again: medians, from the lines on the tape. stages.sh [ROUNDS]
# After ./run or ./test has built everything; an otherwise idle machine without another unit.
set -euo pipefail
root=$(cd "$(dirname "$0")/../../.." && pwd)
rounds=${1:-7}
work=$root/out/bench-playback
unit=$work/device
program=$root/out/build/native/simulator/command/headunit
clip=$work/clip.mp4
log=$unit/.unit/log.jsonl
mkdir -p "$work"
[ -f "$clip" ] || ffmpeg -nostdin -v error -y -f lavfi -i testsrc2=size=800x480:rate=25 \
  -f lavfi -i sine=330 -t 60 -c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac "$clip"
headunit() { "$program" "$@" --device "$unit" >/dev/null; }
trap 'headunit kill || true' EXIT
headunit boot --headless "$clip"
rm -f "$work"/stage.*

# Each stage: its name, and what stands in the line that ends it.
stages=(
  'process started|"from": "movie.exe", "text": "started"'
  'play begins|"MSG_TO_ANI_WAITING", "wParam": 1'
  'file handed to the demultiplexer|"what": "opening"'
  'file opened, decoders loaded|"what": "opened"'
  'first picture painted|"what": "first picture"'
  'playing, as the player says|Player::OnPlay'
)
# note MARK FIRST KIND: the stages from number FIRST behind line MARK of the tape.
note() {
  local number before='' at
  for ((number = $2; number < ${#stages[@]}; ++number)); do
    at=$(tail -n "+$(($1 + 1))" "$log" | grep -m 1 -F -- "${stages[number]#*|}" |
      sed 's/^{"ms": *\([0-9]*\).*/\1/' || true)
    [ -n "$at" ] || continue
    [ -z "$before" ] || echo $((at - before)) >>"$work/stage.$3.$number"
    before=$at
  done
}
# Waits until the player plays what it began behind line $1.
playing() {
  until tail -n "+$(($1 + 1))" "$log" | grep -q 'Player::OnPlay'; do sleep 0.05; done
}
for ((round = 0; round < rounds; ++round)); do
  mark=$(wc -l <"$log")
  headunit restart "$clip"
  playing "$mark"
  note "$mark" 0 start
  headunit send MSG_ProcessManagertoMovie 20506 0
  headunit send --sync MSG_BlackboxToWndStatus 0 0
  mark=$(wc -l <"$log")
  headunit send MSG_ProcessManagertoMovie 20507 0
  playing "$mark"
  note "$mark" 1 again
done
median() { sort -n "$1" | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
printf '%-36s %10s %10s\n' 'milliseconds up to' 'new start' 'again'
for ((number = 1; number < ${#stages[@]}; ++number)); do
  printf '%-36s' "${stages[number]%%|*}"
  for kind in start again; do
    [ -f "$work/stage.$kind.$number" ] && printf ' %10s' "$(median "$work/stage.$kind.$number")" ||
      printf ' %10s' ''
  done
  echo
done
