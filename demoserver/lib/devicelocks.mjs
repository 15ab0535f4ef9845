// Locks of devices: held by one session, gone with it or when nobody renews them in time.

import { scalar } from "./builder.mjs";
import { bind, good } from "./methods.mjs";
import { DataType, StatusCodes, ua } from "./ua.mjs";

/** After so many milliseconds without a renewal or a write of its owner a lock ends. */
export const longestInactivity = 10_000;

const done = 0;
const alreadyLocked = -1;
const notLocked = -1;
const answer = (status) => good([{ dataType: DataType.Int32, value: status }]);

const userOf = (session) => session.userIdentityToken?.userName ?? "anonymous";

/** The lock of one device, and of the modules inside it. */
export class DeviceLock {
  #owner = null;
  #end = 0;
  #timer = null;

  /** @param administrator the user who may break the locks of others */
  constructor(b, device, administrator) {
    const type = b.space.findObjectType("LockingServicesType", b.di.index);
    this.node = type.instantiate({
      nodeId: `s=${device.nodeId.value}.Lock`,
      browseName: { namespaceIndex: b.di.index, name: "Lock" },
      componentOf: device,
      namespace: b.devices,
    });
    this.administrator = administrator;
    this.show();
    for (const name of ["InitLock", "RenewLock", "ExitLock", "BreakLock"]) {
      const run = `${name[0].toLowerCase()}${name.slice(1)}`;
      bind(this.node.getMethodByName(name), (inputs, _object, session) => this[run](inputs, session));
    }
  }

  isHeldBy(session) {
    return this.#owner !== null && this.#owner === session;
  }

  isHeldByAnother(session) {
    return this.#owner !== null && this.#owner !== session;
  }

  /** What the owner does with the device keeps the lock, too. */
  touch(session) {
    if (this.isHeldBy(session)) this.#end = Date.now() + longestInactivity;
  }

  initLock([context], session) {
    if (this.#owner) return answer(alreadyLocked);
    this.#owner = session;
    this.context = context.value;
    session.once("session_closed", () => this.isHeldBy(session) && this.#release());
    this.touch(session);
    this.#timer = setInterval(() => this.#watch(), 250);
    this.show();
    return answer(done);
  }

  renewLock(_inputs, session) {
    if (!this.isHeldBy(session)) return answer(notLocked);
    this.touch(session);
    this.show();
    return answer(done);
  }

  exitLock(_inputs, session) {
    if (!this.isHeldBy(session)) return answer(notLocked);
    this.#release();
    return answer(done);
  }

  breakLock(_inputs, session) {
    if (userOf(session) !== this.administrator)
      return { statusCode: StatusCodes.BadUserAccessDenied, outputArguments: [] };
    if (!this.#owner) return answer(notLocked);
    this.#release();
    return answer(done);
  }

  #watch() {
    if (Date.now() >= this.#end) this.#release();
    else this.show();
  }

  #release() {
    clearInterval(this.#timer);
    this.#owner = null;
    this.show();
  }

  show() {
    const set = (name, dataType, value) =>
      this.node.getPropertyByName(name).setValueFromSource(scalar(dataType, value));
    const owner = this.#owner;
    const client = owner?.clientDescription?.applicationUri ?? "";
    set("Locked", DataType.Boolean, owner !== null);
    set("LockingClient", DataType.String, owner && this.context ? `${client} (${this.context})` : client);
    set("LockingUser", DataType.String, owner ? userOf(owner) : "");
    set("RemainingLockTime", DataType.Double, owner ? Math.max(0, this.#end - Date.now()) : 0);
  }
}

/** What the server says about all locks. */
export function describeLocks(b) {
  const capabilities = b.space.findNode(ua.ObjectIds.Server_ServerCapabilities);
  capabilities
    .getPropertyByName("MaxInactiveLockTime", b.di.index)
    .setValueFromSource(scalar(DataType.Double, longestInactivity));
}
