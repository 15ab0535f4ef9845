// Bounded reader of the binary encoding, OPC 10000-6, 5.2.
#pragma once

#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/elements.h>
#include <stack/encoding/messagecodec.h>
#include <stack/encoding/textpool.h>

#include <bit>
#include <cstring>
#include <span>

namespace opcua {

static_assert(std::endian::native == std::endian::little,
              "arrays of numbers are copied as they lie on the wire");

/// Every function fills its target completely: with what was read, or with the null value when it answers
/// false. The first failure stays in status(). Nothing is allocated before the bytes that fill it are known
/// to be there.
class Reader
{
public:
    Reader(std::span<const OpcUa_Byte> bytes, const EncodingLimits& limits);

    [[nodiscard]] OpcUa_StatusCode status() const { return m_status; }
    [[nodiscard]] size_t left() const { return static_cast<size_t>(m_end - m_at); }
    [[nodiscard]] const OpcUa_Byte* position() const { return m_at; }

    bool element(ElementType type, void* target);
    bool structure(const OpcUa_EncodeableType& type, void* object);
    bool nodeId(OpcUa_NodeId& value);

private:
    template <typename T>
    bool fixed(T& value)
    {
        if (left() < sizeof(T)) {
            value = T{};
            return fail(OpcUa_BadDecodingError);
        }
        std::memcpy(&value, m_at, sizeof(T));
        m_at += sizeof(T);
        return true;
    }
    /// One that the message has only when its bit is set; it holds its null value already.
    template <typename T>
    bool optional(bool present, T& value)
    {
        return !present || fixed(value);
    }
    bool fail(OpcUa_StatusCode status)
    {
        m_status = status;
        return false;
    }

    bool date(OpcUa_DateTime& value);
    bool boolean(OpcUa_Boolean& value);
    bool textLength(OpcUa_Int32& length, OpcUa_UInt32 limit);
    template <typename Text>
    bool text(Text& value, OpcUa_UInt32 limit);
    bool string(OpcUa_String& value);
    bool byteString(OpcUa_ByteString& value);
    bool identifier(OpcUa_Byte format, OpcUa_NodeId& value);
    bool expandedNodeId(OpcUa_ExpandedNodeId& value);
    bool qualifiedName(OpcUa_QualifiedName& value);
    bool localizedText(OpcUa_LocalizedText& value);
    bool dataValue(OpcUa_DataValue& value);
    size_t plainDataValues(OpcUa_DataValue* values, size_t count);
    [[nodiscard]] const OpcUa_Byte* plainDataValue(const OpcUa_Byte* at, OpcUa_DataValue& value) const;
    bool stringIndex(bool present, OpcUa_Int32& index);
    bool diagnosticInfo(OpcUa_DiagnosticInfo& value);

    bool variant(OpcUa_Variant& value);
    bool variantScalar(OpcUa_Byte type, OpcUa_Variant& value);
    bool variantBlock(OpcUa_Byte type, OpcUa_Variant& value);
    bool variantArray(OpcUa_Byte type, bool hasDimensions, OpcUa_Variant& value);
    bool dimensions(OpcUa_Variant& value);

    bool extensionObject(OpcUa_ExtensionObject& value);
    bool extensionBody(OpcUa_ExtensionObject& value);
    bool knownBody(const OpcUa_EncodeableType& type, OpcUa_Int32 length, OpcUa_ExtensionObject& value);

    bool field(const OpcUa_FieldDescriptor& descriptor, void* object);
    [[nodiscard]] const OpcUa_Byte* plainField(const OpcUa_Byte* at, OpcUa_Byte kind, void* target);
    [[nodiscard]] const OpcUa_Byte* plainLocalizedText(const OpcUa_Byte* at, OpcUa_LocalizedText& value);
    [[nodiscard]] const OpcUa_Byte* plainText(const OpcUa_Byte* at, OpcUa_String& value);
    template <typename T>
    [[nodiscard]] const OpcUa_Byte* plainNumber(const OpcUa_Byte* at, T& value)
    {
        if (static_cast<size_t>(m_end - at) < sizeof(T))
            return nullptr;
        std::memcpy(&value, at, sizeof(T));
        return at + sizeof(T);
    }
    bool indirectField(const OpcUa_FieldDescriptor& descriptor, void* object);
    bool prefixedStructure(const OpcUa_EncodeableType& type, void* object);
    bool arrayLength(size_t minimum, OpcUa_Int32& count);
    bool elements(ElementType type, size_t count, void*& data);
    bool nested(ElementType type, size_t count, void*& data);
    bool fixedElements(ElementType type, size_t count, void* data);

    [[nodiscard]] void* allocate(size_t size);
    [[nodiscard]] void* allocateText(size_t size);
    [[nodiscard]] bool takeMemory(size_t size);
    void* accept(void* memory);
    bool enter();
    bool leave(bool result)
    {
        --m_depth;
        return result;
    }

    const OpcUa_Byte* m_at;
    const OpcUa_Byte* m_end;
    const EncodingLimits& m_limits;
    TextPool m_texts;
    size_t m_memoryLeft; ///< what may still be allocated
    OpcUa_UInt32 m_depth = 0;
    OpcUa_StatusCode m_status = OpcUa_Good;
};

} // namespace opcua
