#include <uaclientsdk/subscription/publishacknowledgements.h>

namespace UaClientSdk {

void PublishAcknowledgements::add(OpcUa_UInt32 subscriptionId, OpcUa_UInt32 sequenceNumber)
{
    if (m_list.size() >= maxLength)
        m_list.pop_front();
    m_list.push_back({{subscriptionId, sequenceNumber}, 0});
}

PublishAcknowledgements::Batch PublishAcknowledgements::take()
{
    Batch batch;
    batch.items.reserve(m_list.size());
    batch.attempts.reserve(m_list.size());
    for (const Entry& entry : m_list) {
        batch.items.push_back(entry.value);
        batch.attempts.push_back(static_cast<OpcUa_Byte>(entry.attempts + 1));
    }
    m_list.clear();
    return batch;
}

void PublishAcknowledgements::restore(const Batch& batch)
{
    for (std::size_t i = batch.items.size(); i > 0 && m_list.size() < maxLength; --i)
        if (batch.attempts[i - 1] < maxAttempts)
            m_list.push_front({batch.items[i - 1], batch.attempts[i - 1]});
}

void PublishAcknowledgements::forget(OpcUa_UInt32 subscriptionId)
{
    std::erase_if(
        m_list,
        [subscriptionId](const Entry& entry) { return entry.value.SubscriptionId == subscriptionId; });
}

} // namespace UaClientSdk
