#include <uaclientsdk/session/operationlimitsreader.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uaclientsdk/operationlimits.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/uasession.h>

#include <array>
#include <span>

namespace UaClientSdk {

namespace {

using Limits = OperationLimits;

struct LimitNode
{
    OpcUa_UInt32 id;
    OpcUa_UInt32 OperationLimits::*limit;
};

// The first one is needed to ask for the others.
constexpr std::array<LimitNode, 15> limitNodes = {{
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerRead, &Limits::maxNodesPerRead},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerWrite, &Limits::maxNodesPerWrite},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerMethodCall, &Limits::maxNodesPerMethodCall},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerBrowse, &Limits::maxNodesPerBrowse},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerTranslateBrowsePathsToNodeIds,
     &Limits::maxNodesPerTranslateBrowsePathsToNodeIds},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerRegisterNodes,
     &Limits::maxNodesPerRegisterNodes},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerNodeManagement,
     &Limits::maxNodesPerNodeManagement},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryReadData,
     &Limits::maxNodesPerHistoryReadData},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryReadEvents,
     &Limits::maxNodesPerHistoryReadEvents},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryUpdateData,
     &Limits::maxNodesPerHistoryUpdateData},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryUpdateEvents,
     &Limits::maxNodesPerHistoryUpdateEvents},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxMonitoredItemsPerCall,
     &Limits::maxMonitoredItemsPerCall},
    {OpcUaId_Server_ServerCapabilities_MaxBrowseContinuationPoints, &Limits::maxBrowseContinuationPoints},
    {OpcUaId_Server_ServerCapabilities_MaxHistoryContinuationPoints, &Limits::maxHistoryContinuationPoints},
    {OpcUaId_Server_ServerCapabilities_MaxQueryContinuationPoints, &Limits::maxQueryContinuationPoints},
}};

// Of the unsigned types that servers have for it; whatever else a server says is no limit.
OpcUa_UInt32 limitOf(const OpcUa_DataValue& value)
{
    const OpcUa_Variant& variant = value.Value;
    if (OpcUa_IsBad(value.StatusCode) || variant.ArrayType != OpcUa_VariantArrayType_Scalar)
        return 0;
    switch (variant.Datatype) {
    case OpcUaType_Byte:
        return variant.Value.Byte;
    case OpcUaType_UInt16:
        return variant.Value.UInt16;
    case OpcUaType_UInt32:
        return variant.Value.UInt32;
    default:
        return 0;
    }
}

UaStatus readLimits(UaSession& session, ServiceSettings settings, std::span<const LimitNode> wanted,
                    OperationLimits& limits)
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(wanted.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        nodes[i].NodeId.Identifier.Numeric = wanted[i].id;
        nodes[i].AttributeId = OpcUa_Attributes_Value;
    }
    UaDataValues values;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status =
        session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnosticInfos);
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i)
        limits.*wanted[i].limit = limitOf(values[i]);
    return status;
}

} // namespace

void OperationLimitsReader::update()
{
    ConnectionEpoch epoch;
    {
        SessionLock lock(m_context.mutex);
        epoch = m_context.connection.epoch();
        if (m_known == epoch.session)
            return;
        if (m_begun != epoch.session)
            m_context.blockLimits.forget();
        m_begun = epoch.session;
    }
    const UaStatus status = read(epoch);
    if (status.isBad()) {
        UaTrace::tWarning(
            "Warning: UaSession - reading the limits of the server failed [Session=%u] [status=0x%x]",
            m_context.traceId, status.statusCode());
    } else {
        m_known = epoch.session;
    }
}

UaStatus OperationLimitsReader::read(const ConnectionEpoch& epoch)
{
    ServiceSettings settings;
    {
        SessionLock lock(m_context.mutex);
        settings.callTimeout = m_context.connectInfo.internalServiceCallTimeout;
    }
    const std::span<const LimitNode> all(limitNodes);
    OperationLimits limits;
    UaStatus status = readLimits(m_session, settings, all.first(1), limits);
    if (!status.isBad() && !take(epoch, limits))
        status = UaStatus(OpcUa_BadConnectionClosed);
    if (!status.isBad())
        status = readLimits(m_session, settings, all.subspan(1), limits);
    if (!status.isBad() && !take(epoch, limits))
        status = UaStatus(OpcUa_BadConnectionClosed);
    return status;
}

bool OperationLimitsReader::take(const ConnectionEpoch& epoch, const OperationLimits& limits)
{
    SessionLock lock(m_context.mutex);
    if (!m_context.connection.isSameSession(epoch))
        return false;
    m_context.blockLimits.take(limits);
    return true;
}

} // namespace UaClientSdk
