// The data logger view without a server: what it keeps, what it says, and what stands in its files.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumtoolservices.h>
#include <monitoring/monitoredserver.h>
#include <plugins/datalogger/qlumloggermodel.h>
#include <plugins/datalogger/qlumloggersession.h>
#include <plugins/datalogger/qlumloggerview.h>
#include <plugins/datalogger/qlumrecordingwindow.h>
#include <recording/recordreader.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <memory>
#include <string>
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
    QTemporaryDir folder;
};

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
