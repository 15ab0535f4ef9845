#include <uabase/structures/uagenericoptionsetvalue.h>

#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaelement.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t maxBytes = 8192;

// Bytes of the number that holds the bits; 0 for the structured form.
std::size_t numberSize(OpcUa_BuiltInType type) noexcept
{
    switch (type) {
    case OpcUaType_Byte:
        return 1;
    case OpcUaType_UInt16:
        return 2;
    case OpcUaType_UInt32:
        return 4;
    case OpcUaType_UInt64:
        return 8;
    default:
        return 0;
    }
}

bool bitAt(const std::vector<OpcUa_Byte>& bytes, OpcUa_UInt32 bit) noexcept
{
    return bit / 8 < bytes.size() && (bytes[bit / 8] >> bit % 8 & 1) != 0;
}

void assignBit(std::vector<OpcUa_Byte>& bytes, OpcUa_UInt32 bit, bool set)
{
    const auto mask = static_cast<OpcUa_Byte>(1u << bit % 8);
    if (set)
        bytes[bit / 8] = static_cast<OpcUa_Byte>(bytes[bit / 8] | mask);
    else
        bytes[bit / 8] = static_cast<OpcUa_Byte>(bytes[bit / 8] & ~mask);
}

// The two byte strings of the structured form.
bool readStructured(const UaExtensionObject& object, std::vector<OpcUa_Byte>& bits,
                    std::vector<OpcUa_Byte>& valid)
{
    UaByteString body;
    OpcUa_OptionSet record;
    UaElement<OpcUa_OptionSet>::initialize(&record, 1);
    std::size_t consumed = 0;
    bool good = OpcUa_IsGood(object.binaryBody(body)) &&
                OpcUa_IsGood(OpcUa_EncodeableObject_DecodeBinary(&OpcUa_OptionSet_EncodeableType, body.data(),
                                                                 body.bytes().size(), &record, &consumed));
    const UaByteString value(record.Value);
    const UaByteString validBits(record.ValidBits);
    good = good && consumed == body.bytes().size() && value.bytes().size() <= maxBytes &&
           validBits.bytes().size() == value.bytes().size();
    if (good) {
        bits.assign(value.bytes().begin(), value.bytes().end());
        valid.assign(validBits.bytes().begin(), validBits.bytes().end());
    }
    UaElement<OpcUa_OptionSet>::clear(&record, 1);
    return good;
}

UaStatusCode writeStructured(const std::vector<OpcUa_Byte>& bits, const std::vector<OpcUa_Byte>& valid,
                             const UaNodeId& encodingId, UaVariant& value)
{
    OpcUa_OptionSet record;
    UaElement<OpcUa_OptionSet>::initialize(&record, 1);
    OpcUa_ByteString bytes;
    OpcUa_ByteString_Initialize(&bytes);
    OpcUa_StatusCode status = UaByteString(std::span(bits)).detach(&record.Value);
    if (OpcUa_IsGood(status))
        status = UaByteString(std::span(valid)).detach(&record.ValidBits);
    if (OpcUa_IsGood(status))
        status = OpcUa_EncodeableObject_EncodeBinary(&OpcUa_OptionSet_EncodeableType, &record, &bytes);
    UaElement<OpcUa_OptionSet>::clear(&record, 1);
    UaByteString body;
    body.attach(&bytes);
    const UaNodeId typeId =
        encodingId.isNull() ? UaNodeId(OpcUa_OptionSet_EncodeableType.BinaryEncodingTypeId) : encodingId;
    if (OpcUa_IsGood(status))
        value.setExtensionObject(UaExtensionObject(UaExpandedNodeId(typeId), body));
    return status;
}

} // namespace

UaStatusCode UaGenericOptionSetValue::decode(const UaVariant& value, const UaOptionSetDefinition& definition)
{
    *this = UaGenericOptionSetValue();
    if (definition.isNull() || !value.isScalar() || value.type() != definition.builtInType())
        return OpcUa_BadTypeMismatch;
    const std::size_t size = numberSize(value.type());
    if (size == 0) {
        if (value.type() != OpcUaType_ExtensionObject)
            return OpcUa_BadTypeMismatch;
        if (!readStructured(value.toExtensionObject(), m_bits, m_valid))
            return OpcUa_BadDecodingError;
    } else {
        const OpcUa_UInt64 number = value.toUInt64();
        for (std::size_t i = 0; i < size; ++i)
            m_bits.push_back(static_cast<OpcUa_Byte>(number >> 8 * i));
        m_valid.assign(size, 0xFF);
    }
    m_definition = definition;
    return OpcUa_Good;
}

UaStatusCode UaGenericOptionSetValue::encode(UaVariant& value) const
{
    value.clear();
    if (isNull())
        return OpcUa_BadInvalidState;
    if (numberSize(m_definition.builtInType()) == 0)
        return writeStructured(m_bits, m_valid, m_definition.binaryEncodingId(), value);
    value.setUInt64(this->value());
    return value.changeType(m_definition.builtInType(), false);
}

bool UaGenericOptionSetValue::isSet(OpcUa_UInt32 bit) const noexcept
{
    return bitAt(m_bits, bit);
}

bool UaGenericOptionSetValue::isValid(OpcUa_UInt32 bit) const noexcept
{
    const std::size_t size = numberSize(m_definition.builtInType());
    return size > 0 ? bit < size * 8 : bitAt(m_valid, bit);
}

UaStatusCode UaGenericOptionSetValue::setBit(OpcUa_UInt32 bit, bool set, bool valid)
{
    const std::size_t size = numberSize(m_definition.builtInType());
    if (isNull())
        return OpcUa_BadInvalidState;
    if (bit / 8 >= (size > 0 ? size : maxBytes))
        return OpcUa_BadOutOfRange;
    if (bit / 8 >= m_bits.size()) {
        m_bits.resize(size > 0 ? size : bit / 8 + 1);
        m_valid.resize(m_bits.size());
    }
    assignBit(m_bits, bit, set);
    assignBit(m_valid, bit, valid);
    return OpcUa_Good;
}

OpcUa_UInt64 UaGenericOptionSetValue::value() const noexcept
{
    OpcUa_UInt64 number = 0;
    for (std::size_t i = 0; i < m_bits.size() && i < sizeof number; ++i)
        number |= static_cast<OpcUa_UInt64>(m_bits[i]) << 8 * i;
    return number;
}

UaString UaGenericOptionSetValue::toString(std::string_view separator) const
{
    std::string text;
    const auto count = static_cast<OpcUa_UInt32>(m_bits.size() * 8);
    for (OpcUa_UInt32 bit = 0; bit < count; ++bit) {
        if (!isSet(bit) || !isValid(bit))
            continue;
        if (!text.empty())
            text += separator;
        const UaString name = m_definition.bitName(bit);
        text += name.isEmpty() ? std::to_string(bit) : name.toStdString();
    }
    return UaString(text);
}
