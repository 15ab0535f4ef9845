#include <stack/transport/cancellation.h>

#include <sys/eventfd.h>
#include <system_error>

namespace opcua {

Cancellation::Cancellation() : m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (!m_event)
        throw std::system_error(errno, std::generic_category(), "eventfd");
}

void Cancellation::cancel()
{
    change([this] { m_cancelled = true; });
    static_cast<void>(::eventfd_write(m_event.get(), 1));
}

bool Cancellation::cancelled() const
{
    const std::lock_guard lock(m_mutex);
    return m_cancelled;
}

} // namespace opcua
