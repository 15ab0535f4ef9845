// What the key classes share.
#pragma once

#include <uabase/uapkicpp/uapkierrors.h>

#include <memory>

struct evp_pkey_st;
struct UaPkiAccess;

/// A key of the crypto library, or none. Copies share the key, which never changes.
class UaPkiKey : public UaPkiErrors
{
public:
    enum KeyType { UnknownKey = 0, RSA = 6, DSA = 116, EC = 408 }; ///< the crypto library's numbers

    [[nodiscard]] bool isNull() const { return m_key == nullptr; }
    [[nodiscard]] KeyType keyType() const;
    /// Bits; 0 for a null key.
    [[nodiscard]] int keySize() const;

protected:
    UaPkiKey() = default;
    ~UaPkiKey() = default;
    UaPkiKey(const UaPkiKey&) = default;
    UaPkiKey& operator=(const UaPkiKey&) = default;
    UaPkiKey(UaPkiKey&&) = default;
    UaPkiKey& operator=(UaPkiKey&&) = default;

    friend struct UaPkiAccess;
    std::shared_ptr<evp_pkey_st> m_key;
};

/// Asks for a password: writes at most size bytes to buffer and returns how many, 0 when there is none.
/// writing is 1 when a key is about to be protected, 0 when one is read.
using UaPkiPasswordCallback = int (*)(char* buffer, int size, int writing, void* userData);
