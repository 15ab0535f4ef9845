// One certificate of a store.
#pragma once
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uadatetime.h>

#include <QDateTime>
#include <QMetaType>
#include <QString>

#include <memory>

/// A certificate and the file that it is in. What the lists show of it is read from the certificate once,
/// when the entry is made; copies share that. May be made on any thread.
class QlumCertificateEntry
{
public:
    enum State { Rejected = 0, InStore = 1, Own = 2 };

    /// Texts fit for display: escaped, one line, cut where they are very long.
    struct Details
    {
        QString name;
        QString organization; ///< of the issuer, as are the next four
        QString organizationUnit;
        QString locality;
        QString state;
        QString country;
        QString applicationUri;
        QString domainNames;
        QString addresses;
        QString signature;
        QString thumbprint;
        UaDateTime validFrom;
        UaDateTime validTo;
        int keySize = 0;
    };

    QlumCertificateEntry();
    QlumCertificateEntry(State state, const QString& fileName, const UaPkiCertificate& certificate);

    [[nodiscard]] State state() const { return m_state; }
    /// False: nothing in the file counts as a certificate, or not all of it; there is none here then.
    [[nodiscard]] bool isReadable() const { return !m_certificate.isNull(); }
    /// Without folder.
    [[nodiscard]] const QString& fileName() const { return m_fileName; }
    [[nodiscard]] const UaPkiCertificate& certificate() const { return m_certificate; }
    [[nodiscard]] const Details& details() const { return *m_details; }
    [[nodiscard]] QlumValidity validState() const;

private:
    State m_state = InStore;
    QString m_fileName;
    UaPkiCertificate m_certificate;
    std::shared_ptr<const Details> m_details;
};

Q_DECLARE_METATYPE(QlumCertificateEntry)
