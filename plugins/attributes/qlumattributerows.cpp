#include <plugins/attributes/qlumattributerows.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>
#include <plugins/attributes/qlumattributenode.h>
#include <plugins/attributes/qlumattributetexts.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumshowntext.h>

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <memory>

namespace {
constexpr QlumValueStep detail{QlumValueStep::Detail, 0};
constexpr int maximumDepth = 100; // of values within values

int depthOf(const QlumAttributeNode& row)
{
    int depth = 0;
    for (const QlumAttributeNode* parent = row.parent(); parent; parent = parent->parent())
        ++depth;
    return depth;
}

QString identifierTypeText(OpcUa_IdentifierType type)
{
    switch (type) {
    case OpcUa_IdentifierType_Numeric:
        return QStringLiteral("Numeric");
    case OpcUa_IdentifierType_String:
        return QStringLiteral("String");
    case OpcUa_IdentifierType_Guid:
        return QStringLiteral("Guid");
    case OpcUa_IdentifierType_Opaque:
        return QStringLiteral("Opaque");
    }
    return QString::number(type);
}

QlumAttributeNode::Remark remarkOn(bool isNull, bool isEmpty)
{
    if (isNull)
        return QlumAttributeNode::Null;
    return isEmpty ? QlumAttributeNode::Empty : QlumAttributeNode::NoRemark;
}

QlumAttributeNode::Remark remarkOn(const UaVariant& value)
{
    switch (value.type()) {
    case OpcUaType_String: {
        const UaString text(value.get()->Value.String); // a converted one is never null
        return remarkOn(text.isNull(), text.isEmpty());
    }
    case OpcUaType_ByteString:
        return remarkOn(value.toByteString().isNull(), value.toByteString().length() == 0);
    case OpcUaType_XmlElement:
        return remarkOn(value.toXmlElement().isNull(), value.toXmlElement().length() == 0);
    case OpcUaType_DateTime:
        return remarkOn(value.toDateTime().isNull(), false);
    default:
        return QlumAttributeNode::NoRemark;
    }
}
} // namespace

// The elements of an array or matrix.
class QlumAttributeRows::ArrayRows final : public QlumRowSource
{
public:
    ArrayRows(QlumAttributeRows& rows, const UaVariant& array, const QlumTypeHint& hint)
        : m_rows(rows), m_array(array), m_hint(hint), m_dimensions(array.dimensions())
    {
    }

    int count() const override { return static_cast<int>(m_array.elementCount()); }
    void appendRow(QlumAttributeNode& parent, int index) override
    {
        m_rows.addVariant(parent, qlumElementName(index, m_dimensions),
                          m_array.at(static_cast<OpcUa_UInt32>(index)), m_hint,
                          {QlumValueStep::Element, index});
    }

private:
    QlumAttributeRows& m_rows;
    const UaVariant m_array;
    const QlumTypeHint m_hint;
    const UaArray<OpcUa_Int32> m_dimensions;
};

QlumAttributeRows::QlumAttributeRows(QlumApplicationInterface& application) : m_application(application) {}

void QlumAttributeRows::setServer(unsigned int serverId, UaDataTypeDictionary* dictionary)
{
    m_serverId = serverId;
    m_dictionary = dictionary;
}

QString QlumAttributeRows::typeName(OpcUa_BuiltInType type) const
{
    return m_application.builtinTypeName(type);
}

// In the hours of the user; below it the form in which times are edited, which says whose hours it means.
void QlumAttributeRows::addTimestamp(QlumAttributeNode& parent, const QString& name, OpcUa_DateTime value)
{
    const QDateTime time = m_application.dateTimeFromUaDateTime(&value);
    QlumAttributeNode& row = parent.append(name, qlumShowDateTime(time), detail);
    if (time.isValid())
        row.append(QStringLiteral("UTC"), toQString(UaDateTime(value).toString()), detail);
}

QlumAttributeNode& QlumAttributeRows::addDataValue(QlumAttributeNode& parent, const QString& name,
                                                   const UaDataValue& value, const QlumTypeHint& hint,
                                                   QlumValueStep step)
{
    QlumAttributeNode& row = parent.append(name, QString(), step);
    addVariant(row, QStringLiteral("Value"), value.value(), hint,
               step.kind == QlumValueStep::None ? step : detail);
    row.append(QStringLiteral("StatusCode"), qlumStatusCodeText(value.statusCode().code()), detail);
    addTimestamp(row, QStringLiteral("SourceTimestamp"), value.sourceTimestamp());
    row.append(QStringLiteral("SourcePicoseconds"), QString::number(value.sourcePicoseconds()), detail);
    addTimestamp(row, QStringLiteral("ServerTimestamp"), value.serverTimestamp());
    row.append(QStringLiteral("ServerPicoseconds"), QString::number(value.serverPicoseconds()), detail);
    return row;
}

QlumAttributeNode& QlumAttributeRows::addVariant(QlumAttributeNode& parent, const QString& name,
                                                 const UaVariant& value, const QlumTypeHint& hint,
                                                 QlumValueStep step)
{
    if (value.isNull())
        return parent.append(name, tr("Null"), step);
    if (depthOf(parent) > maximumDepth)
        return parent.append(name, tr("not yet implemented"), step);
    if (value.isScalar())
        return addScalar(parent, name, value, hint, step);
    QString text = QStringLiteral("[]");
    if (value.isMatrix())
        text = tr("%1 Matrix").arg(typeName(value.type()));
    else if (value.elementCount() > 0)
        text = tr("%1 Array[%2]").arg(typeName(value.type()), QString::number(value.elementCount()));
    QlumAttributeNode& row = parent.append(name, text, step);
    if (value.elementCount() > 0)
        row.setSource(std::make_unique<ArrayRows>(*this, value, hint));
    return row;
}

QlumAttributeNode& QlumAttributeRows::addScalar(QlumAttributeNode& parent, const QString& name,
                                                const UaVariant& value, const QlumTypeHint& hint,
                                                QlumValueStep step)
{
    switch (value.type()) {
    case OpcUaType_NodeId:
        return addNodeId(parent, name, value.toNodeId(), step);
    case OpcUaType_ExpandedNodeId:
        return addExpandedNodeId(parent, name, value.toExpandedNodeId(), step);
    case OpcUaType_ExtensionObject:
        return addExtensionObject(parent, name, value.toExtensionObject(), hint, step);
    case OpcUaType_DataValue:
        return addDataValue(parent, name, value.toDataValue(), hint,
                            step.kind == QlumValueStep::None ? detail : step);
    case OpcUaType_DiagnosticInfo:
        return addDiagnosticInfo(parent, name, value.toDiagnosticInfo(), step);
    default: {
        QlumAttributeNode& row = parent.append(name, scalarText(value, hint), step);
        row.setRemark(remarkOn(value));
        return row;
    }
    }
}

QlumAttributeNode& QlumAttributeRows::addDiagnosticInfo(QlumAttributeNode& parent, const QString& name,
                                                        const UaDiagnosticInfo& info, QlumValueStep step)
{
    if (info.isNull())
        return parent.append(name, tr("Null"), step);
    QlumAttributeNode& row = parent.append(name, toQString(info.additionalInfo()), step);
    const auto addIndex = [&row](const QString& what, OpcUa_Int32 index) {
        if (index >= 0)
            row.append(what, QString::number(index), detail);
    };
    addIndex(QStringLiteral("SymbolicId"), info.symbolicId());
    addIndex(QStringLiteral("NamespaceUri"), info.namespaceUri());
    addIndex(QStringLiteral("Locale"), info.locale());
    addIndex(QStringLiteral("LocalizedText"), info.localizedText());
    if (!info.additionalInfo().isNull())
        row.append(QStringLiteral("AdditionalInfo"), toQString(info.additionalInfo()), detail);
    if (info.innerStatusCode().code() != OpcUa_Good)
        row.append(QStringLiteral("InnerStatusCode"), qlumStatusCodeText(info.innerStatusCode().code()),
                   detail);
    if (info.hasInner() && depthOf(row) <= maximumDepth)
        addDiagnosticInfo(row, QStringLiteral("InnerDiagnosticInfo"), info.inner(), detail);
    return row;
}

QlumAttributeNode& QlumAttributeRows::addNodeId(QlumAttributeNode& parent, const QString& name,
                                                const UaNodeId& nodeId, QlumValueStep step)
{
    QlumAttributeNode& row = parent.append(name, toQString(nodeId.toXmlString()), step);
    row.append(QStringLiteral("NamespaceIndex"), QString::number(nodeId.namespaceIndex()), detail);
    row.append(QStringLiteral("IdentifierType"), identifierTypeText(nodeId.identifierType()), detail);
    row.append(QStringLiteral("Identifier"), toQString(nodeId.identifierText()), detail);
    return row;
}

QlumAttributeNode& QlumAttributeRows::addExpandedNodeId(QlumAttributeNode& parent, const QString& name,
                                                        const UaExpandedNodeId& nodeId, QlumValueStep step)
{
    QlumAttributeNode& row = parent.append(name, toQString(nodeId.toString()), step);
    addNodeId(row, QStringLiteral("NodeId"), nodeId.nodeId(), detail);
    row.append(QStringLiteral("NamespaceUri"), toQString(nodeId.namespaceUri()), detail);
    row.append(QStringLiteral("ServerIndex"), QString::number(nodeId.serverIndex()), detail);
    return row;
}

QString QlumAttributeRows::scalarText(const UaVariant& value, const QlumTypeHint& hint) const
{
    return qlumShownText(value, hint, m_dictionary);
}
