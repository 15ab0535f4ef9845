#include <stack/core/httppace.h>

#include <opcua/opcua_identifiers.h>

#include <ranges>
#include <span>
#include <tuple>

namespace opcua {

namespace {

// Moving, with requests on it that this one goes well with.
bool isShared(const HttpLaneLoad& lane, HttpPace pace)
{
    if (lane.outstanding == 0 || lane.full || lane.slowest != pace)
        return false;
    return pace == HttpPace::LongPoll || (pace == HttpPace::Quick && !lane.stalled);
}

} // namespace

HttpPace paceOf(ByteView request)
{
    // requests have ids of namespace 0 that take two bytes
    constexpr OpcUa_Byte fourByteId = 1;
    if (request.size() < 4 || request[0] != fourByteId || request[1] != 0)
        return HttpPace::Quick;
    switch (request[2] | request[3] << 8) {
    case OpcUaId_PublishRequest_Encoding_DefaultBinary:
        return HttpPace::LongPoll;
    case OpcUaId_CallRequest_Encoding_DefaultBinary:
    case OpcUaId_HistoryReadRequest_Encoding_DefaultBinary:
    case OpcUaId_HistoryUpdateRequest_Encoding_DefaultBinary:
    case OpcUaId_QueryFirstRequest_Encoding_DefaultBinary:
    case OpcUaId_QueryNextRequest_Encoding_DefaultBinary:
        return HttpPace::Slow;
    default:
        return HttpPace::Quick;
    }
}

std::optional<size_t> chooseLane(std::span<const HttpLaneLoad> lanes, HttpPace pace)
{
    for (size_t n = 0; n < lanes.size(); ++n)
        if (isShared(lanes[n], pace))
            return n;
    for (size_t n = 0; n < lanes.size(); ++n)
        if (lanes[n].outstanding == 0 && !lanes[n].full)
            return n;
    if (lanes.size() < maxHttpLanes)
        return {};
    // none suits and none can be added: never behind a Publish if it can be helped, then where least waits
    const auto cost = [](const HttpLaneLoad& lane) {
        return std::tuple(lane.full, lane.slowest == HttpPace::LongPoll, lane.stalled, lane.outstanding);
    };
    const auto least = std::ranges::min_element(lanes, {}, cost);
    return static_cast<size_t>(least - lanes.begin());
}

} // namespace opcua
