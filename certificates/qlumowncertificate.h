#pragma once
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>

#include <QString>

#include <functional>

/// A certificate and its key, or what was wrong.
struct QlumMadeCertificate
{
    UaPkiRsaKeyPair keyPair;
    UaPkiCertificate certificate;
    QString error; ///< empty on success
};

/// Where the pair is kept.
struct QlumOwnCertificateFiles
{
    QString certificate;
    QString key;

    [[nodiscard]] static QlumOwnCertificateFiles ofApplication();
};

/// What goes into an application instance certificate, and how it comes into the store.
struct QlumOwnCertificate
{
    UaPkiIdentity subject;
    UaPkiCertificateInfo info;
    int keyBits = 2048;
    UaPkiCertificate::SignatureAlgorithm algorithm = UaPkiCertificate::Sha256;

    /// Common name and organisation as given, this host as DNS name, the application URI made of the three,
    /// valid for five years.
    [[nodiscard]] static QlumOwnCertificate initial(const QString& commonName, const QString& organization);
    /// Name, addresses, key length and algorithm of an older certificate; the application URI is made anew.
    [[nodiscard]] static QlumOwnCertificate renewed(const UaPkiCertificate& old,
                                                    const QlumOwnCertificate& initial);

    /// Makes key and certificate, which may take seconds; any thread. Ends early, with an error, soon after
    /// isCancelled answers true.
    [[nodiscard]] QlumMadeCertificate make(const std::function<bool()>& isCancelled = {}) const;
    /// Makes both and replaces the pair in the application's store. An empty result means success, else it
    /// says what failed; then the old pair is as it was.
    [[nodiscard]] QString create(const QString& password = QString()) const;
};

/// Writes the pair: both new files are complete and on the disk before the old ones are touched, and a
/// failure leaves the old pair. Empty on success.
[[nodiscard]] QString qlumStoreOwnCertificate(const UaPkiCertificate& certificate,
                                              const UaPkiRsaKeyPair& keyPair, const QString& password,
                                              const QlumOwnCertificateFiles& files);
/// Ends or undoes what a program that was killed in the middle of it left behind; call before the pair is
/// read.
void qlumRecoverOwnCertificate(const QlumOwnCertificateFiles& files);

/// "urn:", host, organisation and common name, separated by colons; what a URI cannot hold is written as
/// %XX.
[[nodiscard]] QString qlumApplicationUri(const QString& organization, const QString& commonName);
/// Name of this host, at most 255 bytes.
[[nodiscard]] QString qlumHostName();
