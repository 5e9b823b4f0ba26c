// Ties it together: what is typed goes to the engine, its answers to the parts of the page, and
// kind, text and scope to the link.
const kLinkDelay = 300;  // milliseconds after the last key, since browsers limit changes of a link
const kNarrow = matchMedia('(max-width: 60rem)');

const scopeBlock = JSON.parse(byId('examples-data').textContent);
const text = new Editor(byId('text'), edited);
const scope = new Editor(byId('scope'), edited);
let asker = null;
let steps = null;
let pictures = null;
let linkTimer = null;

const kindNow = () => document.querySelector('[name=kind]:checked').value;

function edited() {
  clearTimeout(linkTimer);
  linkTimer = setTimeout(() => history.replaceState(null, '', linkOf()), kLinkDelay);
  evaluate();
}

function linkOf() {
  const part = (name, value) => `${name}=${encodeURIComponent(value)}`;
  return '#' +
      [part('kind', kindNow()), part('text', text.text), part('scope', scope.text)].join('&');
}

// What the link says. A part that it does not have stays as it is.
function takeLink() {
  const parts = new Map(location.hash.slice(1).split('&').map((part) => {
    const equals = part.indexOf('=');
    return [part.slice(0, equals), part.slice(equals + 1)];
  }));
  const read = (name) => {
    try {
      return parts.has(name) ? decodeURIComponent(parts.get(name)) : undefined;
    } catch {
      return undefined;  // a link that was cut off
    }
  };
  take(read('kind'), read('text'), read('scope'));
}

function take(kind, words, names) {
  const radio = document.querySelector(`[name=kind][value="${CSS.escape(kind ?? '')}"]`);
  if (radio !== null) radio.checked = true;
  if (words !== undefined) text.text = words;
  if (names !== undefined) scope.text = names;
  evaluate();
}

function evaluate() {
  if (asker === null) return;
  const request = {kind: kindNow(), text: text.text, scope: scope.text};
  document.documentElement.dataset.state = 'asked';
  setTimeout(() => {
    if (document.documentElement.dataset.state === 'asked') byId('told').classList.add('waits');
  }, 150);
  asker.evaluate(request, (told) => show(request, told));
}

function show(request, told) {
  const answer = told.answer ?? {};
  putScopeNote(request.scope, told);
  if (told.wrongScope !== undefined) {
    answer.error = 'The scope is wrong, so nothing is evaluated.';
    byId('scope').setAttribute('aria-invalid', 'true');
    byId('scope-card').open = true;
  } else {
    byId('scope').removeAttribute('aria-invalid');
  }
  byId('text-note').textContent = lengthNote(request.text);
  putValue(byId('value'), answer, told, request.text, text);
  text.put(marksOf(answer, told));
  byId('told').classList.remove('waits');
  steps.put(told, request.text);
  if (told.step_count === undefined || told.hints !== undefined)
    return remark(request, told, answer);
  for (const id of ['hints', 'brackets', 'cut', 'bits']) byId(id).classList.add('waits');
  asker.remark((remarks) => remark(request, {...told, ...remarks}, answer));
}

// Shows the rest of what is told of a text, which may come later.
function remark(request, told, answer) {
  for (const id of ['hints', 'brackets']) byId(id).classList.remove('waits');
  putHints(told, request.text, text);
  putBrackets(told);
  pictures.put(told, answer);
  text.put(marksOf(answer, told));
  window.zrtAnswer = {request, ...told};
  document.documentElement.dataset.state = 'done';
}

function counted(count, noun) {
  return `${count.toLocaleString('en')} ${noun}${count === 1 ? '' : 's'}`;
}

function lengthNote(words) {
  const length = `${counted([...words].length, 'character')}.`;
  if (!words.includes('\n')) return length;
  return `${length} A line break is a character like any other, and no blank.`;
}

function putScopeNote(written, {wrongScope, names}) {
  const note = byId('scope-note');
  if (wrongScope === undefined) {
    scope.put([]);
    const fields = names?.fields.length ?? 0;
    note.className = 'note';
    const begin = 'each evaluation begins with the first rows';
    if (written === '') {
      note.textContent = 'Names come from here, as JSON; // comments are welcome.';
    } else {
      note.textContent = fields === 0 ? '' : `${counted(fields, 'data field')}; ${begin}.`;
    }
    return;
  }
  const at = wrongScope.at ?? 0;
  scope.put([{at, length: at < written.length ? 1 : 0, is: 'fail'}]);
  const where = wrongScope.line === undefined ? '' : `${wrongScope.line}:${wrongScope.column}: `;
  note.className = 'note failure';
  note.replaceChildren(make(
      'button', {
        type: 'button',
        class: 'place',
        title: 'Show it in the scope',
        onclick: () => scope.select({at, length: at < written.length ? 1 : 0}),
      },
      where + shown(wrongScope.error)));
}

// Tries an example. The way back in the browser brings what stood there before.
function tryExample(kind, words) {
  clearTimeout(linkTimer);
  history.replaceState(null, '', linkOf());
  take(kind, words, scopeBlock.scope);
  history.pushState(null, '', linkOf());
  if (kNarrow.matches) byId('text').scrollIntoView({block: 'start'});
}

function putExamples() {
  for (const {title, examples} of scopeBlock.sections) {
    const list = make('ul', {class: 'examples'});
    for (const {kind, text: words, remark} of examples) {
      list.append(make(
          'li', {},
          make(
              'button', {
                type: 'button',
                class: `try ${kind}`,
                onclick: () => tryExample(kind, words),
              },
              make('code', {}, words === '' ? '(nothing)' : words),
              make('span', {class: 'kind'}, {int: 'integer', float: 'float', bits: 'bits'}[kind])),
          ...(remark === '' ? [] : [make('span', {class: 'note'}, remark)])));
    }
    byId('examples').append(make('details', {}, make('summary', {}, title), list));
  }
}

// Says on a button that it has done its work.
function tell(button, words) {
  const before = button.textContent;
  button.textContent = words;
  setTimeout(() => {
    button.textContent = before;
  }, 1500);
}

async function copy(button, words) {
  try {
    await navigator.clipboard.writeText(words);
    tell(button, 'Copied');
  } catch {
    tell(button, 'The browser refuses');
  }
}

async function begin() {
  if (kNarrow.matches) {
    for (const id of ['scope-card', 'examples-card']) byId(id).open = false;
  }
  putExamples();
  byId('kinds').addEventListener('change', edited);
  byId('share').addEventListener('click', () => {
    history.replaceState(null, '', linkOf());
    copy(byId('share'), location.href);
  });
  byId('value-copy').addEventListener('click', () => copy(byId('value-copy'), copied));
  byId('scope-clear').addEventListener('click', () => {
    scope.text = '';
    edited();
  });
  byId('scope-example').addEventListener('click', () => {
    scope.text = scopeBlock.scope;
    edited();
  });
  // A text is one line, so the key that ends lines has no use here.
  byId('text').addEventListener('keydown', (event) => {
    if (event.key === 'Enter' && !event.shiftKey && !event.isComposing) event.preventDefault();
  });
  // A line is pasted without its end, as zrteval reads lines.
  byId('text').addEventListener('paste', (event) => {
    const pasted = event.clipboardData.getData('text/plain');
    if (!/\r?\n$/.test(pasted)) return;
    event.preventDefault();
    document.execCommand('insertText', false, pasted.replace(/\r?\n$/, ''));
  });
  window.addEventListener('popstate', takeLink);
  try {
    asker = await startAsker();
  } catch (error) {
    byId('value').replaceChildren(
        make('p', {class: 'failure'}, `The engine does not start: ${error.message}`));
    return;
  }
  steps = new Steps(asker);
  pictures = new Pictures(asker);
  if (location.hash.length > 1)
    takeLink();
  else
    take('int', '2+3*4', scopeBlock.scope);
}

begin();
