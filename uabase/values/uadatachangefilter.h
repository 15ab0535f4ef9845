// Which changes of a value a monitored item reports.
#pragma once

#include <opcua/opcua_types.h>

/// DataChangeFilter, OPC 10000-4, 7.22.2.
class UaDataChangeFilter
{
public:
    UaDataChangeFilter() noexcept = default;
    /// The deadband is absolute, in the value's unit, or in percent of the item's EURange.
    UaDataChangeFilter(OpcUa_DataChangeTrigger trigger, OpcUa_DeadbandType deadbandType,
                       double deadbandValue) noexcept
        : m_trigger(trigger), m_deadbandType(deadbandType), m_deadbandValue(deadbandValue)
    {
    }

    /// Into an initialised extension object. BadOutOfMemory.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ExtensionObject* destination) const noexcept;

private:
    OpcUa_DataChangeTrigger m_trigger = OpcUa_DataChangeTrigger_StatusValue;
    OpcUa_DeadbandType m_deadbandType = OpcUa_DeadbandType_None;
    double m_deadbandValue = 0.0;
};
