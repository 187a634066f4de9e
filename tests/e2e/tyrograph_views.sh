#!/usr/bin/env bash
# The view keys in the real window under Xvfb: F2 shows the views one after
# the other and comes back to the graphs; F4 saves the shown view as a PNG in
# $TMPDIR that equals tyrograph-cli plot's; F3 asks for a reference tyre
# through the file dialog and draws it in grey, F3 again drops it.
# Screenshots: <build>/e2e-shots/tyrograph_views/.
#   bash tyrograph_views.sh <build-dir> <source-dir>
set -euo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
source "$SRC/tests/e2e/lib/tyrograph.bash"
tyro_prepare tyrograph_views tool/tyrograph cli/tyrograph-cli -- xvfb-run xdotool import convert compare

cat >"$SHOTS/inner.sh" <<'INNER'
set -uo pipefail
BUILD=$1; SRC=$2; SHOTS=$3
source "$SRC/tests/e2e/lib/tyrograph.bash"
key() { xdotool key --window "$WID" "$@"; sleep 0.5; }
# The graph area of a screenshot.
plot() { convert "$LAST_SHOT" -crop 700x500+15+32 +repage "$SHOTS/$1-plot.png"; }
count_colour() {
  convert "$1" -fill white +opaque "rgb($2)" -fill black -opaque "rgb($2)" -format '%[fx:int(w*h*(1-mean))]' info:
}

tyro_home
export TMPDIR=$HOME_DIR/shots
mkdir -p "$TMPDIR"
printf 'last\n{\n  car=touring\n}\n' >"$HOME_DIR/pacejka.ini"
tyro_start
tyro_shot start
plot start

# 1. F2 through the three views and back to the graphs.
for view in ellipse mu_load stiffness; do
  key F2
  tyro_shot "$view"
  plot "$view"
  tyro_same "$SHOTS/start-plot.png" "$SHOTS/$view-plot.png" && tyro_fail "F2 did not change the graph area ($view)"
done
key F4  # the stiffness view as a PNG
[ -f "$TMPDIR/view00001.png" ] || tyro_fail "F4 saved no view00001.png in $TMPDIR"
"$BUILD/cli/tyrograph-cli" plot "$HOME_DIR/data/cars/touring" --kind stiffness -o "$SHOTS/cli-stiffness.png" 2>/dev/null
tyro_same "$TMPDIR/view00001.png" "$SHOTS/cli-stiffness.png" || tyro_fail "the saved view differs from tyrograph-cli plot's"
echo "ok   F2 shows ellipse, mu-load, stiffness; F4 saves the view as tyrograph-cli plot draws it"
key F2
tyro_shot back
plot back
tyro_same "$SHOTS/start-plot.png" "$SHOTS/back-plot.png" || tyro_fail "F2 did not come back to the graphs"
echo "ok   F2 comes back to the three graphs unchanged"

# 2. F3: a reference tyre from the file dialog, in grey; F3 again drops it.
key F3
tyro_shot reference_dialog
xdotool type --delay 30 "$SRC/data/tyres/MagicFormula61_Parameters.tir"
sleep 0.3
key Return
xdotool mousemove --window "$WID" 450 300
tyro_shot reference
plot reference
grey=$(count_colour "$SHOTS/reference-plot.png" 165,165,165)
[ "$grey" -gt 100 ] || tyro_fail "no grey reference curve (pixels: $grey)"
key F3
tyro_shot dropped
plot dropped
tyro_same "$SHOTS/start-plot.png" "$SHOTS/dropped-plot.png" || tyro_fail "F3 again did not drop the reference tyre"
echo "ok   F3 overlays the reference tyre in grey ($grey pixels) and drops it again"
xdotool key --window "$WID" Escape
for i in $(seq 1 50); do kill -0 "$PID" 2>/dev/null || break; sleep 0.1; done
rm -rf "$HOME_DIR"
INNER

xvfb-run -a -s '-screen 0 1280x1024x24' bash "$SHOTS/inner.sh" "$BUILD" "$SRC" "$SHOTS"
