#!/bin/sh
# Makes the sample recordings with ffmpeg, once, and puts them onto a unit's storage.
# usage: make.sh SAMPLES [DEVICE]
# SAMPLES gets the recordings as they lie on the volumes (SDMMCDisk/..., USB/...); with DEVICE they
# are copied into that folder, where nothing that is there already is touched.
# Each shows a running clock and a moving pattern and beeps once a second.
set -eu
if [ $# -lt 1 ] || [ $# -gt 2 ]; then
    echo "usage: make.sh SAMPLES [DEVICE]" >&2
    exit 2
fi
samples=$1
face=/usr/share/fonts/truetype/nanum/NanumGothicBold.ttf
command -v ffmpeg >/dev/null || { echo "samples: ffmpeg is missing: apt-get install ffmpeg" >&2; exit 1; }
[ -f "$face" ] || { echo "samples: $face is missing: apt-get install fonts-nanum" >&2; exit 1; }

# make NAME SECONDS TITLE ENCODER-OPTIONS...: one recording, under its name only when it is whole.
make() {
    file=$samples/$1
    seconds=$2
    title=$3
    shift 3
    [ ! -f "$file" ] || return 0
    mkdir -p "$(dirname "$file")"
    part=$(dirname "$file")/.part.${file##*.}
    echo "samples: making $(basename "$file")"
    clock="drawtext=fontfile=$face:text='$title %{pts\\:hms}':fontsize=44:fontcolor=white:box=1"
    clock="$clock:boxcolor=black@0.6:boxborderw=10:x=(w-tw)/2:y=150"
    ffmpeg -nostdin -v error -y -f lavfi -i "testsrc2=size=800x480:rate=25" \
        -f lavfi -i "sine=frequency=330:beep_factor=3:sample_rate=44100" \
        -vf "$clock,format=yuv420p" -t "$seconds" "$@" "$part" ||
        { rm -f "$part"; echo "samples: ffmpeg could not make $(basename "$file")" >&2; exit 1; }
    mv "$part" "$file"
}

h264='-c:v libx264 -preset ultrafast -crf 28 -g 25 -bf 0'
# shellcheck disable=SC2086  # the encoder's options are words
{
    # As dash cameras write them: H.264 and PCM in AVI with an index, front and rear in pairs.
    make SDMMCDisk/Record/20260314_081500_F.avi 60 'FRONT 08\:15' $h264 -c:a pcm_s16le -ac 1
    make SDMMCDisk/Record/20260314_081500_R.avi 60 'REAR 08\:15' $h264 -c:a pcm_s16le -ac 1
    make SDMMCDisk/Record/20260314_081600_F.avi 45 'FRONT 08\:16' $h264 -c:a pcm_s16le -ac 1
    make 'SDMMCDisk/영화/강릉 여행.mp4' 60 '강릉 여행' $h264 -c:a aac -movflags +faststart
    make 'SDMMCDisk/영화/제주도.avi' 60 '제주도' -c:v mpeg4 -q:v 5 -c:a libmp3lame
    make 'USB/바다.wmv' 60 '바다' -c:v wmv2 -b:v 1500k -c:a wmav2
    make USB/mountain.mpg 60 'MOUNTAIN' -c:v mpeg2video -b:v 2500k -c:a mp2 -f mpeg
    make USB/unsupported-hevc.mp4 12 'HEVC' -c:v libx265 -preset ultrafast -x265-params \
        log-level=error -tag:v hvc1 -c:a aac
}

# The camera lost its power in the middle of this one: no index, the last frame cut.
cut=$samples/SDMMCDisk/Record/20260314_081700_F.avi
if [ ! -f "$cut" ]; then
    whole=$samples/SDMMCDisk/Record/20260314_081600_F.avi
    head -c $(($(stat -c %s "$whole") * 6 / 10)) "$whole" >"$cut.part"
    mv "$cut.part" "$cut"
fi

# Captions beside the film: one every five seconds.
captions=$samples/SDMMCDisk/영화/강릉\ 여행.smi
if [ ! -f "$captions" ]; then
    {
        printf '<SAMI>\n<HEAD><STYLE><!-- .KRCC {Name:Korean; lang:ko-KR;} --></STYLE></HEAD>\n<BODY>\n'
        second=1
        while [ "$second" -lt 60 ]; do
            printf '<SYNC Start=%d><P Class=KRCC>자막 %d초\n' $((second * 1000)) "$second"
            printf '<SYNC Start=%d><P Class=KRCC>&nbsp;\n' $(((second + 3) * 1000))
            second=$((second + 5))
        done
        printf '</BODY>\n</SAMI>\n'
    } >"$captions"
fi
captions=$samples/SDMMCDisk/영화/제주도.srt
if [ ! -f "$captions" ]; then
    number=1
    while [ "$number" -le 12 ]; do
        start=$((number * 5 - 4))
        printf '%d\n00:00:%02d,000 --> 00:00:%02d,000\n제주도 %d번째 자막\n\n' "$number" "$start" \
            $((start + 3)) "$number"
        number=$((number + 1))
    done >"$captions"
fi

[ $# = 2 ] || exit 0
# Copies with their own time: under Wine a file that has a second name, and is open by that, would go
# only when it is closed.
(cd "$samples" && find . -type f ! -name '.*') | while read -r file; do
    [ -e "$2/$file" ] && continue
    # A slot that shows a folder of the PC: that is the user's.
    volume=${file#./}
    [ -L "$2/${volume%%/*}" ] && continue
    mkdir -p "$2/$(dirname "$file")"
    cp -p --reflink=auto "$samples/$file" "$2/$file"
done
