// What filtering and sorting a table of 100,000 rows costs, against a bare loop that looks at the same cells.
#include <bench/budgets.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QCoreApplication>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <array>
#include <cstdio>
#include <deque>
#include <utility>
#include <vector>

namespace {
const int rowTotal = operations(100000);
const int rounds = repetitions(11);
// of the bare loop: 50 ms where it took 33
constexpr double filterLimit = 1.5;
constexpr double sortLimit = 3.0; // of a bare sort of the same numbers and texts

struct Row
{
    std::array<QString, 3> texts;
    int number;
};

class Rows : public QlumTableModel<Row>
{
public:
    Rows() : QlumTableModel({"Time", "Source", "Message", "Number"})
    {
        std::deque<Row> rows;
        for (int i = 0; i < rowTotal; ++i)
            rows.push_back({{QStringLiteral("12:%1.%2").arg(i % 60).arg(i % 1000),
                             QStringLiteral("Boiler %1").arg(i * 7919 % 1000),
                             QStringLiteral("ns=2;s=Plant.Line%1.Temperature changed").arg(i % 10)},
                            i * 7919 % rowTotal});
        reset(std::move(rows));
    }

protected:
    QVariant cell(const Row& row, int column, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        return column < 3 ? QVariant(row.texts[static_cast<std::size_t>(column)]) : QVariant(row.number);
    }
};

template <typename Work>
double milliseconds(Work&& work)
{
    const double start = processCpu();
    work();
    return (processCpu() - start) / 1e3;
}

std::size_t bareFilter(const Rows& rows, const QString& text)
{
    std::vector<int> accepted;
    for (int row = 0; row < rows.rowCount(); ++row)
        for (int column = 0; column < rows.columnCount(); ++column)
            if (rows.index(row, column).data().toString().contains(text, Qt::CaseInsensitive)) {
                accepted.push_back(row);
                break;
            }
    return accepted.size();
}

std::size_t bareSort(const Rows& rows, int column)
{
    std::vector<std::pair<QString, int>> keys;
    for (int row = 0; row < rows.rowCount(); ++row)
        keys.emplace_back(rows.index(row, column).data().toString(), row);
    std::stable_sort(keys.begin(), keys.end(), [](const auto& left, const auto& right) {
        return left.first.compare(right.first, Qt::CaseInsensitive) < 0;
    });
    return keys.size();
}

struct Figures
{
    std::vector<double> bareFilter, few, half, sorted, back, bareSort, sort;
};

void measure(const Rows& rows, Figures& figures)
{
    const QString few = QStringLiteral("boiler 77");
    const QString half = QStringLiteral(".5");
    QlumTableFilter filter;
    filter.setSourceModel(const_cast<Rows*>(&rows));
    std::size_t found = 0;
    int shown = filter.rowCount();
    const auto set = [&](const QString& text) {
        return milliseconds([&] {
            filter.setText(text);
            shown = filter.rowCount();
        });
    };
    figures.bareFilter.push_back(milliseconds([&] { found = bareFilter(rows, few); }));
    figures.few.push_back(set(few));
    if (static_cast<std::size_t>(shown) != found) {
        figures.few.clear();
        return;
    }
    figures.half.push_back(set(half));
    figures.back.push_back(set(QString()));
    figures.bareSort.push_back(milliseconds([&] { found = bareSort(rows, 1); }));
    figures.sort.push_back(milliseconds([&] {
        filter.sort(1);
        shown = filter.rowCount();
    }));
    figures.sorted.push_back(set(half));
}
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const Rows rows;
    Figures figures;
    for (int round = 0; round < rounds; ++round)
        measure(rows, figures);
    const double bare = median(figures.bareFilter);
    std::printf(
        "%d rows, ms: bare filter %.1f, few rows %.1f, many %.1f, all again %.1f, many of a sorted table "
        "%.1f; bare sort %.1f, sort %.1f\n",
        rowTotal, bare, median(figures.few), median(figures.half), median(figures.back),
        median(figures.sorted), median(figures.bareSort), median(figures.sort));
    printRatio("table_filter_few_to_bare_loop", median(figures.few), bare, filterLimit);
    printRatio("table_filter_many_to_bare_loop", median(figures.half), bare, filterLimit);
    printRatio("table_filter_sorted_to_bare_loop", median(figures.sorted), bare, filterLimit);
    printRatio("table_sort_to_bare_sort", median(figures.sort), median(figures.bareSort), sortLimit);
    return 0;
}
