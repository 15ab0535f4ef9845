#pragma once
#include <app/api/qlumservicerecorder.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <deque>
#include <vector>

/// Service calls, a row for each, the oldest first and no more than a bounded number of them. Of those whose
/// messages would take too much room, the messages of the oldest are forgotten.
class QlumServicesModel : public QlumTableModel<QlumServiceRecord>
{
    Q_OBJECT
public:
    enum Column { Time, Server, Service, Duration, Timeline, Status, BytesOut, BytesIn, Purpose };
    /// What a column is sorted by.
    static constexpr int sortRole = Qt::UserRole;
    static constexpr int maximumRows = 5000;
    static constexpr qint64 maximumBytes = 64 * 1024 * 1024; ///< of kept messages, on the wire

    explicit QlumServicesModel(QObject* parent = nullptr);

    /// Calls that have begun, and those that have ended.
    void take(std::vector<QlumServiceRecord> records);
    void clear();
    /// The names of all services and servers in the rows, each once, sorted.
    [[nodiscard]] QStringList services() const;
    [[nodiscard]] QStringList servers() const;

protected:
    [[nodiscard]] QVariant cell(const QlumServiceRecord& record, int column, int role) const override;

private:
    void end(QlumServiceRecord record);
    void forgetOldMessages();
    [[nodiscard]] QVariant display(const QlumServiceRecord& record, int column) const;
    [[nodiscard]] static QVariant sortKey(const QlumServiceRecord& record, int column);

    std::deque<QlumServiceRecord> m_begun; ///< not among the rows yet
    qint64 m_bytes = 0;
    int m_forgotten = 0; ///< rows at the front without messages
};

/// Which calls are shown.
class QlumServicesFilter : public QlumTableFilter
{
    Q_OBJECT
public:
    /// What became of a call.
    enum Outcome { All, Waiting, Good, Bad };

    explicit QlumServicesFilter(QObject* parent = nullptr);

    /// Empty for all.
    void setServer(const QString& server);
    void setService(const QString& service);
    void setOutcome(Outcome outcome);
    /// Calls that took as long, or have for now; 0 for all.
    void setLeastDuration(int milliseconds);

protected:
    [[nodiscard]] bool acceptsRow(int row, const QModelIndex& parent) const override;

private:
    QString m_server;
    QString m_service;
    Outcome m_outcome = All;
    qint64 m_leastNanoseconds = 0;
};
