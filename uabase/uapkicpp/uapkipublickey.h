#pragma once

#include <uabase/uabytestring.h>
#include <uabase/uapkicpp/uapkikey.h>

class UaPkiPublicKey : public UaPkiKey
{
public:
    UaPkiPublicKey() = default;

    /// SubjectPublicKeyInfo; bytes after it are refused.
    [[nodiscard]] static UaPkiPublicKey fromDER(const UaByteArray& bytes);
    [[nodiscard]] UaByteArray toDER() const;
};
