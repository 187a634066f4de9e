#!/usr/bin/env bash
# An editing session in the real window under Xvfb, driven with xdotool:
# the title names the product; dragging the camber slider to its end changes
# its caption and the curves; Focus Fy, the coefficient a2 and "Enter
# numerically" with a typed value change the curves; "Export ASCII" through
# its two string dialogs and the file dialog (an absolute path typed into the
# name field) writes the same bytes as tyrograph-cli export-ascii for the same
# state; "Analyse" writes the 40-byte reppac.txt and shows it; "Save*" warns;
# "Open tire" imports a TIR file typed into the file dialog (the tyre model's
# error reports show in the "Error" box) and names it in the title; "Revert" brings the car back; Escape ends the tool and
# pacejka.ini holds last.car.
# Screenshots of every step: <build>/e2e-shots/tyrograph_session/.
#   bash tyrograph_session.sh <build-dir> <source-dir>
set -euo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
source "$SRC/tests/e2e/lib/tyrograph.bash"
tyro_prepare tyrograph_session tool/tyrograph cli/tyrograph-cli -- xvfb-run xdotool import convert compare

cat >"$SHOTS/inner.sh" <<'INNER'
set -uo pipefail
BUILD=$1; SRC=$2; SHOTS=$3
source "$SRC/tests/e2e/lib/tyrograph.bash"

# Control centres of the default layout (view 700 x 500), as tool/layout.cpp
# places them: command buttons 109 x 25 from (13, 540), 119 apart; the side
# column from x = 725, rows 17 apart from y = 30; the operating-point
# sliders 704 x 18 from (13, 572), 21 apart.
cmd_x() { echo $((13 + 54 + $1 * 119)); }
CMD_Y=552
SIDE_X=735
row_y() { echo $((30 + 17 * $1 + 8)); }
CAMBER_Y=$((572 + 3 * 21 + 9))
ENTER_X=800; ENTER_Y=$((30 + 17 * 29 + 15))

# Base folder with the UI font and the test car.
HOME_DIR=$(mktemp -d)
mkdir -p "$HOME_DIR/data/cars"
ln -s "$SRC/data/fonts" "$HOME_DIR/data/fonts"
ln -s "$SRC/tests/data/tool/touring" "$HOME_DIR/data/cars/touring"
export TYROGRAPH_HOME="$HOME_DIR"
printf 'last\n{\n  car=touring\n}\n' >"$HOME_DIR/pacejka.ini"
OUT_DIR=$(mktemp -d)

# Crops the plot of the last screenshot into $SHOTS/NAME-plot.png.
plot() { convert "$LAST_SHOT" -crop 580x380+75+92 +repage "$SHOTS/$1-plot.png"; }
differs() { ! tyro_same "$1" "$2"; }
quit_wait() {
  for i in $(seq 1 50); do kill -0 "$PID" 2>/dev/null || return 0; sleep 0.1; done
  return 1
}
key() { xdotool key --clearmodifiers "$@"; sleep 0.3; }

tyro_start
xdotool mousemove --window "$WID" 450 300
tyro_shot start
plot start
title=$(xdotool getwindowname "$WID")
[ "$title" = "Tyrograph v8.1.0 (Pac96/MF5.2) 32 bits - " ] || tyro_fail "window title is '$title'"
echo "ok   title: $title"
convert "$LAST_SHOT" -crop 704x18+13+635 +repage "$SHOTS/camber-before.png"

# 1. Camber slider dragged from its knob (position 500, the middle) past
#    its right end: position 1000, 10 degrees.
tyro_drag 365 $CAMBER_Y 905
tyro_shot camber
plot camber
convert "$LAST_SHOT" -crop 704x18+13+635 +repage "$SHOTS/camber-after.png"
differs "$SHOTS/camber-before.png" "$SHOTS/camber-after.png" || tyro_fail "the camber slider looks the same after the drag"
differs "$SHOTS/start-plot.png" "$SHOTS/camber-plot.png" || tyro_fail "the curves did not change with the camber"
echo "ok   camber slider dragged: caption and curves changed"

# 2. Focus Fy, coefficient a2 (third radio), "Enter numerically", 1500.
tyro_click $SIDE_X "$(row_y 3)"
tyro_click $SIDE_X "$(row_y 15)"
tyro_shot focus_fy
plot focus_fy
tyro_click $ENTER_X $ENTER_Y
tyro_shot enter_dialog
key End
for i in $(seq 1 20); do xdotool key BackSpace; done
xdotool type --delay 80 1500
sleep 0.3
tyro_shot enter_typed
key Return
xdotool mousemove --window "$WID" 450 300
tyro_shot a2_1500
plot a2_1500
differs "$SHOTS/focus_fy-plot.png" "$SHOTS/a2_1500-plot.png" || tyro_fail "the curves did not change with a2=1500"
echo "ok   Focus Fy, a2 entered numerically as 1500: curves changed"

# 3. Export ASCII: 134 steps, maximum 2.00, file typed as an absolute path.
tyro_click "$(cmd_x 3)" $CMD_Y
tyro_shot ascii_steps
key Return
tyro_shot ascii_max
key Return
tyro_shot ascii_file
xdotool type --delay 30 "$OUT_DIR/ascii.txt"
sleep 0.3
key Return
sleep 0.5
tyro_shot ascii_viewer
[ -f "$OUT_DIR/ascii.txt" ] || tyro_fail "Export ASCII wrote no $OUT_DIR/ascii.txt"
key Return
"$BUILD/cli/tyrograph-cli" export-ascii "$HOME_DIR/data/cars/touring" --steps 134 --max 2 --camber 10 \
  --set a2=1500 -o "$OUT_DIR/cli.txt" || tyro_fail "tyrograph-cli export-ascii failed"
cmp "$OUT_DIR/ascii.txt" "$OUT_DIR/cli.txt" || { diff "$OUT_DIR/ascii.txt" "$OUT_DIR/cli.txt" | head >&2;
  tyro_fail "the window's ASCII export differs from tyrograph-cli's"; }
echo "ok   Export ASCII: same bytes as tyrograph-cli export-ascii --camber 10 --set a2=1500"

# 4. Analyse: reppac.txt in the base folder, shown in the viewer.
rm -f "$HOME_DIR/reppac.txt"
tyro_click "$(cmd_x 5)" $CMD_Y
tyro_shot analyse_viewer
[ -f "$HOME_DIR/reppac.txt" ] || tyro_fail "Analyse wrote no reppac.txt"
cmp "$HOME_DIR/reppac.txt" "$SRC/tests/data/tool/reppac.txt" || tyro_fail "reppac.txt differs"
[ "$(stat -c %s "$HOME_DIR/reppac.txt")" = 40 ] || tyro_fail "reppac.txt is not 40 bytes"
key Return
tyro_shot after_analyse
echo "ok   Analyse: 40-byte reppac.txt"

# 5. "Save*" only says that it is not implemented.
tyro_click "$(cmd_x 2)" $CMD_Y
tyro_shot save_warning
key Return
kill -0 "$PID" 2>/dev/null || tyro_fail "the tool ended after Save*"
echo "ok   Save*: warning box closed with Enter"

# 6. "Open tire": a TIR file typed into the file dialog. This file's FITTYP
#    is one the tyre model reports as an error for each of the twelve tyres;
#    every report shows in the "Error" box (500 x 150 at 100,100), closed
#    with Enter. Then the title names the file and the curves change;
#    "Revert" (Enter = Yes) brings the car back.
TIR="$SRC/data/tyres/MagicFormula52_Parameters.tir"
# True while a dialog covers (560, 240), white plot when no dialog is up.
box_up() {
  import -window "$WID" "$SHOTS/probe.png" 2>/dev/null
  [ "$(convert "$SHOTS/probe.png" -format '%[fx:int(255*p{560,240}.r)],%[fx:int(255*p{560,240}.g)]' info:)" != "255,255" ]
}
xdotool mousemove --window "$WID" 450 300
tyro_shot before_tir
plot before_tir
box_up && tyro_fail "(560, 240) is not white before the import"
tyro_click "$(cmd_x 0)" $CMD_Y
tyro_shot tir_dialog
xdotool type --delay 30 "$TIR"
sleep 0.3
key Return
sleep 0.5
tyro_shot tir_error
box_up || tyro_fail "no Error box after importing $TIR"
boxes=0
while box_up && [ $boxes -lt 30 ]; do
  key Return
  sleep 0.2
  boxes=$((boxes + 1))
done
box_up && tyro_fail "the Error boxes do not go away"
echo "ok   Error box shown for the tyre model's reports ($boxes closed with Enter)"
xdotool mousemove --window "$WID" 450 300
tyro_shot tir
plot tir
title=$(xdotool getwindowname "$WID")
[ "$title" = "Tyrograph v8.1.0 (Pac96/MF5.2) 32 bits - $TIR" ] || tyro_fail "title after Open tire is '$title'"
differs "$SHOTS/before_tir-plot.png" "$SHOTS/tir-plot.png" || tyro_fail "the curves did not change with the TIR file"
echo "ok   Open tire: title '$title', curves changed"
tyro_click "$(cmd_x 1)" $CMD_Y
tyro_shot revert_question
key Return
xdotool mousemove --window "$WID" 450 300
tyro_shot reverted
plot reverted
differs "$SHOTS/tir-plot.png" "$SHOTS/reverted-plot.png" || tyro_fail "Revert left the TIR curves"
# Not pixel for pixel the start-up curves: the slip ranges the TIR file set
# stay with the tyres (a reload replaces coefficients only), so the Fx curve
# runs flat beyond them.
echo "ok   Revert: the car's curves are back"

# 7. Escape ends the tool; last.car is stored.
xdotool key --window "$WID" Escape
quit_wait || tyro_fail "Escape did not end the tool"
grep -q "car=touring" "$HOME_DIR/pacejka.ini" || tyro_fail "pacejka.ini lacks last.car: $(cat "$HOME_DIR/pacejka.ini")"
echo "ok   Escape quit; pacejka.ini holds last.car=touring"
grep -q "^Reverting" "$HOME_DIR/stdout.txt" "$HOME_DIR/stderr.txt" || tyro_fail "no Reverting trace"
echo "ok   Revert traced"
rm -rf "$HOME_DIR" "$OUT_DIR"
INNER

xvfb-run -a -s '-screen 0 1280x1024x24' bash "$SHOTS/inner.sh" "$BUILD" "$SRC" "$SHOTS"
