// Variants, data values and diagnostics.
#include <stack/encoding/values.h>

#include <opcua/opcua_statuscodes.h>

#include <algorithm>
#include <cstring>

namespace opcua {

bool isHeldByPointer(OpcUa_Byte builtInType)
{
    switch (builtInType) {
    case OpcUaType_NodeId:
    case OpcUaType_ExpandedNodeId:
    case OpcUaType_QualifiedName:
    case OpcUaType_LocalizedText:
    case OpcUaType_ExtensionObject:
    case OpcUaType_DataValue:
    case OpcUaType_DiagnosticInfo:
        return true;
    default:
        return false;
    }
}

const void* scalarOf(const OpcUa_Variant& value)
{
    // every member of the union starts where the union does
    return isHeldByPointer(value.Datatype) ? static_cast<const void*>(value.Value.NodeId) : &value.Value;
}

} // namespace opcua

namespace {

using opcua::ElementType;

size_t lengthOf(const OpcUa_VariantArray& array)
{
    return array.Data == nullptr ? 0 : static_cast<size_t>(std::max(array.Length, 0));
}

OpcUa_StatusCode copyArray(const OpcUa_Variant& source, OpcUa_Variant& destination)
{
    const OpcUa_VariantArray& from = source.Value.Array;
    OpcUa_VariantArray& to = destination.Value.Array;
    OpcUa_StatusCode status = OpcUa_Good;
    to = {from.Length, 0, nullptr, nullptr};
    if (source.ArrayType == OpcUa_VariantArrayType_Matrix && from.Dimensions != nullptr) {
        to.Dimensions =
            static_cast<OpcUa_Int32*>(cloneElements(ElementType::of(OpcUaType_Int32), from.Dimensions,
                                                    static_cast<size_t>(from.NoOfDimensions), status));
        to.NoOfDimensions = to.Dimensions != nullptr ? from.NoOfDimensions : 0;
    }
    if (OpcUa_IsGood(status))
        to.Data = cloneElements(ElementType::of(source.Datatype), from.Data, lengthOf(from), status);
    if (to.Data == nullptr && from.Data != nullptr)
        to.Length = -1;
    return status;
}

OpcUa_StatusCode copyScalar(const OpcUa_Variant& source, OpcUa_Variant& destination)
{
    const ElementType type = ElementType::of(source.Datatype);
    if (!opcua::isHeldByPointer(source.Datatype))
        return copyElements(type, &source.Value, &destination.Value, 1);
    OpcUa_StatusCode status = OpcUa_Good;
    void* const copy = cloneElements(type, opcua::scalarOf(source), 1, status);
    std::memcpy(&destination.Value, &copy, sizeof copy);
    return status;
}

int compareArrays(const OpcUa_Variant& left, const OpcUa_Variant& right)
{
    const OpcUa_VariantArray& a = left.Value.Array;
    const OpcUa_VariantArray& b = right.Value.Array;
    if (a.Length != b.Length)
        return opcua::order(a.Length, b.Length);
    if (a.NoOfDimensions != b.NoOfDimensions)
        return opcua::order(a.NoOfDimensions, b.NoOfDimensions);
    for (OpcUa_Int32 i = 0; i < a.NoOfDimensions; ++i)
        if (a.Dimensions[i] != b.Dimensions[i])
            return opcua::order(a.Dimensions[i], b.Dimensions[i]);
    return compareElements(ElementType::of(left.Datatype), a.Data, b.Data, lengthOf(a));
}

} // namespace

void OpcUa_Variant_Initialize(OpcUa_Variant* value)
{
    std::memset(value, 0, sizeof *value);
}

void opcua::releaseBlocks(OpcUa_Variant& value)
{
    if (!isBuiltInType(value.Datatype))
        return;
    const ElementType type = ElementType::of(value.Datatype);
    if (value.ArrayType != OpcUa_VariantArrayType_Scalar) {
        OpcUa_VariantArray& array = value.Value.Array;
        deleteElements(type, array.Data, lengthOf(array));
        OpcUa_Memory_Free(array.Dimensions);
    } else if (isHeldByPointer(value.Datatype)) {
        deleteElements(type, value.Value.NodeId, 1);
    } else {
        releaseElements(type, &value.Value, 1);
    }
}

void OpcUa_Variant_Clear(OpcUa_Variant* value)
{
    opcua::release(*value);
    OpcUa_Variant_Initialize(value);
}

OpcUa_StatusCode OpcUa_Variant_Copy(const OpcUa_Variant* source, OpcUa_Variant* destination)
{
    OpcUa_Variant_Initialize(destination);
    if (!opcua::isBuiltInType(source->Datatype))
        return OpcUa_Good;
    destination->Datatype = source->Datatype;
    destination->ArrayType = source->ArrayType;
    const bool scalar = source->ArrayType == OpcUa_VariantArrayType_Scalar;
    const OpcUa_StatusCode status =
        scalar ? copyScalar(*source, *destination) : copyArray(*source, *destination);
    if (OpcUa_IsBad(status))
        OpcUa_Variant_Clear(destination);
    return status;
}

int OpcUa_Variant_Compare(const OpcUa_Variant* left, const OpcUa_Variant* right)
{
    if (left->Datatype != right->Datatype)
        return opcua::order(left->Datatype, right->Datatype);
    if (left->ArrayType != right->ArrayType)
        return opcua::order(left->ArrayType, right->ArrayType);
    if (!opcua::isBuiltInType(left->Datatype))
        return 0;
    if (left->ArrayType != OpcUa_VariantArrayType_Scalar)
        return compareArrays(*left, *right);
    const void* const a = opcua::scalarOf(*left);
    const void* const b = opcua::scalarOf(*right);
    if (a == nullptr || b == nullptr)
        return opcua::order(a != nullptr, b != nullptr);
    return compareElements(ElementType::of(left->Datatype), a, b, 1);
}

void OpcUa_DataValue_Initialize(OpcUa_DataValue* value)
{
    std::memset(value, 0, sizeof *value);
}

void OpcUa_DataValue_Clear(OpcUa_DataValue* value)
{
    opcua::release(value->Value);
    OpcUa_DataValue_Initialize(value);
}

OpcUa_StatusCode OpcUa_DataValue_Copy(const OpcUa_DataValue* source, OpcUa_DataValue* destination)
{
    *destination = *source;
    const OpcUa_StatusCode status = OpcUa_Variant_Copy(&source->Value, &destination->Value);
    if (OpcUa_IsBad(status))
        OpcUa_DataValue_Initialize(destination);
    return status;
}

int OpcUa_DataValue_Compare(const OpcUa_DataValue* left, const OpcUa_DataValue* right)
{
    if (const int result = OpcUa_Variant_Compare(&left->Value, &right->Value); result != 0)
        return result;
    if (left->StatusCode != right->StatusCode)
        return opcua::order(left->StatusCode, right->StatusCode);
    if (left->SourceTimestamp != right->SourceTimestamp)
        return opcua::order(left->SourceTimestamp, right->SourceTimestamp);
    if (left->SourcePicoseconds != right->SourcePicoseconds)
        return opcua::order(left->SourcePicoseconds, right->SourcePicoseconds);
    if (left->ServerTimestamp != right->ServerTimestamp)
        return opcua::order(left->ServerTimestamp, right->ServerTimestamp);
    return opcua::order(left->ServerPicoseconds, right->ServerPicoseconds);
}

void OpcUa_DiagnosticInfo_Initialize(OpcUa_DiagnosticInfo* value)
{
    *value = {-1, -1, -1, -1, {-1, nullptr}, OpcUa_Good, nullptr};
}

void opcua::release(OpcUa_DiagnosticInfo& value)
{
    OpcUa_Memory_Free(value.AdditionalInfo.Data);
    deleteElements(ElementType::of(OpcUaType_DiagnosticInfo), value.InnerDiagnosticInfo, 1);
}

void OpcUa_DiagnosticInfo_Clear(OpcUa_DiagnosticInfo* value)
{
    opcua::release(*value);
    OpcUa_DiagnosticInfo_Initialize(value);
}

OpcUa_StatusCode OpcUa_DiagnosticInfo_Copy(const OpcUa_DiagnosticInfo* source,
                                           OpcUa_DiagnosticInfo* destination)
{
    *destination = *source;
    destination->InnerDiagnosticInfo = nullptr;
    OpcUa_StatusCode status = OpcUa_String_Copy(&source->AdditionalInfo, &destination->AdditionalInfo);
    if (OpcUa_IsGood(status)) {
        destination->InnerDiagnosticInfo = static_cast<OpcUa_DiagnosticInfo*>(
            cloneElements(ElementType::of(OpcUaType_DiagnosticInfo), source->InnerDiagnosticInfo, 1, status));
    }
    if (OpcUa_IsBad(status))
        OpcUa_DiagnosticInfo_Clear(destination);
    return status;
}

int OpcUa_DiagnosticInfo_Compare(const OpcUa_DiagnosticInfo* left, const OpcUa_DiagnosticInfo* right)
{
    if (left->SymbolicId != right->SymbolicId)
        return opcua::order(left->SymbolicId, right->SymbolicId);
    if (left->NamespaceUri != right->NamespaceUri)
        return opcua::order(left->NamespaceUri, right->NamespaceUri);
    if (left->Locale != right->Locale)
        return opcua::order(left->Locale, right->Locale);
    if (left->LocalizedText != right->LocalizedText)
        return opcua::order(left->LocalizedText, right->LocalizedText);
    if (left->InnerStatusCode != right->InnerStatusCode)
        return opcua::order(left->InnerStatusCode, right->InnerStatusCode);
    const int result = OpcUa_String_Compare(&left->AdditionalInfo, &right->AdditionalInfo);
    if (result != 0)
        return result;
    if (left->InnerDiagnosticInfo == nullptr || right->InnerDiagnosticInfo == nullptr)
        return opcua::order(left->InnerDiagnosticInfo != nullptr, right->InnerDiagnosticInfo != nullptr);
    return OpcUa_DiagnosticInfo_Compare(left->InnerDiagnosticInfo, right->InnerDiagnosticInfo);
}
