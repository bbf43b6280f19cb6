#!/bin/sh
# Builds a dash camera card: front and rear recordings in pairs, one minute each, an event folder, a
# gap in the drive, a last recording that was cut off, a folder of the driver's own with Korean names.
# The same call always gives the same card. Every file is a copy of its own, last written when the
# camera would have closed it, so that the order in which a FAT card lists them is that of the drive.
# usage: card.sh DIR [FILES]     FILES: number of recordings in the drive's folder, default 20
set -eu
if [ $# -lt 1 ] || [ $# -gt 2 ]; then
    echo "usage: card.sh DIR [FILES]" >&2
    exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
card=$1
files=${2:-20}
case $files in '' | *[!0-9]* | 0) echo "card: FILES must be a number from 1" >&2; exit 2 ;; esac
[ ! -e "$card" ] || [ -z "$(ls -A "$card")" ] ||
    { echo "card: $card is not empty; name a new folder" >&2; exit 1; }
samples=$here/../../out/samples
"$here/make.sh" "$samples" >&2

# The recordings are one front and one rear clip under many names: a minute in 3 MB.
front=$samples/.parts/card-front.avi
rear=$samples/.parts/card-rear.avi

mkdir -p "$card"
room=$(df -Pk "$card" | awk 'NR == 2 { print $4 }')
# shellcheck disable=SC2017  # whole KiB are near enough
wanted=$(($(stat -c %s "$front") / 1024 * (files + 2) + 40000))
[ "$room" -gt "$wanted" ] ||
    { echo "card: $files recordings take $((wanted / 1024)) MB, $card has $((room / 1024)) MB" >&2
      rmdir "$card"
      exit 1; }
mkdir "$card/Record" "$card/Event" "$card/내 영상"

# lay FROM TO SECOND: a copy that was last written that many seconds after the start of the drive.
drive='2026-03-14 08:15:00'
start=$(date -d "$drive" +%s)
lay() {
    cp --reflink=auto "$1" "$2"
    touch -d "@$((start + $3))" "$2"
}
# second_of SEGMENT: when it begins, with a stop of 25 minutes after the sixth.
second_of() {
    [ "$1" -lt 6 ] && echo $(($1 * 60)) || echo $((($1 + 25) * 60))
}

count=0
segment=0
while [ "$count" -lt "$files" ]; do
    second=$(second_of $segment)
    base=$(date -d "@$((start + second))" +%Y%m%d_%H%M%S)
    last=$card/Record/${base}_F.avi
    from=$front
    written=$((second + 58))
    lay "$from" "$last" $written
    count=$((count + 1))
    if [ "$count" -lt "$files" ]; then
        last=$card/Record/${base}_R.avi
        from=$rear
        written=$((second + 60))
        lay "$from" "$last" $written
        count=$((count + 1))
    fi
    segment=$((segment + 1))
done
# The power went while the last one was being written: 60 % of it, no index.
truncate -s $(($(stat -c %s "$from") * 6 / 10)) "$last"
touch -d "@$((start + written))" "$last"
lay "$front" "$card/Event/20260314_081730_E_F.avi" 170
lay "$rear" "$card/Event/20260314_081730_E_R.avi" 172
lay "$samples/SDMMCDisk/영화/강릉 여행.mp4" "$card/내 영상/강릉 여행.mp4" -86400
lay "$samples/SDMMCDisk/영화/강릉 여행.smi" "$card/내 영상/강릉 여행.smi" -86398
echo "card: $files recordings in $card/Record, 2 in Event, 1 in 내 영상"
