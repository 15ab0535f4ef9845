// Services that take one array and answer with another: splitting, merging and trace, written once.
#pragma once

#include <uabase/system/uatrace.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/connection/sessiongate.h>
#include <uaclientsdk/services/blockplan.h>
#include <uaclientsdk/services/servicenames.h>

#include <algorithm>
#include <span>
#include <utility>

namespace UaClientSdk {

template <typename Traits>
concept HasResults = requires
{
    Traits::results;
};

/// The results of a service that answers with a status only stand for none.
template <typename Traits>
struct ResultOf
{
    using Type = OpcUa_StatusCode;
};
template <HasResults Traits>
struct ResultOf<Traits>
{
    using Type = typename Traits::Result;
};

/// How one such service is dealt with; its traits (servicetraits.h) say what its structures look like.
template <typename ServiceTraits>
struct BlockService
{
    using Traits = ServiceTraits;
    using RequestType = typename Traits::Request;
    using ResponseType = typename Traits::Response;
    using ItemType = typename Traits::Item;
    using ResultType = typename ResultOf<Traits>::Type;

    /// None goes without its place in the table of limits.
    constexpr BlockService(const ServiceNames& serviceNames, SplitService limitedAs)
        : names(serviceNames), service(limitedAs)
    {
    }

    ServiceNames names;
    SplitService service;
    /// What a block did stays done when a later one fails: then its results are kept.
    bool hasEffects = false;
    void (*traceItems)(std::span<const ItemType>) = nullptr; ///< at the level of data
    void (*traceResults)(std::span<const ResultType>) = nullptr;
};

template <typename Traits>
constexpr BlockService<Traits> blockService(SplitService service, const char* emptyText)
{
    return {namesOf<Traits>(emptyText), service};
}

/// One whose blocks stay done when a later one fails.
template <typename Traits>
constexpr BlockService<Traits> keepingService(SplitService service, const char* emptyText)
{
    BlockService<Traits> keeping = blockService<Traits>(service, emptyText);
    keeping.hasEffects = true;
    return keeping;
}

/// For services whose requests have nothing but their items.
struct NothingToPrepare
{
    template <typename Request>
    void operator()(Request&, OpcUa_UInt32) const
    {
    }
};

/// Moves a block's diagnostic infos behind those of the blocks before it, which may have come without.
template <typename Response>
bool takeDiagnostics(Response& response, OpcUa_UInt32 before, OpcUa_UInt32 count, UaDiagnosticInfos& merged)
{
    if constexpr (requires { response.DiagnosticInfos; }) {
        UaDiagnosticInfos block;
        OpcUa_ResponseHeader& header = response.ResponseHeader;
        block.attach(std::exchange(response.NoOfDiagnosticInfos, 0),
                     std::exchange(response.DiagnosticInfos, nullptr),
                     std::exchange(header.NoOfStringTable, 0), std::exchange(header.StringTable, nullptr));
        if (block.isEmpty() && merged.isEmpty())
            return true;
        return merged.resize(before) && (!block.isEmpty() || block.resize(count)) &&
               merged.append(std::move(block));
    } else {
        return true;
    }
}

/// Appends what a block of count items was answered to what came before.
template <typename Service>
UaStatus takeBlock(const Service& service, OpcUa_UInt32 count, typename Service::ResponseType& response,
                   UaArray<typename Service::ResultType>& results, UaDiagnosticInfos& diagnosticInfos)
{
    using Traits = typename Service::Traits;
    if constexpr (HasResults<Traits>) {
        OpcUa_Int32 diagnostics = 0;
        if constexpr (requires { response.NoOfDiagnosticInfos; })
            diagnostics = response.NoOfDiagnosticInfos;
        const UaStatus counts = checkCounts(service.names, count, response.*Traits::resultCount, diagnostics);
        if (counts.isBad())
            return counts;
        UaArray<typename Service::ResultType> block;
        block.attachFrom(&(response.*Traits::resultCount), &(response.*Traits::results));
        const bool merged = takeDiagnostics(response, results.length(), count, diagnosticInfos);
        return merged && results.appendMoved(std::move(block)) ? UaStatus() : UaStatus(OpcUa_BadOutOfMemory);
    } else {
        return UaStatus();
    }
}

/// Fills the request of one block but its header. prepare(request, first) sets the other fields; first is the
/// place of the block among all items.
template <typename Service, typename Prepare>
void fillBlock(OpcUa_UInt32 first, std::span<const typename Service::ItemType> items, const Prepare& prepare,
               typename Service::RequestType& request)
{
    request.*Service::Traits::itemCount = static_cast<OpcUa_Int32>(items.size());
    // the stack only reads them
    request.*Service::Traits::items = const_cast<typename Service::ItemType*>(items.data());
    prepare(request, first);
}

/// Sends one block and appends what comes back.
template <typename Service, typename Prepare>
UaStatus callBlock(SessionContext& context, const Service& service, const GateRequest& wanted,
                   ServiceSettings& settings, OpcUa_UInt32 first,
                   std::span<const typename Service::ItemType> items,
                   UaArray<typename Service::ResultType>& results, UaDiagnosticInfos& diagnosticInfos,
                   const Prepare& prepare)
{
    BorrowingRequest<typename Service::Traits> request;
    OwningResponse<typename Service::Traits> response;
    fillBlock<Service>(first, items, prepare, *request);
    const UaStatus status =
        callThroughGate<typename Service::Traits>(context, wanted, settings, *request, *response);
    if (status.isBad())
        return status;
    const UaStatus taken =
        takeBlock(service, static_cast<OpcUa_UInt32>(items.size()), *response, results, diagnosticInfos);
    return taken.isBad() ? taken : status;
}

/// The items are there in good time to be traced: the caller gave them.
template <typename Service>
void traceBlockItems(const Service& service, std::span<const typename Service::ItemType> items)
{
    if (service.traceItems && UaTrace::isWanted(UaTrace::Data))
        service.traceItems(items);
}

/// The end of a split call: what its caller gets, and the trace of it.
template <typename Service>
void finishBlocks(const Service& service, const UaStatus& status,
                  UaArray<typename Service::ResultType>& results, UaDiagnosticInfos& diagnosticInfos)
{
    if (status.isBad() && !service.hasEffects) {
        results.clear();
        diagnosticInfos.clear();
    }
    if (service.traceResults && UaTrace::isWanted(UaTrace::Data))
        service.traceResults(results.span());
}

/// The whole service: split by what the server and the application allow, stopped at the first block that
/// fails for another reason than its size.
template <typename Service, typename Prepare = NothingToPrepare>
UaStatus callInBlocks(SessionContext& context, const Service& service, ServiceSettings& settings,
                      std::span<const typename Service::ItemType> items,
                      UaArray<typename Service::ResultType>& results, UaDiagnosticInfos& diagnosticInfos,
                      const Prepare& prepare = Prepare())
{
    const ServiceNames& names = service.names;
    const auto length = static_cast<OpcUa_UInt32>(items.size());
    TraceScope trace = traceService(context, names, length);
    results.clear();
    diagnosticInfos.clear();
    BlockPlan plan = planBlocks(context, service.service, service.hasEffects);
    UaStatus status = checkReady(context, names, length, plan.wanted);
    if (!status.isBad())
        traceBlockItems(service, items);
    for (OpcUa_UInt32 done = 0; !status.isBad() && done < length;) {
        const OpcUa_UInt32 count = std::min(plan.limit, length - done);
        status = done == 0 ? status : checkReady(context, names, count, plan.wanted);
        if (!status.isBad()) {
            status = callBlock(context, service, plan.wanted, settings, done, items.subspan(done, count),
                               results, diagnosticInfos, prepare);
        }
        if (!status.isBad()) {
            done += count;
            rememberSize(context, plan);
        } else if (plan.shrinkAfter(status, count)) {
            status = UaStatus();
        }
    }
    finishBlocks(service, status, results, diagnosticInfos);
    return trace.ending(status);
}

} // namespace UaClientSdk
