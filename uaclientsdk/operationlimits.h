// What a server says that it takes at once.
#pragma once

#include <opcua/opcua_types.h>

namespace UaClientSdk {

/// Items in one request, and continuation points at a time. 0: the server sets no limit, or does not tell.
/// The session keeps them by itself; who makes larger batches pays for them with several calls.
struct OperationLimits
{
    OpcUa_UInt32 maxNodesPerRead = 0;
    OpcUa_UInt32 maxNodesPerWrite = 0;
    OpcUa_UInt32 maxNodesPerMethodCall = 0;
    OpcUa_UInt32 maxNodesPerBrowse = 0; ///< continuation points of BrowseNext, too
    OpcUa_UInt32 maxNodesPerTranslateBrowsePathsToNodeIds = 0;
    OpcUa_UInt32 maxNodesPerRegisterNodes = 0;
    OpcUa_UInt32 maxNodesPerNodeManagement = 0;
    OpcUa_UInt32 maxNodesPerHistoryReadData = 0;
    OpcUa_UInt32 maxNodesPerHistoryReadEvents = 0;
    OpcUa_UInt32 maxNodesPerHistoryUpdateData = 0;
    OpcUa_UInt32 maxNodesPerHistoryUpdateEvents = 0;
    OpcUa_UInt32 maxMonitoredItemsPerCall = 0;
    OpcUa_UInt32 maxBrowseContinuationPoints = 0;
    OpcUa_UInt32 maxHistoryContinuationPoints = 0;
    OpcUa_UInt32 maxQueryContinuationPoints = 0;

    bool operator==(const OperationLimits&) const = default;
};

} // namespace UaClientSdk
