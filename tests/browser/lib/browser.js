// Starts Debian's chromium through playwright-core with a fresh profile and
// collects every JavaScript error and failed load of the pages it shows.
'use strict';

const fs = require('fs');
const os = require('os');
const path = require('path');
const { chromium } = require('playwright-core');

const FLAGS = [
  '--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking',
  '--disable-component-update', '--disable-sync',
];

function outputDir() {
  const dir = process.env.BRINDLE_TEST_OUTPUT || path.join(os.tmpdir(), 'brindlesee-browser-output');
  fs.mkdirSync(dir, { recursive: true });
  return dir;
}

async function launch() {
  const profile = fs.mkdtempSync(path.join(os.tmpdir(), 'brindlesee-chromium-'));
  const context = await chromium.launchPersistentContext(profile, {
    executablePath: process.env.BRINDLE_CHROMIUM || '/usr/bin/chromium',
    headless: true,
    args: [...FLAGS, '--headless'],
    viewport: { width: 1000, height: 720 },
  });
  const errors = [];
  const watch = (page) => {
    page.on('pageerror', (e) => errors.push(`${page.url()}: ${e.message}`));
    page.on('console', (m) => {
      if (m.type() === 'error') errors.push(`${page.url()}: console: ${m.text()}`);
    });
    page.on('response', (r) => {
      if (r.status() >= 400) errors.push(`${r.url()}: HTTP ${r.status()}`);
    });
  };
  context.pages().forEach(watch);
  context.on('page', watch);
  return {
    context,
    errors,
    async page() {
      return context.pages()[0] || context.newPage();
    },
    async close() {
      await context.close();
      fs.rmSync(profile, { recursive: true, force: true });
    },
  };
}

// Waits until check() gives a true value and returns it; the bound only
// keeps a broken page from hanging the suite.
async function until(check, what, limitMs = 15000) {
  const end = Date.now() + limitMs;
  let last;
  for (;;) {
    try {
      last = await check();
      if (last) return last;
    } catch (e) {
      last = e.message;
    }
    if (Date.now() > end) throw new Error(`gave up waiting for ${what} (last: ${JSON.stringify(last)})`);
    await new Promise((r) => setTimeout(r, 50));
  }
}

// The name of the file a frame shows.
function shownFile(frame) {
  return decodeURIComponent(new URL(frame.url()).pathname).replace(/^.*\//, '');
}

// Opens a page with a click in the tree menu of the frameset shown and
// returns the frame "text" once it shows that page.
async function openThroughTree(page, title) {
  const menu = page.frame({ name: 'menu' });
  await until(() => menu.evaluate(() => !!document.querySelector('.mtm-tree')), 'the tree');
  await menu.getByRole('link', { name: title, exact: true }).click();
  const text = page.frame({ name: 'text' });
  await until(() => shownFile(text) === `${title}.htm`, `${title} in the frame "text"`);
  return text;
}

module.exports = { launch, until, outputDir, shownFile, openThroughTree };
