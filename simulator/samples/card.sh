#!/bin/sh
# Builds a dash camera card: front and rear recordings in pairs, one minute each, an event folder, a
# gap in the drive, a last recording that was cut off, a folder of the driver's own with Korean names.
# The same call always gives the same card.
# usage: card.sh DIR [FILES]     FILES: number of recordings in the drive's folder, default 20
set -eu
[ $# -ge 1 ] && [ $# -le 2 ] || { echo "usage: card.sh DIR [FILES]" >&2; exit 2; }
here=$(cd "$(dirname "$0")" && pwd)
card=$1
files=${2:-20}
case $files in '' | *[!0-9]* | 0) echo "card: FILES must be a number from 1" >&2; exit 2 ;; esac
[ ! -e "$card" ] || [ -z "$(ls -A "$card")" ] ||
    { echo "card: $card is not empty; name a new folder" >&2; exit 1; }
clips=$here/../../out/samples
"$here/make.sh" "$clips" >&2
mkdir -p "$card/Record" "$card/Event" "$card/내 영상"
clips=$(cd "$clips" && pwd)
front=$clips/SDMMCDisk/Record/20260314_081500_F.avi
rear=$clips/SDMMCDisk/Record/20260314_081500_R.avi

# lay FROM TO: the recordings are one front and one rear clip under many names.
lay() {
    ln "$1" "$2" 2>/dev/null || cp "$1" "$2"
}
# Minutes since the start of the drive, with a stop of 25 minutes after the sixth.
name_of() {
    minute=$(($1 + 495))
    [ "$1" -lt 6 ] || minute=$((minute + 25))
    printf '20260314_%02d%02d00' $((minute / 60 % 24)) $((minute % 60))
}

count=0
segment=0
while [ "$count" -lt "$files" ]; do
    base=$(name_of $segment)
    lay "$front" "$card/Record/${base}_F.avi"
    count=$((count + 1))
    last=$card/Record/${base}_F.avi
    from=$front
    if [ "$count" -lt "$files" ]; then
        lay "$rear" "$card/Record/${base}_R.avi"
        count=$((count + 1))
        last=$card/Record/${base}_R.avi
        from=$rear
    fi
    segment=$((segment + 1))
done
# The power went while the last one was being written: 60 % of it, no index.
rm -f "$last"
head -c $(($(stat -c %s "$from") * 6 / 10)) "$from" >"$last"
lay "$front" "$card/Event/20260314_081730_E_F.avi"
lay "$rear" "$card/Event/20260314_081730_E_R.avi"
lay "$clips/SDMMCDisk/영화/강릉 여행.mp4" "$card/내 영상/강릉 여행.mp4"
lay "$clips/SDMMCDisk/영화/강릉 여행.smi" "$card/내 영상/강릉 여행.smi"
echo "card: $files recordings in $card/Record, 2 in Event, 1 in 내 영상"
