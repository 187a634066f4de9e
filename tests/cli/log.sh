#!/usr/bin/env bash
# tyrograph-cli leaves the folder it runs in as it was: no QLOG.txt unless
# --log FILE asks for the diagnostic log, which then holds the reports that
# also went to standard error.
cli=$1
src=$2
fail=0
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
tir="$src/data/tyres/MagicFormula52_Parameters.tir"  # its FITTYP draws a report

(cd "$dir" && "$cli" curves "$tir" --format csv >out.csv 2>err.txt) || { echo "FAIL curves exit $?"; fail=1; }
grep -q 'Attempting MF5.2' "$dir/err.txt" || { echo "FAIL the report is not on standard error"; fail=1; }
left=$(cd "$dir" && ls | sort | tr '\n' ' ')
[ "$left" = "err.txt out.csv " ] || { echo "FAIL files left behind: $left"; fail=1; }

(cd "$dir" && "$cli" curves "$tir" --log "$dir/sub.log" --format csv >/dev/null 2>/dev/null)
grep -q 'Attempting MF5.2' "$dir/sub.log" 2>/dev/null || { echo "FAIL --log FILE: report not in the log"; fail=1; }
(cd "$dir" && "$cli" --log=eq.log expr 1+1 >/dev/null 2>&1)
[ ! -e "$dir/QLOG.txt" ] || { echo "FAIL QLOG.txt written beside --log"; fail=1; }
out=$("$cli" expr 1+1 --log 2>"$dir/e2"); rc=$?
[ "$rc" = 2 ] && grep -q -- '--log needs a file name' "$dir/e2" || { echo "FAIL --log without a file: rc $rc"; fail=1; }
"$cli" --help | grep -q -- '--log FILE' || { echo "FAIL --help lacks --log"; fail=1; }
exit $fail
