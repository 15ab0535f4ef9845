#include <uawidgets/editors/qlumarraymodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumelementcell.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/table/qlumtabletext.h>

#include <algorithm>
#include <span>
#include <vector>

QlumArrayModel::QlumArrayModel(const QlumValueContext& context, QObject* parent)
    : QlumTitledModel({tr("Value"), tr("Type")}, parent), m_context(qlumElementContext(context))
{
    setValue(UaVariant());
}

void QlumArrayModel::setValue(const UaVariant& array)
{
    qlumAssertGuiThread();
    OpcUa_BuiltInType type = m_context.builtInType;
    if (type == OpcUaType_Null)
        type = qlumBuiltInTypeOf(m_context.dataType, m_context.dictionary.get());
    beginResetModel();
    m_elements = QlumElementList(array, type == OpcUaType_Null ? OpcUaType_Variant : type);
    endResetModel();
}

UaVariant QlumArrayModel::newElement(int neighbour) const
{
    const OpcUa_BuiltInType type = m_elements.type();
    if (type == OpcUaType_Variant)
        return m_elements.count() > 0 ? m_elements.at(std::clamp(neighbour, 0, m_elements.count() - 1))
                                      : UaVariant();
    QlumValueContext context = m_context;
    context.builtInType = type;
    const UaVariant null = qlumNullValue(context);
    const bool says = type != OpcUaType_ExtensionObject || !null.isEmpty();
    return says || m_elements.count() == 0 ? null
                                           : m_elements.at(std::clamp(neighbour, 0, m_elements.count() - 1));
}

// ---- editing

void QlumArrayModel::tellChanged(int first, int count)
{
    emit dataChanged(index(first, 0), index(first + count - 1, columnCount() - 1));
    emit edited();
}

bool QlumArrayModel::fill(int first, int count, const UaVariant& value)
{
    qlumAssertGuiThread();
    if (m_readOnly || !m_elements.fill(first, count, value))
        return false;
    tellChanged(first, count);
    return true;
}

QlumPasteReport QlumArrayModel::paste(int first, const QStringList& cells)
{
    qlumAssertGuiThread();
    QlumPasteReport report;
    if (m_readOnly || cells.isEmpty() || first < 0 || first > m_elements.count())
        return report;
    std::vector<UaVariant> values;
    values.reserve(static_cast<std::size_t>(cells.size()));
    for (const QString& text : cells) {
        const int row = first + static_cast<int>(values.size());
        UaVariant value = row < m_elements.count() ? m_elements.at(row) : newElement(m_elements.count() - 1);
        if (qlumReadElement(text, m_elements.type(), m_context, value))
            ++report.taken;
        else
            report.refuse(QStringLiteral("[%1]").arg(row), text);
        values.push_back(value);
    }
    UaVariant array;
    if (report.taken == 0 || !OpcUa_IsGood(array.setArray(m_elements.type(), values)))
        return report;
    const int before = m_elements.count();
    const int after = std::max(before, first + static_cast<int>(values.size()));
    if (after > before)
        beginInsertRows({}, before, after - 1);
    static_cast<void>(m_elements.overwrite(first, array)); // of this type, and at a place that is there
    if (after > before)
        endInsertRows();
    tellChanged(first, static_cast<int>(values.size()));
    return report;
}

bool QlumArrayModel::sortElements(int first, int count, Qt::SortOrder order)
{
    qlumAssertGuiThread();
    if (m_readOnly || !m_elements.sort(first, count, order == Qt::DescendingOrder))
        return false;
    tellChanged(first, count);
    return true;
}

QString QlumArrayModel::textOf(int first, int count) const
{
    QString text;
    for (int row = first; row < first + count; ++row) {
        const QString element = qlumCopyText(m_elements.at(row), m_context);
        text += (row > first ? QStringLiteral("\n") : QString()) +
                (count > 1 ? qlumTabbedCell(element) : element);
    }
    return text;
}

// ---- item model

bool QlumArrayModel::hasTypes() const
{
    return m_elements.type() == OpcUaType_Variant || m_elements.type() == OpcUaType_ExtensionObject;
}

int QlumArrayModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_elements.count();
}

int QlumArrayModel::columnCount(const QModelIndex& parent) const
{
    if (parent.isValid())
        return 0;
    return hasTypes() ? ColumnCount : TypeColumn;
}

QVariant QlumArrayModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal)
        return QlumTitledModel::headerData(section, orientation, role);
    return role == Qt::DisplayRole ? QVariant(QStringLiteral("[%1]").arg(section)) : QVariant();
}

QVariant QlumArrayModel::data(const QModelIndex& index, int role) const
{
    qlumAssertGuiThread();
    return checkIndex(index, CheckIndexOption::IndexIsValid) ? cell(index.row(), index.column(), role)
                                                             : QVariant();
}

QVariant QlumArrayModel::cell(int row, int column, int role) const
{
    if (column == ValueColumn || role != Qt::DisplayRole)
        return qlumElementCell(m_elements, row, m_context, role);
    return qlumCutText(qlumSingleLine(qlumTypeTextOf(m_elements.at(row), m_context)));
}

Qt::ItemFlags QlumArrayModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QlumTitledModel::flags(index);
    if (!index.isValid() || m_readOnly || index.column() != ValueColumn)
        return flags;
    return qlumIsElementEditable(m_elements, index.row()) ? flags | Qt::ItemIsEditable : flags;
}

bool QlumArrayModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (m_readOnly || !checkIndex(index, CheckIndexOption::IndexIsValid) || index.column() != ValueColumn)
        return false;
    UaVariant element = role == ValueRole ? value.value<UaVariant>() : m_elements.at(index.row());
    const bool isText = role == Qt::EditRole;
    if (role != ValueRole &&
        !(isText && qlumReadElement(value.toString(), m_elements.type(), m_context, element)))
        return false;
    return fill(index.row(), 1, element);
}

bool QlumArrayModel::insertRows(int row, int count, const QModelIndex& parent)
{
    qlumAssertGuiThread();
    const UaVariant element = newElement(row);
    UaVariant probe;
    const bool fits =
        OpcUa_IsGood(probe.setArray(m_elements.type(), std::span<const UaVariant>(&element, 1)));
    if (m_readOnly || parent.isValid() || row < 0 || row > m_elements.count() || count <= 0 || !fits)
        return false;
    beginInsertRows({}, row, row + count - 1);
    const bool inserted = m_elements.insert(row, count, element);
    endInsertRows();
    emit edited();
    return inserted;
}

bool QlumArrayModel::removeRows(int row, int count, const QModelIndex& parent)
{
    qlumAssertGuiThread();
    if (m_readOnly || parent.isValid() || row < 0 || count <= 0 || count > m_elements.count() - row)
        return false;
    beginRemoveRows({}, row, row + count - 1);
    const bool removed = m_elements.remove(row, count);
    endRemoveRows();
    emit edited();
    return removed;
}

bool QlumArrayModel::moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                              const QModelIndex& destinationParent, int destinationChild)
{
    qlumAssertGuiThread();
    const int size = m_elements.count();
    if (m_readOnly || sourceParent.isValid() || destinationParent.isValid() || sourceRow < 0 || count <= 0 ||
        count > size - sourceRow || destinationChild < 0 || destinationChild > size ||
        !beginMoveRows({}, sourceRow, sourceRow + count - 1, {}, destinationChild))
        return false;
    const bool moved = m_elements.move(sourceRow, count, destinationChild);
    endMoveRows();
    emit edited();
    return moved;
}
