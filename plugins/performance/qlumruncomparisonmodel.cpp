#include <plugins/performance/qlumruncomparisonmodel.h>

#include <app/api/qlumtext.h>
#include <plugins/performance/qlumfigures.h>
#include <plugins/performance/qlumrunmodel.h>

#include <QLocale>

#include <cmath>
#include <deque>
#include <limits>
#include <set>
#include <utility>

namespace {
constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

double spreadValue(const std::optional<QlumSpread>& spread, double QlumSpread::*member)
{
    return spread ? (*spread).*member : unknown;
}

// There is no call without any: they were not counted.
double knownBytes(quint64 number)
{
    return number > 0 ? static_cast<double>(number) : unknown;
}

double failures(const QlumFigures& figures, OpcUa_StatusCode status)
{
    const auto found = figures.failures.find(status);
    return found == figures.failures.end() ? 0 : static_cast<double>(found->second);
}
} // namespace

QlumRunComparisonModel::QlumRunComparisonModel(QObject* parent)
    : QlumTableModel({tr("Figure"), tr("This Run"), tr("Compared With"), tr("Difference"), tr("Ratio")},
                     parent)
{
}

void QlumRunComparisonModel::show(const std::optional<QlumMeasurementRun>& run,
                                  const std::optional<QlumMeasurementRun>& other)
{
    std::deque<QlumComparedFigure> rows;
    if (!run)
        return reset();
    const QlumFigures& mine = run->figures;
    const QlumFigures none;
    const QlumFigures& others = other ? other->figures : none;
    const auto add = [&](const QString& name, double value, double compared, bool isTime) {
        rows.push_back({name, value, other ? compared : unknown, isTime});
    };
    const auto count = [&](const QString& name, quint64 value, quint64 compared) {
        add(name, static_cast<double>(value), static_cast<double>(compared), false);
    };
    const auto spread = [&](const QString& name, const std::optional<QlumSpread>& one,
                            const std::optional<QlumSpread>& two, double QlumSpread::*member) {
        add(name, spreadValue(one, member), spreadValue(two, member), true);
    };
    count(tr("Calls"), mine.calls, others.calls);
    std::set<OpcUa_StatusCode> statuses;
    for (const QlumFigures* figures : {&mine, &others})
        for (const auto& [status, times] : figures->failures)
            statuses.insert(status);
    for (const OpcUa_StatusCode status : statuses)
        add(tr("Failed with %1").arg(qlumStatusText(status)), failures(mine, status),
            failures(others, status), false);
    const bool isDelay = run->plan.kind == QlumMeasuredKind::Notifications;
    const QString what = isDelay ? tr("Since the server's time stamp") : tr("Duration");
    const auto all = [&](const QString& of, const std::optional<QlumSpread>& one,
                         const std::optional<QlumSpread>& two) {
        spread(tr("%1: minimum").arg(of), one, two, &QlumSpread::minimum);
        spread(tr("%1: median").arg(of), one, two, &QlumSpread::median);
        spread(tr("%1: mean").arg(of), one, two, &QlumSpread::mean);
        spread(tr("%1: 95 % of the calls at most").arg(of), one, two, &QlumSpread::percentile95);
        spread(tr("%1: 99 % of the calls at most").arg(of), one, two, &QlumSpread::percentile99);
        spread(tr("%1: maximum").arg(of), one, two, &QlumSpread::maximum);
        spread(tr("%1: standard deviation").arg(of), one, two, &QlumSpread::deviation);
    };
    all(what, mine.duration, others.duration);
    if (isDelay) {
        all(tr("Since the source's time stamp"), mine.own, others.own);
    } else if (mine.own) {
        spread(tr("Client's share (encode, decode): median"), mine.own, others.own, &QlumSpread::median);
        add(tr("Network and server: median"),
            spreadValue(mine.duration, &QlumSpread::median) - spreadValue(mine.own, &QlumSpread::median),
            spreadValue(others.duration, &QlumSpread::median) - spreadValue(others.own, &QlumSpread::median),
            true);
    }
    add(tr("Calls a second"), mine.callsPerSecond(), others.callsPerSecond(), false);
    add(tr("Values a second"), mine.valuesPerSecond(), others.valuesPerSecond(), false);
    add(tr("Bytes sent"), knownBytes(mine.totals.bytesOut), knownBytes(others.totals.bytesOut), false);
    add(tr("Bytes received"), knownBytes(mine.totals.bytesIn), knownBytes(others.totals.bytesIn), false);
    add(tr("Time in all"), mine.totals.seconds * 1e6, others.totals.seconds * 1e6, true);
    reset(std::move(rows));
}

QVariant QlumRunComparisonModel::cell(const QlumComparedFigure& figure, int column, int role) const
{
    if (role == Qt::TextAlignmentRole && column != Figure)
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    if (column == Figure)
        return figure.name;
    double value = figure.value;
    if (column == Other)
        value = figure.other;
    else if (column == Difference)
        value = figure.value - figure.other;
    else if (column == Ratio)
        value = figure.other != 0 ? figure.value / figure.other : unknown;
    if (!std::isfinite(value))
        return role == Qt::DisplayRole ? QVariant(QStringLiteral("-")) : QVariant();
    if (role == Qt::EditRole)
        return value;
    if (column == Ratio)
        return QLocale().toString(value, 'f', 3);
    if (figure.isTime)
        return qlumMicrosecondsText(value);
    return QLocale().toString(value, 'f', value == std::floor(value) ? 0 : 1);
}
