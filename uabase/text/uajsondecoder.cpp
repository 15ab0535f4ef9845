// Reads the JSON form of values: UaValueText::fromJson.
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
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
#include <uabase/values/uatext_p.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace uabase {

namespace {

class JsonDecoder
{
public:
    explicit JsonDecoder(UaDataTypeDictionary* dictionary) : m_dictionary(dictionary) {}

    OpcUa_StatusCode status() const noexcept { return m_status; }
    const std::string& error() const noexcept { return m_error; }

    UaVariant variant(const JsonValue& json, int depth)
    {
        if (json.isNull() || !enter(depth))
            return {};
        int type = 0;
        const JsonValue* number = json.find("Type");
        if (!number || !integer(*number, type) || !isBuiltInType(type))
            return fail("a value without a built-in type");
        const auto builtIn = static_cast<OpcUa_BuiltInType>(type);
        const JsonValue* body = json.find("Body");
        const JsonValue* dimensions = json.find("Dimensions");
        if (!body || body->kind() != JsonValue::Array) {
            if (!dimensions)
                return builtIn == OpcUaType_Variant ? UaVariant()
                                                    : scalar(builtIn, body ? *body : JsonValue(), depth);
            return nullArray(builtIn);
        }
        UaVariant array = elements(body->items(), builtIn, UaStructureDefinition(), depth);
        if (dimensions && isGood())
            setDimensions(array, numbers(*dimensions));
        return array;
    }

    UaDataValue dataValue(const JsonValue& json, int depth)
    {
        UaDataValue value;
        if (json.isNull() || !enter(depth))
            return value;
        if (const JsonValue* inner = json.find("Value"))
            value.setValue(variant(*inner, depth + 1));
        value.setStatusCode(UaStatusCode(member<OpcUa_UInt32>(json, "Status")));
        value.setSourceTimestamp(time(json.find("SourceTimestamp")),
                                 member<OpcUa_UInt16>(json, "SourcePicoseconds"));
        value.setServerTimestamp(time(json.find("ServerTimestamp")),
                                 member<OpcUa_UInt16>(json, "ServerPicoseconds"));
        return value;
    }

private:
    bool isGood() const noexcept { return OpcUa_IsGood(m_status); }
    // The first failure of a copy counts; what it left is a null value.
    void keep(OpcUa_StatusCode status) noexcept { m_status = isGood() ? status : m_status; }

    UaVariant fail(std::string_view what, OpcUa_StatusCode status = OpcUa_BadDecodingError)
    {
        if (!isGood())
            return {};
        m_status = status;
        m_error = m_path + (m_path.empty() ? "" : ": ");
        m_error += what;
        return {};
    }

    bool enter(int depth)
    {
        if (depth > maxNesting)
            fail("nested too deep", OpcUa_BadEncodingLimitsExceeded);
        return isGood();
    }

    // A number, or its text.
    template <typename T>
    bool integer(const JsonValue& json, T& number)
    {
        if (json.kind() != JsonValue::Number && json.kind() != JsonValue::String) {
            fail("a number was expected");
            return false;
        }
        const auto parsed = parseNumber<T>(json.text());
        if (!parsed)
            fail("no number of its type: " + json.text(), OpcUa_BadOutOfRange);
        number = parsed.value_or(T{});
        return parsed.has_value();
    }

    template <typename T>
    T floating(const JsonValue& json)
    {
        constexpr T infinity = std::numeric_limits<T>::infinity();
        if (json.kind() == JsonValue::String) {
            if (json.text() == "Infinity")
                return infinity;
            if (json.text() == "-Infinity")
                return -infinity;
            if (json.text() == "NaN")
                return std::numeric_limits<T>::quiet_NaN();
        }
        T number{};
        integer(json, number);
        return number;
    }

    // A member that is a number; 0 when it is not there.
    template <typename T>
    T member(const JsonValue& json, std::string_view name, T missing = T{})
    {
        T number = missing;
        if (const JsonValue* found = json.find(name); found && !found->isNull())
            integer(*found, number);
        return number;
    }

    UaString text(const JsonValue* json)
    {
        if (!json || json->isNull())
            return {};
        if (json->kind() != JsonValue::String) {
            fail("a text was expected");
            return {};
        }
        return UaString(std::string_view(json->text()));
    }

    UaDateTime time(const JsonValue* json)
    {
        const UaString found = text(json);
        bool ok = true;
        const UaDateTime result = found.isNull() ? UaDateTime() : UaDateTime::fromString(found.view(), &ok);
        if (!ok)
            fail("no time");
        return result;
    }

    UaByteString base64(const JsonValue* json)
    {
        const UaString found = text(json);
        const UaByteString bytes = UaByteString::fromBase64(found.view());
        if (!found.isNull() && bytes.isNull())
            fail("no Base64");
        return found.isNull() ? UaByteString() : bytes;
    }

    UaNodeId nodeId(const JsonValue& json)
    {
        if (json.isNull())
            return {};
        const auto kind = member<int>(json, "IdType");
        const auto* id = json.find("Id");
        const JsonValue* space = json.find("Namespace");
        const OpcUa_UInt16 index =
            space && space->kind() == JsonValue::Number ? member<OpcUa_UInt16>(json, "Namespace") : 0;
        switch (kind) {
        case OpcUa_IdentifierType_Numeric:
            return UaNodeId(member<OpcUa_UInt32>(json, "Id"), index);
        case OpcUa_IdentifierType_String:
            return UaNodeId(text(id), index);
        case OpcUa_IdentifierType_Opaque:
            return UaNodeId(base64(id), index);
        case OpcUa_IdentifierType_Guid: {
            bool ok = false;
            const UaGuid guid = UaGuid::fromString(text(id).view(), &ok);
            if (!ok)
                fail("no Guid");
            return UaNodeId(guid, index);
        }
        default:
            fail("an unknown kind of node id");
            return {};
        }
    }

    UaExpandedNodeId expanded(const JsonValue& json)
    {
        const JsonValue* space = json.find("Namespace");
        const bool hasUri = space && space->kind() == JsonValue::String;
        return UaExpandedNodeId(nodeId(json), hasUri ? text(space) : UaString(),
                                member<OpcUa_UInt32>(json, "ServerUri"));
    }

    template <typename T>
    UaVariant numeric(const JsonValue& json)
    {
        T number{};
        if (!json.isNull())
            integer(json, number);
        return UaVariant(number);
    }

    UaVariant scalar(OpcUa_BuiltInType type, const JsonValue& json, int depth)
    {
        switch (type) {
        case OpcUaType_Boolean:
            if (!json.isNull() && json.kind() != JsonValue::Boolean)
                return fail("true or false was expected");
            return UaVariant(json.isTrue());
        case OpcUaType_SByte:
            return numeric<OpcUa_SByte>(json);
        case OpcUaType_Byte:
            return numeric<OpcUa_Byte>(json);
        case OpcUaType_Int16:
            return numeric<OpcUa_Int16>(json);
        case OpcUaType_UInt16:
            return numeric<OpcUa_UInt16>(json);
        case OpcUaType_Int32:
            return numeric<OpcUa_Int32>(json);
        case OpcUaType_UInt32:
            return numeric<OpcUa_UInt32>(json);
        case OpcUaType_Int64:
            return numeric<OpcUa_Int64>(json);
        case OpcUaType_UInt64:
            return numeric<OpcUa_UInt64>(json);
        case OpcUaType_Float:
            return UaVariant(json.isNull() ? OpcUa_Float{} : floating<OpcUa_Float>(json));
        case OpcUaType_Double:
            return UaVariant(json.isNull() ? OpcUa_Double{} : floating<OpcUa_Double>(json));
        case OpcUaType_StatusCode: {
            OpcUa_UInt32 code = 0;
            if (!json.isNull())
                integer(json, code);
            return UaVariant(UaStatusCode(code));
        }
        default:
            return textual(type, json, depth);
        }
    }

    UaVariant textual(OpcUa_BuiltInType type, const JsonValue& json, int depth)
    {
        UaVariant value;
        switch (type) {
        case OpcUaType_String:
            value.setString(text(&json));
            break;
        case OpcUaType_DateTime:
            value.setDateTime(time(&json));
            break;
        case OpcUaType_Guid: {
            bool ok = json.isNull();
            value.setGuid(ok ? UaGuid() : UaGuid::fromString(text(&json).view(), &ok));
            if (!ok)
                fail("no Guid");
            break;
        }
        case OpcUaType_ByteString:
            value.setByteString(base64(&json));
            break;
        case OpcUaType_XmlElement: {
            const UaString xml = text(&json);
            const auto* bytes = reinterpret_cast<const OpcUa_Byte*>(xml.view().data());
            value.setXmlElement(xml.isNull() ? UaByteString()
                                             : UaByteString(std::span(bytes, xml.view().size())));
            break;
        }
        case OpcUaType_NodeId:
            value.setNodeId(nodeId(json));
            break;
        case OpcUaType_ExpandedNodeId:
            value.setExpandedNodeId(expanded(json));
            break;
        case OpcUaType_QualifiedName:
            value.setQualifiedName(
                UaQualifiedName(text(json.find("Name")), member<OpcUa_UInt16>(json, "Uri")));
            break;
        case OpcUaType_LocalizedText:
            value.setLocalizedText(UaLocalizedText(text(json.find("Locale")), text(json.find("Text"))));
            break;
        case OpcUaType_ExtensionObject:
            value.setExtensionObject(object(json, depth + 1));
            break;
        case OpcUaType_DataValue:
            value.setDataValue(dataValue(json, depth + 1));
            break;
        case OpcUaType_DiagnosticInfo:
            value.setDiagnosticInfo(diagnosis(json, depth + 1));
            break;
        default:
            value = variant(json, depth + 1);
        }
        return value;
    }

    UaDiagnosticInfo diagnosis(const JsonValue& json, int depth)
    {
        OpcUa_DiagnosticInfo info;
        OpcUa_BuiltInType_InitializeArray(OpcUaType_DiagnosticInfo, &info, 1);
        UaDiagnosticInfo result;
        if (json.isNull() || !enter(depth))
            return result;
        info.SymbolicId = member<OpcUa_Int32>(json, "SymbolicId", -1);
        info.NamespaceUri = member<OpcUa_Int32>(json, "NamespaceUri", -1);
        info.Locale = member<OpcUa_Int32>(json, "Locale", -1);
        info.LocalizedText = member<OpcUa_Int32>(json, "LocalizedText", -1);
        info.InnerStatusCode = member<OpcUa_UInt32>(json, "InnerStatusCode");
        keep(text(json.find("AdditionalInfo")).copyTo(&info.AdditionalInfo));
        if (const JsonValue* inner = json.find("InnerDiagnosticInfo")) {
            info.InnerDiagnosticInfo =
                static_cast<OpcUa_DiagnosticInfo*>(OpcUa_Memory_Alloc(sizeof(OpcUa_DiagnosticInfo)));
            if (info.InnerDiagnosticInfo)
                keep(diagnosis(*inner, depth + 1).copyTo(info.InnerDiagnosticInfo));
        }
        result.attach(&info);
        return result;
    }

    std::vector<OpcUa_Int32> numbers(const JsonValue& json)
    {
        std::vector<OpcUa_Int32> result;
        for (const JsonValue& item : json.items()) {
            OpcUa_Int32 number = 0;
            integer(item, number);
            result.push_back(number);
        }
        return result;
    }

    void setDimensions(UaVariant& array, const std::vector<OpcUa_Int32>& dimensions)
    {
        if (!OpcUa_IsGood(array.setDimensions(dimensions)))
            fail("dimensions that do not fit the number of elements");
    }

    UaVariant elements(const std::vector<JsonValue>& items, OpcUa_BuiltInType type,
                       const UaStructureDefinition& nested, int depth)
    {
        std::vector<UaVariant> values;
        for (const JsonValue& item : items) {
            if (!isGood())
                return {};
            values.push_back(nested.isNull() ? scalar(type, item, depth)
                                             : UaVariant(fields(item, nested, depth)));
        }
        UaVariant array;
        if (isGood() && !OpcUa_IsGood(array.setArray(type, values)))
            fail("elements of different types");
        return array;
    }

    UaExtensionObject object(const JsonValue& json, int depth)
    {
        if (json.isNull() || !enter(depth))
            return {};
        const JsonValue* id = json.find("TypeId");
        const UaExpandedNodeId typeId = id ? expanded(*id) : UaExpandedNodeId();
        const JsonValue* body = json.find("Body");
        if (!body)
            return UaExtensionObject(typeId, UaByteString());
        switch (member<int>(json, "Encoding")) {
        case 1:
            return UaExtensionObject(typeId, base64(body));
        case 2:
            return xmlObject(typeId, text(body));
        default:
            break;
        }
        const UaStructureDefinition definition = definitionFor(typeId, m_dictionary);
        if (definition.isNull()) {
            fail("nobody knows the type " + typeId.toString().toStdString(), OpcUa_BadDataTypeIdUnknown);
            return {};
        }
        return fields(*body, definition, depth);
    }

    UaExtensionObject fields(const JsonValue& json, const UaStructureDefinition& definition, int depth)
    {
        if (json.isNull() || !enter(depth))
            return {};
        if (json.kind() != JsonValue::Object) {
            fail("fields were expected");
            return {};
        }
        UaExtensionObject result;
        const UaStatusCode encoded = definition.isUnion() ? encodeUnion(json, definition, depth, result)
                                                          : encodeFields(json, definition, depth, result);
        if (isGood() && encoded.isBad())
            fail("fields that do not make a " + definition.name().toStdString(), encoded.code());
        return result;
    }

    UaStatusCode encodeUnion(const JsonValue& json, const UaStructureDefinition& definition, int depth,
                             UaExtensionObject& result)
    {
        UaGenericUnionValue value(definition);
        const auto chosen = member<OpcUa_UInt32>(json, "SwitchField");
        const JsonValue* content = json.find("Value");
        if (chosen > static_cast<OpcUa_UInt32>(definition.fieldCount()))
            return OpcUa_BadOutOfRange;
        if (chosen != 0) {
            const UaStructureField known = definition.field(static_cast<int>(chosen) - 1);
            const UaStatusCode set =
                value.setValue(chosen, field(known, content ? *content : JsonValue(), depth));
            if (set.isBad())
                return set;
        }
        return value.encode(result);
    }

    UaStatusCode encodeFields(const JsonValue& json, const UaStructureDefinition& definition, int depth,
                              UaExtensionObject& result)
    {
        UaGenericStructureValue value(definition, m_dictionary);
        const JsonValue* mask = hasMask(definition) ? json.find("EncodingMask") : nullptr;
        const auto bits = mask ? member<OpcUa_UInt32>(json, "EncodingMask") : 0u;
        for (int i = 0; i < definition.fieldCount() && isGood(); ++i) {
            const UaStructureField known = definition.field(i);
            const JsonValue* content = json.find(known.name().view());
            const int bit = mask ? maskBit(definition, i) : -1;
            const bool present = bit >= 0 ? (bits >> bit & 1u) != 0 : content != nullptr;
            if (!present)
                continue;
            const std::size_t length = m_path.size();
            m_path.append(m_path.empty() ? "" : ".").append(known.name().view());
            const UaStatusCode set = value.setField(i, field(known, content ? *content : JsonValue(), depth));
            if (set.isBad())
                fail("a value that is not of the field's type", set.code());
            m_path.resize(length);
        }
        return isGood() ? value.encode(result) : UaStatusCode(m_status);
    }

    UaVariant field(const UaStructureField& known, const JsonValue& json, int depth)
    {
        UaStructureDefinition nested;
        if (known.isNestedStructure()) {
            nested = findDefinition(known, m_dictionary);
            if (nested.isNull())
                return fail("nobody knows its type", OpcUa_BadDataTypeIdUnknown);
        }
        if (known.valueRank() < 0) {
            if (!nested.isNull())
                return UaVariant(fields(json, nested, depth + 1));
            return known.builtInType() == OpcUaType_Variant ? variant(json, depth + 1)
                                                            : scalar(known.builtInType(), json, depth);
        }
        if (json.isNull())
            return nullArray(known.builtInType());
        if (json.kind() != JsonValue::Array)
            return fail("an array was expected");
        std::vector<JsonValue> items;
        std::vector<OpcUa_Int32> dimensions;
        flatten(json, known.valueRank(), items, dimensions);
        UaVariant array = isGood() ? elements(items, known.builtInType(), nested, depth + 1) : UaVariant();
        if (isGood() && dimensions.size() > 1)
            setDimensions(array, dimensions);
        return array;
    }

    // A matrix lies in arrays of arrays; rows of different length show in the product of the dimensions.
    void flatten(const JsonValue& json, OpcUa_Int32 rank, std::vector<JsonValue>& items,
                 std::vector<OpcUa_Int32>& dimensions)
    {
        std::vector<const JsonValue*> level{&json};
        for (OpcUa_Int32 i = 0; i < std::max(rank, 1) && isGood(); ++i) {
            std::vector<const JsonValue*> next;
            for (const JsonValue* array : level) {
                if (array->kind() != JsonValue::Array || array->items().size() != level[0]->items().size()) {
                    fail("rows of different length");
                    return;
                }
                for (const JsonValue& item : array->items())
                    next.push_back(&item);
            }
            dimensions.push_back(level.empty() ? 0 : static_cast<OpcUa_Int32>(level[0]->items().size()));
            level = std::move(next);
        }
        for (const JsonValue* item : level)
            items.push_back(*item);
    }

    UaDataTypeDictionary* m_dictionary;
    OpcUa_StatusCode m_status = OpcUa_Good;
    std::string m_error;
    std::string m_path; // of the field at hand
};

// Parses, decodes with a member of the decoder and reports.
template <typename Value, typename Decode>
UaStatusCode read(std::string_view text, UaDataTypeDictionary* dictionary, Value& value, UaString* error,
                  Decode decode)
{
    JsonValue json;
    std::string fault;
    UaStatusCode status = OpcUa_BadDecodingError;
    if (parseJson(text, json, fault)) {
        JsonDecoder decoder(dictionary);
        Value decoded = decode(decoder, json);
        status = UaStatusCode(decoder.status());
        fault = decoder.error();
        if (!status.isBad())
            value = std::move(decoded);
    }
    if (error)
        *error = UaString(fault);
    return status;
}

} // namespace

} // namespace uabase

UaStatusCode UaValueText::fromJson(std::string_view text, UaDataTypeDictionary* dictionary, UaVariant& value,
                                   UaString* error)
{
    return uabase::read(
        text, dictionary, value, error,
        [](uabase::JsonDecoder& decoder, const uabase::JsonValue& json) { return decoder.variant(json, 0); });
}

UaStatusCode UaValueText::fromJson(std::string_view text, UaDataTypeDictionary* dictionary,
                                   UaDataValue& value, UaString* error)
{
    return uabase::read(
        text, dictionary, value, error,
        [](uabase::JsonDecoder& decoder, const uabase::JsonValue& json) {
            return decoder.dataValue(json, 0);
        });
}
