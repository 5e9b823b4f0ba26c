#!/usr/bin/env bash
# Holds the rules of the house that can be read off the text: who may include whom, sizes, words, and
# what the library never does. Prints each offence as "file:line:text  <- rule".
#
#   house_test.sh SOURCE_DIR
set -uo pipefail
cd "$1" || exit 1

# A folder, and what its files may include besides each other and the standard library: whole folders
# or single headers, all of them told further up, so that there is no circle.
readonly may_include='
outside
include        outside
src/bits
src/scan       src/bits/huge_pages.h src/bits/wide.h include/ErrorCodes.h
src/names      src/bits/huge_pages.h outside include/zrtexpression/trace.h
src/solve      src/bits/huge_pages.h src/scan include/ErrorCodes.h include/zrtexpression/trace.h
src/scalar     src/solve src/names src/scan include outside
src/bitstream  src/scalar src/solve src/names src/scan src/bits include outside
src/runlength  src/bits
src/object     src/bitstream src/runlength src/scalar src/solve src/names src/scan src/bits include outside
tools          include outside
examples       include outside
web            tools include outside
'

# Words that were given up for those of the field, in lower case, as extended regular expressions.
readonly retired='
doors?
holdings
look_?at
'

readonly max_lines=399

mapfile -t files < <(find benchmarks cmake data debian docs examples include outside src tests tools web .ci -type f
                     find . -maxdepth 1 -type f -printf '%f\n')
chosen() { printf '%s\n' "${files[@]}" | grep -E "$1"; }
mapfile -t code < <(chosen '\.(h|cpp)$')
mapfile -t sources < <(chosen '\.(h|cpp|sh|py|cmake)$|CMakeLists\.txt$|^tests/examples/|^(.*/)?[a-z]+$' |
                       grep -vE '^tests/fuzz/corpus/|^debian/(control|copyright|source/format)$')
mapfile -t library < <(chosen '^(src|include)/.*\.(h|cpp)$')
mapfile -t public < <(chosen '^(include|outside)/.*\.h$')
mapfile -t tests < <(chosen '^tests/.*\.(h|cpp)$')

# The includes whose target their folder must not include.
include_order() {
  awk -v table="$may_include" '
    function folder_of(path) {
      match(path, /^src\/[^\/]*|^[^\/]*/)
      return substr(path, 1, RLENGTH)
    }
    function offence(rule) { print FILENAME ":" FNR ":" $0 "  <- " rule }
    BEGIN {
      count = split(table, lines, "\n")
      for (i = 1; i <= count; ++i) {
        words_in_line = split(lines[i], words, " ")
        if (words_in_line) told[words[1]]
        for (k = 1; k <= words_in_line; ++k) {
          allowed[words[1], words[k]]
          if (!(folder_of(words[k]) in told)) {
            print "house_test.sh:" lines[i] "  <- " words[k] " is not told further up"
          }
        }
      }
      for (i = 1; i < ARGC; ++i) is_file[ARGV[i]]
    }
    FNR == 1 && FILENAME ~ /^src\// && !(folder_of(FILENAME) in told) {
      offence("of a folder that the table does not tell")
    }
    !/^ *# *include *[<"]/ || !(folder_of(FILENAME) in told) { next }
    {
      folder = folder_of(FILENAME)
      split($0, parts, /[<">]/)
      name = parts[2]
    }
    /</ {
      if (FILENAME == "src/bits/huge_pages.cpp" && name == "sys/mman.h") next
      if (folder ~ /^(src|include)/ && name ~ /[.\/]/) offence("not of the standard library")
      next
    }
    {
      directory = FILENAME
      sub(/[^\/]*$/, "", directory)
      split(directory " include/ src/ outside/", roots, " ")
      for (i = 1; i <= 4 && !((roots[i] name) in is_file); ++i) {}
      target = i <= 4 ? roots[i] name : name
      if (!((folder, target) in allowed) && !((folder, folder_of(target)) in allowed)) {
        offence(folder " must not include " target)
      }
    }' "${code[@]}"
}

sizes_and_openings() {
  awk -v most="$max_lines" '
    FNR == most + 1 { print FILENAME ":" FNR ":  <- a file of more than " most " lines" }
    FNR == 1 { opening = 1 }
    FNR == opening && /^#!/ { opening = 2; next }
    FNR == opening && !(FILENAME ~ /\.(h|cpp)$/ ? /^\/\/ ?[^ ]/ : /^(#|""") ?[^ "]/) {
      print FILENAME ":" FNR ":" $0 "  <- no comment at the beginning that tells the job"
    }' "${sources[@]}"
}

words() {
  grep -nHiE "(^|[^A-Za-z])($(xargs <<< "$retired" | tr ' ' '|'))([^A-Za-z]|$)" "${files[@]}" |
    grep -v '^tests/tools/house_test.sh:' | sed 's/$/  <- a word that was given up/'
}

# What a merge that was not finished leaves behind.
unmerged() { grep -nHE '^(<{7}|>{7})( |$)' "${files[@]}" | sed 's/$/  <- a conflict that stands/'; }

# Too many checks that .clang-tidy switches off, and those whose reason it does not tell.
exceptions() {
  awk -v most=10 '
    /^#   [a-z]/ { reasoned[$2] }
    /^  -[a-z]/ {
      sub(/,$/, "", $1)
      if (++count > most) print FILENAME ":" FNR ":" $0 "  <- more than " most " exceptions"
      if (!(substr($1, 2) in reasoned)) print FILENAME ":" FNR ":" $0 "  <- an exception with no reason"
    }' .clang-tidy
}

# never RULE EXPRESSION FILE...: the lines that match, comments left aside.
never() {
  awk -v rule="$1" -v expression="(^|[^A-Za-z0-9_])($2)" '
    { text = $0; sub(/\/\/.*/, "", text) }
    text ~ expression { print FILENAME ":" FNR ":" $0 "  <- " rule }' "${@:3}"
}

offences="$(
  include_order
  sizes_and_openings
  words
  unmerged
  exceptions
  never 'library code does not throw' 'throw[^A-Za-z0-9_]' "${library[@]}"
  never 'exceptions end in src/bits/exhausted_memory.h alone' '(try|catch) *[({]' "${library[@]}" |
    grep -v '^src/bits/exhausted_memory.h:'
  never 'the library has no environment, no locale, no input, no output and no exit' \
    '((secure_)?getenv|setlocale|[a-z]*printf|f?puts|_?[eE]xit|quick_exit|abort|terminate) *[(]|std::locale' \
    "${library[@]}"
  never 'the library reads and prints nothing' \
    'std::w?(cin|cout|cerr|clog|[a-z]*fstream)|f(re)?open *[(]|#include <([a-z]*stream|cstdio|print)>' \
    "${library[@]}"
  never 'what hosts include is quick to compile: <memory> alone takes a quarter of a second' \
    '#include <(memory|functional|regex|filesystem|[a-z]*stream|algorithm|ranges)>' "${public[@]}"
  never 'no test asserts a time' '#include <c?(chrono|time)(\.h)?>|clock *[(]' "${tests[@]}"
)"
[[ -z $offences ]] || { printf '%s\n' "$offences"; exit 1; }
