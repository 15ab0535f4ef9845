#include <servers/qlumserversettingsdialog.h>

#include <app/api/qlumdisplaytext.h>
#include <servers/passwords/qlumpasswordkeeper.h>
#include <servers/qlumadvancedpage.h>
#include <servers/qlumconnectdialogs.h>
#include <servers/qlumconnectiontest.h>
#include <servers/qlumdiscoverysettings.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumendpointfetcher.h>
#include <servers/qlumidentitywidget.h>
#include <servers/qlumserverpage.h>
#include <servers/qlumsessionpage.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumrolebox.h>

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QFrame>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <QWidget>

#include <memory>
#include <utility>

QlumServerSettingsDialog::QlumServerSettingsDialog(const QlumDiscoverySetting& setting, QWidget* parent)
    : QlumServerSettingsDialog(setting, nullptr, nullptr, parent)
{
    if (setting.endpoint.url.isEmpty())
        m_server->lookAtLocal();
}

QlumServerSettingsDialog::QlumServerSettingsDialog(const QlumDiscoverySetting& setting,
                                                   QlumEndpointFetcher* fetcher,
                                                   QlumDiscoveryLookup::Asker asker, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumServerSettingsDialog"), parent), m_setting(setting),
      m_test(new QlumConnectionTest([this] { return std::make_unique<QlumConnectDialogs>(this); }, this)),
      m_prompts(new QlumConnectDialogs(this)), m_pages(new QTabWidget), m_message(new QlumMessageBar)
{
    setWindowTitle(setting.endpoint.url.isEmpty() ? tr("Add Server") : tr("Server Settings"));
    m_pages->setObjectName(QStringLiteral("pages"));
    addPage(createServerPage(fetcher, std::move(asker)), tr("Serve&r"));
    m_advanced = new QlumAdvancedPage;
    addPage(m_advanced, tr("Ad&vanced"));
    addPage(createIdentityPage(), tr("U&ser"));
    m_session = new QlumSessionPage;
    addPage(m_session, tr("S&ession"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pages, 1);
    layout->addWidget(m_message);
    createButtons();
    layout->addWidget(m_buttons);
    connect(m_server, &QlumServerPage::changed, this, &QlumServerSettingsDialog::takeEndpoint);
    connect(m_server, &QlumServerPage::accepted, this, &QlumServerSettingsDialog::accept);
    connect(m_advanced, &QlumAdvancedPage::changed, this, &QlumServerSettingsDialog::sltUpdateControls);
    connect(m_test, &QlumConnectionTest::stepChanged, this, [this](const QString& step) {
        m_message->tell(
            {QlumMessage::Note, QString(), tr("Testing the connection: %1...").arg(step), {}, {}, {}});
    });
    connect(m_test, &QlumConnectionTest::finished, this, &QlumServerSettingsDialog::sltTested);
    const QSize room = QGuiApplication::primaryScreen()->availableSize() * 9 / 10;
    resize(QSize(900, 680).boundedTo(room));
    fill();
    sltUpdateControls();
}

// The pages look at the prompts for as long as they are there.
QlumServerSettingsDialog::~QlumServerSettingsDialog()
{
    delete m_pages;
}

// ---- widgets

// Scrolls, for small screens and large letters.
void QlumServerSettingsDialog::addPage(QWidget* page, const QString& title)
{
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(page);
    m_pages->addTab(scroll, title);
}

QWidget* QlumServerSettingsDialog::createServerPage(QlumEndpointFetcher* fetcher,
                                                    QlumDiscoveryLookup::Asker asker)
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    m_server = new QlumServerPage(*m_prompts, fetcher, std::move(asker));
    m_server->layout()->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_server, 1);
    m_general = new QFormLayout;
    m_displayName = new QLineEdit;
    m_displayName->setMaxLength(QlumEndpointLimits::textLength);
    qlumAddRow(m_general, m_displayName,
               {QStringLiteral("displayName"), tr("&Display name:"), QString(),
                tr("Name of the server in the project window")});
    m_role = new QlumRoleBox;
    qlumAddRow(m_general, m_role,
               {QStringLiteral("role"), tr("Ro&le:"),
                tr("<b>Role</b><br>What may be sent to the server. Look: only what changes nothing. Operate: "
                   "writing values and calling methods, too. Commission: everything."),
                tr("What may be sent to the server")});
    layout->addLayout(m_general);
    connect(m_displayName, &QLineEdit::textChanged, this, &QlumServerSettingsDialog::sltUpdateControls);
    return page;
}

QWidget* QlumServerSettingsDialog::createIdentityPage()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    m_identity = new QlumIdentityWidget;
    m_storePassword = new QCheckBox(QlumPasswordKeeper::rememberText());
    m_storePassword->setObjectName(QStringLiteral("storePassword"));
    m_storePassword->setWhatsThis(QlumPasswordKeeper::rememberHelp());
    m_identity->addUserRow(m_storePassword);
    layout->addWidget(m_identity);
    layout->addStretch();
    return page;
}

void QlumServerSettingsDialog::createButtons()
{
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_buttons->setObjectName(QStringLiteral("buttons"));
    m_testButton = m_buttons->addButton(QString(), QDialogButtonBox::ActionRole);
    m_testButton->setObjectName(QStringLiteral("testConnection"));
    m_testButton->setToolTip(tr("Connect with these settings, and disconnect again"));
    m_testButton->setAutoDefault(false);
    connect(m_testButton, &QPushButton::clicked, this, &QlumServerSettingsDialog::sltTest);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QlumServerSettingsDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

// ---- content

void QlumServerSettingsDialog::fill()
{
    m_displayName->setText(m_setting.displayName);
    m_session->setSession(m_setting.sessionName, m_setting.session);
    m_role->setRole(m_setting.role);
    m_identity->setChoice({m_setting.userTokenType, m_setting.userName, QString(), m_setting.certificateFile,
                           m_setting.privateKeyFile});
    m_storePassword->setChecked(m_setting.storePassword);
    m_server->setStored(m_setting.endpoint);
    if (!m_setting.dialledHost.isEmpty())
        m_advanced->setDialledHost(m_setting.dialledHost);
    m_advanced->setGivenCertificate(m_setting.givenCertificate);
}

// The other pages follow what is chosen on the first, but not each letter that is typed there.
void QlumServerSettingsDialog::takeEndpoint()
{
    const QlumEndpoint endpoint = m_server->endpoint();
    const QString dialled = m_server->dialledUrl();
    const QString shown =
        QStringList{endpoint.url, endpoint.securityPolicyUri, QString::number(endpoint.securityMode), dialled,
                    endpoint.applicationUri}
            .join(QLatin1Char('\n'));
    if (std::exchange(m_shownEndpoint, shown) != shown) {
        m_advanced->setEndpoint(endpoint, dialled);
        m_identity->setOffered(endpoint.userTokens);
        suggestDisplayName();
        if (!m_test->isRunning())
            m_message->dismiss(); // it was about another one
    }
    sltUpdateControls();
}

void QlumServerSettingsDialog::suggestDisplayName()
{
    if (!m_server->hasEndpoint() ||
        (!m_displayName->text().isEmpty() && m_displayName->text() != m_suggestedName))
        return;
    const QlumEndpoint endpoint = m_server->endpoint();
    m_suggestedName = qlumSingleLine(endpoint.applicationName.isEmpty() ? QUrl(endpoint.url).host()
                                                                        : endpoint.applicationName.left(100));
    m_displayName->setText(m_suggestedName);
}

bool QlumServerSettingsDialog::isComplete() const
{
    const bool hasEndpoint = m_advanced->isByHand() || (m_server->isUrlUsable() && m_server->hasEndpoint());
    return hasEndpoint && m_advanced->isComplete() && !m_server->isBusy();
}

void QlumServerSettingsDialog::sltUpdateControls()
{
    if (!m_buttons)
        return; // still being built
    const bool isTesting = m_test->isRunning();
    m_testButton->setText(isTesting ? tr("Cancel &Test") : tr("&Test Connection"));
    m_testButton->setEnabled(isTesting || isComplete());
    m_buttons->button(QDialogButtonBox::Ok)
        ->setEnabled(isComplete() && !isTesting && !m_displayName->text().trimmed().isEmpty());
}

void QlumServerSettingsDialog::accept()
{
    if (!m_buttons->button(QDialogButtonBox::Ok)->isEnabled())
        return;
    QlumDiscoverySettings::remember(QlumDiscoverySettings::recentUrls, discoverySetting().endpoint.url);
    QlumBaseWidget::accept();
}

QlumDiscoverySetting QlumServerSettingsDialog::discoverySetting() const
{
    QlumDiscoverySetting setting = m_setting;
    setting.endpoint = m_advanced->endpoint();
    setting.dialledHost = m_advanced->dialledHost();
    setting.givenCertificate = m_advanced->givenCertificate();
    setting.discoveryHost = QUrl(m_server->url()).host();
    setting.displayName = m_displayName->text().trimmed();
    setting.sessionName = m_session->sessionName();
    setting.session = m_session->options();
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

// ---- trying it out

void QlumServerSettingsDialog::sltTest()
{
    if (m_test->isRunning())
        m_test->cancel();
    else
        m_test->start(discoverySetting());
    sltUpdateControls();
}

void QlumServerSettingsDialog::sltTested(bool isGood, const QString& what, const QString& why)
{
    if (!m_test->ignoredHost().isEmpty())
        m_setting.ignoredHost = m_test->ignoredHost(); // the user was asked about it
    m_message->tell({isGood ? QlumMessage::Note : QlumMessage::Error, QString(), what, why, {}, {}});
    sltUpdateControls();
}
