// Which changes of a value a monitored item reports.
#pragma once

#include <opcua/opcua_types.h>

/// DataChangeFilter, OPC 10000-4, 7.22.2.
class UaDataChangeFilter
{
public:
    UaDataChangeFilter() noexcept = default;
    UaDataChangeFilter(OpcUa_DataChangeTrigger trigger, OpcUa_DeadbandType deadbandType,
                       double deadbandValue) noexcept
        : m_trigger(trigger), m_deadbandType(deadbandType), m_deadbandValue(deadbandValue)
    {
    }

    [[nodiscard]] OpcUa_DataChangeTrigger trigger() const noexcept { return m_trigger; }
    [[nodiscard]] OpcUa_DeadbandType deadbandType() const noexcept { return m_deadbandType; }
    [[nodiscard]] double deadbandValue() const noexcept { return m_deadbandValue; }
    void setTrigger(OpcUa_DataChangeTrigger trigger) noexcept { m_trigger = trigger; }
    /// Absolute: a difference in the value's unit; percent: of the item's EURange.
    void setDeadband(OpcUa_DeadbandType type, double value) noexcept
    {
        m_deadbandType = type;
        m_deadbandValue = value;
    }

    /// Into an initialised extension object. BadOutOfMemory.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ExtensionObject* destination) const noexcept;

private:
    OpcUa_DataChangeTrigger m_trigger = OpcUa_DataChangeTrigger_StatusValue;
    OpcUa_DeadbandType m_deadbandType = OpcUa_DeadbandType_None;
    double m_deadbandValue = 0.0;
};
