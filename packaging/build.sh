#!/bin/sh
# Makes the Debian package of the Linux tools: packaging/build.sh [FOLDER]   (default out/package)
# Prints the package's name. Needs what ./run and ./test have installed.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
folder=${1:-$root/out/package}
build=$root/out/build/native
mkdir -p "$folder"
log=$folder/build.log
if ! { (cd "$root" && cmake --preset native) &&
       cmake --build "$build" --target mediaprobe mediaprobe_papers -j "$(nproc)" &&
       cpack --config "$build/CPackConfig.cmake" -B "$folder"; } >"$log" 2>&1; then
    echo "packaging/build.sh: the package could not be made; see $log" >&2
    exit 1
fi
sed -n 's/^CPack: - package: \(.*\) generated\.$/\1/p' "$log"
