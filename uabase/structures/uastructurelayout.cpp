// Tells the layouts that the standard's own rules produce from all others.
#include <uabase/structures/uastructurelayout_p.h>

#include <utility>

namespace uabase {

namespace {

bool sameCondition(const LayoutStep& left, const LayoutStep& right) noexcept
{
    return left.switchStep == right.switchStep && left.switchOperand == right.switchOperand &&
           left.switchValue == right.switchValue;
}

// A scalar, or an array right after its Int32 length.
bool isPlainField(const StructureLayout& layout, std::size_t index) noexcept
{
    const LayoutStep& step = layout.steps[index];
    if (step.field < 0 || step.bits > 0 || step.bigEndian || step.characters || step.lengthInBytes ||
        step.fixedLength >= 0 || step.terminator >= 0)
        return false;
    if (step.lengthStep < 0)
        return true;
    return index > 0 && step.lengthStep == static_cast<int>(index) - 1 &&
           sameCondition(step, layout.steps[index - 1]);
}

bool isPlainLength(const StructureLayout& layout, std::size_t index) noexcept
{
    const LayoutStep& step = layout.steps[index];
    return step.field < 0 && step.bits == 0 && step.type == OpcUaType_Int32 && !step.bigEndian &&
           !step.isPlural() && index + 1 < layout.steps.size() &&
           layout.steps[index + 1].lengthStep == static_cast<int>(index);
}

bool hasPlainFields(const StructureLayout& layout, std::size_t from) noexcept
{
    for (std::size_t i = from; i < layout.steps.size(); ++i)
        if (!isPlainField(layout, i) && !isPlainLength(layout, i))
            return false;
    return true;
}

bool hasNoConditions(const StructureLayout& layout) noexcept
{
    for (const LayoutStep& step : layout.steps)
        if (step.switchStep >= 0)
            return false;
    return true;
}

// Steps of bits at the start that fill a mask of 32; 0 when they do not.
std::size_t maskSteps(const StructureLayout& layout) noexcept
{
    unsigned bits = 0;
    std::size_t count = 0;
    for (; count < layout.steps.size() && bits < 32; ++count) {
        const LayoutStep& step = layout.steps[count];
        if (step.bits == 0 || step.field >= 0 || step.switchStep >= 0)
            return 0;
        bits += step.bits;
    }
    return bits == 32 ? count : 0;
}

// Optional fields in the order of their mask bits, each with a bit of its own.
bool isMasked(const StructureLayout& layout) noexcept
{
    const std::size_t start = maskSteps(layout);
    int nextBit = 0;
    for (std::size_t i = start; i < layout.steps.size(); ++i) {
        const LayoutStep& step = layout.steps[i];
        if (step.switchStep < 0)
            continue;
        if (step.switchStep != nextBit || layout.steps[static_cast<std::size_t>(nextBit)].bits != 1 ||
            step.switchOperand != SwitchOperand::Equals || step.switchValue != 1)
            return false;
        if (!isPlainLength(layout, i))
            ++nextBit;
    }
    return start > 0 && hasPlainFields(layout, start);
}

// A UInt32 that chooses one of the fields, numbered from 1 in their order.
bool isUnion(const StructureLayout& layout) noexcept
{
    if (layout.steps.size() < 2)
        return false;
    const LayoutStep& first = layout.steps[0];
    if (first.field < 0 || first.type != OpcUaType_UInt32 || first.bits > 0 || first.isPlural() ||
        first.bigEndian)
        return false;
    OpcUa_UInt64 next = 1;
    for (std::size_t i = 1; i < layout.steps.size(); ++i) {
        const LayoutStep& step = layout.steps[i];
        if (step.switchStep != 0 || step.switchOperand != SwitchOperand::Equals || step.switchValue != next)
            return false;
        if (!isPlainLength(layout, i))
            ++next;
    }
    return hasPlainFields(layout, 1);
}

void makeUnion(UaStructureDefinition& definition)
{
    UaStructureDefinition made(definition.name(), definition.dataTypeId(), definition.binaryEncodingId());
    made.setUnion(true);
    for (int i = 1; i < definition.fieldCount(); ++i) { // the first is the switch
        UaStructureField field = definition.field(i);
        field.setIsOptional(false);
        made.addField(field);
    }
    definition = made;
}

} // namespace

OpcUa_BuiltInType typeOfBits(unsigned bits) noexcept
{
    if (bits == 1)
        return OpcUaType_Boolean;
    if (bits <= 8)
        return OpcUaType_Byte;
    if (bits <= 16)
        return OpcUaType_UInt16;
    return bits <= 32 ? OpcUaType_UInt32 : OpcUaType_UInt64;
}

bool passes(const LayoutStep& step, OpcUa_UInt64 number) noexcept
{
    switch (step.switchOperand) {
    case SwitchOperand::Equals:
        return number == step.switchValue;
    case SwitchOperand::GreaterThan:
        return number > step.switchValue;
    case SwitchOperand::LessThan:
        return number < step.switchValue;
    case SwitchOperand::GreaterThanOrEqual:
        return number >= step.switchValue;
    case SwitchOperand::LessThanOrEqual:
        return number <= step.switchValue;
    case SwitchOperand::NotEqual:
        return number != step.switchValue;
    }
    return false;
}

void applyLayout(UaStructureDefinition& definition, StructureLayout layout)
{
    if (hasNoConditions(layout) && hasPlainFields(layout, 0))
        return;
    if (isUnion(layout))
        makeUnion(definition);
    else if (isMasked(layout))
        definition.setHasOptionalFields(true);
    else
        definition.setLayout(std::make_shared<const StructureLayout>(std::move(layout)));
}

} // namespace uabase
