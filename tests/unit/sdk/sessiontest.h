// A session over the scripted stack, and a callback that remembers what it is told.
#pragma once

#include <tests/support/fakestack.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class RecordingCallback : public UaClientSdk::UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClientSdk::UaClient::ServerStatus status) override
    {
        std::lock_guard lock(m_mutex);
        m_statuses.push_back(status);
        m_changed.notify_all();
    }

    bool connectError(OpcUa_UInt32, UaClientSdk::UaClient::ConnectServiceType step, const UaStatus& error,
                      bool clientSide) override
    {
        std::lock_guard lock(m_mutex);
        m_errors.push_back(std::to_string(step) + " " + error.toString().toStdString() +
                           (clientSide ? " ours" : ""));
        m_lastErrorThread = std::this_thread::get_id();
        return overrides;
    }

    std::atomic<bool> overrides{false}; ///< the answer to connectError

    /// Whether the statuses become these within the limit.
    bool waitFor(const std::vector<int>& wanted, std::chrono::milliseconds limit = std::chrono::seconds(10))
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, limit, [&] { return m_statuses == wanted; });
    }

    /// Whether that many come within the limit.
    bool waitForCount(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_statuses.size() >= count; });
    }

    std::thread::id lastErrorThread()
    {
        std::lock_guard lock(m_mutex);
        return m_lastErrorThread;
    }

    std::vector<int> statuses()
    {
        std::lock_guard lock(m_mutex);
        return m_statuses;
    }

    std::vector<std::string> errors()
    {
        std::lock_guard lock(m_mutex);
        return m_errors;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<int> m_statuses;
    std::vector<std::string> m_errors;
    std::thread::id m_lastErrorThread;
};

class SessionTest : public testing::Test
{
protected:
    void SetUp() override { FakeStack::instance().reset(); }

    UaStatus connect()
    {
        return session.connect(UaString("opc.tcp://localhost:4840"), info, UaClientSdk::SessionSecurityInfo(),
                               &callback);
    }

    UaStatus disconnect() { return session.disconnect(UaClientSdk::ServiceSettings(), true); }
    /// Lets the code under test believe that one watchdog time is over.
    void passWatchdogTime() { stack.ticks += session.watchdogTime() + 1; }

    /// The same again and again, until the statuses are these.
    bool passWatchdogTimesUntil(const std::vector<int>& wanted)
    {
        for (int turn = 0; turn < 50; ++turn) {
            passWatchdogTime();
            if (callback.waitFor(wanted, std::chrono::milliseconds(200)))
                return true;
        }
        return false;
    }
    /// One watchdog time, and as many turns of the session thread as show that it does nothing about it.
    bool passWatchdogTimeInVain()
    {
        passWatchdogTime();
        return passTurns();
    }
    /// So many turns of the session thread that it has seen the clock.
    bool passTurns()
    {
        const int enough = stack.tickReads + 3;
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (stack.tickReads < enough && std::chrono::steady_clock::now() < limit)
            std::this_thread::yield();
        return stack.tickReads >= enough;
    }

    FakeStack& stack = FakeStack::instance();
    UaClientSdk::SessionConnectInfo info;
    RecordingCallback callback; ///< outlives the session
    UaClientSdk::UaSession session;
};
