// What a project keeps of a performance view.
#include <plugins/performance/qlumperformanceview.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <plugins/performance/qlumperformancepanel.h>
#include <plugins/performance/qlumrunmodel.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlummessagebar.h>

#include <QDateTime>
#include <QSettings>

#include <algorithm>
#include <cmath>

namespace {
constexpr int mostNodes = 10'000; // a file that claims more is none of ours
constexpr int mostRuns = 10'000;
constexpr int mostRemarks = 20;
constexpr int mostText = 1000;
constexpr int mostFailures = 1000;

QString keptSpread(const std::optional<QlumSpread>& spread)
{
    if (!spread)
        return {};
    QStringList numbers;
    for (const double number : {spread->minimum, spread->median, spread->mean, spread->percentile95,
                                spread->percentile99, spread->maximum, spread->deviation})
        numbers.append(QString::number(number, 'g', 17));
    return numbers.join(QLatin1Char(' '));
}

// Nothing for what is no spread.
std::optional<QlumSpread> restoredSpread(const QString& text)
{
    const QStringList parts = text.left(mostText).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QlumSpread spread;
    double* const members[] = {&spread.minimum,      &spread.median,  &spread.mean,     &spread.percentile95,
                               &spread.percentile99, &spread.maximum, &spread.deviation};
    if (parts.size() != static_cast<int>(std::size(members)))
        return std::nullopt;
    for (int i = 0; i < parts.size(); ++i) {
        bool isNumber = false;
        *members[i] = parts[i].toDouble(&isNumber);
        if (!isNumber || !std::isfinite(*members[i]))
            return std::nullopt;
    }
    return spread;
}

void savePlan(QSettings& settings, const QlumMeasurementPlan& plan)
{
    settings.setValue(QStringLiteral("Kind"), static_cast<int>(plan.kind));
    settings.setValue(QStringLiteral("NodesPerCall"), plan.nodesPerCall);
    settings.setValue(QStringLiteral("Calls"), plan.calls);
    settings.setValue(QStringLiteral("Seconds"), plan.seconds);
    settings.setValue(QStringLiteral("Pause"), plan.pause);
    settings.setValue(QStringLiteral("Outstanding"), plan.outstanding);
    settings.setValue(QStringLiteral("Timeout"), plan.timeout);
    settings.setValue(QStringLiteral("WarmUp"), plan.warmUp);
}

QlumMeasurementPlan restoredPlan(const QSettings& settings)
{
    QlumMeasurementPlan plan;
    const auto number = [&settings](const char* key, quint32 otherwise) {
        return settings.value(QLatin1String(key), otherwise).toUInt();
    };
    plan.kind = static_cast<QlumMeasuredKind>(std::clamp(settings.value(QStringLiteral("Kind")).toInt(), 0,
                                                         static_cast<int>(QlumMeasuredKind::Notifications)));
    plan.nodesPerCall = std::max(1u, number("NodesPerCall", plan.nodesPerCall));
    plan.calls = number("Calls", plan.calls);
    plan.seconds = number("Seconds", plan.seconds);
    plan.pause = number("Pause", plan.pause);
    plan.outstanding = std::max(1u, number("Outstanding", plan.outstanding));
    plan.timeout = std::max(1u, number("Timeout", plan.timeout));
    plan.warmUp = number("WarmUp", plan.warmUp);
    return plan;
}
} // namespace

void QlumPerformanceView::saveSettings(QSettings& settings)
{
    savePlan(settings, m_panel->plan());
    if (m_panel->serverId() != qlumNoServer)
        settings.setValue(QStringLiteral("ServerId"), m_panel->serverId());
    settings.beginWriteArray(QStringLiteral("Nodes"), m_nodes->rowCount());
    for (int row = 0; row < m_nodes->rowCount(); ++row) {
        const QlumToolNode& node = m_nodes->rowAt(row).node;
        settings.setArrayIndex(row);
        settings.setValue(QStringLiteral("ServerId"), node.serverId);
        settings.setValue(QStringLiteral("NodeId"), toQString(node.nodeId.toXmlString()));
        settings.setValue(QStringLiteral("ParentId"), toQString(node.parentId.toXmlString()));
        settings.setValue(QStringLiteral("NodeClass"), static_cast<int>(node.nodeClass));
        settings.setValue(QStringLiteral("Name"), node.name);
    }
    settings.endArray();
    settings.beginWriteArray(QStringLiteral("Runs"), m_runs->rowCount());
    for (int row = 0; row < m_runs->rowCount(); ++row) {
        settings.setArrayIndex(row);
        saveRun(settings, m_runs->rowAt(row));
    }
    settings.endArray();
}

void QlumPerformanceView::saveRun(QSettings& settings, const QlumMeasurementRun& run) const
{
    savePlan(settings, run.plan);
    settings.setValue(QStringLiteral("Name"), run.name);
    settings.setValue(QStringLiteral("Server"), run.server);
    settings.setValue(QStringLiteral("Endpoint"), run.endpoint);
    settings.setValue(QStringLiteral("Begun"), run.begun.toUTC().toString(Qt::ISODateWithMs));
    settings.setValue(QStringLiteral("End"), static_cast<int>(run.end));
    settings.setValue(QStringLiteral("Remarks"), run.remarks.join(QLatin1Char('\n')));
    settings.setValue(QStringLiteral("CallsMade"), run.figures.calls);
    settings.setValue(QStringLiteral("Duration"), keptSpread(run.figures.duration));
    settings.setValue(QStringLiteral("Own"), keptSpread(run.figures.own));
    const QlumRunTotals& totals = run.figures.totals;
    settings.setValue(QStringLiteral("SecondsTaken"), totals.seconds);
    settings.setValue(QStringLiteral("Values"), totals.values);
    settings.setValue(QStringLiteral("BadValues"), totals.badValues);
    settings.setValue(QStringLiteral("BytesOut"), totals.bytesOut);
    settings.setValue(QStringLiteral("BytesIn"), totals.bytesIn);
    QStringList failures;
    for (const auto& [status, count] : run.figures.failures)
        failures.append(QStringLiteral("%1 %2").arg(status).arg(count));
    settings.setValue(QStringLiteral("Failures"), failures.join(QLatin1Char(',')));
}

QlumMeasurementRun QlumPerformanceView::restoredRun(const QSettings& settings)
{
    const auto text = [&settings](const char* key) {
        return settings.value(QLatin1String(key)).toString().left(mostText);
    };
    const auto count = [&settings](const char* key) {
        return settings.value(QLatin1String(key)).toULongLong();
    };
    QlumMeasurementRun run;
    run.plan = restoredPlan(settings);
    run.name = qlumSingleLine(text("Name"));
    run.server = qlumSingleLine(text("Server"));
    run.endpoint = qlumSingleLine(text("Endpoint"));
    run.begun = QDateTime::fromString(text("Begun"), Qt::ISODateWithMs).toLocalTime();
    run.end = static_cast<QlumRunEnd>(
        std::clamp(settings.value(QStringLiteral("End")).toInt(), 0, static_cast<int>(QlumRunEnd::Broken)));
    run.remarks = settings.value(QStringLiteral("Remarks"))
                      .toString()
                      .split(QLatin1Char('\n'), Qt::SkipEmptyParts)
                      .mid(0, mostRemarks);
    run.figures.calls = count("CallsMade");
    run.figures.duration = restoredSpread(text("Duration"));
    run.figures.own = restoredSpread(text("Own"));
    QlumRunTotals& totals = run.figures.totals;
    totals.seconds = settings.value(QStringLiteral("SecondsTaken")).toDouble();
    totals.values = count("Values");
    totals.badValues = count("BadValues");
    totals.bytesOut = count("BytesOut");
    totals.bytesIn = count("BytesIn");
    totals.hasStages = run.figures.own.has_value();
    const QStringList failures =
        settings.value(QStringLiteral("Failures")).toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& failure : failures.mid(0, mostFailures))
        run.figures.failures[failure.section(QLatin1Char(' '), 0, 0).toUInt()] =
            failure.section(QLatin1Char(' '), 1, 1).toULongLong();
    return run;
}

void QlumPerformanceView::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_isLoading = true;
    m_panel->setPlan(restoredPlan(settings));
    QlumToolNodes nodes;
    int missing = 0;
    const int nodeCount = std::min(settings.beginReadArray(QStringLiteral("Nodes")), mostNodes);
    for (int row = 0; row < nodeCount; ++row) {
        settings.setArrayIndex(row);
        const auto id = [&settings](const char* key) {
            return UaNodeId::fromString(settings.value(QLatin1String(key)).toString().toStdString());
        };
        const auto server = serverIdMap.constFind(settings.value(QStringLiteral("ServerId"), -1).toInt());
        QlumToolNode node;
        node.nodeId = id("NodeId");
        node.parentId = id("ParentId");
        node.nodeClass = static_cast<OpcUa_NodeClass>(settings.value(QStringLiteral("NodeClass")).toInt());
        node.name = qlumSingleLine(settings.value(QStringLiteral("Name")).toString().left(mostText));
        if (server == serverIdMap.constEnd() || node.nodeId.isNull()) {
            ++missing;
            continue;
        }
        node.serverId = static_cast<unsigned int>(*server);
        nodes.push_back(node);
    }
    settings.endArray();
    m_nodes->addNodes(nodes);
    const int runCount = std::min(settings.beginReadArray(QStringLiteral("Runs")), mostRuns);
    for (int row = 0; row < runCount; ++row) {
        settings.setArrayIndex(row);
        m_runs->addRun(restoredRun(settings));
    }
    settings.endArray();
    showServers();
    if (const auto server = serverIdMap.constFind(settings.value(QStringLiteral("ServerId"), -1).toInt());
        server != serverIdMap.constEnd())
        m_panel->setServer(static_cast<unsigned int>(*server));
    listRuns();
    m_isLoading = false;
    if (missing > 0)
        m_messages->tell({QlumMessage::Warning,
                          QStringLiteral("project"),
                          tr("%n node(s) of this view were left out.", nullptr, missing),
                          tr("Their server is not in the project, or their node id cannot be read."),
                          {},
                          {}});
}
