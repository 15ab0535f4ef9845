// What ends the calls of a discovery client that are under way.
#pragma once

#include <uaclientsdk/servicewatch.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace UaClientSdk {

/// Any thread.
class DiscoveryCalls
{
public:
    /// Something that blocks, with what ends it: it may be called before that has begun and after it has
    /// ended, and more than once.
    class Scope
    {
    public:
        Scope(DiscoveryCalls& calls, std::function<void()> end);
        /// Waits for an end that is being called.
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        /// False when all was cancelled before.
        [[nodiscard]] bool mayBegin() const { return m_mayBegin; }

    private:
        friend class DiscoveryCalls;
        DiscoveryCalls& m_calls;
        const std::function<void()> m_end;
        bool m_mayBegin = false;
    };

    DiscoveryCalls() = default;
    DiscoveryCalls(const DiscoveryCalls&) = delete;
    DiscoveryCalls& operator=(const DiscoveryCalls&) = delete;

    /// Ends what is under way and waits for that; nothing may begin any more.
    void cancel();
    [[nodiscard]] bool isCancelled() const;

    void setObservers(std::function<std::shared_ptr<ServiceObserver>()> make);
    /// For one call, or the calls of one session; null for nobody.
    [[nodiscard]] std::shared_ptr<ServiceObserver> observer() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<const Scope*> m_running;
    int m_ending = 0; ///< how many threads call ends
    bool m_isCancelled = false;
    std::function<std::shared_ptr<ServiceObserver>()> m_makeObserver;
};

} // namespace UaClientSdk
