// What servers do to the items of a data access view: bursts, overflows, nodes that go and come back,
// namespaces in another order.
#include <app/api/qlumconnectionstatus.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/qlumdafeed.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdaplot.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <plugins/dataaccess/qlumdaverdict.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <tests/gui/dataaccess/dafixture.h>
#include <tests/unit/monitoring/monitoringtest.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QObject>
#include <QString>
#include <QTableView>
#include <QTest>

#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace {

using M = QlumDaModel;

class DaFaults : public MonitoringTest
{
protected:
    void SetUp() override
    {
        MonitoringTest::SetUp();
        const std::shared_ptr<monitoring::MonitoredServer> borrowed(
            server.get(), [](auto*) {});
        view = std::make_unique<QlumDaView>(
            application, [](unsigned int) { return nullptr; }, [borrowed](unsigned int) { return borrowed; });
        view->sessionStatusChanged(5, QlumConnectionStatus::Connected);
    }
    void TearDown() override
    {
        view.reset();
        MonitoringTest::TearDown();
    }
    void addRows(const std::vector<OpcUa_UInt32>& numbers)
    {
        QlumToolNodes nodes;
        for (const OpcUa_UInt32 number : numbers)
            nodes.push_back({5, UaNodeId(number, 2), OpcUa_NodeClass_Variable, {}, {}});
        view->addNodes(nodes);
        for (std::size_t row = 0; row < numbers.size(); ++row)
            ASSERT_TRUE(waitFor([&] { return item(static_cast<int>(row)).state == QlumDataState::Watched; }));
    }
    // Values of the row's items, that of the table and that of the plot.
    void send(OpcUa_UInt32 number, const std::vector<OpcUa_UInt32>& handles,
              const std::vector<UaVariant>& values, OpcUa_StatusCode status = OpcUa_Good)
    {
        notify<OpcUa_DataChangeNotification>(
            subscription, number, OpcUa_DataChangeNotification_EncodeableType,
            [=](OpcUa_DataChangeNotification& change) {
                UaMonitoredItemNotifications items(static_cast<OpcUa_UInt32>(handles.size() * values.size()));
                OpcUa_UInt32 i = 0;
                for (const UaVariant& value : values)
                    for (const OpcUa_UInt32 handle : handles) {
                        items[i].ClientHandle = handle;
                        items[i].Value.StatusCode = status;
                        EXPECT_EQ(value.copyTo(&items[i++].Value.Value), OpcUa_Good);
                    }
                items.detach(&change.NoOfMonitoredItems, &change.MonitoredItems);
            });
    }
    // The stack's clock is the test's: without it nothing is handed over.
    template <typename Condition>
    bool waitFor(Condition condition, int limit = 5000)
    {
        constexpr int handOver = 50;
        return QTest::qWaitFor(
            [&] {
                stack.ticks += handOver;
                return condition();
            },
            limit);
    }
    [[nodiscard]] QString cell(int row, int column) const
    {
        return view->model().index(row, column).data().toString();
    }
    [[nodiscard]] const QlumDataItem& item(int row) const { return view->model().rowAt(row); }
    bool waitForCell(int row, int column, const QString& text)
    {
        return waitFor([&] { return cell(row, column) == text; });
    }

    DaApplication application;
    OpcUa_UInt32 subscription = 1; // that the items are in
    std::unique_ptr<QlumDaView> view;
};

TEST_F(DaFaults, OfABurstTheNewestValueIsShownAndAllAreCounted)
{
    addRows({1});
    view->table()->selectRow(0);
    QlumDaFeed feed(
        view->model(),
        [this](unsigned int) {
            return std::shared_ptr<monitoring::MonitoredServer>(server.get(), [](auto*) {});
        },
        1);
    feed.add({item(0).key});
    ASSERT_TRUE(waitUntil([&] { return asked().size() == 2; }));
    quint64 came = 0, lost = 0;
    QObject::connect(
        &feed, &QlumDaFeed::came, &feed, [&](const auto& values) { came += values.size(); });
    QObject::connect(&feed, &QlumDaFeed::lost, &feed, [&](quint64 count) { lost += count; });
    constexpr OpcUa_UInt32 messages = 10, ofMessage = 50'000; // for two items: a million
    std::vector<UaVariant> values;
    for (OpcUa_UInt32 i = 0; i < ofMessage; ++i)
        values.emplace_back(static_cast<OpcUa_Int32>(i));
    for (OpcUa_UInt32 number = 1; number <= messages; ++number)
        send(number, {1, 2}, values);
    constexpr quint64 all = quint64(messages) * ofMessage;
    EXPECT_TRUE(waitFor([&] { return item(0).changes == all; }, 60'000)) << item(0).changes;
    EXPECT_EQ(cell(0, M::Value), QString::number(ofMessage - 1));
    EXPECT_TRUE(waitFor([&] { return came + lost == all; }, 60'000)) << came << " and " << lost;
    EXPECT_GE(came, 1u);
}

TEST_F(DaFaults, AQueueThatOverflowsEachTimeIsCountedAndItsRemedyReachesTheServer)
{
    addRows({1});
    constexpr OpcUa_StatusCode overflowed = 0x00000480;
    for (OpcUa_UInt32 number = 1; number <= 5; ++number)
        send(number, {1}, {UaVariant(static_cast<OpcUa_Int32>(number))}, overflowed);
    ASSERT_TRUE(waitForCell(0, M::Value, "5"));
    ASSERT_TRUE(waitForCount(item(0).watched, 5));
    const QlumDaVerdict verdict = view->model().verdict(item(0));
    EXPECT_EQ(verdict.word, "5 overflow(s)");
    ASSERT_NE(verdict.remedy, nullptr);
    view->setSettings({item(0).key}, *verdict.remedy);
    EXPECT_TRUE(waitFor([&] { return item(0).revisedQueue == verdict.remedy->queueSize; }));
}

TEST_F(DaFaults, ANodeThatWasDeletedAndIsBackIsWatchedAgainOnTheUsersWord)
{
    addRows({1, 2});
    send(1, {1, 2}, {UaVariant(OpcUa_Int32(7))});
    ASSERT_TRUE(waitForCell(0, M::Value, "7"));
    send(2, {1}, {UaVariant()}, OpcUa_BadNodeIdUnknown);
    ASSERT_TRUE(waitFor([&] { return cell(0, M::Status).contains("BadNodeIdUnknown"); }));
    view->table()->selectAll();
    view->command(QlumDaView::AskAgain)->trigger();
    ASSERT_TRUE(waitFor([&] { return asked().size() == 3; }));
    EXPECT_EQ(asked()[1], "delete: 1");
    EXPECT_EQ(asked()[2], "create 1: ns=2;i=1") << "the other row goes on as it is";
}

TEST_F(DaFaults, NamespacesInAnotherOrderMoveTheRowsAndTheirCurves)
{
    addRows({1});
    view->table()->selectRow(0);
    view->command(QlumDaView::Plot)->trigger();
    ASSERT_TRUE(waitUntil([&] { return asked().size() == 2; }));
    application.tables[5].insert(1, "urn:new");
    interrupt();
    view->sessionStatusChanged(5, QlumConnectionStatus::ConnectionError);
    replace({{0, 0}, {1, 2}, {2, 3}});
    view->sessionStatusChanged(5, QlumConnectionStatus::NewSessionCreated);
    EXPECT_EQ(item(0).nodeId, UaNodeId(1u, 3));
    EXPECT_TRUE(waitUntil([&] { return asked().size() >= 3; }));
    subscription = 2;
    const Strings all = asked();
    for (std::size_t i = 2; i < all.size(); ++i)
        EXPECT_TRUE(all[i].find("ns=3;i=1") != std::string::npos && all[i].find("ns=2") == std::string::npos)
            << all[i];
    send(1, {1, 2}, {UaVariant(OpcUa_Int32(4)), UaVariant(UaString("off")), UaVariant(6.5)});
    EXPECT_TRUE(waitForCell(0, M::Value, "6.5")) << cell(0, M::Value).toStdString();
    const QlumSampleStore& samples = view->plot()->curve(item(0).key)->samples();
    ASSERT_TRUE(waitFor([&] { return samples.size() == 3; })) << samples.size();
    EXPECT_TRUE(std::isnan(samples.at(1).value)) << "a value of another type is a gap";
    EXPECT_EQ(samples.at(2).value, 6.5);
}

} // namespace
