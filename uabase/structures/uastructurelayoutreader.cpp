// StructureReader of uastructurecodec_p.h for structures with a layout of their own.
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uastructurecodec_p.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaelementblock_p.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace uabase {

namespace {

// The value of a step as lengths and switches use it; signed ones keep their sign in 64 bits.
OpcUa_UInt64 numberOf(const UaVariant& value) noexcept
{
    bool ok = false;
    const OpcUa_Int64 number = value.toInt64(&ok);
    return ok ? static_cast<OpcUa_UInt64>(number) : value.toUInt64();
}

UaVariant variantOfBits(unsigned bits, OpcUa_UInt64 number) noexcept
{
    UaVariant value(number);
    return value.changeType(typeOfBits(bits), false).isGood() ? value : UaVariant();
}

} // namespace

OpcUa_StatusCode StructureReader::readBits(unsigned count, OpcUa_UInt64& number) noexcept
{
    number = 0;
    if (count > left() * 8 - m_bit)
        return OpcUa_BadDecodingError;
    for (unsigned i = 0; i < count; ++i) {
        const OpcUa_UInt64 bit = m_bytes[m_position] >> m_bit & 1u;
        number |= bit << i;
        m_bit = (m_bit + 1) % 8;
        m_position += m_bit == 0 ? 1 : 0;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode StructureReader::readStepScalar(const LayoutStep& step, const UaStructureDefinition& nested,
                                                 void* element, int depth)
{
    if (!step.bigEndian || !nested.isNull())
        return readElement(step.type, nested, element, depth);
    const std::size_t size = OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(step.type));
    std::array<OpcUa_Byte, 8> turned{};
    if (size > turned.size() || left() < size)
        return OpcUa_BadDecodingError;
    std::reverse_copy(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_position),
                      m_bytes.begin() + static_cast<std::ptrdiff_t>(m_position + size), turned.begin());
    m_position += size;
    return OpcUa_BuiltInType_DecodeBinary(static_cast<OpcUa_Byte>(step.type), turned.data(), size, element,
                                          nullptr);
}

std::size_t StructureReader::bytesToTerminator(const LayoutStep& step) const noexcept
{
    const auto from = m_bytes.begin() + static_cast<std::ptrdiff_t>(m_position);
    const auto end = std::find(from, m_bytes.end(), static_cast<OpcUa_Byte>(step.terminator));
    return end == m_bytes.end() ? SIZE_MAX : static_cast<std::size_t>(end - from);
}

OpcUa_StatusCode StructureReader::readCharacters(const LayoutStep& step, OpcUa_Int64 length, UaVariant& value)
{
    if (length >= 0 && static_cast<std::size_t>(length) > left())
        return OpcUa_BadDecodingError;
    const auto size = static_cast<std::size_t>(std::max<OpcUa_Int64>(length, 0));
    const std::span<const OpcUa_Byte> bytes = m_bytes.subspan(m_position, size);
    m_position += size;
    if (step.type == OpcUaType_ByteString) {
        value.setByteString(length < 0 ? UaByteString() : UaByteString(bytes));
        return OpcUa_Good;
    }
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), size);
    if (step.fixedLength >= 0)
        text = text.substr(0, text.find('\0'));
    value.setString(length < 0 ? UaString() : UaString(text));
    return OpcUa_Good;
}

OpcUa_StatusCode StructureReader::readStepArray(const LayoutStep& step, const UaStructureDefinition& nested,
                                                OpcUa_Int64 length, UaVariant& value, int depth)
{
    if (length > maxBodyArrayLength)
        return OpcUa_BadEncodingLimitsExceeded;
    if (step.lengthInBytes && length > static_cast<OpcUa_Int64>(left()))
        return OpcUa_BadDecodingError;
    const std::size_t expected = std::min(static_cast<std::size_t>(std::max<OpcUa_Int64>(length, 0)), left());
    const std::size_t end = m_position + expected; // when the length counts bytes
    ElementBlock block(step.type);
    OpcUa_Int32 count = 0;
    while (step.lengthInBytes ? m_position < end : count < length) {
        void* element = block.next(std::max<std::size_t>(expected, 1) + static_cast<std::size_t>(count));
        if (!element)
            return OpcUa_BadOutOfMemory;
        const std::size_t before = m_position;
        if (const OpcUa_StatusCode status = readStepScalar(step, nested, element, depth);
            !OpcUa_IsGood(status))
            return status;
        block.keep();
        ++count;
        // elements without bytes would let a length of any size through
        if (m_position == before)
            return OpcUa_BadDecodingError;
    }
    if (step.lengthInBytes && length >= 0 && m_position != end)
        return OpcUa_BadDecodingError;
    return value.attachArray(step.type, length < 0 ? -1 : count, block.release());
}

OpcUa_StatusCode StructureReader::readStep(const LayoutStep& step, const UaStructureField& field,
                                           OpcUa_Int64 length, UaVariant& value, int depth)
{
    if (m_bit != 0) {
        m_bit = 0;
        ++m_position;
    }
    std::size_t skipped = 0;
    if (step.terminator >= 0) {
        const std::size_t size = bytesToTerminator(step);
        if (size == SIZE_MAX)
            return OpcUa_BadDecodingError;
        length = static_cast<OpcUa_Int64>(size);
        skipped = 1;
    }
    UaStructureDefinition nested;
    if (field.isNestedStructure()) {
        nested = findDefinition(field, m_dictionary);
        if (nested.isNull())
            return OpcUa_BadDataTypeIdUnknown;
    }
    OpcUa_StatusCode status = OpcUa_Good;
    if (step.characters) {
        status = readCharacters(step, length, value);
    } else if (step.isPlural()) {
        status = readStepArray(step, nested, length, value, depth);
    } else {
        AnyBuiltIn element;
        status = readStepScalar(step, nested, &element, depth);
        if (OpcUa_IsGood(status))
            value = takeScalar(step.type, &element);
    }
    m_position += OpcUa_IsGood(status) ? skipped : 0;
    return status;
}

OpcUa_StatusCode StructureReader::readLayout(const UaStructureDefinition& definition,
                                             const StructureLayout& layout, FieldValues* target, int depth)
{
    if (target) {
        target->values.assign(static_cast<std::size_t>(definition.fieldCount()), UaVariant());
        target->present.assign(static_cast<std::size_t>(definition.fieldCount()), false);
    }
    std::vector<OpcUa_UInt64> numbers(layout.steps.size(), 0);
    for (std::size_t i = 0; i < layout.steps.size(); ++i) {
        const LayoutStep& step = layout.steps[i];
        if (step.switchStep >= 0 && !passes(step, numbers[static_cast<std::size_t>(step.switchStep)]))
            continue;
        UaVariant value;
        OpcUa_StatusCode status = OpcUa_Good;
        if (step.bits > 0) {
            status = readBits(step.bits, numbers[i]);
            value = variantOfBits(step.bits, numbers[i]);
        } else {
            OpcUa_Int64 length = step.fixedLength;
            if (step.lengthStep >= 0)
                length = static_cast<OpcUa_Int64>(numbers[static_cast<std::size_t>(step.lengthStep)]);
            status = readStep(step, definition.field(step.field), length, value, depth);
            if (value.isScalar())
                numbers[i] = numberOf(value);
        }
        if (!OpcUa_IsGood(status))
            return status;
        if (target && step.field >= 0) {
            target->values[static_cast<std::size_t>(step.field)] = std::move(value);
            target->present[static_cast<std::size_t>(step.field)] = true;
        }
    }
    if (m_bit != 0) { // the next structure begins with a byte
        m_bit = 0;
        ++m_position;
    }
    return OpcUa_Good;
}

} // namespace uabase
