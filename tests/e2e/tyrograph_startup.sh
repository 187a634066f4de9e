#!/usr/bin/env bash
# Start-up and exit of the real window under Xvfb: the title names the
# product, the three curves are drawn on the car named by last.car, Escape
# ends the tool and pacejka.ini then holds last.car. A second run with no
# settings file at all opens the default 910 x 714 window, ends on Shift+Q
# (not on a plain q) and writes one. A third opens the bundled car from the
# shipped data/.
# Screenshots: <build>/e2e-shots/tyrograph_startup/.
#   bash tyrograph_startup.sh <build-dir> <source-dir>
set -euo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
source "$SRC/tests/e2e/lib/tyrograph.bash"
tyro_prepare tyrograph_startup tool/tyrograph -- xvfb-run xdotool import convert

cat >"$SHOTS/inner.sh" <<'INNER'
set -uo pipefail
BUILD=$1; SRC=$2; SHOTS=$3
source "$SRC/tests/e2e/lib/tyrograph.bash"

# A base folder with the UI font and the test car only.
scratch_home() {
  HOME_DIR=$(mktemp -d)
  mkdir -p "$HOME_DIR/data/cars"
  ln -s "$SRC/data/fonts" "$HOME_DIR/data/fonts"
  ln -s "$SRC/tests/data/tool/touring" "$HOME_DIR/data/cars/touring"
  export TYROGRAPH_HOME="$HOME_DIR"
}

# Counts pixels of a colour (r,g,b) in the plot area of a screenshot.
count_colour() {
  convert "$1" -crop 580x380+75+92 +repage -fill white +opaque "rgb($2)" -fill black -opaque "rgb($2)" \
    -format '%[fx:int(w*h*(1-mean))]' info:
}

# 1. Settings naming the test car.
scratch_home
printf 'last\n{\n  car=touring\n}\n' >"$HOME_DIR/pacejka.ini"
tyro_start
tyro_shot start
title=$(xdotool getwindowname "$WID")
[ "$title" = "Tyrograph v8.1.0 (Pac96/MF5.2) 32 bits - " ] || tyro_fail "window title is '$title'"
echo "ok   title: $title"
geom=$(xdotool getwindowgeometry "$WID" | sed -n 's/.*Geometry: //p')
[ "$geom" = "910x714" ] || tyro_fail "window is $geom, not 910x714"
echo "ok   window 910x714"
red=$(count_colour "$SHOT_start" 255,0,0)
black=$(count_colour "$SHOT_start" 0,0,0)
[ "$red" -gt 100 ] || tyro_fail "no Fy curve drawn (red pixels: $red)"
[ "$black" -gt 100 ] || tyro_fail "no Fx curve drawn (black pixels: $black)"
echo "ok   curves drawn (red $red, black $black pixels)"
xdotool key --window "$WID" Escape
for i in $(seq 1 50); do kill -0 "$PID" 2>/dev/null || break; sleep 0.1; done
kill -0 "$PID" 2>/dev/null && tyro_fail "Escape did not end the tool"
grep -q "car=touring" "$HOME_DIR/pacejka.ini" || tyro_fail "pacejka.ini lacks last.car: $(cat "$HOME_DIR/pacejka.ini")"
echo "ok   Escape quit; pacejka.ini holds last.car=touring"
rm -rf "$HOME_DIR"

# 2. No settings file anywhere: defaults, and the file is written at exit.
scratch_home
tyro_start
tyro_shot nosettings
geom=$(xdotool getwindowgeometry "$WID" | sed -n 's/.*Geometry: //p')
[ "$geom" = "910x714" ] || tyro_fail "default window is $geom"
# A plain q does nothing; Shift+Q (key code 0x10051) ends the tool.
xdotool key --window "$WID" q
sleep 0.5
kill -0 "$PID" 2>/dev/null || tyro_fail "a plain q ended the tool"
xdotool key --window "$WID" shift+q
for i in $(seq 1 50); do kill -0 "$PID" 2>/dev/null || break; sleep 0.1; done
kill -0 "$PID" 2>/dev/null && tyro_fail "Shift+Q did not end the tool"
[ -f "$HOME_DIR/pacejka.ini" ] || tyro_fail "no pacejka.ini written at exit"
grep -q "car=" "$HOME_DIR/pacejka.ini" || tyro_fail "pacejka.ini lacks last.car"
echo "ok   without settings: default window; Shift+Q quits; pacejka.ini written at exit"
rm -rf "$HOME_DIR"

# 3. The shipped data/ as it is: pacejka.ini is seeded from data/pacejka.ini
# and the bundled car opens. This screenshot is the README's.
tyro_home
tyro_start
tyro_shot bundled
car=$(sed -n 's/^ *car=//p' "$SRC/data/pacejka.ini")
black=$(count_colour "$SHOT_bundled" 0,0,0)
[ "$black" -gt 100 ] || tyro_fail "no Fx curve on the bundled car $car"
xdotool key --window "$WID" Escape
for i in $(seq 1 50); do kill -0 "$PID" 2>/dev/null || break; sleep 0.1; done
grep -q "car=$car" "$HOME_DIR/pacejka.ini" || tyro_fail "seeded pacejka.ini lacks last.car=$car"
echo "ok   bundled car $car opens from the shipped settings"
rm -rf "$HOME_DIR"
INNER

xvfb-run -a -s '-screen 0 1280x1024x24' bash "$SHOTS/inner.sh" "$BUILD" "$SRC" "$SHOTS"
