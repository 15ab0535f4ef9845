// Rows of structures and unions.
#include <plugins/attributes/qlumattributerows.h>

#include <app/api/qlumtext.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/values/uastatuscode.h>

namespace {
constexpr QlumValueStep detail{QlumValueStep::Detail, 0};
}

QlumAttributeNode& QlumAttributeRows::addExtensionObject(QlumAttributeNode& parent, const QString& name,
                                                         const UaExtensionObject& object,
                                                         const QlumTypeHint& hint, QlumValueStep step)
{
    if (object.isNull())
        return parent.append(name, tr("Null"), step);
    QlumAttributeNode& row = parent.append(name, tr("ExtensionObject"), step);
    const UaStructureDefinition definition = qlumStructureDefinition(object, hint, m_dictionary);
    UaByteString body;
    if (definition.isNull() || UaStatusCode(object.binaryBody(body)).isBad()) {
        addUndecoded(row, object);
        return row;
    }
    const bool decoded =
        definition.isUnion() ? addSelectedField(row, body, definition) : addFields(row, body, definition);
    if (decoded)
        row.setValue(toQString(definition.name()));
    else
        addUndecoded(row, object);
    return row;
}

bool QlumAttributeRows::addFields(QlumAttributeNode& row, const UaByteString& body,
                                  const UaStructureDefinition& definition)
{
    UaGenericStructureValue fields;
    if (fields.decode(body, definition, m_dictionary).isBad())
        return false;
    for (int i = 0; i < definition.fieldCount(); ++i) {
        const UaStructureField field = definition.field(i);
        const QString fieldName = toQString(field.name());
        if (fields.isFieldSet(i))
            addVariant(row, fieldName, fields.value(i), qlumFieldHint(field, m_dictionary),
                       {QlumValueStep::Field, i});
        else
            row.append(fieldName, QString(), detail).setAbsent(true);
    }
    return true;
}

bool QlumAttributeRows::addSelectedField(QlumAttributeNode& row, const UaByteString& body,
                                         const UaStructureDefinition& definition)
{
    UaGenericUnionValue selected;
    if (selected.decode(body, definition, m_dictionary).isBad())
        return false;
    row.append(tr("Switch Field"), QString::number(selected.switchValue()), detail);
    const UaStructureField field = selected.field();
    if (!field.isNull())
        addVariant(row, toQString(field.name()), selected.value(), qlumFieldHint(field, m_dictionary),
                   {QlumValueStep::Selected, 0});
    return true;
}

// What there is, for those who know the type.
void QlumAttributeRows::addUndecoded(QlumAttributeNode& row, const UaExtensionObject& object)
{
    addExpandedNodeId(row, QStringLiteral("TypeId"), object.typeId(), detail);
    UaVariant body;
    UaByteString bytes;
    if (object.encoding() == OpcUa_ExtensionObjectEncoding_Xml)
        body.setXmlElement(object.xmlBody());
    else if (!UaStatusCode(object.binaryBody(bytes)).isBad())
        body.setByteString(bytes);
    addVariant(row, QStringLiteral("Body"), body, QlumTypeHint(), detail);
}
