#!/usr/bin/env node
// Draws the pictures of the HTML album: the tree menu icons and "alt.gif".
// Usage: draw_web_pictures.js RESOURCE_DIR
// writes RESOURCE_DIR/Menü/menu-images/*.gif and RESOURCE_DIR/alt.gif.
// The output is committed; a unit test checks that it matches this script.
'use strict';

const fs = require('fs');
const path = require('path');
const { Raster } = require('./raster');
const { encodeGif } = require('./gif');

const SIZE = 20; // one tree row; line pieces tile vertically
const MID = 9; // the 1-pixel tree lines run through column and row 9

const LINE = [150, 166, 196];
const BOX_EDGE = [104, 120, 152];
const BOX_FILL = [250, 252, 255];
const SIGN = [40, 58, 92];
const PAPER = [255, 255, 255];
const PAPER_EDGE = [118, 134, 166];
const FOLD = [214, 222, 236];
const INK = [96, 148, 210];
const AMBER = [246, 190, 72];
const AMBER_DARK = [214, 150, 42];
const AMBER_LIGHT = [255, 216, 128];

function vertical(r, from, to) {
  r.rect(MID, from, MID + 1, to, LINE);
}
function branch(r) {
  r.rect(MID + 1, MID, SIZE, MID + 1, LINE);
}
function box(r, plus) {
  r.roundRect(MID - 4, MID - 4, MID + 5, MID + 5, 1.5, BOX_EDGE);
  r.rect(MID - 3, MID - 3, MID + 4, MID + 4, BOX_FILL);
  r.rect(MID - 2, MID, MID + 3, MID + 1, SIGN);
  if (plus) r.rect(MID, MID - 2, MID + 1, MID + 3, SIGN);
}

function page(r) {
  r.polygon([[4, 1], [12.6, 1], [17, 5.4], [17, 19], [4, 19]], PAPER_EDGE);
  r.polygon([[5, 2], [12, 2], [16, 6], [16, 18], [5, 18]], PAPER);
  r.polygon([[12, 2], [12, 6], [16, 6]], FOLD);
}

const icons = {
  'menu_bar.gif': (r) => vertical(r, 0, SIZE),
  'menu_tee.gif': (r) => {
    vertical(r, 0, SIZE);
    branch(r);
  },
  'menu_corner.gif': (r) => {
    vertical(r, 0, MID + 1);
    branch(r);
  },
  'menu_tee_plus.gif': (r) => {
    vertical(r, 0, SIZE);
    branch(r);
    box(r, true);
  },
  'menu_tee_minus.gif': (r) => {
    vertical(r, 0, SIZE);
    branch(r);
    box(r, false);
  },
  'menu_corner_plus.gif': (r) => {
    vertical(r, 0, MID + 1);
    branch(r);
    box(r, true);
  },
  'menu_corner_minus.gif': (r) => {
    vertical(r, 0, MID + 1);
    branch(r);
    box(r, false);
  },
  'menu_folder_close.gif': (r) => {
    r.roundRect(2, 4, 9, 8, 1, AMBER_DARK);
    r.roundRect(2, 6, 18, 16.5, 1.5, AMBER);
    r.rect(3, 6.5, 17, 7.5, AMBER_LIGHT);
  },
  'menu_folder_open.gif': (r) => {
    r.roundRect(2, 4, 9, 8, 1, AMBER_DARK);
    r.roundRect(2, 6, 17, 16.5, 1.5, AMBER_DARK);
    r.rect(4.5, 7.5, 15, 12, PAPER);
    r.polygon([[5, 10], [19, 10], [16, 16.5], [2, 16.5]], AMBER);
    r.polygon([[5, 10], [19, 10], [18.6, 11], [4.6, 11]], AMBER_LIGHT);
  },
  'menu_link_default.gif': (r) => {
    page(r);
    for (const y of [8, 11, 14]) r.rect(7, y, y === 14 ? 12 : 14, y + 1, INK);
  },
  'menu_link_pdf.gif': (r) => {
    page(r);
    r.rect(7, 6, 14, 7, INK);
    r.roundRect(2, 10, 15, 16, 1, [212, 58, 50]);
    for (const x of [4, 8, 12]) r.rect(x, 12, x + 1.6, 14, PAPER);
  },
  'menu_link_external.gif': (r) => {
    const blue = [52, 140, 222];
    const pale = [196, 226, 252];
    r.circle(10, 10, 8, [30, 96, 170]);
    r.circle(10, 10, 7, blue);
    r.rect(3, 9.5, 17, 10.5, pale);
    r.rect(9.5, 3, 10.5, 17, pale);
    r.fill((x, y) => {
      const e = ((x - 10) / 3.6) ** 2 + ((y - 10) / 7) ** 2;
      return e <= 1 && e >= 0.72;
    }, pale, [6, 3, 15, 17]);
  },
  'menu_new_root.gif': (r) => {
    r.roundRect(0.5, 2.5, 19.5, 17.5, 2.5, [72, 88, 120]);
    r.roundRect(1.5, 3.5, 18.5, 16.5, 2, [244, 247, 252]);
    r.fill((x, y) => x >= 3 && x < 17 && y >= 5 && y < 15, (x, y) => {
      const t = (y - 5) / 10;
      return [Math.round(96 + 80 * t), Math.round(176 + 50 * t), 255];
    }, [3, 5, 17, 15]);
    r.circle(13.5, 8, 1.8, [255, 208, 64]);
    r.polygon([[3, 15], [7.5, 8.5], [10.5, 12], [12.5, 10], [17, 15]], [58, 150, 88]);
  },
};

// The picture shown in place of a panorama viewer that cannot run:
// a wide landscape under a circular arrow.
function drawAlt() {
  const W = 240;
  const H = 120;
  const r = new Raster(W, H);
  r.fill(() => true, (x, y) => {
    const t = y / H;
    return [Math.round(120 + 90 * t), Math.round(180 + 50 * t), Math.round(236 + 10 * t)];
  });
  r.circle(180, 38, 12, [255, 214, 92]);
  const ridge = (base, amp, freq, phase) => (x) =>
    base - amp * (0.6 * Math.sin(x * freq + phase) + 0.4 * Math.sin(x * freq * 2.3 + phase * 1.7));
  const far = ridge(78, 14, 0.035, 0.4);
  const near = ridge(96, 10, 0.05, 2.1);
  r.fill((x, y) => y >= far(x), [112, 150, 176]);
  r.fill((x, y) => y >= near(x), [70, 128, 92]);
  r.fill((x, y) => y >= 108 + 2 * Math.sin(x * 0.08), [50, 104, 74]);
  // The 360 degree arrow: a ring with a gap and a head at its end.
  const cx = 120;
  const cy = 52;
  const white = [255, 255, 255, 0.92];
  r.fill((x, y) => {
    const d = Math.hypot(x - cx, y - cy);
    if (d > 27 || d < 22) return false;
    const a = Math.atan2(y - cy, x - cx);
    return a < 1.0 || a > 1.55;
  }, white, [cx - 28, cy - 28, cx + 29, cy + 29]);
  const tip = [cx + 24.5 * Math.cos(1.0), cy + 24.5 * Math.sin(1.0)];
  r.polygon([[tip[0] + 8, tip[1] - 6], [tip[0] - 8, tip[1] - 3], [tip[0] - 3, tip[1] + 9]], white);
  r.roundRect(cx - 9, cy - 7, cx + 9, cy + 7, 2, white);
  r.roundRect(cx - 7, cy - 5, cx + 7, cy + 5, 1.5, [96, 150, 200]);
  r.polygon([[cx - 7, cy + 5], [cx - 2, cy - 1], [cx + 1, cy + 2], [cx + 3, cy], [cx + 7, cy + 5]], [
    70, 128, 92,
  ]);
  return r;
}

function write(file, raster) {
  const { indices, palette, transparent } = raster.toIndexed();
  fs.mkdirSync(path.dirname(file), { recursive: true });
  fs.writeFileSync(file, encodeGif(raster.width, raster.height, indices, palette, transparent));
}

function drawAll(resourceDir) {
  const menuDir = path.join(resourceDir, 'Menü', 'menu-images');
  const written = [];
  for (const [name, draw] of Object.entries(icons)) {
    const r = new Raster(SIZE, SIZE);
    draw(r);
    write(path.join(menuDir, name), r);
    written.push(path.join(menuDir, name));
  }
  write(path.join(resourceDir, 'alt.gif'), drawAlt());
  written.push(path.join(resourceDir, 'alt.gif'));
  return written;
}

module.exports = { drawAll, iconNames: Object.keys(icons) };

if (require.main === module) {
  if (process.argv.length !== 3) {
    console.error('usage: draw_web_pictures.js RESOURCE_DIR');
    process.exit(2);
  }
  drawAll(process.argv[2]);
}
