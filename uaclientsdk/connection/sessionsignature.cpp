#include <uaclientsdk/connection/sessionsignature.h>

#include <uabase/system/uatrace.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/cryptoprovider.h>

#include <string>

namespace UaClientSdk {

namespace {

UaByteString joined(const UaByteString& certificate, const UaByteString& nonce)
{
    std::string bytes(certificate.view());
    bytes += nonce.view();
    return UaByteString(static_cast<OpcUa_Int32>(bytes.size()),
                        reinterpret_cast<const OpcUa_Byte*>(bytes.data()));
}

} // namespace

UaStatus signForServer(const CryptoProvider& provider, const OpcUa_ByteString& privateKey,
                       const UaByteString& serverCertificate, const UaByteString& serverNonce,
                       OpcUa_SignatureData& signature)
{
    UaByteString bytes;
    UaStatus status = provider.sign(privateKey, joined(serverCertificate, serverNonce), bytes);
    if (status.isGood()) {
        status = bytes.detach(&signature.Signature);
        OpcUa_String_Assign(&signature.Algorithm, provider.signatureUri(), -1);
    }
    return status;
}

UaStatus checkServerSignature(const CryptoProvider& provider, const UaByteString& serverCertificate,
                              const UaByteString& clientCertificate, const UaByteString& clientNonce,
                              const OpcUa_SignatureData& signature)
{
    if (UaString(signature.Algorithm).view() != provider.signatureUri()) {
        UaTrace::tError(
            "The signature algorithm retuned in the server signature does not match the algorithm "
            "expected for the current security policy.");
        return UaStatus(OpcUa_BadSecurityChecksFailed);
    }
    if (provider.verify(serverCertificate, joined(clientCertificate, clientNonce), signature.Signature)
            .isBad()) {
        UaTrace::tError("The server's application signature is invalid");
        return UaStatus(OpcUa_BadSecurityChecksFailed);
    }
    return UaStatus();
}

} // namespace UaClientSdk
