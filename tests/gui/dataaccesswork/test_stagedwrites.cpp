#include <app/api/qlumserverrole.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/parts/qlumstagedwrite.h>
#include <tests/gui/dataaccesswork/workfixture.h>
#include <tests/gui/valuepages/plantvalues.h>
#include <tests/support/modeltext.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumdatafield.h>

#include <QString>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

// Does something before or after each write reaches the table.
class WritableServices : public PlantServices
{
public:
    UaStatus write(Settings& settings, const UaWriteValues& nodes, UaStatusCodeArray& results) override
    {
        if (role)
            return qlumRefusal(*role);
        const UaStatus status = TableServices::write(settings, nodes, results);
        if (afterWrite)
            afterWrite();
        return losesAnswers ? UaStatus(OpcUa_BadTimeout) : status;
    }

    std::optional<QlumServerRole> role;
    std::function<void()> afterWrite;
    bool losesAnswers = false;
};

class StagedWrites : public testing::Test
{
protected:
    StagedWrites()
    {
        for (OpcUa_UInt32 id = 1; id <= 3; ++id)
            services->table.variable(PlantServices::node(id), "Value", UaVariant(OpcUa_Int32(id)));
    }
    // Writes id * 10 to each.
    std::vector<QlumStagedWrite> staged(const std::vector<OpcUa_UInt32>& ids)
    {
        std::vector<QlumStagedWrite> writes;
        for (const OpcUa_UInt32 id : ids) {
            QlumStagedWrite write;
            write.key = id;
            write.serverId = 5;
            write.nodeId = PlantServices::node(id);
            write.value = UaVariant(OpcUa_Int32(id * 10));
            writes.push_back(write);
        }
        return writes;
    }
    std::string apply(std::vector<QlumStagedWrite> writes, const QlumApplyOptions& options = {})
    {
        outcomes.clear();
        qlumApplyStaged(job, provider, std::move(writes), options,
                        [this](const auto& write) { take(write); });
        return text;
    }
    std::string revert()
    {
        const std::vector<QlumStagedWrite> writes = std::exchange(outcomes, {});
        qlumRevertStaged(job, provider, writes, {}, [this](const auto& write) { take(write); });
        return text;
    }
    void take(const QlumStagedWrite& write)
    {
        text = outcomes.empty() ? std::string() : text;
        outcomes.push_back(write);
        text += std::to_string(write.key) + ": " + qlumStagedText(write).toStdString() + "\n";
    }
    int value(OpcUa_UInt32 id) { return services->table.value(PlantServices::node(id)).toInt32(); }

    StubApplication application;
    std::shared_ptr<WritableServices> services = std::make_shared<WritableServices>();
    QlumSessionServicesProvider provider = [this](unsigned int id) {
        return id == 5 ? services : std::shared_ptr<WritableServices>();
    };
    TestJob job;
    std::vector<QlumStagedWrite> outcomes;
    std::string text;
};

TEST_F(StagedWrites, AreWrittenInTheOrderGivenUntilOneFails)
{
    services->table.fail(NodeTable::Write, PlantServices::node(1), OpcUa_BadNotWritable);
    EXPECT_EQ(apply(staged({3, 1, 2})), "3: Written\n"
                                        "1: Refused. BadNotWritable: the value may not be written\n"
                                        "2: Left out: one before it was not written, or you have stopped\n");
    EXPECT_EQ(value(2), 2);
    EXPECT_EQ(apply(staged({1, 2}), {false, true}),
              "1: Refused. BadNotWritable: the value may not be written\n2: Written\n");
    EXPECT_EQ(value(2), 20);
}

TEST_F(StagedWrites, AreRevertedWhereNobodyHasChangedThemSince)
{
    apply(staged({1, 2, 3}));
    services->table.setValue(PlantServices::node(2), UaVariant(OpcUa_Int32(99)));
    EXPECT_EQ(revert(), "3: The old value is there again\n"
                        "2: Not reverted: somebody else has changed it to 99\n"
                        "1: The old value is there again\n");
    EXPECT_EQ(value(1), 1);
    EXPECT_EQ(value(2), 99);
    EXPECT_EQ(value(3), 3);
}

TEST_F(StagedWrites, ShowWhatTheServerMadeOfThem)
{
    services->afterWrite = [this] {
        services->table.setValue(PlantServices::node(1), UaVariant(OpcUa_Int32(8)));
    };
    EXPECT_EQ(apply(staged({1})), "1: Written, but 8 was read back\n");
    services->afterWrite = nullptr;
    EXPECT_EQ(revert(), "1: The old value is there again\n") << "what the server made of it is no change";
    EXPECT_EQ(value(1), 1);
}

TEST_F(StagedWrites, WhoseAnswerIsLostAreLookedAt)
{
    services->losesAnswers = true;
    EXPECT_EQ(apply(staged({1})), "1: Written\n") << "the value is there";
    services->table.setValue(PlantServices::node(1), UaVariant(OpcUa_Int32(1)));
    EXPECT_EQ(apply(staged({1, 2}), {true, false}),
              "1: It is not known whether it was written. BadTimeout: the server did not answer in time\n"
              "2: Left out: one before it was not written, or you have stopped\n");
}

TEST_F(StagedWrites, ThatAreNotSentSayWhy)
{
    services->role = QlumServerRole::Look;
    EXPECT_EQ(apply(staged({1})), "1: Not sent: this server is set to Look\n");
    std::vector<QlumStagedWrite> elsewhere = staged({1});
    elsewhere[0].serverId = 6;
    EXPECT_EQ(apply(elsewhere),
              "1: Not sent. BadNotConnected: there is no connection to the server at the moment\n");
    job.cancel();
    EXPECT_EQ(apply(staged({2})), "2: Left out: one before it was not written, or you have stopped\n");
    EXPECT_EQ(value(1), 1);
}

class StagedFields : public StagedWrites
{
protected:
    StagedFields()
    {
        for (const UaNodeId& id : {plant::limitsId, plant::limitsEncodingId})
            services->structures[id] = plant::definitions()->structure(plant::limitsId);
        services->table.variable(limits, "Limits", UaVariant());
        setLimits(1, 2);
    }
    void setLimits(double low, double high)
    {
        UaGenericStructureValue value(plant::definitions()->structure(plant::limitsId));
        EXPECT_TRUE(value.setField(0, UaVariant(low)).isGood());
        EXPECT_TRUE(value.setField(1, UaVariant(high)).isGood());
        services->table.setValue(limits, plant::encoded(value));
        services->table.setAttribute(limits, OpcUa_Attributes_DataType,
                                     UaDataValue(UaVariant(plant::limitsId)));
        services->table.setAttribute(limits, OpcUa_Attributes_ValueRank,
                                     UaDataValue(UaVariant(OpcUa_Int32(-1))));
    }
    std::string field(const char* path, double value)
    {
        std::vector<QlumStagedWrite> writes = staged({7});
        writes[0].fieldPath = path;
        writes[0].value = UaVariant(value);
        return apply(writes);
    }
    [[nodiscard]] double at(const char* path)
    {
        return plant::flat(services->table.value(limits))[path].toDouble();
    }

    const UaNodeId limits = PlantServices::node(7);
};

TEST_F(StagedFields, LeaveTheOtherFieldsAsTheyAreThen)
{
    EXPECT_EQ(field("High", 20), "7: Written\n");
    EXPECT_EQ(at("Low"), 1);
    EXPECT_EQ(at("High"), 20);
    setLimits(5, 20); // somebody else's
    EXPECT_EQ(revert(), "7: The old value is there again\n");
    EXPECT_EQ(at("Low"), 5);
    EXPECT_EQ(at("High"), 2);
    EXPECT_EQ(field("Speed", 1).rfind("7: Not sent. BadNoMatch", 0), 0U) << text;
}

TEST(StagedParts, AreReplacedAtAnyDepth)
{
    UaGenericStructureValue limits(plant::definitions()->structure(plant::limitsId));
    const std::vector<UaVariant> two{plant::encoded(limits), plant::encoded(limits)};
    UaVariant parts;
    ASSERT_EQ(parts.setArray(OpcUaType_ExtensionObject, two), OpcUa_Good);
    UaGenericStructureValue order(plant::definitions()->structure(plant::orderId),
                                  plant::definitions().get());
    ASSERT_TRUE(order.setField(UaString("Parts"), parts).isGood());
    UaVariant whole = plant::encoded(order);
    EXPECT_TRUE(qlumSetFieldOf(whole, "Parts[1].High", UaVariant(4.5), plant::context()).isGood());
    plant::Flat flat = plant::flat(whole);
    EXPECT_EQ(flat["Parts[1].High"].toDouble(), 4.5);
    EXPECT_EQ(flat["Parts[0].High"].toDouble(), 0);
    const UaVariant before = whole;
    EXPECT_TRUE(qlumSetFieldOf(whole, "Parts[2].High", UaVariant(1.0), plant::context()).isBad());
    EXPECT_TRUE(qlumSetFieldOf(whole, "Count", UaVariant(UaString("x")), plant::context()).isBad());
    EXPECT_EQ(whole, before);
}

} // namespace
