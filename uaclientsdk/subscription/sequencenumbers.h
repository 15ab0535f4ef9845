// How notification messages of a subscription are numbered: from 1 on, and 1 again after the largest number.
#pragma once

#include <opcua/opcua_platform.h>

#include <limits>

namespace UaClientSdk {

/// A number further away than this is taken for an error of the server, not for a gap.
constexpr OpcUa_UInt32 unexpectedDistance = 10001;

[[nodiscard]] constexpr OpcUa_UInt32 nextSequenceNumber(OpcUa_UInt32 number)
{
    return number == std::numeric_limits<OpcUa_UInt32>::max() ? 1 : number + 1;
}

/// Of a number that is not 0; that of 1 is the largest one, and of no use when nothing came before it.
[[nodiscard]] constexpr OpcUa_UInt32 previousSequenceNumber(OpcUa_UInt32 number)
{
    return number <= 1 ? std::numeric_limits<OpcUa_UInt32>::max() : number - 1;
}

/// How many numbers one has to go on from the first to reach the second. From 0, which stands for none yet,
/// the first one is 1.
[[nodiscard]] constexpr OpcUa_UInt32 sequenceDistance(OpcUa_UInt32 from, OpcUa_UInt32 to)
{
    return to >= from ? to - from : to - from - 1;
}

/// Whether the second may well come after the first.
[[nodiscard]] constexpr bool isAhead(OpcUa_UInt32 from, OpcUa_UInt32 to)
{
    return to != 0 && to != from && sequenceDistance(from, to) < unexpectedDistance;
}

} // namespace UaClientSdk
