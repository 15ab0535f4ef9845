// What the programs of this folder share.

import { renameSync, writeFileSync } from "node:fs";

/** What `read` makes of the arguments; when it throws, the program ends with its message and the usage. */
export function argumentsOrExit(read, usage) {
  try {
    return read();
  } catch (error) {
    console.error(`${error.message}\n${usage}`);
    process.exit(2);
  }
}

/** Whoever waits for the file must never read half of it. */
export function writeInfo(file, info) {
  const temporary = `${file}.${process.pid}`;
  writeFileSync(temporary, `${JSON.stringify(info)}\n`);
  renameSync(temporary, file);
}
