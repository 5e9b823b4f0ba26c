// Text with marked parts, and the editors: a text area over a copy of its text that carries marks.

// An element with attributes and children; texts become text nodes.
function make(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name === 'onclick')
      element.onclick = value;
    else if (value !== undefined && value !== false)
      element.setAttribute(name, value);
  }
  element.append(...children);
  return element;
}

// Characters that act or cannot be seen are shown by their code, as zrteval writes it.
const kUnseen =
    /[\u0000-\u001F\u007F-\u00A0\u00AD\u061C\u1680\u180E\u2000-\u200F\u2028-\u202F\u205F-\u206F\u3000\uFEFF\uFFF9-\uFFFB\u{E0000}-\u{E007F}]/gu;

function shown(text) {
  return text.replace(kUnseen, (character) => {
    const code = character.codePointAt(0);
    const [letter, digits] = code < 0x80 ? ['x', 2] : code > 0xFFFF ? ['U', 8] : ['u', 4];
    return ({'\n': '\\n', '\r': '\\r', '\t': '\\t'})[character] ??
        `\\${letter}${code.toString(16).toUpperCase().padStart(digits, '0')}`;
  });
}

function shortened(text, most) {
  return text.length <= most ? text : text.slice(0, most - 1) + '…';
}

// Puts `text` into `element`, with an element around each marked part. Marks are {at, length, is}
// and may overlap; one of length 0 stands between two characters. Only `from` to `to` is put.
function putMarked(element, text, marks, from = 0, to = text.length, show = (part) => part) {
  const ends = new Set([from, to]);
  for (const {at, length} of marks) {
    for (const end of [at, at + length])
      if (end > from && end < to) ends.add(end);
  }
  const sorted = [...ends].sort((a, b) => a - b);
  const parts = [];
  for (let i = 0; i < sorted.length; ++i) {
    const start = sorted[i];
    const end = sorted[i + 1];
    for (const {at, length, is} of marks) {
      if (length === 0 && at === start) parts.push(make('mark', {class: `gap ${is}`}));
    }
    if (end === undefined || end <= start) continue;
    const around = marks.filter(({at, length}) => at <= start && at + length >= end && length > 0);
    const part = show(text.slice(start, end));
    const classes = around.map(({is}) => is).join(' ');
    parts.push(around.length === 0 ? part : make('mark', {class: classes}, part));
  }
  element.replaceChildren(...parts);
}

class Editor {
  constructor(area, onEdit) {
    this.area = area;
    this.under = area.parentElement.querySelector('.under');
    this.marks = [];
    area.addEventListener('input', () => {
      this.put([]);
      onEdit();
    });
    area.addEventListener('scroll', () => this.follow());
    new ResizeObserver(() => this.follow()).observe(area);
  }

  get text() {
    return this.area.value;
  }

  set text(text) {
    if (text === this.area.value) return;
    this.area.value = text;
    this.put([]);
  }

  // The copy ends as a text area does, which shows a last line that is empty.
  put(marks) {
    this.marks = marks;
    putMarked(this.under, this.text, marks);
    this.under.append('\n');
    this.follow();
  }

  follow() {
    this.under.scrollTop = this.area.scrollTop;
    this.under.scrollLeft = this.area.scrollLeft;
  }

  select({at, length}) {
    this.area.focus();
    this.area.setSelectionRange(at, at + length);
  }

  // As if it had been typed, so that it can be undone.
  replace({at, length}, by) {
    this.select({at, length});
    if (!document.execCommand('insertText', false, by)) {
      this.area.setRangeText(by, at, at + length, 'end');
      this.area.dispatchEvent(new Event('input'));
    }
  }
}
