#include <plugins/performance/qlumsweep.h>

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <array>

namespace {
class SweepTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumSweep)
};

QString duration(double microseconds)
{
    return SweepTexts::tr("%1 us").arg(QLocale().toString(microseconds, 'f', microseconds < 100 ? 1 : 0));
}
} // namespace

std::vector<quint32> qlumSweepSizes(quint32 largest)
{
    constexpr std::array<quint32, 3> steps{1, 2, 5};
    std::vector<quint32> sizes;
    for (quint64 decade = 1; decade <= largest; decade *= 10)
        for (const quint32 step : steps)
            if (decade * step <= largest)
                sizes.push_back(static_cast<quint32>(decade * step));
    if (!sizes.empty() && sizes.back() != largest)
        sizes.push_back(largest);
    return sizes;
}

quint32 qlumNodesLimit(QlumMeasuredKind kind, const UaClientSdk::OperationLimits& limits)
{
    switch (kind) {
    case QlumMeasuredKind::Read:
        return limits.maxNodesPerRead;
    case QlumMeasuredKind::ReadRegistered:
        return limits.maxNodesPerRead == 0 || limits.maxNodesPerRegisterNodes == 0
                   ? std::max(limits.maxNodesPerRead, limits.maxNodesPerRegisterNodes)
                   : std::min(limits.maxNodesPerRead, limits.maxNodesPerRegisterNodes);
    case QlumMeasuredKind::Write:
        return limits.maxNodesPerWrite;
    case QlumMeasuredKind::Browse:
        return limits.maxNodesPerBrowse;
    case QlumMeasuredKind::TranslatePaths:
        return limits.maxNodesPerTranslateBrowsePathsToNodeIds;
    case QlumMeasuredKind::Call:
        return limits.maxNodesPerMethodCall;
    case QlumMeasuredKind::MonitoredItems:
        return limits.maxMonitoredItemsPerCall;
    case QlumMeasuredKind::Session:
    case QlumMeasuredKind::Notifications:
        break;
    }
    return 0;
}

QlumMeasurementPlan qlumSweepStep(const QlumMeasurementPlan& plan, QlumSweepOver over, quint32 size)
{
    QlumMeasurementPlan step = plan;
    (over == QlumSweepOver::NodesPerCall ? step.nodesPerCall : step.outstanding) = size;
    return step;
}

QlumSweepPoint qlumSweepPoint(const QlumMeasurementRun& run, QlumSweepOver over)
{
    QlumSweepPoint point;
    point.size = over == QlumSweepOver::NodesPerCall ? run.plan.nodesPerCall : run.plan.outstanding;
    point.duration = run.figures.duration ? run.figures.duration->median : 0;
    point.perSecond = run.figures.valuesPerSecond();
    return point;
}

QString qlumSweepText(const std::vector<QlumSweepPoint>& points, QlumSweepOver over)
{
    const double best = qlumEnough(points);
    if (best <= 0)
        return SweepTexts::tr("No step of the sweep succeeded.");
    double largest = 0;
    for (const QlumSweepPoint& point : points)
        largest = std::max(largest, point.size);
    const auto number = [](double size) { return QLocale().toString(size, 'f', 0); };
    if (over == QlumSweepOver::Outstanding)
        return best < largest
                   ? SweepTexts::tr(
                         "With %1 call(s) outstanding the server answers as many as it can, within a "
                         "tenth: more do not help.")
                         .arg(number(best))
                   : SweepTexts::tr("With %1 calls outstanding, the most that were tried, the server answers "
                                    "most.")
                         .arg(number(best));
    const auto fit = qlumFitSweep(points);
    const bool isLine = fit && fit->explained >= 0.9;
    QString text;
    if (fit)
        text = SweepTexts::tr("A call costs %1, and %2 for each node.")
                   .arg(duration(fit->fixed), duration(fit->each)) +
               QLatin1Char(' ');
    if (fit && !isLine)
        text += SweepTexts::tr("The steps do not lie on a line, so take that as a rough figure.") +
                QLatin1Char(' ');
    const double enough = isLine && fit->worthwhile > 0 ? fit->worthwhile : best;
    if (enough < largest)
        return text +
               SweepTexts::tr("From %1 node(s) a call on, more gain less than a tenth.").arg(number(enough));
    if (enough > largest)
        return text +
               SweepTexts::tr("The largest call, of %1 nodes, is the best: only from %2 on more would gain "
                              "less than a tenth.")
                   .arg(number(largest), number(enough));
    return text + SweepTexts::tr("The largest call, of %1 nodes, is the best.").arg(number(largest));
}
