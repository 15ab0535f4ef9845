#include <monitoring/callfaults.h>

#include <algorithm>
#include <array>

namespace monitoring {

bool isPassingFault(OpcUa_StatusCode status)
{
    constexpr std::array<OpcUa_StatusCode, 21> faults = {OpcUa_BadConnectionClosed,
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
                                                         OpcUa_BadSessionIdInvalid,
                                                         OpcUa_BadSessionClosed,
                                                         OpcUa_BadSessionNotActivated,
                                                         OpcUa_BadShutdown,
                                                         OpcUa_BadServerHalted,
                                                         OpcUa_BadInvalidState};
    return std::find(faults.begin(), faults.end(), status) != faults.end();
}

} // namespace monitoring
