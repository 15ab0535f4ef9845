#include <servers/qlumidentitywidget.h>

#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>

#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QString>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>

QlumIdentityWidget::QlumIdentityWidget(QWidget* parent)
    : QWidget(parent), m_kind(new QComboBox), m_hint(new QLabel), m_userPage(new QWidget),
      m_userForm(new QFormLayout(m_userPage)), m_userName(new QLineEdit)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* form = new QFormLayout;
    setWhatsThis(
        tr("<b>User</b><br>Who you are to the server: anonymous, a user with a password, or the holder of "
           "a certificate and its private key. Only what the server accepts can be chosen."));
    m_kind->setObjectName(QStringLiteral("userTokenType"));
    m_kind->setAccessibleName(tr("User identity"));
    fillKinds(
        {QlumDiscoverySetting::Anonymous, QlumDiscoverySetting::UserName, QlumDiscoverySetting::Certificate});
    form->addRow(tr("&Identity:"), m_kind);
    layout->addLayout(form);
    m_hint->setObjectName(QStringLiteral("identityHint"));
    m_hint->setWordWrap(true);
    m_hint->hide();
    layout->addWidget(m_hint);
    m_userForm->setContentsMargins(0, 0, 0, 0);
    m_userName->setObjectName(QStringLiteral("userName"));
    m_userName->setAccessibleName(tr("User name"));
    m_userName->setMaxLength(QlumEndpointLimits::textLength);
    m_userForm->addRow(tr("User n&ame:"), m_userName);
    layout->addWidget(m_userPage);
    m_certificatePage = createCertificatePage();
    layout->addWidget(m_certificatePage);
    connect(m_kind, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
        m_wanted = m_kind->currentData().toInt();
        m_hint->hide();
        showPage();
    });
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

void QlumIdentityWidget::fillKinds(const QVector<int>& kinds)
{
    const QString names[] = {tr("Anonymous"), tr("User name and password"), tr("Certificate")};
    const QSignalBlocker blocker(m_kind);
    m_kind->clear();
    for (const int kind : kinds)
        m_kind->addItem(names[kind], kind);
}

void QlumIdentityWidget::setOffered(const QVector<QlumUserTokenPolicy>& tokens)
{
    QVector<int> kinds;
    for (const int kind :
         {QlumDiscoverySetting::Anonymous, QlumDiscoverySetting::UserName, QlumDiscoverySetting::Certificate})
        if (tokens.isEmpty() ||
            std::any_of(tokens.begin(), tokens.end(),
                        [kind](const QlumUserTokenPolicy& token) { return token.tokenType == kind; }))
            kinds.append(kind);
    const bool isNone = kinds.isEmpty();
    m_hint->setText(isNone ? tr("The endpoint takes only kinds of users that are not supported here.")
                           : tr("The endpoint does not take the kind of user that was chosen before."));
    m_hint->setVisible(!kinds.contains(m_wanted));
    if (isNone)
        kinds.append(m_wanted); // the server will say so itself
    fillKinds(kinds);
    {
        const QSignalBlocker blocker(m_kind);
        m_kind->setCurrentIndex(std::max(m_kind->findData(m_wanted), 0));
    }
    showPage();
}

void QlumIdentityWidget::setChoice(const QlumUserChoice& choice)
{
    m_wanted = choice.tokenType;
    m_kind->setCurrentIndex(std::max(m_kind->findData(choice.tokenType), 0));
    m_userName->setText(choice.userName);
    m_certificateFile->setText(choice.certificateFile);
    m_privateKeyFile->setText(choice.privateKeyFile);
}

QlumUserChoice QlumIdentityWidget::choice() const
{
    return {m_kind->currentData().toInt(), m_userName->text(), QString(), m_certificateFile->text(),
            m_privateKeyFile->text()};
}
