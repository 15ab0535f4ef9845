// HTTPS in front of an opc.tcp server: takes encoded requests as bodies of POSTs and passes them on over one
// secure channel without security.
//   node httpsfront.mjs --upstream URL --certificate FILE --key FILE
//       [--port N] [--host ADDRESS] [--info FILE]

import { readFileSync } from "node:fs";
import { createServer } from "node:https";
import { createRequire } from "node:module";
import { parseArgs } from "node:util";

import { argumentsOrExit, writeInfo } from "./lib/program.mjs";

const require = createRequire(import.meta.url);
const { BinaryStream } = require("node-opcua-binary-stream");
const { decodeExpandedNodeId, encodeExpandedNodeId } = require("node-opcua-basic-types");
const { getStandardDataTypeFactory } = require("node-opcua-factory");
const { ClientSecureChannelLayer } = require("node-opcua-secure-channel");
require("node-opcua"); // knows all requests

const httpsBinary = "http://opcfoundation.org/UA-Profile/Transport/https-uabinary";
const noPolicy = "http://opcfoundation.org/UA/SecurityPolicy#None";
const maxBody = 16 * 1024 * 1024;
const usage =
  "usage: node httpsfront.mjs --upstream URL --certificate FILE --key FILE [--port N] [--host ADDRESS] [--info FILE]";

function readArguments() {
  const text = { type: "string" };
  const { values } = parseArgs({
    options: {
      upstream: text,
      certificate: text,
      key: text,
      port: { type: "string", default: "0" },
      host: { type: "string", default: "127.0.0.1" },
      info: text,
    },
  });
  for (const name of ["upstream", "certificate", "key"]) {
    if (!values[name]) throw new Error(`--${name} is missing`);
  }
  return values;
}

const options = argumentsOrExit(readArguments, usage);
let ownUrl = "";

function decodeRequest(body) {
  const stream = new BinaryStream(body);
  const request = getStandardDataTypeFactory().constructObject(decodeExpandedNodeId(stream));
  request.decode(stream);
  return request;
}

function encodeResponse(response) {
  const typeId = response.schema.encodingDefaultBinary;
  const size = new BinaryStream(Buffer.alloc(64));
  encodeExpandedNodeId(typeId, size);
  const stream = new BinaryStream(Buffer.alloc(size.length + response.binaryStoreSize()));
  encodeExpandedNodeId(typeId, stream);
  response.encode(stream);
  return stream.buffer.subarray(0, stream.length);
}

/** The server does not know of its front: its endpoints without security get a second address. */
function addOwnEndpoint(endpoints) {
  const plain = endpoints?.find((endpoint) => endpoint.securityPolicyUri === noPolicy);
  if (!plain) return;
  const own = new plain.constructor(plain);
  own.endpointUrl = ownUrl;
  own.transportProfileUri = httpsBinary;
  endpoints.push(own);
}

let channel;
function connectUpstream() {
  channel = new ClientSecureChannelLayer({
    defaultSecureTokenLifetime: 3_600_000,
    connectionStrategy: { maxRetry: 0, initialDelay: 100, maxDelay: 100 },
  });
  return new Promise((done, failed) =>
    channel.create(options.upstream, (error) => (error ? failed(error) : done())),
  );
}

/** One request and its answer; a fault of the service is an answer too. */
function relay(request) {
  const handle = request.requestHeader.requestHandle;
  if (request.endpointUrl) request.endpointUrl = options.upstream;
  return new Promise((done, failed) => {
    channel.performMessageTransaction(request, (error, response) => {
      const answer = response ?? error?.response;
      if (!answer) return failed(error ?? new Error("no answer"));
      answer.responseHeader.requestHandle = handle;
      addOwnEndpoint(answer.serverEndpoints ?? answer.endpoints);
      return done(answer);
    });
  });
}

async function readBody(message) {
  const parts = [];
  let size = 0;
  for await (const part of message) {
    size += part.length;
    if (size > maxBody) throw Object.assign(new Error("too large"), { status: 413 });
    parts.push(part);
  }
  return Buffer.concat(parts);
}

async function answer(message, response) {
  try {
    if (message.method !== "POST") throw Object.assign(new Error("only POST"), { status: 405 });
    if (message.headers["content-type"] !== "application/octet-stream") {
      throw Object.assign(new Error("only binary bodies"), { status: 415 });
    }
    const body = encodeResponse(await relay(decodeRequest(await readBody(message))));
    // long answers go out in chunks, short ones with their length, so that both are seen
    const headers = { "Content-Type": "application/octet-stream" };
    if (body.length < 4096) headers["Content-Length"] = body.length;
    response.writeHead(200, headers);
    response.end(body);
  } catch (error) {
    console.error(error.message);
    response.writeHead(error.status ?? 500, { "Content-Type": "text/html" });
    response.end(`<html><body>${error.status ?? 500}</body></html>`);
  }
}

await connectUpstream();
channel.on("close", () => process.exit(1));
const server = createServer(
  { cert: readFileSync(options.certificate), key: readFileSync(options.key) },
  answer,
);
server.listen(Number(options.port), options.host, () => {
  ownUrl = `https://${options.host}:${server.address().port}/Tavelin/Demo`;
  const { certificate } = options;
  if (options.info) writeInfo(options.info, { endpointUrl: ownUrl, certificate, pid: process.pid });
  console.log(`HTTPS front of ${options.upstream} listens at ${ownUrl}`);
});
for (const signal of ["SIGTERM", "SIGINT"]) process.on(signal, () => process.exit(0));
