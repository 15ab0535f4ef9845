#include <plugins/datalogger/qlumloggermodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QLocale>
#include <QObject>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <deque>
#include <iterator>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

QlumLoggerModel::QlumLoggerModel(QlumApplicationInterface& application, QObject* parent)
    : QlumTableModel({tr("Server"), tr("Name"), tr("Node Id"), tr("Path"), tr("Data Type"), tr("State"),
                      tr("Last Value"), tr("Status"), tr("Received"), tr("Records"), tr("Overflows"),
                      tr("Interruptions"), tr("Watched")},
                     parent),
      m_application(application)
{
}

std::vector<quint32> QlumLoggerModel::add(std::vector<QlumLoggerItem> items)
{
    std::vector<quint32> keys;
    keys.reserve(items.size());
    for (QlumLoggerItem& item : items) {
        item.key = ++m_lastKey;
        keys.push_back(item.key);
        m_places.emplace(item.key, rowCount() + static_cast<int>(keys.size()) - 1);
    }
    append(std::deque<QlumLoggerItem>(std::make_move_iterator(items.begin()),
                                      std::make_move_iterator(items.end())));
    return keys;
}

void QlumLoggerModel::removeKeys(const std::vector<quint32>& keys)
{
    const std::unordered_set<quint32> gone(keys.begin(), keys.end());
    for (int last = rowCount() - 1; last >= 0; --last) {
        if (!gone.contains(rowAt(last).key))
            continue;
        int first = last;
        while (first > 0 && gone.contains(rowAt(first - 1).key))
            --first;
        remove(first, last - first + 1);
        last = first;
    }
    placeRows();
}

void QlumLoggerModel::placeRows()
{
    m_places.clear();
    for (int row = 0; row < rowCount(); ++row)
        m_places.emplace(rowAt(row).key, row);
}

const QlumLoggerItem* QlumLoggerModel::find(quint32 key) const
{
    const auto found = m_places.find(key);
    return found == m_places.end() ? nullptr : &rowAt(found->second);
}

void QlumLoggerModel::setViewSettings(const QlumDataSettings& settings)
{
    m_viewSettings = settings;
    tellColumnChanged(Watched);
}

std::vector<unsigned int> QlumLoggerModel::serverIds() const
{
    std::set<unsigned int> ids;
    for (const QlumLoggerItem& item : rows())
        ids.insert(item.serverId);
    ids.erase(qlumNoServer);
    return {ids.begin(), ids.end()};
}

QString QlumLoggerModel::serverName(unsigned int serverId) const
{
    return serverId == qlumNoServer ? tr("(not in this project)") : m_application.serverName(serverId);
}

void QlumLoggerModel::setConnected(unsigned int serverId, bool isConnected)
{
    if (isConnected)
        m_connected.insert(serverId);
    else
        m_connected.remove(serverId);
    tellColumnChanged(State);
}

void QlumLoggerModel::setHeld(bool isHeld)
{
    if (std::exchange(m_isHeld, isHeld) != isHeld)
        tellColumnChanged(State);
}

void QlumLoggerModel::takeFigures(const std::vector<recording::ItemFigures>& figures)
{
    if (figures.empty())
        return;
    std::unordered_map<recording::ItemNumber, const recording::ItemFigures*> byNumber;
    for (const recording::ItemFigures& one : figures)
        byNumber.emplace(one.item, &one);
    changeRows([&](QlumLoggerItem& item) {
        const auto found = item.number == 0 ? byNumber.end() : byNumber.find(item.number);
        if (found == byNumber.end())
            return false;
        item.figures = *found->second;
        if (item.watched == 0)
            return true;
        switch (item.figures.state) {
        case monitoring::ItemState::Watched:
            item.state = QlumLoggerState::Recorded;
            break;
        case monitoring::ItemState::Refused:
            item.state = QlumLoggerState::Refused;
            item.why = item.figures.why;
            break;
        case monitoring::ItemState::Waiting:
        case monitoring::ItemState::Ended:
            item.state = QlumLoggerState::Waiting;
            break;
        }
        return true;
    });
}

int QlumLoggerModel::cutOffCount() const
{
    return static_cast<int>(std::count_if(
        rows().begin(), rows().end(), [this](const QlumLoggerItem& row) { return isCutOff(row); }));
}

// ---- cells

QString QlumLoggerModel::stateText(const QlumLoggerItem& row) const
{
    if (isCutOff(row))
        return tr("No connection: what is missed is marked");
    switch (row.state) {
    case QlumLoggerState::Off:
        return tr("Off");
    case QlumLoggerState::Ready:
        return tr("Ready");
    case QlumLoggerState::NoServer:
        return tr("Its server is not in this project");
    case QlumLoggerState::NamespaceGone:
        return tr("The server has no namespace %1").arg(row.namespaceUri);
    case QlumLoggerState::Waiting:
        return m_isHeld && m_connected.contains(row.serverId) ? tr("Waits for the file")
                                                              : tr("Waits for its server");
    case QlumLoggerState::Recorded:
        return row.figures.records == 0 ? tr("Recorded, no value yet") : tr("Recorded");
    case QlumLoggerState::Refused:
        return tr("Refused: %1").arg(qlumStatusWords(qlumStatusText(row.why.code())));
    }
    return QString();
}

QVariant QlumLoggerModel::shown(const QlumLoggerItem& row, int column) const
{
    const auto count = [](OpcUa_UInt64 number) { return QVariant(static_cast<qulonglong>(number)); };
    const bool hasValue = row.figures.received != 0;
    switch (column) {
    case Server:
        return serverName(row.serverId);
    case Name:
        return row.name;
    case NodeId:
        return toQString(row.nodeId.toXmlString());
    case Path:
        return row.path;
    case DataType:
        return row.dataType;
    case State:
        return stateText(row);
    case Value: {
        if (!hasValue)
            return QVariant();
        const QString text = qlumCutText(qlumSingleLine(toQString(row.figures.value.value().toString())));
        return row.unit.isEmpty() ? text : text + QLatin1Char(' ') + row.unit;
    }
    case Status:
        return hasValue ? qlumStatusText(row.figures.value.statusCode().code()) : QVariant();
    case Received:
        return hasValue ? qlumShowDateTime(row.figures.received) : QVariant();
    case Records:
        return count(row.figures.records);
    case Overflows:
        return count(row.figures.overflows);
    case Interruptions:
        return count(row.figures.gaps);
    case Watched: {
        const QlumDataSettings& settings = settingsOf(row);
        return tr("every %1, sent every %2")
            .arg(qlumDaInterval(settings.samplingInterval < 0 ? settings.publishingInterval
                                                              : settings.samplingInterval),
                 qlumDaInterval(settings.publishingInterval));
    }
    default:
        return QVariant();
    }
}

QVariant QlumLoggerModel::cell(const QlumLoggerItem& row, int column, int role) const
{
    switch (role) {
    case KeyRole:
        return row.key;
    case SortRole:
        return column == Received ? QVariant(static_cast<qlonglong>(row.figures.received))
                                  : shown(row, column);
    case Qt::DisplayRole:
        return shown(row, column);
    case Qt::ToolTipRole:
        return qlumPlainToolTip(shown(row, column).toString());
    case Qt::TextAlignmentRole:
        return column >= Records && column <= Interruptions ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter))
                                                            : QVariant();
    default:
        break;
    }
    if (column == Status && row.figures.received != 0)
        return qlumStatusCell(qlumStatusLevel(row.figures.value.statusCode().code()), role);
    if (column != State)
        return QVariant();
    switch (row.state) {
    case QlumLoggerState::Recorded:
        return qlumStatusCell(isCutOff(row) ? QlumStatusLevel::Uncertain : QlumStatusLevel::Good, role);
    case QlumLoggerState::Refused:
    case QlumLoggerState::NamespaceGone:
    case QlumLoggerState::NoServer:
        return qlumStatusCell(QlumStatusLevel::Bad, role);
    case QlumLoggerState::Waiting:
        return qlumStatusCell(QlumStatusLevel::Uncertain, role);
    case QlumLoggerState::Off:
    case QlumLoggerState::Ready:
        break;
    }
    return qlumStatusCell(QlumStatusLevel::Inactive, role);
}
