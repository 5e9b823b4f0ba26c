#!/usr/bin/env bash
# Looks at what the compiler and the linker made of the library.
#
#   symbols_test.sh state OBJECT...          no object holds a variable that outlives a call
#   symbols_test.sh exports LIBRARY LIST     the shared library shows what the list says, no more
set -uo pipefail
export LC_ALL=C

case "$1" in
  state)
    # What only the loader writes to is no state: addresses that it fills in before the start.
    size -A "${@:2}" | awk '
      /:$/ { object = $1 }
      /^\.t?(data|bss)/ && !/^\.data\.rel\.ro|\.DW\.ref\./ && $2 > 0 {
        print object ": " $1 " has " $2 " bytes"; found = 1
      }
      END { exit found }' ;;
  exports)
    nm -D --defined-only -C "$2" | cut -d ' ' -f 2- | sort -u |
      diff <(sort -u "$3") - && exit 0
    echo "The symbols that $2 shows are not those of $3 (< list, > library)"
    exit 1 ;;
esac
