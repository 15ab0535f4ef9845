#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

class QTreeView;
class QlumAddressSpacePages;
class QlumDirector;
class QlumMainActions;
class QlumProjectModel;
struct QlumTavelinServices;

/// What the user does with servers, and what follows from a change of their state.
class QlumServerCommands : public QObject
{
    Q_OBJECT
public:
    struct Parts
    {
        QWidget* window;
        const QlumMainActions* actions;
        const QlumTavelinServices* services;
        QlumProjectModel* project;
        QTreeView* projectView;
        QlumAddressSpacePages* pages;
        QlumDirector* plugins;
    };

    explicit QlumServerCommands(const Parts& parts);

    /// Shows the server in the tree and listens to it.
    void serverAdded(QlumServerNode* server);
    /// Begins it; its page is made when it has ended well. When the user has commanded this very connect he
    /// is told if it fails.
    void connectServer(QlumServerNode* server, bool isUsers = false);
    /// Disconnects the server, tells the plugins, then deletes it.
    void removeServer(QlumServerNode* server);
    /// Of the project tree; null when no server is selected.
    [[nodiscard]] QlumServerNode* selected() const;

public slots:
    void sltServerAdd();
    void sltServerRemove();
    void sltServerConnect();
    void sltServerDisconnect();
    void sltServerProperties();
    void sltServerChangeUser();
    void sltServerDiagnose();
    /// Enables the actions that make sense for the selected server.
    void updateActions();

signals:
    /// The project differs from its file.
    void modified();

private:
    void sltServerNodeChanged(QlumProjectNode* node, QWidget* widget, QlumConnectionStatus status,
                              unsigned int serverId, const NamespaceMap& namespaceMap);

    void connectEnded(QlumServerNode* server, bool connected);

    Parts m_parts;
    const QString m_connectTip;       ///< while there is no connection to bring back
    QList<unsigned int> m_connecting; ///< ids
};
