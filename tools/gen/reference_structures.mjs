// Writes tests/data/encoding/{dictionary.xml,structures.txt}: the demo server's type dictionary, and the
// bodies of its structured values, encoded by an implementation that shares no code with ours.
//
//   (cd demoserver && npm ci) && node tools/gen/reference_structures.mjs
//
// The values are fixed: a second run must give the same bytes.

import { mkdtempSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

import { startServer } from "../../demoserver/lib/server.mjs";
import { ua } from "../../demoserver/lib/ua.mjs";

const here = dirname(fileURLToPath(import.meta.url));
const { BinaryStream } = createRequire(join(here, "..", "..", "demoserver", "package.json"))(
  "node-opcua-binary-stream",
);
const folder = join(here, "..", "..", "tests", "data", "encoding");
const encodingOffset = 1000; // from a data type's number to that of its binary encoding
const names = [
  "Point",
  "NamedPoint",
  "Segment",
  "SampleFull",
  "SampleBare",
  "MeasurementNumber",
  "MeasurementText",
  "Track",
  "Tree",
  "EveryType",
  "Legacy",
];

async function readAll(endpointUrl) {
  const client = ua.OPCUAClient.create({ endpointMustExist: false });
  await client.connect(endpointUrl);
  const session = await client.createSession();
  const value = async (id) => (await session.read({ nodeId: `ns=3;s=${id}` })).value.value;
  const dictionary = await value("Dictionary");
  const lines = [];
  for (const name of names) {
    const object = await value(`Structure.${name}`);
    // what the library's client knows no definition of keeps its body
    const stream = new BinaryStream(object.buffer ? 0 : object.binaryStoreSize());
    if (!object.buffer) object.encode(stream);
    const id = object.buffer ? object.nodeId.value - encodingOffset : object.schema.dataTypeNodeId.value;
    lines.push(`${name} | ${id} | ${(object.buffer ?? stream.buffer).toString("hex")}`);
  }
  await session.close();
  await client.disconnect();
  return { dictionary, lines };
}

const server = await startServer({
  port: 0,
  host: "127.0.0.1",
  pki: mkdtempSync(join(tmpdir(), "structures-")),
  acceptAll: true,
});
const { dictionary, lines } = await readAll(server.endpointUrl);
writeFileSync(join(folder, "dictionary.xml"), dictionary);
const heading = ["# Made by tools/gen/reference_structures.mjs, see README.md", "# NAME | DATATYPEID | HEX"];
writeFileSync(join(folder, "structures.txt"), `${[...heading, ...lines].join("\n")}\n`);
console.log(`${lines.length} bodies`);
process.exit(0);
