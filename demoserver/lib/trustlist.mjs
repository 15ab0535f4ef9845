// A trust list in a folder of certificates, and as the bytes in which it travels.

import { createHash } from "node:crypto";
import { mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { join } from "node:path";

/** The folders of the four lists, in the order of their bits in the mask. */
const folders = [
  ["trusted", "certs"],
  ["trusted", "crl"],
  ["issuers", "certs"],
  ["issuers", "crl"],
];
export const all = 15;

const pem = /-----BEGIN [A-Z0-9 ]+-----([^-]+)-----END/;

/** The bytes of a file in DER or PEM form. */
function derOf(file) {
  const bytes = readFileSync(file);
  const match = bytes[0] === 0x30 ? null : pem.exec(bytes.toString("latin1"));
  return match ? Buffer.from(match[1], "base64") : bytes;
}

export function filesIn(folder) {
  mkdirSync(folder, { recursive: true });
  return readdirSync(folder, { withFileTypes: true })
    .filter((entry) => entry.isFile() && /\.(pem|der|crl|crt|cer)$/.test(entry.name))
    .map((entry) => join(folder, entry.name))
    .sort();
}

export const certificatesIn = (folder) => filesIn(folder).map(derOf);
export const thumbprint = (der) => createHash("sha1").update(der).digest("hex");

/** The lists of the mask; the others are null. */
export function readLists(root, mask = all) {
  return folders.map((path, bit) => (mask & (1 << bit) ? certificatesIn(join(root, ...path)) : null));
}

/** Replaces the lists that are not null. */
export function writeLists(root, lists) {
  for (const [bit, list] of lists.entries()) {
    if (!list) continue;
    const folder = join(root, ...folders[bit]);
    for (const file of filesIn(folder)) rmSync(file);
    const ending = folders[bit][1] === "crl" ? "crl" : "der";
    for (const der of list) writeFileSync(join(folder, `${thumbprint(der)}.${ending}`), der);
  }
}

function number(value) {
  const bytes = Buffer.alloc(4);
  bytes.writeInt32LE(value);
  return bytes;
}

/** Lists that are null travel as empty ones. */
export function encode(lists) {
  const mask = lists.reduce((sum, list, bit) => sum | (list ? 1 << bit : 0), 0);
  const arrays = lists.flatMap((list) => [
    number((list ?? []).length),
    ...(list ?? []).flatMap((der) => [number(der.length), der]),
  ]);
  return Buffer.concat([number(mask), ...arrays]);
}

/** Throws when the bytes are something else. */
export function decode(bytes) {
  let at = 0;
  const next = () => {
    at += 4;
    return bytes.readInt32LE(at - 4);
  };
  const mask = next();
  const lists = folders.map((_path, bit) => {
    const list = [];
    for (let count = next(); count > 0; --count) {
      const length = next();
      if (length < 0 || at + length > bytes.length) throw new RangeError("a length beyond the end");
      list.push(Buffer.from(bytes.subarray(at, at + length)));
      at += length;
    }
    return mask & (1 << bit) ? list : null;
  });
  if (at !== bytes.length) throw new RangeError("bytes after the lists");
  return lists;
}
