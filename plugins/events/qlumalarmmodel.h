#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <plugins/events/qlumevent.h>
#include <plugins/events/qlumeventtable.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QVariant>

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

/// The conditions of a view's servers in their present state, one row for each branch.
class QlumAlarmModel : public QlumEventTable
{
    Q_OBJECT
public:
    enum Column {
        ConditionName,
        Message,
        SourceName,
        Time,
        Severity,
        ServerObject,
        Active,
        AcknowledgedState,
        ConfirmedState,
        ColumnCount
    };

    explicit QlumAlarmModel(QlumApplicationInterface& application, QObject* parent = nullptr);

    /// Where the names of types come from.
    using TypeName = std::function<QString(unsigned int serverId, const UaNodeId& typeId)>;
    void setTypeName(const TypeName& typeName) { m_typeName = typeName; }
    /// Of a row; null where the event did not say.
    [[nodiscard]] UaNodeId conditionNodeId(int row) const { return rowAt(row).conditionId(); }
    [[nodiscard]] UaByteString eventId(int row) const;
    [[nodiscard]] const QlumEventFields& eventFields(int row) const { return rowAt(row).fields; }
    [[nodiscard]] unsigned int projectServerId(int row) const { return rowAt(row).serverId; }
    /// Marks a row for the user until it is taken back.
    void setHighlighted(int row, bool isHighlighted);
    /// Whether the row needs somebody: unacknowledged or unconfirmed.
    [[nodiscard]] bool isOpen(int row) const;
    /// Forgets everything, but not which servers are away.
    void clear();
    /// Conditions of that server are those of before, since that time; an invalid one: it is there. Each
    /// stays marked until the server reports it again.
    void setOffline(unsigned int serverId, const QDateTime& since);
    /// Invalid for a server that is there.
    [[nodiscard]] QDateTime offlineSince(unsigned int serverId) const { return m_offline.value(serverId); }
    /// Whether a refresh has begun there and not ended.
    [[nodiscard]] bool isRefreshing(unsigned int serverId) const { return m_refreshing.contains(serverId); }

public slots:
    /// Brings the rows up to date, event by event.
    void sltNewEvents(const QlumEvents& events);
    /// Whether conditions are listed that their server does not want kept any more.
    void sltShowRetainIfFalse(bool show);
    /// What came from the notifier and from no other goes.
    void sltRemoveItem(quint32 monitoredNode);
    /// Whatever came from that server goes.
    void sessionRemoved(unsigned int serverId);

signals:
    /// A condition came up, or is to be acknowledged again.
    void raised(const QlumEvent& event);
    /// Rows came, went or have changed.
    void stateChanged();

protected:
    QVariant cell(const QlumEvent& event, int column, int role) const override;

private:
    /// Server, condition, branch.
    using Key = std::tuple<unsigned int, UaNodeId, UaNodeId>;
    using Notifiers = std::set<quint32>;

    [[nodiscard]] static Key keyOf(const QlumEvent& event);
    void take(const QlumEvent& event);
    void put(const Key& key, const QlumEvent& event);
    void drop(const Key& key);
    void insertAdded();
    void removeGone();
    void refreshStarted(const QlumEvent& event);
    void refreshEnded(const QlumEvent& event);
    template <typename Condition>
    void removeWhere(Condition&& condition);
    void countRows();
    [[nodiscard]] bool belongsTo(const Key& key, unsigned int serverId, quint32 notifier) const;
    [[nodiscard]] QVariant display(const QlumEvent& event, int column) const;
    [[nodiscard]] QVariant look(const QlumEvent& event, int column, int role) const;

    QlumApplicationInterface& m_application;
    TypeName m_typeName = [](unsigned int, const UaNodeId&) { return QString(); };
    std::map<Key, int> m_places;          ///< row of a key; those behind the rows are in m_added
    std::map<Key, Notifiers> m_notifiers; ///< through which a row was reported
    std::deque<QlumEvent> m_added;        ///< rows that become visible at the end of a batch
    std::vector<int> m_gone;              ///< rows without a key any more, which go at the end of a batch
    std::map<Key, QlumEvent> m_unretained;
    bool m_showsUnretained = false;
    QSet<unsigned int> m_refreshing;
    QHash<unsigned int, Notifiers> m_refreshers; ///< notifiers that were seen to begin refreshes
    QHash<unsigned int, QDateTime> m_offline;
};
