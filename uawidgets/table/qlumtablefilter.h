#pragma once
#include <QAbstractItemModel>
#include <QModelIndex>
#include <QObject>
#include <QSortFilterProxyModel>
#include <QString>
#include <QStringMatcher>
#include <QVector>

#include <vector>

/// Sorts a table and shows the rows that hold a text, quickly enough for 100,000 rows while the user types.
/// Sorts numbers and times as such, before texts; texts by sortCaseSensitivity(), empty cells last. Setting
/// another text keeps selection and current row where they are still shown. GUI thread.
class QlumTableFilter : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    /// Shows all rows in the order of the source.
    explicit QlumTableFilter(QObject* parent = nullptr);

    /// Shows the rows only that have the text in one of the columns, in whatever case.
    /// False when it is the text already.
    bool setText(const QString& text);
    /// The columns that are searched; none: all.
    void setSearchedColumns(const QVector<int>& columns);

    /// Not null.
    void setSourceModel(QAbstractItemModel* model) override;
    /// A column of -1: the order of the source.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

protected:
    /// A condition besides the text; all rows pass unless it is overridden.
    [[nodiscard]] virtual bool acceptsRow(int row, const QModelIndex& parent) const;
    /// Call when acceptsRow() has changed its mind.
    void refilter();

    /// Both conditions.
    bool filterAcceptsRow(int row, const QModelIndex& parent) const final;
    /// By the sort role.
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    /// Places of the top rows in their order, as long as nothing about it changes; equal rows share one.
    struct Ranking
    {
        int column = -1;
        int role = 0;
        Qt::CaseSensitivity sensitivity = Qt::CaseInsensitive;
        std::vector<int> ranks;
    };

    [[nodiscard]] bool isRanked(int column) const;
    void rank(int column);

    QStringMatcher m_matcher;
    QVector<int> m_columns;
    Ranking m_ranking;
};
