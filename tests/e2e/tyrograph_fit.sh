#!/usr/bin/env bash
# The fitting keys in the real window under Xvfb, on the Magic Formula 6.1
# car: F5 reads the bundled rig run through the file dialog and draws the
# nearest set point's points behind the curves; F6 fits every stage on a
# worker thread while the window keeps drawing (progress in the hint lines),
# then the curves move and the figures show; Ctrl+Z gives the tyre back
# (the graph area as before the fit, pixel for pixel); F7 writes a TIR file
# and asks before replacing it; F6 and Escape cancel a fit without ending the
# program; Escape afterwards ends it as always. The frame statistics
# (TYROGRAPH_STATS) of the whole run are printed, the slowest frame among them
# (TYRO_FIT_RUN=FILE fits another run; the README's responsiveness figures
# come from bench/window_fit_frames.sh). The window's own screenshots (F11)
# of the data, a fit in progress and its result, the README's pictures, are
# kept as PNG files:
# <build>/e2e-shots/tyrograph_fit/window_fit_*.png, beside the other shots.
#   bash tyrograph_fit.sh <build-dir> <source-dir>
set -euo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
source "$SRC/tests/e2e/lib/tyrograph.bash"
tyro_prepare tyrograph_fit tool/tyrograph -- xvfb-run xdotool import convert compare

cat >"$SHOTS/inner.sh" <<'INNER'
set -uo pipefail
BUILD=$1; SRC=$2; SHOTS=$3; RUN=$4
source "$SRC/tests/e2e/lib/tyrograph.bash"
# F11: the window's own screenshot (the canvas, as TGA in $TMPDIR), as PNG.
own_shot() {
  local n j
  n=$(ls "$TMPDIR"/bc*.tga 2>/dev/null | wc -l)
  xdotool key --window "$WID" F11
  for j in $(seq 1 50); do [ "$(ls "$TMPDIR"/bc*.tga 2>/dev/null | wc -l)" -gt "$n" ] && break; sleep 0.1; done
  sleep 0.3
  convert "$(ls "$TMPDIR"/bc*.tga | tail -1)" "$SHOTS/window_fit_$1.png" || tyro_fail "F11 wrote no screenshot"
}
key() { xdotool key --window "$WID" "$@"; sleep 0.5; }
# The graph area and the hint lines of a screenshot.
plot() { convert "$LAST_SHOT" -crop 700x500+15+32 +repage "$SHOTS/$1-plot.png"; }
hints() { convert "$LAST_SHOT" -crop 185x105+725+603 +repage "$SHOTS/$1-hints.png"; }
# The F6 line alone, of the last screenshot, into $1.
f6line() { convert "$LAST_SHOT" -crop 185x15+725+663 +repage "$1"; }
# The colours in hint line $1 (0: F2's) of the last screenshot; 1 when blank.
line_colours() { convert "$LAST_SHOT" -crop "185x15+725+$((603 + 15 * $1))" +repage -format %k info:; }

tyro_home
export TMPDIR=$HOME_DIR/tmp
mkdir -p "$TMPDIR"
printf 'last\n{\n  car=mf61\n}\n' >"$HOME_DIR/pacejka.ini"
export TYROGRAPH_STATS=100000000
tyro_start
tyro_shot start
plot start
hints start
# Without data one line under F2-F4 names F5, and none follows it.
[ "$(line_colours 3)" -gt 1 ] || tyro_fail "no hint line names F5 before data is loaded"
[ "$(line_colours 4)" = 1 ] || tyro_fail "a hint line under F5's before data is loaded"

# 1. F5: the data through the file dialog, behind the curves.
key F5
tyro_shot data_dialog
xdotool type --delay 20 "$RUN"
sleep 0.3
key Return
xdotool mousemove --window "$WID" 450 300
sleep 1
tyro_shot data
plot data
hints data
f6line "$SHOTS/f6-idle.png"
tyro_same "$SHOTS/start-plot.png" "$SHOTS/data-plot.png" && tyro_fail "F5 drew no measured points"
tyro_same "$SHOTS/start-hints.png" "$SHOTS/data-hints.png" && tyro_fail "F5 added no hint lines"
own_shot data
echo "ok   F5 reads the rig run and draws its points behind the curves"

# 2. F6: the fit on its worker; the window keeps drawing its progress. The
# fit of this run takes a second or two on a quiet machine, so the window's
# own screenshot (F11, the quicker) is taken first and its F6 line compared
# with that of the F11 screenshot before F6. (The F11 screenshots hold the
# window's pixels from its corner; those of `import` start one pixel in.)
xdotool key --window "$WID" F6
sleep 0.3
own_shot progress
LAST_SHOT=$SHOTS/window_fit_data.png
f6line "$SHOTS/f6-idle-own.png"
LAST_SHOT=$SHOTS/window_fit_progress.png
f6line "$SHOTS/f6-fitting.png"
tyro_same "$SHOTS/f6-idle-own.png" "$SHOTS/f6-fitting.png" && tyro_fail "no progress in the hint lines while fitting"
tyro_shot fitting
done_fit=0
for polls in $(seq 1 90); do
  sleep 1
  tyro_shot poll
  f6line "$SHOTS/f6-poll.png"
  if tyro_same "$SHOTS/f6-idle.png" "$SHOTS/f6-poll.png"; then done_fit=1; break; fi
done
[ $done_fit = 1 ] || tyro_fail "the fit did not end within 90 s"
tyro_shot fitted
plot fitted
tyro_same "$SHOTS/data-plot.png" "$SHOTS/fitted-plot.png" && tyro_fail "the fit moved no curve"
own_shot result
echo "ok   F6 fits on a worker thread with progress in the hint lines, then the curves move (${polls} polls a second or more apart)"

# 3. Ctrl+Z: the tyre as before the fit; Ctrl+Y the fit again.
key ctrl+z
tyro_shot undone
plot undone
tyro_same "$SHOTS/data-plot.png" "$SHOTS/undone-plot.png" || tyro_fail "Ctrl+Z did not give the tyre back"
key ctrl+y
tyro_shot redone
plot redone
tyro_same "$SHOTS/data-plot.png" "$SHOTS/redone-plot.png" && tyro_fail "Ctrl+Y did not redo the fit"
echo "ok   Ctrl+Z restores the graphs pixel for pixel, Ctrl+Y fits them again"

# 4. F7: a TIR file; the same name again asks first.
key F7
xdotool type --delay 20 "$HOME_DIR/fitted.tir"
sleep 0.3
key Return
sleep 0.5
[ -s "$HOME_DIR/fitted.tir" ] || tyro_fail "F7 wrote no fitted.tir"
grep -q "FILE_TYPE" "$HOME_DIR/fitted.tir" || tyro_fail "fitted.tir is no TIR file"
before=$(md5sum <"$HOME_DIR/fitted.tir")
key ctrl+z
for answer in Escape Return; do
  key F7
  xdotool type --delay 20 "$HOME_DIR/fitted.tir"
  sleep 0.3
  key Return
  tyro_shot "replace_question_$answer"
  key "$answer"
  sleep 0.5
  # No more boxes: the window draws again and takes keys.
  if [ $answer = Escape ]; then
    [ "$(md5sum <"$HOME_DIR/fitted.tir")" = "$before" ] || tyro_fail "F7 replaced fitted.tir without a Yes"
    key Escape  # the file dialog, back after the question
  fi
done
[ "$(md5sum <"$HOME_DIR/fitted.tir")" != "$before" ] || tyro_fail "F7 with Yes did not replace fitted.tir"
echo "ok   F7 writes a TIR file, keeps it after No and replaces it after Yes"

# 5. F6 then Escape: cancelled, the program goes on; Escape then ends it.
key F6
sleep 0.3
key Escape
sleep 1
kill -0 "$PID" 2>/dev/null || tyro_fail "Escape during a fit ended the program"
tyro_shot cancelled
plot cancelled
tyro_same "$SHOTS/data-plot.png" "$SHOTS/cancelled-plot.png" || tyro_fail "a cancelled fit changed the tyre"
echo "ok   Escape cancels a running fit and leaves the tyre as it was"
xdotool key --window "$WID" Escape
for i in $(seq 1 50); do kill -0 "$PID" 2>/dev/null || break; sleep 0.1; done
kill -0 "$PID" 2>/dev/null && tyro_fail "Escape without a fit did not end the program"
grep "tyrograph: frames=" "$HOME_DIR/stdout.txt" || true
rm -rf "$HOME_DIR"
INNER

RUN=${TYRO_FIT_RUN:-$SRC/data/measured/rig_run_mf61.txt}
xvfb-run -a -s '-screen 0 1280x1024x24' bash "$SHOTS/inner.sh" "$BUILD" "$SRC" "$SHOTS" "$RUN"
