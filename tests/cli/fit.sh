#!/usr/bin/env bash
# tyrograph-cli fit and convert: written tyres load in eval and reproduce
# their source (signs included), the figures and the JSON report, and the
# refusals (golden text in tests/data/fit/refusals.txt), after which nothing
# is written.
source "$(dirname "$0")/lib/common.bash" "$@"
# within: a b tolerance(relative to |b|, plus 1) label
within() {
  awk -v a="$1" -v b="$2" -v t="$3" 'BEGIN { d = a - b; if (d < 0) d = -d; m = b < 0 ? -b : b; exit !(d <= t * m + 1) }' ||
    { echo "FAIL $4: $1 is not within $3 of $2"; fail=1; }
}
points='4000 0.05 0 0
4000 0 0.05 0
4000 0 -0.05 0.02
6000 -0.1 0 0'
# evaluates tyre $1 at $points, one value per line
evals() { printf '%s\n' "$points" | "$cli" eval "$1" 2>/dev/null | tr ' ' '\n'; }
compare() {  # source converted tolerance label
  paste <(evals "$1") <(evals "$2") | while read -r a b; do within "$b" "$a" "$3" "$4" || echo x; done | grep -q x && fail=1
}

# 1. convert a Pacejka89/96 car to a Magic Formula 6.1 TIR file, with a report
"$cli" convert "$src/data/cars/touring" --model mf61 -o touring.tir --report r.json >out.txt 2>err.txt
check 0 "$?" convert-exit
check "channel  points  RMS                RMS/peak %     R2" "$(head -1 out.txt)" figures-header
check "Fx Fy Mz" "$(awk 'NR>1 && NR<5 {printf "%s%s", sep, $1; sep=" "}' out.txt)" figures-channels
grep -q '^iterations [0-9]*, [0-9.]* s$' out.txt || { echo "FAIL iterations line: $(cat out.txt)"; fail=1; }
check "" "$(cat err.txt)" convert-quiet
check "" "$(ls QLOG* 2>/dev/null)" no-log-file
grep -q '"model": "mf61"' r.json && grep -q '"Mz": {"points": ' r.json || { echo "FAIL report: $(cat r.json)"; fail=1; }
compare "$src/data/cars/touring" touring.tir 0.05 touring-to-mf61

# 2. a TIR file whose Fy and Mz point the other way, to a Pacejka89/96 car:
#    said so, and written the way the source points
"$cli" convert "$src/data/tyres/MagicFormula61_Parameters.tir" --model pac96 -o mf61car.ini >out.txt 2>/dev/null
check 0 "$?" mirrored-exit
grep -q '^Fy is mirrored' out.txt && grep -q '^Mz is mirrored' out.txt || { echo "FAIL mirrored note: $(cat out.txt)"; fail=1; }
grep -q '^pac96 has no combined slip' out.txt || { echo "FAIL pure-only note"; fail=1; }
a=$(printf '4000 0 0.05 0\n' | "$cli" eval "$src/data/tyres/MagicFormula61_Parameters.tir" 2>/dev/null | awk '{print $2}')
b=$(printf '4000 0 0.05 0\n' | "$cli" eval mf61car.ini 2>/dev/null | awk '{print $2}')
within "$b" "$a" 0.05 mirrored-fy

# 3. fit measured data (here: the touring car evaluated over a grid)
for fz in 3000 4500 6000; do for g in -0.03 0 0.03; do
  for s in -0.3 -0.12 -0.06 -0.03 -0.01 0 0.01 0.03 0.06 0.12 0.3; do
    echo "$fz $s 0 $g"; echo "$fz 0 $s $g"; done; done; done >in.txt
{ echo "fz kappa alpha gamma fx fy mz"; paste -d' ' in.txt <("$cli" eval "$src/data/cars/touring" <in.txt); } >data.csv
"$cli" fit data.csv --model pac96 -o fitted.ini >out.txt 2>&1
check 0 "$?" fit-exit
compare "$src/data/cars/touring" fitted.ini 0.03 fit-pac96
"$cli" fit data.csv --model mf52 --start "$src/data/tyres/MagicFormula52_Parameters.tir" -o fitted.tir >/dev/null 2>&1
check 0 "$?" fit-start-exit
check 1 "$(head -c 200 fitted.tir | grep -c MDI_HEADER)" fit-tir-written

# 4. a tyre converted to its own model comes back exact (it starts from its
#    own coefficients)
for pair in MagicFormula61_Parameters.tir:mf61 MagicFormula52_Parameters.tir:mf52 MagicFormula52_Parameters.tir:mf61; do
  "$cli" convert "$src/data/tyres/${pair%%:*}" --model "${pair##*:}" -o own.tir --force >out.txt 2>/dev/null
  check 0 "$?" "own-model-exit $pair"
  check "$(evals "$src/data/tyres/${pair%%:*}")" "$(evals own.tir)" "own-model-exact $pair"
done

# 5. pure-slip data to a model with combined slip: generic combined-slip
#    coefficients (the forces still fall under the other slip), and said so
"$cli" fit data.csv --model mf61 -o pure.tir --report pure.json >out.txt 2>&1
check 0 "$?" pure-exit
grep -q '^combined slip not identified (no combined points): generic combined-slip coefficients kept' out.txt ||
  { echo "FAIL pure note: $(cat out.txt)"; fail=1; }
grep -q '"pure_only": true' pure.json && grep -q '"combined_slip": "combined slip not identified (no combined points)"' pure.json ||
  { echo "FAIL pure report: $(cat pure.json)"; fail=1; }
fx() { printf '4000 0.05 %s 0\n' "$2" | "$cli" eval "$1" 2>/dev/null | awk '{print $1}'; }
awk -v a="$(fx pure.tir 0)" -v b="$(fx pure.tir 0.1)" 'BEGIN { exit !(b < 0.95 * a) }' ||
  { echo "FAIL combined Fx flat: $(fx pure.tir 0) at no slip angle, $(fx pure.tir 0.1) at 0.1 rad"; fail=1; }
# with combined points (the fit of section 3 against a Magic Formula car) the report says fitted
"$cli" convert "$src/data/cars/mf61" --model mf61 -o comb.tir --report comb.json >/dev/null 2>&1
grep -q '"pure_only": false' comb.json && grep -q '"combined_slip": "fitted"' comb.json ||
  { echo "FAIL combined report: $(cat comb.json)"; fail=1; }

# 6. what one camber or one load cannot tell is held and named
grep -v ' -0.03$\| 0.03$' in.txt >in1.txt
{ echo "fz kappa alpha gamma fx fy mz"; paste -d' ' in1.txt <("$cli" eval "$src/data/cars/touring" <in1.txt); } >flat.csv
"$cli" fit flat.csv --model mf61 -o flat.tir --report flat.json >out.txt 2>&1
check 0 "$?" held-exit
grep -q '^held, not fitted: pdy3 (camber term, the data has one camber)$' out.txt &&
  grep -q '{"name": "pdy3", "why": "camber term, the data has one camber"}' flat.json ||
  { echo "FAIL held camber: $(cat out.txt)"; fail=1; }
grep -q 'load term' out.txt && { echo "FAIL load terms held with three loads"; fail=1; }
awk 'NR == 1 || $1 == 4500' flat.csv >oneload.csv
"$cli" fit oneload.csv --model mf61 -o oneload.tir >out.txt 2>&1
grep -q '^held, not fitted: pdx2 (load term, the data has one load)$' out.txt ||
  { echo "FAIL held load: $(cat out.txt)"; fail=1; }

# 7. a channel the model cannot follow (here Fy as noise: wrong column, say)
#    fails with status 3 and keeps the tyre unless --force; weighted 0, it
#    is not fitted and not checked
awk 'BEGIN { srand(5) } NR == 1 { print; next } { $6 = int(4000 * (rand() - 0.5)); print }' data.csv >noisy.csv
: >poor.txt
"$cli" fit noisy.csv --model pac96 -o poor.ini >/dev/null 2>>poor.txt
check 3 "$?" poor-exit
check "" "$(ls poor.ini 2>/dev/null)" poor-not-written
"$cli" fit noisy.csv --model pac96 -o poor.ini --force >/dev/null 2>>poor.txt
check 3 "$?" poor-force-exit
check poor.ini "$(ls poor.ini 2>/dev/null)" poor-force-written
sed 's/R2 = [-0-9.e]*,/R2 = X,/' poor.txt >poor.out
printf '%s\n' "tyrograph-cli fit: Fy fits poorly: R2 = X, below 0.5 (check the data's units, signs and columns)" \
  "tyrograph-cli fit: poor.ini not written; --force writes it all the same" \
  "tyrograph-cli fit: Fy fits poorly: R2 = X, below 0.5 (check the data's units, signs and columns)" \
  "tyrograph-cli fit: poor.ini written all the same (--force)" >poor.want
diff -u poor.want poor.out || fail=1
"$cli" fit noisy.csv --model pac96 -o w0.ini --weights fy=0,mz=1 --loss cauchy --report w0.json >/dev/null 2>&1
check 0 "$?" weight-zero-exit
grep -q '"loss": "cauchy"' w0.json && grep -q '"weights": {"Fx": 1, "Fy": 0, "Mz": 1}' w0.json ||
  { echo "FAIL weights report: $(cat w0.json)"; fail=1; }

# 8. refusals (exit code, golden message) and nothing written
: >refusals.txt
refuse() {  # expected-exit args...
  local want=$1; shift
  "$cli" "$@" >/dev/null 2>>refusals.txt
  check "$want" "$?" "refusal: $*"
}
printf 'fz,fy\n4000,1\n# next\n4000,abc\n' >bad.csv
refuse 1 fit bad.csv --model pac96 -o new1.ini
printf 'fz fy fzz\n' >bad2.csv
refuse 1 fit bad2.csv --model pac96 -o new2.ini
refuse 1 fit none.csv --model pac96 -o new3.ini
refuse 1 convert "$src/data/cars/touring" --model mf61 -o touring.tir
refuse 2 convert "$src/data/cars/touring" --model pac96 -o x.TIR
refuse 2 convert "$src/data/cars/touring" --model pac2006 -o x.ini
refuse 2 convert "$src/data/cars/touring" -o x.ini
refuse 2 fit data.csv --model mf61 -o x.ini --start
refuse 2 convert "$src/data/cars/touring" --model mf61 -o x.ini --start t.tir
refuse 2 convert nosuch --model mf61 -o x.ini
refuse 1 convert "$src/data/cars/touring" --model mf61 -o x.ini --report r.json
refuse 1 fit data.csv --model mf61 --start "$src/data/cars/touring" -o x.ini
refuse 2 fit data.csv --model mf61 -o x.ini --loss l2
refuse 2 fit data.csv --model mf61 -o x.ini --weights fx=1,fz=2
refuse 2 fit data.csv --model mf61 -o x.ini --weights mz=-1
refuse 2 convert "$src/data/cars/touring" --model mf61 -o x.ini --weights fy=
sed "s|$src|SRC|g" refusals.txt >refusals.out
diff -u "$src/tests/data/fit/refusals.txt" refusals.out || fail=1
check "" "$(ls new1.ini new2.ini new3.ini x.ini x.TIR 2>/dev/null)" nothing-written
"$cli" convert "$src/data/cars/touring" --model mf61 -o touring.tir --force >/dev/null 2>&1
check 0 "$?" force-overwrites
# a bare name is a bundled car, as for eval
"$cli" convert touring --model pac96 -o bare.ini >/dev/null 2>err.txt
check 0 "$?" "convert by bare name: $(cat err.txt)"

# 5. fit and convert keep an existing output or report byte for byte without
#    --force (exit 1, the message names it), and replace it with --force
printf 'kept\r\nno newline' >kept.orig
kept() {  # label command...
  local label=$1; shift
  cp kept.orig kept.out
  "$@" >/dev/null 2>err.txt
  check 1 "$?" "$label: exit"
  grep -q 'kept.out exists; add --force to overwrite it' err.txt || { echo "FAIL $label: message $(cat err.txt)"; fail=1; }
  cmp -s kept.orig kept.out || { echo "FAIL $label: kept.out changed"; fail=1; }
}
kept fit-output "$cli" fit data.csv --model pac96 -o kept.out
kept fit-report "$cli" fit data.csv --model pac96 -o fit-new.ini --report kept.out
kept convert-output "$cli" convert "$src/data/cars/touring" --model mf61 -o kept.out
kept convert-report "$cli" convert "$src/data/cars/touring" --model mf61 -o conv-new.tir --report kept.out
check "" "$(ls fit-new.ini conv-new.tir 2>/dev/null)" refused-report-writes-nothing
"$cli" fit data.csv --model pac96 -o kept.out --force >/dev/null 2>&1
check 0 "$?" fit-force-exit
cmp -s kept.orig kept.out && { echo "FAIL fit --force: kept.out was not replaced"; fail=1; }

# 6. a rig run (semicolons, slip angles in degrees): refused with the check's
# message and nothing written, fitted once --units says what the angles are
{
  echo "SA;FZ;FY"
  for i in $(seq -10 10); do echo "$i;4000;$((-300 * i))"; done
} >run.txt
"$cli" fit run.txt --model mf61 -o run.tir >/dev/null 2>err.txt
check 1 "$?" rig-implausible-exit
check "tyrograph-cli fit: slip angles up to 10 rad (573°): looks like degrees: --units alpha=deg" "$(cat err.txt)" \
  rig-implausible-message
check "" "$(ls run.tir 2>/dev/null)" rig-implausible-writes-nothing
"$cli" fit run.txt --model mf61 -o run.tir --units alpha=deg >out.txt 2>err.txt
check 0 "$?" rig-units-exit
check "" "$(cat err.txt)" rig-units-quiet
grep -qE '^Fy +21 ' out.txt || { echo "FAIL rig-units: figures $(cat out.txt)"; fail=1; }

exit $fail
