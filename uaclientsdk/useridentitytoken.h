// Who the user of a session is, OPC 10000-4, 7.41.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/uabytestring.h>
#include <uabase/uastring.h>

namespace UaClientSdk {

class UaUserIdentityToken
{
public:
    virtual ~UaUserIdentityToken() = default;
    [[nodiscard]] virtual OpcUa_UserTokenType tokenType() const = 0;
};

class UaAnonymousIdentityToken : public UaUserIdentityToken
{
public:
    [[nodiscard]] OpcUa_UserTokenType tokenType() const override { return OpcUa_UserTokenType_Anonymous; }
};

class UaUserNameIdentityToken : public UaUserIdentityToken
{
public:
    UaUserNameIdentityToken(UaString user, UaString secret)
        : userName(std::move(user)), password(std::move(secret))
    {
    }
    [[nodiscard]] OpcUa_UserTokenType tokenType() const override { return OpcUa_UserTokenType_UserName; }

    UaString userName;
    UaString password;
};

class UaCertificateIdentityToken : public UaUserIdentityToken
{
public:
    UaCertificateIdentityToken(UaByteString cert, UaByteString key)
        : certificate(std::move(cert)), privateKey(std::move(key))
    {
    }
    [[nodiscard]] OpcUa_UserTokenType tokenType() const override { return OpcUa_UserTokenType_Certificate; }

    UaByteString certificate; // DER
    UaByteString privateKey;  // DER
};

} // namespace UaClientSdk
