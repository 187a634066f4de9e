#!/usr/bin/env bash
# tyrograph-cli eval: sample cars, TIR files, --set, --dump, --stats and the
# input-line rules.
source "$(dirname "$0")/lib/common.bash" "$@"

# Three numbers per operating point, for every sample car.
for car in hmmwv wvp touring mf61; do
  out=$(printf '4000 0.1 0 0\n' | "$cli" eval "$src/data/cars/$car" 2>/dev/null)
  check 3 "$(echo "$out" | wc -w)" "$car-three-numbers"
done

# The touring car at 4 kN, 10 % slip (reference value 5417.490 N from the
# double-precision model); a folder and its car.ini give the same.
out=$(printf '# a comment\n\n4000 0.1 0 0\n' | "$cli" eval "$src/data/cars/touring" 2>/dev/null)
check 5417.49 "$(echo "$out" | awk '{printf "%.2f", $1}')" touring-fx
out2=$(printf '4000 0.1 0 0\n' | "$cli" eval "$src/data/cars/touring/car.ini" 2>/dev/null)
check "$out" "$out2" folder-or-file

# --stats adds ten statistics; Cx of the touring set is b0 = 1.65.
out=$(printf '4000 0.1 0 0\n' | "$cli" eval "$src/data/cars/touring" --stats 2>/dev/null)
check 13 "$(echo "$out" | wc -w)" stats-count
check 1.65 "$(echo "$out" | awk '{printf "%.2f", $9}')" stats-cx

# --set writes a member after loading: no longitudinal friction, no Fx.
out=$(printf '4000 0.1 0 0\n' | "$cli" eval "$src/data/cars/touring" --set b2=0 --set b1=0 2>/dev/null)
check 0 "$(echo "$out" | awk '{print $1}')" set-b2

# --dump lists every member once, in the table's order, integers for model/flags.
"$cli" eval "$src/data/tyres/sample.tir" --dump >dump.txt 2>/dev/null
check 206 "$(wc -l <dump.txt)" dump-lines
check flags=0 "$(head -1 dump.txt)" dump-first
check model=3 "$(grep '^model=' dump.txt)" dump-model
check fz0=4000 "$(grep '^fz0=' dump.txt)" dump-fz0
check fz_max=10000 "$(grep "^fz_max=" dump.txt)" dump-range-last
check qpz2=0 "$(tail -1 dump.txt)" dump-last
grep -q '^zeta8=1$' dump.txt || { echo "FAIL dump lacks zeta8"; fail=1; }
out=$("$cli" eval "$src/data/tyres/sample.tir" --set model=1 --dump 2>/dev/null | grep '^model=')
check model=1 "$out" dump-after-set

# Wheel selection and negate_camber: wheel 1 of the MF car mirrors camber.
a=$(printf '4000 0 0 0.05\n' | "$cli" eval "$src/data/cars/mf61" --wheel 0 2>/dev/null)
b=$(printf '4000 0 0 -0.05\n' | "$cli" eval "$src/data/cars/mf61" --wheel 1 2>/dev/null)
check "$a" "$b" negate-camber

# Errors: unknown member, malformed line (number and token named), bad wheel.
"$cli" eval "$src/data/cars/touring" --set nosuch=1 </dev/null >/dev/null 2>err.txt
check 2 "$?" unknown-member-exit
grep -q "unknown tyre member 'nosuch'" err.txt || { echo "FAIL unknown member message: $(cat err.txt)"; fail=1; }
printf '4000 0.1 0 0\n4000 abc 0 0\n4000 0 0 0\n' | "$cli" eval "$src/data/cars/touring" >out.txt 2>err.txt
check 2 "$?" bad-line-exit
check 1 "$(wc -l <out.txt)" bad-line-stops
grep -q "line 2: 'abc' is not a number" err.txt || { echo "FAIL bad line message: $(cat err.txt)"; fail=1; }
printf '4000 0.1 0\n' | "$cli" eval "$src/data/cars/touring" >/dev/null 2>err.txt
check 2 "$?" short-line-exit
grep -q "line 1: expected 4 numbers" err.txt || { echo "FAIL short line message: $(cat err.txt)"; fail=1; }
"$cli" eval "$src/data/cars/touring" --wheel 4 </dev/null >/dev/null 2>&1
check 2 "$?" wheel-range
"$cli" eval "$tmp/nothere" </dev/null >/dev/null 2>err.txt
check 2 "$?" missing-tyre
"$cli" eval >/dev/null 2>&1
check 2 "$?" no-tyre
exit $fail
