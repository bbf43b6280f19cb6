#!/bin/sh
# The command as a person uses it: what it says to wrong words and in trouble, a tape that is played
# back, a film, the panel. Every unit here is without a display of the desktop.
# usage: check_command.sh      (after ./test or ./run has built the command and what runs in Wine)
# Prints one line for each step; the exit status is 0 when all of them held.
# shellcheck disable=SC2031  # one step has a folder of its own
set -eu
root=$(cd "$(dirname "$0")/../../.." && pwd)
headunit=$root/out/build/native/simulator/command/headunit
recording=$root/out/samples/SDMMCDisk/Record/20260314_081500_F.avi
mkdir -p "$root/out/test"
work=$(mktemp -d "$root/out/test/command.XXXXXX")
elsewhere=$(mktemp -d /dev/shm/headunit.XXXXXX)
device=$work/device
failed=0

end() {
    "$headunit" --device "$device" kill >/dev/null 2>&1 || true
    rm -rf "$work" "$elsewhere"
}
trap end EXIT
trap 'exit 130' HUP INT PIPE TERM

# step WHAT COMMAND...: a step that holds when the command ends with 0.
step() {
    what=$1
    shift
    if "$@"; then
        echo "PASS $what"
    else
        echo "FAIL $what"
        failed=$((failed + 1))
    fi
}

unit() { "$headunit" --device "$device" "$@"; }

# refused STATUS PATTERN WORDS...: the command ends with that status, prints nothing, and says one
# line on standard error that matches.
refused() {
    wanted=$1
    pattern=$2
    shift 2
    status=0
    unit "$@" >"$work/output" 2>"$work/error" || status=$?
    [ "$status" = "$wanted" ] && [ ! -s "$work/output" ] &&
        [ "$(wc -l <"$work/error")" = 1 ] && grep -q -e "$pattern" "$work/error" && return 0
    echo "     exit status $status, standard error: $(cat "$work/error")"
    return 1
}

# soon COMMAND...: within five seconds it ends with 0.
soon() {
    # shellcheck disable=SC2034
    for attempt in $(seq 50); do
        ! "$@" || return 0
        sleep 0.1
    done
    return 1
}

taped() { unit log --json | grep -q -e "$1"; }

# What was done, as it stands on a tape; the boot takes its own time and stands there too.
actions() { sed -n 's/.*"kind": "command".*"text": \(".*"\)}.*/\1/p' "$1"; }

nothing_runs() {
    left=$(grep -lze "^WINEPREFIX=$work" -e "^HEADUNIT=$work" /proc/[0-9]*/environ 2>/dev/null)
    [ -z "$left" ]
}
something_runs() { ! nothing_runs; }

# --- Wrong words ----------------------------------------------------------------------------------
step "no word at all" refused 2 'usage: headunit VERB .*headunit --help'
step "a verb that there is not" refused 2 'there is no verb "bot"; see: ./headunit --help' bot
step "a number out of range" refused 2 \
    'SECONDS must be a number from 1 to 3600; usage: headunit film FILE.mp4 SECONDS' film a.mp4 0
step "no word behind a verb" refused 2 '^headunit: a word is missing; usage: headunit key play' key
step "no verb within a verb" refused 2 '^headunit: a word is missing; usage: headunit card insert' card
step "words too many" refused 2 '^headunit: too much: a; usage: headunit kill$' kill a
step "a message that there is not" refused 2 \
    '^headunit: NAME must be one of MSG_ProcessManagertoMovie, .*MSG_TO_ANI_WAITING; usage' send MSG_No 0 0
step "no speed" refused 2 'name a speed; usage: headunit drive \[--chart\] KMH|off' drive
no_device() {
    "$headunit" --device= state 2>"$work/error"
    [ $? = 2 ] && [ "$(cat "$work/error")" = "headunit: --device needs a folder" ]
}
step "no folder behind --device=" no_device
device_equals() {
    "$headunit" "--device=$work/it's here" key play 2>"$work/error"
    [ $? = 1 ] && [ "$(cat "$work/error")" = "headunit: no unit runs in $work/it's here; \
start one with: ./headunit boot --device '$work/it'\\''s here'" ]
}
step "--device=DIR, and a folder that wants quoting" device_equals
step "a tape that there is not" refused 1 'there is no tape nowhere.jsonl' replay nowhere.jsonl
printf '{"ms": 1, "kind": "sound", "sound": 1}\n' >"$work/idle.jsonl"
step "a tape on which nothing was done" refused 1 'nothing was done on the tape' \
    replay "$work/idle.jsonl"
printf '{"ms": 1, "kind": "sound"}\nnonsense\n' >"$work/no.jsonl"
step "what is no tape" refused 1 'no.jsonl:2: this is no line of a tape' replay "$work/no.jsonl"
for wrong in 'bot|there is no verb "bot"' \
    'key stop|the word must be play, next or prev; usage: headunit key play|next|prev' \
    'put nosuch.avi USB/a.avi|there is no nosuch.avi'; do
    printf 'boot\n%s\n' "${wrong%%|*}" >"$work/wrong.scn"
    step "a scenario with: ${wrong%%|*}" refused 2 "wrong.scn:2: ${wrong#*|}" \
        scenario "$work/wrong.scn"
done

# --- No unit --------------------------------------------------------------------------------------
for words in 'key play' 'film a.mp4 1' 'shot a.png' 'connect off' 'cut --player'; do
    # shellcheck disable=SC2086  # the words of the command
    step "no unit runs: $words" refused 1 'no unit runs in .*; start one with: ./headunit boot --device .*' $words
done

# --- Wrong words that need a unit to be known -----------------------------------------------------
no_display() {
    ( export DISPLAY=:4711
      refused 1 'there is no display :4711 (DISPLAY); without one: ./headunit boot --headless --device .*' boot )
}
step "a display that there is not" no_display
step "a hand-over of nothing" refused 1 'there is no folder Nope on the unit' \
    boot --headless --connect Nope

# --- A full disk ----------------------------------------------------------------------------------
# On another disk than the checkout, where the unit's programs are copied, under a limit for files.
full_disk() {
    (
        trap '' XFSZ
        ulimit -f 100
        # shellcheck disable=SC2030  # here alone
        device=$elsewhere/device
        refused 1 'movie.exe cannot be copied to /dev/shm/.*: File too large' boot --headless
    ) && [ ! -e "$elsewhere/device/ResidentFlash/apps/movie.exe" ]
}
step "a unit on a full disk" full_disk

# --- Two units on one folder ----------------------------------------------------------------------
two_boots() {
    unit boot --headless --panel "$recording" 2>"$work/first" &
    first=0
    second=0
    unit boot --headless --panel "$recording" 2>"$work/second" || second=$?
    wait $! || first=$?
    [ "$first$second" = 01 ] || [ "$first$second" = 10 ] &&
        [ "$(cat "$work/first" "$work/second")" = "headunit: a unit runs in $device already; \
end it with: ./headunit kill --device $device" ]
}
step "two boots of one folder at the same time" two_boots
step "a boot while one runs" refused 1 'a unit runs in .* already; end it with: ./headunit kill --device .*' \
    boot --headless

step "its processes are found" something_runs
stranger() {
    port=$(tr -d '\r\n' <"$device/.unit/port")
    [ "$(stat -c %a "$device/.unit/token")" = 600 ] &&
        bash -c "exec 3<>/dev/tcp/127.0.0.1/$port && echo '{\"words\": [\"ping\"]}' >&3 && cat <&3" |
        grep -q 'the unit belongs to another user'
}
step "who has no token is refused" stranger

# --- The panel, and its tape ----------------------------------------------------------------------
# The box of that title lies within the panel, where the player does not come.
box_on_panel() {
    DISPLAY=$(cat "$device/.unit/display") xwininfo -root -tree | sed -n \
        "s/.* \"$1\": .* \([0-9]*\)x\([0-9]*\)+\([0-9]*\)+\([0-9]*\) .*/\1 \2 \3 \4/p" | {
        read -r width height left top && [ "$left" -ge 800 ] && [ $((left + width)) -le 1220 ] &&
            [ $((top + height)) -le 480 ]
    }
}
# Not only while it is being opened.
stays_on_panel() { soon box_on_panel "$1" && sleep 0.3 && box_on_panel "$1"; }
is_handed_over() { unit state --json | grep -qF '"connectPath": "SDMMCDisk\\Record"'; }
shown_twice() {
    [ "$(unit log --json | grep -c '"MSG_MovietoProcessManager", "wParam": 5,')" = 2 ]
}
has_exited() { taped '"process", .*movie.exe.*"ended".*"exit": 0'; }
playerless() { taped '"process", .*movie.exe.*"ended"'; }

mkdir -p "$device/SDMMCDisk/Record"
unit touch 820 150
unit press F1
step "help stands on the panel" stays_on_panel "Keys of the panel"
unit press Return
unit touch 930 128
unit press End
unit type abc
unit press F4
step "a speed that is no number is refused on the panel" stays_on_panel Refused
unit press Return ctrl+Tab
unit touch 1150 184
step "the panel hands a folder over" soon is_handed_over
unit drive 30
unit press ctrl+Tab
unit touch 1100 72
step "the panel kills the player" soon playerless
unit touch 970 44
step "and starts it again" soon shown_twice
unit touch 970 72
step "the panel has it exit" soon has_exited
cp "$device/.unit/log.jsonl" "$work/tape.jsonl"
step "all of it is on the tape" test "$(actions "$work/tape.jsonl" | tail -n +2 | tr '\n' ' ')" = \
    '"connect \"SDMMCDisk\\\\Record\"" "drive 30" "cut --player" "restart" "shutdown --stay" '

unit restart
unit cut --player
step "a killed player" refused 1 'there is no window "Video"; is the player running?' key play
unit restart

# It stands on the tape as well, but not on the one that is played back below.
ended() { unit log --json | grep -c '"kind": "process".*movie.exe.*"ended"'; }
before=$(ended)
plays_on() { [ "$(ended)" = "$before" ]; }
step "a wrong path is found before the player is ended" refused 1 'there is no file /no/such' \
    restart /no/such
step "and the player plays on" plays_on

# Step 5 of the volume, silence while somebody talks, and the step again (graph/filter_run.cpp).
is_as_loud_as() { unit state --json | grep -q "\"loudness\": $1[,}]"; }
step "the volume that sounds" soon is_as_loud_as -4500
unit send MSG_ProcessManagertoMovie 15007 0
step "silence during a call" soon is_as_loud_as -10000
unit send MSG_ProcessManagertoMovie 15008 0
step "and sound again" soon is_as_loud_as -4500
unit key play
unit send MSG_ProcessManagertoMovie 20506 0
step "nothing sounds when nothing plays" soon is_as_loud_as null

# --- Pictures and films ---------------------------------------------------------------------------
# A frame may be missing at either end when the machine is busy.
filmed() {
    unit film "$work/film.mp4" 1 &&
        ffprobe -v error -show_entries stream=width,height,duration -of csv=p=0 \
            "$work/film.mp4" >"$work/film" &&
        awk -F, '$1 != 800 || $2 != 480 || $3 < 0.9 || $3 > 1.1 { print "     " $0; exit 1 }' \
            "$work/film"
}
step "a film of one second" filmed
ln -s /dev/full "$work/full.png"
step "a picture on a full disk" refused 1 'the picture could not be written to' shot "$work/full.png"

# --- Played back ----------------------------------------------------------------------------------
played_back() {
    unit replay "$work/tape.jsonl" >"$work/output" &&
        actions "$work/tape.jsonl" >"$work/then" &&
        actions "$device/.unit/log.jsonl" >"$work/now" && diff "$work/then" "$work/now"
}
failing_step() {
    printf '{"ms": 1, "kind": "command", "text": "%s"}\n' 'box ok' 'drive 20' >"$work/fails.jsonl"
    status=0
    unit replay "$work/fails.jsonl" >"$work/output" 2>"$work/error" || status=$?
    [ "$status" = 1 ] && grep -q 'no message box is open' "$work/error" &&
        grep -q '1 of the 2 things' "$work/error" && taped '"drive 20"'
}
unit kill
step "nothing is left after kill" soon nothing_runs
step "the tape is played back" played_back
step "the player of the tape has died again" soon playerless
step "a step that fails is told, and the next one is done" failing_step

# --- The display goes away ------------------------------------------------------------------------
kill "$(cat "$device/.unit/xvfb.pid")"
unit_ended() { ! unit touch 400 300 2>/dev/null; }
step "the display goes away" soon unit_ended
step "what is said then" refused 1 'no unit runs in .*boot\|is the display still there?' \
    touch 400 300
unit kill
step "nothing is left running" soon nothing_runs

echo "$failed failed"
[ "$failed" = 0 ]
