// What a performance view asks before it measures, and what it does with what has come.
#include <plugins/performance/qlumperformanceview.h>

#include <app/api/qlumapplicationinterface.h>
#include <plugins/performance/qlumperformancepanel.h>
#include <plugins/performance/qlumrunmodel.h>
#include <uawidgets/plot/qlumbarplot.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QListWidgetItem>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {
constexpr quint32 largestCall = 10'000; // nodes, for servers that set no limit
constexpr quint32 usualCall = 1000;     // for a sweep there
constexpr quint32 largestOutstanding = 50;

// How often all these runs do what they do: each node of each call, of the warm-up and of the first try.
QString howOften(const std::vector<QlumMeasurementPlan>& plans)
{
    qulonglong times = 0;
    int seconds = 0;
    for (const QlumMeasurementPlan& plan : plans) {
        const qulonglong before = 1 + static_cast<qulonglong>(plan.warmUp) * plan.outstanding;
        times += (before + plan.calls) * plan.nodesPerCall;
        seconds += static_cast<int>(plan.seconds);
    }
    if (plans.empty() || plans.front().calls == 0)
        return QlumPerformanceView::tr("for %n second(s)", nullptr, seconds);
    return QlumPerformanceView::tr("%1 times").arg(QLocale().toString(times));
}

// Those that there is room for in the largest call; the others are in none.
template <typename T>
void keepFirst(std::vector<T>& ofNodes, const std::vector<QlumMeasurementPlan>& plans)
{
    std::size_t most = 0;
    for (const QlumMeasurementPlan& plan : plans)
        most = std::max<std::size_t>(most, plan.nodesPerCall);
    if (ofNodes.size() > most)
        ofNodes.resize(most);
}
} // namespace

QlumMeasurementRun QlumPerformanceView::newRun() const
{
    QlumMeasurementRun run;
    run.plan = m_panel->plan();
    run.server = m_application.serverName(run.plan.serverId);
    run.name = tr("%1 %2").arg(qlumMeasuredName(run.plan.kind)).arg(m_runs->rowCount() + 1);
    run.endpoint = m_work->endpointText(run.plan.serverId);
    return run;
}

void QlumPerformanceView::measure()
{
    const QlumMeasurementRun run = newRun();
    confirm(run, {run.plan}, [this](const QlumMeasurementRun& agreed) { m_work->measure(agreed); });
}

void QlumPerformanceView::sweep(QlumSweepOver over)
{
    const QlumMeasurementRun run = newRun();
    const quint32 limit = m_work->nodesLimit(run.plan.serverId, run.plan.kind);
    const quint32 largest = over == QlumSweepOver::Outstanding ? largestOutstanding
                            : limit > 0                        ? std::min(limit, largestCall)
                                                               : usualCall;
    std::vector<QlumMeasurementPlan> plans;
    for (const quint32 size : qlumSweepSizes(largest))
        plans.push_back(qlumSweepStep(run.plan, over, size));
    confirm(run, plans, [this, over, largest](const QlumMeasurementRun& agreed) {
        m_work->sweep(agreed, over, largest);
    });
}

// ---- questions

// What changes something on the server is asked for before, with how often it would be done.
void QlumPerformanceView::confirm(const QlumMeasurementRun& run,
                                  const std::vector<QlumMeasurementPlan>& plans, const Go& go)
{
    m_asked = {run, plans, go};
    if (run.plan.kind == QlumMeasuredKind::Write)
        m_work->checkWrite(run.plan);
    else if (run.plan.kind == QlumMeasuredKind::Call)
        m_work->readArguments(run.plan);
    else
        go(run);
}

void QlumPerformanceView::ask(const QString& title, const QString& text, const QStringList& details,
                              const QString& button)
{
    auto* box = new QMessageBox(QMessageBox::Question, title, text, QMessageBox::Cancel, this);
    box->setObjectName(QStringLiteral("performanceQuestion"));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    if (!details.isEmpty())
        box->setDetailedText(details.join(QLatin1Char('\n')));
    QPushButton* yes = box->addButton(button, QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    connect(yes, &QPushButton::clicked, this, [asked = m_asked] { asked.go(asked.run); });
    box->open();
}

void QlumPerformanceView::tellNone(const QString& text, const QStringList& leftOut)
{
    m_messages->tell({QlumMessage::Error,
                      QStringLiteral("leftOut"),
                      text,
                      leftOut.mid(0, 3).join(QStringLiteral("; ")),
                      {},
                      {}});
}

void QlumPerformanceView::askForWrite(const QlumWriteCheck& check)
{
    QlumMeasurementRun& run = m_asked.run;
    if (check.plan.nodes.empty())
        return tellNone(tr("None of the nodes can be written."), check.leftOut);
    run.plan.nodes = check.plan.nodes;
    run.plan.values = check.plan.values;
    keepFirst(run.plan.nodes, m_asked.plans);
    keepFirst(run.plan.values, m_asked.plans);
    QString text =
        tr("The run writes to %n variable(s) of %1, %2.", nullptr, static_cast<int>(run.plan.nodes.size()))
            .arg(run.server, howOften(m_asked.plans));
    text += QLatin1String("\n\n") + tr("Each write puts back the value that was just read. A value that the "
                                       "server or somebody else changes "
                                       "meanwhile is set back to that.");
    QStringList details;
    for (const QlumToolNode& node : run.plan.nodes)
        details.append(tr("Written: %1").arg(node.name));
    for (const QString& left : check.leftOut)
        details.append(tr("Left out: %1").arg(left));
    if (!check.leftOut.isEmpty())
        text += QLatin1String("\n\n") + tr("%n node(s) cannot be written and are left out; see the details.",
                                           nullptr, check.leftOut.size());
    ask(tr("Write Values Back"), text, details, tr("&Write"));
}

void QlumPerformanceView::askForArguments(const QlumCallCheck& check)
{
    if (check.plan.nodes.empty())
        return tellNone(tr("None of the methods can be called."), check.leftOut);
    QlumCallCheck known = check;
    keepFirst(known.plan.nodes, m_asked.plans);
    keepFirst(known.inputs, m_asked.plans);
    if (!known.hasInputs())
        return askForCall(known);
    for (const QlumToolNode& method : known.plan.nodes) {
        const auto given = m_arguments.find({method.serverId, method.nodeId});
        known.plan.arguments.push_back(given == m_arguments.end() ? std::vector<UaVariant>() : given->second);
    }
    auto* dialog = new QlumMeasuredArgumentsDialog(known, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, known]() mutable {
        known.plan.arguments = dialog->values();
        for (std::size_t i = 0; i < known.plan.nodes.size(); ++i) {
            const QlumToolNode& method = known.plan.nodes[i];
            m_arguments[{method.serverId, method.nodeId}] = known.plan.arguments[i];
        }
        askForCall(known);
    });
    dialog->open();
}

void QlumPerformanceView::askForCall(const QlumCallCheck& check)
{
    QlumMeasurementRun& run = m_asked.run;
    run.plan.nodes = check.plan.nodes;
    run.plan.arguments = check.plan.arguments;
    QStringList names;
    for (const QlumToolNode& method : run.plan.nodes)
        names.append(method.name);
    QStringList details = names.size() > 5 ? names : QStringList();
    for (const QString& left : check.leftOut)
        details.append(tr("Left out: %1").arg(left));
    QString text =
        (check.hasInputs() ? tr("The run calls %1 of %2 %3, warm-up included, with the arguments given.")
                           : tr("The run calls %1 of %2 %3, warm-up included, without arguments."))
            .arg(names.mid(0, 5).join(QStringLiteral(", ")), run.server, howOften(m_asked.plans));
    text += QLatin1String("\n\n") + tr("What the method does is done as often.");
    if (!check.leftOut.isEmpty())
        text += QLatin1String("\n\n") + tr("%n method(s) cannot be called and are left out; see the details.",
                                           nullptr, check.leftOut.size());
    ask(tr("Call Methods"), text, details, tr("&Call"));
}

// ---- security

void QlumPerformanceView::chooseEndpoints(const std::vector<QlumOfferedEndpoint>& endpoints,
                                          const QString& problem)
{
    if (endpoints.empty()) {
        m_messages->tell({QlumMessage::Error,
                          QStringLiteral("endpoints"),
                          tr("The server's endpoints are not known."),
                          problem,
                          {},
                          {}});
        return;
    }
    auto* dialog = new QDialog(this);
    dialog->setObjectName(QStringLiteral("compareSecurityDialog"));
    dialog->setWindowTitle(tr("Compare Security"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(dialog);
    auto* label =
        new QLabel(tr("The same run is made over each of these, in a session of its own. You may be asked "
                      "about a certificate or a password; what is not at hand is left out and listed."));
    label->setWordWrap(true);
    auto* list = new QListWidget;
    list->setObjectName(QStringLiteral("endpointsToCompare"));
    list->setAccessibleName(tr("Endpoints"));
    for (const QlumOfferedEndpoint& offer : endpoints) {
        auto* item = new QListWidgetItem(offer.text, list);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("&Measure"));
    connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    connect(dialog, &QDialog::accepted, this, [this, list, endpoints] {
        std::vector<QlumOfferedEndpoint> chosen;
        for (int row = 0; row < list->count(); ++row)
            if (list->item(row)->checkState() == Qt::Checked)
                chosen.push_back(endpoints[static_cast<std::size_t>(row)]);
        const QlumMeasurementRun run = newRun();
        confirm(run, std::vector<QlumMeasurementPlan>(chosen.size(), run.plan),
                [this, chosen](const QlumMeasurementRun& agreed) { m_work->compare(agreed, chosen); });
    });
    layout->addWidget(label);
    layout->addWidget(list, 1);
    layout->addWidget(buttons);
    dialog->open();
}

// ---- what has come

void QlumPerformanceView::takeRun(const QlumMeasurementRun& run)
{
    m_runs->addRun(run);
    listRuns();
    m_runsView->setCurrentIndex(m_sortedRuns->mapFromSource(m_runs->index(m_runs->rowCount() - 1, 0)));
    if (run.end == QlumRunEnd::Broken)
        m_messages->tell({QlumMessage::Error,
                          QStringLiteral("run"),
                          tr("\"%1\" was not measured to its end.").arg(run.name),
                          run.remarks.isEmpty() ? QString() : run.remarks.last(),
                          {},
                          {}});
    else
        m_messages->dismiss(QStringLiteral("run"));
    showRun();
    markModified();
}

void QlumPerformanceView::takeSweep(const std::vector<QlumSweepPoint>& points, QlumSweepOver over)
{
    std::vector<QlumBar> bars;
    for (const QlumSweepPoint& point : points)
        bars.push_back({QLocale().toString(point.size, 'f', 0), point.perSecond});
    m_sweepPlot->setBars(std::move(bars), over == QlumSweepOver::NodesPerCall
                                              ? tr("values/s by nodes a call")
                                              : tr("values/s by calls outstanding"));
    m_sweepText->setText(qlumSweepText(points, over));
    m_tabs->setCurrentIndex(m_tabs->count() - 1);
}

void QlumPerformanceView::showProgress()
{
    if (!m_work->isBusy()) {
        m_progressTimer.stop();
        m_panel->setIdle();
        m_heading->setActivity({});
        return;
    }
    if (!m_progressTimer.isActive())
        m_progressTimer.start();
    const quint64 done = m_work->current() ? m_work->current()->size() : 0;
    const QString calls = tr("%1 calls").arg(QLocale().toString(static_cast<qulonglong>(done)));
    const QString step = m_work->stepText();
    m_panel->setRunning(step.isEmpty() ? calls : QStringLiteral("%1, %2").arg(step, calls), done,
                        m_work->current() ? m_panel->plan().calls : 0);
    m_heading->setActivity(tr("measuring..."));
}
