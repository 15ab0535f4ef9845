// The device-integration space: DeviceSet with five devices of two types, what they hold and what they do.

import { scalar } from "./builder.mjs";
import { DeviceFile } from "./devicefile.mjs";
import { DeviceLock, describeLocks } from "./devicelocks.mjs";
import { commonGroups, devices, types } from "./devicetable.mjs";
import { DeviceTransfer } from "./devicetransfer.mjs";
import { argument, bind, good } from "./methods.mjs";
import { drawPdf } from "./pdf.mjs";
import { drawPng } from "./png.mjs";
import { DataType, StatusCodes, ua } from "./ua.mjs";

const healthChanges = 4000;
const healthStates = 5;
const valueChanges = 500;
const folderType = "FolderType";
const localized = new Set(["Manufacturer", "Model", "ComponentName"]);

/** Everything that all devices of one server need. */
class DeviceSpace {
  constructor(b, administrator) {
    Object.assign(this, { b, administrator });
    this.types = new Map();
    this.set = this.standard("DeviceSet");
  }

  /** A name of the standard's model. */
  name(text) {
    return { namespaceIndex: this.b.di.index, name: text };
  }

  standard(text) {
    return this.b.space.rootFolder.objects.getFolderElementByName(text, this.b.di.index);
  }

  typeOf(text) {
    return this.b.space.findObjectType(text, this.b.di.index);
  }

  /** An object with an id below that of its owner. */
  object(owner, text, browseName, more = {}) {
    return this.b.devices.addObject({
      nodeId: `s=${owner.nodeId.value}.${text}`,
      browseName,
      componentOf: owner,
      ...more,
    });
  }

  constant(owner, text, dataType, value, more = {}) {
    return this.b.property(`${owner.nodeId.value}.${text}`, owner, dataType, value, {
      namespace: this.b.devices,
      name: this.name(text),
      ...more,
    });
  }

  group(owner, text) {
    const isCommon = commonGroups.includes(text);
    return this.object(
      owner,
      `Group.${text}`,
      isCommon ? this.name(text) : { namespaceIndex: this.b.devices.index, name: text },
      { typeDefinition: this.typeOf("FunctionalGroupType") },
    );
  }
}

// ---- parameters

function variableOf(space, owner, set, text, { dataType, value, unit, range, choices, chosen, ...row }) {
  const more = row.modellingRule ? { modellingRule: row.modellingRule } : {};
  const accessLevel = row.isReadOnly ? "CurrentRead" : "CurrentRead | CurrentWrite";
  const common = {
    nodeId: `s=${owner.nodeId.value}.${text}`,
    browseName: text,
    componentOf: set,
    accessLevel,
    userAccessLevel: accessLevel,
    minimumSamplingInterval: 100,
    ...more,
  };
  const { devices: namespace } = space.b;
  if (choices) return namespace.addMultiStateDiscrete({ ...common, enumStrings: choices, value: chosen });
  if (range) {
    const analog = { ...common, dataType, value, engineeringUnitsRange: range, engineeringUnits: unit };
    return namespace.addAnalogDataItem(analog);
  }
  const node = namespace.addVariable({ ...common, dataType, valueRank: value.arrayType ? 1 : -1 });
  node.setValueFromSource(value);
  return node;
}

/** Refuses what the device would not take: values out of range, and those of others while it is locked. */
function guard(node, lock, range) {
  const write = node.writeAttribute.bind(node);
  const refusalOf = (context, { attributeId, value }) => {
    if (attributeId !== ua.AttributeIds.Value) return null;
    if (lock.isHeldByAnother(context.session)) return StatusCodes.BadLocked;
    const number = value.value?.value;
    return range && (number < range.low || number > range.high) ? StatusCodes.BadOutOfRange : null;
  };
  node.writeAttribute = (context, request, ...rest) => {
    const refusal = refusalOf(context, request);
    if (refusal) return rest.at(-1)(null, refusal);
    lock.touch(context.session);
    return write(context, request, ...rest);
  };
}

/** The parameter set of a type or of a device, and the groups in which its parameters stand. */
function addParameters(space, owner, type, values = {}, modellingRule = undefined) {
  const set = space.object(owner, "ParameterSet", space.name("ParameterSet"), { modellingRule });
  const groups = new Map();
  const nodes = new Map();
  for (const [text, row] of Object.entries(type.parameters)) {
    const value = values[text] ?? row.value;
    const node = variableOf(space, owner, set, text, { ...row, value, modellingRule });
    nodes.set(text, node);
    for (const name of row.groups) {
      if (!groups.has(name)) groups.set(name, space.group(owner, name));
      groups.get(name).addReference({ referenceType: "Organizes", nodeId: node });
    }
  }
  return { groups, nodes };
}

/** Values that the process changes, and the counters that follow them. */
function addProcess(space, type, nodes) {
  const moving = Object.entries(type.parameters).filter(([, row]) => row.at);
  space.b.every(valueChanges, () => {
    for (const [text, row] of moving)
      nodes.get(text).setValueFromSource(scalar(DataType.Double, row.at(Date.now())));
  });
}

// ---- methods

const steps = {
  SelfTest: () => good([{ dataType: DataType.String, value: "passed" }]),
  ResetStatistics: (nodes) => {
    nodes.get("Restarts").setValueFromSource(scalar(DataType.UInt32, 0));
    return good();
  },
  Start: (nodes) => {
    const starts = nodes.get("Starts");
    starts.setValueFromSource(scalar(DataType.UInt32, starts.readValue().value.value + 1));
    return good();
  },
  Stop: () => good(),
};
const outputs = { SelfTest: [argument("Result", DataType.String)] };

function addMethods(space, device, type, { groups, nodes }, lock) {
  const set = space.object(device, "MethodSet", space.name("MethodSet"));
  for (const [text, group] of Object.entries(type.methods)) {
    const method = space.b.devices.addMethod(set, {
      nodeId: `s=${device.nodeId.value}.${text}`,
      browseName: text,
      inputArguments: [],
      outputArguments: outputs[text] ?? [],
    });
    groups.get(group).addReference({ referenceType: "Organizes", nodeId: method });
    bind(method, (_inputs, _object, session) => {
      if (lock.isHeldByAnother(session)) return { statusCode: StatusCodes.BadLocked, outputArguments: [] };
      lock.touch(session);
      return steps[text](nodes);
    });
  }
}

// ---- nameplate, health, documents

function addNameplate(space, device, nameplate, identification) {
  for (const [text, value] of Object.entries(nameplate)) {
    const type = typeof value === "number" ? "Int32" : localized.has(text) ? "LocalizedText" : "String";
    const content = type === "LocalizedText" ? new ua.LocalizedText({ locale: "en", text: value }) : value;
    const node = space.constant(device, text, type, scalar(DataType[type], content));
    identification.addReference({ referenceType: "Organizes", nodeId: node });
  }
}

function addHealth(space, device, health, nodes) {
  const node = space.b.variable(`${device.nodeId.value}.DeviceHealth`, device, undefined, undefined, {
    namespace: space.b.devices,
    name: space.name("DeviceHealth"),
    dataType: space.b.space.findDataType("DeviceHealthEnumeration", space.b.di.index).nodeId,
    accessLevel: "CurrentRead",
    userAccessLevel: "CurrentRead",
  });
  const set = (value) => node.setValueFromSource(scalar(DataType.Int32, value));
  set(typeof health === "number" ? health : 0);
  let state = 0;
  if (health === "changes") {
    space.b.every(healthChanges, () => {
      state = (state + 1) % healthStates;
      set(state);
    });
  }
  if (health === "simulated")
    nodes.get("SimulatedHealth").on("value_changed", ({ value }) => set(value.value));
}

const square = (size, colour) =>
  drawPng(size, (x, y) => {
    const isEdge = Math.min(x, y, size - 1 - x, size - 1 - y) < size / 8;
    return isEdge ? colour : [colour[0], colour[1], colour[2], 120];
  });

const bytes = (content) => scalar(DataType.ByteString, Buffer.from(content));

function addDocument(space, owner, folder, text, dataType, value) {
  const parent =
    owner.getComponentByName(folder, space.b.di.index) ??
    space.object(owner, folder, space.name(folder), { typeDefinition: folderType });
  space.b.variable(`${owner.nodeId.value}.${folder}.${text}`, parent, dataType, value, {
    namespace: space.b.devices,
    name: text,
    accessLevel: "CurrentRead",
    userAccessLevel: "CurrentRead",
  });
}

/** Those of a type hold for all its devices; those of a device are its own. */
function addDocuments(space, owner, model) {
  const manual = drawPdf([`Manual of ${model}`, "Written for the demo server."]);
  const add = (...document) => addDocument(space, owner, ...document);
  add("Documentation", "Manual.pdf", "ByteString", bytes(manual));
  add("Documentation", "Notes.txt", "ByteString", bytes(`Notes on ${model}\nCheck the seal once a year.\n`));
  add("ProtocolSupport", "Description.xml", "ByteString", bytes(`<device model="${model}"/>\n`));
  add("ImageSet", "Wiring.png", "ImagePNG", bytes(square(96, [30, 30, 30, 255])));
}

/** Longer than what the file gives at once. */
function addRecords(space, device) {
  const lines = Array.from({ length: 100 }, (_, at) => `Record ${at + 1}: zero checked, no deviation\n`);
  const folder = device.getComponentByName("Documentation", space.b.di.index);
  const id = `s=${device.nodeId.value}.Documentation.Records.txt`;
  new DeviceFile(space.b, folder, id, "Records.txt", lines.join(""));
}

// ---- types, devices, network

function addType(space, text, type) {
  const node = space.b.devices.addObjectType({
    nodeId: `s=${text}`,
    browseName: text,
    subtypeOf: space.typeOf("DeviceType"),
  });
  const icon = { name: { namespaceIndex: 0, name: "Icon" } };
  space.constant(node, "Icon", "ImagePNG", bytes(square(16, type.colour)), icon);
  addDocument(space, node, "DeviceTypeImage", "Picture.png", "ImagePNG", bytes(square(128, type.colour)));
  addParameters(space, node, type, {}, "Optional");
  space.types.set(text, node);
}

/** A module that a device holds, with a short nameplate and no parameters. */
function addModule(space, device, text) {
  const place = space.object(device, "SubDevices", space.name("SubDevices"), {
    typeDefinition: space.typeOf("ConfigurableObjectType"),
  });
  const supported = { typeDefinition: folderType };
  const types = space.object(place, "SupportedTypes", space.name("SupportedTypes"), supported);
  types.addReference({ referenceType: "Organizes", nodeId: space.moduleType });
  const module = space.object(device, text, text, {
    componentOf: place,
    typeDefinition: space.moduleType,
  });
  const identification = space.group(module, "Identification");
  const nameplate = { Manufacturer: "Korvanda", Model: "EN 1024", SerialNumber: "E-5501" };
  addNameplate(space, module, nameplate, identification);
}

function addDevice(space, text, row) {
  const type = types[row.type];
  const device = space.object(space.set, text, text, {
    nodeId: `s=${text}`,
    typeDefinition: space.types.get(row.type),
  });
  const lock = new DeviceLock(space.b, device, space.administrator);
  const parts = addParameters(space, device, type, row.values);
  if (!parts.groups.has("Identification"))
    parts.groups.set("Identification", space.group(device, "Identification"));
  for (const [name, node] of parts.nodes) guard(node, lock, type.parameters[name].range);
  addNameplate(space, device, row.nameplate, parts.groups.get("Identification"));
  addProcess(space, type, parts.nodes);
  addMethods(space, device, type, parts, lock);
  addHealth(space, device, row.health, parts.nodes);
  if (row.hasDocuments) {
    addDocuments(space, device, row.nameplate.Model);
    addRecords(space, device);
  }
  if (row.module) addModule(space, device, row.module);
  if (row.isTransferred)
    new DeviceTransfer(space.b, device, lock, [...parts.nodes.values()], row.transferFailsAfter);
  return device;
}

/** A network, and the port by which a device is on it. */
function addNetwork(space, onIt) {
  const { b } = space;
  const portType = b.devices.addObjectType({
    nodeId: "s=FieldbusPortType",
    browseName: "FieldbusPortType",
    subtypeOf: space.typeOf("ConnectionPointType"),
  });
  const network = space.object(space.standard("NetworkSet"), "Fieldbus", "Fieldbus", {
    nodeId: "s=Fieldbus",
    typeDefinition: space.typeOf("NetworkType"),
  });
  for (const [at, device] of onIt.entries()) {
    const port = space.object(device, "Port", "Port", { typeDefinition: portType });
    const address = space.object(port, "NetworkAddress", space.name("NetworkAddress"), {
      typeDefinition: space.typeOf("FunctionalGroupType"),
    });
    space.constant(address, "Station", "Byte", scalar(DataType.Byte, 10 + at), { name: "Station" });
    const connects = b.space.findReferenceType("ConnectsTo", b.di.index);
    network.addReference({ referenceType: connects, nodeId: port });
  }
  space.standard("DeviceTopology").addReference({ referenceType: "Organizes", nodeId: network });
}

/** @param administrator the user who may break locks of others */
export function addDevices(b, administrator) {
  const space = new DeviceSpace(b, administrator);
  for (const [text, type] of Object.entries(types)) addType(space, text, type);
  addDocuments(space, space.types.get("DriveType"), "FD 75");
  space.moduleType = b.devices.addObjectType({
    nodeId: "s=ModuleType",
    browseName: "ModuleType",
    subtypeOf: space.typeOf("ComponentType"),
  });
  const onNetwork = [];
  for (const [text, row] of Object.entries(devices)) {
    const device = addDevice(space, text, row);
    if (row.isOnNetwork) onNetwork.push(device);
  }
  addNetwork(space, onNetwork);
  describeLocks(b);
}
