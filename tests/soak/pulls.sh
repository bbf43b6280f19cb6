#!/usr/bin/env bash
# Pulls the card at random moments while recordings of every container are opened, while they are
# moved to another place and while they play, and looks whether the player goes on: within five
# seconds it must answer, and a read that has failed must have shown its box.
# Usage: tests/soak/pulls.sh [TIMES [SEED]]     after ./run or ./test has built everything; three
# seconds each. The same seed pulls at the same moments. Exit status 0 when every pull went well.
# shellcheck disable=SC2034  # lib.sh reads it
name=pulls
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "$0")/lib.sh"
times=${1:-500}
seed=${2:-$RANDOM}
RANDOM=$seed
echo "pulls: $times, seed $seed"
begin
make_clips
for clip in "${clips[@]}"; do
  cp "$work/clips/$clip" "$device/SDMMCDisk/Soak"
done
headunit boot --headless --passive SDMMCDisk/Soak/a.avi >/dev/null
longest=0
boxes=0

pull() {
  local number=$1 clip=$2 moment=$3 mark began took
  headunit restart "SDMMCDisk/Soak/$clip" >"$work/answer" 2>&1 ||
    { failed "$number" "$clip: $(cat "$work/answer")"; return; }
  close_boxes || { failed "$number" "no answer at the start of $clip"; return; }
  headunit send MSG_ProcessManagertoMovie 20506 0
  answers || { failed "$number" "no answer to the stop of $clip"; return; }
  mark=$(lines)
  headunit send MSG_ProcessManagertoMovie 20507 0
  case $moment in
    opening) sleep_below 500 ;;
    seeking)
      tapes 'Player::OnPlay' "$mark" || true
      headunit send MSG_ProcessManagerToOrviEndPoint 0 0
      sleep_below 400
      ;;
    playing)
      tapes 'Player::OnPlay' "$mark" || true
      sleep_below 2000
      ;;
  esac
  began=$(date +%s%3N)
  mv "$device/SDMMCDisk" "$work/pulled"
  headunit send ZEL_BSP_WMUSER_SDCARD 0 0
  # Once the answer is there, then again once the boxes are closed, and a moment later.
  for round in 1 2 3; do
    if ! answers; then
      mv "$work/pulled" "$device/SDMMCDisk"
      failed "$number" "$clip pulled while $moment: no answer ($round)"
      return
    fi
    took=$(($(date +%s%3N) - began))
    if taped '"read failed"' "$mark" && ! tapes '"kind": "box"' "$mark"; then
      failed "$number" "$clip pulled while $moment: reads fail and nothing says so"
    fi
    close_boxes || true
    [ "$round" = 3 ] || sleep 0.3
  done
  ! taped '"kind": "box"' "$mark" || boxes=$((boxes + 1))
  longest=$((took > longest ? took : longest))
  mv "$work/pulled" "$device/SDMMCDisk"
  headunit send ZEL_BSP_WMUSER_SDCARD 1 0
}

moments=(opening opening seeking playing)
for ((number = 1; number <= times; ++number)); do
  below ${#clips[@]}
  clip=${clips[n]}
  below ${#moments[@]}
  pull "$number" "$clip" "${moments[n]}"
done
echo "pulls: $times pulled, $boxes ended in a box, $failures failed; the longest took $longest ms"
[ "$failures" = 0 ]
