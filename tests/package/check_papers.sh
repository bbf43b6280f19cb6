#!/bin/bash
# Manual pages and completions say what --help says, and are clean for the programs that read them.
# Usage: check_papers.sh BUILD MEDIAPROBE HEADUNIT
set -u
papers=$(readlink -f "$1")/packaging
probe=$(readlink -f "$2")
headunit=$(readlink -f "$3")
root=$(readlink -f "$(dirname "$0")/../..")
. "$root/tests/unit/probe/checks.sh"
need groff
need zsh

# The page as plain words, for comparing.
plain() { groff -man -Tutf8 -P-cbou "$1" 2>&1 | tr -s ' \n\t' ' ' | sed 's/‐ //g; s/[−‐]/-/g'; }

for page in mediaprobe.1 headunit.1 headunit-scenario.5; do
    expect "$page is clean" "" "$(groff -ww -man -Tutf8 -z "$papers/$page" 2>&1 | head -4)"
done

page=$(plain "$papers/mediaprobe.1")
options=$("$probe" --help | sed -n 's/^  \(-[^ ]*\).*/\1/p' | tr ',' '\n' | sort -u)
expect "options in --help" yes "$([ "$(echo "$options" | wc -l)" -ge 13 ] && echo yes)"
for option in $options; do
    expect "mediaprobe(1) has $option" 1 "$(echo "$page" | grep -cF -e " $option")"
    expect "bash knows $option" 1 "$(grep -cE -e "[\" ]${option}[\" ]" "$papers/mediaprobe.bash")"
    expect "zsh knows $option" 1 "$(grep -cF -e "'${option}[" "$papers/_mediaprobe")"
done
text=$("$probe" --help | sed -n '/^  --json/,/^  --explain/p' | head -1 | sed 's/.*  //')
expect "and what it says of --json" 1 "$(echo "$page" | grep -cF "$text")"
fields=$(grep -oE '^    "[a-zA-Z]+": \{' "$root/docs/mediaprobe.schema.json" | tr -d '": {' |
    grep -vxE 'result|number|flag|text|textOrNull')
expect "fields in the schema" 41 "$(echo "$fields" | wc -l)"
for field in $fields; do
    expect "mediaprobe(1) describes $field" 1 "$(echo "$page" | grep -cw "$field")"
    expect "docs/mediaprobe.md describes $field" yes \
        "$(grep -qw "$field" "$root/docs/mediaprobe.md" && echo yes)"
done

page=$(plain "$papers/headunit.1")
verbs=$("$headunit" --help | sed -nE 's/^  ([a-z]+)( .*)?$/\1/p' | sort -u)
expect "verbs in --help" yes "$([ "$(echo "$verbs" | wc -l)" -ge 25 ] && echo yes)"
for verb in $verbs; do
    expect "headunit(1) has $verb" 1 "$(echo "$page" | grep -cw -e "$verb")"
    expect "zsh knows $verb" 1 "$(grep -cE "^    '$verb:" "$papers/_headunit")"
done

# As a shell would ask.
# complete FILE FUNCTION WORD...: what is offered for the last word
complete_with() {
    bash -c '. "$1"; function=$2; shift 2; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
             $function; printf "%s " "${COMPREPLY[@]}"' bash "$@"
}
expect "mediaprobe --re" "--recursive " \
    "$(complete_with "$papers/mediaprobe.bash" _mediaprobe mediaprobe --re)"
expect "mediaprobe --color" "always auto never " \
    "$(complete_with "$papers/mediaprobe.bash" _mediaprobe mediaprobe --color '' | tr ' ' '\n' |
        sort | grep . | tr '\n' ' ')"
expect "headunit car" "card " "$(complete_with "$papers/headunit.bash" _headunit headunit car)"
expect "headunit key p" "play prev " \
    "$(complete_with "$papers/headunit.bash" _headunit headunit key p)"
for file in _mediaprobe _headunit; do
    expect "zsh reads $file" 0 "$(zsh -n "$papers/$file" >/dev/null 2>&1; echo $?)"
done

# The scenario page and what the reader takes.
page=$(plain "$papers/headunit-scenario.5")
subjects=$(sed -n '/\(kSubjects\[\]\|kPatterns\) = {/,/};/p' "$root"/simulator/command/expect_*.cpp |
    grep -oE '^ {4,8}\{"[a-z.]+"' | tr -d ' {"' | sort -u)
expect "subjects in the reader" yes "$([ "$(echo "$subjects" | wc -l)" -ge 20 ] && echo yes)"
for subject in $subjects; do
    expect "headunit-scenario(5) has $subject" yes "$(echo "$page" | grep -qw "$subject" && echo yes)"
done
finish
