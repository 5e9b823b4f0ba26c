#!/usr/bin/env bash
# What a person meets who prepares, configures and builds: a machine that is busy installing, packages
# that are not there, options that lead nowhere. Knows nothing of what is built.
#
#   build_test.sh CMAKE SOURCE_DIR
set -uo pipefail

cmake="$1"
source_dir="$(realpath "$2")"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0

fail() {
  printf 'FAILED: %s\n' "$@" >&2
  failures=$((failures + 1))
}

# ---- Packages that ./run and ./test install -------------------------------------------------------

# A machine whose root is everybody and whose apt-get answers with the next line of `answers`: a
# complaint; "install", which puts the witness in its place; "ok".
mkdir fake
printf '#!/bin/sh\necho 0\n' > fake/id
printf '#!/bin/sh\necho "sleep $*" >> calls\n' > fake/sleep
cat > fake/apt-get << 'END'
#!/bin/sh
for word; do case "$word" in install | update) echo "$word" >> calls ;; esac; done
answer="$(head -n 1 answers)"
sed -i 1d answers
case "$answer" in
  install) : > witness ;;
  ok) ;;
  *) echo "$answer" >&2; exit 100 ;;
esac
END
chmod +x fake/*

# need STATUS CALLS ANSWER...: what zrt_need does with these answers, said on standard error in `said`.
need() {
  local status="$1" calls="$2"
  shift 2
  rm -f witness calls
  printf '%s\n' "$@" > answers
  # shellcheck disable=SC2016
  PATH="$work/fake:$PATH" bash -c 'set -euo pipefail; source "$1/cmake/build.sh"
    zrt_need "thing=$PWD/witness"' bash "$source_dir" 2> said
  got=$?
  [[ $got == "$status" ]] || fail "zrt_need ends with $got, not $status: $(cat said)"
  [[ $(tr '\n' ' ' < calls) == "$calls " ]] || fail "zrt_need calls $(cat calls)" "instead of $calls"
}
held='E: Could not get lock /var/lib/dpkg/lock-frontend. It is held by process 7 (apt)'
need 0 'install' install
[[ $(cat said) == 'Installing thing ...' ]] || fail "it says $(cat said)"
need 0 'install sleep 2 install sleep 2 install' "$held" 'E: Unable to lock directory /var' install
[[ $(grep -c 'waiting for it' said) == 1 ]] || fail "it says $(cat said)"
need 0 'install update sleep 2 update install' 'E: Unable to locate package thing' "$held" ok install
need 125 'install update install' 'E: no' ok 'E: Unable to locate package thing'
grep -q 'E: Unable to locate' said && grep -q 'On Debian 12: apt-get install' said ||
  fail "it says $(cat said)"

# ---- Configuring ----------------------------------------------------------------------------------

# configure STATUS TEXT OPTION...: TEXT is a part of what cmake says, its line breaks being blanks.
configure() {
  local status="$1" text="$2" got
  shift 2
  rm -rf build
  "$cmake" -S "$source_dir" -B build "$@" > said 2>&1
  got=$?
  ((got == 0)) || got=1
  [[ $got == "$status" ]] || fail "configuring with $* ends with $got: $(cat said)"
  [[ $(tr -s ' \n' ' ' < said) == *"$text"* ]] || fail "configuring with $* says" "$(cat said)"
}
no_packages=(-DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON -DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON
  -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON)
configure 0 'without the host program zrteval, since this is not found: CLI11 (libcli11-dev on Debian), nl' \
  "${no_packages[@]}"
grep -q 'without the tests, since this is not found: GTest' said || fail 'nothing is said of the tests'
configure 1 'ZRT_BUILD_TOOLS is ON, but this is not found: CLI11' "${no_packages[@]}" -DZRT_BUILD_TOOLS=ON
configure 1 'ZRT_BUILD_TESTS is ON, but this is not found: GTest' "${no_packages[@]}" -DZRT_BUILD_TESTS=ON
configure 1 'ZRT_CLOSED_LIBRARIES is "nosuch", which is no target: define it' -DZRT_CLOSED_LIBRARIES=nosuch

((failures == 0)) || printf '%d checks failed\n' "$failures" >&2
((failures == 0))
