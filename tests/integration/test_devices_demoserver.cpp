// The devices of a server that is not ours, in the window of the whole client: found by names, watched,
// locked, written as a set and transferred.
#include <app/api/qlumsessionservices.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <plugins/devices/qlumdeviceclient.h>
#include <plugins/devices/qlumdevicedata.h>
#include <plugins/devices/qlumdevicereader.h>
#include <plugins/devices/qlumdevicesview.h>
#include <plugins/devices/qlumparametermodel.h>
#include <plugins/devices/qlumparameterpage.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QLabel>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <ranges>
#include <string>

namespace {

class DevicesOnDemoServer : public ClientOnDemoServer
{
protected:
    void openDevices()
    {
        openDemoProject();
        window->documents()->bringUp(QStringLiteral("Devices View"));
        view = window->findChild<QlumDevicesView*>();
        ASSERT_NE(view, nullptr);
        ASSERT_TRUE(QTest::qWaitFor([this] { return view->space().devices.size() >= 6 && isIdle(); }, limit))
            << logText();
    }
    [[nodiscard]] bool isIdle() const { return !view->isBusy(); }
    [[nodiscard]] int place(const char* path) const
    {
        const auto& devices = view->space().devices;
        const auto found = std::ranges::find_if(
            devices, [path](const QlumDevice& device) { return device.pathNames == QLatin1String(path); });
        return found == devices.end() ? -1 : static_cast<int>(found - devices.begin());
    }
    [[nodiscard]] const QlumDevice& device(const char* path) const
    {
        return view->space().devices.at(static_cast<std::size_t>(place(path)));
    }
    void show(const char* path)
    {
        view->selectDevice(place(path));
        ASSERT_TRUE(QTest::qWaitFor([this] { return isIdle(); }, limit));
    }
    [[nodiscard]] int row(const char* name) const
    {
        for (int i = 0; i < model().rowCount(); ++i)
            if (model().rowAt(i).parameter.browseName == QLatin1String(name))
                return i;
        return -1;
    }
    [[nodiscard]] QlumParameterModel& model() const { return *view->parameters()->model(); }
    [[nodiscard]] std::string said(const char* label) const
    {
        const auto* const found = view->findChild<QLabel*>(QLatin1String(label));
        return found ? found->text().toStdString() : std::string();
    }
    void lock(bool isWanted)
    {
        if (isWanted)
            view->lockDevice();
        else
            view->unlockDevice();
        ASSERT_TRUE(QTest::qWaitFor([this] { return isIdle(); }, limit));
    }
    std::string transferred()
    {
        view->transfer(true);
        EXPECT_TRUE(QTest::qWaitFor([this] { return isIdle(); }, limit));
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

    QlumDevicesView* view = nullptr;
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
    view->writeParameters();
    ASSERT_TRUE(QTest::qWaitFor([this] { return isIdle(); }, limit));
    EXPECT_EQ(model().rowAt(damping).parameter.value.value(), UaVariant(3.5));
    EXPECT_FALSE(model().rowAt(damping).changed);
    EXPECT_TRUE(model().rowAt(lower).changed);
    EXPECT_TRUE(model().rowAt(lower).outcome.contains("BadOutOfRange"));
    model().revert();
    ASSERT_EQ(model().stage(damping, before), "");
    view->writeParameters();
    ASSERT_TRUE(QTest::qWaitFor([this] { return isIdle(); }, limit));
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
    view->writeParameters();
    ASSERT_TRUE(QTest::qWaitFor([this] { return isIdle(); }, limit));

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

} // namespace
