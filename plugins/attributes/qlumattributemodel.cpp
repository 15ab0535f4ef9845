#include <plugins/attributes/qlumattributemodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumservertypes.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/attributes/qlumattributenode.h>
#include <plugins/attributes/qlumattributeresults.h>
#include <plugins/attributes/qlumattributesettings.h>
#include <plugins/attributes/qlumattributetexts.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumshowntext.h>
#include <uawidgets/editors/qlumvaluefacts.h>
#include <uawidgets/qlumnodelook.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QList>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace {
constexpr int cutLength = 256;
constexpr int portion = 1000; // rows that an array gets at a time
} // namespace

QlumAttributeModel::QlumAttributeModel(QlumApplicationInterface& application, QObject* parent,
                                       QlumSessionServicesProvider services)
    : QlumTreeModel({tr("Attribute"), tr("Value")}, parent), m_application(application),
      m_services(std::move(services)), m_rows(application),
      m_root(std::make_unique<QlumAttributeNode>(tr("Root")))
{
    setRoot(m_root.get());
}

QlumAttributeModel::~QlumAttributeModel() = default;

// ---- item model

bool QlumAttributeModel::hasChildren(const QModelIndex& parent) const
{
    return parent.column() <= 0 && nodeOrRoot(parent)->hasChildren();
}

bool QlumAttributeModel::canFetchMore(const QModelIndex& parent) const
{
    return parent.column() <= 0 && nodeOrRoot(parent)->pendingCount() > 0;
}

void QlumAttributeModel::fetchMore(const QModelIndex& parent)
{
    if (!canFetchMore(parent))
        return;
    QlumAttributeNode& node = *nodeOrRoot(parent);
    const int count = std::min(portion, node.pendingCount());
    insertChildren(node, node.childCount(), count, [&] { node.fetchMore(count); });
}

Qt::ItemFlags QlumAttributeModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    if (index.column() == ValueColumn && nodeAt(index)->isWritable() && lock(index).isEmpty())
        flags |= Qt::ItemIsEditable;
    return flags;
}

QVariant QlumAttributeModel::cell(const QlumAttributeNode& node, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
    case Qt::EditRole:
        return text(node, column, role);
    case Qt::ForegroundRole:
        return qlumStatusCell(levelOf(node), role);
    case FaultRole:
        return column == ValueColumn ? faultOf(node) : QVariant();
    case ValueRole:
        return node.isWritable() ? QVariant::fromValue(wholeOf(attributeOf(node)).value) : QVariant();
    case DictionaryRole:
        return QVariant::fromValue(m_rows.dictionary());
    case DataTypeRole:
        return QVariant::fromValue(m_dataTypeId);
    default:
        return {};
    }
}

QVariant QlumAttributeModel::text(const QlumAttributeNode& node, int column, int role) const
{
    if (role == Qt::EditRole)
        return column == ValueColumn ? node.value() : QVariant();
    const QString shown = column == NameColumn ? node.name() : node.value();
    const QString cut = qlumCutText(column == ValueColumn ? withRemark(node) : shown, cutLength);
    if (role != Qt::ToolTipRole)
        return qlumSingleLine(cut);
    const QString more = column == ValueColumn ? remarkOn(node) : QString();
    return qlumPlainToolTip(more.isEmpty() ? cut : cut + QLatin1Char('\n') + more);
}

// What can be copied is the value alone; what is seen tells apart what looks the same.
QString QlumAttributeModel::withRemark(const QlumAttributeNode& node)
{
    QString remark;
    if (node.isAbsent())
        remark = tr("(absent)");
    else if (node.remark() == QlumAttributeNode::Null)
        remark = tr("(null)");
    else if (node.remark() == QlumAttributeNode::Empty)
        remark = tr("(empty)");
    if (remark.isEmpty() || node.value().isEmpty())
        return node.value() + remark;
    return node.value() + QLatin1Char(' ') + remark;
}

// What only some nodes have is not missing where it is not; what is out of date says nothing.
QlumStatusLevel QlumAttributeModel::levelOf(const QlumAttributeNode& node) const
{
    if (m_standing != Standing::Current || node.isAbsent() ||
        (node.isOptional() && node.status() == OpcUa_BadAttributeIdInvalid))
        return QlumStatusLevel::Inactive;
    return qlumStatusLevel(node.status());
}

// ---- nodes

UaVariant QlumAttributeModel::attribute(int attributeId) const
{
    const auto found = m_attributes.find(attributeId);
    return found == m_attributes.end() ? UaVariant() : found->second;
}

UaNodeId QlumAttributeModel::nodeIdIn(const QModelIndex& index) const
{
    if (m_standing == Standing::Left)
        return {};
    QModelIndex row = index.siblingAtColumn(NameColumn);
    while (row.isValid() && nodeAt(row)->step().kind == QlumValueStep::Detail)
        row = row.parent();
    if (!row.isValid())
        return {};
    if (!row.parent().isValid() && nodeAt(row)->name() == qlumAttributeName(OpcUa_Attributes_NodeId))
        return m_nodeId;
    if (!row.parent().isValid() && nodeAt(row)->name() == qlumAttributeName(OpcUa_Attributes_DataType))
        return m_dataTypeId;
    const UaVariant value = rowValue(row).value;
    if (!value.isScalar())
        return {};
    if (value.type() == OpcUaType_NodeId)
        return value.toNodeId();
    const UaExpandedNodeId id = value.toExpandedNodeId();
    return value.type() == OpcUaType_ExpandedNodeId && id.isLocal() ? id.nodeId() : UaNodeId();
}

QlumToolNode QlumAttributeModel::nodeIn(const QModelIndex& index) const
{
    QlumToolNode node{m_serverId, nodeIdIn(index), OpcUa_NodeClass_Unspecified, {}, {}};
    if (node.nodeId == m_nodeId) {
        node.nodeClass = m_nodeClass;
        if (m_found.serverId == m_serverId && m_found.nodeId == m_nodeId)
            node.parentId = m_found.parentId;
    }
    return node;
}

// ---- building

void QlumAttributeModel::setData(unsigned int serverId, const UaNodeId& nodeId, OpcUa_NodeClass nodeClass,
                                 int count, const QList<int>& attributeIds, OpcUa_DataValue* results)
{
    UaDataValues values;
    values.attach(count, results);
    reset([&] {
        if (serverId != m_serverId || nodeId != m_nodeId)
            forgetWrites();
        forget();
        m_standing = Standing::Current;
        m_serverId = serverId;
        m_nodeId = nodeId;
        m_nodeClass = nodeClass;
        m_session = m_services(serverId);
        m_rows.setServer(serverId, m_session ? m_session->dataTypeDictionary() : nullptr);
        m_context.dictionary = {m_session, m_rows.dictionary()};
        build(attributeIds, values);
    });
    compareWithWritten(attributeIds);
}

void QlumAttributeModel::clear()
{
    reset([this] {
        forgetWrites();
        forget();
    });
}

void QlumAttributeModel::setStanding(Standing standing)
{
    if (std::exchange(m_standing, standing) == standing)
        return;
    if (const int rows = rowCount(); rows > 0)
        emit dataChanged(index(0, NameColumn), index(rows - 1, ValueColumn));
    emit standingChanged();
}

void QlumAttributeModel::forget()
{
    m_root->clearChildren();
    m_valueRow = nullptr;
    m_value.clear();
    m_attributes.clear();
    m_writeMask.reset();
    m_context = QlumValueContext();
    m_dataTypeId.clear();
    m_lock.clear();
    m_nodeId.clear();
    m_serverId = qlumNoServer;
    m_rows.setServer(qlumNoServer, nullptr);
    m_session.reset();
}

void QlumAttributeModel::build(const QList<int>& attributeIds, UaDataValues& results)
{
    m_writeMask = qlumWriteMaskOf(qlumResultOf(OpcUa_Attributes_WriteMask, attributeIds, results),
                                  qlumResultOf(OpcUa_Attributes_UserWriteMask, attributeIds, results));
    takeDataType(attributeIds, results);
    const int count = std::min(attributeIds.size(), static_cast<int>(results.length()));
    for (int i = 0; i < count; ++i) {
        const int id = attributeIds.at(i);
        OpcUa_DataValue& result = results[static_cast<OpcUa_UInt32>(i)];
        const OpcUa_StatusCode status = result.StatusCode;
        QlumAttributeNode& row = addAttribute(id, result);
        if (row.status() == 0) // a row may have found a fault of its own
            row.setStatus(status);
        row.setOptional(qlumIsOptionalAttribute(id, m_nodeClass));
        if (id != OpcUa_Attributes_Value)
            takeWritable(row, id);
    }
    takeLock();
}

void QlumAttributeModel::takeWritable(QlumAttributeNode& row, int attributeId) const
{
    row.setAttributeId(attributeId);
    const OpcUa_UInt32 bit = qlumWriteMaskBit(attributeId);
    const bool isAllowed = (m_writeMask.value_or(0) & bit) != 0;
    if (m_attributes.contains(attributeId) && bit != 0 &&
        (isAllowed || QlumAttributeSettings::editLocked.value(&m_application)))
        row.setWritable(true);
}

void QlumAttributeModel::takeDataType(const QList<int>& attributeIds, const UaDataValues& results)
{
    const UaVariant value = qlumResultOf(OpcUa_Attributes_DataType, attributeIds, results);
    if (value.type() == OpcUaType_NodeId && value.isScalar())
        m_dataTypeId = value.toNodeId();
}

// What the node says of writing; a node that says nothing may be tried.
void QlumAttributeModel::takeLock()
{
    const auto levelOf = [this](int attributeId) {
        const UaVariant level = attribute(attributeId);
        return level.type() == OpcUaType_Byte && level.isScalar() ? std::optional(level.toByte())
                                                                  : std::nullopt;
    };
    constexpr OpcUa_UInt32 bit = OpcUa_AttributeWriteMask_ValueForVariableType;
    if (m_nodeClass != OpcUa_NodeClass_VariableType)
        m_lock =
            qlumAccessFault(levelOf(OpcUa_Attributes_AccessLevel), levelOf(OpcUa_Attributes_UserAccessLevel));
    else if (!(m_writeMask.value_or(bit) & bit))
        m_lock = maskFault(bit, QStringLiteral("ValueForVariableType"));
}

QlumAttributeNode& QlumAttributeModel::addAttribute(int attributeId, OpcUa_DataValue& result)
{
    if (attributeId == OpcUa_Attributes_Value)
        return addValue(result);
    const QString name = qlumAttributeName(attributeId);
    if (OpcUa_IsBad(result.StatusCode))
        return m_root->append(name, qlumStatusCodeText(result.StatusCode));
    UaVariant value;
    value.attach(&result.Value);
    m_attributes[attributeId] = value;
    switch (attributeId) {
    case OpcUa_Attributes_NodeClass:
    case OpcUa_Attributes_EventNotifier:
    case OpcUa_Attributes_AccessLevel:
    case OpcUa_Attributes_UserAccessLevel:
        return addCode(attributeId, value);
    case OpcUa_Attributes_DataType:
        return addDataType(value);
    default:
        return m_rows.addVariant(*m_root, name, value, QlumTypeHint());
    }
}

void QlumAttributeModel::addDetails(unsigned int serverId, const UaNodeId& nodeId,
                                    const QlumAttributeDetails& details)
{
    if (serverId != m_serverId || nodeId != m_nodeId)
        return;
    insertChildren(*m_root, m_root->childCount(), static_cast<int>(details.attributes.size()), [&] {
        for (const auto& [id, result] : details.attributes)
            takeWritable(addDetail(id, result), id);
    });
    QList<int> attributeIds;
    for (const auto& detail : details.attributes)
        attributeIds.append(detail.first);
    compareWithWritten(attributeIds);
    m_context = details.context;
    if (!m_valueRow)
        return;
    QlumAttributeNode& top = *m_valueRow->parent();
    const QList<QlumDetail> more =
        qlumValueDetails({m_value, valueHint()}, details.properties, m_rows.dictionary());
    insertChildren(top, top.childCount(), more.size(), [&] {
        for (const QlumDetail& detail : more)
            top.append(detail.name, detail.text, {QlumValueStep::Detail, 0}).setStatus(OpcUa_Good);
    });
}

QlumAttributeNode& QlumAttributeModel::addDetail(int attributeId, const UaDataValue& result)
{
    const QString name = qlumAttributeName(attributeId);
    const OpcUa_StatusCode status = result.statusCode().code();
    const UaVariant value = result.value();
    if (OpcUa_IsBad(status)) {
        QlumAttributeNode& row = m_root->append(name, qlumStatusCodeText(status));
        row.setStatus(status);
        return row;
    }
    m_attributes[attributeId] = value;
    if (attributeId == OpcUa_Attributes_AccessRestrictions && value.type() == OpcUaType_UInt16)
        return m_root->append(name, qlumAccessRestrictionsText(value.toUInt16()));
    if (attributeId == OpcUa_Attributes_AccessLevelEx && value.type() == OpcUaType_UInt32)
        return m_root->append(name, qlumAccessLevelExText(value.toUInt32()));
    QlumAttributeNode& row = m_rows.addVariant(*m_root, name, value, QlumTypeHint());
    if (!value.isNull() && !value.isScalar() && value.elementCount() > 0)
        row.setValue(qlumTypeText(value, QlumTypeHint(), m_rows.dictionary()));
    return row;
}

QlumAttributeNode& QlumAttributeModel::addCode(int attributeId, const UaVariant& value)
{
    const bool isClass = attributeId == OpcUa_Attributes_NodeClass;
    if (value.type() != (isClass ? OpcUaType_Int32 : OpcUaType_Byte) || !value.isScalar())
        return addMistyped(attributeId, isClass ? "Int32" : "Byte", value);
    QString text;
    if (isClass)
        text = qlumNodeClassText(value.toInt32());
    else if (attributeId == OpcUa_Attributes_EventNotifier)
        text = qlumEventNotifierText(value.toByte());
    else if (attributeId == OpcUa_Attributes_AccessLevel)
        text = qlumAccessLevelText(value.toByte());
    else
        text = qlumUserAccessLevelText(value.toByte());
    return m_root->append(qlumAttributeName(attributeId), text);
}

QlumAttributeNode& QlumAttributeModel::addDataType(const UaVariant& value)
{
    if (value.type() != OpcUaType_NodeId || !value.isScalar())
        return addMistyped(OpcUa_Attributes_DataType, "NodeId", value);
    const UaNodeId id = value.toNodeId();
    QlumAttributeNode& row = m_rows.addNodeId(*m_root, qlumAttributeName(OpcUa_Attributes_DataType), id);
    // people know their types by name
    const QlumServerTypes* types = m_session ? m_session->types() : nullptr;
    const QString name = types ? types->knownTypeName(id).value_or(QString()) : QString();
    if (!name.isEmpty())
        row.setValue(QStringLiteral("%1 (%2)").arg(name, row.value()));
    return row;
}

QlumAttributeNode& QlumAttributeModel::addMistyped(int attributeId, const char* expected,
                                                   const UaVariant& value)
{
    QlumAttributeNode& row =
        m_root->append(qlumAttributeName(attributeId),
                       tr("Invalid Datatype: Expected OpcUaType_%1, Received %2")
                           .arg(QLatin1String(expected), m_application.builtinTypeName(value.type())));
    row.setStatus(OpcUa_Bad);
    return row;
}

QlumAttributeNode& QlumAttributeModel::addValue(OpcUa_DataValue& result)
{
    UaDataValue value;
    value.attach(&result);
    return addValueRow(value);
}

QlumAttributeNode& QlumAttributeModel::addValueRow(const UaDataValue& value)
{
    m_value = value.value();
    QlumAttributeNode& row =
        m_rows.addDataValue(*m_root, qlumAttributeName(OpcUa_Attributes_Value), value, valueHint());
    row.setStatus(value.statusCode().code());
    m_valueRow = row.child(0);
    m_valueRow->setWritable(true);
    return row;
}

// What describes the Value stays below it.
void QlumAttributeModel::showValue(unsigned int serverId, const UaNodeId& nodeId, const UaDataValue& value)
{
    if (serverId != m_serverId || nodeId != m_nodeId || !m_valueRow)
        return;
    reset([&] {
        QlumAttributeNode& before = *m_valueRow->parent();
        QlumAttributeNode& row = addValueRow(value);
        row.setOptional(before.isOptional());
        const int own = std::min(row.childCount(), before.childCount());
        row.insertChildren(own, before.takeChildren(own, before.childCount() - own));
        const int place = before.row();
        m_root->takeChildren(place, 1);
        m_root->insertChildren(place, m_root->takeChildren(m_root->childCount() - 1, 1));
    });
}

QlumTypeHint QlumAttributeModel::valueHint() const
{
    QlumTypeHint hint{m_dataTypeId, {}};
    if (!m_dataTypeId.isNull() && m_value.type() == OpcUaType_Int32)
        hint.enumDefinition = qlumEnumDefinition(m_dataTypeId, m_rows.dictionary());
    return hint;
}
