#!/bin/bash
# Compares what mediaprobe and ffprobe say of the files that make_media.sh makes, wherever both
# mean the same. A wanted disagreement stands in the list below with its reason.
# Usage: check_against_ffprobe.sh MEDIAPROBE FOLDER
set -u
probe=$(readlink -f "$1")
. "$(dirname "$0")/checks.sh"
need ffmpeg ffprobe
"$(dirname "$0")/make_media.sh" "$2" || exit 2
cd "$2" || exit 2

# FILE FIELD REASON. The field is then not compared.
wanted_disagreements() {
    cat <<'LIST'
wmv2.wmv seconds the play duration of ASF holds the preroll, which is not subtracted
tagged.wma seconds the play duration of ASF holds the preroll, which is not subtracted
wmv2.wmv frame the frame time comes from the extended stream properties, which are absent
mpeg4_aac.mp4 channels the channel count is the sample entry's, which muxers set to 2 for mono
aac.m4a channels the channel count is the sample entry's, which muxers set to 2 for mono
mono_aac.flv channels FLV announces AAC as stereo, whatever it is
layer2.mp2 all the scan starts at offset 10, and a false sync word before the next frame ends it
LIST
}

# field JSON NAME
# shellcheck disable=SC2001  # an expression
field() { sed "s/.*\"$2\": \\([0-9-]*\\).*/\\1/" <<<"$1"; }
# stream FILE v|a ENTRY
stream() {
    ffprobe -v error -select_streams "$2:0" -show_entries "stream=$3" -of csv=p=0 "$1" \
        2>/dev/null | head -1 | tr -d ','
}
near() { # WHAT WANTED GOT TOLERANCE
    local apart=$(($2 > $3 ? $2 - $3 : $3 - $2))
    expect "$1 (ffprobe $2, here $3, may be $4 apart)" yes \
        "$([ "$apart" -le "$4" ] && echo yes || echo no)"
}
listed() { wanted_disagreements | grep -q "^$1 $2 "; }

for file in *.*; do
    json=$("$probe" --json "$file" 2>/dev/null)
    status=$?
    if listed "$file" all; then
        expect "$file is declined" 1 $status
        continue
    fi
    expect "$file is recognised with status 0" 0 $status
    width=$(stream "$file" v width)
    height=$(stream "$file" v height)
    case $file in picture.*) prefix=image ;; *) prefix=video ;; esac
    expect "$file width" "${width:-0}" "$(field "$json" ${prefix}Width)"
    expect "$file height" "${height:-0}" "$(field "$json" ${prefix}Height)"
    if [ "$prefix" = image ]; then continue; fi

    if ! listed "$file" seconds; then
        # Whole seconds here, truncated; durations differ by less than one of them.
        seconds=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$file")
        near "$file seconds" "${seconds%.*}" "$(field "$json" durationSeconds)" 1
    fi
    if [ -n "$width" ] && ! listed "$file" frame; then
        rate=$(stream "$file" v avg_frame_rate)
        near "$file frame time" "$((1000000 * ${rate#*/} / ${rate%/*}))" \
            "$(field "$json" frameTimeMicroseconds)" $((40000 / 100))
    fi
    expect "$file sample rate" "$(stream "$file" a sample_rate || true)" \
        "$(field "$json" audioSampleRate | sed 's/^0$//')"
    if ! listed "$file" channels; then
        expect "$file channels" "$(stream "$file" a channels)" \
            "$(field "$json" audioChannels | sed 's/^0$//')"
    fi
done
echo "not compared, on purpose:"
wanted_disagreements | sed 's/^/  /'
finish
