// How the C variant keeps its scalars; shared by the files of UaVariant and the structure codec.
#pragma once

#include <uabase/values/uavariant.h>

#include <string>
#include <string_view>

namespace uabase {

/// Highest id of a built-in type.
constexpr int lastBuiltInType = OpcUaType_DiagnosticInfo;

[[nodiscard]] constexpr bool isBuiltInType(int type) noexcept
{
    return type > OpcUaType_Null && type <= lastBuiltInType;
}

/// "Int32"; empty for what is no built-in type.
[[nodiscard]] std::string_view builtInName(OpcUa_BuiltInType type) noexcept;
/// The reverse; Null for another name.
[[nodiscard]] OpcUa_BuiltInType builtInTypeOf(std::string_view name) noexcept;

/// Nesting of variants, data values and structures.
constexpr int maxNesting = 100;

/// A scalar of the type that takes over what element (a C value of that type) owns; element is initialised
/// afterwards. A scalar of type Variant is the inner variant itself. Null when out of memory.
[[nodiscard]] UaVariant takeScalar(OpcUa_BuiltInType type, void* element) noexcept;
/// The same with a deep copy.
[[nodiscard]] UaVariant copyScalar(OpcUa_BuiltInType type, const void* element) noexcept;
/// The C value inside a scalar; null when there is none.
[[nodiscard]] const void* scalarData(const OpcUa_Variant& value) noexcept;
/// The null value of a type.
[[nodiscard]] UaVariant nullScalar(OpcUa_BuiltInType type) noexcept;

/// The null array of a type.
[[nodiscard]] UaVariant nullArray(OpcUa_BuiltInType type) noexcept;

/// Collects deep copies of scalars into one array.
class ArrayBuilder
{
public:
    /// Room for count elements of a built-in type.
    ArrayBuilder(OpcUa_BuiltInType type, std::size_t count) noexcept;
    ArrayBuilder(const ArrayBuilder&) = delete;
    ArrayBuilder& operator=(const ArrayBuilder&) = delete;
    ~ArrayBuilder();
    /// Good, BadTypeMismatch for a scalar of another type or an array, BadOutOfMemory. At most count times.
    [[nodiscard]] OpcUa_StatusCode add(const UaVariant& element) noexcept;
    /// Hands the elements over; an array of length 0 when there are none. Statuses as UaVariant::attachArray.
    [[nodiscard]] OpcUa_StatusCode finish(UaVariant& array) noexcept;

private:
    OpcUa_BuiltInType m_type;
    std::size_t m_size;
    unsigned char* m_data = nullptr;
    std::size_t m_count = 0;
};

/// One scalar; Good, BadTypeMismatch, BadOutOfRange, BadSyntaxError. result is left alone on failure.
[[nodiscard]] OpcUa_StatusCode convertScalar(const UaVariant& source, OpcUa_BuiltInType to,
                                             UaVariant& result);

/// The text of toString; depth counts the values around it.
void appendText(std::string& text, const UaVariant& value, int depth);
/// Shortest decimal form that reads back as the same number; INF, -INF and NaN as in XML.
[[nodiscard]] std::string numberText(double value);
[[nodiscard]] std::string numberText(float value);

/// Room for one value of any built-in type.
union AnyBuiltIn {
    AnyBuiltIn() noexcept {}
    OpcUa_Variant variant;
    OpcUa_DataValue dataValue;
    OpcUa_ExtensionObject extensionObject;
    OpcUa_DiagnosticInfo diagnosticInfo;
    OpcUa_ExpandedNodeId expandedNodeId;
};

} // namespace uabase
