// A browser without a window, driven through a pipe in its debugging protocol. Knows nothing of the
// page that it shows.
import {spawn} from 'node:child_process';
import {mkdtempSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';

export class Browser {
  #process;
  #profile = mkdtempSync(join(tmpdir(), 'zrt-page-'));
  #pending = new Map();
  #lastId = 0;
  #session;
  complaints = [];  // what the page's console tells of faults

  static async open(program, url) {
    const browser = new Browser();
    browser.#start(program);
    const {targetId} = await browser.#send('Target.createTarget', {url: 'about:blank'});
    const {sessionId} = await browser.#send('Target.attachToTarget', {targetId, flatten: true});
    browser.#session = sessionId;
    for (const domain of ['Page', 'Runtime', 'Log', 'Network'])
      await browser.send(`${domain}.enable`);
    await browser.go(url);
    return browser;
  }

  #start(program) {
    // In a container there is no sandbox of the browser's own, and little shared memory.
    this.#process = spawn(
        program,
        [
          '--headless=new',
          '--no-sandbox',
          '--disable-gpu',
          '--disable-dev-shm-usage',
          '--no-first-run',
          '--disable-background-networking',
          '--disable-component-update',
          '--disable-quic',
          '--disable-sync',
          '--hide-scrollbars',
          '--remote-debugging-pipe',
          `--user-data-dir=${this.#profile}`,
        ],
        {stdio: ['ignore', 'ignore', 'ignore', 'pipe', 'pipe']});
    let rest = '';
    this.#process.stdio[4].setEncoding('utf8').on('data', (piece) => {
      const messages = (rest + piece).split('\0');
      rest = messages.pop();
      messages.forEach((message) => this.#take(JSON.parse(message)));
    });
    this.#process.on('exit', () => {
      this.#pending.forEach(({refuse}) => refuse(new Error('the browser has ended')));
    });
  }

  #take({id, result, error, method, params}) {
    if (id !== undefined) {
      const {take, refuse} = this.#pending.get(id);
      this.#pending.delete(id);
      if (error)
        refuse(new Error(error.message));
      else
        take(result);
    } else if (method === 'Runtime.exceptionThrown') {
      this.complaints.push(
          params.exceptionDetails.exception?.description ?? params.exceptionDetails.text);
    } else if (method === 'Log.entryAdded' && params.entry.level === 'error') {
      this.complaints.push(params.entry.text);
    } else if (
        method === 'Network.requestWillBeSent' && !/^(file|blob|data):/.test(params.request.url)) {
      this.complaints.push(`asks for ${params.request.url}`);
    }
  }

  #send(method, params = {}, sessionId = undefined) {
    const id = ++this.#lastId;
    this.#process.stdio[3].write(JSON.stringify({id, method, params, sessionId}) + '\0');
    return new Promise((take, refuse) => this.#pending.set(id, {take, refuse}));
  }

  send(method, params) {
    return this.#send(method, params, this.#session);
  }

  async go(url) {
    await this.send('Page.navigate', {url});
    await this.until('document.readyState === "complete"');
  }

  // The value of an expression in the page; of a promise what it becomes.
  async read(expression) {
    const {result, exceptionDetails} = await this.send('Runtime.evaluate', {
      expression,
      awaitPromise: true,
      returnByValue: true,
    });
    if (exceptionDetails)
      throw new Error(exceptionDetails.exception?.description ?? exceptionDetails.text);
    return result.value;
  }

  async until(condition, milliseconds = 20000) {
    const end = Date.now() + milliseconds;
    while (Date.now() < end) {
      if (await this.read(condition).catch(() => false)) return;
      await new Promise((go) => setTimeout(go, 20));
    }
    throw new Error(`this does not come about: ${condition}`);
  }

  // A key as a person presses it; `key` as the browser names it.
  async press(key, modifiers = 0) {
    const text = key.length === 1 ? key : undefined;
    const codes = {
      Tab: 9,
      Enter: 13,
      Backspace: 8,
      End: 35,
      Home: 36,
      ArrowLeft: 37,
      ArrowUp: 38,
      ArrowRight: 39,
      ArrowDown: 40,
      ' ': 32
    };
    const common = {key, modifiers, windowsVirtualKeyCode: codes[key] ?? 0};
    await this.send(
        'Input.dispatchKeyEvent', {type: text ? 'keyDown' : 'rawKeyDown', text, ...common});
    await this.send('Input.dispatchKeyEvent', {type: 'keyUp', ...common});
  }

  async show(width, height, scheme = 'light') {
    await this.send(
        'Emulation.setDeviceMetricsOverride', {width, height, deviceScaleFactor: 1, mobile: false});
    await this.send(
        'Emulation.setEmulatedMedia', {features: [{name: 'prefers-color-scheme', value: scheme}]});
  }

  // The whole page, however long, as a PNG file.
  async picture(path) {
    const {cssContentSize: {width, height}} = await this.send('Page.getLayoutMetrics');
    const {data} = await this.send('Page.captureScreenshot', {
      captureBeyondViewport: true,
      clip: {x: 0, y: 0, width, height, scale: 1},
    });
    writeFileSync(path, Buffer.from(data, 'base64'));
  }

  async close() {
    const ended = new Promise((go) => this.#process.on('exit', go));
    this.#process.kill();
    await ended;
    rmSync(this.#profile, {recursive: true, force: true, maxRetries: 5});
  }
}
