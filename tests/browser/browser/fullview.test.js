// Pictures in full view in a window of their own (panVobilder.js).
'use strict';

const test = require('node:test');
const assert = require('node:assert');
const path = require('path');
const { stageAlbum } = require('../lib/album');
const { serve } = require('../lib/server');
const { launch, until, outputDir } = require('../lib/browser');

let dir;
let server;
let browser;

test.before(async () => {
  dir = stageAlbum('album');
  server = await serve(dir);
  browser = await launch();
});

test.after(async () => {
  await browser.close();
  await server.close();
});

test('a link to a picture opens it in a full view window; the page stays', async () => {
  const page = await browser.page();
  await page.goto(server.base + 'Grüße aus Köln.htm');
  const [popup] = await Promise.all([browser.context.waitForEvent('page'), page.click('img[src="bsthumbdom.png"]')]);
  const picture = popup.locator('#bs-vollbild');
  await until(() => picture.evaluate((img) => img.complete && img.naturalWidth > 0), 'the full picture');
  assert.deepStrictEqual(await picture.evaluate((img) => [img.naturalWidth, img.naturalHeight]), [600, 800]);
  assert.strictEqual(await popup.title(), 'dom.png');
  assert.strictEqual(decodeURIComponent(page.url()), server.base + 'Grüße aus Köln.htm');
  // A click shows the picture at its own size, Escape closes the window.
  await picture.click();
  assert.strictEqual(await popup.evaluate(() => document.body.className), 'bs-natural');
  await popup.screenshot({ path: path.join(outputDir(), 'full-view.png') });
  const closed = popup.waitForEvent('close');
  // The window may close before the key press has returned.
  await popup.keyboard.press('Escape').catch(() => {});
  await closed;
});

test('links to pages are left alone', async () => {
  const page = await browser.page();
  await page.goto(server.base + 'Grüße aus Köln.htm');
  await page.click('img[alt="Vor"]');
  await until(() => page.url().endsWith('/Suchen.htm'), 'the next page');
  assert.strictEqual(browser.context.pages().length, 1);
});

test('opened as a local file, the full view window works too', async () => {
  const page = await browser.page();
  await page.goto('file://' + dir + '/Grüße aus Köln.htm');
  const [popup] = await Promise.all([browser.context.waitForEvent('page'), page.click('img[src="bsthumbdom.png"]')]);
  const picture = popup.locator('#bs-vollbild');
  await until(() => picture.evaluate((img) => img.complete && img.naturalWidth === 600), 'the full picture');
  await popup.close();
});

test('no page logged a JavaScript error or missed a file', () => {
  assert.deepStrictEqual(browser.errors, []);
});
