#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <plugins/events/qlumevent.h>
#include <plugins/events/qlumeventtable.h>
#include <plugins/events/qlumeventtypes.h>

#include <QByteArray>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QHash>
#include <QModelIndex>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <deque>

/// The log of a view's events, the newest last. A flood is shown twenty times a second, and beyond the
/// maximum the oldest go; the count has all of them.
class QlumEventModel : public QlumEventTable
{
    Q_OBJECT
public:
    enum Column { EventType, Message, SourceName, Time, Severity, ServerObject, ColumnCount };

    /// The names of types come from there.
    QlumEventModel(QlumApplicationInterface& application, QlumEventTypes& types, QObject* parent = nullptr);

    /// So many rows are kept; never below 1.
    void setMaximum(int count) { setMaximumRows(count); }
    /// Since the view was opened or the log cleared.
    [[nodiscard]] qint64 count() const { return m_count; }
    /// Of events that came while the log was paused.
    [[nodiscard]] qint64 waitingCount() const { return m_waitingCount; }
    /// Of those the ones that the log has no room for.
    [[nodiscard]] qint64 surplusCount() const
    {
        return m_waitingCount - static_cast<qint64>(m_waiting.size());
    }
    [[nodiscard]] bool isPaused() const { return m_isPaused; }
    /// What comes meanwhile waits, up to as many events as the log has rows in all: the oldest of them would
    /// be gone anyway.
    void setPaused(bool isPaused);
    /// Rows of what was removed stay: they are what happened.
    void clear();
    /// Nobody will end the refresh that the server has begun: what comes from now on is new.
    void giveUpRefresh(unsigned int serverId) { m_refreshing.remove(serverId); }

public slots:
    /// Adds them, or lets them wait.
    void sltNewEvents(const QlumEvents& events);

signals:
    /// count() or waitingCount() is another one.
    void countChanged();

protected:
    QVariant cell(const QlumEvent& event, int column, int role) const override;

private:
    [[nodiscard]] bool isRepeated(const QlumEvent& event);
    [[nodiscard]] QVariant display(const QlumEvent& event, int column) const;

    QlumApplicationInterface& m_application;
    QlumEventTypes& m_types;
    qint64 m_count = 0;
    int m_maximum = 0;
    bool m_isPaused = false;
    std::deque<QlumEvent> m_waiting;
    qint64 m_waitingCount = 0; ///< those included that are not kept
    QHash<unsigned int, QDeadlineTimer>
        m_refreshing;        ///< servers that send their conditions again, and until when
    QSet<QByteArray> m_seen; ///< notifiers and ids of the events of conditions
};

/// How an event of that severity is shown: a word, and a level for its colour and icon.
[[nodiscard]] QString qlumSeverityWord(int severity);
/// Where the middle third of the standard's range begins.
inline constexpr int qlumMediumSeverity = 334;
/// In the highest third of the standard's range.
[[nodiscard]] bool qlumIsHighSeverity(int severity);
/// What a cell with a severity answers for colours, icons and accessible texts.
[[nodiscard]] QVariant qlumSeverityCell(int severity, int role);
