#include <uabase/values/uadatachangefilter.h>

#include <uabase/values/uafilterobject_p.h>

OpcUa_StatusCode UaDataChangeFilter::copyTo(OpcUa_ExtensionObject* destination) const noexcept
{
    auto* const filter =
        uaAttachNew<OpcUa_DataChangeFilter>(OpcUa_DataChangeFilter_EncodeableType, destination);
    if (!filter)
        return OpcUa_BadOutOfMemory;
    filter->Trigger = m_trigger;
    filter->DeadbandType = static_cast<OpcUa_UInt32>(m_deadbandType);
    filter->DeadbandValue = m_deadbandValue;
    return OpcUa_Good;
}
