// How many asynchronous calls of a session are not completed yet.
#pragma once

#include <condition_variable>
#include <mutex>

#include <opcua/opcua_platform.h>

namespace UaClientSdk {

// Any thread.
class TransactionCounter
{
public:
    void begin();
    // The last thing that a transaction does: whoever waits may be gone when this returns.
    void end();
    // Blocks until every transaction has ended. The caller sees to it that none begins meanwhile.
    void waitForTransactionCompletion(OpcUa_UInt32 traceId);
    [[nodiscard]] unsigned int count() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_ended;
    unsigned int m_count = 0;
};

} // namespace UaClientSdk
