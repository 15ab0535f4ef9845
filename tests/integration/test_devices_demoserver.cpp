// The devices of a server that is not ours, in the window of the whole client: found by names, watched,
// locked, written as a set and transferred.
#include <app/api/qlumdocumentservers.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumsessionservices.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <monitoring/monitoredserver.h>
#include <monitoring/watch.h>
#include <plugins/devices/qlumdeviceclient.h>
#include <plugins/devices/qlumdevicedata.h>
#include <plugins/devices/qlumdevicereader.h>
#include <plugins/devices/qlumdevicesview.h>
#include <plugins/devices/qlumparametermodel.h>
#include <plugins/devices/qlumparameterpage.h>
#include <tests/integration/clientondemoserver.h>
#include <tests/integration/devicesprobe.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QComboBox>
#include <QLineEdit>
#include <QList>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <ranges>
#include <string>

namespace {

class DevicesOnDemoServer : public ClientOnDemoServer, protected DevicesProbe
{
protected:
    void openDevices()
    {
        openDemoProject();
        window->documents()->bringUp(QStringLiteral("Devices View"));
        view = window->findChild<QlumDevicesView*>();
        ASSERT_NE(view, nullptr);
        ASSERT_TRUE(waitUntilRead()) << logText();
    }
    std::string transferred()
    {
        view->transfer(true);
        EXPECT_TRUE(waitUntilIdle());
        return said("deviceTransferResult");
    }

    // What a document of the device comes to; in a thread of its own, as a job would read it.
    [[nodiscard]] UaVariant content(const char* path, const char* document) const
    {
        const QlumDevice wanted = device(path);
        const auto services = qlumApplicationServices()(serverId);
        return std::async(std::launch::async,
                          [wanted, document, services] {
                              UaVariant value;
                              UaNodeId dataType;
                              QlumDeviceReader reader(services, {}, {});
                              static_cast<void>(reader.readSpace()); // learns the namespaces
                              for (const QlumDeviceDocument& one : reader.readDetails(wanted).documents)
                                  if (one.name == QLatin1String(document))
                                      EXPECT_TRUE(QlumDeviceClient(services, {}, {})
                                                      .readContent(one, value, dataType)
                                                      .isGood());
                              return value;
                          })
            .get();
    }

    // Items that the client watches on the server.
    [[nodiscard]] OpcUa_UInt32 itemCount() const
    {
        OpcUa_UInt32 count = 0;
        for (const monitoring::SubscriptionInfo& one : qlumApplicationMonitoring()(serverId)->subscriptions())
            count += one.items;
        return count;
    }
};

TEST_F(DevicesOnDemoServer, AreFoundWithNameplatesHealthAndNetwork)
{
    openDevices();
    EXPECT_GT(view->space().mostInactiveLockTime, 0);
    EXPECT_EQ(device("/M-202").health, QlumDeviceHealth::Failure);
    EXPECT_EQ(device("/M-202").typeName, "DriveType");
    EXPECT_EQ(device("/TT-101").fact(QlumNameplate::SerialNumber), "4711-001");
    EXPECT_EQ(device("/TT-101").fact(QlumNameplate::AssetId), "TT-101");
    EXPECT_TRUE(device("/TT-102").fact(QlumNameplate::AssetId).isEmpty());
    EXPECT_TRUE(device("/TT-102").missing.isEmpty());
    ASSERT_GE(place("/M-201/SubDevices/Encoder"), 0);
    ASSERT_GE(place("/Fieldbus"), 0);
    EXPECT_EQ(device("/Fieldbus").connections, QStringList{"M-201"});
}

TEST_F(DevicesOnDemoServer, DocumentsAreReadFromFilesPieceByPieceAndFromVariables)
{
    openDevices();
    const std::string records(content("/TT-101", "Records.txt").toByteString().view());
    EXPECT_EQ(std::ranges::count(records, '\n'), 100);
    EXPECT_TRUE(records.ends_with("Record 100: zero checked, no deviation\n"));
    const UaVariant picture = content("/TT-101", "Wiring.png");
    EXPECT_TRUE(picture.toByteString().view().starts_with("\x89PNG"));
}

TEST_F(DevicesOnDemoServer, ParametersAreWrittenAsASetUnderALock)
{
    openDevices();
    show("/TT-101");
    const int damping = row("Damping");
    const int lower = row("LowerRange");
    ASSERT_TRUE(damping >= 0 && lower >= 0);
    EXPECT_TRUE(model().rowAt(damping).parameter.groups.contains("Tuning"));
    EXPECT_TRUE(model().rowAt(damping).parameter.groups.contains("Configuration"));
    EXPECT_EQ(model().rowAt(damping).parameter.byType, UaVariant(1.0));
    EXPECT_FALSE(model().obstacle(row("Temperature")).isEmpty());
    const UaVariant before = model().rowAt(damping).parameter.value.value();
    lock(true);
    ASSERT_TRUE(view->isHeld(device("/TT-101").id));
    ASSERT_EQ(model().stage(damping, UaVariant(3.5)), "");
    ASSERT_EQ(model().stage(lower, UaVariant(-999.0)), "");
    write();
    EXPECT_EQ(model().rowAt(damping).parameter.value.value(), UaVariant(3.5));
    EXPECT_FALSE(model().rowAt(damping).changed);
    EXPECT_TRUE(model().rowAt(lower).changed);
    EXPECT_TRUE(model().rowAt(lower).outcome.contains("BadOutOfRange"));
    model().discardChanges();
    ASSERT_EQ(model().stage(damping, before), "");
    write();
    lock(false);
    EXPECT_FALSE(view->isHeld(device("/TT-101").id));
}

TEST_F(DevicesOnDemoServer, HealthIsFollowedAndTransfersSayHowFarTheyGot)
{
    openDevices();
    show("/M-201");
    const int simulated = row("SimulatedHealth");
    ASSERT_GE(simulated, 0);
    const UaVariant& now = model().rowAt(simulated).parameter.value.value();
    UaVariant off = now;
    ASSERT_TRUE(off.changeType(OpcUaType_UInt32, false).isGood());
    off.setUInt32(3);
    ASSERT_EQ(model().stage(simulated, off), "");
    view->writeParameters();
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return device("/M-201").health == QlumDeviceHealth::OffSpec && isIdle(); }, limit))
        << model().rowAt(simulated).outcome.toStdString();
    off.setUInt32(0);
    ASSERT_EQ(model().stage(simulated, off), "");
    write();

    show("/TT-101");
    EXPECT_TRUE(transferred().find("locked first") != std::string::npos) << said("deviceTransferResult");
    lock(true);
    EXPECT_TRUE(transferred().starts_with("Done: 12 parameters")) << said("deviceTransferResult");
    lock(false);
    show("/TT-102");
    lock(true);
    EXPECT_TRUE(transferred().starts_with("Not finished after 5 parameters")) << said("deviceTransferResult");
    lock(false);
}

TEST_F(DevicesOnDemoServer, WatchedParametersAreTheNewestUntilNobodySeesThem)
{
    openDevices();
    show("/TT-101");
    auto* const tabs = view->findChild<QTabWidget*>(QStringLiteral("devicesTabs"));
    const int damping = row("Damping");
    const auto moves = [this] {
        const UaVariant before = valueOf("Temperature");
        return QTest::qWaitFor([&] { return valueOf("Temperature") != before; }, limit);
    };
    ASSERT_TRUE(tabs && damping >= 0);
    const OpcUa_UInt32 unwatched = itemCount();
    ASSERT_EQ(model().stage(damping, UaVariant(9.5)), "");
    view->parameters()->setWatching(true);
    EXPECT_TRUE(moves() && moves());
    EXPECT_EQ(itemCount(), unwatched + static_cast<OpcUa_UInt32>(model().rowCount()));
    EXPECT_EQ(QlumParameterModel::shown(model().rowAt(damping)), UaVariant(9.5)) << "not typed over";
    tabs->setCurrentIndex(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return itemCount() == unwatched; }, limit)) << itemCount();
    tabs->setCurrentIndex(0);
    EXPECT_TRUE(moves());
    delete view;
    EXPECT_TRUE(QTest::qWaitFor([&] { return itemCount() < unwatched; }, limit)) << itemCount();
}

TEST_F(DevicesOnDemoServer, AProjectBringsBackTheServerAndWhatWasShown)
{
    const QString file = writeProject(QString::fromStdString(url()));
    {
        QSettings project(file, QSettings::IniFormat);
        project.setValue(QStringLiteral("Servers/9/Name"), QStringLiteral("Warehouse"));
        project.setValue(QStringLiteral("Servers/9/ProjectServerId"), 9);
        project.setValue(QStringLiteral("Servers/9/ServerUrl"), QStringLiteral("opc.tcp://127.0.0.1:1"));
        project.beginGroup(QStringLiteral("Documents/Instruments")); // as another program may have left it
        project.setValue(QStringLiteral("DocumentType"), QStringLiteral("Devices View"));
        project.setValue(QStringLiteral("DocumentSettings/Page"), QStringLiteral("seventh"));
        project.setValue(QStringLiteral("DocumentSettings/ServerId"), 7);
        project.setValue(QStringLiteral("DocumentSettings/Columns/1"), QByteArray("\0\1\2", 3));
    }
    window->loadProject(file);
    view = window->findChild<QlumDevicesView*>();
    ASSERT_NE(view, nullptr);
    ASSERT_TRUE(waitUntilRead()) << logText();
    show("/TT-103");
    view->findChild<QTabWidget*>(QStringLiteral("devicesTabs"))->setCurrentIndex(3);
    view->findChild<QLineEdit*>(QStringLiteral("devicesFilter"))->setText(QStringLiteral("TT"));
    view->findChild<QComboBox*>(QStringLiteral("deviceGroup"))->setCurrentText(QStringLiteral("Tuning"));
    const QString saved = folder.filePath(QStringLiteral("saved.uap"));
    ASSERT_TRUE(window->saveProject(saved));

    window->clearProject();
    window->loadProject(saved);
    view = window->findChild<QlumDevicesView*>();
    ASSERT_NE(view, nullptr);
    ASSERT_TRUE(waitUntilRead()) << logText();
    const QList<unsigned int> shown = qlumDocumentServers(view);
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(window->serverName(shown.front()), "Plant") << "and not the one that is selected";
    EXPECT_EQ(view->findChild<QTreeView*>(QStringLiteral("devicesTree"))->currentIndex().data(), "TT-103");
    EXPECT_EQ(view->findChild<QTabWidget*>(QStringLiteral("devicesTabs"))->currentIndex(), 3);
    EXPECT_EQ(view->findChild<QLineEdit*>(QStringLiteral("devicesFilter"))->text(), "TT");
    EXPECT_EQ(view->parameters()->group(), "Tuning");
}

} // namespace
