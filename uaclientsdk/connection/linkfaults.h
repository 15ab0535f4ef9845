// Which failures of a call say something about the way to the server.
#pragma once

#include <opcua/opcua_statuscodes.h>

#include <algorithm>
#include <array>

namespace UaClientSdk {

/// Failures of the way to the server, which say nothing about what it knows of the session.
[[nodiscard]] inline bool concernsLink(OpcUa_StatusCode status)
{
    constexpr std::array<OpcUa_StatusCode, 13> faults = {
        OpcUa_BadConnectionClosed,   OpcUa_BadTimeout,
        OpcUa_BadCommunicationError, OpcUa_BadNoCommunication,
        OpcUa_BadNotConnected,       OpcUa_BadSecureChannelClosed,
        OpcUa_BadServerNotConnected, OpcUa_BadRequestInterrupted,
        OpcUa_BadTcpInternalError,   OpcUa_BadTcpNotEnoughResources,
        OpcUa_BadTcpServerTooBusy,   OpcUa_BadRequestCancelledByClient,
        OpcUa_BadConnectionRejected};
    return std::find(faults.begin(), faults.end(), status) != faults.end();
}

} // namespace UaClientSdk
