#include <opcua/opcua_builtintypes.h>
#include <stack/capi/values/checked.h>
#include <stack/encoding/values.h>

// ---- strings

void OpcUa_String_Initialize(OpcUa_String* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_String_Clear(OpcUa_String* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_String_Copy(const OpcUa_String* source, OpcUa_String* destination)
{
    return opcua::copyChecked(source, destination);
}

OpcUa_StatusCode OpcUa_String_Assign(OpcUa_String* destination, const char* text, OpcUa_Int32 length)
{
    return destination != nullptr ? opcua::assign(*destination, text, length) : OpcUa_BadInvalidArgument;
}

int OpcUa_String_Compare(const OpcUa_String* left, const OpcUa_String* right)
{
    return opcua::compareChecked(left, right);
}

void OpcUa_ByteString_Initialize(OpcUa_ByteString* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_ByteString_Clear(OpcUa_ByteString* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_ByteString_Copy(const OpcUa_ByteString* source, OpcUa_ByteString* destination)
{
    return opcua::copyChecked(source, destination);
}

OpcUa_StatusCode OpcUa_ByteString_Assign(OpcUa_ByteString* destination, const void* data, OpcUa_Int32 length)
{
    return destination != nullptr ? opcua::assign(*destination, data, length) : OpcUa_BadInvalidArgument;
}

int OpcUa_ByteString_Compare(const OpcUa_ByteString* left, const OpcUa_ByteString* right)
{
    return opcua::compareChecked(left, right);
}

int OpcUa_Guid_Compare(const OpcUa_Guid* left, const OpcUa_Guid* right)
{
    return opcua::compareChecked(left, right);
}

// ---- node ids

void OpcUa_NodeId_Initialize(OpcUa_NodeId* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_NodeId_Clear(OpcUa_NodeId* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_NodeId_Copy(const OpcUa_NodeId* source, OpcUa_NodeId* destination)
{
    return opcua::copyChecked(source, destination);
}

int OpcUa_NodeId_Compare(const OpcUa_NodeId* left, const OpcUa_NodeId* right)
{
    return opcua::compareChecked(left, right);
}

OpcUa_Boolean OpcUa_NodeId_IsNull(const OpcUa_NodeId* value)
{
    return value == nullptr || opcua::isNull(*value) ? OpcUa_True : OpcUa_False;
}

void OpcUa_ExpandedNodeId_Initialize(OpcUa_ExpandedNodeId* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_ExpandedNodeId_Clear(OpcUa_ExpandedNodeId* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_ExpandedNodeId_Copy(const OpcUa_ExpandedNodeId* source,
                                           OpcUa_ExpandedNodeId* destination)
{
    return opcua::copyChecked(source, destination);
}

int OpcUa_ExpandedNodeId_Compare(const OpcUa_ExpandedNodeId* left, const OpcUa_ExpandedNodeId* right)
{
    return opcua::compareChecked(left, right);
}

// ---- names and texts

void OpcUa_QualifiedName_Initialize(OpcUa_QualifiedName* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_QualifiedName_Clear(OpcUa_QualifiedName* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_QualifiedName_Copy(const OpcUa_QualifiedName* source, OpcUa_QualifiedName* destination)
{
    return opcua::copyChecked(source, destination);
}

int OpcUa_QualifiedName_Compare(const OpcUa_QualifiedName* left, const OpcUa_QualifiedName* right)
{
    return opcua::compareChecked(left, right);
}

void OpcUa_LocalizedText_Initialize(OpcUa_LocalizedText* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_LocalizedText_Clear(OpcUa_LocalizedText* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_LocalizedText_Copy(const OpcUa_LocalizedText* source, OpcUa_LocalizedText* destination)
{
    return opcua::copyChecked(source, destination);
}

int OpcUa_LocalizedText_Compare(const OpcUa_LocalizedText* left, const OpcUa_LocalizedText* right)
{
    return opcua::compareChecked(left, right);
}

// ---- values

void OpcUa_ExtensionObject_Initialize(OpcUa_ExtensionObject* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_ExtensionObject_Clear(OpcUa_ExtensionObject* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_ExtensionObject_Copy(const OpcUa_ExtensionObject* source,
                                            OpcUa_ExtensionObject* destination)
{
    return opcua::copyChecked(source, destination);
}

int OpcUa_ExtensionObject_Compare(const OpcUa_ExtensionObject* left, const OpcUa_ExtensionObject* right)
{
    return opcua::compareChecked(left, right);
}

void OpcUa_ExtensionObject_AttachEncodeable(OpcUa_ExtensionObject* value, const OpcUa_EncodeableType* type,
                                            void* object)
{
    if (value != nullptr && type != nullptr)
        opcua::attach(*value, *type, object);
}

void OpcUa_Variant_Initialize(OpcUa_Variant* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_Variant_Clear(OpcUa_Variant* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_Variant_Copy(const OpcUa_Variant* source, OpcUa_Variant* destination)
{
    return opcua::copyChecked(source, destination);
}

int OpcUa_Variant_Compare(const OpcUa_Variant* left, const OpcUa_Variant* right)
{
    return opcua::compareChecked(left, right);
}

OpcUa_Boolean OpcUa_Variant_IsHeldByPointer(OpcUa_Byte builtInType)
{
    return opcua::isHeldByPointer(builtInType) ? OpcUa_True : OpcUa_False;
}

const void* OpcUa_Variant_ScalarData(const OpcUa_Variant* value)
{
    const bool scalar = value != nullptr && value->ArrayType == OpcUa_VariantArrayType_Scalar &&
                        opcua::isBuiltInType(value->Datatype) && value->Datatype != OpcUaType_Variant;
    return scalar ? opcua::scalarOf(*value) : nullptr;
}

void OpcUa_DataValue_Initialize(OpcUa_DataValue* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_DataValue_Clear(OpcUa_DataValue* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_DataValue_Copy(const OpcUa_DataValue* source, OpcUa_DataValue* destination)
{
    return opcua::copyChecked(source, destination);
}

int OpcUa_DataValue_Compare(const OpcUa_DataValue* left, const OpcUa_DataValue* right)
{
    return opcua::compareChecked(left, right);
}

void OpcUa_DiagnosticInfo_Initialize(OpcUa_DiagnosticInfo* value)
{
    opcua::initializeChecked(value);
}

void OpcUa_DiagnosticInfo_Clear(OpcUa_DiagnosticInfo* value)
{
    opcua::clearChecked(value);
}

OpcUa_StatusCode OpcUa_DiagnosticInfo_Copy(const OpcUa_DiagnosticInfo* source,
                                           OpcUa_DiagnosticInfo* destination)
{
    return opcua::copyChecked(source, destination);
}

int OpcUa_DiagnosticInfo_Compare(const OpcUa_DiagnosticInfo* left, const OpcUa_DiagnosticInfo* right)
{
    return opcua::compareChecked(left, right);
}

// ---- by built-in type

size_t OpcUa_BuiltInType_Size(OpcUa_Byte builtInType)
{
    return opcua::isBuiltInType(builtInType) ? opcua::builtInLayouts[builtInType].size : 0;
}

const char* OpcUa_BuiltInType_Name(OpcUa_Byte builtInType)
{
    return builtInType < opcua::builtInLayouts.size() ? opcua::builtInLayouts[builtInType].name : "Unknown";
}

void OpcUa_BuiltInType_InitializeArray(OpcUa_Byte builtInType, void* data, size_t count)
{
    if (opcua::isBuiltInType(builtInType) && data != nullptr)
        opcua::initializeElements(opcua::ElementType::of(builtInType), data, count);
}

void OpcUa_BuiltInType_ClearArray(OpcUa_Byte builtInType, void* data, size_t count)
{
    if (opcua::isBuiltInType(builtInType) && data != nullptr)
        opcua::clearElements(opcua::ElementType::of(builtInType), data, count);
}

OpcUa_StatusCode OpcUa_BuiltInType_CopyArray(OpcUa_Byte builtInType, const void* source, void* destination,
                                             size_t count)
{
    if (!opcua::isBuiltInType(builtInType) || (count > 0 && (source == nullptr || destination == nullptr)))
        return OpcUa_BadInvalidArgument;
    return opcua::copyElements(opcua::ElementType::of(builtInType), source, destination, count);
}

int OpcUa_BuiltInType_Compare(OpcUa_Byte builtInType, const void* left, const void* right)
{
    if (!opcua::isBuiltInType(builtInType))
        return 0;
    if (left == nullptr || right == nullptr)
        return opcua::order(left != nullptr, right != nullptr);
    return opcua::compareElements(opcua::ElementType::of(builtInType), left, right, 1);
}
