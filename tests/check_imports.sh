#!/usr/bin/env bash
# Holds the import tables of linked programs of the unit against what Windows CE 6.0 exports
# (platform/ce/*.def), name by name: another library, or a name that its list lacks, is a failure.
# The library beside them, given with --offered, is the simulated coredll.dll: it may offer nothing
# that Windows CE lacks, but for the two functions for tests, and must offer all that the programs
# import. Usage: check_imports.sh [--offered COREDLL.dll] PROGRAM.exe...
set -euo pipefail
cd "$(dirname "$0")/.."
lists=$PWD/platform/ce
cd - >/dev/null
for_tests="coredllSet coredllUse"

# "library name" a line.
imports() {
  llvm-readobj-14 --coff-imports "$1" |
    awk '$1 == "Name:" { library = tolower($2) } $1 == "Symbol:" { print library, $2 }' | sort -u
}

exports() { llvm-readobj-14 --coff-exports "$1" | awk '$1 == "Name:" && NF > 1 { print $2 }' | LC_ALL=C sort -u; }

listed() { sed -n '/^EXPORTS/,$p' "$lists/$1.def" | sed -e 1d -e 's/@[0-9]*$//' | LC_ALL=C sort -u; }

status=0
fail() {
  echo "imports: $1" >&2
  shift
  [ $# = 0 ] || printf '  %s\n' "$@" >&2
  status=1
}

for list in "$lists"/*.def; do
  sed -n '/^EXPORTS/,$p' "$list" | sed 1d | LC_ALL=C sort -uc 2>/dev/null ||
    fail "$list is not sorted, or has a name twice"
done

offered=
if [ "${1:-}" = --offered ]; then
  offered=$2
  shift 2
  mapfile -t unknown < <(comm -23 <(exports "$offered") \
    <({ listed coredll; printf '%s\n' $for_tests; } | LC_ALL=C sort -u))
  [ "${#unknown[@]}" = 0 ] || fail "$offered offers what Windows CE 6.0 lacks:" "${unknown[@]}"
fi
[ $# -gt 0 ] || { echo "usage: check_imports.sh [--offered COREDLL.dll] PROGRAM.exe..." >&2; exit 2; }

for program in "$@"; do
  table=$(imports "$program")
  [ -n "$table" ] || fail "$program has no import table"
  counts=
  mapfile -t libraries < <(cut -d ' ' -f 1 <<<"$table" | sort -u)
  for library in "${libraries[@]}"; do
    mapfile -t names < <(awk -v library="$library" '$1 == library { print $2 }' <<<"$table" |
      LC_ALL=C sort -u)
    counts="$counts $library ${#names[@]},"
    if [ ! -f "$lists/${library%.dll}.def" ]; then
      fail "$program needs $library, which the unit does not have:" "${names[@]}"
      continue
    fi
    mapfile -t unknown < <(LC_ALL=C comm -23 <(printf '%s\n' "${names[@]}") <(listed "${library%.dll}"))
    [ "${#unknown[@]}" = 0 ] || fail "$program imports what $library does not export:" "${unknown[@]}"
    if [ "$library" = coredll.dll ] && [ -n "$offered" ]; then
      mapfile -t missing < <(LC_ALL=C comm -23 <(printf '%s\n' "${names[@]}") <(exports "$offered"))
      [ "${#missing[@]}" = 0 ] || fail "$offered does not offer:" "${missing[@]}"
    fi
  done
  echo "imports: $program:${counts%,}; beyond the lists: $([ "$status" = 0 ] && echo none || echo some)"
done
exit "$status"
