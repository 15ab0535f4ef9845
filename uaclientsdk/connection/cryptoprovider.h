// The algorithms of one security policy.
#pragma once

#include <opcua/opcua_crypto.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>

namespace UaClientSdk {

/// Any thread; results are null on failure.
class CryptoProvider
{
public:
    /// An empty URI means None.
    explicit CryptoProvider(const UaString& securityPolicyUri);
    ~CryptoProvider();
    CryptoProvider(const CryptoProvider&) = delete;
    CryptoProvider& operator=(const CryptoProvider&) = delete;

    /// BadSecurityPolicyRejected for a policy that the stack does not offer; then nothing else may be called.
    [[nodiscard]] UaStatus status() const { return m_status; }
    /// With it there is neither signature nor encryption.
    [[nodiscard]] bool isNone() const { return m_status.isGood() && m_info.MinAsymmetricKeyLength == 0; }
    [[nodiscard]] const char* signatureUri() const { return m_info.AsymmetricSignatureUri; }
    [[nodiscard]] const char* encryptionUri() const { return m_info.AsymmetricEncryptionUri; }

    [[nodiscard]] UaStatus encrypt(const UaByteString& certificate, const OpcUa_ByteString& plainText,
                                   UaByteString& cipherText) const;
    [[nodiscard]] UaStatus sign(const OpcUa_ByteString& privateKey, const UaByteString& data,
                                UaByteString& signature) const;
    [[nodiscard]] UaStatus verify(const UaByteString& certificate, const UaByteString& data,
                                  const OpcUa_ByteString& signature) const;

private:
    OpcUa_CryptoProvider m_provider = nullptr;
    OpcUa_CryptoProviderInfo m_info{};
    UaStatus m_status;
};

} // namespace UaClientSdk
