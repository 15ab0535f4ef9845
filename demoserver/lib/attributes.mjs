// Folder Attributes: nodes whose attributes besides the Value can be written. The library lets nobody do that,
// so what was written is kept beside the node and read from there.

import { scalar } from "./builder.mjs";
import { DataType, StatusCodes, Variant, VariantArrayType, ua } from "./ua.mjs";

const { AttributeIds } = ua;
const maskBits = {
  BrowseName: 1 << 2,
  Description: 1 << 5,
  DisplayName: 1 << 6,
  MinimumSamplingInterval: 1 << 12,
  WriteMask: 1 << 20,
  RolePermissions: 1 << 23,
  AccessRestrictions: 1 << 24,
  AccessLevelEx: 1 << 25,
};
const text = (words) => ({ dataType: DataType.LocalizedText, value: { locale: "en", text: words } });
const number = (dataType, value) => ({ dataType, value });

/** The attributes, by name, read as given here and can be written in the same type; without a user's mask
 *  the node says by its WriteMask alone that they can. */
function open(node, attributes, { hasUserMask }) {
  const names = [...Object.keys(attributes), "WriteMask"];
  const mask = names.reduce((bits, name) => bits | maskBits[name], 0);
  const values = new Map(
    Object.entries({ ...attributes, WriteMask: number(DataType.UInt32, mask) }).map(([name, value]) => [
      AttributeIds[name],
      new Variant(value),
    ]),
  );
  const readOriginal = node.readAttribute.bind(node);
  const writeOriginal = node.writeAttribute.bind(node);

  node.readAttribute = (context, id, ...rest) => {
    if (id === AttributeIds.UserWriteMask && !hasUserMask)
      return new ua.DataValue({ statusCode: StatusCodes.BadAttributeIdInvalid });
    const value = values.get(id === AttributeIds.UserWriteMask ? AttributeIds.WriteMask : id);
    return value
      ? new ua.DataValue({ statusCode: StatusCodes.Good, value })
      : readOriginal(context, id, ...rest);
  };
  node.writeAttribute = (context, request, callback) => {
    const kept = values.get(request.attributeId);
    if (!kept) return writeOriginal(context, request, callback);
    const { value } = request.value;
    const bit = maskBits[AttributeIds[request.attributeId]];
    if (!(values.get(AttributeIds.WriteMask).value & bit)) return callback(null, StatusCodes.BadNotWritable);
    if (value.dataType !== kept.dataType || value.arrayType !== kept.arrayType)
      return callback(null, StatusCodes.BadTypeMismatch);
    values.set(request.attributeId, new Variant(value));
    return callback(null, StatusCodes.Good);
  };
}

export function addAttributes(b) {
  const folder = b.folder("Attributes");
  const everybody = new ua.RolePermissionType({ roleId: "i=15644", permissions: 0x0f });
  const ofEvery = {
    BrowseName: { dataType: DataType.QualifiedName, value: { namespaceIndex: 2, name: "Open" } },
    DisplayName: text("Open"),
    Description: text("Everything about this node can be written"),
    RolePermissions: {
      dataType: DataType.ExtensionObject,
      arrayType: VariantArrayType.Array,
      value: [everybody],
    },
    AccessRestrictions: number(DataType.UInt16, 0),
  };
  const variable = b.variable("Attributes.Variable", folder, "Double", scalar(DataType.Double, 1.5));
  open(
    variable,
    {
      ...ofEvery,
      AccessLevelEx: number(DataType.UInt32, 3),
      MinimumSamplingInterval: number(DataType.Double, 100),
    },
    { hasUserMask: false },
  );
  open(b.folder("Attributes.Object", { parent: folder }), ofEvery, { hasUserMask: true });
}
