// The transfer of a device's parameters: one parameter after the other, with results to be fetched in portions.

import { bind, good } from "./methods.mjs";
import { DataType, StatusCodes, ua } from "./ua.mjs";

const perParameter = 100; // milliseconds

const done = 0;
const notLocked = -1;
const invalidId = -1;
const deviceError = -3;
const resultError = 15888;
const resultData = 15889;
const parameterResult = 6525;

const int32 = (value) => ({ dataType: DataType.Int32, value });

/** The transfers of one device. */
export class DeviceTransfer {
  #running = new Map();
  #lastId = 0;

  /**
   * @param parameters the nodes whose values travel
   * @param failsAfter so many parameters travel before the line to the device breaks; undefined: it holds
   */
  constructor(b, device, lock, parameters, failsAfter) {
    Object.assign(this, { b, lock, parameters, failsAfter });
    const name = { namespaceIndex: b.di.index, name: "Transfer" };
    const node = b.space.findObjectType("TransferServicesType", b.di.index).instantiate({
      nodeId: `s=${device.nodeId.value}.Transfer`,
      browseName: name,
      componentOf: device,
      namespace: b.devices,
    });
    const begin = (_inputs, _object, session) => this.#begin(session);
    bind(node.getMethodByName("TransferToDevice"), begin);
    bind(node.getMethodByName("TransferFromDevice"), begin);
    bind(node.getMethodByName("FetchTransferResultData"), (inputs) => this.#fetch(inputs));
  }

  #begin(session) {
    if (!this.lock.isHeldBy(session)) return good([int32(0), int32(notLocked)]);
    this.#running.set(++this.#lastId, { start: Date.now(), sent: 0, sequence: 0 });
    return good([int32(this.#lastId), int32(done)]);
  }

  /** How many parameters have travelled by now. */
  #countOf({ start }) {
    const count = Math.floor((Date.now() - start) / perParameter);
    return Math.min(count, this.failsAfter ?? Infinity, this.parameters.length);
  }

  #fetch([id, acknowledged, most, omitGood]) {
    const transfer = this.#running.get(id.value);
    if (!transfer || acknowledged.value > transfer.sequence)
      return this.#answer(resultError, { status: invalidId });
    const end = Math.min(this.#countOf(transfer), transfer.sent + (most.value > 0 ? most.value : Infinity));
    if (end === transfer.sent && end === this.failsAfter) {
      this.#running.delete(id.value);
      const additionalInfo = "the line to the device broke";
      const diagnostics = new ua.DiagnosticInfo({ additionalInfo });
      return this.#answer(resultError, { status: deviceError, diagnostics });
    }
    const results = this.parameters.slice(transfer.sent, end).map((node) => this.#resultOf(node));
    transfer.sent = end;
    transfer.sequence += 1;
    const endOfResults = end === this.parameters.length;
    if (endOfResults) this.#running.delete(id.value);
    return this.#answer(resultData, {
      sequenceNumber: transfer.sequence,
      endOfResults,
      parameterDefs: omitGood.value ? results.filter(({ statusCode }) => statusCode.isNotGood()) : results,
    });
  }

  /** A value that no write can change is not taken by the device either. */
  #resultOf(node) {
    const isWritable = (node.accessLevel & ua.AccessLevelFlag.CurrentWrite) !== 0;
    return this.#structure(parameterResult, {
      nodePath: [
        new ua.QualifiedName({ namespaceIndex: this.b.di.index, name: "ParameterSet" }),
        node.browseName,
      ],
      statusCode: isWritable ? StatusCodes.Good : StatusCodes.BadNotWritable,
      diagnostics: new ua.DiagnosticInfo(),
    });
  }

  #structure(type, fields) {
    return this.b.space.constructExtensionObject(ua.coerceNodeId(type, this.b.di.index), fields);
  }

  #answer(type, fields) {
    return good([{ dataType: DataType.ExtensionObject, value: this.#structure(type, fields) }]);
  }
}
