#include <servers/doctor/qlumdoctordialog.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificaterefuseddialog.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <servers/doctor/qlumdoctor.h>
#include <servers/doctor/qlumdoctormodel.h>
#include <servers/doctor/qlumdoctorwords.h>
#include <servers/qlumconnectdialogs.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumprojectnodeserver.h>
#include <uabase/values/uastatuscode.h>
#include <uawidgets/table/qlumtable.h>

#include <QAction>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFont>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMap>
#include <QMenu>
#include <QModelIndex>
#include <QObject>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSize>
#include <QSplitter>
#include <QStringList>
#include <QTreeView>
#include <QVBoxLayout>

#include <memory>
#include <utility>

namespace {
QMap<unsigned int, QString>& latestReports()
{
    static QMap<unsigned int, QString> reports;
    return reports;
}

QPushButton* addButton(QDialogButtonBox& buttons, const char* name, const QString& text, const QString& tip)
{
    QPushButton* button = buttons.addButton(text, QDialogButtonBox::ActionRole);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    button->setWhatsThis(tip);
    button->setAutoDefault(false);
    return button;
}
} // namespace

QlumDoctorDialog::QlumDoctorDialog(std::unique_ptr<QlumDoctor> doctor, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumDoctorDialog"), parent), m_doctor(std::move(doctor)),
      m_model(new QlumDoctorModel(this)), m_summary(new QLabel), m_view(new QTreeView),
      m_details(new QPlainTextEdit)
{
    const QlumDiscoverySetting& setting = m_doctor->setting();
    setObjectName(QStringLiteral("connectionDoctor"));
    setWindowTitle(tr("Diagnosis of %1").arg(qlumCutText(qlumSingleLine(setting.displayName))));
    m_summary->setObjectName(QStringLiteral("summary"));
    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setWordWrap(true);
    QFont bold = m_summary->font();
    bold.setBold(true);
    m_summary->setFont(bold);
    makeTable();
    m_details->setObjectName(QStringLiteral("details"));
    m_details->setAccessibleName(tr("Details of the step"));
    m_details->setReadOnly(true);
    m_details->setWhatsThis(tr("<b>Details</b><br>What was seen in the selected step, who has stopped it, "
                               "and what helps."));
    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_view);
    splitter->addWidget(m_details);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    makeButtons(*buttons);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_summary);
    layout->addWidget(splitter, 1);
    layout->addWidget(buttons);
    constexpr QSize usual(860, 560);
    resize(usual);
    connect(m_doctor.get(), &QlumDoctor::rungChanged, this, [this](int step) {
        m_model->take(m_doctor->diagnosis().rungs.at(step));
        m_view->setCurrentIndex(m_model->index(step, 0));
        update();
    });
    connect(m_doctor.get(), &QlumDoctor::finished, this, [this] {
        m_model->show(m_doctor->diagnosis());
        const QlumRung* rung = m_doctor->diagnosis().failed();
        rung = rung ? rung : m_doctor->diagnosis().fixable();
        m_view->setCurrentIndex(m_model->index(rung ? rung->step : QlumRung::User, 0));
        update();
    });
    begin();
}

QlumDoctorDialog::~QlumDoctorDialog()
{
    m_doctor->disconnect(this);
}

void QlumDoctorDialog::makeTable()
{
    m_view->setObjectName(QStringLiteral("steps"));
    m_view->setAccessibleName(tr("Steps of the connection"));
    m_view->setWhatsThis(tr("<b>Steps</b><br>Each step of a connect in its order, how it ended, how long it "
                            "took and what was found. Select one to see its details."));
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    m_view->setModel(m_model);
    qlumMakeTable(m_view, {QString(), tr("diagnosis"), nullptr, QString()});
    m_view->header()->setSectionResizeMode(QlumDoctorModel::Step, QHeaderView::ResizeToContents);
    m_view->header()->setSectionResizeMode(QlumDoctorModel::Result, QHeaderView::ResizeToContents);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &QlumDoctorDialog::showDetails);
}

void QlumDoctorDialog::makeButtons(QDialogButtonBox& buttons)
{
    buttons.setObjectName(QStringLiteral("buttons"));
    m_fix = addButton(buttons, "fix", QString(), tr("Does what helps in the step that has failed"));
    m_run = addButton(buttons, "run", QString(), tr("Tries all steps again, or ends the diagnosis"));
    m_copy = addButton(buttons, "copyReport", tr("Copy &Report"),
                       tr("Copies the whole diagnosis as text, for whoever helps; it holds no password"));
    connect(m_fix, &QPushButton::clicked, this, &QlumDoctorDialog::fix);
    connect(m_run, &QPushButton::clicked, this, [this] {
        if (m_doctor->isRunning())
            m_doctor->cancel();
        else
            begin();
    });
    connect(m_copy, &QPushButton::clicked, this, &QlumDoctorDialog::copyReport);
    connect(&buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
}

void QlumDoctorDialog::begin()
{
    m_doctor->start();
    m_model->show(m_doctor->diagnosis());
    update();
}

QString QlumDoctorDialog::fixText(const QlumRung& rung)
{
    switch (rung.fix) {
    case QlumRung::TrustServer:
        return tr("Server's &Certificate...");
    case QlumRung::ExportOwn:
        return tr("&Export Our Certificate...");
    case QlumRung::KeepDialledHost:
        return tr("&Keep to the Dialled Host");
    case QlumRung::ChooseEndpoint:
        return tr("Choose &Endpoint");
    case QlumRung::ChooseUser:
        return tr("Try Another &User...");
    case QlumRung::NoFix:
        break;
    }
    return {};
}

void QlumDoctorDialog::update()
{
    const QlumDiagnosis& diagnosis = m_doctor->diagnosis();
    const bool isRunning = m_doctor->isRunning();
    const QlumRung* rung = isRunning ? nullptr : diagnosis.fixable();
    m_summary->setText(isRunning ? tr("%1 is being tried step by step...").arg(qlumCutText(diagnosis.url))
                                 : diagnosis.summary());
    m_fix->setVisible(rung);
    if (rung) {
        m_fix->setText(fixText(*rung));
        m_fix->setAccessibleName(fixText(*rung).remove(QLatin1Char('&')));
    }
    m_run->setText(isRunning ? tr("&Stop") : tr("&Run Again"));
    m_copy->setEnabled(!isRunning);
    showDetails();
}

void QlumDoctorDialog::showDetails()
{
    const QModelIndex index = m_view->currentIndex();
    QStringList lines;
    if (index.isValid()) {
        const QlumRung& rung = m_model->rowAt(index);
        if (!rung.finding.isEmpty())
            lines << qlumSingleLine(rung.finding);
        if (rung.side != QlumRung::Nobody)
            lines << tr("Stopped by: %1").arg(qlumRungSideName(rung.side));
        if (OpcUa_IsNotGood(rung.status))
            lines << tr("Status: %1").arg(qlumStatusText(rung.status));
        if (!rung.advice.isEmpty())
            lines << tr("What to do: %1").arg(rung.advice);
        if (!rung.evidence.isEmpty())
            lines << QString();
        for (const QString& line : rung.evidence)
            lines << qlumSingleLine(line);
    }
    const QString text = lines.join(QLatin1Char('\n'));
    if (m_details->toPlainText() != text) // else the user's selection would go
        m_details->setPlainText(text);
}

// ---- what helps

void QlumDoctorDialog::fix()
{
    const QlumRung* rung = m_doctor->isRunning() ? nullptr : m_doctor->diagnosis().fixable();
    if (!rung)
        return;
    switch (rung->fix) {
    case QlumRung::TrustServer:
        return m_doctor->trustServer();
    case QlumRung::ExportOwn:
        return exportOwn();
    case QlumRung::KeepDialledHost:
        return m_doctor->keepDialledHost();
    case QlumRung::ChooseEndpoint:
        return offerEndpoints();
    case QlumRung::ChooseUser:
        return m_doctor->chooseUser();
    case QlumRung::NoFix:
        break;
    }
}

void QlumDoctorDialog::exportOwn()
{
    const QlumRung* rung = m_doctor->diagnosis().failed();
    if (!rung)
        return;
    auto* dialog = new QlumCertificateRefusedDialog(
        m_doctor->setting().displayName, UaStatusCode(rung->status),
        QlumCertificates::instance()->certificate(), QlumCertificateStore::ownCertificateFile(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void QlumDoctorDialog::offerEndpoints()
{
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("endpoints"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QStringList offered;
    for (const QlumEndpoint& endpoint : m_doctor->diagnosis().endpoints) {
        const QString words = qlumSecurityWords(endpoint);
        if (!qlumWhyUnsupported(endpoint).isEmpty() || offered.contains(words))
            continue;
        offered << words;
        QString label = words;
        QAction* action = menu->addAction(label.replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setObjectName(words);
        connect(action, &QAction::triggered, this, [this, endpoint] { m_doctor->useEndpoint(endpoint); });
    }
    if (offered.isEmpty())
        menu->addAction(tr("The server offers nothing that this program supports."))->setEnabled(false);
    menu->popup(m_fix->mapToGlobal(m_fix->rect().bottomLeft()));
}

void QlumDoctorDialog::copyReport()
{
    QGuiApplication::clipboard()->setText(m_doctor->report());
}

// ---- of a server of the project

void qlumDiagnose(QlumProjectNodeServer& node, QWidget* parent)
{
    const QString name = QStringLiteral("connectionDoctor%1").arg(node.serverId());
    if (auto* open = parent ? parent->findChild<QlumDoctorDialog*>(name) : nullptr) {
        open->raise();
        return open->activateWindow();
    }
    auto prompts = std::make_unique<QlumConnectDialogs>();
    QlumConnectDialogs& asked = *prompts;
    auto doctor = std::make_unique<QlumDoctor>(node.serverId(), node.discoverySetting(), std::move(prompts));
    QlumDoctor& started = *doctor;
    QObject::connect(
        &started, &QlumDoctor::settingChanged, &node,
        [&node](const QlumDiscoverySetting& changed) {
            QlumDiscoverySetting setting = node.discoverySetting();
            setting.ignoredHost = changed.ignoredHost;
            setting.endpoint.securityMode = changed.endpoint.securityMode;
            setting.endpoint.securityPolicyUri = changed.endpoint.securityPolicyUri;
            setting.endpoint.userTokens = changed.endpoint.userTokens;
            node.setDiscoverySetting(setting);
            if (QlumApplicationInterface* application = QlumApplicationInterface::instance())
                application->setModified();
        });
    QObject::connect(&started, &QlumDoctor::finished, &node,
                     [&started, id = node.serverId()] { latestReports()[id] = started.report(); });
    auto* dialog = new QlumDoctorDialog(std::move(doctor), parent);
    asked.setParent(dialog); // above which it asks; the doctor goes first
    dialog->setObjectName(name);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(&node, &QObject::destroyed, dialog, [dialog] { delete dialog; });
    dialog->show();
}

QString qlumLatestDiagnosis(unsigned int serverId)
{
    return latestReports().value(serverId);
}
