// Folder Icon: objects and object types with an Icon property, a variable that holds a picture, and one that
// holds none.

import { scalar } from "./builder.mjs";
import { bind } from "./methods.mjs";
import { drawPng } from "./png.mjs";
import { DataType, StatusCodes } from "./ua.mjs";

const clear = [0, 0, 0, 0];

function disc(size, colour) {
  const middle = (size - 1) / 2;
  return drawPng(size, (x, y) => (Math.hypot(x - middle, y - middle) <= middle ? colour : clear));
}

function checks(size, colour) {
  return drawPng(size, (x, y) => (((x >> 2) + (y >> 2)) & 1 ? colour : [255, 255, 255, 255]));
}

const icon = (b, id, owner, bytes) =>
  b.property(id, owner, "ImagePNG", scalar(DataType.ByteString, bytes), {
    name: { namespaceIndex: 0, name: "Icon" },
  });

export function addIcons(b) {
  const folder = b.folder("Icon");
  const pump = b.demo.addObjectType({ nodeId: "s=PumpType", browseName: "PumpType" });
  icon(b, "PumpType.Icon", pump, disc(16, [30, 120, 220, 255]));
  b.demo.addVariable({
    nodeId: "s=PumpType.Running",
    browseName: "Running",
    dataType: "Boolean",
    componentOf: pump,
    modellingRule: "Mandatory",
  });
  // stays with the type: its objects have no such child, and it is called on them all the same
  bind(
    b.demo.addMethod(pump, {
      nodeId: "s=PumpType.Prime",
      browseName: "Prime",
      outputArguments: [{ name: "Pump", dataType: DataType.String, valueRank: -1 }],
    }),
    (_inputs, object) => ({
      statusCode: StatusCodes.Good,
      outputArguments: [{ dataType: DataType.String, value: object.browseName.name }],
    }),
  );

  pump.instantiate({
    nodeId: "s=Icon.PlainPump",
    browseName: "PlainPump",
    organizedBy: folder,
    namespace: b.demo,
  });
  const marked = pump.instantiate({
    namespace: b.demo,
    nodeId: "s=Icon.MarkedPump",
    browseName: "MarkedPump",
    organizedBy: folder,
  });
  icon(b, "Icon.MarkedPump.Icon", marked, disc(16, [220, 60, 30, 255]));

  const big = b.demo.addObject({ nodeId: "s=Icon.Big", browseName: "Big", organizedBy: folder });
  icon(b, "Icon.Big.Icon", big, checks(128, [20, 150, 80, 255]));
  const broken = b.demo.addObject({ nodeId: "s=Icon.Broken", browseName: "Broken", organizedBy: folder });
  icon(b, "Icon.Broken.Icon", broken, Buffer.from("this is no picture"));
  b.variable("Icon.Picture", folder, "ImagePNG", scalar(DataType.ByteString, checks(64, [90, 60, 160, 255])));
}
