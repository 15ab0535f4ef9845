// Push management on the ServerConfiguration object of the standard's node set, which the library leaves
// without a function: trust list, rejected list, and the server's own certificate.

import { spawnSync } from "node:child_process";
import { X509Certificate, createPrivateKey, createPublicKey, generateKeyPairSync } from "node:crypto";
import { readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";

import * as trustlist from "./trustlist.mjs";
import { DataType, StatusCodes, Variant, VariantArrayType, applicationUri, pki, ua } from "./ua.mjs";

const administrators = new Set(["admin"]);
const rsaSha256 = "i=12560"; // the type of the one certificate
const group = "i=14156"; // DefaultApplicationGroup
const largestList = 1_000_000;
const largestPiece = 8192;
const closingPause = 100; // ms, in which the answer to ApplyChanges leaves

const forReading = 1;
const forWriting = 6; // and what was there is erased

const good = (...outputArguments) => ({ statusCode: StatusCodes.Good, outputArguments });
const refused = (statusCode) => ({ statusCode, outputArguments: [] });
const byteStrings = (value) => ({ dataType: DataType.ByteString, arrayType: VariantArrayType.Array, value });

/** What is not there in an array of bytes counts as empty. */
const bytesOf = (variant) => variant.value ?? Buffer.alloc(0);

function certificateOf(der) {
  try {
    return new X509Certificate(der);
  } catch {
    return null;
  }
}

function keyOfPem(text) {
  try {
    createPrivateKey(text);
    return text;
  } catch {
    return null;
  }
}

/** The runtime opens such a file only for itself, and does not give the key. */
function keyOfPfx(input) {
  const { status, stdout } = spawnSync("openssl", ["pkcs12", "-nocerts", "-nodes", "-passin", "pass:"], {
    input,
  });
  return status === 0 ? keyOfPem(stdout.toString("latin1")) : null;
}

/** How a private key is read that comes in one of the formats; null when it is none. */
const keyReaders = {
  PEM: (bytes) => keyOfPem(bytes.toString("latin1")),
  PFX: keyOfPfx,
};

/** The server's own certificate and key: those in use, and those that wait for ApplyChanges. */
class OwnCertificate {
  constructor(root) {
    this.certificateFile = join(root, "own", "certs", "certificate.pem");
    this.keyFile = join(root, "own", "private", "private_key.pem");
    this.first = [readFileSync(this.certificateFile), readFileSync(this.keyFile)];
    this.newKey = null; // made for a request, not used yet
    this.pending = null;
  }

  get key() {
    return readFileSync(this.keyFile, "utf8");
  }

  makeKey() {
    const { privateKey } = generateKeyPairSync("rsa", { modulusLength: 2048 });
    this.newKey = privateKey.export({ type: "pkcs8", format: "pem" });
  }

  /** The one of the keys that the certificate belongs to; null for none. */
  keyOf(certificate, sent) {
    const keys = sent ? [sent] : [this.newKey, this.key].filter(Boolean);
    return keys.find((key) => certificate.checkPrivateKey(createPrivateKey(key))) ?? null;
  }

  use([certificate, key]) {
    writeFileSync(this.certificateFile, certificate);
    writeFileSync(this.keyFile, key, { mode: 0o600 });
    this.newKey = null;
    this.pending = null;
  }
}

/** A request for a certificate that is signed with the key, in DER form. */
async function requestOf(name, key) {
  const { Pkcs10CertificateRequestGenerator, SubjectAlternativeNameExtension } = pki.x509;
  const signingAlgorithm = { name: "RSASSA-PKCS1-v1_5", hash: "SHA-256" };
  const read = (form, object, use) =>
    crypto.subtle.importKey(form, object.export({ type: form, format: "der" }), signingAlgorithm, true, use);
  const privateKey = createPrivateKey(key);
  const names = [
    { type: "url", value: applicationUri },
    { type: "dns", value: "localhost" },
    { type: "ip", value: "127.0.0.1" },
  ];
  const request = await Pkcs10CertificateRequestGenerator.create(
    {
      name,
      signingAlgorithm,
      keys: {
        privateKey: await read("pkcs8", privateKey, ["sign"]),
        publicKey: await read("spki", createPublicKey(privateKey), ["verify"]),
      },
      extensions: [new SubjectAlternativeNameExtension(names)],
    },
    crypto,
  );
  return Buffer.from(request.rawData);
}

class Push {
  #files = new Map();
  #lastHandle = 0;
  #pendingLists = null;
  #owner = null; // session whose changes wait

  constructor(server, root) {
    this.server = server;
    this.root = root;
    this.own = new OwnCertificate(root);
    this.lastUpdate = new Date();
    this.size = () => trustlist.encode(trustlist.readLists(root)).length;
  }

  get openCount() {
    return this.#files.size;
  }

  // ---- the trust list as a file

  #open(mode, mask, session) {
    this.#dropOfClosedSessions();
    const others = [...this.#files.values()];
    if (others.some((file) => file.isWriting)) return refused(StatusCodes.BadInvalidState);
    if (mode === forWriting && others.length) return refused(StatusCodes.BadNotWritable);
    if (mode !== forReading && mode !== forWriting) return refused(StatusCodes.BadInvalidArgument);
    const isWriting = mode === forWriting;
    if (isWriting && this.#isOfAnother(session)) return refused(StatusCodes.BadTransactionPending);
    const content = isWriting ? Buffer.alloc(0) : trustlist.encode(trustlist.readLists(this.root, mask));
    const handle = ++this.#lastHandle;
    this.#files.set(handle, { session, isWriting, content, position: 0 });
    return good({ dataType: DataType.UInt32, value: handle });
  }

  #file(handle, session, isWriting) {
    const file = this.#files.get(handle);
    return file && file.session === session && file.isWriting === isWriting ? file : null;
  }

  #dropOfClosedSessions() {
    for (const [handle, { session }] of this.#files)
      if (session.status === "closed" || session.channelId === undefined) this.#files.delete(handle);
    if (this.#owner?.status === "closed") this.#forget();
  }

  #isOfAnother(session) {
    return this.#owner !== null && this.#owner !== session;
  }

  #forget() {
    this.#owner = null;
    this.#pendingLists = null;
    this.own.pending = null;
  }

  open([mode], session) {
    return this.#open(mode.value, trustlist.all, session);
  }

  openWithMasks([mask], session) {
    return this.#open(forReading, mask.value, session);
  }

  read([handle, length], session) {
    const file = this.#file(handle.value, session, false);
    if (!file || length.value < 0) return refused(StatusCodes.BadInvalidArgument);
    const end = file.position + Math.min(length.value, largestPiece);
    const piece = file.content.subarray(file.position, end);
    file.position += piece.length;
    return good({ dataType: DataType.ByteString, value: piece });
  }

  write([handle, data], session) {
    const file = this.#file(handle.value, session, true);
    if (!file) return refused(StatusCodes.BadInvalidArgument);
    file.content = Buffer.concat([file.content, bytesOf(data)]);
    return file.content.length > largestList ? refused(StatusCodes.BadEncodingLimitsExceeded) : good();
  }

  close([handle], session) {
    const isThere = this.#files.get(handle.value)?.session === session;
    if (isThere) this.#files.delete(handle.value);
    return isThere ? good() : refused(StatusCodes.BadInvalidArgument);
  }

  closeAndUpdate([handle], session) {
    const file = this.#file(handle.value, session, true);
    if (!file) return refused(StatusCodes.BadInvalidArgument);
    this.#files.delete(handle.value);
    try {
      const lists = trustlist.decode(file.content);
      if ([...(lists[0] ?? []), ...(lists[2] ?? [])].some((der) => !certificateOf(der)))
        return refused(StatusCodes.BadCertificateInvalid);
      this.#pendingLists = lists;
    } catch {
      return refused(StatusCodes.BadDecodingError);
    }
    this.#owner = session;
    return good({ dataType: DataType.Boolean, value: true });
  }

  // ---- single certificates

  #change(session, bit, change) {
    if ([...this.#files.values()].some((file) => file.isWriting)) return StatusCodes.BadInvalidState;
    if (this.#isOfAnother(session)) return StatusCodes.BadTransactionPending;
    const lists = trustlist.readLists(this.root);
    lists[bit] = change(lists[bit]);
    if (!lists[bit]) return StatusCodes.BadInvalidArgument;
    this.#write(lists);
    return StatusCodes.Good;
  }

  #write(lists) {
    trustlist.writeLists(this.root, lists);
    this.lastUpdate = new Date();
  }

  addCertificate([certificate, isTrusted], session) {
    const der = bytesOf(certificate);
    if (!certificateOf(der)) return refused(StatusCodes.BadCertificateInvalid);
    const isOther = (other) => !other.equals(der);
    return refused(this.#change(session, isTrusted.value ? 0 : 2, (list) => [...list.filter(isOther), der]));
  }

  removeCertificate([digest, isTrusted], session) {
    const wanted = (digest.value ?? "").toLowerCase();
    return refused(
      this.#change(session, isTrusted.value ? 0 : 2, (list) => {
        const rest = list.filter((der) => trustlist.thumbprint(der) !== wanted);
        return rest.length < list.length ? rest : null;
      }),
    );
  }

  getRejectedList() {
    return good(byteStrings(trustlist.certificatesIn(join(this.root, "rejected"))));
  }

  // ---- the server's own certificate

  #isOwnGroup(groupId, typeId) {
    const isNull = (id) => !id.value || id.value.isEmpty();
    return (
      (isNull(groupId) || groupId.value.toString() === ua.coerceNodeId(group).toString()) &&
      (isNull(typeId) || typeId.value.toString() === ua.coerceNodeId(rsaSha256).toString())
    );
  }

  async createSigningRequest([groupId, typeId, subject, isNewKey, nonce]) {
    if (!this.#isOwnGroup(groupId, typeId)) return refused(StatusCodes.BadInvalidArgument);
    if (isNewKey.value && bytesOf(nonce).length < 32) return refused(StatusCodes.BadInvalidArgument);
    if (isNewKey.value) this.own.makeKey();
    const key = isNewKey.value ? this.own.newKey : this.own.key;
    const old = certificateOf(this.server.getCertificate());
    const name = subject.value || old.subject.split("\n").reverse().join(",");
    return good({ dataType: DataType.ByteString, value: await requestOf(name, key) });
  }

  updateCertificate([groupId, typeId, certificate, issuers, format, key], session) {
    if (this.#isOfAnother(session)) return refused(StatusCodes.BadTransactionPending);
    if (!this.#isOwnGroup(groupId, typeId)) return refused(StatusCodes.BadInvalidArgument);
    const x509 = certificateOf(bytesOf(certificate));
    if (!x509) return refused(StatusCodes.BadCertificateInvalid);
    if (format.value && !keyReaders[format.value]) return refused(StatusCodes.BadNotSupported);
    if (!x509.subjectAltName?.includes(`URI:${applicationUri}`))
      return refused(StatusCodes.BadCertificateUriInvalid);
    const chain = (issuers.value ?? []).map((der) => certificateOf(der));
    if (chain.includes(null)) return refused(StatusCodes.BadCertificateInvalid);
    const isLinked = [x509, ...chain].every((one, at) => !chain[at] || one.verify(chain[at].publicKey));
    const sent = format.value ? keyReaders[format.value](bytesOf(key)) : null;
    if (format.value && !sent) return refused(StatusCodes.BadSecurityChecksFailed);
    const ownKey = this.own.keyOf(x509, sent);
    if (!isLinked || !ownKey) return refused(StatusCodes.BadSecurityChecksFailed);
    this.own.pending = [[x509, ...chain].map((one) => one.toString()).join(""), ownKey];
    this.#owner = session;
    return good({ dataType: DataType.Boolean, value: true });
  }

  applyChanges(_inputs, session) {
    if (this.#isOfAnother(session)) return refused(StatusCodes.BadTransactionPending);
    if (!this.#owner) return refused(StatusCodes.BadNothingToDo);
    if (this.#pendingLists) this.#write(this.#pendingLists);
    const own = this.own.pending;
    this.#forget();
    if (own) setTimeout(() => this.#reopen(own), closingPause);
    return good();
  }

  cancelChanges(_inputs, session) {
    if (this.#isOfAnother(session)) return refused(StatusCodes.BadTransactionPending);
    if (!this.#owner) return refused(StatusCodes.BadNothingToDo);
    this.#forget();
    return good();
  }

  resetToServerDefaults() {
    this.#forget();
    this.#write([[], [], [], []]);
    setTimeout(() => this.#reopen(this.own.first), closingPause);
    return good();
  }

  /** Nobody keeps a channel that was opened with the certificate of before. */
  async #reopen(own) {
    this.own.use(own);
    await this.server.suspendEndPoints();
    for (const endpoint of this.server.endpoints) endpoint.abruptlyInterruptChannels();
    ua.invalidateServerCertificateCache(this.server);
    await this.server.resumeEndPoints();
  }
}

/** Administrators on encrypted channels only. */
function guarded(run) {
  return (inputs, context, callback) => {
    const session = context.session;
    const isEncrypted = session?.channel?.securityMode === ua.MessageSecurityMode.SignAndEncrypt;
    const mayDo = administrators.has(session?.userIdentityToken?.userName);
    const answer = async () => {
      if (!isEncrypted) return refused(StatusCodes.BadSecurityModeInsufficient);
      return mayDo ? run(inputs, session) : refused(StatusCodes.BadUserAccessDenied);
    };
    answer().then(
      (result) => callback(null, result),
      () => callback(null, refused(StatusCodes.BadInternalError)),
    );
  };
}

function bindAll(object, push) {
  for (const method of object.getMethods()) {
    const name = method.browseName.name;
    const own = name[0].toLowerCase() + name.slice(1);
    if (typeof push[own] === "function") method.bindMethod(guarded((...args) => push[own](...args)));
  }
}

const value = (parent, name, dataType, get) => {
  const read = () => new Variant({ dataType, arrayType: VariantArrayType.Scalar, value: get() });
  parent.getChildByName(name)?.bindVariable({ get: read }, true);
};

/** @param root folder of the server's certificates */
export function addPush(b, root) {
  const push = new Push(b.server, root);
  const configuration = b.space.findNode("i=12637");
  const groupNode = b.space.findNode(group);
  const list = groupNode.getChildByName("TrustList");
  bindAll(configuration, push);
  bindAll(list, push);
  configuration.getChildByName("SupportedPrivateKeyFormats").bindVariable(
    {
      get: () =>
        new Variant({
          dataType: DataType.String,
          arrayType: VariantArrayType.Array,
          value: Object.keys(keyReaders),
        }),
    },
    true,
  );
  value(configuration, "MaxTrustListSize", DataType.UInt32, () => largestList);
  value(list, "Size", DataType.UInt64, () => [0, push.size()]);
  value(list, "OpenCount", DataType.UInt16, () => push.openCount);
  value(list, "Writable", DataType.Boolean, () => true);
  value(list, "UserWritable", DataType.Boolean, () => true);
  value(list, "LastUpdateTime", DataType.DateTime, () => push.lastUpdate);
  groupNode.getChildByName("CertificateTypes").bindVariable(
    {
      get: () =>
        new Variant({
          dataType: DataType.NodeId,
          arrayType: VariantArrayType.Array,
          value: [ua.coerceNodeId(rsaSha256)],
        }),
    },
    true,
  );
}
