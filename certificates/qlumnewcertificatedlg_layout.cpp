// The widgets of the dialog for a new certificate.
#include <certificates/qlumnewcertificatedlg.h>

#include <app/api/qlumjobpool.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPalette>
#include <QProgressBar>
#include <QPushButton>
#include <QSizePolicy>

namespace {
constexpr int longestName = 64; // of most parts of a name, as certificates allow
constexpr int longestPlace = 128;
constexpr int longestPassword = 128;

struct Validity
{
    const char* text;
    qlonglong seconds;
};
constexpr std::array<Validity, 11> validities{
    {{QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "1 Hour"), 3600},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "1 Day"), 86400},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "1 Week"), 604800},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "1 Month"), 2678400},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "1 Year"), 31536000},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "2 Years"), 63072000},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "3 Years"), 94608000},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "4 Years"), 126144000},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "5 Years"), 157680000},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "10 Years"), 315360000},
     {QT_TRANSLATE_NOOP("QlumNewCertificateDlg", "20 Years"), 630720000}}};
constexpr int fiveYears = 8;

QLabel* makeStatus(const QString& name)
{
    auto* label = new QLabel;
    label->setObjectName(name + QStringLiteral("Status"));
    label->setFixedSize(18, 18);
    return label;
}

QLineEdit* makePassword(const char* name, const QString& accessibleName)
{
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String(name));
    edit->setAccessibleName(accessibleName);
    edit->setEchoMode(QLineEdit::Password);
    edit->setMaxLength(longestPassword);
    return edit;
}
} // namespace

void QlumNewCertificateDlg::createLayout(bool noCancel, bool canProtectKey)
{
    m_inputs = new QWidget(this);
    auto* left = new QVBoxLayout;
    left->addWidget(createSubjectGroup());
    left->addWidget(createSettingsGroup());
    left->addStretch();
    auto* right = new QVBoxLayout;
    right->addWidget(createInformationGroup(), 1);
    QWidget* passwordGroup = createPasswordGroup();
    right->addWidget(passwordGroup);
    passwordGroup->setVisible(canProtectKey);
    auto* columns = new QHBoxLayout(m_inputs);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_inputs, 1);
    layout->addWidget(createProgress());
    createButtons(noCancel);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_problem, 1);
    bottom->addWidget(m_buttons);
    layout->addLayout(bottom);
}

void QlumNewCertificateDlg::createField(QFormLayout* form, Field field, const QString& label,
                                        const char* name, int maxLength)
{
    NameField& target = m_fields[field];
    target.edit = new QLineEdit;
    target.edit->setObjectName(QLatin1String(name));
    target.edit->setAccessibleName(QString(label).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    target.edit->setMaxLength(maxLength);
    target.status = makeStatus(QLatin1String(name));
    auto* row = new QHBoxLayout;
    row->addWidget(target.edit, 1);
    row->addWidget(target.status);
    auto* caption = new QLabel(label);
    caption->setBuddy(target.edit);
    form->addRow(caption, row);
}

QWidget* QlumNewCertificateDlg::createSubjectGroup()
{
    auto* group = new QGroupBox(tr("Subject:"));
    auto* form = new QFormLayout(group);
    createField(form, CommonName, tr("Common &Name:"), "commonName", longestName);
    createField(form, Organization, tr("Or&ganization:"), "organization", longestName);
    createField(form, OrganizationUnit, tr("Organization &Unit:"), "organizationUnit", longestName);
    createField(form, Locality, tr("&Locality:"), "locality", longestPlace);
    createField(form, State, tr("&State:"), "state", longestPlace);
    createField(form, Country, tr("&Country:"), "country", longestName);
    auto* hint = new QLabel(tr("(Two letter code, e.g. DE, US, ...)"));
    hint->setObjectName(QStringLiteral("countryHint"));
    form->addRow(QString(), hint);
    m_fields[CommonName].edit->setWhatsThis(
        tr("<b>Common Name</b><br>What this installation is called; servers show it in their lists."));
    m_fields[Country].edit->setWhatsThis(tr("<b>Country</b><br>The two letters of the country."));
    return group;
}

QLayout* QlumNewCertificateDlg::createAddressList(AddressList& target, const char* name, const QString& title,
                                                  void (QlumNewCertificateDlg::*add)())
{
    target.list = new QListWidget;
    target.list->setObjectName(QLatin1String(name));
    target.list->setAccessibleName(title);
    target.list->setMinimumHeight(fontMetrics().height() * 4);
    auto* addButton = new QPushButton(QIcon(QStringLiteral(":/images/add.png")), tr("Add..."));
    addButton->setObjectName(QLatin1String(name) + QStringLiteral("Add"));
    addButton->setAccessibleName(tr("Add to %1").arg(title));
    addButton->setToolTip(addButton->accessibleName());
    addButton->setAutoDefault(false);
    target.remove = new QPushButton(QIcon(QStringLiteral(":/images/remove.png")), tr("Remove"));
    target.remove->setObjectName(QLatin1String(name) + QStringLiteral("Remove"));
    target.remove->setAccessibleName(tr("Remove from %1").arg(title));
    target.remove->setToolTip(target.remove->accessibleName());
    target.remove->setAutoDefault(false);
    connect(addButton, &QPushButton::clicked, this, add);
    connect(target.remove, &QPushButton::clicked, this, [this, list = target.list] {
        delete list->takeItem(list->currentRow());
        sltValidate();
    });
    connect(target.list, &QListWidget::currentRowChanged, this, &QlumNewCertificateDlg::sltValidate);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(addButton);
    buttons->addWidget(target.remove);
    buttons->addStretch();
    auto* layout = new QHBoxLayout;
    layout->addWidget(target.list, 1);
    layout->addLayout(buttons);
    return layout;
}

QWidget* QlumNewCertificateDlg::createInformationGroup()
{
    auto* group = new QGroupBox(tr("OPC UA Information"));
    m_uri = new QLineEdit;
    m_uri->setObjectName(QStringLiteral("applicationUri"));
    m_uri->setAccessibleName(tr("Application URI"));
    m_uri->setReadOnly(true);
    QPalette fixed = m_uri->palette(); // looks like what it is: not to be edited
    fixed.setColor(QPalette::Base, fixed.color(QPalette::Window));
    m_uri->setPalette(fixed);
    m_uri->setWhatsThis(tr("<b>Application URI</b><br>The worldwide name of this installation, made of the "
                           "host, the organization and the common name."));
    auto* form = new QFormLayout(group);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->addRow(tr("Application U&RI:"), m_uri);
    QLayout* addresses = createAddressList(m_addresses, "ipAddresses", tr("IP Addresses"),
                                           &QlumNewCertificateDlg::sltAddAddress);
    auto* addressLabel = new QLabel(tr("&IP Addresses:"));
    addressLabel->setBuddy(m_addresses.list);
    form->addRow(addressLabel, addresses);
    QLayout* names =
        createAddressList(m_dnsNames, "dnsNames", tr("Domain Names"), &QlumNewCertificateDlg::sltAddDnsName);
    m_addressStatus = makeStatus(QStringLiteral("addresses"));
    auto* nameLabel = new QLabel(tr("&Domain Names:"));
    nameLabel->setBuddy(m_dnsNames.list);
    auto* caption = new QVBoxLayout;
    caption->addWidget(nameLabel);
    caption->addWidget(m_addressStatus);
    caption->addStretch();
    auto* captionBox = new QWidget;
    caption->setContentsMargins(0, 0, 0, 0);
    captionBox->setLayout(caption);
    form->addRow(captionBox, names);
    return group;
}

QComboBox* QlumNewCertificateDlg::createChoice(const char* name, const QString& toolTip)
{
    auto* choice = new QComboBox;
    choice->setObjectName(QLatin1String(name));
    choice->setToolTip(toolTip);
    return choice;
}

QWidget* QlumNewCertificateDlg::createSettingsGroup()
{
    auto* group = new QGroupBox(tr("Certificate Settings"));
    m_keySize =
        createChoice("keyStrength", tr("Longer keys are safer and slower; many servers refuse 1024 bits"));
    for (const int bits : {1024, 2048, 3072, 4096})
        m_keySize->addItem(tr("%1 bits").arg(bits), bits);
    m_algorithm = createChoice("signatureAlgorithm", tr("Sha1 is for old servers only"));
    m_algorithm->addItem(QStringLiteral("Sha1"), UaPkiCertificate::Sha1);
    m_algorithm->addItem(QStringLiteral("Sha256"), UaPkiCertificate::Sha256);
    m_validity = createChoice("validity", tr("After this time a new certificate is needed"));
    for (const Validity& validity : validities)
        m_validity->addItem(tr(validity.text), validity.seconds);
    m_validity->setCurrentIndex(fiveYears);
    auto* form = new QFormLayout(group);
    form->addRow(tr("RSA &Key Strength:"), m_keySize);
    form->addRow(tr("Signature &Algorithm:"), m_algorithm);
    form->addRow(tr("Certificate &Validity:"), m_validity);
    return group;
}

QWidget* QlumNewCertificateDlg::createPasswordGroup()
{
    auto* group = new QWidget;
    m_protect = new QCheckBox(tr("&Password protect private key"));
    m_protect->setObjectName(QStringLiteral("protectKey"));
    auto* explanation = new QLabel(tr(
        "You can protect the access to your private key with a password. Enabling this causes the uawidgets "
        "to prompt you with a password dialog at startup."));
    explanation->setObjectName(QStringLiteral("protectKeyExplanation"));
    explanation->setWordWrap(true);
    m_protect->setWhatsThis(explanation->text());
    m_passwordEdit = makePassword("password", tr("Password"));
    m_repetition = makePassword("passwordRepetition", tr("Password (repeat)"));
    m_passwordStatus = makeStatus(QStringLiteral("password"));
    QSizePolicy policy = m_passwordStatus->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_passwordStatus->setSizePolicy(policy);
    auto* repetition = new QHBoxLayout;
    repetition->addWidget(m_repetition, 1);
    repetition->addWidget(m_passwordStatus);
    auto* form = new QFormLayout;
    form->addRow(tr("Pass&word:"), m_passwordEdit);
    auto* repetitionLabel = new QLabel(tr("Password (r&epeat):"));
    repetitionLabel->setBuddy(m_repetition);
    form->addRow(repetitionLabel, repetition);
    auto* layout = new QVBoxLayout(group);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_protect);
    layout->addWidget(explanation);
    layout->addLayout(form);
    return group;
}

QWidget* QlumNewCertificateDlg::createProgress()
{
    m_progressRow = new QWidget(this);
    m_progressText = new QLabel;
    m_progressText->setObjectName(QStringLiteral("progressText"));
    auto* bar = new QProgressBar;
    bar->setObjectName(QStringLiteral("progress"));
    bar->setAccessibleName(tr("Generating the key"));
    bar->setRange(0, 0); // luck decides how long it takes
    bar->setTextVisible(false);
    auto* stop = new QPushButton(tr("S&top"));
    stop->setObjectName(QStringLiteral("stop"));
    stop->setToolTip(tr("Stop generating the key and go back to the settings"));
    stop->setAutoDefault(false);
    connect(stop, &QPushButton::clicked, this, &QlumNewCertificateDlg::reject);
    auto* layout = new QHBoxLayout(m_progressRow);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_progressText);
    layout->addWidget(bar, 1);
    layout->addWidget(stop);
    QSizePolicy policy = m_progressRow->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // the dialog does not jump
    m_progressRow->setSizePolicy(policy);
    m_progressRow->hide();
    return m_progressRow;
}

void QlumNewCertificateDlg::createButtons(bool noCancel)
{
    m_problem = new QLabel(this);
    m_problem->setObjectName(QStringLiteral("problem"));
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    m_buttons = new QDialogButtonBox(noCancel ? QDialogButtonBox::StandardButtons(QDialogButtonBox::Ok)
                                              : QDialogButtonBox::Ok | QDialogButtonBox::Cancel,
                                     this);
    m_buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("ok"));
    m_buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QlumNewCertificateDlg::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QlumNewCertificateDlg::reject);
}

void QlumNewCertificateDlg::connectFields()
{
    for (const NameField& field : m_fields)
        connect(field.edit, &QLineEdit::textChanged, this, &QlumNewCertificateDlg::sltValidate);
    for (const QLineEdit* edit : {m_passwordEdit, m_repetition})
        connect(edit, &QLineEdit::textChanged, this, &QlumNewCertificateDlg::sltValidate);
    connect(m_protect, &QCheckBox::toggled, this, &QlumNewCertificateDlg::sltValidate);
    connect(m_validity, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &QlumNewCertificateDlg::sltValidityChosen);
}
