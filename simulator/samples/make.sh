#!/bin/sh
# Makes the sample recordings with ffmpeg, once, and puts them onto a unit's storage.
# usage: make.sh SAMPLES [DEVICE]
# SAMPLES gets the recordings as they lie on the volumes (SDMMCDisk/..., USB/...); with DEVICE they
# are copied into that folder, where nothing that is there already is touched. Without DEVICE the
# clips for card.sh are made, too.
# They are drawn: the road, what stands along it and the cars are drawings/*.svg, by day and by night;
# ffmpeg moves them and prints date, time and speed into the corner, as dash cameras do. Each beeps
# once a second. A change of the drawings or of this script makes them again.
set -eu
if [ $# -lt 1 ] || [ $# -gt 2 ]; then
    echo "usage: make.sh SAMPLES [DEVICE]" >&2
    exit 2
fi
samples=$1
here=$(cd "$(dirname "$0")" && pwd)
face=/usr/share/fonts/truetype/nanum/NanumGothicBold.ttf
command -v ffmpeg >/dev/null || { echo "samples: ffmpeg is missing: apt-get install ffmpeg" >&2; exit 1; }
command -v rsvg-convert >/dev/null ||
    { echo "samples: rsvg-convert is missing: apt-get install librsvg2-bin" >&2; exit 1; }
[ -f "$face" ] || { echo "samples: $face is missing: apt-get install fonts-nanum" >&2; exit 1; }
parts=$samples/.parts # what the recordings are put together from

fail() { echo "samples: $1" >&2; exit 1; }
isFresh() { [ -f "$1" ] && [ -z "$(find "$here" -type f -newer "$1" -print -quit)" ]; }

# draw NAME LIGHT: a drawing by day or by night.
draw() {
    isFresh "$parts/$1-$2.png" && return 0
    mkdir -p "$parts"
    rsvg-convert --stylesheet "$here/drawings/$2.css" --output "$parts/.part.png" \
        "$here/drawings/$1.svg" || fail "$1.svg could not be drawn"
    mv "$parts/.part.png" "$parts/$1-$2.png"
}

# road CAMERA LIGHT: two seconds of the empty road that can be repeated without a seam. The ground
# and what stands beside it scroll by 9.6 of their pixels a frame (20 m/s), and are laid into the
# picture as a camera 1.3 m above the road sees them: a point z metres ahead, x to the right and h
# high stands at (400 + 577 x / z, 230 + 577 (1.3 - h) / z).
road() {
    isFresh "$parts/$1-$2.mkv" && return 0
    # To the front everything comes nearer, to the rear it goes away, and the sides change places.
    if [ "$1" = front ]; then way=-; mirror=null; else way=; mirror=hflip; fi
    ffmpeg -nostdin -v error -y -i "$parts/ground-$2.png" -i "$parts/side-$2.png" \
        -i "$parts/sky-$2.png" -filter_complex "
            [0]format=yuv444p,loop=50:1,scroll=v=${way}0.006666667,perspective=sense=destination:
                x0=346:y0=236:x1=454:y1=236:x2=-1850:y2=480:x3=2650:y3=480,crop=800:244:0:236[ground];
            [1]format=yuva444p,loop=50:1,scroll=h=${way}0.006666667,split[near][far];
            [near]perspective=sense=destination:x0=-812:y0=-290:x1=352:y1=208:x2=-812:y2=380:
                x3=352:y3=236,crop=400:480:0:0[left];
            [far]perspective=sense=destination:x0=-431:y0=-290:x1=367:y1=208:x2=-431:y2=380:
                x3=367:y3=236,crop=400:480:0:0,hflip[right];
            [2]format=yuv444p[sky];[sky][ground]overlay=0:236[a];[a][left]overlay=0:0[b];
            [b][right]overlay=400:0,$mirror,format=yuv420p[out]" \
        -map '[out]' -frames:v 50 -c:v ffv1 "$parts/.part-$1-$2.mkv" ||
        fail "the road could not be made"
    mv "$parts/.part-$1-$2.mkv" "$parts/$1-$2.mkv"
}

# encode NAME SECONDS CAMERA LIGHT TEXT ENCODER-OPTIONS...: one recording, under its name only when it
# is whole. TEXT stands in the corner, with drawtext's expansions.
encode() {
    file=$samples/$1
    seconds=$2
    camera=$3
    light=$4
    text=$5
    shift 5
    isFresh "$file" && return 0
    mkdir -p "$(dirname "$file")"
    part=$(dirname "$file")/.part.$(basename "$file")
    echo "samples: making $(basename "$file")"
    if [ "$camera" = front ]; then car=ahead; own=bonnet; else car=behind; own=window; fi
    text_file=$parts/$(basename "$file").txt
    printf '%s' "$text" >"$text_file"
    # The other car is 7 to 12 metres away and keeps to its lane: W pixels wide it stands on the road
    # when its top is at 230 - 0.126 W.
    ffmpeg -nostdin -v error -y -i "$parts/$camera-$light.mkv" -i "$parts/$car-$light.png" \
        -i "$parts/$own-$light.png" -f lavfi -i "sine=frequency=330:beep_factor=3:sample_rate=44100" \
        -filter_complex "
            [1]format=yuva420p,loop=-1:1,scale=w='2*trunc(75+18*sin(t/2.7))':h=-2:eval=frame[car];
            [0]loop=-1:50[road];
            [road][car]overlay=x='400-w/2+7*sin(t/1.9)':y='230-0.126*w'[a];[a][2]overlay=0:0,
            drawtext=fontfile=$face:textfile=$text_file:fontsize=22:fontcolor=white:borderw=2:
                bordercolor=black:x=18:y=h-33,format=yuv420p[out]" \
        -map '[out]' -map 3 -t "$seconds" "$@" "$part" ||
        { rm -f "$part"; fail "ffmpeg could not make $(basename "$file")"; }
    mv "$part" "$file"
}

# beside COMMAND...: runs it while others go on, as many as there are processors. await waits for all.
jobs=
room=$(nproc)
wait_for_oldest() {
    # shellcheck disable=SC2086  # the numbers are words
    set -- $jobs
    wait "$1" || exit 1
    shift
    jobs=$*
    room=$((room + 1))
}
beside() {
    [ "$room" -gt 0 ] || wait_for_oldest
    "$@" &
    jobs="$jobs $!"
    room=$((room - 1))
}
make() { beside encode "$@"; }
await() { while [ -n "$jobs" ]; do wait_for_oldest; done; }

# stamp CAMERA TIME: what a dash camera prints, from that time of its drive on.
stamp() {
    begin=$(date -u -d "2026-03-14 $2" +%s)
    printf '%%{pts:gmtime:%s:%%Y/%%m/%%d %%H\:%%M\:%%S}   %%{eif:72+6*sin(t/6):d} km/h   %s' \
        "$begin" "$1"
}

for light in day night; do
    for drawing in ground side sky ahead bonnet behind window; do
        draw $drawing $light
    done
    beside road front $light
    beside road rear $light
done
await
h264='-c:v libx264 -preset ultrafast -crf 28 -g 25 -bf 0'
# shellcheck disable=SC2086  # the encoder's options are words
{
    # As dash cameras write them: H.264 and PCM in AVI with an index, front and rear in pairs.
    make SDMMCDisk/Record/20260314_081500_F.avi 60 front day "$(stamp FRONT 08:15:00)" $h264 \
        -c:a pcm_s16le -ac 1
    make SDMMCDisk/Record/20260314_081500_R.avi 60 rear day "$(stamp REAR 08:15:00)" $h264 \
        -c:a pcm_s16le -ac 1
    make SDMMCDisk/Record/20260314_081600_F.avi 45 front day "$(stamp FRONT 08:16:00)" $h264 \
        -c:a pcm_s16le -ac 1
    make .parts/20260314_081700_F.avi 45 front day "$(stamp FRONT 08:17:00)" $h264 \
        -c:a pcm_s16le -ac 1
    make 'SDMMCDisk/영화/강릉 여행.mp4' 60 front day '강릉 여행 %{pts:hms}' $h264 -c:a aac \
        -movflags +faststart
    make 'SDMMCDisk/영화/제주도.avi' 60 rear night '제주도 %{pts:hms}' -c:v mpeg4 -q:v 5 -c:a libmp3lame
    make 'USB/바다.wmv' 60 front night '바다 %{pts:hms}' -c:v wmv2 -b:v 1500k -c:a wmav2
    make USB/mountain.mpg 60 front day 'MOUNTAIN %{pts:hms}' -c:v mpeg2video -b:v 2500k -c:a mp2 -f mpeg
    make USB/unsupported-hevc.mp4 12 front night 'HEVC %{pts:hms}' -c:v libx265 -preset ultrafast \
        -x265-params log-level=error -tag:v hvc1 -c:a aac
    # For card.sh, which copies them under as many names as are asked for: small, and without the time.
    if [ $# = 1 ]; then
        card='-r 12.5 -c:v libx264 -preset veryfast -crf 36 -g 25 -bf 0 -threads 1 -c:a pcm_s16le
            -ar 8000 -ac 1 -fflags +bitexact -flags:v +bitexact -flags:a +bitexact'
        make .parts/card-front.avi 60 front day FRONT $card
        make .parts/card-rear.avi 60 rear day REAR $card
    fi
}
await

# The camera lost its power in the middle of this one: no index, the last frame cut.
cut=$samples/SDMMCDisk/Record/20260314_081700_F.avi
if ! isFresh "$cut"; then
    whole=$parts/20260314_081700_F.avi
    head -c $(($(stat -c %s "$whole") * 6 / 10)) "$whole" >"$parts/cut"
    mv "$parts/cut" "$cut"
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
(cd "$samples" && find . -type f ! -path '*/.*') | while read -r file; do
    [ -e "$2/$file" ] && continue
    # A slot that shows a folder of the PC: that is the user's.
    volume=${file#./}
    [ -L "$2/${volume%%/*}" ] && continue
    mkdir -p "$2/$(dirname "$file")"
    cp -p --reflink=auto "$samples/$file" "$2/$file"
done
