// Folder History: variables with an hour of past values, a second apart, that go on being recorded, the aggregates
// over them, and what the library does not answer itself: values at certain times, and values as they were before
// somebody changed them.

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
  [
    "Words",
    "String",
    (second) => ["idle", "heating", "full"][Math.floor(second / 90) % 3],
    () => StatusCodes.Good,
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

// ---- what the library leaves to its users

const modificationDistance = 600; // seconds

/** Every ten minutes an operator has replaced a value that was ten times too large. */
function modificationsOf(type, value, now) {
  const result = [];
  for (let second = now - pastSeconds; second < now; ++second) {
    if (second % modificationDistance !== 0) continue;
    const time = new Date(second * 1000);
    const right = value(second);
    const wrong = type === "Boolean" ? !right : type === "String" ? `${right}?` : right * 10;
    result.push({
      value: new ua.DataValue({
        value: scalar(DataType[type], wrong),
        sourceTimestamp: time,
        serverTimestamp: time,
      }),
      info: new ua.ModificationInfo({
        modificationTime: new Date((second + 30) * 1000),
        updateType: ua.HistoryUpdateType.Replace,
        userName: "operator",
      }),
    });
  }
  return result;
}

const historyOf = (data, statusCode = StatusCodes.Good) =>
  new ua.HistoryReadResult({ historyData: data, statusCode });

/** ReturnBounds makes no sense for modified values, and is refused. */
function readModified(modifications, details) {
  if (details.returnBounds) return historyOf(new ua.HistoryData({}), StatusCodes.BadInvalidArgument);
  const [from, to] = [details.startTime.getTime(), details.endTime.getTime()];
  const inRange = modifications.filter(({ value }) => {
    const time = value.sourceTimestamp.getTime();
    return time >= Math.min(from, to) && time <= Math.max(from, to);
  });
  if (from > to) inRange.reverse();
  return historyOf(
    new ua.HistoryModifiedData({
      dataValues: inRange.map((one) => one.value),
      modificationInfos: inRange.map((one) => one.info),
    }),
    inRange.length > 0 ? StatusCodes.Good : StatusCodes.GoodNoData,
  );
}

/** The value of the second that a time is in, with the time that was asked for; none before the record begins. */
function readAtTimes(type, value, status, details, begin) {
  const dataValues = (details.reqTimes ?? []).map((time) => {
    const second = Math.floor(time.getTime() / 1000);
    const isRecorded = second >= begin && time.getTime() <= Date.now();
    return new ua.DataValue({
      value: isRecorded ? scalar(DataType[type], value(second)) : undefined,
      statusCode: isRecorded ? status(second) : StatusCodes.BadNoData,
      sourceTimestamp: time,
      serverTimestamp: time,
    });
  });
  return historyOf(new ua.HistoryData({ dataValues }));
}

function answerTheRest(node, [, type, value, status], now) {
  const modifications = modificationsOf(type, value, now);
  node._historyReadModify = (context, details, range, encoding, continuation, callback) =>
    callback(null, readModified(modifications, details));
  const read = node._historyRead;
  node._historyRead = function (context, details, range, encoding, continuation, callback) {
    if (details instanceof ua.ReadAtTimeDetails)
      callback(null, readAtTimes(type, value, status, details, now - pastSeconds));
    else read.call(this, context, details, range, encoding, continuation, callback);
  };
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
  for (const variable of recorded) {
    const [name, type, value, status] = variable;
    const access = "CurrentRead | HistoryRead";
    const node = b.variable(`History.${name}`, folder, type, undefined, {
      accessLevel: access,
      userAccessLevel: access,
      historizing: true,
    });
    b.space.installHistoricalDataNode(node, { maxOnlineValues: keptValues });
    ua.installAggregateConfigurationOptions(node, { ...aggregates, stepped: type !== "Double" });
    fillPast(node, type, value, status, now);
    answerTheRest(node, variable, now);
    const record = () => {
      const second = Math.floor(Date.now() / 1000);
      node.setValueFromSource(scalar(DataType[type], value(second)), status(second));
    };
    record();
    b.every(1000, record);
  }
}
