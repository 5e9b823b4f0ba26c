#!/usr/bin/env bash
# Looks at what the compiler and the linker made of the library.
#
#   symbols_test.sh state OBJECT...          no object holds a variable that outlives a call
#   symbols_test.sh exports LIBRARY LIST     the shared library shows what the list says, no more, and
#                                            nothing that would keep it loaded
set -uo pipefail
export LC_ALL=C

case "$1" in
  state)
    # Addresses that the loader fills in before the start are no state.
    objdump -tC "${@:2}" | awk '
      / file format / { object = $1 }
      / \.t?(data|bss)/ && !/ \.data\.rel\.ro|DW\.ref\./ && !/\t0+ / { print object " " $0; found = 1 }
      END { exit found }' ;;
  exports)
    # Whether a symbol is weak differs by compiler.
    nm -D --defined-only -C "$2" | sed -E 's/^[^ ]+ u /unique: /; s/^[0-9a-f]+ . //' | sort -u |
      diff <(sort -u "$3") - && exit 0
    echo "The symbols that $2 shows are not those of $3 (< list, > library)"
    exit 1 ;;
esac
