# For the scripts at the root: what this machine needs, and building a preset. Sourced, not run.
#
#   zrt_need PACKAGE=WITNESS...   installs the packages whose witness, a command or a file, is missing
#   zrt_want PACKAGE=WITNESS...   the same, but goes on without them
#   zrt_build PRESET [TARGET]     configures where needed and builds; speaks only if it fails
#
# A script that cannot get as far as its job ends with this status, told apart from the job's own.
readonly ZRT_NOT_PREPARED=125

zrt_root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"

readonly ZRT_PACKAGES=(
  cmake=cmake ninja-build=ninja g++=g++ libcli11-dev=/usr/include/CLI/CLI.hpp
  nlohmann-json3-dev=/usr/include/nlohmann/json.hpp libgtest-dev=/usr/include/gtest/gtest.h)

# What the host program is better with, and can do without.
readonly ZRT_WANTED=(libedit-dev=/usr/include/histedit.h)
readonly ZRT_CLANG=(clang=clang++ libclang-rt-14-dev=/usr/lib/llvm-14/lib/clang/14.0.6/lib/linux)

# What the benchmarks stand beside, and nothing else of this project needs.
readonly ZRT_BENCH_PACKAGES=(
  libbenchmark-dev=/usr/include/benchmark libfparser-dev=/usr/include/fparser.hh
  liblua5.4-dev=/usr/include/lua5.4 libmuparser-dev=/usr/include/muParser.h
  libgmp-dev=/usr/include/gmpxx.h libboost-dev=/usr/include/boost/multiprecision/cpp_int.hpp
  llvm-14-dev=/usr/include/llvm-14/llvm/ADT/APInt.h libbitarray-dev=/usr/include/bit_array.h
  libmodpbase64-dev=/usr/include/modp_b16.h)

zrt_say() { printf '%s\n' "$*" >&2; }

# The package of each "package=witness" whose witness is not there.
zrt_missing() {
  local entry witness
  for entry in "$@"; do
    witness="${entry#*=}"
    if [[ $witness == /* ]]; then
      [[ -e $witness ]] || printf '%s\n' "${entry%%=*}"
    else
      command -v "$witness" > /dev/null || printf '%s\n' "${entry%%=*}"
    fi
  done
}

# Runs apt-get. A machine that was just started may still be updating itself: as long as another
# program holds one of the locks, this waits, five minutes at the most. (apt-get itself can wait, but
# not for every lock, and without a word.)
zrt_apt() {
  local log="$1" waits_until=$((SECONDS + 300)) has_told=''
  shift
  until LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -qq -o Dpkg::Use-Pty=0 "$@" \
    > "$log" 2>&1 < /dev/null; do
    grep -Eq 'Could not get lock|Unable to (acquire|lock)' "$log" || return 1
    if ((SECONDS >= waits_until)); then
      zrt_say 'Another program is still installing packages: try again when it is done'
      return 2
    fi
    [[ -n $has_told ]] || zrt_say 'Another program is installing packages: waiting for it ...'
    has_told=yes
    sleep 2
  done
}

zrt_install() {
  local log="$1" install=(install -y --no-install-recommends)
  shift
  zrt_apt "$log" "${install[@]}" "$@" && return
  (($? == 1)) && zrt_apt "$log" update && zrt_apt "$log" "${install[@]}" "$@"
}

zrt_need() {
  local missing log
  mapfile -t missing < <(zrt_missing "$@")
  ((${#missing[@]})) || return 0
  if [[ $(id -u) == 0 ]] && command -v apt-get > /dev/null; then
    zrt_say "Installing ${missing[*]} ..."
    log="$(mktemp)"
    zrt_install "$log" "${missing[@]}" || tail -n 5 "$log" >&2
    rm -f "$log"
    mapfile -t missing < <(zrt_missing "$@")
    ((${#missing[@]})) || return 0
    zrt_say "These packages are missing and could not be installed: ${missing[*]}"
  else
    zrt_say "These packages are missing, and only root can install them: ${missing[*]}"
  fi
  zrt_say "On Debian 12: apt-get install --no-install-recommends ${missing[*]}"
  exit "$ZRT_NOT_PREPARED"
}

# The same for what can be done without: who cannot install it is not troubled.
zrt_want() {
  [[ $(id -u) != 0 ]] || (zrt_need "$@") || true
}

# Runs a step quietly; if it fails, shows what it said and ends the script.
zrt_quietly() {
  local log="$1"
  shift
  if ! (cd "$zrt_root" && "$@") > "$log" 2>&1 < /dev/null; then
    cat "$log" >&2
    zrt_say "This failed: $*"
    exit "$ZRT_NOT_PREPARED"
  fi
}

zrt_build() {
  local preset="$1" dir="$zrt_root/build/$1"
  # A tree that someone else configured may lack the parts whose packages were not there yet.
  local stamp="$dir/configured"
  mkdir -p "$dir"
  if [[ ! -e $dir/build.ninja || ! -e $stamp || $zrt_root/CMakePresets.json -nt $stamp ]]; then
    zrt_say "Configuring $preset ..."
    zrt_quietly "$dir/configure.log" cmake --preset "$preset"
    touch "$stamp"
  fi
  [[ -t 2 ]] && printf 'Building %s ...\r' "$preset" >&2
  zrt_quietly "$dir/build.log" cmake --build --preset "$preset" ${2:+--target "$2"} -- --quiet
  [[ -t 2 ]] && printf '\033[K' >&2
  return 0
}
