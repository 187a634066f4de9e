#!/usr/bin/env bash
# A TYRE argument that is no tyre (measured data, a TYDEX file, a file with
# no tyre section for the wheel) gets one message naming the file, exit 2,
# and no output, from every subcommand that reads a tyre.
cli=$1
src=$2
T=$(mktemp -d)
trap 'rm -rf "$T"' EXIT
cd "$T" || exit 1
fail=0
no() { echo "FAIL $*"; fail=1; }

cp "$src/data/measured/touring.csv" touring.csv
sed 1,2d touring.csv >measured.txt  # comma-separated fields, no telling name
printf '**HEADER\nRELEASE 1.3\n**CONSTANTS\nFNOMIN 4000\n**END\n' >run1.tdx
cp run1.tdx run1.dat
printf 'hello\nthis is a note\n' >note.txt
sed '/^wheel2/,/^wheel3/{/^wheel3/!d}' "$src/data/cars/touring/car.ini" >three.ini
grep -q '^wheel2' three.ini && no "setup: wheel2 still in three.ini"

refused() {  # file, what the message must say, then the subcommand and its arguments
  local file=$1 what=$2; shift 2
  "$cli" "$@" >out.txt 2>err.txt </dev/null; local rc=$?
  [ $rc = 2 ] || no "$* : exit $rc"
  [ -s out.txt ] && no "$* : wrote $(head -c 80 out.txt)"
  [ "$(wc -l <err.txt)" = 1 ] || no "$* : $(wc -l <err.txt) lines on stderr: $(head -3 err.txt)"
  grep -q "$file: $what" err.txt || no "$* : message '$(cat err.txt)' lacks '$file: $what'"
}
for f in touring.csv measured.txt; do
  for c in eval curves export-carini export-tir; do refused $f 'measured data (CSV), not a tyre' $c $f; done
  refused $f 'measured data (CSV), not a tyre' export-ascii $f --steps 8 --max 0.5
  refused $f 'measured data' plot $f -o p.svg
  refused $f 'measured data' convert $f --model mf61 -o c.tir
  refused $f 'measured data' fit touring.csv --model mf61 --start $f -o f.tir
done
for f in run1.tdx run1.dat; do refused $f 'a TYDEX measurement file, not a tyre' eval $f; done
refused note.txt 'holds no tyre (no wheel0.pacejka section' eval note.txt
refused three.ini 'holds no tyre for wheel 2 (no wheel2.pacejka section)' eval three.ini --wheel 2
refused three.ini 'holds no tyre for wheel 2' curves three.ini --wheel 2
[ -e p.svg ] || [ -e c.tir ] || [ -e f.tir ] && no "a refused command wrote a file"

# the other wheels of that car, and the bundled tyres, still load
echo "4000 0.1 0 0" | "$cli" eval three.ini --wheel 3 >out.txt 2>err.txt || no "wheel 3 of three.ini: $(cat err.txt)"
[ -s err.txt ] && no "wheel 3 of three.ini warned: $(cat err.txt)"
for t in "$src"/data/cars/* "$src"/data/tyres/*.tir; do
  echo "4000 0.1 0 0" | "$cli" eval "$t" >/dev/null 2>&1 || no "eval $t refused"
done
exit $fail
