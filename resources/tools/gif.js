// A small GIF89a writer: one frame, a palette of up to 256 colours, one
// optional transparent index. Used to draw the album's menu pictures.
'use strict';

// Variable-length LZW as GIF wants it: codes packed LSB first.
function lzw(indices, minCodeSize) {
  const clear = 1 << minCodeSize;
  const end = clear + 1;
  const out = [];
  let bitBuf = 0;
  let bitLen = 0;
  let codeSize = minCodeSize + 1;
  const emit = (code) => {
    bitBuf |= code << bitLen;
    bitLen += codeSize;
    while (bitLen >= 8) {
      out.push(bitBuf & 0xff);
      bitBuf >>>= 8;
      bitLen -= 8;
    }
  };
  let dict = new Map();
  let next = end + 1;
  emit(clear);
  let prefix = indices.length ? indices[0] : -1;
  for (let i = 1; i < indices.length; i++) {
    const k = indices[i];
    const key = prefix * 256 + k;
    const found = dict.get(key);
    if (found !== undefined) {
      prefix = found;
      continue;
    }
    emit(prefix);
    if (next < 4096) {
      dict.set(key, next++);
      // The decoder widens one code later than the encoder adds the entry.
      if (next - 1 === 1 << codeSize && codeSize < 12) codeSize++;
    } else {
      emit(clear);
      dict = new Map();
      next = end + 1;
      codeSize = minCodeSize + 1;
    }
    prefix = k;
  }
  if (prefix >= 0) emit(prefix);
  emit(end);
  if (bitLen > 0) out.push(bitBuf & 0xff);
  return out;
}

// indices: one palette index per pixel, rows top to bottom.
// palette: array of [r, g, b]; transparent: index or -1.
function encodeGif(width, height, indices, palette, transparent = -1) {
  if (palette.length < 1 || palette.length > 256) throw new Error('palette must hold 1..256 colours');
  if (indices.length !== width * height) throw new Error('pixel count does not match the size');
  let bits = 1;
  while (1 << bits < palette.length) bits++;
  const tableSize = 1 << bits;
  const bytes = [];
  const u16 = (v) => bytes.push(v & 0xff, (v >> 8) & 0xff);
  for (const c of 'GIF89a') bytes.push(c.charCodeAt(0));
  u16(width);
  u16(height);
  bytes.push(0x80 | ((bits - 1) << 4) | (bits - 1), 0, 0);
  for (let i = 0; i < tableSize; i++) {
    const c = palette[i] || [0, 0, 0];
    bytes.push(c[0], c[1], c[2]);
  }
  if (transparent >= 0) bytes.push(0x21, 0xf9, 4, 1, 0, 0, transparent, 0);
  bytes.push(0x2c);
  u16(0);
  u16(0);
  u16(width);
  u16(height);
  bytes.push(0);
  const minCodeSize = Math.max(2, bits);
  bytes.push(minCodeSize);
  const data = lzw(indices, minCodeSize);
  for (let i = 0; i < data.length; i += 255) {
    const block = data.slice(i, i + 255);
    bytes.push(block.length, ...block);
  }
  bytes.push(0, 0x3b);
  return Buffer.from(bytes);
}

module.exports = { encodeGif };
