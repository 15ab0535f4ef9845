#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/addressspace/qlumaddressspacemodelinterface.h>
#include <plugins/addressspace/qlumaddressspacenode.h>
#include <plugins/addressspace/qlumbrowsecaller.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/models/qlumtreemodel.h>

#include <QAbstractItemModel>
#include <QCollator>
#include <QDeadlineTimer>
#include <QMimeData>
#include <QModelIndex>
#include <QModelIndexList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <functional>
#include <list>
#include <memory>
#include <vector>

class QComboBox;
class QTimer;

/// The address space below one node of a server as a lazily browsed tree. Each service call blocks its caller
/// under a wait cursor; one that takes long shows that it does and can be cancelled, and what else is asked
/// of the model meanwhile is done afterwards. A node that needs many calls is browsed in slices between which
/// the event loop runs, shows its progress and can be cancelled. The root row is hidden until it has
/// children. While the connection is lost nothing is asked for: the tree stays, and what would need the
/// server is refused in the log.
class QlumAddressSpaceModel : public QlumTreeModel<QlumAddressSpaceNode>,
                              public QlumAddressSpaceModelInterface
{
    Q_OBJECT
public:
    /// The whole address space. The combo box, which may be null, chooses a namespace to highlight. Without
    /// services of its own the model uses those of the server's session.
    QlumAddressSpaceModel(QlumServerNode* server, QComboBox* highlightCombo, QObject* parent = nullptr,
                          std::shared_ptr<QlumSessionServices> services = {});
    /// The part below startNode, for dialogs.
    QlumAddressSpaceModel(QlumServerNode* server, const UaNodeId* startNode, QObject* parent = nullptr,
                          std::shared_ptr<QlumSessionServices> services = {});
    ~QlumAddressSpaceModel() override;

    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex& index = QModelIndex()) const override;
    [[nodiscard]] bool canFetchMore(const QModelIndex& index) const override;
    void fetchMore(const QModelIndex& index) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;

    /// QlumAddressSpaceModelInterface
    QAbstractItemModel* itemModel() override { return this; }
    /// For an invalid index the root is browsed.
    void rebrowseNodeIndex(const QModelIndex& index) override;
    void serverModelChanged(const UaNodeId& affectedNode, unsigned char verb) override;
    bool nodeInfo(const QModelIndex& index, UaNodeId& nodeId, OpcUa_NodeClass& nodeClass,
                  UaNodeId& parentId) const override;
    /// Browses upward from a node that is not in the tree, then downward; each takes its calls.
    QModelIndex reveal(const UaNodeId& nodeId) override;
    void setReadingOrder(bool on) override;
    void setObserver(Observer observer) override;

    /// Browses again and adds what is new; for an invalid index the root.
    void browseNodeIndex(const QModelIndex& index);
    /// The node behind an index; null for an invalid one.
    [[nodiscard]] const QlumAddressSpaceNode* node(const QModelIndex& index) const { return nodeAt(index); }
    [[nodiscard]] QlumServerNode* server() const { return m_server; }
    /// True while continuation points are being followed.
    [[nodiscard]] bool isBrowsing() const { return !m_tasks.empty(); }
    /// -1 when none is.
    [[nodiscard]] int highlightedNamespace() const { return m_highlightedNamespace; }

public slots:
    void sltSetHighlightNamespace(int comboIndex);
    void sltServerNodeChanged(QlumProjectNode* node, QWidget* widget, QlumConnectionStatus status,
                              unsigned int serverId);

protected:
    [[nodiscard]] QVariant cell(const QlumAddressSpaceNode& node, int column, int role) const override;

private:
    struct Task; ///< a node whose continuation points are being followed
    struct Way
    {
        QlumAddressSpaceNode* start = nullptr; ///< in the tree
        std::vector<UaNodeId> below;           ///< from one to the next
    };

    void start();
    void connectHighlighting();

    [[nodiscard]] bool putOff(std::function<void()> action);
    void callEnded(bool answered);
    void stopAskingFor(QlumAddressSpaceNode* node);
    void browseNode(QlumAddressSpaceNode* node);
    [[nodiscard]] bool refuse(const QlumAddressSpaceNode& node) const;
    [[nodiscard]] UaClientSdk::BrowseContext browseContext(const QlumAddressSpaceNode& node) const;
    void runTasks(int milliseconds);
    [[nodiscard]] bool runTask(Task& task, int milliseconds);
    [[nodiscard]] bool browseNext(Task& task);
    void takeFailure(Task& task, const UaByteString& point, const UaStatus& status);
    [[nodiscard]] bool mayContinue(Task& task);
    void finish(Task& task);
    bool release(Task& task);
    void dropTasks(const QlumAddressSpaceNode* node);
    int addNodes(QlumAddressSpaceNode* parent, UaReferenceDescriptions& references);
    void sortChildren(QlumAddressSpaceNode* node) const;
    void sortNode(QlumAddressSpaceNode* node);
    void sortAll(QlumAddressSpaceNode* node);
    void removeChildren(QlumAddressSpaceNode* node);
    void refreshNodeId(QlumAddressSpaceNode* node, const UaNodeId& id);

    [[nodiscard]] Way wayTo(const UaNodeId& nodeId, const QDeadlineTimer& deadline);
    [[nodiscard]] std::vector<UaNodeId> parentsOf(const UaNodeId& nodeId);
    [[nodiscard]] QlumAddressSpaceNode* childOf(QlumAddressSpaceNode* node, const UaNodeId& id,
                                                const QDeadlineTimer& deadline);

    void followNamespaces(const NamespaceMap& namespaces);
    void followNamespaces(QlumAddressSpaceNode* node, const NamespaceMap& namespaces);
    void fillHighlightCombo(const QStringList& namespaces);
    void emitNamespaceChanged(QlumAddressSpaceNode* node, int oldNamespace, int newNamespace);
    [[nodiscard]] QVariant decoration(const QlumAddressSpaceNode& node) const;

    QPointer<QlumServerNode> m_server;
    QPointer<QComboBox> m_highlightCombo;
    std::shared_ptr<QlumSessionServices> m_services;
    std::unique_ptr<QlumAddressSpaceNode> m_root;
    unsigned int m_serverId;
    QlumLog m_log;
    int m_highlightedNamespace = -1;
    std::unique_ptr<QCollator> m_collator; ///< null for the order of code units
    QlumBrowseCaller m_caller;
    bool m_wasCancelled = false; ///< the last call, by the user
    std::vector<std::function<void()>> m_putOff;
    QlumAddressSpaceNode* m_inVain = nullptr; ///< waited for, until the event loop runs again
    std::list<Task> m_tasks;
    QTimer* m_timer; ///< runs the next slice of the tasks
    Observer m_observer;
};
