// How many items a server takes in one request of each service.
#pragma once

#include <opcua/opcua_types.h>
#include <uaclientsdk/operationlimits.h>

#include <array>
#include <cstddef>

namespace UaClientSdk {

/// The services whose requests are split. Each has its line in the table of blocklimits.cpp, which names what
/// bounds it.
enum class SplitService {
    Read,
    Write,
    Call,
    Browse,
    BrowseNext,
    TranslateBrowsePaths,
    RegisterNodes,
    UnregisterNodes,
    AddNodes,
    AddReferences,
    DeleteNodes,
    DeleteReferences,
    HistoryReadData,
    HistoryReadEvents,
    HistoryUpdateData,
    HistoryUpdateEvents,
    CreateMonitoredItems,
    ModifyMonitoredItems,
    SetMonitoringMode,
    DeleteMonitoredItems,
    SetTriggering,
    SetPublishingMode,
    DeleteSubscriptions,
    TransferSubscriptions,
    End
};

/// What the server of one session has told and shown of itself. Not thread-safe.
class BlockLimits
{
public:
    BlockLimits() { forget(); }

    /// Another session: nothing is known of its server.
    void forget();
    /// What the server tells of itself; smaller sizes that it has shown stay.
    void take(const OperationLimits& limits);
    /// The server takes so many items after it has refused more.
    void lower(SplitService service, OpcUa_UInt32 size);

    [[nodiscard]] const OperationLimits& told() const { return m_told; }
    /// Items in one request, at least one; setting is the application's maximum.
    [[nodiscard]] OpcUa_UInt32 blockSize(SplitService service, OpcUa_UInt32 setting) const;

private:
    OperationLimits m_told;
    std::array<OpcUa_UInt32, static_cast<std::size_t>(SplitService::End)> m_sizes{};
};

} // namespace UaClientSdk
