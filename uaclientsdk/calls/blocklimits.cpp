#include <uaclientsdk/calls/blocklimits.h>

#include <algorithm>
#include <limits>

namespace UaClientSdk {

namespace {

using Limit = OpcUa_UInt32 OperationLimits::*;
using Limits = OperationLimits;

constexpr Limit noLimit = nullptr;

struct Line
{
    SplitService service;
    Limit items;
    // one item may take one, and nobody knows before which will
    Limit continuationPoints;
};

constexpr auto services = static_cast<std::size_t>(SplitService::End);

constexpr std::array<Line, services> limitTable = {{
    {SplitService::Read, &Limits::maxNodesPerRead, noLimit},
    {SplitService::Write, &Limits::maxNodesPerWrite, noLimit},
    {SplitService::Call, &Limits::maxNodesPerMethodCall, noLimit},
    {SplitService::Browse, &Limits::maxNodesPerBrowse, &Limits::maxBrowseContinuationPoints},
    {SplitService::BrowseNext, &Limits::maxNodesPerBrowse, noLimit},
    {SplitService::TranslateBrowsePaths, &Limits::maxNodesPerTranslateBrowsePathsToNodeIds, noLimit},
    {SplitService::RegisterNodes, &Limits::maxNodesPerRegisterNodes, noLimit},
    {SplitService::UnregisterNodes, &Limits::maxNodesPerRegisterNodes, noLimit},
    {SplitService::AddNodes, &Limits::maxNodesPerNodeManagement, noLimit},
    {SplitService::AddReferences, &Limits::maxNodesPerNodeManagement, noLimit},
    {SplitService::DeleteNodes, &Limits::maxNodesPerNodeManagement, noLimit},
    {SplitService::DeleteReferences, &Limits::maxNodesPerNodeManagement, noLimit},
    {SplitService::HistoryReadData, &Limits::maxNodesPerHistoryReadData,
     &Limits::maxHistoryContinuationPoints},
    {SplitService::HistoryReadEvents, &Limits::maxNodesPerHistoryReadEvents,
     &Limits::maxHistoryContinuationPoints},
    {SplitService::HistoryUpdateData, &Limits::maxNodesPerHistoryUpdateData, noLimit},
    {SplitService::HistoryUpdateEvents, &Limits::maxNodesPerHistoryUpdateEvents, noLimit},
    {SplitService::CreateMonitoredItems, &Limits::maxMonitoredItemsPerCall, noLimit},
    {SplitService::ModifyMonitoredItems, &Limits::maxMonitoredItemsPerCall, noLimit},
    {SplitService::SetMonitoringMode, &Limits::maxMonitoredItemsPerCall, noLimit},
    {SplitService::DeleteMonitoredItems, &Limits::maxMonitoredItemsPerCall, noLimit},
    {SplitService::SetTriggering, &Limits::maxMonitoredItemsPerCall, noLimit},
    // servers have no limit to tell for these
    {SplitService::SetPublishingMode, noLimit, noLimit},
    {SplitService::DeleteSubscriptions, noLimit, noLimit},
    {SplitService::TransferSubscriptions, noLimit, noLimit},
}};

constexpr bool everyServiceHasItsLine()
{
    for (std::size_t i = 0; i < services; ++i)
        if (limitTable[i].service != static_cast<SplitService>(i))
            return false;
    return true;
}
static_assert(everyServiceHasItsLine());

constexpr OpcUa_UInt32 unlimited = std::numeric_limits<OpcUa_UInt32>::max();

OpcUa_UInt32 valueOf(const OperationLimits& limits, Limit limit)
{
    return limit && limits.*limit > 0 ? limits.*limit : unlimited;
}

} // namespace

void BlockLimits::forget()
{
    m_told = OperationLimits();
    m_sizes.fill(unlimited);
}

void BlockLimits::take(const OperationLimits& limits)
{
    m_told = limits;
    for (const Line& line : limitTable) {
        lower(line.service, valueOf(limits, line.items));
        lower(line.service, valueOf(limits, line.continuationPoints));
    }
}

void BlockLimits::lower(SplitService service, OpcUa_UInt32 size)
{
    OpcUa_UInt32& known = m_sizes[static_cast<std::size_t>(service)];
    known = std::min(known, size);
}

OpcUa_UInt32 BlockLimits::blockSize(SplitService service, OpcUa_UInt32 setting) const
{
    return std::max<OpcUa_UInt32>(std::min(setting, m_sizes[static_cast<std::size_t>(service)]), 1);
}

} // namespace UaClientSdk
