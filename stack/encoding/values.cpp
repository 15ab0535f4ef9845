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

namespace {

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
    if (!isHeldByPointer(source.Datatype))
        return copyElements(type, &source.Value, &destination.Value, 1);
    OpcUa_StatusCode status = OpcUa_Good;
    void* const copy = cloneElements(type, scalarOf(source), 1, status);
    std::memcpy(&destination.Value, &copy, sizeof copy);
    return status;
}

int compareArrays(const OpcUa_Variant& left, const OpcUa_Variant& right)
{
    const OpcUa_VariantArray& a = left.Value.Array;
    const OpcUa_VariantArray& b = right.Value.Array;
    if (a.Length != b.Length)
        return order(a.Length, b.Length);
    if (a.NoOfDimensions != b.NoOfDimensions)
        return order(a.NoOfDimensions, b.NoOfDimensions);
    for (OpcUa_Int32 i = 0; i < a.NoOfDimensions; ++i)
        if (a.Dimensions[i] != b.Dimensions[i])
            return order(a.Dimensions[i], b.Dimensions[i]);
    return compareElements(ElementType::of(left.Datatype), a.Data, b.Data, lengthOf(a));
}

} // namespace

void releaseBlocks(OpcUa_Variant& value)
{
    if (!isBuiltInType(value.Datatype))
        return;
    const ElementType type = ElementType::of(value.Datatype);
    if (value.ArrayType != OpcUa_VariantArrayType_Scalar) {
        OpcUa_VariantArray& array = value.Value.Array;
        deleteElements(type, array.Data, lengthOf(array));
        freeMemory(array.Dimensions);
    } else if (isHeldByPointer(value.Datatype)) {
        deleteElements(type, value.Value.NodeId, 1);
    } else {
        releaseElements(type, &value.Value, 1);
    }
}

void clear(OpcUa_Variant& value)
{
    release(value);
    initialize(value);
}

OpcUa_StatusCode copy(const OpcUa_Variant& source, OpcUa_Variant& destination)
{
    initialize(destination);
    if (!isBuiltInType(source.Datatype))
        return OpcUa_Good;
    destination.Datatype = source.Datatype;
    destination.ArrayType = source.ArrayType;
    const bool scalar = source.ArrayType == OpcUa_VariantArrayType_Scalar;
    const OpcUa_StatusCode status = scalar ? copyScalar(source, destination) : copyArray(source, destination);
    if (OpcUa_IsBad(status))
        clear(destination);
    return status;
}

int compare(const OpcUa_Variant& left, const OpcUa_Variant& right)
{
    if (left.Datatype != right.Datatype)
        return order(left.Datatype, right.Datatype);
    if (left.ArrayType != right.ArrayType)
        return order(left.ArrayType, right.ArrayType);
    if (!isBuiltInType(left.Datatype))
        return 0;
    if (left.ArrayType != OpcUa_VariantArrayType_Scalar)
        return compareArrays(left, right);
    const void* const a = scalarOf(left);
    const void* const b = scalarOf(right);
    if (a == nullptr || b == nullptr)
        return order(a != nullptr, b != nullptr);
    return compareElements(ElementType::of(left.Datatype), a, b, 1);
}

void clear(OpcUa_DataValue& value)
{
    release(value.Value);
    initialize(value);
}

OpcUa_StatusCode copy(const OpcUa_DataValue& source, OpcUa_DataValue& destination)
{
    destination = source;
    const OpcUa_StatusCode status = copy(source.Value, destination.Value);
    if (OpcUa_IsBad(status))
        initialize(destination);
    return status;
}

int compare(const OpcUa_DataValue& left, const OpcUa_DataValue& right)
{
    if (const int result = compare(left.Value, right.Value); result != 0)
        return result;
    if (left.StatusCode != right.StatusCode)
        return order(left.StatusCode, right.StatusCode);
    if (left.SourceTimestamp != right.SourceTimestamp)
        return order(left.SourceTimestamp, right.SourceTimestamp);
    if (left.SourcePicoseconds != right.SourcePicoseconds)
        return order(left.SourcePicoseconds, right.SourcePicoseconds);
    if (left.ServerTimestamp != right.ServerTimestamp)
        return order(left.ServerTimestamp, right.ServerTimestamp);
    return order(left.ServerPicoseconds, right.ServerPicoseconds);
}

void release(OpcUa_DiagnosticInfo& value)
{
    freeMemory(value.AdditionalInfo.Data);
    deleteElements(ElementType::of(OpcUaType_DiagnosticInfo), value.InnerDiagnosticInfo, 1);
}

void clear(OpcUa_DiagnosticInfo& value)
{
    release(value);
    initialize(value);
}

OpcUa_StatusCode copy(const OpcUa_DiagnosticInfo& source, OpcUa_DiagnosticInfo& destination)
{
    destination = source;
    destination.InnerDiagnosticInfo = nullptr;
    OpcUa_StatusCode status = copy(source.AdditionalInfo, destination.AdditionalInfo);
    if (OpcUa_IsGood(status)) {
        destination.InnerDiagnosticInfo = static_cast<OpcUa_DiagnosticInfo*>(
            cloneElements(ElementType::of(OpcUaType_DiagnosticInfo), source.InnerDiagnosticInfo, 1, status));
    }
    if (OpcUa_IsBad(status))
        clear(destination);
    return status;
}

int compare(const OpcUa_DiagnosticInfo& left, const OpcUa_DiagnosticInfo& right)
{
    if (left.SymbolicId != right.SymbolicId)
        return order(left.SymbolicId, right.SymbolicId);
    if (left.NamespaceUri != right.NamespaceUri)
        return order(left.NamespaceUri, right.NamespaceUri);
    if (left.Locale != right.Locale)
        return order(left.Locale, right.Locale);
    if (left.LocalizedText != right.LocalizedText)
        return order(left.LocalizedText, right.LocalizedText);
    if (left.InnerStatusCode != right.InnerStatusCode)
        return order(left.InnerStatusCode, right.InnerStatusCode);
    const int result = compare(left.AdditionalInfo, right.AdditionalInfo);
    if (result != 0)
        return result;
    if (left.InnerDiagnosticInfo == nullptr || right.InnerDiagnosticInfo == nullptr)
        return order(left.InnerDiagnosticInfo != nullptr, right.InnerDiagnosticInfo != nullptr);
    return compare(*left.InnerDiagnosticInfo, *right.InnerDiagnosticInfo);
}

} // namespace opcua
