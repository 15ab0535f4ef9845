// A document of a device that is a file, to be opened, read in pieces and closed.

import { scalar } from "./builder.mjs";
import { bind, good } from "./methods.mjs";
import { DataType, StatusCodes } from "./ua.mjs";

const forReading = 1;
const largestPiece = 1024; // small, so that whoever reads has to come back
const refused = (statusCode) => ({ statusCode, outputArguments: [] });

/** A file that nobody can write. */
export class DeviceFile {
  #positions = new Map();
  #lastHandle = 0;

  constructor(b, parent, nodeId, browseName, content) {
    this.content = Buffer.from(content);
    this.node = b.space.findObjectType("FileType").instantiate({
      nodeId,
      browseName,
      componentOf: parent,
      namespace: b.devices,
    });
    this.#set("Size", DataType.UInt64, [0, this.content.length]);
    this.#set("Writable", DataType.Boolean, false);
    this.#set("UserWritable", DataType.Boolean, false);
    this.#showCount();
    const methods = {
      Open: ([mode], session) => this.open(mode.value, session),
      Read: ([handle, length], session) => this.read(this.#of(handle, session), length.value),
      Close: ([handle], session) => this.close(handle.value, this.#of(handle, session)),
      GetPosition: ([handle], session) => this.position(this.#of(handle, session)),
      SetPosition: ([handle, to], session) => this.move(this.#of(handle, session), Number(to.value[1])),
      Write: () => refused(StatusCodes.BadNotWritable),
    };
    for (const [name, run] of Object.entries(methods))
      bind(this.node.getMethodByName(name), (inputs, _object, session) => run(inputs, session));
  }

  #set(name, dataType, value) {
    this.node.getPropertyByName(name).setValueFromSource(scalar(dataType, value));
  }

  #showCount() {
    this.#set("OpenCount", DataType.UInt16, this.#positions.size);
  }

  #of(handle, session) {
    const file = this.#positions.get(handle.value);
    return file?.session === session ? file : null;
  }

  #drop(handle) {
    this.#positions.delete(handle);
    this.#showCount();
  }

  open(mode, session) {
    if (mode !== forReading) return refused(StatusCodes.BadNotWritable);
    const handle = ++this.#lastHandle;
    this.#positions.set(handle, { session, at: 0 });
    session.once("session_closed", () => this.#drop(handle));
    this.#showCount();
    return good([{ dataType: DataType.UInt32, value: handle }]);
  }

  read(file, length) {
    if (!file || length < 0) return refused(StatusCodes.BadInvalidArgument);
    const piece = this.content.subarray(file.at, file.at + Math.min(length, largestPiece));
    file.at += piece.length;
    return good([{ dataType: DataType.ByteString, value: piece }]);
  }

  position(file) {
    if (!file) return refused(StatusCodes.BadInvalidArgument);
    return good([{ dataType: DataType.UInt64, value: [0, file.at] }]);
  }

  move(file, to) {
    if (!file) return refused(StatusCodes.BadInvalidArgument);
    file.at = Math.min(to, this.content.length);
    return good();
  }

  close(handle, file) {
    if (!file) return refused(StatusCodes.BadInvalidArgument);
    this.#drop(handle);
    return good();
  }
}
