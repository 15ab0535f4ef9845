// Members of UaSession that read history; declared in uasession.h, which has too many for one source.
#include <uaclientsdk/session/uasession_p.h>

#include <uabase/system/uatrace.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/asyncblockservice.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <new>
#include <span>
#include <utility>

namespace UaClientSdk {

namespace {

using HistoryReadService = BlockService<Services::HistoryRead>;

// One service of the server under four names.
constexpr HistoryReadService historyReadService(const char* method, const char* beginMethod,
                                                const char* completion)
{
    return {{method, "Empty read array passed", beginMethod, Services::HistoryRead::handler, completion}};
}

const HistoryReadService rawModifiedService = historyReadService(
    "historyReadRawModified", "beginHistoryReadRawModified", "historyReadRawModifiedComplete");
const HistoryReadService processedService =
    historyReadService("historyReadProcessed", "beginHistoryReadProcessed", "historyReadProcessedComplete");
const HistoryReadService atTimeService =
    historyReadService("historyReadAtTime", "beginHistoryReadAtTime", "historyReadAtTimeComplete");
const HistoryReadService eventService =
    historyReadService("historyReadEvent", "beginHistoryReadEvent", "historyReadEventComplete");

// ---- the details of each kind; they borrow from the context

OpcUa_ReadRawModifiedDetails detailsOf(const HistoryReadRawModifiedContext& context, OpcUa_UInt32,
                                       OpcUa_Int32)
{
    return {context.isReadModified ? OpcUa_True : OpcUa_False, context.startTime.value(),
            context.endTime.value(), context.numValuesPerNode,
            context.returnBounds ? OpcUa_True : OpcUa_False};
}

// The aggregates go with their nodes.
OpcUa_ReadProcessedDetails detailsOf(const HistoryReadProcessedContext& context, OpcUa_UInt32 first,
                                     OpcUa_Int32 count)
{
    return {context.startTime.value(),
            context.endTime.value(),
            context.processingInterval,
            count,
            const_cast<OpcUa_NodeId*>(context.aggregateTypes.rawData() + first),
            context.aggregateConfiguration};
}

OpcUa_ReadAtTimeDetails detailsOf(const HistoryReadAtTimeContext& context, OpcUa_UInt32, OpcUa_Int32)
{
    return {static_cast<OpcUa_Int32>(context.requestedTimes.length()),
            const_cast<OpcUa_DateTime*>(context.requestedTimes.rawData()),
            context.useSimpleBounds ? OpcUa_True : OpcUa_False};
}

OpcUa_ReadEventDetails detailsOf(const HistoryReadEventContext& context, OpcUa_UInt32, OpcUa_Int32)
{
    OpcUa_EventFilter filter{};
    filter.NoOfSelectClauses = static_cast<OpcUa_Int32>(context.selectClauses.length());
    filter.SelectClauses = const_cast<OpcUa_SimpleAttributeOperand*>(context.selectClauses.rawData());
    filter.WhereClause.NoOfElements = static_cast<OpcUa_Int32>(context.whereClause.length());
    filter.WhereClause.Elements = const_cast<OpcUa_ContentFilterElement*>(context.whereClause.rawData());
    return {context.numValuesPerNode, context.startTime.value(), context.endTime.value(), filter};
}

const OpcUa_EncodeableType& typeOf(const OpcUa_ReadRawModifiedDetails&)
{
    return OpcUa_ReadRawModifiedDetails_EncodeableType;
}
const OpcUa_EncodeableType& typeOf(const OpcUa_ReadProcessedDetails&)
{
    return OpcUa_ReadProcessedDetails_EncodeableType;
}
const OpcUa_EncodeableType& typeOf(const OpcUa_ReadAtTimeDetails&)
{
    return OpcUa_ReadAtTimeDetails_EncodeableType;
}
const OpcUa_EncodeableType& typeOf(const OpcUa_ReadEventDetails&)
{
    return OpcUa_ReadEventDetails_EncodeableType;
}

// Puts the details into each request; owns the context, and the details as long as the request of a block
// lives.
template <typename Context>
class HistoryPreparation
{
public:
    explicit HistoryPreparation(const Context& context) : m_context(context) {}

    void operator()(OpcUa_HistoryReadRequest& request, OpcUa_UInt32 first) const
    {
        m_details = detailsOf(m_context, first, request.NoOfNodesToRead);
        OpcUa_ExtensionObject_AttachEncodeable(&request.HistoryReadDetails, &typeOf(m_details), &m_details);
        request.TimestampsToReturn = m_context.timestampsToReturn;
        request.ReleaseContinuationPoints = m_context.releaseContinuationPoints ? OpcUa_True : OpcUa_False;
    }

private:
    using Details = decltype(detailsOf(std::declval<const Context&>(), 0u, 0));
    Context m_context;
    mutable Details m_details{};
};

// The nodes, with the context's continuation point where there is only one node to have it; shares otherwise.
class NodesToRead
{
public:
    NodesToRead(const HistoryReadContext& context, const UaHistoryReadValueIds& nodes) : m_nodes(nodes.span())
    {
        if (nodes.length() == 1 && nodes[0].ContinuationPoint.Length <= 0 &&
            !context.continuationPoint.isEmpty()) {
            m_only = nodes[0];
            m_only.ContinuationPoint = *context.continuationPoint.get();
            m_nodes = {&m_only, 1};
        }
    }
    NodesToRead(const NodesToRead&) = delete;
    NodesToRead& operator=(const NodesToRead&) = delete;

    [[nodiscard]] std::span<const OpcUa_HistoryReadValueId> nodes() const { return m_nodes; }

private:
    OpcUa_HistoryReadValueId m_only{}; // borrowed from its owners
    std::span<const OpcUa_HistoryReadValueId> m_nodes;
};

template <typename Results>
UaStatus takeInto(Results& results, Results (*take)(UaHistoryReadResults&), UaHistoryReadResults& raw)
try {
    results = take(raw);
    return UaStatus();
} catch (const std::bad_alloc&) {
    results.clear();
    return UaStatus(OpcUa_BadOutOfMemory);
}

template <typename Context, typename Results>
UaStatus readHistory(SessionContext& session, const HistoryReadService& service, ServiceSettings& settings,
                     const Context& context, const UaHistoryReadValueIds& nodesToRead, Results& results,
                     Results (*take)(UaHistoryReadResults&), UaDiagnosticInfos& diagnosticInfos)
{
    results.clear();
    UaHistoryReadResults raw;
    const NodesToRead nodes(context, nodesToRead);
    const UaStatus status = callInBlocks(session, service, settings, nodes.nodes(), raw, diagnosticInfos,
                                         HistoryPreparation<Context>(context));
    const UaStatus taken = takeInto(results, take, raw);
    return taken.isBad() ? taken : status;
}

template <typename Context, typename Results>
UaStatus beginReadHistory(SessionContext& session, const HistoryReadService& service,
                          ServiceSettings& settings, const Context& context,
                          const UaHistoryReadValueIds& nodesToRead, OpcUa_UInt32 transactionId,
                          Results (*take)(UaHistoryReadResults&),
                          void (UaSessionCallback::*completion)(OpcUa_UInt32, const UaStatus&, Results&,
                                                                UaDiagnosticInfos&))
{
    const NodesToRead nodes(context, nodesToRead);
    return beginInBlocks(session, service, settings, nodes.nodes(), HistoryPreparation<Context>(context),
                         [=](UaSessionCallback& callback, const UaStatus& status, UaHistoryReadResults& raw,
                             UaDiagnosticInfos& diagnosticInfos) {
                             Results results;
                             const UaStatus taken = takeInto(results, take, raw);
                             (callback.*completion)(transactionId, taken.isBad() ? taken : status, results,
                                                    diagnosticInfos);
                         });
}

// What a server would refuse in another way for each split.
UaStatus checkAggregates(const HistoryReadProcessedContext& context, const UaHistoryReadValueIds& nodes,
                         const char* method)
{
    if (nodes.isEmpty() || context.aggregateTypes.length() == nodes.length())
        return UaStatus();
    UaTrace::tError("<-- UaSession::%s [ret=OpcUa_BadAggregateListMismatch] - %u aggregates for %u nodes",
                    method, context.aggregateTypes.length(), nodes.length());
    return UaStatus(OpcUa_BadAggregateListMismatch);
}

} // namespace

UaStatus UaSession::historyReadRawModified(ServiceSettings& settings,
                                           const HistoryReadRawModifiedContext& context,
                                           const UaHistoryReadValueIds& nodesToRead,
                                           HistoryReadDataResults& results,
                                           UaDiagnosticInfos& diagnosticInfos)
{
    return readHistory(d->context, rawModifiedService, settings, context, nodesToRead, results,
                       takeHistoryData, diagnosticInfos);
}

UaStatus UaSession::beginHistoryReadRawModified(ServiceSettings& settings,
                                                const HistoryReadRawModifiedContext& context,
                                                const UaHistoryReadValueIds& nodesToRead,
                                                OpcUa_UInt32 transactionId)
{
    return beginReadHistory(d->context, rawModifiedService, settings, context, nodesToRead, transactionId,
                            takeHistoryData, &UaSessionCallback::historyReadRawModifiedComplete);
}

UaStatus UaSession::historyReadProcessed(ServiceSettings& settings,
                                         const HistoryReadProcessedContext& context,
                                         const UaHistoryReadValueIds& nodesToRead,
                                         HistoryReadDataResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    const UaStatus matching = checkAggregates(context, nodesToRead, processedService.names.method);
    if (matching.isBad()) {
        results.clear();
        diagnosticInfos.clear();
        return matching;
    }
    return readHistory(d->context, processedService, settings, context, nodesToRead, results, takeHistoryData,
                       diagnosticInfos);
}

UaStatus UaSession::beginHistoryReadProcessed(ServiceSettings& settings,
                                              const HistoryReadProcessedContext& context,
                                              const UaHistoryReadValueIds& nodesToRead,
                                              OpcUa_UInt32 transactionId)
{
    const UaStatus matching = checkAggregates(context, nodesToRead, processedService.names.beginMethod);
    return matching.isBad()
               ? matching
               : beginReadHistory(d->context, processedService, settings, context, nodesToRead, transactionId,
                                  takeHistoryData, &UaSessionCallback::historyReadProcessedComplete);
}

UaStatus UaSession::historyReadAtTime(ServiceSettings& settings, const HistoryReadAtTimeContext& context,
                                      const UaHistoryReadValueIds& nodesToRead,
                                      HistoryReadDataResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return readHistory(d->context, atTimeService, settings, context, nodesToRead, results, takeHistoryData,
                       diagnosticInfos);
}

UaStatus UaSession::beginHistoryReadAtTime(ServiceSettings& settings, const HistoryReadAtTimeContext& context,
                                           const UaHistoryReadValueIds& nodesToRead,
                                           OpcUa_UInt32 transactionId)
{
    return beginReadHistory(d->context, atTimeService, settings, context, nodesToRead, transactionId,
                            takeHistoryData, &UaSessionCallback::historyReadAtTimeComplete);
}

UaStatus UaSession::historyReadEvent(ServiceSettings& settings, const HistoryReadEventContext& context,
                                     const UaHistoryReadValueIds& nodesToRead,
                                     HistoryReadEventResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return readHistory(d->context, eventService, settings, context, nodesToRead, results, takeHistoryEvents,
                       diagnosticInfos);
}

UaStatus UaSession::beginHistoryReadEvent(ServiceSettings& settings, const HistoryReadEventContext& context,
                                          const UaHistoryReadValueIds& nodesToRead,
                                          OpcUa_UInt32 transactionId)
{
    return beginReadHistory(d->context, eventService, settings, context, nodesToRead, transactionId,
                            takeHistoryEvents, &UaSessionCallback::historyReadEventComplete);
}

} // namespace UaClientSdk
