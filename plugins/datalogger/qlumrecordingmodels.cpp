#include <plugins/datalogger/qlumrecordingmodels.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QCoreApplication>
#include <QLocale>
#include <QObject>
#include <QString>
#include <QVariant>

#include <deque>
#include <vector>

namespace {

struct RecordingModelText
{
    Q_DECLARE_TR_FUNCTIONS(QlumRecordingModels)
};

QVariant timeCell(OpcUa_DateTime time)
{
    return time == 0 ? QVariant() : QVariant(qlumShowDateTime(time));
}

QString sequenceText(const recording::Mark& mark)
{
    if (mark.first == 0 && mark.last == 0)
        return QString();
    return mark.first == mark.last ? QString::number(mark.first)
                                   : QStringLiteral("%1-%2").arg(mark.first).arg(mark.last);
}

} // namespace

QString qlumMarkText(recording::MarkKind kind)
{
    using Kind = recording::MarkKind;
    using T = RecordingModelText;
    switch (kind) {
    case Kind::Started:
        return T::tr("Recording started");
    case Kind::Stopped:
        return T::tr("Recording stopped");
    case Kind::Gap:
        return T::tr("Nothing was recorded");
    case Kind::ConnectionLost:
        return T::tr("Connection lost");
    case Kind::ConnectionBack:
        return T::tr("Connection back");
    case Kind::SessionNew:
        return T::tr("New session");
    case Kind::SubscriptionLost:
        return T::tr("The server ended the subscription");
    case Kind::Missing:
        return T::tr("Notifications missing");
    case Kind::Republished:
        return T::tr("Notification sent again");
    case Kind::ItemWatched:
        return T::tr("Item is reported");
    case Kind::ItemRefused:
        return T::tr("Item refused");
    case Kind::ItemWaiting:
        return T::tr("Item waits for its server");
    case Kind::Overflow:
        return T::tr("The server's queue lost values");
    case Kind::Lost:
        return T::tr("Values lost here");
    case Kind::Paused:
        return T::tr("Paused: disk nearly full");
    case Kind::Resumed:
        return T::tr("Goes on");
    case Kind::ClockStep:
        return T::tr("The clock was set, or the computer slept");
    case Kind::FileTrouble:
        return T::tr("Writing failed for a while");
    case Kind::OldDropped:
        return T::tr("Old records deleted");
    case Kind::Continued:
        return T::tr("Continues another file");
    case Kind::Note:
        return T::tr("Note");
    }
    return QString();
}

bool qlumIsGap(recording::MarkKind kind)
{
    using Kind = recording::MarkKind;
    switch (kind) {
    case Kind::Gap:
    case Kind::ConnectionLost:
    case Kind::SessionNew:
    case Kind::SubscriptionLost:
    case Kind::Missing:
    case Kind::ItemRefused:
    case Kind::Overflow:
    case Kind::Lost:
        return true;
    default:
        return false;
    }
}

namespace {

// What is no gap, but worth a look.
QlumStatusLevel levelOf(recording::MarkKind kind)
{
    using Kind = recording::MarkKind;
    if (qlumIsGap(kind))
        return QlumStatusLevel::Bad;
    const bool isNotable = kind == Kind::Paused || kind == Kind::ItemWaiting || kind == Kind::ClockStep ||
                           kind == Kind::FileTrouble || kind == Kind::OldDropped;
    return isNotable ? QlumStatusLevel::Uncertain : QlumStatusLevel::Good;
}

} // namespace

// ---- items

QlumRecordedItemModel::QlumRecordedItemModel(QObject* parent)
    : QlumTableModel({tr("Server"), tr("Name"), tr("Node"), tr("Namespace"), tr("Data Type"), tr("Records"),
                      tr("First"), tr("Last")},
                     parent)
{
}

void QlumRecordedItemModel::setItems(const std::vector<recording::RecordReader::Item>& items)
{
    m_names.clear();
    for (const recording::RecordReader::Item& one : items)
        m_names.insert(one.number, one.item.server + QStringLiteral(": ") +
                                       (one.item.name.isEmpty() ? one.item.nodeId : one.item.name));
    reset({items.begin(), items.end()});
}

QVariant QlumRecordedItemModel::cell(const recording::RecordReader::Item& row, int column, int role) const
{
    if (role == Qt::TextAlignmentRole && column == 5)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return QVariant();
    const QVariant cells[] = {row.item.server,       row.item.name,     row.item.nodeId,
                              row.item.namespaceUri, row.item.dataType, static_cast<qulonglong>(row.records),
                              timeCell(row.first),   timeCell(row.last)};
    return cells[column];
}

// ---- marks

QlumMarkModel::QlumMarkModel(const QlumRecordedItemModel& items, QObject* parent)
    : QlumTableModel({tr("Time"), tr("Event"), tr("Text"), tr("Server"), tr("Item"), tr("Count"), tr("From"),
                      tr("To"), tr("Sequence Numbers"), tr("Status")},
                     parent),
      m_items(items)
{
}

void QlumMarkModel::setMarks(const std::vector<recording::Mark>& marks)
{
    reset({marks.begin(), marks.end()});
}

QVariant QlumMarkModel::cell(const recording::Mark& row, int column, int role) const
{
    if (column == 1 && role != Qt::DisplayRole)
        return qlumStatusCell(levelOf(row.kind), role);
    if (role != Qt::DisplayRole)
        return QVariant();
    const QVariant cells[] = {
        timeCell(row.time),       qlumMarkText(row.kind),
        qlumSingleLine(row.text), row.server,
        m_items.nameOf(row.item), row.count == 0 ? QVariant() : QVariant(static_cast<qulonglong>(row.count)),
        timeCell(row.from),       timeCell(row.to),
        sequenceText(row),        row.status == 0 ? QString() : qlumStatusText(row.status)};
    return cells[column];
}

// ---- values

QlumRecordModel::QlumRecordModel(const QlumRecordedItemModel& items, QObject* parent)
    : QlumTableModel({tr("Received"), tr("Item"), tr("Value"), tr("Status"), tr("Source Time"),
                      tr("Server Time"), tr("Sequence Number")},
                     parent),
      m_items(items)
{
}

void QlumRecordModel::setRecords(const std::vector<recording::Record>& records)
{
    reset({records.begin(), records.end()});
}

QVariant QlumRecordModel::cell(const recording::Record& row, int column, int role) const
{
    const OpcUa_StatusCode status = row.value.statusCode().code();
    if (column == 3 && role != Qt::DisplayRole)
        return qlumStatusCell(qlumStatusLevel(status), role);
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (column) {
    case 0:
        return timeCell(row.received);
    case 1:
        return m_items.nameOf(row.item);
    case 2:
        return qlumCutText(qlumSingleLine(toQString(row.value.value().toString())));
    case 3:
        return qlumStatusText(status);
    case 4:
        return timeCell(row.value.sourceTimestamp());
    case 5:
        return timeCell(row.value.serverTimestamp());
    default:
        return row.sequenceNumber == 0 ? QVariant() : QVariant(row.sequenceNumber);
    }
}
