// Stamps in the records of calls that somebody measures.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/core/protocol.h>

#include <chrono>

namespace opcua {

[[nodiscard]] inline OpcUa_UInt64 stampOf(TimePoint time)
{
    using std::chrono::nanoseconds;
    return static_cast<OpcUa_UInt64>(
        std::chrono::duration_cast<nanoseconds>(time.time_since_epoch()).count());
}

[[nodiscard]] inline OpcUa_UInt64 stampOfNow()
{
    return stampOf(std::chrono::steady_clock::now());
}

/// So many bytes of the answer, the first of them read at that time, have come.
inline void countAnswer(OpcUa_CallMeasure& measure, size_t bytes, TimePoint firstRead)
{
    if (bytes != 0 && measure.FirstByte == 0)
        measure.FirstByte = stampOf(firstRead);
    measure.BytesIn += static_cast<OpcUa_UInt32>(bytes);
}

} // namespace opcua
