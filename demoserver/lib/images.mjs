// Folder Images: variables of the image data types, good ones and some that are not what they say.

import { array, scalar } from "./builder.mjs";
import { drawPng } from "./png.mjs";
import { DataType } from "./ua.mjs";

const side = 64;
const frameCount = 8;

/** A dial: a disc with a hand that stands at one of `steps` places; [r, g, b] of each pixel. */
function dial(step, steps) {
  const middle = (side - 1) / 2;
  const angle = (2 * Math.PI * step) / steps;
  return (x, y) => {
    const dx = x - middle;
    const dy = y - middle;
    const along = dx * Math.sin(angle) - dy * Math.cos(angle);
    const across = dx * Math.cos(angle) + dy * Math.sin(angle);
    if (Math.hypot(dx, dy) > middle) return [245, 245, 245];
    if (Math.hypot(dx, dy) > middle - 4) return [40, 60, 90];
    if (along > 0 && along < middle - 8 && Math.abs(across) < 2.5) return [200, 40, 30];
    return [220 - y, 230, 160 + y];
  };
}

/** 24 bits a pixel, the lowest row first. */
export function drawBmp(size, colourAt) {
  const row = Math.ceil((size * 3) / 4) * 4;
  const out = Buffer.alloc(54 + row * size);
  out.write("BM", 0, "latin1");
  out.writeUInt32LE(out.length, 2);
  out.writeUInt32LE(54, 10);
  out.writeUInt32LE(40, 14);
  out.writeInt32LE(size, 18);
  out.writeInt32LE(size, 22);
  out.writeUInt16LE(1, 26);
  out.writeUInt16LE(24, 28);
  for (let y = 0; y < size; ++y) {
    for (let x = 0; x < size; ++x) {
      const [r, g, b] = colourAt(x, y);
      out.set([b, g, r], 54 + (size - 1 - y) * row + x * 3);
    }
  }
  return out;
}

/** The pixels as codes of nine bits; the code table is cleared before it would grow to ten. */
function gifData(pixels) {
  const clear = 256;
  const end = 257;
  const bytes = [];
  let held = 0;
  let count = 0;
  const put = (code) => {
    held |= code << count;
    count += 9;
    for (; count >= 8; count -= 8) {
      bytes.push(held & 0xff);
      held >>= 8;
    }
  };
  pixels.forEach((pixel, i) => {
    if (i % 250 === 0) put(clear);
    put(pixel);
  });
  put(end);
  if (count > 0) bytes.push(held & 0xff);
  const blocks = [Buffer.from([8])];
  for (let at = 0; at < bytes.length; at += 255) {
    const block = bytes.slice(at, at + 255);
    blocks.push(Buffer.from([block.length, ...block]));
  }
  return Buffer.concat([...blocks, Buffer.from([0])]);
}

/** An animation: each frame is a function of x and y to [r, g, b]; its palette has 6 x 6 x 6 colours. */
export function drawGif(size, frames, hundredths) {
  const screen = Buffer.alloc(13);
  screen.write("GIF89a", 0, "latin1");
  screen.writeUInt16LE(size, 6);
  screen.writeUInt16LE(size, 8);
  screen[10] = 0xf7; // a palette of 256 colours
  const palette = Buffer.alloc(768);
  for (let i = 0; i < 216; ++i) {
    palette.set([Math.floor(i / 36) * 51, (Math.floor(i / 6) % 6) * 51, (i % 6) * 51], i * 3);
  }
  const parts = [screen, palette];
  for (const colourAt of frames) {
    const control = Buffer.from([0x21, 0xf9, 4, 0, hundredths & 0xff, hundredths >> 8, 0, 0]);
    const header = Buffer.alloc(10);
    header[0] = 0x2c;
    header.writeUInt16LE(size, 5);
    header.writeUInt16LE(size, 7);
    const pixels = Array.from({ length: size * size }, (_, i) => {
      const [r, g, b] = colourAt(i % size, Math.floor(i / size)).map((c) => Math.round(c / 51));
      return r * 36 + g * 6 + b;
    });
    parts.push(control, header, gifData(pixels));
  }
  return Buffer.concat([...parts, Buffer.from([0x3b])]);
}

function jpgPart(marker, bytes) {
  const length = bytes.length + 2;
  return Buffer.from([0xff, marker, length >> 8, length & 0xff, ...bytes]);
}

/** Bits, highest first, with a zero byte behind each 0xff as the format wants it. */
class JpgBits {
  bytes = [];
  #held = 0;
  #count = 0;

  put(value, length) {
    for (let bit = length - 1; bit >= 0; --bit) {
      this.#held = (this.#held << 1) | ((value >> bit) & 1);
      if (++this.#count < 8) continue;
      this.bytes.push(this.#held);
      if (this.#held === 0xff) this.bytes.push(0);
      this.#held = 0;
      this.#count = 0;
    }
  }

  finish() {
    while (this.#count > 0) this.put(1, 1);
    return Buffer.from(this.bytes);
  }
}

/** A mosaic of squares of 8 x 8 pixels, each of one colour: all that is needed of the format is its DC terms. */
export function drawJpg(squares, colourAt) {
  const bits = new JpgBits();
  const before = [0, 0, 0];
  for (let i = 0; i < squares * squares; ++i) {
    const [r, g, b] = colourAt(i % squares, Math.floor(i / squares));
    const y = 0.299 * r + 0.587 * g + 0.114 * b;
    const levels = [y - 128, (b - y) / 1.772, (r - y) / 1.402].map((v) =>
      Math.max(-127, Math.min(127, Math.round(v))),
    );
    levels.forEach((level, component) => {
      const step = level - before[component];
      before[component] = level;
      const length = step === 0 ? 0 : Math.floor(Math.log2(Math.abs(step))) + 1;
      bits.put(length, 4); // the code of a length is the length, in four bits
      bits.put(step < 0 ? step + (1 << length) - 1 : step, length);
      bits.put(0, 1); // and no more of this block
    });
  }
  const pixels = squares * 8;
  const table = (kind, counts, symbols) => jpgPart(0xc4, [kind, ...counts, ...symbols]);
  const components = [1, 2, 3];
  return Buffer.concat([
    Buffer.from([0xff, 0xd8]),
    jpgPart(0xe0, [...Buffer.from("JFIF\0", "latin1"), 1, 1, 0, 0, 1, 0, 1, 0, 0]),
    jpgPart(0xdb, [0, ...Array(64).fill(8)]),
    jpgPart(0xc0, [
      ...[8, pixels >> 8, pixels & 0xff, pixels >> 8, pixels & 0xff, 3],
      ...components.flatMap((id) => [id, 0x11, 0]),
    ]),
    table(0x00, [0, 0, 0, 9, ...Array(12).fill(0)], [0, 1, 2, 3, 4, 5, 6, 7, 8]),
    table(0x10, [1, ...Array(15).fill(0)], [0]),
    jpgPart(0xda, [3, ...components.flatMap((id) => [id, 0]), 0, 63, 0]),
    bits.finish(),
    Buffer.from([0xff, 0xd9]),
  ]);
}

const opaque = (colourAt) => (x, y) => [...colourAt(x, y), 255];

/** A PNG whose header claims any size; its pixels are some bytes of nothing. */
function claimPng(width, height) {
  const bytes = Buffer.from(drawPng(1, () => [0, 0, 0, 255]));
  bytes.writeUInt32BE(width, 16);
  bytes.writeUInt32BE(height, 20);
  return bytes;
}

function addGood(b, folder, structures) {
  const mosaic = (x, y) => [(x * 16) & 0xff, (y * 16) & 0xff, 255 - (((x + y) * 8) & 0xff)];
  const png = drawPng(side, opaque(dial(1, 8)));
  const steps = Array.from({ length: frameCount }, (_, i) => dial(i, frameCount));
  const image = (name, type, bytes, more = {}) =>
    b.variable(`Image.${name}`, folder, type, scalar(DataType.ByteString, bytes), more);
  image("BMP", "ImageBMP", drawBmp(side, dial(0, 8)));
  image("GIF", "ImageGIF", drawGif(side, steps, 20));
  image("JPG", "ImageJPG", drawJpg(16, mosaic));
  image("PNG", "ImagePNG", png);
  image("Any", "Image", drawBmp(side, dial(2, 8)));
  image("ByteString", "ByteString", png);
  image(
    "Large",
    "ImageJPG",
    drawJpg(375, (x, y) => [x & 0xff, y & 0xff, (x ^ y) & 0xff]),
  );
  b.variable(
    "Image.Array",
    folder,
    "ImagePNG",
    array(
      DataType.ByteString,
      [0, 1, 2, 3].map((i) => drawPng(side, opaque(dial(2 * i, 8)))),
    ),
    { valueRank: 1, arrayDimensions: [0] },
  );
  const snapshot = structures.make("Snapshot", { title: "Gate", picture: png });
  b.variable(
    "Image.Snapshot",
    folder,
    structures.typeId("Snapshot"),
    scalar(DataType.ExtensionObject, snapshot),
  );
}

function addBroken(b, folder) {
  const png = drawPng(side, opaque(dial(3, 8)));
  const bytes = (name, type, content) =>
    b.variable(`Image.${name}`, folder, type, scalar(DataType.ByteString, content));
  bytes("Truncated", "ImagePNG", png.subarray(0, Math.floor(png.length / 2)));
  bytes("WrongType", "ImagePNG", drawGif(side, [dial(4, 8)], 0));
  bytes("NoImage", "ImageJPG", Buffer.from("this is no picture"));
  bytes("Huge", "ImagePNG", claimPng(60_000, 60_000));
  bytes("NoPixels", "ImagePNG", claimPng(0, 0));
  bytes("Null", "ImagePNG", null);
}

function addCamera(b, folder) {
  const frames = Array.from({ length: 50 }, (_, i) => drawPng(side, opaque(dial(i, 50))));
  const camera = b.variable("Image.Camera", folder, "ImagePNG", scalar(DataType.ByteString, frames[0]), {
    accessLevel: "CurrentRead",
    userAccessLevel: "CurrentRead",
    minimumSamplingInterval: 50,
  });
  let tick = 0;
  b.every(100, () => {
    tick += 1;
    camera.setValueFromSource(scalar(DataType.ByteString, frames[tick % frames.length]));
  });
}

export function addImages(b, structures) {
  const folder = b.folder("Image");
  addGood(b, folder, structures);
  addBroken(b, folder);
  addCamera(b, folder);
}
