#include <uaclientsdk/connection/cryptoprovider.h>

#include <uabase/values/uastring.h>
#include <uaclientsdk/calls/stackcall.h>

namespace UaClientSdk {

CryptoProvider::CryptoProvider(const UaString& securityPolicyUri)
{
    const StackCall call("OpcUa_CryptoProvider_Create");
    m_status = UaStatus(call.done(OpcUa_CryptoProvider_Create(securityPolicyUri.toUtf8(), &m_provider)));
    if (m_status.isGood())
        m_status = UaStatus(OpcUa_CryptoProvider_GetInfo(m_provider, &m_info));
}

CryptoProvider::~CryptoProvider()
{
    OpcUa_CryptoProvider_Delete(&m_provider);
}

UaStatus CryptoProvider::encrypt(const UaByteString& certificate, const OpcUa_ByteString& plainText,
                                 UaByteString& cipherText) const
{
    OpcUa_ByteString result;
    const OpcUa_StatusCode status =
        OpcUa_CryptoProvider_AsymmetricEncrypt(m_provider, certificate.get(), &plainText, &result);
    cipherText.attach(&result);
    return UaStatus(status);
}

UaStatus CryptoProvider::sign(const OpcUa_ByteString& privateKey, const UaByteString& data,
                              UaByteString& signature) const
{
    OpcUa_ByteString result;
    const OpcUa_StatusCode status =
        OpcUa_CryptoProvider_AsymmetricSign(m_provider, &privateKey, data.get(), &result);
    signature.attach(&result);
    return UaStatus(status);
}

UaStatus CryptoProvider::verify(const UaByteString& certificate, const UaByteString& data,
                                const OpcUa_ByteString& signature) const
{
    return UaStatus(
        OpcUa_CryptoProvider_AsymmetricVerify(m_provider, certificate.get(), data.get(), &signature));
}

} // namespace UaClientSdk
