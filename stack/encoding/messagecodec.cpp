#include <stack/encoding/messagecodec.h>

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

template <typename Write>
OpcUa_StatusCode encodeToByteString(OpcUa_ByteString* bytes, Write write)
{
    OpcUa_ByteString_Initialize(bytes);
    ByteBuffer buffer;
    const OpcUa_StatusCode status = encode(EncodingLimits{}, buffer, write);
    if (OpcUa_IsBad(status))
        return status;
    if (buffer.size() > INT32_MAX)
        return OpcUa_BadEncodingLimitsExceeded;
    const void* const data = buffer.size() == 0 ? "" : static_cast<const void*>(buffer.data());
    return OpcUa_ByteString_Assign(bytes, data, static_cast<OpcUa_Int32>(buffer.size()));
}

OpcUa_StatusCode decodeOne(ElementType type, std::span<const OpcUa_Byte> bytes, void* target,
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
    const auto* const type = standard ? OpcUa_EncodeableType_FindByBinaryId(id.Identifier.Numeric) : nullptr;
    OpcUa_NodeId_Clear(&id);
    if (type == nullptr)
        return OpcUa_BadDataTypeIdUnknown;
    message.object = OpcUa_Memory_Alloc(type->AllocationSize);
    if (message.object == nullptr)
        return OpcUa_BadOutOfMemory;
    message.type = type;
    const bool decoded = reader.structure(*type, message.object);
    if (decoded && reader.left() == 0)
        return OpcUa_Good;
    message = DecodedMessage();
    return decoded ? OpcUa_BadDecodingError : reader.status();
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
        OpcUa_EncodeableObject_Delete(type, &object);
}

void* DecodedMessage::release() noexcept
{
    type = nullptr;
    return std::exchange(object, nullptr);
}

} // namespace opcua

OpcUa_StatusCode OpcUa_EncodeableObject_EncodeBinary(const OpcUa_EncodeableType* type, const void* object,
                                                     OpcUa_ByteString* bytes)
{
    return opcua::encodeToByteString(
        bytes, [&](opcua::Writer& writer) { writer.structure(*type, object); });
}

OpcUa_StatusCode OpcUa_EncodeableObject_DecodeBinary(const OpcUa_EncodeableType* type, const OpcUa_Byte* data,
                                                     size_t size, void* object, size_t* consumed)
{
    return opcua::decodeOne({OpcUa_FieldKind_Structure, type}, {data, size}, object, consumed);
}

OpcUa_StatusCode OpcUa_BuiltInType_EncodeBinary(OpcUa_Byte builtInType, const void* value,
                                                OpcUa_ByteString* bytes)
{
    OpcUa_ByteString_Initialize(bytes);
    if (!opcua::isBuiltInType(builtInType))
        return OpcUa_BadEncodingError;
    return opcua::encodeToByteString(
        bytes, [&](opcua::Writer& writer) { writer.element(opcua::ElementType::of(builtInType), value); });
}

OpcUa_StatusCode OpcUa_BuiltInType_DecodeBinary(OpcUa_Byte builtInType, const OpcUa_Byte* data, size_t size,
                                                void* value, size_t* consumed)
{
    if (!opcua::isBuiltInType(builtInType))
        return OpcUa_BadDecodingError;
    return opcua::decodeOne(opcua::ElementType::of(builtInType), {data, size}, value, consumed);
}
