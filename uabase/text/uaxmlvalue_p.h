// Names that the XML form of values uses.
#pragma once

#include <opcua/opcua_builtintypes.h>

#include <string_view>

namespace uabase {

constexpr std::string_view xmlTypesNamespace = "http://opcfoundation.org/UA/2008/02/Types.xsd";
constexpr std::string_view xmlSchemaNamespace = "http://www.w3.org/2001/XMLSchema-instance";

/// "Int32"; empty for what is no built-in type.
[[nodiscard]] std::string_view builtInName(OpcUa_BuiltInType type) noexcept;
/// The reverse; Null for another name.
[[nodiscard]] OpcUa_BuiltInType builtInTypeOf(std::string_view name) noexcept;

} // namespace uabase
