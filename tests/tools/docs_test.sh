#!/usr/bin/env bash
# Runs the documents. Each example of language.md is evaluated over the scope file that stands in it;
# each C++ block of embedding.md is code of docs_test.cpp, where comments fence it, and the two must
# be equal to the letter. Knows of the evaluator what the host program prints.
#
#   docs_test.sh PROGRAM SOURCE_DIR
set -uo pipefail

zrteval="$(realpath "$1")"
source_dir="$(realpath "$2")"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1

# The blocks of a file, each in a file of its own, such as 07.zrt-bits, without the fence's indent.
split() {
  mkdir "$1" && (cd "$1" && awk '
    /^ *(\/\/ )?```/ {
      indent = match($0, /[^ ]/)
      kind = substr($0, index($0, "```") + 3)
      name = name ? "" : sprintf("%02d.%s", ++count, kind)
      next
    }
    name { print substr($0, indent) > name }' "$source_dir/$2")
}
split embedding docs/embedding.md
split code tests/docs_test.cpp
cat embedding/*.cpp > embedding.cpp
cat code/*.cpp > code.cpp
[[ -s code.cpp ]] && diff embedding.cpp code.cpp || exit 1
mv embedding/*.zrt-list ErrorList.txt
"$zrteval" int --data-dir . x 2> message
grep -q 'Neither a known name nor a number.$' message || { cat message; exit 1; }

split language docs/language.md
cd language || exit 1
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
