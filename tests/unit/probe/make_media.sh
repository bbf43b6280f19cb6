#!/bin/bash
# Makes real files of every container with ffmpeg, three seconds each.
# Usage: make_media.sh FOLDER
set -eu
out=$1
mkdir -p "$out"
video="-f lavfi -i testsrc=s=320x240:r=25:d=3"
ntsc="-f lavfi -i testsrc=s=352x240:r=30000/1001:d=3"
sound="-f lavfi -i sine=f=440:r=44100:d=3"
# make NAME ARGUMENTS...: the file is made once
make() {
    [ -e "$out/$1" ] && return
    # shellcheck disable=SC2086
    ffmpeg -nostdin -v error -y "${@:2}" -fflags +bitexact "$out/tmp.${1##*.}"
    mv "$out/tmp.${1##*.}" "$out/$1"
}
make mpeg4_mp3.avi $video $sound -c:v mpeg4 -c:a libmp3lame -b:a 128k
make xvid_pcm.avi $ntsc $sound -c:v mpeg4 -vtag XVID -aspect 4:3 -c:a pcm_s16le
make h264_pcm.avi $video $sound -c:v libx264 -vtag H264 -vf setsar=12/11 -c:a pcm_s16le
make mjpeg_adpcm.avi $video $sound -c:v mjpeg -c:a adpcm_ms
make video_only.avi $video -c:v mpeg4
make h264_aac.mp4 $video $sound -c:v libx264 -vf setsar=16/11 -c:a aac -ac 2
make faststart.mp4 $ntsc $sound -c:v libx264 -c:a aac -ac 2 -movflags +faststart
make mpeg4_aac.mp4 $video $sound -c:v mpeg4 -c:a aac
make mpeg4_mp3.mp4 $video $sound -c:v mpeg4 -c:a libmp3lame -ac 2
make aac.m4a $sound -c:a aac -ar 48000
make h263_aac.3gp -f lavfi -i testsrc=s=176x144:r=15:d=3 $sound -c:v h263 -c:a aac -ar 22050 -ac 2
make pcm.wav $sound -c:a pcm_s16le
make adpcm.wav $sound -c:a adpcm_ms -ar 22050
make cbr.mp3 $sound -c:a libmp3lame -b:a 128k -ac 2
make vbr.mp3 $sound -c:a libmp3lame -q:a 4
make mpeg2_22050.mp3 $sound -c:a libmp3lame -ar 22050 -b:a 64k
make mpeg25_8000.mp3 $sound -c:a libmp3lame -ar 8000 -b:a 16k
make tagged.mp3 $sound -c:a libmp3lame -id3v2_version 3 -metadata title=Titel
make layer2.mp2 $sound -c:a mp2 -b:a 192k -ar 48000
make mono.flac $sound -c:a flac
make stereo.flac $sound -c:a flac -ac 2 -ar 96000
make vorbis.ogg $sound -c:a libvorbis -ac 2 -metadata title=Titel -metadata artist=Jemand
make wmv2.wmv $video $sound -c:v wmv2 -c:a wmav2 -b:a 128k
make tagged.wma $sound -c:a wmav2 -b:a 64k -metadata title=Titel
make mpeg1.mpg $video $sound -c:v mpeg1video -b:v 2M -maxrate 2M -bufsize 1M -c:a mp2 -f mpeg
make mpeg2.vob $video $sound -c:v mpeg2video -b:v 3M -minrate 3M -maxrate 3M -bufsize 1800k -c:a ac3 -f vob
make h263_mp3.flv $video $sound -c:v flv -c:a libmp3lame
make h264_aac.flv $video $sound -c:v libx264 -c:a aac -ac 2
make mono_aac.flv $sound -c:a aac
make picture.jpg -f lavfi -i testsrc=s=64x48:d=1 -frames:v 1
make picture.png -f lavfi -i testsrc=s=64x48:d=1 -frames:v 1
make picture.gif -f lavfi -i testsrc=s=64x48:d=1 -frames:v 1
make picture.bmp -f lavfi -i testsrc=s=64x48:d=1 -frames:v 1
