#!/bin/bash
# The command mediaprobe: options, exit statuses, names, folders. Needs nothing but the programs.
# Usage: check_mediaprobe.sh MEDIAPROBE PROBE_SAMPLES KIB
# KIB: the address space for hostile files, or "unlimited".
set -u
probe=$(readlink -f "$1")
samples=$(readlink -f "$2")
space=$3
. "$(dirname "$0")/../probe/checks.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/all" "$work/tree" "$work/tree/deep" "$work/tree/deep/deeper" "$work/tree/empty"
"$samples" "$work/all"
cd "$work" || exit 2

good=all/mp4_avc_and_aac
no=all/image_unknown_bytes_keep_the_file_size
damaged=all/avi_4097_zero_headers_fail

status() {
    "$probe" "$@" >out.txt 2>err.txt </dev/null
    echo $?
}
expect "a good file" 0 "$(status $good)"
expect "two good files" 0 "$(status $good all/wave_pcm_stereo)"
expect "a file that is not recognised" 1 "$(status $no)"
expect "a damaged file" 1 "$(status $damaged)"
expect "a damaged file says who claimed it" 1 \
    "$(grep -c 'File     damaged (claimed by RIFF: AVI and WAVE), 37,196 bytes' out.txt)"
expect "the worst wins: good and no" 1 "$(status $good $no)"
expect "the worst wins: missing and good" 2 "$(status missing.avi $good)"
expect "the good file behind a missing one is shown" 1 "$(grep -c 'MP4/3GP' out.txt)"
expect "a missing file is one line" 1 "$(wc -l <err.txt)"
expect "a missing file is named" 1 "$(grep -c 'missing.avi.*no such file' err.txt)"
expect "no file" 2 "$(status)"
expect "no file says what to do" 1 "$(grep -c -- '--help' err.txt)"
expect "an unknown option" 2 "$(status --jsno $good)"
expect "--json with --explain" 2 "$(status --json --explain $good)"
expect "--help" 0 "$(status --help)"
expect "--help shows --files-from" 1 "$(grep -c -- '--files-from' out.txt)"
expect "--version" 0 "$(status --version)"
expect "--version is one line" 1 "$(wc -l <out.txt)"
expect "a folder without -r" 2 "$(status all)"
expect "a folder without -r says what to do" 1 "$(grep -c -- '-r looks' err.txt)"
expect "in one line" 1 "$(wc -l <err.txt)"
expect "a name in brackets is a name" 0 "$(cp $good '[a,b]' && status '[a,b]')"
expect "and shown as it stands" '[a,b]' "$(head -1 out.txt)"
expect "a list that is missing" 2 "$(status --files-from nothing.txt)"
expect "--files-from without a name" 2 "$(status --files-from)"
expect "an empty name" 2 "$(status '')"
mkdir folder
expect "a list that is a folder" 2 "$(status --files-from folder)"
expect "it is named" 1 "$(grep -c '^mediaprobe: folder cannot be read' err.txt)"
"$probe" - <folder >out.txt 2>err.txt
expect "standard input that is a folder" 2 $?
expect "it is told" 1 "$(grep -c '^mediaprobe: standard input cannot be read' err.txt)"
: >empty.txt
expect "an empty list" 0 "$(status --files-from empty.txt)"
expect "an empty list says so" 1 "$(grep -c '^mediaprobe: empty.txt names no file' err.txt)"

cp $good "tree/b.mp4"
cp all/wave_pcm_stereo "tree/deep/한국어 녹화.wav"
cp all/image_gif_packed_80_is_1_bit "tree/deep/deeper/a quote\" and \\ back.gif"
cp $good "tree/a.mp4"
ln -s .. "tree/deep/loop"
expect "a tree with a loop" 0 "$(status --json -r tree)"
expect "every file of the tree once" 4 "$(wc -l <out.txt)"
expect "and nothing else is told" "" "$(cat err.txt)"
expect "in a fixed order" "a.mp4 b.mp4" \
    "$(head -2 out.txt | sed 's/.*tree\/\([ab].mp4\).*/\1/' | xargs)"
expect "a Korean name" 1 "$(grep -c '"path": "tree/deep/한국어 녹화.wav"' out.txt)"
expect "quotes are escaped" 1 "$(grep -c 'a quote\\" and \\\\ back.gif' out.txt)"
# The list is the fourth file that is open, and no fifth may be.
echo tree >folders.txt
(
    exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-
    ulimit -n 4
    exec "$probe" -r --files-from folders.txt
) >out.txt 2>err.txt </dev/null
expect "a folder that cannot be listed" 2 $?
expect "is named, and not called empty" "mediaprobe: tree cannot be listed" "$(cat err.txt)"
expect "an empty folder" 0 "$(status -r tree/empty)"
expect "an empty folder says so" 1 "$(grep -c '^mediaprobe: tree/empty holds no file' err.txt)"
mkdir links
cp $good links/a.mp4
ln -s nowhere links/z.avi
expect "a link that leads nowhere" 2 "$(status -r links)"
expect "it is named" 1 "$(grep -c '^mediaprobe: links/z.avi cannot be opened' err.txt)"
expect "the file beside it is shown" 1 "$(grep -c 'MP4/3GP' out.txt)"

printf '%s\n' $good "tree/deep/한국어 녹화.wav" >list.txt
printf '%s' "$no" >>list.txt
expect "--files-from" 1 "$(status --json --files-from list.txt)"
expect "all names of the list" 3 "$(wc -l <out.txt)"
expect "--files-from=FILE" 1 "$(status --json --files-from=list.txt)"
expect "names from standard input" 3 "$("$probe" --json - <list.txt 2>err.txt | wc -l)"
expect "names from a list that is standard input" 3 \
    "$("$probe" --json --files-from - <list.txt 2>err.txt | wc -l)"
printf '%s\0' $good "tree/deep/한국어 녹화.wav" "$no" >nul.txt
expect "a list with NULs" 2 "$(status --json --files-from nul.txt)"
expect "is one line of error" "mediaprobe: nul.txt: line 1 holds a NUL; -0 takes names that end with one" \
    "$(cat err.txt)"
expect "and no file is looked at" 0 "$(wc -l <out.txt)"
"$probe" --json - <nul.txt >out.txt 2>err.txt
expect "NULs on standard input" 2 $?
expect "are one line, too" "mediaprobe: standard input: line 1 holds a NUL; -0 takes names that end with one" \
    "$(cat err.txt)"
expect "-0" 1 "$(status --json -0 --files-from nul.txt)"
expect "-0 takes every name" 3 "$(wc -l <out.txt)"
cp $good "$(printf 'two\nlines')"
expect "-0 takes a name with a line end" '{"path": "two\u000alines"' \
    "$(find . -maxdepth 1 -name 'two*' -printf '%P\0' | "$probe" --json -0 - | cut -d, -f1)"
for jobs in 0 2 7; do
    "$probe" --json -r all >serial.txt 2>serial.err
    "$probe" --json -r -j $jobs all >parallel.txt 2>parallel.err
    expect "-j $jobs ends as -j 1 does" 1 $?
    expect "-j $jobs keeps the order" "" "$(diff serial.txt parallel.txt | head -4)"
    expect "-j $jobs keeps the diagnostics in order" "" "$(diff serial.err parallel.err | head -4)"
done
expect "-j with something else than a number" 2 "$(status -j many $good)"
expect "more jobs than there may be" 2 "$(status -j 257 $good)"
cp $good ./-odd
expect "a name that begins with a dash" 0 "$(status -- -odd)"

# Names in another encoding than UTF-8, as they come off old cards.
mkdir "korean"
korean=$(printf 'korean/\307\321\261\333.mp4') # EUC-KR
cp $good "$korean"
expect "a name in EUC-KR" 0 "$(status "$korean")"
expect "a name in EUC-KR is shown as it stands" 1 "$(LC_ALL=C grep -cF "$korean" out.txt)"
expect "a name in EUC-KR found in a folder" 0 "$(status --json -r korean)"
wanted='"path": "korean/�ѱ�.mp4", "open": "0x00000000"'
expect "its JSON is UTF-8" 1 "$(iconv -f UTF-8 -t UTF-8 out.txt | grep -cF "$wanted")"
printf '%s\n' "$korean" >list.txt
expect "a name in EUC-KR from a list" 0 "$(status --files-from list.txt)"

# Lists from Windows end their lines with CR LF.
odd=$(printf 'odd\r')
cp $good "$odd"
printf '%s\r\n' $good "tree/deep/한국어 녹화.wav" "" odd >list.txt
expect "a list with CR LF" 0 "$(status --json --files-from list.txt)"
expect "all names of it" 3 "$(wc -l <out.txt)"
expect "a name that ends with CR" 1 "$(grep -c '"path": "odd\\u000d"' out.txt)"
printf '%s\r\n' missing.avi >list.txt
expect "a missing file in a list with CR LF" 2 "$(status --json --files-from list.txt)"
expect "is told without its CR" 1 "$(grep -c '"path": "missing.avi"' out.txt)"

# What is neither a file nor a disk is refused at once.
mkfifo fifo tree/empty/fifo
ln -s fifo tree/empty/link
timeout 10 "$probe" fifo >out.txt 2>err.txt
expect "a pipe" 2 $?
expect "a pipe is named as such" 1 "$(grep -c 'fifo cannot be opened: it is no file' err.txt)"
timeout 10 "$probe" /dev/null >out.txt 2>err.txt
expect "a device" 2 $?
expect "a folder with a pipe and a link to it" 0 "$(timeout 10 "$probe" -r tree/empty 2>err.txt; echo $?)"

expect "a folder that is missing" 2 "$(status --json missing/one.avi)"
expect "its open result" 1 "$(grep -c '"open": "0x80070003"' out.txt)"
expect "a folder that is a file" 2 "$(status --json $good/one.avi)"
expect "its open result is the same" 1 "$(grep -c '"open": "0x80070003"' out.txt)"
expect "a missing file in a folder that is there" 2 "$(status --json tree/one.avi)"
expect "its open result is another" 1 "$(grep -c '"open": "0x80070002"' out.txt)"

expect "JSON of a missing file" 2 "$(status --json missing.avi)"
expect "its open result" 1 "$(grep -c '"open": "0x80070002", "status": "0x00000001"' out.txt)"
expect "JSON of a refused JPEG" 1 \
    "$(status --json all/image_jpeg_segment_past_end_is_refused)"
expect "its status" 1 "$(grep -c '"status": "0x80004005"' out.txt)"
keys=$("$probe" --json $good | grep -o '"[a-zA-Z]*":' | tr -d '":' | paste -sd ' ')
wanted="path open status containerType fileSize fileSizeHigh durationSeconds \
audioFormatTag audioBitRate audioSampleRate audioChannels \
videoFourCC videoWidth videoHeight frameTimeMicroseconds videoBitRate pixelAspectX pixelAspectY \
hasTitle hasArtist hasAlbum hasTrack hasGenre title artist album track genre genreIndex \
hasComposer hasYear composer year imageWidth imageHeight imageBitsPerPixel \
containerName videoCodec audioCodec damaged error"
expect "the keys and their order" "$wanted" "$keys"

expect "diagnostics go to standard error" 1 "$(status all/avi_4097_zero_headers_fail)"
status all/avi_unknown_stream_type_prints_and_goes_on >status.txt
expect "a diagnostic line" "ERROR: fcc_type is not valid=69617673" "$(cat err.txt)"
expect "none of it on standard output" 0 "$(grep -c ERROR out.txt)"

expect "--explain" 0 "$(status --explain $good)"
expect "ten recognisers" 10 "$(grep -cE '^ +[0-9]+\. ' out.txt)"
expect "reasons" 2 "$(grep -c 'declined: ' out.txt)"
expect "the player's fields" 1 \
    "$(grep -c 'videoWidth 320, videoHeight 240, audioFormatTag 0x00FF' out.txt)"
expect "the verdict" 1 "$(grep -c 'Verdict:  the player plays it if' out.txt)"
status --explain all/image_gif_packed_80_is_1_bit >status.txt
expect "a refusal and its reason" 1 "$(grep -c 'Verdict:  the player refuses it: a still' out.txt)"
expect "the tag of sound alone is not kept" 0 "$(status --explain all/wave_pcm_stereo)"
expect "and why" 1 \
    "$(grep -c 'audioFormatTag 0x0001, stored as 0, for want of a picture (picture 0:0)' out.txt)"
status --explain all/flv_audio_speex_has_no_tag >status.txt
expect "sound without a tag" 1 \
    "$(grep -c 'refuses it unless its graph finds audio that the probe has no tag for' out.txt)"
status --explain all/mpegps_dts_is_no_known_sound >status.txt
expect "a program stream may hold unknown sound" 1 \
    "$(grep -c 'refuses it unless its graph finds audio that the probe has no tag for' out.txt)"
status --explain all/avi_second_vids_leaves_the_first >status.txt
expect "an AVI without a sound stream" 1 "$(grep -c 'the player refuses it: without audio' out.txt)"
expect "--explain of a missing file" 2 "$(status --explain missing.avi)"
# Hostile sizes in sparse files of 48 MiB: the memory stays small, whatever they declare.
# hostile NAME BYTES: a file that begins with the bytes (printf escapes)
hostile() {
    # shellcheck disable=SC2059  # the bytes as printf's escapes
    printf "$2" >"$1"
    truncate -s 48M "$1"
}
little() { # NAME WANTED-STATUS
    (ulimit -v "$space" && timeout 60 "$probe" "$1" >out.txt 2>err.txt)
    expect "$1 in an address space of $space KiB" "$2" $?
}
hostile list.avi 'RIFF\0\0\0\0AVI LIST\0\0\0\x02hdrlavih\x38\0\0\0'
little list.avi 1
cp all/avi_idx1_before_movi picture.avi
patch_size() { # what the four letters of a chunk or list type are found by, bytes, their place
    at=$(($(grep -abo "$1" picture.avi | tail -1 | cut -d: -f1) + $3))
    # shellcheck disable=SC2059  # the bytes as printf's escapes
    printf "$2" | dd of=picture.avi bs=1 seek=$at conv=notrunc 2>dd.txt
}
patch_size movi '\xff\xff\xff\x7f' -4
patch_size 00dc '\0\0\0\x02' 4
truncate -s 48M picture.avi
little picture.avi 0
hostile moov.mp4 '\0\0\0\x14ftypisom\0\0\2\0isom\x02\0\0\0moov'
little moov.mp4 1
hostile tables.mp4 '\0\0\0\x14ftypisom\0\0\2\0isom\x02\0\0\0moov\x01\xf0\0\0trak\0\0\0\x08tkhd'
little tables.mp4 1
if [ -e /dev/full ]; then
    "$probe" $good >/dev/full 2>err.txt
    expect "a full disk is told" 2 $?
fi
finish
