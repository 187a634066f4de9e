# Helpers of the Tyrograph end-to-end tests, sourced inside the Xvfb session
# (and, for tyro_prepare, by the scripts before they start it).
#
#   tyro_prepare NAME BINARIES -- TOOLS
#                        checks that the built BINARIES (paths below $BUILD)
#                        and the command line TOOLS exist; sets SHOTS to a fresh
#                        $BUILD/e2e-shots/NAME
#   tyro_home            makes a scratch base folder (data/ linked to the source
#                        tree's) and exports TYROGRAPH_HOME; sets HOME_DIR
#   tyro_start           starts the tool, waits for its window; sets PID and WID
#   tyro_shot NAME       saves a screenshot of the window as $SHOTS/NN-NAME.png
#   tyro_click X Y       clicks at window coordinates
#   tyro_drag X1 Y X2    drags horizontally with the left button
#   tyro_crop NAME X Y W H  crops the last screenshot NAME into NAME-crop.png
#   tyro_same A B        true when two images have no differing pixel
#   tyro_fail MESSAGE    prints the message and where the screenshots are; exit 1
#
# Coordinates are those of the default layout (view 700 x 500 in a 910 x 714
# window), as tool/layout.cpp computes them.

SHOT_N=0

tyro_fail() {
  echo "FAIL: $*" >&2
  echo "screenshots of every step: $SHOTS" >&2
  [ -f "$HOME_DIR/QLOG.txt" ] && { echo "--- last lines of QLOG.txt:" >&2; tail -20 "$HOME_DIR/QLOG.txt" >&2; }
  [ -n "${PID:-}" ] && kill "$PID" 2>/dev/null
  exit 1
}

tyro_home() {
  HOME_DIR=$(mktemp -d)
  ln -s "$SRC/data" "$HOME_DIR/data"
  export TYROGRAPH_HOME="$HOME_DIR"
}

tyro_start() {
  "$BUILD/tool/tyrograph" >"$HOME_DIR/stdout.txt" 2>"$HOME_DIR/stderr.txt" &
  PID=$!
  WID=$(timeout 20 xdotool search --sync --onlyvisible --name '^Tyrograph' 2>/dev/null | head -1)
  [ -n "$WID" ] || tyro_fail "the Tyrograph window never appeared ($(cat "$HOME_DIR/stderr.txt"))"
  sleep 1
}

tyro_shot() {
  SHOT_N=$((SHOT_N + 1))
  LAST_SHOT="$SHOTS/$(printf %02d $SHOT_N)-$1.png"
  sleep 0.4
  import -window "$WID" "$LAST_SHOT" 2>/dev/null || import -window root "$LAST_SHOT"
  eval "SHOT_$1=\$LAST_SHOT"
}

tyro_click() {
  xdotool mousemove --window "$WID" "$1" "$2"
  sleep 0.15
  xdotool click 1
  sleep 0.3
}

tyro_drag() {
  xdotool mousemove --window "$WID" "$1" "$2"
  sleep 0.15
  xdotool mousedown 1
  local x step=10
  [ "$3" -lt "$1" ] && step=-10
  for x in $(seq "$1" "$step" "$3") "$3"; do
    xdotool mousemove --window "$WID" "$x" "$2"
    sleep 0.02
  done
  sleep 0.1
  xdotool mouseup 1
  sleep 0.3
}

tyro_crop() {
  local src_var="SHOT_$1"
  convert "${!src_var}" -crop "${4}x${5}+${2}+${3}" +repage "$SHOTS/$1-crop.png"
}

tyro_same() {
  local n
  n=$(compare -metric AE "$1" "$2" null: 2>&1 | cut -d' ' -f1)
  [ "$n" = "0" ]
}

# Waits up to $2 seconds (default 10) for a window whose name matches $1;
# prints its id.
tyro_wait_window() {
  timeout "${2:-10}" xdotool search --sync --onlyvisible --name "$1" 2>/dev/null | head -1
}

tyro_prepare() {
  local name=$1 t
  shift
  while [ $# -gt 0 ] && [ "$1" != -- ]; do
    [ -x "$BUILD/$1" ] || { echo "$1 is not built"; exit 1; }
    shift
  done
  shift
  for t in "$@"; do
    command -v "$t" >/dev/null || { echo "$t is missing (scripts/setup installs it)"; exit 1; }
  done
  SHOTS="$BUILD/e2e-shots/$name"
  rm -rf "$SHOTS"
  mkdir -p "$SHOTS"
}
