// The revocation lists of one store as a table.
#pragma once
#include <certificates/qlumcrlentry.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>

#include <QAbstractTableModel>
#include <QIcon>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <array>
#include <vector>

class QlumCRLModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum CRLStoreType { Trusted = 0, Issuers = 1, TlsIssuers = 2 };
    enum Column {
        Number,
        ValidFrom,
        NextUpdate,
        Organization,
        OrganizationUnit,
        Locality,
        State,
        Country,
        FileName,
        ColumnCount
    };
    enum Role {
        EntryRole = 32, ///< QlumCRLEntry
        DerRole = 33,   ///< QByteArray
        SortRole = 35   ///< what the column is sorted by
    };

    explicit QlumCRLModel(CRLStoreType type, QObject* parent = nullptr);

    [[nodiscard]] CRLStoreType type() const { return m_type; }
    void addCRL(const UaPkiRevocationList& list, const QString& fileName);
    void addEntries(std::vector<QlumCRLEntry> entries);
    void clear();
    /// The index must be one of this model's.
    [[nodiscard]] const QlumCRLEntry& entry(const QModelIndex& index) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

private:
    [[nodiscard]] static QVariant validityText(QlumValidity validity);
    [[nodiscard]] static QString text(const QlumCRLEntry& entry, int column);
    [[nodiscard]] static QVariant sortValue(const QlumCRLEntry& entry, int column);

    CRLStoreType m_type;
    std::array<QIcon, 4> m_icons; ///< by validity
    std::vector<QlumCRLEntry> m_entries;
};
