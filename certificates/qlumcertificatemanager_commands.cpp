// What the buttons of the certificate manager do.
#include <certificates/qlumcertificatemanager.h>

#include <app/api/qlumlog.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificateentry.h>
#include <certificates/qlumcertificatemodel.h>
#include <certificates/qlumnewcertificatedlg.h>
#include <certificates/qlumowncertificate.h>
#include <certificates/qlumstorefiles.h>
#include <certificates/qlumstorepage.h>
#include <certificates/qlumstorepages.h>
#include <uabase/system/uadir.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uastring.h>

#include <QClipboard>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QTabWidget>

#include <algorithm>

namespace {
QlumLog managerLog()
{
    return QlumLog(QlumCertificateManager::tr("Certificates"));
}

const auto questionTitle = QStringLiteral("CertificateManager");

// A name from a folder is text: it may look like markup.
int showBox(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
            QMessageBox::StandardButtons buttons, QMessageBox::StandardButton preset)
{
    QMessageBox box(icon, title, text, buttons, parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(preset);
    return box.exec();
}

// The host's present name first: the old certificate may have been made under another one.
QlumOwnCertificate renewedHere(const UaPkiCertificate& old, const QlumOwnCertificate& initial)
{
    QlumOwnCertificate result = QlumOwnCertificate::renewed(old, initial);
    UaStringArray names = initial.info.DNSNames;
    for (const OpcUa_String& name : result.info.DNSNames)
        if (std::none_of(names.begin(), names.end(),
                         [&name](const OpcUa_String& other) { return UaString(other) == UaString(name); }))
            static_cast<void>(names.append(name)); // else one name less
    result.info.DNSNames = names;
    return result;
}
} // namespace

void QlumCertificateManager::tell(int icon, const QString& title, const QString& text)
{
    showBox(this, static_cast<QMessageBox::Icon>(icon), title, text, QMessageBox::Ok, QMessageBox::Ok);
}

bool QlumCertificateManager::ask(const QString& title, const QString& text)
{
    return showBox(this, QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No,
                   QMessageBox::No) == QMessageBox::Yes;
}

// ---- rows

void QlumCertificateManager::sltTrust()
{
    const QlumCertificatePage* page = m_certificates[QlumCertificateModel::Trusted];
    const int count = page->countOfFile(page->currentFile());
    if (count > 1 && !ask(tr("Trust Certificates"),
                          tr("The file holds %n certificates, which all become trusted.\nDo you want to "
                             "trust all of them?",
                             nullptr, count)))
        return;
    move(m_store.rejected, m_store.trustedCertificates,
         tr("Could not move certificate %1 to the trusted directory"));
}

void QlumCertificateManager::sltReject()
{
    move(m_store.trustedCertificates, m_store.rejected,
         tr("Could not move certificate %1 to the rejected directory"));
}

void QlumCertificateManager::move(const QString& from, const QString& to, const QString& failure)
{
    QlumCertificatePage* page = m_certificates[QlumCertificateModel::Trusted];
    const QlumCertificateEntry* entry = page->currentEntry();
    if (!entry)
        return;
    const QString name = entry->fileName();
    if (QlumStoreFiles::move(name, from, to)) {
        page->want(QDir(to).filePath(name));
    } else {
        managerLog().error(failure.arg(name));
        tell(QMessageBox::Warning, questionTitle, failure.arg(name));
    }
    reloadPages({page});
}

void QlumCertificateManager::sltOpen()
{
    if (const QlumStorePage* page = currentPage(); page && !page->currentFile().isEmpty())
        qlumOpenOnDesktop(page->currentFile(), this);
}

void QlumCertificateManager::sltDelete()
{
    QlumStorePage* page = currentPage();
    const QString path = page ? page->currentFile() : QString();
    if (path.isEmpty())
        return;
    const bool list = qobject_cast<QlumCrlPage*>(page) != nullptr;
    QString question = list ? tr("Do you really want to delete the selected CRL?")
                            : tr("Do you really want to delete the selected certificate?");
    const auto* certificates = qobject_cast<QlumCertificatePage*>(page);
    if (const int count = certificates ? certificates->countOfFile(path) : 1; count > 1)
        question += tr("\nIts file holds %n certificates, which are all deleted.", nullptr, count);
    if (!ask(list ? tr("Delete CRL") : tr("Delete Certificate"), question))
        return;
    if (UaDir::remove(toUaString(path))) {
        const QString failure = list ? tr("Could not delete CRL %1") : tr("Could not delete certificate %1");
        tell(QMessageBox::Warning, questionTitle, failure.arg(QFileInfo(path).fileName()));
    }
    reloadPages({page});
}

void QlumCertificateManager::sltCopyThumbprint()
{
    const auto* page = qobject_cast<QlumCertificatePage*>(m_certificateTabs->currentWidget());
    if (const QlumCertificateEntry* entry = page ? page->currentEntry() : nullptr)
        QGuiApplication::clipboard()->setText(entry->details().thumbprint);
}

void QlumCertificateManager::addFiles(QlumStorePage* page, const QStringList& paths)
{
    const auto tabs = page->parentWidget() ? m_certificateTabs->indexOf(page) : -1;
    const int store = tabs >= 0 ? tabs : m_listTabs->indexOf(page);
    if (store < 0 || !ask(tr("Add Certificates"),
                          tr("Do you want to add the dropped files (%1) to the store '%2'?")
                              .arg(QString::number(paths.size()), m_certificateTabs->tabText(store))))
        return;
    QStringList failed;
    for (const QString& path : paths) {
        const auto added = QlumStoreFiles::add(path, static_cast<QlumStoreFiles::Store>(store), m_store);
        if (added == QlumStoreFiles::Added::NotReadable)
            failed
                << tr("%1 is neither a certificate nor a revocation list.").arg(QFileInfo(path).fileName());
        else if (added == QlumStoreFiles::Added::NotWritten)
            failed << tr("%1 could not be written to the store.").arg(QFileInfo(path).fileName());
    }
    sltReload();
    if (!failed.isEmpty())
        tell(QMessageBox::Warning, questionTitle, failed.mid(0, 10).join(QLatin1Char('\n')));
}

// ---- the application's own certificate

void QlumCertificateManager::sltOpenOwnLocation()
{
    qlumOpenOnDesktop(QFileInfo(m_store.ownCertificateFile).path(), this);
}

void QlumCertificateManager::sltCopyApplicationCertificate()
{
    if (!QFileInfo::exists(m_store.ownCertificateFile)) {
        tell(QMessageBox::Information, tr("Certificate Not Found"),
             tr("The application certificate '%1' does not exist.").arg(m_store.ownCertificateFile));
        return;
    }
    const QString proposed = QDir::home().filePath(QFileInfo(m_store.ownCertificateFile).fileName());
    const QString target = QFileDialog::getSaveFileName(this, tr("Copy Application Certificate To"), proposed,
                                                        tr("Certificates (*.der)"));
    if (target.isEmpty())
        return;
    if (UaDir::copy(toUaString(m_store.ownCertificateFile), toUaString(target)))
        tell(QMessageBox::Information, tr("Could Not Copy Certificate"),
             tr("The application certificate could not be copied to '%1'.")
                 .arg(QDir::toNativeSeparators(target)));
}

void QlumCertificateManager::sltCreateApplicationCertificate()
{
    QlumNewCertificateDlg dialog(m_applicationName, m_organization, false, m_canProtectKey, this);
    const UaPkiCertificate old = QlumStoreFiles::loadCertificate(m_store.ownCertificateFile);
    if (!old.isNull())
        dialog.setValues(renewedHere(old, dialog.values()));
    if (dialog.exec() != QDialog::Accepted)
        return;
    store(dialog);
    sltReload();
}

void QlumCertificateManager::store(const QlumNewCertificateDlg& dialog)
{
    const QString error = qlumStoreOwnCertificate(dialog.certificate(), dialog.keyPair(), dialog.password(),
                                                  {m_store.ownCertificateFile, m_store.ownPrivateKeyFile});
    if (error.isEmpty()) {
        emit sigNewCertificateCreated();
        return;
    }
    managerLog().error(error);
    tell(QMessageBox::Warning, tr("Could Not Create Certificate"),
         tr("The application certificate could not be created:") + QStringLiteral("\n%1").arg(error));
}
