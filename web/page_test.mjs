// Tries the page in a browser: what it tells beside what zrteval tells, typing, long and wrong
// texts, the link, the keyboard, and how it fits wide and narrow screens.
//
//   node page_test.mjs PAGE ZRTEVAL [PICTURES]
import {spawnSync} from 'node:child_process';
import {mkdirSync, mkdtempSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {pathToFileURL} from 'node:url';
import {isDeepStrictEqual} from 'node:util';

import {Browser} from './browser.mjs';

const [page, zrteval, pictures] = process.argv.slice(2);
const url = pathToFileURL(page).href;
const folder = mkdtempSync(join(tmpdir(), 'zrt-scope-'));
const scopeFile = join(folder, 'scope.jsonc');
const browser = await Browser.open('chromium', url);
let passed = 0;
let failed = 0;

function check(name, actual, expected) {
  if (isDeepStrictEqual(actual, expected)) return ++passed;
  ++failed;
  console.log(`${name}\n  is     ${JSON.stringify(actual)}\n  wanted ${JSON.stringify(expected)}`);
}

const isDone = () => browser.until('document.documentElement.dataset.state === "done"');

// As if it had been typed at once; gives all that the engine has told.
async function put(kind, text, scope) {
  await browser.read(`(() => {
    document.querySelector('[name=kind][value=${kind}]').checked = true;
    const put = (id, text) => {
      const area = document.getElementById(id);
      area.value = text;
      area.dispatchEvent(new Event('input'));
    };
    ${scope === undefined ? '' : `put('scope', ${JSON.stringify(scope)});`}
    put('text', ${JSON.stringify(text)});
  })()`);
  await isDone();
  return browser.read('window.zrtAnswer');
}

const words = (selector) => browser.read(`document.querySelector('${selector}').textContent`);

function native(...args) {
  const {stdout, stderr} = spawnSync(zrteval, args, {encoding: 'utf8', maxBuffer: 1 << 28});
  return {stdout, stderr};
}

// The hints as zrteval prints them, in order, and those of the page in the same form.
const saidBy =
    (output) => [...output.matchAll(/(?:^ {2}|: )hint: (.*)$/gm)].map(([, said]) => said);
const quoted = (text) => `"${text.length > 60 ? `${text.slice(0, 60)}...` : text}"`;
const saidIn = ({says, instead}) =>
    instead === undefined ? says : `${says}; write ${quoted(instead)}`;

async function compare(kind, text, steps) {
  const told = await put(kind, text);
  const name = `${kind} ${JSON.stringify(text)}`;
  const scope = ['--scope', scopeFile];
  const {brackets, steps: nativeSteps, ...answer} =
      JSON.parse(native('explain', kind, ...scope, '--json', '--', text).stdout);
  check(`${name}: the answer`, told.answer, answer);
  check(`${name}: the reading`, told.brackets, brackets);
  check(`${name}: the steps`, told.step_count, nativeSteps.length);
  const shown = answer.hex ?? (answer.status === 0 ? String(told.value) : answer.name);
  check(`${name}: what is shown`, (await words('#value')).includes(shown), true);
  const said = [...(told.reasons ?? []), ...told.hints].map(saidIn);
  check(`${name}: the hints`, said, saidBy(native('check', kind, ...scope, '--', text).stdout));
  if (!steps) return;
  for (let i = nativeSteps.length; i > 0; --i) {
    await browser.read(`steps.go(${i})`);
    await browser.until(`document.getElementById('stands').dataset.step === '${i}'`);
    const {at, length} = nativeSteps[i - 1];
    if (!length) continue;
    check(
        `${name}: where step ${i} stands`, await words('#stands .now'),
        text.slice(at, at + length));
  }
}

async function rows() {
  await put('bits', 'fuses@(fuses)@fuses[2]');
  const taken = async (step) => {
    await browser.read(`steps.step(${step})`);
    await browser.until(`document.getElementById('stands').dataset.step === '${step}'`);
    return browser.read('[...document.querySelectorAll("#rows li")].map((row) => row.className)');
  };
  check('no row yet', await taken(1), []);
  check('the first row', await taken(3), ['now', '', '']);
  check('an index', await taken(await browser.read('steps.count')), ['taken', 'taken', '']);
  check(
      'drawings', await browser.read('document.querySelectorAll("#cut svg, #bits svg").length'), 2);
}

async function typing(text, kind) {
  await put(kind, '');
  await browser.read('document.getElementById("text").focus()');
  for (const key of text) await browser.press(key);
  await isDone();
  check(`${text} typed`, (await browser.read('window.zrtAnswer')).request.text, text);
  for (const _ of text) await browser.press('Backspace');
  await isDone();
  check(
      `${text} deleted`, (await browser.read('window.zrtAnswer')).answer.name, 'ErrUnknownOperand');
}

async function longTexts() {
  const most = 65536;
  const repeated = (text) => text.repeat(Math.floor(most / text.length));
  const texts = {
    chain: [`1${repeated('+1')}`, 'int'],
    groups: [`(1)${repeated('+(1)')}`, 'bits'],
    unary: [`~1${repeated('+~1')}`, 'bits'],
    joined: [`#1${repeated('@#1')}`, 'bits'],
    nested: [`${'('.repeat(most / 2)}1${')'.repeat(most / 2)}`, 'int'],
    open: ['('.repeat(most), 'int'],
    name: ['a'.repeat(most), 'float'],
    digits: [`0x${'5A'.repeat(most / 2)}`, 'bits'],
    factors: [`1.5${repeated('*1.5')}`, 'int'],
    large: ['0xFF^200000000', 'bits'],
    larger: ['(0xFF^130000000)@(0xFF^130000000)', 'bits'],
    scarce: [`${'(0xFF^260000000)@'.repeat(8)}#1`, 'bits'],
    slow: [`${'~('.repeat(2000)}0xFF^250000000${')'.repeat(2000)}`, 'bits'],
    wide: ['ß\u{1F600}+1', 'int'],
    acting: ['1+\u202E2\n', 'int'],
    none: ['1\0', 'int'],
  };
  for (const [name, [text, kind]] of Object.entries(texts)) {
    const since = Date.now();
    const told = await put(kind, text);
    const outcome = told.answer.error ?? told.answer.name ?? 'has a value';
    console.log(`  ${name.padEnd(8)} ${String(Date.now() - since).padStart(5)} ms  ${
        outcome.slice(0, 80)}`);
    check(
        `${name} is told`, told.answer.status !== undefined || told.answer.error !== undefined,
        true);
  }
  check('a text after all that', (await put('int', '2+3*4')).answer.value, 20);
  await browser.read(`text.text = ${JSON.stringify(texts.slow[0])}; edited()`);
  check('a text typed meanwhile', (await put('int', '2+3*4')).answer.value, 20);
}

async function wrongScope(scope) {
  const written = [
    '{"tokens": {\n  "local": {"a": 4294967296}}}',
    '{"tokens": {"local": {"ä\x7F": 1}}}',
    '{"tokens": {"local": {"\0": 1}}}',
  ];
  for (const text of written) {
    const {wrongScope: wrong} = await put('int', '1', text);
    writeFileSync(join(folder, 'wrong.json'), text);
    const {stderr} = native('int', '--scope', join(folder, 'wrong.json'), '1');
    check(
        `wrong: ${JSON.stringify(text)}`,
        stderr.includes(`wrong.json:${wrong.line}:${wrong.column}: ${wrong.error}\n`), true);
  }
  check('a scope put right', (await put('int', 'size', scope)).answer.value, 8);
}

async function link(scope) {
  await put('bits', 'usercode@#1 & "%+\u00E4"', scope.replace('DEADBEEF', '12345678'));
  await browser.read('history.replaceState(null, "", linkOf())');
  const before = await browser.read('({href: location.href, text: text.text, scope: scope.text})');
  await browser.go('about:blank');
  await browser.go(before.href);
  await isDone();
  check(
      'a link', await browser.read('({href: linkOf(), text: text.text, scope: scope.text})'),
      {...before, href: before.href.slice(before.href.indexOf('#'))});
  await browser.read('document.querySelector("details").open = true');
  await browser.read('document.querySelector(".try").click()');
  await isDone();
  check('an example', await browser.read('text.text'), 'gain');
  await browser.read('history.back()');
  await browser.until(`text.text === ${JSON.stringify(before.text)}`);
}

async function keyboard() {
  await put('int', '(1+2)*3');
  await browser.read(
      'document.querySelectorAll("details details").forEach((part) => part.open = false)');
  await browser.read('document.getElementById("share").focus()');
  const reached = ['share'];
  for (let i = 0; i < 40; ++i) {
    await browser.press('Tab');
    reached.push(await browser.read('document.activeElement.id || document.activeElement.value'));
  }
  for (const id
           of ['share', 'int', 'text', 'scope', 'value-copy', 'step-back', 'step', 'step-list']) {
    check(`${id} by keyboard`, reached.includes(id), true);
  }
  const number = () => browser.read('steps.number');
  await browser.read('document.getElementById("step").focus()');
  await browser.press('Home');
  check('the first step', await number(), 1);
  await browser.press('ArrowRight');
  check('a step forward', await number(), 2);
  await browser.read('document.querySelector("[name=kind]:checked").focus()');
  await browser.press('ArrowRight');
  await isDone();
  check('another kind', (await browser.read('window.zrtAnswer')).answer.kind, 'float');
}

async function screens() {
  const texts = {
    value: ['int', '10+2*(1+2)-3*4'],
    rows: ['bits', 'fuses@(fuses)@~id@fuses'],
    failure: ['int', 'order[0-1]*(size-1)'],
    long: ['bits', `(0x5A^40)${'@#101@usercode'.repeat(60)}`],
  };
  for (const [width, height] of [[1280, 900], [360, 740]]) {
    for (const scheme of ['light', 'dark']) {
      await browser.show(width, height, scheme);
      for (const [name, [kind, text]] of Object.entries(texts)) {
        await put(kind, text);
        await browser.until('document.querySelector(".picture.waits") === null');
        await new Promise((go) => setTimeout(go, 300));
        check(
            `${name} fits ${width}`,
            await browser.read('document.documentElement.scrollWidth <= innerWidth'), true);
        if (pictures) await browser.picture(join(pictures, `${name}-${width}-${scheme}.png`));
      }
    }
  }
}

const timed = async (name, work) => {
  const [since, before] = [Date.now(), failed];
  await work();
  console.log(`${name}: ${failed - before} failed, ${((Date.now() - since) / 1000).toFixed(1)} s`);
};

try {
  if (pictures) mkdirSync(pictures, {recursive: true});
  await browser.show(1280, 900);
  await browser.go(url);
  await isDone();
  const {scope, sections} = await browser.read('scopeBlock');
  writeFileSync(scopeFile, scope);
  const examples = sections.flatMap((section) => section.examples);
  await timed('examples', async () => {
    for (const {kind, text} of examples) {
      for (const other of ['int', 'float', 'bits']) await compare(other, text, other === kind);
    }
  });
  await timed('rows', rows);
  await timed('typing', async () => {
    for (const {kind, text} of examples.slice(0, 100)) await typing(text, kind);
  });
  await timed('long texts', longTexts);
  await timed('a wrong scope', () => wrongScope(scope));
  await timed('link', () => link(scope));
  await timed('keyboard', keyboard);
  await timed('screens', screens);
  check('complaints', browser.complaints, []);
} finally {
  await browser.close();
  rmSync(folder, {recursive: true});
}
console.log(`${passed} passed, ${failed} failed`);
process.exitCode = failed > 0 ? 1 : 0;
