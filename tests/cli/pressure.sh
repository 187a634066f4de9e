#!/usr/bin/env bash
# --pressure: eval, curves and plot run the tyre at the pressure asked for;
# its nominal pressure gives the plain output byte for byte; tyres that
# cannot take a pressure say why.
source "$(dirname "$0")/lib/common.bash" "$@"
differs() {  # a b label
  if [ "$1" = "$2" ]; then echo "FAIL $3: --pressure changed nothing"; fail=1; fi
}
tir=$src/data/tyres/MagicFormula61_Parameters.tir  # NOMPRES 260000 Pa
points='3000 0.05 0 0
6000 0 0.08 0.02
4000 0.1 -0.05 0'

plain=$(echo "$points" | "$cli" eval "$tir" 2>/dev/null)
nominal=$(echo "$points" | "$cli" eval "$tir" --pressure 260000 2>/dev/null)
low=$(echo "$points" | "$cli" eval "$tir" --pressure 221000 2>/dev/null)
check "$plain" "$nominal" eval-nominal
differs "$plain" "$low" eval-low
# 15 % under: more slip stiffness and grip for this tyre (its PPX1 < 0)
check more "$(echo "$plain
$low" | awk 'NR==1{a=$1} NR==4{b=$1} END{print (b > a + 50 ? "more" : "less")}')" eval-low-fx

for fmt in table json; do
  a=$("$cli" curves "$tir" --format $fmt 2>/dev/null)
  b=$("$cli" curves "$tir" --format $fmt --pressure 260000 2>/dev/null)
  c=$("$cli" curves "$tir" --format $fmt --pressure 221000 2>/dev/null)
  check "$a" "$b" curves-$fmt-nominal
  differs "$a" "$c" curves-$fmt-low
done

"$cli" plot "$tir" -o plain.svg 2>/dev/null
"$cli" plot "$tir" -o nominal.svg --pressure 260000 2>/dev/null
"$cli" plot "$tir" -o low.svg --pressure 221000 2>/dev/null
cmp -s plain.svg nominal.svg || { echo "FAIL plot-nominal"; fail=1; }
cmp -s plain.svg low.svg && { echo "FAIL plot-low: --pressure changed nothing"; fail=1; }

# Tyres that cannot take it, and values that are no pressure
err=$(echo "$points" | "$cli" eval "$src/data/tyres/MagicFormula52_Parameters.tir" --pressure 2e5 2>&1 >/dev/null)
check 2 "$(echo "$points" | "$cli" eval "$src/data/tyres/MagicFormula52_Parameters.tir" --pressure 2e5 >/dev/null 2>&1; echo $?)" no-nompres-exit
case $err in *"--pressure: the tyre has no nominal inflation pressure (NOMPRES"*) ;; *) echo "FAIL no-nompres: $err"; fail=1 ;; esac
err=$("$cli" curves "$src/data/cars/touring" --pressure 2e5 2>&1 >/dev/null)
case $err in *"--pressure: a Pacejka89/96 tyre has no pressure terms"*) ;; *) echo "FAIL pac96: $err"; fail=1 ;; esac
for bad in 0 -5 abc; do
  err=$(echo "$points" | "$cli" eval "$tir" --pressure $bad 2>&1 >/dev/null)
  case $err in *"--pressure: '$bad' is not"*) ;; *) echo "FAIL eval-bad-$bad: $err"; fail=1 ;; esac
done
err=$("$cli" curves "$tir" --pressure 0 2>&1 >/dev/null)
case $err in *"--pressure: '0' is not a pressure above 0 (Pa)"*) ;; *) echo "FAIL curves-zero: $err"; fail=1 ;; esac

# A written tyre keeps its pressure terms: the same forces at 221 kPa
"$cli" export-tir "$tir" -o back.tir 2>/dev/null
back=$(echo "$points" | "$cli" eval back.tir --pressure 221000 2>/dev/null)
check "$low" "$back" export-tir-keeps-pressure
exit $fail
