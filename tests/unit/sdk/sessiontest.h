// A session over the scripted stack, and a callback that remembers what it is told.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/fakestack.h>
#include <uaclientsdk/uasession.h>

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
        return false;
    }

    // Whether the statuses become these within the limit.
    bool waitFor(const std::vector<int>& wanted)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_statuses == wanted; });
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
    // Lets the code under test believe that one watchdog time is over.
    void passWatchdogTime() { stack.ticks += session.watchdogTime() + 1; }

    FakeStack& stack = FakeStack::instance();
    UaClientSdk::SessionConnectInfo info;
    RecordingCallback callback; // outlives the session
    UaClientSdk::UaSession session;
};
