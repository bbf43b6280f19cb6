#!/bin/sh
# Shows that check.sh fails for an include that points upwards, for a folder that is reached and not
# linked, and for a circle: each is put into a copy of the tree. Usage: check_fails.sh LAYERS
set -eu
layers=${1:?usage: check_fails.sh LAYERS}
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

# fails NAME MESSAGE: the check of the copy must fail and say so.
fails() {
    if said=$("$root/tests/layers/check.sh" "$work/layers" "$work/tree"); then
        echo "$1: not noticed"
        failed=1
    elif ! echo "$said" | grep -qF "$2"; then
        echo "$1: noticed otherwise: $said"
        failed=1
    else
        echo "$1: $said"
    fi
}

fresh() {
    rm -rf "$work/tree"
    mkdir -p "$work/tree/docs"
    cp "$layers" "$work/layers"
    cp "$root/docs/architecture.md" "$work/tree/docs"
    for folder in platform settings catalogue probe graph ui app player shell; do
        cp -r "$root/$folder" "$work/tree"
    done
}

fresh
"$root/tests/layers/check.sh" "$work/layers" "$work/tree" || failed=1

echo '#include "player/player.h"' >>"$work/tree/ui/bars.cpp"
fails "an include upwards" "ui must not use player, which is above it"

fresh
echo '#include "settings/ini_store.h"' >>"$work/tree/ui/bars.cpp"
fails "a folder that is not linked" "ui does not link settings"

fresh
sed -i 's/^app .*/& player/' "$work/layers"
fails "a circle" "a circle through"

exit $failed
