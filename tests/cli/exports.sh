#!/usr/bin/env bash
# tyrograph-cli export-ascii and export-carini: exact bytes against the golden
# files the unit tests also use, -o against standard output, and errors.
#   bash exports.sh <tyrograph-cli> <source-dir>
set -uo pipefail
CLI=$1
SRC=$2
CAR="$SRC/tests/data/tool/touring"
GOLD="$SRC/tests/data/tool"
T=$(mktemp -d)
trap 'rm -rf "$T"' EXIT
fail=0
differ() { ! cmp -s "$1" "$2"; }
check() {
  local name=$1
  shift
  if "$@"; then echo "ok   $name"; else echo "FAIL $name"; fail=1; fi
}

"$CLI" export-ascii "$CAR" --steps 134 --max 2 >"$T/a.txt"
check "export-ascii equals golden" cmp "$T/a.txt" "$GOLD/touring_ascii_134_2.txt"
"$CLI" export-ascii "$CAR" --steps 134 --max 2 -o "$T/a2.txt"
check "export-ascii -o writes the same bytes" cmp "$T/a.txt" "$T/a2.txt"
check "export-ascii: bare line feeds" test "$(grep -c $'\r' "$T/a.txt")" -eq 0
"$CLI" export-ascii "$CAR" --steps 0 --max 2 >"$T/z.txt"
check "0 steps: headers only" test "$(wc -c <"$T/z.txt")" -eq 161
"$CLI" export-carini "$CAR" >"$T/c.ini"
check "export-carini equals golden" cmp "$T/c.ini" "$GOLD/touring_carini.txt"
"$CLI" export-carini "$CAR" --zoom off -o "$T/c2.ini"
check "peaks follow the zoom" differ "$T/c.ini" "$T/c2.ini"
check "only the statistics differ with zoom" test "$(diff "$T/c.ini" "$T/c2.ini" | grep -c '^[<>]')" -le 4

"$CLI" export-ascii "$CAR" --steps 10 2>"$T/e1"; rc=$?
check "missing --max: exit 2" test $rc -eq 2
"$CLI" export-ascii "$CAR" --steps -1 --max 2 2>"$T/e2"; rc=$?
check "negative steps: exit 2" test $rc -eq 2
"$CLI" export-ascii "$CAR" --steps 5 --max 0 2>"$T/e3"; rc=$?
check "max 0: exit 2" test $rc -eq 2
# An existing file is kept byte for byte unless --force is given (exit 2,
# the message names it).
printf 'keep\r\nno newline' >"$T/keep.orig"
kept() {  # label command...
  local label=$1
  shift
  cp "$T/keep.orig" "$T/keep.txt"
  "$@" 2>"$T/e5"; local rc=$?
  check "$label: exit 2, message, file untouched" \
    test $rc -eq 2 -a -n "$(grep 'keep.txt exists; add --force' "$T/e5")"
  check "$label: the same bytes" cmp -s "$T/keep.orig" "$T/keep.txt"
}
kept "export-ascii keeps it" "$CLI" export-ascii "$CAR" --steps 8 --max 0.5 -o "$T/keep.txt"
kept "export-carini keeps it" "$CLI" export-carini "$CAR" -o "$T/keep.txt"
"$CLI" export-ascii "$CAR" --steps 134 --max 2 -o "$T/keep.txt" --force
check "export-ascii --force overwrites" cmp "$T/keep.txt" "$GOLD/touring_ascii_134_2.txt"
"$CLI" export-carini "$CAR" -o "$T/keep.txt" --force
check "export-carini --force overwrites" cmp "$T/keep.txt" "$GOLD/touring_carini.txt"
"$CLI" export-carini "$CAR" -o /no/such/dir/out.ini 2>"$T/e4"; rc=$?
check "unwritable output: exit 1 and message" test $rc -eq 1 -a -n "$(grep '/no/such/dir/out.ini' "$T/e4")"
exit $fail
