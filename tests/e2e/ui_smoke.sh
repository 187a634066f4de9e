#!/usr/bin/env bash
# Smoke test of the controls in the real window under Xvfb: start ui_demo,
# click its "Open tire" button (the demo prints the click, shows it in its
# status label and puts it into the title), drag the load slider's knob,
# press Escape, and check that all of it arrived and the program ended
# cleanly. Screenshots before and after the click: <build>/ui_smoke-*.png.
#   bash ui_smoke.sh <build-dir> <source-dir>
set -euo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
DEMO="$BUILD/platform/ui_demo"
[ -x "$DEMO" ] || { echo "ui_smoke: $DEMO is not built"; exit 1; }
for t in xvfb-run xdotool import compare convert; do
  command -v "$t" >/dev/null || { echo "ui_smoke: $t is missing (scripts/setup installs it)"; exit 1; }
done
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
rm -f "$BUILD"/ui_smoke-*.png

cat > "$WORK/inner.sh" <<'INNER'
set -u
DEMO=$1; SRC=$2; WORK=$3; BUILD=$4
cd "$SRC"
fail() { echo "ui_smoke: $*"; kill $pid 2>/dev/null; exit 1; }
"$DEMO" --font data/fonts/eurostile11 >"$WORK/out.txt" 2>"$WORK/err.txt" &
pid=$!
wid=$(timeout 20 xdotool search --sync --onlyvisible --name '^ui_demo' | head -1)
[ -n "$wid" ] || fail "the demo window never appeared"
sleep 0.5
import -window "$wid" "$BUILD/ui_smoke-before.png"
# "Open tire" is the first button: (20, 60), 109 x 25.
xdotool mousemove --window "$wid" 74 72
sleep 0.2
xdotool click 1
sleep 0.5
import -window "$wid" "$BUILD/ui_smoke-after.png"
title=$(xdotool getwindowname "$wid")
[ "$title" = "ui_demo - Open tire" ] || fail "the title bar did not take the click: '$title'"
# The load slider: (20, 270), 704 x 18, knob centre at x = 83 for position 83.
xdotool mousemove --window "$wid" 83 279
sleep 0.2
xdotool mousedown 1
for x in 103 123 143 163 183; do xdotool mousemove --window "$wid" $x 279; sleep 0.05; done
sleep 0.2
xdotool mouseup 1
sleep 0.3
xdotool key --window "$wid" Escape
for i in $(seq 1 50); do kill -0 $pid 2>/dev/null || break; sleep 0.1; done
kill -0 $pid 2>/dev/null && fail "Escape did not end the demo"
wait $pid
INNER

status=0
xvfb-run -a -s '-screen 0 1280x1024x24' bash "$WORK/inner.sh" "$DEMO" "$SRC" "$WORK" "$BUILD" || status=$?
cat "$WORK/out.txt" 2>/dev/null || true
failed() {
  echo "ui_smoke: $*"
  echo "ui_smoke: screenshots: $BUILD/ui_smoke-before.png $BUILD/ui_smoke-after.png"
  tail -20 "$WORK/err.txt" 2>/dev/null || true
  exit 1
}
[ $status -eq 0 ] || failed "FAILED (exit $status)"
grep -qx 'ui_demo: click Open tire (1)' "$WORK/out.txt" || failed "the click did not reach the button"
grep -q '^ui_demo: change Load [0-9]*N [0-9]*$' "$WORK/out.txt" || failed "the slider drag posted no change"
last=$(grep '^ui_demo: change Load' "$WORK/out.txt" | tail -1 | awk '{print $NF}')
[ "$last" -gt 150 ] || failed "the slider ended at $last, not near the drag's end"
grep -q 'clicks=1 frames=' "$WORK/out.txt" || failed "no statistics line on exit"
# The click shows in the status label: that part of the screen changed.
crop() { convert "$1" -crop "$2" +repage "$WORK/$3.png"; }
crop "$BUILD/ui_smoke-before.png" 680x48+20+180 sb
crop "$BUILD/ui_smoke-after.png" 680x48+20+180 sa
diff_px() { compare -metric AE "$1" "$2" null: 2>&1 | cut -d' ' -f1; }
[ "$(diff_px "$WORK/sb.png" "$WORK/sa.png")" != "0" ] || failed "the status label did not change"
echo "ui_smoke: OK"
