#include <plugins/performance/qlumcallstages.h>

#include <opcua/opcua_statuscodes.h>

#include <utility>

QlumCallStages::Sums QlumCallStages::take()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_sums, {});
}

void QlumCallStages::serviceBegun(OpcUa_UInt64, const UaClientSdk::ServiceCall&) {}

void QlumCallStages::serviceEnded(OpcUa_UInt64, const UaClientSdk::ServiceOutcome& outcome)
{
    const std::lock_guard lock(m_mutex);
    ++m_sums.services;
    m_sums.bytesOut += outcome.measure.BytesOut;
    m_sums.bytesIn += outcome.measure.BytesIn;
    if (outcome.measure.FirstByte > outcome.measure.Encoded)
        m_sums.elsewhere += static_cast<double>(outcome.measure.FirstByte - outcome.measure.Encoded) / 1000;
    const OpcUa_StatusCode status = outcome.status.code();
    m_sums.wasTooMuch |= status == OpcUa_BadTooManyOperations || status == OpcUa_BadRequestTooLarge ||
                         status == OpcUa_BadResponseTooLarge;
}
