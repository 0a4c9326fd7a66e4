// The album's frameset with the tree menu, served over HTTP and opened as
// local files.
'use strict';

const test = require('node:test');
const assert = require('node:assert');
const path = require('path');
const { stageAlbum } = require('../lib/album');
const { serve } = require('../lib/server');
const { launch, until, outputDir, shownFile: shown } = require('../lib/browser');

const PAGES = ['Umschlag Vorne', 'Inhalt', 'Effekte', 'Rundblick', 'Grüße aus Köln', 'Suchen'];

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

const treeLinks = (menu) =>
  menu.evaluate(() => Array.from(document.querySelectorAll('.mtm-tree a')).map((a) => a.textContent));
const rowLabels = (menu) =>
  menu.evaluate(() =>
    Array.from(document.querySelectorAll('.mtm-row:not(.mtm-root) .mtm-label')).map((a) => a.textContent));
const marked = (menu) =>
  menu.evaluate(() => Array.from(document.querySelectorAll('.mtm-current')).map((r) => r.textContent));

test('the tree lists every page under the album title and marks the first page', async () => {
  await page.goto(server.base + 'Sommerferien.html');
  const menu = page.frame({ name: 'menu' });
  await until(async () => (await treeLinks(menu)).length === PAGES.length, 'the tree');
  assert.deepStrictEqual(await treeLinks(menu), PAGES);
  const root = await menu.evaluate(() => document.querySelector('.mtm-root').textContent);
  assert.strictEqual(root, 'Sommerferien');
  await until(async () => (await marked(menu)).join() === 'Umschlag Vorne', 'the mark on the first page');
  // Configured colours and pictures are in use, and every picture loaded.
  const look = await menu.evaluate(() => ({
    background: getComputedStyle(document.body).backgroundColor,
    link: getComputedStyle(document.querySelector('.mtm-tree a')).color,
    pictures: Array.from(document.images).map((i) => [i.src.replace(/^.*\//, ''), i.naturalWidth]),
  }));
  assert.strictEqual(look.background, 'rgb(0, 0, 160)');
  assert.strictEqual(look.link, 'rgb(255, 255, 0)');
  const names = look.pictures.map((p) => p[0]);
  assert.ok(names.includes('menu_new_root.gif'));
  assert.strictEqual(names.filter((n) => n === 'menu_tee.gif').length, PAGES.length - 1);
  assert.strictEqual(names.filter((n) => n === 'menu_corner.gif').length, 1);
  assert.strictEqual(names.filter((n) => n === 'menu_link_default.gif').length, PAGES.length);
  for (const [name, width] of look.pictures) assert.strictEqual(width, 20, `${name} did not load`);
  await page.screenshot({ path: path.join(outputDir(), 'frameset.png') });
});

test('a click on an entry opens its page in the frame "text" and moves the mark', async () => {
  const menu = page.frame({ name: 'menu' });
  const text = page.frame({ name: 'text' });
  for (const title of ['Effekte', 'Grüße aus Köln', 'Inhalt']) {
    await menu.getByRole('link', { name: title, exact: true }).click();
    await until(() => shown(text) === `${title}.htm`, `${title} in the text frame`);
    await until(async () => (await marked(menu)).join() === title, `the mark on ${title}`);
    assert.strictEqual(page.url(), server.base + 'Sommerferien.html');
  }
});

test('the mark follows links inside the pages', async () => {
  const menu = page.frame({ name: 'menu' });
  const text = page.frame({ name: 'text' });
  // From "Inhalt" its forward button, then a link of its contents list.
  await text.click('img[alt="Vor"]');
  await until(() => shown(text) === 'Effekte.htm', 'the next page');
  await until(async () => (await marked(menu)).join() === 'Effekte', 'the mark on Effekte');
  await text.click('img[alt="Inhalt"]');
  await until(() => shown(text) === 'Inhalt.htm', 'the contents page');
  await text.click('a:has-text("Rundblick")');
  await until(async () => (await marked(menu)).join() === 'Rundblick', 'the mark on Rundblick');
});

test('the album title folds the tree in and out', async () => {
  const menu = page.frame({ name: 'menu' });
  await menu.click('.mtm-root .mtm-label');
  await until(async () => (await treeLinks(menu)).length === 0, 'the folded tree');
  await menu.click('.mtm-root .mtm-label');
  await until(async () => (await treeLinks(menu)).length === PAGES.length, 'the open tree');
  assert.deepStrictEqual(await marked(menu), ['Rundblick']);
});

test('submenus open and close with their plus and minus boxes', async () => {
  const local = await serve(stageAlbum('tree', { allMenuPictures: true }));
  try {
    await page.goto(local.base + 'index.html');
    const menu = page.frame({ name: 'menu' });
    await until(async () => (await rowLabels(menu)).join() === 'Eins,Reisen,Vier', 'the tree with a closed submenu');
    await menu.click('img[src$="menu_tee_plus.gif"]');
    await until(async () => (await rowLabels(menu)).join() === 'Eins,Reisen,Zwei,Drei,Vier', 'the open submenu');
    const pictures = await menu.evaluate(() => Array.from(document.images).map((i) => i.src.replace(/^.*\//, '')));
    assert.ok(pictures.includes('menu_tee_minus.gif'));
    assert.ok(pictures.includes('menu_folder_open.gif'));
    assert.ok(pictures.includes('menu_link_pdf.gif'), 'a link to a PDF gets its own picture');
    await page.screenshot({ path: path.join(outputDir(), 'tree-submenu.png') });
    await menu.click('img[src$="menu_tee_minus.gif"]');
    await until(async () => (await rowLabels(menu)).join() === 'Eins,Reisen,Vier', 'the closed submenu');
    // A page inside a closed submenu opens its way when it is shown.
    const text = page.frame({ name: 'text' });
    await text.click('a:has-text("zur Drei")');
    await until(async () => (await marked(menu)).join() === 'Drei', 'the mark inside the submenu');
    assert.deepStrictEqual(await rowLabels(menu), ['Eins', 'Reisen', 'Zwei', 'Drei', 'Vier']);
  } finally {
    await local.close();
  }
});

test('opened as local files, the fallback menu stays and its links work', async () => {
  await page.goto('file://' + dir + '/Sommerferien.html');
  const menu = page.frame({ name: 'menu' });
  const text = page.frame({ name: 'text' });
  await until(() => page.frame({ name: 'code' }).evaluate(() => document.readyState === 'complete'), 'code.html');
  const links = await menu.evaluate(() => Array.from(document.links).map((a) => a.textContent));
  assert.deepStrictEqual(links, PAGES);
  assert.strictEqual(await menu.evaluate(() => document.querySelector('.mtm-tree')), null);
  for (const title of ['Rundblick', 'Grüße aus Köln']) {
    await menu.getByRole('link', { name: title, exact: true }).click();
    await until(() => shown(text) === `${title}.htm`, `${title} in the text frame`);
  }
  await page.screenshot({ path: path.join(outputDir(), 'frameset-local-files.png') });
});

test('no page logged a JavaScript error or missed a file', () => {
  assert.deepStrictEqual(browser.errors, []);
});
