// What changes the table through the services, and queries.
#include <tests/support/tableservices.h>

#include <opcua/opcua_statuscodes.h>
#include <uaclientsdk/querycontext.h>

#include <gtest/gtest.h>

#include <utility>

using namespace UaClientSdk;

template <typename Items, typename Results, typename Answer>
UaStatus TableServices::answerCall(Service service, const Settings& settings, const Items& items,
                                   Results& results, Answer answer)
{
    results.clear();
    const UaStatus status = begin(service, settings);
    if (status.isBad())
        return status;
    EXPECT_TRUE(results.create(items.length()));
    for (OpcUa_UInt32 i = 0; i < items.length(); ++i)
        answer(items[i], results[i]);
    return status;
}

// ---- nodes and references

UaStatus TableServices::addNodes(Settings& settings, const UaAddNodesItems& nodes, UaAddNodesResults& results)
{
    return answerCall(
        Service::AddNodes, settings, nodes, results,
        [this](const OpcUa_AddNodesItem& item, OpcUa_AddNodesResult& result) { table.add(item, result); });
}

UaStatus TableServices::addReferences(Settings& settings, const UaAddReferencesItems& references,
                                      UaStatusCodeArray& results)
{
    return answerCall(
        Service::AddReferences, settings, references, results,
        [this](const OpcUa_AddReferencesItem& item, OpcUa_StatusCode& result) { result = table.add(item); });
}

UaStatus TableServices::deleteNodes(Settings& settings, const UaDeleteNodesItems& nodes,
                                    UaStatusCodeArray& results)
{
    return answerCall(
        Service::DeleteNodes, settings, nodes, results,
        [this](const OpcUa_DeleteNodesItem& item, OpcUa_StatusCode& result) { result = table.remove(item); });
}

UaStatus TableServices::deleteReferences(Settings& settings, const UaDeleteReferencesItems& references,
                                         UaStatusCodeArray& results)
{
    return answerCall(
        Service::DeleteReferences, settings, references, results,
        [this](const OpcUa_DeleteReferencesItem& item, OpcUa_StatusCode& result) {
            result = table.remove(item);
        });
}

UaStatus TableServices::registerNodes(Settings& settings, const UaNodeIdArray& nodes,
                                      UaNodeIdArray& registeredNodes)
{
    return answerCall(
        Service::RegisterNodes, settings, nodes, registeredNodes,
        [this](const OpcUa_NodeId& node, OpcUa_NodeId& registered) {
            EXPECT_TRUE(OpcUa_IsGood(table.registerNode(UaNodeId(node)).copyTo(&registered)));
        });
}

UaStatus TableServices::unregisterNodes(Settings& settings, const UaNodeIdArray& nodes)
{
    const UaStatus status = begin(Service::RegisterNodes, settings);
    if (status.isGood())
        for (const OpcUa_NodeId& node : nodes)
            table.unregisterNode(UaNodeId(node));
    return status;
}

// ---- history

template <typename Details>
UaStatus TableServices::updateHistory(const Settings& settings, const Details& details,
                                      UaHistoryUpdateResults& results)
{
    return answerCall(
        Service::HistoryUpdate, settings, details, results,
        [this](const auto& one, OpcUa_HistoryUpdateResult& result) { table.updateHistory(one, result); });
}

UaStatus TableServices::historyUpdateData(Settings& settings, const UaUpdateDataDetailsArray& details,
                                          UaHistoryUpdateResults& results)
{
    return updateHistory(settings, details, results);
}

UaStatus TableServices::historyUpdateEvents(Settings& settings, const UaUpdateEventDetailsArray& details,
                                            UaHistoryUpdateResults& results)
{
    return updateHistory(settings, details, results);
}

UaStatus TableServices::historyDeleteRawModified(Settings& settings,
                                                 const UaDeleteRawModifiedDetailsArray& details,
                                                 UaHistoryUpdateResults& results)
{
    return updateHistory(settings, details, results);
}

UaStatus TableServices::historyDeleteAtTime(Settings& settings, const UaDeleteAtTimeDetailsArray& details,
                                            UaHistoryUpdateResults& results)
{
    return updateHistory(settings, details, results);
}

UaStatus TableServices::historyDeleteEvents(Settings& settings, const UaDeleteEventDetailsArray& details,
                                            UaHistoryUpdateResults& results)
{
    return updateHistory(settings, details, results);
}

// ---- queries

UaStatus TableServices::queryFirst(Settings& settings, const QueryContext& context,
                                   const UaNodeTypeDescriptions& nodeTypes, UaQueryDataSets& dataSets,
                                   UaByteString& continuationPoint, QueryFindings& findings)
{
    dataSets.clear();
    continuationPoint.clear();
    findings = QueryFindings();
    const UaStatus status = begin(Service::Query, settings);
    if (status.isBad())
        return status;
    OpcUa_QueryFirstRequest request{}; // borrows
    request.NoOfNodeTypes = static_cast<OpcUa_Int32>(nodeTypes.length());
    request.NodeTypes = const_cast<OpcUa_NodeTypeDescription*>(nodeTypes.rawData());
    request.Filter.NoOfElements = static_cast<OpcUa_Int32>(context.filter.length());
    request.Filter.Elements = const_cast<OpcUa_ContentFilterElement*>(context.filter.rawData());
    request.MaxDataSetsToReturn = context.maxDataSetsToReturn;
    OpcUa_QueryFirstResponse response;
    OpcUa_QueryFirstResponse_Initialize(&response);
    const UaStatus answered(table.query(request, response));
    dataSets.attachFrom(&response.NoOfQueryDataSets, &response.QueryDataSets);
    continuationPoint.attach(&response.ContinuationPoint);
    findings.parsingResults.attachFrom(&response.NoOfParsingResults, &response.ParsingResults);
    return answered;
}

UaStatus TableServices::queryNext(Settings& settings, bool release, UaByteString& continuationPoint,
                                  UaQueryDataSets& dataSets)
{
    dataSets.clear();
    const UaByteString point = std::exchange(continuationPoint, UaByteString());
    const UaStatus status = begin(Service::Query, settings);
    if (status.isBad())
        return status;
    OpcUa_QueryNextRequest request{}; // borrows
    request.ReleaseContinuationPoint = release;
    request.ContinuationPoint = *point.get();
    OpcUa_QueryNextResponse response;
    OpcUa_QueryNextResponse_Initialize(&response);
    const UaStatus answered(table.queryNext(request, response));
    dataSets.attachFrom(&response.NoOfQueryDataSets, &response.QueryDataSets);
    continuationPoint.attach(&response.RevisedContinuationPoint);
    return answered;
}

UaStatus TableServices::cancel(Settings& settings, OpcUa_UInt32 requestHandle, OpcUa_UInt32& cancelCount)
{
    cancelCount = 0;
    const UaStatus status = begin(Service::Cancel, settings);
    if (status.isBad())
        return status;
    {
        const std::lock_guard lock(m_mutex);
        for (Waiting& call : m_waiting)
            if (call.requestHandle == requestHandle && !call.isCancelled.exchange(true))
                ++cancelCount;
    }
    clock.wake();
    return status;
}
