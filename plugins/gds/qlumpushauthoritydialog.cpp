#include <plugins/gds/qlumpushauthoritydialog.h>

#include <app/api/qlumtext.h>
#include <uabase/uapkicpp/uapkiauthority.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/values/uastring.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStringList>

namespace {
constexpr int usualYears = 10;
constexpr int mostYears = 30;
constexpr OpcUa_Int64 yearInSeconds = 365LL * 86400;
} // namespace

QlumPushAuthorityDialog::QlumPushAuthorityDialog(bool isNew, QWidget* parent)
    : QlumBaseWidget(isNew ? QStringLiteral("PushNewAuthorityDialog") : QStringLiteral("PushAuthorityDialog"),
                     parent),
      m_isNew(isNew), m_password(new QLineEdit)
{
    setObjectName(QStringLiteral("pushAuthorityDialog"));
    setWindowTitle(isNew ? tr("New Certificate Authority") : tr("Password of the Authority"));
    auto* why = new QLabel(
        isNew
            ? tr("The authority signs certificates of servers. Its key stays on this computer, protected by "
                 "the password, which nobody can find out again. Whoever shall trust its certificates needs "
                 "its certificate and its revocation list.")
            : tr("The key of the authority of this computer is protected by a password."));
    why->setWordWrap(true);
    why->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    auto* form = new QFormLayout(this);
    form->addRow(why);
    if (isNew) {
        m_name = new QLineEdit(tr("Tavelin Authority"));
        m_organization = new QLineEdit;
        m_years = new QSpinBox;
        m_years->setRange(1, mostYears);
        m_years->setValue(usualYears);
        m_years->setSuffix(tr(" years"));
        qlumAddRow(form, m_name, {QStringLiteral("pushAuthorityName"), tr("&Name:"), {}, {}});
        qlumAddRow(form, m_organization,
                   {QStringLiteral("pushAuthorityOrganization"), tr("&Organization:"), {}, {}});
        qlumAddRow(form, m_years, {QStringLiteral("pushAuthorityYears"), tr("&Valid for:"), {}, {}});
    }
    m_password->setEchoMode(QLineEdit::Password);
    qlumAddRow(form, m_password, {QStringLiteral("pushAuthorityPassword"), tr("&Password:"), {}, {}});
    if (isNew) {
        m_again = new QLineEdit;
        m_again->setEchoMode(QLineEdit::Password);
        qlumAddRow(form, m_again, {QStringLiteral("pushAuthorityAgain"), tr("Password &again:"), {}, {}});
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    m_go = buttons->addButton(isNew ? tr("&Make") : tr("&Sign"), QDialogButtonBox::AcceptRole);
    m_go->setObjectName(QStringLiteral("pushAuthorityGo"));
    form->addRow(buttons);
    for (QLineEdit* const field : findChildren<QLineEdit*>())
        connect(field, &QLineEdit::textChanged, this, &QlumPushAuthorityDialog::updateButtons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_password->setFocus();
    updateButtons();
}

void QlumPushAuthorityDialog::updateButtons()
{
    const bool isWhole = !m_isNew || (!m_name->text().isEmpty() && m_again->text() == m_password->text());
    m_go->setEnabled(isWhole && !m_password->text().isEmpty());
}

QlumSecretText QlumPushAuthorityDialog::takePassword()
{
    if (m_again)
        static_cast<void>(qlumTakePassword(*m_again)); // which wipes it
    return qlumTakePassword(*m_password);
}

QString QlumPushAuthorityDialog::create(const QString& folder)
{
    const QlumWaitCursor waiting;
    UaPkiIdentity name;
    name.commonName = toUaString(m_name->text());
    name.organization = toUaString(m_organization->text());
    const QlumSecretText password = takePassword();
    const UaPkiAuthority made = UaPkiAuthority::create(
        toUaString(folder), name, m_years->value() * yearInSeconds, toUaString(password.text()), nullptr);
    QStringList errors;
    if (made.isNull())
        for (const UaString& error : made.getErrors())
            errors.append(toQString(error));
    return errors.join(QStringLiteral("; "));
}
