#include <uawidgets/editors/qlumvaluetype.h>

#include <app/api/qlumtext.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumnumbertext.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QStringList>

#include <algorithm>

UaStructureDefinition qlumStructureDefinition(const UaExtensionObject& object, const QlumTypeHint& hint,
                                              UaDataTypeDictionary* dictionary)
{
    for (const UaNodeId& id : {object.encodingId(), hint.dataTypeId}) {
        if (id.isNull())
            continue;
        UaStructureDefinition definition = uaNamespaceZeroStructure(id);
        if (definition.isNull() && dictionary)
            definition = dictionary->structureDefinition(id);
        if (!definition.isNull())
            return definition;
    }
    return {};
}

UaExtensionObject qlumWithoutBody(const UaVariant& value)
{
    if (value.type() != OpcUaType_ExtensionObject || !value.isScalar() || !value.get()->Value.ExtensionObject)
        return {};
    return UaExtensionObject(UaExpandedNodeId(value.get()->Value.ExtensionObject->TypeId), UaByteString());
}

UaEnumDefinition qlumEnumDefinition(const UaNodeId& dataTypeId, UaDataTypeDictionary* dictionary)
{
    const UaEnumDefinition known = uaNamespaceZeroEnum(dataTypeId);
    return known.isNull() && dictionary ? dictionary->enumDefinition(dataTypeId) : known;
}

UaEnumDefinition qlumValueNames(OpcUa_BuiltInType type, const QlumValueContext& context)
{
    const bool isNamed = context.valueNames.valueCount() > 0;
    if (isNamed && (qlumIsInteger(type) || type == OpcUaType_Boolean))
        return context.valueNames;
    return qlumMayBeEnumeration(type) && !context.dataType.isNull()
               ? qlumEnumDefinition(context.dataType, context.dictionary.get())
               : UaEnumDefinition();
}

QlumTypeHint qlumFieldHint(const UaStructureField& field, UaDataTypeDictionary* dictionary)
{
    QlumTypeHint hint{field.dataTypeId(), field.enumDefinition()};
    if (!hint.enumDefinition.isNull() || hint.dataTypeId.isNull() || field.builtInType() != OpcUaType_Int32)
        return hint;
    hint.enumDefinition = qlumEnumDefinition(hint.dataTypeId, dictionary);
    return hint;
}

UaOptionSetDefinition qlumOptionSetDefinition(const UaNodeId& dataTypeId, UaDataTypeDictionary* dictionary)
{
    if (dataTypeId.isNull())
        return {};
    const UaOptionSetDefinition known = uaNamespaceZeroOptionSet(dataTypeId);
    return known.isNull() && dictionary ? dictionary->optionSetDefinition(dataTypeId) : known;
}

QlumValueContext qlumElementContext(const QlumValueContext& array)
{
    QlumValueContext element = array;
    const bool isAny = array.builtInType == OpcUaType_Variant || array.builtInType == OpcUaType_Null;
    element.valueRank = isAny ? -2 : -1; // a variant holds arrays, too
    element.arrayDimensions.clear();
    element.accessFault.clear(); // of the whole
    return element;
}

QlumValueContext qlumFieldContext(const QlumValueContext& structure, const UaStructureField& field)
{
    QlumValueContext context = structure;
    context.dataType = field.dataTypeId();
    context.builtInType = field.builtInType();
    const bool isAny = field.builtInType() == OpcUaType_Variant && field.valueRank() == -1;
    context.valueRank = isAny ? -2 : field.valueRank(); // a variant holds arrays, too
    const UaArray<OpcUa_UInt32> dimensions = field.arrayDimensions();
    context.arrayDimensions.clear();
    for (OpcUa_UInt32 i = 0; i < dimensions.length(); ++i)
        context.arrayDimensions.push_back(dimensions[i]);
    context.euRange.reset();
    context.instrumentRange.reset();
    context.unit.clear();
    context.accessFault.clear();
    context.maxStringLength.reset();
    context.valueNames = {};
    if (field.maxStringLength() > 0)
        context.maxStringLength = field.maxStringLength();
    return context;
}

QString qlumElementName(int index, const UaArray<OpcUa_Int32>& dimensions)
{
    QStringList places;
    for (OpcUa_UInt32 i = dimensions.length(); i > 1; --i) {
        const int length = std::max(dimensions[i - 1], 1);
        places.prepend(QString::number(index % length));
        index /= length;
    }
    places.prepend(QString::number(index));
    return QLatin1Char('[') + places.join(QLatin1Char(',')) + QLatin1Char(']');
}

UaVariant qlumNullValue(const QlumValueContext& context)
{
    OpcUa_BuiltInType type = context.builtInType;
    if (type == OpcUaType_Null || type == OpcUaType_Variant)
        type = qlumBuiltInTypeOf(context.dataType, context.dictionary.get());
    if (type == OpcUaType_Null)
        return {};
    const UaStructureField field(UaString(), context.dataType, type, context.valueRank >= 0 ? 1 : -1);
    return uaNullFieldValue(field, context.dictionary.get());
}

OpcUa_BuiltInType qlumBuiltInTypeOf(const UaNodeId& dataTypeId, UaDataTypeDictionary* dictionary)
{
    if (dataTypeId.isNull())
        return OpcUaType_Null;
    if (const OpcUa_BuiltInType known = uaNamespaceZeroBuiltInType(dataTypeId); known != OpcUaType_Null)
        return known;
    if (!dictionary)
        return OpcUaType_Null;
    switch (dictionary->definitionType(dataTypeId)) {
    case UaDataTypeDictionary::StructureType:
    case UaDataTypeDictionary::UnionType:
        return OpcUaType_ExtensionObject;
    case UaDataTypeDictionary::EnumType:
        return OpcUaType_Int32;
    case UaDataTypeDictionary::OptionSetType:
        return dictionary->optionSetDefinition(dataTypeId).builtInType();
    case UaDataTypeDictionary::UndefinedType:
        break;
    }
    return OpcUaType_Null;
}

QString qlumTypeNameOf(const UaNodeId& dataTypeId, const QlumValueContext& context)
{
    if (dataTypeId.isNull())
        return QString();
    if (const QString read = context.typeName ? context.typeName(dataTypeId) : QString(); !read.isEmpty())
        return read;
    const UaStructureDefinition structure =
        qlumStructureDefinition(UaExtensionObject(), {dataTypeId, {}}, context.dictionary.get());
    if (!structure.isNull())
        return toQString(structure.name());
    if (const UaEnumDefinition names = qlumEnumDefinition(dataTypeId, context.dictionary.get());
        !names.isNull())
        return toQString(names.name());
    const bool isBuiltIn = dataTypeId.namespaceIndex() == 0 && dataTypeId.isNumeric() &&
                           dataTypeId.identifierNumeric() <= OpcUaType_DiagnosticInfo;
    return isBuiltIn ? qlumBuiltinTypeName(dataTypeId.identifierNumeric())
                     : toQString(dataTypeId.toXmlString());
}

QString qlumTypeTextOf(const UaVariant& value, const QlumValueContext& context)
{
    if (value.isNull())
        return qlumTypeNameOf(context.dataType, context);
    QString name;
    if (value.type() == OpcUaType_ExtensionObject && value.isScalar()) {
        name = toQString(
            qlumStructureDefinition(qlumWithoutBody(value), {context.dataType, {}}, context.dictionary.get())
                .name());
    } else if (value.type() != OpcUaType_Variant &&
               qlumBuiltInTypeOf(context.dataType, context.dictionary.get()) == value.type()) {
        name = qlumTypeNameOf(context.dataType, context);
    }
    if (name.isEmpty())
        name = qlumBuiltinTypeName(value.type());
    if (value.isScalar())
        return name;
    QStringList lengths;
    const UaArray<OpcUa_Int32> dimensions = value.dimensions();
    for (OpcUa_UInt32 i = 0; i < dimensions.length(); ++i)
        lengths.append(QString::number(dimensions[i]));
    return QStringLiteral("%1[%2]").arg(name, lengths.join(QLatin1Char(',')));
}
