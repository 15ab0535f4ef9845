#include <plugins/dataaccess/parts/qlumchangelogmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QDateTime>
#include <QLocale>

#include <algorithm>

namespace {
QString loggedTime(OpcUa_DateTime time)
{
    const QDateTime local = qlumDateTime(time);
    return local.isValid() ? qlumShowDateTime(local) : QString();
}

// The server says so in the value behind the gap, OPC 10000-4, 7.39.
bool hasGapBefore(const UaDataValue& value)
{
    constexpr OpcUa_StatusCode infoType = 0x00000C00, dataValue = 0x00000400, overflow = 0x00000080;
    const OpcUa_StatusCode code = value.statusCode().code();
    return (code & infoType) == dataValue && (code & overflow) != 0;
}
} // namespace

QlumChangeLogModel::QlumChangeLogModel(int maximum, QObject* parent)
    : QlumTableModel({tr("Received"), tr("Source Time"), tr("Server Time"), tr("Server"), tr("Node Id"),
                      tr("Display Name"), tr("Value"), tr("Unit"), tr("Status")},
                     parent),
      m_maximum(static_cast<std::size_t>(std::max(1, maximum)))
{
    setMaximumRows(maximum);
}

void QlumChangeLogModel::flush()
{
    const std::size_t all = rows().size() + gatheredCount();
    m_dropped += all > m_maximum ? all - m_maximum : 0;
    QlumTableModel::flush();
    emit counted();
}

void QlumChangeLogModel::addLost(quint64 count)
{
    m_lost += count;
    emit counted();
}

void QlumChangeLogModel::clear()
{
    reset();
    m_dropped = m_lost = 0;
    emit counted();
}

QString QlumChangeLogModel::text(const QlumLoggedChange& change, int column) const
{
    const UaDataValue& value = change.value;
    switch (column) {
    case Received:
        return loggedTime(change.received);
    case SourceTime:
        return loggedTime(value.sourceTimestamp().value());
    case ServerTime:
        return loggedTime(value.serverTimestamp().value());
    case Server:
        return qlumSingleLine(change.item->server);
    case NodeId:
        return qlumSingleLine(change.item->nodeId);
    case Name:
        return qlumSingleLine(change.item->name);
    case Value:
        return qlumCellText(value.value(), change.item->context ? *change.item->context : QlumValueContext());
    case Unit:
        return qlumSingleLine(change.item->unit);
    case Status:
        return hasGapBefore(value) ? tr("%1, the server's queue has lost values before it")
                                         .arg(qlumStatusText(value.statusCode().code()))
                                   : qlumStatusText(value.statusCode().code());
    default:
        return {};
    }
}

QVariant QlumChangeLogModel::cell(const QlumLoggedChange& change, int column, int role) const
{
    if (role == Qt::DisplayRole)
        return text(change, column);
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(text(change, column));
    return column == Status ? qlumStatusCell(qlumStatusLevel(change.value.statusCode().code()), role)
                            : QVariant();
}
