// The certificates of one store as a table.
#pragma once
#include <certificates/qlumcertificateentry.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkicertificate.h>

#include <QAbstractTableModel>
#include <QIcon>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <array>
#include <vector>

class QlumCertificateModel : public QAbstractTableModel
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
    enum Role {
        EntryRole = 32,      ///< QlumCertificateEntry
        DerRole = 33,        ///< QByteArray
        ThumbprintRole = 34, ///< as qlumThumbprint
        SortRole = 35        ///< what the column is sorted by: texts, numbers or times
    };

    /// The icon is that of the application, for its own certificate.
    QlumCertificateModel(CertStoreType type, const QIcon& icon, QObject* parent = nullptr);

    [[nodiscard]] CertStoreType type() const { return m_type; }
    void addCertificate(const UaPkiCertificate& certificate, const QString& fileName,
                        QlumCertificateEntry::State state);
    /// There is at most one own certificate: a further one takes its row.
    void addEntries(std::vector<QlumCertificateEntry> entries);
    void clear();
    /// The index must be one of this model's.
    [[nodiscard]] const QlumCertificateEntry& entry(const QModelIndex& index) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

private:
    [[nodiscard]] static QVariant validityText(QlumValidity validity);
    [[nodiscard]] QString statusText(const QlumCertificateEntry& entry) const;
    [[nodiscard]] QString text(const QlumCertificateEntry& entry, int column) const;
    [[nodiscard]] QVariant sortValue(const QlumCertificateEntry& entry, int column) const;

    CertStoreType m_type;
    std::array<std::array<QIcon, 4>, 3> m_icons; ///< by state, then by validity
    std::vector<QlumCertificateEntry> m_entries;
};
