#!/usr/bin/env bash
# Damages recordings of every container (cut off, zeros, sizes with their bytes swapped, noise) and
# the subtitle files beside one, and has the player play each: it must play or say that it cannot,
# and answer within five seconds.
# Usage: tests/soak/damaged.sh [TIMES [SEED]]     after ./run or ./test has built everything; three
# seconds each. The same seed makes the same damage. Exit status 0 when every file went well.
# shellcheck disable=SC2034  # lib.sh reads it
name=damaged
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "$0")/lib.sh"
times=${1:-300}
seed=${2:-$RANDOM}
RANDOM=$seed
echo "damaged: $times, seed $seed"
begin
make_clips
folder=$device/SDMMCDisk/Soak
cp "$work/clips/a.avi" "$folder/whole.avi"
headunit boot --headless --passive SDMMCDisk/Soak/whole.avi >/dev/null
plays=0
refused=0
longest=0

# write FILE OFFSET: standard input over the file's bytes from there.
write() { dd of="$1" bs=1 seek="$2" conv=notrunc status=none; }
# A place in the file, in `n`: half of them in its head, where the sizes are.
place() {
  local bytes
  bytes=$(stat -c %s "$1")
  below 2
  [ "$n" = 1 ] || bytes=$((bytes < 4096 ? bytes : 4096))
  below "$bytes"
}
# $1 random bytes for `write`, as printf takes them, in `bytes`.
noise() {
  bytes=
  for ((i = 0; i < $1; ++i)); do
    below 256
    bytes+=$(printf '\\x%02x' "$n")
  done
}
damage() {
  local file=$1 at bytes
  place "$file"
  at=$n
  case $2 in
    cut) truncate -s "$at" "$file" ;;
    zeros)
      below 65536
      head -c $((n + 1)) /dev/zero | write "$file" "$at"
      ;;
    swapped)
      at=$((at / 4 * 4))
      bytes=$(od -An -v -tx1 -j "$at" -N 4 "$file" |
        awk '{ for (i = NF; i > 0; --i) printf "\\x%s", $i }')
      printf '%b' "$bytes" | write "$file" "$at"
      ;;
    noise)
      below 64
      noise $((n + 1))
      printf '%b' "$bytes" | write "$file" "$at"
      ;;
  esac
}
# A subtitle file of type $1 (smi, srt, sub, ssa) and damage $2.
subtitles() {
  local head bytes
  case $1 in
    smi) head='<SAMI><BODY><SYNC Start=100><P Class=KRCC>' ;;
    srt) head=$'1\n00:00:00,100 --> 00:00:09,000\n' ;;
    sub) head='{2}{250}' ;;
    ssa) head=$'[Events]\nDialogue: 0,0:00:00.10,0:00:09.00,D,,0,0,0,,' ;;
  esac
  printf '%s' "$head"
  case $2 in
    line) head -c 3000000 /dev/zero | tr '\0' A ;;
    tags) head -c 100000 /dev/zero | tr '\0' '<' ;;
    braces) head -c 100000 /dev/zero | tr '\0' '{' ;;
    zeros) head -c 100000 /dev/zero ;;
    noise)
      noise 2000
      printf '%b' "$bytes"
      ;;
    lines) yes "$head"x | head -n 100000 || true ;;
    huge) head -c 20000000 /dev/zero | tr '\0' B ;;
    blanks) head -c 1000000 /dev/zero | tr '\0' ' ' ;;
  esac
}

# play NUMBER FILE WHAT may|never: has the player play a file of the folder, which may be refused or
# never.
play() {
  local began mark took
  began=$(date +%s%3N)
  mark=$(lines)
  timeout 20 "$program" restart "SDMMCDisk/Soak/$2" --device "$device" >"$work/answer" 2>&1 ||
    { failed "$1" "$2 ($3): $(cat "$work/answer")"; return; }
  tapes 'Player::OnPlay|"kind": "box"' "$mark" ||
    failed "$1" "$2 ($3): neither plays nor is refused"
  answers || { failed "$1" "$2 ($3): no answer"; return; }
  took=$(($(date +%s%3N) - began))
  longest=$((took > longest ? took : longest))
  sleep 0.5
  if taped '"kind": "box"' "$mark"; then
    refused=$((refused + 1))
    [ "$4" = may ] || failed "$1" "$2 ($3): a box, though its recording is whole"
  else
    plays=$((plays + 1))
  fi
  close_boxes || failed "$1" "$2 ($3): no answer behind its box"
}

kinds=(cut zeros swapped noise)
texts=(line tags braces zeros noise lines huge blanks)
types=(smi srt sub ssa)
for ((number = 1; number <= times; ++number)); do
  rm -f "$folder"/damaged.*
  if [ $((number % 4)) = 0 ]; then
    below ${#texts[@]}
    kind=${texts[n]}
    below ${#types[@]}
    type=${types[n]}
    cp "$work/clips/a.avi" "$folder/damaged.avi"
    subtitles "$type" "$kind" >"$folder/damaged.$type"
    play "$number" damaged.avi "$type, $kind" never
  else
    below ${#clips[@]}
    clip=${clips[n]}
    below ${#kinds[@]}
    kind=${kinds[n]}
    file=damaged.${clip##*.}
    cp "$work/clips/$clip" "$folder/$file"
    damage "$folder/$file" "$kind"
    play "$number" "$file" "$clip, $kind" may
  fi
done
echo "damaged: $times files, $plays play, $refused refused, $failures failed; the longest took" \
  "$longest ms"
[ "$failures" = 0 ]
