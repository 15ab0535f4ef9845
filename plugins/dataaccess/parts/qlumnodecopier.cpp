#include <plugins/dataaccess/parts/qlumnodecopier.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/parts/qlumpathreader.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uasession.h>

#include <QApplication>
#include <QClipboard>

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

namespace {
constexpr QlumCopyCommand commands[] = {
    {QlumCopyFormat::NodeIdsByIndex, "copyIdsByIndex",
     QT_TRANSLATE_NOOP("QlumNodeCopier", "Node Ids (&Index)"),
     QT_TRANSLATE_NOOP("QlumNodeCopier", "A line for each node: ns=2;s=Pump")},
    {QlumCopyFormat::NodeIdsByUri, "copyIdsByUri", QT_TRANSLATE_NOOP("QlumNodeCopier", "Node Ids (&URI)"),
     QT_TRANSLATE_NOOP("QlumNodeCopier", "A line for each node, for every server with that namespace: "
                                         "nsu=urn:plant;s=Pump")},
    {QlumCopyFormat::PathsByIndex, "copyPathsByIndex",
     QT_TRANSLATE_NOOP("QlumNodeCopier", "&Browse Paths (Index)"),
     QT_TRANSLATE_NOOP("QlumNodeCopier", "A line for each node: /Objects/2:Plant/2:Pump")},
    {QlumCopyFormat::PathsByUri, "copyPathsByUri", QT_TRANSLATE_NOOP("QlumNodeCopier", "Browse &Paths (URI)"),
     QT_TRANSLATE_NOOP("QlumNodeCopier", "A line for each node, for every server with these namespaces")},
    {QlumCopyFormat::Csv, "copyCsv", QT_TRANSLATE_NOOP("QlumNodeCopier", "&CSV"),
     QT_TRANSLATE_NOOP("QlumNodeCopier",
                       "A table with nodes, values, statuses and times, which can be loaded again as a list "
                       "of nodes or of new values")},
    {QlumCopyFormat::Json, "copyJson", QT_TRANSLATE_NOOP("QlumNodeCopier", "&JSON"),
     QT_TRANSLATE_NOOP("QlumNodeCopier", "An array of objects with nodes and values")},
    {QlumCopyFormat::Python, "copyPython", QT_TRANSLATE_NOOP("QlumNodeCopier", "P&ython Script (asyncua)"),
     QT_TRANSLATE_NOOP("QlumNodeCopier",
                       "A script that reads the nodes; user and password are to be filled in")},
    {QlumCopyFormat::Telegraf, "copyTelegraf", QT_TRANSLATE_NOOP("QlumNodeCopier", "&Telegraf Configuration"),
     QT_TRANSLATE_NOOP("QlumNodeCopier",
                       "The nodes as an input of Telegraf; user and password are to be filled in")},
};

using Places = std::vector<QlumNodeCopier::Wanted*>;

// Of those that are variables; others have none of it.
UaStatus readValues(QlumJob& job, QlumSessionServices& session, const Places& places)
{
    constexpr std::size_t atOnce = 1000;
    UaStatus status;
    for (std::size_t begin = 0; begin < places.size() && status.isNotBad(); begin += atOnce) {
        const std::size_t count = std::min(atOnce, places.size() - begin);
        UaReadValueIds nodes(static_cast<OpcUa_UInt32>(2 * count));
        for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
            static_cast<void>(places[begin + i / 2]->node.nodeId.copyTo(&nodes[i].NodeId));
            nodes[i].AttributeId = i % 2 == 0 ? OpcUa_Attributes_Value : OpcUa_Attributes_DataType;
        }
        UaClientSdk::ServiceSettings settings = job.serviceSettings();
        UaDataValues values;
        status = job.isCancelled() ? UaStatus(OpcUa_BadRequestCancelledByClient)
                                   : session.read(settings, 0, OpcUa_TimestampsToReturn_Both, nodes, values);
        for (OpcUa_UInt32 i = 0; i + 1 < values.length() && values.length() == nodes.length(); i += 2) {
            QlumCopiedNode& node = places[begin + i / 2]->node;
            if (OpcUa_IsBad(values[i + 1].StatusCode))
                continue; // no variable
            const UaNodeId type = UaVariant(values[i + 1].Value).toNodeId();
            node.dataType =
                session.types() != nullptr ? session.types()->typeName(type) : toQString(type.toXmlString());
            node.hasValue = true;
            node.value.attach(&values[i]);
        }
    }
    return status;
}

UaStatus readPaths(QlumJob& job, QlumSessionServices& session, const Places& places)
{
    std::vector<UaNodeId> ids;
    for (const QlumNodeCopier::Wanted* one : places)
        ids.push_back(one->node.nodeId);
    std::vector<QlumNodePath> paths;
    const UaStatus status = qlumReadPaths(job, session, ids, paths);
    for (std::size_t i = 0; i < paths.size(); ++i)
        places[i]->node.path = std::move(paths[i]);
    return status;
}

// A server that cannot be asked leaves its nodes as they are.
UaStatus complete(QlumJob& job, const QlumSessionServicesProvider& services,
                  std::vector<QlumNodeCopier::Wanted>& wanted)
{
    std::map<unsigned int, Places> byServer, toRead;
    for (QlumNodeCopier::Wanted& one : wanted) {
        byServer[one.serverId].push_back(&one);
        if (one.isToBeRead)
            toRead[one.serverId].push_back(&one);
    }
    UaStatus status;
    for (const auto& [serverId, places] : byServer) {
        const std::shared_ptr<QlumSessionServices> session = services(serverId);
        UaStatus one = session ? readPaths(job, *session, places) : UaStatus(OpcUa_BadNotConnected);
        if (one.isNotBad())
            one = readValues(job, *session, toRead[serverId]);
        if (one.isBad())
            status = one;
    }
    return status;
}
} // namespace

std::span<const QlumCopyCommand> qlumCopyCommands()
{
    return commands;
}

QlumNodeCopier::QlumNodeCopier(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                               QlumJobPool& pool, Tell tell, QObject* parent)
    : QObject(parent), m_application(application), m_services(std::move(services)), m_pool(pool),
      m_tell(std::move(tell))
{
}

QlumCopiedNode QlumNodeCopier::ofServer(QlumApplicationInterface& application,
                                        const QlumSessionServicesProvider& services, unsigned int serverId)
{
    QlumCopiedNode node;
    const std::shared_ptr<QlumSessionServices> session = services ? services(serverId) : nullptr;
    node.server = application.serverName(serverId);
    node.namespaces = application.namespaceTable(serverId);
    if (session && session->session())
        node.serverUrl = toQString(session->session()->currentlyUsedEndpointUrl());
    return node;
}

void QlumNodeCopier::copy(std::vector<Wanted> wanted, QlumCopyFormat format)
{
    const auto textOf = [format](std::vector<Wanted>& all) {
        std::vector<QlumCopiedNode> nodes;
        nodes.reserve(all.size());
        for (Wanted& one : all)
            nodes.push_back(std::move(one.node));
        return qlumCopyNodes(nodes, format);
    };
    if (wanted.empty())
        return;
    if (!qlumNeedsPaths(format)) {
        QApplication::clipboard()->setText(textOf(wanted));
        return;
    }
    const unsigned int server = wanted.front().serverId;
    const bool isOne = std::all_of(wanted.begin(), wanted.end(),
                                   [server](const Wanted& one) { return one.serverId == server; });
    const auto function = [this, textOf, wanted = std::move(wanted),
                           services = m_services](QlumJob& job) mutable {
        const UaStatus status = complete(job, services, wanted);
        if (job.isCancelled())
            return;
        job.post([this, text = textOf(wanted), status] {
            QApplication::clipboard()->setText(text);
            m_tell(status.isBad() ? tr("Browse paths or values of some nodes are missing.") : QString(),
                   status.isBad() ? qlumResultInWords(status) : QString());
        });
    };
    m_pool.add({tr("Reading what is to be copied"), isOne ? server : qlumNoServer}, function);
}

void QlumNodeCopier::copyNodes(std::span<const QlumToolNode> nodes, QlumCopyFormat format)
{
    std::map<unsigned int, QlumCopiedNode> ofServers;
    std::vector<Wanted> wanted;
    for (const QlumToolNode& node : nodes) {
        const auto [server, isNew] = ofServers.try_emplace(node.serverId);
        if (isNew)
            server->second = ofServer(m_application, m_services, node.serverId);
        const bool mayHaveValue =
            node.nodeClass == OpcUa_NodeClass_Variable || node.nodeClass == OpcUa_NodeClass_Unspecified;
        Wanted& one = wanted.emplace_back(Wanted{node.serverId, server->second, mayHaveValue});
        one.node.nodeId = node.nodeId;
        one.node.displayName = node.name;
    }
    copy(std::move(wanted), format);
}
