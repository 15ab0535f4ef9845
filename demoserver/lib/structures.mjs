// Folder Structure: variables of the types, enumerations and option sets of the structures namespace.

import { array, scalar } from "./builder.mjs";
import { flags, typeIds } from "./structuretypes.mjs";
import { DataType, EnumDefinition, StatusCodes, ua } from "./ua.mjs";

/** Builds values of the types by name. */
export class Structures {
  #space;
  #index;

  constructor(b) {
    this.#space = b.space;
    this.#index = b.structures.index;
  }

  /** No data type has it. */
  unknownTypeId() {
    return ua.coerceNodeId(`ns=${this.#index};i=9999`);
  }

  typeId(name) {
    return ua.coerceNodeId(`ns=${this.#index};i=${typeIds[name]}`);
  }

  make(name, fields) {
    return this.#space.constructExtensionObject(this.typeId(name), fields);
  }

  point(x, y) {
    return this.make("Point", { x, y });
  }
}

function everyType(s) {
  return s.make("EveryType", {
    booleanField: true,
    sByteField: -1,
    byteField: 2,
    int16Field: -3,
    uInt16Field: 4,
    int32Field: -5,
    uInt32Field: 6,
    int64Field: [0, 7],
    uInt64Field: [0, 8],
    floatField: 0.5,
    doubleField: 0.25,
    stringField: "fünf",
    dateTimeField: new Date("2024-01-02T03:04:05Z"),
    guidField: "72962B91-FA75-4AE6-8D28-B404DC7DAF63",
    byteStringField: Buffer.from("cafe", "hex"),
    xmlElementField: "<x/>",
    nodeIdField: ua.coerceNodeId("i=85"),
    expandedNodeIdField: ua.coerceExpandedNodeId("i=84"),
    statusCodeField: StatusCodes.UncertainInitialValue,
    qualifiedNameField: new ua.QualifiedName({ namespaceIndex: 2, name: "Q" }),
    localizedTextField: new ua.LocalizedText({ locale: "de", text: "Größe" }),
    anyField: new ua.Variant(scalar(DataType.String, "any")),
    modeField: 10,
  });
}

/** The structured values: variable name, type, value. */
function values(s) {
  const tree = (name, children = []) => s.make("TreeNode", { name, children });
  return [
    ["Point", "Point", s.point(1.5, -2.5)],
    ["NamedPoint", "NamedPoint", s.make("NamedPoint", { x: 3, y: 4, name: "Kirchturm", colour: 2 })],
    [
      "Segment",
      "Segment",
      s.make("Segment", {
        from: s.point(0, 0),
        to: s.point(10, 20),
        label: { locale: "de", text: "Strecke" },
      }),
    ],
    [
      "SampleFull",
      "Sample",
      s.make("Sample", { id: 1, comment: "all there", weight: 2.5, place: s.point(5, 6) }),
    ],
    ["SampleBare", "Sample", s.make("Sample", { id: 2 })],
    ["MeasurementNumber", "Measurement", s.make("Measurement", { number: 12.5 })],
    ["MeasurementText", "Measurement", s.make("Measurement", { text: "out of range" })],
    [
      "Track",
      "Track",
      s.make("Track", {
        title: "Rundweg",
        points: [s.point(0, 0), s.point(1, 1)],
        values: [0.5, 1.5, 2.5],
        tags: ["a", "b"],
      }),
    ],
    ["Tree", "TreeNode", tree("root", [tree("left", [tree("leaf")]), tree("right")])],
    ["EveryType", "EveryType", everyType(s)],
    ["Legacy", "Legacy", s.make("Legacy", { code: 7, name: "alt", values: Float32Array.from([0.5, 1.5]) })],
  ];
}

/** The library keeps no definition of an option set; without one a client could not name the bits. */
function defineFlags(b, s) {
  const fields = flags.map((name, bit) => ({
    name,
    displayName: { text: name },
    description: { text: `bit ${bit}` },
    value: [0, bit],
  }));
  b.space.findDataType(s.typeId("DeviceFlags"))._getDefinition = () => new EnumDefinition({ fields });
}

export function addStructures(b) {
  const s = new Structures(b);
  defineFlags(b, s);
  const folder = b.folder("Structure", { namespace: b.structures });
  const add = (name, type, value, more) =>
    b.variable(`Structure.${name}`, folder, type, value, { namespace: b.structures, ...more });
  for (const [name, type, value] of values(s))
    add(name, s.typeId(type), scalar(DataType.ExtensionObject, value));

  const points = [s.point(1, 2), s.point(3, 4), s.point(5, 6)];
  const oneDimension = { valueRank: 1, arrayDimensions: [0] };
  add("PointArray", s.typeId("Point"), array(DataType.ExtensionObject, points), oneDimension);
  add("PointEmptyArray", s.typeId("Point"), array(DataType.ExtensionObject, []), oneDimension);
  add("AnyStructure", "Structure", scalar(DataType.ExtensionObject, s.point(7, 8)));
  add("Range", "Range", scalar(DataType.ExtensionObject, new ua.Range({ low: -1, high: 1 })));
  add("Colour", s.typeId("Colour"), scalar(DataType.Int32, 1));
  add("Mode", s.typeId("Mode"), scalar(DataType.Int32, 10));
  add("ColourArray", s.typeId("Colour"), array(DataType.Int32, Int32Array.from([0, 1, 2])), oneDimension);
  add("DeviceFlags", s.typeId("DeviceFlags"), scalar(DataType.UInt32, 0b0101));
  const moving = add("Moving", s.typeId("Point"), scalar(DataType.ExtensionObject, s.point(0, 0)));
  let tick = 0;
  b.every(500, () => moving.setValueFromSource(scalar(DataType.ExtensionObject, s.point(++tick, -tick))));
  return s;
}
