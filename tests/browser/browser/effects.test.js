// The applets of the album's pages, played by bseffects.js on canvases.
'use strict';

const test = require('node:test');
const assert = require('node:assert');
const fs = require('fs');
const path = require('path');
const { stageAlbum } = require('../lib/album');
const { serve } = require('../lib/server');
const { launch, until, outputDir, shownFile: shown, openThroughTree } = require('../lib/browser');

let dir;
let server;
let browser;
let page;

test.before(async () => {
  dir = stageAlbum('album');
  server = await serve(dir);
  browser = await launch();
  page = await browser.page();
});

test.after(async () => {
  await browser.close();
  await server.close();
});

const text = () => page.frame({ name: 'text' });

// Two captures of the box differ: the effect moves.
async function animates(canvas, what) {
  const first = await canvas.screenshot();
  await until(async () => !first.equals(await canvas.screenshot()), `${what} to move`);
}

async function openInFrameset(title) {
  await page.goto(server.base + 'Sommerferien.html');
  return openThroughTree(page, title);
}

test('every applet becomes a canvas of its box that plays its effect', async () => {
  const frame = await openInFrameset('Effekte');
  await until(async () => (await frame.locator('canvas.bseffect').count()) === 4, 'four effect canvases');
  assert.strictEqual(await frame.locator('applet').count(), 0);
  const boxes = await frame.evaluate(() =>
    Array.from(document.querySelectorAll('canvas.bseffect'), (c) => {
      const r = c.getBoundingClientRect();
      return [c.dataset.effect, r.left, r.top, r.width, r.height];
    }),
  );
  assert.deepStrictEqual(boxes, [
    ['bslake', 40, 70, 300, 200],
    ['bsrain', 380, 70, 300, 200],
    ['bsrain', 40, 300, 300, 200],
    ['bspano', 380, 300, 300, 120],
  ]);
  // The counts of the params: rain drops and snow flakes.
  const drops = await frame.evaluate(() =>
    Array.from(document.querySelectorAll('canvas[data-effect="bsrain"]'), (c) => [c.bseffect.snow, c.bseffect.drops.length]),
  );
  assert.deepStrictEqual(drops, [[false, 273], [true, 1200]]);
  const canvases = frame.locator('canvas.bseffect');
  await until(
    () => frame.evaluate(() => Array.from(document.querySelectorAll('canvas.bseffect')).every((c) => c.bseffect.picture)),
    'the pictures',
  );
  for (let i = 0; i < 4; i++) await animates(canvases.nth(i), `effect ${i + 1}`);
  await page.screenshot({ path: path.join(outputDir(), 'effects.png') });
});

test('rain falls inside the picture\'s frame only', async () => {
  // The dark frame of 6 pixels around the rain picture never gets a light
  // drop, over several frames.
  const light = await text().evaluate(async () => {
    const c = document.querySelectorAll('canvas.bseffect')[1];
    const ratio = c.width / 300;
    const counts = [];
    for (let frame = 0; frame < 5; frame++) {
      await new Promise((r) => requestAnimationFrame(r));
      const rows = c.getContext('2d').getImageData(0, 0, c.width, Math.floor(5 * ratio)).data;
      let n = 0;
      for (let i = 0; i < rows.length; i += 4) if (rows[i] > 150) n++;
      counts.push(n);
    }
    return counts;
  });
  assert.deepStrictEqual(light, [0, 0, 0, 0, 0]);
});

test('a click on a linked effect follows its link as its target says', async () => {
  // _self: the lake's page in the frame "text" makes way for the link.
  const frame = await openInFrameset('Effekte');
  await until(async () => (await frame.locator('canvas.bseffect').count()) === 4, 'the canvases');
  await frame.locator('canvas[data-effect="bslake"]').click();
  await until(() => shown(text()) === 'Rundblick.htm', 'the lake\'s link');
  assert.strictEqual(shown(page.mainFrame()), 'Sommerferien.html');
  // _blank: the strip's link opens a new window.
  await openThroughTree(page, 'Effekte');
  const strip = text().locator('canvas[data-effect="bspano"]');
  await until(() => strip.count(), 'the strip');
  const [popup] = await Promise.all([browser.context.waitForEvent('page'), strip.click()]);
  await until(() => shown(popup.mainFrame()) === 'Inhalt.htm', 'the strip\'s link in a new window');
  await popup.close();
  // Effects without a link keep the plain cursor.
  const cursor = await text().evaluate(() => document.querySelector('canvas[data-effect="bsrain"]').style.cursor);
  assert.strictEqual(cursor, '');
});

test('the panorama viewer turns, pans, zooms and its hotspots lead on', async () => {
  const frame = await openInFrameset('Rundblick');
  const viewer = frame.locator('canvas[data-effect="pan360"]');
  await until(() => viewer.getAttribute('data-index').then((v) => v === '0'), 'the first picture');
  assert.strictEqual(await viewer.getAttribute('data-picture'), 'rundblick.png');
  // "Full": the picture's height fills the view.
  assert.strictEqual(await viewer.evaluate((c) => c.bseffect.scale), 260 / 400);
  await animates(viewer, 'the panorama');

  // Drag to the left: the view moves right by the distance at this zoom.
  const box = await viewer.boundingBox();
  const before = await viewer.evaluate((c) => c.bseffect.vx);
  await page.mouse.move(box.x + 450, box.y + 130);
  await page.mouse.down();
  await page.mouse.move(box.x + 300, box.y + 130, { steps: 5 });
  await page.mouse.move(box.x + 150, box.y + 130, { steps: 5 });
  await page.mouse.up();
  const after = await viewer.evaluate((c) => c.bseffect.vx);
  assert.ok(Math.abs(after - before - 300 / (260 / 400)) < 1, `moved from ${before} to ${after}`);
  assert.strictEqual(await viewer.getAttribute('data-index'), '0', 'a drag is no click');
  await page.screenshot({ path: path.join(outputDir(), 'panorama.png') });

  // The hotspot (1000..1200, 60..240) leads to picture 1.
  const spot = await viewer.evaluate((c) => c.bseffect.pictureToCanvas(1100, 150));
  assert.ok(spot.x > 0 && spot.x < 560, `hotspot in view at ${spot.x}`);
  await page.mouse.click(box.x + spot.x, box.y + spot.y);
  await until(() => viewer.getAttribute('data-index').then((v) => v === '1'), 'the hotspot\'s picture');
  assert.strictEqual(await viewer.getAttribute('data-picture'), 'bergpanorama.png');
  // Its start view: x 300 at zoom " 100".
  assert.deepStrictEqual(await viewer.evaluate((c) => [c.bseffect.vx, c.bseffect.scale]), [300, 1]);

  // The wheel zooms in around the pointer.
  await page.mouse.move(box.x + 280, box.y + 130);
  await page.mouse.wheel(0, -400);
  await until(() => viewer.evaluate((c) => c.bseffect.scale > 1.5), 'the zoom');
  await page.mouse.wheel(0, 4000);
  await until(() => viewer.evaluate((c) => c.bseffect.scale === 260 / 300), 'the smallest zoom: the full height');

  // And back through the hotspot of picture 1 (100..300, 40..220).
  const back = await viewer.evaluate((c) => {
    c.bseffect.panBy(c.bseffect.pictureToCanvas(200, 130).x * -1 + 280, 0);
    return c.bseffect.pictureToCanvas(200, 130);
  });
  await page.mouse.click(box.x + back.x, box.y + back.y);
  await until(() => viewer.getAttribute('data-index').then((v) => v === '0'), 'the way back');
});

test('a viewer whose picture is missing shows its alternative picture', async () => {
  const page2 = await browser.context.newPage();
  const html = fs
    .readFileSync(path.join(dir, 'Rundblick.htm'), 'latin1')
    .replace('rundblick.png,alt.gif', 'fehlt.png,alt.gif');
  fs.writeFileSync(path.join(dir, 'Ohne Bild.htm'), html, 'latin1');
  await page2.goto(server.base + 'Ohne Bild.htm');
  const viewer = page2.locator('canvas[data-effect="pan360"]');
  await until(() => viewer.getAttribute('data-picture').then((v) => v === 'alt.gif'), 'the alternative picture');
  await page2.close();
  // The missing picture is the one expected failure.
  const missing = browser.errors.filter((e) => /fehlt\.png|404/.test(e));
  assert.ok(missing.length >= 1);
  browser.errors.splice(0, browser.errors.length, ...browser.errors.filter((e) => !missing.includes(e)));
});

test('opened as a local file, the effects play too', async () => {
  const page2 = await browser.context.newPage();
  await page2.goto('file://' + dir + '/Effekte.htm');
  await until(
    () => page2.evaluate(() => Array.from(document.querySelectorAll('canvas.bseffect')).every((c) => c.bseffect.picture)),
    'the pictures',
  );
  await animates(page2.locator('canvas[data-effect="bslake"]'), 'the lake');
  await page2.close();
});

test('no page logged a JavaScript error or missed a file', () => {
  assert.deepStrictEqual(browser.errors, []);
});
