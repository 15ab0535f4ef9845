#pragma once

#include <uabase/uapkicpp/uapkikey.h>
#include <uabase/values/uabytestring.h>

class UaPkiPublicKey : public UaPkiKey
{
public:
    UaPkiPublicKey() = default;

    /// SubjectPublicKeyInfo; bytes after it are refused.
    [[nodiscard]] static UaPkiPublicKey fromDER(const UaByteArray& bytes);
    [[nodiscard]] UaByteArray toDER() const;
};
