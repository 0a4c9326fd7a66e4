// The pictures of the test album, drawn as the album generator would have
// prepared them: plain photos, a lake picture with its lower half empty,
// framed pictures, a wide strip and panoramas.
'use strict';

const { encodePng } = require('./png');

const mix = (a, b, t) => a.map((v, i) => Math.round(v + (b[i] - v) * t));

// A landscape: sky gradient, sun, two mountain ridges and a shore.
function landscape(w, h, { sky, land, sun = 0.7, seed = 1 }) {
  const top = mix(sky, [255, 255, 255], 0.35);
  const far = mix(land, sky, 0.55);
  return (x, y) => {
    const u = x / w;
    const v = y / h;
    const ridgeFar = 0.5 - 0.09 * Math.sin(u * 9 + seed) - 0.05 * Math.sin(u * 23 + seed * 2);
    const ridgeNear = 0.64 - 0.07 * Math.sin(u * 13 + seed * 3) - 0.03 * Math.sin(u * 41);
    if (v > ridgeNear) return mix(land, [20, 30, 20], (v - ridgeNear) * 1.2);
    if (v > ridgeFar) return far;
    const d = Math.hypot(u * w - sun * w, v * h - 0.22 * h) / h;
    if (d < 0.07) return [255, 226, 140];
    return mix(top, sky, v * 1.6 > 1 ? 1 : v * 1.6);
  };
}

function framed(w, h, frame, colour, inner) {
  return (x, y) => {
    if (x < frame || y < frame || x >= w - frame || y >= h - frame) {
      const edge = x < frame || y < frame ? 1.15 : 0.8; // light from the top left
      return colour.map((c) => Math.min(255, Math.round(c * edge)));
    }
    return inner(x - frame, y - frame);
  };
}

// The scene in the upper half; the effect draws the water below.
function lake(w, h, scene) {
  const upper = Math.floor(h / 2) + 2;
  const draw = landscape(w, upper, scene);
  return (x, y) => (y < upper ? draw(x, y) : [0, 0, 0]);
}

function button(w, h, direction, colour) {
  return (x, y) => {
    const cx = x - w / 2;
    const cy = y - h / 2;
    const inside = Math.abs(cx) < w / 2 - 2 && Math.abs(cy) < h / 2 - 2;
    if (!inside) return [238, 232, 220];
    let mark = false;
    if (direction === 0) mark = Math.abs(cx) < 6 && Math.abs(cy) < 6 && (Math.abs(cx) > 3 || Math.abs(cy) > 3);
    else mark = Math.abs(cy) < 7 - Math.abs(direction * cx - 0) * 0.8 && Math.abs(cx) < 8;
    return mark ? [255, 255, 255] : colour;
  };
}

function paper(w, h) {
  return (x, y) => {
    const n = Math.sin(x * 0.9 + y * 0.3) * Math.sin(y * 0.7 - x * 0.2) * 6;
    const g = 236 + n;
    return [Math.round(g + 6), Math.round(g), Math.round(g - 12)];
  };
}

const SEE = { sky: [242, 182, 138], land: [62, 92, 58], sun: 0.25, seed: 1 };
const MEER = { sky: [127, 184, 230], land: [201, 178, 124], sun: 0.6, seed: 2 };
const ABEND = { sky: [217, 106, 74], land: [43, 42, 58], sun: 0.8, seed: 3 };
const BERG = { sky: [156, 200, 234], land: [76, 107, 79], sun: 0.4, seed: 4 };
const RUND = { sky: [168, 208, 240], land: [90, 122, 74], sun: 0.7, seed: 5 };

// name -> [width, height, pixel function]
const pictures = {
  'bsthumbpapier.png': [128, 128, paper(128, 128)],
  'zurueck.png': [60, 30, button(60, 30, 1, [60, 96, 140])],
  'inhalt.png': [60, 30, button(60, 30, 0, [60, 96, 140])],
  'vor.png': [60, 30, button(60, 30, -1, [60, 96, 140])],
  'bsthumbmorgen am see.png': [420, 280, landscape(420, 280, SEE)],
  'bsthumbsee.png': [300, 200, lake(300, 200, SEE)],
  'bsthumbmeer.png': [300, 200, framed(300, 200, 6, [90, 90, 96], landscape(288, 188, MEER))],
  'bsthumbabendrot.png': [300, 200, framed(300, 200, 6, [235, 235, 235], landscape(288, 188, ABEND))],
  'bsthumbbergpanorama.png': [640, 120, landscape(640, 120, BERG)],
  'rundblick.png': [1600, 400, landscape(1600, 400, RUND)],
  'bergpanorama.png': [1200, 300, landscape(1200, 300, BERG)],
  'bsthumbdom.png': [240, 320, landscape(240, 320, ABEND)],
  'dom.png': [600, 800, landscape(600, 800, ABEND)],
};

function pictureFiles() {
  return Object.entries(pictures).map(([name, [w, h, pixel]]) => [name, encodePng(w, h, pixel)]);
}

module.exports = { pictureFiles, pictureSizes: Object.fromEntries(Object.entries(pictures).map(([n, [w, h]]) => [n, [w, h]])) };
