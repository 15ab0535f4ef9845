#include <uaclientsdk/connection/identitytokenbuilder.h>

#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/cryptoprovider.h>
#include <uaclientsdk/connection/endpointselector.h>
#include <uaclientsdk/connection/sessionsignature.h>

#include <array>

namespace UaClientSdk {

namespace {

const char* nameOf(OpcUa_UserTokenType type)
{
    switch (type) {
    case OpcUa_UserTokenType_UserName:
        return "UserNameIdentityToken";
    case OpcUa_UserTokenType_Certificate:
        return "X509IdentityToken";
    default:
        return "AnonymousIdentityToken";
    }
}

// A token in the request, which owns it; null when out of memory.
template <typename Token>
Token* attachToken(const OpcUa_EncodeableType& type, const OpcUa_UserTokenPolicy& policy,
                   OpcUa_ActivateSessionRequest& request)
{
    auto* token = static_cast<Token*>(OpcUa_EncodeableObject_Create(&type));
    if (!token)
        return nullptr;
    if (OpcUa_IsBad(OpcUa_String_Copy(&policy.PolicyId, &token->PolicyId))) {
        void* object = token;
        OpcUa_EncodeableObject_Delete(&type, &object);
        return nullptr;
    }
    OpcUa_ExtensionObject_AttachEncodeable(&request.UserIdentityToken, &type, token);
    return token;
}

// Null when the user is another kind.
OpcUa_UserNameIdentityToken* userNameOf(const OpcUa_ActivateSessionRequest& request)
{
    const OpcUa_ExtensionObject& token = request.UserIdentityToken;
    const bool is = token.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject &&
                    token.Body.EncodeableObject.Type == &OpcUa_UserNameIdentityToken_EncodeableType;
    return is ? static_cast<OpcUa_UserNameIdentityToken*>(token.Body.EncodeableObject.Object) : nullptr;
}

// Password and nonce behind the number of their bytes, OPC 10000-4, 7.41.2.2.
void writeSecret(const SecretBytes& password, const UaByteString& nonce, SecretBytes& secret)
{
    const auto count =
        static_cast<OpcUa_UInt32>(password.bytes().size()) + static_cast<OpcUa_UInt32>(nonce.length());
    std::array<OpcUa_Byte, 4> length{};
    for (std::size_t i = 0; i < length.size(); ++i)
        length[i] = static_cast<OpcUa_Byte>(count >> (8 * i));
    secret.reserve(length.size() + count);
    secret.append(length);
    secret.append(password.bytes());
    secret.append(nonce.bytes());
}

} // namespace

UaStatus IdentityTokenBuilder::build(const UaUserIdentityToken& identity,
                                     const OpcUa_EndpointDescription& endpoint,
                                     OpcUa_ActivateSessionRequest& request) const
{
    const OpcUa_UserTokenType type = identity.tokenType();
    const OpcUa_UserTokenPolicy* policy =
        selectUserTokenPolicy(endpoint, type, m_protection.channelPolicyUri);
    if (!policy) {
        UaTrace::tError("Error: UaSessionPrivate::activateSession - can't find %s in endpoint description",
                        nameOf(type));
        return UaStatus(OpcUa_BadIdentityTokenRejected);
    }
    if (const auto* user = dynamic_cast<const UaUserNameIdentityToken*>(&identity))
        return addUserName(*user, *policy, request);
    if (const auto* certificate = dynamic_cast<const UaCertificateIdentityToken*>(&identity))
        return addCertificate(*certificate, *policy, request);
    return addAnonymous(*policy, request);
}

UaString IdentityTokenBuilder::policyUriOf(const OpcUa_UserTokenPolicy& policy) const
{
    const UaString own(policy.SecurityPolicyUri);
    return own.isEmpty() ? m_protection.channelPolicyUri : own;
}

bool IdentityTokenBuilder::mayLeaveUnprotected() const
{
    return m_protection.channelEncrypts || m_protection.plainPasswordAllowed;
}

UaStatus IdentityTokenBuilder::checkNonce() const
{
    if (m_protection.serverNonce.length() >= minimumNonceLength)
        return UaStatus();
    UaTrace::tError("Nonce returned by server is too short (len=%i)", m_protection.serverNonce.length());
    return UaStatus(OpcUa_BadNonceInvalid);
}

UaStatus IdentityTokenBuilder::addAnonymous(const OpcUa_UserTokenPolicy& policy,
                                            OpcUa_ActivateSessionRequest& request) const
{
    const auto* token = attachToken<OpcUa_AnonymousIdentityToken>(OpcUa_AnonymousIdentityToken_EncodeableType,
                                                                  policy, request);
    return token ? UaStatus() : UaStatus(OpcUa_BadOutOfMemory);
}

UaStatus IdentityTokenBuilder::addUserName(const UaUserNameIdentityToken& identity,
                                           const OpcUa_UserTokenPolicy& policy,
                                           OpcUa_ActivateSessionRequest& request) const
{
    const CryptoProvider provider(policyUriOf(policy));
    if (provider.status().isBad())
        return provider.status();
    auto* token =
        attachToken<OpcUa_UserNameIdentityToken>(OpcUa_UserNameIdentityToken_EncodeableType, policy, request);
    if (!token || OpcUa_IsBad(identity.userName().copyTo(&token->UserName)))
        return UaStatus(OpcUa_BadOutOfMemory);
    return protectPassword(provider, identity.password(), *token);
}

UaStatus IdentityTokenBuilder::protectPassword(const CryptoProvider& provider, const SecretBytes& password,
                                               OpcUa_UserNameIdentityToken& token) const
{
    if (provider.isNone()) {
        if (!mayLeaveUnprotected()) {
            return UaStatus(OpcUa_BadSecurityModeInsufficient,
                            "The password would be sent without encryption");
        }
        const OpcUa_ByteString plain = password.view();
        return UaStatus(
            OpcUa_ByteString_Assign(&token.Password, plain.Length > 0 ? plain.Data : nullptr, plain.Length));
    }
    if (!m_protection.certificateJudged && !mayLeaveUnprotected()) {
        // whoever answers in the server's place can send a certificate of his own
        return UaStatus(OpcUa_BadSecurityModeInsufficient,
                        "The server's certificate was not checked, so the password would be sent without "
                        "protection");
    }
    if (const UaStatus nonce = checkNonce(); nonce.isBad())
        return nonce;
    SecretBytes secret;
    writeSecret(password, m_protection.serverNonce, secret);
    UaByteString encrypted;
    UaStatus status = provider.encrypt(m_protection.serverCertificate, secret.view(), encrypted);
    if (status.isGood())
        status = encrypted.detach(&token.Password);
    if (status.isGood())
        status = UaStatus(OpcUa_String_Assign(&token.EncryptionAlgorithm, provider.encryptionUri(), -1));
    return status;
}

UaStatus IdentityTokenBuilder::addCertificate(const UaCertificateIdentityToken& identity,
                                              const OpcUa_UserTokenPolicy& policy,
                                              OpcUa_ActivateSessionRequest& request) const
{
    const CryptoProvider provider(policyUriOf(policy));
    if (provider.status().isBad() || provider.isNone()) {
        // a certificate without a signature proves nothing
        UaTrace::tWarning("Warning: Could not find suitable SecurityPolicy for assembling X509IdentityToken");
        return UaStatus(OpcUa_BadIdentityTokenRejected);
    }
    if (!m_protection.certificateJudged) {
        // the signature would let whoever sent the certificate log in at the server that it belongs to
        const UaStatus refusal(OpcUa_BadCertificateUntrusted,
                               "The server's certificate was not checked, so the user cannot sign for it");
        UaTrace::tError("%s", refusal.diagnosticText().toUtf8());
        return refusal;
    }
    if (const UaStatus nonce = checkNonce(); nonce.isBad())
        return nonce;
    auto* token =
        attachToken<OpcUa_X509IdentityToken>(OpcUa_X509IdentityToken_EncodeableType, policy, request);
    if (!token || OpcUa_IsBad(identity.certificate().copyTo(&token->CertificateData)))
        return UaStatus(OpcUa_BadOutOfMemory);
    return signForServer(provider, identity.privateKey().view(), m_protection.serverCertificate,
                         m_protection.serverNonce, request.UserTokenSignature);
}

bool IdentityTokenBuilder::usesNonce(const OpcUa_ActivateSessionRequest& request)
{
    const auto* const user = userNameOf(request);
    return (user && user->EncryptionAlgorithm.Length > 0) || request.UserTokenSignature.Signature.Length > 0;
}

void IdentityTokenBuilder::wipeIdentity(OpcUa_ActivateSessionRequest& request)
{
    if (auto* const user = userNameOf(request))
        SecretBytes::wipe(user->Password);
}

} // namespace UaClientSdk
