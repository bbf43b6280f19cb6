#!/bin/bash
# Tests of the skin: renders it into a folder of its own and looks at every bitmap.
# usage: test.sh      Last line: "N passed, N failed"; exit status 0 when nothing failed, else 1.
set -u
here=$(cd "$(dirname "$0")" && pwd)
convert=/usr/bin/convert-im6.q16
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
skin=$work/skin
passed=0
failed=0

ok() { # NAME STATUS [DETAIL]
    if [ "$2" -eq 0 ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "FAILED: $1${3:+: $3}"
    fi
}
colour() { # NAME: of the palette, or black, in which the player writes the names of the list
    [ "$1" != black ] || echo "#000000"
    sed -n "s/^$1  *\(#[0-9A-F]*\).*/\1/p" "$here/palette.txt"
}
lines() { grep -v '^#' "$here/manifest.txt"; }
# Distinct colours of a bitmap or of a part of it (further arguments), one #RRGGBB a line.
colours() { "$convert" "$@" -unique-colors -depth 8 txt:- | grep -o '#[0-9A-F]\{6\}'; }

rendering() {
    "$here/build.sh" "$skin" >/dev/null
    ok "the skin is rendered" $?
    local before after
    before=$(stat -c %Y.%i "$skin/A/movie.bmp" "$skin/.built")
    "$here/build.sh" "$skin" && after=$(stat -c %Y.%i "$skin/A/movie.bmp" "$skin/.built")
    [ "$before" = "$after" ]
    ok "nothing is rendered when nothing changed" $?
    rm "$skin/D/vol_3.bmp"
    "$here/build.sh" "$skin" >/dev/null && [ -f "$skin/D/vol_3.bmp" ]
    ok "a bitmap that is gone is rendered again" $?
}

# Magenta stands in keyed bitmaps only, and no pixel there mixes with it; the colour that the video
# layer shows through (0xF800F8) stands nowhere.
keys() {
    local set file paint rest all mixed
    while read -r set file _ _ paint rest; do
        all=$(colours "$skin/$set/$file")
        if [ "$paint" = key ]; then
            grep -q '#FF00FF' <<<"$all"
            ok "$set/$file leaves something out" $?
        else
            ! grep -q '#FF00FF' <<<"$all"
            ok "$set/$file is drawn whole" $?
        fi
        mixed=$(tr -d '#' <<<"$all" | while read -r c; do
            [ "$c" != FF00FF ] || continue
            r=$((16#${c:0:2})) g=$((16#${c:2:2})) b=$((16#${c:4:2}))
            [ $((r - g)) -gt 48 ] && [ $((b - g)) -gt 48 ] && echo "#$c"
        done)
        [ -z "$mixed" ]
        ok "$set/$file has no shade of magenta" $? "$mixed"
    done < <(lines)
}

# outline COLOUR BITMAP CROP: the box around its pixels in that part, as WIDTHxHEIGHT+LEFT+TOP.
outline() {
    "$convert" "$2" -crop "$3" +repage -alpha off -fill white -opaque "$(colour "$1")" \
        -fill black +opaque white -bordercolor black -border 1 -format '%@' info:
}
# near A B: two boxes whose edges differ by no more than the smoothing of an edge.
near() {
    awk -v a="$1" -v b="$2" 'BEGIN {
        split(a, p, /[x+]/); split(b, q, /[x+]/)
        for (i = 1; i <= 4; i++) if (p[i] - q[i] > 2 || q[i] - p[i] > 2) exit 1
        exit !(p[1] > 4 && p[2] > 4)
    }'
}
# A held face is the face at rest in other colours: its tile keeps shape and place, so does the
# icon.
held() { # HELD REST X Y LEFT TOP RIGHT BOTTOM [TILE HELD-TILE ICON HELD-ICON]: X, Y where REST stands
    # in the window; the colours of tile and icon at rest and held
    local size=$(($7 - $5))x$(($8 - $6)) at before after
    at=$size+$(($5 - $3))+$(($6 - $4))
    [ "$(identify-im6.q16 -format %wx%h "$skin/$1")" = "$size" ]
    ok "$1 fills its key" $? "wanted $size"
    before=$(outline "${9:-key}" "$skin/$2" "$at")
    after=$(outline "${10:-amber}" "$skin/$1" "$size+0+0")
    [ "$before" = "$after" ]
    ok "$1 keeps its tile" $? "$before at rest, $after held"
    [ "${11:-text}" != none ] || return 0
    before=$(outline "${11:-text}" "$skin/$2" "$at")
    after=$(outline "${12:-ink}" "$skin/$1" "$size+0+0")
    near "$before" "$after"
    ok "$1 keeps its icon" $? "$before at rest, $after held"
}
heldFaces() {
    local bar="A/video_bg_control.bmp 0 329" title="A/video_bg_title.bmp 0 0"
    held A/btn02_navi_on.bmp $bar 0 377 200 425
    held A/btn03_close_on.bmp $title 737 0 800 45
    held A/btn02_play_on.bmp $bar 632 425 712 480
    held A/btn02_halt_on.bmp A/btn02_halt_non.bmp 632 425 632 425 712 480
    held A/btn03_stop_on.bmp $bar 712 425 792 480
    held A/listup_icon_on.bmp $bar 0 425 200 473
    held A/btn05_minus_on.bmp $bar 280 425 360 480
    held A/btn04_mute_on.bmp $bar 200 425 280 480
    held A/btn04_muteoff_on.bmp A/btn04_muteoff_non.bmp 200 425 200 425 280 480 key amber alert ink
    held A/btn06_plus_on.bmp $bar 552 425 632 480
    held A/ch_left_on.bmp A/ch_left.bmp 0 140 0 140 140 280
    held A/ch_right_on.bmp A/ch_right.bmp 660 140 660 140 800 280
    held A/button_front_on.bmp A/button_front.bmp 632 329 632 329 800 377 key amber text text
    held A/button_rear_on.bmp A/button_rear.bmp 632 329 632 329 800 377 key amber text text
    local half="B/video_PIP.bmp 0 0" list="C/list_bg.bmp 0 0"
    held B/btn_close_on.bmp $half 301 0 400 60
    held B/btn02_back_on.bmp $half 2 420 81 480
    held B/btn03_play_on.bmp $half 81 420 160 480
    held B/btn03_halt_on.bmp B/btn03_halt_non.bmp 81 420 81 420 160 480
    held B/btn04_stop_on.bmp $half 160 420 239 480
    held B/btn05_next_on.bmp $half 318 420 397 480
    held B/btn01_list_on.bmp $half 239 420 318 480
    held B/btn05_minus_on.bmp $half 81 360 160 420
    held B/btn04_muteoff_on.bmp $half 2 360 81 420
    held B/btn04_mute_on.bmp B/btn04_muteoff_non.bmp 2 360 2 360 81 420 key amber alert ink
    held B/btn06_plus_on.bmp $half 318 360 397 420
    held C/btn01_close_on.bmp $list 701 0 800 66
    held C/list02_up_on.bmp $list 650 66 770 166
    held C/list04_down_on.bmp $list 650 366 770 466
    held C/icon_bin_on.bmp C/icon_bin_non.bmp 590 66 590 66 640 116 ink alert text ink
    held C/list_title_on.bmp $list 30 66 650 116 bar amber none
}

# same A B CROP: the bitmap B equals the part CROP of the bitmap A.
same() {
    [ "$("$convert" "$skin/$1" -crop "$3" +repage "$skin/$2" -metric AE -format '%[distortion]' \
        -compare info:)" = 0 ]
    ok "$2 is the part $3 of $1" $?
}
seams() {
    same A/video_bg_title.bmp A/video_bg_close.bmp 200x45+600+10
    same A/video_bg_control.bmp A/btn01_home_non.bmp 200x48+0+0
    same A/video_bg_control.bmp A/btn02_navi_non.bmp 200x48+0+48
    same A/video_bg_control.bmp A/listup_icon_non.bmp 200x48+0+96
}

# A digit stands free in its cell, and all are equally wide, so that the clock is evenly spaced.
inkOf() { "$convert" "$skin/A/time_$1.bmp" -threshold 30% -format '%@' info:; }
digits() {
    local name edge
    for name in 0 1 2 3 4 5 6 7 8 9; do
        for edge in 1x25+0+0 1x25+18+0 19x1+0+0 19x1+0+24; do
            [ "$(colours "$skin/A/time_$name.bmp" -crop $edge +repage | sort -u)" = "$(colour bar)" ]
            ok "the digit $name is whole at $edge" $?
        done
        near "$(inkOf "$name")" "$(inkOf 0)"
        ok "the digit $name is as wide and high as the others" $? "$(inkOf "$name")"
    done
}

# Contrast by WCAG 2.1, 1.4.3: relative luminances plus 0.05.
contrast() { # ABOVE BELOW LEAST
    awk -v a="$(colour "$1")" -v b="$(colour "$2")" -v least="$3" '
        function part(hex, v) {
            v = (index("0123456789ABCDEF", substr(hex, 1, 1)) - 1) * 16
            v = (v + index("0123456789ABCDEF", substr(hex, 2, 1)) - 1) / 255
            return v <= 0.03928 ? v / 12.92 : ((v + 0.055) / 1.055) ^ 2.4
        }
        function luminance(c) {
            return 0.2126 * part(substr(c, 2)) + 0.7152 * part(substr(c, 4)) \
                + 0.0722 * part(substr(c, 6))
        }
        BEGIN {
            x = luminance(a) + 0.05; y = luminance(b) + 0.05
            ratio = x > y ? x / y : y / x
            print ratio
            exit (ratio < least)
        }'
}
# The close key has one size and one place in the corner of every screen.
closeKeys() {
    local full half list
    full=$(outline key "$skin/A/video_bg_title.bmp" 99x54+701+0)
    half=$(outline key "$skin/B/video_PIP.bmp" 99x54+301+0)
    list=$(outline key "$skin/C/list_bg.bmp" 99x54+701+0)
    [ "$full" = "$half" ] && [ "$full" = "$list" ]
    ok "one close key" $? "$full, $half, $list"
}

contrasts() {
    local above below least ratio
    while read -r above below least; do
        ratio=$(contrast "$above" "$below" "$least")
        ok "$above on $below" $? "contrast $ratio, wanted $least"
    done <<'PAIRS'
text bar 7
text key 7
text night 7
dim bar 7
dim night 7
ink amber 7
ink text 7
black paper 7
black amber 7
amber ink 7
dim key 4.5
text track 4.5
text ink 4.5
alert bar 4.5
alert key 4.5
ink alert 4.5
amber key 4.5
PAIRS
}

# The checker: one fault at a time in a copy, each named with its screen.
faulty() { # NAME FILE WANTED: FILE has been spoilt in $work/copy
    local told status
    told=$("$here/check.sh" "$work/copy")
    status=$?
    [ "$status" -eq 1 ] && [ "$(grep -c . <<<"$told")" -eq 2 ] && grep -q "^$2 $3" <<<"$told"
    ok "the checker sees $1" $? "$told"
    cp "$skin/$2" "$work/copy/$2"
}
checking() {
    cp -r "$skin" "$work/copy"
    "$here/check.sh" "$work/copy" >/dev/null
    ok "the checker is content with a whole skin" $?
    rm "$work/copy/A/ch_left.bmp"
    faulty "a missing bitmap" A/ch_left.bmp "is missing (screen full: previous-file arrow"
    "$convert" -size 1x1 xc:red -type TrueColor BMP3:"$work/copy/C/scroll_icon.bmp"
    faulty "one pixel" C/scroll_icon.bmp "is 1 x 1 instead of 120 x 26 (screen list"
    "$convert" "$skin/A/movie.bmp" -scale 4000x BMP3:"$work/copy/A/movie.bmp"
    faulty "a huge one" A/movie.bmp "is 4000 x 2400 instead of 800 x 480 (screen full,slide"
    "$convert" "$skin/B/vol_icon.bmp" -colors 4 -type Palette BMP3:"$work/copy/B/vol_icon.bmp"
    faulty "a palette" B/vol_icon.bmp "has [148] bits a pixel instead of 24 (screen half"
    head -c 5000 "$skin/D/slide.bmp" >"$work/copy/D/slide.bmp"
    faulty "one that was cut off" D/slide.bmp "ends before its last pixel (screen slide"
    head -c 54 /dev/zero >"$work/copy/D/slide.bmp"
    faulty "another kind of file" D/slide.bmp "is not a BMP (screen slide"
    : >"$work/copy/A/time_7.bmp"
    faulty "an empty file" A/time_7.bmp "is not a BMP (screen full"
    "$here/check.sh" "$work/nowhere" 2>/dev/null
    [ $? -eq 2 ]
    ok "the checker refuses a folder that is not there" $?
    "$here/check.sh" a b 2>/dev/null
    [ $? -eq 2 ]
    ok "the checker refuses two folders" $?
}

rendering
keys
heldFaces
seams
digits
closeKeys
contrasts
checking
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
