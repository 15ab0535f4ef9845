#include <uawidgets/qlumuserpassworddlg.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QString>
#include <QWidget>

QlumUserPasswordDlg::QlumUserPasswordDlg(const QString& serverName, const QString& userName, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumUserPasswordDlg"), parent), m_warning(new QLabel(this)),
      m_userName(new QLineEdit(userName, this)), m_password(new QLineEdit(this))
{
    setWindowTitle(serverName);
    m_warning->setObjectName(QStringLiteral("warning"));
    m_warning->setTextFormat(Qt::PlainText);
    m_warning->setWordWrap(true);
    m_warning->hide();
    m_userName->setObjectName(QStringLiteral("userName"));
    m_userName->setAccessibleName(tr("User name"));
    m_password->setObjectName(QStringLiteral("password"));
    m_password->setAccessibleName(tr("Password"));
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setWhatsThis(
        tr("<b>Password</b><br>Used for this connection; it is not written to any file."));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    // the title alone is cut where it is longer than the window
    auto* purpose = new QLabel(
        tr("The server '%1' wants to know who you are before it opens a session.").arg(serverName), this);
    purpose->setObjectName(QStringLiteral("purpose"));
    purpose->setTextFormat(Qt::PlainText);
    purpose->setWordWrap(true);
    purpose->setMinimumWidth(fontMetrics().averageCharWidth() * 45);

    auto* layout = new QFormLayout(this);
    layout->addRow(purpose);
    layout->addRow(m_warning);
    layout->addRow(tr("&User name:"), m_userName);
    layout->addRow(tr("&Password:"), m_password);
    layout->addRow(buttons);
    (userName.isEmpty() ? m_userName : m_password)->setFocus();
}

QlumUserPasswordDlg::~QlumUserPasswordDlg()
{
    static_cast<void>(qlumTakePassword(*m_password)); // which wipes it
}

QString QlumUserPasswordDlg::userName() const
{
    return m_userName->text();
}

QlumSecretText QlumUserPasswordDlg::password() const
{
    return m_password->text();
}

void QlumUserPasswordDlg::setWarning(const QString& text)
{
    m_warning->setText(text);
    m_warning->setVisible(!text.isEmpty());
}
