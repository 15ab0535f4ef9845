// Secure channels, the stack's life cycle and its trace.
#ifndef OPCUA_CHANNEL_H
#define OPCUA_CHANNEL_H

#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_types.h>

#ifdef __cplusplus
extern "C" {
#endif

// ---- proxy stub: the stack above the platform layer

/// Limits and trace of the whole stack. A zero takes the default in brackets.
typedef struct OpcUa_ProxyStubConfiguration
{
    OpcUa_UInt32 TraceLevel;          ///< OPCUA_TRACE_OUTPUT_LEVEL_...
    OpcUa_UInt32 MaxMessageSize;      ///< [16777216]
    OpcUa_UInt32 MaxChunkCount;       ///< [MaxMessageSize / buffer + 2 %]
    OpcUa_UInt32 BufferSize;          ///< [65536], at least 8192
    OpcUa_UInt32 MaxStringLength;     ///< [16777216]
    OpcUa_UInt32 MaxByteStringLength; ///< [16777216]
    OpcUa_UInt32 MaxArrayLength;      ///< [4194304]
    OpcUa_UInt32 MaxNestingLevel;     ///< [100]
} OpcUa_ProxyStubConfiguration;

/// Starts the event-loop thread. configuration may be null, is copied, and that of the first call holds.
/// Counted like OpcUa_P_Initialize. Good; BadOutOfMemory; BadResourceUnavailable when the system has no
/// thread or descriptor left.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode
OpcUa_ProxyStub_Initialize(const OpcUa_ProxyStubConfiguration* configuration);
/// The last one ends all channels and joins the event-loop thread; every pending call completes first. Does
/// nothing on a callback of the stack.
OPCUA_EXPORT void OpcUa_ProxyStub_Clear(void);
/// Six fields as in OpcUa_P_GetVersion.
OPCUA_EXPORT const char* OpcUa_ProxyStub_GetVersion(void);
/// "name:value" pairs separated by backslashes: what the stack offers and its default limits; static storage.
OPCUA_EXPORT const char* OpcUa_ProxyStub_GetStaticConfigString(void);
/// The limits in force, defaults filled in; the defaults alone while the stack is not started. Any thread.
OPCUA_EXPORT void OpcUa_ProxyStub_GetConfiguration(OpcUa_ProxyStubConfiguration* configuration);

// ---- trace
#define OPCUA_TRACE_LEVEL_ERROR 0x0020u
#define OPCUA_TRACE_LEVEL_WARNING 0x0010u
#define OPCUA_TRACE_LEVEL_SYSTEM 0x0008u
#define OPCUA_TRACE_LEVEL_INFO 0x0004u
#define OPCUA_TRACE_LEVEL_DEBUG 0x0002u
#define OPCUA_TRACE_LEVEL_CONTENT 0x0001u
/// Output levels: each includes the graver ones.
#define OPCUA_TRACE_OUTPUT_LEVEL_NONE 0x0000u
#define OPCUA_TRACE_OUTPUT_LEVEL_ERROR 0x0020u
#define OPCUA_TRACE_OUTPUT_LEVEL_WARNING 0x0030u
#define OPCUA_TRACE_OUTPUT_LEVEL_SYSTEM 0x0038u
#define OPCUA_TRACE_OUTPUT_LEVEL_INFO 0x003Cu
#define OPCUA_TRACE_OUTPUT_LEVEL_DEBUG 0x003Eu
#define OPCUA_TRACE_OUTPUT_LEVEL_CONTENT 0x003Fu
#define OPCUA_TRACE_OUTPUT_LEVEL_ALL 0xFFFFu

/// Receives one line without a line end; called from any thread, with no stack lock held. SetHook waits until
/// the old hook runs no more.
typedef void (*OpcUa_Trace_PfnHook)(OpcUa_UInt32 level, const char* text, void* context);

/// A null hook ends the trace to it. Any thread, also inside the hook.
OPCUA_EXPORT void OpcUa_Trace_SetHook(OpcUa_Trace_PfnHook hook, void* context);
/// OPCUA_TRACE_OUTPUT_LEVEL_..., from now on. Good. Any thread.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Trace_ChangeTraceLevel(OpcUa_UInt32 outputLevel);
/// One line of one OPCUA_TRACE_LEVEL_..., which the hook gets when the output level includes it. Any thread.
OPCUA_EXPORT void OpcUa_Trace(OpcUa_UInt32 level, const char* format, ...) OPCUA_PRINTF(2, 3);

// ---- channels
/// A connection to one server. Any thread may use it, several at the same time; whoever deletes it sees to it
/// that nobody does any more. A null handle is BadInvalidArgument.
typedef struct OpcUa_ChannelImpl* OpcUa_Channel;

#define OpcUa_TransportProfile_UaTcp "http://opcfoundation.org/UA-Profile/Transport/uatcp-uasc-uabinary"
#define OpcUa_TransportProfile_HttpsBinary "http://opcfoundation.org/UA-Profile/Transport/https-uabinary"
#define OpcUa_SecurityPolicy_None "http://opcfoundation.org/UA/SecurityPolicy#None"
#define OpcUa_SecurityPolicy_Basic128Rsa15 "http://opcfoundation.org/UA/SecurityPolicy#Basic128Rsa15"
#define OpcUa_SecurityPolicy_Basic256 "http://opcfoundation.org/UA/SecurityPolicy#Basic256"
#define OpcUa_SecurityPolicy_Basic256Sha256 "http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256"
#define OpcUa_SecurityPolicy_Aes128Sha256RsaOaep                                                             \
    "http://opcfoundation.org/UA/SecurityPolicy#Aes128_Sha256_RsaOaep"
#define OpcUa_SecurityPolicy_Aes256Sha256RsaPss                                                              \
    "http://opcfoundation.org/UA/SecurityPolicy#Aes256_Sha256_RsaPss"

typedef enum OpcUa_Channel_Event {
    OpcUa_Channel_Event_Connected = 1,
    OpcUa_Channel_Event_Disconnected = 2,     ///< lost or closed by the peer; status says why
    OpcUa_Channel_Event_Renewed = 3,          ///< a new security token is in use
    OpcUa_Channel_Event_VerifyCertificate = 4 ///< details: a pointer to OpcUa_CertificateValidation, whose
                                              ///< Certificate is the peer's, any issuers it sent behind it
} OpcUa_Channel_Event;

typedef struct OpcUa_CertificateValidation
{
    OpcUa_ByteString Certificate; ///< DER, valid during the callback, however long that takes
    OpcUa_StatusCode Status;      ///< what was found
    OpcUa_Int32 Depth;            ///< of what it was found in: 0 the peer's certificate, 1 its issuer ...
    OpcUa_Int32 ProviderError;    ///< the crypto library's own number
} OpcUa_CertificateValidation;

/// Channel events. Runs on the channel's own callback thread, in order, no lock held; it may block without
/// holding up other channels, and may call any function but Connect, Disconnect (both answer BadInvalidState)
/// and Delete (does nothing) of the same channel. For VerifyCertificate the result decides: Good goes on.
/// Other events ignore the result. VerifyCertificate has a thread of its own in the channel, so that it may
/// ask a user: Connect waits for it, by its deadline or until it is cancelled, and ignores a later answer;
/// Disconnect and other callbacks do not wait for it, Delete and the last OpcUa_ProxyStub_Clear do. A Connect
/// that begins meanwhile asks its own question when the one before is answered, if that is in time.
typedef OpcUa_StatusCode (*OpcUa_Channel_PfnEvent)(OpcUa_Channel channel, OpcUa_Channel_Event event,
                                                   OpcUa_StatusCode status, void* details, void* context);

/// Folders of certificates and revocation lists (DER, unless said otherwise) for the checks of a channel; all
/// strings may be null, and are copied by the call that takes them.
typedef struct OpcUa_PkiConfiguration
{
    const char* TrustedCertificates;
    const char* TrustedRevocationLists;
    const char* IssuerCertificates;
    const char* IssuerRevocationLists;
} OpcUa_PkiConfiguration;

typedef struct OpcUa_ChannelConnectInfo
{
    const char* Url;
    const char* TransportProfileUri; ///< null or empty: as the URL's scheme says
    OpcUa_Channel_PfnEvent Callback;
    void* CallbackContext;
    const OpcUa_ByteString* ClientCertificate; ///< DER; may be null with policy None
    const OpcUa_ByteString* ClientPrivateKey;  ///< DER (PKCS#8 or PKCS#1)
    /// DER; its issuers may follow. No other is accepted. Not for HTTPS: there it is the TLS session's
    const OpcUa_ByteString* ServerCertificate;
    /// null, or no trusted folder: the certificate is not judged. For HTTPS the trusted folder holds PEM
    /// files with the names of hashed directories ("%08x.%d")
    const OpcUa_PkiConfiguration* PkiConfiguration;
    const char* SecurityPolicyUri;
    OpcUa_UInt32 RequestedLifetime; ///< ms
    OpcUa_MessageSecurityMode SecurityMode;
    const char* Reserved;        ///< carried through; empty is fine
    OpcUa_UInt32 ConnectTimeout; ///< ms, from the start of the call, whatever trickles in
    /// Its decryption can be made to answer questions about other messages (OPC 10000-7, 6.6): the policy
    /// Basic128Rsa15 is refused with BadSecurityPolicyRejected unless somebody asked for it for this server
    OpcUa_Boolean AllowBasic128Rsa15;
} OpcUa_ChannelConnectInfo;

/// Good; BadInvalidArgument; BadInvalidState while the stack is not started; BadOutOfMemory. The caller owns
/// the handle, until OpcUa_Channel_Delete.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Channel_Create(OpcUa_Channel* channel);
/// Blocks until the channel is open or the timeout (0: 10000) is over. Good; BadTimeout;
/// BadTcpEndpointUrlInvalid (also http://, and a scheme that is not the profile's); BadCommunicationError (no
/// such host, network); BadConnectionRejected (nobody listens, or buffers too small); BadConnectionClosed
/// (the peer hung up); BadSecurityPolicyRejected, BadSecurityModeRejected; BadNotSupported (the transport
/// profile); BadCertificateInvalid (one does not decode); BadNoValidCertificates (the own key does not
/// decode, or is another certificate's); BadCertificatePolicyCheckFailed (a key's length); what the check of
/// the server's certificate found (see OpcUa_Certificate_Verify; the event VerifyCertificate may override it,
/// within the timeout; over HTTPS also BadCertificateHostNameInvalid); BadSecurityChecksFailed (no TLS
/// session of version 1.2 or 1.3 came about); BadRequestCancelledByClient; BadInvalidState (already
/// connected, or on a callback of the channel); or the server's own status. A channel whose connection was
/// lost may be connected again without Disconnect. revisedLifetime (ms) may be null. The strings and bytes of
/// info are copied.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Channel_Connect(OpcUa_Channel channel,
                                                                    const OpcUa_ChannelConnectInfo* info,
                                                                    OpcUa_UInt32* revisedLifetime);
/// Closes the channel; pending calls complete with BadConnectionClosed and running callbacks end before it
/// returns, VerifyCertificate excepted. Good also when the peer had gone; BadInvalidState when there was no
/// connection. No event follows. Ends a Connect that runs on another thread, as CancelConnect does, and waits
/// for that.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Channel_Disconnect(OpcUa_Channel channel);
/// Ends a Connect that runs on another thread (it answers BadRequestCancelledByClient). Any thread.
OPCUA_EXPORT void OpcUa_Channel_CancelConnect(OpcUa_Channel channel);
/// Disconnects if need be, frees and nulls the handle. No callback of the channel runs afterwards.
OPCUA_EXPORT void OpcUa_Channel_Delete(OpcUa_Channel* channel);
/// Whether a call would be sent now.
OPCUA_EXPORT OpcUa_Boolean OpcUa_Channel_IsConnected(OpcUa_Channel channel);

/// Completion of an asynchronous call. Runs once for each accepted call, on the channel's callback thread, no
/// lock held. On Good the callee owns response (free it with OpcUa_EncodeableObject_Delete); otherwise
/// response is null. A ServiceFault ends as its service result in status.
typedef void (*OpcUa_Channel_PfnRequestComplete)(OpcUa_Channel channel, void* response,
                                                 const OpcUa_EncodeableType* responseType, void* callbackData,
                                                 OpcUa_StatusCode status);

/// One service call, which the generated functions of opcua_clientapi.h wrap. request holds a RequestHeader
/// as its first field, whose TimeoutHint (ms, 0: 10000) limits the wait. Invoke blocks; response is
/// initialised by the call. Good when a response of the expected type came with a service result that is not
/// bad; else the service result, BadTimeout, BadConnectionClosed, BadUnknownResponse, BadDecodingError ...
/// BadRequestTooLarge when the peer would not take it; BadInvalidArgument when a type has no header.
/// BeginInvoke never blocks: BadResourceUnavailable when the peer does not take what was sent before,
/// BadTooManyOperations when too many calls wait; the callback runs when it answers Good, only then. A
/// Publish that does not block waits 10 s longer than its TimeoutHint, so that what a server sends at the
/// hint arrives.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode
OpcUa_Channel_InvokeService(OpcUa_Channel channel, const OpcUa_EncodeableType* requestType,
                            const void* request, const OpcUa_EncodeableType* responseType, void* response);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Channel_BeginInvokeService(
    OpcUa_Channel channel, const OpcUa_EncodeableType* requestType, const void* request,
    const OpcUa_EncodeableType* responseType, OpcUa_Channel_PfnRequestComplete callback, void* callbackData);

/// Where the time of one call went. Stamps are nanoseconds of the system's monotonic clock; what a call never
/// got to is 0.
typedef struct OpcUa_CallMeasure
{
    OpcUa_UInt64 Encoded;   ///< the request's body was encoded
    OpcUa_UInt64 Sent;      ///< the socket had taken the last of the request's bytes
    OpcUa_UInt64 FirstByte; ///< the first bytes of the answer were read from the socket
    OpcUa_UInt64 Decoded;   ///< the answer was decoded, be it a fault
    /// Whole messages: over opc.tcp all chunks with their headers, padding and signatures, over HTTPS the
    /// HTTP message with its header, before TLS.
    OpcUa_UInt32 BytesOut;
    OpcUa_UInt32 BytesIn; ///< what came of the answer, see BytesOut
} OpcUa_CallMeasure;

/// Measures the next service call that the calling thread makes, on any channel and by any of the functions
/// above or of opcua_clientapi.h, whatever becomes of it. Nulls the record, which the caller keeps until the
/// call has returned or, when a Begin function answered Good, the callback has been called: only then may it
/// be read. A null measure takes it back.
OPCUA_EXPORT void OpcUa_Channel_MeasureNextCall(OpcUa_CallMeasure* measure);

#ifdef __cplusplus
}
#endif
#endif
