// What the tables of a store's certificates and of its revocation lists have in common.
#pragma once
#include <certificates/qlumvalidity.h>
#include <uabase/values/uabytestring.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QByteArray>
#include <QIcon>
#include <QMimeData>
#include <QModelIndex>
#include <QModelIndexList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>

#include <functional>
#include <utility>

/// What a dragged row brings with it, besides its file: the bytes of one certificate in DER form.
inline const QString qlumCertificateMimeType = QStringLiteral("application/pkix-cert");
/// The same for a revocation list.
inline const QString qlumRevocationListMimeType = QStringLiteral("application/pkix-crl");

/// A row for each entry of one kind. The first column shows by an icon and its tool tip whether the entry is
/// still good. GUI thread.
template <typename Entry>
class QlumStoreModel : public QlumTableModel<Entry>
{
public:
    enum Role {
        EntryRole = 32,      ///< the Entry
        DerRole = 33,        ///< QByteArray
        ThumbprintRole = 34, ///< of certificates, as qlumThumbprint
        SortRole = 35        ///< what the column is sorted by: texts, numbers or times
    };

    /// Where the file of a row is, so that it can be dragged to other programs; without it only the bytes
    /// can.
    using FileOf = std::function<QString(const QModelIndex& index)>;
    void setFileOf(FileOf fileOf) { m_fileOf = std::move(fileOf); }

    void clear() { this->reset(); }
    /// The index must be one of this model's.
    [[nodiscard]] const Entry& entry(const QModelIndex& index) const { return this->rowAt(index); }

    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return QlumTableModel<Entry>::flags(index) |
               (index.isValid() ? Qt::ItemIsDragEnabled : Qt::NoItemFlags);
    }
    [[nodiscard]] QStringList mimeTypes() const override
    {
        return {derMimeType(), QStringLiteral("text/uri-list")};
    }
    /// A file may hold more than the row shows: whoever knows the bytes takes those.
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override
    {
        if (indexes.isEmpty())
            return nullptr;
        auto* data = new QMimeData;
        const QByteArray bytes = this->data(indexes.first(), DerRole).toByteArray();
        if (!bytes.isEmpty())
            data->setData(derMimeType(), bytes);
        if (m_fileOf)
            data->setUrls({QUrl::fromLocalFile(m_fileOf(indexes.first()))});
        return data;
    }

protected:
    using QlumTableModel<Entry>::QlumTableModel;

    [[nodiscard]] QVariant cell(const Entry& shown, int column, int role) const override
    {
        switch (role) {
        case Qt::DisplayRole:
            return text(shown, column);
        case Qt::DecorationRole:
            return column == 0 ? QVariant(icon(shown)) : QVariant();
        case Qt::ToolTipRole:
            return column == 0 ? validityText(shown.validState()) : QVariant();
        case EntryRole:
            return QVariant::fromValue(shown);
        case DerRole: {
            const UaByteArray bytes = der(shown);
            return QByteArray(reinterpret_cast<const char*>(bytes.rawData()), static_cast<int>(bytes.size()));
        }
        case SortRole:
            return sortValue(shown, column);
        default:
            return {};
        }
    }

    /// What the column shows.
    [[nodiscard]] virtual QString text(const Entry& entry, int column) const = 0;
    /// See SortRole.
    [[nodiscard]] virtual QVariant sortValue(const Entry& entry, int column) const = 0;
    [[nodiscard]] virtual QIcon icon(const Entry& entry) const = 0;
    /// Empty for what is simply good.
    [[nodiscard]] virtual QVariant validityText(QlumValidity validity) const = 0;
    [[nodiscard]] virtual UaByteArray der(const Entry& entry) const = 0;
    [[nodiscard]] virtual const QString& derMimeType() const = 0;

private:
    FileOf m_fileOf;
};
