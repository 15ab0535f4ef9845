#include <plugins/dataaccess/parts/qlumstagedmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/parts/qlumstagedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumvaluechecks.h>

#include <QStringList>

#include <algorithm>
#include <utility>

namespace {
bool isDone(const QlumStagedRow& row)
{
    return row.write.state == QlumStagedState::Written || row.write.state == QlumStagedState::Reverted ||
           row.write.state == QlumStagedState::NotReverted;
}

QString cellText(const UaVariant& value, const QlumStagedRow& row)
{
    return qlumCellText(value, row.context ? *row.context : QlumValueContext());
}

// Elements of an array are checked as such.
QlumValueCheck checkOf(const QlumStagedRow& row)
{
    if (row.write.indexRange.isEmpty() || !row.write.fieldPath.isEmpty())
        return qlumCheckValue(row.write.value, *row.context);
    QlumValueContext context = *row.context;
    context.valueRank = -2;
    context.arrayDimensions.clear();
    return qlumCheckValue(row.write.value, context);
}
} // namespace

QlumStagedModel::QlumStagedModel(QObject* parent)
    : QlumTableModel({tr("#"), tr("Server"), tr("Display Name"), tr("Node Id"), tr("New Value"), tr("Check"),
                      tr("Result"), tr("Old Value"), tr("Read Back")},
                     parent)
{
    constexpr int repaintMilliseconds = 50;
    m_tellTimer.setSingleShot(true);
    m_tellTimer.setInterval(repaintMilliseconds);
    connect(&m_tellTimer, &QTimer::timeout, this, [this] {
        const std::set<quint32> items = std::exchange(m_untold, {});
        emit itemsChanged({items.begin(), items.end()});
    });
}

// ---- rows

void QlumStagedModel::indexRows()
{
    m_rowOfKey.clear();
    m_rowOfItem.clear();
    int place = 0;
    for (const QlumStagedRow& row : rows()) {
        m_rowOfKey.insert(row.write.key, place);
        if (row.item != 0)
            m_rowOfItem.insert(row.item, place);
        ++place;
    }
    tellColumnChanged(Order);
}

int QlumStagedModel::rowOfKey(quint64 key) const
{
    return m_rowOfKey.value(key, -1);
}

const QlumStagedRow* QlumStagedModel::find(quint32 item) const
{
    const int place = m_rowOfItem.value(item, -1);
    return place < 0 ? nullptr : &rowAt(place);
}

const QlumStagedRow* QlumStagedModel::findKey(quint64 key) const
{
    const int place = rowOfKey(key);
    return place < 0 ? nullptr : &rowAt(place);
}

// The index grows with the rows: lists are staged in many portions.
std::vector<quint64> QlumStagedModel::stage(std::vector<QlumStagedRow> staged)
{
    const int before = rowCount();
    std::vector<quint64> keys;
    std::vector<quint32> items;
    std::vector<QlumStagedRow> added;
    for (QlumStagedRow& row : staged) {
        row.write.key = ++m_lastKey;
        keys.push_back(row.write.key);
        items.push_back(row.item);
        const int present = row.item == 0 ? -1 : m_rowOfItem.value(row.item, -1);
        const int place = present < 0 ? before + static_cast<int>(added.size()) : present;
        m_rowOfKey.insert(row.write.key, place);
        if (present < 0) {
            if (row.item != 0)
                m_rowOfItem.insert(row.item, place);
            added.push_back(std::move(row));
        } else if (place >= before) { // twice in one portion: the last one counts
            QlumStagedRow& earlier = added[static_cast<std::size_t>(place - before)];
            m_rowOfKey.remove(earlier.write.key);
            earlier = std::move(row);
        } else {
            m_rowOfKey.remove(rowAt(place).write.key);
            change(place, [&row](QlumStagedRow& old) { old = std::move(row); });
        }
    }
    append(std::move(added));
    tellItems(items);
    return keys;
}

void QlumStagedModel::discardRows(std::vector<int> places)
{
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    if (places.empty())
        return;
    std::vector<quint32> items;
    std::deque<QlumStagedRow> kept;
    for (int place = 0; place < rowCount(); ++place)
        if (std::binary_search(places.begin(), places.end(), place))
            items.push_back(rowAt(place).item);
        else
            kept.push_back(rowAt(place));
    reset(std::move(kept));
    indexRows();
    tellItems(items);
}

void QlumStagedModel::discard(const std::vector<quint32>& items)
{
    std::vector<int> places;
    for (const quint32 item : items)
        if (const int place = m_rowOfItem.value(item, -1); place >= 0)
            places.push_back(place);
    discardRows(std::move(places));
}

void QlumStagedModel::clear()
{
    std::vector<quint32> items;
    for (const QlumStagedRow& row : rows())
        items.push_back(row.item);
    reset();
    indexRows();
    tellItems(items);
}

void QlumStagedModel::movePlaces(std::vector<int> places, bool isUp)
{
    std::sort(places.begin(), places.end());
    if (!isUp)
        std::reverse(places.begin(), places.end());
    int end = isUp ? 0 : rowCount() - 1; // where the next one may go at most
    for (const int place : places) {
        const int wanted = isUp ? std::max(end, place - 1) : std::min(end, place + 1);
        move(place, 1, isUp ? wanted : wanted + 1);
        end = isUp ? wanted + 1 : wanted - 1;
    }
    indexRows();
}

void QlumStagedModel::tellItems(const std::vector<quint32>& items)
{
    m_untold.insert(items.begin(), items.end());
    m_untold.erase(0);
    if (!m_untold.empty() && !m_tellTimer.isActive())
        m_tellTimer.start();
}

// ---- checks and outcomes

void QlumStagedModel::check(quint64 key, std::shared_ptr<const QlumValueContext> context,
                            const UaVariant& shown)
{
    const int place = rowOfKey(key);
    if (place < 0)
        return;
    change(place, [&](QlumStagedRow& row) {
        row.context = std::move(context);
        row.isChecked = true;
        row.fault = row.refused = row.unusual = QString();
        if (row.isText)
            row.fault = qlumReadStaged(row.given, *row.context, shown,
                                       row.write.fieldPath.isEmpty() ? row.write.indexRange : QString(),
                                       row.write.value);
        row.isText = row.isText && !row.fault.isEmpty();
        if (row.isText)
            return;
        const QlumValueCheck found = checkOf(row);
        row.refused = found.refused;
        row.unusual = found.unusual;
    });
    tellItems({rowAt(place).item});
}

void QlumStagedModel::setFault(quint64 key, const QString& fault)
{
    const int place = rowOfKey(key);
    if (place < 0)
        return;
    change(place, [&fault](QlumStagedRow& row) {
        row.fault = fault; // it is looked at again when its server is there
    });
    tellItems({rowAt(place).item});
}

void QlumStagedModel::setOutcomes(const std::vector<QlumStagedWrite>& writes)
{
    std::vector<int> places;
    for (const QlumStagedWrite& write : writes)
        if (const int place = rowOfKey(write.key); place >= 0) {
            quietRow(place).write = write;
            places.push_back(place);
        }
    tellPlaces(places);
}

void QlumStagedModel::forgetOutcomes(const std::vector<quint64>& keys)
{
    std::vector<int> places;
    for (const quint64 key : keys)
        if (const int place = rowOfKey(key); place >= 0) {
            QlumStagedWrite& write = quietRow(place).write;
            write.state = QlumStagedState::Waiting;
            write.status = UaStatus();
            write.hasOld = write.hasBack = false;
            places.push_back(place);
        }
    tellPlaces(places);
}

// Views paint what they show of a range, however many rows of it have changed.
void QlumStagedModel::tellPlaces(const std::vector<int>& places)
{
    if (places.empty())
        return;
    const auto [first, last] = std::minmax_element(places.begin(), places.end());
    emit dataChanged(index(*first, 0), index(*last, ColumnCount - 1));
    std::vector<quint32> items;
    items.reserve(places.size());
    for (const int place : places)
        items.push_back(rowAt(place).item);
    tellItems(items);
}

void QlumStagedModel::loseServer(unsigned int serverId, const std::vector<quint64>& underWay)
{
    std::vector<QlumStagedWrite> all;
    for (const quint64 key : underWay) {
        const QlumStagedRow* row = findKey(key);
        if (row == nullptr || row->write.serverId != serverId || row->write.state != QlumStagedState::Waiting)
            continue;
        QlumStagedWrite& lost = all.emplace_back(row->write);
        lost.state = QlumStagedState::Unknown;
        lost.status = UaStatus(OpcUa_BadConnectionClosed);
    }
    setOutcomes(all);
}

std::vector<QlumStagedWrite> QlumStagedModel::sendable(bool withDoubts) const
{
    std::vector<QlumStagedWrite> writes;
    for (const QlumStagedRow& row : rows()) {
        if (isDone(row) || row.isText || !row.fault.isEmpty() || (!withDoubts && !row.refused.isEmpty()))
            continue;
        QlumStagedWrite write = row.write;
        write.state = QlumStagedState::Waiting;
        write.status = UaStatus();
        write.hasOld = write.hasBack = false;
        writes.push_back(std::move(write));
    }
    return writes;
}

std::vector<QlumStagedWrite> QlumStagedModel::revertible() const
{
    std::vector<QlumStagedWrite> writes;
    for (const QlumStagedRow& row : rows())
        if (qlumCanRevert(row.write))
            writes.push_back(row.write);
    return writes;
}

bool QlumStagedModel::hasRevertible() const
{
    return std::any_of(
        rows().begin(), rows().end(), [](const QlumStagedRow& row) { return qlumCanRevert(row.write); });
}

int QlumStagedModel::doubtful() const
{
    return static_cast<int>(std::count_if(
        rows().begin(), rows().end(),
        [](const QlumStagedRow& row) {
            return !isDone(row) && row.fault.isEmpty() && !row.isText && !row.refused.isEmpty();
        }));
}

int QlumStagedModel::faulty() const
{
    return static_cast<int>(std::count_if(
        rows().begin(), rows().end(),
        [](const QlumStagedRow& row) { return !isDone(row) && (!row.fault.isEmpty() || row.isText); }));
}

// ---- cells

QString QlumStagedModel::valueText(const QlumStagedRow& row)
{
    return row.isText ? qlumSingleLine(qlumCutText(row.given)) : cellText(row.write.value, row);
}

QString QlumStagedModel::checkText(const QlumStagedRow& row)
{
    if (!row.fault.isEmpty())
        return row.fault;
    if (!row.isChecked)
        return row.isText ? tr("Being looked at") : QString();
    QStringList texts{row.refused, row.unusual};
    texts.removeAll(QString());
    return texts.join(QLatin1Char(' '));
}

QlumStatusLevel QlumStagedModel::level(const QlumStagedRow& row)
{
    switch (row.write.state) {
    case QlumStagedState::Written:
        return row.write.status.isUncertain() || (row.write.hasBack && row.write.back != row.write.value)
                   ? QlumStatusLevel::Uncertain
                   : QlumStatusLevel::Good;
    case QlumStagedState::Refused:
    case QlumStagedState::NotSent:
    case QlumStagedState::NotReverted:
        return QlumStatusLevel::Bad;
    case QlumStagedState::Unknown:
    case QlumStagedState::LeftOut:
        return QlumStatusLevel::Uncertain;
    case QlumStagedState::Reverted:
        return QlumStatusLevel::Good;
    case QlumStagedState::Waiting:
        break;
    }
    if (!row.fault.isEmpty())
        return QlumStatusLevel::Bad;
    return row.refused.isEmpty() && row.unusual.isEmpty() ? QlumStatusLevel::Inactive
                                                          : QlumStatusLevel::Uncertain;
}

QString QlumStagedModel::text(const QlumStagedRow& row, int column) const
{
    switch (column) {
    case Order:
        return QString::number(rowOfKey(row.write.key) + 1);
    case Server:
        return qlumSingleLine(row.server);
    case Name:
        return qlumSingleLine(row.write.name);
    case Node:
        return qlumSingleLine(row.write.indexRange.isEmpty()
                                  ? row.place
                                  : QStringLiteral("%1 [%2]").arg(row.place, row.write.indexRange));
    case Value:
        return valueText(row);
    case Check:
        return qlumSingleLine(checkText(row));
    case Result:
        return qlumStagedText(row.write);
    case OldValue:
        return row.write.hasOld ? cellText(row.write.old, row) : QString();
    case ReadBack:
        return row.write.hasBack ? cellText(row.write.back, row) : QString();
    default:
        return {};
    }
}

QVariant QlumStagedModel::cell(const QlumStagedRow& row, int column, int role) const
{
    const bool hasOutcome = row.write.state != QlumStagedState::Waiting;
    switch (role) {
    case Qt::DisplayRole:
        return text(row, column);
    case Qt::EditRole:
        if (column != Value)
            return text(row, column);
        return row.isText ? row.given
                          : qlumCopyText(row.write.value, row.context ? *row.context : QlumValueContext());
    case Qt::ToolTipRole:
        return qlumPlainToolTip(column == Check ? checkText(row) : text(row, column));
    case Qt::ForegroundRole:
    case Qt::DecorationRole:
    case Qt::AccessibleDescriptionRole:
        if (column == (hasOutcome ? Result : Check) &&
            (hasOutcome || level(row) != QlumStatusLevel::Inactive))
            return qlumStatusCell(level(row), role);
        return {};
    default:
        return {};
    }
}

Qt::ItemFlags QlumStagedModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QlumTableModel::flags(index);
    const bool isEditable =
        index.isValid() && index.column() == Value && rowAt(index.row()).write.nodeId != UaNodeId();
    return isEditable ? flags | Qt::ItemIsEditable : flags;
}

// What is edited here begins anew.
bool QlumStagedModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !index.isValid() || index.column() != Value)
        return false;
    UaVariant shown;
    change(index.row(), [&](QlumStagedRow& row) {
        shown = row.write.hasOld ? row.write.old : row.write.value;
        row.given = value.toString();
        row.isText = true;
        row.write.state = QlumStagedState::Waiting;
        row.write.hasOld = row.write.hasBack = false;
    });
    const QlumStagedRow& row = rowAt(index.row());
    if (row.context)
        check(row.write.key, row.context, shown);
    else
        tellItems({row.item});
    return true;
}
