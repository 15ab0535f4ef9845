#include <monitoring/sink.h>

#include <uabase/system/uatrace.h>

#include <exception>
#include <utility>

namespace monitoring {

Sink::Sink(Ready ready, std::shared_ptr<HandOverPacer> pacer)
    : m_ready(std::move(ready)), m_pacer(std::move(pacer))
{
}

Sink::Sink(Ready ready, std::shared_ptr<HandOverPacer> pacer, bool keepsIncidents)
    : m_ready(std::move(ready)), m_pacer(std::move(pacer)), m_keepsIncidents(keepsIncidents)
{
}

Sink::~Sink()
{
    m_pacer->forget(*this);
}

void Sink::close()
{
    {
        const HeldLock lock(m_mutex);
        m_closed = true;
        m_changes.clear();
        clearLocked();
    }
    m_pacer->forget(*this);
}

void Sink::tell()
{
    {
        const HeldLock lock(m_mutex);
        if (!m_raised || m_closed || !m_ready)
            return;
    }
    try {
        m_ready();
    } catch (const std::exception& fault) {
        UaTrace::tError("Error: Sink::tell - the owner of a sink failed: %s", fault.what());
    }
}

void Sink::noteLocked(const Incident&)
{
    assertLocked(m_mutex);
}

std::vector<ItemChange> Sink::takeChangesLocked()
{
    assertLocked(m_mutex);
    const auto taken = std::exchange(m_changes, {}); // its memory goes, too: changes are rare
    std::vector<ItemChange> changes;
    changes.reserve(taken.size());
    for (const auto& [origin, change] : taken)
        changes.push_back(change);
    m_raised = false;
    return changes;
}

// ---- filling

Sink::Filling::~Filling()
{
    release();
    for (const std::shared_ptr<Sink>& sink : m_raised)
        sink->m_pacer->raise(*sink);
}

bool Sink::Filling::select(Sink& sink)
{
    if (&sink != m_sink) {
        release();
        m_lock = HeldLock(sink.m_mutex);
        m_sink = &sink;
    }
    if (!sink.m_raised && !sink.m_closed) {
        sink.m_raised = true;
        m_raised.push_back(sink.shared_from_this());
    }
    m_open = sink.m_closed ? nullptr : &sink;
    return m_open != nullptr;
}

void Sink::Filling::change(Sink& sink, const SinkItem& item, const ItemChange& news)
{
    if (select(sink))
        sink.m_changes[item.origin] = news;
}

void Sink::Filling::note(Sink& sink, const Incident& incident)
{
    if (sink.m_keepsIncidents && select(sink))
        sink.noteLocked(incident);
}

void Sink::Filling::drop(Sink& sink, std::span<const SinkItem> items)
{
    release();
    const HeldLock lock(sink.m_mutex);
    for (const SinkItem& item : items)
        sink.m_changes.erase(item.origin);
    sink.dropLocked(items);
}

void Sink::Filling::release()
{
    if (m_sink != nullptr)
        m_lock.unlock();
    m_sink = nullptr;
    m_open = nullptr;
}

} // namespace monitoring
