// Starts the demo server and checks over the wire that every subject is there and works. Exits with 1 when
// anything fails.

import { strict as assert } from "node:assert";
import { readFileSync, readdirSync, rmSync } from "node:fs";
import { join } from "node:path";

import { builtInValues, scalar } from "./lib/builder.mjs";
import { depth } from "./lib/deep.mjs";
import { manyCount } from "./lib/many.mjs";
import {
  children,
  collect,
  connect,
  folder,
  makeClient,
  read,
  rewrite,
  write,
} from "./lib/selftestclient.mjs";
import { devicesAnswer } from "./lib/selftestdevices.mjs";
import { startServer } from "./lib/server.mjs";
import { decode, thumbprint } from "./lib/trustlist.mjs";
import { namespaces, ua } from "./lib/ua.mjs";

const { AttributeIds, DataType, StatusCodes } = ua;
const serverEvents = (filter) => ({ nodeId: "i=2253", attributeId: AttributeIds.EventNotifier, filter });
const demo = (id) => `ns=2;s=${id}`;
const structured = (id) => `ns=3;s=Structure.${id}`;

async function namespacesAreStable({ session }) {
  const { value } = await read(session, "i=2255");
  assert.deepEqual(Array.from(value.value).slice(2), Object.values(namespaces));
}

async function everyTypeReadsAndWrites({ session }) {
  for (const [type, [, other]] of Object.entries(builtInValues())) {
    await rewrite(session, demo(`Scalar.${type}`), scalar(DataType[type], other));
    for (const kind of ["Array", "EmptyArray", "Matrix", "Cube"])
      await rewrite(session, demo(`${kind}.${type}`));
  }
  for (const id of [
    "Scalar.Enumeration",
    "Scalar.Variant",
    "Array.Variant",
    "Array.Large",
    "Text.VeryLong",
    "Text.Scripts",
    "Text.BigBytes",
  ]) {
    await rewrite(session, demo(id));
  }
  const empty = await read(session, demo("EmptyArray.Int32"));
  assert.equal(empty.value.value.length, 0);
  const cube = await read(session, demo("Cube.Double"));
  assert.deepEqual(Array.from(cube.value.dimensions), [2, 2, 3]);
}

async function accessAndStatusAreTold({ session }) {
  const writeTo = (id) => write(session, demo(id), scalar(DataType.Int32, 8));
  assert.equal(await writeTo("Access.ReadOnly"), StatusCodes.BadNotWritable);
  assert.equal(await writeTo("Access.RejectsWrites"), StatusCodes.BadOutOfRange);
  assert.equal((await read(session, demo("Access.WriteOnly"))).statusCode, StatusCodes.BadNotReadable);
  assert.equal((await read(session, demo("Access.None"))).statusCode, StatusCodes.BadNotReadable);
  assert.notEqual(await writeTo("Access.UserReadOnly"), StatusCodes.Good);
  for (const name of ["BadSensorFailure", "UncertainLastUsableValue", "GoodLocalOverride"]) {
    assert.equal((await read(session, demo(`Status.${name}`))).statusCode, StatusCodes[name]);
  }
  assert.equal((await read(session, demo("Status.NullString"))).value.value, null);
}

async function attributesCanBeWritten({ session }) {
  const nodeId = demo("Attributes.Variable");
  const set = (attributeId, value) => session.write({ nodeId, attributeId, value: { value } });
  const words = { dataType: DataType.LocalizedText, value: { locale: "en", text: "written" } };
  assert.equal(await set(AttributeIds.Description, words), StatusCodes.Good);
  assert.equal((await read(session, nodeId, AttributeIds.Description)).value.value.text, "written");
  assert.equal(await set(AttributeIds.Description, scalar(DataType.Int32, 1)), StatusCodes.BadTypeMismatch);
  assert.equal(
    (await read(session, nodeId, AttributeIds.UserWriteMask)).statusCode,
    StatusCodes.BadAttributeIdInvalid,
  );
}

async function structuresDecode({ session }) {
  const value = async (id) => (await read(session, structured(id))).value.value;
  await session.extractNamespaceDataType();
  assert.deepEqual([(await value("NamedPoint")).x, (await value("NamedPoint")).name], [3, "Kirchturm"]);
  assert.equal((await value("SampleBare")).comment, undefined);
  assert.equal((await value("SampleFull")).comment, "all there");
  assert.equal((await value("MeasurementText")).text, "out of range");
  assert.equal((await value("Tree")).children[0].children[0].name, "leaf");
  assert.equal((await value("Track")).points.length, 2);
  assert.equal((await value("EveryType")).stringField, "fünf");
  assert.equal((await value("PointArray")).length, 3);
  assert.equal(
    (await read(session, "ns=3;i=3018", AttributeIds.DataTypeDefinition)).statusCode,
    StatusCodes.BadAttributeIdInvalid,
  );
  for (const id of [
    "Point",
    "Segment",
    "SampleBare",
    "MeasurementNumber",
    "Tree",
    "EveryType",
    "PointArray",
    "Mode",
    "DeviceFlags",
  ]) {
    await rewrite(session, structured(id));
  }
  for (const id of [3001, 3002, 3003, 3010, 3011, 3013, 3014, 3016, 3017]) {
    const definition = await read(session, `ns=3;i=${id}`, AttributeIds.DataTypeDefinition);
    assert.equal(definition.statusCode, StatusCodes.Good, `definition of ${id}`);
    assert.ok(definition.value.value.fields.length > 0);
  }
  const properties = (await children(session, "ns=3;i=3002")).references.map((r) => r.browseName.name);
  assert.deepEqual(properties, ["EnumValues"]);
}

/** A client that knows only the dictionary decodes the same values. */
async function dictionaryDescribes({ session }) {
  const manager = await ua.getExtraDataTypeManager(session, ua.DataTypeExtractStrategy.Force103);
  const value = async (id) => {
    const { value: variant } = await read(session, structured(id));
    await ua.resolveDynamicExtensionObject(session, variant, manager);
    return variant.value;
  };
  const legacy = await value("Legacy");
  assert.deepEqual([legacy.code, legacy.name, Array.from(legacy.values)], [7, "alt", [0.5, 1.5]]);
  assert.equal((await value("SampleFull")).weight, 2.5);
  assert.equal((await value("NamedPoint")).name, "Kirchturm");
  assert.equal((await value("Track")).points[1].y, 1);
}

async function methodsAnswer({ session }) {
  const call = (name, inputArguments = []) =>
    session.call({ objectId: demo("Methods"), methodId: demo(`Methods.${name}`), inputArguments });
  const double = (value) => ({ dataType: DataType.Double, value });
  assert.equal((await call("Add", [double(1.5), double(2.25)])).outputArguments[0].value, 3.75);
  assert.equal((await call("Nothing")).statusCode, StatusCodes.Good);
  assert.equal(
    (await call("Fail", [{ dataType: DataType.String, value: "x" }])).statusCode,
    StatusCodes.BadInvalidState,
  );
  assert.equal((await call("NotExecutable")).statusCode, StatusCodes.BadNotExecutable);
  assert.equal((await call("Add", [double(1)])).statusCode, StatusCodes.BadArgumentsMissing);
  const points = (await read(session, structured("PointArray"))).value;
  assert.equal((await call("EchoStructures", [points])).outputArguments[0].value[2].x, 5);
  const mixed = [
    (await read(session, structured("Point"))).value,
    { dataType: DataType.Int32, value: 2 },
    { dataType: DataType.UInt32, value: 5 },
    { dataType: DataType.Double, arrayType: ua.VariantArrayType.Array, value: new Float64Array([1, 2]) },
  ];
  assert.equal((await call("Mixed", mixed)).outputArguments.length, 4);
  assert.equal(
    (await call("SlowFor", [{ dataType: DataType.UInt32, value: 1 }])).outputArguments[0].value,
    1,
  );
  const described = (name) => session.getArgumentDefinition(demo(`Methods.${name}`));
  assert.equal((await described("TooFew")).inputArguments.length, 1);
  assert.equal((await call("TooFew", [double(1)])).statusCode, StatusCodes.BadArgumentsMissing);
  assert.equal((await call("TooFew", [double(1), double(2)])).outputArguments[0].value, 3);
  const many = [double(1), double(2), double(3)];
  assert.equal((await call("TooMany", many)).statusCode, StatusCodes.BadTooManyArguments);
  assert.equal((await described("UnknownType")).inputArguments[1].dataType.value, 9999);
  const primed = await session.call({ objectId: demo("Icon.PlainPump"), methodId: demo("PumpType.Prime") });
  assert.equal(primed.outputArguments?.[0]?.value, "PlainPump", `${primed.statusCode}`);
  const started = Date.now();
  assert.equal((await call("Slow")).statusCode, StatusCodes.Good);
  assert.ok(Date.now() - started > 2900);
}

async function valuesChange({ session }) {
  for (const id of ["Dynamic.Sine", "Dynamic.Toggle", "Dynamic.Array", "Fast.000", "Fast.099"]) {
    const seen = await collect(
      session,
      { nodeId: demo(id), attributeId: AttributeIds.Value },
      (all) => all.length >= 3,
    );
    assert.notEqual(seen[1].value.toString(), seen[2].value.toString(), id);
  }
  const range = (await children(session, demo("DataAccess.Temperature"))).references.map(
    (r) => r.browseName.name,
  );
  for (const name of ["EURange", "EngineeringUnits", "InstrumentRange"])
    assert.ok(range.includes(name), name);
}

async function historyReachesBack({ session }) {
  const end = new Date();
  for (const id of ["History.Sine", "History.Steps", "History.Switch", "History.Gaps"]) {
    const result = await session.readHistoryValue(demo(id), new Date(end.getTime() - 3_500_000), end, {
      numValuesPerNode: 5000,
    });
    assert.equal(result.statusCode, StatusCodes.Good, id);
    assert.ok(result.historyData.dataValues.length > 3400, `${id}: ${result.historyData.dataValues.length}`);
  }
}

/** What was before somebody changed it, with who and when; and values of times that lie between two. */
async function historyKnowsChangesAndTimes({ session }) {
  const nodesToRead = [new ua.HistoryReadValueId({ nodeId: demo("History.Sine") })];
  const ask = async (historyReadDetails) => {
    const request = new ua.HistoryReadRequest({
      historyReadDetails,
      nodesToRead,
      timestampsToReturn: ua.TimestampsToReturn.Both,
    });
    return (await session.historyRead(request)).results[0];
  };
  const end = new Date();
  const range = { isReadModified: true, startTime: new Date(end.getTime() - 3_500_000), endTime: end };
  const modified = await ask(new ua.ReadRawModifiedDetails({ ...range, numValuesPerNode: 100 }));
  assert.ok(modified.historyData.dataValues.length >= 5);
  assert.equal(modified.historyData.modificationInfos[0].userName, "operator");
  const refused = await ask(new ua.ReadRawModifiedDetails({ ...range, returnBounds: true }));
  assert.equal(refused.statusCode, StatusCodes.BadInvalidArgument);
  const reqTimes = [new Date(end.getTime() - 60_500), new Date(0)];
  const atTimes = await ask(new ua.ReadAtTimeDetails({ reqTimes }));
  assert.deepEqual(
    atTimes.historyData.dataValues.map((one) => one.statusCode),
    [StatusCodes.Good, StatusCodes.BadNoData],
  );
}

async function eventsFire({ session }) {
  const filter = ua.constructEventFilter(["Message", "Severity", "SourceName"]);
  const seen = await collect(session, serverEvents(filter), (all) => all.length >= 2);
  assert.ok(seen[0][0].value.text.length > 0);
}

/** Drives the level over its limit and acknowledges and confirms what comes. */
async function alarmsAcknowledge({ session }) {
  const put = (id, dataType, value) => write(session, demo(id), scalar(dataType, value));
  assert.equal(await put("Plant.Automatic", DataType.Boolean, false), StatusCodes.Good);
  await put("Plant.Level", DataType.Double, 50);
  await put("Plant.Level", DataType.Double, 95);
  const find = async (path) =>
    (await session.translateBrowsePath(ua.makeBrowsePath(demo("Plant.LevelAlarm"), path))).targets[0]
      .targetId;
  const active = await read(session, await find("/ActiveState/Id"));
  assert.equal(active.value.value, true);
  const eventId = (await read(session, await find("/EventId"))).value.value;
  const alarm = demo("Plant.LevelAlarm");
  assert.equal(await session.acknowledgeCondition(alarm, eventId, "seen"), StatusCodes.Good);
  const second = (await read(session, await find("/EventId"))).value.value;
  assert.equal(await session.confirmCondition(alarm, second, "done"), StatusCodes.Good);
  assert.equal((await read(session, await find("/AckedState/Id"))).value.value, true);
  await put("Plant.DoorOpen", DataType.Boolean, true);
  const door = (
    await session.translateBrowsePath(ua.makeBrowsePath(demo("Plant.DoorAlarm"), "/ActiveState/Id"))
  ).targets[0].targetId;
  assert.equal((await read(session, door)).value.value, true);
}

/** The condition asks when it is told to, and takes one of its answers once. */
async function dialogAsksAndTakesAnAnswer({ session }) {
  const call = async (objectId, methodId, ...values) => {
    const inputArguments = values.map((value) => scalar(DataType.Int32, value));
    return (await session.call({ objectId, methodId, inputArguments })).statusCode;
  };
  const respond = (value) => call(demo("Plant.Dialog"), "i=9069", value);
  const filter = ua.constructEventFilter(
    ["DialogState.Id", "LastResponse"],
    [ua.ofType("DialogConditionType")],
  );
  const seen = await collect(
    session,
    serverEvents(filter),
    (all) => all.length >= 2,
    async () => {
      assert.equal(await call(demo("Plant"), demo("Plant.Ask")), StatusCodes.Good);
      assert.equal(await respond(3), StatusCodes.BadDialogResponseInvalid);
      assert.equal(await respond(1), StatusCodes.Good);
      assert.equal(await respond(1), StatusCodes.BadDialogNotActive);
    },
  );
  assert.deepEqual(
    seen.slice(0, 2).map((fields) => fields.map(({ value }) => value)),
    [
      [true, -1],
      [false, 1],
    ],
  );
}

/** An hour of events before the start, page by page. */
async function eventsAreKept({ session }) {
  const read = (continuationPoint) =>
    session.historyRead(
      new ua.HistoryReadRequest({
        historyReadDetails: new ua.ReadEventDetails({
          numValuesPerNode: 200,
          startTime: new Date(Date.now() - 2 * 3600_000),
          endTime: new Date(),
          filter: ua.constructEventFilter(["Time", "2:BatchNumber"]),
        }),
        nodesToRead: [{ nodeId: demo("Plant"), continuationPoint }],
        timestampsToReturn: ua.TimestampsToReturn.Both,
      }),
    );
  const first = (await read()).results[0];
  assert.equal(first.statusCode, StatusCodes.Good);
  assert.equal(first.historyData.events.length, 200);
  const second = (await read(first.continuationPoint)).results[0];
  assert.ok(second.historyData.events.length > 100);
}

/** A client that comes late asks for the conditions that still matter. */
async function conditionsRefresh({ session }) {
  for (const heat of [50, 95]) await write(session, demo("Plant.Heat"), scalar(DataType.Double, heat));
  const filter = ua.constructEventFilter(["ConditionName", "Retain"], [ua.ofType("ConditionType")]);
  const retained = (seen) => new Set(seen.filter(([, retain]) => retain.value).map(([name]) => name.value));
  const bothTold = (seen) => ["HeatAlarm", "DoorAlarm"].every((name) => retained(seen).has(name));
  await collect(session, serverEvents(filter), bothTold, async ({ subscriptionId }) => {
    const inputArguments = [{ dataType: DataType.UInt32, value: subscriptionId }];
    const result = await session.call({ objectId: "i=2782", methodId: "i=3875", inputArguments });
    assert.equal(result.statusCode, StatusCodes.Good);
  });
}

async function shapesAreThere({ session }) {
  const many = await children(session, "ns=4;s=Many", 1000);
  assert.equal(many.references.length, manyCount);
  assert.ok(many.pages >= 10);
  assert.equal((await read(session, "ns=4;i=109999")).value.value, 9999);

  let node = demo("Deep");
  for (let level = 1; level <= depth; ++level)
    [node] = (await children(session, node)).references.map((r) => r.nodeId);
  assert.equal((await children(session, node)).references[0].browseName.name, "Bottom");
  const targets = async (id) =>
    (await children(session, demo(id))).references.map((r) => r.nodeId.toString());
  assert.ok((await targets("Loop.Inner")).includes(ua.coerceNodeId(demo("Loop")).toString()));
  assert.equal((await targets("Shape.Twice")).length, 2);
  assert.equal((await targets("Shape.ManyProperties")).length, 20);
  assert.equal((await targets("View.Operator")).length, 3);
}

/** Nodes come and go, and the server says so in events. */
async function modelChangesAreTold({ session }) {
  const filter = ua.constructEventFilter(["Changes"], [ua.ofType("GeneralModelChangeEventType")]);
  const change = async (name) => {
    const result = await session.call({
      objectId: demo("Methods"),
      methodId: demo(`Methods.${name}`),
      inputArguments: [],
    });
    return result.statusCode;
  };
  const isChild = ({ browseName }) => browseName.name.startsWith("Child");
  const count = async () => (await children(session, demo("Growing"))).references.filter(isChild).length;
  const events = await collect(
    session,
    serverEvents(filter),
    (seen) => seen.length >= 2,
    async () => {
      assert.equal(await change("Grow"), StatusCodes.Good);
      assert.equal(await count(), 1);
      assert.equal(await change("Shrink"), StatusCodes.Good);
      assert.equal(await count(), 0);
      assert.equal(await change("Shrink"), StatusCodes.BadInvalidState);
    },
  );
  assert.ok(events[0][0].value.length > 0);
}

async function iconsArePictures({ session }) {
  for (const id of ["PumpType.Icon", "Icon.MarkedPump.Icon", "Icon.Big.Icon", "Icon.Picture"]) {
    const { value } = await read(session, demo(id));
    assert.equal(value.value.subarray(1, 4).toString(), "PNG", id);
  }
}

async function imagesAreWhatTheySay({ session }) {
  const begins = {
    BMP: "BM",
    GIF: "GIF89a",
    JPG: "\xff\xd8\xff",
    PNG: "\x89PNG",
    Any: "BM",
    ByteString: "\x89PNG",
  };
  for (const [name, begin] of Object.entries(begins)) {
    const { value } = await read(session, demo(`Image.${name}`));
    assert.equal(value.value.subarray(0, begin.length).toString("latin1"), begin, name);
  }
  assert.equal((await read(session, demo("Image.Array"))).value.value.length, 4);
  const camera = { nodeId: demo("Image.Camera"), attributeId: AttributeIds.Value };
  const frames = await collect(session, camera, (seen) => seen.length > 2);
  assert.notDeepEqual(frames[1].value.value, frames[2].value.value);
}

async function serverTellsOfItself({ session }) {
  const number = async (id) => (await read(session, `i=${id}`)).value.value;
  assert.equal(await number(11705), 1000); // MaxNodesPerRead
  assert.equal(await number(11710), 1000); // MaxNodesPerBrowse
  assert.equal(await number(24095), 100); // MaxSessions
  assert.equal((await read(session, "i=2294")).value.value, true); // diagnostics enabled
  const summary = (await read(session, "i=2275")).value.value;
  assert.ok(summary.currentSessionCount >= 1);
  const tooMany = Array.from({ length: 1001 }, () => ({ nodeId: "i=2258", attributeId: AttributeIds.Value }));
  await assert.rejects(session.read(tooMany), /BadTooManyOperations/);
}

async function everyDoorOpens(_, endpointUrl) {
  const { MessageSecurityMode, SecurityPolicy, UserTokenType } = ua;
  const user = { type: UserTokenType.UserName, userName: "demo", password: "demo" };
  for (const policy of ["Basic256Sha256", "Aes128_Sha256_RsaOaep", "Aes256_Sha256_RsaPss"]) {
    for (const mode of ["Sign", "SignAndEncrypt"]) {
      const security = { securityMode: MessageSecurityMode[mode], securityPolicy: SecurityPolicy[policy] };
      const { client, session } = await connect(endpointUrl, security, user);
      assert.equal((await read(session, demo("Scalar.Int32"))).statusCode, StatusCodes.Good);
      await session.close();
      await client.disconnect();
    }
  }
  const client = makeClient();
  await client.connect(endpointUrl);
  await assert.rejects(
    client.createSession({ ...user, password: "wrong" }),
    /BadIdentityTokenRejected|BadUserAccessDenied/,
  );
  const own = {
    certificateData: client.getCertificate(),
    privateKey: readFileSync(client.privateKeyFile, "utf8"),
  };
  const session = await client.createSession({ type: UserTokenType.Certificate, ...own });
  assert.equal((await read(session, demo("Scalar.Int32"))).statusCode, StatusCodes.Good);
  await session.close();
  const tokens = new Set(
    (await client.getEndpoints()).flatMap((e) => e.userIdentityTokens.map((t) => UserTokenType[t.tokenType])),
  );
  assert.deepEqual([...tokens].sort(), ["Anonymous", "Certificate", "UserName"]);
  await client.disconnect();
}

/** With --accept-all no, a client that nobody trusts stays outside. */
async function strangersStayOutside() {
  const strict = await startServer({
    host: "127.0.0.1",
    port: 0,
    pki: join(folder, "strict"),
    acceptAll: false,
  });
  const { MessageSecurityMode, SecurityPolicy } = ua;
  const client = makeClient({
    securityMode: MessageSecurityMode.Sign,
    securityPolicy: SecurityPolicy.Basic256Sha256,
  });
  await assert.rejects(client.connect(strict.endpointUrl));
  await client.disconnect();
  assert.equal(readdirSync(join(folder, "strict", "server", "rejected")).length, 1);
  await strict.stop();
}

/** A trust list is changed and the server's certificate replaced by one with a key of ours. */
async function configurationIsPushed() {
  const own = await startServer({ host: "127.0.0.1", port: 0, pki: join(folder, "pushed"), acceptAll: true });
  const encrypted = {
    securityMode: ua.MessageSecurityMode.SignAndEncrypt,
    securityPolicy: ua.SecurityPolicy.Basic256Sha256,
  };
  const login = (userName) => ({ type: ua.UserTokenType.UserName, userName, password: userName });
  const configuration = "i=12637";
  const list = "i=12642";
  const called = async (session, objectId, methodId, ...inputArguments) =>
    session.call({ objectId, methodId, inputArguments });
  const expect = async (status, ...call) => assert.equal((await called(...call)).statusCode, status);

  const demo = await connect(own.endpointUrl, encrypted, login("demo"));
  await expect(StatusCodes.BadUserAccessDenied, demo.session, configuration, "i=12777");
  await demo.client.disconnect();
  const { client, session } = await connect(own.endpointUrl, encrypted, login("admin"));
  const certificate = client.getCertificate();
  const bytes = (value) => ({ dataType: DataType.ByteString, value });
  const bool = (value) => ({ dataType: DataType.Boolean, value });
  const text = (value) => ({ dataType: DataType.String, value });
  await expect(StatusCodes.Good, session, list, "i=12668", bytes(certificate), bool(true));
  const opened = await called(session, list, "i=12663", { dataType: DataType.UInt32, value: 15 });
  const [handle] = opened.outputArguments;
  const read = await called(session, list, "i=12652", handle, { dataType: DataType.Int32, value: 8192 });
  const lists = decode(read.outputArguments[0].value);
  assert.ok(lists[0].some((der) => der.equals(certificate)));
  await expect(StatusCodes.Good, session, list, "i=12650", handle);
  await expect(StatusCodes.BadInvalidArgument, session, list, "i=12650", handle);
  await expect(StatusCodes.Good, session, list, "i=12670", text(thumbprint(certificate)), bool(true));

  const id = (value) => ({ dataType: DataType.NodeId, value: ua.coerceNodeId(value) });
  const which = [id("i=14156"), id("i=12560")];
  const asked = [...which, text("CN=New"), bool(true), bytes(Buffer.alloc(31))];
  await expect(StatusCodes.BadInvalidArgument, session, configuration, "i=12737", ...asked); // a short nonce
  asked[4] = bytes(Buffer.alloc(32));
  const made = await called(session, configuration, "i=12737", ...asked);
  assert.equal(made.statusCode, StatusCodes.Good);
  assert.equal(made.outputArguments[0].value[0], 0x30);
  const issuers = { dataType: DataType.ByteString, arrayType: ua.VariantArrayType.Array, value: [] };
  const foreign = [...which, bytes(certificate), issuers, text(""), bytes(Buffer.alloc(0))];
  assert.ok((await called(session, configuration, "i=13737", ...foreign)).statusCode.isBad());
  await expect(StatusCodes.BadNothingToDo, session, configuration, "i=12740");
  await client.disconnect();
  await own.stop();
}

const checks = [
  configurationIsPushed,
  namespacesAreStable,
  everyTypeReadsAndWrites,
  accessAndStatusAreTold,
  attributesCanBeWritten,
  dictionaryDescribes,
  structuresDecode,
  methodsAnswer,
  valuesChange,
  historyReachesBack,
  historyKnowsChangesAndTimes,
  eventsFire,
  alarmsAcknowledge,
  dialogAsksAndTakesAnAnswer,
  eventsAreKept,
  conditionsRefresh,
  shapesAreThere,
  modelChangesAreTold,
  iconsArePictures,
  imagesAreWhatTheySay,
  serverTellsOfItself,
  devicesAnswer,
  everyDoorOpens,
  strangersStayOutside,
];

const server = await startServer({ host: "127.0.0.1", port: 0, pki: join(folder, "pki"), acceptAll: true });
const connection = await connect(server.endpointUrl);
let failed = 0;
for (const check of checks) {
  try {
    await check(connection, server.endpointUrl);
    console.log(`ok   ${check.name}`);
  } catch (error) {
    failed += 1;
    console.log(`FAIL ${check.name}: ${error.stack}`);
  }
}
await connection.session.close();
await connection.client.disconnect();
await server.stop();
rmSync(folder, { recursive: true, force: true });
console.log(`${checks.length - failed} passed, ${failed} failed`);
process.exit(failed === 0 ? 0 : 1);
