// How many asynchronous calls of a session are not completed yet.
#pragma once

#include <opcua/opcua_platform.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace UaClientSdk {

/// Any thread.
class TransactionCounter
{
public:
    void begin();
    /// The last thing that a transaction does: whoever waits may be gone when this returns.
    void end();
    /// Blocks until every transaction has ended. The caller sees to it that none begins meanwhile.
    void waitForTransactionCompletion(OpcUa_UInt32 traceId);
    /// The same with an end; false when it came first.
    bool waitForTransactionCompletion(OpcUa_UInt32 traceId, std::chrono::milliseconds limit);
    [[nodiscard]] unsigned int count() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_ended;
    unsigned int m_count = 0;
};

/// One counted transaction; it ends with the object.
class Transaction
{
public:
    Transaction() = default;
    explicit Transaction(TransactionCounter& counter) : m_counter(&counter) { counter.begin(); }
    Transaction(Transaction&& other) noexcept : m_counter(std::exchange(other.m_counter, nullptr)) {}
    Transaction& operator=(Transaction&& other) noexcept
    {
        std::swap(m_counter, other.m_counter);
        return *this;
    }
    ~Transaction()
    {
        if (m_counter)
            m_counter->end();
    }

private:
    TransactionCounter* m_counter = nullptr;
};

} // namespace UaClientSdk
