// The sample album as brindlesee-cli generates it, read in the browser:
// served on 127.0.0.1 and opened as local files.
'use strict';

const test = require('node:test');
const assert = require('node:assert');
const { execFileSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { serve } = require('../lib/server');
const { launch, until, outputDir, shownFile: shown } = require('../lib/browser');

const BUILD = path.join(__dirname, '..', '..', '..', 'build');
const CLI = process.env.BRINDLE_CLI || path.join(BUILD, 'src', 'shell', 'brindlesee-cli');
const ALBUM = process.env.BRINDLE_SAMPLE_ALBUM || path.join(BUILD, 'resources', 'sample', 'Beispielalbum.apr');

// Album order, and the title each page carries in its head.
const PAGES = ['Umschlag Vorne', 'Inhalt', 'Effekte', 'Rundblick', 'Umschlag Hinten'];
const HEADS = {
  'Umschlag Vorne': 'Sommer am Wasser',
  Inhalt: 'Inhalt',
  Effekte: 'Effekte',
  Rundblick: 'Rundblick',
  'Umschlag Hinten': 'Auf Wiedersehen',
};
const FORWARDING = 'Umschlag Hinten'; // goes on to the first page after 3 seconds

let home;
let out;
let server;
let browser;
let page;
const visited = new Set();

test.before(async () => {
  home = fs.mkdtempSync(path.join(os.tmpdir(), 'brindlesee-home-'));
  out = fs.mkdtempSync(path.join(os.tmpdir(), 'brindlesee-sample-html-'));
  const printed = execFileSync(CLI, ['html', ALBUM, out, '--overwrite', 'all'], {
    env: { ...process.env, BRINDLESEE_HOME: home },
    encoding: 'utf8',
    stdio: ['ignore', 'pipe', 'pipe'],
  });
  assert.strictEqual(printed, path.join(out, 'Beispielalbum.html') + '\n');
  server = await serve(out);
  browser = await launch();
  page = await browser.page();
  // Every document shown in any frame, as "http:" or "file:" and its name.
  browser.context.on('page', (p) => p.on('framenavigated', (f) => visited.add(where(f))));
  page.on('framenavigated', (f) => visited.add(where(f)));
});

test.after(async () => {
  await browser.close();
  await server.close();
  fs.rmSync(out, { recursive: true, force: true });
  fs.rmSync(home, { recursive: true, force: true });
});

function where(frame) {
  return `${new URL(frame.url()).protocol} ${shown(frame)}`;
}

const text = () => page.frame({ name: 'text' });
const menu = () => page.frame({ name: 'menu' });

const treeLinks = () =>
  menu().evaluate(() => Array.from(document.querySelectorAll('.mtm-tree a'), (a) => a.textContent));
const marked = () =>
  menu().evaluate(() => Array.from(document.querySelectorAll('.mtm-current'), (r) => r.textContent).join());

// Marks the document in the frame "text", so that its successor is known.
async function mark() {
  await until(() => text().evaluate(() => (window.bsVorher = true)), 'the page in the frame "text"');
}

// A new document in the frame "text" shows `title`, and the tree marks it.
async function arrived(title, { tree = true, limitMs } = {}) {
  await until(
    async () =>
      shown(text()) === `${title}.htm` &&
      (await text().evaluate(() => !window.bsVorher && document.readyState === 'complete')),
    `${title} in the frame "text"`,
    limitMs,
  );
  assert.strictEqual(await text().title(), HEADS[title]);
  if (tree) await until(async () => (await marked()) === title, `the mark on ${title}`);
}

// Does what leads to `title` and waits for it.
async function follow(title, action, options) {
  await mark();
  await action();
  await arrived(title, options);
}

const openPage = (title) => follow(title, () => menu().getByRole('link', { name: title, exact: true }).click());

// All pictures and backgrounds of a frame have arrived.
async function loaded(frame) {
  await until(
    () =>
      frame.evaluate(
        () =>
          document.readyState === 'complete' &&
          Array.from(document.images).every((i) => i.complete && i.naturalWidth > 0),
      ),
    'the pictures',
  );
}

async function openFrameset() {
  await page.goto(server.base + 'Beispielalbum.html');
  await until(async () => (await treeLinks()).length === PAGES.length, 'the tree');
}

// Two captures of the box differ: the effect moves.
async function animates(locator, what) {
  const first = await locator.screenshot();
  await until(async () => !first.equals(await locator.screenshot()), `${what} to move`);
}

test('the frameset shows the tree with every page and the first page beside it', async () => {
  await openFrameset();
  assert.deepStrictEqual(await treeLinks(), PAGES);
  assert.strictEqual(await menu().evaluate(() => document.querySelector('.mtm-root').textContent), 'Beispielalbum');
  await arrived('Umschlag Vorne');
  // The album's own menu colours: navy ground, cream links.
  const look = await menu().evaluate(() => ({
    background: getComputedStyle(document.body).backgroundColor,
    link: getComputedStyle(document.querySelector('.mtm-row:not(.mtm-current) a')).color,
  }));
  assert.deepStrictEqual(look, { background: 'rgb(31, 58, 90)', link: 'rgb(242, 230, 200)' });
  await loaded(menu());
  await loaded(text());
  await page.screenshot({ path: path.join(outputDir(), 'sample-frameset.png') });
});

test('the front cover and the lake each have their own picture of the same source', async () => {
  const cover = fs.readFileSync(path.join(out, 'Umschlag Vorne.htm'), 'latin1');
  const effects = fs.readFileSync(path.join(out, 'Effekte.htm'), 'latin1');
  assert.match(cover, /<p><img src="BSThumbmorgen am see\.jpg" width="420" height="280" border=0><\/p>/);
  assert.match(effects, /<PARAM NAME=picture VALUE="BSThumbmorgen am see_2\.jpg">/);
  await openPage('Umschlag Vorne');
  await loaded(text());
  // The framed cover picture is whole: its lower half is no lake's black.
  const lower = await text().evaluate(() => {
    const img = document.querySelector('img[src="BSThumbmorgen am see.jpg"]');
    const c = document.createElement('canvas');
    c.width = img.naturalWidth;
    c.height = img.naturalHeight;
    const g = c.getContext('2d');
    g.drawImage(img, 0, 0);
    const d = g.getImageData(c.width / 2, Math.floor(c.height * 0.8), 1, 1).data;
    return d[0] + d[1] + d[2];
  });
  assert.ok(lower > 60, `the cover's lower part is not black (${lower})`);
});

test('a click on an entry loads its page into "text" and the mark follows', async () => {
  for (const title of ['Effekte', FORWARDING, 'Rundblick', 'Inhalt', 'Umschlag Vorne']) {
    await openPage(title);
    assert.strictEqual(shown(page.mainFrame()), 'Beispielalbum.html');
  }
});

test('the tip of the day is the one for today\'s day of the month', async () => {
  await openPage('Umschlag Vorne');
  const tip = await text().evaluate(() => ({
    day: new Date().getDate(),
    shown: Array.from(document.querySelectorAll('div p'), (p) => p.innerText).find((t) => /^Gedanke zum/.test(t)),
  }));
  assert.strictEqual(tip.shown, `Gedanke zum ${tip.day}. des Monats`);
});

test('forward and back buttons go through every page and wrap at both ends', async () => {
  await openPage('Umschlag Vorne');
  for (let i = 1; i <= PAGES.length; i++) {
    await follow(PAGES[i % PAGES.length], () => text().click('img[alt="Vor"]'));
  }
  for (let i = PAGES.length - 1; i >= 0; i--) {
    await follow(PAGES[i], () => text().click('img[alt="Zurück"]'));
  }
});

test('every contents button leads to the contents page, whose links lead to the pages', async () => {
  let buttons = 0;
  for (const title of PAGES) {
    await openPage(title);
    if ((await text().locator('img[alt="Inhalt"]').count()) === 0) continue;
    buttons++;
    await follow('Inhalt', () => text().click('img[alt="Inhalt"]'));
  }
  assert.ok(buttons >= 1, 'the contents page has its button');
  for (const title of PAGES.filter((t) => t !== 'Inhalt')) {
    await openPage('Inhalt');
    await follow(title, () => text().click(`a[href="${title}.htm"]:not(:has(img))`));
  }
});

test('a page with automatic forwarding moves on by itself', async () => {
  await openPage(FORWARDING);
  const start = Date.now();
  const refresh = await text().evaluate(() => document.querySelector('meta[http-equiv="refresh"]').content);
  assert.strictEqual(refresh, '3; URL=Umschlag Vorne.htm');
  await mark();
  await arrived('Umschlag Vorne', { limitMs: 15000 });
  const after = Date.now() - start;
  assert.ok(after >= 2500, `moved on after ${after} ms`);
});

// Searches with the form of "Rundblick" as a reader would and returns the
// titles found.
async function search(words, mode = 'und') {
  await openPage('Rundblick');
  const frame = text();
  await until(() => frame.evaluate(() => document.readyState === 'complete' && !!document.mf), 'the search form');
  await frame.fill('input[name="eingabe"]', words);
  await frame.check(`input[name="r"][value="${mode}"]`);
  await frame.click('input[type="button"][value*="Suche starten"]');
  await until(() => frame.evaluate(() => document.title === 'Suchergebnis'), 'the result page');
  return frame.evaluate(() => Array.from(document.querySelectorAll('ol li > a'), (a) => a.textContent));
}

test('the search finds pages by the words of their texts, with AND, OR and NOT', async () => {
  assert.deepStrictEqual(await search('Leuchtturm'), ['Rundblick']);
  assert.deepStrictEqual(await search('Anschauen'), ['Auf Wiedersehen']);
  assert.deepStrictEqual(await search('Berge Klick'), ['Effekte', 'Rundblick']);
  assert.deepStrictEqual(await search('Berge Leuchtturm'), ['Rundblick']);
  assert.deepStrictEqual(await search('Wasser Leuchtturm'), []);
  assert.deepStrictEqual(await search('Wasser Leuchtturm', 'nicht'), ['Inhalt', 'Auf Wiedersehen']);
  assert.deepStrictEqual(await search('Wasser Leuchtturm', 'oder'), ['Sommer am Wasser', 'Effekte', 'Rundblick']);
  // The result wears the page's own background.
  assert.strictEqual(await text().evaluate(() => document.body.getAttribute('background')), 'standard-papier.jpg');
  await loaded(text());
  await page.screenshot({ path: path.join(outputDir(), 'sample-search.png') });
});

test('the links of the search result open their pages', async () => {
  for (const [words, found, title] of [
    ['Wasser Leuchtturm', 'Effekte', 'Effekte'],
    ['Sommer', 'Sommer am Wasser', 'Umschlag Vorne'],
  ]) {
    await search(words, 'oder');
    await follow(title, () => text().click(`ol li > a:text-is("${found}")`));
  }
});

test('every effect canvas moves, and a click on the linked lake follows its link', async () => {
  await openPage('Effekte');
  const frame = text();
  await until(async () => (await frame.locator('canvas.bseffect').count()) === 4, 'four effect canvases');
  const kinds = await frame.evaluate(() => Array.from(document.querySelectorAll('canvas.bseffect'), (c) => c.dataset.effect));
  assert.deepStrictEqual(kinds, ['bslake', 'bsrain', 'bsrain', 'bspano']);
  assert.strictEqual(await frame.locator('applet').count(), 0);
  // The underwater picture was made in advance: a plain picture, in a file
  // of its own beside the rain's picture of the same source.
  assert.strictEqual(await frame.locator('img[src="BSThumbmittag am meer_2.jpg"]').count(), 1);
  await until(
    () => frame.evaluate(() => Array.from(document.querySelectorAll('canvas.bseffect')).every((c) => c.bseffect.picture)),
    'the pictures of the effects',
  );
  const canvases = frame.locator('canvas.bseffect');
  for (let i = 0; i < 4; i++) await animates(canvases.nth(i), `effect ${kinds[i]} ${i + 1}`);
  await loaded(frame);
  await page.screenshot({ path: path.join(outputDir(), 'sample-effects.png') });
  await follow('Rundblick', () => frame.locator('canvas[data-effect="bslake"]').click());
});

test('the panorama turns by itself and its lighthouse leads to the mountains', async () => {
  await openPage('Rundblick');
  const viewer = text().locator('canvas[data-effect="pan360"]');
  await until(() => viewer.getAttribute('data-index').then((v) => v === '0'), 'the first picture');
  assert.strictEqual(await viewer.getAttribute('data-picture'), 'BSThumbrundblick.jpg');
  await animates(viewer, 'the panorama');
  await page.screenshot({ path: path.join(outputDir(), 'sample-panorama.png') });
  // With the pointer on the viewer it stands still; bring the lighthouse
  // (hotspot 1700..2000 x 150..350) into view and click it.
  const box = await viewer.boundingBox();
  await page.mouse.move(box.x + 5, box.y + 5);
  const spot = await viewer.evaluate((c) => {
    const at = c.bseffect.pictureToCanvas(1850, 250);
    c.bseffect.panBy(280 - at.x, 0);
    return c.bseffect.pictureToCanvas(1850, 250);
  });
  assert.ok(spot.x > 0 && spot.x < box.width && spot.y > 0 && spot.y < box.height, `hotspot at ${JSON.stringify(spot)}`);
  await page.mouse.click(box.x + spot.x, box.y + spot.y);
  await until(() => viewer.getAttribute('data-index').then((v) => v === '1'), 'the hotspot\'s picture');
  // The panorama's own picture, not the effect page's strip of the same source.
  assert.strictEqual(await viewer.getAttribute('data-picture'), 'BSThumbbergpanorama_2.jpg');
});

test('opened as local files, the fallback menu and every link of the pages work', async () => {
  const base = 'file://' + out + '/';
  await page.goto(base + 'Beispielalbum.html');
  await until(() => page.frame({ name: 'code' }).evaluate(() => document.readyState === 'complete'), 'code.html');
  assert.strictEqual(await menu().evaluate(() => document.querySelector('.mtm-tree')), null);
  assert.deepStrictEqual(await menu().evaluate(() => Array.from(document.links, (a) => a.textContent)), PAGES);
  for (const title of PAGES) {
    await follow(title, () => menu().getByRole('link', { name: title, exact: true }).click(), { tree: false });
  }
  await loaded(text());
  await page.screenshot({ path: path.join(outputDir(), 'sample-local-files.png') });

  // Each link of each page, followed from a fresh copy of its page.
  let followed = 0;
  for (const title of PAGES) {
    await text().goto(base + encodeURIComponent(`${title}.htm`));
    const targets = await text().evaluate(() => Array.from(document.links, (a) => a.getAttribute('href')));
    for (let i = 0; i < targets.length; i++) {
      if (i > 0) await text().goto(base + encodeURIComponent(`${title}.htm`));
      await follow(targets[i].replace(/\.htm$/, ''), () => text().locator('a').nth(i).click(), { tree: false });
      followed++;
    }
  }
  assert.ok(followed >= 2 * PAGES.length + 4, `followed ${followed} links`);

  // The linked lake, the search and its result links.
  await text().goto(base + 'Effekte.htm');
  await until(
    () => text().evaluate(() => Array.from(document.querySelectorAll('canvas.bseffect')).every((c) => c.bseffect.picture)),
    'the effects',
  );
  await animates(text().locator('canvas[data-effect="bsrain"]').first(), 'the rain');
  await follow('Rundblick', () => text().locator('canvas[data-effect="bslake"]').click(), { tree: false });
  await text().fill('input[name="eingabe"]', 'Leuchtturm');
  await text().click('input[type="button"][value*="Suche starten"]');
  await until(() => text().evaluate(() => document.title === 'Suchergebnis'), 'the result page');
  await follow('Rundblick', () => text().click('ol li > a:text-is("Rundblick")'), { tree: false });
});

test('no page logged a JavaScript error or missed a file', () => {
  for (const scheme of ['http:', 'file:']) {
    for (const title of PAGES) assert.ok(visited.has(`${scheme} ${title}.htm`), `${scheme} ${title}.htm was shown`);
  }
  assert.deepStrictEqual(browser.errors, []);
});
