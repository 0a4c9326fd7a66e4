// The search page of the album in the frameset: form, result page, links.
'use strict';

const test = require('node:test');
const assert = require('node:assert');
const path = require('path');
const { stageAlbum } = require('../lib/album');
const { serve } = require('../lib/server');
const { launch, until, outputDir, shownFile, openThroughTree } = require('../lib/browser');

let server;
let browser;
let page;

test.before(async () => {
  server = await serve(stageAlbum('album'));
  browser = await launch();
  page = await browser.page();
  await page.goto(server.base + 'Sommerferien.html');
});

test.after(async () => {
  await browser.close();
  await server.close();
});

const text = () => page.frame({ name: 'text' });
const shown = () => shownFile(text());

async function openSearchPage() {
  const frame = await openThroughTree(page, 'Suchen');
  await until(() => frame.evaluate(() => document.readyState === 'complete' && !!document.mf), 'the search form');
}

// Searches with the form as a reader would and returns the result titles.
async function search(words, { mode = 'und', set = {} } = {}) {
  await openSearchPage();
  const frame = text();
  await frame.fill('input[name="eingabe"]', words);
  await frame.check(`input[name="r"][value="${mode}"]`);
  for (const [name, on] of Object.entries(set)) await frame.setChecked(`input[name="${name}"]`, on);
  await frame.click('input[type="button"][value*="Suche starten"]');
  await until(() => frame.evaluate(() => document.title === 'Suchergebnis'), 'the result page');
  return frame.evaluate(() => Array.from(document.querySelectorAll('ol li > a')).map((a) => a.textContent));
}

test('a word of a page\'s text finds the page, with its title, description and link', async () => {
  assert.deepStrictEqual(await search('Bodensee'), ['Umschlag Vorne']);
  const item = await text().evaluate(() => document.querySelector('ol li').innerText);
  assert.match(item, /Umschlag Vorne\s+Ein Album über den Sommer am Wasser\s+Umschlag Vorne\.htm/);
  // The result wears the search page's body tag: its background and colours.
  const body = await text().evaluate(() => ({
    background: document.body.getAttribute('background'),
    link: document.body.getAttribute('link'),
  }));
  assert.deepStrictEqual(body, { background: 'bsthumbpapier.png', link: '#204080' });
});

test('AND, OR and NOT', async () => {
  assert.deepStrictEqual(await search('Regen Schnee'), ['Effekte']);
  assert.deepStrictEqual(await search('Regen Dom'), []);
  assert.deepStrictEqual(await search('Regen Dom', { mode: 'oder' }), ['Effekte', 'Grüße aus Köln']);
  await page.screenshot({ path: path.join(outputDir(), 'search-result.png') });
  assert.deepStrictEqual(await search('Regen Dom', { mode: 'nicht' }), [
    'Umschlag Vorne', 'Inhalt', 'Rundblick', 'Suchen',
  ]);
});

test('the options of the form change what matches', async () => {
  assert.deepStrictEqual(await search('bodensee', { set: { lc: true } }), []);
  assert.deepStrictEqual(await search('densee'), []);
  assert.deepStrictEqual(await search('densee', { set: { wa: false, we: true } }), ['Umschlag Vorne']);
  assert.deepStrictEqual(await search('Abendrot', { set: { Bilder: false } }), []);
  assert.deepStrictEqual(await search('Köln', { set: { kw: false } }), ['Grüße aus Köln']);
});

test('Enter in the search box searches too', async () => {
  await openSearchPage();
  await text().fill('input[name="eingabe"]', 'Brücke');
  await text().press('input[name="eingabe"]', 'Enter');
  await until(() => text().evaluate(() => document.title === 'Suchergebnis'), 'the result page');
  const found = await text().evaluate(() => Array.from(document.querySelectorAll('ol li > a'), (a) => a.textContent));
  assert.deepStrictEqual(found, ['Grüße aus Köln']);
});

test('a result link opens its page and the tree marks it', async () => {
  assert.deepStrictEqual(await search('Rundblick', { set: { url: false } }), ['Inhalt', 'Rundblick']);
  await text().click('ol li > a:text-is("Rundblick")');
  await until(() => shown() === 'Rundblick.htm', 'the found page');
  const menu = page.frame({ name: 'menu' });
  await until(
    async () => (await menu.evaluate(() => document.querySelector('.mtm-current').textContent)) === 'Rundblick',
    'the mark on the found page',
  );
});

test('"new search" returns to the empty search form', async () => {
  await search('Wasser');
  await text().click('a.bs-neu');
  await until(
    () => text().evaluate(() => !!document.mf && document.mf.eingabe.value === '' && document.readyState === 'complete'),
    'the search form',
  );
});

test('no page logged a JavaScript error or missed a file', () => {
  assert.deepStrictEqual(browser.errors, []);
});
