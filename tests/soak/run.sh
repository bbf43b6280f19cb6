#!/usr/bin/env bash
# Goes to the next file 200 times through a list of mixed recordings and watches what the player
# holds beyond the first 20 files. GDI objects and threads must not grow at all. Wine itself leaves
# an event open for every filter graph and registry keys at every search for filters, and its media
# library keeps memory: of handles, keys and memory the player may gain as much a file as a bare
# graph that opens the same files.
# Usage: tests/soak/run.sh [TIMES]     needs a built unit and out/samples (./test makes both);
# takes about two seconds a file. Exit status 0 when nothing grew, 1 when something did.
set -euo pipefail
cd "$(dirname "$0")/../.."
times=${1:-200}
first=20     # files that may still allocate: codecs, fonts, caches
bareTimes=100
work=$PWD/out/soak
device=$work/device
headunit=$PWD/out/build/native/simulator/command/headunit
log=$device/.unit/log.jsonl
names=(handles 'registry keys' 'GDI objects' threads 'KiB of memory')

[ "$times" -gt "$first" ] || { echo "soak: more than $first files, please" >&2; exit 2; }
"$headunit" kill --device "$device" 2>/dev/null || true
rm -rf "$work"
mkdir -p "$device/SDMMCDisk/Mixed"
compile() {
  x86_64-w64-mingw32-g++-posix -std=c++20 -O2 -static -municode -I. -DNO_DSHOW_STRSAFE -Wall -Wextra \
    -Wconversion -Wshadow -Werror -o "$work/$1.exe" tests/soak/figures.cpp "tests/soak/$2.cpp" \
    -lstrmiids -lole32 -luuid -lntdll -lpsapi -lgdi32 -ladvapi32
}
compile figures figures_main
compile bare_graph bare_graph
number=0 # both cards have recordings of one name
while read -r file; do
  ln "$file" "$device/SDMMCDisk/Mixed/$((++number))_${file##*/}"
done < <(find out/samples -path '*/.*' -prune -o -type f -print | sort)
cp tests/scenarios/media/* "$device/SDMMCDisk/Mixed"
printf 'no recording' >"$device/SDMMCDisk/Mixed/words.avi"
trap '"$headunit" kill --device "$device"' EXIT
"$headunit" boot --device "$device" --headless --passive SDMMCDisk/Mixed >/dev/null

inUnit() {
  local sound=()
  compgen -G '/dev/snd/pcm*p' >/dev/null || sound=("ALSA_CONFIG_PATH=$PWD/out/null-sound.conf")
  env "WINEPREFIX=$device/.unit/prefix" WINEDEBUG=-all LC_ALL=C.UTF-8 "${sound[@]}" \
    "DISPLAY=$(tr -d '\r\n' <"$device/.unit/display")" /usr/lib/wine/wine64 "$@" 2>/dev/null |
    tr -d '\r'
}
inUnit "$work/figures.exe" --check

started() { grep -c 'Player::OnPlay.n"' "$log" || true; }

# One step: the next file plays, or is refused and its message answered.
step() {
  local before deadline
  before=$(started)
  "$headunit" send --device "$device" MSG_ProcessManagertoMovie 20503 0
  deadline=$((SECONDS + 20))
  while [ "$(started)" = "$before" ]; do
    "$headunit" box --device "$device" ok 2>/dev/null && refused=$((refused + 1))
    if [ "$SECONDS" -ge "$deadline" ]; then
      echo "soak: file $1 neither plays nor is refused; see $log" >&2
      exit 1
    fi
    sleep 0.1
  done
  sleep 1.6 # a request within 1.7 s of the last is not taken
}

most=(0 0 0 0 0)
refused=0
printf '%6s %8s %14s %12s %8s %14s\n' files "${names[@]}"
for ((file = 1; file <= times; ++file)); do
  step "$file"
  [ "$file" -le "$first" ] || [ $((file % 20)) = 0 ] || [ "$file" = "$times" ] || continue
  read -r -a now <<<"$(inUnit "$work/figures.exe" movie.exe)"
  [ $((file % 20)) != 0 ] && [ "$file" != "$times" ] ||
    printf '%6d %8d %14d %12d %8d %14d\n' "$file" "${now[@]}"
  for i in "${!now[@]}"; do
    [ "$file" -gt "$first" ] || most[i]=$((now[i] > most[i] ? now[i] : most[i]))
  done
done
echo "soak: $refused of $times files were refused, as they should"

mapfile -t recordings < <(find "$device/SDMMCDisk/Mixed" -type f ! -name '*.s*[it]' -printf '%f\n')
mapfile -t bare < <(inUnit "$work/bare_graph.exe" "$bareTimes" \
  "${recordings[@]/#/H:\\SDMMCDisk\\Mixed\\}")
read -r -a bareFirst <<<"${bare[0]}"
read -r -a bareLast <<<"${bare[1]}"

status=0
for i in "${!names[@]}"; do
  grown=$((now[i] - most[i]))
  case $i in
    0 | 1 | 4) # per file at most 1.15 times the bare graph's, and 20 KiB for the looking
      allowed=$(((bareLast[i] - bareFirst[i]) * (times - first) * 115 / 100 / (bareTimes - first)))
      allowed=$((allowed + (i == 4 ? 20 * (times - first) : 0)))
      ;;
    *) allowed=0 ;;
  esac
  verdict=good
  [ "$grown" -le "$allowed" ] || { verdict="TOO MUCH" && status=1; }
  echo "soak: ${names[i]}: at most ${most[i]} in the first $first files, ${now[i]} after $times:" \
    "$grown more, $allowed allowed: $verdict"
done
exit "$status"
