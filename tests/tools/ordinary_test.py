#!/usr/bin/env python3
# Ordinary arithmetic beside the language: this interpreter computes random integer texts as 32-bit
# numbers. What "check --fix" writes for a text must have the value that the text has here, and the
# brackets of "explain" must have here the value that the text has in the language; most are texts of
# the language too, with the same value.
#
#   ordinary_test.py PROGRAM [COUNT [SEED]]
import json
import random
import re
import subprocess
import sys

PROGRAM = sys.argv[1]
COUNT = int(sys.argv[2]) if len(sys.argv) > 2 else 300
RANDOM = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 7)
NAMES = {"size": 8, "rows": 6, "limit": -3, "offsetE": 65537, "x": 2147483647}
ORDER = [10, 20, -30, 40]
SCOPE = [word for name, value in NAMES.items() for word in ("-t", f"{name}={value}")]
SCOPE += ["-t", f"order={ORDER}".replace(" ", "")]


class Int32:
    """A 32-bit number that wraps around; its sign "+" stands for "!", which Python does not have."""

    def __init__(self, value):
        self.value = (value + 2**31) % 2**32 - 2**31

    def __add__(self, other): return Int32(self.value + other.value)
    def __sub__(self, other): return Int32(self.value - other.value)
    def __mul__(self, other): return Int32(self.value * other.value)
    def __and__(self, other): return Int32(self.value & other.value)
    def __or__(self, other): return Int32(self.value | other.value)
    def __lshift__(self, other): return Int32(self.value << (other.value & 31))
    def __rshift__(self, other): return Int32(self.value >> (other.value & 31))
    def __invert__(self): return Int32(~self.value)
    def __neg__(self): return Int32(-self.value)
    def __pos__(self): return Int32(self.value == 0)


class Array:
    def __getitem__(self, index):
        return Int32(ORDER[index.value]) if index.value < len(ORDER) else Int32(0)


KNOWN = {"Int32": Int32, "order": Array(), **{name: Int32(value) for name, value in NAMES.items()}}


def computed(text):
    """What Python makes of a text."""
    numbers = re.sub(r"\b(0x[0-9A-Fa-f]+|[0-9]+)\b", r"Int32(\1)", text.replace("!", "+"))
    return eval(numbers.strip(), KNOWN).value


def blank():
    return RANDOM.choice(["", "", "", " ", "  "])


def operand():
    choice = RANDOM.randrange(12)
    if choice == 0:
        return RANDOM.choice(["2147483647", "4294967295", "65536", "0x1F", "0xFE"])
    if choice == 1:
        return RANDOM.choice(["order[1]", "order[ 1+2 ]", "order[2*1+1]", "order [0]", "order[9]"])
    if choice < 6:
        return RANDOM.choice(list(NAMES))
    return str(RANDOM.randrange(40))


def term(depth):
    choice = RANDOM.randrange(10)
    if depth > 0 and choice < 3:
        return "(" + blank() + text(depth - 1) + blank() + ")"
    if depth > 0 and choice < 5:
        return RANDOM.choice("~!-~!") + RANDOM.choice(["", "", " "]) + term(depth - 1)
    return operand()


def text(depth):
    result = term(depth)
    for _ in range(RANDOM.choice([0, 1, 1, 2, 2, 3, 4])):
        operator = RANDOM.choice(["+", "-", "-", "*", "&", "|", "<<", ">>"])
        result += blank() + operator + blank() + term(depth)
    return result


def run(arguments, texts):
    """The lines that the program prints for texts, one for each."""
    process = subprocess.run([PROGRAM, *arguments, *SCOPE, "-f", "-"], input="\n".join(texts) + "\n",
                             capture_output=True, text=True, check=False)
    lines = process.stdout.splitlines()
    if len(lines) != len(texts):
        sys.exit(f"{arguments}: {len(lines)} lines for {len(texts)} texts: {process.stderr[:2000]}")
    return lines


def main():
    texts = [text(RANDOM.randrange(4)) for _ in range(COUNT)]
    failures = []
    fixed = run(["check", "int", "--fix"], texts)
    values = [json.loads(line).get("value") for line in run(["int", "--json"], fixed)]
    for original, written, value in zip(texts, fixed, values):
        if value != computed(original):
            failures.append(f"{original!r}: fixed as {written!r}: {value}, not {computed(original)}")
    for written, again in zip(fixed, run(["check", "int", "--fix"], fixed)):
        if again != written:
            failures.append(f"{written!r} is fixed once more: {again!r}")

    explained = {}
    for original, line in zip(texts + fixed, run(["explain", "int", "--json"], texts + fixed)):
        answer = json.loads(line)
        if answer["status"] != 0:
            continue
        if not any(part in answer["brackets"] for part in ("(-", "[(")):  # not in the language
            explained[answer["brackets"]] = answer["value"]
        if computed(answer["brackets"]) != answer["value"]:
            failures.append(f"{original!r}: {answer['value']}, but reads as {answer['brackets']!r}")

    for brackets, line in zip(explained, run(["int", "--json"], list(explained))):
        if json.loads(line).get("value") != explained[brackets]:
            failures.append(f"{brackets!r} is read otherwise: {line}")

    for failure in failures[:20]:
        print(failure)
    print(f"{COUNT} texts fixed, {len(explained)} brackets, {len(failures)} failures")
    sys.exit(1 if failures or len(explained) < COUNT // 2 else 0)


main()
