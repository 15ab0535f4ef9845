// The right to talk with the server about the identity of a session.
#pragma once

#include <uaclientsdk/connection/sessioncontext.h>

#include <thread>

namespace UaClientSdk {

/// Held by one thread at a time for the length of a CreateSession or ActivateSession with all that belongs to
/// it; who has it already may take it again. No mutex: whoever holds it calls the stack and the application.
class ActivatorTurn
{
public:
    /// Waits until nobody else has it; the calls of who has it are limited in time.
    explicit ActivatorTurn(SessionContext& context) : m_context(context)
    {
        SessionLock lock(m_context.mutex);
        m_isOuter = m_context.activator != std::this_thread::get_id();
        m_context.activatorDone.wait(
            lock, [this] { return !m_isOuter || m_context.activator == std::thread::id(); });
        m_context.activator = std::this_thread::get_id();
    }
    ~ActivatorTurn()
    {
        if (!m_isOuter)
            return;
        {
            SessionLock lock(m_context.mutex);
            m_context.activator = std::thread::id();
        }
        m_context.activatorDone.notify_one();
    }
    ActivatorTurn(const ActivatorTurn&) = delete;
    ActivatorTurn& operator=(const ActivatorTurn&) = delete;

    /// Whether the calling thread has it, so that it is within what another step of its own brought about.
    [[nodiscard]] static bool isMine(const SessionContext& context)
    {
        SessionLock lock(context.mutex);
        return context.activator == std::this_thread::get_id();
    }

private:
    SessionContext& m_context;
    bool m_isOuter = false;
};

} // namespace UaClientSdk
