#pragma once
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>

#include <QCoreApplication>
#include <QList>
#include <QPair>
#include <QString>

class QlumNewCertificateDlg;
class QlumSplashScreen;

/// The application's own certificate and private key; one instance in the process, used on the GUI thread.
class QlumCertificates
{
    Q_DECLARE_TR_FUNCTIONS(QlumCertificates)
public:
    enum Result {
        Loaded = 0,
        NoCertificate = -1,
        Renew = -2,
        KeyNotReadable = -3,
        UriNotCompliant = -4,
        Mismatch = -5
    };

    /// The first call loads the certificate and its key; where they are missing or no good it asks the user
    /// and makes new ones.
    static QlumCertificates* instance(QlumSplashScreen* splash = nullptr);
    /// Deletes the instance; the next call of instance() begins anew.
    static void cleanup();

    QlumCertificates(const QlumCertificates&) = delete;
    QlumCertificates& operator=(const QlumCertificates&) = delete;

    /// Loaded, NoCertificate, Renew (the user wants a new one) or UriNotCompliant.
    int loadCertificates(bool silent);
    /// Loaded, NoCertificate (no such file) or KeyNotReadable.
    int loadPrivateKey();
    /// Reads both again after the store was changed; what is wrong is shown to the user.
    void reload();

    /// Other than 0 when the program cannot go on: it was told to end while it asked for a certificate.
    [[nodiscard]] int failure() const { return m_failure; }
    /// Null while there is none.
    [[nodiscard]] const UaPkiCertificate& certificate() const { return m_certificate; }
    /// The key of the certificate; null while it was not read.
    [[nodiscard]] const UaPkiRsaKeyPair& keyPair() const { return m_keyPair; }

    /// What was to be logged before there was a log: level and text, once.
    [[nodiscard]] QList<QPair<int, QString>> takeMessages();

    /// For the library that reads keys: asks the user, writes what he entered to the buffer, and answers its
    /// length; 0 when he gave none.
    static int passwordCallback(char* buffer, int size, int writing, void* userData);

private:
    /// Of the dialog for a new certificate: there is a new pair, the old one stays, or nothing more can be
    /// done.
    enum class Outcome { Stored, Kept, Finished };

    explicit QlumCertificates(QlumSplashScreen* splash);
    ~QlumCertificates() = default;

    void startUp();
    int checkKey();
    void tellWhy(int state);
    [[nodiscard]] Outcome create(int state);
    [[nodiscard]] Outcome store(const QlumNewCertificateDlg& dialog);
    [[nodiscard]] bool wantsRenewal(const UaPkiCertificate& certificate);
    [[nodiscard]] bool keyFits() const;
    [[nodiscard]] bool askForRenewal(const QString& text);
    int show(int icon, const QString& title, const QString& text, int buttons) const;
    void log(int level, const QString& text);

    static QlumCertificates* s_instance;

    QlumSplashScreen* m_splash;
    UaPkiCertificate m_certificate;
    UaPkiRsaKeyPair m_keyPair;
    QList<QPair<int, QString>> m_messages;
    int m_failure = 0;
};
