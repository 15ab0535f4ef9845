#include <app/mainwindow/qlumprojectview.h>

#include <app/api/qlumprojectnode.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/project/qlumprojectmodel.h>

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

namespace {
// Grey and green plugs drown in the colour of a selection: there they stand on the colour of the others.
class LiftedIcons : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

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
};
} // namespace

QlumProjectView::QlumProjectView(const QlumMainActions* actions, QlumProjectModel* project, QWidget* parent)
    : QTreeView(parent), m_actions(actions), m_project(project)
{
    setObjectName(QStringLiteral("projectTree"));
    setAccessibleName(tr("Project"));
    setHeaderHidden(true);
    setItemDelegate(new LiftedIcons(this));
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
