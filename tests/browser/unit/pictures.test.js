// The album's pictures: our GIF writer, and the committed pictures being
// exactly what the drawing script makes.
'use strict';

const test = require('node:test');
const assert = require('node:assert');
const fs = require('fs');
const os = require('os');
const path = require('path');

const RESOURCES = path.join(__dirname, '..', '..', '..', 'resources');
const { encodeGif } = require(path.join(RESOURCES, 'tools', 'gif'));
const { drawAll, iconNames } = require(path.join(RESOURCES, 'tools', 'draw_web_pictures'));

// A plain GIF reader for the checks: size, palette, transparency, pixels.
function decodeGif(buf) {
  assert.strictEqual(buf.toString('latin1', 0, 6), 'GIF89a');
  const width = buf.readUInt16LE(6);
  const height = buf.readUInt16LE(8);
  const flags = buf[10];
  let at = 13;
  const palette = [];
  if (flags & 0x80) {
    const size = 1 << ((flags & 7) + 1);
    for (let i = 0; i < size; i++) palette.push([buf[at + 3 * i], buf[at + 3 * i + 1], buf[at + 3 * i + 2]]);
    at += 3 * size;
  }
  let transparent = -1;
  for (;;) {
    const kind = buf[at++];
    if (kind === 0x21) {
      const label = buf[at++];
      if (label === 0xf9 && buf[at + 1] & 1) transparent = buf[at + 4];
      while (buf[at]) at += buf[at] + 1;
      at++;
    } else if (kind === 0x2c) {
      break;
    } else {
      throw new Error(`unexpected block ${kind}`);
    }
  }
  assert.strictEqual(buf.readUInt16LE(at + 4), width);
  assert.strictEqual(buf.readUInt16LE(at + 6), height);
  at += 9;
  const minCode = buf[at++];
  const data = [];
  while (buf[at]) {
    data.push(...buf.subarray(at + 1, at + 1 + buf[at]));
    at += buf[at] + 1;
  }
  assert.strictEqual(buf[at + 1], 0x3b, 'the trailer follows the picture');
  const clear = 1 << minCode;
  let size = minCode + 1;
  let dict = [];
  const reset = () => {
    dict = [];
    for (let i = 0; i < clear; i++) dict.push([i]);
    dict.push(null, null);
    size = minCode + 1;
  };
  reset();
  const out = [];
  let bit = 0;
  let prev = null;
  for (;;) {
    let code = 0;
    for (let i = 0; i < size; i++, bit++) code |= ((data[bit >> 3] >> (bit & 7)) & 1) << i;
    if (code === clear) {
      reset();
      prev = null;
      continue;
    }
    if (code === clear + 1) break;
    let entry;
    if (code < dict.length) entry = dict[code];
    else if (code === dict.length && prev) entry = prev.concat(prev[0]);
    else throw new Error(`bad code ${code}`);
    out.push(...entry);
    if (prev && dict.length < 4096) {
      dict.push(prev.concat(entry[0]));
      if (dict.length === 1 << size && size < 12) size++;
    }
    prev = entry;
  }
  return { width, height, palette, transparent, pixels: out };
}

test('the GIF writer round-trips pictures of every palette size and length', () => {
  for (const [w, h, colours] of [[1, 1, 1], [3, 2, 2], [20, 20, 5], [97, 61, 256], [300, 200, 17]]) {
    const palette = Array.from({ length: colours }, (_, i) => [i, 255 - i, (i * 7) & 255]);
    // Runs and noise both, so the dictionary fills up and starts again.
    const indices = Array.from({ length: w * h }, (_, i) => (i % 11 < 5 ? 0 : (i * 2654435761) >>> 24) % colours);
    const gif = decodeGif(encodeGif(w, h, indices, palette, colours > 2 ? 1 : -1));
    assert.deepStrictEqual([gif.width, gif.height], [w, h]);
    assert.deepStrictEqual(gif.pixels, indices);
    assert.deepStrictEqual(gif.palette.slice(0, colours), palette);
    assert.strictEqual(gif.transparent, colours > 2 ? 1 : -1);
  }
  assert.throws(() => encodeGif(2, 2, [0, 0, 0], [[0, 0, 0]]), /pixel count/);
});

test('the committed pictures are what the drawing script makes', () => {
  const dir = fs.mkdtempSync(path.join(os.tmpdir(), 'brindlesee-pictures-'));
  try {
    const written = drawAll(dir);
    assert.strictEqual(written.length, 14);
    for (const file of written) {
      const committed = path.join(RESOURCES, path.relative(dir, file));
      assert.ok(fs.readFileSync(committed).equals(fs.readFileSync(file)), `${committed} differs from its drawing`);
    }
  } finally {
    fs.rmSync(dir, { recursive: true, force: true });
  }
});

test('menu pictures are 20 by 20 with a transparent ground; tree lines meet their neighbours', () => {
  const read = (name) => decodeGif(fs.readFileSync(path.join(RESOURCES, 'Menü', 'menu-images', name)));
  assert.strictEqual(iconNames.length, 13);
  for (const name of iconNames) {
    const gif = read(name);
    assert.deepStrictEqual([gif.width, gif.height], [20, 20], name);
    assert.ok(gif.transparent >= 0, `${name} has a transparent colour`);
    assert.strictEqual(gif.pixels[0], gif.transparent, `${name} has a transparent corner`);
  }
  const opaque = (gif, x, y) => gif.pixels[y * 20 + x] !== gif.transparent;
  // Vertical lines run through column 9 from top to bottom; branches reach the right edge.
  for (const name of ['menu_bar.gif', 'menu_tee.gif', 'menu_tee_plus.gif', 'menu_tee_minus.gif']) {
    const gif = read(name);
    assert.ok(opaque(gif, 9, 0) && opaque(gif, 9, 19), name);
  }
  for (const name of ['menu_tee.gif', 'menu_corner.gif', 'menu_corner_plus.gif', 'menu_corner_minus.gif']) {
    const gif = read(name);
    assert.ok(opaque(gif, 19, 9), `${name} reaches the right edge`);
    if (name.startsWith('menu_corner')) assert.ok(!opaque(gif, 9, 19), `${name} ends at its branch`);
  }
  // Plus and minus differ only in the vertical stroke of the plus.
  const plus = read('menu_tee_plus.gif');
  const minus = read('menu_tee_minus.gif');
  const differ = plus.pixels.map((p, i) => (p !== minus.pixels[i] ? [i % 20, Math.floor(i / 20)] : null)).filter(Boolean);
  assert.ok(differ.length > 0 && differ.every(([x]) => x === 9), JSON.stringify(differ));
});

test('"alt.gif" is a picture of its own', () => {
  const gif = decodeGif(fs.readFileSync(path.join(RESOURCES, 'alt.gif')));
  assert.deepStrictEqual([gif.width, gif.height], [240, 120]);
  assert.ok(new Set(gif.pixels).size > 20);
});
