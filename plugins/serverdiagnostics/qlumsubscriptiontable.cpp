#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>

#include <app/api/qlumtext.h>
#include <plugins/serverdiagnostics/qlumdiagnosticvalue.h>

#include <QFont>

#include <utility>

namespace {
QVariant countCell(const QlumSubscriptionRow& row, int column)
{
    if (row.diagnostics.isNull())
        return {};
    switch (column) {
    case QlumSubscriptionTable::Priority:
        return row.priority;
    case QlumSubscriptionTable::Interval:
        return row.interval;
    case QlumSubscriptionTable::Items:
        return row.items;
    case QlumSubscriptionTable::DisabledItems:
        return row.disabledItems;
    case QlumSubscriptionTable::Notifications:
        return row.notifications;
    case QlumSubscriptionTable::Unacknowledged:
        return row.unacknowledged;
    case QlumSubscriptionTable::Discarded:
        return row.discarded;
    case QlumSubscriptionTable::Late:
        return row.late;
    default:
        return row.overflows;
    }
}
} // namespace

QlumSubscriptionTable::QlumSubscriptionTable(QObject* parent)
    : QlumDiagnosticTable({tr("Subscription"), tr("Session"), tr("Priority"), tr("Publishing Interval [ms]"),
                           tr("Publishing"), tr("Items"), tr("Disabled Items"), tr("Notifications"),
                           tr("Notifications per Second"), tr("Unacknowledged"), tr("Discarded"),
                           tr("Late Publishes"), tr("Queue Overflows")},
                          parent)
{
}

void QlumSubscriptionTable::setOwnSubscription(OpcUa_UInt32 id)
{
    m_own = id;
    tellColumnChanged(Name);
}

void QlumSubscriptionTable::setSessionNames(QHash<QString, QString> names)
{
    if (m_sessionNames == names)
        return;
    m_sessionNames = std::move(names);
    tellColumnChanged(Session);
}

QVariant QlumSubscriptionTable::textCell(const QlumSubscriptionRow& row, int column) const
{
    if (column == Name)
        return isOfView(row) ? row.name + tr(" (Diagnostic subscription)") : qlumDiagnosticName(row.name);
    if (column == Publishing)
        return row.diagnostics.isNull() ? QString() : row.isPublishing ? tr("yes") : tr("no");
    if (row.sessionId.isNull())
        return row.diagnostics.isNull() ? QString() : tr("none");
    const QString id = toQString(row.sessionId.toXmlString());
    const QString name = m_sessionNames.value(id, row.sessionName);
    return qlumDiagnosticName(name.isEmpty() ? id : name);
}

QVariant QlumSubscriptionTable::cell(const QlumSubscriptionRow& row, int column, int role) const
{
    if (role == qlumDiagnosticKeyRole)
        return row.key;
    const bool isForSorting = role == qlumDiagnosticSortRole;
    if (role == Qt::FontRole && column == Name && row.isOwn) {
        QFont font;
        font.setBold(true);
        return font;
    }
    if (role == Qt::TextAlignmentRole && column >= Priority && column != Publishing)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole && column == Name && row.isOwn)
        return tr("A subscription of this session");
    if (role != Qt::DisplayRole && !isForSorting)
        return {};
    if (isForSorting && column == Name && row.id != 0)
        return row.id;
    if (column == NotificationRate)
        return isForSorting ? QVariant(row.notificationRate) : QVariant(qlumRateText(row.notificationRate));
    const bool isText = column == Name || column == Session || column == Publishing;
    return isText ? textCell(row, column) : countCell(row, column);
}

void QlumSubscriptionTable::follow(QlumSubscriptionRow& row, const QlumSubscriptionRow& before,
                                   double seconds) const
{
    if (!row.diagnostics.isNull() && !before.diagnostics.isNull())
        row.notificationRate = qlumRate(before.notifications, row.notifications, seconds);
}
