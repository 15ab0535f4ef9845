// The type dictionary of the structures namespace: the older way to tell how structures are encoded.

import { scalar } from "./builder.mjs";
import { colours, dictionaryOnly, flags, modes, structures, typeIds } from "./structuretypes.mjs";
import { DataType, StatusCodes, namespaces, ua } from "./ua.mjs";

const bitsOfMask = 32;
const inUa = ["XmlElement", "NodeId", "ExpandedNodeId", "StatusCode", "QualifiedName", "LocalizedText"];

function typeName(type) {
  if (typeIds[type]) return `tns:${type}`;
  if (type === "String") return "opc:CharArray";
  if (type.startsWith("Image")) return "opc:ByteString";
  if (type === "BaseDataType") return "ua:Variant";
  return inUa.includes(type) ? `ua:${type}` : `opc:${type}`;
}

function field([name, type, { array: isArray = false } = {}], more = "") {
  if (!isArray) return `<opc:Field Name="${name}" TypeName="${typeName(type)}"${more}/>`;
  return `<opc:Field Name="NoOf${name}" TypeName="opc:Int32"${more}/><opc:Field Name="${name}" TypeName="${typeName(type)}" LengthField="NoOf${name}"${more}/>`;
}

function unionFields(fields) {
  const members = fields.map((one, i) => field(one, ` SwitchField="SwitchField" SwitchValue="${i + 1}"`));
  return [`<opc:Field Name="SwitchField" TypeName="opc:UInt32"/>`, ...members];
}

function optionalFields(fields) {
  const isOptional = ([, , more]) => more?.optional;
  const bits = fields
    .filter(isOptional)
    .map(([name]) => `<opc:Field Name="${name}Specified" TypeName="opc:Bit"/>`);
  const rest = `<opc:Field Name="Reserved1" TypeName="opc:Bit" Length="${bitsOfMask - bits.length}"/>`;
  return [
    ...bits,
    rest,
    ...fields.map((one) => field(one, isOptional(one) ? ` SwitchField="${one[0]}Specified"` : "")),
  ];
}

/** A type's fields with those of its base types in front. */
function allFields(name) {
  const [base, fields] = structures[name];
  return structures[base] ? [...allFields(base), ...fields] : fields;
}

function structuredType(name) {
  const fields = allFields(name);
  const isUnion = structures[name][0] === "Union";
  const lines = isUnion
    ? unionFields(fields)
    : fields.some(([, , more]) => more?.optional)
      ? optionalFields(fields)
      : fields.map((one) => field(one));
  return `<opc:StructuredType Name="${name}" BaseType="ua:${isUnion ? "Union" : "ExtensionObject"}">${lines.join("")}</opc:StructuredType>`;
}

function enumeratedType(name, pairs) {
  const values = pairs
    .map(([text, value]) => `<opc:EnumeratedValue Name="${text}" Value="${value}"/>`)
    .join("");
  return `<opc:EnumeratedType Name="${name}" LengthInBits="32">${values}</opc:EnumeratedType>`;
}

const numbered = (names) => names.map((name, i) => [name, i]);

function schema() {
  return `<?xml version="1.0" encoding="utf-8"?>
<opc:TypeDictionary xmlns:opc="http://opcfoundation.org/BinarySchema/" xmlns:ua="http://opcfoundation.org/UA/" xmlns:tns="${namespaces.structures}" DefaultByteOrder="LittleEndian" TargetNamespace="${namespaces.structures}">
<opc:Import Namespace="http://opcfoundation.org/UA/"/>
${enumeratedType("Colour", numbered(colours))}
${enumeratedType("Mode", modes)}
${enumeratedType(
  "DeviceFlags",
  flags.map((name, bit) => [name, 1 << bit]),
)}
${Object.keys(structures).map(structuredType).join("\n")}
</opc:TypeDictionary>
`;
}

function describeEncoding(b, dictionary, name) {
  const id = `Dictionary.${name}`;
  const readOnly = { accessLevel: "CurrentRead", userAccessLevel: "CurrentRead", namespace: b.structures };
  const description = b.variable(id, dictionary, "String", scalar(DataType.String, name), {
    ...readOnly,
    typeDefinition: "DataTypeDescriptionType",
  });
  const encoding = b.space.findNode(`ns=${b.structures.index};i=${typeIds[name] + 1000}`);
  encoding.addReference({ referenceType: "HasDescription", nodeId: description });
}

/** Takes the definition away from a data type, without touching what the library itself knows. */
function hideDefinition(node) {
  const readAttribute = node.readAttribute.bind(node);
  node.readAttribute = (context, attributeId, ...rest) =>
    attributeId === ua.AttributeIds.DataTypeDefinition
      ? new ua.DataValue({ statusCode: StatusCodes.BadAttributeIdInvalid })
      : readAttribute(context, attributeId, ...rest);
}

export function addDictionary(b, s) {
  const typeSystem = b.space.findNode("i=93");
  const readOnly = { accessLevel: "CurrentRead", userAccessLevel: "CurrentRead", namespace: b.structures };
  const text = scalar(DataType.ByteString, Buffer.from(schema()));
  const dictionary = b.variable("Dictionary", typeSystem, "ByteString", text, {
    ...readOnly,
    typeDefinition: "DataTypeDictionaryType",
  });
  b.property(
    "Dictionary.NamespaceUri",
    dictionary,
    "String",
    scalar(DataType.String, namespaces.structures),
    {
      name: { namespaceIndex: 0, name: "NamespaceUri" },
      namespace: b.structures,
    },
  );
  for (const name of Object.keys(structures)) describeEncoding(b, dictionary, name);
  for (const name of dictionaryOnly) hideDefinition(b.space.findDataType(s.typeId(name)));
}
