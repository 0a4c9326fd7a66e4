// The table of contents made by `brindlesee-cli pages` for an album written
// by our own writer (titles "Łódź", 'a"b</script>' and "Suchen"), generated
// by `brindlesee-cli html`: each entry opens its page in the frame "text".
'use strict';

const test = require('node:test');
const assert = require('node:assert');
const { execFileSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { serve } = require('../lib/server');
const { launch, until, outputDir, shownFile, openThroughTree } = require('../lib/browser');

const BUILD = path.join(__dirname, '..', '..', '..', 'build');
const CLI = process.env.BRINDLE_CLI || path.join(BUILD, 'src', 'shell', 'brindlesee-cli');
const TOOL = process.env.BRINDLE_TITLE_ALBUM_TOOL || path.join(BUILD, 'tests', 'browser', 'make_title_album');

const ENTRIES = [
  ['Łódź', 'Łódź.htm'],
  ['a"b</script>', 'a_b__script_.htm'],
  ['Suchen', 'Suchen.htm'],
];

let home;
let albumDir;
let out;
let server;
let browser;
let page;

test.before(async () => {
  home = fs.mkdtempSync(path.join(os.tmpdir(), 'brindlesee-home-'));
  albumDir = fs.mkdtempSync(path.join(os.tmpdir(), 'brindlesee-contents-'));
  out = fs.mkdtempSync(path.join(os.tmpdir(), 'brindlesee-contents-html-'));
  const env = { ...process.env, BRINDLESEE_HOME: home };
  execFileSync(TOOL, [albumDir]);
  const album = path.join(albumDir, 'Titel.apr');
  execFileSync(CLI, ['pages', album, '--front', '--contents', 'begin'], { env, stdio: 'ignore' });
  execFileSync(CLI, ['html', album, out], { env, stdio: 'ignore' });
  server = await serve(out);
  browser = await launch();
  page = await browser.page();
  await page.goto(server.base + 'Titel.html');
});

test.after(async () => {
  await browser.close();
  await server.close();
  for (const dir of [out, albumDir, home]) fs.rmSync(dir, { recursive: true, force: true });
});

const text = () => page.frame({ name: 'text' });

test('the front cover and the contents come first, and each entry opens its page', async () => {
  await openThroughTree(page, 'Inhalt');
  await until(() => shownFile(text()) === 'Inhalt.htm', 'the contents page');
  await until(() => text().evaluate(() => document.readyState === 'complete'), 'the contents page loaded');
  // Texts are markup, so the entries are told by their targets, in list order.
  const targets = await text().evaluate(() =>
    Array.from(document.querySelectorAll('a[href]'), (a) => decodeURIComponent(a.getAttribute('href'))));
  assert.deepStrictEqual(targets, ENTRIES.map(([, file]) => file));
  await page.screenshot({ path: path.join(outputDir(), 'contents-page.png') });

  for (const [i, [title, file]] of ENTRIES.entries()) {
    await openThroughTree(page, 'Inhalt');
    await until(() => shownFile(text()) === 'Inhalt.htm', 'the contents page');
    await until(() => text().evaluate(() => document.readyState === 'complete'), 'the contents page loaded');
    await text().locator('a[href]').nth(i).click();
    await until(() => shownFile(text()) === file, `${file} in the frame "text"`);
    await until(() => text().evaluate(() => document.readyState === 'complete'), `${file} loaded`);
    assert.strictEqual(await text().title(), title);
  }
  assert.deepStrictEqual(browser.errors, []);
});
