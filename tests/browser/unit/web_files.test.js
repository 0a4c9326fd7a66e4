// The installed web files as files: plain ASCII, the search script's body
// line, and the tree menu's interface as code.html uses it.
'use strict';

const test = require('node:test');
const assert = require('node:assert');
const fs = require('fs');
const path = require('path');
const vm = require('vm');
const { webFilesDir } = require('../lib/album');

const WEB = webFilesDir();
const SCRIPTS = ['Menü/mtmcode.js', 'suchscr.js', 'bseffects.js', 'panVobilder.js'];

test('the scripts are plain ASCII, whatever encoding an album is written in', () => {
  for (const name of SCRIPTS) {
    const bytes = fs.readFileSync(path.join(WEB, name));
    const at = bytes.findIndex((b) => b > 0x7e || (b < 0x20 && b !== 0x0a && b !== 0x0d));
    assert.strictEqual(at, -1, `${name} has a byte ${bytes[at]} at ${at}`);
  }
});

test('the search script has exactly one "<body>", in the line the album generator rewrites', () => {
  const lines = fs.readFileSync(path.join(WEB, 'suchscr.js'), 'utf8').split('\n');
  const hits = lines.filter((l) => l.includes('<body>'));
  assert.deepStrictEqual(hits, ['var bsSeitenBody = String.raw`<body>`;']);
});

// code.html's configuration script, as the album generator writes it.
const CODE_HTML = fs.readFileSync(path.join(__dirname, '..', 'fixtures', 'album', 'code.html'), 'utf8');
const CONFIG = /<script type="text\/javascript">\n([\s\S]*?)<\/script>/.exec(CODE_HTML)[1];

function codeFrame() {
  const window = {};
  window.window = window;
  window.parent = window;
  window.top = window;
  window.document = { baseURI: 'http://127.0.0.1/code.html' };
  window.URL = URL;
  const context = vm.createContext(window);
  vm.runInContext(fs.readFileSync(path.join(WEB, 'Menü', 'mtmcode.js'), 'utf8'), context);
  vm.runInContext(CONFIG, context);
  return context;
}

test('code.html\'s configuration runs against the tree menu script', () => {
  const frame = codeFrame();
  assert.ok(frame.menu instanceof frame.MTMenu);
  assert.deepStrictEqual(
    Array.from(frame.menu.items, (i) => [i.text, i.url, i.target]),
    [
      ['Umschlag Vorne', 'Umschlag Vorne.htm', 'text'],
      ['Inhalt', 'Inhalt.htm', 'text'],
      ['Effekte', 'Effekte.htm', 'text'],
      ['Rundblick', 'Rundblick.htm', 'text'],
      ['Grüße aus Köln', 'Grüße aus Köln.htm', 'text'],
      ['Suchen', 'Suchen.htm', 'text'],
    ],
  );
  assert.strictEqual(frame.MTMIconList.items.length, 2);
  // Without a frameset around it, starting the menu changes nothing.
  assert.doesNotThrow(() => frame.MTMStartMenu());
});

test('link pictures match their URLs: "pre" at the start, "post" at the end', () => {
  const frame = codeFrame();
  const [external, pdf] = frame.MTMIconList.items;
  assert.ok(external.matches('http://example.org/'), 'the quote in the pattern is ignored');
  assert.ok(!external.matches('Seite.htm'));
  assert.ok(!external.matches('see http://'));
  assert.ok(pdf.matches('Plan.PDF'));
  assert.ok(!pdf.matches('plan.pdf.htm'));
  const any = new frame.MTMIcon('x.gif', 'karte', 'any');
  assert.ok(any.matches('Die Karte.htm'));
});

test('the effects script leaves a page without applets alone', () => {
  const document = {
    readyState: 'complete',
    getElementsByTagName: (tag) => {
      assert.strictEqual(tag, 'applet');
      return [];
    },
  };
  const window = { requestAnimationFrame: () => assert.fail('nothing to animate') };
  const context = vm.createContext({ document, window });
  vm.runInContext(fs.readFileSync(path.join(WEB, 'bseffects.js'), 'utf8'), context);
});
