#include <plugins/performance/qlumprobe.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaelement.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/subscriptionsettings.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <cstddef>
#include <utility>

namespace {
using Settings = QlumSessionServices::Settings;

const QlumToolNode& nodeAt(const QlumMeasurementPlan& plan, OpcUa_UInt32 place)
{
    return plan.nodes[place % plan.nodes.size()];
}

template <typename Results, typename StatusOf>
quint32 countBad(const Results& results, StatusOf statusOf)
{
    quint32 bad = 0;
    for (OpcUa_UInt32 i = 0; i < results.length(); ++i)
        if (OpcUa_IsBad(statusOf(results[i])))
            ++bad;
    return bad;
}

class ReadProbe : public QlumProbe
{
public:
    ReadProbe(const QlumMeasurementPlan& plan, QlumSessionServices& services)
        : QlumProbe(plan.nodesPerCall), m_services(services), m_nodes(plan.nodesPerCall)
    {
        for (OpcUa_UInt32 i = 0; i < m_nodes.length(); ++i) {
            m_nodes[i].AttributeId = OpcUa_Attributes_Value;
            static_cast<void>(nodeAt(plan, i).nodeId.copyTo(&m_nodes[i].NodeId)); // else the server says so
        }
    }
    UaStatus call(Settings& settings) override
    {
        return m_services.read(settings, 0, OpcUa_TimestampsToReturn_Both, m_nodes, m_values);
    }
    quint32 settle(Settings&) override
    {
        const quint32 bad = countBad(m_values, [](const OpcUa_DataValue& value) { return value.StatusCode; });
        m_values.clear();
        return bad;
    }

protected:
    QlumSessionServices& m_services;
    UaReadValueIds m_nodes;

private:
    UaDataValues m_values;
};

class RegisteredProbe : public ReadProbe
{
public:
    using ReadProbe::ReadProbe;
    UaStatus prepare(Settings& settings) override
    {
        UaNodeIdArray nodes;
        for (const OpcUa_ReadValueId& node : m_nodes)
            static_cast<void>(nodes.append(node.NodeId));
        const UaStatus status = m_services.registerNodes(settings, nodes, m_registered);
        if (status.isBad())
            return status;
        for (OpcUa_UInt32 i = 0; i < nodes.length() && i < m_registered.length(); ++i) {
            UaElement<OpcUa_NodeId>::clear(&m_nodes[i].NodeId, 1);
            static_cast<void>(UaNodeId(m_registered[i]).copyTo(&m_nodes[i].NodeId));
        }
        return status;
    }
    void finish(Settings& settings) override
    {
        if (m_registered.length() > 0)
            static_cast<void>(m_services.unregisterNodes(settings, m_registered));
    }

private:
    UaNodeIdArray m_registered;
};

class WriteProbe : public QlumProbe
{
public:
    WriteProbe(const QlumMeasurementPlan& plan, QlumSessionServices& services)
        : QlumProbe(plan.nodesPerCall), m_services(services), m_nodes(plan.nodesPerCall)
    {
        for (OpcUa_UInt32 i = 0; i < m_nodes.length(); ++i) {
            m_nodes[i].AttributeId = OpcUa_Attributes_Value;
            static_cast<void>(nodeAt(plan, i).nodeId.copyTo(&m_nodes[i].NodeId));
            static_cast<void>(plan.values[i % plan.values.size()].copyTo(&m_nodes[i].Value.Value));
        }
    }
    UaStatus call(Settings& settings) override { return m_services.write(settings, m_nodes, m_results); }
    quint32 settle(Settings&) override
    {
        return countBad(
            m_results, [](OpcUa_StatusCode status) { return status; });
    }

private:
    QlumSessionServices& m_services;
    UaWriteValues m_nodes;
    UaStatusCodeArray m_results;
};

class BrowseProbe : public QlumProbe
{
public:
    BrowseProbe(const QlumMeasurementPlan& plan, QlumSessionServices& services)
        : QlumProbe(plan.nodesPerCall), m_services(services), m_nodes(plan.nodesPerCall)
    {
        for (OpcUa_UInt32 i = 0; i < m_nodes.length(); ++i) {
            OpcUa_BrowseDescription& node = m_nodes[i];
            static_cast<void>(nodeAt(plan, i).nodeId.copyTo(&node.NodeId));
            node.BrowseDirection = OpcUa_BrowseDirection_Forward;
            static_cast<void>(UaNodeId(OpcUaId_HierarchicalReferences).copyTo(&node.ReferenceTypeId));
            node.IncludeSubtypes = OpcUa_True;
            node.ResultMask = OpcUa_BrowseResultMask_All;
        }
    }
    UaStatus call(Settings& settings) override
    {
        return m_services.browseList(settings, {}, 0, m_nodes, m_results);
    }
    quint32 settle(Settings& settings) override
    {
        const UaByteStringArray points = continuationPoints();
        if (points.length() > 0) {
            UaBrowseResults released;
            static_cast<void>(m_services.browseListNext(settings, true, points, released));
        }
        const quint32 bad =
            countBad(m_results, [](const OpcUa_BrowseResult& result) { return result.StatusCode; });
        m_results.clear();
        return bad;
    }

    [[nodiscard]] const UaBrowseDescriptions& nodes() const { return m_nodes; }
    [[nodiscard]] const UaBrowseResults& results() const { return m_results; }

private:
    [[nodiscard]] UaByteStringArray continuationPoints() const
    {
        UaByteStringArray points;
        for (const OpcUa_BrowseResult& result : m_results)
            if (result.ContinuationPoint.Length > 0)
                static_cast<void>(points.append(result.ContinuationPoint));
        return points;
    }

    QlumSessionServices& m_services;
    UaBrowseDescriptions m_nodes;
    UaBrowseResults m_results;
};

// From each node to its first child, which is asked for before; a node without any is asked for one that it
// has not.
class TranslateProbe : public QlumProbe
{
public:
    TranslateProbe(const QlumMeasurementPlan& plan, QlumSessionServices& services)
        : QlumProbe(plan.nodesPerCall), m_services(services), m_browse(plan, services), m_paths(size())
    {
    }
    UaStatus prepare(Settings& settings) override
    {
        const UaStatus status = m_browse.call(settings);
        if (status.isBad())
            return status;
        for (OpcUa_UInt32 i = 0; i < m_paths.length() && i < m_browse.results().length(); ++i) {
            const OpcUa_BrowseResult& children = m_browse.results()[i];
            static_cast<void>(UaNodeId(m_browse.nodes()[i].NodeId).copyTo(&m_paths[i].StartingNode));
            UaRelativePathElements elements(1);
            elements[0].IncludeSubtypes = OpcUa_True;
            static_cast<void>(UaNodeId(OpcUaId_HierarchicalReferences).copyTo(&elements[0].ReferenceTypeId));
            const UaQualifiedName name = children.NoOfReferences > 0
                                             ? UaQualifiedName(children.References[0].BrowseName)
                                             : UaQualifiedName(UaString("-"), 0);
            static_cast<void>(name.copyTo(&elements[0].TargetName));
            OpcUa_RelativePath& path = m_paths[i].RelativePath;
            elements.detach(&path.NoOfElements, &path.Elements);
        }
        static_cast<void>(m_browse.settle(settings));
        return status;
    }
    UaStatus call(Settings& settings) override
    {
        return m_services.translateBrowsePathsToNodeIds(settings, m_paths, m_results);
    }
    quint32 settle(Settings&) override
    {
        return countBad(
            m_results, [](const OpcUa_BrowsePathResult& result) { return result.StatusCode; });
    }

private:
    QlumSessionServices& m_services;
    BrowseProbe m_browse;
    UaBrowsePaths m_paths;
    UaBrowsePathResults m_results;
};

class CallProbe : public QlumProbe
{
public:
    CallProbe(const QlumMeasurementPlan& plan, QlumSessionServices& services)
        : QlumProbe(plan.nodesPerCall), m_services(services), m_methods(plan.nodesPerCall)
    {
        for (OpcUa_UInt32 i = 0; i < m_methods.length(); ++i) {
            const QlumToolNode& node = nodeAt(plan, i);
            static_cast<void>(node.parentId.copyTo(&m_methods[i].ObjectId));
            static_cast<void>(node.nodeId.copyTo(&m_methods[i].MethodId));
            UaVariantArray inputs;
            if (!plan.arguments.empty())
                for (const UaVariant& value : plan.arguments[i % plan.arguments.size()])
                    static_cast<void>(inputs.append(*value.get()));
            inputs.detach(&m_methods[i].NoOfInputArguments, &m_methods[i].InputArguments);
        }
    }
    UaStatus call(Settings& settings) override { return m_services.callList(settings, m_methods, m_results); }
    quint32 settle(Settings&) override
    {
        return countBad(
            m_results, [](const OpcUa_CallMethodResult& result) { return result.StatusCode; });
    }

private:
    QlumSessionServices& m_services;
    UaCallMethodRequests m_methods;
    UaCallMethodResults m_results;
};

// In a subscription that publishes nothing, so that values do not come in between.
class ItemsProbe : public QlumProbe, private UaClientSdk::UaSubscriptionCallback
{
public:
    ItemsProbe(const QlumMeasurementPlan& plan, std::shared_ptr<UaClientSdk::UaSession> session)
        : QlumProbe(plan.nodesPerCall), m_session(std::move(session)), m_requests(plan.nodesPerCall)
    {
        for (OpcUa_UInt32 i = 0; i < m_requests.length(); ++i) {
            OpcUa_MonitoredItemCreateRequest& request = m_requests[i];
            static_cast<void>(nodeAt(plan, i).nodeId.copyTo(&request.ItemToMonitor.NodeId));
            request.ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
            request.MonitoringMode = OpcUa_MonitoringMode_Reporting;
            request.RequestedParameters.ClientHandle = i;
            request.RequestedParameters.SamplingInterval = 1000;
            request.RequestedParameters.QueueSize = 1;
        }
    }
    UaStatus prepare(Settings& settings) override
    {
        return m_session->createSubscription(settings, this, 0, {}, false, &m_subscription);
    }
    UaStatus call(Settings& settings) override
    {
        UaDiagnosticInfos diagnostics;
        const UaStatus created = m_subscription->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both,
                                                                      m_requests, m_results, diagnostics);
        if (created.isBad())
            return created;
        UaUInt32Array ids;
        for (const OpcUa_MonitoredItemCreateResult& result : m_results)
            if (!OpcUa_IsBad(result.StatusCode))
                static_cast<void>(ids.append(result.MonitoredItemId));
        if (ids.isEmpty())
            return created;
        UaStatusCodeArray deleted;
        return m_subscription->deleteMonitoredItems(settings, ids, deleted, diagnostics);
    }
    quint32 settle(Settings&) override
    {
        return countBad(
            m_results, [](const OpcUa_MonitoredItemCreateResult& result) { return result.StatusCode; });
    }
    void finish(Settings& settings) override
    {
        if (m_subscription)
            static_cast<void>(m_session->deleteSubscription(settings, &m_subscription));
    }

private:
    void subscriptionStatusChanged(OpcUa_UInt32, const UaStatus&) override {}
    void dataChange(OpcUa_UInt32, UaMonitoredItemNotifications&, UaDiagnosticInfos&) override {}
    void newEvents(OpcUa_UInt32, UaEventFieldLists&) override {}

    const std::shared_ptr<UaClientSdk::UaSession> m_session;
    UaClientSdk::UaSubscription* m_subscription = nullptr;
    UaMonitoredItemCreateRequests m_requests;
    UaMonitoredItemCreateResults m_results;
};
} // namespace

std::unique_ptr<QlumProbe> qlumMakeProbe(const QlumMeasurementPlan& plan, QlumSessionServices& services)
{
    switch (plan.kind) {
    case QlumMeasuredKind::Read:
        return std::make_unique<ReadProbe>(plan, services);
    case QlumMeasuredKind::Write:
        return std::make_unique<WriteProbe>(plan, services);
    case QlumMeasuredKind::Browse:
        return std::make_unique<BrowseProbe>(plan, services);
    case QlumMeasuredKind::TranslatePaths:
        return std::make_unique<TranslateProbe>(plan, services);
    case QlumMeasuredKind::ReadRegistered:
        return std::make_unique<RegisteredProbe>(plan, services);
    case QlumMeasuredKind::Call:
        return std::make_unique<CallProbe>(plan, services);
    case QlumMeasuredKind::MonitoredItems:
        if (auto session = services.session())
            return std::make_unique<ItemsProbe>(plan, std::move(session));
        return nullptr;
    case QlumMeasuredKind::Session:
    case QlumMeasuredKind::Notifications:
        break;
    }
    return nullptr;
}
