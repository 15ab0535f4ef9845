// Definitions of the standard's own data types, and definitions made from a server's DataTypeDefinition
// attribute.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <functional>
#include <string_view>

/// By data type id or binary encoding id; null when it is no structure of namespace 0. Thread-safe.
[[nodiscard]] UaStructureDefinition uaNamespaceZeroStructure(const UaNodeId& dataTypeOrEncodingId);
/// Null when it is no enumeration of namespace 0. Thread-safe.
[[nodiscard]] UaEnumDefinition uaNamespaceZeroEnum(const UaNodeId& dataTypeId);
/// Null when it is no option set of namespace 0. Thread-safe.
[[nodiscard]] UaOptionSetDefinition uaNamespaceZeroOptionSet(const UaNodeId& dataTypeId);
/// The wire type of a data type of namespace 0: its own for built-in types, Double for Duration, Int32 for
/// enumerations, ExtensionObject for structures, Variant for abstract types; Null when unknown. Thread-safe.
[[nodiscard]] OpcUa_BuiltInType uaNamespaceZeroBuiltInType(const UaNodeId& dataTypeId);
/// The data type of namespace 0 with this name ("Range", "NodeClass", "Duration"); null when there is none.
/// Thread-safe.
[[nodiscard]] UaNodeId uaNamespaceZeroDataType(std::string_view name);

/// Tells the wire type of a data type of a server (uaNamespaceZeroBuiltInType's rule); Null when unknown.
using UaBuiltInTypeResolver = std::function<OpcUa_BuiltInType(const UaNodeId& dataTypeId)>;

/// From the DataTypeDefinition attribute (OPC 10000-3, 8.48). The encoding id of the attribute is kept;
/// fields that are structures are looked up when a body is decoded. A field whose type nobody knows leaves
/// the definition null.
[[nodiscard]] UaStructureDefinition uaStructureDefinition(const OpcUa_StructureDefinition& attribute,
                                                          const UaString& name, const UaNodeId& dataTypeId,
                                                          const UaBuiltInTypeResolver& resolver = {});
/// The same for an enumeration (OPC 10000-3, 8.50).
[[nodiscard]] UaEnumDefinition uaEnumDefinition(const OpcUa_EnumDefinition& attribute, const UaString& name,
                                                const UaNodeId& dataTypeId);
/// The same for an option set: its entries are bit numbers.
[[nodiscard]] UaOptionSetDefinition uaOptionSetDefinition(const OpcUa_EnumDefinition& attribute,
                                                          const UaString& name, const UaNodeId& dataTypeId,
                                                          OpcUa_BuiltInType builtInType);
