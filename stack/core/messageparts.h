// What the messages that open a channel are put together from, whichever side sends them.
#pragma once

#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <stack/core/protocol.h>
#include <stack/encoding/lifecycle.h>
#include <stack/encoding/messagecodec.h>

namespace opcua {

/// A structure on the stack that clears itself.
template <typename T>
class ScopedStructure
{
public:
    explicit ScopedStructure(const OpcUa_EncodeableType& type) : m_type(type)
    {
        initializeStructure(m_type, &m_value);
    }
    ~ScopedStructure() { clearStructure(m_type, &m_value); }
    ScopedStructure(const ScopedStructure&) = delete;
    ScopedStructure& operator=(const ScopedStructure&) = delete;
    T* operator->() { return &m_value; }

    [[nodiscard]] OpcUa_StatusCode encode(Bytes& out) const
    {
        return encodeMessage(m_type, &m_value, EncodingLimits{}, out);
    }

private:
    const OpcUa_EncodeableType& m_type;
    T m_value;
};

/// Good or BadOutOfMemory; without a nonce the null value stays.
[[nodiscard]] inline OpcUa_StatusCode assignNonce(OpcUa_ByteString& destination, const Bytes& nonce)
{
    if (nonce.empty())
        return OpcUa_Good;
    return assign(destination, nonce.data(), static_cast<OpcUa_Int32>(nonce.size()));
}

[[nodiscard]] inline Bytes nonceOf(const OpcUa_ByteString& source)
{
    return source.Length <= 0 ? Bytes{} : Bytes(source.Data, source.Data + source.Length);
}

} // namespace opcua
