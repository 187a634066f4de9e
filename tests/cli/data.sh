#!/usr/bin/env bash
# tyrograph-cli data, and fit reading rig runs: what data prints for the
# bundled generated run, -o and --force, the plausibility refusals (with
# nothing written), and a thinned fit of the run.
source "$(dirname "$0")/lib/common.bash" "$@"
run=$src/data/measured/rig_run_mf61.txt

# 1. what data finds in the generated run
"$cli" data "$run" >out.txt 2>err.txt
check 0 "$?" data-exit
check "" "$(cat err.txt)" data-quiet
has out.txt "rig_run_mf61.txt: text, " data-format
has out.txt "  alpha     SA           deg" data-alpha-unit
has out.txt "ignored columns: TSTC" data-ignored
has out.txt "axes auto: the loads are negative, so SAE (fz, alpha, fy, mz turned round)" data-axes
has out.txt "set points: 24" data-set-points
has out.txt "sweeps: 64 (32 slip angle, 24 slip ratio, 8 combined)" data-sweeps
has out.txt "warm-up (before the first set point)" data-warmup
rm -f out.txt err.txt

# 2. -o writes the tidy CSV, which reads back as it stands; no overwrite without --force
"$cli" data "$run" -o clean.csv >/dev/null 2>&1
check 0 "$?" data-o-exit
check "fz,kappa,alpha,gamma,fx,fy,mz,pressure" "$(head -1 clean.csv)" data-o-header  # the run has pressures
"$cli" data clean.csv >out.txt 2>&1
has out.txt "tidy CSV" data-tidy-back
"$cli" data "$run" -o clean.csv >/dev/null 2>err.txt
check 1 "$?" data-o-refuses
has err.txt "tyrograph-cli data: clean.csv exists; add --force to overwrite it" data-o-message
"$cli" data "$run" -o clean.csv --force >/dev/null 2>&1
check 0 "$?" data-o-force

# 3. plausibility: degrees without a units row, SAE loads in a tidy file
printf 'SA,SL,FZ,FY\n8,0,3000,-900\n-8,0,3000,900\n4,0,3000,-500\n-4,0,3000,500\n' >deg.csv
"$cli" fit deg.csv --model mf61 -o deg.tir >/dev/null 2>err.txt
check 1 "$?" degrees-exit
has err.txt "tyrograph-cli fit: slip angles up to 8 rad (458.4°): looks like degrees: --units alpha=deg" degrees-message
"$cli" data deg.csv --units alpha=deg >/dev/null 2>err.txt
check 0 "$?" degrees-fixed
printf 'fz,alpha,fy\n-3000,0.1,-900\n-3000,-0.1,900\n' >sae.csv
"$cli" fit sae.csv --model mf61 -o sae.tir >/dev/null 2>err.txt
check 1 "$?" sae-exit
has err.txt "loads look like SAE axes (z down); read the file with --axes sae (or --axes auto)" sae-message
check "" "$(ls deg.tir sae.tir 2>/dev/null)" nothing-written

# 4. option and reader refusals
"$cli" data "$run" --units alpha=grad >/dev/null 2>err.txt
check 2 "$?" units-exit
has err.txt "tyrograph-cli data: --units: 'grad' is not a unit of alpha (known: rad, deg)" units-message
"$cli" data "$run" --axes up >/dev/null 2>err.txt
check 2 "$?" axes-exit
printf 'SA;FZ;FY\ndeg;N;N\n1;2;x\n' >bad.txt
"$cli" data bad.txt >/dev/null 2>err.txt
check 1 "$?" reader-exit
has err.txt "tyrograph-cli data: bad.txt:3:5: column 'FY' (fy): 'x' is not a number" reader-message

# 5. fit takes the raw run directly (thinned to keep this quick), says what
#    it did with the run's two pressures, and fits the tidy file data -o
#    wrote from the run to the very same tyre and figures
"$cli" fit "$run" --model mf61 --thin 25 -o run.tir --report run.json >out.txt 2>err.txt
check 0 "$?" fit-raw-exit
has out.txt "Fy " fit-raw-figures
check 1 "$(head -c 200 run.tir | grep -c MDI_HEADER)" fit-raw-written
has out.txt "pressures: 2 set points, 239990 Pa (937 points), 204000 Pa (582 points)" fit-raw-pressures
has out.txt "pressure stages ran (Fx, Fy, Mz) about NOMPRES = 239990 Pa, the pressure with the most points" fit-raw-nompres
has run.json '"pressure": {"set_points": [{"pressure": 239990, "points": 937}, {"pressure": 204000, "points": 582}], "stages": 3, "nompres": 239990, "nompres_from": "most points", "pure_stages_at": 239990},' fit-raw-json-pressure
"$cli" data "$run" --thin 25 -o thin.csv >/dev/null 2>&1
"$cli" data thin.csv >tidy.txt 2>&1
has tidy.txt "thin.csv: tidy CSV (fz, kappa, alpha, gamma, fx, fy, mz in our units and signs, pressure in Pa), 1519 points" tidy-pressure
"$cli" fit thin.csv --model mf61 -o thin.tir --report thin.json >thin.txt 2>err.txt
check 0 "$?" fit-tidy-exit
check "$(grep -v '^iterations' out.txt)" "$(grep -v '^iterations' thin.txt)" fit-tidy-same-figures
check "$(grep -v '"input"\|"output"\|"seconds"' run.json)" "$(grep -v '"input"\|"output"\|"seconds"' thin.json)" fit-tidy-same-report
cmp -s run.tir thin.tir || { echo "FAIL fit-tidy-same-tyre: run.tir and thin.tir differ"; fail=1; }

# 6. one pressure, and a model without pressure terms: no pressure stage, and why
awk -F, 'BEGIN { OFS = "," } NR > 1 { $8 = 240000 } { print }' thin.csv >one.csv
"$cli" fit one.csv --model mf61 -o one.tir --report one.json >out.txt 2>err.txt
check 0 "$?" one-pressure-exit
has out.txt "pressure: one set point, 240000 Pa (1519 points)" one-pressure-set-point
has out.txt "pressure stages not run: one pressure only" one-pressure-why
has one.json '"pressure": {"set_points": [{"pressure": 240000, "points": 1519}], "stages": 0, "why_not": "one pressure only"},' one-pressure-json
"$cli" fit thin.csv --model pac96 -o pac.ini >out.txt 2>err.txt
has out.txt "pressure stages not run: pac96 has no pressure terms" pac96-pressure-why

# 7. a run whose Mz was logged turned round: auto turns it back (the same
#    points as the run's), says so with the evidence, and fit says it too;
#    --axes sae keeps it as the file has it
awk -F'\t' 'BEGIN { OFS = "\t" } NR > 5 { $10 = substr($10, 1, 1) == "-" ? substr($10, 2) : "-" $10 } { print }' "$run" >mz_turned.txt
"$cli" data mz_turned.txt --thin 25 -o turned.csv >out.txt 2>&1
has out.txt "axes auto: the loads are negative, so SAE (fz, alpha, fy, mz turned round); Fy and Mz both fall with the slip angle (within set points Fy -8.088e+04 N/rad, t = " turned-note
has out.txt "which a positive trail never gives: Mz turned round; Fy falls with the slip angle (-8.221e+04 N/rad); Mz rises with the slip angle (2369 N·m/rad)" turned-back
cmp -s thin.csv turned.csv || { echo "FAIL turned-same-points: turned.csv differs from thin.csv"; fail=1; }
"$cli" data mz_turned.txt --axes sae --thin 25 -o kept.csv >out.txt 2>&1
has out.txt "axes sae: fz, alpha, fy, mz turned round; Fy falls with the slip angle (-8.221e+04 N/rad); Mz falls with the slip angle" sae-kept
"$cli" fit mz_turned.txt --model mf61 --thin 25 -o turned.tir >out.txt 2>err.txt
check 0 "$?" turned-fit-exit
has out.txt "Mz turned round" turned-fit-says
check "$(grep -v '^iterations' thin.txt)" "$(grep -v '^iterations\|^axes auto' out.txt)" turned-fit-same-figures
exit $fail
