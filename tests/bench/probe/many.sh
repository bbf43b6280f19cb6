#!/bin/bash
# What a hundred thousand recordings cost mediaprobe -r: tests/bench/probe/many.sh [COUNT]
# Hard links of each kind of recording, a thousand in a folder; processor time (user and system, the
# least of three runs, which other work disturbs less than wall time) of mediaprobe against find and
# bare reads of 4 KiB, which take turns with it. Prints what docs/archives.md shows.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
cd "$root"
count=${1:-100000}
probe=out/build/native/mediaprobe/mediaprobe
cmake --preset native >/dev/null
cmake --build out/build/native --target mediaprobe >/dev/null
media=out/media
tests/unit/probe/make_media.sh $media
mkdir -p out/many
g++ -std=c++20 -O2 tests/bench/probe/bare_reads.cpp -o out/many/bare

# links SOURCE...: `count` links below out/many/tree, the sources in turn; of new copies every fifty
# folders, since ext4 allows a file 65,000 names
links() {
    rm -rf out/many/tree
    python3 - "$count" "$@" <<'PYTHON'
import os
import shutil
import sys
count, sources = int(sys.argv[1]), sys.argv[2:]
for i in range(count):
    folder = f"out/many/tree/{i // 1000:04d}"
    if i % 1000 == 0:
        os.makedirs(folder)
    if i % 50000 == 0:
        copies = [shutil.copy(source, folder) for source in sources]
    copy = copies[i % len(copies)]
    os.link(copy, f"{folder}/20260314_{i % 1000:06d}_F{os.path.splitext(copy)[1]}")
PYTHON
}

# microseconds INPUT COMMAND...: processor time for each file
microseconds() {
    local input=$1 least='' used
    shift
    for _ in 1 2 3; do
        TIMEFORMAT='%U %S'
        used=$({ time "$@" <"$input" >out/many/told 2>out/many/errors || true; } 2>&1)
        least=$(echo "$used $least" | awk '{ t = $1 + $2; print ($3 == "" || t < $3) ? t : $3 }')
    done
    awk "BEGIN { printf \"%.2f\", $least * 1e6 / $count }"
}

echo "| recordings | find and bare reads, us a file | page | ratio | JSON | ratio |"
echo "|---|---|---|---|---|---|"
row() {
    local what=$1 find bare page json
    shift
    links "$@"
    find=$(microseconds /dev/null find out/many/tree -type f)
    find out/many/tree -type f >out/many/list
    bare=$(microseconds out/many/list out/many/bare)
    page=$(microseconds /dev/null $probe -r out/many/tree)
    json=$(microseconds /dev/null $probe --json -r out/many/tree)
    awk "BEGIN { b = $find + $bare; printf \"| %s | %.2f | %.2f | %.2f | %.2f | %.2f |\n\",
                 \"$what\", b, $page, $page / b, $json, $json / b }"
}
row "WAVE, one read" $media/pcm.wav
row "WMV, one read" $media/wmv2.wmv
row "MP3, two reads" $media/cbr.mp3
row "MP4, index in front" $media/faststart.mp4
row "MP4, index at the end" $media/h264_aac.mp4
row "AVI" $media/h264_pcm.avi
row "these in turn" $media/pcm.wav $media/wmv2.wmv $media/cbr.mp3 $media/faststart.mp4 \
    $media/h264_aac.mp4 $media/h264_pcm.avi

echo
for jobs in 1 2 4; do
    start=$(date +%s%N)
    $probe --json -r -j $jobs out/many/tree >out/many/told 2>out/many/errors || true
    echo "-j $jobs: $((($(date +%s%N) - start) / 1000000)) ms"
done
echo "memory, KiB: $(/usr/bin/time -f %M $probe --json -r out/many/tree 2>&1 >/dev/null | tail -1)," \
    "with -j 2 $(/usr/bin/time -f %M $probe --json -r -j 2 out/many/tree 2>&1 >/dev/null | tail -1)"
rm -rf out/many/tree
