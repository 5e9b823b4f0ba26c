// Puts the page together: style, scripts, engine and the examples of the language's description go
// into one file that needs nothing else.
//
//   node bundle.mjs SOURCE_DIR ENGINE_DIR VERSION OUTPUT
import {readFileSync, writeFileSync} from 'node:fs';
import {dirname, join} from 'node:path';
import {fileURLToPath} from 'node:url';

const [sourceDir, engineDir, version, output] = process.argv.slice(2);
const here = dirname(fileURLToPath(import.meta.url));
const read = (name) => readFileSync(join(here, name), 'utf8');

// Each heading with the examples below it, and the scope that they are written for.
function examplesOf(description) {
  const sections = [];
  let scope = '';
  let chapter = '';
  let title = '';
  let block = null;
  for (const line of description.split('\n')) {
    const fence = /^```(.*)/.exec(line);
    if (fence !== null) {
      block = block === null ? fence[1] : null;
      if (block?.startsWith('zrt-') && sections.at(-1)?.title !== title) {
        sections.push({title, examples: []});
      }
      continue;
    }
    if (block === null) {
      const heading = /^(##+) (.*)/.exec(line);
      if (heading !== null) {
        if (heading[1] === '##') chapter = heading[2];
        title = heading[1] === '##' ? chapter : `${chapter}: ${heading[2].toLowerCase()}`;
      }
    } else if (block === 'jsonc') {
      scope += line + '\n';
    } else if (/^zrt-(int|float|bits)$/.test(block)) {
      sections.at(-1).examples.push(exampleOf(line, block.slice('zrt-'.length)));
    }
  }
  return {scope: scope.trimEnd(), sections: sections.filter(({examples}) => examples.length > 0)};
}

// "text  ->  value  ; remark", the text in quotes where it begins or ends with a blank.
function exampleOf(line, kind) {
  const [, written, , said] = /^(.*?) +-> +(.*?)(?: *; (.*))?$/.exec(line);
  // There rows move on from line to line, here each text begins with the first ones.
  const remark = said === undefined || said.includes('line above') ? '' : said;
  return {kind, text: /^".*"$/.test(written) ? written.slice(1, -1) : written, remark};
}

// What stands in a script of a page must not look like its end.
const inScript = (code) => code.replace(/<\/(script)/gi, '<\\/$1').replace(/<!--/g, '<\\!--');

const parts = {
  'style': read('page.css'),
  'engine-wasm': readFileSync(join(engineDir, 'zrt_engine.wasm')).toString('base64'),
  'engine-code': inScript(readFileSync(join(engineDir, 'zrt_engine.js'), 'utf8')),
  'worker': inScript(read('worker.js')),
  'examples': JSON.stringify(examplesOf(readFileSync(join(sourceDir, 'docs/language.md'), 'utf8')))
                  .replace(/</g, '\\u003c'),
  'scripts': ['asker.js', 'marks.js', 'told.js', 'steps.js', 'page.js']
                 .map((name) => inScript(read(name)))
                 .join('\n'),
  'version': version,
};
writeFileSync(
    output, read('page.html').replace(/\{([a-z-]+)\}/g, (whole, name) => parts[name] ?? whole));
