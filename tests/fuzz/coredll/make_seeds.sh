#!/bin/sh
# Writes the seeds of the bitmap's target: make_seeds.sh FOLDER -> FOLDER/bitmap.
set -eu
mkdir -p "$1/bitmap"
cd "$1/bitmap"

# bitmap NAME ROWS WIDTH HEIGHT BITS COMPRESSION COLOURS: the numbers as printf's escapes of 4
# bytes, BITS of 2; behind the header a file of 16 MiB.
bitmap() {
    # shellcheck disable=SC2059  # the numbers are the format
    printf "BM\\0\\0\\0\\1\\0\\0\\0\\0$2(\\0\\0\\0$3$4\\1\\0$5$6\\0\\0\\0\\0$long$long$7$long\\0\\0\\0\\1\\0\\0\\0\\0" >"$1"
}
long='\000\000\000\000'
bitmap deep '\066\000\000\000' '\040\003\000\000' '\340\001\000\000' '\030\000' "$long" "$long"
bitmap upside_down '\066\000\000\000' '\012\000\000\000' '\366\377\377\377' '\040\000' "$long" "$long"
bitmap palette '\066\004\000\000' '\040\000\000\000' '\040\000\000\000' '\010\000' "$long" "$long"
bitmap few_colours '\076\000\000\000' '\040\000\000\000' '\040\000\000\000' '\001\000' "$long" '\002\000\000\000'
bitmap masks '\102\000\000\000' '\040\000\000\000' '\040\000\000\000' '\020\000' '\003\000\000\000' "$long"
