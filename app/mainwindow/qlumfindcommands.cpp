#include <app/mainwindow/qlumfindcommands.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <app/mainwindow/qlumaddressspacepages.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/project/qlumprojectmodel.h>
#include <plugins/addressspace/qlumaddressspacepage.h>
#include <plugins/addressspace/search/qlumexportbranchdialog.h>
#include <plugins/addressspace/search/qlumfindnodeview.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QTreeView>
#include <QWidget>

namespace {
constexpr int usefulHeight = 320; // of the dock, for the fields and some rows
} // namespace

QlumFindCommands::QlumFindCommands(const Parts& parts) : QObject(parts.window), m_parts(parts)
{
    using A = QlumMainActions;
    connect((*parts.actions)[A::FindNode], &QAction::triggered, this, &QlumFindCommands::findNode);
    connect((*parts.actions)[A::FindBelow], &QAction::triggered, this, &QlumFindCommands::findBelow);
    connect((*parts.actions)[A::ExportBranch], &QAction::triggered, this, &QlumFindCommands::exportBranch);
    connect(parts.pages, &QlumAddressSpacePages::searchWanted, this,
            [this](unsigned int serverId, const QString& text) {
                showDock();
                m_parts.view->offer(serverId, {}, text);
            });
    parts.pages->addAction((*parts.actions)[A::FindBelow]);
    parts.pages->addAction((*parts.actions)[A::ExportBranch]);
    followProject();
}

void QlumFindCommands::followProject()
{
    const auto refresh = [this] { m_parts.view->setServers(m_parts.project->servers()); };
    connect(m_parts.project, &QAbstractItemModel::rowsInserted, this, refresh);
    connect(m_parts.project, &QAbstractItemModel::rowsRemoved, this, refresh);
    connect(m_parts.project, &QAbstractItemModel::modelReset, this, refresh);
    connect(m_parts.project, &QlumProjectModel::serverRenamed, this, refresh);
    connect(
        m_parts.project, &QlumProjectModel::serverNodeChanged, this,
        [this](QlumProjectNode*, QWidget*, QlumConnectionStatus status, unsigned int serverId,
               const NamespaceMap& namespaces) {
            m_parts.view->serverNodeChanged(serverId, status, namespaces);
        });
    connect(m_parts.project, &QlumProjectModel::serverModelChanged, this,
            [this](unsigned int serverId) { m_parts.view->serverModelChanged(serverId); });
    refresh();
}

// The server that is selected, else that whose nodes are in sight.
void QlumFindCommands::findNode()
{
    const QlumProjectNode* node = m_parts.project->nodeAt(m_parts.projectView->currentIndex());
    const auto* server = qobject_cast<const QlumServerNode*>(node);
    const QlumAddressSpacePage* page = m_parts.pages->shownPage();
    showDock();
    m_parts.view->offer(server ? server->serverId() : page ? page->serverId() : qlumNoServer, {});
}

void QlumFindCommands::findBelow()
{
    const QlumAddressSpacePage* page = m_parts.pages->shownPage();
    const QlumToolNodes nodes = page ? page->selectedNodes() : QlumToolNodes();
    if (nodes.empty())
        return findNode();
    showDock();
    m_parts.view->offer(page->serverId(), {nodes.front().nodeId, nodes.front().name,
                                           static_cast<OpcUa_UInt32>(nodes.front().nodeClass)});
}

void QlumFindCommands::exportBranch()
{
    const QlumAddressSpacePage* page = m_parts.pages->shownPage();
    const QlumToolNodes nodes = page ? page->selectedNodes() : QlumToolNodes();
    QlumApplicationInterface* application = QlumApplicationInterface::instance();
    if (nodes.empty() || !application)
        return;
    const QlumToolNode& node = nodes.front();
    auto* dialog =
        new QlumExportBranchDialog({node.serverId, application->serverName(node.serverId), node.nodeId,
                                    node.name, static_cast<OpcUa_UInt32>(node.nodeClass)},
                                   qlumApplicationServices(), m_parts.window);
    dialog->show();
}

void QlumFindCommands::showDock()
{
    m_parts.dock->show();
    m_parts.dock->raise();
    if (!m_parts.dock->isFloating() && m_parts.dock->height() < usefulHeight)
        m_parts.window->resizeDocks({m_parts.dock}, {usefulHeight}, Qt::Vertical);
}
