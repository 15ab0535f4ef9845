#pragma once
#include <opcua/opcua_types.h>
#include <plugins/serverdiagnostics/qlumdiagnosticdata.h>
#include <plugins/serverdiagnostics/qlumdiagnostictable.h>

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>

/// The subscriptions of a server.
class QlumSubscriptionTable : public QlumDiagnosticTable<QlumSubscriptionRow>
{
    Q_OBJECT
public:
    enum Column {
        Name,
        Session,
        Priority,
        Interval,
        Publishing,
        Items,
        DisabledItems,
        Notifications,
        NotificationRate,
        Unacknowledged,
        Discarded,
        Late,
        Overflows
    };

    /// Without rows.
    explicit QlumSubscriptionTable(QObject* parent = nullptr);

    /// The one by which the view follows the counts; 0 for none.
    void setOwnSubscription(OpcUa_UInt32 id);
    /// Names of sessions by their ids, for the column.
    void setSessionNames(QHash<QString, QString> names);

protected:
    [[nodiscard]] QVariant cell(const QlumSubscriptionRow& row, int column, int role) const override;
    void follow(QlumSubscriptionRow& row, const QlumSubscriptionRow& before, double seconds) const override;

private:
    [[nodiscard]] bool isOfView(const QlumSubscriptionRow& row) const
    {
        return m_own != 0 && row.id == m_own;
    }
    [[nodiscard]] QVariant textCell(const QlumSubscriptionRow& row, int column) const;

    OpcUa_UInt32 m_own = 0;
    QHash<QString, QString> m_sessionNames;
};
