// Puts the server together: end points, users, limits and the address space.

import { join } from "node:path";

import { addAlarmsAndEvents } from "./alarms.mjs";
import { addArrays } from "./arrays.mjs";
import { addAttributes } from "./attributes.mjs";
import { Builder } from "./builder.mjs";
import { addShapes } from "./deep.mjs";
import { addDevices } from "./devices.mjs";
import { addDictionary } from "./dictionary.mjs";
import { addDynamic } from "./dynamic.mjs";
import { addGrowing } from "./growing.mjs";
import { addHistory } from "./history.mjs";
import { addIcons } from "./icons.mjs";
import { addImages } from "./images.mjs";
import { addMany } from "./many.mjs";
import { addMethods } from "./methods.mjs";
import { addPush } from "./push.mjs";
import { addScalars } from "./scalars.mjs";
import { addStructures } from "./structures.mjs";
import { structureNodeset } from "./structuretypes.mjs";
import { applicationUri, namespaces, ua } from "./ua.mjs";

const resourcePath = "/Tavelin/Demo";
const administrator = "admin"; // may configure the server
const administratorRoles = "AuthenticatedUser;ConfigureAdmin;SecurityAdmin";
const users = new Map([
  ["demo", "demo"],
  [administrator, administrator],
  ["paula", "correct horse"], // a password that no other text holds
]);

/** What the server takes at once: perCall items of everything, or as the README says. */
function limitsOf(perCall) {
  const many = perCall ?? 1000;
  const few = perCall ?? 100;
  const points = Math.min(few, 50);
  return {
    maxSessions: 100,
    maxSubscriptions: 1000,
    maxSubscriptionsPerSession: 100,
    maxMonitoredItems: 100_000,
    maxMonitoredItemsPerSubscription: 20_000,
    maxBrowseContinuationPoints: points,
    maxHistoryContinuationPoints: points,
    operationLimits: {
      maxNodesPerRead: many,
      maxNodesPerWrite: many,
      maxNodesPerBrowse: many,
      maxNodesPerMethodCall: few,
      maxNodesPerRegisterNodes: many,
      maxMonitoredItemsPerCall: many,
      maxNodesPerHistoryReadData: few,
      maxNodesPerTranslateBrowsePathsToNodeIds: many,
    },
  };
}

function certificateManager(folder, acceptAll) {
  return new ua.OPCUACertificateManager({
    rootFolder: folder,
    automaticallyAcceptUnknownCertificate: acceptAll,
  });
}

function serverOptions({ host, name = host, port, pki, acceptAll, perCall }) {
  const { None, Basic256Sha256, Aes128_Sha256_RsaOaep, Aes256_Sha256_RsaPss } = ua.SecurityPolicy;
  const { MessageSecurityMode } = ua;
  return {
    port,
    host,
    hostname: name,
    resourcePath,
    nodesets: [ua.nodesets.standard, { name: "structures", source: structureNodeset() }, ua.nodesets.di],
    serverInfo: {
      applicationUri,
      productUri: "urn:korvanda:tavelin",
      applicationName: { text: "Tavelin Demo Server", locale: "en" },
    },
    buildInfo: {
      productName: "Tavelin Demo Server",
      productUri: "urn:korvanda:tavelin",
      manufacturerName: "Korvanda",
      softwareVersion: "1.0.0",
      buildNumber: "1",
      buildDate: new Date("2024-01-01T00:00:00Z"),
    },
    serverCapabilities: limitsOf(perCall),
    maxConnectionsPerEndpoint: 200,
    securityPolicies: [None, Basic256Sha256, Aes128_Sha256_RsaOaep, Aes256_Sha256_RsaPss],
    securityModes: [MessageSecurityMode.None, MessageSecurityMode.Sign, MessageSecurityMode.SignAndEncrypt],
    allowAnonymous: true,
    userManager: {
      isValidUser: (name, password) => users.get(name) === password,
      getUserRoles: (name) => ua.makeRoles(name === administrator ? administratorRoles : "AuthenticatedUser"),
    },
    serverCertificateManager: certificateManager(join(pki, "server"), acceptAll),
    userCertificateManager: certificateManager(join(pki, "user"), acceptAll),
    registerServerMethod: ua.RegisterServerMethod.HIDDEN,
    isAuditing: false,
  };
}

/** From now on a notification message that did not arrive is gone, as with servers that keep none. */
function keepNoMessages() {
  ua.Subscription.prototype.getMessageForSequenceNumber = () => null;
}

function addAll(b) {
  addScalars(b);
  addArrays(b);
  addDynamic(b);
  const structures = addStructures(b);
  addDictionary(b, structures);
  addMethods(b, structures);
  addGrowing(b);
  addHistory(b);
  addAlarmsAndEvents(b);
  addIcons(b);
  addAttributes(b);
  addImages(b, structures);
  addMany(b);
  addShapes(b);
  addDevices(b, administrator);
}

/** Starts the server; the promise is fulfilled when it listens. */
export async function startServer(options) {
  if (options.republish === false) keepNoMessages();
  const server = new ua.OPCUAServer(serverOptions(options));
  await server.initialize();
  const builder = new Builder(server, namespaces);
  addAll(builder);
  addPush(builder, join(options.pki, "server"));
  await server.start();
  const port = server.endpoints[0].port;
  return {
    port,
    endpointUrl: `opc.tcp://${options.host.includes(":") ? `[${options.host}]` : options.host}:${port}${resourcePath}`,
    /** Closes the connections; to take the address space apart needs a second and is left to the end. */
    async stop() {
      builder.stop();
      server.engine.setServerState(ua.ServerState.Shutdown);
      await server.shutdownChannels();
    },
  };
}
