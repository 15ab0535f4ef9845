#include <monitoring/allsink.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <span>
#include <unordered_set>
#include <utility>

namespace monitoring {

AllSink::AllSink(Ready ready, std::size_t capacity, std::shared_ptr<HandOverPacer> pacer)
    : Sink(std::move(ready), std::move(pacer)), m_capacity(std::max<std::size_t>(capacity, 1))
{
}

AllSink::Batch AllSink::take()
{
    Batch batch;
    const HeldLock lock(m_mutex);
    batch.values.swap(m_values);
    batch.changes = takeChangesLocked();
    batch.overflowed = std::exchange(m_overflowed, 0);
    return batch;
}

void AllSink::putLocked(const SinkItem& item, OpcUa_DataValue& value)
{
    assertLocked(m_mutex);
    if (m_values.size() >= m_capacity) {
        m_values.pop_front();
        ++m_overflowed;
    }
    Value& added = m_values.emplace_back();
    added.key = item.key;
    added.origin = item.origin;
    added.value.attach(&value);
}

void AllSink::dropLocked(std::span<const SinkItem> items)
{
    assertLocked(m_mutex);
    if (m_values.empty())
        return;
    std::unordered_set<OpcUa_UInt64> gone;
    for (const SinkItem& item : items)
        gone.insert(item.origin);
    std::erase_if(m_values, [&gone](const Value& value) { return gone.contains(value.origin); });
}

void AllSink::clearLocked()
{
    assertLocked(m_mutex);
    m_values.clear();
}

} // namespace monitoring
