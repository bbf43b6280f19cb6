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

# off KEPT NEW CROP LIMIT FUZZ NAME: at most LIMIT of the part's pixels may differ by more than FUZZ.
outdated=0
off() {
    local count
    count=$("$convert" \( "$1" -crop "$3" +repage \) \( "$2" -crop "$3" +repage \) -fuzz "$5" \
        -metric AE -format '%[distortion]' -compare info: 2>&1) || true
    if ! awk -v n="$count" -v limit="$4" 'BEGIN { exit !(n ~ /^[0-9.e+]+$/ && n <= limit) }'; then
        echo "pictures: $6 is out of date: $count pixels of $3 differ"
        outdated=1
    fi
}
# All but the clock and the moving picture has to be what is kept; letters may be smoothed otherwise
# on another machine. What moves is another moment of the same road.
number=0
for screen in "${screens[@]}"; do
    name=$(basename "$screen" .png)
    left=$((number % 2 * 812 + 6))
    row=$((number / 2))
    top=$((row * 492 + 6))
    "$convert" "$docs/skin-screens.png" -crop "800x480+$left+$top" +repage "$out/kept.png"
    case $name in
    *full*) video=0,55,799,328 ;;
    *slide*) video=0,66,799,479 ;;
    *half*) video=400,60,799,319 ;;
    *) video=0,0,0,0 ;;
    esac
    for picture in "$out/kept.png" "$screen"; do
        "$convert" "$picture" -fill black -draw "rectangle ${video%,*,*} ${video#*,*,}" \
            -draw 'rectangle 607,10 720,45' "$out/still-$(basename "$picture")"
    done
    off "$out/still-kept.png" "$out/still-$name.png" 800x480+0+0 1500 10% "skin-screens.png, $name"
    off "$out/kept.png" "$screen" 800x480+0+0 60000 30% "skin-screens.png, $name"
    number=$((number + 1))
done
off "$docs/unit.png" "$out/new/unit.png" 800x141+0+339 1500 10% unit.png
off "$docs/unit.png" "$out/new/unit.png" 800x480+0+0 60000 30% unit.png
off "$docs/skin-sheet.png" "$out/new/skin-sheet.png" 3000x3000+0+0 600 10% skin-sheet.png
[ "$outdated" = 0 ] || { echo "take them again: docs/pictures.sh"; exit 1; }
echo "pictures: up to date"
