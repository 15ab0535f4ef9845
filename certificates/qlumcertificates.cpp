#include <certificates/qlumcertificates.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsplashscreen.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumnewcertificatedlg.h>
#include <certificates/qlumowncertificate.h>
#include <certificates/qlumstorefiles.h>
#include <certificates/qlumthumbprint.h>
#include <certificates/qlumvalidity.h>
#include <uabase/values/uastring.h>
#include <uawidgets/qlumpassworddlg.h>

#include <QApplication>
#include <QByteArray>
#include <QChar>
#include <QDebug>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {
const auto ownName = QStringLiteral("tavelin.der");

// Takes the splash screen away while a box is open: it stays on top of everything.
class SplashPause
{
public:
    explicit SplashPause(QlumSplashScreen* splash)
        : m_splash(splash && splash->isVisible() ? splash : nullptr)
    {
        if (m_splash)
            m_splash->hide();
    }
    ~SplashPause()
    {
        if (m_splash)
            m_splash->show();
    }
    SplashPause(const SplashPause&) = delete;
    SplashPause& operator=(const SplashPause&) = delete;

private:
    QlumSplashScreen* m_splash;
};

// Whoever can read the key can pretend to be this installation.
void closeToOthers(const QString& file)
{
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                      QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    if (QFile::permissions(file) & others)
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
}
} // namespace

QlumCertificates* QlumCertificates::s_instance = nullptr;

QlumCertificates* QlumCertificates::instance(QlumSplashScreen* splash)
{
    if (!s_instance)
        s_instance = new QlumCertificates(splash);
    return s_instance;
}

void QlumCertificates::cleanup()
{
    delete s_instance;
    s_instance = nullptr;
}

QlumCertificates::QlumCertificates(QlumSplashScreen* splash) : m_splash(splash)
{
    qlumRecoverOwnCertificate(QlumOwnCertificateFiles::ofApplication());
    startUp();
    m_splash = nullptr; // closes soon; later prompts have the main window
}

void QlumCertificates::log(int level, const QString& text)
{
    if (QlumApplicationInterface::instance())
        QlumLog(QStringLiteral("Tavelin")).write(level, text);
    else
        m_messages.append({level, text});
}

QList<QPair<int, QString>> QlumCertificates::takeMessages()
{
    return std::exchange(m_messages, {});
}

int QlumCertificates::show(int icon, const QString& title, const QString& text, int buttons) const
{
    const SplashPause pause(m_splash);
    QMessageBox box(static_cast<QMessageBox::Icon>(icon), title, text,
                    static_cast<QMessageBox::StandardButtons>(buttons), QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    if (buttons & QMessageBox::Yes) // and not Reset, which costs the key
        box.setDefaultButton(QMessageBox::Yes);
    return box.exec();
}

// ---- start-up

void QlumCertificates::startUp()
{
    int state = loadCertificates(false);
    bool keySeen = false;
    while (true) {
        if (state == Loaded) {
            keySeen = true;
            state = checkKey();
            if (state == Loaded)
                return;
        }
        const Outcome outcome = create(state);
        if (outcome == Outcome::Finished || (outcome == Outcome::Kept && keySeen))
            return;
        state = outcome == Outcome::Stored ? loadCertificates(false) : Loaded;
    }
}

void QlumCertificates::tellWhy(int state)
{
    if (state == NoCertificate)
        show(QMessageBox::Information, tr("Welcome to the Tavelin Initial Application Setup"),
             tr("When starting Tavelin for the first time, you have to create an application instance "
                "certificate to identify your installation.\nThis is needed to use OPC Unified Architecture "
                "security. UA security allows you to authenticate your application as well as to use "
                "encryption "
                "and digital signatures to protect your communication.\n\nPress OK to generate your personal "
                "X.509 application instance certificate and the corresponding RSA keys."),
             QMessageBox::Ok);
    else if (state == UriNotCompliant)
        show(QMessageBox::Information, tr("Tavelin Certificate Generation Setup"),
             tr("The application URI '%1' of the existing instance certificate is not compliant with the "
                "standard form of application URIs\n(e.g. 'urn:localhost:Korvanda:Tavelin').\n\nPress OK to "
                "generate a new X.509 application instance certificate and the corresponding RSA keys.")
                 .arg(toQString(m_certificate.info().URI)),
             QMessageBox::Ok);
}

QlumCertificates::Outcome QlumCertificates::create(int state)
{
    tellWhy(state);
    const SplashPause pause(m_splash);
    QlumNewCertificateDlg dialog(QStringLiteral("Tavelin@%1").arg(qlumHostName()), QStringLiteral("Korvanda"),
                                 false);
    if (state != NoCertificate)
        dialog.setValues(QlumOwnCertificate::renewed(
            QlumStoreFiles::loadCertificate(QlumCertificateStore::ownCertificateFile()), dialog.values()));
    if (dialog.exec() == QDialog::Accepted)
        return store(dialog);
    // who said Yes to a new certificate may think better of it: there is one to go on with
    if (state != NoCertificate)
        return Outcome::Kept;
    log(QlumLogLevel::Warning,
        tr("Tavelin has no certificate of its own: only servers without security can be "
           "connected. The next start asks for one again."));
    return Outcome::Finished;
}

QlumCertificates::Outcome QlumCertificates::store(const QlumNewCertificateDlg& dialog)
{
    const QString error = qlumStoreOwnCertificate(dialog.certificate(), dialog.keyPair(), dialog.password(),
                                                  QlumOwnCertificateFiles::ofApplication());
    if (error.isEmpty()) {
        log(QlumLogLevel::Info, tr("Created a new certificate for Tavelin: %1, application URI %2.")
                                    .arg(toQString(dialog.certificate().commonName()),
                                         toQString(dialog.certificate().info().URI)));
        return Outcome::Stored;
    }
    log(QlumLogLevel::Error, error);
    show(QMessageBox::Warning, tr("Could Not Create Certificate"),
         tr("The application certificate could not be created:") + QStringLiteral("\n%1").arg(error),
         QMessageBox::Ok);
    if (!m_certificate.isNull())
        return Outcome::Kept;
    // better than nothing: it serves until the program ends, and the next start asks again
    m_certificate = dialog.certificate();
    m_keyPair = dialog.keyPair();
    return Outcome::Finished;
}

// ---- certificate

int QlumCertificates::loadCertificates(bool silent)
{
    const QString folder = QlumCertificateStore::ownCertificates();
    UaPkiCertificate found;
    for (const QString& name : QlumStoreFiles::names(folder, QlumStoreFiles::Kind::Certificates)) {
        const QString path = QDir(folder).filePath(name);
        qDebug().noquote() << "try to load own certificate" << path;
        if (name == ownName)
            found = QlumStoreFiles::loadCertificate(path);
    }
    if (found.isNull())
        return m_certificate.isNull() ? NoCertificate : Loaded;
    const bool renew = !silent && wantsRenewal(found);
    m_certificate = found;
    if (!found.info().URI.startsWith("urn:"))
        return UriNotCompliant;
    if (renew)
        return Renew;
    log(QlumLogLevel::Info, tr("Loaded Tavelin's certificate."));
    return Loaded;
}

bool QlumCertificates::wantsRenewal(const UaPkiCertificate& certificate)
{
    const qint64 days = qlumDaysLeft(certificate.validTo());
    if (days <= qlumAskDays) {
        const bool expired =
            days < 0 || qlumValidity(certificate.validFrom(), certificate.validTo()) == QlumExpired;
        if (askForRenewal(
                expired
                    ? tr("Tavelin's certificate has expired.\nDo you want to create a new one?")
                    : tr("Tavelin's certificate will expire in %n days!\nDo you want to create a new one?",
                         nullptr, static_cast<int>(days))))
            return true;
    }
    const QString keyIdentifier =
        toQString(certificate.extensionValue(UaPkiCertificate::SubjectKeyIdentifier));
    return keyIdentifier.trimmed() == qlumEmptyKeyIdentifier() &&
           askForRenewal(
               tr("The extensions 'SubjectKeyIdentifier' and 'AuthorityKeyIdentifier' of Tavelin's "
                  "certificate have not been set correctly. The public key hash contained in these "
                  "extensions is the hash of an empty string. This might lead to problems connecting "
                  "to servers.\nDo you want to create a new one?"));
}

bool QlumCertificates::askForRenewal(const QString& text)
{
    return show(QMessageBox::Critical, tr("Tavelin Certificate Store"), text,
                QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

// ---- key

int QlumCertificates::loadPrivateKey()
{
    const QString path = QlumCertificateStore::ownPrivateKeyFile();
    m_keyPair = UaPkiRsaKeyPair();
    if (!QFileInfo::exists(path))
        return NoCertificate;
    closeToOthers(path);
    UaPkiRsaKeyPair found =
        UaPkiRsaKeyPair::fromPEMFile(toUaString(path), UaString(), &QlumCertificates::passwordCallback, this);
    if (found.isNull() || found.isMissingParameters())
        return KeyNotReadable;
    m_keyPair = found;
    return Loaded;
}

bool QlumCertificates::keyFits() const
{
    return UaPkiRsaKeyPair::checkKeyPair(m_certificate.publicKey(), m_keyPair.privateKey());
}

// Loaded when the start can go on, otherwise why a new certificate is wanted.
int QlumCertificates::checkKey()
{
    int result = loadPrivateKey();
    while (result == KeyNotReadable) {
        const int answer =
            show(QMessageBox::Warning, tr("Wrong password"),
                 tr("The PEM password you have specified was not correct. Do you want to retry "
                    "it? Press 'Reset' to generate a new key."),
                 QMessageBox::Yes | QMessageBox::Reset | QMessageBox::Cancel);
        if (answer == QMessageBox::Reset)
            return Renew;
        if (answer != QMessageBox::Yes) {
            log(QlumLogLevel::Warning,
                tr("Tavelin goes on without its private key: connections with security "
                   "are not possible."));
            return Loaded;
        }
        result = loadPrivateKey();
    }
    if (result == NoCertificate) {
        show(QMessageBox::Critical, tr("Private Key Not Found"),
             tr("The certificate's private key could not be found."), QMessageBox::Ok);
        return Loaded;
    }
    if (keyFits())
        return Loaded;
    const int answer = show(QMessageBox::Warning, tr("Private Key does not match Certificate"),
                            tr("The private key does not match the certificate's public key.\nDo you want to "
                               "create a new certificate?"),
                            QMessageBox::Yes | QMessageBox::No);
    return answer == QMessageBox::Yes ? Mismatch : Loaded;
}

void QlumCertificates::reload()
{
    loadCertificates(true);
    int result = loadPrivateKey();
    while (result == KeyNotReadable &&
           show(QMessageBox::Warning, tr("Wrong password"),
                tr("The PEM password you have specified was not correct. Do you want to retry it?"),
                QMessageBox::Yes | QMessageBox::Cancel) == QMessageBox::Yes)
        result = loadPrivateKey();
    if (result == NoCertificate)
        show(QMessageBox::Critical, tr("Private Key Not Found"),
             tr("The certificate's private key could not be found."), QMessageBox::Ok);
    else if (result == Loaded && !keyFits())
        show(QMessageBox::Warning, tr("Private Key does not match Certificate"),
             tr("The private key does not match the certificate's public key."), QMessageBox::Ok);
}

int QlumCertificates::passwordCallback(char* buffer, int size, int, void* userData)
{
    auto* self = static_cast<QlumCertificates*>(userData);
    const SplashPause pause(self ? self->m_splash : nullptr);
    QlumPasswordDlg dialog(QApplication::activeWindow());
    if (dialog.exec() != QDialog::Accepted)
        return 0;
    QByteArray password = dialog.takePassword().text().toLocal8Bit();
    const int length = std::min(static_cast<int>(password.size()), size);
    std::memcpy(buffer, password.constData(), static_cast<std::size_t>(length));
    ::explicit_bzero(password.data(), static_cast<std::size_t>(password.size()));
    return length;
}
