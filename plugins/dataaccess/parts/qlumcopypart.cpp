#include <plugins/dataaccess/parts/qlumcopypart.h>

#include <plugins/dataaccess/parts/qlumworkcommand.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdataitem.h>

#include <QAction>
#include <QLatin1String>
#include <QList>
#include <QString>

#include <map>

namespace {
const QLatin1String copyTopic("copy");
}

QlumCopyPart::QlumCopyPart(QlumDaHost& host)
    : m_host(host), m_copier(host.application(), host.services(), host.pool(),
                             [this](const QString& what, const QString& why) {
                                 if (what.isEmpty())
                                     m_host.dismiss(copyTopic);
                                 else
                                     m_host.tell({QlumMessage::Warning, copyTopic, what, why, {}, nullptr});
                             })
{
    QList<QAction*> actions;
    for (const QlumCopyCommand& command : qlumCopyCommands())
        actions.append(qlumWorkCommand(this, command.name, QlumNodeCopier::tr(command.text),
                                       QlumNodeCopier::tr(command.toolTip),
                                       [this, format = command.format] { m_copier.copy(chosen(), format); }));
    host.addCommands(tr("&Copy As"), actions);
}

std::vector<QlumNodeCopier::Wanted> QlumCopyPart::chosen() const
{
    std::vector<quint32> keys = m_host.selectedKeys();
    if (keys.empty())
        keys = m_host.shownKeys();
    std::map<unsigned int, QlumCopiedNode> ofServers;
    std::vector<QlumNodeCopier::Wanted> wanted;
    for (const quint32 key : keys) {
        const QlumDataItem* item = m_host.model().find(key);
        if (item == nullptr || item->nodeId.isNull())
            continue;
        const auto [server, isNew] = ofServers.try_emplace(item->serverId);
        if (isNew)
            server->second =
                QlumNodeCopier::ofServer(m_host.application(), m_host.services(), item->serverId);
        wanted.push_back({item->serverId, server->second, false});
        QlumCopiedNode& node = wanted.back().node;
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
    return wanted;
}
