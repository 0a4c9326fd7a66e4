// A tiny anti-aliased rasteriser for drawing our icons: shapes are coverage
// functions sampled 4 x 4 times per pixel and composed "over" in RGBA.
'use strict';

const SS = 4;

class Raster {
  constructor(width, height) {
    this.width = width;
    this.height = height;
    this.px = new Float64Array(width * height * 4); // premultiplied RGBA, 0..1
  }

  // inside(x, y) -> boolean for a point in pixel space; colour is
  // [r, g, b, alpha?] or a function (x, y) giving one for each pixel.
  fill(inside, colour, box = [0, 0, this.width, this.height]) {
    const shade = typeof colour === 'function' ? colour : () => colour;
    const x0 = Math.max(0, Math.floor(box[0]));
    const y0 = Math.max(0, Math.floor(box[1]));
    const x1 = Math.min(this.width, Math.ceil(box[2]));
    const y1 = Math.min(this.height, Math.ceil(box[3]));
    for (let y = y0; y < y1; y++) {
      for (let x = x0; x < x1; x++) {
        let hits = 0;
        for (let sy = 0; sy < SS; sy++)
          for (let sx = 0; sx < SS; sx++)
            if (inside(x + (sx + 0.5) / SS, y + (sy + 0.5) / SS)) hits++;
        if (!hits) continue;
        const c = shade(x + 0.5, y + 0.5);
        const [r, g, b] = [c[0] / 255, c[1] / 255, c[2] / 255];
        const a = c.length > 3 ? c[3] : 1;
        const cov = (a * hits) / (SS * SS);
        const i = (y * this.width + x) * 4;
        const keep = 1 - cov;
        this.px[i] = r * cov + this.px[i] * keep;
        this.px[i + 1] = g * cov + this.px[i + 1] * keep;
        this.px[i + 2] = b * cov + this.px[i + 2] * keep;
        this.px[i + 3] = cov + this.px[i + 3] * keep;
      }
    }
  }

  rect(x0, y0, x1, y1, colour) {
    this.fill((x, y) => x >= x0 && x < x1 && y >= y0 && y < y1, colour, [x0, y0, x1, y1]);
  }

  roundRect(x0, y0, x1, y1, radius, colour) {
    const r = Math.min(radius, (x1 - x0) / 2, (y1 - y0) / 2);
    this.fill(
      (x, y) => {
        if (x < x0 || x >= x1 || y < y0 || y >= y1) return false;
        const cx = Math.min(Math.max(x, x0 + r), x1 - r);
        const cy = Math.min(Math.max(y, y0 + r), y1 - r);
        return (x - cx) ** 2 + (y - cy) ** 2 <= r * r;
      },
      colour,
      [x0, y0, x1, y1],
    );
  }

  circle(cx, cy, radius, colour) {
    this.fill((x, y) => (x - cx) ** 2 + (y - cy) ** 2 <= radius * radius, colour, [
      cx - radius, cy - radius, cx + radius + 1, cy + radius + 1,
    ]);
  }

  ring(cx, cy, outer, inner, colour) {
    this.fill(
      (x, y) => {
        const d = (x - cx) ** 2 + (y - cy) ** 2;
        return d <= outer * outer && d >= inner * inner;
      },
      colour,
      [cx - outer, cy - outer, cx + outer + 1, cy + outer + 1],
    );
  }

  // Even-odd polygon fill; points as [[x, y], ...].
  polygon(points, colour) {
    const xs = points.map((p) => p[0]);
    const ys = points.map((p) => p[1]);
    this.fill(
      (x, y) => {
        let inside = false;
        for (let i = 0, j = points.length - 1; i < points.length; j = i++) {
          const [xi, yi] = points[i];
          const [xj, yj] = points[j];
          if (yi > y !== yj > y && x < ((xj - xi) * (y - yi)) / (yj - yi) + xi) inside = !inside;
        }
        return inside;
      },
      colour,
      [Math.min(...xs), Math.min(...ys), Math.max(...xs) + 1, Math.max(...ys) + 1],
    );
  }

  // A stroke with round caps from (ax, ay) to (bx, by).
  line(ax, ay, bx, by, width, colour) {
    const dx = bx - ax;
    const dy = by - ay;
    const len2 = dx * dx + dy * dy || 1;
    const h = width / 2;
    this.fill(
      (x, y) => {
        const t = Math.max(0, Math.min(1, ((x - ax) * dx + (y - ay) * dy) / len2));
        return (x - ax - t * dx) ** 2 + (y - ay - t * dy) ** 2 <= h * h;
      },
      colour,
      [Math.min(ax, bx) - h, Math.min(ay, by) - h, Math.max(ax, bx) + h + 1, Math.max(ay, by) + h + 1],
    );
  }

  // Converts to palette indices. Pixels less than half covered become
  // transparent; the rest are opaque in their own colour. At most 255
  // colours are kept (median cut), leaving one index for transparency.
  toIndexed() {
    const n = this.width * this.height;
    const colours = [];
    const opaque = new Array(n);
    let anyTransparent = false;
    for (let i = 0; i < n; i++) {
      const a = this.px[i * 4 + 3];
      if (a < 0.5) {
        opaque[i] = null;
        anyTransparent = true;
        continue;
      }
      const c = [0, 1, 2].map((k) => Math.round(Math.min(1, this.px[i * 4 + k] / a) * 255));
      opaque[i] = c;
      colours.push(c);
    }
    const palette = medianCut(colours, anyTransparent ? 255 : 256);
    const lookup = new Map();
    const nearest = (c) => {
      const key = (c[0] << 16) | (c[1] << 8) | c[2];
      let best = lookup.get(key);
      if (best !== undefined) return best;
      let bestD = Infinity;
      palette.forEach((p, k) => {
        const d = (p[0] - c[0]) ** 2 + (p[1] - c[1]) ** 2 + (p[2] - c[2]) ** 2;
        if (d < bestD) {
          bestD = d;
          best = k;
        }
      });
      lookup.set(key, best);
      return best;
    };
    const transparent = anyTransparent ? palette.length : -1;
    if (anyTransparent) palette.push([255, 255, 255]);
    const indices = opaque.map((c) => (c ? nearest(c) : transparent));
    return { indices, palette, transparent };
  }
}

// Splits the colour box with the widest channel until `max` boxes remain;
// each box gives its mean colour. Exact when there are few colours.
function medianCut(colours, max) {
  const unique = [...new Map(colours.map((c) => [c.join(','), c])).values()];
  if (unique.length === 0) return [[0, 0, 0]];
  if (unique.length <= max) return unique;
  let boxes = [colours];
  while (boxes.length < max) {
    let pick = -1;
    let pickRange = 0;
    let pickChannel = 0;
    boxes.forEach((box, i) => {
      if (box.length < 2) return;
      for (let ch = 0; ch < 3; ch++) {
        let lo = 255;
        let hi = 0;
        for (const c of box) {
          lo = Math.min(lo, c[ch]);
          hi = Math.max(hi, c[ch]);
        }
        if (hi - lo > pickRange) {
          pickRange = hi - lo;
          pick = i;
          pickChannel = ch;
        }
      }
    });
    if (pick < 0) break;
    const box = boxes[pick].slice().sort((a, b) => a[pickChannel] - b[pickChannel]);
    const mid = box.length >> 1;
    boxes.splice(pick, 1, box.slice(0, mid), box.slice(mid));
  }
  return boxes.map((box) =>
    [0, 1, 2].map((ch) => Math.round(box.reduce((s, c) => s + c[ch], 0) / box.length)),
  );
}

module.exports = { Raster };
