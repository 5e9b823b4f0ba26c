#!/usr/bin/env bash
# Looks at what the compiler and the linker made of the library.
#
#   symbols_test.sh state OBJECT...          no object holds a variable that outlives a call
#   symbols_test.sh exports LIBRARY LIST     the shared library shows what the list says, no more, and
#                                            nothing that would keep it loaded
#   symbols_test.sh imports LIBRARY          it asks the platform for memory, bytes and the current
#                                            directory alone: it prints nothing, ends nothing, and
#                                            reads no file, environment, clock or locale
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
  imports)
    nm -D --undefined-only "$2" | sed -E 's/^ *[Uwv] //; s/@.*//' | c++filt | sort -u |
      grep -vxE 'mem(chr|cmp|cpy|move|set)|bcmp|str(cmp|len)|madvise|_getcwd|_chdir|__errno_location' |
      grep -vxE '__cxa_.*|__gxx_personality_v0|_Unwind_Resume|__gmon_start__|_ITM_.*' |
      grep -vxE '__libc_single_threaded|__stack_chk_fail|__cpu_(model|indicator_init)' |
      grep -vxE 'operator (new|delete).*|std::(nothrow|terminate\(\)|from_chars\(.*|__throw_.*)' |
      grep -vE '^std::__cxx11::basic_string<' |
      grep -vxE '(typeinfo|vtable) for .*' |
      grep -vE '^(Error(Handler|Element)|LByteBuffer|LString|QLM(DataField|PlusData)|RBTree|ZRTToken(s|Tree))::' |
      grep -vxE 'util_.*' || exit 0
    echo "What $2 asks for above is not its business"
    exit 1 ;;
esac
