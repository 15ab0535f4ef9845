#pragma once
#include <uawidgets/table/qlumtablefilter.h>

#include <QHash>
#include <QModelIndex>
#include <QObject>
#include <QString>

#include <vector>

/// The rows of a data access view that the user wants to see, in the order of a column.
class QlumDaFilter : public QlumTableFilter
{
    Q_OBJECT
public:
    /// Which rows there are besides the text.
    enum Show {
        All,      ///< every row
        Troubled, ///< refused, unresolved, offline, or with a status that is not good
        Writable  ///< those that the user may write
    };

    /// What rows stand together by, before any column decides.
    enum Group {
        NoGroups, ///< nothing
        ByServer, ///< the server
        ByFolder  ///< the node that they are below, by server and path
    };

    /// Its source is a QlumDaModel.
    using QlumTableFilter::QlumTableFilter;

    /// All at first.
    void setShow(Show show);
    /// Looks again at rows whose state may be another, and at their order.
    void lookAgain();
    [[nodiscard]] Show shown() const { return m_show; } ///< as set
    /// None at first. Rows that come later are put into their groups by lookAgain().
    void setGroup(Group group);
    [[nodiscard]] Group group() const { return m_group; } ///< as set
    /// What the group of a row is called.
    [[nodiscard]] QString groupName(int sourceRow) const;
    /// What stands above the first row of each group, by that row: its name, and how many rows it has. Empty
    /// while there are no groups.
    [[nodiscard]] QHash<int, QString> headings() const;

protected:
    [[nodiscard]] bool acceptsRow(int row, const QModelIndex& parent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    void rankGroups();
    [[nodiscard]] int groupOf(int sourceRow) const;

    Show m_show = All;
    Group m_group = NoGroups;
    std::vector<int> m_groups; ///< by source row; rows beyond its end belong to the last group
};
