#!/bin/sh
# The unit in a real browser: boots a unit, opens what `headunit view` names in headless Chromium,
# waits until the recording's picture is on the page and moves, clicks the play key with the
# browser's own pointer, and looks for the key on the unit's tape.
# usage: tests/view/run.sh      (after ./run or ./test has built; installs what is missing)
# Prints one line for each step; the exit status is 0 when all of them held.
set -eu
name=view
root=$(cd "$(dirname "$0")/../.." && pwd)
. "$root/.ci/lib.sh"
install_packages "$run_packages x11vnc novnc websockify chromium chromium-driver python3-selenium"

headunit=$root/out/build/native/simulator/command/headunit
[ -x "$headunit" ] || die "there is no unit yet; build it with: ./run"
mkdir -p "$root/out/view"
folder=$(mktemp -d "$root/out/view/XXXXXX")
end() {
    "$headunit" --device "$folder/device" kill >/dev/null 2>&1 || true
    rm -rf "$folder"
}
trap end EXIT
trap 'exit 130' INT TERM

"$headunit" --device "$folder/device" boot --headless \
    "$root/out/samples/SDMMCDisk/Record/20260314_081500_F.avi" >/dev/null
url=$("$headunit" --device "$folder/device" view)
# The browser looks at the page alone: the tape is read here, by the command.
/usr/bin/python3 "$root/tests/view/click.py" "$url" "$headunit" "$folder/device" "$root/out/view"
