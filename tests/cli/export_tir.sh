#!/usr/bin/env bash
# tyrograph-cli export-tir: the golden text, -o and --force, --set and the
# refusals (the bundled files' round trip is in kpacejka_tirwrite_test.cpp).
#   bash export_tir.sh <tyrograph-cli> <source-dir>
set -uo pipefail
CLI=$1
SRC=$2
GOLD="$SRC/tests/data/tyre/sample_written.tir"
T=$(mktemp -d)
trap 'rm -rf "$T"' EXIT
fail=0
check() {
  local name=$1
  shift
  if "$@"; then echo "ok   $name"; else echo "FAIL $name"; fail=1; fi
}

# Standard output and -o, against the golden file of the unit tests.
"$CLI" export-tir "$SRC/data/tyres/sample.tir" >"$T/s.tir" 2>/dev/null
check "stdout equals golden" cmp "$T/s.tir" "$GOLD"
"$CLI" export-tir "$SRC/data/tyres/sample.tir" -o "$T/o.tir" 2>/dev/null
check "-o writes the same bytes" cmp "$T/o.tir" "$GOLD"

# An existing file stays without --force (exit 2, untouched), goes with it.
printf 'keep\r\nno newline' >"$T/exists.orig"
cp "$T/exists.orig" "$T/exists.tir"
"$CLI" export-tir "$SRC/data/tyres/sample.tir" -o "$T/exists.tir" 2>"$T/e1"; rc=$?
check "existing output: exit 2" test $rc -eq 2
check "existing output: message names it" grep -q "exists.tir exists; add --force" "$T/e1"
check "existing output: the same bytes" cmp -s "$T/exists.orig" "$T/exists.tir"
"$CLI" export-tir "$SRC/data/tyres/sample.tir" -o "$T/exists.tir" --force 2>/dev/null; rc=$?
check "--force overwrites" test $rc -eq 0 -a "$(head -1 "$T/exists.tir")" = "[MDI_HEADER]"

# --set edits the tyre before it is written; the sample car reaches its TIR file.
"$CLI" export-tir "$SRC/data/cars/mf61" --set pcx1=1.7 --set lkx=0.9 -o "$T/set.tir" 2>/dev/null
check "--set written" test "$(grep -c -E '^(PCX1 +=  ?1\.7|LKX +=  ?0\.9)$' "$T/set.tir")" -eq 2

# Refusals: a Pacejka89/96 car (exit 1), an unwritable path (exit 1), no tyre (exit 2).
"$CLI" export-tir "$SRC/data/cars/touring" >"$T/p.tir" 2>"$T/e2"; rc=$?
check "Pacejka89/96: exit 1, nothing out" test $rc -eq 1 -a ! -s "$T/p.tir"
check "Pacejka89/96: message" grep -q "a Pacejka89/96 tyre has no TIR form" "$T/e2"
"$CLI" export-tir "$SRC/data/tyres/sample.tir" -o /no/such/dir/x.tir 2>"$T/e3"; rc=$?
check "unwritable: exit 1, path and reason" test $rc -eq 1 -a -n "$(grep '/no/such/dir/x.tir: can.t open for writing: No such file' "$T/e3")"
"$CLI" export-tir 2>/dev/null; rc=$?
check "no tyre: exit 2" test $rc -eq 2
check "--help lists export-tir" grep -q "^  export-tir TYRE" <("$CLI" --help)
exit $fail
