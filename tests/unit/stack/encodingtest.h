// What the tests of the encoding share: bytes from text, reference files, values that free themselves.
#pragma once

#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/messagecodec.h>

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

using Bytes = std::vector<OpcUa_Byte>;

[[nodiscard]] Bytes fromHex(std::string_view hex);
[[nodiscard]] std::string toHex(std::span<const OpcUa_Byte> bytes);
[[nodiscard]] Bytes operator+(Bytes left, const Bytes& right);
/// The bytes of a number as they go over the wire.
template <typename T>
[[nodiscard]] Bytes wire(T value)
{
    const auto* const data = reinterpret_cast<const OpcUa_Byte*>(&value);
    return Bytes(data, data + sizeof value);
}
[[nodiscard]] Bytes repeated(const Bytes& pattern, size_t count);

/// One line of tests/data/encoding/*.txt.
struct ReferenceCase
{
    std::string type;
    std::string name;
    std::string value;
    Bytes bytes;
};
[[nodiscard]] std::vector<ReferenceCase> referenceCases(const std::string& file);

/// 0 when there is no such type.
[[nodiscard]] OpcUa_Byte builtInTypeByName(std::string_view name);

/// A value of any built-in type, cleared at the end.
class Value
{
public:
    explicit Value(OpcUa_Byte type);
    ~Value();
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    [[nodiscard]] void* data() { return m_storage.data(); }
    [[nodiscard]] const void* data() const { return m_storage.data(); }
    [[nodiscard]] OpcUa_StatusCode decode(std::span<const OpcUa_Byte> bytes, size_t* consumed = nullptr);
    [[nodiscard]] Bytes encode() const; ///< empty on failure
    [[nodiscard]] OpcUa_StatusCode copyFrom(const Value& other);
    [[nodiscard]] int compare(const Value& other) const;

    template <typename T>
    [[nodiscard]] T& as()
    {
        return *static_cast<T*>(data());
    }

private:
    OpcUa_Byte m_type;
    alignas(std::max_align_t) std::array<OpcUa_Byte, 128> m_storage;
};

/// One message with every optional thing in it, for what must hold wherever a message is cut or changed.
[[nodiscard]] const Bytes& readResponseBytes();
