#!/usr/bin/env bash
# Smoke test of the real window under Xvfb: start ui_demo, click its box,
# press Escape, and check that the click arrived and the program ended
# cleanly. Leaves a screenshot of the screen in <build>/ui_smoke.png.
#   bash ui_smoke.sh <build-dir> <source-dir>
set -euo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
DEMO="$BUILD/platform/ui_demo"
[ -x "$DEMO" ] || { echo "ui_smoke: $DEMO is not built"; exit 1; }
for t in xvfb-run xdotool import; do
  command -v "$t" >/dev/null || { echo "ui_smoke: $t is missing (scripts/setup installs it)"; exit 1; }
done
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT

cat > "$WORK/inner.sh" <<'INNER'
set -u
DEMO=$1; SRC=$2; WORK=$3; BUILD=$4
cd "$SRC"
"$DEMO" --font data/fonts/eurostile11 >"$WORK/out.txt" 2>"$WORK/err.txt" &
pid=$!
wid=$(timeout 20 xdotool search --sync --onlyvisible --name '^ui_demo$' | head -1)
if [ -z "$wid" ]; then echo "ui_smoke: the demo window never appeared"; kill $pid; exit 1; fi
sleep 0.5
# The box is at (40, 300) 160x60 inside the window; click its middle.
xdotool mousemove --window "$wid" 120 330
sleep 0.2
xdotool click 1
sleep 0.5
import -window root "$BUILD/ui_smoke.png" || true
xdotool key Escape
for i in $(seq 1 50); do kill -0 $pid 2>/dev/null || break; sleep 0.1; done
if kill -0 $pid 2>/dev/null; then echo "ui_smoke: Escape did not end the demo"; kill $pid; exit 1; fi
wait $pid
INNER

status=0
xvfb-run -a -s '-screen 0 1280x1024x24' bash "$WORK/inner.sh" "$DEMO" "$SRC" "$WORK" "$BUILD" || status=$?
cat "$WORK/out.txt" 2>/dev/null || true
if [ $status -ne 0 ]; then
  echo "ui_smoke: FAILED (exit $status)"; cat "$WORK/err.txt" 2>/dev/null | tail -20; exit 1
fi
grep -q 'box clicked (1)' "$WORK/out.txt" || { echo "ui_smoke: the click did not reach the box"; exit 1; }
grep -q 'clicks=1 frames=' "$WORK/out.txt" || { echo "ui_smoke: no statistics line on exit"; exit 1; }
echo "ui_smoke: OK"
