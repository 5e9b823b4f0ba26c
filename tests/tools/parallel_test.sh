#!/usr/bin/env bash
# A batch of objects, at once and spread over processes by GNU parallel: the same answers, in order. Ends
# with 77, which is no failure, where there is no GNU parallel.
#
#   parallel_test.sh PROGRAM DATA_DIR
set -uo pipefail

program="$(realpath "$1")"
scope="$(realpath "$2")/example-scope.jsonc"
if ! parallel --version 2> /dev/null | grep -q '^GNU parallel'; then
  echo 'There is no GNU parallel here: apt-get install parallel'
  exit 77
fi
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
export HOME="$work"  # where it keeps its settings

# Values, failures, rows that move on, scopes of their own, and objects that are none.
awk 'BEGIN {
  for (i = 1; i <= 20000; ++i) {
    text[0] = "\"kind\":\"int\",\"text\":\"rows*" i "+1\""
    text[1] = "\"kind\":\"bits\",\"text\":\"fuses@fuses@id\",\"scope\":{\"data\":{\"local\":{\"id\":\"0x" \
              sprintf("%08X", i) "\"}}}"
    text[2] = "\"kind\":\"float\",\"text\":\"voltage/" i % 7 "\""
    text[3] = "\"kind\":\"bits\",\"text\":\"fuses@fuses@fuses@fuses\""
    text[4] = "\"kind\":\"int\",\"text\":" i
    print "{\"line\":" i "," text[i % 5] "}"
  }
}' > tasks.jsonl
"$program" batch --scope "$scope" < tasks.jsonl > expected
[[ $? == 1 && $(wc -l < expected) == 20000 ]] || { echo 'not every object is answered'; exit 1; }
parallel --will-cite --pipe --block 100k --keep-order -j 4 "$program" batch --scope "$scope" \
  < tasks.jsonl > actual
cmp expected actual
