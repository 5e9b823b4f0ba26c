#!/usr/bin/env bash
# Runs the documents and the examples of the public headers. Their C++ is code of docs_test.cpp,
# where comments fence it by file, and the two must be equal but for the width of blanks. Commands
# are run one after the other, each example of the language is evaluated over the scope file that
# stands beside it. Knows of the evaluator what the host program prints.
#
#   docs_test.sh PROGRAM SOURCE_DIR EXAMPLE...
set -uo pipefail

zrteval="$(realpath "$1")"
source_dir="$(realpath "$2")"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
PATH="$(dirname "$zrteval"):$PATH"

# Noted in a file, since some of the work is done in pipes.
: > "$work/failures"
fail() { printf '%s\n' "$*" | tee -a "$work/failures"; }

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

# The examples in a header's comments: what stands three blanks behind the slashes.
header_examples() { sed -nE 's#^ *///?   ([^ ].*)#\1#p' "$source_dir/$1"; }

# Whether docs_test.cpp holds the C++ on standard input under that name.
is_run_as() {
  cat code/*."$1" > expected 2> /dev/null
  diff -b - expected || fail "The C++ of $1 (< there, > docs_test.cpp) is not what is run"
}

# Commands that are not run here, and who runs them.
is_exempt() {
  case "$1" in
    './run '[^a-z]*) ;;               # shows a choice of the language: nothing to compare with
    ./test* | ./check* | .ci/run*) ;; # would run this test
    ./bench* | ./fuzz* | ./matrix*) ;; # take minutes, and tell times
    ./page*) ;;                       # needs another compiler and a browser
    'parallel '*) ;;                  # parallel_test.sh does it where there is one
    'cmake '* | 'g++ '*) ;;           # consumer_test.sh builds, installs and takes in
    ./release* | ./manual*) ;;        # ./check tries them, with packages that this needs not
    *) return 1 ;;
  esac
}

# Runs the commands of a block, "$ command" with what it prints below it, and compares.
run_commands() {
  awk '/^\$ / { command = substr($0, 3); print command > sprintf("%02d.command", ++count); next }
       { print > sprintf("%02d.output", count) }' "$1"
  local command text
  for command in [0-9]*.command; do
    text="$(< "$command")"
    is_exempt "$text" && continue
    bash -c "$text" > actual 2>&1 < /dev/null
    touch "${command%.command}.output"
    diff "${command%.command}.output" actual || fail "$1: $text (< told, > printed)"
    ((++commands))
  done
  rm -f [0-9]*.command [0-9]*.output
}

# What a command in the documents may find: the example's scope, some bytes, the wrong scope file
# that scope-file.md shows refused, and ./run, which hands its arguments on.
split scope-file docs/scope-file.md
cp -r "$source_dir/data" .
printf 'a%.0s' {1..100} > image.bin
sed 's/"size": 12/"size": 4294967296/' scope-file/*.jsonc > my.json
ln -s "$zrteval" run
for example in "${@:3}"; do ln -s "$example" .; done
cp "$source_dir/examples/device.template" .

split code tests/docs_test.cpp
cp "$source_dir/examples/first.cpp" code/00.embedding.md
commands=0
for document in $(cd "$source_dir" && echo ./*.md docs/*.md); do
  name="$(basename "$document")"
  split "blocks-$name" "$document"
  cat "blocks-$name"/*.cpp 2> /dev/null | is_run_as "$name"
  cat "blocks-$name"/*.console > "console-$name" 2> /dev/null && run_commands "console-$name"
  # A host's build files are those of the consumer, but for where the closed libraries come from.
  cat "blocks-$name"/*.cmake 2> /dev/null | sed 's/ *#.*//' | grep -v device_libraries |
    while IFS= read -r line; do
      grep -qF -- "$line" "$source_dir/tests/consumer/CMakeLists.txt" || echo "$line"
    done > missing
  [[ ! -s missing ]] || fail "$name tells what tests/consumer does not do: $(< missing)"
done
# Pictures are what the command in the comment above them draws.
pictures=0
while IFS= read -r command; do
  file="$(grep -oE 'docs/pictures/[a-z]+\.svg' <<< "$command")"
  bash -c "${command/"$file"/drawn.svg}" > actual 2>&1 < /dev/null
  cmp "$source_dir/$file" drawn.svg || fail "$file is not what this draws: $command"
  ((++pictures))
done < <(cd "$source_dir" && sed -nE 's/^<!-- (zrteval .* --svg .*) -->$/\1/p' ./*.md docs/*.md | sort -u)
for file in "$source_dir"/docs/pictures/*.svg; do
  grep -qF -- "--svg docs/pictures/${file##*/} " "$source_dir"/docs/*.md || fail "$file is not used"
done
# Source files and folders that are named are there.
while IFS= read -r name; do
  [[ -n $(cd "$source_dir" && find include outside src tests benchmarks tools web examples data docs \
    -path "*/${name%/}" -o -path "${name%/}") ]] || fail "There is no $name"
done < <(cd "$source_dir" && cat README.md CONTRIBUTING.md SECURITY.md docs/*.md |
  grep -oE '`([A-Za-z0-9_/]+\.(h|cpp|sh|py)|[a-z]+(/[a-z]+)*/)`' | tr -d '`' | sort -u)
for header in ZRTExpression.h RowDataStream.h ErrorCodes.h; do
  header_examples "include/$header" | is_run_as "$header"
done
# Of these the example stands in the opening comment, and has lines that go further in.
for header in trace.h failure.h; do
  sed -nE '/^[^/]/q; s#^//   (.*)#\1#p' "$source_dir/include/zrtexpression/$header" | is_run_as "$header"
done

# The run-length writer: bytes and what they become. Of what has no run the host makes a literal.
header_examples include/DataExpression.h > rows
while read -r row; do
  bytes="${row%%->*}"
  text="$(sed -E 's/.*-> *//; /^[^(]/d' <<< "$row")"
  for byte in $bytes; do printf '%b' "\\x$byte"; done > image
  [[ $("$zrteval" encode image) == "${text:-0x${bytes// /}}" ]] || fail "DataExpression.h: $row"
done < rows

# Error lists that are shown are read, and hold the sentence for one of these texts.
for list in blocks-embedding.md/*.zrt-list hq4170.h; do
  [[ $list != hq4170.h ]] || { header_examples outside/hq4170.h > "$list"; }
  cp "$list" ErrorList.txt
  "$zrteval" int --data-dir . x 1++1 > actual 2>&1
  grep -qE '(Two operators have nothing between them|Neither a known name nor a number)\.$' actual ||
    fail "$list: the list is not read: $(< actual)"
done

# Each form of a token that the scope file's document tells, and the file in it, are taken.
"$zrteval" int --scope scope-file/*.jsonc size > actual 2>&1 || fail "scope-file.md: $(< actual)"
awk -F '`' '/^## Data/ { exit } /^\| `/ { for (i = 2; i < NF; i += 2) print $i }' \
  "$source_dir/docs/scope-file.md" |
  sed 's/T, "value"/2, "value"/; s/T, "values"/6, "values"/; s/V, \.\.\./1, 2/; s/V/1/' > forms
while IFS= read -r form; do
  echo "{\"tokens\": {\"local\": {\"x\": $form}}}" > form.json
  "$zrteval" int --scope form.json 7 > actual 2>&1 || fail "scope-file.md: $form: $(< actual)"
done < forms

cd blocks-language.md || exit 1
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
  awk 'FILENAME == "errors" && !/^standard input:[0-9:]+ Err[A-Za-z]+ \(-[0-9]+\): / { next }
       FILENAME == "errors" { split($0, parts, /[:() ]+/)
         failed[parts[3]] = parts[6] " " parts[5]; next }
       FILENAME == "values" { values[++count] = $0; next }
       FNR in failed { print failed[FNR]; next }
       { print values[++used] }' errors values texts
}

examples=0
for block in *.zrt-*; do
  kind="${block#*.}"
  [[ $kind != zrt-status ]] || continue
  # "text"  ->  outcome  ; remark
  sed -E 's/ +->.*//; s/^"(.*)"$/\1/' "$block" > texts
  sed -E 's/^.* -> +([^ ]+)( *| +;.*)$/\1/' "$block" > expected
  outcomes "$kind" | sed -f names.sed > actual
  diff expected actual || fail "$block (< told, > printed)"
  examples=$((examples + $(wc -l < texts)))
done
echo "$examples examples and $commands commands"
[[ ! -s $work/failures ]] && ((examples > 100 && commands >= 7 && pictures >= 3))
