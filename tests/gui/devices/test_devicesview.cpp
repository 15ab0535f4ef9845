// The view of devices: what it edits, what it refuses, and what it says when a lock or a server is gone.
#include <app/api/qlumconnectionstatus.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/devices/qlumdevicesview.h>
#include <plugins/devices/qlumparametermodel.h>
#include <plugins/devices/qlumparameterpage.h>
#include <tests/gui/devices/deviceworld.h>
#include <tests/support/stubapplication.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModel>
#include <QLabel>
#include <QList>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {
constexpr unsigned int deviceServer = 5;

class DeviceApplication : public StubApplication
{
public:
    QString serverName(unsigned int) override { return QStringLiteral("Plant"); }
    QList<unsigned int> projectServerIds() override { return {deviceServer}; }
};

class DevicesViewTest : public testing::Test
{
protected:
    void open()
    {
        QlumDeviceWorld world;
        world.agree = [this](QWidget*, const QString& question) {
            questions.append(question);
            return true;
        };
        world.choose = [](QWidget*, const QString&, const QString&,
                          std::vector<QlumParameterDifference> differences,
                          const QStringList&) { return differences; };
        view = std::make_unique<QlumDevicesView>(
            application, pools, [this](unsigned int) { return server; }, nullptr, world);
        view->serverSelectionChanged(deviceServer);
        view->sessionStatusChanged(deviceServer, QlumConnectionStatus::Connected);
        EXPECT_TRUE(settled());
    }
    bool settled()
    {
        return QTest::qWaitFor([this] { return !view->isBusy(); }, 10'000);
    }
    [[nodiscard]] std::string said(const char* label) const
    {
        std::string all;
        for (const QLabel* const one : view->findChildren<QLabel*>())
            if (one->objectName() == QLatin1String(label))
                all += one->text().toStdString();
        return all;
    }
    [[nodiscard]] std::string message() const { return said("what") + ' ' + said("why"); }
    void click(const char* button)
    {
        auto* const found = view->findChild<QPushButton*>(QLatin1String(button));
        ASSERT_NE(found, nullptr) << button;
        EXPECT_TRUE(found->isEnabled()) << button;
        found->click();
        EXPECT_TRUE(settled());
    }
    [[nodiscard]] QlumParameterModel& model() const { return *view->parameters()->model(); }

    DeviceApplication application;
    std::shared_ptr<QlumDevicePools> pools = std::make_shared<QlumDevicePools>();
    std::shared_ptr<DeviceServer> server = std::make_shared<DeviceServer>();
    std::unique_ptr<QlumDevicesView> view;
    QStringList questions;
};

TEST_F(DevicesViewTest, ShowsTheFirstDeviceAndKeepsChangesOfOneThatIsLeft)
{
    open();
    auto* const tree = view->findChild<QTreeView*>(QStringLiteral("devicesTree"));
    EXPECT_EQ(tree->currentIndex().data().toString(), "Pump");
    EXPECT_EQ(tree->currentIndex().siblingAtColumn(1).data().toString(), "OFF_SPEC");
    ASSERT_EQ(model().rowCount(), 3);
    ASSERT_EQ(model().stage(0, UaVariant(90.0)), "");
    view->selectDevice(2);
    ASSERT_TRUE(settled());
    EXPECT_EQ(model().changeCount(), 0);
    view->sltRefresh();
    ASSERT_TRUE(settled());
    view->selectDevice(0);
    ASSERT_TRUE(settled());
    EXPECT_EQ(model().changeCount(), 1);
    view->compareWithType();
    view->writeParameters();
    ASSERT_TRUE(settled());
    EXPECT_EQ(server->table.value(server->speed), UaVariant(100.0)) << "as its type has it";
    EXPECT_EQ(model().changeCount(), 0);
}

TEST_F(DevicesViewTest, LocksRenewsAndGivesTheLockBack)
{
    open();
    click("deviceLock");
    EXPECT_TRUE(view->isHeld(server->pump));
    view->renewLocks();
    ASSERT_TRUE(settled());
    ASSERT_EQ(model().stage(0, UaVariant(90.0)), "");
    view->writeParameters();
    ASSERT_TRUE(settled());
    click("deviceUnlock");
    EXPECT_FALSE(view->isHeld(server->pump));
    EXPECT_EQ(server->order(), "InitLock RenewLock RenewLock Write1 ExitLock");
    click("deviceLock");
    view.reset();
    EXPECT_TRUE(pools->locks.of(deviceServer).waitForDone(10'000));
    EXPECT_EQ(server->owner, DeviceServer::Nobody) << "a closed view leaves no lock behind";
}

TEST_F(DevicesViewTest, RefusesEditsOfADeviceThatSomebodyElseHasLocked)
{
    server->lockBy(DeviceServer::Other);
    open();
    EXPECT_TRUE(said("deviceLockText").find("night shift") != std::string::npos) << said("deviceLockText");
    EXPECT_TRUE(model().stage(0, UaVariant(90.0)).contains("night shift"));
    EXPECT_EQ(model().changeCount(), 0);
    click("deviceBreakLock");
    ASSERT_EQ(questions.size(), 1);
    EXPECT_TRUE(questions[0].contains("night shift"));
    EXPECT_EQ(model().stage(0, UaVariant(90.0)), "");
}

TEST_F(DevicesViewTest, TellsThatALockIsGoneInTheMiddleOfAnEdit)
{
    open();
    click("deviceLock");
    ASSERT_EQ(model().stage(0, UaVariant(90.0)), "");
    server->lockBy(DeviceServer::Other);
    view->renewLocks();
    ASSERT_TRUE(settled());
    EXPECT_FALSE(view->isHeld(server->pump));
    EXPECT_TRUE(message().find("Your lock of Pump is gone") != std::string::npos) << message();
    EXPECT_EQ(model().changeCount(), 1) << "what was typed is not lost";
    view->writeParameters();
    ASSERT_TRUE(settled());
    EXPECT_EQ(server->table.value(server->speed), UaVariant(80.0));

    server->lockBy(DeviceServer::Nobody);
    view->sltRefresh();
    ASSERT_TRUE(settled());
    click("deviceLock");
    view->sessionStatusChanged(deviceServer, QlumConnectionStatus::ConnectionError);
    EXPECT_TRUE(view->isHeld(server->pump)) << "the session may come back";
    view->sessionStatusChanged(deviceServer, QlumConnectionStatus::NewSessionCreated);
    ASSERT_TRUE(settled());
    EXPECT_FALSE(view->isHeld(server->pump));
    EXPECT_EQ(model().changeCount(), 1);

    server->lockBy(DeviceServer::Nobody);
    view->sltRefresh();
    ASSERT_TRUE(settled());
    click("deviceLock");
    server->failCalls(NodeTable::Call, OpcUa_BadUserAccessDenied);
    view->renewLocks();
    ASSERT_TRUE(settled());
    EXPECT_TRUE(view->isHeld(server->pump)) << "one renewal that was refused is not the end yet";
    server->lockBy(DeviceServer::Nobody);
    view->renewLocks();
    ASSERT_TRUE(settled());
    EXPECT_FALSE(view->isHeld(server->pump)) << "the server let it go, and nobody may renew it";
}

TEST_F(DevicesViewTest, SaysWhyThereIsNothing)
{
    server = std::make_shared<DeviceServer>(false);
    open();
    EXPECT_TRUE(said("devicesNote").find("does not know the namespace") != std::string::npos);
    view->sessionStatusChanged(deviceServer, QlumConnectionStatus::Disconnected);
    EXPECT_TRUE(said("devicesNote").find("no connection to Plant") != std::string::npos);
    view->sessionRemoved(deviceServer);
    EXPECT_TRUE(said("devicesNote").find("Select a server") != std::string::npos);
}
} // namespace
