#!/usr/bin/env bash
# Cuts the player's power at random moments, by seed: Movie.dat must be whole or empty, Config.ini is
# counted, and the next start must show its first frame.
# Usage: tests/soak/power_cuts.sh [TIMES [SEED]]     after ./run or ./test has built everything; 300
# times unless told, about two seconds each. Exit status 0 when every start after a cut went well.
# shellcheck disable=SC2034  # lib.sh reads it
name=power_cuts
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "$0")/lib.sh"
times=${1:-300}
seed=${2:-$RANDOM}
RANDOM=$seed
echo "power_cuts: $times, seed $seed"
begin
for file in a b c; do cp tests/scenarios/media/clip.avi "$device/SDMMCDisk/Soak/$file.avi"; done
headunit boot --headless --passive SDMMCDisk/Soak >/dev/null
flash=$device/ResidentFlash2/Data

bytes_of() { stat -c %s "$flash/$1" 2>/dev/null || echo 0; }
# Something that makes the player write: another file, stop, mute, the volume, the exit.
busy() {
  below 5
  case $n in
    0) headunit send MSG_ProcessManagertoMovie 20503 0 ;;
    1) headunit send MSG_ProcessManagertoMovie 20506 0 ;;
    2) headunit mute on ;;
    3) headunit touch 400 300 ;;
    4) headunit send MSG_ProcessManagertoMovie 3 0 ;;
  esac 2>/dev/null || true
}

whole=0
empty=0
settings=0
for ((number = 1; number <= times; ++number)); do
  busy
  # The moment is what is tried: from at once to well after the writing.
  below 3
  [ "$n" = 0 ] || sleep_below 100
  headunit cut --player 2>/dev/null || true # it may have exited by itself
  bytes=$(bytes_of Movie.dat)
  case $bytes in
    1072) whole=$((whole + 1)) ;;
    0) empty=$((empty + 1)) ;;
    *) failed "$number" "Movie.dat has $bytes bytes" ;;
  esac
  if [ "$(bytes_of Config.ini)" = 0 ]; then
    settings=$((settings + 1))
    printf '[MISC]\nDMB=0\n[Sound]\nMUTE=0\n' >"$flash/Config.ini"
  fi
  headunit restart >/dev/null || { failed "$number" "the player does not start any more"; break; }
done
echo "power_cuts: $times cuts: Movie.dat whole $whole, empty $empty; Config.ini lost $settings;" \
  "$failures failed"
[ "$failures" = 0 ]
