// Reports an aggregate of a value in place of the value.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>

#include <optional>

/// AggregateFilter, OPC 10000-4, 7.22.4.
class UaAggregateFilter
{
public:
    UaAggregateFilter() = default;
    /// aggregateType is the node of the aggregate function; the interval is in ms.
    UaAggregateFilter(const UaNodeId& aggregateType, double processingInterval)
        : m_aggregateType(aggregateType), m_processingInterval(processingInterval)
    {
    }

    [[nodiscard]] const UaNodeId& aggregateType() const noexcept { return m_aggregateType; }
    [[nodiscard]] double processingInterval() const noexcept { return m_processingInterval; }
    [[nodiscard]] const UaDateTime& startTime() const noexcept { return m_startTime; }
    /// Begin of the first interval; null: as soon as the item is created.
    void setStartTime(const UaDateTime& time) noexcept { m_startTime = time; }
    /// Without one the server's defaults hold.
    void setConfiguration(const OpcUa_AggregateConfiguration& configuration) noexcept
    {
        m_configuration = configuration;
    }

    /// Into an initialised extension object. BadOutOfMemory.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ExtensionObject* destination) const noexcept;

private:
    UaNodeId m_aggregateType;
    double m_processingInterval = 0.0;
    UaDateTime m_startTime;
    std::optional<OpcUa_AggregateConfiguration> m_configuration;
};
