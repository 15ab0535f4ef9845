#pragma once
#include <plugins/serverdiagnostics/qlumdiagnosticdata.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>
#include <cstddef>
#include <deque>
#include <iterator>
#include <utility>
#include <vector>

/// The role for a row's key, by which it is found again after it was read anew.
inline constexpr int qlumDiagnosticKeyRole = Qt::UserRole + 1;
/// The role by which rows are sorted.
inline constexpr int qlumDiagnosticSortRole = Qt::UserRole + 2;

/// A table of sessions or subscriptions that is read again and again: what stays keeps its row.
template <typename Row>
class QlumDiagnosticTable : public QlumTableModel<Row>
{
public:
    /// Null when there is none with that key.
    [[nodiscard]] const Row* find(const QString& key) const
    {
        for (const Row& row : this->rows())
            if (row.key == key)
                return &row;
        return nullptr;
    }
    /// Shows these from now on; what was there before tells how fast counters rise.
    void takeRows(std::vector<Row> rows, QlumDiagnosticClock::time_point time)
    {
        const double seconds = std::chrono::duration<double>(time - std::exchange(m_time, time)).count();
        QHash<QString, std::size_t> places;
        for (std::size_t i = 0; i < rows.size(); ++i)
            places.insert(rows[i].key, i);
        int vanished = 0;
        for (const Row& before : this->rows()) {
            const auto found = places.constFind(before.key);
            if (found != places.constEnd())
                follow(rows[*found], before, seconds);
            else
                ++vanished;
        }
        constexpr int mostSteps = 50; // of removals that views are told of one by one
        if (vanished > mostSteps || this->rows().empty()) {
            this->reset(
                std::deque<Row>(std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end())));
            return;
        }
        merge(std::move(rows), std::move(places));
    }
    /// Shows nothing.
    void clear() { this->reset(); }

protected:
    /// A column for each title.
    explicit QlumDiagnosticTable(const QStringList& titles, QObject* parent)
        : QlumTableModel<Row>(titles, parent)
    {
    }

    /// Tells the row how fast it has gone on.
    virtual void follow(Row& row, const Row& before, double seconds) const = 0;

private:
    void merge(std::vector<Row> rows, QHash<QString, std::size_t> places)
    {
        for (int row = this->rowCount() - 1; row >= 0; --row)
            if (!places.contains(this->rowAt(row).key))
                this->remove(row, 1);
        this->changeRows([&](Row& row) {
            const auto found = places.find(row.key);
            if (found == places.end())
                return false; // a namesake
            row = std::move(rows[*found]);
            places.erase(found);
            return true;
        });
        std::deque<Row> added;
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (places.value(rows[i].key, rows.size()) == i)
                added.push_back(std::move(rows[i]));
        this->append(std::move(added));
    }

    QlumDiagnosticClock::time_point m_time;
};
