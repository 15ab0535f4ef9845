#pragma once
#include <uawidgets/table/qlumtablefilter.h>

#include <QModelIndex>
#include <QObject>

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

    /// Its source is a QlumDaModel.
    using QlumTableFilter::QlumTableFilter;

    /// All at first.
    void setShow(Show show);
    /// Looks again at rows whose state may be another, and at their order.
    void lookAgain() { refilter(); }
    [[nodiscard]] Show shown() const { return m_show; } ///< as set

protected:
    [[nodiscard]] bool acceptsRow(int row, const QModelIndex& parent) const override;

private:
    Show m_show = All;
};
