#!/usr/bin/env python3
# A session of the host program at a pseudo-terminal: what a person types, and what appears. It runs
# with the cursor keys of the editing library, where the build has that, and as on a terminal that
# cannot move its cursor. Knows of the evaluator a few values.
#
#   session_test.py PROGRAM SCOPE_FILE edit|plain
import os
import pty
import re
import select
import signal
import struct
import subprocess
import sys
import termios
import time
import fcntl

PROGRAM, SCOPE_FILE, EDITOR = sys.argv[1:]
PATIENCE = 20  # seconds
FAILURES = []


class Terminal:
    """The program on a terminal of its own."""

    def __init__(self, columns=80, **environment):
        self.seen = ""  # since the last line was typed
        variables = {k: v for k, v in os.environ.items() if k != "NO_COLOR"} | {"TERM": "xterm"}
        self.child, self.file = pty.fork()
        if self.child == 0:
            os.execve(PROGRAM, [PROGRAM], variables | environment)
        fcntl.ioctl(self.file, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        os.kill(self.child, signal.SIGWINCH)
        self.wait_for("> $")

    def read(self, seconds):
        """Whether something came within the time."""
        if not select.select([self.file], [], [], seconds)[0]:
            return False
        try:
            data = os.read(self.file, 65536)
        except OSError:
            data = b""
        self.seen += data.decode(errors="replace")
        return data != b""

    def wait_for(self, pattern):
        end = time.monotonic() + PATIENCE
        while not re.search(pattern, plain(self.seen)):
            if time.monotonic() > end or not self.read(1) and not is_alive(self.child):
                FAILURES.append(f"no {pattern!r} in {self.seen!r}")
                return

    def type(self, keys):
        self.seen = ""
        os.write(self.file, keys.encode())

    def enter(self, line, pattern):
        """Types a line and waits for the next prompt behind the pattern."""
        self.type(line + "\n")
        self.wait_for(f"(?s){pattern}.*(int|float|bits)> $")
        return plain(self.seen)

    def end(self):
        """Ctrl-D; the exit status."""
        self.type("\x04")
        while self.read(5):
            pass
        os.close(self.file)
        return os.waitstatus_to_exitcode(os.waitpid(self.child, 0)[1])


def is_alive(child):
    return os.waitid(os.P_PID, child, os.WEXITED | os.WNOHANG | os.WNOWAIT) is None


def plain(text):
    """What is seen, as far as it does not depend on where the cursor was."""
    return re.sub(r"\x1b(\[[0-9;?]*[A-Za-z]|[=>78])", "", text).replace("\r", "")


def check(what, is_so):
    if not is_so:
        FAILURES.append(what)


# What is typed, and a part of what follows. A session of its own begins at each None.
LINES = [
    (None, ""),
    ("2+3*4", r"\n20\n  hint: there is no precedence: this is \(2\+3\)\*4; write \"2\+\(3\*4\)\""),
    ("last+1", r"\n21\n"),
    ("last/0", r"1:5: ErrInvalidOperator"),
    ("last", r"\n21\n"),
    (":float", ""),
    ("last/2", r"\n10.5\n"),
    (":bits", ""),
    ("last", r"ErrBadTokenType"),
    (f":scope {SCOPE_FILE}", ""),
    ("fuses@fuses", r"\n0x0F1E2D3C4B5A/48\n"),
    (":rows", r"\nfuses +next is row 3 of 3\nusercode_mask +one row, given each time\n"),
    (":explain", r"reads as  fuses\[1\]@fuses\[2\]"),
    (":show", r"\n  a   fuses  bits 47 to 24\n"),
    (":show #1@#0", r"\n    ------ab\n"),
    ("fuses", r"\n0x0ABC/12\n"),
    (":rows", r"\nfuses +all 3 rows are used up\n"),
    ("fuses", r"ErrStreamWrite"),
    (":reset", ""),
    (":rows", r"\nfuses +next is row 1 of 3\n"),
    (":let one=0x12,0x34", ""),
    ("one@one", r"\n0x1234/16\n"),
    (":let both=one[1]@#1", r"\n0x0025/9\n"),
    ("both", r"\n0x0025/9\n"),
    (":let one=0x56", ""),
    ("one", r"\n0x56/8\n"),
    (":int", ""),
    (":let size=8", ""),
    ("size-1", r"1:1: ErrUnknownOperand .*\n  hint: .*write\n    \"size - 1\""),
    (":fix size-1*2", r"\nsize - \(1\*2\)\n"),
    (":check 2+3*4", r"hint: there is no precedence"),
    (":check (2+3)*4", r"\nread as it looks\n"),
    (":let size=[1,2", r"1:10: "),
    (":let 5", r":let wants NAME=VALUE"),
    (":let a+b=3", r"no text can hold this name"),
    (":let last=3", r"take another name"),
    (":names", r"both  .*one  .*size  "),
    (":scope nosuch.json", r"No such file"),
    ("size", r"\n8\n"),
    (":explan", r"is :explain meant\?"),
    (" :int 5", r":int stands alone"),
    (":", r"no such command: :; :help tells them"),
    (":let d=0x1", r"odd; as in :let"),
    (":help", r":let NAME=VALUE"),
    (None, ""),
    (":explain", r"there is no last text yet"),
    ("", ""),
    (" 2", r"ErrUnknownOperand"),
]


def run_lines(**environment):
    terminal = None
    for line, pattern in LINES:
        if line is not None:
            terminal.enter(line, pattern)
            continue
        if terminal:
            check(f"it ends with {(status := terminal.end())}: {terminal.seen!r}", status == 0)
        terminal = Terminal(**environment)
    terminal.end()


def run_interrupts(**environment):
    terminal = Terminal(**environment)
    terminal.enter(":let size=8", "")
    terminal.type("size+99")
    time.sleep(0.3)
    terminal.type("\x03")
    terminal.wait_for("int> $")
    terminal.enter("size", r"(^|\n)8\n")
    terminal.enter(":bits", "")
    # Much work in few characters.
    terminal.type("(0xFF^100000000)" + "&((0xFF^100000000)" * 180 + ")" * 180 + "\n")
    terminal.wait_for(r"\)\n$")
    time.sleep(1)
    terminal.type("\x03")
    terminal.wait_for(r"stopped; names and rows are as they were\nbits> $")
    terminal.enter("size", r"\n0x00000008/32\n")
    check("Ctrl-D after Ctrl-C", terminal.end() == 0)


def run_keys():
    """What the editing library gives."""
    terminal = Terminal()
    terminal.enter(f":sco\t {SCOPE_FILE}", "")
    terminal.enter("ro\t*2", r"\n12\n")
    terminal.enter("\x1b[A\x7f3", r"\n18\n")
    terminal.type("2+3*4")
    terminal.wait_for(r"\nhint: there is no precedence")
    terminal.type("\x7f\x7f")
    terminal.wait_for(r"\n$")  # the remark goes
    terminal.enter("", r"\n5\n")
    for character in "(rows+1)*2":  # slowly, with remarks between
        terminal.type(character)
        terminal.read(0.2)
    terminal.enter("", r"\n14\n")
    for _ in range(20):  # typed and deleted again
        terminal.type("2+3*4-usercode@fuses" + "\x7f" * 20)
    terminal.enter("ä", "ErrUnknownOperand")
    check(f"it ends with {(status := terminal.end())}: {terminal.seen!r}", status == 0)


def run_narrow():
    """Nothing is wider than the terminal, and without colours there are none."""
    terminal = Terminal(columns=40, NO_COLOR="1", TERM="xterm")
    terminal.enter(":bits", "")
    for line in ("0x1234567890@#1@(0xFF^3000)@0x12", ":show", "((0x12@#11)^20)@0x34", ":show",
                 "#1@0x12345678", ":show"):
        for shown in terminal.enter(line, "").split("\n")[1:]:
            if not re.match(r"bits> |  hint:|0x", shown) and len(shown) > 40:
                FAILURES.append(f"{line!r}: {shown!r} is wider than 40 columns")
        check(f"{line!r} has colours", not re.search(r"\x1b\[[0-9;]*[1-9][0-9;]*m", terminal.seen))
    terminal.end()
    answer = subprocess.run([PROGRAM], stdin=subprocess.DEVNULL, capture_output=True, check=False)
    check("without a terminal there is a session", answer.returncode == 2)


run_lines(TERM="dumb")
run_interrupts(TERM="dumb")
run_narrow()
if EDITOR == "edit":
    run_lines()
    run_interrupts()
    run_keys()
for failure in FAILURES:
    print(failure)
sys.exit(1 if FAILURES else 0)
