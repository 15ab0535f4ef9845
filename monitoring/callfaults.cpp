#include <monitoring/callfaults.h>

#include <algorithm>
#include <array>

namespace monitoring {

bool isPassingFault(OpcUa_StatusCode status)
{
    constexpr std::array<OpcUa_StatusCode, 22> faults = {OpcUa_BadConnectionClosed,
                                                         OpcUa_BadTimeout,
                                                         OpcUa_BadRequestTimeout,
                                                         OpcUa_BadCommunicationError,
                                                         OpcUa_BadNoCommunication,
                                                         OpcUa_BadNotConnected,
                                                         OpcUa_BadServerNotConnected,
                                                         OpcUa_BadSecureChannelClosed,
                                                         OpcUa_BadSecureChannelIdInvalid,
                                                         OpcUa_BadRequestInterrupted,
                                                         OpcUa_BadRequestCancelledByClient,
                                                         OpcUa_BadConnectionRejected,
                                                         OpcUa_BadTcpInternalError,
                                                         OpcUa_BadTcpNotEnoughResources,
                                                         OpcUa_BadTcpServerTooBusy,
                                                         OpcUa_BadServerTooBusy,
                                                         OpcUa_BadSessionIdInvalid,
                                                         OpcUa_BadSessionClosed,
                                                         OpcUa_BadSessionNotActivated,
                                                         OpcUa_BadShutdown,
                                                         OpcUa_BadServerHalted,
                                                         OpcUa_BadInvalidState};
    return std::find(faults.begin(), faults.end(), status) != faults.end();
}

bool isUnreadableAnswer(OpcUa_StatusCode status)
{
    switch (status) {
    case OpcUa_BadResponseTooLarge:
    case OpcUa_BadTcpMessageTooLarge:
    case OpcUa_BadEncodingLimitsExceeded:
    case OpcUa_BadDecodingError:
    case OpcUa_BadUnknownResponse:
        return true;
    default:
        return false;
    }
}

bool isTooMuchAtOnce(OpcUa_StatusCode status)
{
    return status == OpcUa_BadTimeout || status == OpcUa_BadRequestTimeout || isUnreadableAnswer(status);
}

} // namespace monitoring
