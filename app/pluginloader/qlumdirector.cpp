#include <app/pluginloader/qlumdirector.h>

#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdatatypeeventinterface.h>
#include <app/api/qlumplugininterface.h>
#include <app/pluginloader/qlumpluginloader.h>
#include <uabase/values/uanodeid.h>

#include <QMap>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QStringList>

QlumDirector::QlumDirector(const QlumPluginLoader* loader) : m_loader(loader) {}

template <typename Events, typename Call>
void QlumDirector::forEach(Call&& call)
{
    const QStringList keys = m_loader->filenames();
    for (const QString& key : keys)
        if (auto* events = qobject_cast<Events*>(m_loader->plugin(key)))
            call(*events);
}

template <typename Call>
void QlumDirector::forEachInGroup(QSettings& settings, Call&& call)
{
    const QStringList keys = m_loader->filenames();
    for (const QString& key : keys) {
        QObject* instance = m_loader->plugin(key);
        auto* plugin = qobject_cast<QlumPluginInterface*>(instance);
        auto* events = qobject_cast<QlumAppEventInterface*>(instance);
        if (!plugin || !events)
            continue;
        settings.beginGroup(plugin->name());
        call(*events);
        settings.endGroup();
    }
}

void QlumDirector::serverSelectionChanged(unsigned int serverId)
{
    forEach<QlumAppEventInterface>(
        [&](QlumAppEventInterface& plugin) { plugin.serverSelectionChanged(serverId); });
}

void QlumDirector::selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                                    UaNodeId* parentId)
{
    forEach<QlumAppEventInterface>([&](QlumAppEventInterface& plugin) {
        plugin.selectionChanged(serverId, nodeId, nodeClass, parentId);
    });
}

void QlumDirector::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                        const NamespaceMap& namespaceMap)
{
    forEach<QlumAppEventInterface>(
        [&](QlumAppEventInterface& plugin) { plugin.sessionStatusChanged(serverId, status, namespaceMap); });
}

void QlumDirector::sessionRemoved(unsigned int serverId)
{
    forEach<QlumAppEventInterface>([&](QlumAppEventInterface& plugin) { plugin.sessionRemoved(serverId); });
}

void QlumDirector::saveSettings(QSettings& settings)
{
    forEachInGroup(
        settings, [&](QlumAppEventInterface& plugin) { plugin.saveSettings(settings); });
}

void QlumDirector::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    forEachInGroup(
        settings, [&](QlumAppEventInterface& plugin) { plugin.loadSettings(settings, serverIdMap); });
}

void QlumDirector::serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, unsigned char change)
{
    forEach<QlumAppEventInterface>(
        [&](QlumAppEventInterface& plugin) { plugin.serverModelChanged(serverId, nodeId, change); });
}

void QlumDirector::dataTypesLoaded(unsigned int serverId)
{
    forEach<QlumDataTypeEventInterface>(
        [&](QlumDataTypeEventInterface& plugin) { plugin.dataTypesLoaded(serverId); });
}
