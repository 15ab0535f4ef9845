// What the user does with the certificate that the dialog shows.
#include <certificates/qlumcertificatedialog.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatedetailsmodel.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumstorefiles.h>
#include <certificates/qlumthumbprint.h>
#include <certificates/qlumtlsoverrules.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/values/uastring.h>

#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QModelIndex>
#include <QPlainTextEdit>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVBoxLayout>

#include <algorithm>

namespace {
QString filePath(const QString& folder, const UaPkiCertificate& certificate)
{
    return QStringLiteral("%1/%2.der").arg(folder, qlumThumbprint(certificate));
}
} // namespace

UaPkiCertificate QlumCertificateDialog::selectedCertificate() const
{
    const QlumCertificateChainNode* node = m_model->node(m_chainView->currentIndex());
    return node ? node->certificate() : UaPkiCertificate();
}

bool QlumCertificateDialog::write(const UaPkiCertificate& certificate, const QString& path)
{
    if (certificate.toDERFile(toUaString(path)))
        return true;
    QStringList reasons;
    for (const UaString& reason : certificate.getErrors())
        reasons.append(toQString(reason));
    QlumLog(QStringLiteral("Tavelin"))
        .error(tr("The certificate could not be written to '%1': %2")
                   .arg(path, qlumSingleLine(reasons.join(QLatin1String("; ")))));
    return false;
}

void QlumCertificateDialog::trust()
{
    trust(selectedCertificate());
}

void QlumCertificateDialog::trust(const UaPkiCertificate& certificate)
{
    const QString path = filePath(toQString(m_security->pki().trustedCertificates), certificate);
    const bool written = write(certificate, path);
    update();
    if (written)
        return;
    m_advice->setText(tr("The certificate could not be written to '%1'; the log tells why.").arg(path));
    m_advice->show();
}

void QlumCertificateDialog::trustIssuer()
{
    const QlumCertificateChainNode* server = m_model->node(m_model->serverCertificateIndex());
    if (!server || !server->parent())
        return;
    const UaPkiCertificate issuer = server->parent()->certificate();
    QMessageBox box(
        QMessageBox::Question, tr("Trust Issuer"),
        tr("Every server with a certificate issued by '%1' will be trusted, now and later. Compare "
           "the thumbprint with the one that the issuer names:\n%2\n\nDo you want to trust it?")
            .arg(server->parent()->displayName(), qlumThumbprint(issuer)),
        QMessageBox::Yes | QMessageBox::No, this);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    const QPointer<QlumCertificateDialog> self(this);
    if (box.exec() == QMessageBox::Yes && self)
        trust(issuer);
}

void QlumCertificateDialog::importList()
{
    const QPointer<QlumCertificateDialog> self(this);
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Import CRL"), QDir::homePath(), tr("Revocation lists (*.crl *.der *.pem);;All files (*)"));
    if (path.isEmpty() || !self)
        return;
    const QString failure = addList(path);
    update();
    if (failure.isEmpty())
        return;
    QMessageBox box(QMessageBox::Warning, tr("Import CRL"), failure, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

QString QlumCertificateDialog::addList(const QString& path) const
{
    const auto list = UaPkiRevocationList::fromFile(toUaString(path));
    if (list.isNull())
        return tr("The file holds no revocation list.");
    const QlumCertificateChainNode* issuer = m_model->root();
    while (issuer && !list.verify(issuer->certificate().publicKey()))
        issuer = issuer->child();
    if (!issuer)
        return tr("None of the issuers of this certificate has signed the list.");
    const QString folder = toQString(m_security->pki().trustedRevocationLists);
    return QlumStoreFiles::addList(list, folder) == QlumStoreFiles::Added::NotWritten
               ? tr("The list could not be written to '%1'.").arg(folder)
               : QString();
}

// ---- TLS

bool QlumCertificateDialog::hasOverrulable() const
{
    const auto& found = m_model->found();
    return isTls() && !m_serverUrl.isEmpty() && std::any_of(found.begin(), found.end(), qlumMayOverruleTls);
}

// Trust does away with some findings, an overrule with others; what is left ends every connection.
bool QlumCertificateDialog::isBlocked() const
{
    const auto& found = m_model->found();
    return std::any_of(found.begin(), found.end(), [](OpcUa_StatusCode status) {
        return status != OpcUa_BadCertificateUntrusted && status != OpcUa_BadCertificateChainIncomplete &&
               !qlumMayOverruleTls(status);
    });
}

bool QlumCertificateDialog::isOverrulable() const
{
    return hasOverrulable() && !isBlocked();
}

QString QlumCertificateDialog::overruleText() const
{
    const bool isHost = m_model->isFound(OpcUa_BadCertificateHostNameInvalid);
    const bool isTime = m_model->isFound(OpcUa_BadCertificateTimeInvalid) ||
                        m_model->isFound(OpcUa_BadCertificateIssuerTimeInvalid);
    return isHost && isTime ? tr("Use it for this server although it is of another host and not valid today")
           : isHost         ? tr("Use it for this server although it is of another host")
                            : tr("Use it for this server although it is not valid today");
}

void QlumCertificateDialog::accept()
{
    if (isOverrulable() && m_overrule->isChecked() &&
        !qlumOverruleTls(m_serverUrl, m_model->serverCertificate(), m_model->found()))
        return reject(); // the log tells why; the next attempt would only ask again
    QlumBaseWidget::accept();
}

// Whoever finds out later that the server is the right one can trust it in the certificate manager.
void QlumCertificateDialog::reject()
{
    const QlumCertificateChainNode* server = m_model->node(m_model->serverCertificateIndex());
    const QString folder = QlumCertificateStore::rejected();
    if (!isTls() && server && m_model->isFound(OpcUa_BadCertificateUntrusted) && QDir(folder).exists()) {
        const QString path = filePath(folder, server->certificate());
        if (!QFileInfo::exists(path))
            write(server->certificate(), path);
    }
    QlumBaseWidget::reject();
}

void QlumCertificateDialog::saveAs()
{
    const UaPkiCertificate certificate = selectedCertificate();
    const QString folder =
        isTls() ? QDir::homePath() : toQString(m_security->pki().trustedCertificates); // TLS trusts elsewhere
    const QPointer<QlumCertificateDialog> self(this); // the connect may end meanwhile
    const QString path = QFileDialog::getSaveFileName(this, tr("Save Certificate"),
                                                      filePath(folder, certificate), QStringLiteral("*.der"));
    if (path.isEmpty() || !self)
        return;
    const bool written = write(certificate, path);
    update();
    if (!written)
        QMessageBox::critical(this, tr("Save Certificate"), tr("The certificate could not be written."));
}

void QlumCertificateDialog::copyThumbprint() const
{
    QGuiApplication::clipboard()->setText(qlumThumbprint(selectedCertificate()));
}

// A cell shows no more than fits.
void QlumCertificateDialog::showWholeValue(const QModelIndex& index)
{
    const QModelIndex value = index.sibling(index.row(), QlumCertificateDetailsModel::ValueColumn);
    const QString text = value.data(Qt::EditRole).toString();
    if (text == value.data().toString())
        return;
    QlumBaseWidget dialog(QStringLiteral("QlumCertificateValue"), this);
    dialog.setWindowTitle(
        index.sibling(index.row(), QlumCertificateDetailsModel::NameColumn).data().toString());
    auto* edit = new QPlainTextEdit(text, &dialog);
    edit->setObjectName(QStringLiteral("value"));
    edit->setAccessibleName(tr("Whole value"));
    edit->setReadOnly(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(edit);
    layout->addWidget(buttons);
    dialog.resize(480, 400);
    dialog.exec();
}
