// Who the user of a session is, OPC 10000-4, 7.41.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/secretbytes.h>

#include <memory>
#include <utility>

namespace UaClientSdk {

class UaUserIdentityToken
{
public:
    virtual ~UaUserIdentityToken() = default;
    [[nodiscard]] virtual OpcUa_UserTokenType tokenType() const = 0;
    [[nodiscard]] virtual std::shared_ptr<const UaUserIdentityToken> clone() const = 0;

protected:
    UaUserIdentityToken() = default;
    UaUserIdentityToken(const UaUserIdentityToken&) = default;
    UaUserIdentityToken& operator=(const UaUserIdentityToken&) = default;
};

class UaAnonymousIdentityToken : public UaUserIdentityToken
{
public:
    [[nodiscard]] OpcUa_UserTokenType tokenType() const override { return OpcUa_UserTokenType_Anonymous; }
    [[nodiscard]] std::shared_ptr<const UaUserIdentityToken> clone() const override
    {
        return std::make_shared<UaAnonymousIdentityToken>();
    }
};

/// Keeps a copy of the password of its own, which is overwritten with the token's life.
class UaUserNameIdentityToken : public UaUserIdentityToken
{
public:
    UaUserNameIdentityToken(UaString user, const UaString& password)
        : UaUserNameIdentityToken(std::move(user), SecretBytes(password.view()))
    {
    }
    UaUserNameIdentityToken(UaString user, const SecretBytes& password)
        : m_userName(std::move(user)), m_password(password.bytes())
    {
    }
    [[nodiscard]] OpcUa_UserTokenType tokenType() const override { return OpcUa_UserTokenType_UserName; }
    [[nodiscard]] std::shared_ptr<const UaUserIdentityToken> clone() const override
    {
        return std::make_shared<UaUserNameIdentityToken>(m_userName, m_password);
    }
    [[nodiscard]] const UaString& userName() const { return m_userName; }
    [[nodiscard]] const SecretBytes& password() const { return m_password; }

private:
    UaString m_userName;
    SecretBytes m_password; ///< UTF-8
};

/// Keeps a copy of the private key of its own, which is overwritten with the token's life.
class UaCertificateIdentityToken : public UaUserIdentityToken
{
public:
    UaCertificateIdentityToken(UaByteString certificate, const UaByteString& privateKey)
        : UaCertificateIdentityToken(std::move(certificate), SecretBytes(privateKey.bytes()))
    {
    }
    UaCertificateIdentityToken(UaByteString certificate, const SecretBytes& privateKey)
        : m_certificate(std::move(certificate)), m_privateKey(privateKey.bytes())
    {
    }
    [[nodiscard]] OpcUa_UserTokenType tokenType() const override { return OpcUa_UserTokenType_Certificate; }
    [[nodiscard]] std::shared_ptr<const UaUserIdentityToken> clone() const override
    {
        return std::make_shared<UaCertificateIdentityToken>(m_certificate, m_privateKey);
    }
    [[nodiscard]] const UaByteString& certificate() const { return m_certificate; }
    [[nodiscard]] const SecretBytes& privateKey() const { return m_privateKey; }

private:
    UaByteString m_certificate; ///< DER
    SecretBytes m_privateKey;   ///< DER
};

} // namespace UaClientSdk
