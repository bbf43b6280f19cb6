# Shared by the probe's check scripts: counts what passed and says what did not.
passed=0
failed=0

# expect WHAT WANTED GOT
expect() {
    if [ "$2" = "$3" ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        printf 'FAILED %s\n  wanted: %s\n  got:    %s\n' "$1" "$2" "$3"
    fi
}

# need PROGRAM...: an error, never a skip, when one is missing
need() {
    for program in "$@"; do
        command -v "$program" >/dev/null || {
            echo "$program is missing; install it and run this again" >&2
            exit 2
        }
    done
}

finish() {
    echo "$passed passed, $failed failed"
    [ "$failed" = 0 ]
}
