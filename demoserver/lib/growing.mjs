// Folder Growing: children that two methods add and delete, each time with a model change event.

import { scalar } from "./builder.mjs";
import { bind } from "./methods.mjs";
import { DataType, StatusCodes } from "./ua.mjs";

const answer = (statusCode) => ({ statusCode, outputArguments: [] });

export function addGrowing(b) {
  // The node version is what makes the library watch the folder for changes.
  const options = {
    nodeId: "s=Growing",
    browseName: "Growing",
    organizedBy: b.root,
    typeDefinition: "FolderType",
    nodeVersion: "1",
  };
  const folder = b.demo.addObject(options);
  const methods = b.space.findNode(`ns=${b.demo.index};s=Methods`);
  const method = (name) => b.demo.addMethod(methods, { nodeId: `s=Methods.${name}`, browseName: name });
  const nodes = [];
  bind(method("Grow"), () => {
    const number = nodes.length + 1;
    nodes.push(
      b.variable(`Growing.${number}`, folder, "Int32", scalar(DataType.Int32, number), {
        name: `Child${number}`,
      }),
    );
    return answer(StatusCodes.Good);
  });
  bind(method("Shrink"), () => {
    if (nodes.length === 0) return answer(StatusCodes.BadInvalidState);
    b.demo.deleteNode(nodes.pop());
    return answer(StatusCodes.Good);
  });
}
