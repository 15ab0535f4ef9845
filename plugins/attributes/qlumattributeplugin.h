#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSettings>
#include <QString>

#include <memory>

class QAction;
class QDockWidget;
class QToolBar;
class QlumAttributeModel;
class QlumAttributeView;
class QlumJobPool;

/// Shows and edits the attributes of the selected node in a dock window.
class QlumAttributePlugin : public QObject, public QlumPluginInterface, public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumAppEventInterface)
public:
    QlumAttributePlugin();
    /// With services other than those of the application's sessions.
    explicit QlumAttributePlugin(QlumSessionServicesProvider services);
    ~QlumAttributePlugin() override;

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

    void selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                          UaNodeId* typeDefinition) override;
    void sessionRemoved(unsigned int serverId) override;
    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    [[nodiscard]] QlumAttributeModel* model() const { return m_model; }
    [[nodiscard]] QDockWidget* dock() const { return m_dock; }

signals:
    void sigClear();

public slots:
    void sltRefresh();
    void sltSetCustomNodeId();

private slots:
    void sltOnOff(bool on);

private:
    void createActions();
    void createDock();
    QAction* createAction(const QString& name, const QString& icon, const QString& text, const QString& help);
    void showNode(unsigned int serverId, const UaNodeId& nodeId);
    void log(int level, const QString& text, unsigned int serverId) const;

    const QlumSessionServicesProvider m_services;
    QlumApplicationInterface* m_app = nullptr;
    std::unique_ptr<QlumJobPool> m_pool;
    QlumAttributeModel* m_model = nullptr;
    QlumAttributeView* m_view = nullptr;
    QPointer<QDockWidget> m_dock; ///< owned by the main window once it is docked
    QAction* m_onOff = nullptr;
    QAction* m_refresh = nullptr;
    QAction* m_expandAll = nullptr;
    QAction* m_collapseAll = nullptr;
    QAction* m_customNodeId = nullptr;
    unsigned int m_serverId = 0xFFFFFFFFu;
    UaNodeId m_nodeId;
    OpcUa_NodeClass m_nodeClass = OpcUa_NodeClass_Unspecified;
};
