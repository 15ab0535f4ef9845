// What the tables of a store's certificates and of its revocation lists have in common.
#pragma once
#include <app/api/qlumguithread.h>
#include <certificates/qlumvalidity.h>
#include <uabase/values/uabytestring.h>

#include <QAbstractTableModel>
#include <QByteArray>
#include <QIcon>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <iterator>
#include <utility>
#include <vector>

/// A row for each entry of one kind. The first column shows by an icon and its tool tip whether the entry is
/// still good. GUI thread.
template <typename Entry>
class QlumStoreModel : public QAbstractTableModel
{
public:
    enum Role {
        EntryRole = 32,      ///< the Entry
        DerRole = 33,        ///< QByteArray
        ThumbprintRole = 34, ///< of certificates, as qlumThumbprint
        SortRole = 35        ///< what the column is sorted by: texts, numbers or times
    };

    void clear()
    {
        qlumAssertGuiThread();
        beginResetModel();
        m_entries.clear();
        endResetModel();
    }
    /// The index must be one of this model's.
    [[nodiscard]] const Entry& entry(const QModelIndex& index) const
    {
        Q_ASSERT(index.model() == this);
        return m_entries.at(static_cast<std::size_t>(index.row()));
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override
    {
        qlumAssertGuiThread();
        if (!index.isValid())
            return {};
        const Entry& shown = entry(index);
        switch (role) {
        case Qt::DisplayRole:
            return text(shown, index.column());
        case Qt::DecorationRole:
            return index.column() == 0 ? QVariant(icon(shown)) : QVariant();
        case Qt::ToolTipRole:
            return index.column() == 0 ? validityText(shown.validState()) : QVariant();
        case EntryRole:
            return QVariant::fromValue(shown);
        case DerRole: {
            const UaByteArray bytes = der(shown);
            return QByteArray(reinterpret_cast<const char*>(bytes.rawData()), static_cast<int>(bytes.size()));
        }
        case SortRole:
            return sortValue(shown, index.column());
        default:
            return {};
        }
    }

protected:
    explicit QlumStoreModel(QObject* parent) : QAbstractTableModel(parent) {}

    /// For changes in place; tell of them by dataChanged().
    [[nodiscard]] std::vector<Entry>& entries() { return m_entries; }
    /// At the end.
    void append(std::vector<Entry> added)
    {
        qlumAssertGuiThread();
        if (added.empty())
            return;
        const int first = rowCount();
        beginInsertRows(QModelIndex(), first, first + static_cast<int>(added.size()) - 1);
        std::move(added.begin(), added.end(), std::back_inserter(m_entries));
        endInsertRows();
    }

    /// What the column shows.
    [[nodiscard]] virtual QString text(const Entry& entry, int column) const = 0;
    /// See SortRole.
    [[nodiscard]] virtual QVariant sortValue(const Entry& entry, int column) const = 0;
    [[nodiscard]] virtual QIcon icon(const Entry& entry) const = 0;
    /// Empty for what is simply good.
    [[nodiscard]] virtual QVariant validityText(QlumValidity validity) const = 0;
    [[nodiscard]] virtual UaByteArray der(const Entry& entry) const = 0;

private:
    std::vector<Entry> m_entries;
};
