// Asks the engine in its thread, one question at a time. A newer text takes the place of one that
// waits; a thread that takes too long is ended and another one begins, so the page never waits.
const kPatience = 400;                // milliseconds that an old text may keep a newer one waiting
const kMostTime = 10000;              // milliseconds for any text
const kMostMemory = 256 * 1024 ** 2;  // bytes with which a thread may take another text

class Asker {
  constructor(module, url) {
    this.module = module;
    this.url = url;
    this.lastId = 0;
    this.waiting = {};
    this.start();
  }

  start() {
    this.worker?.terminate();
    this.worker = new Worker(this.url);
    this.worker.postMessage({module: this.module});
    this.worker.onmessage = ({data}) => this.take(data);
    this.worker.onerror = (event) => this.take({id: this.asked?.id, broken: event.message});
    this.memory = 0;
    this.asked = null;
    clearTimeout(this.watch);
  }

  // Each calls `done` with the answer, unless something newer is asked before it is there. What is
  // asked of the last text is given up with it.
  evaluate(request, done) {
    this.waiting = {evaluate: {...request, asks: 'evaluate', done}};
    if (this.asked === null) return this.next();
    const left = this.asked.since + kPatience - performance.now();
    clearTimeout(this.watch);
    this.watch = setTimeout(() => {
      this.start();
      this.next();
    }, Math.max(left, 0));
  }

  remark(done) {
    this.waiting.remark = {asks: 'remark', done};
    if (this.asked === null) this.next();
  }

  stand(request, done) {
    this.waiting.stand = {...request, asks: 'stand', done};
    if (this.asked === null) this.next();
  }

  draw(done) {
    this.waiting.draw = {asks: 'draw', done};
    if (this.asked === null) this.next();
  }

  next() {
    const what =
        ['evaluate', 'remark', 'stand', 'draw'].find((name) => this.waiting[name] !== undefined);
    if (what === undefined) return;
    const {done, ...request} = this.waiting[what];
    delete this.waiting[what];
    if (what === 'evaluate' && this.memory > kMostMemory) this.start();
    this.asked = {id: ++this.lastId, done, since: performance.now()};
    this.worker.postMessage({...request, id: this.lastId});
    this.watch = setTimeout(
        () => this.giveUp(`this takes longer than ${kMostTime / 1000} seconds and was stopped`),
        kMostTime);
  }

  // Begins anew. What waits is of a text that the new thread does not know.
  giveUp(reason) {
    const {done} = this.asked;
    const {evaluate} = this.waiting;
    this.start();
    this.waiting = evaluate === undefined ? {} : {evaluate};
    if (evaluate === undefined) done({answer: {error: reason}});
    this.next();
  }

  take(answer) {
    if (this.asked === null || answer.id !== this.asked.id) return;
    if (answer.broken !== undefined) return this.giveUp(`the engine has stopped: ${answer.broken}`);
    const {done} = this.asked;
    clearTimeout(this.watch);
    this.asked = null;
    this.memory = answer.memory;
    if (this.waiting.evaluate === undefined) done(answer);
    if (this.asked === null) this.next();
  }
}

// The engine of this page, compiled once for all threads.
async function startAsker() {
  const written = atob(document.getElementById('engine-wasm').textContent);
  const bytes = Uint8Array.from(written, (character) => character.charCodeAt(0));
  const module = await WebAssembly.compile(bytes);
  const code = document.getElementById('engine-code').textContent;
  return new Asker(module, URL.createObjectURL(new Blob([code], {type: 'text/javascript'})));
}
