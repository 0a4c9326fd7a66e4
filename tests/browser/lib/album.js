// Stages a fixture album into a fresh directory the way the album
// generator leaves its output: pages in Windows-1252 with CR LF line ends,
// the installed web files copied beside them, the pictures drawn.
'use strict';

const fs = require('fs');
const os = require('os');
const path = require('path');
const { pictureFiles } = require('./pictures');

const FIXTURES = path.join(__dirname, '..', 'fixtures');

// The installed web files: the build's resource folder, else the sources.
function webFilesDir() {
  return process.env.BRINDLE_WEB_FILES || path.join(__dirname, '..', '..', '..', 'resources');
}

const MENU_PICTURES = [
  'menu_bar.gif', 'menu_corner.gif', 'menu_corner_minus.gif', 'menu_corner_plus.gif',
  'menu_folder_close.gif', 'menu_folder_open.gif', 'menu_new_root.gif', 'menu_tee.gif',
  'menu_tee_minus.gif', 'menu_tee_plus.gif', 'menu_link_default.gif',
];

const CP1252 = {
  0x20ac: 0x80, 0x201a: 0x82, 0x0192: 0x83, 0x201e: 0x84, 0x2026: 0x85, 0x2020: 0x86, 0x2021: 0x87,
  0x02c6: 0x88, 0x2030: 0x89, 0x0160: 0x8a, 0x2039: 0x8b, 0x0152: 0x8c, 0x017d: 0x8e, 0x2018: 0x91,
  0x2019: 0x92, 0x201c: 0x93, 0x201d: 0x94, 0x2022: 0x95, 0x2013: 0x96, 0x2014: 0x97, 0x02dc: 0x98,
  0x2122: 0x99, 0x0161: 0x9a, 0x203a: 0x9b, 0x0153: 0x9c, 0x017e: 0x9e, 0x0178: 0x9f,
};

// Text as the generator writes it: Windows-1252, other characters as
// numeric character references.
function toWindows1252(text) {
  const bytes = [];
  for (const ch of text) {
    const c = ch.codePointAt(0);
    if (c < 0x80 || (c >= 0xa0 && c <= 0xff)) bytes.push(c);
    else if (CP1252[c]) bytes.push(CP1252[c]);
    else for (const b of Buffer.from(`&#${c};`, 'latin1')) bytes.push(b);
  }
  return Buffer.from(bytes);
}

function crlf(text) {
  return text.replace(/\r?\n/g, '\r\n');
}

function copyInstalled(from, to) {
  fs.mkdirSync(path.dirname(to), { recursive: true });
  fs.copyFileSync(from, to);
}

// Returns the directory holding the staged album `name` of the fixtures.
// allMenuPictures adds the two link pictures that albums do not carry.
function stageAlbum(name = 'album', { allMenuPictures = false } = {}) {
  const source = path.join(FIXTURES, name);
  const dir = fs.mkdtempSync(path.join(os.tmpdir(), `brindlesee-${name}-`));
  let searchBody = null;
  for (const file of fs.readdirSync(source)) {
    const text = fs.readFileSync(path.join(source, file), 'utf8');
    fs.writeFileSync(path.join(dir, file), toWindows1252(crlf(text)));
    const body = /^<body[^\n]*> ?$/m.exec(text);
    if (body && /<form name="mf">/.test(text)) searchBody = body[0];
  }
  const web = webFilesDir();
  copyInstalled(path.join(web, 'Menü', 'mtmcode.js'), path.join(dir, 'mtmcode.js'));
  const extra = allMenuPictures ? ['menu_link_external.gif', 'menu_link_pdf.gif'] : [];
  for (const picture of MENU_PICTURES.concat(extra)) {
    copyInstalled(path.join(web, 'Menü', 'menu-images', picture), path.join(dir, 'menu-images', picture));
  }
  for (const file of ['bseffects.js', 'panVobilder.js', 'alt.gif']) {
    copyInstalled(path.join(web, file), path.join(dir, file));
  }
  // Pages name the full view script in lower case; a case-blind file
  // system, which the albums were first made on, finds it under both names.
  copyInstalled(path.join(web, 'panVobilder.js'), path.join(dir, 'panvobilder.js'));
  if (searchBody) {
    // Each line's first "<body>" becomes the search page's body tag.
    const lines = fs.readFileSync(path.join(web, 'suchscr.js'), 'utf8').split(/\r?\n/);
    const text = lines.map((l) => l.replace('<body>', () => searchBody)).join('\r\n');
    fs.writeFileSync(path.join(dir, 'suchscr.js'), toWindows1252(text));
  }
  for (const [file, bytes] of pictureFiles()) fs.writeFileSync(path.join(dir, file), bytes);
  return dir;
}

module.exports = { stageAlbum, toWindows1252, webFilesDir, MENU_PICTURES };
