#include <servers/qlumadvancedpage.h>

#include <app/api/qlumdisplaytext.h>
#include <opcua/opcua_types.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumgivencertificate.h>
#include <uawidgets/qlumformrow.h>

#include <QByteArray>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHostInfo>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QString>
#include <QUrl>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

namespace {
struct OfferedPolicy
{
    const char* name;
    bool isDeprecated;
};

constexpr OfferedPolicy offeredPolicies[] = {
    {"None", false},
    {"Basic256Sha256", false},
    {"Aes128_Sha256_RsaOaep", false},
    {"Aes256_Sha256_RsaPss", false},
    {"Basic256", true},
    {"Basic128Rsa15", true},
};

QString policyUri(const char* name)
{
    return QStringLiteral("http://opcfoundation.org/UA/SecurityPolicy#") + QLatin1String(name);
}
} // namespace

QlumAdvancedPage::QlumAdvancedPage(QWidget* parent)
    : QWidget(parent), m_byHand(new QGroupBox), m_url(new QLineEdit), m_policy(new QComboBox),
      m_mode(new QComboBox), m_applicationUri(new QLineEdit), m_certificate(new QlumGivenCertificate),
      m_transport(new QLabel), m_dials(new QCheckBox), m_host(new QLineEdit), m_hostText(new QLabel)
{
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(createEndpointGroup());
    layout->addWidget(createHostGroup());
    layout->addStretch();
    connect(m_byHand, &QGroupBox::toggled, this, [this](bool isByHand) {
        if (!isByHand)
            showEndpoint();
        updateControls();
    });
    connect(m_url, &QLineEdit::textChanged, this, &QlumAdvancedPage::updateControls);
    connect(m_certificate, &QlumGivenCertificate::changed, this, &QlumAdvancedPage::changed);
    connect(m_applicationUri, &QLineEdit::textChanged, this, &QlumAdvancedPage::updateControls);
    connect(m_policy, qOverload<int>(&QComboBox::currentIndexChanged), this, &QlumAdvancedPage::takePolicy);
    connect(m_mode, qOverload<int>(&QComboBox::currentIndexChanged), this, &QlumAdvancedPage::updateControls);
    connect(m_dials, &QCheckBox::toggled, this, &QlumAdvancedPage::updateControls);
    connect(m_host, &QLineEdit::textChanged, this, &QlumAdvancedPage::updateControls);
    updateControls();
}

QGroupBox* QlumAdvancedPage::createEndpointGroup()
{
    m_byHand->setTitle(tr("Set the endpoint &by hand"));
    m_byHand->setObjectName(QStringLiteral("byHand"));
    m_byHand->setToolTip(tr("For servers that do not list their endpoints"));
    m_byHand->setCheckable(true);
    m_byHand->setChecked(false);
    auto* form = new QFormLayout(m_byHand);
    for (QLineEdit* edit : {m_url, m_applicationUri})
        edit->setMaxLength(QlumEndpointLimits::textLength);
    qlumAddRow(form, m_url, {QStringLiteral("handUrl"), tr("Endpoint &URL:"), QString(), QString()});
    for (const OfferedPolicy& policy : offeredPolicies)
        m_policy->addItem(policy.isDeprecated ? tr("%1 (deprecated)").arg(QLatin1String(policy.name))
                                              : QString::fromLatin1(policy.name),
                          policyUri(policy.name));
    qlumAddRow(form, m_policy, {QStringLiteral("handPolicy"), tr("Security &policy:"), QString(), QString()});
    for (const int mode : {OpcUa_MessageSecurityMode_None, OpcUa_MessageSecurityMode_Sign,
                           OpcUa_MessageSecurityMode_SignAndEncrypt})
        m_mode->addItem(qlumSecurityModeName(mode), mode);
    qlumAddRow(form, m_mode, {QStringLiteral("handMode"), tr("Security &mode:"), QString(), QString()});
    m_transport->setTextFormat(Qt::PlainText);
    qlumAddRow(form, m_transport,
               {QStringLiteral("handTransport"), tr("Transport:"), QString(),
                tr("Follows from how the URL begins")});
    qlumAddRow(form, m_applicationUri,
               {QStringLiteral("handApplicationUri"), tr("&Application URI:"), QString(),
                tr("By which the server's certificate has to name it")});
    qlumAddRow(form, m_certificate,
               {QStringLiteral("handCertificate"), tr("Server &certificate:"),
                tr("<b>Server certificate</b><br>The certificate that the server is known to have. With it "
                   "a server can be connected securely that does not list its endpoints, and one that shows "
                   "another certificate is asked about."),
                tr("For servers that do not show their certificate")});
    return m_byHand;
}

QGroupBox* QlumAdvancedPage::createHostGroup()
{
    auto* group = new QGroupBox(tr("Host"));
    auto* form = new QFormLayout(group);
    m_hostText->setObjectName(QStringLiteral("hostText"));
    m_hostText->setTextFormat(Qt::PlainText);
    m_hostText->setWordWrap(true);
    form->addRow(m_hostText);
    m_dials->setText(tr("Dial this host &instead of the one that the server names:"));
    qlumAddWideRow(
        form, m_dials,
        {QStringLiteral("dialsHost"), m_dials->text(),
         tr("<b>Dial this host</b><br>Only host and port of the address are replaced. Security policy "
            "and users stay those of the endpoint, and the server's certificate is checked as it is."),
         tr("For servers whose own name is not known here; remembered in the project")});
    m_host->setMaxLength(QlumEndpointLimits::textLength);
    m_host->setPlaceholderText(QStringLiteral("plc1:4840"));
    qlumAddRow(form, m_host, {QStringLiteral("dialledHost"), tr("&Host and port:"), QString(), QString()});
    return group;
}

// ---- what is chosen

void QlumAdvancedPage::setEndpoint(const QlumEndpoint& named, const QString& dialledUrl)
{
    m_named = named;
    m_dialledUrl = dialledUrl;
    const QString wanted = qlumAuthority(QUrl(dialledUrl));
    const bool differs = !wanted.isEmpty() && wanted != qlumAuthority(QUrl(named.url));
    {
        const QSignalBlocker blocker(this);
        m_dials->setChecked(differs);
        m_host->setText(differs ? wanted : QString());
        if (!isByHand())
            showEndpoint();
    }
    updateControls();
}

void QlumAdvancedPage::setDialledHost(const QString& authority)
{
    m_dials->setChecked(!authority.isEmpty());
    m_host->setText(authority);
}

void QlumAdvancedPage::setGivenCertificate(const QByteArray& der)
{
    if (!der.isEmpty())
        m_byHand->setChecked(true);
    m_certificate->setCertificate(der);
}

QByteArray QlumAdvancedPage::givenCertificate() const
{
    return isByHand() ? m_certificate->certificate() : QByteArray();
}

void QlumAdvancedPage::showEndpoint()
{
    m_url->setText(m_named.url);
    int row = m_policy->findData(m_named.securityPolicyUri);
    if (row < 0 && !m_named.securityPolicyUri.isEmpty()) { // one that this list does not know
        m_policy->addItem(qlumCutText(qlumSingleLine(qlumPolicyName(m_named.securityPolicyUri))),
                          m_named.securityPolicyUri);
        row = m_policy->count() - 1;
    }
    m_policy->setCurrentIndex(row);
    m_mode->setCurrentIndex(m_mode->findData(m_named.securityMode));
    m_applicationUri->setText(m_named.applicationUri);
}

// Policy and mode go together: either both secure nothing, or none of them.
void QlumAdvancedPage::takePolicy()
{
    const bool isNone = m_policy->currentData().toString() == qlumPolicyNone();
    const int mode = m_mode->currentData().toInt();
    if (isByHand() && isNone != (mode == OpcUa_MessageSecurityMode_None))
        m_mode->setCurrentIndex(m_mode->findData(isNone ? OpcUa_MessageSecurityMode_None
                                                        : OpcUa_MessageSecurityMode_SignAndEncrypt));
    updateControls();
}

bool QlumAdvancedPage::isByHand() const
{
    return m_byHand->isChecked();
}

QString QlumAdvancedPage::namedUrl() const
{
    return isByHand() ? qlumCompleteUrl(m_url->text()) : m_named.url;
}

bool QlumAdvancedPage::isComplete() const
{
    return (!isByHand() || (qlumIsUsableUrl(namedUrl()) && m_mode->currentIndex() >= 0)) &&
           (!m_dials->isChecked() || qlumIsAuthority(m_host->text()));
}

QString QlumAdvancedPage::dialledHost() const
{
    return m_dials->isChecked() ? qlumAuthority(QUrl(qlumUrlAtHost(namedUrl(), m_host->text()))) : QString();
}

QlumEndpoint QlumAdvancedPage::endpoint() const
{
    QlumEndpoint endpoint = m_named;
    endpoint.url = isByHand() ? namedUrl() : m_dialledUrl;
    if (isByHand()) {
        endpoint.applicationUri = m_applicationUri->text().trimmed();
        endpoint.transportProfileUri.clear(); // as the URL says
        endpoint.securityMode = m_mode->currentData().toInt();
        endpoint.securityPolicyUri = m_policy->currentData().toString();
        if (endpoint.securityMode != m_named.securityMode ||
            endpoint.securityPolicyUri != m_named.securityPolicyUri)
            endpoint.userTokens.clear(); // those of another endpoint
    }
    const QString host = m_dials->isChecked() ? dialledHost() : qlumAuthority(QUrl(namedUrl()));
    endpoint.url = qlumUrlAtHost(endpoint.url, host);
    return endpoint;
}

// ---- what is shown

void QlumAdvancedPage::updateControls()
{
    m_transport->setText(qlumTransportName(endpoint()));
    const bool isNone = m_policy->currentData().toString() == qlumPolicyNone();
    m_mode->setEnabled(isByHand() && !isNone);
    m_host->setEnabled(m_dials->isChecked());
    showHost();
    emit changed();
}

void QlumAdvancedPage::showHost()
{
    const QString host = QUrl(namedUrl()).host();
    if (host == m_looked)
        return;
    m_looked = host;
    m_hostText->setText(host.isEmpty() ? tr("No endpoint is chosen.")
                                       : tr("The server's host is '%1'.").arg(qlumCutText(host)));
    if (!host.isEmpty())
        lookUp(host);
}

// By the name of the slot: the other forms leak what they hold when the page has gone before the answer.
void QlumAdvancedPage::lookUp(const QString& host)
{
    m_lookUp = QHostInfo::lookupHost(host, this, SLOT(sltHostFound(QHostInfo)));
}

// An answer may come when another endpoint is shown.
void QlumAdvancedPage::sltHostFound(const QHostInfo& info)
{
    if (info.lookupId() != m_lookUp)
        return;
    const QString shown = qlumCutText(m_looked);
    m_hostText->setText(
        info.error() == QHostInfo::NoError
            ? tr("The server's host is '%1', which is found at %2.")
                  .arg(shown, info.addresses().isEmpty() ? QString() : info.addresses().first().toString())
            : tr("The server's host is '%1', which cannot be found from here. Dial the host under which it "
                 "has "
                 "answered.")
                  .arg(shown));
}
