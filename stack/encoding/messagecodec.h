// Whole messages: a type id followed by a body, OPC 10000-6, 5.2.
#pragma once

#include <opcua/opcua_encodeable.h>
#include <stack/encoding/bytebuffer.h>
#include <stack/encoding/elements.h>

#include <cstddef>
#include <span>
#include <vector>

namespace opcua {

/// What a decoder may take. Every length is checked against the bytes left before memory is taken.
struct EncodingLimits
{
    OpcUa_UInt32 maxStringLength = 16u * 1024 * 1024;
    OpcUa_UInt32 maxByteStringLength = 16u * 1024 * 1024;
    OpcUa_UInt32 maxArrayLength = 4u * 1024 * 1024;
    OpcUa_UInt32 maxNestingLevel = 100;
};

/// Appends type id and body to out. On failure out is as before.
/// Good, BadEncodingError, BadEncodingLimitsExceeded, BadOutOfMemory.
[[nodiscard]] OpcUa_StatusCode encodeMessage(const OpcUa_EncodeableType& type, const void* object,
                                             const EncodingLimits& limits, ByteBuffer& out);
[[nodiscard]] OpcUa_StatusCode encodeMessage(const OpcUa_EncodeableType& type, const void* object,
                                             const EncodingLimits& limits, std::vector<OpcUa_Byte>& out);

/// A decoded message; owns the object.
struct DecodedMessage
{
    const OpcUa_EncodeableType* type = nullptr;
    void* object = nullptr;

    DecodedMessage() = default;
    DecodedMessage(DecodedMessage&& other) noexcept;
    DecodedMessage& operator=(DecodedMessage&& other) noexcept;
    DecodedMessage(const DecodedMessage&) = delete;
    DecodedMessage& operator=(const DecodedMessage&) = delete;
    ~DecodedMessage();
    void* release() noexcept; ///< hands the object over
};

/// Good, BadDecodingError (also for bytes left over), BadEncodingLimitsExceeded, BadOutOfMemory;
/// BadDataTypeIdUnknown when the type id is not in the tables.
[[nodiscard]] OpcUa_StatusCode decodeMessage(std::span<const OpcUa_Byte> bytes, const EncodingLimits& limits,
                                             DecodedMessage& message);

/// One value without a type id in front, under the standard limits. bytes is set in any case.
/// Good, BadEncodingError, BadEncodingLimitsExceeded, BadOutOfMemory.
[[nodiscard]] OpcUa_StatusCode encodeElement(ElementType type, const void* value, OpcUa_ByteString& bytes);
/// target holds what was read, or the null value on failure; consumed may be null.
/// Good, BadDecodingError, BadEncodingLimitsExceeded, BadOutOfMemory.
[[nodiscard]] OpcUa_StatusCode decodeElement(ElementType type, std::span<const OpcUa_Byte> bytes,
                                             void* target, size_t* consumed);

} // namespace opcua
