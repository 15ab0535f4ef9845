// Object Methods: calls without, with few and with structured arguments, failing and slow ones.

import { DataType, StatusCodes, ua } from "./ua.mjs";

const slowMilliseconds = 3000;
const longestMilliseconds = 10 * 60 * 1000;

export const argument = (name, dataType, valueRank = -1, description = name) => ({
  name,
  dataType,
  valueRank,
  description: { text: description },
});
export const good = (outputArguments = []) => ({ statusCode: StatusCodes.Good, outputArguments });

/**
 * The library takes only functions with a callback; those of the table get the object and the session, too, and just
 * return what they have, or a promise of it.
 */
export function bind(method, run) {
  method.bindMethod((inputs, context, callback) => {
    Promise.resolve(run(inputs, context.object, context.session)).then(
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
      "Mixed",
      [
        argument("Point", structures.typeId("Point"), -1, "where it is"),
        argument("Colour", structures.typeId("Colour"), -1, "an enumeration"),
        argument("Flags", structures.typeId("DeviceFlags"), -1, "an option set"),
        argument("Values", double, 1, "an array"),
      ],
      [
        argument("Point", structures.typeId("Point")),
        argument("Colour", structures.typeId("Colour")),
        argument("Flags", structures.typeId("DeviceFlags")),
        argument("Values", double, 1),
      ],
      echo,
    ],
    [
      "SlowFor",
      [argument("Milliseconds", DataType.UInt32, -1, "ten minutes at most")],
      [argument("Milliseconds", DataType.UInt32)],
      ([asked]) => {
        const milliseconds = Math.min(asked.value, longestMilliseconds);
        return wait(milliseconds).then(() => good([{ dataType: DataType.UInt32, value: milliseconds }]));
      },
    ],
    [
      "Slow",
      [],
      [argument("Milliseconds", DataType.UInt32)],
      () => wait(slowMilliseconds).then(() => good([{ dataType: DataType.UInt32, value: slowMilliseconds }])),
    ],
  ];
}

/** Methods whose property InputArguments says something else than what they take: two Doubles. */
function addMisdescribed(b, owner, structures) {
  const double = DataType.Double;
  const taken = [argument("A", double), argument("B", double)];
  const described = {
    TooFew: [argument("A", double)],
    TooMany: [...taken, argument("C", double)],
    UnknownType: [argument("A", double), argument("B", structures.unknownTypeId())],
  };
  for (const [name, inputArguments] of Object.entries(described)) {
    const method = b.demo.addMethod(owner, {
      nodeId: `s=Methods.${name}`,
      browseName: name,
      inputArguments: taken,
      outputArguments: [argument("Sum", double)],
    });
    const real = method.getInputArguments();
    method.getInputArguments = () => real;
    method.inputArguments.setValueFromSource({
      dataType: DataType.ExtensionObject,
      arrayType: ua.VariantArrayType.Array,
      value: inputArguments.map(
        (each) => new ua.Argument({ ...each, dataType: ua.resolveNodeId(each.dataType) }),
      ),
    });
    bind(method, ([a, c]) => good([{ dataType: double, value: a.value + c.value }]));
  }
}

export function addMethods(b, structures) {
  const owner = b.demo.addObject({ nodeId: "s=Methods", browseName: "Methods", organizedBy: b.root });
  for (const [name, inputArguments, outputArguments, run] of table(structures)) {
    const options = { nodeId: `s=Methods.${name}`, browseName: name, inputArguments, outputArguments };
    bind(b.demo.addMethod(owner, options), run);
  }
  addMisdescribed(b, owner, structures);
  const locked = b.demo.addMethod(owner, { nodeId: "s=Methods.NotExecutable", browseName: "NotExecutable" });
  bind(locked, () => good());
  locked._getExecutableFlag = () => false; // the option of this name has no effect
}
