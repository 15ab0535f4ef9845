// The signatures by which client, user and server prove who they are when a session is made.
#pragma once

#include <opcua/opcua_crypto.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>

namespace UaClientSdk {

class CryptoProvider;

/// Of the nonces of client and server; what the client sends has just this length.
constexpr OpcUa_Int32 minimumNonceLength = OPCUA_SESSION_NONCE_LENGTH;

/// Fills an initialised signature over the server's certificate and its last nonce, OPC 10000-4, 5.6.3.
/// serverCertificate is one certificate, privateKey belongs to the signer.
[[nodiscard]] UaStatus signForServer(const CryptoProvider& provider, const OpcUa_ByteString& privateKey,
                                     const UaByteString& serverCertificate, const UaByteString& serverNonce,
                                     OpcUa_SignatureData& signature);

/// Whether the server has signed the client's certificate and nonce, OPC 10000-4, 5.6.2: Good, or
/// BadSecurityChecksFailed for a signature that is wrong or missing or made by another algorithm.
[[nodiscard]] UaStatus checkServerSignature(const CryptoProvider& provider,
                                            const UaByteString& serverCertificate,
                                            const UaByteString& clientCertificate,
                                            const UaByteString& clientNonce,
                                            const OpcUa_SignatureData& signature);

} // namespace UaClientSdk
