#!/usr/bin/env bash
# tyrograph-cli expr and the dispatcher's usage rules.
cli=$1
fail=0
check() {  # expected actual label
  if [ "$1" != "$2" ]; then echo "FAIL $3: expected '$1', got '$2'"; fail=1; fi
}
check 260 "$("$cli" expr '$ff+#101')" hex+binary
check -8 "$("$cli" expr '2*-3+1')" unary-rest
check 8 "$("$cli" expr 010)" octal
check 0 "$("$cli" expr '7/0')" div-zero

"$cli" --help | grep -q '^  expr TEXT' || { echo "FAIL --help lacks expr"; fail=1; }
out=$("$cli" no-such-thing 2>/tmp/cli_err.$$); rc=$?
check 2 "$rc" unknown-exit
check "" "$out" unknown-stdout
grep -q "unknown subcommand 'no-such-thing'" /tmp/cli_err.$$ || { echo "FAIL unknown: no message"; fail=1; }
grep -q '^usage: tyrograph-cli' /tmp/cli_err.$$ || { echo "FAIL unknown: no usage on stderr"; fail=1; }
"$cli" expr >/dev/null 2>&1; check 2 "$?" expr-no-arg
rm -f /tmp/cli_err.$$
exit $fail
