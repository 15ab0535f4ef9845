// What is read of devices and done with them: by names, once, within bounds, and by what the methods say.
#include <app/api/qlumserverrole.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/devices/qlumdeviceclient.h>
#include <plugins/devices/qlumdevicedata.h>
#include <plugins/devices/qlumdevicereader.h>
#include <plugins/devices/qlumparametermodel.h>
#include <plugins/devices/qlumparameterset.h>
#include <tests/gui/devices/deviceworld.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QStringList>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {
class DeviceReading : public testing::Test
{
protected:
    [[nodiscard]] QlumDeviceSpace read() { return QlumDeviceReader(server, {}, {}).readSpace(); }
    [[nodiscard]] QlumDeviceDetails details(const QlumDevice& device)
    {
        return QlumDeviceReader(server, {}, {}).readDetails(device);
    }

    std::shared_ptr<DeviceServer> server = std::make_shared<DeviceServer>();
    QlumDeviceClient client{server, {}, {}};
};

TEST_F(DeviceReading, FindsEachDeviceOnceWithItsFacts)
{
    const QlumDeviceSpace space = read();
    ASSERT_EQ(space.devices.size(), 3U) << "the drive leads back to its pump";
    const QlumDevice& pump = space.devices[0];
    EXPECT_EQ(pump.fact(QlumNameplate::Model), "P 7");
    EXPECT_EQ(pump.typeName, "PumpType");
    EXPECT_EQ(pump.health, QlumDeviceHealth::OffSpec);
    EXPECT_EQ(pump.missing, QStringList{"RevisionCounter"});
    EXPECT_EQ(space.devices[1].kind, QlumDeviceKind::Group);
    EXPECT_EQ(space.devices[2].pathNames, "/Pump/Modules/Drive");
    EXPECT_EQ(space.lockOf(2), 0) << "the lock of a device holds for what is in it";
    EXPECT_TRUE(pump.lock.isKnown);
    EXPECT_FALSE(pump.lock.isLocked);
}

TEST_F(DeviceReading, SaysWhatAServerDoesNotHave)
{
    const auto bare = std::make_shared<DeviceServer>(false);
    EXPECT_FALSE(QlumDeviceReader(bare, {}, {}).readSpace().hasNamespace);
    server->table.fail(NodeTable::Translate, UaNodeId(85), OpcUa_BadNoMatch);
    EXPECT_EQ(read().missing, QStringList{"Objects/DeviceSet"});
    server->disconnect();
    EXPECT_TRUE(read().status.isBad()) << "and nothing is missing for sure";
}

TEST_F(DeviceReading, AParameterOfSeveralGroupsIsOneCell)
{
    const QlumDeviceDetails pump = details(read().devices[0]);
    ASSERT_EQ(pump.parameters.size(), 3U);
    const QlumDeviceParameter& speed = pump.parameters[0];
    EXPECT_TRUE(speed.groups.contains("Tuning") && speed.groups.contains("Motor"))
        << speed.groups.join(' ').toStdString();
    EXPECT_LE(pump.groups.size(), 2) << "groups that hold each other are visited once";
    EXPECT_EQ(speed.value.value(), UaVariant(80.0));
    EXPECT_TRUE(speed.hasDefault);
    EXPECT_EQ(speed.byType, UaVariant(100.0));
    EXPECT_EQ(speed.namespaceUri, "urn:plant");
    EXPECT_FALSE(pump.parameters[2].context->accessFault.isEmpty());
    ASSERT_EQ(pump.documents.size(), 1U);
    EXPECT_EQ(pump.documents[0].address, "DeviceManual");
}

TEST_F(DeviceReading, TheOutputOfAMethodDecidesNotTheCall)
{
    const QlumDevice pump = read().devices[0];
    EXPECT_TRUE(client.initLock(pump, "test").isDone());
    server->lockBy(DeviceServer::Other);
    const QlumDeviceAnswer refused = client.initLock(pump, "test");
    EXPECT_TRUE(refused.status.isGood());
    EXPECT_EQ(refused.output, -1);
    EXPECT_FALSE(refused.isDone());
    EXPECT_FALSE(client.exitLock(pump).isDone());
    EXPECT_TRUE(client.breakLock(pump).isDone());
    server->failCalls(NodeTable::Call, OpcUa_BadUserAccessDenied);
    EXPECT_EQ(client.renewLock(pump).output, 0);
    EXPECT_FALSE(client.renewLock(pump).isDone());
    QlumDevice without = pump;
    without.lockParts.clear();
    EXPECT_FALSE(client.initLock(without, "test").isDone());
}

TEST_F(DeviceReading, WritesNothingWithALockThatIsGoneOrSomebodyElses)
{
    const QlumDevice pump = read().devices[0];
    const std::vector<QlumParameterWrite> wanted{{server->speed, "Speed", UaVariant(90.0), {}}};
    server->lockBy(DeviceServer::Other);
    const QlumParameterOutcomes locked = client.write(&pump, false, wanted);
    EXPECT_TRUE(locked.refusal.contains("night shift")) << locked.refusal.toStdString();
    const QlumParameterOutcomes lost = client.write(&pump, true, wanted);
    EXPECT_TRUE(lost.isLockLost);
    EXPECT_EQ(server->order(), "RenewLock") << "and no write";
    EXPECT_EQ(server->table.value(server->speed), UaVariant(80.0));
}

TEST_F(DeviceReading, TellsTheFailureOfEachCellAndReadsBack)
{
    const QlumDevice pump = read().devices[0];
    QlumParameterModel model;
    model.setDetails(details(pump), false);
    EXPECT_EQ(model.stage(0, UaVariant(90.0)), "");
    EXPECT_EQ(model.stage(1, UaVariant(7.0)), "");
    EXPECT_NE(model.stage(2, UaVariant(OpcUa_Int32{2})), "") << "may not be written";
    EXPECT_EQ(model.stage(1, UaVariant(5.0)), "");
    EXPECT_EQ(model.changeCount(), 1) << "what is as it was needs no write";
    static_cast<void>(model.stage(1, UaVariant(7.0)));
    server->table.fail(NodeTable::Write, server->ramp, OpcUa_BadOutOfRange);
    model.setOutcomes(client.write(nullptr, false, model.changes()));
    EXPECT_EQ(server->order(), "Write2") << "one go";
    EXPECT_FALSE(model.rowAt(0).changed);
    EXPECT_EQ(model.rowAt(0).parameter.value.value(), UaVariant(90.0));
    ASSERT_TRUE(model.rowAt(1).changed) << "what was not taken stays";
    EXPECT_EQ(*model.rowAt(1).changed, UaVariant(7.0));
    EXPECT_TRUE(model.rowAt(1).outcome.contains("BadOutOfRange"));
    server->role = QlumServerRole::Look;
    model.setOutcomes(client.write(nullptr, false, model.changes()));
    EXPECT_TRUE(model.rowAt(1).outcome.startsWith("Not sent")) << model.rowAt(1).outcome.toStdString();
    EXPECT_EQ(server->order(), "Write2");
}

TEST_F(DeviceReading, AFileOfParametersComesBackAsDifferences)
{
    const QlumDevice pump = read().devices[0];
    QlumParameterModel model;
    model.setDetails(details(pump), false);
    QStringList leftOut;
    QByteArray bytes = qlumEncodeParameterSet(pump, model, leftOut);
    EXPECT_FALSE(bytes.contains("\"Mode\"")) << "cannot be written back";
    server->table.setValue(server->speed, UaVariant(0.1));
    model.setDetails(details(pump), false);
    QlumParameterSet set;
    ASSERT_EQ(qlumDecodeParameterSet(bytes, nullptr, set), "");
    EXPECT_EQ(set.serialNumber, "SerialNumber");
    QStringList unknown;
    const auto differences = qlumParameterDifferences(model, set, unknown);
    ASSERT_EQ(differences.size(), 1U) << "only what differs";
    EXPECT_EQ(differences[0].id, server->speed);
    EXPECT_EQ(differences[0].value, UaVariant(80.0));
    const auto ofType = qlumTypeDifferences(model);
    ASSERT_EQ(ofType.size(), 1U);
    EXPECT_EQ(ofType[0].value, UaVariant(100.0));

    bytes.replace("\"Ramp\"", "\"Slope\"");
    ASSERT_EQ(qlumDecodeParameterSet(bytes, nullptr, set), "");
    EXPECT_EQ(qlumParameterDifferences(model, set, unknown).size(), 1U);
    EXPECT_EQ(unknown, QStringList{"Slope"});
    EXPECT_NE(qlumDecodeParameterSet(bytes.left(bytes.size() / 2), nullptr, set), "");
    EXPECT_NE(qlumDecodeParameterSet("{\"format\": \"song\"}", nullptr, set), "");
}
} // namespace
