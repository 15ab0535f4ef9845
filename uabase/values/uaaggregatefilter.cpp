#include <uabase/values/uaaggregatefilter.h>

#include <uabase/values/uafilterobject_p.h>

OpcUa_StatusCode UaAggregateFilter::copyTo(OpcUa_ExtensionObject* destination) const noexcept
{
    auto* const filter =
        uaAttachNew<OpcUa_AggregateFilter>(OpcUa_AggregateFilter_EncodeableType, destination);
    if (!filter)
        return OpcUa_BadOutOfMemory;
    filter->StartTime = m_startTime.value();
    filter->ProcessingInterval = m_processingInterval;
    if (m_configuration)
        filter->AggregateConfiguration = *m_configuration;
    else
        filter->AggregateConfiguration.UseServerCapabilitiesDefaults = OpcUa_True;
    return m_aggregateType.copyTo(&filter->AggregateType);
}
