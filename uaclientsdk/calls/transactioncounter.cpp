#include <uaclientsdk/calls/transactioncounter.h>

#include <uabase/system/uatrace.h>

namespace UaClientSdk {

void TransactionCounter::begin()
{
    const std::lock_guard lock(m_mutex);
    ++m_count;
}

void TransactionCounter::end()
{
    const std::lock_guard lock(m_mutex);
    if (--m_count == 0)
        m_ended.notify_all(); // under the lock: the one who waits destroys us with it
}

void TransactionCounter::waitForTransactionCompletion(OpcUa_UInt32 traceId)
{
    constexpr auto traceInterval = std::chrono::seconds(1);
    while (!waitForTransactionCompletion(traceId, traceInterval)) {
    }
}

bool TransactionCounter::waitForTransactionCompletion(OpcUa_UInt32 traceId, std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    if (m_count == 0)
        return true;
    const unsigned int pending = m_count;
    lock.unlock();
    UaTrace::tInOut("    [Session=%u] transaction count = %d", traceId, static_cast<int>(pending));
    lock.lock();
    return m_ended.wait_for(lock, limit, [this] { return m_count == 0; });
}

unsigned int TransactionCounter::count() const
{
    const std::lock_guard lock(m_mutex);
    return m_count;
}

} // namespace UaClientSdk
