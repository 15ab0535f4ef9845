// The data logger view without a server: what it keeps, what it says, and what stands in its files.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumtoolservices.h>
#include <monitoring/monitoredserver.h>
#include <plugins/datalogger/qlumloggeritem.h>
#include <plugins/datalogger/qlumloggermodel.h>
#include <plugins/datalogger/qlumloggersession.h>
#include <plugins/datalogger/qlumloggerview.h>
#include <plugins/datalogger/qlumrecordingwindow.h>
#include <recording/recorder.h>
#include <recording/recordreader.h>
#include <recording/sqliterecord.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMap>
#include <QObject>
#include <QPushButton>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using M = QlumLoggerModel;

class LoggerApplication : public StubApplication
{
public:
    QString serverName(unsigned int id) override { return QString("Plc %1").arg(id); }
    QStringList namespaceTable(unsigned int id) override { return tables.value(id); }
    int namespaceIndexFromUri(unsigned int id, const QString& uri) override
    {
        return tables.value(id).indexOf(uri);
    }

    QMap<unsigned int, QStringList> tables{{5, {"http://opcfoundation.org/UA/", "urn:plc", "urn:line"}},
                                           {9, {"http://opcfoundation.org/UA/", "urn:line"}}};
};

class LoggerViewTest : public testing::Test
{
protected:
    std::unique_ptr<QlumLoggerView> makeView()
    {
        return std::make_unique<QlumLoggerView>(
            application, [](unsigned int) { return std::shared_ptr<TableServices>(); },
            [this](unsigned int id) {
                auto& server = servers[id];
                if (!server)
                    server = std::make_shared<monitoring::MonitoredServer>();
                return server;
            });
    }
    void add(QlumLoggerView& view, const char* name)
    {
        const QlumToolNode one{5, UaNodeId(UaString(name), 2), OpcUa_NodeClass_Variable, {}, name};
        view.addNodes({&one, 1});
    }
    QlumLoggerSetup setupFor(const QString& path)
    {
        QlumLoggerSetup setup;
        setup.path = path;
        setup.freeFloor = 0;
        return setup;
    }
    static void stop(QlumLoggerView& view)
    {
        view.command(QlumLoggerView::StartStop)->trigger();
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return !view.session()->isRunning() && !view.session()->isStopping(); }));
    }

    LoggerApplication application;
    std::map<unsigned int, std::shared_ptr<monitoring::MonitoredServer>> servers;
    // A recording of one item, made elsewhere.
    QString record(const std::vector<std::pair<OpcUa_DateTime, UaVariant>>& values)
    {
        const QString path = folder.filePath("old.sqlite");
        recording::RecorderSettings settings;
        settings.freeFloor = 0;
        recording::Recorder recorder(std::make_unique<recording::SqliteRecord>(path), settings);
        recording::RecordedItem item;
        item.server = "Plant";
        item.name = "Speed";
        item.nodeId = "s=Speed";
        const recording::ItemNumber number = recorder.addItem(item);
        const auto source = recorder.source(item.server);
        recorder.start();
        OpcUa_DateTime received = UaDateTime::now().value();
        monitoring::SinkMark mark;
        for (const auto& [sourceTime, value] : values) {
            OpcUa_DataValue raw;
            OpcUa_DataValue_Initialize(&raw);
            EXPECT_EQ(value.copyTo(&raw.Value), OpcUa_Good);
            raw.SourceTimestamp = sourceTime;
            monitoring::Sink::Filling filling;
            filling.put(*source, {1, number, mark}, raw, {received += 10'000, 1});
        }
        EXPECT_TRUE(recorder.flush(20'000));
        recorder.stop();
        return path;
    }

    QTemporaryDir folder;
};

// As they come from a device that has been offline: times of the source in any order, and another type at
// last.
TEST_F(LoggerViewTest, AnOldRecordingIsPlottedWithoutAServer)
{
    constexpr OpcUa_DateTime second = 10'000'000;
    const OpcUa_DateTime now = UaDateTime::now().value();
    const QString path = record({{now, UaVariant(1.5)},
                                 {now - 60 * second, UaVariant(2.5)},
                                 {now - 30 * second, UaVariant(OpcUa_Int32(3))},
                                 {now - 20 * second, UaVariant("off")}});
    QlumToolServices tools;
    QObject owner;
    QWidget trend;
    std::vector<QlumToolCurve> curves;
    tools.takeDocuments(
        &owner, [&trend](const QString&) { return &trend; });
    tools.takeSamples(&owner,
                      {"History Trend View", [&curves](QWidget*, std::span<const QlumToolCurve> shown) {
                           curves.assign(shown.begin(), shown.end());
                       }});
    QlumRecordingWindow window(path);
    auto* const items = window.findChild<QTableView*>("recordedItems");
    ASSERT_NE(items, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return items->model()->rowCount() == 1; }));
    items->selectAll();
    window.findChild<QPushButton*>("openInTrend")->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !curves.empty(); }));
    EXPECT_EQ(curves[0].name, "Plant: Speed");
    ASSERT_EQ(curves[0].samples.size(), 4u);
    EXPECT_EQ(curves[0].samples[0].value, 1.5);
    EXPECT_EQ(curves[0].samples[2].value, 3);
    EXPECT_TRUE(std::isnan(curves[0].samples[3].value)) << "a text is a gap";
}

TEST_F(LoggerViewTest, AProjectRecordsAgainWhenItIsOpenedWithOtherIdsAndNamespaces)
{
    const QString path = folder.filePath("plant.sqlite");
    QSettings project(folder.filePath("plant.ini"), QSettings::IniFormat);
    {
        const auto view = makeView();
        add(*view, "Speed");
        add(*view, "Tab\tand\nline");
        QlumLoggerSetup setup = setupFor(path);
        setup.startsWithProject = true;
        setup.keepDays = 30;
        view->setSetup(setup);
        view->saveSettings(project);
        EXPECT_FALSE(view->session()->isRunning());
    }
    const auto view = makeView();
    view->loadSettings(project, {{5, 9}});
    EXPECT_TRUE(view->session()->isRunning());
    EXPECT_EQ(view->setup().keepDays, 30);
    ASSERT_EQ(view->model()->rowCount(), 2);
    EXPECT_EQ(view->model()->rowAt(0).serverId, 9u);
    EXPECT_EQ(view->model()->rowAt(0).nodeId, UaNodeId(UaString("Speed"), 1));
    EXPECT_EQ(view->model()->rowAt(1).nodeId, UaNodeId(UaString("Tab\tand\nline"), 1));
    EXPECT_EQ(view->model()->index(0, M::State).data().toString(), "Waits for its server");
    view->session()->note("here");
    stop(*view);
    recording::RecordReader reader;
    ASSERT_TRUE(reader.open(path)) << reader.error().toStdString();
    std::vector<recording::Mark> marks;
    ASSERT_TRUE(reader.marks(0, std::numeric_limits<OpcUa_DateTime>::max(), 10, marks));
    std::vector<std::string> words;
    for (const recording::Mark& mark : marks)
        words.push_back(recording::markWord(mark.kind).toStdString());
    EXPECT_THAT(words, ElementsAre("stopped", "note", "started"));
    std::vector<recording::RecordReader::Item> items;
    ASSERT_TRUE(reader.items(items));
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].item.namespaceUri, "urn:line");
    EXPECT_EQ(items[0].item.server, "Plc 9");
}

TEST_F(LoggerViewTest, ARecordingOfWhichNothingComesSaysSo)
{
    const auto view = makeView();
    add(*view, "Speed");
    view->setSetup(setupFor(folder.filePath("a.sqlite")));
    view->command(QlumLoggerView::StartStop)->trigger();
    const auto* const state = view->findChild<QLabel*>("loggerState");
    ASSERT_TRUE(QTest::qWaitFor([&] { return state->text() == "Recording"; }));
    view->model()->changeItems([](QlumLoggerItem& row) {
        row.state = QlumLoggerState::Recorded;
        return true;
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return state->text().startsWith("Recording, without connection"); }));
    stop(*view);
}

TEST_F(LoggerViewTest, SaysThatItCannotWriteAndThatARecordingIsNone)
{
    const auto view = makeView();
    EXPECT_FALSE(view->command(QlumLoggerView::StartStop)->isEnabled()); // there is nothing to record
    add(*view, "Speed");
    QFile blocker(folder.filePath("file"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    view->setSetup(setupFor(folder.filePath("file/a.sqlite")));
    view->command(QlumLoggerView::StartStop)->trigger();
    const auto* const state = view->findChild<QLabel*>("loggerState");
    EXPECT_TRUE(QTest::qWaitFor([&] { return state->text().startsWith("Cannot write"); }));
    EXPECT_TRUE(view->findChild<QLabel*>("loggerError")->text().contains("cannot be written to"));
    stop(*view);
    QlumRecordingWindow window(blocker.fileName());
    EXPECT_TRUE(QTest::qWaitFor([&] {
        for (const QLabel* label : window.findChildren<QLabel*>())
            if (label->text().contains("is no recording"))
                return true;
        return false;
    }));
}

} // namespace
