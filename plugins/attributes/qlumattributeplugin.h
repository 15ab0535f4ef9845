#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdatatypeeventinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumcomparisonwindow.h>
#include <plugins/attributes/qlumlivevalue.h>
#include <plugins/attributes/qlumvisitednodes.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumfollowednode.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSettings>
#include <QString>

#include <memory>
#include <optional>

class QDockWidget;
class QToolBar;
class QlumAttributeView;
class QModelIndex;

/// Shows and edits the attributes of the selected node in a dock window.
class QlumAttributePlugin : public QObject,
                            public QlumPluginInterface,
                            public QlumAppEventAdapter,
                            public QlumDataTypeEventInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumAppEventInterface QlumDataTypeEventInterface)
public:
    QlumAttributePlugin();
    /// With services other than those of the application's sessions.
    explicit QlumAttributePlugin(QlumSessionServicesProvider services);
    ~QlumAttributePlugin() override;

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

    void selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                          UaNodeId* parentId) override;
    void serverSelectionChanged(unsigned int serverId) override;
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override;
    void sessionRemoved(unsigned int serverId) override;
    void dataTypesLoaded(unsigned int serverId) override;
    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    /// What the dock shows; null before init() and after shutdown().
    [[nodiscard]] QlumAttributeModel* model() const { return m_model; }
    /// Null before init(), after shutdown() and when the main window has gone.
    [[nodiscard]] QDockWidget* dock() const { return m_dock; }

signals:
    /// The server of the node that is shown has gone.
    void sigClear();

public slots:
    /// Reads the selected node again, in the background; nothing while none is selected.
    void sltRefresh();
    /// Asks the user for a node and shows it; it counts as selected as soon as the server knows it.
    void sltSetCustomNodeId();

    /// Shows the node that was shown before.
    void sltBack();
    /// Undoes sltBack().
    void sltForward();
    /// Writes what was there before the last write.
    void sltUndoWrite();
    /// Edits the current row's value in a window of its own.
    void sltEditInWindow();

private slots:
    void sltOnOff(bool on);
    void sltLive(bool on);
    void sltCopyUriNodeId();
    void sltCopyBrowsePath();
    void sltKeepNode();
    void sltCompareNodes();
    void sltShowLive(const UaDataValue& value);
    void sltNodeClassRead(unsigned int serverId, const UaNodeId& nodeId, OpcUa_NodeClass nodeClass);
    void sltWriteFailed(const QString& why);

private:
    /// A node and its server; none while there is no server.
    struct Node
    {
        unsigned int serverId = qlumNoServer;
        UaNodeId nodeId;

        [[nodiscard]] bool isNone() const { return serverId == qlumNoServer || nodeId.isNull(); }
        friend bool operator==(const Node&, const Node&) = default;
    };

    void registerSettings();
    void createActions();
    void createDock();
    void tellNote(const QString& what, const QString& why);

    [[nodiscard]] bool isUp(unsigned int serverId) const;
    [[nodiscard]] Node selected() const;
    [[nodiscard]] Node shown() const;
    [[nodiscard]] Node named() const;
    void showSelected();
    void showState();
    void showHeading(const Node& node);
    void dismiss(const QString& topic);
    [[nodiscard]] QlumAttributeModel::Standing standing(const Node& node) const;
    [[nodiscard]] QString emptyText() const;

    void readAgain();
    void readBack(bool isSelected);
    void readSelected();
    void read(const Node& node, std::optional<OpcUa_NodeClass> nodeClass);
    void takeResult(const Node& node, OpcUa_NodeClass nodeClass, const QList<int>& attributeIds,
                    UaDataValues& results);
    void readFailed(const Node& node, const QString& why);
    void readEnded(const Node& node, QlumWorkEnd end);
    void stopReading();
    void readOnReturn();
    void readWhatIsDue();
    void forgetOldIds(unsigned int serverId);
    void visit(const QlumVisitedNode& node);
    [[nodiscard]] QlumComparisonWindow::Node shownNode() const;
    void watchShown();
    void showCommands();
    void editInWindow(const QModelIndex& index);

    const QlumSessionServicesProvider m_services;
    QlumApplicationInterface* m_app = nullptr;
    std::unique_ptr<QlumJobPool> m_pool;
    QlumAttributeModel* m_model = nullptr;
    QlumAttributeView* m_view = nullptr;
    QPointer<QlumViewHeading> m_heading; ///< in the dock, as is the next
    QPointer<QlumMessageBar> m_messages;
    QPointer<QDockWidget> m_dock; ///< owned by the main window once it is docked
    QlumActionTable m_actions;
    QlumVisitedNodes m_visited;
    std::unique_ptr<QlumLiveValue> m_live;
    QlumFollowedNode m_followed;
    Node m_named; ///< by the heading
    bool m_isReading = false;
    bool m_isOutdated = false;         ///< what is shown was not read since its server came back
    bool m_isDue = false;              ///< to be read when the user has ended editing
    QString m_failure;                 ///< why nothing is shown
    QlumComparisonWindow::Node m_kept; ///< for comparison
    Node m_custom;                     ///< chosen by its id, while its class is not known
};
