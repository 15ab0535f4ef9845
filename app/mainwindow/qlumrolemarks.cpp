#include <app/mainwindow/qlumrolemarks.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumdocumentservers.h>
#include <app/api/qlumservernode.h>
#include <app/project/qlumprojectmodel.h>
#include <uawidgets/qlumrolelook.h>

#include <QAbstractItemModel>
#include <QDynamicPropertyChangeEvent>
#include <QIcon>
#include <QLabel>
#include <QMainWindow>
#include <QMargins>
#include <QPainter>
#include <QPalette>
#include <QRect>
#include <QStatusBar>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QWidget>

#include <algorithm>

namespace {
constexpr int frameWidth = 3;

// The cross that closes a tab is on one side, the word on the other.
QTabBar::ButtonPosition freeSide(const QTabBar& bar)
{
    const int side = bar.style()->styleHint(QStyle::SH_TabBar_CloseButtonPosition, nullptr, &bar);
    return side == QTabBar::RightSide ? QTabBar::LeftSide : QTabBar::RightSide;
}
} // namespace

QlumRoleMarks::QlumRoleMarks(QMainWindow* window, QTabWidget* tabs, QlumProjectModel* project)
    : QObject(window), m_window(window), m_tabs(tabs), m_project(project),
      m_word(new QLabel(window->statusBar())), m_serverId(qlumNoServer)
{
    m_word->setObjectName(QStringLiteral("roleWord"));
    m_word->setTextFormat(Qt::PlainText);
    m_word->setAutoFillBackground(true);
    m_word->setMargin(2);
    m_window->statusBar()->addPermanentWidget(m_word);
    m_window->setContentsMargins(frameWidth, frameWidth, frameWidth, frameWidth);
    m_window->installEventFilter(this);
    connect(m_project, &QlumProjectModel::serverRoleChanged, this, &QlumRoleMarks::update);
    connect(m_project, &QlumProjectModel::serverRenamed, this, &QlumRoleMarks::update);
    connect(m_project, &QAbstractItemModel::rowsRemoved, this, &QlumRoleMarks::update);
    connect(m_project, &QAbstractItemModel::rowsInserted, this, &QlumRoleMarks::update);
    connect(m_tabs, &QTabWidget::currentChanged, this, &QlumRoleMarks::updateTabs);
    update();
}

void QlumRoleMarks::setServer(const QlumServerNode* server)
{
    m_serverId = server ? server->serverId() : qlumNoServer;
    update();
}

void QlumRoleMarks::update()
{
    const QlumServerNode* server = m_project->findServer(m_serverId);
    m_role = server ? std::optional(server->role()) : std::nullopt;
    m_word->setVisible(server != nullptr);
    if (server) {
        QPalette colors = m_word->palette();
        colors.setColor(QPalette::Window, qlumRoleColor(*m_role));
        colors.setColor(QPalette::WindowText, Qt::white);
        m_word->setPalette(colors);
        m_word->setText(
            tr(" %1: %2 ").arg(qlumCutText(qlumSingleLine(server->displayName())), qlumRoleName(*m_role)));
        m_word->setToolTip(qlumPlainToolTip(qlumRoleExplanation(*m_role)));
        m_word->setAccessibleName(tr("Role of the server"));
    }
    m_window->QWidget::update();
    updateTabs();
}

std::optional<QlumServerRole> QlumRoleMarks::roleOfTab(int tab) const
{
    std::optional<QlumServerRole> highest;
    for (const unsigned int id : qlumDocumentServers(m_tabs->widget(tab)))
        if (const QlumServerNode* server = m_project->findServer(id))
            highest = std::max(highest.value_or(QlumServerRole::Look), server->role());
    return highest;
}

void QlumRoleMarks::updateTabs()
{
    QTabBar* bar = m_tabs->tabBar();
    for (int tab = 0; tab < m_tabs->count(); ++tab) {
        m_tabs->widget(tab)->installEventFilter(this); // once, however often it is told
        const std::optional<QlumServerRole> role = roleOfTab(tab);
        auto* mark = qobject_cast<QLabel*>(bar->tabButton(tab, freeSide(*bar)));
        if (!role) {
            if (mark)
                bar->setTabButton(tab, freeSide(*bar), nullptr);
            m_tabs->setTabToolTip(tab, QString());
            continue;
        }
        const QString text = tr("May send: %1").arg(qlumRoleName(*role));
        if (!mark) {
            mark = new QLabel(bar);
            mark->setObjectName(QStringLiteral("roleMark"));
        }
        mark->setPixmap(qlumRoleBadge(*role, bar->font(), bar->devicePixelRatioF()));
        mark->setAccessibleName(text);
        mark->adjustSize();
        bar->setTabButton(tab, freeSide(*bar),
                          nullptr); // a bar gives room for what is put in, as large as it is then
        bar->setTabButton(tab, freeSide(*bar), mark);
        m_tabs->setTabToolTip(tab, text);
    }
}

bool QlumRoleMarks::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Paint)
        paintFrame();
    else if (event->type() == QEvent::DynamicPropertyChange &&
             static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName() ==
                 qlumDocumentServersProperty())
        updateTabs();
    return QObject::eventFilter(watched, event);
}

void QlumRoleMarks::paintFrame()
{
    if (!m_role)
        return;
    QPainter painter(m_window);
    painter.setPen(Qt::NoPen);
    painter.setBrush(qlumRoleColor(*m_role));
    const QRect all = m_window->rect();
    painter.drawRect(0, 0, frameWidth, all.height());
    painter.drawRect(all.width() - frameWidth, 0, frameWidth, all.height());
    painter.drawRect(0, 0, all.width(), frameWidth);
    painter.drawRect(0, all.height() - frameWidth, all.width(), frameWidth);
}
