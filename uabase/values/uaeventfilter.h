// Which events a monitored item reports, and which of their fields.
#pragma once

#include <uabase/values/uacontentfilter.h>
#include <uabase/values/uanodeid.h>

#include <string_view>

/// EventFilter, OPC 10000-4, 7.22.3. The fields of an event come in the order of the select clauses.
class UaEventFilter
{
public:
    /// The value of a field, by the event type that declares it and the path to it; "SourceName" of
    /// BaseEventType without further words.
    void select(std::string_view field);
    void select(const UaNodeId& typeDefinitionId, const UaBrowseNames& path);
    /// An attribute; the node id of a condition, say, with an empty path.
    void select(const UaNodeId& typeDefinitionId, const UaBrowseNames& path, OpcUa_UInt32 attributeId);
    [[nodiscard]] const UaSimpleAttributeOperands& selectClauses() const noexcept { return m_selectClauses; }

    [[nodiscard]] UaContentFilter& where() noexcept { return m_where; }
    [[nodiscard]] const UaContentFilter& where() const noexcept { return m_where; }

    /// Deep copies into an initialised structure or extension object. BadOutOfMemory.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_EventFilter* destination) const noexcept;
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ExtensionObject* destination) const noexcept;

private:
    UaSimpleAttributeOperands m_selectClauses;
    UaContentFilter m_where;
    bool m_complete = true; ///< false when no memory was left for a clause
};
