#include <uawidgets/editors/qlumstructuremodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatuscode.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QStringList>

#include <array>
#include <iterator>
#include <utility>

namespace {
constexpr int structureTipLength = 2000;
constexpr int partsLength = 160;

// The abstract types whose concrete ones everybody knows.
constexpr OpcUa_UInt32 baseDataType = 24;
constexpr OpcUa_UInt32 numberType = 26;
constexpr OpcUa_UInt32 integerType = 27;
constexpr OpcUa_UInt32 unsignedType = 28;

constexpr int namedParts = 8; // of what was taken apart

bool isCellEditable(const UaVariant& value)
{
    OpcUa_Int32 length = 0;
    static_cast<void>(qlumBeginningOf(value, length));
    return value.isScalar() && qlumFitsCellEditor(value.type(), length);
}

std::vector<UaNodeId> standardTypes(const UaNodeId& dataType)
{
    const auto ids = [](std::initializer_list<OpcUa_UInt32> numbers) {
        std::vector<UaNodeId> types;
        for (const OpcUa_UInt32 number : numbers)
            types.emplace_back(number, OpcUa_UInt16{0});
        return types;
    };
    if (dataType.isNumeric(integerType))
        return ids({2, 4, 6, 8});
    if (dataType.isNumeric(unsignedType))
        return ids({3, 5, 7, 9});
    if (dataType.isNumeric(numberType))
        return ids({2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
    if (dataType.isNull() || dataType.isNumeric(baseDataType))
        return ids({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17, 18, 19, 20, 21});
    return {};
}
} // namespace

QlumStructureModel::QlumStructureModel(QlumValueContext context, QObject* parent)
    : QlumTreeModel({tr("Field"), tr("Value"), tr("Type")}, parent), m_context(std::move(context)),
      m_root(std::make_unique<QlumStructureNode>(m_context, UaVariant()))
{
    setRoot(m_root.get());
}

QlumStructureModel::~QlumStructureModel() = default;

void QlumStructureModel::setValue(const UaVariant& value)
{
    const bool isNothing = value.isNull() || (value.isScalar() && value.isEmpty());
    const UaVariant null = isNothing ? qlumNullValue(m_context) : UaVariant();
    reset([&] {
        m_root = std::make_unique<QlumStructureNode>(m_context, null.isNull() ? value : null);
        for (auto& child : m_root->makeChildren())
            m_root->appendChild(std::move(child));
        setRoot(m_root.get());
        m_modified = false;
        m_check.reset();
    });
}

bool QlumStructureModel::value(UaVariant& value, QString& why) const
{
    const UaStatusCode status = m_root->collect();
    if (status.isBad()) {
        why = tr("The fields cannot be put together: %1").arg(qlumStatusWords(qlumStatusText(status.code())));
        return false;
    }
    value = m_root->value();
    return true;
}

void QlumStructureModel::addChecks(const QlumStructureNode& node, QlumValueCheck& check) const
{
    const auto named = [&](const QString& what) {
        return what.isEmpty() ? what : tr("%1: %2").arg(pathOf(indexOf(&node)), what);
    };
    if (node.isPresent())
        check.add({named(node.check().refused), named(node.check().unusual)});
    for (int row = 0; row < node.childCount(); ++row)
        addChecks(*node.child(row), check);
}

const QlumValueCheck& QlumStructureModel::check() const
{
    if (!m_check) {
        m_check.emplace();
        addChecks(*m_root, *m_check);
    }
    return *m_check;
}

// ---- what a row stands for

UaVariant QlumStructureModel::collected(const QlumStructureNode& node) const
{
    // putting together changes no row
    static_cast<void>(const_cast<QlumStructureNode&>(node).collect());
    return node.value();
}

QlumValueContext QlumStructureModel::contextOf(const QModelIndex& index) const
{
    return nodeOrRoot(index)->context();
}

UaVariant QlumStructureModel::valueOf(const QModelIndex& index) const
{
    return collected(*nodeOrRoot(index));
}

bool QlumStructureModel::hasValue(const QModelIndex& index) const
{
    const QlumStructureNode& node = *nodeOrRoot(index);
    return node.isPresent() && !node.value().isNull();
}

QString QlumStructureModel::typeOf(const QModelIndex& index) const
{
    const QlumStructureNode& node = *nodeOrRoot(index);
    return qlumTypeTextOf(node.value(), node.context());
}

QString QlumStructureModel::pathOf(const QModelIndex& index) const
{
    QString path;
    for (const QlumStructureNode* node = nodeAt(index); node && node->parent(); node = node->parent()) {
        const bool isIndex = path.isEmpty() || path.startsWith(QLatin1Char('['));
        path.prepend(isIndex ? node->name() : node->name() + QLatin1Char('.'));
    }
    return qlumCutText(qlumSingleLine(path));
}

std::vector<UaNodeId> QlumStructureModel::choices(const QModelIndex& index) const
{
    return choicesOf(*nodeOrRoot(index));
}

std::vector<UaNodeId> QlumStructureModel::choicesOf(const QlumStructureNode& node) const
{
    if (!node.isOpenType())
        return {};
    const QlumValueContext context = node.context();
    std::vector<UaNodeId> types;
    if (context.concreteTypes)
        types = context.concreteTypes(context.dataType);
    if (types.empty() && context.builtInType != OpcUaType_ExtensionObject)
        types = standardTypes(context.dataType);
    std::erase_if(types, [&](const UaNodeId& type) {
        const OpcUa_BuiltInType sent = qlumBuiltInTypeOf(type, m_context.dictionary.get());
        return sent == OpcUaType_Null || sent == OpcUaType_Variant;
    });
    return types;
}

bool QlumStructureModel::choose(const QModelIndex& index, const UaNodeId& dataType)
{
    QlumValueContext context = contextOf(index);
    context.dataType = dataType;
    context.builtInType = OpcUaType_Null;
    context.valueRank = -1;
    const UaVariant null = qlumNullValue(context);
    return !null.isNull() && replace(index, null);
}

// ---- editing

void QlumStructureModel::removeBelow(QlumStructureNode& node)
{
    removeNodes(node, 0, node.childCount());
}

void QlumStructureModel::populate(QlumStructureNode& node)
{
    std::vector<std::unique_ptr<QlumStructureNode>> children = node.makeChildren();
    insertNodes(node, 0, std::move(children));
}

void QlumStructureModel::tellEdited(const QlumStructureNode& node)
{
    m_modified = true;
    m_check.reset();
    for (const QlumStructureNode* above = &node; above; above = above->parent())
        tellChanged(*above);
    emit edited();
}

bool QlumStructureModel::replace(const QModelIndex& index, const UaVariant& value)
{
    QlumStructureNode& node = *nodeOrRoot(index);
    if (m_readOnly || node.setValue(value).isBad())
        return false;
    const bool keepsChildren = node.kind() == QlumStructureNode::Kind::Bits && !node.isWaiting();
    if (!keepsChildren)
        removeBelow(node);
    else if (node.childCount() > 0)
        emit dataChanged(indexOf(node.child(0)), indexOf(node.child(node.childCount() - 1), TypeColumn));
    if (!index.isValid())
        populate(node);
    tellEdited(node);
    return true;
}

bool QlumStructureModel::setPresent(QlumStructureNode& node, bool present)
{
    if (m_readOnly || node.isPresent() == present || node.setPresent(present).isBad())
        return false;
    QlumStructureNode& parent = *node.parent();
    if (node.part() == QlumStructureNode::Part::Field)
        removeBelow(node);
    if (node.part() == QlumStructureNode::Part::Member) {
        for (int row = 0; row < parent.childCount(); ++row)
            removeBelow(*parent.child(row));
        emit dataChanged(indexOf(parent.child(0)),
                         indexOf(parent.child(parent.childCount() - 1), TypeColumn));
    }
    tellEdited(node);
    return true;
}

bool QlumStructureModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (m_readOnly || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    QlumStructureNode& node = *nodeAt(index);
    if (role == Qt::CheckStateRole)
        return index.column() == NameColumn && node.isOptional() &&
               setPresent(node, value.toInt() == Qt::Checked);
    if (index.column() != ValueColumn)
        return false;
    if (role == ValueRole)
        return replace(index.siblingAtColumn(NameColumn), value.value<UaVariant>());
    UaVariant read = node.value();
    return role == Qt::EditRole && qlumReadCell(value.toString(), read.type(), node.context(), read) &&
           replace(index.siblingAtColumn(NameColumn), read);
}

// ---- item model

bool QlumStructureModel::hasChildren(const QModelIndex& parent) const
{
    if (parent.column() > 0)
        return false;
    const QlumStructureNode* node = nodeOrRoot(parent);
    return node->childCount() > 0 || node->isWaiting();
}

bool QlumStructureModel::canFetchMore(const QModelIndex& parent) const
{
    return parent.column() <= 0 && nodeOrRoot(parent)->isWaiting();
}

void QlumStructureModel::fetchMore(const QModelIndex& parent)
{
    QlumStructureNode& node = *nodeOrRoot(parent);
    populate(node);
    tellChanged(node); // what it cannot be taken apart for is known now
}

Qt::ItemFlags QlumStructureModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QlumTreeModel::flags(index);
    const QlumStructureNode* node = nodeAt(index);
    if (!node || m_readOnly)
        return flags;
    if (index.column() == NameColumn && node->isOptional())
        flags |= Qt::ItemIsUserCheckable;
    if (index.column() == ValueColumn && node->isPresent() && node->part() != QlumStructureNode::Part::Bit &&
        isCellEditable(node->value()))
        flags |= Qt::ItemIsEditable;
    if (index.column() == TypeColumn && node->isOpenType() && !choicesOf(*node).empty())
        flags |= Qt::ItemIsEditable;
    return flags;
}

QVariant QlumStructureModel::cell(const QlumStructureNode& node, int column, int role) const
{
    const bool isThere = node.isPresent() || node.part() == QlumStructureNode::Part::Bit;
    switch (role) {
    case ValueRole:
        return QVariant::fromValue(collected(node));
    case DictionaryRole:
        return QVariant::fromValue(m_context.dictionary.get());
    case DataTypeRole:
        return QVariant::fromValue(node.context().dataType);
    case Qt::ForegroundRole:
        return isThere ? QVariant() : QVariant(qlumStatusCell(QlumStatusLevel::Inactive, role));
    default:
        break;
    }
    if (column == NameColumn)
        return nameCell(node, role);
    return column == ValueColumn ? valueCell(node, role) : typeCell(node, role);
}

QVariant QlumStructureModel::nameCell(const QlumStructureNode& node, int role) const
{
    if (role == Qt::DisplayRole)
        return qlumCutText(qlumSingleLine(node.name()));
    if (role == Qt::CheckStateRole && node.isOptional())
        return node.isPresent() ? Qt::Checked : Qt::Unchecked;
    if (role != Qt::ToolTipRole)
        return {};
    const QString description = toQString(node.field().description().text());
    const QString what = node.part() == QlumStructureNode::Part::Member
                             ? tr("One of these is there at a time.")
                         : node.isOptional() ? tr("This may be left away.")
                                             : QString();
    const bool both = !description.isEmpty() && !what.isEmpty();
    return qlumPlainToolTip(description + (both ? QStringLiteral("\n") : QString()) + what);
}

QString QlumStructureModel::shownValue(const QlumStructureNode& node) const
{
    if (node.part() == QlumStructureNode::Part::Note)
        return qlumCutText(qlumSingleLine(node.note()));
    if (!node.reason().isEmpty())
        return tr("not taken apart: %1").arg(node.reason());
    if (!node.isPresent() || node.part() == QlumStructureNode::Part::Bit)
        return QString();
    return node.childCount() > 0 && node.kind() != QlumStructureNode::Kind::Bits
               ? shownParts(node)
               : qlumCellText(node.value(), node.context());
}

// What was taken apart may have been edited; putting it together for a cell would cost too much.
QString QlumStructureModel::shownParts(const QlumStructureNode& node) const
{
    QStringList parts;
    int row = 0;
    for (; row < node.childCount() && parts.size() < namedParts; ++row) {
        const QlumStructureNode& part = *node.child(row);
        if (!part.isPresent() || part.part() == QlumStructureNode::Part::Note)
            continue;
        const QString value = part.childCount() > 0 ? QStringLiteral("{...}") : shownValue(part);
        parts.append(part.part() == QlumStructureNode::Part::Element
                         ? value
                         : QStringLiteral("%1: %2").arg(part.name(), value));
    }
    if (row < node.childCount())
        parts.append(QStringLiteral("..."));
    const QString text = parts.join(QLatin1String("; "));
    return qlumCutText(
        QStringLiteral("%1 {%2}").arg(qlumTypeTextOf(node.value(), node.context()), qlumSingleLine(text)),
        partsLength);
}

QVariant QlumStructureModel::valueCell(const QlumStructureNode& node, int role) const
{
    if (role == Qt::DisplayRole)
        return shownValue(node);
    if (role == Qt::EditRole)
        return node.isPresent() ? qlumCopyText(collected(node), node.context()) : QString();
    const QString remark = node.check().text();
    if (role == Qt::ToolTipRole) {
        const bool isNote = node.part() == QlumStructureNode::Part::Note;
        const QString text = qlumCutText(isNote ? node.note() : shownValue(node), structureTipLength);
        return qlumPlainToolTip(remark.isEmpty() ? text : text + QLatin1Char('\n') + remark);
    }
    const bool isRefused = !node.check().refused.isEmpty();
    return remark.isEmpty() || role == Qt::ForegroundRole
               ? QVariant()
               : qlumStatusCell(isRefused ? QlumStatusLevel::Bad : QlumStatusLevel::Uncertain, role);
}

QVariant QlumStructureModel::typeCell(const QlumStructureNode& node, int role) const
{
    if (role == Qt::ToolTipRole && node.isOpenType() && !choicesOf(node).empty())
        return qlumPlainToolTip(tr("Values of several types may be given here."));
    if (role != Qt::DisplayRole || node.part() == QlumStructureNode::Part::Note ||
        node.part() == QlumStructureNode::Part::Bit)
        return {};
    const QString type = node.isPresent() ? qlumTypeTextOf(node.value(), node.context())
                                          : qlumTypeNameOf(node.context().dataType, node.context());
    return qlumCutText(qlumSingleLine(type));
}
