// Conditions, such as the where clause of an event filter.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uavariant.h>

#include <vector>

using UaBrowseNames = std::vector<UaQualifiedName>;

/// Names a field of an event, in an initialised operand. BadOutOfMemory.
[[nodiscard]] OpcUa_StatusCode uaFillSimpleAttribute(OpcUa_SimpleAttributeOperand& operand,
                                                     const UaNodeId& typeDefinitionId,
                                                     const UaBrowseNames& path, OpcUa_UInt32 attributeId);

/// One operand of a condition, OPC 10000-4, 7.7.4.
class UaFilterOperand
{
public:
    [[nodiscard]] static UaFilterOperand literal(const UaVariant& value);
    /// The result of another element of the same filter.
    [[nodiscard]] static UaFilterOperand element(OpcUa_UInt32 index);
    /// A field of an event: the type that declares it and the path to it.
    [[nodiscard]] static UaFilterOperand attribute(const UaNodeId& typeDefinitionId,
                                                   const UaBrowseNames& path, OpcUa_UInt32 attributeId);

    [[nodiscard]] const UaExtensionObject& value() const noexcept { return m_value; }

private:
    explicit UaFilterOperand(const UaExtensionObject& value) : m_value(value) {}
    UaExtensionObject m_value;
};

/// ContentFilter, OPC 10000-4, 7.7. The first element is the root; an operand names an element behind its
/// own.
class UaContentFilter
{
public:
    /// The index of the new element. What no memory was left for shows in copyTo.
    OpcUa_UInt32 add(OpcUa_FilterOperator filterOperator, const std::vector<UaFilterOperand>& operands);
    [[nodiscard]] OpcUa_UInt32 length() const noexcept { return m_elements.length(); }
    [[nodiscard]] bool isEmpty() const noexcept { return m_elements.isEmpty(); }
    [[nodiscard]] const UaContentFilterElements& elements() const noexcept { return m_elements; }

    /// Deep copy into an initialised structure. BadOutOfMemory.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ContentFilter* destination) const noexcept;

private:
    UaContentFilterElements m_elements;
    bool m_complete = true;
};
