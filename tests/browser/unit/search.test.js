// The search script under node: splitter, the matching rules and the
// result page, run against the test album's daten.js.
'use strict';

const test = require('node:test');
const assert = require('node:assert');
const fs = require('fs');
const path = require('path');
const vm = require('vm');
const { webFilesDir } = require('../lib/album');

const SCRIPT = fs.readFileSync(path.join(webFilesDir(), 'suchscr.js'), 'utf8');
const DATA = fs.readFileSync(path.join(__dirname, '..', 'fixtures', 'album', 'daten.js'), 'utf8');

// A page with the search script and the album's records, as a browser
// loads them; `document` stands in for the page.
function searchPage(document = {}, script = SCRIPT) {
  const context = vm.createContext({ document });
  vm.runInContext(script, context, { filename: 'suchscr.js' });
  vm.runInContext(DATA, context, { filename: 'daten.js' });
  return context;
}

const DEFAULTS = { bilder: true, text: true, name: true, gross: false, anfang: true, ende: false, modus: 'und' };

function titles(context, input, options = {}) {
  const found = context.bsSuche(input, { ...DEFAULTS, ...options }, context.p);
  return Array.from(found, (r) => r.title);
}

test('splitter keeps the words and drops blanks and punctuation', () => {
  const { splitter } = searchPage();
  assert.deepStrictEqual(Array.from(splitter('Brindlesee,Wasser, Regen und  Schnee ')), [
    'Brindlesee', 'Wasser', 'Regen', 'und', 'Schnee',
  ]);
  assert.deepStrictEqual(Array.from(splitter('Grüße aus Köln: Straße-123')), ['Grüße', 'aus', 'Köln', 'Straße', '123']);
  assert.deepStrictEqual(Array.from(splitter('Morgen am See.jpg ')), ['Morgen', 'am', 'See', 'jpg']);
  assert.deepStrictEqual(Array.from(splitter('')), []);
  assert.deepStrictEqual(Array.from(splitter('  ,;  ')), []);
  assert.deepStrictEqual(Array.from(splitter(undefined)), []);
});

test('daten.js splits every record\'s keywords when it loads', () => {
  const { p } = searchPage();
  assert.strictEqual(p.length, 6);
  assert.deepStrictEqual(Array.from(p[2].kw), ['Brindlesee', 'Wasser', 'Regen', 'und', 'Schnee']);
  assert.strictEqual(p[4].url, 'Grüße aus Köln.htm');
});

test('a word of a page\'s text finds that page', () => {
  const page = searchPage();
  assert.deepStrictEqual(titles(page, 'Bodensee'), ['Umschlag Vorne']);
  assert.deepStrictEqual(titles(page, 'regen'), ['Effekte']);
  assert.deepStrictEqual(titles(page, 'Brücke'), ['Grüße aus Köln']);
  assert.deepStrictEqual(titles(page, 'Vulkan'), []);
  assert.deepStrictEqual(titles(page, '  '), []);
});

test('AND needs every word, OR one of them, NOT none', () => {
  const page = searchPage();
  assert.deepStrictEqual(titles(page, 'Regen Schnee'), ['Effekte']);
  assert.deepStrictEqual(titles(page, 'Regen Dom'), []);
  assert.deepStrictEqual(titles(page, 'Regen Dom', { modus: 'oder' }), ['Effekte', 'Grüße aus Köln']);
  assert.deepStrictEqual(titles(page, 'Regen Dom', { modus: 'nicht' }), [
    'Umschlag Vorne', 'Inhalt', 'Rundblick', 'Suchen',
  ]);
  // Every record starts with the program's name.
  assert.deepStrictEqual(titles(page, 'Brindlesee', { modus: 'nicht' }), []);
});

test('case counts only when asked', () => {
  const page = searchPage();
  assert.deepStrictEqual(titles(page, 'bodensee', { gross: true }), []);
  assert.deepStrictEqual(titles(page, 'Bodensee', { gross: true }), ['Umschlag Vorne']);
  assert.deepStrictEqual(titles(page, 'grüße'), ['Inhalt', 'Grüße aus Köln']);
});

test('word beginnings, word endings, both, or anywhere', () => {
  const page = searchPage();
  const only = { bilder: false, name: false };
  assert.deepStrictEqual(titles(page, 'Boden', only), ['Umschlag Vorne']);
  assert.deepStrictEqual(titles(page, 'densee', only), []);
  assert.deepStrictEqual(titles(page, 'densee', { ...only, anfang: false, ende: true }), ['Umschlag Vorne']);
  assert.deepStrictEqual(titles(page, 'Boden', { ...only, anfang: false, ende: true }), []);
  assert.deepStrictEqual(titles(page, 'odens', { ...only, anfang: false }), ['Umschlag Vorne']);
  // Beginning and ending together: whole words only.
  assert.deepStrictEqual(titles(page, 'Rhein', { ...only, ende: true }), ['Grüße aus Köln']);
  assert.deepStrictEqual(titles(page, 'Rhei', { ...only, ende: true }), []);
});

test('the fields searched follow the options: pictures, text, name', () => {
  const page = searchPage();
  const none = { bilder: false, text: false, name: false };
  assert.deepStrictEqual(titles(page, 'Abendrot', none), []);
  assert.deepStrictEqual(titles(page, 'Abendrot', { ...none, bilder: true }), ['Effekte']);
  assert.deepStrictEqual(titles(page, 'Abendrot', { ...none, text: true }), []);
  // "Köln" stands in the name of one page and the contents' text.
  assert.deepStrictEqual(titles(page, 'Köln', { ...none, name: true }), ['Grüße aus Köln']);
  assert.deepStrictEqual(titles(page, 'Köln', { ...none, text: true }), ['Inhalt']);
  assert.deepStrictEqual(titles(page, 'htm', { ...none, name: true }), [], 'the extension is no word of the name');
});

// A stand-in for the form "mf" with its controls.
function form(values) {
  const elements = {
    eingabe: { value: values.eingabe || '' },
    Bilder: { checked: values.Bilder !== false },
    kw: { checked: values.kw !== false },
    url: { checked: values.url !== false },
    lc: { checked: !!values.lc },
    wa: { checked: values.wa !== false },
    we: { checked: !!values.we },
    r: ['und', 'oder', 'nicht'].map((v) => ({ value: v, checked: v === (values.r || 'und') })),
  };
  return { elements };
}

function fakeDocument(values, englishButton = false) {
  const doc = {
    written: '',
    mf: form(values),
    location: { href: 'http://127.0.0.1/Suchen.htm#oben' },
    body: { attributes: [{ name: 'bgcolor', value: '#F0E0D0' }] },
    getElementsByTagName: () => [{ value: englishButton ? '      Start search       ' : '      Suche starten      ' }],
    open() {
      this.written = '';
    },
    write(text) {
      this.written += text;
    },
    close() {},
  };
  return doc;
}

test('suche reads the form and writes a result page listing each match', () => {
  const doc = fakeDocument({ eingabe: 'Regen Dom', r: 'oder' });
  const page = searchPage(doc);
  page.suche(doc.mf.elements.eingabe.value);
  const html = doc.written;
  assert.match(html, /<title>Suchergebnis<\/title>/);
  assert.match(html, /2 Seiten gefunden f\u00fcr \u201eRegen Dom\u201c \(ODER\)/);
  assert.match(html, /<li><a href="Effekte.htm">Effekte<\/a><span class="bs-desc">See, Regen, Schnee und Panoramastreifen<\/span>/);
  assert.match(html, /<li><a href="Grüße aus Köln.htm">Grüße aus Köln<\/a><span class="bs-desc">Der Dom am Rhein<\/span>/);
  assert.match(html, /<a class="bs-neu" href="http:\/\/127.0.0.1\/Suchen.htm">Neue Suche<\/a>/);
  // Without the generator's body tag the page's own attributes are worn.
  assert.match(html, /<body bgcolor="#F0E0D0">/);
});

test('the result page wears the body tag the generator wrote into the script', () => {
  const bodyTag = '<body background="..\\bilder\\papier.jpg" link=#204080 leftmargin=0 topmargin=3> ';
  const script = SCRIPT.split('\n').map((l) => l.replace('<body>', bodyTag)).join('\n');
  const doc = fakeDocument({ eingabe: 'Bodensee' });
  const page = searchPage(doc, script);
  page.suche('Bodensee');
  assert.ok(doc.written.includes('</head>\n' + bodyTag + '\n'), doc.written);
  assert.match(doc.written, /1 Seite gefunden/);
});

test('results and messages speak the language of the form', () => {
  const doc = fakeDocument({ eingabe: 'Vulkan' }, true);
  const page = searchPage(doc);
  page.suche('Vulkan');
  assert.match(doc.written, /<title>Search result<\/title>/);
  assert.match(doc.written, /No page found for \u201eVulkan\u201c \(and\)/);
  assert.doesNotMatch(doc.written, /<ol>/);
  page.suche('');
  assert.match(doc.written, /Please fill in a search text\./);
});

test('titles and descriptions reach the result page as text', () => {
  const doc = fakeDocument({ eingabe: 'x' });
  const page = searchPage(doc);
  page.p.length = 0;
  page.p.push({ kw: ['Brindlesee', 'x'], url: 'a"b.htm', title: '<b>Fett</b> & Co', Bilder: '', desc: '1 < 2' });
  page.suche('x');
  assert.match(doc.written, /<a href="a&quot;b.htm">&lt;b&gt;Fett&lt;\/b&gt; &amp; Co<\/a>/);
  assert.match(doc.written, /<span class="bs-desc">1 &lt; 2<\/span>/);
});
