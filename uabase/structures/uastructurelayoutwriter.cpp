// StructureWriter of uastructurecodec_p.h for structures with a layout of their own: lengths and switches
// follow from the values.
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uastructurecodec_p.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace uabase {

// What is to be written for each step before it is put in place.
struct StructureWriter::LayoutImage
{
    explicit LayoutImage(std::size_t steps) : contents(steps), numbers(steps), present(steps, true) {}

    // Two steps may share a length or switch; it has one number.
    bool setNumber(int step, OpcUa_UInt64 number)
    {
        std::optional<OpcUa_UInt64>& place = numbers[static_cast<std::size_t>(step)];
        if (place && *place != number)
            return false;
        place = number;
        return true;
    }

    std::vector<std::vector<OpcUa_Byte>> contents;
    std::vector<std::optional<OpcUa_UInt64>> numbers;
    std::vector<bool> present;
};

namespace {

// Null values that fill arrays of fixed length: a dictionary may nest long ones in long ones.
constexpr std::size_t maxFilledBytes = 16u * 1024 * 1024;

bool fitsBits(unsigned bits, OpcUa_UInt64 number) noexcept
{
    return bits >= 64 || number >> bits == 0;
}

// The value of a field that steers others.
std::optional<OpcUa_UInt64> numberOf(const UaVariant& value) noexcept
{
    bool ok = false;
    if (!value.isScalar())
        return std::nullopt;
    const OpcUa_Int64 number = value.toInt64(&ok);
    if (ok)
        return static_cast<OpcUa_UInt64>(number);
    const OpcUa_UInt64 large = value.toUInt64(&ok);
    return ok ? std::optional(large) : std::nullopt;
}

// Whether a null array or text is to be told from an empty one by the length -1.
bool isNullOf(const UaVariant& value, OpcUa_BuiltInType lengthType) noexcept
{
    if (lengthType != OpcUaType_SByte && lengthType != OpcUaType_Int16 && lengthType != OpcUaType_Int32 &&
        lengthType != OpcUaType_Int64)
        return false;
    if (!value.isScalar())
        return value.arraySize() < 0;
    return value.type() == OpcUaType_String ? value.get()->Value.String.Length < 0
                                            : value.get()->Value.ByteString.Length < 0;
}

// A number that makes the test of a step come out as wanted.
OpcUa_UInt64 steeringNumber(const LayoutStep& step, bool wanted) noexcept
{
    for (const OpcUa_UInt64 candidate :
         {OpcUa_UInt64{0}, step.switchValue, step.switchValue + 1, step.switchValue - 1})
        if (passes(step, candidate) == wanted)
            return candidate;
    return 0;
}

// Fills numbers of fields that are values themselves, and those that follow from which fields are there.
bool fillSwitches(const StructureLayout& layout, const FieldValues& fields, auto& image)
{
    for (std::size_t i = 0; i < layout.steps.size(); ++i)
        if (layout.steps[i].field >= 0)
            image.numbers[i] = numberOf(fields.values[static_cast<std::size_t>(layout.steps[i].field)]);
    for (const LayoutStep& step : layout.steps) {
        if (step.switchStep < 0 || step.field < 0)
            continue;
        const auto steering = static_cast<std::size_t>(step.switchStep);
        const bool wanted = fields.has(static_cast<std::size_t>(step.field));
        if (layout.steps[steering].field < 0 && wanted &&
            !image.setNumber(step.switchStep, steeringNumber(step, true)))
            return false;
    }
    for (const LayoutStep& step : layout.steps)
        if (step.switchStep >= 0 && !image.numbers[static_cast<std::size_t>(step.switchStep)])
            image.setNumber(step.switchStep, steeringNumber(step, false));
    return true;
}

} // namespace

void StructureWriter::writeBits(unsigned count, OpcUa_UInt64 number)
{
    for (unsigned i = 0; i < count; ++i) {
        if (m_bit == 0)
            m_bytes.push_back(0);
        m_bytes.back() |= static_cast<OpcUa_Byte>((number >> i & 1u) << m_bit);
        m_bit = (m_bit + 1) % 8;
    }
}

OpcUa_StatusCode StructureWriter::writeStepElement(const LayoutStep& step, const UaStructureField& field,
                                                   const void* element, int depth)
{
    const std::size_t before = m_bytes.size();
    const OpcUa_StatusCode status = writeElement(field, element, depth);
    if (OpcUa_IsGood(status) && step.bigEndian && !field.isNestedStructure())
        std::reverse(m_bytes.begin() + static_cast<std::ptrdiff_t>(before), m_bytes.end());
    return status;
}

OpcUa_StatusCode StructureWriter::writeCharacters(const LayoutStep& step, const UaVariant& value)
{
    const bool isText = step.type == OpcUaType_String;
    const UaString string = isText ? UaString(value.get()->Value.String) : UaString();
    const UaByteString bytes = isText ? UaByteString() : UaByteString(value.get()->Value.ByteString);
    const std::string_view text = isText ? string.view() : bytes.view();
    if ((step.fixedLength >= 0 && text.size() > static_cast<std::size_t>(step.fixedLength)) ||
        (step.terminator >= 0 && text.find(static_cast<char>(step.terminator)) != std::string_view::npos))
        return OpcUa_BadEncodingError;
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
    if (step.fixedLength >= 0)
        m_bytes.resize(m_bytes.size() + static_cast<std::size_t>(step.fixedLength) - text.size());
    return OpcUa_Good;
}

OpcUa_StatusCode StructureWriter::writeStepArray(const LayoutStep& step, const UaStructureField& field,
                                                 const UaVariant& value, int depth)
{
    const std::size_t size = OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(step.type));
    const auto* element = static_cast<const unsigned char*>(value.elements());
    const OpcUa_UInt32 count = value.elementCount();
    OpcUa_StatusCode status = OpcUa_Good;
    for (OpcUa_UInt32 i = 0; i < count && OpcUa_IsGood(status); ++i, element += size) {
        if (step.terminator >= 0 && *element == static_cast<unsigned char>(step.terminator))
            return OpcUa_BadEncodingError;
        status = writeStepElement(step, field, element, depth);
    }
    if (step.fixedLength < 0 || !OpcUa_IsGood(status))
        return status;
    // an array that must have its length is filled with null values when it has none
    const auto fixed = static_cast<OpcUa_UInt32>(step.fixedLength);
    if (count != 0 && count != fixed)
        return OpcUa_BadEncodingError;
    AnyBuiltIn null;
    OpcUa_BuiltInType_InitializeArray(static_cast<OpcUa_Byte>(step.type), &null, 1);
    for (OpcUa_UInt32 i = count; i < fixed && OpcUa_IsGood(status); ++i)
        status = m_bytes.size() > maxFilledBytes ? OpcUa_StatusCode(OpcUa_BadEncodingLimitsExceeded)
                                                 : writeStepElement(step, field, &null, depth);
    return status;
}

OpcUa_StatusCode StructureWriter::writeStep(const LayoutStep& step, const UaStructureField& field,
                                            const UaVariant& value, int depth)
{
    if (!fitsField(field, value) || !isBuiltInType(step.type) || step.type != field.builtInType())
        return OpcUa_BadEncodingError;
    OpcUa_StatusCode status = OpcUa_Good;
    if (step.characters) {
        status = writeCharacters(step, value);
    } else if (step.isPlural()) {
        status = writeStepArray(step, field, value, depth);
    } else {
        const bool isVariant = step.type == OpcUaType_Variant;
        status = writeStepElement(step, field, isVariant ? value.get() : scalarData(*value.get()), depth);
    }
    if (OpcUa_IsGood(status) && step.terminator >= 0)
        m_bytes.push_back(static_cast<OpcUa_Byte>(step.terminator));
    return status;
}

OpcUa_StatusCode StructureWriter::writeContents(const UaStructureDefinition& definition,
                                                const StructureLayout& layout, const FieldValues& fields,
                                                LayoutImage& image, int depth)
{
    for (std::size_t i = 0; i < layout.steps.size(); ++i) {
        const LayoutStep& step = layout.steps[i];
        image.present[i] =
            step.switchStep < 0 || passes(step, *image.numbers[static_cast<std::size_t>(step.switchStep)]);
        if (step.field < 0)
            continue;
        const auto index = static_cast<std::size_t>(step.field);
        // the switch is a field itself and must say the same as what is there
        if (image.present[i] != fields.has(index))
            return OpcUa_BadEncodingError;
        if (!image.present[i] || step.bits > 0)
            continue;
        const UaVariant& value = fields.values[index];
        std::vector<OpcUa_Byte> around;
        std::swap(around, m_bytes);
        const OpcUa_StatusCode status = writeStep(step, definition.field(step.field), value, depth);
        std::swap(around, m_bytes);
        if (!OpcUa_IsGood(status))
            return status;
        image.contents[i] = std::move(around);
        if (step.lengthStep < 0)
            continue;
        const std::size_t length =
            step.lengthInBytes || step.characters ? image.contents[i].size() : value.elementCount();
        const OpcUa_BuiltInType lengthType = layout.steps[static_cast<std::size_t>(step.lengthStep)].type;
        if (!image.setNumber(step.lengthStep, isNullOf(value, lengthType) ? OpcUa_UInt64(-1) : length))
            return OpcUa_BadEncodingError;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode StructureWriter::writeLayout(const UaStructureDefinition& definition,
                                              const StructureLayout& layout, const FieldValues& fields,
                                              int depth)
{
    LayoutImage image(layout.steps.size());
    if (!fillSwitches(layout, fields, image))
        return OpcUa_BadEncodingError;
    OpcUa_StatusCode status = writeContents(definition, layout, fields, image, depth);
    m_bit = 0;
    for (std::size_t i = 0; i < layout.steps.size() && OpcUa_IsGood(status); ++i) {
        const LayoutStep& step = layout.steps[i];
        if (!image.present[i])
            continue;
        const OpcUa_UInt64 number = image.numbers[i].value_or(0);
        if (step.bits > 0) {
            if (!fitsBits(step.bits, number))
                return OpcUa_BadEncodingError;
            writeBits(step.bits, number);
            continue;
        }
        m_bit = 0;
        if (step.field >= 0) {
            m_bytes.insert(m_bytes.end(), image.contents[i].begin(), image.contents[i].end());
            continue;
        }
        UaVariant hidden(static_cast<OpcUa_Int64>(number)); // -1: the length of a null array
        if (hidden.changeType(step.type, false).isBad())
            return OpcUa_BadEncodingError;
        status = writeStepElement(step, UaStructureField(UaString(), UaNodeId(), step.type),
                                  scalarData(*hidden.get()), depth);
    }
    m_bit = 0;
    return status;
}

} // namespace uabase
