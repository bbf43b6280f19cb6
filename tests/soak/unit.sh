# What the drills have in common. Sourced by them, from the checkout; `drill` is the name of one.
# Everything of a run lies in out/soak/NAME: the unit, what was generated, and after a failure the
# evidence: the tape, a picture and the stacks of the player's threads.
work=$PWD/out/soak/$drill
device=$work/device
headunit=$PWD/out/build/native/simulator/command/headunit
[ -x "$headunit" ] || { echo "$drill: first: ./run or ./test" >&2; exit 2; }

unit() { "$headunit" --device "$device" "$@"; }

# seeded [SEED]: the seed that the drill was given, or one of the moment. Every run says its own.
seeded() { echo "${1:-$(($(date +%N | sed 's/^0*//') % 1000000))}"; }

# A number from 0 to $1 - 1; the same ones for the same RANDOM.
pick() { echo $(((RANDOM * 32768 + RANDOM) % $1)); }

evidence() {
  mkdir -p "$work/evidence"
  cp "$device/.unit/log.jsonl" "$work/evidence/" 2>/dev/null || true
  unit shot "$work/evidence/screen.png" 2>/dev/null || true
  unit state >"$work/evidence/state.txt" 2>&1 || true
  local player
  for player in $(grep -lze "^WINEPREFIX=$device/" /proc/[0-9]*/environ 2>/dev/null | cut -d/ -f3); do
    grep -qsz movie.exe "/proc/$player/cmdline" || continue
    for thread in "/proc/$player/task/"*; do
      { echo "$thread $(cat "$thread/comm")"; cat "$thread/stack" "$thread/wchan"; echo; } \
        >>"$work/evidence/stacks.txt" 2>/dev/null || true
    done
    ! command -v gdb >/dev/null || timeout 30 gdb -p "$player" -batch -ex 'thread apply all bt' \
      >>"$work/evidence/stacks.txt" 2>/dev/null || true
  done
  echo "$drill: evidence in $work/evidence"
}

fail() {
  echo "$drill: $*" >&2
  evidence >&2
  exit 1
}
