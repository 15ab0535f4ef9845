#include <plugins/history/qlumnonnumericmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <plugins/history/qlumhistoryplan.h>
#include <uabase/values/uadatetime.h>

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <utility>
#include <vector>

namespace {
constexpr int mostRows = 1'000'000;
}

QString qlumHistoryTime(const UaDateTime& time, bool isUtc)
{
    if (time.isNull())
        return {};
    const QDateTime moment =
        QDateTime::fromMSecsSinceEpoch(time.toMSecsSinceEpoch(), isUtc ? Qt::UTC : Qt::LocalTime);
    return moment.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
}

QlumNonNumericModel::QlumNonNumericModel(QObject* parent)
    : QlumTableModel({tr("Source Timestamp"), tr("Server Timestamp"), tr("Value")}, parent)
{
    setMaximumRows(mostRows);
}

void QlumNonNumericModel::add(std::vector<QlumHistoryText> values)
{
    append(std::move(values));
}

void QlumNonNumericModel::setUtc(bool isUtc)
{
    m_isUtc = isUtc;
    tellColumnChanged(SourceTimestamp);
    tellColumnChanged(ServerTimestamp);
}

QVariant QlumNonNumericModel::cell(const QlumHistoryText& value, int column, int role) const
{
    if (role == Qt::ToolTipRole && column == Value)
        return qlumPlainToolTip(qlumCutText(value.value, 2000));
    if (role != Qt::DisplayRole)
        return {};
    switch (column) {
    case SourceTimestamp:
        return qlumHistoryTime(value.source, m_isUtc);
    case ServerTimestamp:
        return qlumHistoryTime(value.server, m_isUtc);
    default:
        return qlumSingleLine(value.value);
    }
}
