#include <tests/unit/stack/describe.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

namespace {

using Text = std::string;

void put(Text& out, const Text& path, const Text& text)
{
    out.append(out.empty() ? "" : " ").append(path).append("=").append(text);
}

Text join(const Text& path, std::string_view field)
{
    return path.empty() ? Text(field) : Text(path).append(".").append(field);
}

Text hexOf(const void* data, size_t size)
{
    Text hex;
    for (size_t i = 0; i < size; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<const unsigned char*>(data)[i]);
        hex += digits;
    }
    return hex;
}

Text quoted(const void* data, OpcUa_Int32 length)
{
    if (data == nullptr)
        return length == -1 ? "null" : "broken";
    Text text = "\"";
    for (const char c : std::string_view(static_cast<const char*>(data), static_cast<size_t>(length))) {
        const bool plain =
            std::isalnum(static_cast<unsigned char>(c)) != 0 || std::strchr("._:/-", c) != nullptr;
        if (plain && c != '\0')
            text += c;
        else
            text.append("%").append(hexOf(&c, 1));
    }
    return text + "\"";
}

Text bytesOf(const OpcUa_ByteString& value)
{
    if (value.Data == nullptr)
        return value.Length == -1 ? "null" : "broken";
    return Text("x").append(hexOf(value.Data, static_cast<size_t>(value.Length)));
}

template <typename T>
Text number(const void* value)
{
    char digits[64];
    return Text(digits, std::to_chars(digits, digits + sizeof digits, *static_cast<const T*>(value)).ptr);
}

Text statusText(OpcUa_StatusCode status)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", status);
    return text;
}

Text guidText(const OpcUa_Guid& value)
{
    char text[40];
    const OpcUa_Byte* const d = value.Data4;
    std::snprintf(text, sizeof text, "%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X", value.Data1,
                  value.Data2, value.Data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
    return text;
}

// The text of a type that has the one field "value".
Text simple(OpcUa_Byte type, const void* value)
{
    switch (type) {
    case OpcUaType_Boolean:
        return *static_cast<const OpcUa_Boolean*>(value) != 0 ? "true" : "false";
    case OpcUaType_SByte:
        return std::to_string(*static_cast<const OpcUa_SByte*>(value));
    case OpcUaType_Byte:
        return std::to_string(*static_cast<const OpcUa_Byte*>(value));
    case OpcUaType_Int16:
        return number<OpcUa_Int16>(value);
    case OpcUaType_UInt16:
        return number<OpcUa_UInt16>(value);
    case OpcUaType_Int32:
        return number<OpcUa_Int32>(value);
    case OpcUaType_UInt32:
        return number<OpcUa_UInt32>(value);
    case OpcUaType_Int64:
    case OpcUaType_DateTime:
        return number<OpcUa_Int64>(value);
    case OpcUaType_UInt64:
        return number<OpcUa_UInt64>(value);
    case OpcUaType_Float: {
        const double wide = *static_cast<const OpcUa_Float*>(value);
        return number<double>(&wide);
    }
    case OpcUaType_Double:
        return number<double>(value);
    case OpcUaType_String:
        return quoted(static_cast<const OpcUa_String*>(value)->Data,
                      static_cast<const OpcUa_String*>(value)->Length);
    case OpcUaType_XmlElement:
        return quoted(static_cast<const OpcUa_XmlElement*>(value)->Data,
                      static_cast<const OpcUa_XmlElement*>(value)->Length);
    case OpcUaType_ByteString:
        return bytesOf(*static_cast<const OpcUa_ByteString*>(value));
    case OpcUaType_Guid:
        return guidText(*static_cast<const OpcUa_Guid*>(value));
    case OpcUaType_StatusCode:
        return statusText(*static_cast<const OpcUa_StatusCode*>(value));
    default:
        return "unknown";
    }
}

Text stringText(const OpcUa_String& value)
{
    return quoted(value.Data, value.Length);
}

void describeTo(Text& out, const Text& path, OpcUa_Byte type, const void* value);

void describeNodeId(Text& out, const Text& path, const OpcUa_NodeId& value)
{
    static constexpr const char* kinds[] = {"numeric", "string", "guid", "opaque"};
    put(out, join(path, "ns"), std::to_string(value.NamespaceIndex));
    put(out, join(path, "kind"), kinds[value.IdentifierType]);
    const Text texts[] = {std::to_string(value.Identifier.Numeric),
                          value.IdentifierType == 1 ? stringText(value.Identifier.String) : "",
                          guidText(value.Identifier.Guid),
                          value.IdentifierType == 3 ? bytesOf(value.Identifier.ByteString) : ""};
    put(out, join(path, "id"), texts[value.IdentifierType]);
}

void describeVariant(Text& out, const Text& path, const OpcUa_Variant& value)
{
    static constexpr const char* ranks[] = {"scalar", "array", "matrix"};
    put(out, join(path, "type"), OpcUa_BuiltInType_Name(value.Datatype));
    put(out, join(path, "rank"), ranks[value.ArrayType]);
    if (value.Datatype == OpcUaType_Null)
        return;
    if (value.ArrayType == OpcUa_VariantArrayType_Scalar) {
        const bool pointer = OpcUa_BuiltInType_Size(value.Datatype) > 16;
        const void* const data = pointer ? static_cast<const void*>(value.Value.NodeId) : &value.Value;
        return describeTo(out, join(path, "value"), value.Datatype, data);
    }
    const OpcUa_VariantArray& array = value.Value.Array;
    Text dimensions;
    for (OpcUa_Int32 i = 0; i < array.NoOfDimensions; ++i)
        dimensions.append(i > 0 ? "," : "").append(std::to_string(array.Dimensions[i]));
    if (value.ArrayType == OpcUa_VariantArrayType_Matrix)
        put(out, join(path, "dims"), dimensions);
    put(out, join(path, "length"), array.Data == nullptr ? "null" : std::to_string(array.Length));
    const size_t size = OpcUa_BuiltInType_Size(value.Datatype);
    for (size_t i = 0; array.Data != nullptr && i < static_cast<size_t>(array.Length); ++i)
        describeTo(out, join(path, std::to_string(i)), value.Datatype,
                   static_cast<char*>(array.Data) + i * size);
}

void describeDataValue(Text& out, const Text& path, const OpcUa_DataValue& value)
{
    if (value.Value.Datatype != OpcUaType_Null)
        describeVariant(out, join(path, "value"), value.Value);
    if (value.StatusCode != 0)
        put(out, join(path, "status"), statusText(value.StatusCode));
    if (value.SourceTimestamp != 0)
        put(out, join(path, "source.time"), std::to_string(value.SourceTimestamp));
    if (value.SourcePicoseconds != 0)
        put(out, join(path, "source.pico"), std::to_string(value.SourcePicoseconds));
    if (value.ServerTimestamp != 0)
        put(out, join(path, "server.time"), std::to_string(value.ServerTimestamp));
    if (value.ServerPicoseconds != 0)
        put(out, join(path, "server.pico"), std::to_string(value.ServerPicoseconds));
}

void describeDiagnosticInfo(Text& out, const Text& path, const OpcUa_DiagnosticInfo& value)
{
    const std::pair<const char*, OpcUa_Int32> indexes[] = {{"symbolicId", value.SymbolicId},
                                                           {"namespaceUri", value.NamespaceUri},
                                                           {"locale", value.Locale},
                                                           {"localizedText", value.LocalizedText}};
    for (const auto& [name, index] : indexes)
        if (index >= 0)
            put(out, join(path, name), std::to_string(index));
    if (value.AdditionalInfo.Data != nullptr)
        put(out, join(path, "additionalInfo"), stringText(value.AdditionalInfo));
    if (value.InnerStatusCode != 0)
        put(out, join(path, "innerStatus"), statusText(value.InnerStatusCode));
    if (value.InnerDiagnosticInfo != nullptr)
        describeDiagnosticInfo(out, join(path, "inner"), *value.InnerDiagnosticInfo);
}

void describeExtensionObject(Text& out, const Text& path, const OpcUa_ExtensionObject& value)
{
    static constexpr const char* bodies[] = {"none", "bytes", "xml", "structure"};
    put(out, join(path, "body"), bodies[value.Encoding]);
    if (value.Encoding == OpcUa_ExtensionObjectEncoding_None)
        return;
    describeNodeId(out, join(path, "type"), value.TypeId.NodeId);
    if (value.Encoding == OpcUa_ExtensionObjectEncoding_Binary)
        put(out, join(path, "value"), bytesOf(value.Body.Binary));
    else if (value.Encoding == OpcUa_ExtensionObjectEncoding_Xml)
        put(out, join(path, "value"), quoted(value.Body.Xml.Data, value.Body.Xml.Length));
}

void describeTo(Text& out, const Text& path, OpcUa_Byte type, const void* value)
{
    switch (type) {
    case OpcUaType_NodeId:
        return describeNodeId(out, path, *static_cast<const OpcUa_NodeId*>(value));
    case OpcUaType_ExpandedNodeId: {
        const auto& id = *static_cast<const OpcUa_ExpandedNodeId*>(value);
        describeNodeId(out, path, id.NodeId);
        put(out, join(path, "uri"), stringText(id.NamespaceUri));
        return put(out, join(path, "server"), std::to_string(id.ServerIndex));
    }
    case OpcUaType_QualifiedName: {
        const auto& name = *static_cast<const OpcUa_QualifiedName*>(value);
        put(out, join(path, "ns"), std::to_string(name.NamespaceIndex));
        return put(out, join(path, "name"), stringText(name.Name));
    }
    case OpcUaType_LocalizedText: {
        const auto& text = *static_cast<const OpcUa_LocalizedText*>(value);
        put(out, join(path, "locale"), stringText(text.Locale));
        return put(out, join(path, "text"), stringText(text.Text));
    }
    case OpcUaType_ExtensionObject:
        return describeExtensionObject(out, path, *static_cast<const OpcUa_ExtensionObject*>(value));
    case OpcUaType_DataValue:
        return describeDataValue(out, path, *static_cast<const OpcUa_DataValue*>(value));
    case OpcUaType_Variant:
        return describeVariant(out, path, *static_cast<const OpcUa_Variant*>(value));
    case OpcUaType_DiagnosticInfo:
        return describeDiagnosticInfo(out, path, *static_cast<const OpcUa_DiagnosticInfo*>(value));
    default:
        put(out, path.empty() ? "value" : path, simple(type, value));
    }
}

} // namespace

std::string describe(OpcUa_Byte builtInType, const void* value)
{
    Text out;
    describeTo(out, "", builtInType, value);
    return out.empty() ? "-" : out;
}
