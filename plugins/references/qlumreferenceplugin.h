#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/references/qlumreference.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/qlumfollowednode.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>

#include <QHash>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSettings>
#include <QString>

#include <deque>
#include <memory>
#include <vector>

class QDockWidget;
class QlumReferenceModel;
class QlumReferenceView;

/// Shows the references of the selected node in a dock window. Nothing is read while the window cannot be
/// seen.
class QlumReferencePlugin : public QObject, public QlumPluginInterface, public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumAppEventInterface)
public:
    QlumReferencePlugin();
    /// With services other than those of the application's sessions.
    explicit QlumReferencePlugin(QlumSessionServicesProvider services);
    ~QlumReferencePlugin() override;

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

    void selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                          UaNodeId* typeDefinition) override;
    void serverSelectionChanged(unsigned int serverId) override;
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override;
    void sessionRemoved(unsigned int serverId) override;
    void serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, unsigned char change) override;
    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    /// What the dock shows; null before init() and after shutdown().
    [[nodiscard]] QlumReferenceModel* model() const { return m_model; }
    /// Null before init(), after shutdown() and when the main window has gone.
    [[nodiscard]] QDockWidget* dock() const { return m_dock; }

public slots:
    /// Reads the references again, in the background; nothing while no node is selected.
    void sltRefresh();

private:
    void createDock();
    [[nodiscard]] QlumReferenceQuery wanted() const;
    void leave();
    void read();
    void ask(bool goOn);
    void readTypes(unsigned int serverId);
    void take(const QlumReferenceQuery& query, bool goOn, const UaStatus& status, bool hasMore,
              std::deque<QlumReference> references);
    void readFailed(const QlumReferenceQuery& query, bool goOn, const QString& why);
    void forget();
    void sltMore();
    void sltJump(const QlumReference& reference);
    void showState();
    [[nodiscard]] QString emptyText() const;

    const QlumSessionServicesProvider m_services;
    QlumApplicationInterface* m_app = nullptr;
    std::unique_ptr<QlumJobPool> m_pool;
    QlumReferenceModel* m_model = nullptr;
    QlumActionTable m_actions;
    QPointer<QDockWidget> m_dock;        ///< owned by the main window once it is docked
    QPointer<QlumViewHeading> m_heading; ///< in the dock, as are the next two
    QPointer<QlumMessageBar> m_messages;
    QPointer<QlumReferenceView> m_view;
    QlumFollowedNode m_followed;
    QlumReferenceQuery m_shown; ///< what the rows answer
    QlumJobPool::Ticket m_ticket = 0;
    std::shared_ptr<QlumReferenceRest> m_rest; ///< of what is shown or being read
    QHash<unsigned int, std::vector<QlumReferenceType>> m_types;
    bool m_isReading = false;
    bool m_hasMore = false;
    bool m_isOutdated = false; ///< what is shown was not read since its server came back
    bool m_isSeen = false;     ///< the window, by the user
    bool m_isDue = false;      ///< to be read when the window is seen
    QString m_failure;         ///< why nothing is shown
};
