// Reads the XML form of values: UaValueText::fromXml.
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/system/uaxmldocument.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/text/uavaluetext_p.h>
#include <uabase/text/uaxmlvalue_p.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uatext_p.h>
#include <uabase/values/uavariant.h>

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace uabase {

namespace {

bool isNil(const UaXmlNode& node)
{
    return node.isNull() || node.attribute("nil", xmlSchemaNamespace) == UaString("true");
}

UaString textOf(const UaXmlNode& node)
{
    return isNil(node) ? UaString() : node.text();
}

UaByteString bytesOf(const UaString& text)
{
    const auto* bytes = reinterpret_cast<const OpcUa_Byte*>(text.view().data());
    return text.isNull() ? UaByteString() : UaByteString(std::span(bytes, text.view().size()));
}

class XmlDecoder
{
public:
    explicit XmlDecoder(UaDataTypeDictionary* dictionary) : m_dictionary(dictionary) {}

    OpcUa_StatusCode status() const noexcept { return m_status; }
    const std::string& error() const noexcept { return m_error; }

    // Of an element that holds a Value, or nothing.
    UaVariant variant(const UaXmlNode& node, int depth)
    {
        const UaXmlNode value = node.child("Value").firstChild();
        if (value.isNull() || !enter(node, depth))
            return {};
        const std::string name = value.name().toStdString();
        if (name == "Matrix")
            return matrix(value, OpcUaType_Null, UaStructureDefinition(), depth);
        if (const OpcUa_BuiltInType type = builtInTypeOf(name); type != OpcUaType_Null)
            return type == OpcUaType_Variant ? UaVariant() : scalar(value, type, depth);
        const OpcUa_BuiltInType type =
            name.starts_with("ListOf") ? builtInTypeOf(std::string_view(name).substr(6)) : OpcUaType_Null;
        return type == OpcUaType_Null ? fail(value, "a value of an unknown type")
                                      : list(value, type, UaStructureDefinition(), depth);
    }

private:
    bool isGood() const noexcept { return OpcUa_IsGood(m_status); }
    // The first failure of a copy counts; what it left is a null value.
    void keep(OpcUa_StatusCode status) noexcept { m_status = isGood() ? status : m_status; }

    UaVariant fail(const UaXmlNode& node, std::string_view what,
                   OpcUa_StatusCode status = OpcUa_BadDecodingError)
    {
        if (isGood()) {
            m_status = status;
            m_error = "line " + std::to_string(node.line()) + ", " + node.name().toStdString() + ": ";
            m_error += what;
        }
        return {};
    }
    bool enter(const UaXmlNode& node, int depth)
    {
        if (depth > maxNesting)
            fail(node, "nested too deep", OpcUa_BadEncodingLimitsExceeded);
        return isGood();
    }

    std::vector<UaVariant> elements(const UaXmlNode& node, OpcUa_BuiltInType type,
                                    const UaStructureDefinition& nested, int depth)
    {
        std::vector<UaVariant> values;
        for (UaXmlNode item = node.firstChild(); !item.isNull() && isGood(); item = item.nextSibling())
            values.push_back(nested.isNull() ? scalar(item, type, depth)
                                             : UaVariant(fields(item, nested, depth)));
        return values;
    }

    UaVariant list(const UaXmlNode& node, OpcUa_BuiltInType type, const UaStructureDefinition& nested,
                   int depth)
    {
        if (isNil(node))
            return nullArray(type);
        const std::vector<UaVariant> values = elements(node, type, nested, depth);
        UaVariant array;
        if (isGood() && !OpcUa_IsGood(array.setArray(type, values)))
            return fail(node, "elements of different types");
        return array;
    }

    // The type of the elements is told by their name when nobody else knows it.
    UaVariant matrix(const UaXmlNode& node, OpcUa_BuiltInType type, const UaStructureDefinition& nested,
                     int depth)
    {
        const UaXmlNode content = node.child("Elements");
        if (type == OpcUaType_Null)
            type = builtInTypeOf(content.firstChild().name().view());
        if (type == OpcUaType_Null)
            return fail(node, "a matrix without elements of a known type");
        UaVariant array = list(content, type, nested, depth);
        std::vector<OpcUa_Int32> dimensions;
        for (const UaXmlNode& dimension : node.child("Dimensions").children())
            dimensions.push_back(number<OpcUa_Int32>(dimension));
        if (isGood() && !OpcUa_IsGood(array.setDimensions(dimensions)))
            return fail(node, "dimensions that do not fit the number of elements");
        return array;
    }

    template <typename T>
    T number(const UaXmlNode& node)
    {
        if (node.isNull())
            return T{};
        const UaString text = node.text();
        const auto parsed = parseNumber<T>(trimmed(text.view()));
        if (!parsed)
            fail(node, "no number of its type", OpcUa_BadOutOfRange);
        return parsed.value_or(T{});
    }

    UaDateTime time(const UaXmlNode& node)
    {
        bool ok = true;
        const UaDateTime result =
            isNil(node) ? UaDateTime() : UaDateTime::fromString(node.text().view(), &ok);
        if (!ok)
            fail(node, "no time");
        return result;
    }

    UaByteString base64(const UaXmlNode& node)
    {
        const UaString text = textOf(node);
        const UaByteString bytes = UaByteString::fromBase64(text.view());
        if (!text.isNull() && bytes.isNull())
            fail(node, "no Base64");
        return text.isNull() ? UaByteString() : bytes;
    }

    UaExpandedNodeId nodeId(const UaXmlNode& node)
    {
        const UaXmlNode identifier = node.child("Identifier");
        if (identifier.isNull())
            return {};
        bool ok = false;
        const UaString text = identifier.text();
        const UaExpandedNodeId id = UaExpandedNodeId::fromString(text.view(), &ok);
        if (!ok)
            fail(identifier, "no node id");
        return id;
    }

    UaVariant scalar(const UaXmlNode& node, OpcUa_BuiltInType type, int depth)
    {
        if (isNil(node))
            return nullScalar(type);
        UaVariant value;
        switch (type) {
        case OpcUaType_String:
            return UaVariant(textOf(node));
        case OpcUaType_ByteString:
            return UaVariant(base64(node));
        case OpcUaType_XmlElement:
            value.setXmlElement(bytesOf(textOf(node)));
            return value;
        case OpcUaType_DateTime:
            return UaVariant(time(node));
        case OpcUaType_Variant:
            return variant(node, depth + 1);
        default:
            break;
        }
        if (type > OpcUaType_String)
            return composed(node, type, depth);
        value = UaVariant(UaString(trimmed(node.text().view())));
        const UaStatusCode status = value.changeType(type, false);
        return status.isBad() ? fail(node, "no value of its type", status.code()) : value;
    }

    UaVariant composed(const UaXmlNode& node, OpcUa_BuiltInType type, int depth)
    {
        UaVariant value;
        switch (type) {
        case OpcUaType_Guid: {
            bool ok = false;
            value.setGuid(UaGuid::fromString(trimmed(node.child("String").text().view()), &ok));
            return ok ? value : fail(node, "no Guid");
        }
        case OpcUaType_NodeId:
            return UaVariant(nodeId(node).nodeId());
        case OpcUaType_ExpandedNodeId:
            return UaVariant(nodeId(node));
        case OpcUaType_StatusCode:
            return UaVariant(UaStatusCode(number<OpcUa_UInt32>(node.child("Code"))));
        case OpcUaType_QualifiedName:
            return UaVariant(UaQualifiedName(textOf(node.child("Name")),
                                             number<OpcUa_UInt16>(node.child("NamespaceIndex"))));
        case OpcUaType_LocalizedText:
            return UaVariant(UaLocalizedText(textOf(node.child("Locale")), textOf(node.child("Text"))));
        case OpcUaType_ExtensionObject:
            return UaVariant(object(node, depth + 1));
        case OpcUaType_DataValue:
            value.setDataValue(dataValue(node, depth + 1));
            return value;
        default:
            value.setDiagnosticInfo(diagnosis(node, depth + 1));
            return value;
        }
    }

    UaDataValue dataValue(const UaXmlNode& node, int depth)
    {
        UaDataValue value;
        if (!enter(node, depth))
            return value;
        value.setValue(variant(node.child("Value"), depth));
        value.setStatusCode(UaStatusCode(number<OpcUa_UInt32>(node.child("StatusCode").child("Code"))));
        value.setSourceTimestamp(time(node.child("SourceTimestamp")),
                                 number<OpcUa_UInt16>(node.child("SourcePicoseconds")));
        value.setServerTimestamp(time(node.child("ServerTimestamp")),
                                 number<OpcUa_UInt16>(node.child("ServerPicoseconds")));
        return value;
    }

    OpcUa_Int32 index(const UaXmlNode& node) { return node.isNull() ? -1 : number<OpcUa_Int32>(node); }

    UaDiagnosticInfo diagnosis(const UaXmlNode& node, int depth)
    {
        OpcUa_DiagnosticInfo info;
        OpcUa_BuiltInType_InitializeArray(OpcUaType_DiagnosticInfo, &info, 1);
        UaDiagnosticInfo result;
        if (!enter(node, depth))
            return result;
        info.SymbolicId = index(node.child("SymbolicId"));
        info.NamespaceUri = index(node.child("NamespaceUri"));
        info.Locale = index(node.child("Locale"));
        info.LocalizedText = index(node.child("LocalizedText"));
        info.InnerStatusCode = number<OpcUa_UInt32>(node.child("InnerStatusCode").child("Code"));
        keep(textOf(node.child("AdditionalInfo")).copyTo(&info.AdditionalInfo));
        if (const UaXmlNode inner = node.child("InnerDiagnosticInfo"); !inner.isNull()) {
            info.InnerDiagnosticInfo =
                static_cast<OpcUa_DiagnosticInfo*>(OpcUa_Memory_Alloc(sizeof(OpcUa_DiagnosticInfo)));
            if (info.InnerDiagnosticInfo)
                keep(diagnosis(inner, depth + 1).copyTo(info.InnerDiagnosticInfo));
        }
        result.attach(&info);
        return result;
    }

    UaExtensionObject object(const UaXmlNode& node, int depth)
    {
        if (node.firstChild().isNull() || !enter(node, depth))
            return {};
        const UaExpandedNodeId typeId = nodeId(node.child("TypeId"));
        const UaXmlNode body = node.child("Body");
        const UaXmlNode content = body.firstChild();
        if (content.isNull())
            return UaExtensionObject(typeId, UaByteString());
        if (content.name() == UaString("ByteString"))
            return UaExtensionObject(typeId, base64(content));
        const UaStructureDefinition definition = definitionFor(typeId, m_dictionary);
        if (!definition.isNull())
            return fields(content, definition, depth);
        // XML of a type that nobody knows is kept
        return xmlObject(typeId, content.toXml());
    }

    UaExtensionObject fields(const UaXmlNode& node, const UaStructureDefinition& definition, int depth)
    {
        UaExtensionObject result;
        if (!enter(node, depth))
            return result;
        const UaStatusCode status = definition.isUnion() ? encodeUnion(node, definition, depth, result)
                                                         : encodeFields(node, definition, depth, result);
        if (status.isBad())
            fail(node, "fields that do not make a " + definition.name().toStdString(), status.code());
        return result;
    }

    UaStatusCode encodeUnion(const UaXmlNode& node, const UaStructureDefinition& definition, int depth,
                             UaExtensionObject& result)
    {
        UaGenericUnionValue value(definition);
        const auto chosen = number<OpcUa_UInt32>(node.child("SwitchField"));
        if (chosen > static_cast<OpcUa_UInt32>(definition.fieldCount()))
            return OpcUa_BadOutOfRange;
        if (chosen != 0) {
            const UaStructureField known = definition.field(static_cast<int>(chosen) - 1);
            const UaStatusCode set =
                value.setValue(chosen, field(known, node.child(known.name().view()), depth));
            if (set.isBad())
                return set;
        }
        return value.encode(result);
    }

    UaStatusCode encodeFields(const UaXmlNode& node, const UaStructureDefinition& definition, int depth,
                              UaExtensionObject& result)
    {
        UaGenericStructureValue value(definition, m_dictionary);
        const UaXmlNode mask = hasMask(definition) ? node.child("EncodingMask") : UaXmlNode();
        const auto bits = number<OpcUa_UInt32>(mask);
        for (int i = 0; i < definition.fieldCount() && isGood(); ++i) {
            const UaStructureField known = definition.field(i);
            const UaXmlNode content = node.child(known.name().view());
            const int bit = mask.isNull() ? -1 : maskBit(definition, i);
            if (!(bit >= 0 ? (bits >> bit & 1u) != 0 : !content.isNull()))
                continue;
            const UaStatusCode set = value.setField(i, field(known, content, depth));
            if (set.isBad())
                fail(content, "a value that is not of the field's type", set.code());
        }
        return isGood() ? value.encode(result) : UaStatusCode(m_status);
    }

    UaVariant field(const UaStructureField& known, const UaXmlNode& node, int depth)
    {
        UaStructureDefinition nested;
        if (known.isNestedStructure()) {
            nested = findDefinition(known, m_dictionary);
            if (nested.isNull())
                return fail(node, "nobody knows its type", OpcUa_BadDataTypeIdUnknown);
        }
        if (known.valueRank() >= 0) {
            const bool isMatrix = known.valueRank() > 1 && !node.child("Dimensions").isNull();
            return isMatrix ? matrix(node, known.builtInType(), nested, depth + 1)
                            : list(node, known.builtInType(), nested, depth + 1);
        }
        if (!nested.isNull())
            return UaVariant(fields(node, nested, depth + 1));
        if (known.builtInType() != OpcUaType_Int32)
            return scalar(node, known.builtInType(), depth);
        const UaString text = node.text(); // "Blue_2" of an enumeration
        const auto underscore = text.view().rfind('_');
        const auto parsed = parseNumber<OpcUa_Int32>(
            trimmed(underscore == std::string_view::npos ? text.view() : text.view().substr(underscore + 1)));
        return parsed ? UaVariant(*parsed) : fail(node, "no number of its type", OpcUa_BadOutOfRange);
    }

    UaDataTypeDictionary* m_dictionary;
    OpcUa_StatusCode m_status = OpcUa_Good;
    std::string m_error;
};

} // namespace

} // namespace uabase

UaStatusCode UaValueText::fromXml(std::string_view text, UaDataTypeDictionary* dictionary, UaVariant& value,
                                  UaString* error)
{
    UaXmlDocument::Limits limits;
    limits.maximumBytes = 64u * 1024 * 1024;
    limits.maximumDepth = 1024;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const UaXmlDocument document = UaXmlDocument::fromBytes({bytes, text.size()}, limits);
    UaString fault = document.error();
    UaStatusCode status = OpcUa_BadDecodingError;
    if (document.root().is("Variant", uabase::xmlTypesNamespace)) {
        uabase::XmlDecoder decoder(dictionary);
        UaVariant decoded = decoder.variant(document.root(), 0);
        status = UaStatusCode(decoder.status());
        fault = UaString(decoder.error());
        if (!status.isBad())
            value = std::move(decoded);
    } else if (!document.isNull()) {
        fault = "not a value";
    }
    if (error)
        *error = fault;
    return status;
}
