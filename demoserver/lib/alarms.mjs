// Object Plant: an event source that fires every two seconds, and alarms to acknowledge and confirm.

import { scalar } from "./builder.mjs";
import { addDialog, addEventHistory, addManyEventTypes } from "./events.mjs";
import { DataType, ua } from "./ua.mjs";

const optionals = ["ConfirmedState", "Confirm", "AddComment"];

function addPlant(b) {
  const plant = b.demo.addObject({
    nodeId: "s=Plant",
    browseName: "Plant",
    organizedBy: b.root,
    notifierOf: b.space.rootFolder.objects.server,
    eventNotifier: 1 + 4, // events, and the history of them
  });
  return plant;
}

function addEvents(b, plant) {
  const type = b.demo.addEventType({ browseName: "BatchEventType", subtypeOf: "BaseEventType" });
  b.demo.addVariable({
    browseName: "BatchNumber",
    dataType: "UInt32",
    propertyOf: type,
    modellingRule: "Mandatory",
  });
  const dataOf = (batch) => ({
    message: scalar(DataType.LocalizedText, { locale: "en", text: `Batch ${batch} finished` }),
    severity: scalar(DataType.UInt16, 100 + (batch % 10) * 100),
    batchNumber: scalar(DataType.UInt32, batch),
  });
  addEventHistory(b, plant, type, dataOf);
  addManyEventTypes(b, type);
  let batch = 0;
  b.every(2000, () => {
    batch += 1;
    plant.raiseEvent(type, dataOf(batch));
  });
}

function input(b, plant, name, dataType, value) {
  return b.variable(`Plant.${name}`, plant, dataType, scalar(DataType[dataType], value), {
    eventSourceOf: plant,
  });
}

function common(name, source, plant, inputNode) {
  return {
    browseName: name,
    nodeId: `s=Plant.${name}`,
    conditionName: name,
    conditionSource: source,
    componentOf: plant,
    inputNode,
    optionals,
  };
}

function addAlarms(b, plant) {
  const limits = { highHighLimit: 90, highLimit: 80, lowLimit: 20, lowLowLimit: 10 };
  const level = input(b, plant, "Level", "Double", 50);
  b.demo.instantiateExclusiveLimitAlarm("ExclusiveLimitAlarmType", {
    ...common("LevelAlarm", level, plant, level),
    optionals: [...optionals, "ShelvingState"],
    maxTimeShelved: 3600 * 1000, // ms; without it the library cannot shelve once
    ...limits,
  });

  const heat = input(b, plant, "Heat", "Double", 50);
  b.demo.instantiateNonExclusiveLimitAlarm("NonExclusiveLimitAlarmType", {
    ...common("HeatAlarm", heat, plant, heat),
    ...limits,
  });

  const door = input(b, plant, "DoorOpen", "Boolean", false);
  const normal = b.property("Plant.DoorNormal", door, "Boolean", scalar(DataType.Boolean, false));
  b.demo.instantiateOffNormalAlarm({ ...common("DoorAlarm", door, plant, door), normalState: normal });
  return { level, heat, door };
}

/** Swings the inputs slowly through their limits; writing to Plant.Automatic stops it, for tests. */
function addSwing(b, plant, { level, heat, door }) {
  const automatic = b.variable("Plant.Automatic", plant, "Boolean", scalar(DataType.Boolean, true));
  let tick = 0;
  b.every(1000, () => {
    if (!automatic.readValue().value.value) return;
    tick += 1;
    level.setValueFromSource(scalar(DataType.Double, 50 + 45 * Math.sin(tick / 10)));
    heat.setValueFromSource(scalar(DataType.Double, 50 + 45 * Math.sin(tick / 7)));
    if (tick % 15 === 0) door.setValueFromSource(scalar(DataType.Boolean, (tick / 15) % 2 === 1));
  });
}

export function addAlarmsAndEvents(b) {
  // without it nobody answers ConditionRefresh, Acknowledge and the like
  b.space.installAlarmsAndConditionsService();
  const plant = addPlant(b);
  addEvents(b, plant);
  addDialog(b, plant);
  addSwing(b, plant, addAlarms(b, plant));
}
