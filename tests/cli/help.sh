#!/usr/bin/env bash
# Every subcommand named by "tyrograph-cli --help" answers --help and -h with
# its usage on standard output and exit 0, and refuses an unknown option
# with exit 2.
cli=$1
T=$(mktemp -d)
trap 'rm -rf "$T"' EXIT
fail=0
no() { echo "FAIL $*"; fail=1; }

"$cli" --help >"$T/all" || no "--help exit"
cmds=$(sed -n '/^subcommands:/,/^$/p' "$T/all" | sed -n 's/^  \([a-z][a-z-]*\) .*/\1/p')
[ "$(echo "$cmds" | wc -w)" -ge 10 ] || no "--help lists only: $cmds"
for c in $cmds; do
  for h in --help -h; do
    (cd "$T" && "$cli" "$c" "$h" >"$T/out" 2>"$T/err"); rc=$?
    [ $rc = 0 ] || no "$c $h: exit $rc"
    head -1 "$T/out" | grep -q "^usage: tyrograph-cli $c " || no "$c $h: no usage line: $(head -1 "$T/out")"
    [ "$(wc -l <"$T/out")" -ge 3 ] || no "$c $h: no options or formats"
    [ -s "$T/err" ] && no "$c $h: wrote to stderr: $(head -2 "$T/err")"
  done
  # --help wins wherever it stands, and nothing is written
  (cd "$T" && "$cli" "$c" data/cars/touring --help >/dev/null 2>&1) || no "$c TYRE --help: exit $?"
  out=$(cd "$T" && "$cli" "$c" --no-such-option 2>"$T/err"); rc=$?
  [ $rc = 2 ] || no "$c --no-such-option: exit $rc"
  [ -z "$out" ] || no "$c --no-such-option: wrote '$out'"
  [ -s "$T/err" ] || no "$c --no-such-option: no message"
done
[ -z "$(ls "$T" | grep -v '^all$\|^out$\|^err$')" ] || no "files left: $(ls "$T")"

# The tyre commands name the tyre formats; fit names its data file's columns.
for c in eval curves plot export-ascii export-carini export-tir convert; do
  "$cli" "$c" --help | grep -q '\.tir' || no "$c --help names no tyre format"
done
for col in fz kappa alpha gamma fx fy mz; do
  "$cli" fit --help | grep -q "^  .*\b$col\b" || no "fit --help lacks column $col"
done
"$cli" ini --help | grep -q 'count KEY' || no "ini --help lacks its operations"
exit $fail
