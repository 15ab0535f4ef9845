#include <uabase/system/uathread.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <pthread.h>
#include <system_error>
#include <utility>

namespace {

// Signals belong to the main thread; the mask is inherited, so the creator blocks them for a moment.
class SignalsBlocked
{
public:
    SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP})
            sigdelset(&all, fault);
        pthread_sigmask(SIG_BLOCK, &all, &m_before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t m_before{};
};

} // namespace

UaThread::~UaThread()
{
    if (isRunning()) {
        std::fputs("UaThread: destroyed while it runs\n", stderr);
        std::abort();
    }
    wait();
}

bool UaThread::start()
{
    const std::lock_guard lock(m_mutex);
    if (m_running)
        return false;
    if (m_thread.joinable())
        m_thread.join(); // it has left run() and touches nothing any more
    try {
        const SignalsBlocked blocked;
        m_running = true;
        m_thread = std::thread(&UaThread::enter, this);
        m_id = m_thread.get_id();
    } catch (const std::system_error&) {
        m_running = false;
    }
    return m_running;
}

void UaThread::enter()
{
    {
        // start() is over, and with it the writing of m_id
        const std::lock_guard lock(m_mutex);
    }
    run();
    const std::lock_guard lock(m_mutex);
    m_running = false;
    m_ended.notify_all();
}

bool UaThread::wait(unsigned int milliseconds)
{
    std::thread ended;
    {
        std::unique_lock lock(m_mutex);
        if (m_running && m_id == std::this_thread::get_id())
            return false;
        const auto over = [this] { return !m_running; };
        if (milliseconds == waitForever)
            m_ended.wait(lock, over);
        else if (!m_ended.wait_for(lock, std::chrono::milliseconds(milliseconds), over))
            return false;
        ended = std::move(m_thread);
    }
    if (ended.joinable())
        ended.join();
    return true;
}

bool UaThread::isRunning() const
{
    const std::lock_guard lock(m_mutex);
    return m_running;
}

bool UaThread::isCurrentThread() const
{
    const std::lock_guard lock(m_mutex);
    return m_running && m_id == std::this_thread::get_id();
}
