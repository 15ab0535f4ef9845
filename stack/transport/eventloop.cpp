#include <stack/transport/eventloop.h>

#include <opcua/opcua_channel.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <new>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <vector>

namespace opcua {

namespace {

constexpr size_t scratchSize = 256 * 1024;
constexpr std::uint64_t wakeKey = 0;

// So many handlers are called before the loop asks again who is next: their list needs no memory then, and
// those beyond it have their turn at once.
constexpr size_t turnSize = 64;

UniqueFd checked(int fd, const char* what)
{
    if (fd < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return UniqueFd(fd);
}

// One connection that the system has no memory for must not take all others with it.
template <typename Dispatch>
void withoutDying(Dispatch dispatch)
{
    try {
        dispatch();
    } catch (const std::bad_alloc&) {
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "No memory for what a connection has to do");
    }
}

epoll_event interest(std::uint64_t key, bool input, bool output)
{
    epoll_event event{};
    event.events = (input ? static_cast<std::uint32_t>(EPOLLIN) : 0u) |
                   (output ? static_cast<std::uint32_t>(EPOLLOUT) : 0u);
    event.data.u64 = key;
    return event;
}

} // namespace

EventLoop::EventLoop()
    : m_epoll(checked(::epoll_create1(EPOLL_CLOEXEC), "epoll_create1")),
      m_wake(checked(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "eventfd")), m_scratch(scratchSize)
{
    epoll_event event = interest(wakeKey, true, false);
    if (::epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, m_wake.get(), &event) != 0)
        throw std::system_error(errno, std::generic_category(), "epoll_ctl");
    m_thread = std::thread([this] { run(); });
}

void EventLoop::stop()
{
    m_stop = true;
    wake();
    if (m_thread.joinable())
        m_thread.join();
}

void EventLoop::wake()
{
    static_cast<void>(::eventfd_write(m_wake.get(), 1));
}

std::uint64_t EventLoop::add(int socket, std::shared_ptr<EventHandler> handler)
{
    const std::lock_guard lock(m_mutex);
    const std::uint64_t key = ++m_lastKey;
    epoll_event event = interest(key, true, false);
    const auto added = m_handlers.emplace(key, std::move(handler)).first;
    if (::epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, socket, &event) != 0) {
        m_handlers.erase(added);
        return 0;
    }
    return key;
}

void EventLoop::watch(std::uint64_t key, int socket, bool input, bool output)
{
    epoll_event event = interest(key, input, output);
    static_cast<void>(::epoll_ctl(m_epoll.get(), EPOLL_CTL_MOD, socket, &event));
}

void EventLoop::remove(std::uint64_t key, int socket)
{
    std::shared_ptr<EventHandler> last; // its destructor must not run under the lock
    const std::lock_guard lock(m_mutex);
    static_cast<void>(::epoll_ctl(m_epoll.get(), EPOLL_CTL_DEL, socket, nullptr));
    const auto found = m_handlers.find(key);
    if (found == m_handlers.end())
        return;
    last = std::move(found->second);
    m_handlers.erase(found);
}

void EventLoop::deadlineMoved(TimePoint deadline)
{
    const std::lock_guard lock(m_mutex);
    if (deadline < m_plannedWake)
        wake();
}

// Notes until when the thread will sleep, so that only deadlines before that need to wake it.
int EventLoop::waitTime()
{
    const std::lock_guard lock(m_mutex);
    m_plannedWake = never;
    for (const auto& entry : m_handlers)
        m_plannedWake = std::min(m_plannedWake, entry.second->deadline());
    if (m_plannedWake == never)
        return -1;
    const auto left = std::chrono::ceil<Milliseconds>(m_plannedWake - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 3'600'000));
}

void EventLoop::dispatchTimers()
{
    const TimePoint now = std::chrono::steady_clock::now();
    std::array<std::shared_ptr<EventHandler>, turnSize> due;
    size_t count = 0;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& entry : m_handlers)
            if (count < due.size() && entry.second->deadline() <= now)
                due[count++] = entry.second;
    }
    for (size_t n = 0; n < count; ++n)
        withoutDying([&] { due[n]->onTime(now); });
}

void EventLoop::run()
{
    std::array<epoll_event, turnSize> events{};
    std::array<std::shared_ptr<EventHandler>, turnSize> ready;
    while (!m_stop) {
        const int count =
            ::epoll_wait(m_epoll.get(), events.data(), static_cast<int>(events.size()), waitTime());
        {
            const std::lock_guard lock(m_mutex);
            m_plannedWake = TimePoint::min();
            for (int n = 0; n < count; ++n) {
                // a copy: the struct is packed, and a reference into it would not be aligned
                const std::uint64_t key = events[static_cast<size_t>(n)].data.u64;
                const auto found = m_handlers.find(key);
                if (found != m_handlers.end())
                    ready[static_cast<size_t>(n)] = found->second;
                else if (key == wakeKey) {
                    eventfd_t wakes = 0;
                    static_cast<void>(::eventfd_read(m_wake.get(), &wakes));
                }
            }
        }
        for (size_t n = 0; n < turnSize; ++n)
            if (const auto handler = std::exchange(ready[n], nullptr))
                withoutDying([&] { handler->onReady(events[n].events, m_scratch); });
        dispatchTimers();
    }
}

} // namespace opcua
