#!/bin/bash
# Writes the seeds of the simulated unit's targets: make_seeds.sh FOLDER -> FOLDER/captions, codecs,
# json, scenario.
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
mkdir -p "$1/captions" "$1/codecs" "$1/json" "$1/scenario"
cd "$1"

# captions NAME TYPE TEXT: a subtitle file of type 0 to 3; printf's escapes, then UTF-16.
captions() {
    {
        # shellcheck disable=SC2059  # the number and the text are the format
        printf "\\00$2"
        # shellcheck disable=SC2059
        printf "$3" | iconv -f UTF-8 -t UTF-16LE
    } >"captions/$1"
}
captions sami 0 '<SAMI><BODY>\n<SYNC Start=400><P Class=KRCC>first\n<SYNC start="900"><P Class=KRCC>&nbsp;<SYNC Start=1200><P Class=krcc><b>one</b><BR>two &lt;3&gt;<SYNC Start=1200><P Class=ENCC>other'
captions sami_open 0 '<SYNC Start=1>a<<<<<<<<<<<<<<<<<<<<<<<<'
captions subrip 1 '1\r\n00:00:00,400 --> 00:00:00,900\r\n<i>first</i>\r\nline\r\n\r\n2\n0:00:01.2 --> 1:02:03.4567\nx<y\n'
captions microdvd 2 '{1}{1}23.976\n{4}{9}first\n{12}{20}{y:b}two|lines\n{3}x\n'
captions subviewer 2 '[INFORMATION]\n00:00:00.40,00:00:00.90\nfirst[br]line\n\n00:00:01.20,00:00:02.00\nsecond\n'
captions ssa 3 '[Events]\nFormat: Marked, Start, End, Text\nDialogue: 0,0:00:00.40,0:00:00.90,{\\b1}a\\Nb,c\n[Fonts]\nDialogue: 0,0:00:01.00,0:00:02.00,none\n'
captions ssa_plain 3 '[Events]\nDialogue: 0,0:00:01.00,0:00:02.00,D,,0,0,0,,d\\hd\n'
captions korean 1 '1\n00:00:01,000 --> 00:00:02,000\n안녕하세요\n'
captions unknown 4 'nothing'

# codecs NAME BYTES: a file; printf's escapes.
codecs() {
    # shellcheck disable=SC2059  # the bytes are the format
    printf "$2" >"codecs/$1"
}
sixteen='\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0'
codecs mp4 "\0\0\0\020ftypisom\0\0\0\0\0\0\0\134moov\0\0\0\124trak\0\0\0\114mdia\0\0\0\104minf\0\0\0\024vmhd\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\050stbl\0\0\0\040stsd\0\0\0\0\0\0\0\001\0\0\0\020avc1\0\0\0\0\0\0\0\0"
codecs mp4_long "\0\0\0\020ftypisom\0\0\0\0\0\0\0\001mdat\0\0\0\0\0\0\0\040${sixteen}"
codecs mp4_cut "\0\0\0\020ftypisom\0\0\0\0\0\0\0\0mdat${sixteen}"
codecs matroska "\032\105\337\243\204\0\0\0\0\030\123\200\147\223\026\124\256\153\216\256\214\206\212V_MPEG1abc"
codecs matroska_unknown "\032\105\337\243\204\0\0\0\0\030\123\200\147\377\026\124\256\153\377\256\377\206\217V_MPEG4/ISO/AVC"
codecs matroska_vfw "\032\105\337\243\204\0\0\0\0\030\123\200\147\272\026\124\256\153\265\256\263\206\217V_MS/VFW/FOURCC\143\242\224${sixteen}MJPG"
codecs avi "RIFF\160\0\0\0AVI LIST\124\0\0\0hdrlavih\070\0\0\0\0\202\0\0${sixteen}${sixteen}${sixteen}\0\0\0\0LIST\010\0\0\0strlstrh"
codecs empty ''
codecs text 'no video at all, but longer than a head'

# json NAME TEXT
json() { printf '%s' "$2" >"json/$1"; }
json post '{"ms": 12, "kind": "post", "from": "movie", "to": "Processmanager", "message": "WM_APP", "wParam": 3, "lParam": -1}'
json box '{"ms": 1500, "kind": "box", "text": "\n\n재생", "title": "", "style": 0, "milliseconds": 3000}'
json copydata '{"ms": 0, "kind": "copydata", "identifier": 1, "values": [1, 2.5, -3e300, null, true, {"a": []}]}'
json escapes '["😀", "\ud83d", "\\\"\/\b\f\n\r\t", ""]'
json numbers '[0, -0, 9007199254740993, 9223372036854775807, 18446744073709551615, 1e400, 0.1]'
json refused '[01, +1, "raw
line"]'
json nested '[[[[[[[[[[[[[[[[{"a": {"b": {}}}]]]]]]]]]]]]]]]]'
json kinds '{"kind": 5, "ms": "x", "text": 7, "message": {}}'

for file in "$root"/tests/scenarios/*.scn "$root"/tests/scenarios/*/*.scn; do
    cp "$file" "scenario/$(basename "$(dirname "$file")")-${file##*/}"
done
printf 'section\n' >scenario/no_name
printf 'box "\\q"\n' >scenario/unknown_escape
printf 'try\nfails\n' >scenario/no_verb
printf 'touch 1 2 3 4 5\n' >scenario/too_many
printf 'fails boot --pip\r\ntry card remove USB\r\n' >scenario/two_ways
