#include <plugins/attributes/qlumattributeplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumuatrace.h>
#include <opcua/opcua_attributes.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributeview.h>
#include <plugins/attributes/qlumcustomnodeiddialog.h>
#include <plugins/attributes/qlumreadjob.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
#include <QDockWidget>
#include <QEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QKeySequence>
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
const QLatin1String kOnOffKey("Act_OnOff_Checked");
const QLatin1String kMaxAgeKey("AttributePlugin.MaxAge");
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
    app->setSettingsValue(kMaxAgeKey, app->settingsValue(kMaxAgeKey, 0.0));
    m_pool = std::make_unique<QlumJobPool>(1);
    m_model = new QlumAttributeModel(*app, this, m_services);
    connect(this, &QlumAttributePlugin::sigClear, m_model, &QlumAttributeModel::clear);
    createActions();
    createDock();
}

void QlumAttributePlugin::shutdown()
{
    m_pool.reset();
    // Results on their way belong to whoever receives them.
    QCoreApplication::sendPostedEvents(m_model, QEvent::MetaCall);
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
    if (m_app->mainWindow())
        m_app->mainWindow()->addDockWidget(Qt::RightDockWidgetArea, m_dock);
}

// ---- what is shown

void QlumAttributePlugin::selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                                           UaNodeId*)
{
    m_serverId = nodeId ? serverId : qlumNoServer;
    m_nodeId = nodeId ? *nodeId : UaNodeId();
    m_nodeClass = nodeClass;
    if (m_onOff->isChecked())
        sltRefresh();
}

void QlumAttributePlugin::sltRefresh()
{
    if (m_serverId == qlumNoServer || m_nodeId.isNull())
        return;
    m_pool->cancelAll(); // nobody waits for nodes that were left meanwhile
    m_pool->addJob(std::make_unique<QlumReadJob>(m_serverId, m_nodeId, m_nodeClass, m_model, m_services));
}

void QlumAttributePlugin::sltOnOff(bool on)
{
    m_onOff->setIcon(QIcon(on ? QStringLiteral(":/images/on.png") : QStringLiteral(":/images/off.png")));
    if (on)
        sltRefresh();
}

void QlumAttributePlugin::sessionRemoved(unsigned int serverId)
{
    // The session goes when this returns: nothing may use it any more.
    if (m_serverId == serverId) {
        m_pool->cancelAll();
        m_pool->waitForDone();
        QCoreApplication::sendPostedEvents(m_model, QEvent::MetaCall);
        m_serverId = qlumNoServer;
        m_nodeId.clear();
    }
    if (m_model->serverId() == serverId)
        emit sigClear();
}

void QlumAttributePlugin::sltSetCustomNodeId()
{
    QPointer<QlumCustomNodeIdDialog> dialog =
        new QlumCustomNodeIdDialog(*m_app, m_serverId, m_app->mainWindow());
    const bool accepted = dialog->exec() == QDialog::Accepted;
    const unsigned int serverId = dialog ? dialog->serverId() : qlumNoServer;
    const UaNodeId nodeId = dialog ? dialog->nodeId() : UaNodeId();
    delete dialog;
    if (accepted && serverId != qlumNoServer && !nodeId.isNull())
        showNode(serverId, nodeId);
}

void QlumAttributePlugin::showNode(unsigned int serverId, const UaNodeId& nodeId)
{
    const std::shared_ptr<QlumSessionServices> session = m_services(serverId);
    if (!session) {
        log(QlumLogLevel::Error, tr("Session not valid."), serverId);
        return;
    }
    UaReadValueIds nodes(1);
    static_cast<void>(nodeId.copyTo(&nodes[0].NodeId)); // else null, which the server refuses
    nodes[0].AttributeId = OpcUa_Attributes_NodeClass;
    UaClientSdk::ServiceSettings settings;
    settings.callTimeout =
        m_app->settingsValue(QStringLiteral("General.CallTimeout"), settings.callTimeout).toUInt();
    UaDataValues values;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    UaStatus status = session->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
    QGuiApplication::restoreOverrideCursor();
    if (status.isGood() && values.length() == 1)
        status = UaStatus(values[0].StatusCode);
    if (!status.isGood() || values.length() != 1) {
        log(QlumLogLevel::Error,
            tr("Read NodeClass of node '%1' failed [ret = %2].")
                .arg(toQString(nodeId.toFullString()), toQString(status.toString())),
            serverId);
        return;
    }
    m_serverId = serverId;
    m_nodeId = nodeId;
    m_nodeClass = static_cast<OpcUa_NodeClass>(UaVariant(values[0].Value).toInt32());
    sltRefresh();
}

// ---- project

void QlumAttributePlugin::saveSettings(QSettings& settings)
{
    settings.setValue(kOnOffKey, m_onOff->isChecked());
}

void QlumAttributePlugin::loadSettings(QSettings& settings, const QMap<int, int>&)
{
    m_onOff->setChecked(settings.value(kOnOffKey, true).toBool());
}

void QlumAttributePlugin::log(int level, const QString& text, unsigned int serverId) const
{
    QlumUaTrace::log(level, text, tr("Attribute Plugin"), serverId);
}
