#!/bin/sh
# Makes manual pages and shell completions out of what a command's --help says.
#   papers.sh man PROGRAM PAGE.in     the page, with .TP entries where @OPTIONS@ or @VERBS@ stands
#   papers.sh bash|zsh PROGRAM        the completion
# The options, or the verbs of a command that has such, are taken from --help and nowhere else: an
# entry is indented by two, its text by six and more, or stands behind two blanks.
set -eu
export LC_ALL=C.UTF-8
kind=$1
program=$2
name=$(basename "$program")

# One line for each entry: its words, a tab, its text.
entries() {
    "$program" --help | awk '
        function flush() { if (key != "") print key "\t" text; key = text = "" }
        function add(more) { text = text (text == "" || more == "" ? "" : " ") more }
        /^  [^ ]/ {
            flush(); line = substr($0, 3); at = match(line, /  +/)
            key = at ? substr(line, 1, at - 1) : line
            if (at) add(substr(line, at + RLENGTH))
            sub(/ +$/, "", key); next
        }
        /^      / && key != "" { line = $0; sub(/^ +/, "", line); add(line); next }
        { flush() }
        END { flush() }'
}
options() { entries | grep '^-' || true; }
verbs() { entries | grep -v '^-' | grep -E '^[a-z]' || true; }

# "-r,--recursive" or "--files-from FILE": the words that begin with a dash, one a line.
flags() { sed 's/\t.*//; s/,/ /g' | tr ' ' '\n' | grep '^-' || true; }

roff_entries() {
    sed 's/\\/\\e/g' | awk -F '\t' '{
        key = $1; text = $2
        gsub(/-/, "\\-", key); gsub(/-/, "\\-", text)
        gsub(/,--/, ", --", key); gsub(/,\\-\\-/, ", \\-\\-", key)
        # A line of its own may not begin with a dot or a quote.
        print ".TP\n.B \"" key "\"\n\\&" text
    }'
}

man_page() {
    while IFS= read -r line; do
        case $line in
            @OPTIONS@) options | roff_entries ;;
            @VERBS@) verbs | roff_entries ;;
            *) printf '%s\n' "$line" ;;
        esac
    done <"$1"
}

# What may follow a verb: the options and the choices ("play|next") that its own help names.
words_of_verb() {
    "$program" "$1" --help | grep -oE -e '--[a-z][a-z-]*' -e '[a-zA-Z]+(\|[a-zA-Z]+)+' |
        tr '|' '\n' | grep -vE '^[A-Z]+$' | sort -u | tr '\n' ' '
}

has_verbs() { [ -n "$(verbs)" ] && "$program" --help | grep -qE 'VERB|SUBCOMMAND'; }

bash_completion() {
    echo "# Completion of $name for bash, made of its --help."
    echo "_$name() {"
    # shellcheck disable=SC2016  # the words are bash's
    echo '    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} words='
    if has_verbs; then
        # shellcheck disable=SC2016
        echo '    if [[ $COMP_CWORD -eq 1 ]]; then'
        echo "        words=\"$(verbs | sed 's/[ \t].*//' | tr '\n' ' ')--help --version\""
        # shellcheck disable=SC2016
        printf '    else\n        case ${COMP_WORDS[1]} in\n'
        for verb in $(verbs | sed 's/[ \t].*//'); do
            echo "            $verb) words=\"--device --help $(words_of_verb "$verb")\" ;;"
        done
        printf '        esac\n    fi\n'
    else
        # shellcheck disable=SC2016
        echo '    case $previous in'
        echo '        --color) words="auto always never" ;;'
        echo '        -j|--jobs) return ;;'
        # shellcheck disable=SC2016
        echo '        *) if [[ $current == -* ]]; then'
        echo "               words=\"$(options | flags | tr '\n' ' ')\""
        printf '           fi ;;\n    esac\n'
    fi
    # shellcheck disable=SC2016
    printf '    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")\n'
    printf '}\ncomplete -o default -F _%s %s\n' "$name" "$name"
}

zsh_completion() {
    echo "#compdef $name"
    echo "# Completion of $name for zsh, made of its --help."
    if has_verbs; then
        echo "local -a verbs=("
        verbs | awk -F '\t' '{ verb = $1; sub(/ .*/, "", verb); gsub(/[\047:]/, "", $2)
                               print "    \047" verb ":" $2 "\047" }'
        echo ")"
        # shellcheck disable=SC2016  # the words are zsh's
        printf 'if (( CURRENT == 2 )); then\n    _describe verb verbs\nelse\n    case $words[2] in\n'
        for verb in $(verbs | sed 's/[ \t].*//'); do
            echo "        $verb) compadd -- --device --help $(words_of_verb "$verb"); _files ;;"
        done
        printf '    esac\nfi\n'
    else
        echo "_arguments \\"
        options | awk -F '\t' '{
            count = split($1, part, / /); split(part[1], flag, /,/); gsub(/[\047\[\]]/, "", $2)
            value = ""
            if (count > 1) value = ":" part[2] ":"
            if (part[2] == "FILE") value = value "_files"
            if (part[2] == "WHEN") value = value "(auto always never)"
            for (i = 1; i in flag; ++i) print "    \047" flag[i] "[" $2 "]" value "\047 \\"
        }'
        echo "    '*:file:_files'"
    fi
}

case $kind in
    man) man_page "$3" ;;
    bash) bash_completion ;;
    zsh) zsh_completion ;;
    *) echo "usage: papers.sh man PROGRAM PAGE.in | bash PROGRAM | zsh PROGRAM" >&2; exit 2 ;;
esac
