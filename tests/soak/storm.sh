#!/usr/bin/env bash
# A storm of messages, touches, keys and cards, by seed: the player must answer after every hundred of
# them, and exit in order in the end.
# Usage: tests/soak/storm.sh [MESSAGES [SEED]]     after ./run or ./test has built everything; 100000
# unless told: one unit for every five thousand, two a processor side by side, each some 15 a second.
# Exit status 0 when each answered each time.
# shellcheck disable=SC2034  # lib.sh reads it
name=storm
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "$0")/lib.sh"
messages=${1:-100000}
seed=${2:-$RANDOM}
echo "storm: $messages messages, seed $seed"
begin
# storm COUNT SEED: a scenario. The exit commands alone are left out: what comes behind them would meet
# no player.
storm() {
  awk -v count="$1" -v seed="$2" '
  function pick(n) { return int(rand() * n) }
  BEGIN {
    srand(seed)
    split("0 1 2 15007 15008 20502 20503 20506 20507 20511 20512 4 6 99999", command)
    split("ZEL_BSP_WMUSER_SDCARD ZEL_BSP_WMUSER_MNT_USB BSP_WMUSER_MUTE_NOTIFICATION " \
          "ZEL_BSP_WMUSER_GESTURE ZEL_BSP_WMUSER_IR_KEY QUILLMARK_MSG_BROADCAST " \
          "TCC_CDK_DEMUX_FILTER_READ_FAIL MSG_BlackboxToWndStatus MSG_OrviBroadCast " \
          "MSG_ProcessManagerToOrviEndPoint MSG_SystemBroadcast", name)
    print "put CLIP SDMMCDisk/Record/a.avi"
    print "put CLIP SDMMCDisk/Record/b.avi"
    print "put CLIP USB/c.avi"
    print "boot SDMMCDisk/Record/a.avi"
    for (i = 0; i < count; ++i) {
      if (i % 100 == 0) {
        if (i > 0) answers()
        printf "section \"messages from %d\"\n", i
      }
      kind = pick(100)
      if (kind < 40) printf "send MSG_ProcessManagertoMovie %d %d\n", command[1 + pick(14)], pick(4)
      else if (kind < 70) printf "send %s %d %d\n", name[1 + pick(11)], pick(9), pick(6)
      else if (kind < 88) printf "touch %d %d\n", pick(800), pick(480)
      else if (kind < 92) printf "touch %d %d %d %d\n", pick(800), pick(480), pick(800), pick(480)
      else if (kind < 95) printf "try box %s\n", pick(2) ? "ok" : "no"
      else if (kind < 97) printf "try card %s %s\n", pick(2) ? "insert" : "remove", pick(2) ? "USB" : "SDMMCDisk"
      else printf "drive %d\n", pick(80)
    }
    answers()
    print "section \"it exits in order\""
    print "try card insert SDMMCDisk"
    for (i = 0; i < 3; ++i) print "try box ok"
    print "shutdown --stay"
    print "expect process movie.exe ended exit 0 within 15s"
  }
  function answers() { print "send --sync MSG_BlackboxToWndStatus 0 0"; print "expect running movie.exe" }
' | sed "s#CLIP#$PWD/tests/scenarios/media/clip.avi#"
}
most=5000 # messages that one unit takes
files=()
for ((first = 0; first < messages; first += most)); do
  count=$((messages - first < most ? messages - first : most))
  files+=("$work/storm$first.scn")
  storm "$count" $((seed + first)) >"${files[-1]}"
done
status=0
"$program" scenario -j "$((2 * $(nproc)))" "${files[@]}" >"$work/report.txt" || status=$?
grep '^FAIL' "$work/report.txt" | head -5 || true
tail -n 1 "$work/report.txt"
[ "$status" = 0 ] || complain "see $work/report.txt, which names the tape and a picture of each failure"
exit "$status"
