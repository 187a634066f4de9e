#!/usr/bin/env bash
# The README's command-line examples, run as written in a scratch folder that
# sees the source folder's data/ (files the examples write land there):
# every "    $ tyrograph-cli ..." line and the indented output shown under it
# (blank lines included, up to the next text or command; trailing blanks of
# a line do not count). A changed option, message or number shows up here
# before a reader finds it.
cli=$1
src=$2
fail=0
n=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/run/docs"
ln -s "$src/data" "$work/run/data"
cat >"$work/run.sh" <<RUN
tyrograph-cli() { "$cli" "\$@"; }
cd "$work/run"
RUN

# The fitting commands' closing line holds the seconds they took.
untimed() { sed 's/^\(iterations [0-9]*\), [0-9.]* s$/\1, ... s/'; }

check() {  # command expected
  n=$((n + 1))
  local got
  got=$( (cat "$work/run.sh"; printf '%s\n' "$1") | bash 2>/dev/null | sed 's/[ \t]*$//' | untimed)
  if [ "$got" != "$(printf '%s\n' "$2" | untimed)" ]; then
    echo "FAIL README example: \$ $1"
    diff <(printf '%s\n' "$2") <(printf '%s\n' "$got") | head -20
    fail=1
  fi
}

cmd=""
expected=""
in_example=0
while IFS= read -r line || [ -n "$line" ]; do
  if [[ "$line" == "    \$ "*tyrograph-cli* ]]; then
    [ -n "$cmd" ] && check "$cmd" "$(printf '%s' "$expected")"
    cmd=${line#    \$ }
    expected=""
    in_example=1
  elif [ $in_example = 1 ] && { [[ "$line" == "    "* ]] || [ -z "$line" ]; }; then
    expected+="${expected:+$'\n'}${line#    }"
  else
    [ -n "$cmd" ] && check "$cmd" "$(printf '%s' "$expected")"
    cmd=""
    in_example=0
  fi
done <"$src/README.md"
[ -n "$cmd" ] && check "$cmd" "$(printf '%s' "$expected")"
[ $n -ge 6 ] || { echo "FAIL only $n examples found in README.md"; fail=1; }
[ $fail = 0 ] && echo "ok   $n README examples"
exit $fail
