// Requests of measured calls on their way to a socket.
#pragma once

#include <opcua/opcua_channel.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace opcua {

/// Places are counted in bytes from the start of the stream.
class SentStamps
{
public:
    /// Room for one more, so that add has nothing to fail at.
    void reserve() { m_unsent.reserve(m_unsent.size() + 1); }
    /// measure stays until it is stamped or forgotten; its request ends there in the stream.
    void add(OpcUa_CallMeasure& measure, std::uint64_t end) noexcept { m_unsent.push_back({&measure, end}); }
    /// As above, with an end that place tells later.
    void add(OpcUa_CallMeasure& measure) noexcept { add(measure, unplaced); }
    /// Those without an end yet end here.
    void place(std::uint64_t end) noexcept;
    /// The stream has left as far as there.
    void stamp(std::uint64_t sent) noexcept;
    void forget(const OpcUa_CallMeasure* measure) noexcept;
    void clear() noexcept { m_unsent.clear(); }

private:
    static constexpr std::uint64_t unplaced = std::numeric_limits<std::uint64_t>::max();

    struct Entry
    {
        OpcUa_CallMeasure* measure;
        std::uint64_t end;
    };
    std::vector<Entry> m_unsent;
};

} // namespace opcua
