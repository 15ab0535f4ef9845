// The client with which the self test looks at the server.

import { strict as assert } from "node:assert";
import { mkdtempSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";

import { ua } from "./ua.mjs";

const { AttributeIds, StatusCodes } = ua;
/** Where keys and files of a run are; the run deletes it. */
export const folder = mkdtempSync(join(tmpdir(), "tavelin-selftest-"));

export function makeClient(security = {}) {
  const rootFolder = join(folder, "client");
  return ua.OPCUAClient.create({
    applicationName: "selftest",
    clientCertificateManager: new ua.OPCUACertificateManager({
      rootFolder,
      automaticallyAcceptUnknownCertificate: true,
    }),
    connectionStrategy: { maxRetry: 0 },
    endpointMustExist: false,
    ...security,
  });
}

export async function connect(endpointUrl, security = {}, identity = undefined) {
  const client = makeClient(security);
  await client.connect(endpointUrl);
  return { client, session: await client.createSession(identity) };
}

export async function read(session, nodeId, attributeId = AttributeIds.Value) {
  return session.read({ nodeId, attributeId });
}

export async function write(session, nodeId, value) {
  return session.write({ nodeId, attributeId: AttributeIds.Value, value: { value } });
}

/** Writes a value (the one that is there, unless given) and reads again: it must survive the trip. */
export async function rewrite(session, nodeId, value = undefined) {
  const before = await read(session, nodeId);
  assert.equal(before.statusCode, StatusCodes.Good, `${nodeId}: ${before.statusCode}`);
  const written = value ? new ua.Variant(value) : before.value;
  assert.equal(await write(session, nodeId, written), StatusCodes.Good, `writing ${nodeId}`);
  assert.equal((await read(session, nodeId)).value.toString(), written.toString(), nodeId);
}

/** All forward hierarchical children, by as many BrowseNext as it takes. */
export async function children(session, nodeId, pageSize = 0) {
  const description = {
    nodeId,
    browseDirection: 0,
    referenceTypeId: "i=33",
    includeSubtypes: true,
    nodeClassMask: 0,
    resultMask: 63,
  };
  session.requestedMaxReferencesPerNode = pageSize;
  let result = await session.browse(description);
  const references = [...result.references];
  let pages = 1;
  while (result.continuationPoint?.length) {
    result = await session.browseNext(result.continuationPoint, false);
    references.push(...result.references);
    pages += 1;
  }
  return { references, pages };
}

/**
 * Subscribes, does `start` with the subscription, and gathers notifications until `enough(seen)` holds.
 * @param item what to monitor: node id, attribute and filter
 */
export async function collect(session, { filter = null, ...itemToMonitor }, enough, start = async () => {}) {
  const subscription = await session.createSubscription2({
    requestedPublishingInterval: 100,
    requestedMaxKeepAliveCount: 10,
    requestedLifetimeCount: 100,
    publishingEnabled: true,
  });
  const parameters = { samplingInterval: 100, queueSize: 100, discardOldest: true, filter };
  const item = await subscription.monitor(itemToMonitor, parameters, ua.TimestampsToReturn.Both);
  const seen = [];
  try {
    const done = new Promise((resolve, reject) => {
      const tooFew = () => reject(new Error(`only ${seen.length} notifications of ${itemToMonitor.nodeId}`));
      const limit = setTimeout(tooFew, 10_000);
      item.on("changed", (value) => {
        seen.push(value);
        if (!enough(seen)) return;
        clearTimeout(limit);
        resolve(seen);
      });
    });
    await start(subscription);
    return await done;
  } finally {
    await subscription.terminate();
  }
}
