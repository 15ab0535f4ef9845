// The data logger on the demo server: counters, of which every missing value would show.
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/datalogger/qlumloggermodel.h>
#include <plugins/datalogger/qlumloggersession.h>
#include <plugins/datalogger/qlumloggerview.h>
#include <plugins/datalogger/qlumrecordingwindow.h>
#include <recording/recordreader.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QAction>
#include <QFile>
#include <QString>
#include <QTableView>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

constexpr OpcUa_DateTime endOfTime = std::numeric_limits<OpcUa_DateTime>::max();

class DataLoggerOnDemoServer : public ClientOnDemoServer
{
protected:
    void record(QlumLoggerView& view, unsigned int count)
    {
        view.command(QlumLoggerView::StartStop)->trigger();
        ASSERT_TRUE(QTest::qWaitFor([&] { return view.model()->rowAt(0).figures.records >= count; }, limit))
            << logText();
        view.session()->note("seen");
        view.command(QlumLoggerView::StartStop)->trigger();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !view.session()->isStopping(); }, limit));
    }
};

TEST_F(DataLoggerOnDemoServer, CountersAreRecordedWithoutAGapAndRefusalsAreTold)
{
    openDemoProject();
    QlumToolNodes nodes;
    for (const char* name : {"Dynamic.Counter", "Dynamic.Counter64", "Missing"})
        nodes.push_back({serverId, UaNodeId(UaString(name), 2), OpcUa_NodeClass_Variable, {}, {}});
    ASSERT_TRUE(QlumToolServices::instance()->openNodes("Data Logger View", nodes));
    auto* const view = window->findChild<QlumLoggerView*>();
    ASSERT_NE(view, nullptr);
    QlumLoggerSetup setup;
    setup.path = folder.filePath("counters.sqlite");
    setup.freeFloor = 0;
    view->setSetup(setup);
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->model()->rowAt(0).dataType == "UInt32"; }, limit));
    record(*view, 4);
    record(*view, 2); // goes on in the same file

    recording::RecordReader reader;
    ASSERT_TRUE(reader.open(setup.path)) << reader.error().toStdString();
    std::vector<recording::RecordReader::Item> items;
    ASSERT_TRUE(reader.items(items));
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].item.server, "Plant");
    EXPECT_EQ(items[0].item.dataType, "UInt32");
    EXPECT_EQ(items[2].records, 0u);
    std::vector<recording::Mark> marks;
    ASSERT_TRUE(reader.marks(0, endOfTime, 100, marks));
    std::vector<recording::MarkKind> kinds;
    OpcUa_DateTime pauseEnd = 0;
    for (const recording::Mark& mark : marks) {
        kinds.push_back(mark.kind);
        if (mark.kind == recording::MarkKind::Gap)
            pauseEnd = mark.to;
        if (mark.kind == recording::MarkKind::ItemRefused) {
            EXPECT_EQ(mark.status, OpcUa_BadNodeIdUnknown);
            EXPECT_EQ(mark.item, items[2].number);
        }
    }
    EXPECT_THAT(kinds, testing::IsSupersetOf({recording::MarkKind::Started, recording::MarkKind::ItemRefused,
                                              recording::MarkKind::Note, recording::MarkKind::Gap}));
    std::vector<recording::Record> records;
    ASSERT_TRUE(reader.read(items[0].number, 0, endOfTime, 1000, records));
    ASSERT_GE(records.size(), 6u);
    for (std::size_t i = 1; i < records.size(); ++i) {
        const bool isAfterPause = records[i - 1].received < pauseEnd && records[i].received >= pauseEnd;
        const auto step = records[i].value.value().toUInt32() - records[i - 1].value.value().toUInt32();
        EXPECT_TRUE(isAfterPause || step == 1) << i << ": " << step;
        EXPECT_GT(records[i].sequenceNumber, 0u);
        EXPECT_GE(records[i].received, records[i - 1].received);
    }

    QlumRecordingWindow shown(setup.path);
    auto* const table = shown.findChild<QTableView*>("recordedItems");
    ASSERT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 3; }, limit));
    table->selectRow(0);
    const QString file = folder.filePath("counters.csv");
    shown.exportTo(file);
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(file) && !shown.isReading(); }, limit));
    QFile csv(file);
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    int rows = 0;
    while (!csv.atEnd())
        rows += csv.readLine().contains(",UInt32,") ? 1 : 0;
    EXPECT_EQ(rows, static_cast<int>(records.size()));
}

} // namespace
