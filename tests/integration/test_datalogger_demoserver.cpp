// The data logger on the demo server: counters, of which every missing value would show.
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/datalogger/qlumloggermodel.h>
#include <plugins/datalogger/qlumloggersession.h>
#include <plugins/datalogger/qlumloggerview.h>
#include <plugins/datalogger/qlumrecordingwindow.h>
#include <recording/recordreader.h>
#include <tests/integration/clientondemoserver.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/faultproxy.h>
#include <tests/support/owndemoserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QAction>
#include <QFile>
#include <QMessageBox>
#include <QString>
#include <QTableView>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
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

// What a server says is lost on the way, and the connection breaks.
class DataLoggerOnBadConnection : public DataLoggerOnDemoServer
{
protected:
    static bool isNotification(const faultproxy::Frame& frame)
    {
        constexpr std::uint32_t publishResponse = 829;
        constexpr std::size_t largestWithoutValue = 110; // bytes
        return frame.typeId == publishResponse && frame.size > largestWithoutValue;
    }
    struct Recorded
    {
        std::vector<recording::Record> records;
        std::vector<recording::Mark> marks;
    };
    static Recorded read(const QString& path)
    {
        Recorded found;
        recording::RecordReader reader;
        if (reader.open(path) && reader.read(1, 0, endOfTime, 1000, found.records))
            static_cast<void>(reader.marks(0, endOfTime, 1000, found.marks)); // none would be seen
        return found;
    }
    static const recording::Mark* find(const Recorded& found, recording::MarkKind kind)
    {
        for (const recording::Mark& mark : found.marks)
            if (mark.kind == kind)
                return &mark;
        return nullptr;
    }
    // A recording in which a notification did not arrive, up to some values behind the mark that says so.
    Recorded recordOverALoss(const char* options, recording::MarkKind awaited)
    {
        OwnDemoServer own;
        EXPECT_TRUE(own.start("pki", options));
        const std::string ownUrl = own.url();
        const std::size_t port = ownUrl.rfind(':') + 1;
        faultproxy::FaultProxy proxy(static_cast<std::uint16_t>(std::stoi(ownUrl.substr(port))));
        {
            const DialogDriver driver(DialogDriver::press(QMessageBox::Ok)); // the server names another port
            openDemoProject("opc.tcp://127.0.0.1:" + std::to_string(proxy.port()) + "/Tavelin/Demo");
        }
        const QlumToolNode counter{
            serverId, UaNodeId(UaString("Dynamic.Counter"), 2), OpcUa_NodeClass_Variable, {}, {}};
        EXPECT_TRUE(QlumToolServices::instance()->openNodes("Data Logger View", {&counter, 1}));
        auto* const view = window->findChild<QlumLoggerView*>();
        QlumLoggerSetup setup;
        setup.path = folder.filePath("lossy.sqlite");
        setup.freeFloor = 0;
        view->setSetup(setup);
        view->command(QlumLoggerView::StartStop)->trigger();
        const auto waitForRecords = [&](unsigned int count) {
            return QTest::qWaitFor([&] { return view->model()->rowAt(0).figures.records >= count; }, limit);
        };
        EXPECT_TRUE(waitForRecords(2)) << logText();
        proxy.silentFrom(isNotification);
        EXPECT_TRUE(QTest::qWaitFor([&] { return proxy.struck() > 0; }, limit));
        proxy.heal();
        proxy.reset();
        EXPECT_TRUE(QTest::qWaitFor([&] { return find(read(setup.path), awaited) != nullptr; }, limit))
            << logText();
        EXPECT_TRUE(waitForRecords(static_cast<unsigned int>(view->model()->rowAt(0).figures.records) + 2));
        view->command(QlumLoggerView::StartStop)->trigger();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !view->session()->isStopping(); }, limit));
        window.reset(); // before its server goes
        Recorded found = read(setup.path);
        // a server may send each item's value once more to a session that takes a subscription over
        const auto repeats = std::unique(
            found.records.begin(), found.records.end(), [](const auto& before, const auto& value) {
                return before.value.value() == value.value.value() &&
                       before.value.sourceTimestamp().value() == value.value.sourceTimestamp().value();
            });
        found.records.erase(repeats, found.records.end());
        return found;
    }
    static std::vector<OpcUa_UInt32> steps(const Recorded& found)
    {
        std::vector<OpcUa_UInt32> steps;
        for (std::size_t i = 1; i < found.records.size(); ++i)
            steps.push_back(found.records[i].value.value().toUInt32() -
                            found.records[i - 1].value.value().toUInt32());
        return steps;
    }
};

TEST_F(DataLoggerOnBadConnection, WhatDidNotArriveIsFetchedAndNoNumberOfTheCounterIsMissing)
{
    const Recorded found = recordOverALoss("", recording::MarkKind::Republished);
    EXPECT_THAT(steps(found), testing::Each(1u));
    EXPECT_NE(find(found, recording::MarkKind::ConnectionLost), nullptr);
    const recording::Mark* const fetched = find(found, recording::MarkKind::Republished);
    ASSERT_NE(fetched, nullptr);
    EXPECT_TRUE(std::any_of(found.records.begin(), found.records.end(), [&](const auto& record) {
        return record.sequenceNumber == fetched->first;
    })) << "its values bear its number";
}

TEST_F(DataLoggerOnBadConnection, WhatTheServerHasKeptNoLongerIsToldAsMissing)
{
    const Recorded found = recordOverALoss("--republish no", recording::MarkKind::Missing);
    const recording::Mark* const missing = find(found, recording::MarkKind::Missing);
    ASSERT_NE(missing, nullptr);
    EXPECT_EQ(missing->count, missing->last - missing->first + 1);
    const std::vector<OpcUa_UInt32> all = steps(found);
    ASSERT_EQ(std::count_if(
                  all.begin(), all.end(), [](OpcUa_UInt32 step) { return step != 1; }),
              1)
        << "the counter shows one gap, and the mark stands for it";
    const auto gap = static_cast<std::size_t>(
        std::find_if(all.begin(), all.end(), [](OpcUa_UInt32 step) { return step != 1; }) - all.begin());
    EXPECT_LT(found.records[gap].sequenceNumber, missing->first);
    EXPECT_GT(found.records[gap + 1].sequenceNumber, missing->last);
}

} // namespace
