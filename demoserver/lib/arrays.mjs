// Folders Array, EmptyArray, Matrix and Cube: every built-in type with one, two and three dimensions.

import { array, builtInValues, matrix, scalar } from "./builder.mjs";
import { DataType } from "./ua.mjs";

const typed = {
  SByte: Int8Array,
  Byte: Uint8Array,
  Int16: Int16Array,
  UInt16: Uint16Array,
  Int32: Int32Array,
  UInt32: Uint32Array,
  Float: Float32Array,
  Double: Float64Array,
};

/** The values in the kind of array that the library wants for the type. */
const list = (type, values) => (typed[type] ? typed[type].from(values) : values);

const repeat = (values, count) => Array.from({ length: count }, (_, i) => values[i % values.length]);

export function addArrays(b) {
  const folders = Object.fromEntries(
    ["Array", "EmptyArray", "Matrix", "Cube"].map((id) => [id, b.folder(id)]),
  );
  const oneDimension = { valueRank: 1, arrayDimensions: [0] };
  for (const [type, values] of Object.entries(builtInValues())) {
    const dataType = DataType[type];
    const add = (kind, value, rank) => b.variable(`${kind}.${type}`, folders[kind], type, value, rank);
    add("Array", array(dataType, list(type, values)), oneDimension);
    add("EmptyArray", array(dataType, list(type, [])), oneDimension);
    add("Matrix", matrix(dataType, [2, 3], list(type, repeat(values, 6))), {
      valueRank: 2,
      arrayDimensions: [2, 3],
    });
    add("Cube", matrix(dataType, [2, 2, 3], list(type, repeat(values, 12))), {
      valueRank: 3,
      arrayDimensions: [2, 2, 3],
    });
  }
  special(b, folders.Array, oneDimension);
}

function special(b, folder, oneDimension) {
  const variants = [scalar(DataType.Int32, 1), scalar(DataType.String, "two"), scalar(DataType.Double, 3.5)];
  b.variable("Array.Variant", folder, "BaseDataType", array(DataType.Variant, variants), oneDimension);
  b.variable("Array.Fixed", folder, "Int32", array(DataType.Int32, Int32Array.from([1, 2, 3, 4])), {
    valueRank: 1,
    arrayDimensions: [4],
  });
  b.variable(
    "Array.Large",
    folder,
    "Double",
    array(
      DataType.Double,
      Float64Array.from({ length: 10_000 }, (_, i) => i / 4),
    ),
    oneDimension,
  );
  b.variable("Array.Null", folder, "Int32", array(DataType.Int32, null), oneDimension);
  b.variable("Array.ScalarOrArray", folder, "Int32", scalar(DataType.Int32, 1), { valueRank: -3 });
  b.variable("Array.AnyRank", folder, "Int32", array(DataType.Int32, Int32Array.from([1, 2])), {
    valueRank: -2,
  });
}
