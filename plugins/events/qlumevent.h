// What is known of one event that a server has reported.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <opcua/opcua_types.h>
#include <plugins/events/qlumbrowsepath.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <vector>

/// The fields that the program itself reads; qlumFieldName() has their names.
enum class QlumField {
    EventId,
    EventType,
    SourceNode,
    SourceName,
    Time,
    Message,
    Severity,
    ConditionId,
    ConditionName,
    BranchId,
    Retain,
    ActiveState,
    ActiveId,
    ActiveText,
    AckedId,
    ConfirmedId,
    EnabledId,
    ShelvingState,
    DialogId,
    Prompt,
    ResponseOptionSet,
    DefaultResponse
};
inline constexpr int qlumFieldCount = static_cast<int>(QlumField::DefaultResponse) + 1;

/// "ActiveState/Id"
[[nodiscard]] QString qlumFieldName(QlumField field);
/// The fields without which the list of alarms is wrong or its commands fail.
[[nodiscard]] QStringList qlumNeededFields();

/// Which fields the events of an item have, in the order of its select clauses. Shared by all its events.
class QlumFieldNames
{
public:
    explicit QlumFieldNames(QStringList names);
    /// One name for each path.
    [[nodiscard]] static std::shared_ptr<const QlumFieldNames> of(const QlumSelectClauses& clauses);

    [[nodiscard]] const QStringList& names() const { return m_names; }
    /// -1 for one that was not asked for.
    [[nodiscard]] int indexOf(QlumField field) const { return m_known[static_cast<std::size_t>(field)]; }
    [[nodiscard]] int indexOf(const QString& name) const { return m_indexes.value(name, -1); }

private:
    QStringList m_names;
    QHash<QString, int> m_indexes;
    std::array<int, qlumFieldCount> m_known{};
};

/// The fields of one event, by name. A field that is not there, or of which the server said nothing, is null.
class QlumEventFields
{
public:
    QlumEventFields() = default;
    /// Takes the values out of the list; what it has too many is dropped.
    QlumEventFields(std::shared_ptr<const QlumFieldNames> names, OpcUa_Variant* values, OpcUa_Int32 count);

    [[nodiscard]] const UaVariant& value(QlumField field) const
    {
        return m_names ? at(m_names->indexOf(field)) : nothing();
    }
    [[nodiscard]] const UaVariant& value(const QString& name) const
    {
        return m_names ? at(m_names->indexOf(name)) : nothing();
    }
    /// In the order of the select clauses.
    [[nodiscard]] QStringList names() const { return m_names ? m_names->names() : QStringList(); }
    [[nodiscard]] const UaVariant& at(int index) const;
    [[nodiscard]] bool isEmpty() const { return m_values.empty(); }

private:
    [[nodiscard]] static const UaVariant& nothing();

    std::shared_ptr<const QlumFieldNames> m_names;
    std::vector<UaVariant> m_values;
};

/// An event, or the state of a condition as the last event told it.
struct QlumEvent
{
    unsigned int serverId = qlumNoServer; ///< the project's id
    quint32 monitoredNode = 0;            ///< the key of the notifier that it came from
    QString notifier;                     ///< and its name
    QlumEventFields fields;
    bool isStale = false;       ///< not reported since a refresh has begun
    bool isHighlighted = false; ///< the user is to look at it
    bool isRefreshed = false;   ///< sent again by a refresh

    [[nodiscard]] UaNodeId eventType() const { return nodeId(QlumField::EventType); }
    /// Null for what is no condition.
    [[nodiscard]] UaNodeId conditionId() const { return nodeId(QlumField::ConditionId); }
    [[nodiscard]] UaNodeId branchId() const { return nodeId(QlumField::BranchId); }
    /// 0 when it is not known.
    [[nodiscard]] int severity() const;
    /// A single line of plain text, cut to what a cell can show.
    [[nodiscard]] QString text(QlumField field) const;
    [[nodiscard]] QString text(const QString& fieldName) const;
    /// Invalid where there is none.
    [[nodiscard]] QDateTime time() const;
    /// With the year in all its digits, for tool tips; empty where there is none.
    [[nodiscard]] QString timeInFull() const;
    /// Null for other types than a node id.
    [[nodiscard]] UaNodeId nodeId(QlumField field) const;
    /// Whether the field is there, a boolean, and that.
    [[nodiscard]] bool is(QlumField field, bool value) const;
    /// A RefreshStart, RefreshEnd or RefreshRequired event, which tells of no condition.
    [[nodiscard]] bool isRefreshEvent() const;
};
using QlumEvents = std::vector<QlumEvent>;

/// A value as one line of plain text, whatever a server has put into it.
[[nodiscard]] QString qlumEventText(const UaVariant& value);
/// With the date or without it, as the settings want times of events.
[[nodiscard]] QString qlumEventTime(const QDateTime& time);
