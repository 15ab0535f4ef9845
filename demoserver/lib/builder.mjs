// Adds nodes under string ids that say where they stand: folder "Scalar", variable "Scalar.Int32".

import { DataType, StatusCodes, ua } from "./ua.mjs";

export class Builder {
  #timers = [];

  /** @param server an initialised OPCUAServer whose address space holds the namespaces of ua.mjs */
  constructor(server, uris) {
    this.server = server;
    this.space = server.engine.addressSpace;
    this.demo = this.#namespace(uris.demo);
    this.structures = this.#namespace(uris.structures);
    this.many = this.#namespace(uris.many);
    this.di = this.#namespace(uris.di);
    this.devices = this.#namespace(uris.devices);
    this.root = this.#folderIn(this.demo, this.space.rootFolder.objects, "Demo", "Demo");
  }

  #namespace(uri) {
    return this.space.registerNamespace(uri);
  }

  #folderIn(namespace, parent, id, name) {
    return namespace.addObject({
      nodeId: `s=${id}`,
      browseName: name,
      organizedBy: parent,
      typeDefinition: "FolderType",
    });
  }

  /** A folder of the demo namespace (or of another one) below `parent`, which is Demo itself unless given. */
  folder(id, { parent = this.root, name = id.split(".").pop(), namespace = this.demo } = {}) {
    return this.#folderIn(namespace, parent, id, name);
  }

  /** A variable with the id `s=ID`, writable unless told otherwise; its browse name is the id's last part. */
  variable(id, parent, dataType, value, more = {}) {
    const { namespace = this.demo, name = id.split(".").pop(), status, ...rest } = more;
    const options = {
      nodeId: `s=${id}`,
      browseName: name,
      dataType,
      accessLevel: "CurrentRead | CurrentWrite",
      userAccessLevel: "CurrentRead | CurrentWrite",
      minimumSamplingInterval: 0,
      ...rest,
    };
    if (!options.propertyOf && !options.organizedBy) options.componentOf = parent;
    const node = namespace.addVariable(options);
    if (value !== undefined) node.setValueFromSource(value, status ?? StatusCodes.Good);
    return node;
  }

  /** A read-only property. */
  property(id, owner, dataType, value, more = {}) {
    const readOnly = { accessLevel: "CurrentRead", userAccessLevel: "CurrentRead", propertyOf: owner };
    return this.variable(id, owner, dataType, value, {
      ...readOnly,
      typeDefinition: "PropertyType",
      ...more,
    });
  }

  /** Calls `tick` at each interval until the server stops. */
  every(milliseconds, tick) {
    this.#timers.push(setInterval(tick, milliseconds));
  }

  stop() {
    this.#timers.forEach(clearInterval);
    this.#timers = [];
  }
}

/** A scalar Variant's options. */
export const scalar = (dataType, value) => ({ dataType, arrayType: ua.VariantArrayType.Scalar, value });

/** An array Variant's options. */
export const array = (dataType, value) => ({ dataType, arrayType: ua.VariantArrayType.Array, value });

/** A matrix Variant's options; `value` is flat, the last dimension running fastest. */
export const matrix = (dataType, dimensions, value) => ({
  dataType,
  arrayType: ua.VariantArrayType.Matrix,
  dimensions,
  value,
});

/** What every built-in type looks like here, in scalars, arrays and matrices: one ordinary value, two others. */
export function builtInValues() {
  const date = (text) => new Date(text);
  const guid = "72962B91-FA75-4AE6-8D28-B404DC7DAF63";
  const dataValue = (value) =>
    new ua.DataValue({
      value: scalar(DataType.Double, value),
      sourceTimestamp: date("2020-01-01T00:00:00Z"),
    });
  const diagnostics = (text) => new ua.DiagnosticInfo({ symbolicId: 1, additionalInfo: text });
  return {
    Boolean: [true, false, true],
    SByte: [-7, -128, 127],
    Byte: [7, 0, 255],
    Int16: [-1234, -32768, 32767],
    UInt16: [1234, 0, 65535],
    Int32: [-123456, -2147483648, 2147483647],
    UInt32: [123456, 0, 4294967295],
    Int64: [
      [0xffffffff, 0xfffe1dc0],
      [0x80000000, 0],
      [0x7fffffff, 0xffffffff],
    ],
    UInt64: [
      [0, 123456],
      [0, 0],
      [0xffffffff, 0xffffffff],
    ],
    Float: [1.5, -2.25, 1e30],
    Double: [Math.PI, -1e-300, 1e300],
    String: ["Tavelin", "", "Grüße aus Köln"],
    DateTime: [date("2020-02-29T12:34:56.789Z"), date("1970-01-01T00:00:00Z"), date("2099-12-31T23:59:59Z")],
    Guid: [guid, "00000000-0000-0000-0000-000000000000", "FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF"],
    ByteString: [Buffer.from("0001fe", "hex"), Buffer.alloc(0), Buffer.from("text")],
    XmlElement: ["<a b='1'>text</a>", "<empty/>", "<ü/>"],
    NodeId: [ua.coerceNodeId("i=85"), ua.coerceNodeId("ns=2;s=Demo"), ua.coerceNodeId(`ns=2;g=${guid}`)],
    ExpandedNodeId: [
      ua.coerceExpandedNodeId("ns=2;s=Demo"),
      ua.coerceExpandedNodeId("i=84"),
      ua.coerceExpandedNodeId("ns=2;b=AAEC"),
    ],
    StatusCode: [StatusCodes.Good, StatusCodes.BadTypeMismatch, StatusCodes.UncertainInitialValue],
    QualifiedName: ["Name", "Other", "Dritter"].map(
      (name, i) => new ua.QualifiedName({ namespaceIndex: i, name }),
    ),
    LocalizedText: [
      ["en", "Hello"],
      ["de", "Grüß Gott"],
      ["ja", "こんにちは"],
    ].map(([locale, text]) => new ua.LocalizedText({ locale, text })),
    DataValue: [1.5, 2.5, 3.5].map(dataValue),
    DiagnosticInfo: ["first", "second", "third"].map(diagnostics),
  };
}
