#!/usr/bin/env bash
# Evaluates each example of the language's document over the scope file that stands in it. Knows of
# the evaluator what the host program prints.
#
#   language_test.sh PROGRAM LANGUAGE_DOCUMENT
set -uo pipefail

zrteval="$(realpath "$1")"
document="$(realpath "$2")"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1

# Each fenced block goes to a file of its own, such as 07.zrt-bits.
awk '/^```/ { name = name ? "" : sprintf("%02d.%s", ++count, substr($0, 4)); next }
     name { print > name }' "$document"
mv ./*.jsonc scope.jsonc
# The table of statuses says which name belongs to which number.
awk '{ print "s/^" $1 " " $2 "$/" $2 "/" }' ./*.zrt-status > names.sed

# What the host program prints for each line of a block's texts: a value, or a status by name.
outcomes() {
  case "$1" in
    zrt-write)
      while IFS= read -r text; do
        "$zrteval" bits --format raw "$text" | "$zrteval" encode
      done < texts
      return ;;
    zrt-bits) "$zrteval" bits --length --batch --scope scope.jsonc < texts 2> errors |
      sed -E 's/^0x(.*) /\1\//' > values ;;
    *) "$zrteval" "${1#zrt-}" --batch --scope scope.jsonc < texts > values 2> errors ;;
  esac
  awk 'FILENAME == "errors" { sub(/^.*line /, ""); number = $0 + 0
         sub(/^.*": -5/, "-5"); sub(/: .*/, ""); failed[number] = $0; next }
       FILENAME == "values" { values[++count] = $0; next }
       FNR in failed { print failed[FNR]; next }
       { print values[++used] }' errors values texts
}

examples=0
failures=0
for block in *.zrt-*; do
  kind="${block#*.}"
  [[ $kind != zrt-status ]] || continue
  # "text"  ->  outcome  ; remark
  sed -E 's/ +->.*//; s/^"(.*)"$/\1/' "$block" > texts
  sed -E 's/^.* -> +([^ ]+)( *| +;.*)$/\1/' "$block" > expected
  outcomes "$kind" | sed -f names.sed > actual
  diff expected actual > difference || { ((++failures)); echo "$block:"; cat difference; }
  examples=$((examples + $(wc -l < texts)))
done
echo "$examples examples, $failures blocks that differ"
((failures == 0 && examples > 100))
