#pragma once

#include <uabase/uapkicpp/uapkikey.h>
#include <uabase/uapkicpp/uapkiprivatekey.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/values/uastring.h>

#include <functional>

class UaPkiCertificate;

class UaPkiRsaKeyPair : public UaPkiKey
{
public:
    static constexpr int minimumBits = 1024;
    static constexpr int maximumBits = 8192;

    UaPkiRsaKeyPair() = default; ///< null
    /// Generates a key, which takes a second or more for long ones. Null for sizes out of the bounds.
    explicit UaPkiRsaKeyPair(int bits);
    /// The same, but gives up, null and with an error, soon after isCancelled has answered true. It is asked
    /// often, on the calling thread, and must not throw.
    UaPkiRsaKeyPair(int bits, const std::function<bool()>& isCancelled);

    /// As UaPkiPrivateKey::fromPEM; other keys than RSA are refused.
    [[nodiscard]] static UaPkiRsaKeyPair fromPEM(const UaByteArray& bytes,
                                                 const UaString& password = UaString(),
                                                 UaPkiPasswordCallback callback = nullptr,
                                                 void* userData = nullptr);
    [[nodiscard]] static UaPkiRsaKeyPair fromPEMFile(const UaString& path,
                                                     const UaString& password = UaString(),
                                                     UaPkiPasswordCallback callback = nullptr,
                                                     void* userData = nullptr);
    /// With a password the key is protected by it (AES-256-CBC), without one it is not.
    [[nodiscard]] UaByteArray toPEM(const UaString& password = UaString()) const;
    /// Only the user may read the file, which is replaced in one step.
    [[nodiscard]] bool toPEMFile(const UaString& path, const UaString& password = UaString()) const;
    /// The private key together with its certificate, PKCS#12; to be wiped after use. Fails when they do not
    /// belong together.
    [[nodiscard]] UaByteArray toPFX(const UaPkiCertificate& certificate,
                                    const UaString& password = UaString()) const;
    /// The private key, PKCS#1, unprotected; to be wiped after use.
    [[nodiscard]] UaByteArray toDER() const;

    [[nodiscard]] UaPkiPublicKey publicKey() const;
    [[nodiscard]] UaPkiPrivateKey privateKey() const;
    /// Whether a part that the key needs is not there; true for a null key.
    [[nodiscard]] bool isMissingParameters() const;

    /// Whether they belong together; false when one is null.
    [[nodiscard]] static bool checkKeyPair(const UaPkiPublicKey& publicKey,
                                           const UaPkiPrivateKey& privateKey);
};
