"""Headers and tables of numbers with names: status codes, node ids, attributes."""

from text import begin, c_header, c_source

# OPC 10000-6, annex A.1
ATTRIBUTES = [
    "NodeId",
    "NodeClass",
    "BrowseName",
    "DisplayName",
    "Description",
    "WriteMask",
    "UserWriteMask",
    "IsAbstract",
    "Symmetric",
    "InverseName",
    "ContainsNoLoops",
    "EventNotifier",
    "Value",
    "DataType",
    "ValueRank",
    "ArrayDimensions",
    "AccessLevel",
    "UserAccessLevel",
    "MinimumSamplingInterval",
    "Historizing",
    "Executable",
    "UserExecutable",
    "DataTypeDefinition",
    "RolePermissions",
    "UserRolePermissions",
    "AccessRestrictions",
    "AccessLevelEx",
]


def status_header(schema):
    lines = [f"#define OpcUa_{name} 0x{code:08X}u" for name, code in schema.status_codes.items()]
    lines += [
        "",
        '/* "BadTimeout"; the information bits are ignored; null when the code has no name. */',
        "OPCUA_EXPORT const char* OpcUa_StatusCode_Name(OpcUa_StatusCode code);",
    ]
    return c_header("OPCUA_STATUSCODES_H", ["opcua_platform.h"], lines)


def status_source(schema):
    body = ["const StatusCodeName opcua_statusCodeNames[] = {"]
    body += [f'    {{0x{code:08X}u, "{name}"}},' for name, code in schema.status_codes.items()]
    body += ["};", f"const unsigned opcua_statusCodeNameCount = {len(schema.status_codes)}u;"]
    return c_source(["stack/encoding/nametables.h"], body)


def identifiers_header(schema):
    lines = [f"#define OpcUaId_{name} {number}" for name, number in schema.identifiers.items()]
    return begin() + "\n".join(
        ["#ifndef OPCUA_IDENTIFIERS_H", "#define OPCUA_IDENTIFIERS_H", ""] + lines + ["", "#endif", ""]
    )


def attributes_header(_schema):
    lines = [f"#define OpcUa_Attributes_{name} {number}" for number, name in enumerate(ATTRIBUTES, 1)]
    lines += [
        "",
        '/* "BrowseName"; null for a number that is no attribute. */',
        "OPCUA_EXPORT const char* OpcUa_AttributeId_Name(OpcUa_UInt32 attributeId);",
    ]
    return c_header("OPCUA_ATTRIBUTES_H", ["opcua_platform.h"], lines)


def attributes_source(_schema):
    body = ["const char* const opcua_attributeNames[] = {"]
    body += [f'    "{name}",' for name in ATTRIBUTES]
    body += ["};", f"const unsigned opcua_attributeNameCount = {len(ATTRIBUTES)}u;"]
    return c_source(["stack/encoding/nametables.h"], body)
