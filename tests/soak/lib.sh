# What the soak commands share: where they work, chance by seed, a unit of their own, questions to the
# player, evidence of a failure. Sourced by them; `name` is what they call themselves.
# shellcheck shell=bash disable=SC2154,SC2034  # name is the sourcing command's, n is theirs to read
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
work=$PWD/out/soak/$name
device=$work/device
program=$PWD/out/build/native/simulator/command/headunit
log=$device/.unit/log.jsonl
failures=0
# Every answer must come within so many seconds.
limit=${SOAK_LIMIT:-5}

headunit() { "$program" "$@" --device "$device"; }
complain() { echo "$name: $*" >&2; }

# An empty folder to work in, and no unit left from an earlier run.
begin() {
  [ -x "$program" ] || { complain "build first: ./run or ./test does"; exit 2; }
  headunit kill >/dev/null 2>&1 || true
  rm -rf "$work"
  mkdir -p "$device/SDMMCDisk/Soak" "$work/clips"
  trap 'headunit kill >/dev/null 2>&1 || true' EXIT
}

# clip FILE OPTIONS...: a moving picture and a tone of twelve seconds.
clip() {
  ffmpeg -nostdin -v error -y -f lavfi -i testsrc2=size=320x240:rate=25 \
    -f lavfi -i sine=330:sample_rate=44100 -t 12 "${@:2}" "$work/clips/$1"
}
# One recording of each container. The player lists no Flash video, but plays one that is called
# otherwise.
clips=(a.avi a.mp4 a.mov a.3gp a.mkv a.wmv a.mpg flash.avi)
make_clips() {
  local h264=(-c:v libx264 -preset ultrafast -pix_fmt yuv420p -g 25 -b:v 1500k)
  clip a.avi "${h264[@]}" -c:a pcm_s16le -ac 1
  clip a.mp4 "${h264[@]}" -c:a aac -movflags +faststart
  clip a.mov -c:v mpeg4 -b:v 1500k -c:a aac
  clip a.3gp -c:v mpeg4 -b:v 1500k -c:a aac
  clip a.mkv "${h264[@]}" -c:a aac
  clip a.wmv -c:v wmv2 -b:v 1500k -c:a wmav2
  clip a.mpg -c:v mpeg2video -b:v 1500k -c:a mp2 -f mpeg
  clip flash.avi -c:v flv1 -b:v 1500k -c:a libmp3lame -f flv
}

# Whether the player's thread takes a message within the limit.
answers() {
  timeout "$limit" "$program" send --sync MSG_BlackboxToWndStatus 0 0 --device "$device" \
    >"$work/answer" 2>&1
}
lines() { wc -l <"$log"; }
# Whether a line of the tape behind line $2 has what $1 describes (an extended regular expression).
taped() { tail -n "+$(($2 + 1))" "$log" | grep -qE -- "$1"; }
# The same, once it is there: within the limit.
tapes() {
  local deadline=$((SECONDS + limit))
  until taped "$1" "$2"; do
    [ "$SECONDS" -lt "$deadline" ] || return 1
    sleep 0.05
  done
}
# Answers the boxes that are open.
close_boxes() {
  while headunit box ok >/dev/null 2>&1; do answers || return 1; done
}
# A random number below $1 in `n`, the same for the same seed. (A subshell has a RANDOM of its own.)
below() { n=$(((RANDOM * 32768 + RANDOM) % $1)); }
# Sleeps for less than $1 milliseconds.
sleep_below() {
  below "$1"
  sleep "$(printf '%d.%03d' $((n / 1000)) $((n % 1000)))"
}

# The process of this unit's player; empty when there is none.
player() {
  local file
  while read -r file; do
    file=${file%/environ}
    ! grep -qsF 'movie.exe' "$file/cmdline" || { echo "${file#/proc/}"; return; }
  done < <(grep -lzxF "WINEPREFIX=$device/.unit/prefix" /proc/[0-9]*/environ 2>/dev/null)
}
# The tape, a picture of the screen, what the unit says of itself and what each thread of the player
# waits for.
keep_evidence() {
  local folder=$PWD/out/soak-failures/$name-$1 process task
  mkdir -p "$folder"
  cp "$log" "$folder/log.jsonl" 2>/dev/null || true
  headunit shot "$folder/screen.png" >/dev/null 2>&1 || true
  headunit state >"$folder/state.txt" 2>&1 || true
  process=$(player)
  if [ -n "$process" ]; then
    for task in "/proc/$process"/task/*; do
      echo "$(cat "$task/comm") $(cat "$task/wchan" 2>/dev/null)"
    done >"$folder/threads" 2>/dev/null || true
    if command -v gdb >/dev/null; then
      timeout 60 gdb -p "$process" -batch -ex 'thread apply all bt 20' >"$folder/stacks" \
        2>/dev/null || true
    fi
  fi
  complain "see $folder"
}
# failed NUMBER WHAT...
failed() {
  failures=$((failures + 1))
  complain "number $1: ${*:2}"
  keep_evidence "$1"
}
