// Folder History: variables with an hour of past values, a second apart, that go on being recorded, and the
// aggregates over them.

import { scalar } from "./builder.mjs";
import { DataType, StatusCodes, ua } from "./ua.mjs";

const pastSeconds = 3600;
const keptValues = 20_000;

/** The recorded variables: name, data type, value at a second, status at a second. */
const recorded = [
  ["Sine", "Double", (second) => 50 + 50 * Math.sin((2 * Math.PI * second) / 300), () => StatusCodes.Good],
  ["Steps", "Int32", (second) => Math.floor(second / 60) % 10, () => StatusCodes.Good],
  ["Switch", "Boolean", (second) => Math.floor(second / 120) % 2 === 1, () => StatusCodes.Good],
  [
    "Gaps",
    "Float",
    (second) => second % 600,
    (second) => (second % 600 < 60 ? StatusCodes.BadSensorFailure : StatusCodes.Good),
  ],
];

function fillPast(node, type, value, status, now) {
  for (let second = now - pastSeconds; second < now; ++second) {
    const time = new Date(second * 1000);
    const sample = {
      value: scalar(DataType[type], value(second)),
      statusCode: status(second),
      sourceTimestamp: time,
      serverTimestamp: time,
    };
    node.varHistorian.push(new ua.DataValue(sample));
  }
}

const aggregates = {
  treatUncertainAsBad: false,
  percentDataBad: 100,
  percentDataGood: 100,
  useSlopedExtrapolation: false,
};

export function addHistory(b) {
  ua.addAggregateSupport(b.space);
  const folder = b.folder("History");
  const now = Math.floor(Date.now() / 1000);
  for (const [name, type, value, status] of recorded) {
    const access = "CurrentRead | HistoryRead";
    const node = b.variable(`History.${name}`, folder, type, undefined, {
      accessLevel: access,
      userAccessLevel: access,
      historizing: true,
    });
    b.space.installHistoricalDataNode(node, { maxOnlineValues: keptValues });
    ua.installAggregateConfigurationOptions(node, { ...aggregates, stepped: type !== "Double" });
    fillPast(node, type, value, status, now);
    const record = () => {
      const second = Math.floor(Date.now() / 1000);
      node.setValueFromSource(scalar(DataType[type], value(second)), status(second));
    };
    record();
    b.every(1000, record);
  }
}
