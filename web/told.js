// Shows what the engine tells of a text as a whole: the value or the failure, the hints, and how it
// is read. What it shows is worded as zrteval words it.
const kMostShown = 2000;  // characters of a value or a reading
const kExcerpt = 60;      // characters around a place
const kFewSteps = 60;     // that are drawn at once,
const kFewBits = 512;
const kManySteps = 1000;  // that are not drawn unless asked for
const kDrawDelay = 250;   // milliseconds after which the others are drawn

const byId = (id) => document.getElementById(id);

// The text around a place, with the place marked.
function excerpt(text, place, is) {
  const from = Math.max(place.at - kExcerpt, 0);
  const to = Math.min(
      Math.max(place.at + Math.min(place.length, kExcerpt), place.at + 1) + kExcerpt, text.length);
  const line = make('code', {class: 'excerpt'});
  putMarked(line, text, [{...place, is}], from, to, shown);
  if (from > 0) line.prepend('…');
  if (to < text.length) line.append('…');
  return line;
}

// Where a place is, and a way there.
function placeButton(place, editor) {
  const column = place.at + 1;
  const words = place.length > 1 ? `${column}–${place.at + place.length}` : `${column}`;
  return make(
      'button', {
        type: 'button',
        class: 'place',
        title: 'Show it in the text',
        onclick: () => editor.select(place),
      },
      `column ${words}`);
}

// `above` is a place that is shown already.
function hintItem(hint, text, editor, above = undefined) {
  const item = make('li', {}, make('p', {}, make('b', {}, 'hint: '), hint.says));
  const row = make('p', {class: 'actions'});
  if (hint.at !== above?.at || hint.length !== above?.length) {
    item.append(excerpt(text, hint, 'hint'));
    row.append(placeButton(hint, editor));
  }
  if (hint.instead !== undefined) {
    row.append(make(
        'button', {
          type: 'button',
          class: 'instead',
          title: 'Put it into the text',
          onclick: () => editor.replace(hint, hint.instead),
        },
        'write ', make('code', {}, shortened(shown(hint.instead), 120))));
  }
  if (row.childElementCount > 0) item.append(row);
  return item;
}

// What is to be copied of the last value.
let copied = '';

function putValue(box, answer, told, text, editor) {
  copied = '';
  box.className = answer.status === 0 ? 'good' : 'bad';
  if (answer.error !== undefined) {
    box.replaceChildren(make('p', {class: 'failure'}, answer.error));
    if (told.value !== undefined) {
      copied = told.value;
      box.append(make('p', {class: 'big'}, told.value));
    }
  } else if (answer.status !== 0) {
    putFailure(box, answer, told, text, editor);
  } else if (answer.hex !== undefined) {
    copied = answer.hex;
    const bits = `${answer.bits.toLocaleString('en')} ${answer.bits === 1 ? 'bit' : 'bits'}`;
    const hex = answer.hex.length <= kMostShown ? answer.hex : told.value.replace(/\/.*/, '');
    box.replaceChildren(make('p', {class: 'big'}, hex), make('p', {class: 'note'}, bits));
  } else {
    copied = String(told.value);
    box.replaceChildren(make('p', {class: 'big'}, copied));
    if (answer.kind === 'int') {
      const hex = (answer.value >>> 0).toString(16).toUpperCase().padStart(8, '0');
      box.append(make('p', {class: 'note'}, `0x${hex} in 32 bits`));
    }
  }
  byId('value-copy').hidden = copied === '';
}

function putFailure(box, answer, told, text, editor) {
  const told_as = (failure, sentence, opening) => make(
      'p', {class: 'failure'}, opening, make('b', {}, failure.name),
      ` (${failure.status}): ${sentence}`);
  box.replaceChildren(
      told_as(answer, answer.message, ''), excerpt(text, answer, 'fail'),
      make('p', {class: 'actions'}, placeButton(answer, editor)));
  if (answer.cause !== undefined) {
    box.append(
        told_as(answer.cause, told.cause, 'the cause: '), excerpt(text, answer.cause, 'fail'),
        make('p', {class: 'actions'}, placeButton(answer.cause, editor)));
  }
  const reasons = told.reasons ?? [];
  if (reasons.length > 0) {
    const last = answer.cause ?? answer;
    box.append(make(
        'ul', {class: 'hints'}, ...reasons.map((reason) => hintItem(reason, text, editor, last))));
  }
}

function putHints(told, text, editor) {
  const hints = told.hints ?? [];
  byId('hints-card').hidden = hints.length === 0;
  const items = hints.map((hint) => hintItem(hint, text, editor));
  if (told.hint_count > hints.length) {
    items.push(make('li', {}, `and ${told.hint_count - hints.length} more`));
  }
  byId('hints').replaceChildren(...items);
}

function putBrackets(told) {
  const brackets = told.brackets ?? '';
  const code = make('code', {}, shortened(shown(brackets), kMostShown));
  byId('brackets').replaceChildren(...(brackets === '' ? [] : ['reads as ', code]));
}

// Puts a drawing, which comes as text, into its place.
function putPicture(id, drawn) {
  const box = byId(id);
  box.hidden = drawn === undefined;
  box.classList.remove('waits');
  if (drawn === undefined) return box.replaceChildren();
  const {documentElement} = new DOMParser().parseFromString(drawn, 'image/svg+xml');
  box.replaceChildren(document.importNode(documentElement, true));
}

// Draws what is quickly drawn when the text rests, and the rest when it is asked for.
class Pictures {
  constructor(asker) {
    this.asker = asker;
    byId('draw').addEventListener('click', () => this.draw());
  }

  put(told, answer) {
    clearTimeout(this.timer);
    const bits = answer.bits ?? 0;
    const steps = told.step_count ?? 0;
    byId('draw').hidden = steps <= kManySteps;
    if (steps > kManySteps) {
      byId('draw').textContent = `Draw ${steps.toLocaleString('en')} steps`;
      return this.show({});
    }
    if (steps <= kFewSteps && bits <= kFewBits) return this.draw();
    for (const id of ['cut', 'bits']) byId(id).classList.add('waits');
    this.timer = setTimeout(() => this.draw(), kDrawDelay);
  }

  draw() {
    this.asker.draw(({pictures}) => {
      byId('draw').hidden = true;
      this.show(pictures ?? {});
    });
  }

  show({cut, bits}) {
    putPicture('cut', cut);
    putPicture('bits', bits);
    byId('bits-card').hidden = bits === undefined;
    byId('cut-card').hidden =
        cut === undefined && byId('brackets').textContent === '' && byId('draw').hidden;
  }
}

// The marks of a text in its editor.
function marksOf(answer, told) {
  const marks = (told.hints ?? []).map(({at, length}) => ({at, length, is: 'hint'}));
  if (answer.status !== undefined && answer.status !== 0) {
    if (answer.cause !== undefined)
      marks.push({...answer.cause, is: 'fail'});
    else
      marks.push({at: answer.at, length: answer.length, is: 'fail'});
  }
  return marks;
}
