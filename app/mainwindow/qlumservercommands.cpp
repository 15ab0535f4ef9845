#include <app/mainwindow/qlumservercommands.h>

#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumrunningwork.h>
#include <app/mainwindow/qlumaddressspacepages.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/pluginloader/qlumdirector.h>
#include <app/project/qlumprojectmodel.h>

#include <QAbstractButton>
#include <QAction>
#include <QMessageBox>
#include <QPointer>
#include <QTreeView>
#include <QWidget>

#include <memory>
#include <utility>

QlumServerCommands::QlumServerCommands(const Parts& parts)
    : QObject(parts.window), m_parts(parts),
      m_connectTip((*parts.actions)[QlumMainActions::ConnectServer]->toolTip())
{
    using A = QlumMainActions;
    const auto on = [this](A::Id id, void (QlumServerCommands::*slot)()) {
        connect((*m_parts.actions)[id], &QAction::triggered, this, slot);
    };
    on(A::AddServer, &QlumServerCommands::sltServerAdd);
    on(A::RemoveServer, &QlumServerCommands::sltServerRemove);
    on(A::ConnectServer, &QlumServerCommands::sltServerConnect);
    on(A::DisconnectServer, &QlumServerCommands::sltServerDisconnect);
    on(A::ServerProperties, &QlumServerCommands::sltServerProperties);
    on(A::ChangeUser, &QlumServerCommands::sltServerChangeUser);
    on(A::DiagnoseServer, &QlumServerCommands::sltServerDiagnose);
    connect(m_parts.project, &QlumProjectModel::serverNodeChanged, this,
            &QlumServerCommands::sltServerNodeChanged);
    updateActions();
}

QlumServerNode* QlumServerCommands::selected() const
{
    return qobject_cast<QlumServerNode*>(m_parts.project->nodeAt(m_parts.projectView->currentIndex()));
}

void QlumServerCommands::serverAdded(QlumServerNode* server)
{
    connect(
        server, &QlumServerNode::retryConnectServer, this, [this, server] { connectServer(server, true); });
    connect(server, &QlumServerNode::connectEnded, this,
            [this, server](bool connected) { connectEnded(server, connected); });
    m_parts.projectView->setCurrentIndex(m_parts.project->indexOf(server));
}

void QlumServerCommands::sltServerAdd()
{
    std::unique_ptr<QlumServerNode> made = m_parts.services->askForServer(m_parts.window);
    if (!made)
        return;
    serverAdded(m_parts.project->addServer(std::move(made)));
    emit modified();
}

void QlumServerCommands::sltServerRemove()
{
    QlumServerNode* server = selected();
    if (!server)
        return;
    const auto remove = [this, kept = QPointer<QlumServerNode>(server)] {
        if (!kept)
            return;
        kept->forgetSecrets();
        removeServer(kept);
        emit modified();
    };
    if (!qlumIsConnected(server->connectionStatus())) {
        remove();
        return;
    }
    auto* box = new QMessageBox(
        QMessageBox::Question, tr("Remove Server"),
        tr("'%1' is connected. Disconnect it and remove it from the project?").arg(server->displayName()),
        QMessageBox::Yes | QMessageBox::Cancel, m_parts.window);
    box->setObjectName(QStringLiteral("removeServer"));
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(QMessageBox::Cancel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box->button(QMessageBox::Yes), &QAbstractButton::clicked, this, remove);
    box->open();
}

void QlumServerCommands::removeServer(QlumServerNode* server)
{
    const unsigned int id = server->serverId();
    if (qlumIsConnected(server->connectionStatus()) ||
        server->connectionStatus() == QlumConnectionStatus::NewSessionCreated)
        server->disconnectServer();
    m_parts.pages->removePage(id);
    QlumRunningWork::instance().cancelServer(id); // all at once, before tools wait for theirs one by one
    m_parts.plugins->sessionRemoved(id);
    m_connecting.removeAll(id);
    m_parts.project->removeServer(server); // which cancels a connect under way
    updateActions();
}

void QlumServerCommands::sltServerConnect()
{
    if (QlumServerNode* server = selected())
        connectServer(server, true);
}

void QlumServerCommands::connectServer(QlumServerNode* server, bool isUsers)
{
    const unsigned int id = server->serverId();
    if (m_connecting.contains(id))
        return;
    m_connecting.append(id);
    if (!(isUsers ? server->startConnectByUser() : server->startConnect()))
        m_connecting.removeAll(id);
    updateActions();
}

void QlumServerCommands::connectEnded(QlumServerNode* server, bool connected)
{
    m_connecting.removeAll(server->serverId());
    if (connected) {
        m_parts.pages->createAddressSpace(server);
        if (const QlumServerNode* current = selected(); current && current != server)
            m_parts.pages->showPage(current->serverId());
    }
    updateActions();
}

void QlumServerCommands::sltServerDisconnect()
{
    if (QlumServerNode* server = selected())
        server->disconnectServer();
    updateActions();
}

void QlumServerCommands::sltServerProperties()
{
    QlumServerNode* server = selected();
    if (server && m_parts.services->editServer(server, m_parts.window))
        emit modified();
}

void QlumServerCommands::sltServerChangeUser()
{
    if (QlumServerNode* server = selected())
        server->changeUser();
}

void QlumServerCommands::sltServerDiagnose()
{
    if (QlumServerNode* server = selected())
        m_parts.services->diagnoseServer(server, m_parts.window);
}

void QlumServerCommands::updateActions()
{
    using A = QlumMainActions;
    const QlumServerNode* server = selected();
    const bool busy = server && m_connecting.contains(server->serverId());
    const QlumConnectionStatus status =
        server ? server->connectionStatus() : QlumConnectionStatus::Disconnected;
    const bool open =
        status == QlumConnectionStatus::Disconnected || status == QlumConnectionStatus::ConnectFailed;
    const auto enable = [this](A::Id id, bool enabled) { (*m_parts.actions)[id]->setEnabled(enabled); };
    enable(A::AddServer, static_cast<bool>(m_parts.services->askForServer));
    enable(A::RemoveServer, server);
    const bool lost = status == QlumConnectionStatus::ConnectionError;
    enable(A::ConnectServer, server && !busy && (open || lost));
    (*m_parts.actions)[A::ConnectServer]->setToolTip(lost ? tr("Reconnect Server Now") : m_connectTip);
    enable(A::DisconnectServer, server && (busy || !open));
    enable(A::ServerProperties, server && !busy && m_parts.services->editServer);
    enable(A::DiagnoseServer, server && m_parts.services->diagnoseServer);
    enable(A::ChangeUser, server && !busy && !open && status != QlumConnectionStatus::Connecting);
}

void QlumServerCommands::sltServerNodeChanged(QlumProjectNode*, QWidget*, QlumConnectionStatus status,
                                              unsigned int serverId, const NamespaceMap& namespaceMap)
{
    // the nodes of a closed session can be asked for nothing
    if (status == QlumConnectionStatus::Disconnected)
        m_parts.pages->removePage(serverId);
    m_parts.plugins->sessionStatusChanged(serverId, status, namespaceMap);
    updateActions();
}
