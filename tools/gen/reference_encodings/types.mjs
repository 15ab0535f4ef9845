// How a neutral value of each built-in type is described in the data file, turned into the library's object
// and encoded.
//
// Neutral values: numbers and BigInts, null or a string, null or a Buffer, a DateTime as BigInt ticks of 100
// ns since 1601, and plain objects for the compound types (see cases.mjs).

import { createRequire } from "node:module";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const demoserver = join(
  dirname(fileURLToPath(import.meta.url)),
  "..",
  "..",
  "..",
  "demoserver",
  "package.json",
);
const require = createRequire(demoserver);
export const ua = require("node-opcua");
export const { EUInformation } = require("node-opcua-types");
const {
  OpaqueStructure,
  encodeExtensionObject,
  decodeExtensionObject,
} = require("node-opcua-extension-object");

const ticksPerMs = 10_000n;
const epochMs = 11_644_473_600_000n; // 1601 to 1970
const lastJsMs = 8_640_000_000_000_000n; // the last moment that a JavaScript Date can hold

function quoted(text) {
  if (text === null) return "null";
  const bytes = Buffer.from(text, "utf8");
  let out = '"';
  for (const byte of bytes) {
    const c = String.fromCharCode(byte);
    out += /[A-Za-z0-9._:/-]/.test(c) ? c : `%${byte.toString(16).padStart(2, "0")}`;
  }
  return `${out}"`;
}

const hexed = (bytes) => (bytes === null ? "null" : `x${bytes.toString("hex")}`);

function real(value) {
  if (Number.isNaN(value)) return "nan";
  if (value === Infinity) return "inf";
  if (value === -Infinity) return "-inf";
  return Object.is(value, -0) ? "-0" : String(value);
}

const words = (v) => {
  const bits = BigInt.asUintN(64, v);
  return [Number(bits >> 32n), Number(bits & 0xffffffffn)];
};

/** Splits ticks into the library's Date of whole milliseconds and the picoseconds beyond. */
function splitTicks(ticks, tenPicoseconds = 0) {
  const ms = ticks / ticksPerMs - epochMs;
  return {
    date: new Date(Number(ms)),
    picoseconds: Number(ticks % ticksPerMs) * 100_000 + tenPicoseconds * 10,
  };
}

function makeDate(ticks) {
  const { date, picoseconds } = splitTicks(ticks);
  if (picoseconds) date.picoseconds = picoseconds;
  return date;
}

const idTypes = { numeric: "NUMERIC", string: "STRING", guid: "GUID", opaque: "BYTESTRING" };
const idArguments = (v) => [ua.NodeIdType[idTypes[v.kind]], v.id, v.ns];

function describeId(v, put) {
  put("ns", v.ns);
  put("kind", v.kind);
  put("id", v.kind === "string" ? quoted(v.id) : v.kind === "opaque" ? hexed(v.id) : v.id);
}

function simple(encodeName, text = String, build = (v) => v) {
  return {
    build,
    describe: (v, put) => put("", text(v)),
    encode: (object, stream) => ua[`encode${encodeName}`](object, stream),
  };
}

/** The types by name; describe calls put(field, text) once for each leaf. */
const types = {
  Boolean: simple("Boolean"),
  SByte: simple("SByte"),
  Byte: simple("Byte"),
  Int16: simple("Int16"),
  UInt16: simple("UInt16"),
  Int32: simple("Int32"),
  UInt32: simple("UInt32"),
  Int64: simple("Int64", String, words),
  UInt64: simple("UInt64", String, words),
  Float: simple("Float", real),
  Double: simple("Double", real),
  String: simple("String", quoted),
  Guid: simple("Guid"),
  ByteString: simple("ByteString", hexed),
  XmlElement: simple("String", quoted),
  StatusCode: simple(
    "StatusCode",
    (v) => `0x${v.toString(16).padStart(8, "0")}`,
    (v) => ua.coerceStatusCode(v),
  ),

  DateTime: {
    describe: (v, put) => put("", v),
    build: (v) => (v / ticksPerMs - epochMs > lastJsMs ? v : makeDate(v)),
    encode: (object, stream) =>
      typeof object === "bigint" ? ua.encodeInt64(words(object), stream) : ua.encodeDateTime(object, stream),
  },

  NodeId: {
    describe: describeId,
    build: (v) => new ua.NodeId(...idArguments(v)),
    encode: (object, stream) => ua.encodeNodeId(object, stream),
  },

  ExpandedNodeId: {
    describe(v, put) {
      describeId(v, put);
      put("uri", quoted(v.uri ?? null));
      put("server", v.server ?? 0);
    },
    build: (v) => new ua.ExpandedNodeId(...idArguments(v), v.uri ?? null, v.server ?? 0),
    encode: (object, stream) => ua.encodeExpandedNodeId(object, stream),
  },

  QualifiedName: {
    describe(v, put) {
      put("ns", v.ns);
      put("name", quoted(v.name));
    },
    build(v) {
      const object = new ua.QualifiedName(null);
      object.namespaceIndex = v.ns;
      object.name = v.name;
      return object;
    },
    encode: (object, stream) => ua.encodeQualifiedName(object, stream),
  },

  LocalizedText: {
    describe(v, put) {
      put("locale", quoted(v.locale));
      put("text", quoted(v.text));
    },
    build: (v) => Object.assign(new ua.LocalizedText(null), v),
    encode(object, stream) {
      // The library leaves empty parts out; on the wire an empty text is not the same as none.
      if (object.locale !== "" && object.text !== "") return ua.encodeLocalizedText(object, stream);
      ua.encodeByte((object.locale === null ? 0 : 1) | (object.text === null ? 0 : 2), stream);
      if (object.locale !== null) ua.encodeString(object.locale, stream);
      if (object.text !== null) ua.encodeString(object.text, stream);
    },
  },

  ExtensionObject: {
    describe(v, put) {
      put("body", v === null ? "none" : "xml" in v ? "xml" : "bytes");
      if (v === null) return;
      describeId(v.typeId, (field, text) => put(`type.${field}`, text));
      put("value", "xml" in v ? quoted(v.xml) : hexed(v.bytes));
    },
    build: (v) => (v === null || "xml" in v ? v : new OpaqueStructure(types.NodeId.build(v.typeId), v.bytes)),
    encode(object, stream) {
      if (object === null || !("xml" in object)) return encodeExtensionObject(object, stream);
      ua.encodeNodeId(types.NodeId.build(object.typeId), stream); // the library writes no XML bodies
      ua.encodeByte(2, stream);
      ua.encodeString(object.xml, stream);
    },
  },

  DataValue: {
    describe(v, put) {
      if (v.value) types.Variant.describe(v.value, (field, text) => put(`value.${field}`, text));
      if (v.status !== undefined) put("status", `0x${v.status.toString(16).padStart(8, "0")}`);
      for (const side of ["source", "server"]) {
        if (v[`${side}Time`] !== undefined) put(`${side}.time`, v[`${side}Time`]);
        if (v[`${side}Pico`] !== undefined) put(`${side}.pico`, v[`${side}Pico`]);
      }
    },
    build(v) {
      const object = new ua.DataValue({ value: null, statusCode: ua.coerceStatusCode(v.status ?? 0) });
      object.value = v.value ? types.Variant.build(v.value) : null;
      for (const side of ["source", "server"]) {
        object[`${side}Timestamp`] = null;
        object[`${side}Picoseconds`] = (v[`${side}Pico`] ?? 0) * 10;
        if (v[`${side}Time`] === undefined) continue;
        const { date, picoseconds } = splitTicks(v[`${side}Time`], v[`${side}Pico`]);
        object[`${side}Timestamp`] = date;
        object[`${side}Picoseconds`] = picoseconds;
      }
      return object;
    },
    encode: (object, stream) => ua.encodeDataValue(object, stream),
  },

  DiagnosticInfo: {
    describe(v, put) {
      for (const field of ["symbolicId", "namespaceUri", "locale", "localizedText"]) {
        if (v[field] !== undefined) put(field, v[field]);
      }
      if (v.additionalInfo !== undefined) put("additionalInfo", quoted(v.additionalInfo));
      if (v.innerStatus !== undefined) put("innerStatus", `0x${v.innerStatus.toString(16).padStart(8, "0")}`);
      if (v.inner) types.DiagnosticInfo.describe(v.inner, (field, text) => put(`inner.${field}`, text));
    },
    build: (v) =>
      new ua.DiagnosticInfo({
        symbolicId: v.symbolicId,
        namespaceURI: v.namespaceUri,
        locale: v.locale,
        localizedText: v.localizedText,
        additionalInfo: v.additionalInfo,
        innerStatusCode: v.innerStatus === undefined ? undefined : ua.coerceStatusCode(v.innerStatus),
        innerDiagnosticInfo: v.inner ? types.DiagnosticInfo.build(v.inner) : undefined,
      }),
    encode: (object, stream) => ua.encodeDiagnosticInfo(object, stream),
  },

  Variant: {
    describe(v, put) {
      put("type", v.type);
      put("rank", v.dims ? "matrix" : v.array !== undefined ? "array" : "scalar");
      if (v.type === "Null") return;
      if (v.dims) put("dims", v.dims.join(","));
      const items = v.array !== undefined ? v.array : [v.value];
      if (v.array !== undefined) put("length", items === null ? "null" : items.length);
      (items ?? []).forEach((item, i) => {
        const path = v.array === undefined ? "value" : String(i);
        types[v.type].describe(item, (field, text) => put(field ? `${path}.${field}` : path, text));
      });
    },
    build(v) {
      const object = new ua.Variant(null);
      object.dataType = ua.DataType[v.type];
      if (v.type === "Null") return object;
      const build = (item) => types[v.type].build(item);
      if (v.array === undefined) {
        object.value = build(v.value);
        return object;
      }
      object.arrayType = v.dims ? ua.VariantArrayType.Matrix : ua.VariantArrayType.Array;
      object.dimensions = v.dims ?? null;
      object.value = v.array === null ? null : v.array.map(build);
      return object;
    },
    encode: (object, stream) => ua.encodeVariant(object, stream),
  },
};

/** Encodes a neutral value of the type called `type`. */
export function encode(type, value) {
  const stream = new ua.BinaryStream(Buffer.alloc(1 << 16));
  types[type].encode(types[type].build(value), stream);
  return Buffer.from(stream.buffer.subarray(0, stream.length));
}

/** The value as `field=text` pairs, divided by single blanks. */
export function describe(type, value) {
  const pairs = [];
  types[type].describe(value, (field, text) => pairs.push(`${field || "value"}=${text}`));
  return pairs.length === 0 ? "-" : pairs.join(" ");
}

const decoders = { XmlElement: "String" };

/** Decodes with the library: a case whose bytes it does not take whole would be a fault of this generator. */
export function verify(type, name, bytes) {
  const stream = new ua.BinaryStream(Buffer.from(bytes));
  if (type === "ExtensionObject") decodeExtensionObject(stream);
  else ua[`decode${decoders[type] ?? type}`](stream);
  if (stream.length !== bytes.length) {
    throw new Error(`${type} ${name}: ${stream.length} of ${bytes.length} bytes were read back`);
  }
}

/** Encodes a service message with its type id in front, the way it stands in a chunk's body. */
export function encodeMessage(message) {
  const id = message.schema.encodingDefaultBinary;
  const stream = new ua.BinaryStream(Buffer.alloc(1 << 16));
  ua.encodeExpandedNodeId(id, stream);
  message.encode(stream);
  return {
    typeName: message.schema.name,
    encodingId: id.value,
    bytes: Buffer.from(stream.buffer.subarray(0, stream.length)),
  };
}
