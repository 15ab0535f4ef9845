// The revocation lists of one store as a table.
#pragma once
#include <certificates/qlumcrlentry.h>
#include <certificates/qlumstoremodel.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>

#include <QIcon>
#include <QObject>
#include <QString>
#include <QVariant>

#include <array>
#include <vector>

/// The columns of organisation, unit, locality, state and country are those of the issuer.
class QlumCRLModel : public QlumStoreModel<QlumCRLEntry>
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

    explicit QlumCRLModel(CRLStoreType type, QObject* parent = nullptr);

    [[nodiscard]] CRLStoreType type() const { return m_type; }
    void addCRL(const UaPkiRevocationList& list, const QString& fileName);
    void addEntries(std::vector<QlumCRLEntry> entries);

protected:
    [[nodiscard]] QString text(const QlumCRLEntry& entry, int column) const override;
    [[nodiscard]] QVariant sortValue(const QlumCRLEntry& entry, int column) const override;
    [[nodiscard]] QIcon icon(const QlumCRLEntry& entry) const override;
    [[nodiscard]] QVariant validityText(QlumValidity validity) const override;
    [[nodiscard]] UaByteArray der(const QlumCRLEntry& entry) const override;
    [[nodiscard]] const QString& derMimeType() const override { return qlumRevocationListMimeType; }

private:
    CRLStoreType m_type;
    std::array<QIcon, 4> m_icons; ///< by validity
};
