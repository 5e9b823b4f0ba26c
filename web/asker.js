// Asks the engine in its thread, one question at a time. A newer text takes the place of one that
// waits; a thread that takes too long is ended and another one begins, so the page never waits.
const kPatience = 400;               // milliseconds that an old text may keep a newer one waiting
const kMostTime = 10000;             // milliseconds for any text
const kMostMemory = 256 * 1024 ** 2;  // bytes with which a thread may take another text

class Asker {
  constructor(module, url) {
    this.module = module;
    this.url = url;
    this.lastId = 0;
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

  // Calls `done` with the answer, unless something newer is asked before it is there.
  evaluate(request, done) {
    this.waiting = {...request, id: ++this.lastId, done};
    this.waitingStand = null;
    if (this.asked === null) return this.next();
    const left = this.asked.since + kPatience - performance.now();
    clearTimeout(this.watch);
    this.watch = setTimeout(() => { this.start(); this.next(); }, Math.max(left, 0));
  }

  stand(request, done) {
    this.waitingStand = {...request, id: ++this.lastId, done};
    if (this.asked === null) this.next();
  }

  next() {
    const question = this.waiting ?? this.waitingStand;
    if (!question) return;
    if (this.waiting) this.waiting = null; else this.waitingStand = null;
    if (question.step === undefined && this.memory > kMostMemory) this.start();
    const {done, ...request} = question;
    this.asked = {id: request.id, done, since: performance.now()};
    this.worker.postMessage(request);
    this.watch = setTimeout(() => {
      this.start();
      done({answer: {error: `this takes longer than ${kMostTime / 1000} seconds and was stopped`}});
      this.next();
    }, kMostTime);
  }

  take(answer) {
    if (this.asked === null || answer.id !== this.asked.id) return;
    const {done} = this.asked;
    clearTimeout(this.watch);
    this.asked = null;
    this.memory = answer.memory ?? 0;
    if (answer.broken !== undefined) {
      this.start();
      answer = {answer: {error: `the engine has stopped: ${answer.broken}`}};
    }
    if (!this.waiting) done(answer);
    this.next();
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
