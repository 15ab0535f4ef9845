// Folder Dynamic: values that change by themselves, and the data access types (analog, two- and
// multi-state).

import { array, scalar } from "./builder.mjs";
import { DataType, ua } from "./ua.mjs";

const readOnly = { accessLevel: "CurrentRead", userAccessLevel: "CurrentRead" };
const fastCount = 100;
const words = ["idle", "starting", "läuft", "stopping", "Störung"];

/** A generator of its own keeps runs alike: the same seed gives the same walk. */
function makeRandom(seed) {
  let state = seed;
  return () => {
    state = (state * 1_664_525 + 1_013_904_223) >>> 0;
    return state / 2 ** 32;
  };
}

/** The changing variables: name, data type, milliseconds between changes, value by tick. */
function changing() {
  const random = makeRandom(42);
  const double = (f) => (n) => scalar(DataType.Double, f(n));
  return [
    ["Sine", "Double", 100, double((n) => 100 * Math.sin((2 * Math.PI * n) / 100))],
    ["Cosine", "Double", 250, double((n) => 100 * Math.cos((2 * Math.PI * n) / 40))],
    ["Ramp", "Double", 200, double((n) => n % 100)],
    ["Random", "Double", 500, double(() => random() * 100)],
    ["Counter", "UInt32", 1000, (n) => scalar(DataType.UInt32, n)],
    ["Counter64", "UInt64", 1000, (n) => scalar(DataType.UInt64, [1, n])],
    ["Text", "String", 1000, (n) => scalar(DataType.String, `${words[n % words.length]} ${n}`)],
    ["Toggle", "Boolean", 500, (n) => scalar(DataType.Boolean, n % 2 === 1)],
    ["Clock", "DateTime", 1000, () => scalar(DataType.DateTime, new Date())],
    [
      "Array",
      "Int32",
      500,
      (n) =>
        array(
          DataType.Int32,
          Int32Array.from({ length: 1 + (n % 8) }, (_, i) => n + i),
        ),
    ],
  ];
}

function addChanging(b, folder) {
  for (const [name, type, interval, value] of changing()) {
    const rank = name === "Array" ? { valueRank: 1, arrayDimensions: [0] } : {};
    const node = b.variable(`Dynamic.${name}`, folder, type, value(0), {
      ...readOnly,
      ...rank,
      minimumSamplingInterval: interval,
    });
    let tick = 0;
    b.every(interval, () => node.setValueFromSource(value(++tick)));
  }
}

function addQuality(b, folder) {
  const node = b.variable("Dynamic.Quality", folder, "Double", scalar(DataType.Double, 0), readOnly);
  const statuses = ["Good", "UncertainLastUsableValue", "BadSensorFailure"];
  let tick = 0;
  b.every(2000, () => {
    tick += 1;
    node.setValueFromSource(scalar(DataType.Double, tick), ua.StatusCodes[statuses[tick % statuses.length]]);
  });
}

function addFast(b, folder) {
  const parent = b.folder("Fast", { parent: folder });
  const nodes = Array.from({ length: fastCount }, (_, i) => {
    const id = `Fast.${String(i).padStart(3, "0")}`;
    return b.variable(id, parent, "Double", scalar(DataType.Double, 0), {
      ...readOnly,
      minimumSamplingInterval: 100,
    });
  });
  let tick = 0;
  b.every(100, () => {
    tick += 1;
    nodes.forEach((node, i) => node.setValueFromSource(scalar(DataType.Double, Math.sin((tick + i) / 10))));
  });
}

function addDataAccess(b) {
  const folder = b.folder("DataAccess");
  const at = (name) => ({ nodeId: `s=DataAccess.${name}`, browseName: name, componentOf: folder });
  b.demo.addAnalogDataItem({
    ...at("Temperature"),
    definition: "boiler / 4",
    valuePrecision: 0.5,
    engineeringUnitsRange: { low: -40, high: 120 },
    instrumentRange: { low: -100, high: 200 },
    engineeringUnits: ua.standardUnits.degree_celsius,
    dataType: "Double",
    value: scalar(DataType.Double, 21.5),
  });
  b.demo.addAnalogDataItem({
    ...at("Pressure"),
    engineeringUnitsRange: { low: 0, high: 16 },
    engineeringUnits: ua.standardUnits.bar,
    dataType: "Float",
    value: scalar(DataType.Float, 6.25),
  });
  b.demo.addTwoStateDiscrete({ ...at("Valve"), trueState: "open", falseState: "closed", value: true });
  b.demo.addMultiStateDiscrete({ ...at("Switch"), enumStrings: ["Off", "Auto", "Hand"], value: 1 });
  b.demo.addMultiStateValueDiscrete({
    ...at("Speed"),
    enumValues: [
      { displayName: "stopped", value: 0 },
      { displayName: "slow", value: 10 },
      { displayName: "fast", value: 100 },
    ],
    value: 10,
  });
}

export function addDynamic(b) {
  const folder = b.folder("Dynamic");
  addChanging(b, folder);
  addQuality(b, folder);
  addFast(b, folder);
  addDataAccess(b);
}
