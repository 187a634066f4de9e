#!/usr/bin/env bash
# cmake --install into a scratch prefix P gives P/bin/tyrograph and
# P/bin/tyrograph-cli that find P/data from any working folder, without
# TYROGRAPH_HOME: the command line reads a bundled car by its bare name and
# computes what the build's own binary computes from the source tree; the
# window opens under Xvfb, draws its frames (TYROGRAPH_STATS=N ends it after
# N) and seeds P/pacejka.ini from P/data/pacejka.ini.
#   bash install.sh <build-dir> <source-dir>
set -uo pipefail
BUILD=$(cd "$1" && pwd)
SRC=$(cd "$2" && pwd)
fail() { echo "FAIL: $*" >&2; exit 1; }
command -v xvfb-run >/dev/null || fail "xvfb-run is missing (scripts/setup installs it)"
P=$(mktemp -d)
away=$(mktemp -d)
trap 'rm -rf "$P" "$away"' EXIT
unset TYROGRAPH_HOME

cmake --install "$BUILD" --prefix "$P" >"$away/install.txt" 2>&1 || { cat "$away/install.txt"; fail "cmake --install"; }
for f in bin/tyrograph bin/tyrograph-cli data/pacejka.ini data/cars/touring/car.ini data/fonts/eurostile11.dtf; do
  [ -e "$P/$f" ] || fail "P/$f is not installed"
done
echo "ok   installed: bin/tyrograph, bin/tyrograph-cli, data/"

cd "$away" || fail "cd"
"$P/bin/tyrograph-cli" curves touring --format csv >installed.csv 2>err.txt || fail "P/bin/tyrograph-cli curves touring: $(cat err.txt)"
"$BUILD/cli/tyrograph-cli" curves "$SRC/data/cars/touring" --format csv >built.csv 2>/dev/null || fail "build's tyrograph-cli"
cmp -s installed.csv built.csv || fail "the installed tyrograph-cli computes other curves for touring"
"$P/bin/tyrograph-cli" eval MagicFormula61_Parameters.tir <<<"4000 0.1 0.05 0" >eval.txt 2>err.txt || fail "P/bin/tyrograph-cli eval by TIR name: $(cat err.txt)"
[ "$(wc -w <eval.txt)" = 3 ] || fail "eval printed '$(cat eval.txt)'"
echo "ok   P/bin/tyrograph-cli finds P/data/cars/touring and P/data/tyres from $away"

TYROGRAPH_STATS=30 timeout 60 xvfb-run -a -s '-screen 0 1280x1024x24' "$P/bin/tyrograph" >out.txt 2>err.txt
rc=$?
[ $rc = 0 ] || fail "P/bin/tyrograph ended with $rc: $(tail -5 err.txt)"
grep -q "car=" "$P/pacejka.ini" 2>/dev/null || fail "P/bin/tyrograph did not seed P/pacejka.ini from P/data"
[ ! -e "$away/pacejka.ini" ] || fail "P/bin/tyrograph wrote its settings into the working folder"
echo "ok   P/bin/tyrograph opens on P/data and ends after 30 frames"
