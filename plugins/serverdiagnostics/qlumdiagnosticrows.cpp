#include <plugins/serverdiagnostics/qlumdiagnosticrows.h>

namespace {
using Group = QlumDiagnosticGroup;
using Kind = QlumDiagnosticKind;

constexpr QlumServerRow serverRows[] = {
    {Group::Build, "ProductName", 2261},
    {Group::Build, "ProductUri", 2262},
    {Group::Build, "ManufacturerName", 2263},
    {Group::Build, "SoftwareVersion", 2264},
    {Group::Build, "BuildNumber", 2265},
    {Group::Build, "BuildDate", 2266},
    {Group::Diagnostics, "ServerViewCount", 2276},
    {Group::Diagnostics, "CurrentSessionCount", 2277},
    {Group::Diagnostics, "CumulatedSessionCount", 2278, Kind::Counter},
    {Group::Diagnostics, "SecurityRejectedSessionCount", 2279, Kind::Counter},
    {Group::Diagnostics, "RejectedSessionCount", 3705, Kind::Counter},
    {Group::Diagnostics, "SessionTimeoutCount", 2281, Kind::Counter},
    {Group::Diagnostics, "SessionAbortCount", 2282, Kind::Counter},
    {Group::Diagnostics, "PublishingIntervalCount", 2284},
    {Group::Diagnostics, "CurrentSubscriptionCount", 2285},
    {Group::Diagnostics, "CumulatedSubscriptionCount", 2286, Kind::Counter},
    {Group::Diagnostics, "SecurityRejectedRequestsCount", 2287, Kind::Counter},
    {Group::Diagnostics, "RejectedRequestsCount", 2288, Kind::Counter},
    {Group::Status, "StartTime", 2257},
    {Group::Status, "CurrentTime", 2258},
    {Group::Status, "State", 2259, Kind::ServerState},
    {Group::Status, "BuildInfo", 2260},
    {Group::Status, "SecondsTillShutdown", 2992},
    {Group::Status, "ShutdownReason", 2993},
    {Group::Redundancy, "RedundancySupport", 3709, Kind::RedundancySupport},
    {Group::Redundancy, "CurrentServerId", 11312},
    {Group::Redundancy, "RedundantServerArray", 11313},
    {Group::Redundancy, "ServerUriArray", 11314},
    {Group::Capabilities, "ServerProfileArray", 2269},
    {Group::Capabilities, "LocaleIdArray", 2271},
    {Group::Capabilities, "MinSupportedSampleRate", 2272},
    {Group::Capabilities, "MaxBrowseContinuationPoints", 2735, Kind::Limit},
    {Group::Capabilities, "MaxQueryContinuationPoints", 2736, Kind::Limit},
    {Group::Capabilities, "MaxHistoryContinuationPoints", 2737, Kind::Limit},
    {Group::Capabilities, "SoftwareCertificates", 3704},
    {Group::Capabilities, "MaxArrayLength", 11702, Kind::Limit},
    {Group::Capabilities, "MaxStringLength", 11703, Kind::Limit},
    {Group::Capabilities, "AggregateFunctions", 2997, Kind::Folder},
    {Group::Capabilities, "ModellingRules", 2996, Kind::Folder},
    {Group::Limits, "MaxNodesPerRead", 11705, Kind::Limit},
    {Group::Limits, "MaxNodesPerHistoryReadData", 12165, Kind::Limit},
    {Group::Limits, "MaxNodesPerHistoryReadEvents", 12166, Kind::Limit},
    {Group::Limits, "MaxNodesPerWrite", 11707, Kind::Limit},
    {Group::Limits, "MaxNodesPerHistoryUpdateData", 12167, Kind::Limit},
    {Group::Limits, "MaxNodesPerHistoryUpdateEvents", 12168, Kind::Limit},
    {Group::Limits, "MaxNodesPerMethodCall", 11709, Kind::Limit},
    {Group::Limits, "MaxNodesPerBrowse", 11710, Kind::Limit},
    {Group::Limits, "MaxNodesPerRegisterNodes", 11711, Kind::Limit},
    {Group::Limits, "MaxNodesPerTranslateBrowsePathsToNodeIds", 11712, Kind::Limit},
    {Group::Limits, "MaxNodesPerNodeManagement", 11713, Kind::Limit},
    {Group::Limits, "MaxMonitoredItemsPerCall", 11714, Kind::Limit},
};

// as older servers and the published node set have it
constexpr const char* overflow = "EventQueueOverflowCount";

constexpr QlumDetailRow sessionRows[] = {
    {"SessionId"},
    {"SessionName"},
    {"ClientDescription"},
    {"ServerUri"},
    {"EndpointUrl"},
    {"LocaleIds"},
    {"ActualSessionTimeout"},
    {"MaxResponseMessageSize"},
    {"ClientConnectionTime"},
    {"ClientLastContactTime"},
    {"CurrentSubscriptionsCount"},
    {"CurrentMonitoredItemsCount"},
    {"CurrentPublishRequestsInQueue"},
    {"TotalRequestCount", nullptr, Kind::Counter},
    {"UnauthorizedRequestCount", nullptr, Kind::Counter},
    {"ReadCount", nullptr, Kind::Counter},
    {"HistoryReadCount", nullptr, Kind::Counter},
    {"WriteCount", nullptr, Kind::Counter},
    {"HistoryUpdateCount", nullptr, Kind::Counter},
    {"CallCount", nullptr, Kind::Counter},
    {"CreateMonitoredItemsCount", nullptr, Kind::Counter},
    {"ModifyMonitoredItemsCount", nullptr, Kind::Counter},
    {"SetMonitoringModeCount", nullptr, Kind::Counter},
    {"SetTriggeringCount", nullptr, Kind::Counter},
    {"DeleteMonitoredItemsCount", nullptr, Kind::Counter},
    {"CreateSubscriptionCount", nullptr, Kind::Counter},
    {"ModifySubscriptionCount", nullptr, Kind::Counter},
    {"SetPublishingModeCount", nullptr, Kind::Counter},
    {"PublishCount", nullptr, Kind::Counter},
    {"RepublishCount", nullptr, Kind::Counter},
    {"TransferSubscriptionsCount", nullptr, Kind::Counter},
    {"DeleteSubscriptionsCount", nullptr, Kind::Counter},
    {"AddNodesCount", nullptr, Kind::Counter},
    {"AddReferencesCount", nullptr, Kind::Counter},
    {"DeleteNodesCount", nullptr, Kind::Counter},
    {"DeleteReferencesCount", nullptr, Kind::Counter},
    {"BrowseCount", nullptr, Kind::Counter},
    {"BrowseNextCount", nullptr, Kind::Counter},
    {"TranslateBrowsePathsToNodeIdsCount", nullptr, Kind::Counter},
    {"QueryFirstCount", nullptr, Kind::Counter},
    {"QueryNextCount", nullptr, Kind::Counter},
    {"RegisterNodesCount", nullptr, Kind::Counter},
    {"UnregisterNodesCount", nullptr, Kind::Counter},
};

constexpr QlumDetailRow securityRows[] = {
    {"ClientUserIdOfSession"}, {"ClientUserIdHistory"}, {"AuthenticationMechanism"}, {"Encoding"},
    {"TransportProtocol"},     {"SecurityMode"},        {"SecurityPolicyUri"},       {"ClientCertificate"},
};

constexpr QlumDetailRow subscriptionRows[] = {
    {"SessionId"},
    {"SubscriptionId"},
    {"Priority"},
    {"PublishingInterval"},
    {"MaxKeepAliveCount"},
    {"MaxLifetimeCount"},
    {"MaxNotificationsPerPublish"},
    {"PublishingEnabled"},
    {"ModifyCount", nullptr, Kind::Counter},
    {"EnableCount", nullptr, Kind::Counter},
    {"DisableCount", nullptr, Kind::Counter},
    {"RepublishRequestCount", nullptr, Kind::Counter},
    {"RepublishMessageRequestCount", nullptr, Kind::Counter},
    {"RepublishMessageCount", nullptr, Kind::Counter},
    {"TransferRequestCount", nullptr, Kind::Counter},
    {"TransferredToAltClientCount", nullptr, Kind::Counter},
    {"TransferredToSameClientCount", nullptr, Kind::Counter},
    {"PublishRequestCount", nullptr, Kind::Counter},
    {"DataChangeNotificationsCount", nullptr, Kind::Counter},
    {"EventNotificationsCount", nullptr, Kind::Counter},
    {"NotificationsCount", nullptr, Kind::Counter},
    {"LatePublishRequestCount", nullptr, Kind::Counter},
    {"CurrentKeepAliveCount"},
    {"CurrentLifetimeCount"},
    {"UnacknowledgedMessageCount"},
    {"DiscardedMessageCount", nullptr, Kind::Counter},
    {"MonitoredItemCount"},
    {"DisabledMonitoredItemCount"},
    {"MonitoringQueueOverflowCount", nullptr, Kind::Counter},
    {"NextSequenceNumber"},
    {"EventQueueOverFlowCount", overflow, Kind::Counter},
};
} // namespace

std::span<const QlumServerRow> qlumServerRows()
{
    return serverRows;
}

std::span<const QlumDetailRow> qlumSessionRows()
{
    return sessionRows;
}

std::span<const QlumDetailRow> qlumSessionSecurityRows()
{
    return securityRows;
}

std::span<const QlumDetailRow> qlumSubscriptionRows()
{
    return subscriptionRows;
}
