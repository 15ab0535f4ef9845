#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumkeptsettings.h>
#include <app/api/qlumprojectnode.h>
#include <app/project/qlumserverregistry.h>
#include <app/project/qlumstorableobject.h>
#include <opcua/opcua_platform.h>
#include <uawidgets/models/qlumtreemodel.h>

#include <QList>
#include <QMap>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <memory>

class QlumProjectNodeDocument;
class QlumServerNode;
class UaNodeId;

template <>
struct QlumTreeAccess<QlumProjectNode>
{
    using Node = QlumProjectNode;
    static Node* parent(const Node& node) { return node.parentNode(); }
    static Node* child(const Node& node, int row) { return node.childNodes().value(row); }
    static int childCount(const Node& node) { return node.childNodes().size(); }
    static int row(const Node& node) { return node.row(); }
};

/// The project's tree: a root "Project" with the folders "Servers" and "Documents". Owns all nodes.
class QlumProjectModel : public QlumTreeModel<QlumProjectNode>, public QlumStorableObject
{
    Q_OBJECT
public:
    /// What a server is set to, as a number of QlumServerRole; invalid for other nodes.
    static constexpr int serverRole = Qt::UserRole + 1;

    explicit QlumProjectModel(QObject* parent = nullptr);
    ~QlumProjectModel() override;

    /// Appends the node and takes it; announcements of the node are passed on from now on.
    QlumServerNode* addServer(std::unique_ptr<QlumServerNode> server);
    QlumProjectNodeDocument* addDocument(std::unique_ptr<QlumProjectNodeDocument> document);
    /// Deletes the node; disconnecting it and telling the plugins is the caller's duty.
    void removeServer(QlumServerNode* server);
    void removeDocument(QlumProjectNodeDocument* document);

    [[nodiscard]] QlumServerNode* findServer(unsigned int serverId) const;
    [[nodiscard]] QlumProjectNodeDocument* findDocument(const QString& name) const;
    [[nodiscard]] QlumProjectNodeDocument* findDocument(const QWidget* widget) const;
    [[nodiscard]] QList<QlumServerNode*> servers() const;
    [[nodiscard]] QList<QlumProjectNodeDocument*> documents() const;
    [[nodiscard]] const QlumServerRegistry& registry() const { return m_registry; }

    /// Documents that no plugin here knows, by their names: saved again as they were read.
    [[nodiscard]] QMap<QString, QlumKeptSettings>& unknownDocuments() { return m_unknownDocuments; }

    /// The tree itself is kept in project files; these two keep nothing.
    void load() override {}
    void store() override {}

    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    void documentNodeChanged(QlumProjectNode* node, QWidget* widget, const QString& name);
    void serverNodeChanged(QlumProjectNode* node, QWidget* widget, QlumConnectionStatus status,
                           unsigned int serverId, const NamespaceMap& namespaceMap);
    void serverRenamed(unsigned int serverId);
    void serverRoleChanged(unsigned int serverId);
    void serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, OpcUa_Byte change);
    void dataTypesLoaded(unsigned int serverId);

protected:
    QVariant cell(const QlumProjectNode& node, int column, int role) const override;

private:
    void append(QlumProjectNode* folder, QlumProjectNode* node);
    void remove(QlumProjectNode* folder, QlumProjectNode* node);
    void sltNodeChanged(QlumProjectNode* node);

    std::unique_ptr<QlumProjectNode> m_root;
    QlumProjectNode* m_servers;
    QlumProjectNode* m_documents;
    QlumServerRegistry m_registry;
    QMap<QString, QlumKeptSettings> m_unknownDocuments;
};
