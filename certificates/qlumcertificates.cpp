#include <certificates/qlumcertificates.h>

#include <app/api/qlumsplashscreen.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumuatrace.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumowncertificate.h>
#include <uawidgets/qlumpassworddlg.h>

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>

#include <algorithm>
#include <cstring>

namespace {
constexpr qint64 kWarnDays = 13;
// SHA-1 of nothing, left by generators that hashed an empty key
const auto kEmptyKeyIdentifier =
    QStringLiteral("DA:39:A3:EE:5E:6B:4B:0D:32:55:BF:EF:95:60:18:90:AF:D8:07:09");

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

UaPkiCertificate loadFile(const QString& path)
{
    qDebug().noquote() << "try to load own certificate" << path;
    UaPkiCertificate certificate = UaPkiCertificate::fromDERFile(toUaString(path));
    if (certificate.isNull())
        certificate = UaPkiCertificate::fromPEMFile(toUaString(path));
    return certificate;
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
    startUp();
    m_splash = nullptr; // closes soon; later prompts have the main window
}

void QlumCertificates::log(int level, const QString& text)
{
    if (QlumApplicationInterface::instance())
        QlumUaTrace::log(level, text, QStringLiteral("Tavelin"));
    else
        m_messages.append({level, text});
}

QList<QPair<int, QString>> QlumCertificates::takeMessages()
{
    return std::exchange(m_messages, {});
}

void QlumCertificates::startUp()
{
    int state = loadCertificates(false);
    // bounded, so that a store that can not be written does not hold up the start for ever
    for (int round = 0; round < 5; ++round) {
        if (state != Loaded) {
            if (!create(state))
                return;
            state = loadCertificates(false);
            if (state != Loaded)
                continue;
        }
        state = checkKey();
        if (state == Loaded)
            return;
    }
}

bool QlumCertificates::create(int reason)
{
    QlumOwnCertificate wanted = QlumOwnCertificate::initial(QStringLiteral("Tavelin@%1").arg(qlumHostName()),
                                                            QStringLiteral("Korvanda"));
    if (reason != NoCertificate)
        wanted = QlumOwnCertificate::renewed(loadFile(QlumCertificateStore::ownCertificateFile()), wanted);
    if (m_splash)
        m_splash->showMessage(tr("Generating a key of %1 bits...").arg(wanted.keyBits), Qt::AlignLeft,
                              Qt::white);
    if (const QString error = wanted.create(); !error.isEmpty()) {
        log(QlumLogLevel::Error, error);
        return false;
    }
    log(QlumLogLevel::Info, tr("Created a new certificate for Tavelin: %1, application URI %2.")
                                .arg(toQString(wanted.subject.commonName), toQString(wanted.info.URI)));
    return true;
}

int QlumCertificates::loadCertificates(bool silent)
{
    const QDir folder(QlumCertificateStore::ownCertificates());
    const QStringList names = folder.entryList(
        {QStringLiteral("*.der"), QStringLiteral("*.crt"), QStringLiteral("*.cer")}, QDir::Files);
    for (const QString& name : names) {
        const UaPkiCertificate found = loadFile(folder.filePath(name));
        if (name != QLatin1String("tavelin.der") || found.isNull())
            continue;
        const bool renew = !silent && wantsRenewal(found);
        m_certificate = found;
        if (!found.info().URI.startsWith("urn:"))
            return UriNotCompliant;
        if (renew)
            return Renew;
        log(QlumLogLevel::Info, tr("Loaded Tavelin's certificate."));
        return Loaded;
    }
    return m_certificate.isNull() ? NoCertificate : Loaded;
}

bool QlumCertificates::wantsRenewal(const UaPkiCertificate& certificate)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime end = QDateTime::fromMSecsSinceEpoch(certificate.validTo().toMSecsSinceEpoch(), Qt::UTC);
    if (const qint64 days = now.daysTo(end); days <= kWarnDays) {
        const QString text =
            days >= 0 && end > now
                ? tr("Tavelin's certificate will expire in %1 days!\nDo you want to create a new one?")
                      .arg(days)
                : tr("Tavelin's certificate has expired.\nDo you want to create a new one?");
        if (ask(text))
            return true;
    }
    const QString keyIdentifier =
        toQString(certificate.extensionValue(UaPkiCertificate::SubjectKeyIdentifier));
    return keyIdentifier.trimmed() == kEmptyKeyIdentifier &&
           ask(tr("The extensions 'SubjectKeyIdentifier' and 'AuthorityKeyIdentifier' of Tavelin's "
                  "certificate have not "
                  "been set correctly. The public key hash contained in these extensions is the hash of an "
                  "empty string. "
                  "This might lead to problems connecting to servers.\nDo you want to create a new one?"));
}

bool QlumCertificates::ask(const QString& text)
{
    const SplashPause pause(m_splash);
    return QMessageBox::critical(nullptr, tr("Tavelin Certificate Store"), text,
                                 QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

int QlumCertificates::loadPrivateKey()
{
    const QString path = QlumCertificateStore::ownPrivateKeyFile();
    m_keyPair = UaPkiRsaKeyPair();
    if (!QFileInfo::exists(path))
        return NoCertificate;
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
    const SplashPause pause(m_splash);
    while (result == KeyNotReadable) {
        const auto answer = QMessageBox::warning(nullptr, tr("Wrong password"),
                                                 tr("The PEM password you have specified was not correct. Do "
                                                    "you want to retry it? Press 'Reset' to generate a "
                                                    "new key."),
                                                 QMessageBox::Yes | QMessageBox::Reset | QMessageBox::Cancel);
        if (answer == QMessageBox::Reset)
            return Renew;
        if (answer != QMessageBox::Yes)
            return Loaded;
        result = loadPrivateKey();
    }
    if (result == NoCertificate) {
        QMessageBox::critical(nullptr, tr("Private Key Not Found"),
                              tr("The certificate's private key could not be found."), QMessageBox::Ok);
        return Loaded;
    }
    if (keyFits())
        return Loaded;
    const auto answer =
        QMessageBox::warning(nullptr, tr("Private Key does not match Certificate"),
                             tr("The private key does not match the certificate's public key.\nDo you "
                                "want to create a new certificate?"),
                             QMessageBox::Yes | QMessageBox::No);
    return answer == QMessageBox::Yes ? Mismatch : Loaded;
}

void QlumCertificates::reload()
{
    loadCertificates(true);
    int result = loadPrivateKey();
    while (result == KeyNotReadable &&
           QMessageBox::warning(
               nullptr, tr("Wrong password"),
               tr("The PEM password you have specified was not correct. Do you want to retry it?"),
               QMessageBox::Yes | QMessageBox::Cancel) == QMessageBox::Yes)
        result = loadPrivateKey();
    if (result == NoCertificate)
        QMessageBox::critical(nullptr, tr("Private Key Not Found"),
                              tr("The certificate's private key could not be found."), QMessageBox::Ok);
    else if (result == Loaded && !keyFits())
        QMessageBox::warning(nullptr, tr("Private Key does not match Certificate"),
                             tr("The private key does not match the certificate's public key."),
                             QMessageBox::Ok);
}

int QlumCertificates::passwordCallback(char* buffer, int size, int, void* userData)
{
    auto* self = static_cast<QlumCertificates*>(userData);
    const SplashPause pause(self ? self->m_splash : nullptr);
    QlumPasswordDlg dialog;
    if (dialog.exec() != QDialog::Accepted)
        return 0;
    QByteArray password = dialog.password().toLocal8Bit();
    const int length = std::min(static_cast<int>(password.size()), size);
    std::memcpy(buffer, password.constData(), static_cast<std::size_t>(length));
    password.fill('\0');
    return length;
}
