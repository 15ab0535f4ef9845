#include <plugins/attributes/qlumattributeplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocksize.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumsettingsregistry.h>
#include <app/api/qlumtext.h>
#include <plugins/attributes/qlumattributeactions.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributesettings.h>
#include <plugins/attributes/qlumattributeview.h>
#include <plugins/attributes/qlumcustomnodeiddialog.h>
#include <plugins/attributes/qlumreadjob.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>

#include <QAction>
#include <QApplication>
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
#include <QStyle>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWidget>

#include <memory>
#include <utility>

using namespace QlumAttributeNames;

#define TEXT(text) QT_TRANSLATE_NOOP("QlumAttributePlugin", text)

namespace {
const QLatin1String onOffKey("Act_OnOff_Checked");

constexpr QlumActionRow actionRows[] = {
    {OnOff, "onOff", TEXT("On/Off"), "on.png", qlumNoKey,
     TEXT("Read the attributes of every node that is selected"), ""},
    {Refresh, "refresh", TEXT("Refresh"), "refresh.png", QKeySequence::Refresh,
     TEXT("Read the attributes again"), "", Qt::WidgetWithChildrenShortcut},
    {ExpandAll, "expandAll", TEXT("Expand All"), "expandall.png", qlumNoKey, TEXT("Show all rows"), ""},
    {CollapseAll, "collapseAll", TEXT("Collapse All"), "collapseall.png", qlumNoKey,
     TEXT("Show the attributes only"), ""},
    {CustomNodeId, "customNodeId", TEXT("Set Custom NodeId"), "addtab.png", qlumNoKey,
     TEXT("Show the attributes of any node by its id"), ""},
    {Back, "back", TEXT("&Back"), "", QKeySequence::Back, TEXT("Show the node that was shown before"),
     TEXT("<b>Back</b><br>Shows the node that was shown before."), Qt::WidgetWithChildrenShortcut},
    {Forward, "forward", TEXT("&Forward"), "", QKeySequence::Forward, TEXT("Show the next node again"),
     TEXT("<b>Forward</b><br>Shows the node again from which Back has led."), Qt::WidgetWithChildrenShortcut},
    {Live, "watchValue", TEXT("&Watch Value"), "", qlumNoKey, TEXT("Show the Value as it changes"),
     TEXT("<b>Watch Value</b><br>Shows the Value of the node as it changes on the server, by a subscription. "
          "Off: it is the one that was last read.")},
    {UndoWrite, "undoWrite", TEXT("&Undo Write"), "", QKeySequence::Undo,
     TEXT("Write what was there before the last write"),
     TEXT("<b>Undo Write</b><br>Writes the value that was there before the last write, as long as the same "
          "node "
          "is shown."),
     Qt::WidgetWithChildrenShortcut},
    {EditInWindow, "editInWindow", TEXT("&Edit in Window..."), "edit.png", qlumNoKey,
     TEXT("Edit the value of the row in a window of its own"),
     TEXT("<b>Edit in Window</b><br>Edits the value of the row where there is room for it: arrays, "
          "structures, "
          "long texts.")},
    {CopyUriNodeId, "copyUriNodeId", TEXT("Copy Node Id with Namespace &URI"), "", qlumNoKey, "",
     TEXT("<b>Copy Node Id with Namespace URI</b><br>Copies the id of the node in the form that stays the "
          "same "
          "when the server numbers its namespaces in another way.")},
    {CopyBrowsePath, "copyBrowsePath", TEXT("Copy B&rowse Path"), "", qlumNoKey, "",
     TEXT("<b>Copy Browse Path</b><br>Copies the browse names from the root to the node.")},
    {KeepNode, "keepNode", TEXT("&Keep for Comparison"), "", qlumNoKey,
     TEXT("Keep what is shown of this node, to be compared with another one"), ""},
    {CompareNodes, "compareNodes", TEXT("Co&mpare with Kept Node"), "", qlumNoKey,
     TEXT("Show this node and the one that was kept side by side"), ""},
};
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
    registerSettings();
    m_pool = std::make_unique<QlumJobPool>(1);
    m_model = new QlumAttributeModel(*app, this, m_services);
    m_live = std::make_unique<QlumLiveValue>();
    connect(m_live.get(), &QlumLiveValue::arrived, this, &QlumAttributePlugin::sltShowLive);
    connect(m_live.get(), &QlumLiveValue::refused, this, [this](const QString& why) {
        if (m_messages)
            m_messages->tell(
                {QlumMessage::Error, liveTopic, tr("The value cannot be watched."), why, {}, {}});
    });
    connect(this, &QlumAttributePlugin::sigClear, m_model, &QlumAttributeModel::clear);
    createActions();
    createDock();
}

void QlumAttributePlugin::shutdown()
{
    m_live.reset();
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

void QlumAttributePlugin::registerSettings()
{
    using QlumAttributeSettings::editLocked;
    using QlumAttributeSettings::maxAge;
    constexpr double hour = 3600000; // ms
    qlumRegisterSettings(
        {QStringLiteral("attributes"),
         tr("Attri&butes"),
         {QlumSettingRow::number(maxAge,
                                 {tr("&Oldest value shown:"),
                                  tr("A server may answer with a value that it read so long ago. With 0 it "
                                     "reads the value anew, which may take longer.")},
                                 0, hour, tr(" ms")),
          QlumSettingRow::flag(editLocked,
                               {tr("&Edit values that may not be written"),
                                tr("Values that a node says may not be written can be edited all the same. "
                                   "The server then decides, and its answer is shown.")})}});
    maxAge.store(*m_app, maxAge.value(m_app)); // so that it is in the file for who edits that
}

// ---- widgets

void QlumAttributePlugin::createActions()
{
    m_actions = QlumActionTable(actionRows, "QlumAttributePlugin", this);
    m_actions[OnOff]->setCheckable(true);
    m_actions[OnOff]->setChecked(true);
    connect(m_actions[OnOff], &QAction::toggled, this, &QlumAttributePlugin::sltOnOff);
    connect(m_actions[Refresh], &QAction::triggered, this, &QlumAttributePlugin::sltRefresh);
    connect(m_actions[CustomNodeId], &QAction::triggered, this, &QlumAttributePlugin::sltSetCustomNodeId);
    m_actions[Live]->setCheckable(true);
    connect(m_actions[Live], &QAction::toggled, this, &QlumAttributePlugin::sltLive);
    const std::pair<int, void (QlumAttributePlugin::*)()> commands[] = {
        {Back, &QlumAttributePlugin::sltBack},
        {Forward, &QlumAttributePlugin::sltForward},
        {UndoWrite, &QlumAttributePlugin::sltUndoWrite},
        {EditInWindow, &QlumAttributePlugin::sltEditInWindow},
        {CopyUriNodeId, &QlumAttributePlugin::sltCopyUriNodeId},
        {CopyBrowsePath, &QlumAttributePlugin::sltCopyBrowsePath},
        {KeepNode, &QlumAttributePlugin::sltKeepNode},
        {CompareNodes, &QlumAttributePlugin::sltCompareNodes}};
    for (const auto& [id, slot] : commands)
        connect(m_actions[id], &QAction::triggered, this, slot);
    const QStyle* style = QApplication::style();
    m_actions[Back]->setIcon(style->standardIcon(QStyle::SP_ArrowBack));
    m_actions[Forward]->setIcon(style->standardIcon(QStyle::SP_ArrowForward));
    m_actions[Live]->setIcon(QIcon(QStringLiteral(":/images/live.png")));
    connect(m_model, &QlumAttributeModel::shownIsOld, this, &QlumAttributePlugin::readBack);
    connect(m_model, &QlumAttributeModel::undoChanged, this, &QlumAttributePlugin::showCommands);
    showCommands();
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
    toolBar->addActions(
        m_actions.list({OnOff, Refresh, ExpandAll, CollapseAll, CustomNodeId, Back, Forward, Live}));
    m_heading = new QlumViewHeading(page);
    m_messages = new QlumMessageBar(page);
    m_view = new QlumAttributeView(m_model, page);
    m_view->addActions(
        m_actions.list({CopyUriNodeId, CopyBrowsePath, EditInWindow, UndoWrite, KeepNode, CompareNodes}));
    connect(m_view, &QlumAttributeView::windowWanted, this, &QlumAttributePlugin::editInWindow);
    connect(m_actions[ExpandAll], &QAction::triggered, m_view, &QTreeView::expandAll);
    connect(m_actions[CollapseAll], &QAction::triggered, m_view, &QTreeView::collapseAll);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(toolBar);
    layout->addWidget(m_heading);
    layout->addWidget(m_messages);
    layout->addWidget(m_view);
    connect(
        m_model, &QlumAttributeModel::writeFailed, m_messages,
        [this](const QString& why) { sltWriteFailed(why); });
    connect(
        m_view, &QlumAttributeView::editingEnded, m_messages, [this] { readWhatIsDue(); });
    connect(
        m_view, &QlumAttributeView::editRefused, m_messages,
        [this](const QString& why) { tellNote(tr("The value of %1 cannot be changed here."), why); });
    connect(
        m_view, &QlumAttributeView::entryRefused, m_messages,
        [this](const QString& why) { tellNote(tr("What was entered for %1 was not written."), why); });
    connect(
        m_model, &QlumAttributeModel::written, m_messages, [this] { m_messages->dismiss(writeTopic); });
    connect(m_model, &QlumAttributeModel::remarked, m_messages,
            [this](const QString& what) { tellNote(tr("About the value of %1:"), what); });
    // so that their keys work wherever the focus is in the dock
    page->addActions(m_actions.list({Refresh, Back, Forward, UndoWrite}));
    m_dock->setWidget(page);
    qlumSetInitialDockSize(m_dock, {430, 420});
    if (m_app->mainWindow())
        m_app->mainWindow()->addDockWidget(Qt::RightDockWidgetArea, m_dock);
}

void QlumAttributePlugin::sltWriteFailed(const QString& why)
{
    m_messages->tell({QlumMessage::Error,
                      writeTopic,
                      tr("The value of %1 was not written.").arg(toQString(m_model->nodeId().toXmlString())),
                      tr("%1: %2").arg(m_app->serverName(m_model->serverId()), why),
                      {},
                      {}});
}

void QlumAttributePlugin::tellNote(const QString& what, const QString& why)
{
    const QString node = toQString(m_model->nodeId().toXmlString());
    m_messages->tell({QlumMessage::Note, writeTopic, what.arg(node), why, {}, {}});
}

// ---- project

void QlumAttributePlugin::saveSettings(QSettings& settings)
{
    settings.setValue(onOffKey, m_actions[OnOff]->isChecked());
}

void QlumAttributePlugin::loadSettings(QSettings& settings, const QMap<int, int>&)
{
    m_actions[OnOff]->setChecked(settings.value(onOffKey, true).toBool());
}
