# What ./run and ./test share. Sourced by them; `root` is the checkout.

# To run the player and its unit.
run_packages="g++ cmake make ninja-build g++-mingw-w64-x86-64-posix wine wine64 xvfb fonts-nanum
 ffmpeg x11-utils imagemagick gstreamer1.0-plugins-base gstreamer1.0-plugins-good
 gstreamer1.0-plugins-bad gstreamer1.0-plugins-ugly gstreamer1.0-libav googletest libgtest-dev
 librsvg2-bin libcli11-dev nlohmann-json3-dev libpugixml-dev libpng-dev libxcb-shape0-dev
 libxcb-xtest0-dev"
# To test it.
test_packages="$run_packages clang clang-format clang-tidy cppcheck shellcheck
 libclang-rt-14-dev libbenchmark-dev python3-jsonschema groff zsh lld llvm-14
 g++-mingw-w64-i686-posix g++-arm-linux-gnueabi qemu-user"

say() { echo "$name: $*"; }
die() { echo "$name: $*" >&2; exit 1; }

# Installs those of the packages that are missing; says nothing when none is.
install_packages() {
    # shellcheck disable=SC2086,SC2016  # the packages are words, the format is dpkg-query's own
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' $1 2>/dev/null |
        sed -n 's/^installed //p')
    missing=
    for package in $1; do
        echo "$installed" | grep -qxF "$package" || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    command -v apt-get >/dev/null ||
        die "these packages are missing and there is no apt-get:$missing"
    as_root=
    [ "$(id -u)" = 0 ] || as_root=sudo
    say "installing$missing"
    mkdir -p "$root/out"
    {
        # shellcheck disable=SC2086  # the packages are words
        $as_root apt-get update &&
            DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y \
                --no-install-recommends $missing
    } >"$root/out/install.log" 2>&1 ||
        die "these packages could not be installed:$missing; see out/install.log"
}

# build PRESET [CMake's options...]: configures and builds; quiet unless it fails. With `targets`
# set only these are built.
build() {
    preset=$1
    shift
    log=$root/out/build-$preset.log
    mkdir -p "$root/out"
    # Leaves no core idle between folders, as make does; a build that is there keeps what made it.
    if command -v ninja >/dev/null; then
        CMAKE_GENERATOR=Ninja
        export CMAKE_GENERATOR
    fi
    # CMake's files hold the checkout's place.
    was=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' \
        "$root/out/build/$preset/CMakeCache.txt" 2>/dev/null || true)
    if [ -n "$was" ] && [ "$was" != "$root" ]; then
        die "this checkout was moved or copied from $was; rm -rf $root/out, then start again"
    fi
    # shellcheck disable=SC2086  # the targets are words
    if ! { (cd "$root" && cmake --preset "$preset" "$@") &&
           cmake --build "$root/out/build/$preset" -j "$(nproc)" \
               ${targets:+--target} ${targets:-}; } >"$log" 2>&1; then
        tail -n 40 "$log" >&2
        return 1
    fi
}

# The bitmaps of the screens.
build_skin() {
    "$root/skin/build.sh" "$root/out/skin" >"$root/out/skin.log" 2>&1 ||
        { cat "$root/out/skin.log" >&2; return 1; }
}
