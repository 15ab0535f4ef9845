// Texts of variants and the names of their types; declared in uavariant.h and uavariant_p.h.
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uabase/values/uavariant_p.h>

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

namespace uabase {

namespace {

constexpr std::string_view builtInNames[] = {"",
                                             "Boolean",
                                             "SByte",
                                             "Byte",
                                             "Int16",
                                             "UInt16",
                                             "Int32",
                                             "UInt32",
                                             "Int64",
                                             "UInt64",
                                             "Float",
                                             "Double",
                                             "String",
                                             "DateTime",
                                             "Guid",
                                             "ByteString",
                                             "XmlElement",
                                             "NodeId",
                                             "ExpandedNodeId",
                                             "StatusCode",
                                             "QualifiedName",
                                             "LocalizedText",
                                             "ExtensionObject",
                                             "DataValue",
                                             "Variant",
                                             "DiagnosticInfo"};

template <typename T>
std::string floatingText(T value)
{
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value < 0 ? "-INF" : "INF";
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

// "ServerStatusDataType (i=864)": what is known without a dictionary.
std::string structureText(const UaExtensionObject& value)
{
    if (value.isNull())
        return "Null";
    std::string text = value.encodeableType() ? value.encodeableType()->TypeName : "ExtensionObject";
    return text.append(" (").append(value.typeId().toString().view()).append(")");
}

void appendDataValue(std::string& text, const UaDataValue& value, int depth)
{
    appendText(text, value.value(), depth + 1);
    if (value.statusCode().code() != OpcUa_Good)
        text.append("; ").append(value.statusCode().toString().view());
    if (!value.sourceTimestamp().isNull())
        text.append("; ").append(value.sourceTimestamp().toString().view());
    if (!value.serverTimestamp().isNull())
        text.append("; ").append(value.serverTimestamp().toString().view());
}

void appendDiagnosticInfo(std::string& text, const UaDiagnosticInfo& value)
{
    text += "DiagnosticInfo";
    if (!value.additionalInfo().isEmpty())
        text.append(" \"").append(value.additionalInfo().view()).append("\"");
}

void appendScalarObject(std::string& text, const UaVariant& value, int depth)
{
    switch (value.type()) {
    case OpcUaType_Guid:
        text += value.toGuid().toString().view();
        break;
    case OpcUaType_ByteString:
        text.append("0x").append(value.toByteString().toHex().view());
        break;
    case OpcUaType_XmlElement:
        text += value.toXmlElement().view();
        break;
    case OpcUaType_NodeId:
        text += value.toNodeId().toString().view();
        break;
    case OpcUaType_ExpandedNodeId:
        text += value.toExpandedNodeId().toString().view();
        break;
    case OpcUaType_QualifiedName:
        text += value.toQualifiedName().toString().view();
        break;
    case OpcUaType_LocalizedText:
        text += value.toLocalizedText().text().view();
        break;
    case OpcUaType_ExtensionObject:
        text += structureText(value.toExtensionObject());
        break;
    case OpcUaType_DataValue:
        appendDataValue(text, value.toDataValue(), depth);
        break;
    case OpcUaType_DiagnosticInfo:
        appendDiagnosticInfo(text, value.toDiagnosticInfo());
        break;
    default:
        text += "Null";
    }
}

void appendScalar(std::string& text, const UaVariant& value, int depth)
{
    switch (value.type()) {
    case OpcUaType_Boolean:
        text += value.toBool() ? "true" : "false";
        break;
    case OpcUaType_SByte:
    case OpcUaType_Int16:
    case OpcUaType_Int32:
    case OpcUaType_Int64:
        text += std::to_string(value.toInt64());
        break;
    case OpcUaType_Byte:
    case OpcUaType_UInt16:
    case OpcUaType_UInt32:
    case OpcUaType_UInt64:
        text += std::to_string(value.toUInt64());
        break;
    case OpcUaType_Float:
        text += numberText(value.toFloat());
        break;
    case OpcUaType_Double:
        text += numberText(value.toDouble());
        break;
    case OpcUaType_String:
        text += UaString(value.get()->Value.String).view();
        break;
    case OpcUaType_DateTime:
        text += value.toDateTime().toString().view();
        break;
    case OpcUaType_StatusCode:
        text += value.toStatusCode().toString().view();
        break;
    default:
        appendScalarObject(text, value, depth);
    }
}

} // namespace

std::string numberText(double value)
{
    return floatingText(value);
}

std::string numberText(float value)
{
    return floatingText(value);
}

void appendText(std::string& text, const UaVariant& value, int depth)
{
    if (depth > maxNesting) {
        text += "...";
        return;
    }
    if (value.isScalar())
        return appendScalar(text, value, depth);
    if (value.isMatrix()) {
        const auto dimensions = value.dimensions();
        for (OpcUa_UInt32 i = 0; i < dimensions.length(); ++i)
            text.append(i == 0 ? "[" : ",").append(std::to_string(dimensions[i]));
        text += ']';
    }
    text += '{';
    for (OpcUa_UInt32 i = 0; i < value.elementCount(); ++i) {
        if (i > 0)
            text += '|';
        appendText(text, value.at(i), depth + 1);
    }
    text += '}';
}

std::string_view builtInName(OpcUa_BuiltInType type) noexcept
{
    return type >= 0 && static_cast<std::size_t>(type) < std::size(builtInNames) ? builtInNames[type]
                                                                                 : std::string_view();
}

OpcUa_BuiltInType builtInTypeOf(std::string_view name) noexcept
{
    for (int i = 1; i <= lastBuiltInType; ++i)
        if (builtInNames[i] == name)
            return static_cast<OpcUa_BuiltInType>(i);
    return OpcUaType_Null;
}

} // namespace uabase
