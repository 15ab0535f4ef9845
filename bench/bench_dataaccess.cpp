// What a data access view of 50,000 rows costs above the values that reach it: adding them, each change with
// the painting of what can be seen, and memory; and what a notification of 1,000 values costs the thread of
// the window in a view of as many rows. Against a plain Qt model and table with the same rows.
#include <app/api/qlumapplicationinterface.h>
#include <bench/budgets.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <tests/support/stubapplication.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>

#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QModelIndex>
#include <QString>
#include <QTableView>
#include <QVariant>

#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <utility>
#include <vector>

namespace {

const int rowTotal = operations(50'000);
const int rounds = repetitions(11);
// 50 ms at most where the plain model took 3.3, 0.35 us where its change took 0.07
constexpr double addLimit = 15.0;
constexpr double changeLimit = 5.0;
constexpr double bytesLimit = 350;
const int notified = operations(1000); // values of one notification, and rows of the view that gets it
const int notifications = repetitions(101);
// 0.35 us of the thread for a value, and 1 ms for painting those that can be seen, where the plain table,
// which paints whole rows, took 2.7 ms
constexpr double notificationLimit = 0.5;

class Plain : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(values.size());
    }
    int columnCount(const QModelIndex& = QModelIndex()) const override { return QlumDaModel::ColumnCount; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(values[static_cast<std::size_t>(index.row())]) : QVariant();
    }
    void fill(int rows)
    {
        beginInsertRows({}, 0, rows - 1);
        values.resize(static_cast<std::size_t>(rows));
        endInsertRows();
    }
    void change(double value, int lastSeen)
    {
        for (double& one : values)
            one = value;
        emit dataChanged(index(0, 0), index(lastSeen, columnCount() - 1));
    }

    std::vector<double> values;
};

std::vector<QString> makeNames(int rows)
{
    std::vector<QString> names;
    names.reserve(static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i)
        names.push_back(QStringLiteral("Temperature%1").arg(i));
    return names;
}

std::vector<QlumDataItem> makeItems(const std::vector<QString>& names)
{
    std::vector<QlumDataItem> items(names.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].serverId = 1;
        items[i].nodeId = UaNodeId(static_cast<OpcUa_UInt32>(1'000'000 + i), 1);
        items[i].displayName = names[i];
    }
    return items;
}

// What is handed out, large blocks of their own included.
std::size_t heldBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

template <typename Work>
double microseconds(Work&& work)
{
    const double start = processCpu();
    work();
    QApplication::processEvents();
    return processCpu() - start;
}

double threadCpu()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

template <typename Widget>
void showAs(Widget& widget)
{
    widget.resize(1200, 800);
    widget.show();
    QApplication::processEvents();
}

struct Figures
{
    std::vector<double> add, bareAdd, change, bareChange;
};

void measureChanges(QlumDaModel& model, Plain& plain, Figures& figures)
{
    std::vector<UaDataValue> values(static_cast<std::size_t>(rowTotal));
    const UaDateTime now = UaDateTime::now();
    for (int round = 0; round < rounds; ++round) {
        for (UaDataValue& value : values)
            value = UaDataValue(UaVariant(double(round)), UaStatusCode(), now, now);
        figures.change.push_back(microseconds([&] {
            for (int i = 0; i < rowTotal; ++i)
                model.takeValue(static_cast<quint32>(i + 1), values[static_cast<std::size_t>(i)], 0,
                                now.value());
            model.tellValues();
        }));
        figures.bareChange.push_back(microseconds([&] { plain.change(round, 40); }));
    }
}

// One notification after the other, each painted, as the thread of the window takes them.
void measureNotifications(QlumApplicationInterface& application)
{
    QlumDaView view(application, [](unsigned int) { return nullptr; }, {});
    showAs(view);
    view.addItems(makeItems(makeNames(notified)));
    Plain plain;
    QTableView table;
    table.setModel(&plain);
    showAs(table);
    plain.fill(notified);
    QApplication::processEvents();
    std::vector<UaDataValue> values(static_cast<std::size_t>(notified));
    const UaDateTime now = UaDateTime::now();
    std::vector<double> ours, bare;
    const auto used = [](const auto& work) {
        const double start = threadCpu();
        work();
        QApplication::processEvents();
        return threadCpu() - start;
    };
    for (int round = 0; round < notifications; ++round) {
        for (UaDataValue& value : values)
            value = UaDataValue(UaVariant(double(round)), UaStatusCode(), now, now);
        ours.push_back(used([&] {
            for (int i = 0; i < notified; ++i)
                view.model().takeValue(static_cast<quint32>(i + 1), values[static_cast<std::size_t>(i)], 0,
                                       now.value());
            view.model().tellValues();
        }));
        bare.push_back(used([&] { plain.change(round, 40); }));
    }
    std::printf(
        "a notification of %d values takes %.0f us of the window's thread, %.3f us a value (plain %.0f us)\n",
        notified, median(ours), median(ours) / notified, median(bare));
    printRatio("dataaccess_notification", median(ours), median(bare), notificationLimit);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication qt(argc, argv);
    StubApplication application;
    QlumDaView view(application, [](unsigned int) { return nullptr; }, {});
    showAs(view);
    Plain plain;
    QTableView table;
    table.setModel(&plain);
    showAs(table);
    const std::vector<QString> names = makeNames(rowTotal); // texts do not count: the rows share these
    Figures figures;
    figures.bareAdd.push_back(microseconds([&] { plain.fill(rowTotal); }));
    const std::size_t before = heldBytes();
    std::vector<QlumDataItem> items = makeItems(names);
    figures.add.push_back(microseconds([&] { view.addItems(std::exchange(items, {})); }));
    measureChanges(view.model(), plain, figures);
    const double perRow = (static_cast<double>(heldBytes()) - static_cast<double>(before)) / rowTotal;
    const double change = median(figures.change) / rowTotal;
    std::printf("%d rows added %.1f ms (plain %.1f ms), a change %.3f us (plain %.3f us), a row %.0f bytes "
                "(%zu of its own)\n",
                rowTotal, median(figures.add) / 1e3, median(figures.bareAdd) / 1e3, change,
                median(figures.bareChange) / rowTotal, perRow, sizeof(QlumDataItem));
    printRatio("dataaccess_add_rows", median(figures.add), median(figures.bareAdd), addLimit);
    printRatio("dataaccess_change", median(figures.change), median(figures.bareChange), changeLimit);
    printBudget("dataaccess_row_bytes", perRow, bytesLimit, perRow > 0);
    measureNotifications(application);
    return 0;
}
