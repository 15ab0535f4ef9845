#include <servers/qlumidentitydialog.h>

#include <app/api/qlumsecret.h>
#include <servers/qlumidentitywidget.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

QlumIdentityDialog::QlumIdentityDialog(const QString& server, const QlumUserChoice& proposal,
                                       const QString& warning, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumIdentityDialog"), parent), m_identity(new QlumIdentityWidget(this)),
      m_password(new QLineEdit)
{
    setWindowTitle(tr("Change User of %1").arg(server));
    auto* told = new QLabel(tr("As whom do you want to go on? The settings of the server stay as they are."));
    told->setWordWrap(true);
    m_password->setObjectName(QStringLiteral("password"));
    m_password->setAccessibleName(tr("Password"));
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setWhatsThis(
        tr("<b>Password</b><br>Used for this connection; it is not written to any file."));
    m_identity->addUserRow(tr("Pass&word:"), m_password);
    if (!warning.isEmpty()) {
        auto* danger = new QLabel(warning);
        danger->setObjectName(QStringLiteral("warning"));
        danger->setTextFormat(Qt::PlainText);
        danger->setWordWrap(true);
        m_identity->addUserRow(danger);
    }
    m_identity->setChoice(proposal);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(told);
    layout->addWidget(m_identity);
    layout->addStretch();
    layout->addWidget(buttons);
}

QlumIdentityDialog::~QlumIdentityDialog()
{
    static_cast<void>(qlumTakePassword(*m_password)); // which wipes it
}

QlumUserChoice QlumIdentityDialog::choice() const
{
    QlumUserChoice choice = m_identity->choice();
    choice.password = m_password->text();
    return choice;
}
