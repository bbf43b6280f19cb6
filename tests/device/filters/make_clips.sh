#!/bin/sh
# Makes the recordings that the tests of the filters play: make_clips.sh FOLDER. Each is made once.
set -eu
out=$1
mkdir -p "$out"

# clip NAME SIZE SECONDS OPTIONS...: a moving test picture and a tone.
clip() {
    [ ! -f "$out/$1" ] || return 0
    file=$1
    size=$2
    seconds=$3
    shift 3
    ffmpeg -nostdin -v error -y -f lavfi -i "testsrc2=size=$size:rate=25" \
        -f lavfi -i "sine=frequency=330:sample_rate=44100" -t "$seconds" "$@" "$out/part-$file"
    mv "$out/part-$file" "$out/$file"
}

h264='-c:v libx264 -preset ultrafast -pix_fmt yuv420p -bf 0'
h265='-c:v libx265 -preset ultrafast -x265-params log-level=error'
# shellcheck disable=SC2086  # the encoder's options are words
{
    clip h264.mp4 320x240 8 $h264 -c:a aac
    clip h264.avi 320x240 4 $h264 -c:a pcm_s16le
    clip h264.mkv 320x240 4 $h264 -c:a aac
    clip mpeg4.avi 320x240 4 -c:v mpeg4 -vtag XVID -c:a libmp3lame
    clip wmv2.wmv 320x240 4 -c:v wmv2 -c:a wmav2
    clip mpeg2.mpg 320x240 4 -c:v mpeg2video -c:a mp2 -f mpeg
    clip mjpeg.avi 320x240 4 -c:v mjpeg -pix_fmt yuvj420p -c:a pcm_s16le
    clip hevc.mp4 320x240 2 $h265 -tag:v hvc1 -c:a aac
    clip hevc.mkv 320x240 2 $h265 -c:a aac
    clip hevc.avi 320x240 2 $h265 -vtag HEVC -c:a pcm_s16le
    clip vp9.mkv 320x240 2 -c:v libvpx-vp9 -deadline realtime -cpu-used 8 -c:a aac
    clip silent.mp4 320x240 2 -an $h264
    clip long.mp4 640x480 60 $h264 -b:v 4M -minrate 4M -maxrate 4M -bufsize 4M \
        -x264-params nal-hrd=cbr -c:a aac -movflags +faststart
    clip two-sounds.mkv 320x240 4 -f lavfi -i "sine=frequency=880:sample_rate=44100" \
        -map 0:v -map 1:a -map 2:a -t 4 $h264 -c:a aac
    # One of each container, of some 1.5 MB, to fail at some place.
    clip pull.avi 320x240 8 $h264 -b:v 1500k -c:a pcm_s16le -ac 1
    clip pull.mp4 320x240 8 $h264 -b:v 1500k -c:a aac
    clip pull.mkv 320x240 8 $h264 -b:v 1500k -c:a aac
    clip pull.wmv 320x240 8 -c:v wmv2 -b:v 1500k -c:a wmav2
    clip pull.mpg 320x240 8 -c:v mpeg2video -b:v 1500k -minrate 1500k -c:a mp2 -f mpeg
    clip pull.flv 320x240 8 -c:v flv1 -b:v 1500k -c:a libmp3lame -ar 44100
    # One grey after the other: picture positions and colours can be told from the screen.
    clip wide.mp4 400x100 4 -vf "drawbox=color=0xC04080:t=fill" $h264 -an
}
printf 'this is no recording\n' >"$out/garbage.mp4"
: >"$out/empty.avi"
