#!/bin/bash
# Takes every picture of these pages: unit.png and skin-screens.png from the running unit, which
# pictures.scn leads through its screens, skin-sheet.png (every bitmap) from the rendered skin.
# usage: pictures.sh            takes them and keeps them
#        pictures.sh --check    takes them into out/pictures and tells which kept one is out of date
# Needs what ./run has built. Exit status 0: taken, or none is out of date; 1: one is, or the unit
# failed; 2: wrong use.
set -eu
docs=$(cd "$(dirname "$0")" && pwd)
root=$docs/..
out=$root/out/pictures
convert=/usr/bin/convert-im6.q16
montage=/usr/bin/montage-im6.q16
# Smallest files: no alpha, strongest compression, no dates.
packed=(-alpha off -depth 8 -define png:compression-level=9 -define "png:exclude-chunks=date,time")
case ${1:-} in
'') to=$docs ;;
--check) to=$out/new ;;
*) echo "usage: pictures.sh [--check]" >&2; exit 2 ;;
esac
colour() { sed -n "s/^$1  *\(#[0-9A-F]*\).*/\1/p" "$root/skin/palette.txt"; }

rm -rf "$out"
mkdir -p "$out/screens" "$out/new"
"$root/skin/build.sh" "$root/out/skin" >&2
"$root/simulator/samples/make.sh" "$root/out/samples" >&2
sed "s|^shot |shot $out/screens/|" "$docs/pictures.scn" >"$out/pictures.scn"
"$root/headunit" scenario --verbose "$out/pictures.scn" >"$out/log" 2>&1 ||
    { cat "$out/log"; echo "pictures: the unit was not led through its screens" >&2; exit 1; }

screens=("$out"/screens/*.png)
"$convert" "$out/screens/01-full-playing.png" "${packed[@]}" "$to/unit.png"
"$montage" "${screens[@]}" "${packed[@]}" -background "$(colour track)" -tile 2x -geometry +6+6 \
    "$to/skin-screens.png"
sheet=()
while read -r set file width height _; do
    sheet+=(-label "$set/$file\n$width x $height" "$root/out/skin/$set/$file")
done < <(grep -v '^#' "$root/skin/manifest.txt")
"$montage" "${packed[@]}" -font NanumGothicBold -pointsize 11 -fill "$(colour text)" \
    -background "$(colour track)" "${sheet[@]}" -tile 8x -geometry '160x96>+6+6' \
    "$to/skin-sheet.png"
[ "$to" != "$docs" ] || { echo "pictures: taken"; exit 0; }

# off KEPT NEW LIMIT FUZZ NAME: more than LIMIT pixels differ, each by more than FUZZ.
outdated=0
off() {
    local count
    count=$("$convert" "$1" "$2" -fuzz "$4" -metric AE -format '%[distortion]' -compare info: 2>&1) ||
        true
    if ! awk -v n="$count" -v limit="$3" 'BEGIN { exit !(n ~ /^[0-9.e+]+$/ && n <= limit) }'; then
        echo "pictures: $5 is out of date: $count pixels differ"
        outdated=1
    fi
}
# What moves, as rectangles left,top right,bottom: the recording, the clock, the position.
clock=607,10,720,45
full="$clock 0,55,799,328 202,388,636,411 632,380,799,404"
moving() {
    case $1 in
    *full-blocked) echo "$clock 202,388,636,411 632,380,799,404" ;;
    *full*) echo "$full" ;;
    *slide*) echo 0,65,799,479 0,0,179,64 620,0,799,64 ;;
    *half*) echo 400,60,799,319 408,328,655,350 651,321,799,339 ;;
    esac
}
# still PICTURE NAME OUT: without what moves.
still() {
    local cover=() part
    for part in $(moving "$2"); do
        cover+=(-draw "rectangle ${part%,*,*} ${part#*,*,}")
    done
    "$convert" "$1" -fill black "${cover[@]}" "$3"
}
# Whatever stands still has to be what is kept, to the pixel; what moves may be another moment of
# the same road.
same() { # KEPT NEW NAME WHERE
    still "$1" "$3" "$out/kept-still.png"
    still "$2" "$3" "$out/new-still.png"
    off "$out/kept-still.png" "$out/new-still.png" 0 0 "$4"
    off "$1" "$2" 60000 30% "$4"
}
number=0
for screen in "${screens[@]}"; do
    name=$(basename "$screen" .png)
    row=$((number / 2))
    place=$((number % 2 * 812 + 6))+$((row * 492 + 6))
    "$convert" "$docs/skin-screens.png" -crop "800x480+$place" +repage "$out/kept.png"
    same "$out/kept.png" "$screen" "$name" "skin-screens.png, $name"
    number=$((number + 1))
done
same "$docs/unit.png" "$out/new/unit.png" 01-full-playing unit.png
off "$docs/skin-sheet.png" "$out/new/skin-sheet.png" 0 0 skin-sheet.png
[ "$outdated" = 0 ] || { echo "take them again: docs/pictures.sh"; exit 1; }
echo "pictures: up to date"
