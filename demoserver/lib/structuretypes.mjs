// The data types of the structures namespace, and the NodeSet2 document that brings them to the server.
//
// The library makes codecs for structures only while it loads a document, so the types are written down here
// as a table.

import { namespaces } from "./ua.mjs";

const standard = {
  Boolean: 1,
  SByte: 2,
  Byte: 3,
  Int16: 4,
  UInt16: 5,
  Int32: 6,
  UInt32: 7,
  Int64: 8,
  UInt64: 9,
  Float: 10,
  Double: 11,
  String: 12,
  DateTime: 13,
  Guid: 14,
  ByteString: 15,
  XmlElement: 16,
  NodeId: 17,
  ExpandedNodeId: 18,
  StatusCode: 19,
  QualifiedName: 20,
  LocalizedText: 21,
  Structure: 22,
  BaseDataType: 24,
  Enumeration: 29,
  ImagePNG: 2003,
  Union: 12756,
};

/**
 * Numeric ids of the data types in namespace `structures`; the binary encoding has the id plus 1000, the XML
 * one plus 2000.
 */
export const typeIds = {
  Colour: 3001,
  Mode: 3002,
  DeviceFlags: 3003,
  Point: 3010,
  NamedPoint: 3011,
  Segment: 3012,
  Sample: 3013,
  Measurement: 3014,
  Track: 3015,
  TreeNode: 3016,
  EveryType: 3017,
  Legacy: 3018,
  Snapshot: 3019,
};

export const colours = ["Red", "Green", "Blue"];
export const modes = [
  ["Emergency", -1],
  ["Off", 0],
  ["Slow", 10],
  ["Fast", 20],
];
export const flags = ["Running", "Warning", "Fault", "Maintenance"];

/** These types stand in the type dictionary only, as all did before data types had definitions. */
export const dictionaryOnly = ["Legacy"];

const builtIn = Object.keys(standard).slice(0, 21);

/** Structures: base type, then fields as [name, type, {array, optional}]. */
export const structures = {
  Point: [
    "Structure",
    [
      ["X", "Double"],
      ["Y", "Double"],
    ],
  ],
  NamedPoint: [
    "Point",
    [
      ["Name", "String"],
      ["Colour", "Colour"],
    ],
  ],
  Segment: [
    "Structure",
    [
      ["From", "Point"],
      ["To", "Point"],
      ["Label", "LocalizedText"],
    ],
  ],
  Sample: [
    "Structure",
    [
      ["Id", "UInt32"],
      ["Comment", "String", { optional: true }],
      ["Weight", "Double", { optional: true }],
      ["Place", "Point", { optional: true }],
    ],
  ],
  Measurement: [
    "Union",
    [
      ["Number", "Double"],
      ["Text", "String"],
      ["Place", "Point"],
    ],
  ],
  Track: [
    "Structure",
    [
      ["Title", "String"],
      ["Points", "Point", { array: true }],
      ["Values", "Double", { array: true }],
      ["Tags", "String", { array: true }],
    ],
  ],
  TreeNode: [
    "Structure",
    [
      ["Name", "String"],
      ["Children", "TreeNode", { array: true }],
    ],
  ],
  EveryType: [
    "Structure",
    [...builtIn.map((type) => [`${type}Field`, type]), ["AnyField", "BaseDataType"], ["ModeField", "Mode"]],
  ],
  Snapshot: [
    "Structure",
    [
      ["Title", "String"],
      ["Picture", "ImagePNG"],
    ],
  ],
  Legacy: [
    "Structure",
    [
      ["Code", "UInt16"],
      ["Name", "String"],
      ["Values", "Float", { array: true }],
    ],
  ],
};

const idOf = (type) => (typeIds[type] ? `ns=2;i=${typeIds[type]}` : `i=${standard[type]}`);

const reference = (type, target, forward) =>
  `<Reference ReferenceType="${type}"${forward ? "" : ' IsForward="false"'}>${target}</Reference>`;

function dataType(name, base, definition, references = []) {
  const all = [reference("HasSubtype", idOf(base), false), ...references].join("");
  return (
    `<UADataType NodeId="${idOf(name)}" BrowseName="2:${name}"><DisplayName>${name}</DisplayName>` +
    `<References>${all}</References>${definition}</UADataType>`
  );
}

function structureField([name, type, { array = false, optional = false } = {}]) {
  return `<Field Name="${name}" DataType="${idOf(type)}"${array ? ' ValueRank="1"' : ""}${optional ? ' IsOptional="true"' : ""}/>`;
}

function encoding(name, kind, offset) {
  const id = `ns=2;i=${typeIds[name] + offset}`;
  return (
    `<UAObject NodeId="${id}" BrowseName="${kind}" SymbolicName="${kind.replace(" ", "")}"><DisplayName>${kind}</DisplayName><References>` +
    `${reference("HasEncoding", idOf(name), false)}${reference("HasTypeDefinition", "i=76", true)}</References></UAObject>`
  );
}

function structure(name, [base, fields]) {
  const union = base === "Union" ? ' IsUnion="true"' : "";
  const encodings = [
    [" Binary", 1000],
    [" XML", 2000],
  ]
    .map(([kind, offset]) => encoding(name, `Default${kind}`, offset))
    .join("\n");
  const definition = `<Definition Name="2:${name}"${union}>${fields.map(structureField).join("")}</Definition>`;
  return `${dataType(name, base, definition)}\n${encodings}`;
}

/** A property of a data type that lists its members: EnumStrings, EnumValues or OptionSetValues. */
function members(owner, id, name, type, value) {
  return (
    `<UAVariable NodeId="ns=2;i=${id}" BrowseName="${name}" DataType="${type}" ValueRank="1"><DisplayName>${name}</DisplayName>` +
    `<References>${reference("HasProperty", idOf(owner), false)}${reference("HasTypeDefinition", "i=68", true)}</References>` +
    `<Value>${value}</Value></UAVariable>`
  );
}

const types = 'xmlns="http://opcfoundation.org/UA/2008/02/Types.xsd"';

function textList(texts) {
  return `<ListOfLocalizedText ${types}>${texts.map((text) => `<LocalizedText><Text>${text}</Text></LocalizedText>`).join("")}</ListOfLocalizedText>`;
}

function valueList(pairs) {
  const item = ([text, value]) =>
    `<ExtensionObject><TypeId><Identifier>i=7616</Identifier></TypeId><Body><EnumValueType><Value>${value}</Value>` +
    `<DisplayName><Text>${text}</Text></DisplayName><Description><Text>${text} (${value})</Text></Description></EnumValueType></Body></ExtensionObject>`;
  return `<ListOfExtensionObject ${types}>${pairs.map(item).join("")}</ListOfExtensionObject>`;
}

function enumeration(name, base, pairs, optionSet = false) {
  const fields = pairs.map(([text, value]) => `<Field Name="${text}" Value="${value}"/>`).join("");
  const definition = `<Definition Name="2:${name}"${optionSet ? ' IsOptionSet="true"' : ""}>${fields}</Definition>`;
  return dataType(name, base, definition);
}

const numbered = (names) => names.map((name, i) => [name, i]);

/** Each namespace is a model, so that the loader registers both, in this order. */
const model = (uri) =>
  `<Model ModelUri="${uri}" Version="1.0.0" PublicationDate="2024-01-01T00:00:00Z"><RequiredModel ModelUri="http://opcfoundation.org/UA/"/></Model>`;

export function structureNodeset() {
  return `<?xml version="1.0" encoding="utf-8"?>
<UANodeSet xmlns="http://opcfoundation.org/UA/2011/03/UANodeSet.xsd">
<NamespaceUris><Uri>${namespaces.demo}</Uri><Uri>${namespaces.structures}</Uri></NamespaceUris>
<Models>${model(namespaces.demo)}${model(namespaces.structures)}</Models>
<Aliases><Alias Alias="HasSubtype">i=45</Alias><Alias Alias="HasEncoding">i=38</Alias><Alias Alias="HasProperty">i=46</Alias><Alias Alias="HasTypeDefinition">i=40</Alias></Aliases>
${enumeration("Colour", "Enumeration", numbered(colours))}
${members("Colour", 3101, "EnumStrings", "i=21", textList(colours))}
${enumeration("Mode", "Enumeration", modes)}
${members("Mode", 3102, "EnumValues", "i=7594", valueList(modes))}
${enumeration("DeviceFlags", "UInt32", numbered(flags), true)}
${members("DeviceFlags", 3103, "OptionSetValues", "i=21", textList(flags))}
${Object.entries(structures)
  .map(([name, table]) => structure(name, table))
  .join("\n")}
</UANodeSet>
`;
}
