// What the devices are and hold, as tables: two types with the parameters of each, and the five devices.

import { scalar, array } from "./builder.mjs";
import { DataType, ua } from "./ua.mjs";

const { degree_celsius, kelvin, second, revolutions_per_minute, ampere, percent } = ua.standardUnits;
const hour = ua.makeEUInformation("HUR", "h", "hour");

const number = (value, unit, low, high) => ({
  dataType: "Double",
  value: scalar(DataType.Double, value),
  unit,
  range: { low, high },
});
const text = (value) => ({ dataType: "String", value: scalar(DataType.String, value) });
const count = (value) => ({ dataType: "UInt32", value: scalar(DataType.UInt32, value), isReadOnly: true });
const choice = (choices, chosen) => ({ choices, chosen });
const readOnly = { isReadOnly: true };

/** The functional groups that every model has; another name is a group of the device's own. */
export const commonGroups = [
  "Identification",
  "Configuration",
  "Tuning",
  "Maintenance",
  "Diagnostics",
  "Statistics",
  "Status",
  "Operational",
  "OperationCounters",
];

const wave = (middle, swing, seconds) => (now) =>
  middle + swing * Math.sin((now / 1000 / seconds) * 2 * Math.PI);

/** Parameters by name; `groups` lists where each stands. */
const transmitter = {
  Tag: { ...text(""), groups: ["Identification", "Configuration"] },
  SensorType: { ...choice(["Pt100", "Pt1000", "Type K"], 0), groups: ["Configuration"] },
  LowerRange: { ...number(0, degree_celsius, -200, 850), groups: ["Configuration"] },
  UpperRange: { ...number(100, degree_celsius, -200, 850), groups: ["Configuration"] },
  Damping: { ...number(1, second, 0, 60), groups: ["Configuration", "Tuning"] },
  Offset: { ...number(0, kelvin, -10, 10), groups: ["Tuning"] },
  Linearization: {
    dataType: "Double",
    value: array(DataType.Double, new Float64Array([0, 25, 50, 75, 100])),
    groups: ["Characteristic"],
  },
  Temperature: {
    ...number(20, degree_celsius, -200, 850),
    ...readOnly,
    groups: ["Operational", "Status"],
    at: wave(60, 25, 30),
  },
  ElectronicsTemperature: {
    ...number(35, degree_celsius, -40, 85),
    ...readOnly,
    groups: ["Diagnostics"],
    at: wave(35, 2, 60),
  },
  Restarts: { ...count(0), groups: ["Statistics"] },
  PowerOnDuration: { ...number(0, hour, 0, 1e6), ...readOnly, groups: ["OperationCounters"] },
  NextCalibration: {
    dataType: "DateTime",
    value: scalar(DataType.DateTime, new Date("2027-01-01T00:00:00Z")),
    groups: ["Maintenance"],
  },
};

const drive = {
  SetSpeed: { ...number(0, revolutions_per_minute, 0, 3000), groups: ["Operational"] },
  Speed: {
    ...number(0, revolutions_per_minute, 0, 3000),
    ...readOnly,
    groups: ["Operational", "Status"],
    at: wave(1450, 10, 10),
  },
  Current: {
    ...number(0, ampere, 0, 40),
    ...readOnly,
    groups: ["Status", "Diagnostics"],
    at: wave(12, 1.5, 7),
  },
  Load: { ...number(0, percent, 0, 120), ...readOnly, groups: ["Diagnostics"], at: wave(55, 20, 20) },
  RampUp: { ...number(5, second, 0.1, 600), groups: ["Tuning"] },
  RampDown: { ...number(5, second, 0.1, 600), groups: ["Tuning"] },
  Direction: { ...choice(["forward", "reverse"], 0), groups: ["Configuration"] },
  RatedCurrent: { ...number(16, ampere, 0.5, 40), groups: ["Configuration", "Motor"] },
  PolePairs: { dataType: "Byte", value: scalar(DataType.Byte, 2), groups: ["Motor"] },
  Starts: { ...count(0), groups: ["OperationCounters"] },
  SimulatedHealth: {
    ...choice(["NORMAL", "FAILURE", "CHECK_FUNCTION", "OFF_SPEC", "MAINTENANCE_REQUIRED"], 0),
    groups: ["Maintenance"],
    isHealth: true,
  },
};

export const types = {
  TemperatureTransmitterType: {
    parameters: transmitter,
    methods: { SelfTest: "Diagnostics", ResetStatistics: "Statistics" },
    colour: [200, 60, 40, 255],
  },
  DriveType: {
    parameters: drive,
    methods: { Start: "Operational", Stop: "Operational" },
    colour: [40, 90, 170, 255],
  },
};

const nameplate = (model, serial, more = {}) => ({
  Manufacturer: "Korvanda",
  Model: model,
  HardwareRevision: "B",
  SoftwareRevision: "2.4.1",
  DeviceRevision: "3",
  DeviceManual: "urn:korvanda:manuals",
  SerialNumber: serial,
  RevisionCounter: 1,
  ...more,
});

const full = (model, serial, tag, place) =>
  nameplate(model, serial, {
    ManufacturerUri: "urn:korvanda",
    ProductCode: `KV-${model.slice(0, 2).toUpperCase()}`,
    DeviceClass: "Field device",
    ProductInstanceUri: `urn:korvanda:${serial}`,
    AssetId: tag,
    ComponentName: place,
  });

/** `values` differ from the type's; `health` is a number of the enumeration, or "changes" or "simulated". */
export const devices = {
  "TT-101": {
    type: "TemperatureTransmitterType",
    nameplate: full("TX 40", "4711-001", "TT-101", "Reactor 1, jacket"),
    values: { Tag: text("TT-101").value, Damping: scalar(DataType.Double, 2.5), Restarts: count(7).value },
    health: "changes",
    hasDocuments: true,
    isTransferred: true,
  },
  "TT-102": {
    type: "TemperatureTransmitterType",
    nameplate: nameplate("TX 40", "4711-002"),
    values: { Tag: text("TT-102").value },
    health: 4,
    isTransferred: true,
    transferFailsAfter: 5,
  },
  "TT-103": {
    type: "TemperatureTransmitterType",
    nameplate: full("TX 20", "3809-114", "TT-103", "Reactor 2, jacket"),
    values: { Tag: text("TT-103").value, UpperRange: scalar(DataType.Double, 400) },
    health: 3,
  },
  "M-201": {
    type: "DriveType",
    nameplate: full("FD 75", "88-20431", "M-201", "Stirrer of reactor 1"),
    values: { SetSpeed: scalar(DataType.Double, 1450), Starts: count(312).value },
    health: "simulated",
    isOnNetwork: true,
    module: "Encoder",
  },
  "M-202": {
    type: "DriveType",
    nameplate: full("FD 75", "88-20432", "M-202", "Stirrer of reactor 2"),
    values: { RampUp: scalar(DataType.Double, 12) },
    health: 1,
  },
};
