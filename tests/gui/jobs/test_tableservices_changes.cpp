#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaelement.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/historyresults.h>
#include <uaclientsdk/querycontext.h>

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

template <>
struct UaElement<OpcUa_QueryDataDescription>
    : UaEncodeableElement<OpcUa_QueryDataDescription, OpcUa_QueryDataDescription_EncodeableType>
{
};

namespace {
using namespace UaClientSdk;

UaDateTime second(int seconds)
{
    return UaDateTime::fromTime_t(1'700'000'000 + seconds);
}

void copy(const UaNodeId& from, OpcUa_NodeId& to)
{
    ASSERT_TRUE(OpcUa_IsGood(from.copyTo(&to)));
}

UaByteString bytes(const char* text)
{
    return UaByteString(static_cast<OpcUa_Int32>(std::string(text).size()),
                        reinterpret_cast<const OpcUa_Byte*>(text));
}

class TableChanges : public testing::Test
{
protected:
    TableChanges()
    {
        NodeTable& table = services.table;
        table.object(plant, "Plant");
        table.object(motor, "Motor", plant, motorType);
        table.variable(speed, "Speed", UaVariant(1.5), motor);
        table.history(speed, {value(0, 10), value(2, 12), value(4, 14)});
    }
    static UaDataValue value(int time, int number)
    {
        return UaDataValue(UaVariant(OpcUa_Int32{number}), UaStatusCode(), second(time));
    }
    std::string namesUnder(const UaNodeId& node)
    {
        BrowseContext context;
        UaByteString point;
        UaReferenceDescriptions references;
        EXPECT_TRUE(services.browse(settings, node, context, point, references).isGood());
        std::string names;
        for (const OpcUa_ReferenceDescription& reference : references)
            names += UaQualifiedName(reference.BrowseName).name().toStdString() + ' ';
        return names;
    }
    UaVariant read(const UaNodeId& node, OpcUa_UInt32 attribute)
    {
        UaReadValueIds nodes(1);
        copy(node, nodes[0].NodeId);
        nodes[0].AttributeId = attribute;
        UaDataValues values;
        EXPECT_TRUE(services.read(settings, 0, OpcUa_TimestampsToReturn_Both, nodes, values).isGood());
        return UaVariant(values[0].Value);
    }
    // A variable with a value and a display name of its own.
    static UaAddNodesItems newVariable(const UaNodeId& parent, const char* name)
    {
        UaAddNodesItems items(1);
        copy(parent, items[0].ParentNodeId.NodeId);
        copy(UaNodeId(47), items[0].ReferenceTypeId);
        copy(UaNodeId(63), items[0].TypeDefinition.NodeId);
        EXPECT_TRUE(OpcUa_IsGood(UaQualifiedName(UaString(name), 2).copyTo(&items[0].BrowseName)));
        items[0].NodeClass = OpcUa_NodeClass_Variable;
        OpcUa_VariableAttributes attributes{};
        attributes.SpecifiedAttributes = OpcUa_NodeAttributesMask_Value |
                                         OpcUa_NodeAttributesMask_DisplayName |
                                         OpcUa_NodeAttributesMask_DataType;
        attributes.ValueRank = 5; // not among the specified ones
        copy(UaNodeId(6), attributes.DataType);
        EXPECT_TRUE(OpcUa_IsGood(UaVariant(OpcUa_Int32{42}).copyTo(&attributes.Value)));
        const UaLocalizedText shown(UaString("en"), UaString("shown"));
        EXPECT_TRUE(OpcUa_IsGood(shown.copyTo(&attributes.DisplayName)));
        UaExtensionObject object;
        EXPECT_TRUE(OpcUa_IsGood(object.setDecoded(OpcUa_VariableAttributes_EncodeableType, &attributes)));
        EXPECT_TRUE(OpcUa_IsGood(object.detach(&items[0].NodeAttributes)));
        OpcUa_VariableAttributes_Clear(&attributes);
        return items;
    }
    OpcUa_StatusCode add(const UaAddNodesItems& items)
    {
        UaAddNodesResults results;
        EXPECT_TRUE(services.addNodes(settings, items, results).isGood());
        added = UaNodeId(results[0].AddedNodeId);
        return results[0].StatusCode;
    }
    std::vector<UaDataValue> history(bool modified = false)
    {
        HistoryReadRawModifiedContext context;
        context.startTime = second(-100);
        context.endTime = second(100);
        context.isReadModified = modified;
        UaHistoryReadValueIds nodes(1);
        copy(speed, nodes[0].NodeId);
        HistoryReadDataResults results;
        EXPECT_TRUE(services.historyReadRawModified(settings, context, nodes, results).isGood());
        modifications = results.at(0).modificationInfos;
        std::vector<UaDataValue> values;
        for (const OpcUa_DataValue& one : results[0].values)
            values.emplace_back(one);
        return values;
    }
    std::vector<OpcUa_StatusCode> update(OpcUa_PerformUpdateType how, std::initializer_list<UaDataValue> with)
    {
        UaUpdateDataDetailsArray details(1);
        copy(speed, details[0].NodeId);
        details[0].PerformInsertReplace = how;
        UaDataValues values(static_cast<OpcUa_UInt32>(with.size()));
        OpcUa_UInt32 i = 0;
        for (const UaDataValue& one : with)
            EXPECT_TRUE(OpcUa_IsGood(one.copyTo(&values[i++])));
        values.detach(&details[0].NoOfUpdateValues, &details[0].UpdateValues);
        EXPECT_TRUE(services.historyUpdateData(settings, details, updated).isGood());
        return operations();
    }
    std::vector<OpcUa_StatusCode> operations()
    {
        const OpcUa_HistoryUpdateResult& result = updated[0];
        return {result.OperationResults, result.OperationResults + result.NoOfOperationResults};
    }

    const UaNodeId plant{1, 2};
    const UaNodeId motor{2, 2};
    const UaNodeId speed{3, 2};
    const UaNodeId motorType{4, 2};
    TableServices services;
    ServiceSettings settings;
    UaNodeId added;
    UaModificationInfos modifications;
    UaHistoryUpdateResults updated;
};

// ---- nodes and references

TEST_F(TableChanges, AddedNodesAreThereForEveryService)
{
    UaAddNodesItems items = newVariable(motor, "Torque");
    ASSERT_EQ(add(items), OpcUa_Good);
    EXPECT_EQ(namesUnder(motor), "Speed Torque ");
    EXPECT_EQ(read(added, OpcUa_Attributes_Value), UaVariant(OpcUa_Int32{42}));
    EXPECT_EQ(read(added, OpcUa_Attributes_DisplayName).toLocalizedText().text(), UaString("shown"));
    EXPECT_EQ(read(added, OpcUa_Attributes_ValueRank), UaVariant(OpcUa_Int32{-1})) << "not specified";

    EXPECT_EQ(add(items), OpcUa_BadBrowseNameDuplicated);
    EXPECT_TRUE(added.isNull());
    items = newVariable(motor, "Power");
    copy(speed, items[0].RequestedNewNodeId.NodeId);
    EXPECT_EQ(add(items), OpcUa_BadNodeIdExists);
    EXPECT_EQ(add(newVariable(UaNodeId(9, 9), "Power")), OpcUa_BadParentNodeIdInvalid);
    items = newVariable(motor, "Power");
    items[0].NodeClass = OpcUa_NodeClass_Object;
    EXPECT_EQ(add(items), OpcUa_BadNodeAttributesInvalid);
    services.table.fail(NodeTable::AddNodes, motor, OpcUa_BadUserAccessDenied);
    EXPECT_EQ(add(newVariable(motor, "Power")), OpcUa_BadUserAccessDenied);
    EXPECT_EQ(namesUnder(motor), "Speed Torque ");
}

TEST_F(TableChanges, DeletedNodesLeaveWhatWasNotToGo)
{
    UaDeleteNodesItems items(2);
    copy(speed, items[0].NodeId);
    copy(UaNodeId(9, 9), items[1].NodeId);
    UaStatusCodeArray results;
    ASSERT_TRUE(services.deleteNodes(settings, items, results).isGood());
    EXPECT_EQ(results[0], OpcUa_Good);
    EXPECT_EQ(results[1], OpcUa_BadNodeIdUnknown);
    EXPECT_EQ(namesUnder(motor), " ") << "a reference to nothing";
    copy(motor, items[0].NodeId);
    items[0].DeleteTargetReferences = true;
    ASSERT_TRUE(services.deleteNodes(settings, items, results).isGood());
    EXPECT_EQ(namesUnder(plant), "");
}

TEST_F(TableChanges, ReferencesGoOneWayOrBoth)
{
    UaAddReferencesItems items(1);
    copy(plant, items[0].SourceNodeId);
    copy(speed, items[0].TargetNodeId.NodeId);
    copy(UaNodeId(35), items[0].ReferenceTypeId);
    items[0].IsForward = true;
    UaStatusCodeArray results;
    ASSERT_TRUE(services.addReferences(settings, items, results).isGood());
    EXPECT_EQ(results[0], OpcUa_Good);
    EXPECT_EQ(namesUnder(plant), "Motor Speed ");
    ASSERT_TRUE(services.addReferences(settings, items, results).isGood());
    EXPECT_EQ(results[0], OpcUa_BadDuplicateReferenceNotAllowed);

    UaDeleteReferencesItems doomed(1);
    copy(speed, doomed[0].SourceNodeId);
    copy(plant, doomed[0].TargetNodeId.NodeId);
    copy(UaNodeId(35), doomed[0].ReferenceTypeId);
    ASSERT_TRUE(services.deleteReferences(settings, doomed, results).isGood());
    EXPECT_EQ(results[0], OpcUa_Good);
    EXPECT_EQ(namesUnder(plant), "Motor Speed ") << "the other direction stays";
    ASSERT_TRUE(services.deleteReferences(settings, doomed, results).isGood());
    EXPECT_EQ(results[0], OpcUa_BadTargetNodeIdInvalid);
    copy(plant, doomed[0].SourceNodeId);
    copy(motor, doomed[0].TargetNodeId.NodeId);
    doomed[0].IsForward = true;
    doomed[0].DeleteBidirectional = true;
    ASSERT_TRUE(services.deleteReferences(settings, doomed, results).isGood());
    EXPECT_EQ(namesUnder(plant), "Speed ");
}

TEST_F(TableChanges, RegisteredIdsStandForTheirNodesUntilGivenBack)
{
    UaNodeIdArray nodes(2);
    copy(speed, nodes[0]);
    copy(UaNodeId(9, 9), nodes[1]);
    UaNodeIdArray registered;
    ASSERT_TRUE(services.registerNodes(settings, nodes, registered).isGood());
    const UaNodeId other(registered[0]);
    EXPECT_NE(other, speed);
    EXPECT_EQ(UaNodeId(registered[1]), UaNodeId(9, 9));
    EXPECT_EQ(read(other, OpcUa_Attributes_Value), UaVariant(1.5));
    services.table.fail(NodeTable::Read, speed, OpcUa_BadNotReadable);
    EXPECT_TRUE(read(other, OpcUa_Attributes_Value).isNull());
    services.table.fail(NodeTable::Read, speed, OpcUa_Good);
    EXPECT_EQ(services.table.registeredNodes(), 1);
    ASSERT_TRUE(services.unregisterNodes(settings, registered).isGood());
    EXPECT_EQ(services.table.registeredNodes(), 0);
    EXPECT_TRUE(read(other, OpcUa_Attributes_Value).isNull());
}

// ---- history

TEST_F(TableChanges, HistoryIsChangedAndTellsWhatWas)
{
    using Statuses = std::vector<OpcUa_StatusCode>;
    services.table.historyIsChangedBy("ada", second(50));
    EXPECT_EQ(update(OpcUa_PerformUpdateType_Insert, {value(1, 11), value(2, 99)}),
              (Statuses{OpcUa_GoodEntryInserted, OpcUa_BadEntryExists}));
    EXPECT_EQ(update(OpcUa_PerformUpdateType_Replace, {value(2, 22), value(3, 33)}),
              (Statuses{OpcUa_GoodEntryReplaced, OpcUa_BadNoEntryExists}));
    EXPECT_EQ(update(OpcUa_PerformUpdateType_Remove, {value(0, 0)}), Statuses{OpcUa_Good});
    EXPECT_EQ(history(), (std::vector<UaDataValue>{value(1, 11), value(2, 22), value(4, 14)}));
    EXPECT_EQ(history(true), (std::vector<UaDataValue>{value(0, 10), value(2, 12)}));
    ASSERT_EQ(modifications.length(), 2u);
    EXPECT_EQ(modifications[0].UpdateType, OpcUa_HistoryUpdateType_Delete);
    EXPECT_EQ(modifications[1].UpdateType, OpcUa_HistoryUpdateType_Replace);
    EXPECT_EQ(UaString(modifications[0].UserName), UaString("ada"));
    EXPECT_EQ(UaDateTime(modifications[0].ModificationTime), second(50));

    UaDeleteRawModifiedDetailsArray ranges(1);
    copy(speed, ranges[0].NodeId);
    ranges[0].StartTime = second(1).value();
    ranges[0].EndTime = second(4).value();
    ASSERT_TRUE(services.historyDeleteRawModified(settings, ranges, updated).isGood());
    EXPECT_EQ(history(), std::vector<UaDataValue>{value(4, 14)}) << "the end does not belong to it";
    ASSERT_TRUE(services.historyDeleteRawModified(settings, ranges, updated).isGood());
    EXPECT_EQ(updated[0].StatusCode, OpcUa_BadNoData);
    ranges[0].StartTime = second(-9).value();
    ranges[0].IsDeleteModified = true;
    ASSERT_TRUE(services.historyDeleteRawModified(settings, ranges, updated).isGood());
    EXPECT_TRUE(history(true).empty());

    UaDeleteAtTimeDetailsArray times(1);
    copy(speed, times[0].NodeId);
    UaDateTimeArray at;
    ASSERT_TRUE(at.append(second(4).value()) && at.append(second(5).value()));
    at.detach(&times[0].NoOfReqTimes, &times[0].ReqTimes);
    ASSERT_TRUE(services.historyDeleteAtTime(settings, times, updated).isGood());
    EXPECT_EQ(operations(), (Statuses{OpcUa_Good, OpcUa_BadNoEntryExists}));
    EXPECT_TRUE(history().empty());
    services.table.fail(NodeTable::HistoryUpdate, speed, OpcUa_BadNotWritable);
    EXPECT_TRUE(update(OpcUa_PerformUpdateType_Update, {value(6, 6)}).empty());
    EXPECT_EQ(updated[0].StatusCode, OpcUa_BadNotWritable);
}

TEST_F(TableChanges, EventsAreInsertedReplacedAndDeletedByTheirIds)
{
    UaUpdateEventDetailsArray details(1);
    const auto update = [&](OpcUa_PerformUpdateType how, const char* id, int time, const char* message) {
        details[0].PerformInsertReplace = how;
        UaVariantArray fields(3);
        EXPECT_TRUE(OpcUa_IsGood(UaVariant(bytes(id)).copyTo(&fields[0])));
        EXPECT_TRUE(OpcUa_IsGood(UaVariant(second(time)).copyTo(&fields[1])));
        EXPECT_TRUE(OpcUa_IsGood(UaVariant(message).copyTo(&fields[2])));
        UaHistoryEventFieldLists lists(1);
        fields.detach(&lists[0].NoOfEventFields, &lists[0].EventFields);
        UaHistoryEventFieldLists before;
        before.attachFrom(&details[0].NoOfEventData, &details[0].EventData);
        lists.detach(&details[0].NoOfEventData, &details[0].EventData);
        EXPECT_TRUE(services.historyUpdateEvents(settings, details, updated).isGood());
        return operations().at(0);
    };
    copy(plant, details[0].NodeId);
    UaSimpleAttributeOperands clauses(3);
    for (OpcUa_UInt32 i = 0; i < 3; ++i) {
        UaQualifiedNameArray path(1);
        const char* const names[] = {"EventId", "Time", "Message"};
        ASSERT_TRUE(OpcUa_IsGood(UaQualifiedName(UaString(names[i]), 0).copyTo(&path[0])));
        path.detach(&clauses[i].NoOfBrowsePath, &clauses[i].BrowsePath);
    }
    HistoryReadEventContext context;
    context.selectClauses = clauses;
    context.startTime = second(0);
    clauses.detach(&details[0].Filter.NoOfSelectClauses, &details[0].Filter.SelectClauses);
    EXPECT_EQ(update(OpcUa_PerformUpdateType_Insert, "b", 2, "late"), OpcUa_GoodEntryInserted);
    EXPECT_EQ(update(OpcUa_PerformUpdateType_Insert, "a", 1, "early"), OpcUa_GoodEntryInserted);
    EXPECT_EQ(update(OpcUa_PerformUpdateType_Insert, "a", 3, "again"), OpcUa_BadEntryExists);
    EXPECT_EQ(update(OpcUa_PerformUpdateType_Replace, "a", 1, "mended"), OpcUa_GoodEntryReplaced);

    UaDeleteEventDetailsArray doomed(1);
    copy(plant, doomed[0].NodeId);
    UaByteStringArray ids(2);
    ASSERT_TRUE(OpcUa_IsGood(bytes("b").copyTo(&ids[0])) && OpcUa_IsGood(bytes("c").copyTo(&ids[1])));
    ids.detach(&doomed[0].NoOfEventIds, &doomed[0].EventIds);
    ASSERT_TRUE(services.historyDeleteEvents(settings, doomed, updated).isGood());
    EXPECT_EQ(operations(), (std::vector<OpcUa_StatusCode>{OpcUa_Good, OpcUa_BadEventIdUnknown}));
    UaHistoryReadValueIds nodes(1);
    copy(plant, nodes[0].NodeId);
    HistoryReadEventResults results;
    ASSERT_TRUE(services.historyReadEvent(settings, context, nodes, results).isGood());
    ASSERT_EQ(results.at(0).events.length(), 1u);
    EXPECT_EQ(UaVariant(results[0].events[0].EventFields[2]), UaVariant("mended"));
}

// ---- queries and calls that are given up

TEST_F(TableChanges, QueriesFindInstancesOfTypesInPages)
{
    const UaNodeId pumpType(5, 2);
    services.table.object(motorType, "MotorType", UaNodeId());
    services.table.object(pumpType, "PumpType", UaNodeId());
    services.table.reference(motorType, UaNodeId(45), pumpType);
    services.table.object(UaNodeId(6, 2), "Pump", plant, pumpType);
    UaNodeTypeDescriptions types(1);
    copy(motorType, types[0].TypeDefinitionNode.NodeId);
    UaArray<OpcUa_QueryDataDescription> wishes(1);
    UaRelativePathElements path(1);
    copy(UaNodeId(47), path[0].ReferenceTypeId);
    ASSERT_TRUE(OpcUa_IsGood(UaQualifiedName(UaString("Speed"), 2).copyTo(&path[0].TargetName)));
    path.detach(&wishes[0].RelativePath.NoOfElements, &wishes[0].RelativePath.Elements);
    wishes[0].AttributeId = OpcUa_Attributes_Value;
    wishes.detach(&types[0].NoOfDataToReturn, &types[0].DataToReturn);
    QueryContext context;
    UaQueryDataSets sets;
    UaByteString point;
    QueryFindings findings;
    ASSERT_TRUE(services.queryFirst(settings, context, types, sets, point, findings).isGood());
    ASSERT_EQ(sets.length(), 1u);
    EXPECT_EQ(UaNodeId(sets[0].NodeId.NodeId), motor);
    EXPECT_EQ(UaVariant(sets[0].Values[0]), UaVariant(1.5));
    EXPECT_TRUE(point.isNull());

    types[0].IncludeSubTypes = true;
    context.maxDataSetsToReturn = 1;
    ASSERT_TRUE(services.queryFirst(settings, context, types, sets, point, findings).isGood());
    EXPECT_EQ(sets.length(), 1u);
    ASSERT_FALSE(point.isNull());
    ASSERT_TRUE(services.queryNext(settings, false, point, sets).isGood());
    ASSERT_EQ(sets.length(), 1u);
    EXPECT_EQ(UaNodeId(sets[0].TypeDefinitionNode.NodeId), pumpType);
    EXPECT_TRUE(UaVariant(sets[0].Values[0]).isNull()) << "a pump has no speed";
    EXPECT_TRUE(point.isNull());
    ASSERT_TRUE(services.queryFirst(settings, context, types, sets, point, findings).isGood());
    ASSERT_TRUE(services.queryNext(settings, true, point, sets).isGood());
    EXPECT_EQ(services.table.openContinuationPoints(), 0);
    services.table.fail(NodeTable::Query, motorType, OpcUa_BadNotTypeDefinition);
    ASSERT_TRUE(services.queryFirst(settings, context, types, sets, point, findings).isGood());
    EXPECT_EQ(findings.parsingResults[0].StatusCode, OpcUa_BadNotTypeDefinition);
    EXPECT_TRUE(sets.isEmpty());
}

TEST_F(TableChanges, ACallUnderWayIsCancelledByItsHandle)
{
    services.delay(NodeTable::DeleteNodes, 300);
    services.clock.hold();
    UaStatus ended;
    std::thread caller([&] {
        ServiceSettings own;
        own.requestHandle = 7;
        UaDeleteNodesItems items(1);
        EXPECT_TRUE(OpcUa_IsGood(speed.copyTo(&items[0].NodeId)));
        UaStatusCodeArray results;
        ended = services.deleteNodes(own, items, results);
    });
    while (services.clock.waiting() == 0)
        std::this_thread::yield();
    OpcUa_UInt32 count = 9;
    EXPECT_TRUE(services.cancel(settings, 8, count).isGood());
    EXPECT_EQ(count, 0u);
    EXPECT_TRUE(services.cancel(settings, 7, count).isGood());
    EXPECT_EQ(count, 1u);
    caller.join();
    EXPECT_EQ(ended.statusCode(), OpcUa_BadRequestCancelledByRequest);
    EXPECT_EQ(services.table.value(speed), UaVariant(1.5)) << "nothing was deleted";
    services.disconnect();
    EXPECT_EQ(services.cancel(settings, 7, count).statusCode(), OpcUa_BadConnectionClosed);
}
} // namespace
