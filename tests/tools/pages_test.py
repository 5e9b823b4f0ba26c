#!/usr/bin/env python3
# Pages and pictures that the host program writes, as a browser lays them out: nothing overlaps,
# nothing is cut off, nothing comes from outside, in narrow and wide windows, light and dark. Skipped
# with a word where there is no browser.
#
#   pages_test.py PROGRAM SCOPE_FILE
import html
import json
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import xml.dom.minidom

PROGRAM, SCOPE_FILE = sys.argv[1:]
BROWSER = shutil.which("chromium") or shutil.which("chromium-browser")
RANDOM = random.Random(5)
FAILURES = []

# Looks at the page that it stands in, and leaves what it sees as text.
PROBE = """
<script>
const faults = [];
let count = 0;
for (const svg of document.querySelectorAll('svg')) {
  const frame = svg.getBoundingClientRect();
  const rows = new Map();
  for (const text of svg.querySelectorAll('text')) {
    const box = text.getBoundingClientRect();
    ++count;
    if (box.left < frame.left || box.right > frame.right + 1 || box.bottom > frame.bottom + 1)
      faults.push('cut off: ' + text.textContent);
    const y = text.getAttribute('y');
    if (!rows.has(y)) rows.set(y, []);
    rows.get(y).push([box.left, box.right, text.textContent]);
  }
  const levels = [...rows.keys()].map(Number).sort((a, b) => a - b);
  levels.forEach((y, i) => { if (i && y - levels[i - 1] < 4) faults.push('rows touch: ' + y); });
  for (const row of rows.values()) {
    row.sort((a, b) => a[0] - b[0]);
    for (let i = 1; i < row.length; ++i)
      if (row[i][0] < row[i - 1][1] - 1) faults.push('overlap: ' + row[i - 1][2] + ' ' + row[i][2]);
  }
  for (const id of svg.getAttribute('aria-labelledby').split(' '))
    if (!svg.querySelector('#' + id)?.textContent) faults.push('no words for ' + id);
}
if (document.documentElement.scrollWidth > window.innerWidth) faults.push('wider than the window');
const ink = getComputedStyle(document.querySelector('svg text') ?? document.body);
const report = {faults: faults.slice(0, 10), count, ink: ink.fill, width: window.innerWidth};
document.body.innerHTML = '<pre id="report"></pre>';
document.getElementById('report').textContent = JSON.stringify(report);
</script>
"""


def written(*words):
    """The page or picture that a command writes."""
    answer = subprocess.run([PROGRAM, *words], capture_output=True, check=False)
    if answer.returncode > 1:
        FAILURES.append(f"{words}: {answer.stderr.decode()}")
    return answer.stdout.decode()


def look(name, page, width, is_dark):
    """What the probe sees."""
    path = os.path.join(WORK, "page.html")
    with open(path, "w", encoding="utf-8") as file:
        file.write(page.replace("</body>", PROBE + "</body>"))
    scheme = "0" if is_dark else "1"
    answer = subprocess.run(
        [BROWSER, "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-quic",
         "--disable-sync", f"--user-data-dir={WORK}/profile-{width}-{name}",
         f"--blink-settings=preferredColorScheme={scheme}", f"--window-size={width},900",
         "--dump-dom", "file://" + path], capture_output=True, timeout=120, check=False)
    found = re.search(r'<pre id="report">(.*)</pre>', answer.stdout.decode(), re.S)
    if not found:
        FAILURES.append(f"{name}: the browser says nothing: {answer.stderr.decode()[-300:]}")
        return
    report = json.loads(html.unescape(found[1]))
    FAILURES.extend(f"{name}, {width} wide: {fault}" for fault in report["faults"])
    brightness = sum(map(int, re.findall(r"\d+", report["ink"])[:3]))
    if report["count"] and (brightness > 380) != is_dark:
        FAILURES.append(f"{name}: ink {report['ink']} where dark is {is_dark}")


def text(depth, operands, operators):
    """A random text, most of which have a value."""
    parts = []
    for _ in range(RANDOM.choice([1, 1, 2, 2, 3, 5])):
        part = RANDOM.choice(operands)
        if depth > 0 and RANDOM.random() < 0.4:
            part = "(" + text(depth - 1, operands, operators) + ")"
        elif RANDOM.random() < 0.1:
            part = "~" + part
        parts += [part, RANDOM.choice(operators)]
    return "".join(parts[:-1])


NUMBERS = (["1", "20", "size", "order[1+1]", "0x1F", "2147483647", "limit", "<b>&\"'", "ärger"],
           ["+", "-", " * ", "&", "<<", "|", "/", ",", " %"])
VECTORS = (["0x0F", "#101", "#1", "fuses", "usercode", "0x00112233445566778899AABBCCDDEEFF0011", "7"],
           ["@", "@", "&", " @ ", ">>", "^"])
SPECIAL = ["1", "(1", "1++2", "", " ", "1,(2)", "1+2(3)", "+".join(map(str, range(1, 300))),
           "(" * 200 + "7" + ")" * 200, "-".join("(1+2)" for _ in range(150)), "x" * 500 + "+1"]
SHOWN = ["#1", "#1^0", "#1@#0", "@".join(["#1"] * 800), "@".join(["0x1234"] * 90), "0xFF^256",
         "(0xFF^256)@#1", "((0x00FF12^30)@0x3C7E)^40", "((0x00FF12^300)@0x3C7E)^400"]
PAGES = {
    "numbers": ["explain", "int", *SPECIAL, *(text(2, *NUMBERS) for _ in range(60))],
    "vectors": ["explain", "bits", *(text(2, *VECTORS) for _ in range(60))],
    "pictures": ["show", *SHOWN, *(text(1, *VECTORS) for _ in range(20))],
    "differences": ["show", "--against", "0x1234@(0xFF^300)@#101", "0x1234@(0xFF^300)@#111", "#1",
                    "0x1234@(0xFF^299)@#101", "(0x12@(0xFE^40000))", "((0x00FF12^30)@0x3C7E)^400"],
}

if not BROWSER:
    print("No browser here (chromium on Debian): pages are not laid out")
    sys.exit(77)
with tempfile.TemporaryDirectory() as WORK:
    for name, (command, *words) in PAGES.items():
        options = ["--scope", SCOPE_FILE, "--html", "-"]
        kind = [words.pop(0)] if command == "explain" else []
        if words[0] == "--against":
            options += [words.pop(0), words.pop(0)]
        page = written(command, *kind, *options, "--", *words)
        for picture in re.findall(r"<svg.*?</svg>", page, re.S):
            xml.dom.minidom.parseString(picture)
        if re.search(r"\b(src|href)=|url\(|@import|https?://(?!www\.w3\.org/2000/svg\")", page):
            FAILURES.append(f"{name}: something comes from outside")
        if page.count("<svg") < len(words) // 2:
            FAILURES.append(f"{name}: {page.count('<svg')} pictures of {len(words)} texts")
        look(name, page, 1200, False)
        look(name, page, 500, True)
for failure in FAILURES[:40]:
    print(failure)
sys.exit(1 if FAILURES else 0)
