// What the self test asks of the devices.

import { strict as assert } from "node:assert";

import { scalar } from "./builder.mjs";
import { children, connect, read, write } from "./selftestclient.mjs";
import { namespaces, ua } from "./ua.mjs";

const { DataType, StatusCodes } = ua;

/** Locks, refused writes, health and a transfer that breaks, with two clients. */
export async function devicesAnswer({ session }, endpointUrl) {
  const index = 2 + Object.values(namespaces).indexOf(namespaces.devices);
  const at = (id) => `ns=${index};s=${id}`;
  const int32 = (value) => ({ dataType: DataType.Int32, value });
  const double = (value) => scalar(DataType.Double, value);
  const called = async (who, objectId, name, ...inputArguments) => {
    const { targets } = await who.translateBrowsePath(ua.makeBrowsePath(objectId, `/${index - 1}:${name}`));
    return who.call({ objectId, methodId: targets[0].targetId, inputArguments });
  };
  const status = async (...call) => (await called(...call)).outputArguments.at(-1).value;
  const lock = at("TT-102.Lock");
  const context = { dataType: DataType.String, value: "test" };
  const other = await connect(endpointUrl);

  assert.equal((await children(session, `ns=${index - 1};i=5001`)).references.length, 6);
  assert.equal(await status(session, lock, "InitLock", context), 0);
  assert.equal(await status(other.session, lock, "InitLock", context), -1);
  assert.equal(await status(other.session, lock, "RenewLock"), -1);
  assert.equal((await called(other.session, lock, "BreakLock")).statusCode, StatusCodes.BadUserAccessDenied);
  assert.equal(await write(other.session, at("TT-102.Damping"), double(3)), StatusCodes.BadLocked);
  assert.equal(await write(session, at("TT-102.Damping"), double(61)), StatusCodes.BadOutOfRange);
  assert.equal(await write(session, at("TT-102.Damping"), double(3)), StatusCodes.Good);
  assert.equal((await read(session, at("TT-102.Damping"))).value.value, 3);
  assert.equal(await write(session, at("TT-102.Restarts"), int32(3)), StatusCodes.BadNotWritable);

  const transfer = at("TT-102.Transfer");
  assert.equal(await status(other.session, transfer, "TransferToDevice"), -1);
  const begun = await called(session, transfer, "TransferToDevice");
  let sequence = 0;
  const paths = [];
  for (;;) {
    const bool = { dataType: DataType.Boolean, value: false };
    const fetched = await called(
      session,
      transfer,
      "FetchTransferResultData",
      begun.outputArguments[0],
      int32(sequence),
      int32(2),
      bool,
    );
    const result = fetched.outputArguments[0].value;
    if (result.status !== undefined) {
      assert.equal(result.status, -3);
      break;
    }
    sequence = result.sequenceNumber;
    paths.push(...result.parameterDefs.map(({ nodePath }) => nodePath[1].name));
  }
  assert.deepEqual(paths, ["Tag", "SensorType", "LowerRange", "UpperRange", "Damping"]);

  assert.equal(await status(session, lock, "ExitLock"), 0);
  assert.equal(await status(other.session, lock, "InitLock", context), 0);
  await other.session.close();
  await other.client.disconnect();
  assert.equal(await status(session, lock, "RenewLock"), -1);
  assert.equal(await status(session, lock, "InitLock", context), 0); // it went with its session
  assert.equal(await status(session, lock, "ExitLock"), 0);

  const faulty = { dataType: DataType.UInt32, value: 1 };
  assert.equal(await write(session, at("M-201.SimulatedHealth"), faulty), StatusCodes.Good);
  assert.equal((await read(session, at("M-201.DeviceHealth"))).value.value, 1);
}
