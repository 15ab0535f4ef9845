// What the view consists of, and which server it shows.
#include <plugins/devices/qlumdevicesview.h>

#include <app/api/qlumdocumentservers.h>
#include <plugins/devices/qlumdevicelist.h>
#include <plugins/devices/qlumdevicepages.h>
#include <plugins/devices/qlumdevicetreemodel.h>
#include <plugins/devices/qlumparametermodel.h>
#include <plugins/devices/qlumparameterpage.h>
#include <uabase/values/uadatavalue.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumturningsplitter.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QModelIndex>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumDevicesView", text)

namespace {
enum DevicesAction { DevicesRefresh };

constexpr QlumActionRow devicesActionRows[] = {
    {DevicesRefresh, "refreshDevices", TEXT("&Refresh"), "refresh.png", QKeySequence::Refresh,
     TEXT("Read the devices from the server again"),
     TEXT("<b>Refresh</b><br>Reads devices, nameplates, health and locks again. Changed values stay."),
     Qt::WidgetWithChildrenShortcut},
};
} // namespace

QlumDevicesView::QlumDevicesView(QlumApplicationInterface& application,
                                 std::shared_ptr<QlumDevicePools> pools, QlumSessionServicesProvider services,
                                 const QlumMonitoringProvider& monitoring, QlumDeviceWorld world,
                                 QWidget* parent)
    : QWidget(parent), m_application(application), m_pools(std::move(pools)), m_services(std::move(services)),
      m_world(std::move(world)), m_state(new QlumViewState(QStringLiteral("DevicesView"), this)),
      m_heading(new QlumViewHeading(this)), m_messages(new QlumMessageBar(this)),
      m_stateWatch(
          monitoring, [this](quint64 key, const UaDataValue& value) { takeState(key, value); }, this),
      m_valueWatch(
          monitoring,
          [this](quint64 key, const UaDataValue& value) {
              m_parameters->model()->setValue(static_cast<int>(key), value);
              m_heading->touch();
          },
          this)
{
    setObjectName(QStringLiteral("devicesView"));
    setAccessibleName(tr("Devices View"));
    createActions();
    m_note = new QLabel;
    m_note->setObjectName(QStringLiteral("devicesNote"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->setMargin(4);
    makePages();
    auto* right = new QWidget;
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->addWidget(m_lockBar);
    rightLayout->addWidget(m_tabs, 1);
    right->setMinimumWidth(fontMetrics().averageCharWidth() * 45); // else its tables show next to nothing
    auto* splitter = new QlumTurningSplitter;
    splitter->setObjectName(QStringLiteral("devicesSplitter"));
    splitter->addWidget(makeTree());
    splitter->addWidget(right);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({fontMetrics().averageCharWidth() * 60, fontMetrics().averageCharWidth() * 100});
    splitter->setChildrenCollapsible(false);
    m_state->keep(splitter, QStringLiteral("splitter"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(makeBar());
    layout->addWidget(m_messages);
    layout->addWidget(m_note);
    layout->addWidget(splitter, 1);
    connectParts();
    updateState();
}

QlumDevicesView::~QlumDevicesView()
{
    giveUpReading();
    if (m_working != 0)
        m_pools->work.of(m_serverId).giveUp(m_working);
    giveLocksBack();
    delete m_state; // while there is what it keeps
}

// ---- widgets

void QlumDevicesView::createActions()
{
    m_actions = QlumActionTable(devicesActionRows, "QlumDevicesView", this);
    connect(m_actions[DevicesRefresh], &QAction::triggered, this, &QlumDevicesView::sltRefresh);
    addAction(m_actions[DevicesRefresh]);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

QWidget* QlumDevicesView::makeBar()
{
    auto* bar = new QWidget;
    m_filterText = new QLineEdit;
    m_filterText->setClearButtonEnabled(true);
    m_filterText->setPlaceholderText(tr("Filter devices and nameplates"));
    qlumDescribeField(m_filterText, {QStringLiteral("devicesFilter"),
                                     tr("Filter"),
                                     {},
                                     tr("Shows the devices that have this text, and those above them")});
    auto* refresh = new QToolButton;
    refresh->setDefaultAction(m_actions[DevicesRefresh]);
    refresh->setAutoRaise(true);
    refresh->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    refresh->setObjectName(QStringLiteral("refreshDevicesButton"));
    refresh->setAccessibleName(qlumBareLabel(m_actions[DevicesRefresh]->text()));
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(m_filterText, 1);
    layout->addWidget(refresh);
    return bar;
}

QWidget* QlumDevicesView::makeTree()
{
    m_treeModel = new QlumDeviceTreeModel(this);
    m_treeFilter = new QlumTableFilter(this);
    m_treeFilter->setRecursiveFilteringEnabled(true);
    m_treeFilter->setSourceModel(m_treeModel);
    m_tree = new QTreeView;
    m_tree->setObjectName(QStringLiteral("devicesTree"));
    m_tree->setAccessibleName(tr("Devices"));
    m_tree->setModel(m_treeFilter);
    m_tree->setUniformRowHeights(true);
    m_tree->setMinimumWidth(fontMetrics().averageCharWidth() * 30);
    m_tree->addAction(m_actions[DevicesRefresh]);
    const auto node = [this] { return current() ? current()->id : UaNodeId(); };
    qlumMakeTable(m_tree, {tr("The devices of a connected server appear here."), QStringLiteral("devices"),
                           m_state, QStringLiteral("tree")});
    new QlumNodeCommands(m_tree, [this, node] { return selectedNodes(node); });
    return m_tree;
}

void QlumDevicesView::makePages()
{
    m_lockBar = new QlumDeviceLockBar;
    m_parameters = new QlumParameterPage(*m_state);
    m_nameplates = new QlumNameplateModel(this);
    m_nameplateFilter = new QlumTableFilter(this);
    m_nameplateFilter->setSourceModel(m_nameplates);
    m_nameplateView =
        qlumMakeDeviceTable(m_nameplateFilter, QStringLiteral("deviceNameplates"), tr("Nameplates"),
                            tr("The nameplates of all devices appear here."), m_state, {20, 34});
    m_nameplateView->setSortingEnabled(true);
    m_nameplateView->sortByColumn(0, Qt::AscendingOrder);
    m_methods = new QlumDeviceMethodPage(*m_state);
    m_documents = new QlumDeviceDocumentPage(*m_state);
    m_transfer = new QlumDeviceTransferPage(*m_state);
    m_tabs = new QTabWidget;
    m_tabs->setObjectName(QStringLiteral("devicesTabs"));
    m_tabs->setAccessibleName(tr("Parts of the device"));
    m_tabs->addTab(m_parameters, tr("Parameters"));
    m_tabs->addTab(m_nameplateView, tr("Nameplates"));
    m_tabs->addTab(m_methods, tr("Methods"));
    m_tabs->addTab(m_documents, tr("Documents"));
    m_tabs->addTab(m_transfer, tr("Transfer"));
}

void QlumDevicesView::connectParts()
{
    connect(
        m_filterText, &QLineEdit::textChanged, this,
        [this](const QString& text) {
            m_treeFilter->setText(text);
            m_nameplateFilter->setText(text);
            m_tree->expandAll();
        });
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) {
                selectDevice(index.isValid() ? m_treeModel->deviceAt(m_treeFilter->mapToSource(index)) : -1);
            });
    connect(m_parameters, &QlumParameterPage::readWanted, this, &QlumDevicesView::readParameters);
    connect(m_parameters, &QlumParameterPage::watchWanted, this, &QlumDevicesView::watchParameters);
    connect(m_parameters, &QlumParameterPage::writeWanted, this, &QlumDevicesView::writeParameters);
    connect(m_parameters, &QlumParameterPage::saveWanted, this, &QlumDevicesView::saveParameters);
    connect(m_parameters, &QlumParameterPage::loadWanted, this, &QlumDevicesView::loadParameters);
    connect(m_parameters, &QlumParameterPage::compareWanted, this, &QlumDevicesView::compareWithType);
    connect(m_parameters, &QlumParameterPage::told, this, &QlumDevicesView::tell);
    connect(m_parameters->model(), &QlumParameterModel::changesChanged, this, [this] {
        if (m_parameters->model()->changeCount() == 0)
            m_messages->dismiss(QStringLiteral("deviceParameters"));
    });
    connect(m_methods, &QlumDeviceMethodPage::told, this, &QlumDevicesView::tell);
    connect(m_documents, &QlumDeviceDocumentPage::openWanted, this, &QlumDevicesView::openDocument);
    connect(m_documents, &QlumDeviceDocumentPage::saveWanted, this, &QlumDevicesView::saveDocument);
    connect(m_transfer, &QlumDeviceTransferPage::transferWanted, this, &QlumDevicesView::transfer);
    connect(m_transfer, &QlumDeviceTransferPage::cancelWanted, this, [this] {
        if (m_isTransferring && m_working != 0) {
            m_pools->work.of(m_serverId).giveUp(std::exchange(m_working, 0));
            m_isTransferring = false;
            m_transfer->setOutcome({tr("you have cancelled; the device may go on by itself"), {}});
            updateState();
        }
    });
    connect(m_lockBar, &QlumDeviceLockBar::lockWanted, this, &QlumDevicesView::lockDevice);
    connect(m_lockBar, &QlumDeviceLockBar::unlockWanted, this, &QlumDevicesView::unlockDevice);
    connect(m_lockBar, &QlumDeviceLockBar::breakWanted, this, &QlumDevicesView::breakLock);
    connect(&m_renewTimer, &QTimer::timeout, this, &QlumDevicesView::renewLocks);
    m_checkTimer.setSingleShot(true);
    connect(&m_checkTimer, &QTimer::timeout, this, &QlumDevicesView::checkLocks);
}

QlumToolNodes QlumDevicesView::selectedNodes(const std::function<UaNodeId()>& current) const
{
    const UaNodeId id = current();
    if (id.isNull() || m_serverId == qlumNoServer)
        return {};
    const QlumDevice* const device = this->current();
    return {{m_serverId, id, OpcUa_NodeClass_Object, {}, device ? device->name : QString()}};
}

// ---- which server

void QlumDevicesView::serverSelectionChanged(unsigned int serverId)
{
    const bool isHeldHere =
        !m_held.empty() || !m_kept.empty() || m_parameters->model()->changeCount() > 0 || m_working != 0;
    if (isHeldHere && m_serverId != qlumNoServer)
        return;
    const QList<unsigned int> all = m_application.projectServerIds();
    setServer(serverId == qlumNoServer && all.size() == 1 ? all.front() : serverId);
}

void QlumDevicesView::setServer(unsigned int serverId)
{
    if (serverId == m_serverId)
        return updateState();
    giveUpReading();
    m_serverId = serverId;
    clearAll();
    qlumSetDocumentServers(this,
                           serverId == qlumNoServer ? QList<unsigned int>() : QList<unsigned int>{serverId});
    updateState();
    if (isUp())
        sltRefresh();
}

bool QlumDevicesView::isUp() const
{
    const QlumConnectionStatus status = m_status.value(m_serverId, QlumConnectionStatus::Disconnected);
    return m_serverId != qlumNoServer &&
           (status == QlumConnectionStatus::Connected || status == QlumConnectionStatus::NewSessionCreated);
}

void QlumDevicesView::clearAll()
{
    m_stateWatch.end();
    m_valueWatch.end();
    m_renewTimer.stop();
    m_checkTimer.stop();
    m_held.clear();
    m_toldLocked.clear();
    m_kept.clear();
    m_isRead = false;
    m_current = -1;
    m_space = std::make_shared<QlumDeviceSpace>();
    m_treeModel->setSpace(m_space);
    m_nameplates->setSpace(*m_space);
    m_parameters->clear();
    m_methods->setMethods(m_serverId, {});
    m_documents->setDocuments({});
    m_transfer->clear();
    m_messages->dismiss();
    m_heading->forget();
}

void QlumDevicesView::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status)
{
    const bool wasUp = serverId == m_serverId && isUp();
    m_status.insert(serverId, status);
    if (serverId != m_serverId)
        return;
    if (status == QlumConnectionStatus::Disconnected || status == QlumConnectionStatus::ConnectFailed) {
        giveUpReading();
        loseAllLocks(tr("The connection was closed, and locks belong to it."));
    } else if (status == QlumConnectionStatus::NewSessionCreated) {
        loseAllLocks(tr("The connection was lost and came back as a new session; locks belong to the old "
                        "one. What you have changed is not written yet: lock the device again before you "
                        "write."));
    }
    updateState();
    if (isUp() && (!wasUp || status == QlumConnectionStatus::NewSessionCreated)) {
        renewLocks();
        if (!m_isRead || status == QlumConnectionStatus::NewSessionCreated || m_held.empty())
            sltRefresh();
    }
}

void QlumDevicesView::sessionRemoved(unsigned int serverId)
{
    m_status.remove(serverId);
    if (serverId != m_serverId)
        return;
    giveUpReading();
    if (m_working != 0)
        m_pools->work.of(serverId).giveUp(std::exchange(m_working, 0));
    m_isTransferring = false;
    m_serverId = qlumNoServer;
    clearAll();
    qlumSetDocumentServers(this, {});
    updateState();
}

QString QlumDevicesView::noteText() const
{
    const QString name = m_serverId == qlumNoServer ? QString() : m_application.serverName(m_serverId);
    if (m_serverId == qlumNoServer)
        return tr("Select a server in the project to see its devices.");
    if (!isUp())
        return m_isRead ? tr("There is no connection to %1: what is shown is what was read last.").arg(name)
                        : tr("There is no connection to %1. Connect it to see its devices.").arg(name);
    if (!m_isRead)
        return {};
    if (!m_space->hasNamespace)
        return tr("%1 has no devices: it does not know the namespace %2.")
            .arg(name, QLatin1String(qlumDeviceNamespace));
    if (!m_space->missing.isEmpty())
        return tr("%1 knows the namespace of devices, but has no %2.")
            .arg(name, m_space->missing.join(QStringLiteral(", ")));
    if (m_space->devices.empty())
        return m_space->status.isBad() ? QString() : tr("%1 has no devices.").arg(name);
    if (m_space->isCut)
        return tr("%1 has more devices than are shown.").arg(name);
    if (const QlumDevice* const device = current(); device && !device->missing.isEmpty())
        return tr("%1 lacks what every device must have: %2.")
            .arg(device->name, device->missing.join(QStringLiteral(", ")));
    return {};
}

void QlumDevicesView::updateState()
{
    if (m_serverId != qlumNoServer) {
        m_heading->setServer(m_application.serverName(m_serverId));
        m_heading->setStatus(m_status.value(m_serverId, QlumConnectionStatus::Disconnected));
        m_heading->setNode(current() ? current()->name : QString());
    } else {
        m_heading->clear();
    }
    const QString note = noteText();
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
    m_heading->setActivity(m_reading != 0 ? tr("reading...") : m_working != 0 ? tr("working...") : QString());
    m_actions[DevicesRefresh]->setEnabled(isUp() && m_reading == 0);
    m_parameters->setReady(isUp() && m_working == 0 && current());
    m_documents->setReady(isUp() && m_working == 0);
    updateLock();
}

// ---- project

void QlumDevicesView::saveSettings(QSettings& settings)
{
    if (m_serverId != qlumNoServer)
        settings.setValue(QStringLiteral("ServerId"), m_serverId);
    settings.setValue(QStringLiteral("Page"), m_tabs->currentIndex());
    settings.setValue(QStringLiteral("Device"), current() ? current()->pathNames : m_wantedDevice);
    settings.setValue(QStringLiteral("Group"), m_parameters->group());
    settings.setValue(QStringLiteral("Filter"), m_filterText->text());
    settings.setValue(QStringLiteral("Watch"), m_parameters->isWatching());
}

void QlumDevicesView::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    // older programs did not store one: then it is the server that is selected
    const auto server = serverIdMap.constFind(settings.value(QStringLiteral("ServerId"), -1).toInt());
    if (server != serverIdMap.constEnd())
        setServer(static_cast<unsigned int>(*server));
    m_tabs->setCurrentIndex(settings.value(QStringLiteral("Page"), 0).toInt());
    m_wantedDevice = settings.value(QStringLiteral("Device")).toString();
    m_parameters->setGroup(settings.value(QStringLiteral("Group")).toString());
    m_filterText->setText(settings.value(QStringLiteral("Filter")).toString());
    m_parameters->setWatching(settings.value(QStringLiteral("Watch"), false).toBool());
}

#undef TEXT
