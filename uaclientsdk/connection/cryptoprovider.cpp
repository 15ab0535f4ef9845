#include <uaclientsdk/connection/cryptoprovider.h>

#include <uabase/system/uatrace.h>
#include <uabase/values/uastring.h>

namespace UaClientSdk {

CryptoProvider::CryptoProvider(const UaString& securityPolicyUri)
{
    UaTrace::tIfCall("CALL OpcUa_CryptoProvider_Create");
    m_status = UaStatus(OpcUa_CryptoProvider_Create(securityPolicyUri.toUtf8(), &m_provider));
    UaTrace::tIfCall("DONE OpcUa_CryptoProvider_Create [ret=0x%lx]",
                     static_cast<unsigned long>(m_status.statusCode()));
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
