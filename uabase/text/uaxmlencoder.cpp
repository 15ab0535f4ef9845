// Writes the XML form of values, OPC 10000-6, 5.3: UaValueText::toXml.
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uadatatypedictionary.h>
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
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>

namespace uabase {

namespace {

bool isNameCharacter(char c) noexcept
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.' || static_cast<unsigned char>(c) >= 0x80;
}

bool isElementName(std::string_view name) noexcept
{
    return !name.empty() && std::ranges::all_of(name, isNameCharacter) && name[0] != '-' && name[0] != '.' &&
           !(name[0] >= '0' && name[0] <= '9');
}

class XmlEncoder
{
public:
    explicit XmlEncoder(UaDataTypeDictionary* dictionary) : m_dictionary(dictionary) {}

    OpcUa_StatusCode status() const noexcept { return m_status; }
    const std::string& text() const noexcept { return m_out; }

    void document(const UaVariant& value)
    {
        m_out.append("<Variant xmlns=\"").append(xmlTypesNamespace);
        m_out.append("\" xmlns:xsi=\"").append(xmlSchemaNamespace).append("\">");
        variantContent(value, 0);
        m_out += "</Variant>";
    }

private:
    void fail(OpcUa_StatusCode status)
    {
        if (OpcUa_IsGood(m_status))
            m_status = status;
    }
    bool enter(int depth)
    {
        if (depth > maxNesting)
            fail(OpcUa_BadEncodingLimitsExceeded);
        return OpcUa_IsGood(m_status);
    }
    void open(std::string_view name)
    {
        if (!isElementName(name))
            fail(OpcUa_BadEncodingError);
        m_out.append("<").append(name).append(">");
    }
    void close(std::string_view name) { m_out.append("</").append(name).append(">"); }
    void nil(std::string_view name) { m_out.append("<").append(name).append(" xsi:nil=\"true\"/>"); }

    // Characters that no document may hold make the value one without XML form.
    void characters(std::string_view text)
    {
        for (const char c : text)
            if (c == '<')
                m_out += "&lt;";
            else if (c == '>')
                m_out += "&gt;";
            else if (c == '&')
                m_out += "&amp;";
            else if (c == '\r')
                m_out += "&#13;";
            else if (static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t')
                return fail(OpcUa_BadEncodingError);
            else
                m_out += c;
        if (!UaString(text).isValidUtf8())
            fail(OpcUa_BadEncodingError);
    }
    void element(std::string_view name, std::string_view text)
    {
        open(name);
        characters(text);
        close(name);
    }
    void element(std::string_view name, const UaString& text)
    {
        if (text.isNull())
            nil(name);
        else
            element(name, text.view());
    }

    void variantContent(const UaVariant& value, int depth)
    {
        if (value.isNull() || !enter(depth))
            return;
        const std::string name(builtInName(value.type()));
        open("Value");
        if (value.isScalar())
            scalar(name, value.type(), scalarData(*value.get()), depth);
        else if (value.isMatrix())
            matrix("Matrix", name, value, UaStructureDefinition(), depth);
        else
            list("ListOf" + name, name, value, UaStructureDefinition(), depth);
        close("Value");
    }

    void elements(const std::string& name, const UaVariant& value, const UaStructureDefinition& nested,
                  int depth)
    {
        const std::size_t size = OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(value.type()));
        const auto* element = static_cast<const unsigned char*>(value.elements());
        for (OpcUa_UInt32 i = 0; i < value.elementCount(); ++i, element += size)
            if (nested.isNull())
                scalar(name, value.type(), element, depth);
            else
                structure(name, *reinterpret_cast<const OpcUa_ExtensionObject*>(element), nested, depth);
    }

    void list(const std::string& listName, const std::string& name, const UaVariant& value,
              const UaStructureDefinition& nested, int depth)
    {
        if (value.arraySize() < 0)
            return nil(listName);
        open(listName);
        elements(name, value, nested, depth);
        close(listName);
    }

    void matrix(const std::string& outer, const std::string& name, const UaVariant& value,
                const UaStructureDefinition& nested, int depth)
    {
        open(outer);
        open("Dimensions");
        for (const OpcUa_Int32 dimension : value.dimensions())
            element("UInt32", std::to_string(dimension));
        close("Dimensions");
        open("Elements");
        elements(name, value, nested, depth);
        close("Elements");
        close(outer);
    }

    void scalar(const std::string& name, OpcUa_BuiltInType type, const void* data, int depth)
    {
        if (!data)
            return nil(name);
        switch (type) {
        case OpcUaType_String:
            return element(name, UaString(*static_cast<const OpcUa_String*>(data)));
        case OpcUaType_ByteString: {
            const UaByteString bytes(*static_cast<const OpcUa_ByteString*>(data));
            return bytes.isNull() ? nil(name) : element(name, bytes.toBase64().view());
        }
        case OpcUaType_XmlElement: {
            const UaByteString xml(*static_cast<const OpcUa_ByteString*>(data));
            return xml.isNull() ? nil(name) : element(name, xml.view());
        }
        case OpcUaType_DateTime:
            return element(name, UaDateTime(*static_cast<const OpcUa_DateTime*>(data)).toFullString().view());
        default:
            break;
        }
        if (type < OpcUaType_String)
            return element(name, copyScalar(type, data).toString().view());
        open(name);
        if (enter(depth))
            content(type, data, depth);
        close(name);
    }

    void content(OpcUa_BuiltInType type, const void* data, int depth)
    {
        switch (type) {
        case OpcUaType_Guid:
            return element("String", UaGuid(*static_cast<const OpcUa_Guid*>(data)).toString().view());
        case OpcUaType_NodeId:
            return element("Identifier",
                           UaNodeId(*static_cast<const OpcUa_NodeId*>(data)).toXmlString().view());
        case OpcUaType_ExpandedNodeId:
            return element(
                "Identifier",
                UaExpandedNodeId(*static_cast<const OpcUa_ExpandedNodeId*>(data)).toString().view());
        case OpcUaType_StatusCode:
            return element("Code", std::to_string(*static_cast<const OpcUa_StatusCode*>(data)));
        case OpcUaType_QualifiedName: {
            const UaQualifiedName name(*static_cast<const OpcUa_QualifiedName*>(data));
            element("NamespaceIndex", std::to_string(name.namespaceIndex()));
            return element("Name", name.name());
        }
        case OpcUaType_LocalizedText: {
            const UaLocalizedText text(*static_cast<const OpcUa_LocalizedText*>(data));
            element("Locale", text.locale());
            return element("Text", text.text());
        }
        case OpcUaType_ExtensionObject:
            return object(UaExtensionObject(*static_cast<const OpcUa_ExtensionObject*>(data)), depth + 1);
        case OpcUaType_DataValue:
            return dataValue(UaDataValue(*static_cast<const OpcUa_DataValue*>(data)), depth + 1);
        case OpcUaType_Variant:
            return variantContent(UaVariant(*static_cast<const OpcUa_Variant*>(data)), depth + 1);
        default:
            return diagnosis(UaDiagnosticInfo(*static_cast<const OpcUa_DiagnosticInfo*>(data)), depth + 1);
        }
    }

    void dataValue(const UaDataValue& value, int depth)
    {
        if (!value.value().isNull()) {
            open("Value");
            variantContent(value.value(), depth);
            close("Value");
        }
        open("StatusCode");
        element("Code", std::to_string(value.statusCode().code()));
        close("StatusCode");
        element("SourceTimestamp", value.sourceTimestamp().toFullString().view());
        element("SourcePicoseconds", std::to_string(value.sourcePicoseconds()));
        element("ServerTimestamp", value.serverTimestamp().toFullString().view());
        element("ServerPicoseconds", std::to_string(value.serverPicoseconds()));
    }

    void diagnosis(const UaDiagnosticInfo& info, int depth)
    {
        if (!enter(depth))
            return;
        element("SymbolicId", std::to_string(info.symbolicId()));
        element("NamespaceUri", std::to_string(info.namespaceUri()));
        element("Locale", std::to_string(info.locale()));
        element("LocalizedText", std::to_string(info.localizedText()));
        element("AdditionalInfo", info.additionalInfo());
        open("InnerStatusCode");
        element("Code", std::to_string(info.innerStatusCode().code()));
        close("InnerStatusCode");
        if (!info.hasInner())
            return;
        open("InnerDiagnosticInfo");
        diagnosis(info.inner(), depth + 1);
        close("InnerDiagnosticInfo");
    }

    void object(const UaExtensionObject& value, int depth)
    {
        if (value.isNull() || !enter(depth))
            return;
        const UaStructureDefinition definition = definitionFor(value.typeId(), m_dictionary);
        const bool isXml = value.encoding() == OpcUa_ExtensionObjectEncoding_Xml;
        const bool hasBody = value.encoding() != OpcUa_ExtensionObjectEncoding_None;
        const auto opened = hasBody && !isXml ? openStructure(value, definition, m_dictionary) : std::nullopt;
        open("TypeId");
        element("Identifier",
                opened ? definition.dataTypeId().toXmlString().view() : value.typeId().toString().view());
        close("TypeId");
        if (!hasBody)
            return;
        open("Body");
        UaByteString bytes;
        if (opened) {
            open(definition.name().view());
            fields(*opened, depth);
            close(definition.name().view());
        } else if (isXml) {
            // as an element only when it is one: it must not close ours
            if (UaXmlDocument::fromBytes(value.xmlBody().bytes()).isNull())
                fail(OpcUa_BadEncodingError);
            m_out += value.xmlBody().view();
        } else if (OpcUa_IsGood(value.binaryBody(bytes))) {
            element("ByteString", bytes.toBase64().view());
        }
        close("Body");
    }

    void structure(const std::string& name, const OpcUa_ExtensionObject& value,
                   const UaStructureDefinition& definition, int depth)
    {
        open(name);
        const auto opened =
            enter(depth) ? openStructure(UaExtensionObject(value), definition, m_dictionary) : std::nullopt;
        if (opened)
            fields(*opened, depth);
        else
            fail(OpcUa_BadEncodingError);
        close(name);
    }

    void fields(const OpenedStructure& opened, int depth)
    {
        if (opened.definition.isUnion()) {
            element("SwitchField", std::to_string(opened.chosen.switchValue()));
            if (opened.chosen.switchValue() != 0)
                field(opened.chosen.field(), opened.chosen.value(), depth + 1);
            return;
        }
        if (hasMask(opened.definition))
            element("EncodingMask", std::to_string(presenceMask(opened)));
        for (int i = 0; i < opened.definition.fieldCount(); ++i)
            if (opened.structure.isFieldSet(i))
                field(opened.definition.field(i), opened.structure.value(i), depth + 1);
    }

    void field(const UaStructureField& known, const UaVariant& value, int depth)
    {
        const std::string name = known.name().toStdString();
        UaStructureDefinition nested;
        if (known.isNestedStructure())
            nested = findDefinition(known, m_dictionary);
        const std::string elementName =
            nested.isNull() ? std::string(builtInName(known.builtInType())) : nested.name().toStdString();
        if (known.valueRank() >= 0) {
            if (value.isMatrix())
                matrix(name, elementName, value, nested, depth);
            else
                list(name, elementName, value, nested, depth);
        } else if (known.builtInType() == OpcUaType_Variant) {
            open(name);
            variantContent(value, depth);
            close(name);
        } else if (const void* data = scalarData(*value.get()); data && !nested.isNull()) {
            structure(name, *static_cast<const OpcUa_ExtensionObject*>(data), nested, depth);
        } else if (const UaString enumerator = enumName(known, value); !enumerator.isEmpty()) {
            element(name, enumerator.toStdString() + '_' + value.toString().toStdString());
        } else {
            scalar(name, known.builtInType(), data, depth);
        }
    }

    static UaString enumName(const UaStructureField& known, const UaVariant& value)
    {
        if (known.builtInType() != OpcUaType_Int32 || known.enumDefinition().isNull())
            return {};
        return known.enumDefinition().valueName(value.toInt32());
    }

    UaDataTypeDictionary* m_dictionary;
    OpcUa_StatusCode m_status = OpcUa_Good;
    std::string m_out;
};

} // namespace

} // namespace uabase

UaStatusCode UaValueText::toXml(const UaVariant& value, UaDataTypeDictionary* dictionary, UaString& text)
{
    uabase::XmlEncoder encoder(dictionary);
    encoder.document(value);
    if (OpcUa_IsGood(encoder.status()))
        text = UaString(encoder.text());
    return encoder.status();
}
