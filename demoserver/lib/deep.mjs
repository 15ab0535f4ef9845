// Folders Deep, Loop and Shape: address spaces that trip up a client that walks without care.

import { scalar } from "./builder.mjs";
import { DataType } from "./ua.mjs";

export const depth = 60;
const propertyCount = 20;

function addDeep(b) {
  let parent = b.folder("Deep");
  for (let level = 1; level <= depth; ++level) {
    parent = b.folder(`Deep.${level}`, { parent, name: `Level${level}` });
  }
  b.variable("Deep.Bottom", parent, "Int32", scalar(DataType.Int32, depth));
}

function addLoop(b) {
  const outer = b.folder("Loop");
  const middle = b.folder("Loop.Middle", { parent: outer });
  const inner = b.folder("Loop.Inner", { parent: middle });
  inner.addReference({ referenceType: "Organizes", nodeId: outer });
  const self = b.folder("Loop.Self", { parent: outer });
  self.addReference({ referenceType: "Organizes", nodeId: self });
}

function addShape(b) {
  const folder = b.folder("Shape");
  const twice = b.demo.addObject({ nodeId: "s=Shape.Twice", browseName: "Twice", organizedBy: folder });
  const child = b.variable("Shape.Twice.Child", twice, "Int32", scalar(DataType.Int32, 2));
  twice.addReference({ referenceType: "Organizes", nodeId: child });

  const rich = b.variable("Shape.ManyProperties", folder, "Double", scalar(DataType.Double, 1), {
    description: "has 20 properties",
  });
  for (let i = 1; i <= propertyCount; ++i) {
    b.property(`Shape.ManyProperties.${i}`, rich, "Int32", scalar(DataType.Int32, i), {
      name: `Property${i}`,
    });
  }
  b.folder("Shape.Empty", { parent: folder });
  const missing = { referenceType: "Organizes", nodeId: b.space.rootFolder.objects.server };
  b.folder("Shape.ToServer", { parent: folder }).addReference(missing);
}

function addView(b) {
  const view = b.demo.addView({
    nodeId: "s=View.Operator",
    browseName: "Operator",
    organizedBy: b.space.rootFolder.views,
  });
  for (const id of ["Dynamic", "DataAccess", "Plant"]) {
    view.addReference({ referenceType: "Organizes", nodeId: `ns=${b.demo.index};s=${id}` });
  }
}

export function addShapes(b) {
  addDeep(b);
  addLoop(b);
  addShape(b);
  addView(b);
}
