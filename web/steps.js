// The steps of an evaluation, one at a time, forward and back: what a step does, where it stands in
// the text and in its pieces, and which rows fields have given so far.
const kListed = 120;  // steps in the list around the one that is shown
const kAround = 160;  // characters of the text around it

class Steps {
  constructor(asker) {
    this.asker = asker;
    this.slider = byId('step');
    this.slider.addEventListener('input', () => this.step(Number(this.slider.value)));
    const on = (id, where) => {
      byId(id).addEventListener('click', () => this.step(where()));
    };
    on('step-first', () => 1);
    on('step-back', () => this.number - 1);
    on('step-on', () => this.number + 1);
    on('step-last', () => this.count);
    for (const id of ['step-list', 'stands']) {
      byId(id).addEventListener('keydown', (event) => this.key(event));
    }
  }

  key(event) {
    const where = {
      ArrowDown: this.number + 1,
      ArrowRight: this.number + 1,
      ArrowUp: this.number - 1,
      ArrowLeft: this.number - 1,
      Home: 1,
      End: this.count,
    }[event.key];
    if (where === undefined || event.ctrlKey || event.altKey || event.metaKey) return;
    event.preventDefault();
    this.step(where);
  }

  // Takes a new text, all steps done. A failure is shown as one more step.
  put(told, text) {
    const {answer} = told;
    this.text = text;
    this.fields = told.names?.fields ?? [];
    this.count = told.step_count ?? 0;
    byId('steps-card').hidden = this.count === 0;
    delete byId('stands').dataset.step;
    if (this.count === 0) return;
    this.failure = answer.status === undefined || answer.status === 0 ? null : {
      step: 'failure',
      does: shortened(shown(text.slice(answer.at, answer.at + answer.length)), 40) ||
          'something is missing',
      remark: answer.name,
    };
    if (this.failure !== null) ++this.count;
    this.slider.max = this.count;
    byId('step-says').setAttribute('aria-live', 'off');
    this.go(this.count);
  }

  // As a person asks for it, who may want to hear it.
  step(number) {
    byId('step-says').setAttribute('aria-live', 'polite');
    this.go(number);
  }

  go(number) {
    this.number = Math.min(Math.max(number, 1), this.count);
    const asked = this.number;
    const first = Math.max(this.number - 1 - kListed / 2, 0);
    this.asker.stand(
        {step: this.number - 1, first, count: kListed},
        (answer) => this.show(answer, first, asked));
  }

  // Shows a step that was asked for, though another one may be on its way.
  show({steps, standing}, first, number) {
    if (steps === undefined) return;
    if (this.failure !== null && first + steps.length === this.count - 1) steps.push(this.failure);
    this.slider.value = this.number;
    byId('step-number').textContent = `${number} of ${this.count}`;
    for (const [id, ends] of [
             ['step-first', 1], ['step-back', 1], ['step-on', this.count],
             ['step-last', this.count]]) {
      byId(id).setAttribute('aria-disabled', number === ends);
    }
    const step = steps[number - 1 - first];
    const {does, remark} = step;
    this.slider.setAttribute('aria-valuetext', `${number} of ${this.count}: ${does} ${remark}`);
    byId('step-says').replaceChildren(make('code', {}, shown(does)), ...(remark === '' ? [] : [
                                        make('span', {}, remark)
                                      ]));
    this.putStanding(standing, number);
    this.putRows(standing, number - 1);
    this.putList(steps, first, number);
  }

  // The text around the step, and below it a bar for each piece that the step lies in.
  putStanding({at, length, pieces}, number) {
    const box = byId('stands');
    box.dataset.step = number;
    const from = Math.max(at - kAround, 0);
    const to = Math.min(at + Math.min(length, kAround) + kAround, this.text.length);
    const line = make('pre', {});
    const innermost = pieces.at(-1) ?? {at: 0, length: 0};
    putMarked(
        line, this.text, [{...innermost, is: 'piece'}, {at, length, is: 'now'}], from, to, shown);
    if (from > 0) line.prepend('…');
    if (to < this.text.length) line.append('…');
    const strip = make('div', {class: 'strip'}, line);
    box.replaceChildren(strip);
    const place = placer(line, from, to);
    for (const piece of pieces) strip.append(barOf(piece, place, strip));
    const now = line.querySelector('.now');
    if (now !== null) {
      box.scrollLeft =
          now.offsetLeft + Math.min(now.offsetWidth, box.clientWidth) / 2 - box.clientWidth / 2;
    }
  }

  putRows({rows}, step) {
    const box = byId('rows');
    const used = new Set(rows.map(({field}) => field));
    const tables = [];
    for (const number of used) {
      const field = this.fields[number];
      const row = make(
          'div', {class: 'field'}, make('code', {class: 'name'}, shown(field.name)),
          make('span', {class: 'note'}, `${field.scope} field`));
      const list = make('ol', {class: 'chips'});
      field.rows.slice(0, 64).forEach((entry, index) => {
        const taken = rows.filter((read) => read.field === number && read.row === index + 1);
        const isNow = taken.some((read) => read.step === step);
        const is = isNow ? 'now' : taken.length > 0 ? 'taken' : '';
        const by = taken.slice(0, 3).map((read) => read.step + 1);
        const more = taken.length > by.length ? ' …' : '';
        const note = by.length === 0 ? '' : ` step ${by.join(', ')}${more}`;
        list.append(make(
            'li', {class: is}, `${entry.hex}/${entry.bits}`,
            ...(note === '' ? [] : [make('small', {}, note)])));
      });
      if (field.count > 64) list.append(make('li', {}, `and ${field.count - 64} more`));
      row.append(list);
      tables.push(row);
    }
    box.replaceChildren(...tables);
  }

  putList(steps, first, number) {
    const list = byId('step-list');
    let depth = 0;
    const items = steps.map((step, index) => {
      if (step.step === 'index end') depth = Math.max(depth - 1, 0);
      const {does, remark} = step;
      const item = make(
          'li', {
            value: first + index + 1,
            class: `is-${step.step.replace(' ', '-')}`,
            style: depth > 0 ? `--depth: ${depth}` : undefined,
            'aria-current': first + index + 1 === number ? 'step' : undefined,
            onclick: () => this.step(first + index + 1),
          },
          make('code', {}, shown(does)), ...(remark === '' ? [] : [make('span', {}, remark)]));
      if (step.step === 'index') ++depth;
      return item;
    });
    list.replaceChildren(...items);
    const now = list.querySelector('[aria-current]');
    if (now !== null) list.scrollTop = now.offsetTop - list.clientHeight / 2 + now.offsetHeight / 2;
  }
}

// A function that gives the left and the right edge of a part of the text in `line`, which shows it
// between `from` and `to`, some characters by more than one.
function placer(line, from, to) {
  const origin = line.getBoundingClientRect().left;
  const nodes = [];
  const walker = document.createTreeWalker(line, NodeFilter.SHOW_TEXT);
  while (walker.nextNode()) {
    const word = walker.currentNode.textContent;
    if (word !== '…' || walker.currentNode.parentElement !== line) nodes.push(walker.currentNode);
  }
  const whole = nodes.map((node) => node.textContent).join('');
  const edge = (index) => {
    let left = Math.min(Math.max(index, from), to) - from;
    if (whole.length !== to - from) left = Math.round(left * whole.length / (to - from));
    const range = document.createRange();
    for (const node of nodes) {
      if (left <= node.length) {
        range.setStart(node, left);
        break;
      }
      left -= node.length;
    }
    return range.getBoundingClientRect().left - origin;
  };
  return ({at, length}) => nodes.length === 0 ? [0, 0] : [edge(at), edge(at + length)];
}

function barOf(piece, place) {
  const [left, right] = place(piece);
  const bar =
      make('div', {class: 'bar', style: `left: ${left}px; width: ${Math.max(right - left, 2)}px`});
  if (piece.by !== 'chain') {
    const [begin, end] = place(piece.middle);
    bar.append(make('i', {style: `left: ${begin - left}px; width: ${Math.max(end - begin, 2)}px`}));
  }
  const name = {group: 'cut at a group', unary: 'cut at an operator', chain: 'a chain'}[piece.by];
  bar.append(make('span', {}, name));
  return make('div', {class: 'lane'}, bar);
}
