// In which order, and under which conditions, the threads of a connection tell what they have found out.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/transport/checkedmutex.h>

#include <cstdint>
#include <mutex>
#include <new>

namespace opcua {

/// A connection is used by several threads, one at a time under its mutex. What a use brings about, the
/// outcome, is for others: answers for calls, events for an observer, lines for the trace. They hear of it
/// without the mutex, since they have locks of their own and may ask the connection something; and yet in the
/// order in which it happened, whichever threads found it out.
///
/// An outcome draws a ticket under the mutex, in the same breath in which it is taken from the connection:
/// the order of tickets is that of events. A thread whose ticket's turn has not come waits, without the
/// mutex, until the earlier ones are through. That is short, for nobody who is told may block; and it would
/// be forever if somebody who is told used the connection in a way that has an outcome, so nobody may.
///
/// Whoever closes a connection must know that nobody is told anything any more, and that what the calls
/// refer to may be freed. He closes it first, so that no use has an outcome from then on, and then drains.
/// An outcome is therefore destroyed before its ticket is through, and one that cannot be told for want of
/// memory is through all the same.
class DispatchOrder
{
public:
    /// mutex: the connection's, which outlives this.
    explicit DispatchOrder(const CheckedMutex& mutex) : m_mutex(mutex) {}

    /// With the mutex, which lock holds; without it on return. Runs tell(outcome) when the earlier outcomes
    /// are through, or nothing when outcome.empty().
    template <typename Outcome, typename Tell>
    void dispatch(std::unique_lock<CheckedMutex>& lock, Outcome outcome, Tell tell)
    {
        assertLocked(m_mutex);
        if (outcome.empty())
            return lock.unlock();
        const std::uint64_t ticket = m_nextTicket++;
        m_changed.wait(lock, [&] { return m_dispatchedTickets == ticket; });
        lock.unlock();
        try {
            tell(outcome);
        } catch (const std::bad_alloc&) {
            OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "No memory to tell what has become of a connection");
        }
        outcome = {};
        lock.lock();
        ++m_dispatchedTickets;
        lock.unlock();
        m_changed.notify_all();
    }

    /// With the mutex. Whether an outcome is being told or waits for that.
    [[nodiscard]] bool isDispatchingLocked() const
    {
        assertLocked(m_mutex);
        return m_dispatchedTickets != m_nextTicket;
    }

    /// With the mutex, which is free while this waits until nothing is being told. Not while being told.
    void drainLocked(std::unique_lock<CheckedMutex>& lock)
    {
        assertLocked(m_mutex);
        m_changed.wait(lock, [this] { return !isDispatchingLocked(); });
    }

private:
    const CheckedMutex& m_mutex;
    CheckedCondition m_changed;            ///< a ticket is through
    std::uint64_t m_nextTicket = 0;        ///< each outcome draws one
    std::uint64_t m_dispatchedTickets = 0; ///< those that are through
};

} // namespace opcua
