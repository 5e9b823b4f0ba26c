# shellcheck shell=bash
# Completion of zrteval in bash: commands and options are those that its help tells, so there is nothing
# to keep in step. Knows by name only the options whose values can be completed.

# The first words of a help page's lines that match $1; "-o,--output" gives two. The rest is the command.
_zrteval_words() {
  local pattern="$1"
  shift
  "$@" --help 2> /dev/null | awk -v pattern="$pattern" '
    $0 ~ pattern { sub(/^ +/, ""); sub(/ .*/, ""); gsub(/,/, "\n"); print }
    /^Commands:/ { pattern = pattern == "command" ? "^  [a-z]" : pattern }
    /^$/ && pattern == "^  [a-z]" { exit }'
}

_zrteval() {
  local program="${COMP_WORDS[0]}" word="${COMP_WORDS[COMP_CWORD]}" before="${COMP_WORDS[COMP_CWORD - 1]}"
  local choices=''
  COMPREPLY=()
  case "$before" in
    --scope | -f | -o | --output) mapfile -t COMPREPLY < <(compgen -f -- "$word"); return ;;
    --data-dir) mapfile -t COMPREPLY < <(compgen -d -- "$word"); return ;;
    --color) choices='auto always never' ;;
    --format) choices='hex bin raw' ;;
    -e | -t | -d | --max-bits) return ;;
    explain | check | names) ((COMP_CWORD == 2)) && choices='int float bits' ;;
  esac
  if [[ -z $choices ]]; then
    if [[ $word == -* ]]; then
      local command=("$program")
      ((COMP_CWORD > 1)) && [[ ${COMP_WORDS[1]} != -* ]] && command+=("${COMP_WORDS[1]}")
      choices="$(_zrteval_words '^  -' "${command[@]}")"
    elif ((COMP_CWORD == 1)); then
      choices="$(_zrteval_words command "$program")"
    elif [[ ${COMP_WORDS[1]} == @(encode|decode) ]]; then
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      return
    fi
  fi
  mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
}

complete -o filenames -F _zrteval zrteval
