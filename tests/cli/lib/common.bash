# What the command-line check scripts share, sourced as
#   source "$(dirname "$0")/lib/common.bash" "$@"
# with the scripts' own arguments (the tyrograph-cli binary, the source
# folder): cli, src, fail, a scratch folder made the working folder and
# removed at exit, and the comparisons check and has.
cli=$1
src=$2
fail=0
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
cd "$tmp" || exit 1
check() {  # expected actual label
  if [ "$1" != "$2" ]; then echo "FAIL $3: expected '$1', got '$2'"; fail=1; fi
}
has() {  # file text label
  grep -qF -- "$2" "$1" || { echo "FAIL $3: no '$2' in:"; cat "$1"; fail=1; }
}
