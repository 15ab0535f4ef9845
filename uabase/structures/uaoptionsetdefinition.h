// The named bits of an option set, OPC 10000-3, 8.40.
#pragma once

#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <string_view>

class UaOptionSetDefinitionPrivate;

/// Null until it has a data type id or a bit. The value of each entry is the number of its bit, 0 the lowest.
class UaOptionSetDefinition
{
public:
    UaOptionSetDefinition() noexcept;
    /// builtInType: Byte, UInt16, UInt32 or UInt64, or ExtensionObject for the structured form (value, valid
    /// bits).
    UaOptionSetDefinition(const UaString& name, const UaNodeId& dataTypeId, OpcUa_BuiltInType builtInType);
    UaOptionSetDefinition(const UaOptionSetDefinition&) noexcept;
    UaOptionSetDefinition& operator=(const UaOptionSetDefinition&) noexcept;
    ~UaOptionSetDefinition();

    bool isNull() const noexcept { return !d; }
    UaString name() const noexcept;
    UaNodeId dataTypeId() const noexcept;
    UaNodeId binaryEncodingId() const noexcept;     ///< structured form only
    OpcUa_BuiltInType builtInType() const noexcept; ///< Null when the definition is null
    void setBinaryEncodingId(const UaNodeId& encodingId);
    void addBit(const UaEnumValue& bit);
    void addBit(OpcUa_Int64 bit, const UaString& name);

    UaEnumValue bitAt(int index) const noexcept; ///< in order of definition; a null one when out of range
    int bitCount() const noexcept;
    /// The bit of a name; false when there is none.
    [[nodiscard]] bool bitOf(const UaString& name, OpcUa_Int64& bit) const noexcept;
    [[nodiscard]] UaString bitName(OpcUa_Int64 bit) const noexcept; ///< null string when unknown
    /// Names of the set bits joined by separator; a set bit without a name is written as its number.
    [[nodiscard]] UaString toString(OpcUa_UInt64 value, std::string_view separator = " | ") const;

private:
    UaSharedPtr<UaOptionSetDefinitionPrivate> d;
};
