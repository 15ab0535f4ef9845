// Passwords and private keys, which must not stay in memory.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>

#include <memory>
#include <span>
#include <string.h>
#include <string_view>
#include <vector>

namespace UaClientSdk {

/// Owns its bytes alone, and overwrites them with its life. Not for values that are shared.
class SecretBytes
{
public:
    SecretBytes() = default;
    explicit SecretBytes(std::span<const OpcUa_Byte> bytes) : m_bytes(bytes.begin(), bytes.end()) {}
    explicit SecretBytes(std::string_view text) : m_bytes(text.begin(), text.end()) {}
    /// Overwrites the array, which nobody needs any more.
    explicit SecretBytes(UaByteArray&& bytes) : SecretBytes(std::span<const OpcUa_Byte>(bytes.span()))
    {
        if (!bytes.isEmpty())
            explicit_bzero(bytes.rawData(), bytes.span().size());
    }
    ~SecretBytes() { wipe(m_bytes); }
    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;

    /// Before anything is appended, so that no growing leaves a copy behind.
    void reserve(std::size_t size) { m_bytes.reserve(size); }
    void append(std::span<const OpcUa_Byte> bytes)
    {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }
    [[nodiscard]] std::span<const OpcUa_Byte> bytes() const { return m_bytes; }
    /// Borrowed, for the stack.
    [[nodiscard]] OpcUa_ByteString view() const
    {
        return {static_cast<OpcUa_Int32>(m_bytes.size()), const_cast<OpcUa_Byte*>(m_bytes.data())};
    }

    /// The same of one that may be missing, which is a null string then.
    [[nodiscard]] static OpcUa_ByteString viewOf(const std::shared_ptr<const SecretBytes>& secret)
    {
        return secret ? secret->view() : OpcUa_ByteString{-1, nullptr};
    }

    /// Overwrites what the stack is about to free.
    static void wipe(OpcUa_ByteString& bytes)
    {
        if (bytes.Length > 0 && bytes.Data)
            explicit_bzero(bytes.Data, static_cast<std::size_t>(bytes.Length));
    }

private:
    static void wipe(std::vector<OpcUa_Byte>& bytes)
    {
        if (!bytes.empty())
            explicit_bzero(bytes.data(), bytes.size());
    }

    std::vector<OpcUa_Byte> m_bytes;
};

} // namespace UaClientSdk
