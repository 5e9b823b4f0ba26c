// Runs in a thread of its own, behind the engine's code: hands texts to the engine and its answers
// to the page. Places in the engine's answers count bytes; the page counts as its strings do.
const kLong = 4096;  // characters of a text whose value is told before the remarks on it
const encoder = new TextEncoder();
let engine = null;
let scope = null;  // as it was taken last
let scopeAnswer = null;
let text = '';

// Calls a function of the engine with a text and gives its answer.
function tell(call, words, ...rest) {
  const bytes = encoder.encode(words);
  const place = engine._malloc(bytes.length + 1);
  if (place === 0) return {error: 'memory has run out'};
  try {
    engine.HEAPU8.set(bytes, place);
    engine.HEAPU8[place + bytes.length] = 0;
    return JSON.parse(engine.UTF8ToString(call(place, bytes.length, ...rest)));
  } finally {
    engine._free(place);
  }
}

// The index in a string of each byte of it and of its end; null if they are the same.
function indexOfBytes(words) {
  const count = encoder.encode(words).length;
  if (count === words.length) return null;
  const indexes = new Uint32Array(count + 1);
  let byte = 0;
  let index = 0;
  for (const character of words) {
    const size = encoder.encode(character).length;
    indexes.fill(index, byte, byte + size);
    byte += size;
    index += character.length;
  }
  indexes[count] = index;
  return indexes;
}

// Turns all places in `value`, which are objects with "at", from bytes to indexes.
function turnPlaces(value, indexes) {
  if (indexes === null || typeof value !== 'object' || value === null) return value;
  if (typeof value.at === 'number') {
    const at = indexes[Math.min(value.at, indexes.length - 1)];
    if (typeof value.length === 'number') {
      value.length = indexes[Math.min(value.at + value.length, indexes.length - 1)] - at;
    }
    value.at = at;
  }
  for (const part of Object.values(value)) turnPlaces(part, indexes);
  return value;
}

function takeScope(written) {
  if (written === scope) return scopeAnswer;
  scope = written;
  scopeAnswer = turnPlaces(tell(engine._zrt_take_scope, written), indexOfBytes(written));
  return scopeAnswer;
}

function evaluate(request) {
  const names = takeScope(request.scope);
  if (names.error !== undefined) return {wrongScope: names};
  if (request.text.includes('\0')) return {answer: {error: 'the text holds a NUL'}, names};
  text = request.text;
  const kind = ['int', 'float', 'bits'].indexOf(request.kind);
  const told = tell(engine._zrt_evaluate, text, kind);
  if (told.error !== undefined) return {answer: told, names};
  const answer = {...turnPlaces(told, indexOfBytes(text)), names};
  return text.length > kLong ? answer : {...answer, ...remark()};
}

const read = (pointer) => turnPlaces(JSON.parse(engine.UTF8ToString(pointer)), indexOfBytes(text));
const remark = () => read(engine._zrt_remarks());

function stand(request) {
  return {
    steps: read(engine._zrt_steps(request.first, request.count)),
    standing: read(engine._zrt_standing(request.step)),
  };
}

const draw = () => ({pictures: JSON.parse(engine.UTF8ToString(engine._zrt_pictures()))});

async function start(module) {
  engine = await createEngine({
    instantiateWasm(imports, done) {
      WebAssembly.instantiate(module, imports).then((instance) => done(instance));
      return {};
    },
    printErr() {},
  });
}

let started = null;
onmessage = async ({data}) => {
  if (data.module !== undefined) {
    started = start(data.module);
    return;
  }
  try {
    await started;
    const answer = {evaluate, remark, stand, draw}[data.asks](data);
    postMessage({...answer, id: data.id, memory: engine.HEAPU8.length});
  } catch (error) {
    postMessage({id: data.id, broken: String(error)});
  }
};
