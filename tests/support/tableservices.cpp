#include <tests/support/tableservices.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/historyresults.h>
#include <uaclientsdk/methodcall.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {
using namespace UaClientSdk;

void copied(OpcUa_StatusCode status)
{
    EXPECT_TRUE(OpcUa_IsGood(status));
}

// One answer for each element of the request.
template <typename Elements, typename Results, typename Answer>
void answerEach(const Elements& elements, Results& results, Answer answer)
{
    EXPECT_TRUE(results.create(elements.length()));
    for (OpcUa_UInt32 i = 0; i < elements.length(); ++i)
        answer(i, elements[i], results[i]);
}

void takeReferences(OpcUa_BrowseResult& result, UaByteString& continuationPoint,
                    UaReferenceDescriptions& references)
{
    continuationPoint = UaByteString();
    continuationPoint.attach(&result.ContinuationPoint);
    references.attachFrom(&result.NoOfReferences, &result.References);
}
} // namespace

// ---- rules

void TableServices::delay(Service service, std::int64_t milliseconds)
{
    const std::lock_guard lock(m_mutex);
    m_rules[service].delay = milliseconds;
}

void TableServices::failCalls(Service service, OpcUa_StatusCode status)
{
    const std::lock_guard lock(m_mutex);
    m_rules[service].status = status;
}

void TableServices::disconnect()
{
    {
        const std::lock_guard lock(m_mutex);
        m_connected = false;
    }
    clock.interrupt();
}

bool TableServices::isConnected() const
{
    const std::lock_guard lock(m_mutex);
    return m_connected;
}

int TableServices::calls(Service service) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_rules.find(service);
    return found == m_rules.end() ? 0 : found->second.calls;
}

std::string TableServices::lastPurpose() const
{
    const std::lock_guard lock(m_mutex);
    return m_lastPurpose;
}

UaStatus TableServices::begin(Service service, const Settings& settings)
{
    Rule rule;
    {
        const std::lock_guard lock(m_mutex);
        ++m_rules[service].calls;
        m_lastPurpose = settings.purpose.toStdString();
        if (!m_connected)
            return UaStatus(OpcUa_BadConnectionClosed);
        rule = m_rules[service];
    }
    const UaStatus waited = rule.delay > 0 ? waitFor(rule.delay, settings) : UaStatus();
    return waited.isGood() ? UaStatus(rule.status) : waited;
}

UaStatus TableServices::waitFor(std::int64_t delay, const Settings& settings)
{
    std::list<Waiting>::iterator own;
    {
        const std::lock_guard lock(m_mutex);
        own = m_waiting.emplace(m_waiting.end());
        own->requestHandle = settings.requestHandle;
    }
    const bool isDone = clock.wait(std::min<std::int64_t>(delay, settings.callTimeout), &own->isCancelled);
    const std::lock_guard lock(m_mutex);
    const bool isCancelled = own->isCancelled;
    m_waiting.erase(own);
    if (!isDone)
        return UaStatus(isCancelled && m_connected ? OpcUa_BadRequestCancelledByRequest
                                                   : OpcUa_BadConnectionClosed);
    return UaStatus(delay > settings.callTimeout ? OpcUa_BadTimeout : OpcUa_Good);
}

// ---- attributes and methods

UaStatus TableServices::read(Settings& settings, double, OpcUa_TimestampsToReturn,
                             const UaReadValueIds& nodes, UaDataValues& values)
{
    values.clear();
    const UaStatus status = begin(Service::Read, settings);
    if (status.isGood())
        answerEach(nodes, values,
                   [this](OpcUa_UInt32, const OpcUa_ReadValueId& node, OpcUa_DataValue& value) {
                       table.read(node, value);
                   });
    return status;
}

UaStatus TableServices::write(Settings& settings, const UaWriteValues& nodes, UaStatusCodeArray& results)
{
    results.clear();
    const UaStatus status = begin(Service::Write, settings);
    if (status.isGood())
        answerEach(nodes, results,
                   [this](OpcUa_UInt32, const OpcUa_WriteValue& value, OpcUa_StatusCode& result) {
                       result = table.write(value);
                   });
    return status;
}

UaStatus TableServices::callList(Settings& settings, const UaCallMethodRequests& requests,
                                 UaCallMethodResults& results)
{
    results.clear();
    const UaStatus status = begin(Service::Call, settings);
    if (status.isGood())
        answerEach(requests, results,
                   [this](OpcUa_UInt32, const OpcUa_CallMethodRequest& request,
                          OpcUa_CallMethodResult& result) { table.call(request, result); });
    return status;
}

UaStatus TableServices::call(Settings& settings, const CallIn& callIn, CallOut& callOut)
{
    UaCallMethodRequests requests(1);
    copied(callIn.objectId.copyTo(&requests[0].ObjectId));
    copied(callIn.methodId.copyTo(&requests[0].MethodId));
    EXPECT_TRUE(callIn.inputArguments.copyTo(&requests[0].NoOfInputArguments, &requests[0].InputArguments));
    UaCallMethodResults results;
    const UaStatus status = callList(settings, requests, results);
    if (!status.isGood())
        return status;
    OpcUa_CallMethodResult& result = results[0];
    callOut.callResult = UaStatus(result.StatusCode);
    callOut.inputArgumentResults.attachFrom(&result.NoOfInputArgumentResults, &result.InputArgumentResults);
    callOut.outputArguments.attachFrom(&result.NoOfOutputArguments, &result.OutputArguments);
    return status;
}

UaArguments TableServices::argumentsOf(const UaNodeId& methodId, const char* name) const
{
    const std::string text = methodId.toXmlString().toStdString() + '.' + name;
    const UaVariant value = table.value(UaNodeId(UaString(text.c_str()), methodId.namespaceIndex()));
    UaExtensionObjectArray objects;
    UaArguments arguments;
    if (!value.toExtensionObjectArray(objects))
        return arguments;
    for (const OpcUa_ExtensionObject& object : objects) {
        const UaExtensionObject holder(object);
        const void* argument = holder.decoded(OpcUa_Argument_EncodeableType);
        EXPECT_TRUE(argument && arguments.append(*static_cast<const OpcUa_Argument*>(argument)));
    }
    return arguments;
}

UaStatus TableServices::getMethodArguments(Settings& settings, const UaNodeId& methodId,
                                           UaArguments& inputArguments, UaArguments& outputArguments)
{
    const UaStatus status = begin(Service::Read, settings);
    if (status.isGood()) {
        inputArguments = argumentsOf(methodId, "InputArguments");
        outputArguments = argumentsOf(methodId, "OutputArguments");
    }
    return status;
}

// ---- references

UaStatus TableServices::browse(Settings& settings, const UaNodeId& node, const BrowseContext& context,
                               UaByteString& continuationPoint, UaReferenceDescriptions& references)
{
    UaBrowseDescriptions nodes(1);
    copied(node.copyTo(&nodes[0].NodeId));
    nodes[0].BrowseDirection = context.browseDirection;
    copied(context.referenceTypeId.copyTo(&nodes[0].ReferenceTypeId));
    nodes[0].IncludeSubtypes = context.includeSubtypes;
    nodes[0].NodeClassMask = context.nodeClassMask;
    UaBrowseResults results;
    const UaStatus status =
        browseList(settings, context.viewId, context.maxReferencesToReturn, nodes, results);
    if (!status.isGood())
        return status;
    takeReferences(results[0], continuationPoint, references);
    return UaStatus(results[0].StatusCode);
}

UaStatus TableServices::browseNext(Settings& settings, bool release, UaByteString& continuationPoint,
                                   UaReferenceDescriptions& references)
{
    UaByteStringArray points(1);
    copied(continuationPoint.copyTo(&points[0]));
    UaBrowseResults results;
    const UaStatus status = browseListNext(settings, release, points, results);
    if (!status.isGood())
        return status;
    takeReferences(results[0], continuationPoint, references);
    return UaStatus(results[0].StatusCode);
}

UaStatus TableServices::browseList(Settings& settings, const UaNodeId&, OpcUa_UInt32 maximumReferences,
                                   const UaBrowseDescriptions& nodes, UaBrowseResults& results)
{
    results.clear();
    const UaStatus status = begin(Service::Browse, settings);
    if (status.isGood())
        answerEach(nodes, results,
                   [&](OpcUa_UInt32, const OpcUa_BrowseDescription& node, OpcUa_BrowseResult& result) {
                       table.browse(node, maximumReferences, result);
                   });
    return status;
}

UaStatus TableServices::browseListNext(Settings& settings, bool release, const UaByteStringArray& points,
                                       UaBrowseResults& results)
{
    results.clear();
    const UaStatus status = begin(Service::Browse, settings);
    if (status.isGood())
        answerEach(points, results,
                   [&](OpcUa_UInt32, const OpcUa_ByteString& point, OpcUa_BrowseResult& result) {
                       table.browseNext(point, release, result);
                   });
    return status;
}

UaStatus TableServices::translateBrowsePathsToNodeIds(Settings& settings, const UaBrowsePaths& paths,
                                                      UaBrowsePathResults& results)
{
    results.clear();
    const UaStatus status = begin(Service::Translate, settings);
    if (status.isGood())
        answerEach(paths, results,
                   [this](OpcUa_UInt32, const OpcUa_BrowsePath& path, OpcUa_BrowsePathResult& result) {
                       table.translate(path, result);
                   });
    return status;
}

// ---- history

UaStatus TableServices::history(const Settings& settings, const HistoryReadContext& context,
                                const OpcUa_EncodeableType& type, const void* details,
                                const UaHistoryReadValueIds& nodes, UaHistoryReadResults& results)
{
    const UaStatus status = begin(Service::HistoryRead, settings);
    UaHistoryReadValueIds asked(nodes);
    if (asked.length() == 1 && asked[0].ContinuationPoint.Length <= 0) {
        OpcUa_ByteString_Clear(&asked[0].ContinuationPoint);
        copied(context.continuationPoint.copyTo(&asked[0].ContinuationPoint));
    }
    if (status.isGood())
        answerEach(
            asked, results,
            [&](OpcUa_UInt32 i, const OpcUa_HistoryReadValueId& node, OpcUa_HistoryReadResult& result) {
                table.historyRead(type, details, i, node, context.releaseContinuationPoints, result);
            });
    return status;
}

UaStatus TableServices::historyReadRawModified(Settings& settings,
                                               const HistoryReadRawModifiedContext& context,
                                               const UaHistoryReadValueIds& nodes,
                                               HistoryReadDataResults& results)
{
    const OpcUa_ReadRawModifiedDetails details{context.isReadModified, context.startTime.value(),
                                               context.endTime.value(), context.numValuesPerNode,
                                               context.returnBounds};
    UaHistoryReadResults found;
    const UaStatus status =
        history(settings, context, OpcUa_ReadRawModifiedDetails_EncodeableType, &details, nodes, found);
    results = takeHistoryData(found);
    return status;
}

UaStatus TableServices::historyReadProcessed(Settings& settings, const HistoryReadProcessedContext& context,
                                             const UaHistoryReadValueIds& nodes,
                                             HistoryReadDataResults& results)
{
    results.clear();
    if (context.aggregateTypes.length() != nodes.length())
        return UaStatus(OpcUa_BadAggregateListMismatch);
    UaNodeIdArray aggregates(context.aggregateTypes);
    OpcUa_ReadProcessedDetails details{};
    details.StartTime = context.startTime.value();
    details.EndTime = context.endTime.value();
    details.ProcessingInterval = context.processingInterval;
    details.NoOfAggregateType = static_cast<OpcUa_Int32>(aggregates.length());
    details.AggregateType = aggregates.rawData();
    UaHistoryReadResults found;
    const UaStatus status =
        history(settings, context, OpcUa_ReadProcessedDetails_EncodeableType, &details, nodes, found);
    results = takeHistoryData(found);
    return status;
}

UaStatus TableServices::historyReadAtTime(Settings& settings, const HistoryReadAtTimeContext& context,
                                          const UaHistoryReadValueIds& nodes, HistoryReadDataResults& results)
{
    auto times = context.requestedTimes;
    const OpcUa_ReadAtTimeDetails details{static_cast<OpcUa_Int32>(times.length()), times.rawData(),
                                          context.useSimpleBounds};
    UaHistoryReadResults found;
    const UaStatus status =
        history(settings, context, OpcUa_ReadAtTimeDetails_EncodeableType, &details, nodes, found);
    results = takeHistoryData(found);
    return status;
}

UaStatus TableServices::historyReadEvent(Settings& settings, const HistoryReadEventContext& context,
                                         const UaHistoryReadValueIds& nodes, HistoryReadEventResults& results)
{
    UaSimpleAttributeOperands clauses(context.selectClauses);
    OpcUa_ReadEventDetails details{};
    details.StartTime = context.startTime.value();
    details.EndTime = context.endTime.value();
    details.NumValuesPerNode = context.numValuesPerNode;
    details.Filter.NoOfSelectClauses = static_cast<OpcUa_Int32>(clauses.length());
    details.Filter.SelectClauses = clauses.rawData();
    UaHistoryReadResults found;
    const UaStatus status =
        history(settings, context, OpcUa_ReadEventDetails_EncodeableType, &details, nodes, found);
    results = takeHistoryEvents(found);
    return status;
}
