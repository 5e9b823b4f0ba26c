#!/usr/bin/env python3
"""Changes the library in one small place after another and runs the tests on each of these mutants.

A mutant that no test notices is either a place that the tests forget or a change that changes
nothing: each survivor is printed, to be looked at. Mutants are drawn by a fixed seed, so that the
same tree gives the same ones.

  tests/tools/mutate.py                           500 mutants, one after another
  tests/tools/mutate.py --count 60 --seed 7 --jobs 2
  tests/tools/mutate.py --files src/scan/*.cpp --count 1000    all mutants of some files

The tree is copied and built aside, without optimisation. Mutants that do not compile are replaced
by others; those of which the compiler makes the same program are not counted.
"""
import argparse
import collections
import concurrent.futures
import hashlib
import itertools
import os
import pathlib
import queue
import random
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
Mutant = collections.namedtuple("Mutant", "file line kind before after begin end")

# Blanks stand around binary operators in this code, and not around those of types.
OPERATORS = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "/", "<<": ">>", ">>": "<<", "&": "|", "|": "&",
    "^": "&", "+=": "-=", "-=": "+=", "*=": "/=", "|=": "&=", "&=": "|=", "<<=": ">>=",
    ">>=": "<<=", "/=": "*="}
ARGUMENT = r"[\w.\[\]]+(?:->\w+)?(?:\(\))?(?: [-+*/] [\w.]+)?"
STATEMENT = re.compile(r" *(?:[\w.\->\[\]:*() ]+ [-+*/|&^%]?= .*|(?:\+\+|--)\S+|[\w.:\->]+\(.*\)|"
                       r"break|continue|if \(.*\) .+);")
SLOW_TESTS = "Reference.*:Growth*.*"


def masked(text):
    """The text with comments, strings and preprocessor lines blanked out, at equal length."""
    blank = lambda match: re.sub(r"[^\n]", " ", match.group())
    return re.sub(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|^ *#(?:[^\n]*\\\n)*[^\n]*', blank, text,
                  flags=re.S | re.M)


def candidates(file):
    """All mutants of one file."""
    text = (ROOT / file).read_text()
    code = masked(text)

    def mutant(kind, begin, end, after):
        return Mutant(file, text.count("\n", 0, begin) + 1, kind, text[begin:end], after, begin, end)

    for match in re.finditer(r"(?<= )(%s)(?=[ \n])" % "|".join(
            re.escape(op) for op in sorted(OPERATORS, key=len, reverse=True)), code):
        yield mutant("operator", *match.span(), OPERATORS[match.group()])
    for match in re.finditer(r"(?<!\w)(\+\+|--)(?=\w)", code):
        yield mutant("operator", *match.span(), {"++": "--", "--": "++"}[match.group()])
    for match in re.finditer(r"(?<![\w.'])(0[xX][\dA-Fa-f]+|\d+)(?=[uUlL]*\b(?![.']))", code):
        yield mutant("constant", *match.span(), str(int(match.group(), 0) + 1))
    for match in re.finditer(r"\b(true|false)\b", code):
        yield mutant("constant", *match.span(), "false" if match.group() == "true" else "true")
    for match in re.finditer(r"(?<=')[ -&(-\[\]-}](?=')", text):
        if code[match.start()] == match.group():
            yield mutant("constant", *match.span(), "z" if match.group() != "z" else "y")
    for match in re.finditer(r"\b(?:if|while) (?:constexpr )?\((?=[^;\n]*\))", code):
        end = closing(code, match.end())
        if end and ";" not in code[match.end():end] and " = " not in code[match.end():end]:
            yield mutant("negation", match.end(), end, "!(" + text[match.end():end] + ")")
    for match in re.finditer(r"(?<=[;{}:]\n)(%s)(?=\n)" % STATEMENT.pattern, code):
        yield mutant("dropped", match.start() + len(match.group()) - len(match.group().lstrip()),
                     match.end(), ";")
    for match in re.finditer(r"\w\((%s), (%s)(?=[,)])" % (ARGUMENT, ARGUMENT), code):
        if match.group(1) != match.group(2):
            yield mutant("swap", match.start(1), match.end(2), f"{match.group(2)}, {match.group(1)}")


def closing(code, begin):
    """Where the parenthesis closes that is open at `begin`."""
    depth = 1
    for i in range(begin, len(code)):
        depth += {"(": 1, ")": -1}.get(code[i], 0)
        if depth == 0:
            return i
    return None


class Tree:
    """A copy of the project in which mutants are built and tested, one at a time."""

    def __init__(self, path):
        self.source, self.build = path / "source", path / "build"
        files = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True,
                               capture_output=True, text=True).stdout.split("\n")
        for file in filter(None, files):
            (self.source / file).parent.mkdir(parents=True, exist_ok=True)
            copy = self.source / file
            if not copy.exists() or copy.read_bytes() != (ROOT / file).read_bytes():
                shutil.copyfile(ROOT / file, copy)
        subprocess.run(["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja",
                        "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0", "-DZRT_BUILD_TOOLS=OFF",
                        "-DZRT_WIDE_VECTORS=OFF"], check=True, stdout=subprocess.DEVNULL)
        if not self.compile():
            sys.exit("the tree does not build as it is")
        if (killer := self.killer()) is not None:
            sys.exit(f"the tests fail on the tree as it is: {killer}")
        self.hash = self.program_hash()

    def program(self, name):
        return self.build / "tests" / name

    def program_hash(self):
        return hashlib.sha256(self.program("zrt_tests").read_bytes()).digest()

    def run(self, *command, limit):
        """The exit status; a mutant that never ends or takes all memory fails."""
        def limits():
            resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))
        try:
            return subprocess.run(command, cwd=self.source, stdin=subprocess.DEVNULL, timeout=limit,
                                  env={**os.environ, "ZRT_REFERENCE_TEXTS": "20000"},
                                  capture_output=True, preexec_fn=limits).returncode
        except subprocess.TimeoutExpired:
            return -1

    def compile(self):
        return self.run("cmake", "--build", self.build, "-j1", "--target", "zrt_tests", "zrt_digest",
                        limit=1800) == 0

    def killer(self):
        """The first group of tests that fails, from the quickest on."""
        tests = self.program("zrt_tests"), "--gtest_brief=1", "--gtest_fail_fast"
        digest = f"diff tests/digest.txt <({self.program('zrt_digest')})"
        for name, command in (("quick tests", (*tests, f"--gtest_filter=-{SLOW_TESTS}")),
                              ("digest", ("bash", "-c", digest)),
                              ("slow tests", (*tests, f"--gtest_filter={SLOW_TESTS}"))):
            if self.run(*command, limit=600) != 0:
                return name
        return None

    def judge(self, mutant):
        """Who kills the mutant; "invalid", "same" (program) or None if nobody does."""
        path = self.source / mutant.file
        text = path.read_text()
        path.write_text(text[:mutant.begin] + mutant.after + text[mutant.end:])
        try:
            if not self.compile():
                return "invalid"
            return "same" if self.program_hash() == self.hash else self.killer()
        finally:
            path.write_text(text)


def shown(mutant):
    tidy = lambda code: " ".join(code.split())
    return (f"{mutant.file}:{mutant.line}: {mutant.kind}: {tidy(mutant.before)}  ->  "
            f"{tidy(mutant.after)}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=500, help="mutants that compile")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--minutes", type=float, default=1e9, help="then no more mutants are begun")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--keep", type=pathlib.Path, help="builds the trees here, and leaves them")
    parser.add_argument("--files", nargs="*", help="else all of include/ and src/")
    parser.add_argument("--list", action="store_true", help="print the mutants and run none")
    arguments = parser.parse_args()

    files = arguments.files or [path.relative_to(ROOT) for folder in ("include", "src")
                                for path in (ROOT / folder).rglob("*") if path.suffix in (".h", ".cpp")]
    mutants = [mutant for file in sorted(map(str, files)) for mutant in candidates(file)]
    random.Random(arguments.seed).shuffle(mutants)
    if arguments.list:
        print(*map(shown, mutants), sep="\n")
        return 0

    tally, survivors, drawn = collections.Counter(), [], iter(mutants)
    with tempfile.TemporaryDirectory() as work:
        trees = queue.Queue()
        folder = arguments.keep or pathlib.Path(work)
        with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
            for tree in pool.map(Tree, (folder / str(i) for i in range(arguments.jobs))):
                trees.put(tree)

        ends = time.monotonic() + 60 * arguments.minutes

        def judged(mutant):
            tree = trees.get()
            try:
                return mutant, tree.judge(mutant)
            finally:
                trees.put(tree)

        with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
            while (missing := arguments.count - sum(
                    n for result, n in tally.items() if result not in ("invalid", "same"))) > 0:
                batch = list(itertools.islice(drawn, min(missing, 4 * arguments.jobs)))
                if not batch or time.monotonic() > ends:
                    break
                for mutant, result in pool.map(judged, batch):
                    tally[result] += 1
                    if result is None:
                        survivors.append(mutant)
                        print("survives:", shown(mutant), flush=True)

    total = sum(n for result, n in tally.items() if result not in ("invalid", "same"))
    print(f"\n{total - tally[None]} of {total} mutants killed, seed {arguments.seed} (" + ", ".join(
        f"{result or 'survivors'}: {n}" for result, n in tally.most_common()) + ")")
    print(*sorted(map(shown, survivors)), sep="\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
