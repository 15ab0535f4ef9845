// Draws small PNG pictures without a library.

import { crc32Of } from "./crc32.mjs";
import { deflateSync } from "node:zlib";

function chunk(type, data) {
  const body = Buffer.concat([Buffer.from(type, "latin1"), data]);
  const out = Buffer.alloc(body.length + 8);
  out.writeUInt32BE(data.length, 0);
  body.copy(out, 4);
  out.writeUInt32BE(crc32Of(body), body.length + 4);
  return out;
}

/** A square RGBA picture; `colourAt(x, y)` gives [r, g, b, a] of a pixel. */
export function drawPng(size, colourAt) {
  const header = Buffer.alloc(13);
  header.writeUInt32BE(size, 0);
  header.writeUInt32BE(size, 4);
  header.set([8, 6, 0, 0, 0], 8); // 8 bits a channel, with alpha
  const rows = Buffer.alloc(size * (1 + size * 4));
  for (let y = 0; y < size; ++y) {
    for (let x = 0; x < size; ++x) rows.set(colourAt(x, y), y * (1 + size * 4) + 1 + x * 4);
  }
  const signature = Buffer.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]);
  return Buffer.concat([
    signature,
    chunk("IHDR", header),
    chunk("IDAT", deflateSync(rows)),
    chunk("IEND", Buffer.alloc(0)),
  ]);
}
