// Folder Many: 10,000 variables in one folder, all in a namespace of their own.

import { scalar } from "./builder.mjs";
import { DataType } from "./ua.mjs";

export const manyCount = 10_000;

export function addMany(b) {
  const folder = b.folder("Many", { namespace: b.many });
  for (let i = 0; i < manyCount; ++i) {
    b.many.addVariable({
      nodeId: `i=${100_000 + i}`,
      browseName: `Item${String(i).padStart(5, "0")}`,
      dataType: "Int32",
      organizedBy: folder,
      value: scalar(DataType.Int32, i),
    });
  }
}
