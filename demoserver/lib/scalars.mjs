// Folder Scalar: a variable of every built-in type, and the special cases of access, status and size.

import { builtInValues, scalar } from "./builder.mjs";
import { DataType, StatusCodes, ua } from "./ua.mjs";

function everyType(b, folder) {
  for (const [type, [value]] of Object.entries(builtInValues())) {
    b.variable(`Scalar.${type}`, folder, type, scalar(DataType[type], value));
  }
  b.variable("Scalar.Enumeration", folder, ua.coerceNodeId("i=852"), scalar(DataType.Int32, 1)); // ServerState
  b.variable("Scalar.Variant", folder, "BaseDataType", scalar(DataType.Int32, 42));
  b.variable("Scalar.Number", folder, "Number", scalar(DataType.Double, 0.5));
  b.variable("Scalar.Integer", folder, "Integer", scalar(DataType.Int16, -5));
  b.variable("Scalar.UInteger", folder, "UInteger", scalar(DataType.UInt32, 5));
  b.variable("Scalar.Duration", folder, "Duration", scalar(DataType.Double, 1500));
  b.variable(
    "Scalar.UtcTime",
    folder,
    "UtcTime",
    scalar(DataType.DateTime, new Date("2024-05-06T07:08:09Z")),
  );
  b.variable("Scalar.LocaleId", folder, "LocaleId", scalar(DataType.String, "de-DE"));
}

function access(b) {
  const folder = b.folder("Access");
  const levels = (accessLevel, userAccessLevel = accessLevel) => ({ accessLevel, userAccessLevel });
  const seven = scalar(DataType.Int32, 7);
  b.variable("Access.ReadOnly", folder, "Int32", seven, levels("CurrentRead"));
  b.variable("Access.WriteOnly", folder, "Int32", seven, levels("CurrentWrite"));
  b.variable("Access.None", folder, "Int32", seven, levels(""));
  b.variable(
    "Access.UserReadOnly",
    folder,
    "Int32",
    seven,
    levels("CurrentRead | CurrentWrite", "CurrentRead"),
  );
  b.variable(
    "Access.StatusWrite",
    folder,
    "Int32",
    seven,
    levels("CurrentRead | CurrentWrite | StatusWrite | TimestampWrite"),
  );
  b.variable("Access.RejectsWrites", folder, "Int32", undefined, {
    minimumSamplingInterval: 1000,
    value: { get: () => new ua.Variant(seven), set: () => StatusCodes.BadOutOfRange },
  });
}

function statuses(b) {
  const folder = b.folder("Status");
  const half = scalar(DataType.Double, 0.5);
  for (const name of [
    "BadSensorFailure",
    "BadCommunicationError",
    "UncertainLastUsableValue",
    "GoodLocalOverride",
  ]) {
    b.variable(`Status.${name}`, folder, "Double", half, { status: StatusCodes[name] });
  }
  b.variable("Status.WaitingForInitialData", folder, "Double", undefined);
  b.variable("Status.NullValue", folder, "BaseDataType", scalar(DataType.Null, null));
  b.variable("Status.NullString", folder, "String", scalar(DataType.String, null));
  b.variable("Status.NullByteString", folder, "ByteString", scalar(DataType.ByteString, null));
}

function texts(b) {
  const folder = b.folder("Text");
  const text = (name, value) => b.variable(`Text.${name}`, folder, "String", scalar(DataType.String, value));
  text("Long", "0123456789".repeat(100));
  text("VeryLong", "Tavelin ".repeat(12_500));
  text("Umlauts", "ÄÖÜ äöü ß – Straße, Größe, Übermaß");
  text("Scripts", "Ελληνικά, русский, עברית, العربية, 日本語, 한국어, 𝄞 😀");
  text("Lines", "first line\nsecond line\r\nthird line\twith a tab");
  text("Markup", "<b>not bold</b> &amp; <a href='x'>no link</a> %1 %s");
  text("Control", "bell \u0007, escape \u001b[31m, right-to-left \u202eabc");
  b.variable("Text.Größe µm²", folder, "Double", scalar(DataType.Double, 12.5));
  b.variable("Text.LongName", folder, "Int32", scalar(DataType.Int32, 1), {
    name: "AVariableWhoseNameIsLong".repeat(10),
  });
  b.variable("Text.BigBytes", folder, "ByteString", scalar(DataType.ByteString, Buffer.alloc(100_000, 0x5a)));
}

export function addScalars(b) {
  everyType(b, b.folder("Scalar"));
  access(b);
  statuses(b);
  texts(b);
}
