#!/bin/sh
# Checks a skin folder against manifest.txt: one line for each bitmap that is missing, has another
# size or is no uncompressed BMP of 24 bits a pixel, with the screen that shows it.
# usage: check.sh [DIR]         (DIR holds the sets A to D; default: out/skin of this checkout)
# Exit status 0: complete; 1: something is listed; 2: wrong use or no such folder.
set -u
here=$(cd "$(dirname "$0")" && pwd)
case ${1:-} in -*) echo "usage: check.sh [DIR]" >&2; exit 2 ;; esac
[ $# -le 1 ] || { echo "usage: check.sh [DIR]" >&2; exit 2; }
dir=${1:-$here/../out/skin}
[ -d "$dir" ] || { echo "skin: $dir is not a folder: build the skin first" >&2; exit 2; }

# Prints what is wrong with the file whose size in bytes and first 54 bytes (as decimals) are the
# arguments after the wanted width and height. BITMAPFILEHEADER (14 bytes), BITMAPINFOHEADER (40),
# little endian: type at 0, offset of the pixels 10, header size 14, width 18, height 22, bits a
# pixel 28, compression 30. Rows are padded to 4 bytes.
judge() {
    awk -v want="$1 $2" -v size="$3" -v bytes="$4" '
        function number(at, count,   value, i) {
            for (i = count; i > 0; i--) value = value * 256 + b[at + i]
            return value
        }
        BEGIN {
            if (split(bytes, b, " ") < 54 || b[1] != 66 || b[2] != 77 || number(14, 4) < 40) {
                print "is not a BMP"; exit
            }
            split(want, w, " ")
            width = number(18, 4); height = number(22, 4)
            if (height >= 2147483648) height = 4294967296 - height
            if (width != w[1] || height != w[2])
                print "is " width " x " height " instead of " w[1] " x " w[2]
            if (number(28, 2) != 24)
                print "has " number(28, 2) " bits a pixel instead of 24"
            else if (number(30, 4) != 0)
                print "is compressed"
            else if (number(10, 4) + int((width * 3 + 3) / 4) * 4 * height > size)
                print "ends before its last pixel"
        }'
}

grep -v '^#' "$here/manifest.txt" | (
    total=0
    wrong=0
    while read -r set file width height _ _ _ screens role; do
        total=$((total + 1))
        path=$dir/$set/$file
        if [ ! -f "$path" ]; then
            faults="is missing"
        else
            faults=$(judge "$width" "$height" "$(stat -L -c %s "$path")" \
                "$(od -An -v -tu1 -N54 "$path" | tr '\n' ' ')")
        fi
        [ -n "$faults" ] || continue
        wrong=$((wrong + 1))
        echo "$faults" | while read -r fault; do
            echo "$set/$file $fault (screen $screens: $role)"
        done
    done
    echo "$total bitmaps, $wrong wrong or missing"
    [ "$wrong" -eq 0 ]
)
