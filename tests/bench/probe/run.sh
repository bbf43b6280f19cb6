#!/bin/bash
# Measures the probe: tests/bench/probe/run.sh [google-benchmark options]   (from the checkout)
# In-process figures of bench_probe, then whole processes. Prints what docs/probe.md shows.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
cd "$root"
cmake --preset native >/dev/null
cmake --build out/build/native --target bench_probe bench_probe_start mediaprobe >/dev/null
media=out/media
tests/unit/probe/make_media.sh $media
hours=out/hours
mkdir -p $hours
hour="-nostdin -v error -y -f lavfi -i testsrc=s=64x48:r=25:d=3600 -f lavfi -i sine=r=8000:d=3600"
[ -e $hours/hour.avi ] || ffmpeg $hour -c:v mpeg4 -g 250 -c:a libmp3lame -b:a 8k $hours/hour.avi
[ -e $hours/hour.mp4 ] || ffmpeg $hour -c:v mpeg4 -g 250 -c:a aac -b:a 8k $hours/hour.mp4
# Coded music is as even as coded noise; the tones above are not.
noise="-nostdin -v error -y -f lavfi -i anoisesrc=c=pink:r=44100:d=30:seed=1"
[ -e $hours/noise.flac ] || ffmpeg $noise -ac 2 -c:a flac $hours/noise.flac
out/build/native/tests/bench/probe/bench_probe --benchmark_repetitions=15 \
    --benchmark_min_time=0.01 --benchmark_enable_random_interleaving=true "$@" \
    $media/*.* $hours/*

probe=out/build/native/mediaprobe/mediaprobe
echo 'int main() { return 0; }' >out/empty.cpp
g++ -O2 out/empty.cpp -o out/empty
g++ -O2 -static out/empty.cpp -o out/empty-static
# milliseconds COUNT COMMAND...: mean of one run
milliseconds() {
    local count=$1 start end
    shift
    start=$(date +%s%N)
    for ((i = 0; i < count; ++i)); do "$@" >out/bench-output.txt; done
    end=$(date +%s%N)
    awk "BEGIN { printf \"%.2f\", ($end - $start) / 1e6 / $count }"
}
start=out/build/native/tests/bench/probe/bench_probe_start
echo "mediaprobe on one file against an empty program's start:"
$start 1000 $probe $media/h264_aac.mp4 out/empty
echo "the same, the empty program linked statically as mediaprobe is:"
$start 1000 $probe $media/h264_aac.mp4 out/empty-static
five=out/five-hundred
rm -rf $five
mkdir -p $five
n=0
while [ $n -lt 500 ]; do
    for file in "$media"/*.*; do
        [ $n -lt 500 ] || break
        ln "$file" "$five/$n.${file##*.}"
        n=$((n + 1))
    done
done
ours=$(milliseconds 5 $probe --json -r $five)
echo "mediaprobe, 500 files: $ours ms"
one=$(milliseconds 20 ffprobe -v quiet -show_format -show_streams $media/h264_aac.mp4)
echo "ffprobe, one file: $one ms, so 500 starts: $(awk "BEGIN { print $one * 500 }") ms"
echo "mediainfo, 500 files: $(milliseconds 1 mediainfo $five/*) ms"
