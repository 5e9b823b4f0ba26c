#!/usr/bin/env bash
# Compiles each header that a host includes alone, under warnings that hosts have on.
#
#   headers_test.sh COMPILER SOURCE_DIR
set -uo pipefail
cd "$2" || exit 1

warnings=(-Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
          -Wcast-qual -Wnon-virtual-dtor -Werror)
status=0
while IFS= read -r header; do
  "$1" -std=c++20 "${warnings[@]}" -fsyntax-only -Iinclude -Ioutside -x c++ - \
    <<< "#include \"$header\"" || { echo "$header does not compile alone"; status=1; }
done < <(find include outside -name '*.h' -printf '%P\n')
exit "$status"
