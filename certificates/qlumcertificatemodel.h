// The certificates of one store as a table.
#pragma once
#include <certificates/qlumcertificateentry.h>
#include <certificates/qlumstoremodel.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkicertificate.h>

#include <QIcon>
#include <QObject>
#include <QString>
#include <QVariant>

#include <array>
#include <vector>

/// The columns of organisation, unit, locality, state and country are those of the issuer.
class QlumCertificateModel : public QlumStoreModel<QlumCertificateEntry>
{
    Q_OBJECT
public:
    enum CertStoreType { Trusted = 0, Issuers = 1, TlsIssuers = 2 };
    enum Column {
        Status,
        Name,
        ValidFrom,
        ValidTo,
        Organization,
        OrganizationUnit,
        Locality,
        State,
        Country,
        AppUri,
        DomainName,
        Address,
        FileName,
        DaysLeft,
        KeySize,
        Signature,
        Thumbprint,
        ColumnCount
    };

    /// The icon is that of the application, for its own certificate.
    QlumCertificateModel(CertStoreType type, const QIcon& icon, QObject* parent = nullptr);

    [[nodiscard]] CertStoreType type() const { return m_type; }
    void addCertificate(const UaPkiCertificate& certificate, const QString& fileName,
                        QlumCertificateEntry::State state);
    /// There is at most one own certificate: a further one takes its row.
    void addEntries(std::vector<QlumCertificateEntry> entries);

protected:
    [[nodiscard]] QVariant cell(const QlumCertificateEntry& entry, int column, int role) const override;
    [[nodiscard]] QString text(const QlumCertificateEntry& entry, int column) const override;
    [[nodiscard]] QVariant sortValue(const QlumCertificateEntry& entry, int column) const override;
    [[nodiscard]] QIcon icon(const QlumCertificateEntry& entry) const override;
    [[nodiscard]] QVariant validityText(QlumValidity validity) const override;
    [[nodiscard]] UaByteArray der(const QlumCertificateEntry& entry) const override;
    [[nodiscard]] const QString& derMimeType() const override { return qlumCertificateMimeType; }

private:
    [[nodiscard]] QString statusText(const QlumCertificateEntry& entry) const;

    CertStoreType m_type;
    QIcon m_unreadable;
    std::array<std::array<QIcon, 4>, 3> m_icons; ///< by state, then by validity
};
