#include <plugins/references/qlumreferenceplugin.h>

#include <app/api/qlumdocksize.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumlog.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/references/qlumreferencejob.h>
#include <plugins/references/qlumreferencemodel.h>
#include <plugins/references/qlumreferenceview.h>
#include <uawidgets/qlumscrollable.h>

#include <QAction>
#include <QDockWidget>
#include <QKeySequence>
#include <QMainWindow>
#include <QScrollArea>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumReferencePlugin", text)

namespace {
enum ActionId { Refresh };

constexpr QlumActionRow actionRows[] = {
    {Refresh, "refreshReferences", TEXT("Refresh"), "refresh.png", QKeySequence::Refresh,
     TEXT("Read the references again"), TEXT("<b>Refresh</b><br>Read the references again"),
     Qt::WidgetWithChildrenShortcut},
};

const QString readTopic = QStringLiteral("read");
const QString jumpTopic = QStringLiteral("jump");
const QLatin1String directionKey("Direction");
const QLatin1String typeKey("ReferenceType");
const QLatin1String subtypesKey("IncludeSubtypes");

QString textOf(const UaNodeId& nodeId)
{
    return toQString(nodeId.toXmlString());
}
} // namespace

QlumReferencePlugin::QlumReferencePlugin() : QlumReferencePlugin(qlumApplicationServices()) {}

QlumReferencePlugin::QlumReferencePlugin(QlumSessionServicesProvider services)
    : m_services(std::move(services))
{
    setObjectName(QStringLiteral("QlumReferencePlugin"));
}

QlumReferencePlugin::~QlumReferencePlugin() = default;

void QlumReferencePlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    qlumRegisterMetaTypes();
    m_pool = std::make_unique<QlumJobPool>(2); // one may wait for a server that the user has left
    m_model = new QlumReferenceModel(this);
    m_actions = QlumActionTable(actionRows, "QlumReferencePlugin", this);
    connect(m_actions[Refresh], &QAction::triggered, this, &QlumReferencePlugin::sltRefresh);
    createDock();
    showState();
}

void QlumReferencePlugin::shutdown()
{
    m_pool.reset();
    delete m_dock;
    delete m_model;
    m_model = nullptr;
    m_app = nullptr;
}

QString QlumReferencePlugin::name()
{
    return QStringLiteral("UA Reference Plugin");
}

void QlumReferencePlugin::createDock()
{
    m_dock = new QDockWidget(tr("References"), m_app->mainWindow());
    m_dock->setObjectName(QStringLiteral("References Dock Widget"));
    m_dock->setWhatsThis(tr("<b>References</b><br>This window shows the references of the node that is "
                            "selected in the address space window."));
    auto* page = new QWidget(m_dock);
    m_heading = new QlumViewHeading(page);
    m_messages = new QlumMessageBar(page);
    m_view = new QlumReferenceView(m_model, m_actions[Refresh], page);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(m_messages);
    layout->addWidget(m_view);
    page->addAction(m_actions[Refresh]);
    connect(m_view, &QlumReferenceView::optionsChanged, this, &QlumReferencePlugin::read);
    connect(m_view, &QlumReferenceView::moreWanted, this, &QlumReferencePlugin::sltMore);
    connect(m_view, &QlumReferenceView::jumpWanted, this, &QlumReferencePlugin::sltJump);
    connect(m_dock, &QDockWidget::visibilityChanged, this, [this](bool isVisible) {
        m_isSeen = isVisible;
        if (isVisible && m_isDue)
            read();
    });
    m_dock->setWidget(qlumScrollable(page));
    qlumSetInitialDockSize(m_dock, {0, 220}); // below another one
    if (m_app->mainWindow())
        m_app->mainWindow()->addDockWidget(Qt::RightDockWidgetArea, m_dock);
}

// ---- what the pane says

void QlumReferencePlugin::showState()
{
    if (!m_view)
        return; // the window has gone
    const unsigned int serverId = m_followed.serverId();
    const UaNodeId node = m_followed.nodeId();
    m_model->setOutdated(m_isReading || m_isOutdated || !m_followed.canAsk());
    m_view->setEmptyText(emptyText());
    m_view->setMore(m_hasMore && m_followed.canAsk(), m_isReading);
    if (serverId == qlumNoServer) {
        m_heading->clear();
        return;
    }
    m_heading->setServer(m_app->serverName(serverId));
    m_heading->setNode(node.isNull() ? QString() : textOf(node));
    m_heading->setStatus(m_followed.status());
    m_heading->setActivity(m_isReading ? tr("reading...") : QString());
}

QString QlumReferencePlugin::emptyText() const
{
    const UaNodeId node = m_followed.nodeId();
    if (node.isNull())
        return tr("Select a node in the address space window.");
    if (!m_failure.isEmpty())
        return m_failure;
    if (m_isReading || m_isDue)
        return tr("The references of %1 are being read...").arg(textOf(node));
    if (!m_followed.canAsk())
        return tr("The references of %1 are read when its server is connected.").arg(textOf(node));
    return tr("%1 has no references of this kind.").arg(textOf(node));
}

// ---- what is selected

void QlumReferencePlugin::selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                                           UaNodeId*)
{
    m_followed.select(serverId, nodeId, nodeClass);
    if (m_messages)
        m_messages->dismiss();
    read();
}

// Its tree comes into sight with the node that was selected in it.
void QlumReferencePlugin::serverSelectionChanged(unsigned int serverId)
{
    if (m_followed.selectServer(serverId))
        read();
}

void QlumReferencePlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                               const NamespaceMap& namespaceMap)
{
    if (!namespaceMap.isEmpty() || status == QlumConnectionStatus::NewSessionCreated)
        m_types.remove(serverId);
    const bool isBack = m_followed.statusChanged(serverId, status, namespaceMap);
    if (serverId == m_shown.serverId) {
        m_isOutdated = m_isOutdated || status != QlumConnectionStatus::Connected;
        if (!namespaceMap.isEmpty())
            forget(); // the rows hold ids of the old table, which are other nodes now
    }
    if (isBack)
        read();
    else
        showState();
}

void QlumReferencePlugin::sessionRemoved(unsigned int serverId)
{
    if (m_shown.serverId == serverId || m_followed.serverId() == serverId)
        forget();
    m_pool->endServer(serverId);
    m_types.remove(serverId);
    if (m_followed.removeServer(serverId) && m_messages)
        m_messages->dismiss();
    showState();
}

void QlumReferencePlugin::serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, unsigned char)
{
    if (serverId == m_followed.serverId() && nodeId == m_followed.nodeId())
        read();
}

// ---- reading

QlumReferenceQuery QlumReferencePlugin::wanted() const
{
    QlumReferenceQuery query = m_view->options();
    query.serverId = m_followed.serverId();
    query.nodeId = m_followed.nodeId();
    return query;
}

// What was read goes on being shown, but nobody waits for more of it.
void QlumReferencePlugin::leave()
{
    m_pool->giveUp(m_ticket);
    m_isReading = false;
    m_hasMore = false;
    if (const auto rest = std::exchange(m_rest, nullptr); rest && m_shown.serverId != qlumNoServer)
        m_pool->add({{}, m_shown.serverId},
                    [services = m_services, serverId = m_shown.serverId, rest](QlumJob& job) {
                        if (const auto session = services(serverId))
                            qlumReleaseRest(job, *session, *rest);
                    });
}

// Nothing of it may be shown any more.
void QlumReferencePlugin::forget()
{
    leave();
    m_shown = QlumReferenceQuery();
    m_model->setReferences({});
    if (m_heading)
        m_heading->forget();
}

void QlumReferencePlugin::sltRefresh()
{
    m_types.remove(m_followed.serverId());
    read();
}

void QlumReferencePlugin::read()
{
    if (!m_view)
        return;
    leave();
    const QlumReferenceQuery query = wanted();
    if (m_shown.serverId != query.serverId || m_shown.nodeId != query.nodeId)
        forget();
    m_failure.clear();
    m_isDue = !query.nodeId.isNull() && !m_isSeen;
    if (!m_isDue && !query.nodeId.isNull() && m_followed.canAsk()) {
        m_shown = query;
        m_view->setNode(query.serverId, query.nodeId);
        m_rest = std::make_shared<QlumReferenceRest>();
        ask(false);
    }
    showState();
}

void QlumReferencePlugin::sltMore()
{
    if (m_isReading || !m_rest)
        return;
    ask(true);
    showState();
}

void QlumReferencePlugin::ask(bool goOn)
{
    m_isReading = true;
    const QlumReferenceQuery query = m_shown;
    const auto function = [this, query, goOn, rest = m_rest, services = m_services](QlumJob& job) {
        const std::shared_ptr<QlumSessionServices> session = services(query.serverId);
        std::deque<QlumReference> references;
        UaStatus status(OpcUa_BadServerNotConnected);
        bool hasMore = false;
        if (session)
            status = qlumReadReferences(job, *session, query, goOn, *rest, references, hasMore);
        job.post([this, query, goOn, status, hasMore, references = std::move(references)]() mutable {
            take(query, goOn, status, hasMore, std::move(references));
        });
    };
    m_ticket = m_pool->add({tr("Reading references"), query.serverId}, function,
                           [this, query, goOn](QlumWorkEnd end) {
                               if (end == QlumWorkEnd::Cancelled)
                                   readFailed(query, goOn, tr("The reading was cancelled."));
                               else if (end == QlumWorkEnd::Failed)
                                   readFailed(query, goOn, tr("The reading failed; the log says more."));
                           });
}

void QlumReferencePlugin::take(const QlumReferenceQuery& query, bool goOn, const UaStatus& status,
                               bool hasMore, std::deque<QlumReference> references)
{
    if (!m_view)
        return;
    m_isReading = false;
    m_isOutdated = false;
    m_hasMore = hasMore;
    if (goOn)
        m_model->addReferences(std::move(references));
    else
        m_model->setReferences(std::move(references));
    m_heading->touch();
    if (status.isBad()) {
        QlumLog(tr("Reference Plugin"), query.serverId)
            .error(tr("Browse of node '%1' failed [ret = %2].")
                       .arg(toQString(query.nodeId.toFullString()), qlumResultText(status)));
        readFailed(query, goOn, qlumResultInWords(status));
        return;
    }
    m_messages->dismiss(readTopic);
    if (!m_types.contains(query.serverId))
        readTypes(query.serverId);
    else
        m_view->setTypes(m_types.value(query.serverId));
    showState();
}

// The first ones that came stay.
void QlumReferencePlugin::readFailed(const QlumReferenceQuery& query, bool goOn, const QString& why)
{
    m_isReading = false;
    m_hasMore = false;
    const bool isCut = goOn || m_model->rowCount() > 0;
    const QString what = (isCut ? tr("The list of references of %1 is incomplete.")
                                : tr("The references of %1 could not be read."))
                             .arg(textOf(query.nodeId));
    if (!isCut)
        m_failure = what;
    if (m_messages)
        m_messages->tell({QlumMessage::Error, readTopic, what,
                          tr("%1: %2").arg(m_app->serverName(query.serverId), why), tr("Try &Again"),
                          [this] { read(); }});
    showState();
}

void QlumReferencePlugin::readTypes(unsigned int serverId)
{
    m_types.insert(serverId, {}); // asked for once
    m_pool->add({tr("Reading reference types"), serverId},
                [this, serverId, services = m_services](QlumJob& job) {
                    const std::shared_ptr<QlumSessionServices> session = services(serverId);
                    if (!session)
                        return;
                    job.post([this, serverId, types = qlumReadReferenceTypes(job, *session)] {
                        m_types.insert(serverId, types);
                        if (m_view && serverId == m_followed.serverId())
                            m_view->setTypes(types);
                    });
                });
}

// ---- going on from there

void QlumReferencePlugin::sltJump(const QlumReference& reference)
{
    QlumToolServices* services = QlumToolServices::instance();
    const unsigned int serverId = m_shown.serverId;
    const QString what = tr("%1 cannot be shown in the address space window.").arg(reference.targetText);
    if (reference.target.isNull()) {
        m_messages->tell({QlumMessage::Note, jumpTopic, what, tr("It is a node of another server."), {}, {}});
        return;
    }
    if (services && services->revealNode(serverId, reference.target))
        return;
    // it may lie outside of what the tree shows; its attributes and references can be shown all the same
    UaNodeId target = reference.target;
    m_app->selectionChanged(serverId, &target, reference.nodeClass);
    if (m_messages)
        m_messages->tell({QlumMessage::Note,
                          jumpTopic,
                          what,
                          tr("No hierarchical reference leads there; its references are shown here."),
                          {},
                          {}});
}

// ---- project

void QlumReferencePlugin::saveSettings(QSettings& settings)
{
    if (!m_view)
        return;
    const QlumReferenceQuery options = m_view->options();
    settings.setValue(directionKey, static_cast<int>(options.direction));
    settings.setValue(subtypesKey, options.includeSubtypes);
    // a type of one server means nothing to the next one
    settings.setValue(typeKey, options.typeId.isNull() || options.typeId.namespaceIndex() != 0
                                   ? QString()
                                   : textOf(options.typeId));
}

void QlumReferencePlugin::loadSettings(QSettings& settings, const QMap<int, int>&)
{
    if (!m_view)
        return;
    QlumReferenceQuery options;
    const int direction = settings.value(directionKey, OpcUa_BrowseDirection_Both).toInt();
    if (direction >= OpcUa_BrowseDirection_Forward && direction <= OpcUa_BrowseDirection_Both)
        options.direction = static_cast<OpcUa_BrowseDirection>(direction);
    options.typeId = UaNodeId::fromString(settings.value(typeKey).toString().toStdString());
    options.includeSubtypes = settings.value(subtypesKey, true).toBool();
    m_view->setOptions(options);
    read();
}
