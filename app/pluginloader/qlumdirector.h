#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdatatypeeventinterface.h>
#include <uabase/values/uanodeid.h>

#include <QMap>
#include <QSettings>

class QlumPluginLoader;

/// Passes what happens in the application on to every plugin that wants to hear of it, in the order of
/// loading.
class QlumDirector : public QlumAppEventInterface, public QlumDataTypeEventInterface
{
public:
    explicit QlumDirector(const QlumPluginLoader* loader);

    void serverSelectionChanged(unsigned int serverId) override;
    void selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                          UaNodeId* parentId) override;
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override;
    void sessionRemoved(unsigned int serverId) override;
    /// Each plugin gets a group with its name.
    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;
    void serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, unsigned char change) override;
    void dataTypesLoaded(unsigned int serverId) override;

private:
    template <typename Events, typename Call>
    void forEach(Call&& call);
    template <typename Call>
    void forEachInGroup(QSettings& settings, Call&& call);

    const QlumPluginLoader* m_loader;
};
