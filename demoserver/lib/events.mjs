// What the library does not have: a condition that asks, a history of events, and event types by the hundred.

import { createRequire } from "node:module";

import { array, scalar } from "./builder.mjs";
import { DataType, StatusCodes, ua } from "./ua.mjs";

const require = createRequire(import.meta.url);
const { extractEventFields } = require("node-opcua-service-filter");
const {
  HistoryEvent,
  HistoryEventFieldList,
  HistoryReadResult,
  ReadEventDetails,
} = require("node-opcua-types");

export const eventTypeCount = 500;
const eventsKept = 2000;
const hour = 3600_000;
const pastInterval = 10_000;

const text = (value) => new ua.LocalizedText({ locale: "en", text: value });

// ---- the condition that asks

const choices = ["Yes", "No", "Ask me later"];

/** Asks when Plant.Ask is called, until it is answered. */
export function addDialog(b, plant) {
  const desk = b.demo.addObject({
    nodeId: "s=Plant.Desk",
    browseName: "Desk",
    componentOf: plant,
    eventSourceOf: plant,
    eventNotifier: 1,
  });
  const dialog = b.demo.instantiateCondition("DialogConditionType", {
    nodeId: "s=Plant.Dialog",
    browseName: "Dialog",
    conditionName: "Dialog",
    conditionSource: desk,
    componentOf: plant,
  });
  dialog.prompt.setValueFromSource(scalar(DataType.LocalizedText, text("Shall the next batch be started?")));
  dialog.responseOptionSet.setValueFromSource(array(DataType.LocalizedText, choices.map(text)));
  for (const [name, value] of [
    ["defaultResponse", 0],
    ["okResponse", 0],
    ["cancelResponse", 1],
    ["lastResponse", -1],
  ])
    dialog[name].setValueFromSource(scalar(DataType.Int32, value));

  let isAsking = false;
  const tell = (message) => {
    dialog.dialogState.setValueFromSource(
      scalar(DataType.LocalizedText, text(isAsking ? "Active" : "Inactive")),
    );
    dialog.dialogState.id.setValueFromSource(scalar(DataType.Boolean, isAsking));
    dialog.raiseNewCondition({ message, severity: 400, retain: isAsking });
  };
  const ask = () => {
    isAsking = true;
    tell("An answer is needed");
  };
  const respond = (inputArguments, context, callback) => {
    const response = inputArguments[0].value;
    const answer = (statusCode) => callback(null, { statusCode });
    if (!isAsking) return answer(StatusCodes.BadDialogNotActive);
    if (response < 0 || response >= choices.length) return answer(StatusCodes.BadDialogResponseInvalid);
    isAsking = false;
    dialog.lastResponse.setValueFromSource(scalar(DataType.Int32, response));
    tell(`Answered: ${choices[response]}`);
    return answer(StatusCodes.Good);
  };
  // by the method of the type, as clients call it, and by that of the condition
  b.space.findNode("i=9069").bindMethod(respond);
  dialog.respond.bindMethod(respond);
  b.demo
    .addMethod(plant, { nodeId: "s=Plant.Ask", browseName: "Ask", inputArguments: [], outputArguments: [] })
    .bindMethod((inputArguments, context, callback) => {
      ask();
      callback(null, { statusCode: StatusCodes.Good });
    });
}

// ---- history

/** The object answers with the events that it has raised, and with those of an hour before the start. */
export function addEventHistory(b, plant, type, dataOf) {
  const kept = [];
  const keep = (time, event) => {
    kept.push({ time, event });
    if (kept.length > eventsKept) kept.shift();
  };
  const now = Date.now();
  for (let ago = hour; ago > 0; ago -= pastInterval) {
    const time = new Date(now - ago);
    const data = { ...dataOf(Math.round((hour - ago) / pastInterval)), $eventDataSource: type };
    data.sourceNode = scalar(DataType.NodeId, plant.nodeId);
    data.time = scalar(DataType.DateTime, time);
    keep(time, b.space.constructEventData(type, data));
  }
  plant.on("event", (event) => keep(new Date(), event));

  const points = new Map();
  let lastPoint = 0;
  const answer = (statusCode) => new HistoryReadResult({ statusCode });
  plant.historyRead = async (context, details, indexRange, dataEncoding, continuation) => {
    if (!(details instanceof ReadEventDetails)) return answer(StatusCodes.BadHistoryOperationUnsupported);
    const { startTime: start, endTime: end, numValuesPerNode, filter } = details;
    let found;
    if (continuation?.continuationPoint?.length) {
      const key = continuation.continuationPoint.toString();
      found = points.get(key);
      points.delete(key);
      if (!found) return answer(StatusCodes.BadContinuationPointInvalid);
      if (continuation.releaseContinuationPoints) return answer(StatusCodes.Good);
    } else {
      const isWithin = ({ time }) => (!start || time >= start) && (!end || time <= end);
      found = kept.filter(isWithin);
    }
    const page = numValuesPerNode > 0 ? found.slice(0, numValuesPerNode) : found;
    const fieldsOf = ({ event }) =>
      new HistoryEventFieldList({
        eventFields: extractEventFields(ua.SessionContext.defaultContext, filter.selectClauses ?? [], event),
      });
    const result = new HistoryReadResult({
      statusCode: StatusCodes.Good,
      historyData: new HistoryEvent({ events: page.map(fieldsOf) }),
    });
    if (page.length < found.length) {
      lastPoint += 1;
      result.continuationPoint = Buffer.from(String(lastPoint));
      points.set(String(lastPoint), found.slice(page.length));
    }
    return result;
  };
}

// ---- types

export function addManyEventTypes(b, parent) {
  for (let i = 0; i < eventTypeCount; ++i) {
    const number = String(i).padStart(3, "0");
    const type = b.many.addEventType({
      nodeId: `i=${200_000 + i}`,
      browseName: `Recipe${number}EventType`,
      subtypeOf: parent,
    });
    b.many.addVariable({
      nodeId: `i=${210_000 + i}`,
      browseName: `Recipe${number}`,
      dataType: "String",
      propertyOf: type,
      typeDefinition: "PropertyType",
      modellingRule: "Mandatory",
    });
  }
}
