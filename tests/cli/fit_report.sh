#!/usr/bin/env bash
# tyrograph-cli fit --report-pdf: the report of a small fit has its pages and
# titles (read back with pdftotext); an unwritable path, an existing report
# without --force and a name not ending in .pdf are refused with a message.
# Usage: fit_report.sh <tyrograph-cli> <source-dir>
set -u
source "$(dirname "$0")/lib/common.bash" "$@"
data=$src/data/measured/touring.csv

# 1. the report of a fit: summary, two pages of coefficients, the nine set
# points (three loads, three cambers), the residuals; no combined slip
"$cli" fit "$data" --model mf61 -o t.tir --report-pdf r.pdf >out.txt 2>err.txt
check 0 "$?" fit-exit
check "" "$(cat err.txt)" fit-quiet
check 5 "$(grep -cE '^(channel|Fx|Fy|Mz|iterations) ' out.txt)" figures-still-printed
grep -q '^combined slip not identified (no combined points)' out.txt || { echo "FAIL combined note: $(cat out.txt)"; fail=1; }
pdftotext -layout r.pdf r.txt || { echo "FAIL pdftotext"; fail=1; }
check 13 "$(grep -c 'page [0-9]* of 13' r.txt)" page-count
titles=$(tr '\f' '\n' <r.txt | grep -oE '^ *(Fit report|Fitted coefficients|Set point [0-9]+ of 9|Residuals over slip|Combined slip at)' |
  sed 's/^ *//' | uniq -c | awk '{$1=$1; print}' | tr '\n' ';')
check "1 Fit report;2 Fitted coefficients;1 Set point 1 of 9;1 Set point 2 of 9;1 Set point 3 of 9;1 Set point 4 of 9;1 Set point 5 of 9;1 Set point 6 of 9;1 Set point 7 of 9;1 Set point 8 of 9;1 Set point 9 of 9;1 Residuals over slip;" \
  "$titles" page-titles
grep -q 'Set point 5 of 9: Fz 4000 N, camber 0°, 22 points' r.txt || { echo "FAIL set point title"; fail=1; }
grep -q 'Data: .*touring.csv (tidy CSV), 198 points at 9 set points; channels Fx, Fy, Mz' r.txt ||
  { echo "FAIL summary data line"; fail=1; }
grep -q 'Fy over slip angle (slip ratio 0)' r.txt || { echo "FAIL chart title"; fail=1; }
grep -q 'slip angle \[deg\]' r.txt || { echo "FAIL axis name"; fail=1; }
grep -qi 'nompres\|ppx1' r.txt && { echo "FAIL pressure terms in a fit without pressures"; fail=1; }

# 2. an existing report is kept without --force, replaced with it
echo keep >old.pdf
"$cli" fit "$data" --model mf61 -o t2.tir --report-pdf old.pdf >/dev/null 2>err.txt
check 1 "$?" exists-exit
check "tyrograph-cli fit: old.pdf exists; add --force to overwrite it" "$(cat err.txt)" exists-message
check keep "$(cat old.pdf)" exists-kept
check "" "$(ls t2.tir 2>/dev/null)" exists-nothing-written
"$cli" fit "$data" --model mf61 -o t2.tir --report-pdf old.pdf --force >/dev/null 2>err.txt
check 0 "$?" force-exit
check "%PDF-" "$(head -c 5 old.pdf)" force-replaced

# 3. an unwritable path: the message names it, the status is 1
"$cli" fit "$data" --model mf61 -o t3.tir --report-pdf no/such/dir/r.pdf >/dev/null 2>err.txt
check 1 "$?" unwritable-exit
check "tyrograph-cli fit: no/such/dir/r.pdf: can't open output file for writing" "$(cat err.txt)" unwritable-message

# 4. a report name not ending in .pdf
"$cli" fit "$data" --model mf61 -o t4.tir --report-pdf r.png >/dev/null 2>err.txt
check 2 "$?" extension-exit
check "tyrograph-cli fit: --report-pdf: 'r.png' does not end in .pdf" "$(head -1 err.txt)" extension-message
check "" "$(ls t4.tir r.png 2>/dev/null)" extension-nothing-written
# 5. a fit at two pressures (the run's points through data -o): the
# coefficient table lists NOMPRES and the pressure terms, the summary says
# what the pressure stages did
"$cli" data "$src/data/measured/rig_run_mf61.txt" --thin 10 -o p.csv >/dev/null 2>&1
"$cli" fit p.csv --model mf61 -o p.tir --report-pdf p.pdf >/dev/null 2>err.txt
check 0 "$?" pressure-exit
pdftotext -layout p.pdf p.txt
grep -qE 'nompres +239990 +pressure +nominal, most points' p.txt || { echo "FAIL pressure nompres row"; fail=1; }
for name in ppx1 ppx4 ppy1 ppy4 ppz1 ppz2; do
  grep -qE "$name +-?[0-9.e-]+ +pressure" p.txt || { echo "FAIL pressure row $name"; fail=1; }
done
grep -qE 'qpz1 +0 +pressure +carried, not fitted' p.txt || { echo "FAIL pressure carried row"; fail=1; }
grep -q 'Pressure stages ran (Fx, Fy, Mz) about NOMPRES = 239990 Pa, the pressure with the most points' p.txt ||
  { echo "FAIL pressure summary"; fail=1; }
exit $fail
