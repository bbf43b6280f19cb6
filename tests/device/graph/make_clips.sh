#!/bin/sh
# Makes the short clips of the graph's tests. Usage: make_clips.sh FOLDER
set -eu
folder=$1
mkdir -p "$folder"
cd "$folder"
clip() {
    name=$1
    shift
    [ -f "$name" ] || ffmpeg -nostdin -v error -y -f lavfi -i testsrc=s=160x120:r=25 \
        -f lavfi -i sine=330 -f lavfi -i sine=660 "$@" -t 4 "$name"
}
h264='-c:v libx264 -preset ultrafast -pix_fmt yuv420p'
# shellcheck disable=SC2086  # the options are words
{
    clip sound.mp4 -map 0 -map 1 $h264 -c:a aac
    clip captions.mp4 -map 0 -map 1 $h264 -c:a aac
    clip broken-captions.mp4 -map 0 -map 1 $h264 -c:a aac
    clip silent.mp4 -map 0 $h264
    clip two.mkv -map 0 -map 1 -map 2 $h264 -c:a aac
    clip hevc.mp4 -map 0 -map 1 -c:v libx265 -x265-params log-level=error -tag:v hvc1 -c:a aac
    clip hevc-silent.mp4 -map 0 -c:v libx265 -x265-params log-level=error -tag:v hvc1
}
printf '<SAMI><BODY><SYNC Start=500><P>first\n<SYNC Start=1500><P>second\n</BODY></SAMI>\n' >captions.smi
printf '1\n00:00:01,000 --> 00:00:02,000\nother\n\n' >captions.srt
# Subtitles of the type in the name and of all that are looked for after it.
for first in smi srt sub ssa; do
    cp sound.mp4 "from-$first.mp4"
done
cp captions.smi from-smi.smi
cp captions.srt from-smi.srt
printf '{25}{50}third\n' >from-smi.sub
printf '[Events]\nDialogue: 0,0:00:01.00,0:00:02.00,D,,0,0,0,,fourth\n' >from-smi.ssa
for pair in srt:srt srt:sub srt:ssa sub:sub sub:ssa ssa:ssa; do
    cp "from-smi.${pair#*:}" "from-${pair%:*}.${pair#*:}"
done
head -c 4000 /dev/urandom >broken-captions.smi
head -c 5000 sound.mp4 >cut.mp4
: >empty.avi
head -c 100000 /dev/urandom >garbage.avi
