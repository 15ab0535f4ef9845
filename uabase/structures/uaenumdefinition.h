// The named values of an enumeration, OPC 10000-3, 8.49.
#pragma once

#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uashared.h>
#include <uabase/values/uastring.h>

#include <vector>

struct UaEnumValue
{
    OpcUa_Int64 value = 0;
    UaString name;
    UaLocalizedText displayName;
    UaLocalizedText description;
    friend bool operator==(const UaEnumValue&, const UaEnumValue&) noexcept = default;
};

class UaEnumDefinitionPrivate;

/// Null until it has a data type id or a value. Copies share the values.
class UaEnumDefinition
{
public:
    UaEnumDefinition() noexcept;
    UaEnumDefinition(const UaString& name, const UaNodeId& dataTypeId);
    UaEnumDefinition(const UaEnumDefinition&) noexcept;
    UaEnumDefinition& operator=(const UaEnumDefinition&) noexcept;
    ~UaEnumDefinition();

    bool isNull() const noexcept { return !d; }
    UaString name() const noexcept;
    UaNodeId dataTypeId() const noexcept;
    void setName(const UaString& name);
    void setDataTypeId(const UaNodeId& dataTypeId);
    void addValue(const UaEnumValue& value);
    void addValue(OpcUa_Int64 value, const UaString& name);

    int valueCount() const noexcept;
    UaEnumValue valueAt(int index) const noexcept; ///< in order of definition; a null one when out of range
    bool hasValue(OpcUa_Int64 value) const noexcept;
    UaEnumValue value(OpcUa_Int64 value) const noexcept; ///< by number; a null one when unknown
    /// The value's name, else its display name; a null string when the number is unknown.
    [[nodiscard]] UaString valueName(OpcUa_Int64 value) const noexcept;
    /// The number of a name; false when there is none.
    [[nodiscard]] bool valueOf(const UaString& name, OpcUa_Int64& value) const noexcept;

private:
    UaSharedPtr<UaEnumDefinitionPrivate> d;
};
