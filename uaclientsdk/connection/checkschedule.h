// When a session checks its connection, and when it tries to bring it back.
#pragma once

#include <opcua/opcua_platform.h>

#include <algorithm>

namespace UaClientSdk {

/// Times are ms of the stack's clock. One thread.
class CheckSchedule
{
public:
    /// A server that keeps refusing is left in peace after so many attempts: one a minute from then on.
    static constexpr OpcUa_UInt32 patience = 100;
    static constexpr OpcUa_UInt64 slowPace = 60000;

    explicit CheckSchedule(OpcUa_UInt64 now) : m_last(now) {}

    /// A check or an attempt has ended.
    void stamp(OpcUa_UInt64 now)
    {
        m_last = now;
        m_checkUrgent = false;
        m_attemptUrgent = false;
    }
    /// The next check is due at once: who has been silent for the length of one check has had its time, and a
    /// call that failed may say the same.
    void hurryCheck() { m_checkUrgent = true; }
    /// The next attempt is due at once, and the server has the patience of a first one again: somebody has
    /// reason to believe that it is back.
    void hurryAttempt()
    {
        m_attemptUrgent = true;
        m_refusedInARow = 0;
    }
    void refused() { ++m_refusedInARow; }
    void accepted() { m_refusedInARow = 0; }

    [[nodiscard]] bool isCheckDue(OpcUa_UInt64 now, OpcUa_UInt64 period) const
    {
        return m_checkUrgent || isOver(now, period);
    }
    [[nodiscard]] bool isAttemptDue(OpcUa_UInt64 now, OpcUa_UInt64 period) const
    {
        return m_attemptUrgent ||
               isOver(now, m_refusedInARow >= patience ? std::max(period, slowPace) : period);
    }

private:
    /// A clock that went back says nothing about how long ago something was.
    [[nodiscard]] bool isOver(OpcUa_UInt64 now, OpcUa_UInt64 period) const
    {
        return now < m_last || now - m_last > period;
    }

    OpcUa_UInt64 m_last;
    OpcUa_UInt32 m_refusedInARow = 0;
    bool m_checkUrgent = false;
    bool m_attemptUrgent = false;
};

} // namespace UaClientSdk
