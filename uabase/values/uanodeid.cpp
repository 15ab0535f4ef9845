#include <uabase/values/uanodeid.h>

#include <uabase/values/uastring.h>
#include <uabase/values/uatext_p.h>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

namespace {

OpcUa_NodeId blank(OpcUa_IdentifierType type, OpcUa_UInt16 namespaceIndex) noexcept
{
    OpcUa_NodeId value;
    OpcUa_NodeId_Initialize(&value);
    value.IdentifierType = static_cast<OpcUa_UInt16>(type);
    value.NamespaceIndex = namespaceIndex;
    return value;
}

char kindLetter(OpcUa_IdentifierType type) noexcept
{
    switch (type) {
    case OpcUa_IdentifierType_String:
        return 's';
    case OpcUa_IdentifierType_Guid:
        return 'g';
    case OpcUa_IdentifierType_Opaque:
        return 'b';
    case OpcUa_IdentifierType_Numeric:
        break;
    }
    return 'i';
}

// "i=84" and so on, without the namespace.
UaNodeId parseIdentifier(std::string_view text, OpcUa_UInt16 namespaceIndex, bool& ok)
{
    ok = text.size() >= 2 && text[1] == '=';
    if (!ok)
        return {};
    const char kind = text[0];
    text.remove_prefix(2);
    if (kind == 'i') {
        const auto number = uabase::parseNumber<OpcUa_UInt32>(text);
        ok = number.has_value();
        return ok ? UaNodeId(*number, namespaceIndex) : UaNodeId();
    }
    if (kind == 's')
        return UaNodeId(UaString(text), namespaceIndex);
    if (kind == 'g') {
        const UaGuid guid = UaGuid::fromString(text, &ok);
        return ok ? UaNodeId(guid, namespaceIndex) : UaNodeId();
    }
    const UaByteString bytes = kind == 'b' ? UaByteString::fromBase64(text) : UaByteString();
    ok = !bytes.isNull();
    return ok ? UaNodeId(bytes, namespaceIndex) : UaNodeId();
}

// Without a copy: node ids key large maps.
std::size_t hashBytes(const void* data, OpcUa_Int32 length) noexcept
{
    if (!data || length <= 0)
        return 0;
    return std::hash<std::string_view>()({static_cast<const char*>(data), static_cast<std::size_t>(length)});
}

} // namespace

UaNodeId::UaNodeId(OpcUa_UInt32 identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    OpcUa_NodeId value = blank(OpcUa_IdentifierType_Numeric, namespaceIndex);
    value.Identifier.Numeric = identifier;
    m_value.attach(&value);
}

UaNodeId::UaNodeId(const UaString& identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    OpcUa_NodeId value = blank(OpcUa_IdentifierType_String, namespaceIndex);
    static_cast<void>(identifier.copyTo(&value.Identifier.String)); // a failure leaves the null string
    m_value.attach(&value);
}

UaNodeId::UaNodeId(const UaGuid& identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    OpcUa_NodeId value = blank(OpcUa_IdentifierType_Guid, namespaceIndex);
    value.Identifier.Guid = identifier.value();
    m_value.attach(&value);
}

UaNodeId::UaNodeId(const UaByteString& identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    OpcUa_NodeId value = blank(OpcUa_IdentifierType_Opaque, namespaceIndex);
    static_cast<void>(identifier.copyTo(&value.Identifier.ByteString)); // as above
    m_value.attach(&value);
}

UaNodeId UaNodeId::fromString(std::string_view text, bool* ok)
{
    bool valid = true;
    OpcUa_UInt16 namespaceIndex = 0;
    if (uabase::takePrefix(text, "ns=")) {
        const auto end = std::min(text.find(';'), text.size());
        const auto number = uabase::parseNumber<OpcUa_UInt16>(text.substr(0, end));
        valid = number.has_value() && end < text.size();
        if (valid) {
            namespaceIndex = *number;
            text.remove_prefix(end + 1);
        }
    }
    UaNodeId result;
    if (valid)
        result = parseIdentifier(text, namespaceIndex, valid);
    if (ok)
        *ok = valid;
    return result;
}

UaString UaNodeId::toXmlString() const
{
    if (namespaceIndex() != 0)
        return toFullString();
    std::string text{kindLetter(identifierType()), '='};
    return UaString(text.append(identifierText().view()));
}

UaString UaNodeId::toFullString() const
{
    std::string text = "ns=" + std::to_string(namespaceIndex()) + ';';
    text += kindLetter(identifierType());
    text += '=';
    return UaString(text.append(identifierText().view()));
}

void UaNodeId::setNamespaceIndex(OpcUa_UInt16 namespaceIndex) noexcept
{
    OpcUa_NodeId value;
    if (OpcUa_IsGood(m_value.detach(&value)))
        value.NamespaceIndex = namespaceIndex;
    m_value.attach(&value);
}

OpcUa_UInt32 UaNodeId::identifierNumeric() const noexcept
{
    return isNumeric() ? m_value->Identifier.Numeric : 0;
}

UaString UaNodeId::identifierString() const noexcept
{
    return identifierType() == OpcUa_IdentifierType_String ? UaString(m_value->Identifier.String)
                                                           : UaString();
}

UaGuid UaNodeId::identifierGuid() const noexcept
{
    return identifierType() == OpcUa_IdentifierType_Guid ? UaGuid(m_value->Identifier.Guid) : UaGuid();
}

UaByteString UaNodeId::identifierOpaque() const noexcept
{
    return identifierType() == OpcUa_IdentifierType_Opaque ? UaByteString(m_value->Identifier.ByteString)
                                                           : UaByteString();
}

UaString UaNodeId::identifierText() const
{
    switch (identifierType()) {
    case OpcUa_IdentifierType_String:
        return identifierString();
    case OpcUa_IdentifierType_Guid:
        return identifierGuid().toString();
    case OpcUa_IdentifierType_Opaque:
        return identifierOpaque().toBase64();
    case OpcUa_IdentifierType_Numeric:
        break;
    }
    return UaString(std::to_string(identifierNumeric()));
}

std::size_t UaNodeId::hash() const noexcept
{
    std::size_t identifier = identifierNumeric();
    if (identifierType() == OpcUa_IdentifierType_String)
        identifier = hashBytes(m_value->Identifier.String.Data, m_value->Identifier.String.Length);
    else if (identifierType() == OpcUa_IdentifierType_Guid)
        identifier = std::hash<UaGuid>()(identifierGuid());
    else if (identifierType() == OpcUa_IdentifierType_Opaque)
        identifier = hashBytes(m_value->Identifier.ByteString.Data, m_value->Identifier.ByteString.Length);
    return identifier * 31u + namespaceIndex() * 4u + static_cast<std::size_t>(identifierType());
}
