#include <plugins/performance/qlumsweep.h>

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <array>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumSweep)
};

QString duration(double microseconds)
{
    return Text::tr("%1 us").arg(QLocale().toString(microseconds, 'f', microseconds < 100 ? 1 : 0));
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
    const double enough = qlumEnough(points);
    if (enough <= 0)
        return Text::tr("No step of the sweep succeeded.");
    const QString size = QLocale().toString(enough, 'f', 0);
    if (over == QlumSweepOver::Outstanding)
        return Text::tr("With %1 call(s) outstanding the server answers as many as it can, within a tenth: "
                        "more do not help.")
            .arg(size);
    const auto fit = qlumFitSweep(points);
    if (!fit)
        return Text::tr("From %1 node(s) a call on, more gain less than a tenth.").arg(size);
    QString text =
        Text::tr("A call costs %1, and %2 for each node.").arg(duration(fit->fixed), duration(fit->each));
    if (fit->explained < 0.9)
        text +=
            QLatin1Char(' ') + Text::tr("The steps do not lie on a line, so take that as a rough figure.");
    return text + QLatin1Char(' ') +
           Text::tr("From %1 node(s) a call on, more gain less than a tenth.").arg(size);
}
