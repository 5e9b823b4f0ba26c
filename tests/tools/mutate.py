#!/usr/bin/env python3
"""Changes the library in one small place after another and runs the tests on each of these mutants.

A mutant that no test notices is either a place that the tests forget or a change that changes
nothing: each survivor is printed, to be looked at. Mutants are drawn by a fixed seed, so that the
same tree gives the same ones.

  tests/tools/mutate.py                           500 mutants, one after another
  tests/tools/mutate.py --count 60 --seed 7 --jobs 2
  tests/tools/mutate.py --files src/scan/*.cpp --count 1000    all mutants of some files
  tests/tools/mutate.py --log mutants.txt         goes on where an earlier run of the tree ended

The tree is copied and built aside, a little optimised. Mutants that do not compile are replaced
by others; those of which the compiler makes the same program are not counted. Most mutants change
what texts evaluate to, so a digest over some texts is looked at first; the tests, which take longer
to build, see what it lets pass.
"""
import argparse
import collections
import concurrent.futures
import hashlib
import itertools
import json
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
Mutant = collections.namedtuple("Mutant", "file line column kind before after begin end")

# Blanks stand around binary operators in this code, and not around those of types.
OPERATORS = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "/", "<<": ">>", ">>": "<<", "&": "|", "|": "&",
    "^": "&", "+=": "-=", "-=": "+=", "*=": "/=", "|=": "&=", "&=": "|=", "<<=": ">>=",
    ">>=": "<<=", "/=": "*="}
ARGUMENT = r"[\w.\[\]]+(?:->\w+)?(?:\(\))?(?: [-+*/] [\w.]+)?"
STATEMENT = re.compile(r" *(?:[\w.\->\[\]:*() ]+ [-+*/|&^%]?= .*|(?:\+\+|--)\S+|[\w.:\->]+\(.*\)|"
                       r"break|continue|if \(.*\) .+);")
SLOW_TESTS = "Growth*.*:Walk.*:Shortage.*"
FEW_TEXTS = "200", "2000"  # most mutants fall to the first
SETTINGS = {"ZRT_REFERENCE_TEXTS": "20000"}


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
        line, column = text.count("\n", 0, begin) + 1, begin - text.rfind("\n", 0, begin)
        return Mutant(file, line, column, kind, text[begin:end], after, begin, end)

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
    for match in re.finditer(r"(?<!min)(?<!max)(?<=\w)\((%s), (%s)(?=[,)])" % (ARGUMENT, ARGUMENT),
                             code):
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

    def __init__(self, path, is_quick):
        self.is_quick = is_quick
        self.source, self.build = path / "source", path / "build"
        files = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True,
                               capture_output=True, text=True).stdout.split("\n")
        for file in filter(None, files):
            (self.source / file).parent.mkdir(parents=True, exist_ok=True)
            copy = self.source / file
            if not copy.exists() or copy.read_bytes() != (ROOT / file).read_bytes():
                shutil.copyfile(ROOT / file, copy)
        subprocess.run(["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja",
                        "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_COMPILER_LAUNCHER=",
                        f"-DCMAKE_CXX_FLAGS_DEBUG=-O1 -include {self.build}/standard.h",
                        "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", "-DZRT_BUILD_TOOLS=OFF",
                        "-DZRT_WIDE_VECTORS=OFF"], check=True, stdout=subprocess.DEVNULL)
        self.precompile()
        if not self.compile("zrt_digest"):
            sys.exit("the tree does not build as it is")
        self.few_texts = {count: self.digest(count) for count in FEW_TEXTS}
        if (killer := self.killer()) is not None:
            sys.exit(f"the tests fail on the tree as it is: {killer}")
        self.hash = self.library_hash()
        self.objects = {path: (path.stat(), path.read_bytes()) for path in self.build.rglob("*.o")}

    def precompile(self):
        """The standard headers, as the library and as the tests compile them: most of the time."""
        header = self.build / "standard.h"
        if header.exists():
            return
        includes = {line for path in (self.source / "src").rglob("*.*")
                    for line in path.read_text().split("\n") if line.startswith("#include <")}
        header.write_text("\n".join(sorted(includes)))
        (self.build / "standard.h.gch").mkdir()
        commands = json.loads((self.build / "compile_commands.json").read_text())
        for name in "src/bits/kernels.cpp", "tests/digest.cpp":
            command = next(c["command"] for c in commands if c["file"].endswith(name))
            flags = command[:command.index(" -o ")].replace(f"-include {header}", "")
            output = self.build / "standard.h.gch" / name.replace("/", "_")
            subprocess.run(f"{flags} -x c++-header {header} -o {output}", shell=True, check=True,
                           cwd=self.build)

    def restore(self):
        """The objects as they were, with their times, so that none is built without need."""
        for path, (stat, content) in self.objects.items():
            if not path.exists() or path.stat().st_mtime_ns != stat.st_mtime_ns:
                path.write_bytes(content)
                os.utime(path, ns=(stat.st_atime_ns, stat.st_mtime_ns))

    def program(self, name):
        return self.build / "tests" / name

    def library_hash(self):
        objects = sorted((self.build / "src").rglob("*.o"))
        return hashlib.sha256(b"".join(map(pathlib.Path.read_bytes, objects))).digest()

    def run(self, *command, limit):
        """What it prints, None if it fails; so does what never ends or takes all memory. The limit
        is in seconds of the processor's, so that a busy machine kills no mutant."""
        def limits():
            resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
            resource.setrlimit(resource.RLIMIT_CPU, (limit, limit))
        try:
            return subprocess.run(command, cwd=self.source, stdin=subprocess.DEVNULL, timeout=1800,
                                  env={**os.environ, **SETTINGS}, capture_output=True, check=True,
                                  preexec_fn=limits).stdout
        except (subprocess.TimeoutExpired, subprocess.CalledProcessError):
            return None

    def compile(self, target):
        return self.run("ninja", "-C", self.build, "-j1", target, limit=600) is not None

    def test(self, names, limit):
        tests = self.program("zrt_tests"), "--gtest_brief=1", "--gtest_fail_fast"
        return self.run(*tests, f"--gtest_filter={names}", limit=limit) is not None

    def digest(self, *texts):
        return self.run(self.program("zrt_digest"), *texts, limit=20 if texts else 120)

    def killer(self):
        """The first group of tests that fails, from the quickest on."""
        if any(self.digest(count) != digest for count, digest in self.few_texts.items()):
            return "few texts"
        if not self.compile("zrt_tests"):
            return "invalid"
        if not self.test(f"-{SLOW_TESTS}", 120):
            return "quick tests"
        if self.digest() != (self.source / "tests/digest.txt").read_bytes():
            return "digest"
        return None if self.is_quick or self.test(SLOW_TESTS, 600) else "slow tests"

    def judge(self, mutant):
        """Who kills the mutant; "invalid", "same" (library) or None if nobody does."""
        path = self.source / mutant.file
        text, stat = path.read_text(), path.stat()
        path.write_text(text[:mutant.begin] + mutant.after + text[mutant.end:])
        try:
            if not self.compile("zrt_digest"):
                return "invalid"
            return "same" if self.library_hash() == self.hash else self.killer()
        finally:
            path.write_text(text)
            os.utime(path, ns=(stat.st_atime_ns, stat.st_mtime_ns))
            self.restore()


def shown(mutant):
    tidy = lambda code: " ".join(code.split())
    return (f"{mutant.file}:{mutant.line}:{mutant.column}: {mutant.kind}: "
            f"{tidy(mutant.before)}  ->  {tidy(mutant.after)}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=500, help="mutants that compile")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--minutes", type=float, default=1e9, help="then no more mutants are begun")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--keep", type=pathlib.Path, help="builds the trees here, and leaves them")
    parser.add_argument("--log", type=pathlib.Path,
                        help="keeps what becomes of each mutant; those in it are not run again")
    parser.add_argument("--quick", action="store_true",
                        help="leaves the slow tests out, and survivors to a later run of the log")
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

    log = arguments.log or pathlib.Path(os.devnull)
    known = {}
    if log.exists():
        known = {name: result for result, name in
                 (line.split("\t", 1) for line in log.read_text().splitlines())}
    tally, survivors, drawn = collections.Counter(), [], iter(mutants)
    with tempfile.TemporaryDirectory() as work, log.open("a") as record:
        trees = queue.Queue()
        folder = arguments.keep or pathlib.Path(work)
        with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
            paths = (folder / str(i) for i in range(arguments.jobs))
            for tree in pool.map(lambda path: Tree(path, arguments.quick), paths):
                trees.put(tree)

        ends = time.monotonic() + 60 * arguments.minutes

        def judged(mutant):
            if (name := shown(mutant)) in known:
                return name, known[name]
            tree = trees.get()
            try:
                return name, tree.judge(mutant) or "survives"
            finally:
                trees.put(tree)

        with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
            while (missing := arguments.count - counted(tally)) > 0:
                batch = list(itertools.islice(drawn, min(missing, 4 * arguments.jobs)))
                if not batch or time.monotonic() > ends:
                    break
                for name, result in pool.map(judged, batch):
                    tally[result] += 1
                    if name not in known and not (arguments.quick and result == "survives"):
                        print(result, name, sep="\t", file=record, flush=True)
                    if result == "survives":
                        survivors.append(name)
                        print("survives:", name, flush=True)

    total = counted(tally)
    print(f"\n{total - tally['survives']} of {total} mutants killed, seed {arguments.seed} (" +
          ", ".join(f"{result}: {n}" for result, n in tally.most_common()) + ")")
    print(*sorted(survivors), sep="\n")
    return 0


def counted(tally):
    return sum(n for result, n in tally.items() if result not in ("invalid", "same"))


if __name__ == "__main__":
    sys.exit(main())
