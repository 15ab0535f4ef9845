// Writes tests/data/encoding/{builtin,messages}.txt: binary encodings made by an OPC UA implementation that
// shares no code with ours, so that a misreading of the standard in our encoder cannot hide behind the same
// misreading in our decoder.
//
//   (cd demoserver && npm ci) && node tools/gen/reference_encodings.mjs
//
// Every value is fixed: a second run must give the same bytes.

import { mkdirSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

import { builtinCases } from "./reference_encodings/cases.mjs";
import { messageCases } from "./reference_encodings/messages.mjs";
import { describe, encode, encodeMessage, verify } from "./reference_encodings/types.mjs";

const root = join(dirname(fileURLToPath(import.meta.url)), "..", "..");
const folder = join(root, "tests", "data", "encoding");

function checkUnique(lines) {
  const seen = new Set();
  for (const [type, name] of lines) {
    const key = `${type} ${name}`;
    if (seen.has(key)) throw new Error(`two cases are called ${key}`);
    seen.add(key);
  }
}

function write(file, heading, lines) {
  checkUnique(lines);
  const text = [...heading.map((line) => `# ${line}`), ...lines.map((columns) => columns.join(" | "))].join(
    "\n",
  );
  writeFileSync(join(folder, file), `${text}\n`);
  console.log(`${file}: ${lines.length} cases`);
}

const builtin = builtinCases().map(({ type, name, value }) => {
  const bytes = encode(type, value);
  verify(type, name, bytes);
  return [type, name, describe(type, value), bytes.toString("hex")];
});

const messages = messageCases().map(({ name, message }) => {
  const { typeName, encodingId, bytes } = encodeMessage(message);
  return [typeName, name, encodingId, bytes.toString("hex")];
});

mkdirSync(folder, { recursive: true });
write(
  "builtin.txt",
  ["Made by tools/gen/reference_encodings.mjs, see README.md", "TYPE | NAME | VALUE | HEX"],
  builtin,
);
write(
  "messages.txt",
  ["Made by tools/gen/reference_encodings.mjs, see README.md", "TYPE | NAME | BINARYENCODINGID | HEX"],
  messages,
);
