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
  printf '%b' "$input" | "$zrteval" "$@" > out 2> err
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

check 1 $'7' '"-5": -511 ErrUnknownOperand: ' int 7 -- -5
check 1 '' '"[1]": -515 ErrMissingArrayName: ' int '[1]'
check 1 '' '"": -511 ' int ''
check 1 '' '"bits": -511 ' int bits
check 1 '' '"--": -511 ' int -- --
input='1+1\r\n 2\n\n3\n1\0002\n4' check 1 $'2\n3\n4' $'line 2: " 2": -511' int --batch
input='7\r' check 1 '' 'line 1: ' int --batch
check 0 '' '' int --batch
input='fuses\nfuses' check 0 $'0x0F1E2D\n0x3C4B5A' '' bits --batch --scope "$scope"
input='fuses\nfuses' check 0 $'0x0F1E2D\n0x0F1E2D' '' bits --batch --fresh --scope "$scope"

# ---- Messages ------------------------------------------------------------------------------------

# Each status has its sentence, which comes from the list in the data directory.
mkdir list
printf '%s\n' '-511 8 1 Never heard of it.' > list/ErrorList.txt
check 1 '' 'zrteval: "x": -511 ErrUnknownOperand: Never heard of it.' int --data-dir list x
check 1 '' 'zrteval: "1(": -508 ErrUnbalancedParenthesis' int --data-dir list '1('
check 1 '' $'/ErrorList.txt: the file cannot be opened (failures are told without a sentence)\nzrteval: "x": -511' \
  int --data-dir / x
for status in -500 -506 -507 -508 -509 -510 -511 -512 -513 -514 -515 -516 -517 -518; do
  grep -Eq "^$status 8 [0-9]+ [A-Z].*\.\$" "$data/ErrorList.txt" || fail "no sentence for $status"
done

# ---- Usage, input and output ---------------------------------------------------------------------

check 2 '' 'subcommand'
check 2 '' 'either texts or --batch' int
check 2 '' 'either texts or --batch' int --batch 1
check 2 '' 'no such option: --fresh' int --fresh 1
check 2 '' 'oct' bits --format oct 0x12
check 2 '' '--length' bits --format raw --length 0x12
check 2 '' 'one FILE' encode a -- b
"$zrteval" --help | grep -q 'Usage' || fail 'no help'
"$zrteval" --version | grep -Eq '^zrteval [0-9.]+$' || fail 'no version'
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
  check 3 '' "scope.json: line 1, column $1: $3" int --scope scope.json 1
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

printf '%s' '{"tokens": {"local": {"a": {"type": 8, "values": [-2147483648]}, /* both */ "f": [1, 2.5]},
  "global": {"a": 9, "g": 7.5}}, "data": {"external": {"r": []}, "global": {"r": "0x12",
  "s": {"bytes": "0xABCD", "width": 0}}}}' > scope.json
check 0 $'-2147483648\n2\n7' '' int --scope scope.json 'a[0]' 'f[1]' g
check 1 '0x' '"r": -518 ErrStreamWrite' bits --scope scope.json s r

# ---- Encoding and back ---------------------------------------------------------------------------

check 0 '' '' encode /dev/null
input='UUUUUUUU\001' check 0 '(0x55^8)@0x01' '' encode
input='\001UUUUUUUU' check 0 '(0x0155@(0x55^7))' '' encode --no-verify -
input='\000\377' check 0 '0x00FF' '' encode
input='0x12@@0x34' check 1 '' 'standard input: -506' decode
input='0x12\000' check 4 '' 'NUL' decode
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
