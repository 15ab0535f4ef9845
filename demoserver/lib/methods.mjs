// Object Methods: calls without, with few and with structured arguments, failing and slow ones.

import { DataType, StatusCodes, ua } from "./ua.mjs";

const slowMilliseconds = 3000;

const argument = (name, dataType, valueRank = -1, description = name) => ({
  name,
  dataType,
  valueRank,
  description: { text: description },
});
const good = (outputArguments = []) => ({ statusCode: StatusCodes.Good, outputArguments });

/**
 * The library takes only functions with a callback; those of the table just return what they have, or a
 * promise of it.
 */
export function bind(method, run) {
  method.bindMethod((inputs, _context, callback) => {
    Promise.resolve(run(inputs)).then(
      (result) => callback(null, result),
      () => callback(null, { statusCode: StatusCodes.BadInternalError, outputArguments: [] }),
    );
  });
}

const wait = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

/** The methods: name, input arguments, output arguments, what they do. */
function table(structures) {
  let calls = 0;
  const echo = (inputs) => good(inputs.map((input) => new ua.Variant(input)));
  const double = DataType.Double;
  return [
    ["Nothing", [], [], () => good()],
    [
      "Count",
      [],
      [argument("Calls", DataType.UInt32)],
      () => good([{ dataType: DataType.UInt32, value: ++calls }]),
    ],
    [
      "Add",
      [argument("A", double, -1, "first summand"), argument("B", double, -1, "second summand")],
      [argument("Sum", double)],
      ([a, b]) => good([{ dataType: double, value: a.value + b.value }]),
    ],
    ["EchoText", [argument("Text", DataType.String)], [argument("Text", DataType.String)], echo],
    ["EchoArray", [argument("Values", DataType.Int32, 1)], [argument("Values", DataType.Int32, 1)], echo],
    [
      "EchoAny",
      [argument("Value", ua.coerceNodeId("i=24"))],
      [argument("Value", ua.coerceNodeId("i=24"))],
      echo,
    ],
    [
      "EchoStructure",
      [argument("Point", structures.typeId("Point"))],
      [argument("Point", structures.typeId("Point"))],
      echo,
    ],
    [
      "EchoStructures",
      [argument("Points", structures.typeId("Point"), 1)],
      [argument("Points", structures.typeId("Point"), 1)],
      echo,
    ],
    [
      "Fail",
      [argument("Text", DataType.String)],
      [],
      () => ({ statusCode: StatusCodes.BadInvalidState, outputArguments: [] }),
    ],
    [
      "Slow",
      [],
      [argument("Milliseconds", DataType.UInt32)],
      () => wait(slowMilliseconds).then(() => good([{ dataType: DataType.UInt32, value: slowMilliseconds }])),
    ],
  ];
}

export function addMethods(b, structures) {
  const owner = b.demo.addObject({ nodeId: "s=Methods", browseName: "Methods", organizedBy: b.root });
  for (const [name, inputArguments, outputArguments, run] of table(structures)) {
    const options = { nodeId: `s=Methods.${name}`, browseName: name, inputArguments, outputArguments };
    bind(b.demo.addMethod(owner, options), run);
  }
  const locked = b.demo.addMethod(owner, { nodeId: "s=Methods.NotExecutable", browseName: "NotExecutable" });
  bind(locked, () => good());
  locked._getExecutableFlag = () => false; // the option of this name has no effect
}
