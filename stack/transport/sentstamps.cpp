#include <stack/transport/sentstamps.h>

#include <stack/core/callmeasure.h>

#include <vector>

namespace opcua {

void SentStamps::place(std::uint64_t end) noexcept
{
    for (Entry& entry : m_unsent)
        if (entry.end == unplaced)
            entry.end = end;
}

void SentStamps::stamp(std::uint64_t sent) noexcept
{
    OpcUa_UInt64 now = 0;
    std::erase_if(m_unsent, [&](const Entry& entry) {
        if (entry.end > sent)
            return false;
        entry.measure->Sent = now = now != 0 ? now : stampOfNow();
        return true;
    });
}

void SentStamps::forget(const OpcUa_CallMeasure* measure) noexcept
{
    std::erase_if(
        m_unsent, [measure](const Entry& entry) { return entry.measure == measure; });
}

} // namespace opcua
