// Which HTTP connection a request takes, so that none waits in vain behind another.
#pragma once

#include <stack/core/protocol.h>

#include <optional>
#include <span>

namespace opcua {

/// How long a server may hold an answer back. Answers come in the order of the requests, so whatever follows
/// on the same connection is held back too.
enum class HttpPace {
    Quick,
    Slow,    ///< runs a program or searches an archive
    LongPoll ///< is answered when there is something to tell
};

/// By the type id that an encoded request begins with.
[[nodiscard]] HttpPace paceOf(ByteView request);

inline constexpr size_t maxHttpLanes = 6;
/// A connection whose next answer is owed for longer takes no further requests while another can.
inline constexpr Milliseconds httpPatience{1000};

/// One connection, as the choice sees it.
struct HttpLaneLoad
{
    size_t outstanding = 0;
    HttpPace slowest = HttpPace::Quick; ///< of those outstanding
    bool stalled = false;
    bool full = false; ///< the peer will close it behind those outstanding
};

/// The index of the connection that the request goes to; nothing when it should get a new one. Quick requests
/// share one, publishing shares another, a slow request has one to itself; only when all places are taken
/// does a request wait behind others of another kind.
[[nodiscard]] std::optional<size_t> chooseLane(std::span<const HttpLaneLoad> lanes, HttpPace pace);

} // namespace opcua
