#include <plugins/dataaccess/parts/qlumcopypart.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/parts/qlumpathreader.h>
#include <plugins/dataaccess/parts/qlumworkcommand.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uasession.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLatin1String>
#include <QList>
#include <QString>

#include <map>
#include <memory>
#include <utility>

namespace {
const QLatin1String copyTopic("copy");

struct CopyCommand
{
    QlumCopyFormat format;
    const char* name;
    const char* text;
    const char* toolTip;
};
constexpr CopyCommand copyCommands[] = {
    {QlumCopyFormat::NodeIdsByIndex, "copyIdsByIndex", QT_TRANSLATE_NOOP("QlumCopyPart", "Node Ids (&Index)"),
     QT_TRANSLATE_NOOP("QlumCopyPart", "A line for each row: ns=2;s=Pump")},
    {QlumCopyFormat::NodeIdsByUri, "copyIdsByUri", QT_TRANSLATE_NOOP("QlumCopyPart", "Node Ids (&URI)"),
     QT_TRANSLATE_NOOP("QlumCopyPart", "A line for each row, for every server with that namespace: "
                                       "nsu=urn:plant;s=Pump")},
    {QlumCopyFormat::PathsByIndex, "copyPathsByIndex",
     QT_TRANSLATE_NOOP("QlumCopyPart", "&Browse Paths (Index)"),
     QT_TRANSLATE_NOOP("QlumCopyPart", "A line for each row: /Objects/2:Plant/2:Pump")},
    {QlumCopyFormat::PathsByUri, "copyPathsByUri", QT_TRANSLATE_NOOP("QlumCopyPart", "Browse &Paths (URI)"),
     QT_TRANSLATE_NOOP("QlumCopyPart", "A line for each row, for every server with these namespaces")},
    {QlumCopyFormat::Csv, "copyCsv", QT_TRANSLATE_NOOP("QlumCopyPart", "&CSV"),
     QT_TRANSLATE_NOOP("QlumCopyPart",
                       "A table with nodes, values, statuses and times, which can be loaded again "
                       "as a list of nodes or of new values")},
    {QlumCopyFormat::Json, "copyJson", QT_TRANSLATE_NOOP("QlumCopyPart", "&JSON"),
     QT_TRANSLATE_NOOP("QlumCopyPart", "An array of objects with nodes and values")},
    {QlumCopyFormat::Python, "copyPython", QT_TRANSLATE_NOOP("QlumCopyPart", "P&ython Script (asyncua)"),
     QT_TRANSLATE_NOOP("QlumCopyPart",
                       "A script that reads the nodes; user and password are to be filled in")},
    {QlumCopyFormat::Telegraf, "copyTelegraf", QT_TRANSLATE_NOOP("QlumCopyPart", "&Telegraf Configuration"),
     QT_TRANSLATE_NOOP("QlumCopyPart",
                       "The nodes as an input of Telegraf; user and password are to be filled in")},
};

// A server that cannot be asked leaves its paths empty.
UaStatus readPaths(QlumJob& job, const QlumSessionServicesProvider& services, unsigned int serverId,
                   const std::vector<unsigned int>& servers, std::vector<QlumCopiedNode>& nodes)
{
    std::vector<UaNodeId> ids;
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < nodes.size(); ++i)
        if (servers[i] == serverId) {
            ids.push_back(nodes[i].nodeId);
            places.push_back(i);
        }
    std::vector<QlumNodePath> paths;
    const std::shared_ptr<QlumSessionServices> session = services(serverId);
    const UaStatus status =
        session ? qlumReadPaths(job, *session, ids, paths) : UaStatus(OpcUa_BadNotConnected);
    for (std::size_t i = 0; i < paths.size(); ++i)
        nodes[places[i]].path = std::move(paths[i]);
    return status;
}
} // namespace

QlumCopyPart::QlumCopyPart(QlumDaHost& host) : m_host(host)
{
    QList<QAction*> actions;
    for (const CopyCommand& command : copyCommands) {
        actions.append(qlumWorkCommand(
            this, command.name, tr(command.text), tr(command.toolTip),
            [this, format = command.format] { copy(format); }));
    }
    host.addCommands(tr("&Copy As"), actions);
}

std::vector<QlumCopiedNode> QlumCopyPart::chosen(std::vector<unsigned int>& servers) const
{
    std::vector<quint32> keys = m_host.selectedKeys();
    if (keys.empty())
        keys = m_host.shownKeys();
    std::map<unsigned int, QlumCopiedNode> ofServers;
    std::vector<QlumCopiedNode> nodes;
    for (const quint32 key : keys) {
        const QlumDataItem* item = m_host.model().find(key);
        if (item == nullptr || item->nodeId.isNull())
            continue;
        const auto [server, isNew] = ofServers.try_emplace(item->serverId);
        if (isNew) {
            const std::shared_ptr<QlumSessionServices> session = m_host.services()(item->serverId);
            server->second.server = m_host.application().serverName(item->serverId);
            server->second.namespaces = m_host.application().namespaceTable(item->serverId);
            if (session && session->session())
                server->second.serverUrl = toQString(session->session()->currentlyUsedEndpointUrl());
        }
        QlumCopiedNode& node = nodes.emplace_back(server->second);
        servers.push_back(item->serverId);
        node.nodeId = item->nodeId;
        node.indexRange = item->indexRange;
        node.fieldPath = item->fieldPath;
        node.displayName = item->displayName;
        node.dataType = item->dataTypeName;
        node.unit = item->unit;
        node.hasValue = item->received != 0;
        node.value = item->value;
        node.value.setValue(m_host.model().shownValue(*item));
    }
    return nodes;
}

void QlumCopyPart::copy(QlumCopyFormat format)
{
    std::vector<unsigned int> servers;
    std::vector<QlumCopiedNode> nodes = chosen(servers);
    if (nodes.empty() || !qlumNeedsPaths(format)) {
        if (!nodes.empty())
            QApplication::clipboard()->setText(qlumCopyNodes(nodes, format));
        return;
    }
    const auto function = [this, nodes = std::move(nodes), servers = std::move(servers), format,
                           services = m_host.services()](QlumJob& job) mutable {
        UaStatus status;
        std::map<unsigned int, bool> done;
        for (const unsigned int server : servers)
            if (!std::exchange(done[server], true))
                if (const UaStatus one = readPaths(job, services, server, servers, nodes); one.isBad())
                    status = one;
        if (job.isCancelled())
            return;
        QString text = qlumCopyNodes(nodes, format);
        job.post([this, text = std::move(text), status] {
            QApplication::clipboard()->setText(text);
            if (status.isBad())
                m_host.tell({QlumMessage::Warning,
                             copyTopic,
                             tr("The browse paths of some rows are missing."),
                             qlumResultInWords(status),
                             {},
                             nullptr});
            else
                m_host.dismiss(copyTopic);
        });
    };
    m_host.pool().add({tr("Reading browse paths to be copied"), qlumNoServer}, function);
}
