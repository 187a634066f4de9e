#!/usr/bin/env bash
# Random input soak of the real window under Xvfb: for a fixed seed, a few
# hundred random clicks, drags, wheel turns and keys anywhere in the window
# except the command buttons (no file dialogs, so nothing is written), with
# "Enter numerically" dialogs opening and closing on the way, and the fitting
# keys mixed in: the bundled rig run loaded with F5 at the start, then now
# and then F6 (a fit of the focused graph on the worker thread, left to run),
# F6 with Escape right after it (a cancelled fit), Ctrl+Z and Ctrl+Y. The tool must
# still be running at the end, with no sanitizer report. The ASan + UBSan
# build of the tool is used when it has been built beside this one.
# The window's resident memory (VmRSS) is printed at the start and the end,
# and at every minute of a longer run, whose series is repeated on one line
# at the end; TYRO_SOAK_MINUTES=N runs N minutes instead of the default 30
# seconds (a check for memory that keeps growing; 10 minutes kept it flat).
# Screenshot at the end: <build>/e2e-shots/tyrograph_soak/.
#   bash tyrograph_soak.sh <build-dir> <source-dir> [seconds] [seed]
set -euo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
SECS=${3:-30}
[ -n "${TYRO_SOAK_MINUTES:-}" ] && SECS=$((TYRO_SOAK_MINUTES * 60))
SEED=${4:-7}
source "$SRC/tests/e2e/lib/tyrograph.bash"
tyro_prepare tyrograph_soak tool/tyrograph -- xvfb-run xdotool import
BIN="$BUILD/tool/tyrograph"
[ -x "$BUILD/../build-asan/tool/tyrograph" ] && BIN=$(cd "$BUILD/../build-asan/tool" && pwd)/tyrograph

cat >"$SHOTS/inner.sh" <<'INNER'
set -uo pipefail
BUILD=$1; SRC=$2; SHOTS=$3; BIN=$4; SECS=$5; SEED=$6
source "$SRC/tests/e2e/lib/tyrograph.bash"
HOME_DIR=$(mktemp -d)
cp -r "$SRC/data" "$HOME_DIR/data"
export TYROGRAPH_HOME="$HOME_DIR"
export ASAN_OPTIONS=detect_leaks=0:halt_on_error=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
echo "soak: $BIN, seed $SEED, ${SECS}s"
"$BIN" >"$HOME_DIR/stdout.txt" 2>"$HOME_DIR/stderr.txt" &
PID=$!
WID=$(timeout 30 xdotool search --sync --onlyvisible --name '^Tyrograph' 2>/dev/null | head -1)
[ -n "$WID" ] || tyro_fail "the Tyrograph window never appeared ($(cat "$HOME_DIR/stderr.txt"))"
sleep 1
rss() { awk '/^VmRSS:/ { print $2 }' "/proc/$PID/status" 2>/dev/null; }
# The measured data behind the curves, through F5's file dialog.
xdotool key --window $WID F5
sleep 0.8
xdotool type --delay 10 "$HOME_DIR/data/measured/rig_run_mf61.txt"
xdotool key --window $WID Return
# F5 reads and conditions the run on a worker thread; F6 before it ends
# would find no data, and its Escape would throw the read away.
sleep 5
RSS_START=$(rss)
RSS_SERIES=$RSS_START
echo "rss: start ${RSS_START} kB"
RANDOM=$SEED
keys=(Tab shift+Tab Left Right Up Down Prior Next Return space 1 2 5 0 period minus BackSpace Delete Home End
      ctrl+z ctrl+y ctrl+z)
# A fit left to run takes a few seconds; Escape goes after F6 (a cancel)
# only when no such fit can still be running, for Escape without a fit ends
# the program.
last_fit=-100
fits=0; cancels=0
begin=$SECONDS
minute=$SECONDS
end=$((SECONDS + SECS))
n=0
while [ $SECONDS -lt $end ] && kill -0 $PID 2>/dev/null; do
  r=$((RANDOM % 10))
  f=$((RANDOM % 100))
  if [ $f -lt 2 ] && [ $((SECONDS - last_fit)) -ge 40 ]; then
    xdotool key --window $WID F6
    sleep 0.2
    xdotool key --window $WID Escape
    cancels=$((cancels + 1))
  elif [ $f = 2 ] && [ $((SECONDS - last_fit)) -ge 40 ]; then
    xdotool key --window $WID F6
    last_fit=$SECONDS
    fits=$((fits + 1))
  elif [ $r -lt 6 ]; then
    # Anywhere below the title bar but the row of command buttons.
    while :; do x=$((RANDOM % 910)); y=$((25 + RANDOM % 689)); [ $y -lt 536 ] || [ $y -gt 567 ] && break; done
    if [ $((RANDOM % 4)) = 0 ]; then
      x2=$((x + RANDOM % 80 - 40)); [ $x2 -lt 0 ] && x2=0
      xdotool mousemove --window $WID $x $y mousedown 1 mousemove --window $WID $x2 $y mouseup 1
    elif [ $((RANDOM % 5)) = 0 ]; then
      xdotool mousemove --window $WID $x $y click $((4 + RANDOM % 2))
    else
      xdotool mousemove --window $WID $x $y click 1
    fi
  else
    xdotool key --window $WID "${keys[$((RANDOM % ${#keys[@]}))]}"
  fi
  n=$((n + 1))
  sleep 0.05
  if [ $((SECONDS - minute)) -ge 60 ]; then
    minute=$SECONDS
    now_rss=$(rss)
    RSS_SERIES="$RSS_SERIES $now_rss"
    echo "rss: $(((SECONDS - begin) / 60)) min $now_rss kB"
  fi
done
RSS_END=$(rss)
kill -0 $PID 2>/dev/null || { cat "$HOME_DIR/stderr.txt" | tail -30 >&2; tyro_fail "the tool ended during the soak, after $n actions"; }
tyro_shot end
kill $PID; wait $PID 2>/dev/null
if grep -qE "AddressSanitizer|runtime error|LeakSanitizer" "$HOME_DIR/stderr.txt"; then
  grep -A20 -E "AddressSanitizer|runtime error" "$HOME_DIR/stderr.txt" | head -40 >&2
  tyro_fail "sanitizer report during the soak"
fi
echo "ok   $n random actions ($fits fits, $cancels cancelled), the tool still runs, no sanitizer report; rss ${RSS_START} kB at the start, ${RSS_END} kB at the end"
[ "$RSS_SERIES" != "$RSS_START" ] && echo "rss (kB) at the start and every minute: $RSS_SERIES $RSS_END (end)"
rm -rf "$HOME_DIR"
INNER

xvfb-run -a -s '-screen 0 1280x1024x24' bash "$SHOTS/inner.sh" "$BUILD" "$SRC" "$SHOTS" "$BIN" "$SECS" "$SEED"
