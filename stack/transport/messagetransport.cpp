#include <stack/transport/messagetransport.h>

#include <utility>

namespace opcua {

void AwaitedCall::complete(OpcUa_StatusCode status, Bytes&& body) noexcept
{
    {
        const std::lock_guard lock(m_mutex);
        m_status = status;
        m_body = std::move(body);
        m_done.store(true, std::memory_order_release);
    }
    m_changed.notify_one();
}

OpcUa_StatusCode AwaitedCall::wait(Bytes& body)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return isDone(); });
    body = std::move(m_body);
    return m_status;
}

} // namespace opcua
