// Writes the JSON form of values, OPC 10000-6, 5.4, reversible: UaValueText::toJson.
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/text/uajson_p.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/text/uavaluetext_p.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <cmath>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace uabase {

namespace {

template <typename T>
JsonValue numberOf(T value)
{
    return JsonValue::number(std::to_string(value));
}

// 64 bits do not fit the numbers of all readers.
template <typename T>
JsonValue longOf(T value)
{
    return JsonValue::string(std::to_string(value));
}

template <typename T>
JsonValue floatingOf(T value)
{
    if (std::isnan(value))
        return JsonValue::string("NaN");
    if (std::isinf(value))
        return JsonValue::string(value < 0 ? "-Infinity" : "Infinity");
    return JsonValue::number(numberText(value));
}

JsonValue textOf(const UaString& text)
{
    return text.isNull() ? JsonValue() : JsonValue::string(text.view());
}

JsonValue base64Of(const UaByteString& bytes)
{
    return bytes.isNull() ? JsonValue() : JsonValue::string(bytes.toBase64().view());
}

JsonValue nodeIdOf(const UaNodeId& id)
{
    JsonValue json = JsonValue::object();
    if (id.identifierType() != OpcUa_IdentifierType_Numeric)
        json.set("IdType", numberOf(static_cast<int>(id.identifierType())));
    json.set("Id", id.isNumeric() ? numberOf(id.identifierNumeric())
                                  : JsonValue::string(id.identifierText().view()));
    if (id.namespaceIndex() != 0)
        json.set("Namespace", numberOf(id.namespaceIndex()));
    return json;
}

JsonValue expandedOf(const UaExpandedNodeId& id)
{
    UaNodeId bare = id.nodeId();
    if (!id.namespaceUri().isNull())
        bare.setNamespaceIndex(0);
    JsonValue json = nodeIdOf(bare);
    if (!id.namespaceUri().isNull())
        json.set("Namespace", JsonValue::string(id.namespaceUri().view()));
    if (id.serverIndex() != 0)
        json.set("ServerUri", numberOf(id.serverIndex()));
    return json;
}

JsonValue localizedOf(const UaLocalizedText& text)
{
    JsonValue json = JsonValue::object();
    if (!text.locale().isNull())
        json.set("Locale", JsonValue::string(text.locale().view()));
    if (!text.text().isNull())
        json.set("Text", JsonValue::string(text.text().view()));
    return json;
}

JsonValue qualifiedOf(const UaQualifiedName& name)
{
    JsonValue json = JsonValue::object();
    if (!name.name().isNull())
        json.set("Name", JsonValue::string(name.name().view()));
    if (name.namespaceIndex() != 0)
        json.set("Uri", numberOf(name.namespaceIndex()));
    return json;
}

class JsonEncoder
{
public:
    explicit JsonEncoder(UaDataTypeDictionary* dictionary) : m_dictionary(dictionary) {}

    bool isTooDeep() const noexcept { return m_tooDeep; }

    JsonValue variant(const UaVariant& value, int depth)
    {
        if (value.isNull() || !enter(depth))
            return {};
        JsonValue json = JsonValue::object();
        json.set("Type", numberOf(static_cast<int>(value.type())));
        if (value.isScalar()) {
            json.set("Body", scalar(value.type(), scalarData(*value.get()), depth));
            return json;
        }
        const bool isNull = value.arraySize() < 0;
        json.set("Body", isNull ? JsonValue() : elements(value, UaStructureDefinition(), depth));
        if (isNull || value.isMatrix()) {
            JsonValue dimensions = JsonValue::array();
            for (const OpcUa_Int32 dimension : value.dimensions())
                dimensions.append(numberOf(dimension));
            json.set("Dimensions", dimensions);
        }
        return json;
    }

    JsonValue dataValue(const UaDataValue& value, int depth)
    {
        JsonValue json = JsonValue::object();
        if (!value.value().isNull())
            json.set("Value", variant(value.value(), depth + 1));
        if (value.statusCode().code() != 0)
            json.set("Status", numberOf(value.statusCode().code()));
        setTime(json, "Source", value.sourceTimestamp(), value.sourcePicoseconds());
        setTime(json, "Server", value.serverTimestamp(), value.serverPicoseconds());
        return json;
    }

private:
    bool enter(int depth)
    {
        m_tooDeep |= depth > maxNesting;
        return depth <= maxNesting;
    }

    static void setTime(JsonValue& json, const std::string& which, const UaDateTime& time,
                        OpcUa_UInt16 picoseconds)
    {
        if (!time.isNull())
            json.set(which + "Timestamp", JsonValue::string(time.toFullString().view()));
        if (picoseconds != 0)
            json.set(which + "Picoseconds", numberOf(picoseconds));
    }

    // The elements of an array or matrix in a row; of a structure when nested is one.
    JsonValue elements(const UaVariant& value, const UaStructureDefinition& nested, int depth)
    {
        JsonValue json = JsonValue::array();
        const std::size_t size = OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(value.type()));
        const auto* element = static_cast<const unsigned char*>(value.elements());
        for (OpcUa_UInt32 i = 0; i < value.elementCount(); ++i, element += size)
            json.append(nested.isNull()
                            ? scalar(value.type(), element, depth)
                            : body(*reinterpret_cast<const OpcUa_ExtensionObject*>(element), nested, depth));
        return json;
    }

    JsonValue scalar(OpcUa_BuiltInType type, const void* data, int depth)
    {
        if (!data)
            return {};
        switch (type) {
        case OpcUaType_Boolean:
            return JsonValue::boolean(*static_cast<const OpcUa_Boolean*>(data) != 0);
        case OpcUaType_SByte:
            return numberOf(int{*static_cast<const OpcUa_SByte*>(data)});
        case OpcUaType_Byte:
            return numberOf(int{*static_cast<const OpcUa_Byte*>(data)});
        case OpcUaType_Int16:
            return numberOf(*static_cast<const OpcUa_Int16*>(data));
        case OpcUaType_UInt16:
            return numberOf(*static_cast<const OpcUa_UInt16*>(data));
        case OpcUaType_Int32:
            return numberOf(*static_cast<const OpcUa_Int32*>(data));
        case OpcUaType_UInt32:
        case OpcUaType_StatusCode:
            return numberOf(*static_cast<const OpcUa_UInt32*>(data));
        case OpcUaType_Int64:
            return longOf(*static_cast<const OpcUa_Int64*>(data));
        case OpcUaType_UInt64:
            return longOf(*static_cast<const OpcUa_UInt64*>(data));
        case OpcUaType_Float:
            return floatingOf(*static_cast<const OpcUa_Float*>(data));
        case OpcUaType_Double:
            return floatingOf(*static_cast<const OpcUa_Double*>(data));
        default:
            return textual(type, data, depth);
        }
    }

    JsonValue textual(OpcUa_BuiltInType type, const void* data, int depth)
    {
        switch (type) {
        case OpcUaType_String:
            return textOf(UaString(*static_cast<const OpcUa_String*>(data)));
        case OpcUaType_DateTime:
            return textOf(UaDateTime(*static_cast<const OpcUa_DateTime*>(data)).toFullString());
        case OpcUaType_Guid:
            return textOf(UaGuid(*static_cast<const OpcUa_Guid*>(data)).toString());
        case OpcUaType_ByteString:
            return base64Of(UaByteString(*static_cast<const OpcUa_ByteString*>(data)));
        case OpcUaType_XmlElement: {
            const UaByteString xml(*static_cast<const OpcUa_ByteString*>(data));
            return xml.isNull() ? JsonValue() : JsonValue::string(xml.view());
        }
        case OpcUaType_NodeId:
            return nodeIdOf(UaNodeId(*static_cast<const OpcUa_NodeId*>(data)));
        case OpcUaType_ExpandedNodeId:
            return expandedOf(UaExpandedNodeId(*static_cast<const OpcUa_ExpandedNodeId*>(data)));
        case OpcUaType_QualifiedName:
            return qualifiedOf(UaQualifiedName(*static_cast<const OpcUa_QualifiedName*>(data)));
        case OpcUaType_LocalizedText:
            return localizedOf(UaLocalizedText(*static_cast<const OpcUa_LocalizedText*>(data)));
        case OpcUaType_ExtensionObject:
            return object(UaExtensionObject(*static_cast<const OpcUa_ExtensionObject*>(data)), depth + 1);
        case OpcUaType_DataValue:
            return dataValue(UaDataValue(*static_cast<const OpcUa_DataValue*>(data)), depth + 1);
        case OpcUaType_Variant:
            return variant(UaVariant(*static_cast<const OpcUa_Variant*>(data)), depth + 1);
        case OpcUaType_DiagnosticInfo:
            return diagnosis(UaDiagnosticInfo(*static_cast<const OpcUa_DiagnosticInfo*>(data)), depth + 1);
        default:
            return {};
        }
    }

    JsonValue diagnosis(const UaDiagnosticInfo& info, int depth)
    {
        JsonValue json = JsonValue::object();
        if (!enter(depth))
            return json;
        const std::pair<const char*, OpcUa_Int32> indexes[] = {{"SymbolicId", info.symbolicId()},
                                                               {"NamespaceUri", info.namespaceUri()},
                                                               {"Locale", info.locale()},
                                                               {"LocalizedText", info.localizedText()}};
        for (const auto& [name, index] : indexes)
            if (index != -1)
                json.set(name, numberOf(index));
        if (!info.additionalInfo().isNull())
            json.set("AdditionalInfo", textOf(info.additionalInfo()));
        if (info.innerStatusCode().code() != 0)
            json.set("InnerStatusCode", numberOf(info.innerStatusCode().code()));
        if (info.hasInner())
            json.set("InnerDiagnosticInfo", diagnosis(info.inner(), depth + 1));
        return json;
    }

    JsonValue object(const UaExtensionObject& value, int depth)
    {
        if (value.isNull() || !enter(depth))
            return {};
        JsonValue json = JsonValue::object();
        const UaStructureDefinition definition = definitionFor(value.typeId(), m_dictionary);
        const bool isXml = value.encoding() == OpcUa_ExtensionObjectEncoding_Xml;
        const bool hasBody = value.encoding() != OpcUa_ExtensionObjectEncoding_None;
        const auto opened = isXml || !hasBody ? std::nullopt : openStructure(value, definition, m_dictionary);
        if (opened) {
            json.set("TypeId", nodeIdOf(definition.dataTypeId()));
            json.set("Body", fields(*opened, depth));
            return json;
        }
        json.set("TypeId", expandedOf(value.typeId()));
        UaByteString bytes;
        if (isXml) {
            json.set("Encoding", numberOf(2));
            json.set("Body", JsonValue::string(value.xmlBody().view()));
        } else if (OpcUa_IsGood(value.binaryBody(bytes))) {
            json.set("Encoding", numberOf(1));
            json.set("Body", base64Of(bytes));
        }
        return json;
    }

    // A nested structure; one that is not of its definition stands with its type id.
    JsonValue body(const OpcUa_ExtensionObject& value, const UaStructureDefinition& definition, int depth)
    {
        const UaExtensionObject nested(value);
        const auto opened = enter(depth) ? openStructure(nested, definition, m_dictionary) : std::nullopt;
        return opened ? fields(*opened, depth) : JsonValue();
    }

    JsonValue fields(const OpenedStructure& opened, int depth)
    {
        JsonValue json = JsonValue::object();
        if (opened.definition.isUnion()) {
            json.set("SwitchField", numberOf(opened.chosen.switchValue()));
            if (opened.chosen.switchValue() != 0)
                json.set("Value", field(opened.chosen.field(), opened.chosen.value(), depth + 1));
            return json;
        }
        if (hasMask(opened.definition))
            json.set("EncodingMask", numberOf(presenceMask(opened)));
        for (int i = 0; i < opened.definition.fieldCount(); ++i)
            if (opened.structure.isFieldSet(i)) {
                const UaStructureField known = opened.definition.field(i);
                json.set(known.name().toStdString(), field(known, opened.structure.value(i), depth + 1));
            }
        return json;
    }

    JsonValue field(const UaStructureField& known, const UaVariant& value, int depth)
    {
        const UaStructureDefinition nested =
            known.isNestedStructure() ? findDefinition(known, m_dictionary) : UaStructureDefinition();
        if (known.valueRank() < 0) {
            if (known.builtInType() == OpcUaType_Variant)
                return variant(value, depth);
            const void* data = scalarData(*value.get());
            return nested.isNull() || !data
                       ? scalar(value.type(), data, depth)
                       : body(*static_cast<const OpcUa_ExtensionObject*>(data), nested, depth);
        }
        if (value.arraySize() < 0)
            return {};
        const JsonValue flat = elements(value, nested, depth);
        std::size_t next = 0;
        return value.isMatrix() ? folded(flat, value.dimensions().span(), next) : flat;
    }

    // A matrix as arrays of arrays.
    static JsonValue folded(const JsonValue& flat, std::span<const OpcUa_Int32> dimensions, std::size_t& next)
    {
        JsonValue json = JsonValue::array();
        for (OpcUa_Int32 i = 0; i < dimensions.front() && next < flat.items().size(); ++i)
            json.append(dimensions.size() == 1 ? flat.items()[next++]
                                               : folded(flat, dimensions.subspan(1), next));
        return json;
    }

    UaDataTypeDictionary* m_dictionary;
    bool m_tooDeep = false;
};

} // namespace

} // namespace uabase

UaStatusCode UaValueText::toJson(const UaVariant& value, UaDataTypeDictionary* dictionary, UaString& text,
                                 bool indented)
{
    uabase::JsonEncoder encoder(dictionary);
    const uabase::JsonValue json = encoder.variant(value, 0);
    if (encoder.isTooDeep())
        return OpcUa_BadEncodingLimitsExceeded;
    text = UaString(json.toText(indented));
    return OpcUa_Good;
}

UaStatusCode UaValueText::toJson(const UaDataValue& value, UaDataTypeDictionary* dictionary, UaString& text,
                                 bool indented)
{
    uabase::JsonEncoder encoder(dictionary);
    const uabase::JsonValue json = encoder.dataValue(value, 0);
    if (encoder.isTooDeep())
        return OpcUa_BadEncodingLimitsExceeded;
    text = UaString(json.toText(indented));
    return OpcUa_Good;
}
