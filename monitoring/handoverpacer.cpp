#include <monitoring/handoverpacer.h>

#include <monitoring/sink.h>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <utility>

namespace monitoring {

std::shared_ptr<HandOverPacer> HandOverPacer::instance()
{
    static std::mutex mutex;
    static std::weak_ptr<HandOverPacer> present;
    const std::lock_guard lock(mutex);
    std::shared_ptr<HandOverPacer> pacer = present.lock();
    if (!pacer)
        present = pacer = std::make_shared<HandOverPacer>();
    return pacer;
}

HandOverPacer::HandOverPacer(std::function<OpcUa_UInt64()> clock)
    : m_clock(clock ? std::move(clock) : [] { return OpcUa_GetTickCount(); }), m_thread([this] { run(); })
{
}

HandOverPacer::~HandOverPacer()
{
    {
        const HeldLock lock(m_mutex);
        m_end = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void HandOverPacer::raise(Sink& sink)
{
    const OpcUa_UInt64 now = m_clock();
    {
        const HeldLock lock(m_mutex);
        const auto same = [&sink](const Turn& turn) { return turn.sink == &sink; };
        if (std::any_of(m_turns.begin(), m_turns.end(), same))
            return;
        m_turns.push_back({&sink, dueLocked(sink, now)});
    }
    m_changed.notify_all();
}

void HandOverPacer::forget(const Sink& sink)
{
    HeldLock lock(m_mutex);
    std::erase_if(
        m_turns, [&sink](const Turn& turn) { return turn.sink == &sink; });
    std::erase_if(m_told, [&sink](const Told& told) { return told.sink == &sink; });
    if (std::this_thread::get_id() != m_thread.get_id())
        m_toldOne.wait(lock, [this, &sink] { return m_current != &sink; });
}

OpcUa_UInt64 HandOverPacer::dueLocked(const Sink& sink, OpcUa_UInt64 now) const
{
    assertLocked(m_mutex);
    const auto found =
        std::find_if(m_told.begin(), m_told.end(), [&sink](const Told& told) { return told.sink == &sink; });
    return found == m_told.end() ? now : found->when + pause;
}

void HandOverPacer::run()
{
    HeldLock lock(m_mutex);
    while (!m_end) {
        if (m_turns.empty()) {
            m_changed.wait(lock);
            continue;
        }
        const auto first = std::min_element(m_turns.begin(), m_turns.end(),
                                            [](const Turn& a, const Turn& b) { return a.due < b.due; });
        const OpcUa_UInt64 now = m_clock();
        if (first->due > now)
            m_changed.wait_for(lock, std::chrono::milliseconds(std::min(first->due - now, pause)));
        else
            tellLocked(lock, first, now);
    }
}

void HandOverPacer::tellLocked(HeldLock& lock, std::vector<Turn>::iterator turn, OpcUa_UInt64 now)
{
    assertLocked(m_mutex);
    Sink* const sink = turn->sink;
    m_turns.erase(turn);
    std::erase_if(m_told, [sink, now](const Told& told) {
        return told.sink == sink || told.when + pause <= now; // those may be told of at any time
    });
    m_told.push_back({sink, now});
    m_current = sink;
    lock.unlock();
    sink->tell();
    lock.lock();
    m_current = nullptr;
    m_toldOne.notify_all();
}

} // namespace monitoring
