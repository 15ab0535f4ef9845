// Reaching a server one step at a time, for those who want to know where it stops: its host's addresses, a
// connection to one of them, and the greeting of the connection protocol. Channels do the same in one go.
#ifndef OPCUA_PROBE_H
#define OPCUA_PROBE_H

#include <opcua/opcua_channel.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Bytes of an answer that are kept when it is none of the connection protocol.
#define OPCUA_PROBE_ANSWER_LENGTH 64

/// One attempt at one server. The steps are taken in their order by one thread at a time; each blocks until
/// it is done or its timeout (ms, 0: 10000) is over. A null handle is BadInvalidArgument.
typedef struct OpcUa_ProbeImpl* OpcUa_Probe;

/// What a server said to the greeting.
typedef struct OpcUa_ProbeHello
{
    OpcUa_UInt32 ProtocolVersion;
    OpcUa_UInt32 ReceiveBufferSize;
    OpcUa_UInt32 SendBufferSize;
    OpcUa_UInt32 MaxMessageSize; ///< 0: no limit
    OpcUa_UInt32 MaxChunkCount;  ///< 0: no limit
    const char* Reason;          ///< of an error that it sent instead; else empty. Lives with the probe
    /// How the answer began when it is none of the connection protocol.
    OpcUa_Byte Answer[OPCUA_PROBE_ANSWER_LENGTH];
    OpcUa_UInt32 AnswerLength;
} OpcUa_ProbeHello;

/// Good; BadInvalidArgument; BadTcpEndpointUrlInvalid; BadInvalidState while the stack is not started;
/// BadOutOfMemory. The caller owns the handle, until OpcUa_Probe_Delete.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Probe_Create(const char* url, OpcUa_Probe* probe);
/// Good with at least one address; BadCommunicationError (no such host), BadTimeout,
/// BadRequestCancelledByClient, BadResourceUnavailable (too many look-ups hang).
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Probe_Resolve(OpcUa_Probe probe, OpcUa_UInt32 timeout);
/// How many addresses were found.
OPCUA_EXPORT OpcUa_UInt32 OpcUa_Probe_GetAddressCount(OpcUa_Probe probe);
/// One of them with its port, in the order in which they are tried; empty for none. Lives with the probe.
OPCUA_EXPORT const char* OpcUa_Probe_GetAddress(OpcUa_Probe probe, OpcUa_UInt32 index);
/// Good when one of the addresses has taken the connection; BadConnectionRejected (nobody listens),
/// BadCommunicationError (no way to it), BadTimeout, BadRequestCancelledByClient; BadInvalidState without an
/// address.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Probe_Connect(OpcUa_Probe probe, OpcUa_UInt32 timeout);
/// The address that has taken the connection; empty for none. Lives with the probe.
OPCUA_EXPORT const char* OpcUa_Probe_GetPeer(OpcUa_Probe probe);
/// Sends the greeting of opc.tcp and waits for the answer. Good when it was an acknowledgement; else the
/// server's own status, BadTcpMessageTypeInvalid (somebody who speaks another protocol), BadTimeout,
/// BadConnectionClosed (the peer hung up), BadRequestCancelledByClient; BadInvalidState without a connection.
/// The connection is closed afterwards. hello may be null.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Probe_Hello(OpcUa_Probe probe, OpcUa_UInt32 timeout,
                                                                OpcUa_ProbeHello* hello);
/// Ends a step that runs on another thread, and every later one. Any thread, while the probe lives.
OPCUA_EXPORT void OpcUa_Probe_Cancel(OpcUa_Probe probe);
/// Closes the connection, frees and nulls the handle. No step may run.
OPCUA_EXPORT void OpcUa_Probe_Delete(OpcUa_Probe* probe);

#ifdef __cplusplus
}
#endif
#endif
