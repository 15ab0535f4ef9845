#include <monitoring/latestsink.h>

#include <uabase/values/uadatavalue.h>

#include <mutex>
#include <span>
#include <utility>

namespace monitoring {

LatestSink::Batch LatestSink::take()
{
    Batch batch;
    bool someGone = false;
    {
        const HeldLock lock(m_mutex);
        batch.values = m_values.release();
        batch.changes = takeChangesLocked();
        someGone = std::exchange(m_someGone, false);
        ++m_round;
    }
    if (someGone)
        batch.values.removeIf([](const Value& value) { return value.isGone; });
    return batch;
}

LatestSink::Value* LatestSink::findLocked(const SinkMark& mark)
{
    assertLocked(m_mutex);
    return mark.round == m_round && mark.place < m_values.size() ? &m_values[mark.place] : nullptr;
}

void LatestSink::putLocked(const SinkItem& item, OpcUa_DataValue& value, const Arrival&)
{
    assertLocked(m_mutex);
    if (Value* const present = findLocked(item.mark)) {
        ++present->merged;
        present->value.attach(&value);
        return;
    }
    item.mark = {m_round, static_cast<OpcUa_UInt32>(m_values.size())};
    Value& added = m_values.add();
    added.key = item.key;
    added.value.attach(&value);
}

void LatestSink::dropLocked(std::span<const SinkItem> items)
{
    assertLocked(m_mutex);
    for (const SinkItem& item : items)
        if (Value* const present = findLocked(item.mark)) {
            present->isGone = true;
            present->value = UaDataValue();
            m_someGone = true;
        }
}

void LatestSink::clearLocked()
{
    assertLocked(m_mutex);
    m_values = {};
    ++m_round;
}

} // namespace monitoring
