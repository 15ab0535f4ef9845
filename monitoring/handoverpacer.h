// Tells sinks' owners that there is something to take, not too often.
#pragma once

#include <monitoring/heldmutex.h>
#include <opcua/opcua_platform.h>
#include <uabase/system/uamutex.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace monitoring {

class Sink;

/// One thread for all sinks that share it; it sleeps while nothing has come. A sink is told of at most twenty
/// times a second.
class HandOverPacer
{
public:
    /// Between two hand-overs of one sink; ms.
    static constexpr OpcUa_UInt64 pause = 50;

    /// The one of the process; made when nobody has it.
    static std::shared_ptr<HandOverPacer> instance();

    /// clock: ms that never go back; a seam for tests. Empty: the stack's.
    explicit HandOverPacer(std::function<OpcUa_UInt64()> clock = {});
    /// Joins the thread: never on it.
    ~HandOverPacer();
    HandOverPacer(const HandOverPacer&) = delete;
    HandOverPacer& operator=(const HandOverPacer&) = delete;

    /// Its owner is told as soon as that may be. Any thread.
    void raise(Sink& sink);
    /// On return it is not being told of, and will not be, unless this is called while it is told of, by the
    /// one who is told.
    void forget(const Sink& sink);

private:
    struct Turn
    {
        Sink* sink;
        OpcUa_UInt64 due;
    };
    struct Told
    {
        const Sink* sink;
        OpcUa_UInt64 when;
    };

    void run();
    [[nodiscard]] OpcUa_UInt64 dueLocked(const Sink& sink, OpcUa_UInt64 now) const;
    void tellLocked(HeldLock& lock, std::vector<Turn>::iterator turn, OpcUa_UInt64 now);

    const std::function<OpcUa_UInt64()> m_clock;
    UaMutex m_mutex;
    std::condition_variable_any m_changed;
    std::condition_variable_any m_toldOne;
    std::vector<Turn> m_turns;
    std::vector<Told> m_told; ///< those that may have to wait
    const Sink* m_current = nullptr;
    bool m_end = false;
    std::thread m_thread; ///< the last one: it uses the others
};

} // namespace monitoring
