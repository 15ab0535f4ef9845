// One thread that waits for all sockets and timers of the stack.
#pragma once

#include <stack/core/protocol.h>
#include <stack/transport/uniquefd.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>

namespace opcua {

/// Something with a socket and a timer. Called on the loop's thread with no lock of the loop held; must not
/// block. What is thrown for want of memory is dropped, and the handler called again while there is cause to:
/// handlers end their own connection before it comes to that.
class EventHandler
{
public:
    virtual ~EventHandler() = default;
    /// scratch is the loop's, free to read into.
    virtual void onReady(std::uint32_t epollEvents, MutableByteView scratch) = 0;
    virtual void onTime(TimePoint now) = 0;
    /// When onTime is wanted. Any thread.
    [[nodiscard]] virtual TimePoint deadline() const = 0;
};

class EventLoop
{
public:
    EventLoop(); ///< starts the thread; throws std::system_error when the system has no descriptor or thread
                 ///< left
    ~EventLoop() { stop(); }
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    /// Joins the thread; nothing is dispatched any more. Not from the loop's own thread.
    void stop();

    /// Watches for input; the loop keeps the handler alive until remove. Answers a key, 0 when it failed.
    [[nodiscard]] std::uint64_t add(int socket, std::shared_ptr<EventHandler> handler);
    /// Whether to watch for room to write too.
    void watchOutput(std::uint64_t key, int socket, bool on) { watch(key, socket, true, on); }
    /// What to watch for. Errors and hang-ups are told whatever it is.
    void watch(std::uint64_t key, int socket, bool input, bool output);
    /// May return while onReady or onTime still runs. The socket must still be open.
    void remove(std::uint64_t key, int socket);
    /// A handler's deadline has come nearer.
    void deadlineMoved(TimePoint deadline);

private:
    void run();
    [[nodiscard]] int waitTime();
    void dispatchTimers();
    void wake();

    UniqueFd m_epoll;
    UniqueFd m_wake;
    std::atomic<bool> m_stop = false;
    std::mutex m_mutex;
    std::unordered_map<std::uint64_t, std::shared_ptr<EventHandler>> m_handlers;
    std::uint64_t m_lastKey = 0;
    TimePoint m_plannedWake =
        TimePoint::min(); ///< min while the thread is awake and will look at deadlines anyway
    Bytes m_scratch;
    std::thread m_thread;
};

} // namespace opcua
