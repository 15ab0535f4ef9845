#include <stack/encoding/messagecodec.h>

#include <stack/encoding/lifecycle.h>
#include <stack/encoding/lookup.h>
#include <stack/encoding/reader.h>
#include <stack/encoding/writer.h>

#include <new>
#include <stdexcept>
#include <utility>

namespace opcua {

namespace {

// Runs a writer over a buffer; the buffer is as before when it fails.
template <typename Write>
OpcUa_StatusCode encode(const EncodingLimits& limits, ByteBuffer& out, Write write)
{
    try {
        Writer writer(out, limits);
        write(writer);
        return writer.finish();
    } catch (const std::bad_alloc&) {
        return OpcUa_BadOutOfMemory;
    }
}

} // namespace

OpcUa_StatusCode encodeMessage(const OpcUa_EncodeableType& type, const void* object,
                               const EncodingLimits& limits, ByteBuffer& out)
{
    if (type.BinaryEncodingTypeId == 0)
        return OpcUa_BadEncodingError;
    return encode(limits, out, [&](Writer& writer) {
        writer.numericNodeId(type.BinaryEncodingTypeId);
        writer.structure(type, object);
    });
}

OpcUa_StatusCode encodeMessage(const OpcUa_EncodeableType& type, const void* object,
                               const EncodingLimits& limits, std::vector<OpcUa_Byte>& out)
{
    ByteBuffer buffer;
    const OpcUa_StatusCode status = encodeMessage(type, object, limits, buffer);
    if (OpcUa_IsBad(status))
        return status;
    try {
        out.insert(out.end(), buffer.view().begin(), buffer.view().end());
    } catch (const std::bad_alloc&) {
        return OpcUa_BadOutOfMemory;
    } catch (const std::length_error&) {
        return OpcUa_BadOutOfMemory;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode decodeMessage(std::span<const OpcUa_Byte> bytes, const EncodingLimits& limits,
                               DecodedMessage& message)
{
    message = DecodedMessage();
    Reader reader(bytes, limits);
    OpcUa_NodeId id;
    if (!reader.nodeId(id))
        return reader.status();
    const bool standard = id.NamespaceIndex == 0 && id.IdentifierType == OpcUa_IdentifierType_Numeric;
    const auto* const type = standard ? findTypeByBinaryId(id.Identifier.Numeric) : nullptr;
    clear(id);
    if (type == nullptr)
        return OpcUa_BadDataTypeIdUnknown;
    message.object = allocateMemory(type->AllocationSize);
    if (message.object == nullptr)
        return OpcUa_BadOutOfMemory;
    message.type = type;
    const bool decoded = reader.structure(*type, message.object);
    if (decoded && reader.left() == 0)
        return OpcUa_Good;
    message = DecodedMessage();
    return decoded ? OpcUa_BadDecodingError : reader.status();
}

OpcUa_StatusCode encodeElement(ElementType type, const void* value, OpcUa_ByteString& bytes)
{
    initialize(bytes);
    ByteBuffer buffer;
    const OpcUa_StatusCode status =
        encode(EncodingLimits{}, buffer, [&](Writer& writer) { writer.element(type, value); });
    if (OpcUa_IsBad(status))
        return status;
    if (buffer.size() > INT32_MAX)
        return OpcUa_BadEncodingLimitsExceeded;
    const void* const data = buffer.size() == 0 ? "" : static_cast<const void*>(buffer.data());
    return assign(bytes, data, static_cast<OpcUa_Int32>(buffer.size()));
}

OpcUa_StatusCode decodeElement(ElementType type, std::span<const OpcUa_Byte> bytes, void* target,
                               size_t* consumed)
{
    const EncodingLimits limits;
    Reader reader(bytes, limits);
    if (!reader.element(type, target))
        return reader.status();
    if (consumed != nullptr)
        *consumed = bytes.size() - reader.left();
    return OpcUa_Good;
}

DecodedMessage::DecodedMessage(DecodedMessage&& other) noexcept
    : type(std::exchange(other.type, nullptr)), object(std::exchange(other.object, nullptr))
{
}

DecodedMessage& DecodedMessage::operator=(DecodedMessage&& other) noexcept
{
    std::swap(type, other.type);
    std::swap(object, other.object);
    return *this;
}

DecodedMessage::~DecodedMessage()
{
    if (object != nullptr)
        deleteStructure(*type, object);
}

void* DecodedMessage::release() noexcept
{
    type = nullptr;
    return std::exchange(object, nullptr);
}

} // namespace opcua
