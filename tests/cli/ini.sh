#!/usr/bin/env bash
# tyrograph-cli ini FILE OP...: one output line per operation, reports on
# stderr, changes written only by `write`.
# Usage: ini.sh <tyrograph-cli> <source-dir>
set -u
cli=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
src=$(cd "$2" && pwd)
data=$src/tests/data/info
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
cd "$tmp" || exit 1
fail=0

# check NAME EXPECTED-STDOUT ARGS...: runs the command; stderr goes to err.txt.
check() {
  local name=$1 want=$2
  shift 2
  local got
  got=$("$cli" "$@" 2>err.txt)
  if [ "$got" != "$want" ]; then
    printf 'FAIL %s\n  want: %s\n  got:  %s\n' "$name" "$want" "$got"
    sed 's/^/  stderr: /' err.txt
    fail=1
  fi
}
# stderr_has NAME TEXT: the last command's stderr holds TEXT.
stderr_has() {
  if ! grep -qF -- "$2" err.txt; then
    printf 'FAIL %s: stderr lacks "%s"\n' "$1" "$2"
    sed 's/^/  stderr: /' err.txt
    fail=1
  fi
}
stderr_empty() {
  if [ -s err.txt ]; then
    printf 'FAIL %s: unexpected stderr\n' "$1"
    sed 's/^/  stderr: /' err.txt
    fail=1
  fi
}

printf 'version=3\n' > f.ini
check default-int 910 ini f.ini int resolution.width 910
stderr_empty default-int

printf 'x=1,5\n' > comma.ini
check comma-float 1 ini comma.ini float x 0
stderr_has comma-float "x value '1,5' (in comma.ini) is not a valid float: use '.' instead of ','"

cp "$data/syntax.ini" car.ini
check getters "$(printf '1024\n1.60000002\n Test Car\n1\n?\n1\n-7\n0.330000013\n1200\nnone\n0')" \
  ini car.ini int resolution.width 0 float wheel0.pacejka.a0 0 string name x bool version 0 \
  string flag x int dup 0 int none -7 float wheel1.radius 0 int car.mass 0 string wheel1.pacejka.zz none \
  bool none 0

check inherited-through-reference 1.60000002 ini car.ini float wheel1.pacejka.a0 0

check count "$(printf '2\n2\n0\n0')" ini car.ini count wheel0 count car count car.mass count nothere

check set-delete-write "$(printf '1\n1\n1\n1\n1\n1\n1\n0\n0\n1\n1280')" ini car.ini \
  set resolution.width 1280 set last.car x delete old delete wheel0.pacejka.a2 \
  set wheel1.radius 0.34 set car.mass 1250.500000 set deep.inner.y 2 \
  set car 1 delete nothere write out.ini int resolution.width 0
cmp -s out.ini "$data/syntax.expected.ini" || { echo "FAIL write: out.ini differs from syntax.expected.ini"; diff out.ini "$data/syntax.expected.ini"; fail=1; }
cmp -s car.ini "$data/syntax.ini" || { echo "FAIL set without write changed the file"; fail=1; }

check write-unwritable 0 ini car.ini write nodir/out.ini
stderr_has write-unwritable "QInfo:Write(); file (nodir/out.ini) can't be written"

check missing-file 5 ini none.ini int a 5
stderr_has missing-file "QInfo: can't open 'none.ini', current directory is '"

printf 'a.b=1\n' > dotted.ini
check dotted-key 0 ini dotted.ini int a.b 0
stderr_has dotted-key "QInfo(dotted.ini): key with '.' found (a.b) - won't work; use { } to define subtrees (line 1)"

# Usage errors: nothing runs, exit code 2.
"$cli" ini car.ini int resolution.width >out.txt 2>err.txt
[ $? -eq 2 ] && [ ! -s out.txt ] || { echo "FAIL missing argument: want exit 2 and no output"; fail=1; }
stderr_has missing-argument "'int' needs 2 argument(s)"
"$cli" ini car.ini count wheel0 frobnicate x >out.txt 2>err.txt
[ $? -eq 2 ] && [ ! -s out.txt ] || { echo "FAIL unknown operation: want exit 2 and no output"; fail=1; }
stderr_has unknown-operation "unknown operation 'frobnicate'"
"$cli" ini >/dev/null 2>err.txt
[ $? -eq 2 ] || { echo "FAIL no file: want exit 2"; fail=1; }

[ $fail -eq 0 ] && echo "cli ini: all checks passed"
exit $fail
