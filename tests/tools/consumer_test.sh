#!/usr/bin/env bash
# Builds and runs hosts of the library, one a row: KIND and how the library is linked. What is installed,
# from each build tree that is named into one prefix, lies where that was moved to, under a name with a
# blank. Each host says of the library's version what all that tells it must agree with.
#
#   consumer_test.sh SOURCE_DIR COMPILER STANDARD KIND:static|shared... -- BUILD_DIR...
set -uo pipefail
source_dir="$1" compiler="$2" standard="$3"
shift 3
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1

kinds=()
while [[ $1 != -- ]]; do kinds+=("$1"); shift; done
shift
version="$(sed -nE 's/^#define ZRT_VERSION +"(.*)"/\1/p' "$source_dir/include/zrtexpression/version.h")"
warnings=(-Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Werror)

# quietly COMMAND...: what it says is shown only if it fails.
quietly() { "$@" > log 2>&1 || { cat log; return 1; }; }

for tree in "$@"; do quietly cmake --install "$tree" --prefix "$work/first" || exit 1; done
(($# == 0)) || mv first 'moved prefix'
prefix="$work/moved prefix"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
export LD_LIBRARY_PATH="$prefix/lib"  # of no effect on those whose build says where to look

# by_cmake OPTION...: the host, built with CMake.
by_cmake() {
  cp -r "$source_dir/tests/consumer" source
  quietly cmake -S source -B build -G Ninja "-DCMAKE_CXX_COMPILER=$compiler" -DCMAKE_BUILD_TYPE=Debug \
    "-DCMAKE_CXX_STANDARD=$standard" "$@" && quietly cmake --build build && mv build/host .
}

# by_hand FLAG...: the host, in one command. Compilers of these years know C++23 as c++2b alone.
by_hand() {
  quietly "$compiler" "-std=c++${standard/23/2b}" "${warnings[@]}" "$source_dir/tests/consumer/main.cpp" "$@" \
    -o host
}

# refused TEXT OPTION...: configuring fails and says TEXT.
refused() {
  ! cmake -S source -B refused -G Ninja "${@:2}" > log 2>&1 && [[ $(tr -s ' \n' ' ' < log) == *"$1"* ]] ||
    { echo "this is not refused with \"$1\": ${*:2}"; cat log; return 1; }
}

# A host with closed libraries of its own: it installs the library without the stand-ins, and the
# package asks for the target that it was built over.
closed() {
  cp -r "$source_dir/outside" devices
  by_cmake -DHOST_TAKES=sources "-DHOST_SOURCES=$source_dir" "-DHOST_DEVICES=$work/devices" \
    "-DBUILD_SHARED_LIBS=$is_shared" && quietly cmake --install build --prefix "$work/over devices" &&
    quietly "$work/host" || return 1
  if [[ -n $(find 'over devices' -name '*outside*' -o -name 'hq4170.h') ]]; then
    find 'over devices'
    return 1
  fi
  local options=(-DHOST_TAKES=package "-DCMAKE_PREFIX_PATH=$work/over devices")
  rm -rf build && refused 'device_libraries: define it' "${options[@]}" &&
    rm -rf source host && by_cmake "${options[@]}" "-DHOST_DEVICES=$work/devices"
}

# What tells a version tells the same one.
versions() {
  local told
  told="$(
    [[ ! -e $prefix/bin/zrteval ]] || "$prefix/bin/zrteval" --version | sed 's/^zrteval //'
    pkg-config --modversion zrtexpression zrtexpression-outside
    sed -nE 's/^set\(PACKAGE_VERSION "(.*)"\)/\1/p' "$prefix"/lib/cmake/zrtexpression/*Version.cmake
    sed -nE 's/^## \[([0-9.]+)\].*/\1/p' "$source_dir/CHANGELOG.md" | head -n 1
    for library in "$prefix"/lib/*.so.*.*; do
      [[ -e $library ]] || continue
      echo "${library##*.so.}"
      objdump -p "$library" | awk -v v="${version#*.}" '/SONAME/ { sub(/.*\.so\./, ""); print $0 "." v }'
    done
  )"
  [[ $(sort -u <<< "$told") == "$version" ]] || { echo "not all tell $version: $told"; return 1; }
}

build() {
  local is_shared=OFF static=(--static) link=(-l:libzrtexpression.a -l:libzrtoutside.a -DZRT_STATIC)
  [[ $linkage == static ]] || { is_shared=ON static=() link=(-lzrtexpression -lzrtoutside); }
  local flags
  case "$kind" in
    package) by_cmake -DHOST_TAKES=package "-DCMAKE_PREFIX_PATH=$prefix" "-DHOST_COMPONENTS=$linkage" &&
      refused 'not installed here as lukewarm' -DHOST_TAKES=package "-DCMAKE_PREFIX_PATH=$prefix" \
        -DHOST_COMPONENTS=lukewarm && versions ;;
    tree) by_cmake -DHOST_TAKES=package "-Dzrtexpression_DIR=$tree" ;;
    sources | fetch) by_cmake "-DHOST_TAKES=$kind" "-DHOST_SOURCES=$source_dir" \
      "-DBUILD_SHARED_LIBS=$is_shared" ;;
    closed) closed ;;
    pkg-config)
      eval "flags=($(pkg-config "${static[@]}" --cflags --libs zrtexpression))"
      by_hand "${flags[@]}" ;;
    bare) flags=(-fno-exceptions -fno-rtti) ;;&
    command | bare) by_hand ${flags[@]+"${flags[@]}"} "-I$prefix/include/zrtexpression" \
      "-I$prefix/include/zrtexpression-outside" "-L$prefix/lib" "${link[@]}" ;;
    *) echo "There is no kind $kind"; return 1 ;;
  esac
}

tree="${1:-}"
failures=0
for row in "${kinds[@]}"; do
  kind="${row%:*}" linkage="${row#*:}"
  [[ $kind == tree && $linkage == shared && $# -gt 1 ]] && tree="$2"
  rm -rf source build refused host
  output=''
  if build && output="$("$work/host")" && [[ $output == "right (0x55^7)@0x01 $version $version $version" ]]; then
    echo "$row is right"
  else
    echo "FAILED: $row: ${output:-}"
    ((++failures))
  fi
done
((failures == 0))
