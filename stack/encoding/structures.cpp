// Life cycle of structures and of the extension objects that carry them.
#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/values.h>

#include <algorithm>
#include <cstring>

namespace opcua {

namespace {

size_t countOf(const OpcUa_FieldDescriptor& field, const void* object)
{
    if (!field.IsArray)
        return 1;
    return static_cast<size_t>(std::max(memberAt<OpcUa_Int32>(object, field.LengthOffset), 0));
}

bool isIndirect(const OpcUa_FieldDescriptor& field)
{
    return field.IsArray || field.IsPointer;
}

template <typename Release>
void forEachObject(void* objects, const OpcUa_EncodeableType& type, size_t count, Release release)
{
    for (size_t n = 0; n < count; ++n)
        release(elementAt(objects, type.AllocationSize, n));
}

// The kind as a constant leaves no choice to make for each object.
template <OpcUa_Byte Kind>
void releaseBuiltInField(const OpcUa_EncodeableType& type, size_t offset, void* objects, size_t count,
                         TextReleaser& texts)
{
    forEachObject(
        objects, type, count,
        [&](void* object) { releaseBuiltIn(Kind, elementAt(object, 1, offset), texts); });
}

// One field of all objects, so that what the field is has to be looked up once.
void releaseField(const OpcUa_EncodeableType& type, const OpcUa_FieldDescriptor& field, void* objects,
                  size_t count, TextReleaser& texts)
{
    const ElementType element = ElementType::of(field);
    const size_t offset = field.Offset;
    if (isIndirect(field))
        return forEachObject(objects, type, count, [&](void* object) {
            deleteElements(element, memberAt<void*>(object, offset), countOf(field, object));
        });
    if (element.isFlat())
        return;
    switch (field.Kind) {
    case OpcUa_FieldKind_Structure:
        return forEachObject(objects, type, count, [&](void* object) {
            releaseStructures(*field.StructureType, elementAt(object, 1, offset), 1, texts);
        });
    case OpcUaType_String:
        return releaseBuiltInField<OpcUaType_String>(type, offset, objects, count, texts);
    case OpcUaType_NodeId:
        return releaseBuiltInField<OpcUaType_NodeId>(type, offset, objects, count, texts);
    case OpcUaType_ExpandedNodeId:
        return releaseBuiltInField<OpcUaType_ExpandedNodeId>(type, offset, objects, count, texts);
    case OpcUaType_QualifiedName:
        return releaseBuiltInField<OpcUaType_QualifiedName>(type, offset, objects, count, texts);
    case OpcUaType_LocalizedText:
        return releaseBuiltInField<OpcUaType_LocalizedText>(type, offset, objects, count, texts);
    case OpcUaType_Variant:
        return releaseBuiltInField<OpcUaType_Variant>(type, offset, objects, count, texts);
    default:
        return forEachObject(objects, type, count, [&](void* object) {
            releaseBuiltIn(field.Kind, elementAt(object, 1, offset), texts);
        });
    }
}

void releaseObject(const OpcUa_EncodeableType& type, void* object)
{
    TextReleaser texts;
    releaseStructures(type, object, 1, texts);
}

OpcUa_StatusCode copyField(const OpcUa_FieldDescriptor& field, const void* source, void* destination)
{
    const ElementType type = ElementType::of(field);
    if (!isIndirect(field))
        return copyElements(type, elementAt(source, 1, field.Offset), elementAt(destination, 1, field.Offset),
                            1);
    OpcUa_StatusCode status = OpcUa_Good;
    void* const copy =
        cloneElements(type, memberAt<void*>(source, field.Offset), countOf(field, source), status);
    memberAt<void*>(destination, field.Offset) = copy;
    if (field.IsArray && copy != nullptr)
        memberAt<OpcUa_Int32>(destination, field.LengthOffset) =
            static_cast<OpcUa_Int32>(countOf(field, source));
    return status;
}

int compareField(const OpcUa_FieldDescriptor& field, const void* left, const void* right)
{
    const ElementType type = ElementType::of(field);
    if (!isIndirect(field))
        return compareElements(type, elementAt(left, 1, field.Offset), elementAt(right, 1, field.Offset), 1);
    const void* const a = memberAt<void*>(left, field.Offset);
    const void* const b = memberAt<void*>(right, field.Offset);
    if (a == nullptr || b == nullptr)
        return order(a != nullptr, b != nullptr);
    if (countOf(field, left) != countOf(field, right))
        return order(countOf(field, left), countOf(field, right));
    return compareElements(type, a, b, countOf(field, left));
}

void setPrefix(const OpcUa_EncodeableType& type, const void* source, void* destination)
{
    if (type.IsUnion || type.HasOptionalFields)
        memberAt<OpcUa_UInt32>(destination, 0) = memberAt<OpcUa_UInt32>(source, 0);
}

} // namespace

void initializeFields(const OpcUa_EncodeableType& type, OpcUa_UInt32 from, void* object)
{
    for (OpcUa_UInt32 i = from; i < type.FieldCount; ++i) {
        const OpcUa_FieldDescriptor& field = type.Fields[i];
        if (isIndirect(field))
            memberAt<void*>(object, field.Offset) = nullptr;
        else
            initializeElements(ElementType::of(field), elementAt(object, 1, field.Offset), 1);
        if (field.IsArray)
            memberAt<OpcUa_Int32>(object, field.LengthOffset) = 0;
    }
}

void initializeStructure(const OpcUa_EncodeableType& type, void* object)
{
    std::memset(object, 0, type.AllocationSize);
    if (type.IsFlat || type.IsUnion)
        return;
    for (OpcUa_UInt32 i = 0; i < type.FieldCount; ++i) {
        const OpcUa_FieldDescriptor& field = type.Fields[i];
        const ElementType element = ElementType::of(field);
        if (!isIndirect(field) && (element.isStructure() || !builtInLayouts[element.kind].nullIsZero))
            initializeElements(element, elementAt(object, 1, field.Offset), 1);
    }
}

void releaseStructures(const OpcUa_EncodeableType& type, void* objects, size_t count, TextReleaser& texts)
{
    if (type.IsFlat)
        return;
    if (type.IsUnion) // members overlap: only the one that is there owns anything
        return forEachObject(objects, type, count, [&](void* object) {
            const OpcUa_UInt32 member = memberAt<OpcUa_UInt32>(object, 0);
            if (member >= 1 && member <= type.FieldCount)
                releaseField(type, type.Fields[member - 1], object, 1, texts);
        });
    // a field that a mask leaves out is initialised, or was set and has to be freed
    for (OpcUa_UInt32 i = 0; i < type.FieldCount; ++i)
        releaseField(type, type.Fields[i], objects, count, texts);
}

void clearStructure(const OpcUa_EncodeableType& type, void* object)
{
    releaseObject(type, object);
    initializeStructure(type, object);
}

OpcUa_StatusCode copyStructure(const OpcUa_EncodeableType& type, const void* source, void* destination)
{
    initializeStructure(type, destination);
    const PresentFields present(type, source);
    for (OpcUa_UInt32 i = 0; i < type.FieldCount; ++i) {
        if (!present.has(i))
            continue;
        if (type.IsUnion)
            initializeElements(ElementType::of(type.Fields[i]),
                               elementAt(destination, 1, type.Fields[i].Offset),
                               isIndirect(type.Fields[i]) ? 0 : 1);
        const OpcUa_StatusCode status = copyField(type.Fields[i], source, destination);
        if (OpcUa_IsBad(status)) {
            setPrefix(type, source, destination);
            clearStructure(type, destination);
            return status;
        }
    }
    setPrefix(type, source, destination);
    return OpcUa_Good;
}

int compareStructures(const OpcUa_EncodeableType& type, const void* left, const void* right)
{
    if (type.IsUnion || type.HasOptionalFields) {
        const int result = order(memberAt<OpcUa_UInt32>(left, 0), memberAt<OpcUa_UInt32>(right, 0));
        if (result != 0)
            return result;
    }
    const PresentFields present(type, left);
    for (OpcUa_UInt32 i = 0; i < type.FieldCount; ++i) {
        const int result = present.has(i) ? compareField(type.Fields[i], left, right) : 0;
        if (result != 0)
            return result;
    }
    return 0;
}

void* createStructure(const OpcUa_EncodeableType& type)
{
    void* const object = allocateMemory(type.AllocationSize);
    if (object != nullptr)
        initializeStructure(type, object);
    return object;
}

void deleteStructure(const OpcUa_EncodeableType& type, void* object)
{
    if (object == nullptr)
        return;
    releaseObject(type, object);
    freeMemory(object);
}

// ---- extension objects

void release(OpcUa_ExtensionObject& value)
{
    releaseElements(ElementType::of(OpcUaType_ExpandedNodeId), &value.TypeId, 1);
    if (value.Encoding == OpcUa_ExtensionObjectEncoding_Binary ||
        value.Encoding == OpcUa_ExtensionObjectEncoding_Xml)
        freeMemory(value.Body.Binary.Data);
    else if (value.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject &&
             value.Body.EncodeableObject.Object != nullptr)
        deleteStructure(*value.Body.EncodeableObject.Type, value.Body.EncodeableObject.Object);
}

void clear(OpcUa_ExtensionObject& value)
{
    release(value);
    initialize(value);
}

OpcUa_StatusCode copy(const OpcUa_ExtensionObject& source, OpcUa_ExtensionObject& destination)
{
    initialize(destination);
    OpcUa_StatusCode status = copy(source.TypeId, destination.TypeId);
    if (OpcUa_IsBad(status))
        return status;
    destination.Encoding = source.Encoding;
    if (source.Encoding == OpcUa_ExtensionObjectEncoding_Binary ||
        source.Encoding == OpcUa_ExtensionObjectEncoding_Xml) {
        status = copy(source.Body.Binary, destination.Body.Binary);
    } else if (source.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject) {
        const auto& body = source.Body.EncodeableObject;
        destination.Body.EncodeableObject.Type = body.Type;
        destination.Body.EncodeableObject.Object =
            cloneElements({OpcUa_FieldKind_Structure, body.Type}, body.Object, 1, status);
    }
    if (OpcUa_IsBad(status))
        clear(destination);
    return status;
}

int compare(const OpcUa_ExtensionObject& left, const OpcUa_ExtensionObject& right)
{
    if (const int result = compare(left.TypeId, right.TypeId); result != 0)
        return result;
    if (left.Encoding != right.Encoding)
        return order(left.Encoding, right.Encoding);
    if (left.Encoding == OpcUa_ExtensionObjectEncoding_None)
        return 0;
    if (left.Encoding != OpcUa_ExtensionObjectEncoding_EncodeableObject)
        return compare(left.Body.Binary, right.Body.Binary);
    const auto& a = left.Body.EncodeableObject;
    const auto& b = right.Body.EncodeableObject;
    if (a.Object == nullptr || b.Object == nullptr)
        return order(a.Object != nullptr, b.Object != nullptr);
    if (a.Type != b.Type)
        return order(a.Type->TypeId, b.Type->TypeId);
    return compareStructures(*a.Type, a.Object, b.Object);
}

void attach(OpcUa_ExtensionObject& value, const OpcUa_EncodeableType& type, void* object)
{
    clear(value);
    value.TypeId.NodeId.Identifier.Numeric = type.BinaryEncodingTypeId;
    value.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    value.Body.EncodeableObject.Object = object;
    value.Body.EncodeableObject.Type = &type;
}

} // namespace opcua
