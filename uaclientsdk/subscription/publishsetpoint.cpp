#include <uaclientsdk/subscription/publishsetpoint.h>

#include <algorithm>

namespace UaClientSdk {

namespace {

// Few subscriptions get one request more than they need, so that one is at the server while an answer is on
// its way; many share, since not all have news at once.
OpcUa_UInt32 wantedFor(OpcUa_UInt32 subscriptions)
{
    if (subscriptions == 0)
        return 0;
    if (subscriptions <= 4)
        return subscriptions + 1;
    return subscriptions <= 10 ? subscriptions : 10 + (subscriptions - 10) / 2;
}

} // namespace

void PublishSetPoint::calculate(OpcUa_UInt32 subscriptions)
{
    m_value = wantedFor(subscriptions);
    if (m_value > m_cap)
        m_value = ++m_cap;
}

void PublishSetPoint::lower(OpcUa_UInt32 subscriptions)
{
    const OpcUa_UInt32 minimum = subscriptions > 0 ? 1 : 0;
    m_value = std::max(m_value > 0 ? m_value - 1 : 0, minimum);
    m_cap = m_value;
}

} // namespace UaClientSdk
