#!/bin/sh
# Holds the player's includes and the build's links to the drawing in docs/architecture.md:
#   check.sh LAYERS [ROOT]    LAYERS is what cmake/layers.cmake has written for a build
# An include or a link may lead only to a folder that the drawing names in its row, and a row may
# name only rows below it, so that nothing points upwards and no circle can be drawn.
set -eu
layers=${1:?usage: check.sh LAYERS [ROOT]}
root=${2:-$(cd "$(dirname "$0")/../.." && pwd)}
cd "$root"

# Rows of the drawing: "FOLDER FOLDER-IT-USES...".
drawing=$(awk '/^```layers$/ { inside = 1; next } /^```$/ { inside = 0 } inside' docs/architecture.md)
[ -n "$drawing" ] || { echo "layers: docs/architecture.md has no drawing" >&2; exit 1; }
folders=$(echo "$drawing" | awk '{ print $1 }')

# Lines "FILE INCLUDED" of every include that names a folder.
# shellcheck disable=SC2086  # folders are words
includes=$(grep -rHoE --include='*.h' --include='*.cpp' '^#include "[^"]+/[^"]+"' $folders |
    sed 's/:#include "/ /; s/"$//' | sort -u)

{
    echo "$drawing" | sed 's/^/row /'
    sed 's/^/link /' "$layers"
    echo "$includes" | sed 's/^/include /'
} | awk '
    function folderOf(path,   best, f) {
        best = ""
        for (f in place) if (index(path, f "/") == 1 && length(f) > length(best)) best = f
        return best
    }
    function complain(text) { print "layers: " text; wrong = 1 }
    # What leads from one folder to another is drawn, or it points upwards, or it is not linked.
    function lead(from, to, what) {
        if (from == to || ((from, to) in drawn)) return
        if (place[to] < place[from])
            complain(what ": " from " must not use " to ", which is above it")
        else
            complain(what ": " from " does not link " to)
    }
    function visit(f,   t, pair) {
        state[f] = 1
        for (pair in linked) {
            split(pair, part, SUBSEP)
            if (part[1] != f) continue
            t = part[2]
            if (state[t] == 1) complain("a circle through " f " and " t)
            else if (!state[t]) visit(t)
        }
        state[f] = 2
    }
    $1 == "row" {
        place[$2] = ++rows
        for (i = 3; i <= NF; i++) drawn[$2, $i] = 1
        next
    }
    $1 == "link" {
        for (i = 3; i <= NF; i++) if ($i != $2) linked[$2, $i] = 1
        next
    }
    $1 == "include" { file[++count] = $2; included[count] = $3 }
    END {
        for (pair in drawn) {
            split(pair, part, SUBSEP)
            if (!(part[2] in place)) complain("the drawing has no row for " part[2])
            else if (place[part[2]] <= place[part[1]])
                complain("the drawing: " part[1] " names " part[2] ", which is not below it")
            if (!((part[1], part[2]) in linked))
                complain("the drawing: " part[1] " does not link " part[2])
        }
        for (pair in linked) {
            split(pair, part, SUBSEP)
            lead(part[1], part[2], "link")
        }
        for (i = 1; i <= count; i++) {
            to = folderOf(included[i])
            if (to == "") complain(file[i] " includes " included[i] ", which is no layer")
            else {
                from = folderOf(file[i])
                used[from, to] = 1
                lead(from, to, file[i] " includes " included[i])
            }
        }
        for (pair in drawn) if (!(pair in used)) {
            split(pair, part, SUBSEP)
            complain("the drawing: " part[1] " includes nothing of " part[2])
        }
        for (f in place) if (!state[f]) visit(f)
        if (!wrong) print "layers: " count " includes between " rows " folders, none upwards"
        exit wrong
    }'
