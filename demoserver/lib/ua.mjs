// The library is CommonJS, and a static import does not see all of its names: this is the one place that loads it.

import { webcrypto } from "node:crypto";
import { createRequire } from "node:module";

globalThis.crypto ??= webcrypto; // Node.js 18 keeps it out of the global scope

const require = createRequire(import.meta.url);

export const ua = require("node-opcua");
export const pki = require("node-opcua-crypto");
export const { EnumDefinition } = require("node-opcua-types");
export const { DataType, StatusCodes, Variant, VariantArrayType } = ua;

/** The namespaces of our own, in the order of their indices from 2 on. */
export const namespaces = {
  demo: "urn:korvanda:tavelin:demo",
  structures: "urn:korvanda:tavelin:demo/structures",
  many: "urn:korvanda:tavelin:demo/many",
};

export const applicationUri = "urn:korvanda:tavelin:demoserver";
