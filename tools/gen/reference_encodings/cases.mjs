// The cases of builtin.txt: ordinary and extreme values of every built-in type.

const guid = "72962B91-FA75-4AE6-8D28-B404DC7DAF63";
const emptyGuid = "00000000-0000-0000-0000-000000000000";
const ticks2020 = 132_223_104_000_000_000n; // 2020-01-01T00:00:00Z
const ticksOdd = ticks2020 + 123_456_789n; // 12.3456789 s later
const umlauts = "Grüße, Ωmega, 水, 𝄞";

const maxInt64 = 2n ** 63n - 1n;
const minInt64 = -(2n ** 63n);
const maxFloat = 3.4028234663852886e38;

const numeric = (id, ns = 0) => ({ ns, kind: "numeric", id });
const text = (id, ns) => ({ ns, kind: "string", id });

/** Named values by type: [name, value] pairs. */
const scalars = {
  Boolean: [
    ["false", false],
    ["true", true],
  ],
  SByte: [
    ["min", -128],
    ["minus-one", -1],
    ["max", 127],
  ],
  Byte: [
    ["zero", 0],
    ["max", 255],
  ],
  Int16: [
    ["min", -32768],
    ["bytes", 0x1234],
    ["max", 32767],
  ],
  UInt16: [
    ["zero", 0],
    ["bytes", 0x1234],
    ["max", 65535],
  ],
  Int32: [
    ["min", -2147483648],
    ["minus-one", -1],
    ["bytes", 0x12345678],
    ["max", 2147483647],
  ],
  UInt32: [
    ["zero", 0],
    ["bytes", 0x12345678],
    ["max", 4294967295],
  ],
  Int64: [
    ["min", minInt64],
    ["minus-one", -1n],
    ["bytes", 0x123456789abcdef0n],
    ["max", maxInt64],
  ],
  UInt64: [
    ["zero", 0n],
    ["bytes", 0x123456789abcdef0n],
    ["max", 2n ** 64n - 1n],
  ],
  Float: [
    ["zero", 0],
    ["minus-zero", -0],
    ["minus-6.5", -6.5],
    ["least", 1.401298464324817e-45],
    ["greatest", maxFloat],
    ["infinity", Infinity],
    ["minus-infinity", -Infinity],
    ["nan", NaN],
  ],
  Double: [
    ["zero", 0],
    ["minus-zero", -0],
    ["minus-6.5", -6.5],
    ["pi", Math.PI],
    ["least", 5e-324],
    ["greatest", 1.7976931348623157e308],
    ["infinity", Infinity],
    ["minus-infinity", -Infinity],
    ["nan", NaN],
  ],
  String: [
    ["null", null],
    ["empty", ""],
    ["ascii", "Hello | World = 1"],
    ["other-scripts", umlauts],
    ["nul-inside", "a\u0000b"],
    ["long", "0123456789".repeat(100)],
  ],
  DateTime: [
    ["zero", 0n],
    ["one-millisecond", 10_000n],
    ["year-2020", ticks2020],
    ["hundred-nanoseconds", ticksOdd],
    ["before-1970", 116_444_735_999_999_999n],
    ["late-in-9999", 2_650_466_879_990_000_000n],
    ["max", maxInt64],
  ],
  Guid: [
    ["zero", emptyGuid],
    ["ordinary", guid],
    ["all-ones", "FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF"],
  ],
  ByteString: [
    ["null", null],
    ["empty", Buffer.alloc(0)],
    ["bytes", Buffer.from("00017f80ff", "hex")],
    ["long", Buffer.alloc(300, 0xa5)],
  ],
  XmlElement: [
    ["null", null],
    ["empty", ""],
    ["element", '<a b="ü">|</a>'],
  ],
  NodeId: [
    ["null", numeric(0)],
    ["two-byte", numeric(85)],
    ["two-byte-max", numeric(255)],
    ["four-byte-by-id", numeric(256)],
    ["four-byte-by-namespace", numeric(1, 5)],
    ["four-byte-max", numeric(65535, 255)],
    ["numeric-by-id", numeric(65536)],
    ["numeric-by-namespace", numeric(1, 256)],
    ["numeric-max", numeric(4294967295, 65535)],
    ["string", text("Hot水", 1)],
    ["string-empty", text("", 2)],
    ["guid", { ns: 4, kind: "guid", id: guid }],
    ["opaque", { ns: 3, kind: "opaque", id: Buffer.from("deadbeef00", "hex") }],
  ],
  ExpandedNodeId: [
    ["null", numeric(0)],
    ["two-byte", numeric(85)],
    ["four-byte", numeric(1025, 5)],
    ["uri", { ...numeric(13), uri: "urn:korvanda:tavelin:demo" }],
    ["server", { ...numeric(85), server: 7 }],
    ["uri-and-server", { ...text("Boiler", 0), uri: "urn:plant:boilers", server: 4294967295 }],
    ["guid-with-server", { ns: 2, kind: "guid", id: guid, server: 1 }],
    ["opaque-with-uri", { ns: 0, kind: "opaque", id: Buffer.from("01", "hex"), uri: "urn:x" }],
  ],
  StatusCode: [
    ["good", 0],
    ["uncertain", 0x40000000],
    ["bad", 0x80000000],
    ["bad-type-mismatch", 0x80740000],
    ["good-clamped", 0x00300000],
    ["good-overflow", 0x00000480],
  ],
  QualifiedName: [
    ["null", { ns: 0, name: null }],
    ["empty", { ns: 1, name: "" }],
    ["ordinary", { ns: 65535, name: "Grüße" }],
  ],
  LocalizedText: [
    ["none", { locale: null, text: null }],
    ["locale", { locale: "de-DE", text: null }],
    ["text", { locale: null, text: "Motor läuft" }],
    ["both", { locale: "en", text: "Motor running" }],
    ["empty-text", { locale: null, text: "" }],
    ["both-empty", { locale: "", text: "" }],
  ],
  ExtensionObject: [
    ["none", null],
    ["bytes", { typeId: numeric(5001, 2), bytes: Buffer.from("0102030405", "hex") }],
    ["bytes-string-type", { typeId: text("Enc", 3), bytes: Buffer.from("ff", "hex") }],
    ["xml", { typeId: numeric(5002, 2), xml: "<v>1</v>" }],
  ],
  DataValue: [
    ["none", {}],
    ["value", { value: { type: "Int32", value: -5 } }],
    ["status", { status: 0x80340000 }],
    ["source-time", { sourceTime: ticks2020 }],
    ["server-time", { serverTime: ticks2020 }],
    ["source-time-pico", { sourceTime: ticksOdd, sourcePico: 9999 }],
    ["server-time-pico", { serverTime: ticksOdd, serverPico: 1 }],
    [
      "all",
      {
        value: { type: "String", value: umlauts },
        status: 0x40920000,
        sourceTime: ticks2020,
        sourcePico: 1234,
        serverTime: ticksOdd,
        serverPico: 4321,
      },
    ],
    ["array-value", { value: { type: "Double", array: [1.5, -2.5] }, sourceTime: ticks2020 }],
  ],
  DiagnosticInfo: [
    ["none", {}],
    ["symbolic-id", { symbolicId: 1 }],
    ["namespace-uri", { namespaceUri: 2 }],
    ["locale", { locale: 3 }],
    ["localized-text", { localizedText: 4 }],
    ["additional-info", { additionalInfo: "over the top" }],
    ["inner-status", { innerStatus: 0x80010000 }],
    ["inner", { inner: { symbolicId: 9 } }],
    [
      "nested",
      {
        symbolicId: 0,
        namespaceUri: 1,
        locale: 2,
        localizedText: 3,
        additionalInfo: "outer",
        innerStatus: 0x80020000,
        inner: { symbolicId: 4, innerStatus: 0x80030000, inner: { additionalInfo: "innermost" } },
      },
    ],
  ],
};

/** Values that the library writes only outside a Variant, where types.mjs does it piece by piece. */
function onlyAlone(type, value) {
  if (type === "DateTime") return value === maxInt64;
  if (type === "LocalizedText") return value.text === "";
  return type === "ExtensionObject" && value !== null && "xml" in value;
}

const inVariant = { type: "Int32", value: 7 };

function variants() {
  const cases = [["null", { type: "Null" }]];
  for (const [type, values] of Object.entries(scalars)) {
    const all = values.map(([, value]) => value).filter((value) => !onlyAlone(type, value));
    const two = [all[0], all[all.length - 1]];
    cases.push([`${type}-scalar`, { type, value: all[all.length - 1] }]);
    cases.push([`${type}-array`, { type, array: all }]);
    cases.push([`${type}-empty-array`, { type, array: [] }]);
    cases.push([`${type}-matrix`, { type, dims: [2, 3], array: [...two, ...two, ...two] }]);
  }
  cases.push([
    "Variant-array",
    { type: "Variant", array: [inVariant, { type: "Null" }, { type: "String", array: ["a", null] }] },
  ]);
  cases.push(["Variant-empty-array", { type: "Variant", array: [] }]);
  cases.push([
    "Variant-matrix",
    { type: "Variant", dims: [1, 2], array: [inVariant, { type: "Boolean", value: true }] },
  ]);
  cases.push(["Int32-null-array", { type: "Int32", array: null }]);
  cases.push(["Int32-matrix-3d", { type: "Int32", dims: [2, 2, 2], array: [1, 2, 3, 4, 5, 6, 7, 8] }]);
  return cases;
}

export function builtinCases() {
  const groups = { ...scalars, Variant: variants() };
  return Object.entries(groups).flatMap(([type, values]) =>
    values.map(([name, value]) => ({ type, name, value })),
  );
}
