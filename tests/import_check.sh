#!/usr/bin/env bash
# Holds what the player's own object files import against the list of what Windows CE 6.0 offers.
# The compiler's own runtime (operator new, guards, the C99 print functions, the numbers of
# interfaces) is linked into the program and not looked at. Usage: import_check.sh BUILD_DIR
# Exit status 0 when nothing else is imported and nothing on the list is unused.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:?usage: import_check.sh BUILD_DIR}
list=platform/ce_imports.txt
nm=x86_64-w64-mingw32-nm

# The files named *_desktop are the desktop's side of the seam and not part of the device's player.
mapfile -t objects < <(find "$build"/{shell,player,app,ui,graph,catalogue,settings,probe,platform} \
  -name '*.obj' ! -name '*_desktop.cpp.obj' | sort)
if [ "${#objects[@]}" -lt 30 ]; then
  echo "import check: only ${#objects[@]} object files below $build: build the device preset first" >&2
  exit 2
fi
defined=$(find "$build"/{shell,player,app,ui,graph,catalogue,settings,probe,platform} -name '*.obj' \
  -exec "$nm" --defined-only {} + | awk 'NF == 3 {print $3}' | sort -u)
imported=$("$nm" -u "${objects[@]}" | awk '$1 == "U" {print $2}' | sort -u |
  comm -23 - <(printf '%s\n' "$defined") |
  sed -e 's/^__imp_//' | grep -vE '^(_Z|__(cxa|gxx|mingw|acrt)_|___chkstk|(CLSID|IID)_|TIME_FORMAT_)' |
  LC_ALL=C sort -u)

status=0
if ! { grep -v "^#" "$list" || true; } | LC_ALL=C sort -c 2>/dev/null; then
  echo "import check: $list is not sorted" >&2
  status=1
fi
allowed=$(grep -v "^#" "$list" | LC_ALL=C sort -u || true)
unknown=$(LC_ALL=C comm -23 <(printf '%s\n' "$imported") <(printf '%s\n' "$allowed"))
unused=$(LC_ALL=C comm -13 <(printf '%s\n' "$imported") <(printf '%s\n' "$allowed"))
if [ -n "$unknown" ]; then
  echo "import check: imported but not on the list of Windows CE 6.0 ($list):" >&2
  printf '  %s\n' $unknown >&2
  status=1
fi
if [ -n "$unused" ]; then
  echo "import check: on the list but imported no more:" >&2
  printf '  %s\n' $unused >&2
  status=1
fi
[ "$status" -eq 0 ] && echo "import check: ${#objects[@]} object files, $(wc -l <<<"$imported") imports, all on the list"
exit "$status"
