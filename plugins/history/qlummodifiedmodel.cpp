#include <plugins/history/qlummodifiedmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlumnonnumericmodel.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QString>
#include <QVariant>

#include <utility>
#include <vector>

namespace {

QString changeText(OpcUa_HistoryUpdateType what)
{
    switch (what) {
    case OpcUa_HistoryUpdateType_Insert:
        return QlumModifiedModel::tr("inserted");
    case OpcUa_HistoryUpdateType_Replace:
        return QlumModifiedModel::tr("replaced");
    case OpcUa_HistoryUpdateType_Update:
        return QlumModifiedModel::tr("updated");
    case OpcUa_HistoryUpdateType_Delete:
        return QlumModifiedModel::tr("deleted");
    default:
        return QString::number(static_cast<int>(what));
    }
}

} // namespace

QlumModifiedModel::QlumModifiedModel(QObject* parent)
    : QlumTableModel({tr("Variable"), tr("Source Timestamp"), tr("Server Timestamp"), tr("Value"),
                      tr("Status"), tr("Modified At"), tr("Modification"), tr("User")},
                     parent)
{
}

void QlumModifiedModel::add(int key, const QString& name, std::vector<QlumModifiedValue> values)
{
    std::vector<QlumModifiedRow> rows;
    rows.reserve(values.size());
    for (QlumModifiedValue& value : values)
        rows.push_back({key, name, std::move(value)});
    append(std::move(rows));
}

QVariant QlumModifiedModel::cell(const QlumModifiedRow& row, int column, int role) const
{
    const QlumModifiedValue& value = row.value;
    if (column == Status && role != Qt::DisplayRole)
        return qlumStatusCell(qlumStatusLevel(value.status), role);
    if (role != Qt::DisplayRole)
        return {};
    switch (column) {
    case Name:
        return qlumSingleLine(row.name);
    case Source:
        return qlumHistoryTime(value.source, false);
    case Server:
        return qlumHistoryTime(value.server, false);
    case Value:
        return qlumSingleLine(value.value);
    case Status:
        return qlumStatusText(value.status);
    case Changed:
        return qlumHistoryTime(value.changed, false);
    case What:
        return changeText(value.what);
    default:
        return qlumSingleLine(value.user);
    }
}
