#include <plugins/performance/qlumrunmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>

#include <QLocale>
#include <QStringList>

#include <cmath>
#include <optional>
#include <vector>

namespace {
constexpr int mostOfName = 100;

// Without marks between thousands: rows are copied and exported as they are shown.
QString number(double value, int decimals = 0)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value, 'f', decimals);
}

const QlumSpread* durationOf(const QlumMeasurementRun& run)
{
    return run.figures.duration ? &*run.figures.duration : nullptr;
}

QVariant spreadCell(const QlumMeasurementRun& run, double QlumSpread::*member, int role)
{
    const QlumSpread* spread = durationOf(run);
    if (!spread)
        return role == Qt::DisplayRole ? QVariant(QStringLiteral("-")) : QVariant();
    return role == Qt::DisplayRole ? QVariant(number(spread->*member, 1)) : QVariant(spread->*member);
}

double perCall(const QlumMeasurementRun& run, quint64 bytes)
{
    return run.figures.calls > 0 ? static_cast<double>(bytes) / static_cast<double>(run.figures.calls) : 0;
}
} // namespace

QString qlumMicrosecondsText(double microseconds)
{
    const double size = std::abs(microseconds);
    const double divisor = size >= 1e6 ? 1e6 : size >= 1e3 ? 1e3 : 1;
    const double shown = microseconds / divisor;
    const int decimals = std::abs(shown) >= 100 ? 0 : std::abs(shown) >= 10 ? 1 : 2;
    const QString unit = divisor > 1e3 ? QStringLiteral("s")
                         : divisor > 1 ? QStringLiteral("ms")
                                       : QStringLiteral("us");
    return QStringLiteral("%1 %2").arg(number(shown, decimals), unit);
}

QlumRunModel::QlumRunModel(QObject* parent)
    : QlumTableModel({tr("Name"),         tr("Measured"),     tr("Server"),         tr("Endpoint"),
                      tr("Nodes a Call"), tr("Outstanding"),  tr("Calls"),          tr("Failed"),
                      tr("Minimum [us]"), tr("Median [us]"),  tr("Mean [us]"),      tr("95 % [us]"),
                      tr("99 % [us]"),    tr("Maximum [us]"), tr("Deviation [us]"), tr("Client's Share [us]"),
                      tr("Calls/s"),      tr("Values/s"),     tr("Bytes Out/Call"), tr("Bytes In/Call"),
                      tr("Begun"),        tr("Remarks")},
                     parent)
{
}

void QlumRunModel::addRun(const QlumMeasurementRun& run)
{
    append(std::vector<QlumMeasurementRun>{run});
}

Qt::ItemFlags QlumRunModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QlumTableModel::flags(index);
    return index.column() == Name ? flags | Qt::ItemIsEditable : flags;
}

bool QlumRunModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const QString name = qlumSingleLine(value.toString()).trimmed().left(mostOfName);
    if (!index.isValid() || role != Qt::EditRole || index.column() != Name || name.isEmpty())
        return false;
    change(index.row(), [&name](QlumMeasurementRun& run) { run.name = name; });
    emit renamed();
    return true;
}

QVariant QlumRunModel::cell(const QlumMeasurementRun& run, int column, int role) const
{
    if (role == Qt::TextAlignmentRole && column >= NodesPerCall && column <= BytesIn)
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(run.remarks.isEmpty() ? run.name : run.remarks.join(QLatin1Char('\n')));
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    const auto shown = [role](double value, int decimals = 0) {
        return role == Qt::DisplayRole ? QVariant(number(value, decimals)) : QVariant(value);
    };
    switch (column) {
    case Name:
        return run.name;
    case Measured:
        return qlumMeasuredName(run.plan.kind);
    case Server:
        return run.server;
    case Endpoint:
        return run.endpoint;
    case NodesPerCall:
        return shown(run.plan.nodesPerCall);
    case Outstanding:
        return shown(run.plan.outstanding);
    case Calls:
        return shown(static_cast<double>(run.figures.calls));
    case Failed:
        return shown(static_cast<double>(run.figures.failed()));
    case Minimum:
        return spreadCell(run, &QlumSpread::minimum, role);
    case Median:
        return spreadCell(run, &QlumSpread::median, role);
    case Mean:
        return spreadCell(run, &QlumSpread::mean, role);
    case Percentile95:
        return spreadCell(run, &QlumSpread::percentile95, role);
    case Percentile99:
        return spreadCell(run, &QlumSpread::percentile99, role);
    case Maximum:
        return spreadCell(run, &QlumSpread::maximum, role);
    case Deviation:
        return spreadCell(run, &QlumSpread::deviation, role);
    case Own: // of notifications it is something else, which the figures show
        if (!run.figures.own || run.plan.kind == QlumMeasuredKind::Notifications)
            return role == Qt::DisplayRole ? QVariant(QStringLiteral("-")) : QVariant();
        return shown(run.figures.own->median, 1);
    case CallsPerSecond:
        return shown(run.figures.callsPerSecond(), 1);
    case ValuesPerSecond:
        return shown(run.figures.valuesPerSecond(), 1);
    case BytesOut:
    case BytesIn: {
        const QlumRunTotals& totals = run.figures.totals;
        const quint64 bytes = column == BytesOut ? totals.bytesOut : totals.bytesIn;
        if (bytes == 0) // they were not counted
            return role == Qt::DisplayRole ? QVariant(QStringLiteral("-")) : QVariant();
        return shown(perCall(run, bytes));
    }
    case Begun:
        return role == Qt::DisplayRole ? QVariant(qlumShowDateTime(run.begun)) : QVariant(run.begun);
    case Remarks:
        return run.remarks.join(QLatin1Char(' '));
    default:
        return {};
    }
}
