// A server with certificate and key behind the scripted stack: proves who it is, and checks who logs in.
#pragma once

#include <tests/support/fakestack.h>
#include <tests/support/testcertificates.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/cryptoprovider.h>
#include <uaclientsdk/sessionsecurityinfo.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class SecuredServer
{
public:
    struct TokenPolicy
    {
        OpcUa_UserTokenType type;
        const char* policyUri; ///< null: the channel's
    };

    /// Answers the calls of stack from now on, until its reset.
    SecuredServer(FakeStack& stack, std::string policyUri, OpcUa_MessageSecurityMode mode)
        : m_policyUri(std::move(policyUri)), m_mode(mode)
    {
        testcertificates::Recipe recipe;
        recipe.name = "Server";
        recipe.pair = testcertificates::key(2048, "server");
        certificate = bytesOf(testcertificates::make(recipe));
        m_key = bytesOf(testcertificates::privateDer(recipe.pair));
        stack.on(
            OpcUa_CreateSessionRequest_EncodeableType,
            [this](const void* request, void* response) {
                return createSession(*static_cast<const OpcUa_CreateSessionRequest*>(request),
                                     *static_cast<OpcUa_CreateSessionResponse*>(response));
            });
        stack.on(OpcUa_ActivateSessionRequest_EncodeableType, [this](const void* request, void* response) {
            return activate(*static_cast<const OpcUa_ActivateSessionRequest*>(request),
                            *static_cast<OpcUa_ActivateSessionResponse*>(response));
        });
    }

    static UaByteString bytesOf(const testcertificates::Der& der)
    {
        return UaByteString(std::span<const OpcUa_Byte>(der.data(), der.size()));
    }

    /// One that the server has no key for.
    static UaByteString otherCertificate()
    {
        testcertificates::Recipe recipe;
        recipe.name = "Other";
        recipe.pair = testcertificates::key(2048, "other");
        return bytesOf(testcertificates::make(recipe));
    }

    /// What a client needs to connect here.
    [[nodiscard]] UaClientSdk::SessionSecurityInfo clientSecurity() const
    {
        testcertificates::Recipe recipe;
        recipe.name = "Client";
        recipe.pair = testcertificates::key(2048, "client");
        UaClientSdk::SessionSecurityInfo info;
        info.securityPolicyUri = UaString(m_policyUri.c_str());
        info.messageSecurityMode = m_mode;
        info.basic128Rsa15Accepted = m_policyUri == OpcUa_SecurityPolicy_Basic128Rsa15;
        if (info.isSecured())
            info.serverCertificate = certificate;
        info.clientCertificate = bytesOf(testcertificates::make(recipe));
        info.clientPrivateKey =
            std::make_shared<const UaClientSdk::SecretBytes>(testcertificates::privateDer(recipe.pair));
        return info;
    }

    UaByteString certificate; ///< DER
    std::vector<TokenPolicy> tokens{{OpcUa_UserTokenType_Anonymous, nullptr},
                                    {OpcUa_UserTokenType_UserName, nullptr},
                                    {OpcUa_UserTokenType_Certificate, nullptr}};
    /// Changes the answers before they go out.
    std::function<void(OpcUa_CreateSessionResponse&)> tamperCreate;
    std::function<void(OpcUa_ActivateSessionResponse&)> tamperActivate;
    OpcUa_StatusCode activateResult = OpcUa_Good;
    /// Everybody who has tried: "anonymous", "user NAME PASSWORD" (" in clear" when it was so),
    /// "certificate"; with " unsigned" where the client or user proves nothing.
    std::vector<std::string> logins;

private:
    OpcUa_StatusCode createSession(const OpcUa_CreateSessionRequest& request,
                                   OpcUa_CreateSessionResponse& response)
    {
        m_clientCertificate = UaByteString(request.ClientCertificate);
        response.SessionId.Identifier.Numeric = 7;
        response.AuthenticationToken.Identifier.Numeric = 77;
        response.RevisedSessionTimeout = 1200000.0;
        response.ResponseHeader.Timestamp = OpcUa_DateTime_UtcNow();
        EXPECT_TRUE(OpcUa_IsGood(certificate.copyTo(&response.ServerCertificate)));
        nextNonce(response.ServerNonce);
        const UaClientSdk::CryptoProvider provider(UaString(m_policyUri.c_str()));
        if (!provider.isNone()) {
            UaByteString signature;
            if (provider
                    .sign(*m_key.get(), joined(m_clientCertificate, UaByteString(request.ClientNonce)),
                          signature)
                    .isBad())
                return OpcUa_BadInternalError;
            EXPECT_TRUE(OpcUa_IsGood(signature.copyTo(&response.ServerSignature.Signature)));
            static_cast<void>(
                OpcUa_String_Assign(&response.ServerSignature.Algorithm, provider.signatureUri(), -1));
        }
        addEndpoint(request.EndpointUrl, response);
        if (tamperCreate)
            tamperCreate(response);
        m_nonce = UaByteString(response.ServerNonce);
        return OpcUa_Good;
    }

    void addEndpoint(const OpcUa_String& url, OpcUa_CreateSessionResponse& response)
    {
        response.ServerEndpoints = static_cast<OpcUa_EndpointDescription*>(
            OpcUa_Memory_AllocArray(1, sizeof(OpcUa_EndpointDescription)));
        response.NoOfServerEndpoints = 1;
        OpcUa_EndpointDescription& endpoint = response.ServerEndpoints[0];
        OpcUa_EncodeableObject_Initialize(&OpcUa_EndpointDescription_EncodeableType, &endpoint);
        // what is missing for want of memory fails the test
        static_cast<void>(OpcUa_String_Copy(&url, &endpoint.EndpointUrl));
        endpoint.SecurityMode = m_mode;
        static_cast<void>(OpcUa_String_Assign(&endpoint.SecurityPolicyUri, m_policyUri.c_str(), -1));
        EXPECT_TRUE(OpcUa_IsGood(certificate.copyTo(&endpoint.ServerCertificate)));
        endpoint.UserIdentityTokens = static_cast<OpcUa_UserTokenPolicy*>(
            OpcUa_Memory_AllocArray(tokens.size(), sizeof(OpcUa_UserTokenPolicy)));
        endpoint.NoOfUserIdentityTokens = static_cast<OpcUa_Int32>(tokens.size());
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            OpcUa_UserTokenPolicy& policy = endpoint.UserIdentityTokens[i];
            OpcUa_EncodeableObject_Initialize(&OpcUa_UserTokenPolicy_EncodeableType, &policy);
            static_cast<void>(OpcUa_String_Assign(&policy.PolicyId, std::to_string(i).c_str(), -1));
            policy.TokenType = tokens[i].type;
            if (tokens[i].policyUri)
                static_cast<void>(OpcUa_String_Assign(&policy.SecurityPolicyUri, tokens[i].policyUri, -1));
        }
    }

    OpcUa_StatusCode activate(const OpcUa_ActivateSessionRequest& request,
                              OpcUa_ActivateSessionResponse& response)
    {
        std::string login = userOf(request);
        const UaClientSdk::CryptoProvider provider(UaString(m_policyUri.c_str()));
        if (!provider.isNone() && !isSigned(provider, m_clientCertificate, request.ClientSignature))
            login += " unsigned";
        logins.push_back(login);
        if (OpcUa_IsBad(activateResult))
            return activateResult;
        nextNonce(response.ServerNonce);
        if (tamperActivate)
            tamperActivate(response);
        m_nonce = UaByteString(response.ServerNonce);
        return OpcUa_Good;
    }

    std::string userOf(const OpcUa_ActivateSessionRequest& request) const
    {
        const auto& body = request.UserIdentityToken.Body.EncodeableObject;
        if (request.UserIdentityToken.Encoding != OpcUa_ExtensionObjectEncoding_EncodeableObject)
            return "nobody";
        if (body.Type == &OpcUa_UserNameIdentityToken_EncodeableType)
            return userNameOf(*static_cast<const OpcUa_UserNameIdentityToken*>(body.Object));
        if (body.Type == &OpcUa_X509IdentityToken_EncodeableType) {
            const auto& token = *static_cast<const OpcUa_X509IdentityToken*>(body.Object);
            const UaClientSdk::CryptoProvider provider(tokenPolicyUri(token.PolicyId));
            return isSigned(provider, UaByteString(token.CertificateData), request.UserTokenSignature)
                       ? "certificate"
                       : "certificate unsigned";
        }
        return "anonymous";
    }

    std::string userNameOf(const OpcUa_UserNameIdentityToken& token) const
    {
        const std::string name = "user " + UaString(token.UserName).toStdString() + " ";
        const UaClientSdk::CryptoProvider provider(tokenPolicyUri(token.PolicyId));
        if (provider.isNone())
            return name + std::string(UaByteString(token.Password).view()) + " in clear";
        if (UaString(token.EncryptionAlgorithm).view() != provider.encryptionUri())
            return name + "by another algorithm";
        OpcUa_CryptoProvider raw = nullptr;
        OpcUa_ByteString plain;
        static_cast<void>(OpcUa_CryptoProvider_Create(tokenPolicyUri(token.PolicyId).toUtf8(), &raw));
        static_cast<void>(OpcUa_CryptoProvider_AsymmetricDecrypt(raw, m_key.get(), &token.Password, &plain));
        OpcUa_CryptoProvider_Delete(&raw);
        UaByteString secret;
        secret.attach(&plain);
        return name + passwordOf(secret.view());
    }

    /// Cuts length and nonce off.
    std::string passwordOf(std::string_view secret) const
    {
        const std::string_view nonce = m_nonce.view();
        if (secret.size() < 4 + nonce.size() || !secret.ends_with(nonce))
            return "without the nonce";
        std::size_t length = 0;
        for (std::size_t i = 4; i-- > 0;)
            length = length << 8 | static_cast<unsigned char>(secret[i]);
        return length == secret.size() - 4 ? std::string(secret.substr(4, length - nonce.size()))
                                           : "of another length";
    }

    UaString tokenPolicyUri(const OpcUa_String& policyId) const
    {
        const char* uri = tokens.at(static_cast<std::size_t>(std::stoi(policyId.Data))).policyUri;
        return UaString(uri ? uri : m_policyUri.c_str());
    }

    bool isSigned(const UaClientSdk::CryptoProvider& provider, const UaByteString& signer,
                  const OpcUa_SignatureData& signature) const
    {
        return UaString(signature.Algorithm).view() == provider.signatureUri() &&
               provider.verify(signer, joined(certificate, m_nonce), signature.Signature).isGood();
    }

    static UaByteString joined(const UaByteString& one, const UaByteString& other)
    {
        const std::string bytes = std::string(one.view()) + std::string(other.view());
        return UaByteString(static_cast<OpcUa_Int32>(bytes.size()),
                            reinterpret_cast<const OpcUa_Byte*>(bytes.data()));
    }

    static void nextNonce(OpcUa_ByteString& nonce)
    {
        OpcUa_ByteString_Clear(&nonce);
        static_cast<void>(OpcUa_CryptoProvider_GenerateNonce(32, &nonce));
    }

    const std::string m_policyUri;
    const OpcUa_MessageSecurityMode m_mode;
    UaByteString m_key;
    UaByteString m_clientCertificate;
    UaByteString m_nonce;
};
