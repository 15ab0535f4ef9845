#include <servers/qlumidentitywidget.h>

#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>

#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QString>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

QlumIdentityWidget::QlumIdentityWidget(QWidget* parent)
    : QWidget(parent), m_kind(new QComboBox), m_userPage(new QWidget),
      m_userForm(new QFormLayout(m_userPage)), m_userName(new QLineEdit)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* form = new QFormLayout;
    m_kind->setObjectName(QStringLiteral("userTokenType"));
    m_kind->setAccessibleName(tr("User identity"));
    m_kind->addItem(tr("Anonymous"), QlumDiscoverySetting::Anonymous);
    m_kind->addItem(tr("User name and password"), QlumDiscoverySetting::UserName);
    m_kind->addItem(tr("Certificate"), QlumDiscoverySetting::Certificate);
    form->addRow(tr("&Identity:"), m_kind);
    layout->addLayout(form);
    m_userForm->setContentsMargins(0, 0, 0, 0);
    m_userName->setObjectName(QStringLiteral("userName"));
    m_userName->setAccessibleName(tr("User name"));
    m_userName->setMaxLength(QlumEndpointLimits::textLength);
    m_userForm->addRow(tr("User n&ame:"), m_userName);
    layout->addWidget(m_userPage);
    m_certificatePage = createCertificatePage();
    layout->addWidget(m_certificatePage);
    connect(m_kind, qOverload<int>(&QComboBox::currentIndexChanged), this, &QlumIdentityWidget::showPage);
    showPage();
}

QWidget* QlumIdentityWidget::createCertificatePage()
{
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    QWidget* certificateRow = createFileRow(m_certificateFile, tr("Certificate file"),
                                            tr("Certificates (*.der *.cer);;All files (*)"));
    QWidget* keyRow =
        createFileRow(m_privateKeyFile, tr("Private key file"), tr("Keys (*.pem);;All files (*)"));
    form->addRow(tr("&Certificate:"), certificateRow);
    form->addRow(tr("&Private key:"), keyRow);
    return page;
}

QWidget* QlumIdentityWidget::createFileRow(QLineEdit*& edit, const QString& name, const QString& filter)
{
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    edit = new QLineEdit;
    edit->setObjectName(name);
    edit->setAccessibleName(name);
    edit->setMaxLength(QlumEndpointLimits::textLength);
    auto* browse = new QToolButton;
    browse->setObjectName(name + QLatin1String(" browse"));
    browse->setAccessibleName(tr("Choose %1").arg(name));
    browse->setToolTip(tr("Choose a file"));
    browse->setText(QStringLiteral("..."));
    layout->addWidget(edit, 1);
    layout->addWidget(browse);
    row->setFocusProxy(edit);
    connect(browse, &QToolButton::clicked, this, [this, edit, name, filter] {
        const QString file = QFileDialog::getOpenFileName(this, name, edit->text(), filter);
        if (!file.isEmpty())
            edit->setText(file);
    });
    return row;
}

void QlumIdentityWidget::showPage()
{
    const int kind = m_kind->currentData().toInt();
    m_userPage->setVisible(kind == QlumDiscoverySetting::UserName);
    m_certificatePage->setVisible(kind == QlumDiscoverySetting::Certificate);
    emit kindChanged();
}

void QlumIdentityWidget::addUserRow(const QString& label, QWidget* field)
{
    m_userForm->addRow(label, field);
}

void QlumIdentityWidget::addUserRow(QWidget* field)
{
    m_userForm->addRow(field);
}

void QlumIdentityWidget::setChoice(const QlumUserChoice& choice)
{
    m_kind->setCurrentIndex(m_kind->findData(choice.tokenType));
    m_userName->setText(choice.userName);
    m_certificateFile->setText(choice.certificateFile);
    m_privateKeyFile->setText(choice.privateKeyFile);
}

QlumUserChoice QlumIdentityWidget::choice() const
{
    return {m_kind->currentData().toInt(), m_userName->text(), QString(), m_certificateFile->text(),
            m_privateKeyFile->text()};
}
