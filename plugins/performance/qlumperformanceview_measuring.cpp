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
constexpr quint32 largestOutstanding = 50;
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
    if (run.plan.kind == QlumMeasuredKind::Write)
        m_work->checkWrite(run.plan);
    else if (run.plan.kind == QlumMeasuredKind::Call)
        askForCall(run, [this, run] { m_work->measure(run); });
    else
        m_work->measure(run);
}

void QlumPerformanceView::ask(const QString& title, const QString& text, const QStringList& details,
                              const QString& button, std::function<void()> yes)
{
    auto* box = new QMessageBox(QMessageBox::Question, title, text, QMessageBox::Cancel, this);
    box->setObjectName(QStringLiteral("performanceQuestion"));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    if (!details.isEmpty())
        box->setDetailedText(details.join(QLatin1Char('\n')));
    QPushButton* go = box->addButton(button, QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    connect(go, &QPushButton::clicked, this, std::move(yes));
    box->open();
}

void QlumPerformanceView::askForWrite(const QlumWriteCheck& check)
{
    if (check.plan.nodes.empty()) {
        m_messages->tell({QlumMessage::Error,
                          QStringLiteral("write"),
                          tr("None of the nodes can be written."),
                          check.leftOut.mid(0, 3).join(QStringLiteral("; ")),
                          {},
                          {}});
        return;
    }
    QlumMeasurementRun run = newRun();
    run.plan.nodes = check.plan.nodes;
    run.plan.values = check.plan.values;
    QString text = tr("The run writes to %n variable(s) of %1, again and again.", nullptr,
                      static_cast<int>(run.plan.nodes.size()))
                       .arg(run.server);
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
    ask(tr("Write Values Back"), text, details, tr("&Write"), [this, run] { m_work->measure(run); });
}

void QlumPerformanceView::askForCall(const QlumMeasurementRun& run, std::function<void()> yes)
{
    const QlumMeasurementPlan& plan = run.plan;
    QStringList names;
    for (const QlumToolNode& method : plan.nodes)
        names.append(method.name);
    const QString calls =
        plan.calls > 0
            ? tr("%1 times")
                  .arg(QLocale().toString(static_cast<qulonglong>(plan.calls) * plan.nodesPerCall +
                                          (plan.warmUp + 1ull) * plan.nodesPerCall * plan.outstanding))
            : tr("for %n second(s)", nullptr, static_cast<int>(plan.seconds));
    ask(tr("Call Methods"),
        tr("The run calls %1 of %2 %3, warm-up included, without arguments.")
                .arg(names.mid(0, 5).join(QStringLiteral(", ")), run.server, calls) +
            QLatin1String("\n\n") + tr("What the method does is done as often."),
        names.size() > 5 ? names : QStringList(), tr("&Call"), std::move(yes));
}

void QlumPerformanceView::sweep(QlumSweepOver over)
{
    const QlumMeasurementRun run = newRun();
    if (run.plan.kind == QlumMeasuredKind::Write) {
        m_messages->tell({QlumMessage::Note,
                          QStringLiteral("sweep"),
                          tr("A sweep does not write."),
                          tr("Measure Write run by run: each asks before."),
                          {},
                          {}});
        return;
    }
    const quint32 limit = m_work->nodesLimit(run.plan.serverId, run.plan.kind);
    const quint32 largest = over == QlumSweepOver::Outstanding ? largestOutstanding
                            : limit > 0                        ? std::min(limit, largestCall)
                                                               : 1000;
    const auto begin = [this, run, over, largest] { m_work->sweep(run, over, largest); };
    if (run.plan.kind == QlumMeasuredKind::Call)
        askForCall(run, begin);
    else
        begin();
}

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
        QlumMeasurementRun run = newRun();
        if (run.plan.kind == QlumMeasuredKind::Call)
            askForCall(run, [this, run, chosen] { m_work->compare(run, chosen); });
        else
            m_work->compare(run, chosen);
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
