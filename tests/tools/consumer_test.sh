#!/usr/bin/env bash
# Builds and runs a host of the library, one that finds the installed package or one that takes the
# sources in. The package lies where its prefix was moved to, under a name with a blank.
#
#   consumer_test.sh package|subdirectory SOURCE_DIR BUILD_DIR COMPILER IS_SHARED
set -euo pipefail
way="$1" source_dir="$2" build_dir="$3" compiler="$4" is_shared="$5"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cp -r "$source_dir/tests/consumer" "$work/host"
version="$(sed -nE 's/^#define ZRT_VERSION +"(.*)"/\1/p' "$source_dir/include/zrtexpression/version.h")"

options=(-G Ninja "-DCMAKE_CXX_COMPILER=$compiler" -DCMAKE_BUILD_TYPE=Debug)
if [[ $way == package ]]; then
  cmake --install "$build_dir" --prefix "$work/first" > "$work/log"
  mv "$work/first" "$work/moved prefix"
  options+=("-DCMAKE_PREFIX_PATH=$work/moved prefix")
  [[ $("$work/moved prefix/bin/zrteval" int 2+3*4) == 20 ]]
else
  ln -s "$source_dir" "$work/host/zrtexpression"
  options+=("-DBUILD_SHARED_LIBS=$is_shared")
fi

cmake -S "$work/host" -B "$work/build" "${options[@]}" > "$work/log" || { cat "$work/log"; exit 1; }
cmake --build "$work/build" --target host > "$work/log" || { cat "$work/log"; exit 1; }
output="$("$work/build/host")"
[[ $output == "right (0x55^7)@0x01 $version" ]] || { echo "The host says: $output"; exit 1; }
