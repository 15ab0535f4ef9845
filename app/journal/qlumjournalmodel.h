#pragma once
#include <app/api/qlumjournal.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QModelIndex>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

/// The journal of one day, a row for each change, the oldest first.
class QlumJournalModel : public QlumTableModel<QlumJournalEntry>
{
    Q_OBJECT
public:
    enum Column { Time, Server, User, Service, What, Before, After, Status, Purpose };
    /// What became of a change.
    enum Outcome { Done, Failed, NotSent };
    /// Outcome of a row, and what a column is sorted by.
    static constexpr int outcomeRole = Qt::UserRole;
    static constexpr int sortRole = Qt::UserRole + 1;

    explicit QlumJournalModel(QObject* parent = nullptr);

    void setEntries(const std::vector<QlumJournalEntry>& entries);
    /// Those of a moment ago.
    void add(const std::vector<QlumJournalEntry>& entries);
    /// The names of the servers of all entries, each once, sorted.
    [[nodiscard]] QStringList servers() const;

protected:
    [[nodiscard]] QVariant cell(const QlumJournalEntry& entry, int column, int role) const override;

private:
    void collectServers(const std::vector<QlumJournalEntry>& entries);

    QSet<QString> m_servers; ///< of all entries since they were set
};

/// Rows of one server, with one outcome and a text.
class QlumJournalFilter : public QlumTableFilter
{
    Q_OBJECT
public:
    explicit QlumJournalFilter(QObject* parent = nullptr);

    /// Empty for all.
    void setServer(const QString& server);
    /// One of QlumJournalModel::Outcome; -1 for all.
    void setOutcome(int outcome);

protected:
    [[nodiscard]] bool acceptsRow(int row, const QModelIndex& parent) const override;

private:
    QString m_server;
    int m_outcome = -1;
};
