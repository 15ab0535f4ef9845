// Wire layout of structures that do not follow the rules of OPC 10000-6, 5.2.6 to 5.2.8: older servers
// describe theirs step by step.
#pragma once

#include <uabase/structures/uastructuredefinition.h>

#include <memory>
#include <vector>

namespace uabase {

enum class SwitchOperand { Equals, GreaterThan, LessThan, GreaterThanOrEqual, LessThanOrEqual, NotEqual };

/// One piece of a body. Steps refer to earlier ones by index; -1: none.
struct LayoutStep
{
    int field = -1; ///< of the definition; -1: only on the wire (lengths, switches, reserved bits)
    OpcUa_BuiltInType type = OpcUaType_Null; ///< of one element
    unsigned bits = 0;                       ///< above 0: so many bits, the lowest first
    bool bigEndian = false;
    bool characters = false;      ///< a String without a length of its own
    int lengthStep = -1;          ///< holds the number of elements
    bool lengthInBytes = false;   ///< lengthStep counts bytes instead
    OpcUa_Int32 fixedLength = -1; ///< elements that are always there
    int terminator = -1;          ///< element (of one byte) that ends the array
    int switchStep = -1;          ///< the step is there when this one's number passes the test
    SwitchOperand switchOperand = SwitchOperand::Equals;
    OpcUa_UInt64 switchValue = 1;

    bool isPlural() const noexcept { return lengthStep >= 0 || fixedLength >= 0 || terminator >= 0; }
};

struct StructureLayout
{
    std::vector<LayoutStep> steps;
};

/// Bits in one step.
constexpr unsigned maxStepBits = 64;

/// The smallest unsigned type (or Boolean) that holds so many bits.
[[nodiscard]] OpcUa_BuiltInType typeOfBits(unsigned bits) noexcept;
/// Whether a number passes the test of a step.
[[nodiscard]] bool passes(const LayoutStep& step, OpcUa_UInt64 number) noexcept;
/// Makes the definition one of the standard's kinds (plain, with optional fields, union) when the layout is
/// the one that those have, else gives it the layout.
void applyLayout(UaStructureDefinition& definition, StructureLayout layout);

} // namespace uabase
