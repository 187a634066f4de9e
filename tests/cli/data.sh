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
check "fz,kappa,alpha,gamma,fx,fy,mz" "$(head -1 clean.csv)" data-o-header
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

# 5. fit takes the raw run directly (thinned to keep this quick)
"$cli" fit "$run" --model mf61 --thin 25 -o run.tir >out.txt 2>err.txt
check 0 "$?" fit-raw-exit
has out.txt "Fy " fit-raw-figures
check 1 "$(head -c 200 run.tir | grep -c MDI_HEADER)" fit-raw-written
exit $fail
