#include <plugins/serverdiagnostics/qlumsessiontable.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <plugins/serverdiagnostics/qlumdiagnosticvalue.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QDateTime>
#include <QFont>
#include <QLocale>

#include <algorithm>

namespace {
QString noteOf(const QlumSessionRow& row)
{
    constexpr double minute = 60;
    if (row.silence >= 2 * minute)
        return QlumSessionTable::tr("Forgotten? No contact for %1 min")
            .arg(QLocale::system().toString(row.silence / minute, 'f', 0));
    if (row.silence >= 0)
        return QlumSessionTable::tr("Forgotten? No contact for %1 s")
            .arg(QLocale::system().toString(row.silence, 'f', 0));
    return row.isOwn ? QlumSessionTable::tr("This session") : QString();
}

QVariant timeCell(const UaDateTime& time, bool isForSorting)
{
    const QDateTime local = qlumDateTime(time);
    if (!local.isValid())
        return {};
    return isForSorting ? QVariant(local) : QVariant(qlumShowDateTime(local));
}

QVariant textCell(const QlumSessionRow& row, int column)
{
    switch (column) {
    case QlumSessionTable::Name:
        return qlumSessionTitle(row);
    case QlumSessionTable::Application:
        return qlumDiagnosticName(row.applicationName.isEmpty() ? row.applicationUri : row.applicationName);
    case QlumSessionTable::User:
        return qlumDiagnosticName(row.user);
    case QlumSessionTable::Security:
        return row.securityPolicy.isEmpty() || row.securityPolicy == row.securityMode
                   ? row.securityMode
                   : qlumDiagnosticName(QStringLiteral("%1, %2").arg(row.securityMode, row.securityPolicy));
    case QlumSessionTable::Endpoint:
        return qlumDiagnosticName(row.endpointUrl);
    default:
        return noteOf(row);
    }
}

// Nothing of what is not known.
QVariant numberCell(const QlumSessionRow& row, int column)
{
    if (row.diagnostics.isNull())
        return {};
    constexpr double second = 1000;
    switch (column) {
    case QlumSessionTable::Timeout:
        return row.timeout / second;
    case QlumSessionTable::Subscriptions:
        return row.subscriptions;
    case QlumSessionTable::Items:
        return row.items;
    case QlumSessionTable::PublishRequests:
        return row.publishRequests;
    case QlumSessionTable::Requests:
        return row.requests;
    case QlumSessionTable::Errors:
        return row.errors;
    default:
        return row.unauthorized;
    }
}
} // namespace

QString qlumSessionTitle(const QlumSessionRow& row)
{
    const QString name = qlumDiagnosticName(row.name);
    return row.isOwn ? name + QlumSessionTable::tr(" (Current session)") : name;
}

QlumSessionTable::QlumSessionTable(QObject* parent)
    : QlumDiagnosticTable({tr("Session"), tr("Application"), tr("User"), tr("Security"), tr("Endpoint"),
                           tr("Connected"), tr("Last Contact"), tr("Time-out [s]"), tr("Subscriptions"),
                           tr("Items"), tr("Publish Requests"), tr("Requests"), tr("Requests per Second"),
                           tr("Errors"), tr("Unauthorized"), tr("Note")},
                          parent)
{
}

int QlumSessionTable::forgottenCount() const
{
    return static_cast<int>(std::count_if(
        rows().begin(), rows().end(), [](const QlumSessionRow& row) { return row.silence >= 0; }));
}

QVariant QlumSessionTable::cell(const QlumSessionRow& row, int column, int role) const
{
    if (role == qlumDiagnosticKeyRole)
        return row.key;
    const bool isForSorting = role == qlumDiagnosticSortRole;
    if (role == Qt::ToolTipRole && column == Name)
        return qlumPlainToolTip(row.key);
    if (role == Qt::FontRole && row.isOwn && column == Name) {
        QFont font;
        font.setBold(true);
        return font;
    }
    if (column == Note && row.silence >= 0 && role != Qt::DisplayRole && !isForSorting)
        return qlumStatusCell(QlumStatusLevel::Uncertain, role);
    if (role == Qt::TextAlignmentRole && column >= Timeout && column < Note)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && !isForSorting)
        return {};
    if (column == Connected || column == LastContact)
        return timeCell(column == Connected ? row.connected : row.lastContact, isForSorting);
    if (column == RequestRate)
        return isForSorting ? QVariant(row.requestRate) : QVariant(qlumRateText(row.requestRate));
    return column < Connected || column == Note ? textCell(row, column) : numberCell(row, column);
}

void QlumSessionTable::follow(QlumSessionRow& row, const QlumSessionRow& before, double seconds) const
{
    if (!row.diagnostics.isNull() && !before.diagnostics.isNull())
        row.requestRate = qlumRate(before.requests, row.requests, seconds);
}
