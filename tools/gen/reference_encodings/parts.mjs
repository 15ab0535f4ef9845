// What the messages of messages.txt have in common: headers, moments in time, short ways to write values.

import { ua } from "./types.mjs";

export const time = new Date("2020-01-01T00:00:00.000Z");
export const later = new Date("2020-01-01T00:00:01.234Z");

export const authenticationToken = new ua.NodeId(
  ua.NodeIdType.BYTESTRING,
  Buffer.from("00112233445566778899aabbccddeeff", "hex"),
  0,
);
export const node = (text) => ua.coerceNodeId(text);
export const variant = (dataType, value, more = {}) =>
  new ua.Variant({ dataType: ua.DataType[dataType], value, ...more });
export const array = (dataType, value) => variant(dataType, value, { arrayType: ua.VariantArrayType.Array });

export function requestHeader(handle) {
  return new ua.RequestHeader({
    authenticationToken,
    timestamp: time,
    requestHandle: handle,
    returnDiagnostics: 0x3ff,
    auditEntryId: "audit",
    timeoutHint: 10000,
    additionalHeader: null,
  });
}

export function responseHeader(handle, more = {}) {
  return new ua.ResponseHeader({
    timestamp: later,
    requestHandle: handle,
    serviceResult: ua.StatusCodes.Good,
    serviceDiagnostics: new ua.DiagnosticInfo({}),
    stringTable: [],
    additionalHeader: null,
    ...more,
  });
}
