#pragma once

#include <uabase/uapkicpp/uapkikey.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

class UaPkiPrivateKey : public UaPkiKey
{
public:
    UaPkiPrivateKey() = default;

    /// PKCS#1 or PKCS#8 in PEM form, protected or not. A given password is used; without one the callback is
    /// asked; nobody is ever asked on a terminal.
    [[nodiscard]] static UaPkiPrivateKey fromPEM(const UaByteArray& bytes,
                                                 const UaString& password = UaString(),
                                                 UaPkiPasswordCallback callback = nullptr,
                                                 void* userData = nullptr);
    /// PKCS#1 (of the given type) or PKCS#8; bytes after it are refused.
    [[nodiscard]] static UaPkiPrivateKey fromDER(const UaByteArray& bytes, KeyType keyType = RSA);
    /// Unprotected: the bytes belong in no file and are to be wiped after use.
    [[nodiscard]] UaByteArray toDER() const;
    [[nodiscard]] UaPkiPublicKey publicKey() const;
};
