#!/bin/sh
# Renders the skin: every line of manifest.txt becomes OUTDIR/SET/FILE, an uncompressed BMP of 24
# bits a pixel, and home.svg the simulated unit's home picture, OUTDIR/home.bmp. Each drawing is
# rendered once for each style it is used in, then cut.
# usage: build.sh [OUTDIR]      (default: out/skin of this checkout)
# Exit status 0: every bitmap is there; 1: something failed; 2: wrong use.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
[ $# -le 1 ] || { echo "usage: build.sh [OUTDIR]" >&2; exit 2; }
out=${1:-$here/../out/skin}
convert=/usr/bin/convert-im6.q16

fail() { echo "skin: $1" >&2; exit 1; }
command -v rsvg-convert >/dev/null || fail "rsvg-convert is missing: install librsvg2-bin"
[ -x "$convert" ] || fail "$convert is missing: install imagemagick"
fc-list 'NanumGothic:bold' family | grep -q . || fail "NanumGothic is missing: install fonts-nanum"

# Nothing to do when every bitmap is there and nothing here is newer than the last rendering.
stamp=$out/.built
is_complete() {
    [ -f "$out/home.bmp" ] || return 1
    grep -v '^#' "$here/manifest.txt" | while read -r set file rest; do
        [ -f "$out/$set/$file" ] || exit 1
    done
}
if [ -f "$stamp" ] && [ -z "$(find "$here" -type f -newer "$stamp")" ] && is_complete; then
    exit 0
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$out/A" "$out/B" "$out/C" "$out/D"
rm -f "$stamp"
grep -v '^#' "$here/manifest.txt" | sed 's/[@:]/ /' | sed 's/@/ /' >"$work/lines"
sed -n 's/^\([a-z]*\)  *\(#[0-9A-F]*\).*/s|@\1\\b|\2|g/p' "$here/palette.txt" >"$work/palette.sed"

# sheet DRAWING STYLES: renders the drawing in the named styles, "rest" first.
sheet() {
    files=$here/style/rest.css
    for style in $(echo "$2" | tr '+' ' '); do
        [ "$style" = rest ] || files="$files $here/style/$style.css"
    done
    cat $files | sed -f "$work/palette.sed" >"$work/style.css"
    if grep -n '@' "$work/style.css" >&2; then fail "a colour is not in palette.txt"; fi
    rsvg-convert --stylesheet "$work/style.css" --output "$work/$1-$2.png" \
        "$here/drawings/$1.svg"
}

# cuts DRAWING STYLES: the arguments that cut every bitmap of one sheet, one a line. Under the
# colour key a pixel is either covered or not: half transparent ones would leave a magenta fringe.
cuts() {
    awk -v drawing="$1" -v styles="$2" '
        $6 == drawing && $7 == styles {
            split($8, at, ",")
            print "( +clone -crop " $3 "x" $4 "+" at[1] "+" at[2] " +repage"
            if ($5 == "key") print "-channel A -threshold 50% +channel -background #FF00FF"
            else print "-background black"
            print "-alpha remove -alpha off -type TrueColor"
            print "-write BMP3:" $1 "/" $2 " +delete )"
        }' "$work/lines"
}

awk '{ print $6, $7 }' "$work/lines" | sort -u >"$work/sheets"
while read -r drawing styles; do
    sheet "$drawing" "$styles"
    set -f
    # shellcheck disable=SC2046  # words
    (cd "$out" && "$convert" "$work/$drawing-$styles.png" $(cuts "$drawing" "$styles") null:)
    set +f
done <"$work/sheets"
# Of the simulated unit, behind the player.
sheet home rest
"$convert" "$work/home-rest.png" -alpha remove -alpha off -type TrueColor "BMP3:$out/home.bmp"
"$here/check.sh" "$out" || fail "the rendered skin does not fit manifest.txt"
touch "$stamp"
