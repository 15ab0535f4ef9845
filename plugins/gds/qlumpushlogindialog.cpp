#include <plugins/gds/qlumpushlogindialog.h>

#include <app/api/qlumsecret.h>
#include <app/api/qlumtext.h>
#include <uaclientsdk/useridentitytoken.h>
#include <uawidgets/qlumformrow.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <memory>

QlumPushLoginDialog::QlumPushLoginDialog(const QString& server, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("PushLoginDialog"), parent), m_user(new QLineEdit),
      m_password(new QLineEdit)
{
    setObjectName(QStringLiteral("pushLoginDialog"));
    setWindowTitle(tr("Connect as Administrator"));
    auto* why = new QLabel(
        tr("%1 will be connected anew, signed and encrypted, as the user who may configure it.").arg(server));
    why->setTextFormat(Qt::PlainText);
    why->setWordWrap(true);
    why->setMinimumWidth(fontMetrics().averageCharWidth() * 50);
    m_password->setEchoMode(QLineEdit::Password);
    auto* form = new QFormLayout(this);
    form->addRow(why);
    qlumAddRow(form, m_user, {QStringLiteral("pushLoginUser"), tr("&User name:"), {}, {}});
    qlumAddRow(form, m_password, {QStringLiteral("pushLoginPassword"), tr("&Password:"), {}, {}});
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    QPushButton* const connectButton = buttons->addButton(tr("&Connect"), QDialogButtonBox::AcceptRole);
    connectButton->setObjectName(QStringLiteral("pushLoginConnect"));
    connectButton->setEnabled(false);
    connect(m_user, &QLineEdit::textChanged, connectButton,
            [connectButton](const QString& text) { connectButton->setEnabled(!text.isEmpty()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

QlumIdentity QlumPushLoginDialog::takeIdentity()
{
    const QlumSecretText password = qlumTakePassword(*m_password);
    return std::make_shared<const UaClientSdk::UaUserNameIdentityToken>(toUaString(m_user->text()),
                                                                        qlumToSecretBytes(password));
}
