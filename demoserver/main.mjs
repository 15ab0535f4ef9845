// The demo server's program:
//   node main.mjs [--port N] [--host ADDRESS] [--info FILE] [--pki FOLDER] [--accept-all yes|no]
//     [--per-call N] [--republish yes|no] [--name HOST]

import { mkdirSync } from "node:fs";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { parseArgs } from "node:util";

import { argumentsOrExit, writeInfo } from "./lib/program.mjs";
import { startServer } from "./lib/server.mjs";

const usage =
  "usage: node main.mjs [--port N] [--host ADDRESS] [--info FILE] [--pki FOLDER] [--accept-all yes|no] " +
  "[--per-call N] [--republish yes|no] [--name HOST]";
const here = dirname(fileURLToPath(import.meta.url));
const stopLimit = 500;

function readArguments() {
  const option = (value) => ({ type: "string", default: value });
  const { values } = parseArgs({
    options: {
      port: option("4840"),
      host: option("127.0.0.1"),
      info: { type: "string" },
      pki: option(join(here, "pki")),
      "accept-all": option("yes"),
      "per-call": { type: "string" },
      republish: option("yes"),
      name: { type: "string" },
    },
  });
  const port = Number(values.port);
  if (!Number.isInteger(port) || port < 0 || port > 65535) throw new Error(`no port number: ${values.port}`);
  if (!["yes", "no"].includes(values["accept-all"])) throw new Error("--accept-all takes yes or no");
  if (!["yes", "no"].includes(values.republish)) throw new Error("--republish takes yes or no");
  const perCall = values["per-call"] === undefined ? undefined : Number(values["per-call"]);
  if (perCall !== undefined && (!Number.isInteger(perCall) || perCall < 1))
    throw new Error("--per-call takes a number of items, at least 1");
  return {
    port,
    host: values.host,
    info: values.info,
    pki: resolve(values.pki),
    acceptAll: values["accept-all"] === "yes",
    perCall,
    republish: values.republish === "yes",
    name: values.name,
  };
}

const options = argumentsOrExit(readArguments, usage);
mkdirSync(options.pki, { recursive: true });

let server;
function stop() {
  setTimeout(() => process.exit(0), stopLimit); // a client that keeps its connection must not hold us up
  Promise.resolve(server?.stop()).finally(() => process.exit(0));
}
process.on("SIGTERM", stop);
process.on("SIGINT", stop);

server = await startServer(options);
if (options.info)
  writeInfo(options.info, { endpointUrl: server.endpointUrl, port: server.port, pid: process.pid });
console.log(`Tavelin demo server listens at ${server.endpointUrl}`);
