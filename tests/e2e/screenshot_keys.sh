#!/usr/bin/env bash
# The screenshot key as the README describes it: F11 saves the drawn frame
# as $TMPDIR/bc00001.tga, the next F11 bc00002.tga; no number 0. (Ctrl+Alt+F11
# is not tried: Xvfb, like many X servers, keeps Ctrl+Alt+F<n> for itself and
# the window never sees it, which the README says.) A copy as PNG:
# <build>/e2e-shots/screenshot_keys/.
#   bash screenshot_keys.sh <build-dir> <source-dir>
set -euo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
source "$SRC/tests/e2e/lib/tyrograph.bash"
tyro_prepare screenshot_keys tool/tyrograph -- xvfb-run xdotool convert

cat >"$SHOTS/inner.sh" <<'INNER'
set -uo pipefail
BUILD=$1; SRC=$2; SHOTS=$3
source "$SRC/tests/e2e/lib/tyrograph.bash"
tyro_home
export TMPDIR=$(mktemp -d)
tyro_start
wait_file() { for i in $(seq 1 50); do [ -s "$1" ] && return 0; sleep 0.1; done; return 1; }
xdotool key --window "$WID" F11
wait_file "$TMPDIR/bc00001.tga" || tyro_fail "F11 wrote no bc00001.tga ($(ls "$TMPDIR"))"
xdotool key --window "$WID" F11
wait_file "$TMPDIR/bc00002.tga" || tyro_fail "the second F11 wrote no bc00002.tga ($(ls "$TMPDIR"))"
[ ! -e "$TMPDIR/bc00000.tga" ] || tyro_fail "a bc00000.tga was written"
convert "$TMPDIR/bc00001.tga" "$SHOTS/bc00001.png" || tyro_fail "bc00001.tga does not read as an image"
echo "ok   F11: bc00001.tga, then bc00002.tga"
kill "$PID"
rm -rf "$TMPDIR" "$HOME_DIR"
INNER

xvfb-run -a -s '-screen 0 1280x1024x24' bash "$SHOTS/inner.sh" "$BUILD" "$SRC" "$SHOTS"
