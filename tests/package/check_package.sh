#!/bin/bash
# The Debian package as it comes out of its one command, unpacked into an empty folder and run
# there; the library, installed into an empty folder and used by the example.
# Usage: check_package.sh BUILD PROBE_SAMPLES
set -u
build=$(readlink -f "$1")
samples=$(readlink -f "$2")
root=$(readlink -f "$(dirname "$0")/../..")
. "$root/tests/unit/probe/checks.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 2
mkdir clean all
"$samples" all

package=$("$root/packaging/build.sh" "$work/made")
expect "the package's name" mediaprobe_1.0.0_amd64.deb "$(basename "$package")"
expect "what it depends on" "" "$(dpkg-deb -f "$package" Depends)"
dpkg -x "$package" clean
installed=$(cd clean && find . -type f | sort | tr '\n' ' ')
expect "what it installs" "./usr/bin/mediaprobe ./usr/share/bash-completion/completions/mediaprobe \
./usr/share/doc/mediaprobe/mediaprobe.schema.json ./usr/share/man/man1/mediaprobe.1 \
./usr/share/zsh/site-functions/_mediaprobe " "$installed"
probe=$work/clean/usr/bin/mediaprobe
expect "it runs" "mediaprobe 1.0.0" "$(env -i "$probe" --version)"
expect "it needs no library" 1 "$(ldd "$probe" 2>&1 | grep -c 'not a dynamic executable')"
expect "it probes" 1 "$(env -i "$probe" all/mp4_avc_and_aac | grep -c '^  Video    H.264')"

cmake --install "$build" --prefix "$work/library" --component library >install.log
cmake -S "$root/packaging/example" -B example -DCMAKE_PREFIX_PATH="$work/library" \
    -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" >example.log 2>&1 &&
    cmake --build example >>example.log 2>&1
expect "the example builds" 0 $?
expect "no longer than 20 lines" yes \
    "$([ "$(wc -l <"$root/packaging/example/main.cpp")" -le 20 ] && echo yes)"
expect "the example runs" "320 x 240, 2 s" "$(example/example all/mp4_avc_and_aac)"
expect "on a missing file" 1 "$(example/example gone 2>gone.txt; echo $?)"
expect "only the public header and what it includes" "platform/file.h probe/media_info.h \
probe/record/media_record.h probe/record/result.h " \
    "$(cd library/include && find . -name '*.h' -printf '%P\n' | sort | tr '\n' ' ')"
finish
