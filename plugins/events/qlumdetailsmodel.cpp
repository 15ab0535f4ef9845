#include <plugins/events/qlumdetailsmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <plugins/events/qlumeventsettings.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>

#include <QDateTime>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace {
constexpr int portion = 100; // elements of an array that are made at a time
constexpr int maximumText = 10000;
constexpr int maximumBytes = 2000;
constexpr int nodeIdParts = 3; // as expanded node ids
constexpr int dataValueParts = 6;

QString cut(const QString& text)
{
    return qlumSingleLine(qlumCutText(text, maximumText));
}

QString cut(const UaString& text)
{
    constexpr std::size_t enough = 4 * maximumText + 8;
    return cut(toQString(text.size() <= enough ? text : UaString(text.view().substr(0, enough))));
}

QString quoted(const UaString& text)
{
    return QLatin1Char('"') + cut(text) + QLatin1Char('"');
}

QString timeText(const UaDateTime& value)
{
    const QDateTime time = qlumDateTime(value);
    return time.isValid() ? qlumShowDateTime(time) : toQString(value.toString());
}

QString bytesText(const UaByteString& bytes)
{
    const auto shown = bytes.bytes().subspan(0, std::min<std::size_t>(bytes.bytes().size(), maximumBytes));
    QString text =
        QlumDetailsModel::tr("len=%1, 0x%2").arg(bytes.length()).arg(toQString(UaByteString(shown).toHex()));
    if (shown.size() < bytes.bytes().size())
        text += QLatin1String("...");
    return text;
}

QString kindOfId(const UaNodeId& id)
{
    switch (id.identifierType()) {
    case OpcUa_IdentifierType_Numeric:
        return QStringLiteral("Numeric");
    case OpcUa_IdentifierType_String:
        return QStringLiteral("String");
    case OpcUa_IdentifierType_Guid:
        return QStringLiteral("Guid");
    default:
        return QStringLiteral("Opaque");
    }
}

// Of scalars without parts of their own.
QString scalarText(const UaVariant& value)
{
    switch (value.type()) {
    case OpcUaType_Boolean:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case OpcUaType_QualifiedName: {
        const UaQualifiedName name = value.toQualifiedName();
        return QStringLiteral("%1, %2").arg(name.namespaceIndex()).arg(quoted(name.name()));
    }
    case OpcUaType_LocalizedText: {
        const UaLocalizedText text = value.toLocalizedText();
        return QStringLiteral("%1, %2").arg(quoted(text.locale()), quoted(text.text()));
    }
    case OpcUaType_ByteString:
        return bytesText(value.toByteString());
    case OpcUaType_DateTime:
        return timeText(value.toDateTime());
    case OpcUaType_StatusCode:
        return qlumStatusText(value.toStatusCode().code());
    case OpcUaType_Variant:
    case OpcUaType_DiagnosticInfo:
        return QlumDetailsModel::tr("not yet implemented");
    default:
        return cut(value.toString());
    }
}

std::unique_ptr<QlumDetailsNode> plain(const char* name, const QString& text)
{
    return std::make_unique<QlumDetailsNode>(QLatin1String(name), text);
}

UaStructureDefinition definitionOf(const UaExtensionObject& object, UaDataTypeDictionary* dictionary)
{
    const UaNodeId id = object.encodingId();
    UaStructureDefinition definition = uaNamespaceZeroStructure(id);
    if (definition.isNull() && dictionary && !id.isNull())
        definition = dictionary->structureDefinition(id);
    return definition;
}
} // namespace

QlumDetailsModel::QlumDetailsModel(QObject* parent)
    : QlumTreeModel({tr("Name"), tr("Value")}, parent),
      m_tree(std::make_unique<QlumDetailsNode>(QStringLiteral("Root"), QString()))
{
    setRoot(m_tree.get());
}

QlumDetailsModel::~QlumDetailsModel() = default;

void QlumDetailsModel::setEvent(const QlumEventFields& fields,
                                std::shared_ptr<UaDataTypeDictionary> dictionary)
{
    const bool showsNull = QlumEventSettings::showNullFields.value();
    reset([&] {
        m_dictionary = std::move(dictionary);
        m_tree->clearChildren();
        const QStringList names = fields.names();
        for (int i = 0; i < names.size(); ++i)
            if (const UaVariant& value = fields.at(i); showsNull || !value.isNull())
                m_tree->appendChild(makeNode(names.at(i), value));
    });
}

void QlumDetailsModel::clear()
{
    reset([&] {
        m_dictionary.reset();
        m_tree->clearChildren();
    });
}

// ---- nodes

std::unique_ptr<QlumDetailsNode> QlumDetailsModel::makeNode(const QString& name, const UaVariant& value) const
{
    const auto node = [&](const QString& text, int parts) {
        return std::make_unique<QlumDetailsNode>(name, text, value, parts);
    };
    if (value.isEmpty())
        return node(tr("Null"), 0);
    if (!value.isScalar()) {
        const QString type = qlumBuiltinTypeName(value.type());
        return node((value.isMatrix() ? tr("Matrix of %1") : tr("Array of %1")).arg(type),
                    static_cast<int>(value.elementCount()));
    }
    switch (value.type()) {
    case OpcUaType_NodeId:
        return node(cut(value.toNodeId().toXmlString()), nodeIdParts);
    case OpcUaType_ExpandedNodeId:
        return node(cut(value.toString()), nodeIdParts);
    case OpcUaType_DataValue:
        return node(cut(value.toString()), dataValueParts);
    case OpcUaType_ExtensionObject: {
        const UaStructureDefinition definition = definitionOf(value.toExtensionObject(), m_dictionary.get());
        return node(definition.isNull() ? tr("ExtensionObject") : cut(definition.name()), -1);
    }
    default:
        return node(scalarText(value), 0);
    }
}

QlumDetailsModel::Nodes QlumDetailsModel::partsOf(const QlumDetailsNode& node) const
{
    const UaVariant& value = node.value();
    Nodes parts;
    if (value.type() == OpcUaType_NodeId) {
        const UaNodeId id = value.toNodeId();
        parts.push_back(plain("NamespaceIndex", QString::number(id.namespaceIndex())));
        parts.push_back(plain("IdentifierType", kindOfId(id)));
        parts.push_back(plain("Identifier", cut(id.identifierText())));
    } else if (value.type() == OpcUaType_ExpandedNodeId) {
        const UaExpandedNodeId id = value.toExpandedNodeId();
        parts.push_back(makeNode(QStringLiteral("NodeId"), UaVariant(id.nodeId())));
        parts.push_back(
            plain("NamespaceUri", id.namespaceUri().isNull() ? tr("Null") : cut(id.namespaceUri())));
        parts.push_back(plain("ServerIndex", QString::number(id.serverIndex())));
    } else if (value.type() == OpcUaType_DataValue) {
        const UaDataValue data = value.toDataValue();
        parts.push_back(makeNode(QStringLiteral("Value"), data.value()));
        parts.push_back(plain("StatusCode", qlumStatusText(data.statusCode().code())));
        parts.push_back(plain("SourceTimestamp", timeText(data.sourceTimestamp())));
        parts.push_back(plain("SourcePicoseconds", QString::number(data.sourcePicoseconds())));
        parts.push_back(plain("ServerTimestamp", timeText(data.serverTimestamp())));
        parts.push_back(plain("ServerPicoseconds", QString::number(data.serverPicoseconds())));
    } else if (value.type() == OpcUaType_ExtensionObject) {
        parts = fieldsOf(value.toExtensionObject());
    }
    return parts;
}

QlumDetailsModel::Nodes QlumDetailsModel::fieldsOf(const UaExtensionObject& object) const
{
    Nodes parts;
    const UaStructureDefinition definition = definitionOf(object, m_dictionary.get());
    if (definition.isUnion()) {
        UaGenericUnionValue selected;
        if (!selected.decode(object, definition, m_dictionary.get()).isBad()) {
            parts.push_back(std::make_unique<QlumDetailsNode>(tr("Switch Field"),
                                                              QString::number(selected.switchValue())));
            if (const UaStructureField field = selected.field(); !field.isNull())
                parts.push_back(makeNode(cut(field.name()), selected.value()));
        }
        return parts;
    }
    UaGenericStructureValue fields;
    if (!definition.isNull() && !fields.decode(object, definition, m_dictionary.get()).isBad()) {
        for (int i = 0; i < definition.fieldCount(); ++i)
            parts.push_back(makeNode(cut(definition.field(i).name()), fields.value(i)));
        return parts;
    }
    // what there is, for those who know the type
    parts.push_back(makeNode(QStringLiteral("TypeId"), UaVariant(object.typeId())));
    UaByteString body;
    if (object.encoding() == OpcUa_ExtensionObjectEncoding_Xml)
        parts.push_back(makeNode(QStringLiteral("Body"), UaVariant(UaString(object.xmlBody().view()))));
    else if (OpcUa_IsGood(object.binaryBody(body)))
        parts.push_back(makeNode(QStringLiteral("Body"), UaVariant(body)));
    return parts;
}

QlumDetailsModel::Nodes QlumDetailsModel::elementsOf(const QlumDetailsNode& node, int first) const
{
    const UaArray<OpcUa_Int32> dimensions = node.value().dimensions();
    Nodes parts;
    const int last = std::min(first + portion, static_cast<int>(node.value().elementCount()));
    for (int i = first; i < last; ++i) {
        QString name;
        int rest = i;
        for (OpcUa_UInt32 dimension = dimensions.length(); dimension-- > 0;) {
            const int length = std::max(1, dimensions[dimension]);
            name.prepend(QStringLiteral("[%1]").arg(rest % length));
            rest /= length;
        }
        const UaVariant element = node.value().at(static_cast<OpcUa_UInt32>(i));
        parts.push_back(makeNode(name, element));
    }
    return parts;
}

// ---- parts on demand

bool QlumDetailsModel::hasChildren(const QModelIndex& parent) const
{
    const QlumDetailsNode* const node = nodeOrRoot(parent);
    return parent.column() <= 0 && (node->childCount() > 0 || node->parts() != 0);
}

bool QlumDetailsModel::canFetchMore(const QModelIndex& parent) const
{
    const QlumDetailsNode* const node = nodeAt(parent);
    return node && (node->parts() < 0 || node->childCount() < node->parts());
}

void QlumDetailsModel::fetchMore(const QModelIndex& parent)
{
    if (!canFetchMore(parent))
        return;
    QlumDetailsNode& node = *nodeAt(parent);
    Nodes parts = node.value().isScalar() ? partsOf(node) : elementsOf(node, node.childCount());
    if (node.value().isScalar() || parts.empty())
        node.setParts(static_cast<int>(parts.size()));
    insertNodes(node, node.childCount(), std::move(parts));
}

QVariant QlumDetailsModel::cell(const QlumDetailsNode& node, int column, int role) const
{
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(qlumCutText(column == Name ? node.name() : node.text(), 1000));
    if (role != Qt::DisplayRole)
        return {};
    return column == Name ? node.name() : node.text();
}
