#include <uawidgets/qlumpassworddlg.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QString>
#include <QWidget>

QlumPasswordDlg::QlumPasswordDlg(QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumPasswordDlg"), parent), m_password(new QLineEdit(this))
{
    setWindowTitle(tr("Enter Password"));
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setMinimumWidth(fontMetrics().averageCharWidth() * 30);
    m_password->setObjectName(QStringLiteral("password"));
    m_password->setAccessibleName(tr("Password"));
    m_password->setWhatsThis(
        tr("<b>Password</b><br>The password with which the private key file is protected."));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QFormLayout(this);
    layout->addRow(tr("&Password of the private key:"), m_password);
    layout->addRow(buttons);
}

QlumPasswordDlg::~QlumPasswordDlg()
{
    static_cast<void>(takePassword()); // which wipes it
}

QlumSecretText QlumPasswordDlg::takePassword()
{
    return qlumTakePassword(*m_password);
}
