#!/usr/bin/env bash
# What bash completes behind a line of words, the last of them unfinished, and that the man page, which is
# made of the same help, tells every option of every command.
#
#   completion_test.sh PROGRAM MAN_PAGE SOURCE_DIR
set -uo pipefail
program="$1" page="$2"
source "$3/tools/completion.bash"
cd "$3/data" || exit 1
failures=0

while IFS='|' read -r line expected; do
  read -ra COMP_WORDS <<< "$line"
  COMP_WORDS[0]="$program"
  [[ $line == *' ' ]] && COMP_WORDS+=('')
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  _zrteval
  [[ "${COMPREPLY[*]}" == "$expected" ]] || { echo "FAILED: $line: ${COMPREPLY[*]}"; ((++failures)); }
done << 'END'
zrteval |int float bits explain check names show batch encode decode
zrteval e|explain encode
zrteval --v|--version
zrteval check |int float bits
zrteval check int --f|--fix
zrteval bits --f|--format --fresh
zrteval bits --format |hex bin raw
zrteval int --scope ex|example-scope.jsonc
zrteval decode -o Err|ErrorList.txt
zrteval encode --out|--output
zrteval encode Err|ErrorList.txt
zrteval int -t |
END

for command in $(_zrteval_words command "$program"); do
  for option in $(_zrteval_words '^  -' "$program" "$command"); do
    awk -v section=".SS $command" '/^\.S[SH]/ { on = $0 == section || /OPTIONS/ } on' "$page" |
      sed 's/\\//g' | grep -qE "^\.B (.*,)?$option( |,|\$)" || { echo "FAILED: no $command $option"; ((++failures)); }
  done
done
if command -v man > /dev/null; then
  said="$(man --warnings -E UTF-8 -l -Tutf8 "$page" 2>&1 > /dev/null)"
  [[ -z $said ]] || { echo "FAILED: the man page: $said"; ((++failures)); }
fi
((failures == 0))
