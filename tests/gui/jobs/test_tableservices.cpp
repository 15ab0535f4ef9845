#include <app/api/qlumcalltimeout.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/historyresults.h>
#include <uaclientsdk/methodcall.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {
using namespace UaClientSdk;
using Settings = ServiceSettings;

UaDateTime at(int seconds)
{
    return UaDateTime::fromTime_t(1'700'000'000 + seconds);
}

class TableSession : public testing::Test
{
protected:
    // a world in ten lines
    TableSession()
    {
        NodeTable& table = services.table;
        table.object(plant, "Plant");
        table.variable(speed, "Speed", UaVariant(1.5), plant);
        table.method(start, "Start", plant,
                     {{{"rpm", UaNodeId(6)}},
                      {{"was", UaNodeId(6)}},
                      [&](const UaVariantArray& in, UaVariantArray& out) {
                          table.setValue(speed, UaVariant(in[0]));
                          return UaVariant(OpcUa_Int32{7}).copyTo(&out[0]);
                      }});
        for (int i = 0; i < 5; ++i)
            values.emplace_back(UaVariant(OpcUa_Int32{i}), UaStatusCode(), at(i));
        table.history(speed, values);
        table.processed(speed, average, {UaDataValue(UaVariant(2.0), UaStatusCode(), at(0))});
        table.event(plant, at(1), {{"Message", UaVariant("early")}});
        table.event(plant, at(3),
                    {{"Message", UaVariant("late")}, {"Severity", UaVariant(OpcUa_UInt16{700})}});
    }
    UaDataValue readOne(const UaNodeId& id, OpcUa_UInt32 attribute = OpcUa_Attributes_Value)
    {
        UaReadValueIds nodes(1);
        EXPECT_TRUE(OpcUa_IsGood(id.copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = attribute;
        UaDataValues results;
        status = services.read(settings, 0, OpcUa_TimestampsToReturn_Both, nodes, results);
        return status.isGood() ? UaDataValue(results[0]) : UaDataValue();
    }
    std::string browse(BrowseContext context)
    {
        UaByteString point;
        UaReferenceDescriptions references;
        std::string names;
        status = services.browse(settings, plant, context, point, references);
        while (status.isGood()) {
            for (const OpcUa_ReferenceDescription& reference : references)
                names += UaQualifiedName(reference.BrowseName).name().toStdString() + ' ';
            if (point.isNull())
                break;
            names += "| ";
            status = services.browseNext(settings, false, point, references);
        }
        return names;
    }
    UaHistoryReadValueIds historyOf(const UaNodeId& id)
    {
        UaHistoryReadValueIds nodes(1);
        EXPECT_TRUE(OpcUa_IsGood(id.copyTo(&nodes[0].NodeId)));
        return nodes;
    }

    const UaNodeId plant{1, 2};
    const UaNodeId speed{2, 2};
    const UaNodeId start{3, 2};
    const UaNodeId average{2342};
    std::vector<UaDataValue> values;
    TableServices services;
    Settings settings;
    UaStatus status;
};

TEST_F(TableSession, AttributesAreReadAndWrittenByNode)
{
    EXPECT_EQ(readOne(speed).value(), UaVariant(1.5));
    EXPECT_EQ(readOne(speed, OpcUa_Attributes_DataType).value(), UaVariant(UaNodeId(11)));
    EXPECT_EQ(readOne(plant).statusCode(), UaStatusCode(OpcUa_BadAttributeIdInvalid));
    EXPECT_EQ(readOne(UaNodeId(9, 9)).statusCode(), UaStatusCode(OpcUa_BadNodeIdUnknown));
    services.table.fail(NodeTable::Read, speed, OpcUa_BadNotReadable);
    EXPECT_EQ(readOne(speed).statusCode(), UaStatusCode(OpcUa_BadNotReadable));
    UaWriteValues writes(1);
    ASSERT_TRUE(OpcUa_IsGood(speed.copyTo(&writes[0].NodeId)));
    writes[0].AttributeId = OpcUa_Attributes_Value;
    ASSERT_TRUE(OpcUa_IsGood(UaVariant(2.5).copyTo(&writes[0].Value.Value)));
    UaStatusCodeArray results;
    ASSERT_TRUE(services.write(settings, writes, results).isGood());
    EXPECT_EQ(results[0], OpcUa_Good);
    EXPECT_EQ(services.table.value(speed), UaVariant(2.5));
}

TEST_F(TableSession, BrowsesInPagesAndByType)
{
    BrowseContext context;
    context.maxReferencesToReturn = 1;
    EXPECT_EQ(browse(context), "Speed | Start ");
    EXPECT_EQ(services.table.openContinuationPoints(), 0);
    context.maxReferencesToReturn = 0;
    context.nodeClassMask = OpcUa_NodeClass_Method;
    EXPECT_EQ(browse(context), "Start ");
    context.nodeClassMask = 0;
    context.referenceTypeId = UaNodeId(46);
    EXPECT_EQ(browse(context), "") << "no properties";
    context.referenceTypeId = UaNodeId(33);
    EXPECT_EQ(browse(context), "Speed Start ") << "subtypes";
    context.includeSubtypes = false;
    EXPECT_EQ(browse(context), "");
    UaByteString foreign(4, reinterpret_cast<const OpcUa_Byte*>("none"));
    UaReferenceDescriptions references;
    EXPECT_EQ(services.browseNext(settings, false, foreign, references).statusCode(),
              OpcUa_BadContinuationPointInvalid);
}

TEST_F(TableSession, MethodsTellTheirArgumentsAndRun)
{
    UaArguments inputs;
    UaArguments outputs;
    ASSERT_TRUE(services.getMethodArguments(settings, start, inputs, outputs).isGood());
    ASSERT_EQ(inputs.length(), 1u);
    ASSERT_EQ(outputs.length(), 1u);
    EXPECT_EQ(UaString(inputs[0].Name).toStdString(), "rpm");
    CallIn in{plant, start, UaVariantArray(1)};
    ASSERT_TRUE(OpcUa_IsGood(UaVariant(OpcUa_Int32{900}).copyTo(&in.inputArguments[0])));
    CallOut out;
    ASSERT_TRUE(services.call(settings, in, out).isGood());
    EXPECT_TRUE(out.callResult.isGood());
    EXPECT_EQ(UaVariant(out.outputArguments[0]).toInt32(), 7);
    EXPECT_EQ(services.table.value(speed).toInt32(), 900);
    in.inputArguments.clear();
    ASSERT_TRUE(services.call(settings, in, out).isGood());
    EXPECT_EQ(out.callResult.statusCode(), OpcUa_BadArgumentsMissing);
}

TEST_F(TableSession, HistoryComesInPagesForwardsAndBackwards)
{
    HistoryReadRawModifiedContext context;
    context.startTime = at(1);
    context.endTime = at(4);
    context.numValuesPerNode = 3;
    HistoryReadDataResults results;
    ASSERT_TRUE(services.historyReadRawModified(settings, context, historyOf(speed), results).isGood());
    ASSERT_EQ(results.at(0).values.length(), 3u);
    EXPECT_EQ(UaDataValue(results[0].values[0]), values[1]);
    context.continuationPoint = results[0].continuationPoint;
    EXPECT_FALSE(context.continuationPoint.isNull());
    ASSERT_TRUE(services.historyReadRawModified(settings, context, historyOf(speed), results).isGood());
    ASSERT_EQ(results.at(0).values.length(), 1u);
    EXPECT_EQ(UaDataValue(results[0].values[0]), values[4]);
    EXPECT_TRUE(results[0].continuationPoint.isNull());

    context = {};
    context.startTime = at(9);
    context.endTime = at(3);
    ASSERT_TRUE(services.historyReadRawModified(settings, context, historyOf(speed), results).isGood());
    ASSERT_EQ(results.at(0).values.length(), 2u);
    EXPECT_EQ(UaDataValue(results[0].values[0]), values[4]);
    HistoryReadAtTimeContext times;
    ASSERT_TRUE(times.requestedTimes.append(at(2).value()) && times.requestedTimes.append(at(7).value()));
    ASSERT_TRUE(services.historyReadAtTime(settings, times, historyOf(speed), results).isGood());
    EXPECT_EQ(UaDataValue(results.at(0).values[0]), values[2]);
    EXPECT_EQ(results[0].values[1].StatusCode, OpcUa_BadNoData);
    HistoryReadProcessedContext processed;
    ASSERT_TRUE(processed.aggregateTypes.create(1) &&
                OpcUa_IsGood(average.copyTo(&processed.aggregateTypes[0])));
    ASSERT_TRUE(services.historyReadProcessed(settings, processed, historyOf(speed), results).isGood());
    EXPECT_EQ(UaVariant(results.at(0).values[0].Value), UaVariant(2.0));
}

TEST_F(TableSession, EventsHaveTheFieldsThatWereAskedFor)
{
    HistoryReadEventContext context;
    context.startTime = at(2);
    ASSERT_TRUE(context.selectClauses.create(2));
    for (OpcUa_UInt32 i = 0; i < 2; ++i) {
        OpcUa_SimpleAttributeOperand& clause = context.selectClauses[i];
        UaQualifiedNameArray path(1);
        ASSERT_TRUE(
            OpcUa_IsGood(UaQualifiedName(UaString(i == 0 ? "Severity" : "Message"), 0).copyTo(&path[0])));
        path.detach(&clause.NoOfBrowsePath, &clause.BrowsePath);
    }
    HistoryReadEventResults results;
    ASSERT_TRUE(services.historyReadEvent(settings, context, historyOf(plant), results).isGood());
    ASSERT_EQ(results.at(0).events.length(), 1u);
    ASSERT_EQ(results[0].events[0].NoOfEventFields, 2);
    EXPECT_EQ(UaVariant(results[0].events[0].EventFields[0]), UaVariant(OpcUa_UInt16{700}));
    EXPECT_EQ(UaVariant(results[0].events[0].EventFields[1]), UaVariant("late"));
}

TEST_F(TableSession, TimePassesAsTheTestSays)
{
    settings.purpose = UaString("looking");
    services.delay(NodeTable::Read, 300);
    EXPECT_EQ(readOne(speed).value(), UaVariant(1.5));
    EXPECT_EQ(services.clock.now(), 300);
    EXPECT_EQ(services.lastPurpose(), "looking");
    settings.callTimeout = 200;
    readOne(speed);
    EXPECT_EQ(status.statusCode(), OpcUa_BadTimeout);
    EXPECT_EQ(services.clock.now(), 500);
    services.failCalls(NodeTable::Browse, OpcUa_BadTooManyOperations);
    browse({});
    EXPECT_EQ(status.statusCode(), OpcUa_BadTooManyOperations);
}

TEST_F(TableSession, ACallUnderWayEndsWithItsSession)
{
    services.delay(NodeTable::Read, 300);
    services.clock.hold();
    std::thread reader([this] { readOne(speed); });
    while (services.clock.waiting() == 0)
        std::this_thread::yield();
    services.disconnect();
    reader.join();
    EXPECT_EQ(status.statusCode(), OpcUa_BadConnectionClosed);
    EXPECT_FALSE(services.isConnected());
    readOne(speed);
    EXPECT_EQ(status.statusCode(), OpcUa_BadConnectionClosed);
    EXPECT_EQ(services.calls(NodeTable::Read), 2);
}
} // namespace
