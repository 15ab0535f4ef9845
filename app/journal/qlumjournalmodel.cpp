#include <app/journal/qlumjournalmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QLatin1String>
#include <QLocale>

#include <deque>

namespace {
QlumJournalModel::Outcome outcomeOf(const QString& status)
{
    if (status.startsWith(QLatin1String("Good")) || status.startsWith(QLatin1String("Uncertain")))
        return QlumJournalModel::Done;
    // the names of statuses are not translated, and what we say ourselves begins with none of them
    return status.startsWith(QLatin1String("Bad")) || status.startsWith(QLatin1String("0x"))
               ? QlumJournalModel::Failed
               : QlumJournalModel::NotSent;
}

QlumStatusLevel levelOf(QlumJournalModel::Outcome outcome)
{
    if (outcome == QlumJournalModel::Done)
        return QlumStatusLevel::Good;
    return outcome == QlumJournalModel::Failed ? QlumStatusLevel::Bad : QlumStatusLevel::Uncertain;
}

QString QlumJournalEntry::*const texts[] = {
    nullptr,
    &QlumJournalEntry::server,
    &QlumJournalEntry::user,
    &QlumJournalEntry::service,
    &QlumJournalEntry::what,
    &QlumJournalEntry::before,
    &QlumJournalEntry::after,
    &QlumJournalEntry::status,
    &QlumJournalEntry::purpose,
};

std::deque<QlumJournalEntry> rowsOf(const std::vector<QlumJournalEntry>& entries)
{
    return {entries.begin(), entries.end()};
}
} // namespace

QlumJournalModel::QlumJournalModel(QObject* parent)
    : QlumTableModel({tr("Time"), tr("Server"), tr("User"), tr("Service"), tr("What"), tr("Before"),
                      tr("After"), tr("Status"), tr("By")},
                     parent)
{
    setMaximumRows(QlumJournal::maximumEntries);
}

void QlumJournalModel::setEntries(const std::vector<QlumJournalEntry>& entries)
{
    m_servers.clear();
    collectServers(entries);
    reset(rowsOf(entries));
}

void QlumJournalModel::add(const std::vector<QlumJournalEntry>& entries)
{
    collectServers(entries);
    for (const QlumJournalEntry& entry : entries)
        gather(entry);
}

void QlumJournalModel::collectServers(const std::vector<QlumJournalEntry>& entries)
{
    for (const QlumJournalEntry& entry : entries)
        m_servers.insert(entry.server);
}

QStringList QlumJournalModel::servers() const
{
    QStringList sorted(m_servers.begin(), m_servers.end());
    sorted.sort(Qt::CaseInsensitive);
    return sorted;
}

QVariant QlumJournalModel::cell(const QlumJournalEntry& entry, int column, int role) const
{
    if (role == outcomeRole)
        return outcomeOf(entry.status);
    if (role == sortRole && column == Time)
        return entry.time;
    if (column == Time)
        return role == Qt::DisplayRole ? QVariant(qlumShowDateTime(entry.time)) : QVariant();
    const QString& text = entry.*texts[column];
    if (role == Qt::DisplayRole || role == sortRole)
        return column == User && text.isEmpty() ? tr("(anonymous)") : text;
    if (role == Qt::ToolTipRole && column == Status)
        return qlumPlainToolTip(outcomeOf(entry.status) == Failed ? qlumStatusWords(text) : text);
    if (role == Qt::ToolTipRole)
        return text.isEmpty() ? QVariant() : QVariant(qlumPlainToolTip(text));
    return column == Status ? qlumStatusCell(levelOf(outcomeOf(entry.status)), role) : QVariant();
}

QlumJournalFilter::QlumJournalFilter(QObject* parent) : QlumTableFilter(parent)
{
    setSortRole(QlumJournalModel::sortRole);
}

void QlumJournalFilter::setServer(const QString& server)
{
    m_server = server;
    refilter();
}

void QlumJournalFilter::setOutcome(int outcome)
{
    m_outcome = outcome;
    refilter();
}

bool QlumJournalFilter::acceptsRow(int row, const QModelIndex& parent) const
{
    const auto* journal = static_cast<const QlumJournalModel*>(sourceModel());
    const QlumJournalEntry& entry = journal->rowAt(journal->index(row, 0, parent));
    return (m_server.isEmpty() || entry.server == m_server) &&
           (m_outcome < 0 || m_outcome == outcomeOf(entry.status));
}
