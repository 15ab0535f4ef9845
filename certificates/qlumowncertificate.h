#pragma once
#include <QString>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>

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

    /// Makes key and certificate, which may take seconds, and replaces the pair in the store. An empty result
    /// means success, else it says what failed; then the old pair is as it was.
    [[nodiscard]] QString create(const QString& password = QString()) const;
};

/// Writes the pair to the store: both files are complete before the old ones are touched. Empty on success.
[[nodiscard]] QString qlumStoreOwnCertificate(const UaPkiCertificate& certificate,
                                              const UaPkiRsaKeyPair& keyPair,
                                              const QString& password = QString());

/// Name of this host, at most 255 bytes.
[[nodiscard]] QString qlumHostName();
