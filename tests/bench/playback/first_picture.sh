#!/usr/bin/env bash
# From the play key to the first picture on the screen, against a bare program that renders and
# runs the same file with Wine's own filters; then from the player's start to the first picture,
# against mpv. Each pair in turn, in one run: first_picture.sh [ROUNDS]
# After ./run or ./test has built everything; needs mpv, libx11-dev and an otherwise idle machine
# without another unit.
set -euo pipefail
root=$(cd "$(dirname "$0")/../../.." && pwd)
rounds=${1:-7}
work=$root/out/bench-playback
unit=$work/device
headunit=$root/out/build/native/simulator/command/headunit
wine=/usr/lib/wine/wine64
clip=$work/clip.mp4
# A point of the test picture that stays blue, clear of both bars.
point=(440 250 0000FE)
mkdir -p "$work"
[ -f "$clip" ] || ffmpeg -nostdin -v error -y -f lavfi -i testsrc2=size=800x480:rate=25 \
  -f lavfi -i sine=330 -t 60 -c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac "$clip"
g++ -O2 -o "$work/first_colour" "$root/tests/bench/playback/first_colour.cpp" -lX11
x86_64-w64-mingw32-g++-posix -std=c++20 -O2 -static -municode -DNO_DSHOW_STRSAFE \
  -o "$work/bare_player.exe" "$root/tests/bench/playback/bare_player.cpp" -lstrmiids -lole32 -luuid

export WINEDEBUG=-all LC_ALL=C.UTF-8 WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='
export GST_REGISTRY=$root/out/gstreamer-registry.bin
[ -n "$(compgen -G '/dev/snd/pcm*p')" ] || export ALSA_CONFIG_PATH=$root/out/null-sound.conf
servers=()
cleanup() {
  "$headunit" kill --device "$unit" 2>/dev/null || true
  WINEPREFIX=$work/bare wineserver -k 2>/dev/null || true
  [ ${#servers[@]} -eq 0 ] || kill "${servers[@]}" 2>/dev/null || true
}
trap cleanup EXIT

# A display of its own; its name in $display.
start_display() {
  rm -f "$work/number"
  mkfifo "$work/number"
  Xvfb -displayfd 3 -screen 0 800x480x24 -nolisten tcp -noreset 3>"$work/number" 2>/dev/null &
  servers+=($!)
  read -r display <"$work/number"
  display=:$display
}
picture() { DISPLAY=$1 "$work/first_colour" "${point[@]}" 15; }
median() { sort -n "$1" | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

rm -rf "$work/bare"
# A prefix as Wine makes it: the unit's has the unit's filters alone.
WINEPREFIX=$work/bare "$wine" wineboot -i
WINEPREFIX=$work/bare wineserver -w
start_display
bare=$display
"$headunit" boot --headless --device "$unit" "$clip" >/dev/null
player=$(tr -d '\r\n' <"$unit/.unit/display")
start_display
free=$display
rm -f "$work"/*.times

# The player stands still, no picture on the screen.
stop_player() {
  "$headunit" send --device "$unit" MSG_ProcessManagertoMovie 20506 0
  sleep 2
}
# When the player last told the waiting animation to begin, which is how playing begins; by the
# tick count, from the tape.
play_began() {
  grep '"MSG_TO_ANI_WAITING", "wParam": 1' "$unit/.unit/log.jsonl" | tail -n 1 |
    sed 's/.*"ms": \([0-9]*\).*/\1/' | awk -v boot="$(cat "$unit/.unit/boot")" '{ print $1 + boot }'
}
# From $1 to the moment that the picture was seen: field $2 of what first_colour prints.
note() {
  awk -v a="$1" -v field="$2" '{ printf "%.1f\n", $field - a }' "$work/seen" >>"$work/$3.times"
}
press() {
  picture "$player" >"$work/seen" &
  local watch=$!
  "$headunit" key --device "$unit" play
  wait "$watch"
  note "$(play_began)" 1 "$1"
}
run_bare() {
  picture "$bare" >"$work/seen" &
  local watch=$!
  DISPLAY=$bare WINEPREFIX=$work/bare "$wine" explorer /desktop=bench,800x480 \
    "$work/bare_player.exe" "Z:${clip//\//\\}" 3 | tr -d '\r' >"$work/begun" &
  local program=$!
  wait "$watch"
  cp "$work/seen" "$work/seen.first"
  sleep 4
  picture "$bare" >"$work/seen" || true
  wait "$program"
  note "$(sed -n 2p "$work/begun")" 1 bare-again
  mv "$work/seen.first" "$work/seen"
  note "$(sed -n 1p "$work/begun")" 1 bare-first
  # What Wine runs beside it must not be in the way of the others.
  WINEPREFIX=$work/bare wineserver -k
  WINEPREFIX=$work/bare wineserver -w
}
# From the start of the process, which the kernel knows to 10 ms.
begin_of() {
  local ticks
  ticks=$(sed 's/.*) //' "/proc/$1/stat" | awk '{ print $20 }')
  awk -v now="$(date +%s.%N)" -v ticks="$ticks" \
    '{ printf "%.1f", (now - $1) * 1000 + ticks * 10 }' /proc/uptime
}
start_player() {
  stop_player
  picture "$player" >"$work/seen" &
  local watch=$!
  "$headunit" restart --device "$unit" "$clip" >/dev/null
  wait "$watch"
  note "$(begin_of "$(pgrep -n -f 'apps.movie.exe')")" 2 player-start
}
start_mpv() {
  picture "$free" >"$work/seen" &
  local watch=$!
  DISPLAY=$free mpv --no-config --vo=x11 --ao=null --geometry=800x480+0+0 "$clip" >/dev/null 2>&1 &
  local program=$!
  wait "$watch"
  note "$(begin_of "$program")" 2 mpv-start
  kill "$program"
  wait "$program" || true
}

for ((round = 0; round < rounds; round++)); do
  start_player
  start_mpv
  # A player that has not played yet: it was stopped when it ended in good order.
  stop_player
  "$headunit" send --device "$unit" MSG_ProcessManagertoMovie 3 2
  sleep 1
  "$headunit" restart --device "$unit" >/dev/null
  sleep 2
  press player-first
  sleep 2
  stop_player
  press player-again
  sleep 1
  run_bare
done
compare() {
  awk -v what="$1" -v a="$(median "$work/$2.times")" -v b="$(median "$work/$3.times")" \
    'BEGIN { printf "%-52s %7.1f ms %7.1f ms  %.2f\n", what, a, b, a / b }'
}
compare 'play key to picture, first in its process / bare' player-first bare-first
compare 'play key to picture, again in its process / bare' player-again bare-again
compare 'start of the process to picture / mpv' player-start mpv-start
