#pragma once
#include <plugins/dataaccess/parts/qlumsnapshot.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <array>
#include <vector>

/// What is different between two snapshots, a row for each of theirs.
class QlumDifferenceModel : public QlumTableModel<QlumDifferenceRow>
{
    Q_OBJECT
public:
    /// In the order of the construction.
    enum Column {
        Difference,
        Server,
        Name,
        NodeId,
        BrowsePath,
        Before,
        After,
        Unit,
        StatusBefore,
        StatusAfter,
        TimeBefore,
        TimeAfter,
        ColumnCount
    };

    /// Empty.
    explicit QlumDifferenceModel(QObject* parent = nullptr);

    /// Shows these.
    void show(std::vector<QlumDifferenceRow> differences);
    /// So many rows are of that kind.
    [[nodiscard]] int count(QlumDifferenceKind kind) const
    {
        return m_counts[static_cast<std::size_t>(kind)];
    }

protected:
    [[nodiscard]] QVariant cell(const QlumDifferenceRow& row, int column, int role) const override;

private:
    [[nodiscard]] QString text(const QlumDifferenceRow& row, int column) const;

    std::array<int, 5> m_counts{};
};

/// Leaves the rows out that are the same, unless they are asked for.
class QlumDifferenceFilter : public QlumTableFilter
{
    Q_OBJECT
public:
    using QlumTableFilter::QlumTableFilter;

    /// Whether they are shown, too.
    void showSame(bool show);

protected:
    [[nodiscard]] bool acceptsRow(int row, const QModelIndex& parent) const override;

private:
    bool m_showsSame = false;
};
