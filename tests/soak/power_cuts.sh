#!/usr/bin/env bash
# Cuts the player's power at random moments, by seed: Movie.dat must be whole or empty, Config.ini is
# counted, and the next start must show its first frame.
# Usage: tests/soak/power_cuts.sh [TIMES] [SEED]     300 times unless told, about two seconds each.
# Exit status 0 when every start after a cut went well.
set -euo pipefail
cd "$(dirname "$0")/../.."
drill=power_cuts
. tests/soak/unit.sh
times=${1:-300}
seed=$(seeded "${2:-}")
echo "power_cuts: $times cuts, seed $seed"
RANDOM=$seed
rm -rf "$work"
mkdir -p "$device/SDMMCDisk/Record"
for name in a b c; do cp tests/scenarios/media/clip.avi "$device/SDMMCDisk/Record/$name.avi"; done
trap 'unit kill' EXIT
unit boot --headless --passive SDMMCDisk/Record || fail "the unit does not boot"

sizeOf() { stat -c %s "$device/$1" 2>/dev/null || echo 0; }
# Something that makes the player write: another file, stop, mute, the volume.
busy() {
  case $(pick 5) in
    0) unit send MSG_ProcessManagertoMovie 20503 0 ;;
    1) unit send MSG_ProcessManagertoMovie 20506 0 ;;
    2) unit mute on ;;
    3) unit touch 400 300 ;;
    4) unit send MSG_ProcessManagertoMovie 3 0 ;;
  esac 2>/dev/null || true
}

whole=0
empty=0
settings=0
for ((cut = 1; cut <= times; ++cut)); do
  busy
  # The moment is what is tried: from at once to well after the writing.
  [ "$(pick 3)" = 0 ] || sleep "0.0$(pick 10)$(pick 10)"
  unit cut --player 2>/dev/null || true # it may have exited by itself
  case $(sizeOf ResidentFlash2/Data/Movie.dat) in
    1072) whole=$((whole + 1)) ;;
    0) empty=$((empty + 1)) ;;
    *) fail "cut $cut: Movie.dat has $(sizeOf ResidentFlash2/Data/Movie.dat) bytes" ;;
  esac
  if [ "$(sizeOf ResidentFlash2/Data/Config.ini)" = 0 ]; then
    settings=$((settings + 1))
    printf '[MISC]\nDMB=0\n[Sound]\nMUTE=0\n' >"$device/ResidentFlash2/Data/Config.ini"
  fi
  unit restart >/dev/null || fail "cut $cut: the player does not start any more"
done
echo "power_cuts: $times cuts: Movie.dat whole $whole, empty $empty; Config.ini lost $settings;" \
  "every start after a cut showed its first frame"
