#pragma once
#include <uawidgets/table/qlumtablefilter.h>

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
    /// Whether a row is the first one of its group, while there are groups.
    [[nodiscard]] bool beginsGroup(int row) const;
    /// What the group of a row is called.
    [[nodiscard]] QString groupName(int sourceRow) const;

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
