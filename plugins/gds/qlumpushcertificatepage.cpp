#include <plugins/gds/qlumpushcertificatepage.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumvalidity.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_types.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/values/uastring.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumwrappingbar.h>

#include <QComboBox>
#include <QFont>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSizePolicy>
#include <QSpinBox>
#include <QStringList>
#include <QVBoxLayout>

#include <algorithm>
#include <initializer_list>

namespace {
constexpr int usualDays = 730;
constexpr int mostDays = 7300;
constexpr int shownCharacters = 12;

QString subjectOf(const UaPkiIdentity& name)
{
    QStringList parts;
    const auto add = [&parts](const char* key, const UaString& value) {
        if (!value.isEmpty())
            parts.append(QLatin1String(key) + QLatin1Char('=') + toQString(value));
    };
    add("CN", name.commonName);
    add("O", name.organization);
    add("OU", name.organizationUnit);
    add("L", name.locality);
    add("S", name.state);
    add("C", name.country);
    return parts.join(QLatin1Char(','));
}

QString certificateLine(const UaPkiCertificate& certificate)
{
    return QlumPushCertificatePage::tr("%1, valid until %2")
        .arg(toQString(certificate.commonName()), qlumValidityTime(certificate.validTo()));
}
} // namespace

QlumPushCertificatePage::QlumPushCertificatePage(QWidget* parent)
    : QWidget(parent), m_group(new QComboBox), m_type(new QComboBox), m_current(new QLabel),
      m_subject(new QLineEdit), m_format(new QComboBox), m_authority(new QLabel), m_days(new QSpinBox),
      m_pendingText(new QLabel)
{
    setObjectName(QStringLiteral("pushCertificatePage"));
    for (QComboBox* const names : {m_group, m_type}) { // which the server has made
        names->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        names->setMinimumContentsLength(shownCharacters);
    }
    auto* form = new QFormLayout;
    makeWhat(form);
    auto* layout = new QVBoxLayout(this);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    layout->addLayout(form);
    layout->addWidget(makeKeyBox());
    layout->addWidget(makeSignerBox());
    layout->addWidget(makeChangesBar());
    layout->addStretch(1);
    clear();
}

// ---- widgets

QPushButton* QlumPushCertificatePage::button(const QString& name, const QString& text, const QString& toolTip)
{
    auto* made = new QPushButton(text);
    made->setAutoDefault(false);
    qlumDescribeField(made, {name, text, {}, toolTip});
    return made;
}

void QlumPushCertificatePage::makeWhat(QFormLayout* form)
{
    qlumAddRow(form, m_group,
               {QStringLiteral("pushNewGroup"),
                tr("Certificate &group:"),
                tr("<b>Certificate Group</b><br>For which of the server's purposes the certificate is."),
                {}});
    qlumAddRow(form, m_type,
               {QStringLiteral("pushNewType"),
                tr("Certificate &type:"),
                tr("<b>Certificate Type</b><br>Which algorithms the certificate is for."),
                {}});
    m_current->setTextFormat(Qt::PlainText);
    QSizePolicy wide(QSizePolicy::Expanding,
                     QSizePolicy::Preferred); // a form counts its lines for all the room
    wide.setHeightForWidth(true);
    m_current->setSizePolicy(wide);
    m_current->setWordWrap(true);
    m_current->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_showCurrent = button(QStringLiteral("pushShowCurrent"), tr("Sho&w..."),
                           tr("Show the certificate that the server uses now"));
    auto* now = new QVBoxLayout; // its text is long
    now->addWidget(m_current);
    now->addWidget(m_showCurrent, 0, Qt::AlignLeft);
    qlumAddRow(form, m_current, {QStringLiteral("pushCurrent"), tr("In use now:"), {}, {}}, now);
    m_subject->setPlaceholderText(tr("as it is now"));
    qlumAddRow(
        form, m_subject,
        {QStringLiteral("pushSubject"),
         tr("Su&bject:"),
         tr("<b>Subject</b><br>The name in the new certificate, as CN=...,O=.... Empty: the server keeps "
            "the name that it has."),
         {}});
    connect(m_group, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &QlumPushCertificatePage::listTypes);
    connect(m_showCurrent, &QPushButton::clicked, this,
            [this] { emit showWanted(m_certificate.toByteStringDER()); });
}

QGroupBox* QlumPushCertificatePage::makeKeyBox()
{
    auto* box = new QGroupBox(tr("Private key"));
    m_newKey = new QRadioButton(tr("The server makes a &new key"));
    m_oldKey = new QRadioButton(tr("The server &keeps its key"));
    m_ownKey = new QRadioButton(tr("The key is made here and sent, as"));
    qlumDescribeField(m_newKey, {QStringLiteral("pushNewKey"), m_newKey->text(), {}, {}});
    qlumDescribeField(m_oldKey, {QStringLiteral("pushOldKey"), m_oldKey->text(), {}, {}});
    qlumDescribeField(m_ownKey,
                      {QStringLiteral("pushOwnKey"),
                       m_ownKey->text(),
                       tr("<b>Key Made Here</b><br>For servers that cannot make keys. It is sent over "
                          "an encrypted connection only, and wiped here afterwards."),
                       {}});
    qlumDescribeField(m_format, {QStringLiteral("pushFormat"), tr("Format of the key"), {}, {}});
    m_newKey->setChecked(true);
    for (QRadioButton* const radio : {m_newKey, m_oldKey, m_ownKey})
        connect(radio, &QRadioButton::toggled, this, &QlumPushCertificatePage::updateButtons);
    auto* sent = new QlumWrappingBar;
    sent->add(m_ownKey);
    sent->add(m_format);
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(m_newKey);
    layout->addWidget(m_oldKey);
    layout->addWidget(sent);
    return box;
}

QGroupBox* QlumPushCertificatePage::makeSignerBox()
{
    auto* box = new QGroupBox(tr("Signed by"));
    m_authority->setObjectName(QStringLiteral("pushAuthority"));
    m_authority->setTextFormat(Qt::PlainText);
    m_authority->setWordWrap(true);
    m_days->setRange(1, mostDays);
    m_days->setValue(usualDays);
    m_days->setSuffix(tr(" days"));
    qlumDescribeField(m_days, {QStringLiteral("pushDays"), tr("Valid for"), {}, {}});
    m_newAuthority = button(QStringLiteral("pushNewAuthority"), tr("New &Authority..."),
                            tr("Make a small certificate authority on this computer"));
    m_exportAuthority = button(QStringLiteral("pushExportAuthority"), tr("&Export Authority..."),
                               tr("Write the authority's certificate and revocation list to files"));
    m_make =
        button(QStringLiteral("pushMake"), tr("&Make Certificate..."),
               tr("Sign a new certificate with the authority of this computer and send it to the server"));
    m_request = button(QStringLiteral("pushRequest"), tr("Save &Request..."),
                       tr("Have the server make a request, for somebody else to sign"));
    m_answer = button(QStringLiteral("pushAnswer"), tr("&Import Answer..."),
                      tr("Send the certificate that was made of the request to the server"));
    connect(m_newAuthority, &QPushButton::clicked, this, &QlumPushCertificatePage::authorityWanted);
    connect(m_exportAuthority, &QPushButton::clicked, this, &QlumPushCertificatePage::exportAuthorityWanted);
    connect(m_make, &QPushButton::clicked, this, &QlumPushCertificatePage::makeWanted);
    connect(m_request, &QPushButton::clicked, this, &QlumPushCertificatePage::requestWanted);
    connect(m_answer, &QPushButton::clicked, this, &QlumPushCertificatePage::answerWanted);
    auto* own = new QlumWrappingBar;
    m_authority->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    for (QWidget* const one : std::initializer_list<QWidget*>{m_authority, m_newAuthority, m_exportAuthority})
        own->add(one);
    auto* made = new QHBoxLayout;
    made->addWidget(new QLabel(tr("Valid for:")));
    made->addWidget(m_days);
    made->addStretch(1);
    made->addWidget(m_make);
    auto* others = new QlumWrappingBar;
    others->add(m_request);
    others->add(m_answer);
    auto* somebody = new QLabel(tr("Or somebody else, who gets a file and sends one back:"));
    somebody->setWordWrap(true);
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(own);
    layout->addLayout(made);
    layout->addWidget(somebody);
    layout->addWidget(others);
    return box;
}

QWidget* QlumPushCertificatePage::makeChangesBar()
{
    auto* box = new QGroupBox(tr("Changes on the server"));
    m_pendingText->setObjectName(QStringLiteral("pushPending"));
    m_pendingText->setTextFormat(Qt::PlainText);
    m_pendingText->setWordWrap(true);
    m_apply = button(QStringLiteral("pushApply"), tr("A&pply Changes..."),
                     tr("Have the server use what was sent; it may close all connections"));
    m_cancel = button(QStringLiteral("pushCancel"), tr("Dis&card Changes"),
                      tr("Have the server forget what was sent and not applied"));
    m_reset = button(QStringLiteral("pushReset"), tr("Server De&faults..."),
                     tr("Have the server go back to the certificates and trust lists that it came with"));
    connect(m_apply, &QPushButton::clicked, this, &QlumPushCertificatePage::applyWanted);
    connect(m_cancel, &QPushButton::clicked, this, &QlumPushCertificatePage::cancelWanted);
    connect(m_reset, &QPushButton::clicked, this, &QlumPushCertificatePage::resetWanted);
    auto* buttons = new QlumWrappingBar;
    for (QPushButton* const one : {m_apply, m_cancel, m_reset})
        buttons->add(one);
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(m_pendingText);
    layout->addWidget(buttons);
    return box;
}

// ---- what is shown

void QlumPushCertificatePage::setServer(const QlumPushServer& server, const UaPkiCertificate& current)
{
    const QString groupBefore = m_group->currentText();
    const QString formatBefore = m_format->currentText();
    m_server = server;
    m_certificate = current;
    {
        const QSignalBlocker blocker(m_group);
        m_group->clear();
        for (const QlumPushGroup& one : server.groups)
            m_group->addItem(one.name);
        m_group->setCurrentIndex(std::max(m_group->findText(groupBefore), m_group->count() > 0 ? 0 : -1));
    }
    m_format->clear();
    m_format->addItems(server.keyFormats);
    m_format->setCurrentIndex(std::max(m_format->findText(formatBefore), m_format->count() > 0 ? 0 : -1));
    m_current->setText(current.isNull() ? tr("not known: the connection is not secured")
                                        : certificateLine(current));
    m_subject->setPlaceholderText(current.isNull() ? tr("as it is now") : subjectOf(current.subject()));
    listTypes();
}

void QlumPushCertificatePage::clear()
{
    setServer({}, {});
    m_current->setText(QStringLiteral("-"));
    setPending(false, QString());
    setAuthority({});
}

void QlumPushCertificatePage::setReady(bool isReady)
{
    m_isReady = isReady;
    updateButtons();
}

void QlumPushCertificatePage::setAuthority(const UaPkiCertificate& authority)
{
    m_hasAuthority = !authority.isNull();
    m_authority->setText(m_hasAuthority ? certificateLine(authority)
                                        : tr("There is no authority on this computer yet"));
    updateButtons();
}

void QlumPushCertificatePage::setPending(bool isPending, const QString& text)
{
    m_isPending = isPending;
    m_pendingText->setText(isPending ? tr("Not applied yet: %1").arg(text)
                                     : tr("Nothing waits to be applied."));
    QFont font = m_pendingText->font();
    font.setBold(isPending);
    m_pendingText->setFont(font);
    updateButtons();
}

const QlumPushGroup* QlumPushCertificatePage::group() const
{
    for (const QlumPushGroup& one : m_server.groups)
        if (one.name == m_group->currentText())
            return &one;
    return nullptr;
}

void QlumPushCertificatePage::listTypes()
{
    m_type->clear();
    if (const QlumPushGroup* const shown = group())
        for (const QlumPushType& type : shown->types) {
            m_type->addItem(type.name);
            // that of nearly all connections; by the first one many servers mean endpoints that nobody uses
            // any more
            if (type.id == UaNodeId(OpcUaId_RsaSha256ApplicationCertificateType))
                m_type->setCurrentIndex(m_type->count() - 1);
        }
    updateButtons();
}

QlumPushOrder QlumPushCertificatePage::order() const
{
    QlumPushOrder order;
    const QlumPushGroup* const shown = group();
    if (shown)
        order.wish.group = shown->id;
    const int type = m_type->currentIndex();
    if (shown && type >= 0 && static_cast<std::size_t>(type) < shown->types.size())
        order.wish.type = shown->types[static_cast<std::size_t>(type)].id;
    order.wish.subject = m_subject->text().trimmed();
    order.wish.isNewKey = m_newKey->isChecked();
    order.key = m_ownKey->isChecked()   ? QlumPushOrder::OurNewKey
                : m_newKey->isChecked() ? QlumPushOrder::ServersNewKey
                                        : QlumPushOrder::KeptKey;
    order.keyFormat = m_format->currentText();
    order.days = m_days->value();
    return order;
}

void QlumPushCertificatePage::updateButtons()
{
    const bool canUpdate = m_isReady && group() && m_server.has("UpdateCertificate");
    const bool canAsk = canUpdate && m_server.has("CreateSigningRequest");
    const bool isOwnKey = m_ownKey->isChecked();
    const bool mayOwnKey =
        !m_server.keyFormats.isEmpty() && m_server.mode == OpcUa_MessageSecurityMode_SignAndEncrypt;
    m_ownKey->setEnabled(mayOwnKey);
    m_format->setEnabled(mayOwnKey && isOwnKey);
    if (!mayOwnKey && isOwnKey)
        return m_newKey->setChecked(true); // which comes here again
    m_showCurrent->setEnabled(!m_certificate.isNull());
    m_make->setEnabled((isOwnKey ? canUpdate : canAsk) && m_hasAuthority);
    m_request->setEnabled(canAsk && !isOwnKey);
    m_answer->setEnabled(canUpdate && !isOwnKey);
    m_newAuthority->setVisible(!m_hasAuthority);
    m_exportAuthority->setVisible(m_hasAuthority);
    m_apply->setEnabled(m_isReady && m_isPending && m_server.has("ApplyChanges"));
    m_cancel->setVisible(m_server.has("CancelChanges"));
    m_cancel->setEnabled(m_isReady && m_isPending);
    m_reset->setVisible(m_server.has("ResetToServerDefaults"));
    m_reset->setEnabled(m_isReady);
}
