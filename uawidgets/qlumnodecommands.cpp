#include <uawidgets/qlumnodecommands.h>

#include <app/api/qlumdocumenttypes.h>

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QEvent>
#include <QItemSelectionModel>
#include <QMenu>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <utility>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumNodeCommands", text)

namespace {
enum Command { RevealNode, CallMethod };

constexpr QlumActionRow actionRows[] = {
    {RevealNode, "revealNode", TEXT("Show in Address &Space"), "", qlumNoKey, "",
     TEXT("<b>Show in Address Space</b><br>Selects the node in the address space window.")},
    {CallMethod, "callMethod", TEXT("&Call..."), "", qlumNoKey, TEXT("Call Method"),
     TEXT("<b>Call</b><br>Asks for the arguments of the selected method and calls it.")},
};

// Of the method, when exactly one is selected and it is known whose it is.
bool isMethodOfAnObject(const QlumToolNodes& nodes)
{
    return nodes.size() == 1 && nodes.front().nodeClass == OpcUa_NodeClass_Method &&
           !nodes.front().parentId.isNull();
}
} // namespace

QlumNodeCommands::QlumNodeCommands(QWidget* view, std::function<QlumToolNodes()> selected, Without without)
    : QObject(view), m_view(view), m_selected(std::move(selected)), m_without(without),
      m_actions(actionRows, "QlumNodeCommands", view)
{
    view->addActions(m_actions.list({RevealNode, CallMethod}));
    connect(m_actions[RevealNode], &QAction::triggered, this, &QlumNodeCommands::reveal);
    connect(m_actions[CallMethod], &QAction::triggered, this, &QlumNodeCommands::callMethod);
    view->installEventFilter(this);
    if (const auto* area = qobject_cast<QAbstractScrollArea*>(view))
        area->viewport()->installEventFilter(this); // the mouse asks there, the key asks the view
    // also for who lists the commands without a menu, by name
    if (const auto* items = qobject_cast<QAbstractItemView*>(view); items && items->selectionModel())
        connect(items->selectionModel(), &QItemSelectionModel::currentChanged, this,
                &QlumNodeCommands::update);
    if (const QlumToolServices* services = QlumToolServices::instance())
        connect(services, &QlumToolServices::takersChanged, this, &QlumNodeCommands::makeOpenActions);
    makeOpenActions();
}

bool QlumNodeCommands::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ContextMenu)
        update();
    return QObject::eventFilter(watched, event);
}

void QlumNodeCommands::makeOpenActions()
{
    qDeleteAll(m_open);
    m_open.clear();
    const QlumToolServices* services = QlumToolServices::instance();
    for (const QString& type : services ? services->documentTypes() : QStringList()) {
        auto* action = new QAction(tr("Add to %1").arg(qlumDocumentTypeName(type)), m_view);
        action->setObjectName(QStringLiteral("openNodes.") + type);
        action->setData(type);
        action->setToolTip(tr("Show the selected nodes in a document of this type"));
        action->setStatusTip(action->toolTip());
        action->setWhatsThis(tr("<b>Add to %1</b><br>Shows the selected nodes in the document of this type "
                                "that is in front, or in a new one.")
                                 .arg(qlumDocumentTypeName(type)));
        connect(action, &QAction::triggered, this, [this, type] {
            if (QlumToolServices* current = QlumToolServices::instance())
                current->openNodes(type, m_selected());
        });
        m_view->insertAction(m_actions[CallMethod], action);
        m_open.append(action);
    }
    makeToolMenus();
    update();
}

void QlumNodeCommands::makeToolMenus()
{
    qDeleteAll(m_menus);
    m_menus.clear();
    const QlumToolServices* services = QlumToolServices::instance();
    if (services == nullptr || m_without == Tools)
        return;
    for (const QlumNodeTool& tool : services->nodeTools()) {
        auto menu = std::find_if(m_menus.begin(), m_menus.end(),
                                 [&tool](const QMenu* other) { return other->title() == tool.menu; });
        if (menu == m_menus.end()) {
            menu = m_menus.insert(m_menus.end(), new QMenu(tool.menu, m_view));
            (*menu)->setToolTipsVisible(true);
            m_view->insertAction(m_actions[CallMethod], (*menu)->menuAction());
        }
        QAction* action = (*menu)->addAction(tool.text);
        action->setObjectName(tool.name);
        action->setToolTip(tool.toolTip);
        action->setStatusTip(tool.toolTip);
        action->setWhatsThis(tool.toolTip);
        connect(action, &QAction::triggered, this, [this, act = tool.act] {
            if (const QlumToolNodes nodes = m_selected(); !nodes.empty())
                act(nodes);
        });
    }
}

void QlumNodeCommands::update()
{
    const QlumToolServices* services = QlumToolServices::instance();
    const QlumToolNodes nodes = services ? m_selected() : QlumToolNodes();
    m_actions[RevealNode]->setVisible(m_without != Reveal && nodes.size() == 1 && services->canReveal());
    m_actions[CallMethod]->setVisible(isMethodOfAnObject(nodes) && services->canCallMethod());
    const QStringList types = services ? services->documentTypes(nodes) : QStringList();
    for (QMenu* menu : qAsConst(m_menus))
        menu->menuAction()->setVisible(!nodes.empty());
    for (QAction* action : qAsConst(m_open))
        action->setVisible(types.contains(action->data().toString()));
}

void QlumNodeCommands::reveal()
{
    const QlumToolNodes nodes = m_selected();
    if (QlumToolServices* services = QlumToolServices::instance(); services && nodes.size() == 1)
        services->revealNode(nodes.front().serverId, nodes.front().nodeId);
}

void QlumNodeCommands::callMethod()
{
    const QlumToolNodes nodes = m_selected();
    if (QlumToolServices* services = QlumToolServices::instance(); services && isMethodOfAnObject(nodes))
        services->callMethod(nodes.front().serverId, nodes.front().parentId, nodes.front().nodeId);
}
