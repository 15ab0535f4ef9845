// Several people at the devices of a server that is not ours, each with a session: whose lock counts, what
// becomes of edits when it is gone, and what is saved to disk.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/devices/qlumdeviceclient.h>
#include <plugins/devices/qlumdevicedata.h>
#include <plugins/devices/qlumdevicesview.h>
#include <plugins/devices/qlumparametermodel.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumprojectnodeserver.h>
#include <tests/integration/devicesprobe.h>
#include <tests/support/connectanswers.h>
#include <tests/support/demoserverinfo.h>
#include <tests/support/owncertificate.h>
#include <tests/support/stubapplication.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModel>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
constexpr char lockedDevice[] = "/TT-103"; // the others do nothing with it

// A user with a session of his own, and the view in front of him.
class DeviceSeat : public DevicesProbe
{
public:
    DeviceSeat(StubApplication& application, const char* user) : m_application(application)
    {
        QlumDiscoverySetting setting;
        setting.displayName = user;
        setting.sessionName = "devices test";
        setting.role = QlumServerRole::Commission;
        setting.endpoint.url = QString::fromStdString(demoserver::endpointUrl());
        setting.endpoint.securityPolicyUri =
            QStringLiteral("http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256");
        setting.endpoint.securityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
        setting.userTokenType = QlumDiscoverySetting::UserName;
        setting.userName = user;
        setting.password = user;
        setting.storePassword = true;
        m_script.isErrorIgnored = true;      // the server's certificate may name no address
        m_script.verdict = {true, true, {}}; // accepted once
        node = std::make_unique<QlumProjectNodeServer>(setting, std::make_unique<ConnectAnswers>(m_script));
    }

    [[nodiscard]] bool open(const char* path)
    {
        if (!node->connectServer())
            return false;
        QlumDeviceWorld world;
        world.agree = [this](QWidget*, const QString& question) {
            questions.append(question);
            return true;
        };
        world.choose = [this](QWidget*, const QString&, const QString&,
                              std::vector<QlumParameterDifference> differences, const QStringList&) {
            for (const QlumParameterDifference& one : differences)
                differing.append(one.name);
            return differences;
        };
        world.saveName = [this](QWidget*, const QString&, const QString&) { return file; };
        world.openName = [this](QWidget*, const QString&) { return file; };
        m_view = std::make_unique<QlumDevicesView>(m_application, m_pools, qlumApplicationServices(),
                                                   qlumApplicationMonitoring(), world);
        view = m_view.get();
        view->serverSelectionChanged(node->serverId());
        view->sessionStatusChanged(node->serverId(), QlumConnectionStatus::Connected);
        if (!waitUntilRead())
            return false;
        show(path);
        return true;
    }
    [[nodiscard]] bool isHeld(const char* path) const { return view->isHeld(device(path).id); }
    void breakLock() const
    {
        view->breakLock();
        EXPECT_TRUE(waitUntilIdle());
    }
    void stage(const char* name, const UaVariant& value) const
    {
        EXPECT_EQ(model().stage(row(name), value), "");
    }
    void saveDocument(const char* name) const
    {
        auto* const table = view->findChild<QTableView*>(QStringLiteral("deviceDocuments"));
        for (int row = 0; row < table->model()->rowCount(); ++row)
            if (table->model()->index(row, 0).data() == QLatin1String(name))
                table->selectRow(row);
        view->findChild<QPushButton*>(QStringLiteral("deviceSaveDocument"))->click();
        EXPECT_TRUE(waitUntilIdle());
    }

    std::unique_ptr<QlumProjectNodeServer> node;
    QStringList questions;
    QStringList differing; // names of the parameters that were shown as different
    QString file;          // the one that the user chooses

private:
    StubApplication& m_application;
    ConnectScript m_script;
    std::shared_ptr<QlumDevicePools> m_pools = std::make_shared<QlumDevicePools>();
    std::unique_ptr<QlumDevicesView> m_view;
};

class DeviceSeatsOnDemoServer : public WithOwnCertificate
{
protected:
    DeviceSeatsOnDemoServer() { application.setPatience(); }
    void SetUp() override { ASSERT_FALSE(demoserver::endpointUrl().empty()); }

    StubApplication application;
};

TEST_F(DeviceSeatsOnDemoServer, TheAdministratorBreaksALockInTheMiddleOfAnEdit)
{
    DeviceSeat engineer(application, "demo");
    auto admin = std::make_unique<DeviceSeat>(application, "admin");
    ASSERT_TRUE(engineer.open(lockedDevice) && admin->open(lockedDevice))
        << application.texts().join('\n').toStdString();
    const UaVariant before = engineer.valueOf("Offset");
    engineer.lock(true);
    ASSERT_TRUE(engineer.isHeld(lockedDevice)) << engineer.message();
    engineer.stage("Offset", UaVariant(4.25));
    ASSERT_TRUE(QTest::qWaitFor([&] { return admin->says("deviceLockText", "locked by demo"); },
                                DevicesProbe::longest))
        << admin->said("deviceLockText");
    EXPECT_TRUE(admin->model().stage(admin->row("Offset"), UaVariant(1.0)).contains("locked by demo"));

    admin->breakLock();
    ASSERT_EQ(admin->questions.size(), 1);
    EXPECT_TRUE(admin->questions[0].contains("locked by demo"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !engineer.isHeld(lockedDevice); }, DevicesProbe::longest));
    EXPECT_TRUE(engineer.tells("Your lock of TT-103 is gone")) << engineer.message();
    admin->lock(true);
    ASSERT_TRUE(admin->isHeld(lockedDevice)) << admin->message();
    engineer.write();
    EXPECT_TRUE(engineer.tells("locked by admin")) << engineer.message();
    EXPECT_EQ(engineer.model().changeCount(), 1) << "what was typed is not lost";
    engineer.breakLock();
    EXPECT_TRUE(engineer.tells("BadUserAccessDenied")) << engineer.message();
    admin->view->readParameters();
    ASSERT_TRUE(admin->waitUntilIdle());
    EXPECT_EQ(admin->valueOf("Offset"), before);
    EXPECT_TRUE(admin->isHeld(lockedDevice));

    admin->node->disconnectServer(); // with which its lock goes
    EXPECT_TRUE(QTest::qWaitFor([&] { return engineer.says("deviceLockText", "is not locked"); },
                                DevicesProbe::longest))
        << engineer.said("deviceLockText");
    engineer.lock(true);
    engineer.write();
    EXPECT_EQ(engineer.model().changeCount(), 0) << engineer.message();
    EXPECT_EQ(engineer.valueOf("Offset"), UaVariant(4.25));
    engineer.stage("Offset", before);
    engineer.write();
    engineer.lock(false);
}

TEST_F(DeviceSeatsOnDemoServer, ALockEndsWhenNobodyRenewsItAndOnlyThen)
{
    DeviceSeat engineer(application, "demo");
    DeviceSeat admin(application, "admin");
    ASSERT_TRUE(engineer.open(lockedDevice) && admin.open("/M-202"));
    admin.lock(true); // renewed by its view
    ASSERT_TRUE(admin.isHeld("/M-202")) << admin.message();
    const QlumDevice abandoned = admin.device(lockedDevice);
    const auto call = [&](const auto& wanted) {
        return std::async(
                   std::launch::async,
                   [&, services = qlumApplicationServices()(admin.node->serverId())] {
                       QlumDeviceClient client(services, {}, {});
                       return wanted(client);
                   })
            .get();
    };
    EXPECT_TRUE(
        call([&](QlumDeviceClient& client) { return client.initLock(abandoned, "gone home"); }).isDone());
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return engineer.says("deviceLockText", "gone home"); }, DevicesProbe::longest));
    EXPECT_TRUE(engineer.says("deviceLockText", "s more unless it is renewed"))
        << engineer.said("deviceLockText");
    EXPECT_TRUE(QTest::qWaitFor([&] { return engineer.says("deviceLockText", "is not locked"); },
                                DevicesProbe::longest))
        << engineer.said("deviceLockText");
    const QlumDeviceAnswer late = call([&](QlumDeviceClient& client) { return client.renewLock(abandoned); });
    EXPECT_TRUE(late.status.isGood());
    EXPECT_FALSE(late.isDone());
    EXPECT_TRUE(engineer.device("/M-202").lock.isLocked) << "older, but renewed";
    EXPECT_TRUE(admin.isHeld("/M-202")) << admin.message();
    admin.lock(false);
}

TEST_F(DeviceSeatsOnDemoServer, DocumentsAndParameterSetsAreSavedToDisk)
{
    const TemporaryFolder folder;
    DeviceSeat engineer(application, "demo");
    ASSERT_TRUE(engineer.open("/TT-101"));
    const std::string manual = folder.file("manual.pdf");
    engineer.file = QString::fromStdString(manual);
    engineer.saveDocument("Manual.pdf");
    EXPECT_TRUE(TemporaryFolder::read(manual).starts_with("%PDF-")) << engineer.message();
    EXPECT_TRUE(TemporaryFolder::read(manual).ends_with("%%EOF\n")) << "to its end";
    const std::string support = folder.file("description.xml");
    engineer.file = QString::fromStdString(support);
    engineer.saveDocument("Description.xml");
    EXPECT_EQ(TemporaryFolder::read(support), "<device model=\"TX 40\"/>\n");
    const std::string records = folder.file("records.txt");
    engineer.file = QString::fromStdString(records);
    engineer.saveDocument("Records.txt");
    EXPECT_TRUE(TemporaryFolder::read(records).ends_with("Record 100: zero checked, no deviation\n"));
    engineer.file = QString::fromStdString(folder.file("nowhere/records.txt"));
    engineer.saveDocument("Records.txt");
    EXPECT_TRUE(engineer.tells("Records.txt was not saved")) << engineer.message();

    engineer.file = QString::fromStdString(folder.file("set.json"));
    const UaVariant before = engineer.valueOf("Offset");
    engineer.view->saveParameters();
    engineer.stage("Offset", UaVariant(-3.5));
    engineer.write();
    ASSERT_EQ(engineer.valueOf("Offset"), UaVariant(-3.5)) << engineer.message();
    engineer.view->loadParameters();
    EXPECT_EQ(engineer.differing.join(' '), "Offset");
    engineer.write();
    EXPECT_EQ(engineer.valueOf("Offset"), before) << engineer.message();
}
} // namespace
