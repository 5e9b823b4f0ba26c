#!/usr/bin/env bash
# The host program from the outside: arguments and input on the left, what must come out beside them.
# Knows the evaluator only as far as a few values show that the right one was asked.
#
#   zrteval_test.sh PROGRAM DATA_DIR
set -uo pipefail

zrteval="$(realpath "$1")"
data="$(realpath "$2")"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0

fail() {
  printf 'FAILED: %s\n' "$@" >&2
  failures=$((failures + 1))
}

# check STATUS STDOUT STDERR ARGUMENT...: STDOUT is the whole output without its last line end, STDERR
# a part of the messages (empty: there are none). Standard input is $input.
input=''
check() {
  local status="$1" out="$2" err="$3" got
  shift 3
  printf '%b' "$input" | timeout 60 "$zrteval" "$@" > out 2> err
  got=$?
  [[ $got == "$status" ]] || fail "$* ends with $got, not $status"
  [[ $(cat out) == "$out" ]] || fail "$* prints" "$(cat out)" "instead of" "$out"
  if [[ -z $err ]]; then
    [[ ! -s err ]] || fail "$* complains: $(cat err)"
  else
    [[ $(cat err) == *"$err"* ]] || fail "$* complains" "$(cat err)" "instead of" "$err"
  fi
}

# ---- Values --------------------------------------------------------------------------------------

scope="$data/example-scope.jsonc"
check 0 $'20\n14' '' int '2+3*4' '2+(3*4)'
check 0 $'6\n1\n255' '' int --scope "$scope" rows 'order[rows/2]' limit
check 0 $'0.33333334\ninf\n-inf\nnan\n1e20\n15e19\n0.1' '' float 1/3 1/0 0-1/0 0/0 1e20 1e20*1.5 0.1
check 0 $'0xFFFFFFFF1234\n0x05\n0x' '' bits '(0xFF^4)@0x1234' '#101' '#1^(0x00000000)'
check 0 $'10111 5\n00000101 8\n 0' '' bits --format bin --length '#101@#11' 0x05 '#1^(0x00000000)'
check 0 $'0x0F1E2D\n0x3C4B5A\n0x0ABC' '' bits --scope "$scope" fuses fuses fuses
check 0 $'0x0F1E2D\n0x0F1E2D' '' bits --fresh --scope "$scope" fuses fuses
[[ $("$zrteval" bits --format raw 0x1234 '(0x41^2)' | od -An -tx1) == ' 12 34 41 41' ]] || fail 'raw'

# ---- Texts that a command line or a line of input could damage ------------------------------------

check 1 $'7' '"-5":1:1: ErrUnknownOperand (-511): ' int 7 -- -5
check 1 '' '"[1]":1:1: ErrMissingArrayName (-515): ' int '[1]'
check 1 '' '"":1:1: ErrUnknownOperand' int ''
check 1 '' '"bits":1:1: ErrUnknownOperand' int bits
check 1 '' '"--":1:' int -- --
input='1+1\r\n 2\n\n3\n1\0002\n4' check 1 $'2\n3\n4' $'standard input:2:1: ErrUnknownOperand' int --batch
input="1\n\0$(printf 'x%.0s' {1..1000})\n2" check 1 $'1\n2' 'standard input:2:1: the text holds a NUL' int --batch
timeout 20 "$zrteval" int --batch < /dev/zero 2> err
[[ $? == 4 && $(< err) == *'holds a NUL'*'the line does not end within 16777216 bytes more' ]] ||
  fail "a line of NULs: $(< err)"
input='7\r' check 1 '' 'standard input:1:1: ' int --batch
check 0 '' '' int --batch
input='fuses\nfuses' check 0 $'0x0F1E2D\n0x3C4B5A' '' bits --batch --scope "$scope"
input='fuses\nfuses' check 0 $'0x0F1E2D\n0x0F1E2D' '' bits --batch --fresh --scope "$scope"

# ---- Messages ------------------------------------------------------------------------------------

# Each status has its sentence, which comes from the list in a data directory that is named.
mkdir list
printf '%s\n' '-511 8 1 Never heard of it.' > list/ErrorList.txt
check 1 '' '"x":1:1: ErrUnknownOperand (-511): Never heard of it.' int --data-dir list x
check 1 '' '"1(":1:2: ErrUnbalancedParenthesis (-508): the' int --data-dir list '1('
check 1 '' $'/ErrorList.txt: the file cannot be opened (its sentences are not used)\n"x":1:1: Err' \
  int --data-dir / x
check 0 '1' 'nowhere/ErrorList.txt: the directory cannot be entered (' int --data-dir nowhere 1
printf '%s\n' '-511 8 1 Right.' '-511 8' > list/ErrorList.txt
check 0 '1' 'list/ErrorList.txt: line 2: the field is no number' int --data-dir list 1

# What messages quote is cut between characters, and acts on no terminal.
long="$(printf 'ä%.0s' {1..60})"
check 1 '' "\"$long\":1:1: " int "$long"
check 1 '' "\"$long...\":1:1: " int "${long}ä"
check 1 '' '"\x1B[31m\n\r\t\x7F\u0085\u2028\u202E\U000E0041":1:2: ErrMissingCloseBracket' \
  int $'\e[31m\n\r\t\x7f\xc2\x85\xe2\x80\xa8\xe2\x80\xae\xf3\xa0\x81\x81'
check 1 '' '"\xFF\xC3+\xC0\xAF\xED\xA0\x80\xF0\x9F":1:1: ' int $'\xff\xc3+\xc0\xaf\xed\xa0\x80\xf0\x9f'
check 1 '' '"1+\u00A02\u200B\uFEFF":1:3: ' int $'1+\xc2\xa02\xe2\x80\x8b\xef\xbb\xbf'
check 1 '' '"日本😀\n":1:1: ' int '日本😀\n'
check 4 '' 'zrteval: no\n\x9B31m: No such file' decode $'no\n\x9b31m'
check 2 '' 'no such command: \x1B[31m' $'\e[31m'

for status in -500 -506 -507 -508 -509 -510 -511 -512 -513 -514 -515 -516 -517 -518; do
  grep -Eq "^$status 8 [0-9]+ [A-Z].*\.\$" "$data/ErrorList.txt" || fail "no sentence for $status"
done

# ---- Usage, input and output ---------------------------------------------------------------------

check 2 '' 'a command is missing; on a terminal, none begins a session (zrteval --help'
check 2 '' 'the command is empty' ''
check 2 '' 'no such command: foo (' foo int 1
check 2 '' 'no such command: decod, is decode meant? (' decod
check 2 '' 'no such option: --bogus' --bogus
check 2 '' 'no such option: --scope; the options of a command stand behind it' --scope f int 1
check 2 '' 'no such option: --bach, is --batch meant? (zrteval int --help' int --bach
check 2 '' 'no such option: -5; a text that begins with - stands behind --' int -5
check 2 '' 'no such option: -x; a FILE that begins' decode -x
check 0 '' '' int
check 2 '' 'give texts, -f or --batch' int --batch 1
check 2 '' 'texts and --scope - cannot both' int --batch --scope -
check 2 '' '--batch takes no value' int --batch=no 1
check 2 '' '--scope is given twice' int --scope a --scope b 1
check 2 '' '--scope wants a FILE behind it' int 1 --scope
check 2 '' 'no such option: --fresh' int --fresh 1
check 2 '' '--format is hex, bin or raw' bits --format oct 0x12
check 2 '' '--length' bits --format raw --length 0x12
check 2 '' 'one FILE only' encode a b
check 2 '' 'one FILE only' encode a -- b
# What a shell variable leaves that is not set.
for option in '--scope|int|1' '--data-dir|float|1' '--format|bits|1' '--output|encode|a' '--output|decode|a'; do
  IFS='|' read -r name command text <<< "$option"
  check 2 '' "$name is given an empty value" "$command" "$name" '' "$text"
  check 2 '' "$name is given an empty value" "$command" "$name=" "$text"
done
check 2 '' 'FILE is given an empty value' encode ''
check 2 '' 'FILE is given an empty value' decode -- ''
for command in '' int float bits batch encode decode; do
  # shellcheck disable=SC2086
  "$zrteval" $command --help > out || fail "$command --help ends with $?"
  [[ $(head -n 1 out) == 'Examples:' ]] || fail "$command --help begins with $(head -n 1 out)"
  grep -q "^Usage: zrteval ${command:-COMMAND} " out || fail "no usage: $command --help"
  grep -q '^  4  input or output' out || fail "no exit statuses: $command --help"
  # shellcheck disable=SC2086
  "$zrteval" $command --version | grep -Eq '^zrteval [0-9.]+$' || fail "$command: no version"
done
# Each example of the help works as it stands.
cp "$scope" names.json
printf '1+1\nrows\n' > texts.txt
printf '{"kind":"int","text":"1+1"}\n' > tasks.jsonl
head -c 100 /dev/zero > image.bin
commands="$("$zrteval" --help | awk '/^Commands:/ { on = 1; next } /^$/ { on = 0 } on && /^  [a-z]/ { print $1 }')"
[[ $commands == *batch*decode ]] || fail "the commands are $commands"
for command in '' $commands; do
  # shellcheck disable=SC2086
  "$zrteval" $command --help | awk '/^$/ { exit } /^  zrteval / { print }'
done > examples
while IFS= read -r example; do
  PATH="$(dirname "$zrteval"):$PATH" bash -c "$example" > out 2> err < /dev/null
  # The status 1 is that of check, which has something to say.
  got=$?
  [[ $got == 0 && ! -s err || $got == 1 && $example == *' check '* ]] ||
    fail "$example ends with $got" "$(cat err)"
done < examples
(($(wc -l < examples) >= 15)) || fail "$(wc -l < examples) examples"
"$zrteval" int --help | grep -q '^Usage: .* TEXT\.\.\.$' || fail 'the usage names no TEXT...'
check 4 '' 'no-such-file: No such file' decode no-such-file
check 4 '' 'no-such-dir/f: No such file' encode /dev/null -o no-such-dir/f
"$zrteval" int --batch < . 2> err
[[ $? == 4 && $(cat err) == *'Is a directory' ]] || fail 'a directory as input'
if [[ -e /dev/full ]]; then
  for command in 'int 1' 'int --batch' '--help' "encode $scope" "encode $scope -o /dev/full"; do
    # shellcheck disable=SC2086
    "$zrteval" $command > /dev/full 2> err <<< '1'
    [[ $? == 4 && $(cat err) == *'No space left on device' ]] || fail "a full disk: $command"
  done
fi

# ---- Wrong scope files: what is in them, and the complaint ------------------------------------------

# refuse COLUMN TEXT COMPLAINT, all in the first line
refuse() {
  printf '%b' "$2" > scope.json
  check 3 '' "scope.json:1:$1: $3" int --scope scope.json 1
}
check 3 '' 'nowhere.json: No such file' int --scope nowhere.json 1
refuse 1 '' 'syntax error'
refuse 16 '{"tokens": {}} {}' 'syntax error'
refuse 1 '[]' '/: an object'
refuse 11 '{"token": {}}' '/token: this key'
refuse 22 '{"tokens": {"inner": {}}}' '/tokens/inner: this key'
refuse 22 '{"tokens": {"local": []}}' '/tokens/local: an object'
refuse 41 '{"tokens": {"local": {"a": 1, "b/c": 2, "b\\u002fc": 3}}}' '/tokens/local/b~1c: the name is there'
refuse 16 '{"tokens": {}, "tokens": {}}' '/tokens: the name is there'
refuse 22 '{"tokens": {"local": {"": 1}}}' '/tokens/local: a name is empty'
refuse 22 '{"tokens": {"local": {"a\\u0000b": 1}}}' '/tokens/local: a name holds'
refuse 24 '{"tokens": {"local": {"\xff": 1}}}' 'syntax error'
refuse 28 '{"tokens": {"local": {"a": true}}}' '/tokens/local/a: a number'
refuse 28 '{"tokens": {"local": {"a": 2147483648}}}' '/tokens/local/a: 2147483648 is not'
refuse 28 '{"tokens": {"local": {"a": -2147483649}}}' '/tokens/local/a: -2147483649 is not'
refuse 28 '{"tokens": {"local": {"a": 18446744073709551615}}}' '/tokens/local/a: 18446744073709551615'
refuse 32 '{"tokens": {"local": {"a": [1, 99999999999999999999]}}}' '/tokens/local/a/1: 99999999999999999999'
refuse 28 '{"tokens": {"local": {"a": 3.5e38}}}' '/tokens/local/a: 3.5e38 is out of range'
refuse 28 '{"tokens": {"local": {"a": 1e400}}}' '/tokens/local/a: 1e400 is out of range'
refuse 32 '{"tokens": {"local": {"a": [1, "2"]}}}' '/tokens/local/a/1: an integer'
refuse 28 '{"tokens": {"local": {"a": {"value": 1}}}}' '/tokens/local/a: the key "type"'
refuse 37 '{"tokens": {"local": {"a": {"type": 9, "value": 1}}}}' '/tokens/local/a/type: 9 is not'
refuse 49 '{"tokens": {"local": {"a": {"type": 2, "value": 1.5}}}}' '/tokens/local/a/value: an integer'
refuse 49 '{"tokens": {"local": {"a": {"type": 6, "value": [1]}}}}' '/tokens/local/a/value: this key'
refuse 50 '{"tokens": {"local": {"a": {"type": 6, "values": 1}}}}' '/tokens/local/a/values: an array'
refuse 26 '{"data": {"local": {"f": 12}}}' '/data/local/f: a text'
refuse 26 '{"data": {"local": {"f": "12"}}}' '/data/local/f: the text does not begin'
refuse 35 '{"data": {"local": {"f": ["0x12", "0x123"]}}}' '/data/local/f/1: the count'
refuse 26 '{"data": {"local": {"f": "0x1G"}}}' '/data/local/f: there is a character'
refuse 26 '{"data": {"local": {"f": {"width": 1}}}}' '/data/local/f: the key "bytes"'
refuse 53 '{"data": {"local": {"f": {"bytes": "0x12", "width": -1}}}}' '/data/local/f/width: -1 is not'
refuse 53 '{"data": {"local": {"f": {"bytes": "0x12", "width": 2147483648}}}}' '/data/local/f/width: 21'
refuse 52 '{"data": {"local": {"f": {"bytes": "0x12", "bits": 8}}}}' '/data/local/f/bits: this key'

# A NUL is no end, wherever it stands, and nothing behind it is read.
refuse 3 '{}\0 garbage' 'this is no text, it holds a NUL'
refuse 13 '{/* comment \0*/}' 'this is no text, it holds a NUL'
refuse 3 '{}\x1b' 'this is no text, it holds the character \x1B'
check 3 '' '/dev/zero:1:1: this is no text' int --scope /dev/zero 1

# Line and column, as a terminal counts them, whatever stands in between.
while IFS='|' read -r place reason text; do
  printf '%b' "$text" > scope.json
  check 3 '' "scope.json:$place: $reason" int --scope scope.json 1
done << 'END'
3:2|/tokens/local/a: a number|{"tokens":\n{"local": {"a":\n true}}}
1:34|/tokens/local/ä\x1B: a number|\xef\xbb\xbf{"tokens": {"local": {"ä\\u001b": null}}}
5:5|/tokens/local/b/2: an integer|{"tokens": {"local": {"a": [1, 2, 3],\r\n"b":[1/* , */\r\n,2// "\r\n,\r\n    "x"]}}}
2:1|/tokens/local/b: the name is there|{"tokens": {"local": {"b": [{"b": 1}, 5],\n"b": 1}}}
2:9|this is no text, it holds a NUL|{\n \t\0}
3:1|syntax error|{\n\n]
END

# The time goes with the size of the file, whatever its shape, and messages stay short.
repeat() { head -c "$1" /dev/zero | tr '\0' "$2"; }
name="$(repeat 1000000 n)"
printf '{"tokens": {"local": {"%s": [%s], "x": 1}}}' "$name" "$(repeat 400000 1 | sed 's/11/1,/g')1" \
  > scope.json
check 0 '1' '' int --scope scope.json x
while IFS='|' read -r reason content; do
  printf '{"tokens": {"local": {%s}}}' "$content" > scope.json
  check 3 '' "$reason" int --scope scope.json 1
  (($(wc -c < err) < 600)) || fail "a message of $(wc -c < err) bytes: $reason"
done << END
scope.json:1:1000027: /tokens/local/nnnn|"$name": true
scope.json:1:1000027: /tokens/local/nnnn|"$name": 1e99
scope.json:1:27: /tokens/local/a: 9999|"a":$(repeat 1000000 9)
scope.json:1:1000027: /tokens/local/a/0/0/0/0|"a":$(repeat 1000000 '[')9e99
scope.json:1:1000031: syntax error|"a":"$(repeat 1000000 x)
END

printf '%s' '{"tokens": {"local": {"a": {"type": 8, "values": [-2147483648]}, /* both */ "f": [1, 2.5]},
  "global": {"a": 9, "g": 7.5}}, "data": {"external": {"r": []}, "global": {"r": "0x12",
  "s": {"bytes": "0xABCD", "width": 0}}}}' > scope.json
check 0 $'-2147483648\n2\n7' '' int --scope scope.json 'a[0]' 'f[1]' g
check 1 '0x' '"r":1:1: ErrStreamWrite (-518): ' bits --scope scope.json s r

# ---- Encoding and back ---------------------------------------------------------------------------

check 0 '' '' encode /dev/null
input='UUUUUUUU\001' check 0 '(0x55^8)@0x01' '' encode
input='\001UUUUUUUU' check 0 '(0x0155@(0x55^7))' '' encode --no-verify -
input='\000\377' check 0 '0x00FF' '' encode
input='0x12@@0x34' check 1 '' 'standard input:1:6: ErrMissingOperand (-506): ' decode
check 4 '' '/dev/zero:1:1: this is no text, it holds a NUL' decode /dev/zero
input='0x12\n\0' check 4 '' 'standard input:2:1: this is no text' decode
input='0x12\0001' check 4 '' 'it holds the character \x01' decode
# A byte order mark is no part of the first text.
input='\xef\xbb\xbf0x12\r\n' check 0 $'\x12' '' decode
input='\xef\xbb\xbf1\n\xef\xbb\xbf2' check 1 '1' '  \uFEFF2' int --batch
input='' check 0 '' '' decode

round_trip() {
  "$zrteval" encode "$1" -o text && "$zrteval" decode text > back && cmp -s "$1" back ||
    fail "no way there and back: $1"
}
for count in 0 1 4 5 6 7 8 100000; do
  head -c "$count" /dev/zero > zeros
  head -c "$count" "$zrteval" > program
  yes ab | head -c "$count" > alternating
  cat program zeros alternating zeros program > mixed
  for file in zeros program alternating mixed; do round_trip "$file"; done
done
truncate -s 268435456 huge
check 4 '' 'more than 268435455 bytes' encode huge

((failures == 0)) || printf '%d checks failed\n' "$failures" >&2
((failures == 0))
