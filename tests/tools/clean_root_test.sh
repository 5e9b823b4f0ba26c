#!/usr/bin/env bash
# Installs the Debian packages in a root that holds a bare system and nothing else, uses them there as a
# user and as a host would, and takes them off again. Wants root, mmdebstrap and Debian's archive.
#
#   clean_root_test.sh SOURCE_DIR PACKAGE_DIR
set -euo pipefail
source_dir="$(realpath "$1")"
packages="$(realpath "$2")"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir "$work/given"
cp "$packages"/*.deb "$source_dir"/tests/consumer/* "$work/given"
rm -f "$work"/given/*-dbgsym_*.deb

cat > "$work/given/try.sh" << 'END'
set -eux
cd /given
apt-get install -qq -y --no-install-recommends ./zrteval_*.deb ./libzrtexpression1_*.deb > log 2>&1 || { cat log; exit 1; }
test "$(zrteval int '2+3*4')" = 20
ldd "$(command -v zrteval)" | grep libedit  # sessions have history and completion
zrteval int --data-dir /usr/share/zrtexpression x 2>&1 | grep -F '(-511): An operand'
test -s /usr/share/bash-completion/completions/zrteval
dpkg -L zrteval | grep man1/zrteval.1.gz
apt-get install -qq -y --no-install-recommends ./libzrtexpression-dev_*.deb g++ cmake make pkg-config \
  > log 2>&1 || { cat log; exit 1; }
for kind in static shared; do
  cmake -S . -B $kind -DHOST_TAKES=package -DHOST_COMPONENTS=$kind
  cmake --build $kind
  $kind/host | grep '^right '
done
g++ -std=c++20 main.cpp $(pkg-config --cflags --libs zrtexpression) -o by_pkg_config
./by_pkg_config | grep '^right '
apt-get purge -qq -y zrteval libzrtexpression-dev libzrtexpression1 > log 2>&1 || { cat log; exit 1; }
test -z "$(find /usr -name '*zrt*')"
END
# shellcheck disable=SC2016
mmdebstrap --quiet --variant=apt "--customize-hook=copy-in $work/given /" \
  '--customize-hook=chroot "$1" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root sh /given/try.sh' \
  bookworm /dev/null
echo 'The packages can be installed, used and taken off'
