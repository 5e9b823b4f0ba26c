#!/usr/bin/env bash
# Makes a release in two clones, in folders of different names, and compares them byte by byte; so are the
# libraries and the program of the preset reproducible. What must not be released is refused, and lintian
# finds no error.
#
#   release_test.sh SOURCE_DIR
set -uo pipefail
source_dir="$(realpath "$1")"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
failures=0
fail() {
  printf 'FAILED: %s\n' "$@"
  failures=$((failures + 1))
}

clones=("$work/one" "$work/another-place")
for clone in "${clones[@]}"; do git clone -q "$source_dir" "$clone" || exit 1; done
cd "${clones[0]}" || exit 1

# refused TEXT OPTION...: no release is made, for that reason. The change that is the reason goes.
refused() {
  local said
  said="$(./release "${@:2}" 2>&1)" && fail "a release is made: $1"
  [[ $said == *"No release: "*"$1"* ]] || fail "not refused with \"$1\"" "$said"
  git reset -q --hard "$start" && git clean -qfd
}
start="$(git rev-parse HEAD)"
commit() { git -c user.name=test -c user.email=test@test.invalid commit -qam test; }
touch new-file
refused 'not committed' --try
sed -i 's/^\(#define ZRT_VERSION  *\)"[0-9.]*"/\1"9.8.7"/' include/zrtexpression/version.h
commit
refused 'the version is 9.8.7' --try
sed -i 's/^## \[Unreleased\]/&\n\n- Something new./' CHANGELOG.md
commit
refused 'what is not released' --try
refused 'it takes --try' --dry
if grep -q '^License: not-chosen-yet' debian/copyright; then refused 'has not chosen a licence'; fi

for clone in "${clones[@]}"; do
  "$clone/release" --try > "$work/log" 2>&1 || fail "no release in $clone:" "$(tail -n 30 "$work/log")"
  (cd "$clone" && cmake --preset reproducible && cmake --build --preset reproducible --target zrteval) \
    > "$work/log" 2>&1 || fail "no reproducible build in $clone:" "$(tail -n 30 "$work/log")"
done
cmp {"${clones[0]}","${clones[1]}"}/build/dist/SHA256SUMS || fail 'the releases differ'
(($(wc -l < build/dist/SHA256SUMS) >= 4)) || fail "too few files: $(< build/dist/SHA256SUMS)"
for file in bin/zrteval src/libzrtexpression.so outside/libzrtoutside.so; do
  cmp {"${clones[0]}","${clones[1]}"}"/build/reproducible/$file" || fail "the builds of $file differ"
done
lintian --allow-root --fail-on error build/dist/*.deb || fail 'lintian finds errors'
((failures == 0)) && cp -r build/dist "$source_dir/build/"
