#include <app/services/qlumservicesmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QLocale>
#include <QSet>

#include <algorithm>
#include <utility>

namespace {
constexpr double nanosecondsOfMillisecond = 1e6;

QStringList sortedNames(const std::deque<QlumServiceRecord>& rows, QString QlumServiceRecord::*text)
{
    QSet<QString> names;
    for (const QlumServiceRecord& record : rows)
        names.insert(record.*text);
    QStringList sorted(names.begin(), names.end());
    sorted.sort(Qt::CaseInsensitive);
    return sorted;
}

qint64 bytesOf(const QlumServiceRecord& record)
{
    return (record.request ? record.bytesOut : 0) + (record.response ? record.bytesIn : 0);
}
} // namespace

QlumServicesModel::QlumServicesModel(QObject* parent)
    : QlumTableModel({tr("Time"), tr("Server"), tr("Service"), tr("Duration"), tr("Timeline"), tr("Status"),
                      tr("Request"), tr("Response"), tr("By")},
                     parent)
{
    setMaximumRows(maximumRows);
}

void QlumServicesModel::take(std::vector<QlumServiceRecord> records)
{
    for (QlumServiceRecord& record : records)
        if (record.hasEnded)
            end(std::move(record));
        else
            m_begun.push_back(std::move(record));
    const int before = rowCount() + static_cast<int>(m_begun.size());
    for (int row = 0; row < std::min(before - maximumRows, rowCount()); ++row)
        m_bytes -= bytesOf(rowAt(row)); // they make way
    append(std::exchange(m_begun, {}));
    m_forgotten = std::max(0, m_forgotten - (before - rowCount()));
    forgetOldMessages();
}

// Calls end in another order than they begin in, but their rows are in the order of their numbers.
void QlumServicesModel::end(QlumServiceRecord record)
{
    const auto isBefore = [](const QlumServiceRecord& one, quint64 number) { return one.number < number; };
    const auto waiting = std::lower_bound(m_begun.begin(), m_begun.end(), record.number, isBefore);
    m_bytes += bytesOf(record);
    if (waiting != m_begun.end() && waiting->number == record.number) {
        *waiting = std::move(record);
        return;
    }
    const auto shown = std::lower_bound(rows().begin(), rows().end(), record.number, isBefore);
    if (shown == rows().end() || shown->number != record.number)
        return; // it was cleared, or made way
    const auto row = static_cast<int>(shown - rows().begin());
    change(row, [&record](QlumServiceRecord& there) { there = std::move(record); });
}

void QlumServicesModel::forgetOldMessages()
{
    while (m_bytes > maximumBytes && m_forgotten < rowCount()) {
        m_bytes -= bytesOf(rowAt(m_forgotten));
        change(m_forgotten++, [](QlumServiceRecord& record) {
            record.request.reset();
            record.response.reset();
        });
    }
}

void QlumServicesModel::clear()
{
    m_begun.clear();
    m_bytes = 0;
    m_forgotten = 0;
    reset();
}

QStringList QlumServicesModel::services() const
{
    return sortedNames(rows(), &QlumServiceRecord::service);
}

QStringList QlumServicesModel::servers() const
{
    return sortedNames(rows(), &QlumServiceRecord::server);
}

QVariant QlumServicesModel::display(const QlumServiceRecord& record, int column) const
{
    const QLocale locale = QLocale::system();
    switch (column) {
    case Time:
        return qlumShowTime(record.begun);
    case Server:
        return qlumSingleLine(record.server);
    case Service:
        return record.service;
    case Duration:
        return record.hasEnded
                   ? tr("%1 ms").arg(locale.toString(
                         static_cast<double>(record.times.ended) / nanosecondsOfMillisecond, 'f', 2))
                   : QVariant();
    case Timeline:
        return tr("+%1 ms").arg(locale.toString(
            static_cast<double>(record.passed - rowAt(0).passed) / nanosecondsOfMillisecond, 'f', 2));
    case Status:
        return record.hasEnded ? qlumResultText(record.status) : tr("waiting");
    case BytesOut:
        return record.bytesOut > 0 ? tr("%1 B").arg(locale.toString(record.bytesOut)) : QVariant();
    case BytesIn:
        return record.bytesIn > 0 ? tr("%1 B").arg(locale.toString(record.bytesIn)) : QVariant();
    default:
        return record.purpose.isEmpty() ? tr("Session") : qlumSingleLine(record.purpose);
    }
}

QVariant QlumServicesModel::sortKey(const QlumServiceRecord& record, int column)
{
    switch (column) {
    case Time:
        return record.number;
    case Timeline:
        return record.passed;
    case Duration:
        return record.hasEnded ? QVariant(record.times.ended) : QVariant();
    case BytesOut:
        return record.bytesOut;
    case BytesIn:
        return record.bytesIn;
    default:
        return {};
    }
}

QVariant QlumServicesModel::cell(const QlumServiceRecord& record, int column, int role) const
{
    if (role == sortRole)
        if (const QVariant key = sortKey(record, column); key.isValid())
            return key;
    if (role == Qt::DisplayRole || role == sortRole)
        return display(record, column);
    if (role == Qt::TextAlignmentRole && (column == Duration || column == BytesOut || column == BytesIn))
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    if (column != Status || !record.hasEnded)
        return {};
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(qlumResultInWords(record.status));
    return qlumStatusCell(qlumStatusLevel(record.status.statusCode()), role);
}

QlumServicesFilter::QlumServicesFilter(QObject* parent) : QlumTableFilter(parent)
{
    setSortRole(QlumServicesModel::sortRole);
}

void QlumServicesFilter::setServer(const QString& server)
{
    m_server = server;
    refilter();
}

void QlumServicesFilter::setService(const QString& service)
{
    m_service = service;
    refilter();
}

void QlumServicesFilter::setOutcome(Outcome outcome)
{
    m_outcome = outcome;
    refilter();
}

void QlumServicesFilter::setLeastDuration(int milliseconds)
{
    m_leastNanoseconds = static_cast<qint64>(milliseconds * nanosecondsOfMillisecond);
    refilter();
}

bool QlumServicesFilter::acceptsRow(int row, const QModelIndex&) const
{
    const QlumServiceRecord& record = static_cast<const QlumServicesModel*>(sourceModel())->rowAt(row);
    if ((!m_server.isEmpty() && record.server != m_server) ||
        (!m_service.isEmpty() && record.service != m_service))
        return false;
    if (m_leastNanoseconds > 0 && record.hasEnded && record.times.ended < m_leastNanoseconds)
        return false;
    switch (m_outcome) {
    case Waiting:
        return !record.hasEnded;
    case Good:
        return record.hasEnded && record.status.isNotBad();
    case Bad:
        return record.hasEnded && record.status.isBad();
    case All:
        break;
    }
    return true;
}
