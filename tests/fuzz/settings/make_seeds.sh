#!/bin/sh
# Writes the seeds of the two fuzz targets: make_seeds.sh FOLDER -> FOLDER/ini, FOLDER/movie_dat.
set -eu
mkdir -p "$1/ini" "$1/movie_dat"
cd "$1"

# ini NAME TEXT: a settings file; printf's escapes.
ini() {
    # shellcheck disable=SC2059  # the text is the format
    printf "$2" >"ini/$1"
}
ini empty ''
ini plain '[MISC]\nDMB=1\n[Sound]\nMUTE=0\n[TRIP]\nAppProgram=2\nAppProgramMode=0\n'
ini desktop '[TRIP]\r\nAppProgram=2\r\n'
ini no_newline '[TRIP]\nAppProgram=2'
ini in_a_key '[TRIP]\nAppPro'
ini in_a_section '[MISC]\nDMB=1\n[TRIP'
ini blank_line '[TRIP]\n\nAppProgram=3\n'
ini comments ';[TRIP]\n[TRIP]\n;AppProgram=1\nAppProgram= 7 x\n'
ini odd_names '[TRIP ]\nAppProgram =1\n x [TRIP]\nappprogram=2\n'
ini other_bytes '[TRIP]\nName=\303\251\377\000\032\nAppProgram=-5\n'
ini lone_return '[TRIP]\rAppProgram=1\r'
ini long_value "[TRIP]\\nAppProgram=$(printf '%0200d' 3)\\n"

# record NAME STATE VOLUME INDEX RESERVED POSITION END PATHS: the numbers as printf's escapes, PATHS
# the byte that both paths are filled with.
record() {
    {
        # shellcheck disable=SC2059  # the numbers are the format
        printf "$2$3$4$5$6$7"
        head -c 1040 /dev/zero | tr '\000' "$8"
    } >"movie_dat/$1"
}
zero='\000\000\000\000'
minus='\377\377\377\377'
number='\000\000\000\000\000\000\111\100'       # 50.0
greater='\000\000\000\000\000\000\131\100'      # 100.0
below='\000\000\000\000\000\000\111\300'        # -50.0
not_a_number='\000\000\000\000\000\000\370\177'
infinite='\000\000\000\000\000\000\360\177'
record zeros "$zero" "$zero" "$zero" "$zero" "$zero$zero" "$zero$zero" '\000'
record playing '\001\000\000\000' '\007\000\000\000' '\003\000\000\000' "$minus" \
    "$number" "$greater" '\000'
record out_of_range "$minus" '\013\000\000\000' "$minus" "$zero" "$below" "$below" 'A'
record behind_the_end '\002\000\000\000' "$zero" "$zero" "$zero" "$greater" "$number" '\377'
record no_numbers '\003\000\000\000' "$minus" "$zero" "$zero" "$not_a_number" "$not_a_number" 'A'
record endless "$zero" "$zero" "$zero" "$zero" "$infinite" "$infinite" 'A'
head -c 1071 movie_dat/playing >movie_dat/short
cat movie_dat/playing movie_dat/zeros >movie_dat/long
: >movie_dat/empty
