#include <app/mainwindow/qlumaddressspacepages.h>

#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumemptydocument.h>

#include <QAction>
#include <QPointer>
#include <QStackedWidget>
#include <QString>
#include <QTreeView>
#include <QWidget>

#include <utility>

QlumAddressSpacePages::QlumAddressSpacePages(QAction* rebrowse, QlumAddressSpaceModelFactory factory,
                                             QWidget* parent)
    : QObject(parent), m_rebrowse(rebrowse), m_factory(std::move(factory)),
      m_stack(new QStackedWidget(parent))
{
    m_stack->setObjectName(QStringLiteral("addressSpacePages"));
    m_stack->addWidget(new QlumEmptyDocument(
        tr("No address space"), tr("Connect a server and select it in the project window to see its nodes."),
        m_stack));
    addAction(rebrowse);
}

QWidget* QlumAddressSpacePages::widget() const
{
    return m_stack;
}

QList<QlumAddressSpacePage*> QlumAddressSpacePages::pages() const
{
    QList<QlumAddressSpacePage*> result;
    for (int i = 1; i < m_stack->count(); ++i)
        result.append(static_cast<QlumAddressSpacePage*>(m_stack->widget(i)));
    return result;
}

QlumAddressSpacePage* QlumAddressSpacePages::page(unsigned int serverId) const
{
    for (QlumAddressSpacePage* candidate : pages())
        if (candidate->serverId() == serverId)
            return candidate;
    return nullptr;
}

QlumAddressSpacePage* QlumAddressSpacePages::shownPage() const
{
    return qobject_cast<QlumAddressSpacePage*>(m_stack->currentWidget());
}

void QlumAddressSpacePages::createAddressSpace(QlumServerNode* server)
{
    const unsigned int id = server->serverId();
    const QPointer<QlumServerNode> stillThere = server;
    removePage(id);
    auto* made = new QlumAddressSpacePage(server, m_factory, m_rebrowse, m_stack);
    removePage(id); // while the user waited for the root there may have come another
    if (!stillThere || server->connectionStatus() == QlumConnectionStatus::Disconnected) {
        delete made;
        return;
    }
    made->tree()->addActions(m_actions);
    connect(made, &QlumAddressSpacePage::nodeSelected, this, &QlumAddressSpacePages::nodeSelected);
    connect(made, &QlumAddressSpacePage::searchWanted, this, &QlumAddressSpacePages::searchWanted);
    connect(server, &QlumServerNode::iconsLoaded, made->tree()->viewport(), qOverload<>(&QWidget::update));
    m_stack->addWidget(made);
    m_stack->setCurrentWidget(made);
}

void QlumAddressSpacePages::removePage(unsigned int serverId)
{
    QlumAddressSpacePage* old = page(serverId);
    if (!old)
        return;
    if (m_stack->currentWidget() == old)
        m_stack->setCurrentIndex(0);
    m_stack->removeWidget(old);
    old->retire();
}

void QlumAddressSpacePages::showPage(unsigned int serverId)
{
    if (QlumAddressSpacePage* wanted = page(serverId))
        m_stack->setCurrentWidget(wanted);
    else
        m_stack->setCurrentIndex(0);
}

bool QlumAddressSpacePages::reveal(unsigned int serverId, const UaNodeId& node)
{
    QlumAddressSpacePage* found = page(serverId);
    return found && found->reveal(node);
}

void QlumAddressSpacePages::addAction(QAction* action)
{
    if (m_actions.contains(action))
        return;
    m_actions.append(action);
    connect(action, &QObject::destroyed, this, [this, action] { m_actions.removeAll(action); });
    for (QlumAddressSpacePage* existing : pages())
        existing->tree()->addAction(action);
}

void QlumAddressSpacePages::removeAction(QAction* action)
{
    m_actions.removeAll(action);
    for (QlumAddressSpacePage* existing : pages())
        existing->tree()->removeAction(action);
}

void QlumAddressSpacePages::rebrowseCurrent()
{
    if (QlumAddressSpacePage* current = shownPage())
        current->rebrowseCurrent();
}

void QlumAddressSpacePages::serverModelChanged(unsigned int serverId, const UaNodeId& node,
                                               unsigned char verb)
{
    if (QlumAddressSpacePage* changed = page(serverId))
        changed->serverModelChanged(node, verb);
}
