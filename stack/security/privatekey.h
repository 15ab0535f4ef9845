// Private keys in memory.
#pragma once

#include <stack/security/certificate.h>

#include <memory>
#include <utility>

namespace opcua {

class PrivateKey
{
public:
    /// DER, PKCS#8 or PKCS#1, RSA only; nothing when it does not decode.
    [[nodiscard]] static std::shared_ptr<const PrivateKey> parse(ByteView der);

    [[nodiscard]] EVP_PKEY* key() const { return m_key.get(); }
    /// Whether it is the one that the certificate speaks of.
    [[nodiscard]] bool belongsTo(const Certificate& certificate) const;

private:
    explicit PrivateKey(KeyHandle key) : m_key(std::move(key)) {}

    KeyHandle m_key;
};

using PrivateKeyPointer = std::shared_ptr<const PrivateKey>;

/// As parse; a key that was seen before is not taken apart again. Its bytes are not kept, only their digest.
[[nodiscard]] PrivateKeyPointer cachedPrivateKey(ByteView der);
/// Lets go of all that cachedPrivateKey keeps; the library wipes keys when their last user is gone.
void clearPrivateKeyCache();

} // namespace opcua
