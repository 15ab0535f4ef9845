#include <plugins/addressspace/search/qlumexportbranchdialog.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumlog.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <uawidgets/qlumformrow.h>

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>

#include <utility>

QlumExportBranchDialog::QlumExportBranchDialog(Branch branch, QlumSessionServicesProvider services,
                                               QWidget* parent)
    : QlumBaseWidget(QStringLiteral("ExportBranch"), parent), m_branch(std::move(branch)),
      m_services(std::move(services)), m_types(new QCheckBox(tr("&Data types, units and access"))),
      m_descriptions(new QCheckBox(tr("D&escriptions"))), m_values(new QCheckBox(tr("&Values"))),
      m_state(new QLabel), m_progress(new QProgressBar), m_pool(2)
{
    setWindowTitle(tr("Export Branch"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* what =
        new QLabel(tr("All nodes below '%1' of server '%2' are written to a file: path, node id with "
                      "the URI of its namespace, class and type, and:")
                       .arg(qlumCutText(qlumSingleLine(m_branch.name), 100),
                            qlumCutText(qlumSingleLine(m_branch.serverName), 100)));
    what->setTextFormat(Qt::PlainText);
    what->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(what);
    const QString longer = tr("They are read from the server, which takes longer");
    qlumDescribeField(m_types, {QStringLiteral("exportTypes"), m_types->text(), {}, longer});
    qlumDescribeField(m_descriptions,
                      {QStringLiteral("exportDescriptions"), m_descriptions->text(), {}, longer});
    qlumDescribeField(m_values, {QStringLiteral("exportValues"), m_values->text(), {}, longer});
    for (QCheckBox* box : {m_types, m_descriptions, m_values})
        layout->addWidget(box);
    m_state->setObjectName(QStringLiteral("exportState"));
    m_state->setTextFormat(Qt::PlainText);
    m_state->setWordWrap(true);
    m_progress->setObjectName(QStringLiteral("exportProgress"));
    m_progress->setAccessibleName(tr("Progress"));
    m_progress->hide();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    m_start = buttons->addButton(tr("E&xport..."), QDialogButtonBox::ActionRole);
    m_start->setObjectName(QStringLiteral("exportStart"));
    m_start->setToolTip(tr("Asks for a file, comma separated values or JSON, and begins"));
    m_cancel = buttons->addButton(tr("&Cancel"), QDialogButtonBox::ActionRole);
    m_cancel->setObjectName(QStringLiteral("exportCancel"));
    m_cancel->setToolTip(tr("Ends the export; no file is written"));
    m_cancel->setEnabled(false);
    layout->addWidget(m_state);
    layout->addWidget(m_progress);
    layout->addStretch();
    layout->addWidget(buttons);
    connect(m_start, &QPushButton::clicked, this, &QlumExportBranchDialog::chooseFile);
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        m_pool.giveUp(m_ticket);
        stop(tr("The export was cancelled; no file was written."));
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(480, sizeHint().height());
}

QlumExportBranchDialog::~QlumExportBranchDialog() = default;

void QlumExportBranchDialog::chooseFile()
{
    const QString csv = tr("Comma separated values (*.csv)");
    const QString json = tr("JSON (*.json)");
    QString filter = csv;
    QString file =
        QFileDialog::getSaveFileName(this, tr("Export Branch"), tr("nodes") + QStringLiteral(".csv"),
                                     csv + QStringLiteral(";;") + json, &filter);
    if (file.isEmpty())
        return;
    if (filter == json && file.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive))
        file.chop(4); // as it was proposed
    if (filter == json && !file.endsWith(QLatin1String(".json"), Qt::CaseInsensitive))
        file += QLatin1String(".json");
    start(file);
}

void QlumExportBranchDialog::start(const QString& file)
{
    QlumExportWish wish;
    wish.file = file;
    wish.details.typeAndUnit = wish.details.access = m_types->isChecked();
    wish.details.description = m_descriptions->isChecked();
    wish.details.value = m_values->isChecked();
    const auto function = [this, wish, branch = m_branch, services = m_services](QlumJob& job) {
        const auto control = std::make_shared<QlumCrawlControl>();
        job.whenCancelled([control] { control->stop(); });
        const std::shared_ptr<QlumSessionServices> session = services(branch.serverId);
        QlumNodeIndex index(branch.id, branch.name, branch.nodeClass);
        QlumCrawlState last;
        if (session)
            QlumCrawl(job, *session, index, *control, [&](const QlumCrawlState& state) {
                last = state;
                job.post([this, state] { take(state); });
            }).run();
        QlumExportOutcome outcome;
        if (!session)
            outcome.error = tr("The server is not connected.");
        else if (!job.isCancelled())
            outcome = qlumExportNodes(job, session, index, wish, [&](std::size_t written) {
                job.post([this, written] { m_progress->setValue(static_cast<int>(written)); });
            });
        job.post([this, wish, outcome, last] { finish(wish, outcome, last); });
    };
    m_start->setEnabled(false);
    m_cancel->setEnabled(true);
    m_progress->setRange(0, 0);
    m_progress->show();
    m_state->setText(tr("Finding the nodes..."));
    m_ticket = m_pool.add({tr("Exporting a branch"), m_branch.serverId}, function, [this](QlumWorkEnd end) {
        if (end == QlumWorkEnd::Failed)
            stop(tr("The export failed; the log says more."));
        else if (end == QlumWorkEnd::Cancelled)
            stop(tr("The export was cancelled; no file was written."));
    });
}

void QlumExportBranchDialog::take(const QlumCrawlState& state)
{
    m_state->setText(state.phase == QlumCrawlState::Waiting ? tr("Waiting for the connection to come back...")
                     : state.phase == QlumCrawlState::Done
                         ? tr("Writing %L1 nodes...").arg(state.nodes)
                         : tr("%L1 nodes were found, %L2 are still to be looked below...")
                               .arg(state.nodes)
                               .arg(state.queue));
    if (state.phase == QlumCrawlState::Done || state.phase == QlumCrawlState::Ended)
        m_progress->setRange(0, static_cast<int>(state.nodes));
}

void QlumExportBranchDialog::finish(const QlumExportWish& wish, const QlumExportOutcome& outcome,
                                    const QlumCrawlState& state)
{
    const QlumLog log(tr("Export Branch"), m_branch.serverId);
    if (!outcome.error.isEmpty()) {
        log.error(tr("%1 was not written: %2").arg(wish.file, outcome.error));
        return stop(tr("%1 was not written: %2").arg(wish.file, outcome.error));
    }
    QStringList texts{tr("%L1 nodes were written to %2.").arg(outcome.written).arg(wish.file)};
    if (outcome.unread > 0)
        texts.append(tr("Of %L1 nodes the server did not tell more than their names.").arg(outcome.unread));
    if (state.refused > 0)
        texts.append(tr("Of %L1 nodes it did not tell what is below.").arg(state.refused));
    if (!state.remark.isEmpty())
        texts.append(state.remark);
    log.info(texts.join(QLatin1Char(' ')));
    stop(texts.join(QLatin1Char(' ')));
}

void QlumExportBranchDialog::stop(const QString& text)
{
    m_ticket = 0;
    m_start->setEnabled(true);
    m_cancel->setEnabled(false);
    m_progress->hide();
    m_state->setText(text);
}

void QlumExportBranchDialog::reject()
{
    m_pool.cancelAll();
    QlumBaseWidget::reject();
}
