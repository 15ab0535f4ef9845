// Names that the XML form of values uses.
#pragma once

#include <string_view>

namespace uabase {

constexpr std::string_view xmlTypesNamespace = "http://opcfoundation.org/UA/2008/02/Types.xsd";
constexpr std::string_view xmlSchemaNamespace = "http://www.w3.org/2001/XMLSchema-instance";

} // namespace uabase
