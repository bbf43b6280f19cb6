#!/bin/bash
# Makes the pictures of the skin from the rendered bitmaps: every bitmap with its name and size
# (skin-sheet.png), and every screen put together as the player paints it (skin-screens.png; each
# screen at full size also in OUTDIR/screens).
# usage: contact_sheet.sh [SKINDIR [DOCDIR]]   (default: out/skin and docs of this checkout)
set -eu
here=$(cd "$(dirname "$0")" && pwd)
skin=${1:-$here/../out/skin}
docs=${2:-$here/../docs}
convert=/usr/bin/convert-im6.q16
montage=/usr/bin/montage-im6.q16
screens=$skin/screens
mkdir -p "$screens" "$docs"

colour() { sed -n "s/^$1  *\(#[0-9A-F]*\).*/\1/p" "$here/palette.txt"; }
# Fields of a bitmap's line of the manifest: SET/FILE -> width height paint place.
line() { awk -v f="$1" '$1 "/" $2 == f { print $3, $4, $5, $7 }' "$here/manifest.txt"; }

# Smallest files: no alpha, strongest compression, no dates (a picture changes only with the skin).
packed=(-alpha off -depth 8 -define png:compression-level=9 -define "png:exclude-chunks=date,time")

args=()
start() { args=(-size "$1" "xc:$(colour night)"); }
scene() { args+=("$skin/scene.png" -geometry +0+0 -composite); }
finish() { "$convert" "${args[@]}" "${packed[@]}" "$screens/$1.png"; }

# put SET/FILE [X Y]: at a point, by default at its own place.
put() {
    local width height paint place x=${2:-} y=${3:-}
    read -r width height paint place <<<"$(line "$1")"
    [ -n "$x" ] || { x=${place%,*}; y=${place#*,}; }
    args+=('(' "$skin/$1")
    [ "$paint" = plain ] || args+=(-transparent '#FF00FF')
    args+=(')' -geometry "+$x+$y" -composite)
}
# fill SET/FILE X Y WIDTH: the left part of it.
fill() {
    args+=('(' "$skin/$1" -crop "$4x99+0+0" +repage ')' -geometry "+$2+$3" -composite)
}
# write HEIGHT X Y WIDTH ALIGN COLOUR TEXT: one line whose cell is HEIGHT pixels high, as the
# window manager measures a font of that height; the face's em is 1/1.15 of its cell.
write() {
    local gravity=northwest x=$2
    case $5 in
    centre) gravity=north; x=$(($2 + $4 / 2 - canvas / 2)) ;;
    esac
    [ "$x" -lt 0 ] || x=+$x
    args+=(-font NanumGothicBold -pointsize "$(awk "BEGIN { print $1 / 1.15 }")" -fill "$6"
        -gravity "$gravity" -annotate "$x+$3" "$7" -gravity northwest)
}

# full PLAYING MUTED CAMERA: the bars of the full-width screen (CAMERA front, rear or none).
full() {
    put A/video_bg_title.bmp
    put A/video_bg_control.bmp
    put A/video_bg_close.bmp
    put A/btn01_home_non.bmp
    put A/btn02_navi_non.bmp
    put A/listup_icon_non.bmp
    put A/ch_left.bmp
    put A/ch_right.bmp
    [ "$1" = 0 ] || put A/btn02_halt_non.bmp
    [ "$2" = 0 ] || put A/btn04_muteoff_non.bmp
    [ "$3" = none ] || put "A/button_$3.bmp"
}
clock() {
    put A/time_pm.bmp
    put A/time_0.bmp 630 16
    put A/time_2.bmp 650 16
    put A/time_4.bmp 677 16
    put A/time_8.bmp 697 16
}
# The displays at a position (pixels of 415) and a volume (offset of the handle).
displays() {
    fill A/prog_bar.bmp 202 397 $(($1 + 5))
    put A/prog_point.bmp $((202 + $1)) 391
    fill A/vol_bar.bmp 360 447 $(($2 + 10))
    put A/vol_icon.bmp $((360 + $2)) 437
    write 25 204 350 416 left "$(colour text)" "2026-11-21 주행_전방_0841.avi"
    write 25 632 380 160 centre "$(colour text)" "00:00:23"
    write 18 632 405 160 centre "$(colour dim)" "00:01:00"
}
half() { # BACKGROUND
    put "$1"
    fill B/prog_bar.bmp 8 337 95
    put B/prog_point.bmp 98 331
    fill A/vol_bar.bmp 170 382 80
    put B/vol_icon.bmp 240 372
    write 24 12 18 280 left "$(colour text)" "주행_전방_0841.avi"
    write 18 251 321 148 centre "$(colour text)" "00:00:23"
    write 16 251 340 148 centre "$(colour dim)" "00:01:00"
}
# row NUMBER ICON NAME [file]
row() {
    local y=$((66 + 50 * $1))
    put "C/$2" 30 $y
    [ "${4:-}" = "" ] || put C/icon_bin_non.bmp 590 $y
    write 24 120 $((y + 13)) 480 left black "$3"
}
listing() {
    put C/list_bg.bmp
    write 25 200 34 290 left white '\\SDMMCDisk\\Record'
    row 0 icon01_folder.bmp "이벤트"
    row 1 icon01_folder.bmp "주차"
    row 2 icon02_slate.bmp "2026-11-21 주행_전방_0839.avi" file
    row 3 icon02_slate.bmp "2026-11-21 주행_전방_0840.avi" file
    row 4 icon02_slate.bmp "2026-11-21 주행_전방_0841.avi" file
    put C/list_title_play.bmp 30 266
    row 5 icon02_slate.bmp "Highway.mp4" file
    put C/scroll_icon.bmp 650 180
}
everyHeld() { # SET NAMES...: every held face at its own place
    local set=$1 name
    shift
    for name in "$@"; do put "$set/$name.bmp"; done
}

compose() {
    rsvg-convert "$here/drawings/scene.svg" -o "$skin/scene.png"
    canvas=800
    start 800x480; scene; full 1 0 none; displays 160 101; clock; finish 01-full-playing
    start 800x480; scene; full 0 1 rear; displays 160 101; clock; finish 02-full-paused-muted-rear
    start 800x480; put A/movie.bmp; full 0 0 none; displays 0 169; clock; finish 03-full-stopped
    start 800x480; put A/view_block.bmp; full 1 0 none; displays 160 101; clock
    finish 04-full-blocked
    start 800x480; scene; full 1 0 front; displays 160 101; clock
    everyHeld A ch_left_on ch_right_on btn02_navi_on listup_icon_on btn03_close_on \
        btn02_halt_on btn03_stop_on btn05_minus_on btn04_mute_on btn06_plus_on button_front_on
    finish 05-full-every-key-held
    start 800x480; scene; put D/slide.bmp; put D/vol_6.bmp; finish 06-slide
    start 800x480; scene; put D/slide_mute.bmp; finish 07-slide-muted
    start 800x480; listing; finish 08-list
    start 800x480; listing; put C/list_title_on.bmp 30 166; row 2 icon02_slate.bmp \
        "2026-11-21 주행_전방_0839.avi" file
    put C/icon_bin_on.bmp 590 216
    everyHeld C btn01_close_on list02_up_on list04_down_on; finish 09-list-every-key-held
    start 800x480; put C/list_bg.bmp; write 25 200 34 290 left white ROOT
    row 0 icon2_sdmmc.bmp SDMMCDisk; row 1 icon3_usb.bmp USB; put C/scroll_icon.bmp 650 166
    finish 10-list-volumes
    canvas=400
    start 400x480; half B/video_PIP.bmp; put B/btn03_halt_non.bmp
    args+=('(' "$skin/scene.png" -resize '400x260!' ')' -geometry +0+60 -composite)
    finish 11-half-playing
    start 400x480; half B/video_PIP.bmp; put B/btn04_muteoff_non.bmp; finish 12-half-stopped-muted
    start 400x480; half B/video_PIP.bmp; everyHeld B btn_close_on btn02_back_on btn03_play_on btn04_stop_on \
        btn05_next_on btn01_list_on btn05_minus_on btn04_muteoff_on btn06_plus_on
    finish 13-half-every-key-held
    start 400x480; half B/view_block.bmp; put B/btn03_halt_non.bmp; finish 14-half-blocked
}

sheet() {
    local set file width height rest
    args=()
    while read -r set file width height rest; do
        args+=(-label "$set/$file\n$width x $height" "$skin/$set/$file")
    done < <(grep -v '^#' "$here/manifest.txt")
    "$montage" "${packed[@]}" -font NanumGothicBold -pointsize 11 -fill "$(colour text)" \
        -background "$(colour track)" "${args[@]}" -tile 8x -geometry '160x96>+6+6' \
        "$docs/skin-sheet.png"
}

compose
"$montage" "${packed[@]}" "$screens"/*.png -background "$(colour track)" -tile 2x \
    -geometry +6+6 "$docs/skin-screens.png"
sheet
ls -l "$docs"/skin-*.png
