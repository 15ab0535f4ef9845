#include <opcua/opcua_crypto.h>
#include <stack/capi/guard.h>
#include <stack/capi/validation.h>
#include <stack/core/secret.h>
#include <stack/security/certificatefile.h>
#include <stack/security/privatekey.h>
#include <stack/security/rsaoperations.h>
#include <stack/transport/tlscertificate.h>

#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

using opcua::ByteView;
using opcua::guarded;

// What the handle points to.
struct OpcUa_CryptoProviderImpl
{
    const opcua::PolicyProfile* profile = nullptr; // null with policy None
};

namespace {

constexpr OpcUa_UInt32 maxNonceLength = 1024;

bool isNone(std::string_view uri)
{
    return uri.empty() || uri == OpcUa_SecurityPolicy_None;
}

OpcUa_StatusCode giveAway(std::optional<opcua::Bytes> bytes, OpcUa_ByteString& out)
{
    if (!bytes)
        return OpcUa_BadSecurityChecksFailed;
    const OpcUa_StatusCode status =
        OpcUa_ByteString_Assign(&out, bytes->empty() ? static_cast<const void*>("") : bytes->data(),
                                static_cast<OpcUa_Int32>(bytes->size()));
    opcua::wipe(*bytes);
    return status;
}

bool keyFits(const opcua::PolicyProfile& profile, int bits)
{
    return bits >= profile.minKeyBits && bits <= profile.maxKeyBits;
}

// Runs operation(profile, key) with the certificate's key.
template <typename Operation>
OpcUa_StatusCode withPublicKey(OpcUa_CryptoProvider provider, const OpcUa_ByteString& chain,
                               Operation operation)
{
    if (provider->profile == nullptr)
        return OpcUa_BadNotSupported;
    const auto first = opcua::firstOfChain(opcua::viewOf(chain));
    const auto certificate = first ? opcua::cachedCertificate(*first) : nullptr;
    if (!certificate)
        return OpcUa_BadCertificateInvalid;
    if (!keyFits(*provider->profile, certificate->rsaBits()))
        return OpcUa_BadCertificatePolicyCheckFailed;
    return operation(*provider->profile, certificate->publicKey());
}

template <typename Operation>
OpcUa_StatusCode withPrivateKey(OpcUa_CryptoProvider provider, const OpcUa_ByteString& der,
                                Operation operation)
{
    if (provider->profile == nullptr)
        return OpcUa_BadNotSupported;
    const auto key = opcua::cachedPrivateKey(opcua::viewOf(der));
    if (!key)
        return OpcUa_BadNoValidCertificates;
    if (!keyFits(*provider->profile, EVP_PKEY_get_bits(key->key())))
        return OpcUa_BadCertificatePolicyCheckFailed;
    return operation(*provider->profile, key->key());
}

OpcUa_StatusCode judged(const std::vector<opcua::CertificateFinding>& findings,
                        OpcUa_Certificate_PfnVerify callback, void* context)
{
    opcua::FindingJudge judge;
    if (callback != nullptr)
        judge = [&](const opcua::CertificateFinding& finding) {
            const OpcUa_CertificateValidation details = opcua::validationOf(finding);
            return callback(&details, context);
        };
    return opcua::judgeCertificate(findings, judge);
}

} // namespace

OpcUa_StatusCode OpcUa_CryptoProvider_Create(const char* securityPolicyUri, OpcUa_CryptoProvider* provider)
{
    if (provider == nullptr)
        return OpcUa_BadInvalidArgument;
    *provider = nullptr;
    return guarded([&]() -> OpcUa_StatusCode {
        const std::string_view uri = securityPolicyUri != nullptr ? securityPolicyUri : "";
        auto made = std::make_unique<OpcUa_CryptoProviderImpl>();
        made->profile = opcua::findPolicyProfile(uri);
        if (made->profile == nullptr && !isNone(uri))
            return OpcUa_BadSecurityPolicyRejected;
        *provider = made.release();
        return OpcUa_Good;
    });
}

void OpcUa_CryptoProvider_Delete(OpcUa_CryptoProvider* provider)
{
    if (provider != nullptr)
        const std::unique_ptr<OpcUa_CryptoProviderImpl> owner(std::exchange(*provider, nullptr));
}

OpcUa_StatusCode OpcUa_CryptoProvider_GetInfo(OpcUa_CryptoProvider provider, OpcUa_CryptoProviderInfo* info)
{
    if (provider == nullptr || info == nullptr)
        return OpcUa_BadInvalidArgument;
    *info = {OpcUa_SecurityPolicy_None, "", "", 0, 0, 0, 0, 0};
    if (const opcua::PolicyProfile* const profile = provider->profile) {
        const auto number = [](auto value) { return static_cast<OpcUa_UInt32>(value); };
        *info = {profile->uri,
                 profile->signatureUri,
                 profile->encryptionUri,
                 number(profile->minKeyBits),
                 number(profile->maxKeyBits),
                 number(profile->nonceLength),
                 number(profile->signingKeyLength),
                 number(profile->encryptingKeyLength)};
    }
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_CryptoProvider_AsymmetricEncrypt(OpcUa_CryptoProvider provider,
                                                        const OpcUa_ByteString* certificate,
                                                        const OpcUa_ByteString* plainText,
                                                        OpcUa_ByteString* cipherText)
{
    if (cipherText != nullptr)
        OpcUa_ByteString_Initialize(cipherText);
    if (provider == nullptr || certificate == nullptr || plainText == nullptr || cipherText == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&] {
        return withPublicKey(provider, *certificate, [&](const auto& profile, EVP_PKEY* key) {
            return giveAway(rsaEncrypt(key, profile.encryption, opcua::viewOf(*plainText)), *cipherText);
        });
    });
}

OpcUa_StatusCode OpcUa_CryptoProvider_AsymmetricDecrypt(OpcUa_CryptoProvider provider,
                                                        const OpcUa_ByteString* privateKey,
                                                        const OpcUa_ByteString* cipherText,
                                                        OpcUa_ByteString* plainText)
{
    if (plainText != nullptr)
        OpcUa_ByteString_Initialize(plainText);
    if (provider == nullptr || privateKey == nullptr || cipherText == nullptr || plainText == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&] {
        return withPrivateKey(provider, *privateKey, [&](const auto& profile, EVP_PKEY* key) {
            return giveAway(rsaDecrypt(key, profile.encryption, opcua::viewOf(*cipherText)), *plainText);
        });
    });
}

OpcUa_StatusCode OpcUa_CryptoProvider_AsymmetricSign(OpcUa_CryptoProvider provider,
                                                     const OpcUa_ByteString* privateKey,
                                                     const OpcUa_ByteString* data,
                                                     OpcUa_ByteString* signature)
{
    if (signature != nullptr)
        OpcUa_ByteString_Initialize(signature);
    if (provider == nullptr || privateKey == nullptr || data == nullptr || signature == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&] {
        return withPrivateKey(provider, *privateKey, [&](const auto& profile, EVP_PKEY* key) {
            return giveAway(rsaSign(key, profile.signature, opcua::viewOf(*data)), *signature);
        });
    });
}

OpcUa_StatusCode OpcUa_CryptoProvider_AsymmetricVerify(OpcUa_CryptoProvider provider,
                                                       const OpcUa_ByteString* certificate,
                                                       const OpcUa_ByteString* data,
                                                       const OpcUa_ByteString* signature)
{
    if (provider == nullptr || certificate == nullptr || data == nullptr || signature == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&] {
        return withPublicKey(
            provider, *certificate, [&](const auto& profile, EVP_PKEY* key) -> OpcUa_StatusCode {
                const bool good =
                    rsaVerify(key, profile.signature, opcua::viewOf(*data), opcua::viewOf(*signature));
                return good ? OpcUa_Good : OpcUa_BadSecurityChecksFailed;
            });
    });
}

OpcUa_StatusCode OpcUa_CryptoProvider_GetPublicKeyLength(const OpcUa_ByteString* certificate,
                                                         OpcUa_UInt32* bits)
{
    if (certificate == nullptr || bits == nullptr)
        return OpcUa_BadInvalidArgument;
    *bits = 0;
    return guarded([&]() -> OpcUa_StatusCode {
        const auto first = opcua::firstOfChain(opcua::viewOf(*certificate));
        const auto parsed = first ? opcua::cachedCertificate(*first) : nullptr;
        if (!parsed)
            return OpcUa_BadCertificateInvalid;
        *bits = static_cast<OpcUa_UInt32>(parsed->rsaBits());
        return OpcUa_Good;
    });
}

OpcUa_StatusCode OpcUa_CryptoProvider_GenerateNonce(OpcUa_UInt32 length, OpcUa_ByteString* nonce)
{
    if (nonce != nullptr)
        OpcUa_ByteString_Initialize(nonce);
    if (nonce == nullptr || length > maxNonceLength)
        return OpcUa_BadInvalidArgument;
    return guarded([&] {
        std::optional<opcua::Bytes> bytes(std::in_place, length);
        if (!opcua::fillRandom(*bytes))
            bytes.reset();
        return giveAway(std::move(bytes), *nonce);
    });
}

size_t OpcUa_Certificate_GetFirstLength(const OpcUa_Byte* chain, size_t length)
{
    const auto first = opcua::firstOfChain({chain, length});
    return first ? first->size() : 0;
}

OpcUa_Boolean OpcUa_CertificateFile_IsName(const char* name, OpcUa_CertificateNaming naming)
{
    const bool isOne =
        name != nullptr && opcua::isCertificateName(name, naming == OpcUa_CertificateNaming_Dotted
                                                              ? opcua::CertificateNaming::Dotted
                                                              : opcua::CertificateNaming::Endings);
    return isOne ? OpcUa_True : OpcUa_False;
}

OpcUa_StatusCode OpcUa_CertificateFile_Read(const OpcUa_Byte* content, size_t length,
                                            OpcUa_CertificateFile_PfnTake take, void* context)
{
    if ((content == nullptr && length != 0) || take == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&]() -> OpcUa_StatusCode {
        auto certificates = opcua::certificatesOfFile({content, length});
        for (opcua::Bytes& der : certificates) {
            const OpcUa_ByteString bytes{static_cast<OpcUa_Int32>(der.size()), der.data()};
            take(&bytes, context);
        }
        return certificates.empty() ? OpcUa_BadDecodingError : OpcUa_Good;
    });
}

OpcUa_StatusCode OpcUa_Certificate_Verify(const OpcUa_ByteString* certificateChain,
                                          const OpcUa_PkiConfiguration* pki, const char* securityPolicyUri,
                                          OpcUa_Certificate_PfnVerify callback, void* context)
{
    if (certificateChain == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&] {
        const auto* const profile =
            securityPolicyUri != nullptr ? opcua::findPolicyProfile(securityPolicyUri) : nullptr;
        const auto findings =
            opcua::checkCertificate(opcua::viewOf(*certificateChain), opcua::foldersOf(pki), profile);
        return judged(findings, callback, context);
    });
}

OpcUa_StatusCode OpcUa_Certificate_VerifyTls(const OpcUa_ByteString* certificateChain, const char* host,
                                             const OpcUa_PkiConfiguration* pki,
                                             OpcUa_Certificate_PfnVerify callback, void* context)
{
    if (certificateChain == nullptr || host == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&] {
        opcua::PkiFolders folders = opcua::foldersOf(pki);
        folders.naming = opcua::CertificateNaming::Dotted;
        return judged(opcua::checkTlsCertificate(opcua::viewOf(*certificateChain), host, folders), callback,
                      context);
    });
}
