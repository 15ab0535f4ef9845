// What the tables of a store's certificates and of its revocation lists have in common.
#pragma once
#include <certificates/qlumvalidity.h>
#include <uabase/values/uabytestring.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QByteArray>
#include <QIcon>
#include <QModelIndex>
#include <QString>
#include <QVariant>

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

    void clear() { this->reset(); }
    /// The index must be one of this model's.
    [[nodiscard]] const Entry& entry(const QModelIndex& index) const { return this->rowAt(index); }

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
};
