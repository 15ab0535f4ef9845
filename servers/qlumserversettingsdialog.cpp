#include <servers/qlumserversettingsdialog.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectdialogs.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumendpointfetcher.h>
#include <servers/qlumendpointmodel.h>
#include <servers/qlumidentitywidget.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumrolebox.h>
#include <uawidgets/table/qlumtable.h>

#include <QByteArray>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QFrame>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMetaObject>
#include <QModelIndex>
#include <QObject>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSize>
#include <QSortFilterProxyModel>
#include <QString>
#include <QSysInfo>
#include <QTreeView>
#include <QUrl>
#include <QVector>
#include <QWidget>

namespace {
QLineEdit* lineEdit(const char* objectName, const QString& accessibleName)
{
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String(objectName));
    edit->setAccessibleName(accessibleName);
    edit->setMaxLength(QlumEndpointLimits::textLength);
    return edit;
}
} // namespace

QlumServerSettingsDialog::QlumServerSettingsDialog(const QlumDiscoverySetting& setting, QWidget* parent)
    : QlumServerSettingsDialog(setting, nullptr, parent)
{
}

QlumServerSettingsDialog::QlumServerSettingsDialog(const QlumDiscoverySetting& setting,
                                                   QlumEndpointFetcher* fetcher, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumServerSettingsDialog"), parent), m_setting(setting),
      m_prompts(new QlumConnectDialogs(this)), m_tlsQuestion(QlumLog(tr("Server Settings")), *m_prompts),
      m_fetcher(fetcher ? fetcher : new QlumEndpointFetcher), m_endpoints(new QlumEndpointModel(this)),
      m_sorted(new QSortFilterProxyModel(this))
{
    m_fetcher->setParent(this);
    setWindowTitle(setting.endpoint.url.isEmpty() ? tr("Add Server") : tr("Server Settings"));
    auto* content = new QWidget;
    auto* groups = new QVBoxLayout(content);
    groups->addWidget(createEndpointGroup(), 1);
    groups->addWidget(createSessionGroup());
    groups->addWidget(createIdentityGroup());
    auto* scroll = new QScrollArea; // small screens and large letters
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scroll, 1);
    layout->addWidget(m_progress);
    layout->addWidget(m_message); // whose lines would keep the list from giving way
    createButtons();
    layout->addWidget(m_buttons);
    connect(m_fetcher, &QlumEndpointFetcher::finished, this, &QlumServerSettingsDialog::sltEndpointsFetched);
    connect(m_fetcher, &QlumEndpointFetcher::untrustedCertificate, this,
            &QlumServerSettingsDialog::sltCertificateRefused);
    connect(&m_tlsQuestion, &QlumTlsTrustQuestion::trusted, this,
            &QlumServerSettingsDialog::sltCertificateTrusted);
    const QSize room = QGuiApplication::primaryScreen()->availableSize() * 9 / 10;
    resize(QSize(740, 560).boundedTo(room));
    fill();
    sltUpdateControls();
}

QlumServerSettingsDialog::~QlumServerSettingsDialog() = default;

// ---- widgets

QWidget* QlumServerSettingsDialog::createEndpointGroup()
{
    auto* group = new QGroupBox(tr("Endpoint"));
    auto* layout = new QVBoxLayout(group);
    auto* row = new QHBoxLayout;
    m_url = lineEdit("endpointUrl", tr("Endpoint URL"));
    m_url->setPlaceholderText(QStringLiteral("opc.tcp://localhost:4840"));
    m_url->setWhatsThis(tr("<b>Endpoint URL</b><br>The address of the server, for example "
                           "opc.tcp://plc1:4840. Port 4840 is used when none is given."));
    m_fetch = new QPushButton(tr("&Get Endpoints"));
    m_fetch->setObjectName(QStringLiteral("getEndpoints"));
    m_fetch->setToolTip(tr("Ask the server which endpoints it offers"));
    m_fetch->setAutoDefault(false);
    auto* label = new QLabel(tr("&URL:"));
    label->setBuddy(m_url);
    row->addWidget(label);
    row->addWidget(m_url, 1);
    row->addWidget(m_fetch);
    layout->addLayout(row);
    m_urlHint = new QLabel(tr("A URL begins with opc.tcp:// or https:// and names a host."));
    m_urlHint->setObjectName(QStringLiteral("urlHint"));
    m_urlHint->hide();
    layout->addWidget(m_urlHint);
    layout->addWidget(createEndpointView(), 1);
    m_progress = new QProgressBar;
    m_progress->setObjectName(QStringLiteral("fetchProgress"));
    m_progress->setRange(0, 0);
    m_progress->hide();
    m_message = new QLabel;
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    connect(m_url, &QLineEdit::textChanged, this, &QlumServerSettingsDialog::sltUpdateControls);
    connect(m_url, &QLineEdit::returnPressed, m_fetch, &QPushButton::click);
    connect(m_fetch, &QPushButton::clicked, this, &QlumServerSettingsDialog::sltFetchEndpoints);
    return group;
}

QWidget* QlumServerSettingsDialog::createEndpointView()
{
    m_sorted->setSourceModel(m_endpoints);
    m_sorted->setSortRole(QlumEndpointModel::sortRole);
    m_endpointView = new QTreeView;
    m_endpointView->setObjectName(QStringLiteral("endpoints"));
    m_endpointView->setAccessibleName(tr("Endpoints"));
    m_endpointView->setWhatsThis(
        tr("<b>Endpoints</b><br>What the server offers. Choose how the connection is to "
           "be secured."));
    m_endpointView->setModel(m_sorted);
    m_endpointView->setRootIsDecorated(false);
    m_endpointView->setUniformRowHeights(true);
    m_endpointView->setSortingEnabled(true);
    m_endpointView->sortByColumn(QlumEndpointModel::Level, Qt::DescendingOrder);
    m_endpointView->header()->resizeSection(QlumEndpointModel::Policy, 230);
    m_endpointView->header()->resizeSection(QlumEndpointModel::Mode, 130);
    m_endpointView->header()->resizeSection(QlumEndpointModel::Url, 220);
    m_endpointView->setMinimumHeight(fontMetrics().height() * 5);
    m_endpointView->viewport()->installEventFilter(this);
    qlumMakeTable(m_endpointView,
                  {tr("Enter an address and press Get Endpoints."), tr("endpoints"), nullptr, {}});
    connect(m_endpointView->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        suggestDisplayName();
        sltUpdateControls();
    });
    connect(m_endpointView, &QTreeView::doubleClicked, this, &QlumServerSettingsDialog::accept);
    return m_endpointView;
}

QWidget* QlumServerSettingsDialog::createSessionGroup()
{
    auto* group = new QGroupBox(tr("Session"));
    auto* layout = new QFormLayout(group);
    m_displayName = lineEdit("displayName", tr("Display name"));
    m_displayName->setToolTip(tr("Name of the server in the project window"));
    m_sessionName = lineEdit("sessionName", tr("Session name"));
    m_sessionName->setToolTip(tr("Name under which the server lists this session"));
    layout->addRow(tr("&Display name:"), m_displayName);
    layout->addRow(tr("Session &name:"), m_sessionName);
    m_role = new QlumRoleBox;
    qlumAddRow(layout, m_role,
               {QStringLiteral("role"), tr("&Role:"),
                tr("<b>Role</b><br>What may be sent to the server. Look: only what changes nothing. Operate: "
                   "writing values and calling methods, too. Commission: everything."),
                tr("What may be sent to the server")});
    connect(m_displayName, &QLineEdit::textChanged, this, &QlumServerSettingsDialog::sltUpdateControls);
    return group;
}

QWidget* QlumServerSettingsDialog::createIdentityGroup()
{
    auto* group = new QGroupBox(tr("User"));
    auto* layout = new QVBoxLayout(group);
    m_identity = new QlumIdentityWidget;
    m_storePassword = new QCheckBox(tr("&Remember the password until the program ends"));
    m_storePassword->setObjectName(QStringLiteral("storePassword"));
    m_storePassword->setWhatsThis(
        tr("<b>Remember the password</b><br>The password is asked for once. It is never "
           "written to a file."));
    m_identity->addUserRow(m_storePassword);
    layout->addWidget(m_identity);
    return group;
}

void QlumServerSettingsDialog::createButtons()
{
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_buttons->setObjectName(QStringLiteral("buttons"));
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QlumServerSettingsDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

// ---- content

void QlumServerSettingsDialog::fill()
{
    m_url->setText(m_setting.endpoint.url);
    m_displayName->setText(m_setting.displayName);
    m_sessionName->setText(m_setting.sessionName.isEmpty()
                               ? QStringLiteral("urn:%1:Korvanda:Tavelin").arg(QSysInfo::machineHostName())
                               : m_setting.sessionName);
    m_role->setRole(m_setting.role);
    m_identity->setChoice({m_setting.userTokenType, m_setting.userName, QString(), m_setting.certificateFile,
                           m_setting.privateKeyFile});
    m_storePassword->setChecked(m_setting.storePassword);
    if (m_setting.endpoint.url.isEmpty()) {
        setMessage(tr("Enter the URL of a server and press Get Endpoints."));
        return;
    }
    m_endpoints->setEndpoints({m_setting.endpoint});
    selectEndpoint(0);
}

void QlumServerSettingsDialog::sltFetchEndpoints()
{
    if (m_fetcher->isBusy()) {
        m_fetcher->cancel();
        setMessage(tr("Cancelled."));
        sltUpdateControls();
        return;
    }
    m_url->setText(qlumCompleteUrl(m_url->text()));
    setMessage(tr("Asking the server for its endpoints..."));
    m_askedUrl = m_url->text();
    m_tlsQuestion.begin(m_askedUrl);
    m_fetcher->fetch(m_askedUrl, static_cast<int>(QlumSettings::connectTimeout.value()));
    sltUpdateControls();
}

void QlumServerSettingsDialog::sltEndpointsFetched(unsigned int status,
                                                   const QVector<QlumEndpoint>& endpoints)
{
    if (!OpcUa_IsGood(status)) {
        clearEndpoints();
        setMessage(
            tr("The endpoints of '%1' could not be read: %2. Check the URL, the network and whether the "
               "server runs.")
                .arg(m_url->text(), qlumStatusText(status)));
        sltUpdateControls();
        return;
    }
    m_endpoints->setEndpoints(endpoints);
    const QlumEndpoint& wanted = m_setting.endpoint;
    int row = m_endpoints->rowOf(wanted.url, wanted.securityPolicyUri, wanted.securityMode);
    if (row < 0)
        row = qlumPreferredEndpoint(endpoints, m_askedUrl);
    selectEndpoint(row);
    setMessage(endpoints.isEmpty() ? tr("The server offers no endpoint.")
               : row < 0           ? tr("The server offers no endpoint that is supported here.")
                                   : tr("The server offers %n endpoint(s).", nullptr, endpoints.size()));
    sltUpdateControls();
}

// Those of another server, or of another time, would be taken for this one's.
void QlumServerSettingsDialog::clearEndpoints()
{
    const bool isStored = !m_askedUrl.isEmpty() && m_askedUrl == m_setting.endpoint.url;
    m_askedUrl.clear();
    m_endpoints->setEndpoints(isStored ? QVector<QlumEndpoint>{m_setting.endpoint} : QVector<QlumEndpoint>());
    if (isStored)
        selectEndpoint(0);
}

bool QlumServerSettingsDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && m_endpointView->currentIndex().isValid())
        QMetaObject::invokeMethod(
            m_endpointView, [view = m_endpointView] { view->scrollTo(view->currentIndex()); },
            Qt::QueuedConnection);
    return QlumBaseWidget::eventFilter(watched, event);
}

void QlumServerSettingsDialog::sltCertificateRefused(unsigned int status, const QByteArray& certificate)
{
    m_tlsQuestion.setServerName(QUrl(m_url->text()).host());
    m_tlsQuestion.raise({status, certificate});
}

void QlumServerSettingsDialog::sltCertificateTrusted()
{
    if (!m_fetcher->isBusy())
        sltFetchEndpoints();
}

void QlumServerSettingsDialog::selectEndpoint(int row)
{
    const QModelIndex index = m_sorted->mapFromSource(m_endpoints->index(row, 0));
    if (index.isValid())
        m_endpointView->setCurrentIndex(index);
}

int QlumServerSettingsDialog::currentRow() const
{
    const QModelIndex index = m_endpointView->currentIndex();
    return index.isValid() ? m_sorted->mapToSource(index).row() : -1;
}

void QlumServerSettingsDialog::suggestDisplayName()
{
    const int row = currentRow();
    if (row < 0 || (!m_displayName->text().isEmpty() && m_displayName->text() != m_suggestedName))
        return;
    const QlumEndpoint& endpoint = m_endpoints->rowAt(row);
    m_suggestedName = qlumSingleLine(endpoint.applicationName.isEmpty() ? QUrl(endpoint.url).host()
                                                                        : endpoint.applicationName.left(100));
    m_displayName->setText(m_suggestedName);
}

void QlumServerSettingsDialog::sltUpdateControls()
{
    const bool busy = m_fetcher->isBusy();
    m_fetch->setText(busy ? tr("C&ancel") : tr("&Get Endpoints"));
    const QString url = qlumCompleteUrl(m_url->text());
    const bool isUsable = qlumIsUsableUrl(url);
    m_fetch->setEnabled(busy || isUsable);
    m_urlHint->setVisible(!isUsable && url.contains(QLatin1String("://")));
    m_progress->setVisible(busy);
    m_url->setReadOnly(busy);
    if (!m_buttons)
        return; // still being built
    m_buttons->button(QDialogButtonBox::Ok)
        ->setEnabled(!busy && isUsable && currentRow() >= 0 && !m_displayName->text().trimmed().isEmpty());
}

void QlumServerSettingsDialog::setMessage(const QString& text)
{
    m_message->setText(text);
}

void QlumServerSettingsDialog::accept()
{
    if (m_buttons->button(QDialogButtonBox::Ok)->isEnabled())
        QlumBaseWidget::accept();
}

QlumDiscoverySetting QlumServerSettingsDialog::discoverySetting() const
{
    QlumDiscoverySetting setting = m_setting;
    if (const int row = currentRow(); row >= 0)
        setting.endpoint = m_endpoints->rowAt(row);
    const QString typed = qlumCompleteUrl(m_url->text());
    const auto& rows = m_endpoints->rows();
    setting.endpoint.url =
        typed == m_askedUrl ? qlumDialledUrl({rows.begin(), rows.end()}, setting.endpoint.url, typed) : typed;
    setting.discoveryHost = QUrl(qlumCompleteUrl(m_url->text())).host();
    setting.displayName = m_displayName->text().trimmed();
    setting.sessionName = m_sessionName->text().trimmed();
    setting.role = m_role->role();
    const QlumUserChoice user = m_identity->choice();
    setting.userTokenType = user.tokenType;
    setting.userName = user.userName;
    setting.certificateFile = user.certificateFile;
    setting.privateKeyFile = user.privateKeyFile;
    setting.storePassword = m_storePassword->isChecked();
    if (!setting.storePassword)
        setting.password.clear();
    setting.forgetWhatBelongsTo(m_setting);
    return setting;
}
