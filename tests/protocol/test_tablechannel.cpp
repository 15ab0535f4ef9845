#include <bench/tableanswers.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/support/nodetable.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/historyresults.h>
#include <uaclientsdk/methodcall.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <gtest/gtest.h>

#include <string>

namespace {
using namespace UaClientSdk;
using namespace opcua::bench;

class Quiet : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

const UaNodeId plant(1, 2);
const UaNodeId speed(2, 2);
const UaNodeId twice(3, 2);

// What a session changes is there for its later calls.
void changeTheWorld(UaSession& session)
{
    ServiceSettings settings;
    UaDiagnosticInfos diagnostics;
    UaHistoryReadValueIds histories(1);
    ASSERT_TRUE(OpcUa_IsGood(speed.copyTo(&histories[0].NodeId)));
    HistoryReadRawModifiedContext raw;
    raw.startTime = UaDateTime::fromTime_t(1'600'000'000);
    HistoryReadDataResults results;
    UaUpdateDataDetailsArray update(1);
    ASSERT_TRUE(OpcUa_IsGood(speed.copyTo(&update[0].NodeId)));
    update[0].PerformInsertReplace = OpcUa_PerformUpdateType_Insert;
    UaDataValues inserted(1);
    inserted[0].SourceTimestamp = UaDateTime::fromTime_t(1'700'000'001).value();
    inserted.detach(&update[0].NoOfUpdateValues, &update[0].UpdateValues);
    UaHistoryUpdateResults updated;
    ASSERT_TRUE(session.historyUpdateData(settings, update, updated, diagnostics).isGood());
    ASSERT_EQ(updated[0].NoOfOperationResults, 1);
    EXPECT_EQ(updated[0].OperationResults[0], OpcUa_GoodEntryInserted);
    ASSERT_TRUE(session.historyReadRawModified(settings, raw, histories, results, diagnostics).isGood());
    EXPECT_EQ(results.at(0).values.length(), 2u);

    UaNodeIdArray registered;
    UaNodeIdArray wanted(1);
    ASSERT_TRUE(OpcUa_IsGood(speed.copyTo(&wanted[0])));
    ASSERT_TRUE(session.registerNodes(settings, wanted, registered).isGood());
    UaDeleteNodesItems doomed(1);
    ASSERT_TRUE(OpcUa_IsGood(UaNodeId(registered[0]).copyTo(&doomed[0].NodeId)));
    UaStatusCodeArray deleted;
    ASSERT_TRUE(session.deleteNodes(settings, doomed, deleted, diagnostics).isGood());
    EXPECT_EQ(deleted[0], OpcUa_Good);
    UaReadValueIds nodes(1);
    ASSERT_TRUE(OpcUa_IsGood(speed.copyTo(&nodes[0].NodeId)));
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    UaDataValues values;
    ASSERT_TRUE(
        session.read(settings, 0, OpcUa_TimestampsToReturn_Both, nodes, values, diagnostics).isGood());
    EXPECT_EQ(values[0].StatusCode, OpcUa_BadNodeIdUnknown);

    UaNodeTypeDescriptions types(1);
    ASSERT_TRUE(OpcUa_IsGood(UaNodeId(58).copyTo(&types[0].TypeDefinitionNode.NodeId)));
    UaByteString point;
    UaQueryDataSets found;
    QueryFindings findings;
    ASSERT_TRUE(session.queryFirst(settings, {}, types, found, point, findings).isGood());
    ASSERT_EQ(found.length(), 1u);
    EXPECT_EQ(UaNodeId(found[0].NodeId.NodeId), plant);
}

TEST(TableChannel, ASessionFindsTheWorldOfTheTable)
{
    NodeTable table;
    table.object(plant, "Plant");
    table.variable(speed, "Speed", UaVariant(1.5), plant);
    table.method(
        twice, "Twice", plant,
        {{{"x", UaNodeId(6)}}, {{"y", UaNodeId(6)}}, [](const UaVariantArray& in, UaVariantArray& out) {
             return UaVariant(2 * UaVariant(in[0]).toInt32()).copyTo(&out[0]);
         }});
    const UaDataValue past(UaVariant(0.5), UaStatusCode(), UaDateTime::fromTime_t(1'700'000'000));
    table.history(speed, {past});
    const Identity server = makeIdentity("server");
    const Identity client = makeIdentity("client");
    const Responder responder(server, client, opcua::Bytes(32, 5), answersOf(table)); // before any thread
    ASSERT_EQ(UaPlatformLayer::init(), 0);
    {
        Quiet callback;
        UaSession session;
        ASSERT_TRUE(session
                        .connect(UaString(responder.url(false).c_str()), SessionConnectInfo(),
                                 SessionSecurityInfo(), &callback)
                        .isGood());
        ServiceSettings settings;
        UaReadValueIds nodes(2);
        for (OpcUa_UInt32 i = 0; i < 2; ++i)
            nodes[i].AttributeId = OpcUa_Attributes_Value;
        ASSERT_TRUE(OpcUa_IsGood(speed.copyTo(&nodes[0].NodeId)));
        UaDataValues values;
        UaDiagnosticInfos diagnostics;
        ASSERT_TRUE(
            session.read(settings, 0, OpcUa_TimestampsToReturn_Both, nodes, values, diagnostics).isGood());
        EXPECT_EQ(UaVariant(values[0].Value), UaVariant(1.5));
        EXPECT_EQ(values[1].StatusCode, OpcUa_BadNodeIdUnknown);

        BrowseContext context;
        context.maxReferencesToReturn = 1;
        UaByteString point;
        UaReferenceDescriptions references;
        ASSERT_TRUE(session.browse(settings, plant, context, point, references).isGood());
        EXPECT_EQ(references.length(), 1u);
        ASSERT_TRUE(session.browseNext(settings, false, point, references).isGood());
        ASSERT_EQ(references.length(), 1u);
        EXPECT_EQ(UaNodeId(references[0].NodeId.NodeId), twice);
        EXPECT_TRUE(point.isNull());

        CallIn in{plant, twice, UaVariantArray(1)};
        ASSERT_TRUE(OpcUa_IsGood(UaVariant(OpcUa_Int32{21}).copyTo(&in.inputArguments[0])));
        CallOut out;
        ASSERT_TRUE(session.call(settings, in, out).isGood());
        EXPECT_EQ(UaVariant(out.outputArguments[0]).toInt32(), 42);

        UaHistoryReadValueIds histories(1);
        ASSERT_TRUE(OpcUa_IsGood(speed.copyTo(&histories[0].NodeId)));
        HistoryReadRawModifiedContext raw;
        raw.startTime = UaDateTime::fromTime_t(1'600'000'000);
        HistoryReadDataResults results;
        ASSERT_TRUE(session.historyReadRawModified(settings, raw, histories, results, diagnostics).isGood());
        ASSERT_EQ(results.at(0).values.length(), 1u);
        EXPECT_EQ(UaDataValue(results[0].values[0]), past);
        changeTheWorld(session);
    }
    UaPlatformLayer::cleanup();
}
} // namespace
