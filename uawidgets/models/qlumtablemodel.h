#pragma once
#include <app/api/qlumguithread.h>
#include <uawidgets/models/qlumtitledmodel.h>

#include <QAbstractTableModel>
#include <QModelIndex>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariant>
#include <QVector>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>
#include <utility>

/// A table of values. A tool's model gives the titles and says by cell() what a row shows; all changes go
/// through the functions below, which tell the views and stop a debug build on any other than the GUI thread.
template <typename Row>
class QlumTableModel : public QlumTitledModel<QAbstractTableModel>
{
public:
    /// The rows that views know of.
    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    /// One for each title.
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : titleCount();
    }
    /// What cell() answers.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const final
    {
        qlumAssertGuiThread();
        return checkIndex(index, CheckIndexOption::IndexIsValid) ? cell(rowAt(index), index.column(), role)
                                                                 : QVariant();
    }

    /// Oldest or topmost first. Appending and dropping at the front leave references to other rows good.
    [[nodiscard]] const std::deque<Row>& rows() const { return m_rows; }
    /// The row must be there.
    [[nodiscard]] const Row& rowAt(int row) const { return m_rows.at(static_cast<std::size_t>(row)); }
    /// The index must be one of this model's.
    [[nodiscard]] const Row& rowAt(const QModelIndex& index) const
    {
        Q_ASSERT(index.model() == this);
        return rowAt(index.row());
    }

protected:
    /// A column for each title.
    explicit QlumTableModel(QStringList titles, QObject* parent = nullptr)
        : QlumTitledModel(std::move(titles), parent)
    {
        m_flushTimer.setSingleShot(true);
        m_flushTimer.setInterval(flushMilliseconds);
        connect(&m_flushTimer, &QTimer::timeout, this, [this] { flush(); });
    }

    /// What a row shows in a column; an invalid QVariant for roles that it has nothing for.
    [[nodiscard]] virtual QVariant cell(const Row& row, int column, int role) const = 0;

    /// Replaces everything in one step; waiting rows are dropped.
    void reset(std::deque<Row> rows = {})
    {
        qlumAssertGuiThread();
        beginResetModel();
        m_gathered.clear();
        m_rows = std::move(rows);
        endResetModel();
    }

    /// Inserts a whole container of rows before the one given, in one step.
    template <typename Rows>
    void insert(int before, Rows added)
    {
        qlumAssertGuiThread();
        if (added.empty())
            return;
        beginInsertRows({}, before, before + static_cast<int>(added.size()) - 1);
        m_rows.insert(position(before), std::make_move_iterator(added.begin()),
                      std::make_move_iterator(added.end()));
        endInsertRows();
    }

    /// As insert(), at the end; beyond the maximum the oldest rows go.
    template <typename Rows>
    void append(Rows added)
    {
        if (added.size() > m_maximumRows)
            added.erase(added.begin(), added.end() - static_cast<std::ptrdiff_t>(m_maximumRows));
        trimTo(m_maximumRows - added.size());
        insert(rowCount(), std::move(added));
    }

    /// These rows must be there.
    void remove(int first, int count)
    {
        qlumAssertGuiThread();
        if (count <= 0)
            return;
        beginRemoveRows({}, first, first + count - 1);
        m_rows.erase(position(first), position(first + count));
        endRemoveRows();
    }

    /// Moves rows before another one, counted before the move; false when that would change nothing.
    bool move(int first, int count, int before)
    {
        qlumAssertGuiThread();
        if (count <= 0 || !beginMoveRows({}, first, first + count - 1, {}, before))
            return false;
        if (before < first)
            std::rotate(position(before), position(first), position(first + count));
        else
            std::rotate(position(first), position(first + count), position(before));
        endMoveRows();
        return true;
    }

    /// Changes a row in place by the function and tells of it.
    template <typename Change>
    void change(int row, Change&& apply, const QVector<int>& roles = {})
    {
        qlumAssertGuiThread();
        apply(m_rows.at(static_cast<std::size_t>(row)));
        emit dataChanged(index(row, 0), index(row, titleCount() - 1), roles);
    }

    /// A row to change in place without telling: for values that come faster than views could hear of each.
    /// The model says in its own way that they have to be painted.
    [[nodiscard]] Row& quietRow(int row)
    {
        qlumAssertGuiThread();
        return m_rows.at(static_cast<std::size_t>(row));
    }

    /// Offers every row to the function, which changes some and is true for these; told in one step.
    template <typename Change>
    void changeRows(Change&& apply)
    {
        qlumAssertGuiThread();
        int first = -1;
        int last = -1;
        for (int row = 0; row < rowCount(); ++row)
            if (apply(m_rows[static_cast<std::size_t>(row)])) {
                first = first < 0 ? row : first;
                last = row;
            }
        if (first >= 0)
            emit dataChanged(index(first, 0), index(last, titleCount() - 1));
    }

    /// A column of every row looks different now.
    void tellColumnChanged(int column, const QVector<int>& roles = {})
    {
        qlumAssertGuiThread();
        if (!m_rows.empty())
            emit dataChanged(index(0, column), index(rowCount() - 1, column), roles);
    }

    // ---- rows that come one by one and fast

    /// Never below 1; the oldest rows are dropped first. Without a call there is no maximum.
    void setMaximumRows(int count)
    {
        m_maximumRows = static_cast<std::size_t>(std::max(1, count));
        trimTo(m_maximumRows);
    }

    /// Lets a row wait for the next flush(), so that a flood costs the views twenty insertions a second.
    void gather(Row row)
    {
        qlumAssertGuiThread();
        m_gathered.push_back(std::move(row));
        if (!m_flushTimer.isActive())
            m_flushTimer.start();
    }
    /// How many rows wait for flush().
    [[nodiscard]] std::size_t gatheredCount() const { return m_gathered.size(); }

    /// Appends what waits. Runs by itself; a model that adds something of its own overrides it.
    virtual void flush()
    {
        qlumAssertGuiThread();
        m_flushTimer.stop();
        append(std::exchange(m_gathered, {}));
    }

private:
    static constexpr int flushMilliseconds = 50;

    [[nodiscard]] auto position(int row) { return m_rows.begin() + row; }
    void trimTo(std::size_t count)
    {
        if (m_rows.size() > count)
            remove(0, static_cast<int>(m_rows.size() - count));
    }

    std::deque<Row> m_rows;
    std::deque<Row> m_gathered;
    std::size_t m_maximumRows = static_cast<std::size_t>(-1);
    QTimer m_flushTimer;
};
