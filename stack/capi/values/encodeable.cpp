#include <opcua/opcua_attributes.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/elements.h>
#include <stack/encoding/lifecycle.h>
#include <stack/encoding/lookup.h>
#include <stack/encoding/messagecodec.h>

using opcua::ElementType;

// Nothing here throws: the codec answers BadOutOfMemory.

// ---- life cycle

void OpcUa_EncodeableObject_Initialize(const OpcUa_EncodeableType* type, void* object)
{
    if (type != nullptr && object != nullptr)
        opcua::initializeStructure(*type, object);
}

void OpcUa_EncodeableObject_Clear(const OpcUa_EncodeableType* type, void* object)
{
    if (type != nullptr && object != nullptr)
        opcua::clearStructure(*type, object);
}

OpcUa_StatusCode OpcUa_EncodeableObject_Copy(const OpcUa_EncodeableType* type, const void* source,
                                             void* destination)
{
    if (type == nullptr || source == nullptr || destination == nullptr)
        return OpcUa_BadInvalidArgument;
    return opcua::copyStructure(*type, source, destination);
}

int OpcUa_EncodeableObject_Compare(const OpcUa_EncodeableType* type, const void* left, const void* right)
{
    if (type == nullptr || left == nullptr || right == nullptr)
        return opcua::order(left != nullptr, right != nullptr);
    return opcua::compareStructures(*type, left, right);
}

void* OpcUa_EncodeableObject_Create(const OpcUa_EncodeableType* type)
{
    return type != nullptr ? opcua::createStructure(*type) : nullptr;
}

void OpcUa_EncodeableObject_Delete(const OpcUa_EncodeableType* type, void** object)
{
    if (type == nullptr || object == nullptr)
        return;
    opcua::deleteStructure(*type, *object);
    *object = nullptr;
}

void OpcUa_EncodeableObject_DeleteArray(const OpcUa_EncodeableType* type, void** objects, size_t count)
{
    if (type == nullptr || objects == nullptr)
        return;
    opcua::deleteElements({OpcUa_FieldKind_Structure, type}, *objects, count);
    *objects = nullptr;
}

// ---- binary form

OpcUa_StatusCode OpcUa_EncodeableObject_EncodeBinary(const OpcUa_EncodeableType* type, const void* object,
                                                     OpcUa_ByteString* bytes)
{
    if (bytes != nullptr)
        opcua::initialize(*bytes);
    if (type == nullptr || object == nullptr || bytes == nullptr)
        return OpcUa_BadInvalidArgument;
    return opcua::encodeElement(ElementType::of(*type), object, *bytes);
}

OpcUa_StatusCode OpcUa_EncodeableObject_DecodeBinary(const OpcUa_EncodeableType* type, const OpcUa_Byte* data,
                                                     size_t size, void* object, size_t* consumed)
{
    if (type == nullptr || object == nullptr)
        return OpcUa_BadInvalidArgument;
    if (data == nullptr && size > 0) {
        opcua::initializeStructure(*type, object);
        return OpcUa_BadInvalidArgument;
    }
    return opcua::decodeElement(ElementType::of(*type), {data, size}, object, consumed);
}

OpcUa_StatusCode OpcUa_BuiltInType_EncodeBinary(OpcUa_Byte builtInType, const void* value,
                                                OpcUa_ByteString* bytes)
{
    if (bytes != nullptr)
        opcua::initialize(*bytes);
    if (value == nullptr || bytes == nullptr)
        return OpcUa_BadInvalidArgument;
    if (!opcua::isBuiltInType(builtInType))
        return OpcUa_BadEncodingError;
    return opcua::encodeElement(ElementType::of(builtInType), value, *bytes);
}

OpcUa_StatusCode OpcUa_BuiltInType_DecodeBinary(OpcUa_Byte builtInType, const OpcUa_Byte* data, size_t size,
                                                void* value, size_t* consumed)
{
    if (value == nullptr)
        return OpcUa_BadInvalidArgument;
    if (!opcua::isBuiltInType(builtInType))
        return OpcUa_BadDecodingError;
    if (data == nullptr && size > 0) {
        opcua::initializeElements(ElementType::of(builtInType), value, 1);
        return OpcUa_BadInvalidArgument;
    }
    return opcua::decodeElement(ElementType::of(builtInType), {data, size}, value, consumed);
}

// ---- tables

const OpcUa_EncodeableType* OpcUa_EncodeableType_FindByBinaryId(OpcUa_UInt32 binaryEncodingTypeId)
{
    return opcua::findTypeByBinaryId(binaryEncodingTypeId);
}

const OpcUa_EncodeableType* OpcUa_EncodeableType_FindByTypeId(OpcUa_UInt32 dataTypeId)
{
    return opcua::findTypeByTypeId(dataTypeId);
}

const OpcUa_EnumeratedType* OpcUa_EnumeratedType_Find(OpcUa_UInt32 enumDataTypeId)
{
    return opcua::findEnumeratedType(enumDataTypeId);
}

const char* OpcUa_EnumValue_Name(OpcUa_UInt32 enumDataTypeId, OpcUa_Int32 value)
{
    return opcua::nameOfEnumValue(enumDataTypeId, value);
}

const char* OpcUa_StatusCode_Name(OpcUa_StatusCode code)
{
    return opcua::nameOfStatusCode(code);
}

const char* OpcUa_AttributeId_Name(OpcUa_UInt32 attributeId)
{
    return opcua::nameOfAttribute(attributeId);
}
