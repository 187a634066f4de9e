#!/usr/bin/env bash
# tyrograph-cli curves: the csv contract, the other formats, options and errors.
#   bash curves.sh <tyrograph-cli> <source-dir>
set -uo pipefail
CLI=$1
SRC=$2
CAR="$SRC/tests/data/tool/touring"
T=$(mktemp -d)
trap 'rm -rf "$T"' EXIT
fail=0
differ() { ! cmp -s "$1" "$2"; }
check() {  # check NAME COMMAND...: runs the command, reports failure
  local name=$1
  shift
  if "$@"; then echo "ok   $name"; else echo "FAIL $name"; fail=1; fi
}

"$CLI" curves "$CAR" --format csv >"$T/c.csv" 2>"$T/err" || { echo "FAIL curves csv ran: $(cat "$T/err")"; exit 1; }
check "csv header" test "$(head -1 "$T/c.csv")" = "graph,i,x,y"
check "csv 1 + 3 x 291 lines" test "$(wc -l <"$T/c.csv")" -eq 874
check "csv graph order Fx Fy Mz" test "$(cut -d, -f1 "$T/c.csv" | uniq | tr '\n' ' ')" = "graph Fx Fy Mz "
check "csv rows 0..289 then peak" test "$(grep -c '^Fy,[0-9]*,' "$T/c.csv")" -eq 290
check "csv peak rows" test "$(grep -c ',peak,' "$T/c.csv")" -eq 3
check "csv Fx starts at -2 (zoom on)" grep -q '^Fx,0,-2,' "$T/c.csv"
check "csv last sample one step short of 2" grep -q '^Fx,289,1.98620701,' "$T/c.csv"
check "csv Fy x in degrees" grep -q '^Fy,0,-20,' "$T/c.csv"
check "csv Mz centre sample at 0" grep -q '^Mz,145,0,' "$T/c.csv"
check "csv every row has 4 fields" test "$(awk -F, 'NF != 4' "$T/c.csv" | wc -l)" -eq 0
check "csv Fx peak is positive" awk -F, '$1=="Fx" && $2=="peak" { exit !($4 > 0.5 && $3 > 0) }' "$T/c.csv"

"$CLI" curves "$CAR" --format csv --zoom off >"$T/off.csv"
check "zoom off: Fx from -10" grep -q '^Fx,0,-10,' "$T/off.csv"
check "zoom off: Fy from -180" grep -q '^Fy,0,-180,' "$T/off.csv"

"$CLI" curves "$CAR" --format csv --wheel 1 >"$T/w1.csv"
check "wheel 1 (stronger b2) gives a higher Fx peak" \
  awk -F, 'NR==FNR { if ($1=="Fx" && $2=="peak") a=$4; next } $1=="Fx" && $2=="peak" { exit !($4 > a) }' "$T/c.csv" "$T/w1.csv"
"$CLI" curves "$CAR" --format csv --set b2=2000 >"$T/set.csv"
check "--set b2=2000 on wheel 0 equals wheel 1" cmp -s "$T/set.csv" "$T/w1.csv"
"$CLI" curves "$CAR" --format csv --load 5000 --camber 3 --slip-angle 2 --slip-ratio 0.05 >"$T/op.csv"
check "operating point changes the curves" differ "$T/op.csv" "$T/c.csv"
"$CLI" curves "$CAR/car.ini" --format csv >"$T/file.csv"
check "car.ini path equals the folder" cmp -s "$T/file.csv" "$T/c.csv"

"$CLI" curves "$CAR" --format json >"$T/c.json"
check "json parses" python3 -c "import json,sys; d=json.load(open(sys.argv[1])); assert [g['graph'] for g in d['graphs']]==['Fx','Fy','Mz']; assert all(len(g['x'])==290 and len(g['y'])==290 for g in d['graphs'])" "$T/c.json"
check "json peaks equal csv peaks" python3 - "$T/c.json" "$T/c.csv" <<'PY'
import json, sys
d = json.load(open(sys.argv[1]))
peaks = {l.split(',')[0]: (float(l.split(',')[2]), float(l.split(',')[3])) for l in open(sys.argv[2]) if ',peak,' in l}
for g in d['graphs']:
    assert abs(g['peak']['x'] - peaks[g['graph']][0]) < 1e-6 and abs(g['peak']['y'] - peaks[g['graph']][1]) < 1e-6
PY
"$CLI" curves "$CAR" >"$T/c.txt"
check "table has the three titles" test "$(grep -c -e 'Fx/Fz (normalized longitudinal force)' -e 'Fy/Fz (normalized lateral force)' -e 'Mz (aligning moment)' "$T/c.txt")" -eq 3
check "table has 3 x 290 sample rows" test "$(grep -cE '^ +[0-9]+ ' "$T/c.txt")" -eq 870

# Bad input: a clear message naming the problem, exit code 2, no crash.
"$CLI" curves /no/such/tyre.ini 2>"$T/e1"; rc=$?
check "missing file: exit 2" test $rc -eq 2
check "missing file: named" grep -q '/no/such/tyre.ini: no such file' "$T/e1"
"$CLI" curves "$CAR" --load heavy 2>"$T/e2"; rc=$?
check "bad number: exit 2 and message" test $rc -eq 2 -a -n "$(grep "\-\-load: 'heavy' is not a number" "$T/e2")"
"$CLI" curves "$CAR" --format xml 2>"$T/e3"; rc=$?
check "bad format: exit 2" test $rc -eq 2
"$CLI" curves "$CAR" --wheel 7 2>"$T/e4"; rc=$?
check "bad wheel: exit 2 and message" test $rc -eq 2 -a -n "$(grep 'wheel 7 is not 0..3' "$T/e4")"
"$CLI" curves "$CAR" --set zz=1 2>"$T/e5"; rc=$?
check "unknown coefficient: exit 2" test $rc -eq 2
"$CLI" curves 2>"$T/e6"; rc=$?
check "no tyre: exit 2" test $rc -eq 2
"$CLI" curves --help >"$T/help"; rc=$?
check "curves --help" test $rc -eq 0 -a -n "$(grep -- '--slip-angle DEG' "$T/help")"
exit $fail
