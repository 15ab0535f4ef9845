#include <app/mainwindow/qlumprojectview.h>

#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumserverrole.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/project/qlumprojectmodel.h>
#include <uawidgets/qlumrolelook.h>

#include <QAbstractItemView>
#include <QAction>
#include <QIcon>
#include <QMenu>
#include <QModelIndex>
#include <QPainter>
#include <QPixmap>
#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QStyledItemDelegate>
#include <QVariant>

#include <optional>
#include <utility>

namespace {
constexpr int badgeGap = 6;

// Grey and green plugs drown in the colour of a selection: there they stand on the colour of the others. The
// role of a server stands behind its name.
class ProjectDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const std::optional<QlumServerRole> role = roleOf(index);
        if (!role)
            return QStyledItemDelegate::paint(painter, option, index);
        const QStyle* style = option.widget->style();
        QStyleOptionViewItem ground = option;
        initStyleOption(&ground, index);
        style->drawPrimitive(QStyle::PE_PanelItemViewItem, &ground, painter, option.widget);
        QStyleOptionViewItem named = option; // the name is cut before the role is
        named.rect.setRight(option.rect.right() - qlumRoleBadgeSize(*role, option.font).width() - badgeGap);
        QStyledItemDelegate::paint(painter, named, index);
        qlumPaintRoleBadge(*painter, option.rect.adjusted(0, 0, -2, 0), *role, option.font);
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        if (const std::optional<QlumServerRole> role = roleOf(index))
            size.rwidth() += qlumRoleBadgeSize(*role, option.font).width() + badgeGap;
        return size;
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!(option->state & QStyle::State_Selected) || option->icon.isNull())
            return;
        const QPixmap icon = option->icon.pixmap(option->decorationSize);
        QPixmap lifted(icon.size());
        lifted.setDevicePixelRatio(icon.devicePixelRatio());
        lifted.fill(Qt::transparent);
        QPainter painter(&lifted);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(option->palette.base());
        painter.drawRoundedRect(QRectF(QPointF(), QSizeF(icon.size()) / icon.devicePixelRatio()), 3, 3);
        painter.drawPixmap(QPoint(), icon);
        painter.end();
        option->icon = QIcon();
        option->icon.addPixmap(lifted, QIcon::Normal);
        option->icon.addPixmap(lifted, QIcon::Selected);
    }

private:
    static std::optional<QlumServerRole> roleOf(const QModelIndex& index)
    {
        const QVariant role = index.data(QlumProjectModel::serverRole);
        return role.isValid() ? std::optional(static_cast<QlumServerRole>(role.toInt())) : std::nullopt;
    }
};
} // namespace

QlumProjectView::QlumProjectView(const QlumMainActions* actions, QlumProjectModel* project, QWidget* parent)
    : QTreeView(parent), m_actions(actions), m_project(project)
{
    setObjectName(QStringLiteral("projectTree"));
    setAccessibleName(tr("Project"));
    setHeaderHidden(true);
    setItemDelegate(new ProjectDelegate(this));
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setModel(project);
    expandAll();
    connect(this, &QAbstractItemView::doubleClicked, this, &QlumProjectView::connectCurrent);
}

void QlumProjectView::connectCurrent()
{
    const QlumProjectNode* node = m_project->nodeAt(currentIndex());
    if (node && node->type() == QlumProjectNode::Server)
        (*m_actions)[QlumMainActions::ConnectServer]->trigger(); // does nothing while it is disabled
}

void QlumProjectView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    if (!isByKey)
        setCurrentIndex(indexAt(event->pos()));
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("projectMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(menu);
    menu->popup(isByKey ? viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft())
                        : event->globalPos());
}

void QlumProjectView::fillMenu(QMenu* menu)
{
    using A = QlumMainActions;
    const QlumProjectNode* node = m_project->nodeAt(currentIndex());
    const int type = node ? node->type() : QlumProjectNode::Folder;
    if (type != QlumProjectNode::Folder) {
        if (type == QlumProjectNode::Server) {
            // of a lost connection it says that it brings it back
            QAction* connectServer = (*m_actions)[A::ConnectServer];
            offer(menu, connectServer, QLatin1Char('&') + connectServer->toolTip());
            offer(menu, (*m_actions)[A::DisconnectServer], tr("&Disconnect Server"));
            offer(menu, (*m_actions)[A::ServerProperties], tr("Server &Properties..."));
            offer(menu, (*m_actions)[A::ChangeUser], tr("Change &User..."));
            offer(menu, (*m_actions)[A::DiagnoseServer], tr("Dia&gnose Connection..."));
            offer(menu, (*m_actions)[A::FindNode], tr("&Find Node..."));
            addRoles(menu);
        }
        QAction* rename = menu->addAction(tr("Re&name"));
        rename->setObjectName(QStringLiteral("rename"));
        connect(rename, &QAction::triggered, this, [this] { edit(currentIndex()); });
        if (type == QlumProjectNode::Server)
            offer(menu, (*m_actions)[A::RemoveServer], tr("Re&move Server"));
        else
            offer(menu, (*m_actions)[A::RemoveDocument], tr("Re&move Document"));
        menu->addSeparator();
    }
    offer(menu, (*m_actions)[A::AddServer], tr("Add &Server..."));
    offer(menu, (*m_actions)[A::AddDocument], tr("&Add Document..."));
}

// The texts of the main menu do not say what they are about: there the menu's own title does.
void QlumProjectView::offer(QMenu* menu, QAction* action, const QString& text)
{
    QAction* offered = menu->addAction(action->icon(), text);
    offered->setObjectName(action->objectName());
    offered->setEnabled(action->isEnabled());
    offered->setWhatsThis(action->whatsThis());
    connect(offered, &QAction::triggered, action, &QAction::trigger);
}

void QlumProjectView::addRoles(QMenu* menu)
{
    auto* server = qobject_cast<QlumServerNode*>(m_project->nodeAt(currentIndex()));
    QMenu* roles = menu->addMenu(tr("R&ole"));
    roles->menuAction()->setObjectName(QStringLiteral("role"));
    roles->setToolTipsVisible(true);
    for (const QlumServerRole role :
         {QlumServerRole::Look, QlumServerRole::Operate, QlumServerRole::Commission}) {
        QAction* choice = roles->addAction(qlumRoleName(role));
        choice->setObjectName(QStringLiteral("role") + qlumRoleKey(role));
        choice->setToolTip(qlumRoleExplanation(role));
        choice->setCheckable(true);
        choice->setChecked(server->role() == role);
        connect(choice, &QAction::triggered, server, [server, role] { server->setRole(role); });
    }
    roles->addSeparator();
    const QString forSomeTime = tr("%1 for %2");
    for (const auto& [text, minutes] :
         {std::pair(tr("15 Minutes"), 15), {tr("an Hour"), 60}, {tr("8 Hours"), 480}}) {
        QAction* choice = roles->addAction(forSomeTime.arg(qlumRoleName(QlumServerRole::Commission), text));
        choice->setObjectName(QStringLiteral("roleCommissionFor%1").arg(minutes));
        choice->setToolTip(tr("Then it is what it was before"));
        connect(choice, &QAction::triggered, server, [server, milliseconds = minutes * 60 * 1000] {
            server->setRoleFor(QlumServerRole::Commission, milliseconds);
        });
    }
}
