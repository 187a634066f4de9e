#!/usr/bin/env bash
# Frame times of the real window while a fit of a 40,000-row rig run runs on
# its worker thread (a benchmark, not a test: nothing here passes or fails on
# a time). Under Xvfb with xdotool: the Magic Formula 6.1 car, F5 reads the
# run through the file dialog, F6 fits every stage, and when the fit has
# ended Escape closes the window, whose TYROGRAPH_STATS line gives the frames
# drawn during the fit: the longest, the 99th percentile and the median (ms,
# the 16 ms rest of each frame included). Before F6 the window draws for
# TYRO_BENCH_IDLE seconds (default 20) with the data loaded and no fit: the
# median and 99th percentile of those frames (nofit_...) show what the fit
# adds. The machine's load average is printed before F6 and after the fit,
# since on a shared machine the slow frames come with the load.
#
# The run is made once by tyrograph-rigrun (--rate 67 gives some 40,000 rows)
# and kept in <build>/bench-data/; another run file may be given instead.
#   bash bench/window_fit_frames.sh <build-dir> <source-dir> [runs] [run-file]
set -euo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
RUNS=${3:-1}
for t in xvfb-run xdotool; do
  command -v "$t" >/dev/null || { echo "$t is missing (scripts/setup installs it)"; exit 1; }
done
for b in tool/tyrograph rigrun/tyrograph-rigrun; do
  [ -x "$BUILD/$b" ] || { echo "$b is not built"; exit 1; }
done
mkdir -p "$BUILD/bench-data"
RUN=${4:-$BUILD/bench-data/run40k.txt}
if [ -z "${4:-}" ] && [ ! -s "$RUN" ]; then
  "$BUILD/rigrun/tyrograph-rigrun" "$SRC/data/tyres/MagicFormula61_Parameters.tir" --rate 67 -o "$RUN" >/dev/null
fi
RUN=$(cd "$(dirname "$RUN")" && pwd)/$(basename "$RUN")
echo "run: $RUN, $(grep -vc '^#' "$RUN") lines"

INNER=$(mktemp)
trap 'rm -f "$INNER"' EXIT
cat >"$INNER" <<'EOF'
set -uo pipefail
BUILD=$1; SRC=$2; RUN=$3
HOME_DIR=$(mktemp -d)
ln -s "$SRC/data" "$HOME_DIR/data"
printf 'last\n{\n  car=mf61\n}\n' >"$HOME_DIR/pacejka.ini"
export TYROGRAPH_HOME=$HOME_DIR TYROGRAPH_STATS=100000000
fail() { echo "FAIL: $*" >&2; [ -n "${PID:-}" ] && kill "$PID" 2>/dev/null; rm -rf "$HOME_DIR"; exit 1; }
# Waits up to $2 seconds for a line of QLOG.txt matching $1.
wait_log() {
  local i
  for i in $(seq 1 $(($2 * 10))); do grep -q "$1" "$HOME_DIR/QLOG.txt" 2>/dev/null && return 0; sleep 0.1; done
  return 1
}
"$BUILD/tool/tyrograph" >"$HOME_DIR/stdout.txt" 2>"$HOME_DIR/stderr.txt" &
PID=$!
WID=$(timeout 30 xdotool search --sync --onlyvisible --name '^Tyrograph' 2>/dev/null | head -1)
[ -n "$WID" ] || fail "the window never appeared ($(cat "$HOME_DIR/stderr.txt"))"
sleep 1
xdotool key --window "$WID" F5
sleep 0.8
xdotool type --delay 10 "$RUN"
sleep 0.2
t0=$(date +%s%N)
xdotool key --window "$WID" Return
wait_log "points kept" 60 || fail "F5 read no data"
echo "F5: data read $(( ($(date +%s%N) - t0) / 1000000 )) ms after Return (xdotool's own time included)"
sleep "${TYRO_BENCH_IDLE:-20}"
echo "load average before F6: $(cut -d' ' -f1-3 /proc/loadavg)"
t0=$(date +%s%N)
xdotool key --window "$WID" F6
wait_log "fit of wheel" 600 || fail "the fit did not end within 10 minutes"
echo "fit: $(( ($(date +%s%N) - t0) / 1000000 )) ms; load average after it: $(cut -d' ' -f1-3 /proc/loadavg)"
sleep 0.5
xdotool key --window "$WID" Escape
for i in $(seq 1 100); do kill -0 "$PID" 2>/dev/null || break; sleep 0.1; done
line=$(grep "tyrograph: frames=" "$HOME_DIR/stdout.txt") || fail "no TYROGRAPH_STATS line"
echo "$line"
for k in fit_frames max_fit_frame_ms fit_frame_ms_p99 fit_frame_ms_median nofit_frame_ms_p99 nofit_frame_ms_median; do
  printf '%s=%s ' "$k" "$(sed -n "s/.* $k=\([0-9]*\).*/\1/p" <<<"$line")"
done
echo
rm -rf "$HOME_DIR"
EOF
for i in $(seq 1 "$RUNS"); do
  echo "--- run $i of $RUNS"
  xvfb-run -a -s '-screen 0 1280x1024x24' bash "$INNER" "$BUILD" "$SRC" "$RUN"
done
