// A discovery server and a global one, for tries of the client, with as many servers as are wanted:
//   node discovery.mjs [--servers N] [--info FILE] [--pki FOLDER] [--extra URL]
// The extra URL is that of a server that can be connected. No multicast is sent or heard. Ends with its input.

import { mkdirSync } from "node:fs";
import { createRequire } from "node:module";
import { createServer } from "node:net";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { parseArgs } from "node:util";

import { bind } from "./lib/methods.mjs";
import { argumentsOrExit, writeInfo } from "./lib/program.mjs";
import { DataType, StatusCodes, ua, Variant, VariantArrayType } from "./lib/ua.mjs";

const require = createRequire(import.meta.url);
const { OPCUABaseServer } = require("node-opcua-server");
const host = "127.0.0.1";
const here = dirname(fileURLToPath(import.meta.url));
const directoryNamespace = "http://opcfoundation.org/UA/GDS/";
const usage = "usage: node discovery.mjs [--servers N] [--info FILE] [--pki FOLDER] [--extra URL]";

function readArguments() {
  const { values } = parseArgs({
    options: {
      servers: { type: "string", default: "3" },
      info: { type: "string" },
      pki: { type: "string", default: join(here, "pki", "discovery") },
      extra: { type: "string" },
    },
  });
  const servers = Number(values.servers);
  if (!Number.isInteger(servers) || servers < 0) throw new Error("--servers takes a number");
  return { ...values, servers, pki: resolve(values.pki) };
}

/** What the servers tell: plain ones, and at the beginning those that a client has to survive. */
function records({ servers, extra }) {
  const odd = [
    ["<b>Markup</b> & <img src=x>", "opc.tcp://markup.invalid:4840"],
    ["Endless ".repeat(2000), "opc.tcp://endless.invalid:4840"],
    ["Two\nlines\u202Eback", "opc.tcp://lines.invalid:4840"],
    ["Other transport", "opc.amqp://broker.invalid/queue"],
    ["No address", ""],
  ];
  const plain = extra ? [["Reachable", extra]] : [];
  for (let i = 1; i <= servers; ++i) plain.push([`Server ${i}`, `opc.tcp://10.255.0.1:${1024 + i}`]);
  return [...odd, ...plain];
}

function certificateManager(folder) {
  return new ua.OPCUACertificateManager({ rootFolder: folder, automaticallyAcceptUnknownCertificate: true });
}

const security = {
  securityModes: [ua.MessageSecurityMode.None],
  securityPolicies: [ua.SecurityPolicy.None],
};

/** The library's discovery server without its announcements, which need multicast. */
class QuietDiscoveryServer extends ua.OPCUADiscoveryServer {
  constructor(options, told) {
    super(options);
    this.told = told;
  }
  async start() {
    this._preInitTask.push(async () => await this._delayInit?.());
    await new Promise((done, failed) =>
      OPCUABaseServer.prototype.start.call(this, (error) => (error ? failed(error) : done())),
    );
    const registeredServers = this.told.map(([serverName, discoveryUrl], i) => ({
      recordId: i + 1,
      serverName,
      discoveryUrl,
      serverCapabilities: ["DA"],
    }));
    this.mDnsResponder = { registeredServers, dispose: async () => {} };
  }
  getServers(channel) {
    return [
      ...super.getServers(channel),
      ...this.told.map(([text, url], i) => ({
        applicationUri: `urn:told:${i}`,
        productUri: "urn:told",
        applicationName: { text },
        applicationType: ua.ApplicationType.Server,
        discoveryUrls: url ? [url] : [],
      })),
    ];
  }
}

/** The library takes 0 for the port of discovery servers that is known to all. */
function freePort() {
  return new Promise((done) => {
    const probe = createServer().listen(0, host, () => {
      const { port } = probe.address();
      probe.close(() => done(port));
    });
  });
}

async function startDiscovery({ pki }, told) {
  const port = await freePort();
  const server = new QuietDiscoveryServer(
    { port, hostname: host, ...security, serverCertificateManager: certificateManager(join(pki, "lds")) },
    told,
  );
  await server.start();
  return `opc.tcp://${host}:${port}`;
}

async function startDirectory({ pki }, told) {
  const server = new ua.OPCUAServer({
    port: 0,
    host,
    hostname: host,
    ...security,
    nodesets: [ua.nodesets.standard, ua.nodesets.gds],
    serverCertificateManager: certificateManager(join(pki, "gds")),
    registerServerMethod: ua.RegisterServerMethod.HIDDEN,
  });
  await server.initialize();
  const space = server.engine.addressSpace;
  const index = space.getNamespaceIndex(directoryNamespace);
  bind(space.findNode(`ns=${index};i=151`), ([from, most, name]) => {
    const list = told
      .map(([serverName, discoveryUrl], i) => ({ recordId: i + 1, serverName, discoveryUrl }))
      .filter((record) => record.recordId > from.value)
      .filter((record) => !name.value || record.serverName === name.value)
      .slice(0, most.value || undefined)
      .map((record) => new ua.ServerOnNetwork({ ...record, serverCapabilities: ["DA", "HD"] }));
    return {
      statusCode: StatusCodes.Good,
      outputArguments: [
        new Variant({ dataType: DataType.DateTime, value: new Date("2024-05-06T07:08:09Z") }),
        new Variant({ dataType: DataType.ExtensionObject, arrayType: VariantArrayType.Array, value: list }),
      ],
    };
  });
  await server.start();
  return `opc.tcp://${host}:${server.endpoints[0].port}`;
}

const options = argumentsOrExit(readArguments, usage);
mkdirSync(options.pki, { recursive: true });
const told = records(options);
const discoveryUrl = await startDiscovery(options, told);
const directoryUrl = await startDirectory(options, told);
if (options.info) writeInfo(options.info, { discoveryUrl, directoryUrl, pid: process.pid });
console.log(`discovery ${discoveryUrl} directory ${directoryUrl}`);
process.stdin.resume();
process.stdin.on("end", () => process.exit(0));
