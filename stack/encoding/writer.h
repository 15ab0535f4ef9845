// Writer of the binary encoding, OPC 10000-6, 5.2, in one pass into a growing buffer.
#pragma once

#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/bytebuffer.h>
#include <stack/encoding/elements.h>
#include <stack/encoding/messagecodec.h>

#include <cstring>

namespace opcua {

/// Appends to a buffer; throws std::bad_alloc. After the first failure nothing more is of use.
class Writer
{
public:
    Writer(ByteBuffer& buffer, const EncodingLimits& limits);

    void element(ElementType type, const void* source);
    void structure(const OpcUa_EncodeableType& type, const void* object);
    void numericNodeId(OpcUa_UInt32 id);
    /// Ends writing: the buffer holds what was written, or on failure what it held before.
    [[nodiscard]] OpcUa_StatusCode finish();

private:
    template <typename T>
    void fixed(const T& value)
    {
        ensure(sizeof(T));
        std::memcpy(m_at, &value, sizeof(T));
        m_at += sizeof(T);
    }
    void ensure(size_t bytes)
    {
        if (static_cast<size_t>(m_end - m_at) < bytes)
            grow(bytes);
    }
    [[nodiscard]] size_t used() const { return static_cast<size_t>(m_at - m_buffer.data()); }
    void grow(size_t bytes);
    void bytes(const void* data, size_t size);
    void fail(OpcUa_StatusCode status)
    {
        if (OpcUa_IsGood(m_status))
            m_status = status;
    }
    [[nodiscard]] bool enter();
    void leave() { --m_depth; }

    template <typename Text>
    void text(const Text& value, OpcUa_UInt32 limit);
    void string(const OpcUa_String& value) { text(value, m_limits.maxStringLength); }
    void byteString(const OpcUa_ByteString& value) { text(value, m_limits.maxByteStringLength); }
    void nodeId(const OpcUa_NodeId& value, OpcUa_Byte flags);
    void otherNodeId(const OpcUa_NodeId& value, OpcUa_Byte flags);
    void expandedNodeId(const OpcUa_ExpandedNodeId& value);
    void localizedText(const OpcUa_LocalizedText& value);
    void variant(const OpcUa_Variant& value);
    void variantArray(const OpcUa_Variant& value);
    void extensionObject(const OpcUa_ExtensionObject& value);
    void encodeableBody(const OpcUa_ExtensionObject& value);
    void dataValue(const OpcUa_DataValue& value);
    size_t plainDataValues(const OpcUa_DataValue* values, size_t count);
    void diagnosticInfo(const OpcUa_DiagnosticInfo& value);
    void prefixedStructure(const OpcUa_EncodeableType& type, const void* object);
    void field(const OpcUa_FieldDescriptor& descriptor, const void* object);
    void indirectField(const OpcUa_FieldDescriptor& descriptor, const void* object);
    void elements(ElementType type, const void* data, OpcUa_Int32 count);

    ByteBuffer& m_buffer; ///< its size is set at the end
    const size_t m_start;
    OpcUa_Byte* m_at;
    OpcUa_Byte* m_end;
    const EncodingLimits& m_limits;
    OpcUa_UInt32 m_depth = 0;
    OpcUa_StatusCode m_status = OpcUa_Good;
};

} // namespace opcua
