// StructureWriter of uastructurecodec_p.h: bodies in the form of OPC 10000-6, 5.2.6 to 5.2.8.
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uastructurecodec_p.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uavariant.h>

namespace uabase {

void StructureWriter::writeUInt32(OpcUa_UInt32 value)
{
    for (unsigned i = 0; i < 4; ++i)
        m_bytes.push_back(static_cast<OpcUa_Byte>(value >> 8 * i));
}

OpcUa_StatusCode StructureWriter::writeNested(const UaStructureField& field,
                                              const OpcUa_ExtensionObject& value, int depth)
{
    const UaStructureDefinition nested = findDefinition(field, m_dictionary);
    const UaExtensionObject object(value);
    if (object.isNull())
        return nested.isNull() ? OpcUa_BadDataTypeIdUnknown : writeDefaults(nested, depth + 1);
    if (!nested.isNull() && !isOfType(object, nested))
        return OpcUa_BadEncodingError;
    UaByteString body;
    if (!OpcUa_IsGood(object.binaryBody(body)))
        return OpcUa_BadEncodingError;
    m_bytes.insert(m_bytes.end(), body.bytes().begin(), body.bytes().end());
    return OpcUa_Good;
}

OpcUa_StatusCode StructureWriter::writeElement(const UaStructureField& field, const void* element, int depth)
{
    if (!element)
        return OpcUa_BadEncodingError;
    if (field.isNestedStructure())
        return writeNested(field, *static_cast<const OpcUa_ExtensionObject*>(element), depth);
    OpcUa_ByteString bytes;
    OpcUa_ByteString_Initialize(&bytes);
    const OpcUa_StatusCode status =
        OpcUa_BuiltInType_EncodeBinary(static_cast<OpcUa_Byte>(field.builtInType()), element, &bytes);
    if (OpcUa_IsGood(status) && bytes.Length > 0)
        m_bytes.insert(m_bytes.end(), bytes.Data, bytes.Data + bytes.Length);
    OpcUa_ByteString_Clear(&bytes);
    return status;
}

OpcUa_StatusCode StructureWriter::writeArray(const UaStructureField& field, const UaVariant& value, int depth)
{
    if (field.valueRank() > 1) {
        const auto dimensions = value.dimensions();
        writeInt32(value.isMatrix() ? static_cast<OpcUa_Int32>(dimensions.length()) : -1);
        for (OpcUa_UInt32 i = 0; value.isMatrix() && i < dimensions.length(); ++i)
            writeInt32(dimensions[i]);
    } else {
        writeInt32(value.arraySize());
    }
    const std::size_t size = OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(field.builtInType()));
    const auto* element = static_cast<const unsigned char*>(value.elements());
    for (OpcUa_UInt32 i = 0; i < value.elementCount(); ++i, element += size)
        if (const OpcUa_StatusCode status = writeElement(field, element, depth); !OpcUa_IsGood(status))
            return status;
    return OpcUa_Good;
}

OpcUa_StatusCode StructureWriter::writeField(const UaStructureField& field, const UaVariant& value, int depth)
{
    if (!fitsField(field, value) || !isBuiltInType(field.builtInType()))
        return OpcUa_BadEncodingError;
    if (field.valueRank() >= 0)
        return writeArray(field, value, depth);
    const bool isVariant = field.builtInType() == OpcUaType_Variant;
    return writeElement(field, isVariant ? value.get() : scalarData(*value.get()), depth);
}

OpcUa_StatusCode StructureWriter::writeStructure(const UaStructureDefinition& definition,
                                                 const FieldValues& fields, int depth)
{
    if (depth > maxNesting || !m_budget.take())
        return OpcUa_BadEncodingLimitsExceeded;
    if (const StructureLayout* layout = definition.layout())
        return writeLayout(definition, *layout, fields, depth);
    const std::size_t maskPosition = m_bytes.size();
    if (definition.hasOptionalFields())
        writeUInt32(0);
    unsigned optionalIndex = 0;
    for (int i = 0; i < definition.fieldCount(); ++i) {
        const UaStructureField& field = definition.fieldAt(i);
        const auto index = static_cast<std::size_t>(i);
        const unsigned bit = field.isOptional() ? optionalIndex++ : 0;
        if (bit >= 32)
            return OpcUa_BadEncodingLimitsExceeded;
        if (field.isOptional() && !fields.has(index))
            continue;
        if (field.isOptional())
            m_bytes[maskPosition + bit / 8] |= static_cast<OpcUa_Byte>(1u << bit % 8);
        const OpcUa_StatusCode status = writeField(field, fields.values[index], depth);
        if (!OpcUa_IsGood(status))
            return status;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode StructureWriter::writeUnion(const UaStructureDefinition& definition,
                                             OpcUa_UInt32 switchValue, const UaVariant& value, int depth)
{
    writeUInt32(switchValue);
    if (switchValue == 0)
        return OpcUa_Good;
    if (switchValue > static_cast<OpcUa_UInt32>(definition.fieldCount()))
        return OpcUa_BadEncodingError;
    return writeField(definition.field(static_cast<int>(switchValue) - 1), value, depth);
}

OpcUa_StatusCode StructureWriter::writeDefaults(const UaStructureDefinition& definition, int depth)
{
    if (definition.isUnion())
        return writeUnion(definition, 0, UaVariant(), depth);
    FieldValues fields;
    for (int i = 0; i < definition.fieldCount(); ++i) {
        const UaStructureField field = definition.field(i);
        fields.values.push_back(field.valueRank() < 0 ? nullScalar(field.builtInType()) : UaVariant());
        fields.present.push_back(!field.isOptional());
    }
    return writeStructure(definition, fields, depth);
}

} // namespace uabase
