#!/usr/bin/env bash
# tyrograph-cli plot: every kind and format, sizes, several tyres, and the bad
# inputs (exit 2, a message naming the problem, no file). SVG paths and the
# PDF's rendering are checked in plot_files_test.cpp.
# Usage: plot.sh <tyrograph-cli> <source-dir>
set -u
CLI=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
SRC=$(cd "$2" && pwd)
CAR=$SRC/data/cars/touring
TIR=$SRC/data/tyres/MagicFormula61_Parameters.tir
T=$(mktemp -d)
trap 'rm -rf "$T"' EXIT
cd "$T" || exit 1
fail=0
check() {
  local name=$1
  shift
  "$@" || { echo "FAIL $name"; fail=1; }
}
# bad NAME MESSAGE ARGS...: exit 2, MESSAGE on stderr, nothing on stdout.
bad() {
  local name=$1 msg=$2
  shift 2
  "$CLI" plot "$@" >out.txt 2>err.txt
  local rc=$?
  [ $rc -eq 2 ] || { echo "FAIL $name: exit $rc, want 2"; fail=1; }
  [ ! -s out.txt ] || { echo "FAIL $name: wrote to stdout"; fail=1; }
  grep -qF -- "$msg" err.txt || { echo "FAIL $name: stderr lacks \"$msg\""; sed 's/^/  stderr: /' err.txt; fail=1; }
}
size() { identify -format '%wx%h' "$1"; }

for kind in curves ellipse mu-load stiffness; do
  check "$kind png" "$CLI" plot "$CAR" --kind $kind -o $kind.png
  check "$kind png is 700x500" test "$(size $kind.png)" = 700x500
done
check "size option" "$CLI" plot "$CAR" --focus fy --ghosts camber --size 1200x900 -o big.png
check "1200x900" test "$(size big.png)" = 1200x900
check "two tyres" "$CLI" plot "$CAR" "$TIR" --kind mu-load -o two.png
check "svg" "$CLI" plot "$CAR" --wheel 1 -o c.svg
check "pdf" "$CLI" plot "$CAR" --kind ellipse -o e.pdf
check "same state, same png" "$CLI" plot "$CAR/car.ini" --kind curves -o again.png
check "car.ini equals the folder" cmp -s curves.png again.png
# Measured points: a slip-ratio and a slip-angle sweep of the tyre itself.
printf '2500 0.05 0 0\n2500 0.2 0 0\n2500 0 0.05 0\n2500 0 0.1 0\n' >pts.txt
"$CLI" eval "$CAR" <pts.txt | paste -d' ' pts.txt - | awk 'BEGIN { print "fz,kappa,alpha,gamma,fx,fy,mz" } { print $1","$2","$3","$4","$5","$6","$7 }' >m.csv
check "with data" "$CLI" plot "$CAR" --data m.csv -o data.png
check "data adds pixels" bash -c "! cmp -s data.png curves.png"
"$CLI" plot "$CAR" --data m.csv --load 9000 -o far.png 2>err.txt
check "no point near the load: said, still drawn" grep -qF "m.csv: no measured point near load 9000 N and camber 0 deg" err.txt
rm -f far.png pts.txt err.txt
check "only the asked-for files" test "$(ls | sort | tr '\n' ' ')" = \
  "again.png big.png c.svg curves.png data.png e.pdf ellipse.png m.csv mu-load.png stiffness.png two.png "

bad "unknown kind" "--kind: 'pie' is none of curves, ellipse, mu-load, stiffness" "$CAR" --kind pie -o x.png
bad "unsupported extension" "x.gif: unsupported extension (.png, .svg or .pdf)" "$CAR" -o x.gif
bad "no output" "no output file" "$CAR"
bad "unwritable png" "/nonexistent-dir/x.png: can't open output file for writing" "$CAR" -o /nonexistent-dir/x.png
bad "unwritable pdf" "/nonexistent-dir/x.pdf: can't open output file for writing" "$CAR" -o /nonexistent-dir/x.pdf
bad "bad size" "--size: '12x' is not WxH" "$CAR" --size 12x -o x.png
bad "bad focus" "--focus: 'fz' is not none, fx, fy or mz" "$CAR" --focus fz -o x.png
bad "bad ghosts" "--ghosts: 'slip' is not load or camber" "$CAR" --ghosts slip -o x.png
bad "missing tyre" "nowhere" "$T/nowhere" -o x.png
printf 'fz,kappa,fx\n2500,0.1,3000\n2500,abc,1\n' >bad.csv
bad "data that does not parse" "bad.csv:3:" "$CAR" --data bad.csv -o x.png
bad "missing data file" "none.csv" "$CAR" --data none.csv -o x.png
check "no file after errors" test ! -e x.png -a ! -e x.gif

[ $fail -eq 0 ] && echo "cli plot: all checks passed"
exit $fail
