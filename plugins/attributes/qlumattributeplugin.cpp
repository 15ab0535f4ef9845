#include <plugins/attributes/qlumattributeplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocksize.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummetatypes.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributeview.h>
#include <plugins/attributes/qlumcustomnodeiddialog.h>
#include <plugins/attributes/qlumreadjob.h>
#include <uabase/values/uanodeid.h>

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
#include <QDockWidget>
#include <QEvent>
#include <QIcon>
#include <QKeySequence>
#include <QList>
#include <QMainWindow>
#include <QMap>
#include <QSettings>
#include <QSize>
#include <QString>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWidget>

#include <memory>
#include <utility>

namespace {
const QLatin1String onOffKey("Act_OnOff_Checked");
const QLatin1String maxAgeKey("AttributePlugin.MaxAge");
} // namespace

QlumAttributePlugin::QlumAttributePlugin() : QlumAttributePlugin(qlumApplicationServices()) {}

QlumAttributePlugin::QlumAttributePlugin(QlumSessionServicesProvider services)
    : m_services(std::move(services))
{
    setObjectName(QStringLiteral("QlumAttributePlugin"));
}

QlumAttributePlugin::~QlumAttributePlugin() = default;

void QlumAttributePlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    qlumRegisterMetaTypes();
    app->setSettingsValue(maxAgeKey, app->settingsValue(maxAgeKey, 0.0));
    m_pool = std::make_unique<QlumJobPool>(1);
    m_model = new QlumAttributeModel(*app, this, m_services);
    connect(this, &QlumAttributePlugin::sigClear, m_model, &QlumAttributeModel::clear);
    createActions();
    createDock();
}

void QlumAttributePlugin::shutdown()
{
    m_pool.reset();
    delete m_dock;
    delete m_model;
    m_model = nullptr;
    m_app = nullptr;
}

QString QlumAttributePlugin::name()
{
    return QStringLiteral("UA Attribute Plugin");
}

// ---- widgets

QAction* QlumAttributePlugin::createAction(const QString& name, const QString& icon, const QString& text,
                                           const QString& help)
{
    auto* action = new QAction(QIcon(icon), text, this);
    action->setObjectName(name);
    action->setToolTip(help);
    action->setWhatsThis(QStringLiteral("<b>%1</b><br>%2").arg(text, help));
    return action;
}

void QlumAttributePlugin::createActions()
{
    m_onOff = createAction(QStringLiteral("onOff"), QStringLiteral(":/images/on.png"), tr("On/Off"),
                           tr("Read the attributes of every node that is selected"));
    m_onOff->setCheckable(true);
    m_onOff->setChecked(true);
    m_refresh = createAction(QStringLiteral("refresh"), QStringLiteral(":/images/refresh.png"), tr("Refresh"),
                             tr("Read the attributes again"));
    m_refresh->setShortcut(QKeySequence::Refresh);
    m_refresh->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_expandAll = createAction(QStringLiteral("expandAll"), QStringLiteral(":/images/expandall.png"),
                               tr("Expand All"), tr("Show all rows"));
    m_collapseAll = createAction(QStringLiteral("collapseAll"), QStringLiteral(":/images/collapseall.png"),
                                 tr("Collapse All"), tr("Show the attributes only"));
    m_customNodeId = createAction(QStringLiteral("customNodeId"), QStringLiteral(":/images/addtab.png"),
                                  tr("Set Custom NodeId"), tr("Show the attributes of any node by its id"));
    connect(m_onOff, &QAction::toggled, this, &QlumAttributePlugin::sltOnOff);
    connect(m_refresh, &QAction::triggered, this, &QlumAttributePlugin::sltRefresh);
    connect(m_customNodeId, &QAction::triggered, this, &QlumAttributePlugin::sltSetCustomNodeId);
}

void QlumAttributePlugin::createDock()
{
    m_dock = new QDockWidget(tr("Attributes"), m_app->mainWindow());
    m_dock->setObjectName(QStringLiteral("Attributes Dock Widget"));
    m_dock->setWhatsThis(tr("<b>Attributes</b><br>This window shows the attributes of the selected node. You "
                            "can change the selection in the address space window."));
    auto* page = new QWidget(m_dock);
    auto* toolBar = new QToolBar(tr("Attributes"), page);
    toolBar->setObjectName(QStringLiteral("attributeToolBar"));
    toolBar->setIconSize(QSize(16, 16));
    toolBar->addActions({m_onOff, m_refresh, m_expandAll, m_collapseAll, m_customNodeId});
    m_view = new QlumAttributeView(m_model, page);
    connect(m_expandAll, &QAction::triggered, m_view, &QTreeView::expandAll);
    connect(m_collapseAll, &QAction::triggered, m_view, &QTreeView::collapseAll);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(toolBar);
    layout->addWidget(m_view);
    page->addAction(m_refresh); // so that its key works wherever the focus is in the dock
    m_dock->setWidget(page);
    qlumSetInitialDockSize(m_dock, {430, 420});
    if (m_app->mainWindow())
        m_app->mainWindow()->addDockWidget(Qt::RightDockWidgetArea, m_dock);
}

// ---- what is shown

void QlumAttributePlugin::selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                                           UaNodeId*)
{
    m_selected = nodeId ? Node{serverId, *nodeId} : Node();
    m_nodeClass = nodeClass;
    m_custom = Node();
    if (m_onOff->isChecked())
        sltRefresh();
}

void QlumAttributePlugin::sltRefresh()
{
    if (m_selected.isNone())
        return;
    m_custom = Node();
    m_pool->cancelAll(); // nobody waits for nodes that were left meanwhile
    read(m_selected, m_nodeClass);
}

void QlumAttributePlugin::sltOnOff(bool on)
{
    m_onOff->setIcon(QIcon(on ? QStringLiteral(":/images/on.png") : QStringLiteral(":/images/off.png")));
    if (on)
        sltRefresh();
}

void QlumAttributePlugin::sltSetCustomNodeId()
{
    QPointer<QlumCustomNodeIdDialog> dialog =
        new QlumCustomNodeIdDialog(*m_app, m_selected.serverId, m_app->mainWindow());
    const bool accepted = dialog->exec() == QDialog::Accepted;
    const Node chosen = dialog ? Node{dialog->serverId(), dialog->nodeId()} : Node();
    delete dialog;
    if (!accepted || chosen.isNone())
        return;
    m_custom = chosen;
    read(chosen, std::nullopt);
}

void QlumAttributePlugin::sltNodeClassRead(unsigned int serverId, const UaNodeId& nodeId,
                                           OpcUa_NodeClass nodeClass)
{
    if (m_custom != Node{serverId, nodeId})
        return; // the user has gone on
    m_selected = std::exchange(m_custom, Node());
    m_nodeClass = nodeClass;
}

void QlumAttributePlugin::read(const Node& node, std::optional<OpcUa_NodeClass> nodeClass)
{
    auto made = std::make_unique<QlumReadJob>(node.serverId, node.nodeId, nodeClass, m_services);
    QlumReadJob* job = made.get();
    const auto nodeClassRead = [this, job](unsigned int serverId, const UaNodeId& nodeId,
                                           OpcUa_NodeClass read) {
        job->post([this, serverId, nodeId, read] { sltNodeClassRead(serverId, nodeId, read); });
    };
    const auto newData = [this, job](unsigned int serverId, const UaNodeId& nodeId, OpcUa_NodeClass read,
                                     int count, const QList<int>& attributeIds, OpcUa_DataValue* results) {
        UaDataValues values;
        values.attach(count, results); // freed when nobody waits for them any more
        job->post([=, this, values = std::move(values)]() mutable {
            m_model->setData(serverId, nodeId, read, count, attributeIds, values.detach());
        });
    };
    connect(job, &QlumReadJob::nodeClassRead, job, nodeClassRead, Qt::DirectConnection);
    connect(job, &QlumReadJob::newData, job, newData, Qt::DirectConnection);
    m_pool->add({tr("Reading attributes"), node.serverId}, std::move(made));
}

void QlumAttributePlugin::sessionRemoved(unsigned int serverId)
{
    m_pool->endServer(serverId); // also what reads a node that was left
    if (m_custom.serverId == serverId)
        m_custom = Node();
    if (m_selected.serverId == serverId)
        m_selected = Node();
    if (m_model->serverId() == serverId)
        emit sigClear();
}

// The view keeps what is open and selected. A node that is just being read needs no second read: rows are
// made by the definitions of that moment.
void QlumAttributePlugin::dataTypesLoaded(unsigned int serverId)
{
    const bool isShown = m_selected == Node{m_model->serverId(), m_model->nodeId()};
    if (serverId == m_selected.serverId && isShown && m_custom.isNone() && m_onOff->isChecked() &&
        !m_view->isEditing())
        sltRefresh();
}

// ---- project

void QlumAttributePlugin::saveSettings(QSettings& settings)
{
    settings.setValue(onOffKey, m_onOff->isChecked());
}

void QlumAttributePlugin::loadSettings(QSettings& settings, const QMap<int, int>&)
{
    m_onOff->setChecked(settings.value(onOffKey, true).toBool());
}
