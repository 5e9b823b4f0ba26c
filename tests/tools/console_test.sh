#!/usr/bin/env bash
# Runs tables of commands and what they print: "$ command", its output on both streams as it comes, and
# "[STATUS]" if that is not 0. Lines that begin with "#" say what a table is about. Knows nothing of the
# program but its name.
#
#   console_test.sh PROGRAM DATA_DIR TABLE...
set -uo pipefail

program="$(realpath "$1")"
data="$(realpath "$2")"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
shift 2
mapfile -t tables < <(realpath "$@")
PATH="$(dirname "$program"):$PATH"
export LC_ALL=C.UTF-8
unset NO_COLOR

# A terminal of so many columns around a command; its line ends are made those of a file.
on_terminal() {
  local columns="$1"
  shift
  TERM=xterm script -qec "stty cols $columns; $*" typescript < /dev/null | tr -d '\r'
}
export -f on_terminal

failures=0 commands=0
for table in "${tables[@]}"; do
  rm -rf "$work/run"
  mkdir "$work/run"
  cd "$work/run" || exit 1
  cp "$data/example-scope.jsonc" names.json
  while IFS= read -r line; do
    printf '%s\n' "$line"
    [[ $line == '$ '* ]] || continue
    timeout 60 bash -c "${line#\$ }" 2>&1 < /dev/null
    status=$?
    ((status == 0)) || echo "[$status]"
  done < <(grep -E '^[$#] ' "$table") > "$work/actual"
  diff <(grep -v '^$' "$table") <(grep -v '^$' "$work/actual") || {
    echo "$table (< wanted, > printed)"
    ((++failures))
  }
  commands=$((commands + $(grep -c '^\$ ' "$table")))
done
echo "$commands commands"
((failures == 0 && commands > 0))
