#include <plugins/addressspace/search/qlumfindnodeview.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/addressspace/search/qlumfindnodeform.h>
#include <plugins/addressspace/search/qlumfoundnodemodel.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <plugins/addressspace/search/qlumservercrawl.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumemptytext.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLocale>
#include <QModelIndex>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {
const QString searchTopic = QStringLiteral("search");
const QString revealTopic = QStringLiteral("reveal");
} // namespace

QlumFindNodeView::QlumFindNodeView(QlumSessionServicesProvider services, QWidget* parent)
    : QWidget(parent), m_services(services), m_state(new QlumViewState(QStringLiteral("FindNode"), this)),
      m_model(new QlumFoundNodeModel(this)), m_sorted(new QlumTableFilter(this)), m_server(new QComboBox),
      m_branchName(new QLabel), m_wholeServer(new QToolButton), m_form(new QlumFindNodeForm),
      m_find(new QPushButton(tr("F&ind"))), m_pause(new QPushButton(tr("&Pause"))),
      m_cancel(new QPushButton(tr("&Cancel"))), m_again(new QPushButton(tr("Read A&gain"))),
      m_heading(new QlumViewHeading(this)), m_messages(new QlumMessageBar(this)),
      m_table(new QTreeView(this)), m_count(new QLabel),
      m_search(new QlumNodeSearch(std::move(services), this))
{
    setObjectName(QStringLiteral("findNode"));
    setMinimumWidth(300); // the fields ask for more than a narrow window has
    auto* top = new QHBoxLayout;
    auto* fields = new QVBoxLayout;
    fields->setSpacing(4);
    fields->addLayout(makePlaceRow());
    fields->addWidget(m_form);
    top->addLayout(fields, 1);
    top->addLayout(makeButtons());
    top->setContentsMargins(6, 4, 6, 4);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(m_heading);
    layout->addWidget(m_messages);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_count);
    m_count->setObjectName(QStringLiteral("findState"));
    m_count->setTextFormat(Qt::PlainText);
    m_count->setMargin(4);
    makeTable();
    connect(m_form, &QlumFindNodeForm::findWanted, this, &QlumFindNodeView::find);
    connect(m_search, &QlumNodeSearch::found, m_model, &QlumFoundNodeModel::add);
    connect(m_search, &QlumNodeSearch::found, this, &QlumFindNodeView::showState);
    connect(m_search, &QlumNodeSearch::idle, this, &QlumFindNodeView::tellEnd);
    showState();
}

QlumFindNodeView::~QlumFindNodeView()
{
    delete m_search; // before the model that it fills
}

QLayout* QlumFindNodeView::makePlaceRow()
{
    qlumDescribeField(m_server,
                      {QStringLiteral("findServer"), tr("Server"), {}, tr("The server that is searched")});
    m_server->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(m_server, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &QlumFindNodeView::sltServerChanged);
    auto* label = new QLabel(tr("&Server:"));
    label->setBuddy(m_server);
    m_branchName->setObjectName(QStringLiteral("findBranch"));
    m_branchName->setTextFormat(Qt::PlainText);
    m_wholeServer->setText(tr("Whole Server"));
    m_wholeServer->setAutoRaise(true);
    qlumDescribeField(m_wholeServer, {QStringLiteral("findWholeServer"),
                                      tr("Whole Server"),
                                      {},
                                      tr("Search all nodes of the server, not only this branch")});
    connect(m_wholeServer, &QToolButton::clicked, this, [this] { setBranch({}); });
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_server);
    row->addSpacing(8);
    row->addWidget(m_branchName);
    row->addWidget(m_wholeServer);
    row->addStretch();
    return row;
}

QLayout* QlumFindNodeView::makeButtons()
{
    const auto describe = [this](QPushButton* button, const char* name, const QString& toolTip, auto slot) {
        qlumDescribeField(button, {QLatin1String(name), qlumBareLabel(button->text()), {}, toolTip});
        connect(button, &QPushButton::clicked, this, slot);
    };
    describe(m_find, "find", tr("Shows the nodes for which all that the fields say is true"),
             &QlumFindNodeView::find);
    describe(m_pause, "findPause", tr("Holds the reading of the server, or lets it go on"),
             [this](bool isHeld) {
                 if (QlumServerCrawl* held = crawl(m_searched))
                     held->setPaused(isHeld);
             });
    m_pause->setCheckable(true);
    describe(m_cancel, "findCancel", tr("Ends the search; what was found stays"), &QlumFindNodeView::cancel);
    describe(m_again, "findAgain", tr("Forgets what is known of the server's nodes and reads them again"),
             &QlumFindNodeView::readAgain);
    auto* buttons = new QVBoxLayout;
    buttons->setSpacing(4);
    auto* first = new QHBoxLayout;
    first->addWidget(m_find);
    first->addWidget(m_cancel);
    auto* second = new QHBoxLayout;
    second->addWidget(m_pause);
    second->addWidget(m_again);
    buttons->addLayout(first);
    buttons->addLayout(second);
    buttons->addStretch();
    return buttons;
}

void QlumFindNodeView::makeTable()
{
    m_sorted->setSourceModel(m_model);
    m_table->setObjectName(QStringLiteral("foundNodes"));
    m_table->setAccessibleName(tr("Found Nodes"));
    m_table->setRootIsDecorated(false);
    m_table->setUniformRowHeights(true);
    m_table->setAlternatingRowColors(true);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setDragEnabled(true);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_table->setModel(m_sorted);
    m_table->header()->setSortIndicator(-1, Qt::AscendingOrder);
    m_table->setSortingEnabled(true); // as they come, until the user wants another order
    const int em = fontMetrics().averageCharWidth();
    const int widths[] = {28, 34, 12, 22, 60, 30, 14, 8, 16};
    for (int column = 0; column < m_model->columnCount(); ++column)
        m_table->header()->resizeSection(column, em * widths[column]);
    new QlumNodeCommands(m_table, [this] { return selectedNodes(); });
    qlumMakeTable(m_table, {tr("Say what you are looking for, and press \"Find\"."), tr("nodes"), m_state,
                            QStringLiteral("columns")});
    connect(m_table, &QAbstractItemView::activated, this, &QlumFindNodeView::reveal);
}

// ---- where

void QlumFindNodeView::setServers(const QList<QlumServerNode*>& servers)
{
    const unsigned int chosen = server() ? server()->serverId() : qlumNoServer;
    {
        const QSignalBlocker blocker(m_server);
        m_server->clear();
        m_servers.clear();
        for (QlumServerNode* node : servers) {
            m_servers.append(node);
            m_server->addItem(qlumCutText(qlumSingleLine(node->displayName())));
            if (node->serverId() == chosen)
                m_server->setCurrentIndex(m_server->count() - 1);
        }
    }
    for (auto crawl = m_crawls.begin(); crawl != m_crawls.end();) {
        if (server(crawl->first)) {
            ++crawl;
            continue;
        }
        m_search->endServer(crawl->first);
        if (crawl->first == m_searched)
            leave();
        crawl = m_crawls.erase(crawl); // waits for its calls, which the end of the session has ended
    }
    if ((server() ? server()->serverId() : qlumNoServer) != chosen)
        sltServerChanged();
    showState();
}

void QlumFindNodeView::offer(unsigned int serverId, const Branch& branch, const QString& text)
{
    for (int i = 0; i < m_servers.size(); ++i)
        if (m_servers.at(i) && m_servers.at(i)->serverId() == serverId)
            m_server->setCurrentIndex(i);
    setBranch(branch);
    m_form->begin(text);
}

QlumServerNode* QlumFindNodeView::server() const
{
    return m_servers.value(m_server->currentIndex());
}

QlumServerNode* QlumFindNodeView::server(unsigned int serverId) const
{
    for (const QPointer<QlumServerNode>& node : m_servers)
        if (node && node->serverId() == serverId)
            return node;
    return nullptr;
}

// Null for a server that is not there.
QlumServerCrawl* QlumFindNodeView::crawl(unsigned int serverId)
{
    if (!server(serverId))
        return nullptr;
    std::unique_ptr<QlumServerCrawl>& crawl = m_crawls[serverId];
    if (!crawl) {
        crawl = std::make_unique<QlumServerCrawl>(serverId, m_services);
        connect(
            crawl.get(), &QlumServerCrawl::progressed, this,
            [this, serverId] { sltCrawled(serverId, false); });
        connect(crawl.get(), &QlumServerCrawl::ended, this, [this, serverId] { sltCrawled(serverId, true); });
    }
    return crawl.get();
}

QlumFindNodeView::Branch QlumFindNodeView::wantedBranch() const
{
    return m_branch.id.isNull() ? Branch{UaNodeId(OpcUaId_RootFolder), tr("Root")} : m_branch;
}

void QlumFindNodeView::setBranch(const Branch& branch)
{
    m_branch = branch;
    if (branch.id == UaNodeId(OpcUaId_RootFolder))
        m_branch = {};
    showState();
}

// A branch is one of a server.
void QlumFindNodeView::sltServerChanged()
{
    setBranch({});
}

void QlumFindNodeView::serverNodeChanged(unsigned int serverId, QlumConnectionStatus status,
                                         const NamespaceMap& namespaces)
{
    const bool isGone =
        status == QlumConnectionStatus::Disconnected || status == QlumConnectionStatus::NewSessionCreated;
    if (const auto known = m_crawls.find(serverId);
        known != m_crawls.end() && (isGone || !namespaces.isEmpty())) {
        if (serverId == m_searched)
            m_search->cancel();
        known->second->forget();
        if (serverId == m_searched && !namespaces.isEmpty())
            leave(); // the rows hold ids of the old table, which are other nodes now
    }
    if (!namespaces.isEmpty() && server() && server()->serverId() == serverId)
        m_branch = {};
    showState();
}

void QlumFindNodeView::serverModelChanged(unsigned int serverId)
{
    const auto known = m_crawls.find(serverId);
    if (known == m_crawls.end())
        return;
    known->second->setOutdated();
    showState();
}

// ---- searching

// Nothing is shown any more.
void QlumFindNodeView::leave()
{
    m_search->cancel();
    m_searched = qlumNoServer;
    m_model->begin(qlumNoServer, nullptr);
    m_heading->forget();
}

void QlumFindNodeView::find()
{
    m_messages->dismiss();
    QlumServerNode* wanted = server();
    if (!wanted || wanted->connectionStatus() == QlumConnectionStatus::Disconnected ||
        wanted->connectionStatus() == QlumConnectionStatus::ConnectFailed) {
        m_messages->tell({QlumMessage::Warning,
                          searchTopic,
                          tr("Nothing can be searched."),
                          wanted ? tr("Connect '%1' first.").arg(qlumCutText(wanted->displayName()))
                                 : tr("Add a server to the project and connect it first."),
                          {},
                          {}});
        return;
    }
    QlumServerCrawl& known = *crawl(wanted->serverId());
    const Branch branch = wantedBranch();
    QlumNodeIndex::Number begin = known.answers(branch.id);
    if (m_searched != wanted->serverId())
        leave();
    m_searched = wanted->serverId();
    if (begin == QlumNodeIndex::none) {
        m_search->cancel();
        m_pause->setChecked(false);
        known.start(branch.id, branch.name, branch.nodeClass);
        begin = 0;
    }
    search(known, begin);
}

void QlumFindNodeView::search(QlumServerCrawl& crawl, QlumNodeIndex::Number begin)
{
    m_model->begin(m_searched, crawl.index());
    if (!m_search->start(m_searched, crawl.index(), m_form->query(), begin)) {
        if (!crawl.finishedAt().isValid())
            crawl.cancel();
        m_messages->tell({QlumMessage::Error,
                          searchTopic,
                          tr("The regular expression is none."),
                          m_search->patternError(),
                          {},
                          {}});
    }
    showState();
}

void QlumFindNodeView::readAgain()
{
    if (const QlumServerNode* wanted = server(); wanted)
        if (QlumServerCrawl* known = crawl(wanted->serverId())) {
            m_search->cancel();
            known->forget();
        }
    find();
}

void QlumFindNodeView::cancel()
{
    m_search->cancel();
    if (QlumServerCrawl* known = crawl(m_searched))
        known->cancel();
    showState();
}

void QlumFindNodeView::sltCrawled(unsigned int serverId, bool hasEnded)
{
    if (serverId != m_searched)
        return showState();
    m_search->goOn();
    m_heading->touch();
    if (hasEnded && !m_search->isRunning())
        tellEnd();
    else
        showState();
}

// What the user has to know about what he sees, once there is all of it.
void QlumFindNodeView::tellEnd()
{
    showState();
    const QlumServerCrawl* known = crawl(m_searched);
    if (!known || known->isRunning() || m_search->isRunning())
        return;
    if (auto* empty = m_table->findChild<QlumEmptyText*>())
        empty->setText(tr("No node was found for which all that the fields say is true."));
    const QlumCrawlState& state = known->state();
    if (!m_search->failure().isEmpty())
        m_messages->tell({QlumMessage::Error, searchTopic, tr("The nodes could not be read."),
                          m_search->failure(), tr("Try &Again"), [this] { find(); }});
    else if (m_search->isCut())
        m_messages->tell({QlumMessage::Note,
                          searchTopic,
                          tr("Only the first %L1 nodes are shown.").arg(QlumNodeSearch::maximumHits),
                          tr("Search for less."),
                          {},
                          {}});
    else if (m_search->tooHard() > 0)
        m_messages->tell(
            {QlumMessage::Warning,
             searchTopic,
             tr("The expression was given up on %n text(s).", nullptr, static_cast<int>(m_search->tooHard())),
             tr("It has too many ways to match; make it simpler."),
             {},
             {}});
    else if (!state.remark.isEmpty())
        m_messages->tell(
            {QlumMessage::Warning, searchTopic, tr("Not all nodes were looked at."), state.remark, {}, {}});
    else if (state.phase == QlumCrawlState::Ended || m_search->wasCancelled())
        m_messages->tell({QlumMessage::Note, searchTopic, tr("The search was cancelled."),
                          tr("Only a part of the nodes was looked at."), tr("Read A&gain"),
                          [this] { readAgain(); }});
    else if (state.refused > 0)
        m_messages->tell({QlumMessage::Warning,
                          searchTopic,
                          tr("Of %n node(s) the server did not tell what is below.", nullptr,
                             static_cast<int>(state.refused)),
                          state.refusals.join(QStringLiteral("\n")),
                          {},
                          {}});
}

// ---- what is shown

QlumToolNodes QlumFindNodeView::selectedNodes() const
{
    QlumToolNodes nodes;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows())
        nodes.push_back(m_model->node(m_sorted->mapToSource(index)));
    return nodes;
}

void QlumFindNodeView::reveal()
{
    const QModelIndex current = m_table->currentIndex();
    QlumToolServices* tools = QlumToolServices::instance();
    if (!current.isValid() || !tools)
        return;
    const QlumToolNode node = m_model->node(m_sorted->mapToSource(current));
    if (!tools->revealNode(node.serverId, node.nodeId))
        m_messages->tell({QlumMessage::Note,
                          revealTopic,
                          tr("%1 cannot be shown in the address space window.")
                              .arg(qlumCutText(qlumSingleLine(node.name))),
                          tr("The server may be disconnected, or the node gone."),
                          {},
                          {}});
}

void QlumFindNodeView::showState()
{
    const QlumServerNode* chosen = server();
    const auto known = m_crawls.find(m_searched);
    const QlumServerCrawl* shown = known == m_crawls.end() ? nullptr : known->second.get();
    const bool isCrawling = shown && shown->isRunning();
    m_branchName->setText(m_branch.id.isNull()
                              ? tr("all nodes")
                              : tr("below %1").arg(qlumCutText(qlumSingleLine(m_branch.name), 60)));
    m_wholeServer->setVisible(!m_branch.id.isNull());
    m_find->setEnabled(chosen != nullptr);
    m_pause->setEnabled(isCrawling);
    m_pause->setChecked(isCrawling && m_pause->isChecked());
    m_cancel->setEnabled(isCrawling || m_search->isRunning());
    m_again->setEnabled(chosen != nullptr);
    const QlumServerNode* searched = server(m_searched);
    if (!searched) {
        m_heading->clear();
        m_count->setText(chosen ? QString() : tr("There is no server in the project."));
        return;
    }
    m_model->setGrey(searched->connectionStatus() != QlumConnectionStatus::Connected);
    m_heading->setServer(searched->displayName());
    m_heading->setStatus(searched->connectionStatus());
    m_heading->setActivity(isCrawling || m_search->isRunning() ? tr("searching...") : QString());
    m_count->setText(stateText());
}

QString QlumFindNodeView::stateText() const
{
    const auto known = m_crawls.find(m_searched);
    QString text = tr("%Ln node(s) found", nullptr, static_cast<int>(m_search->hits()));
    if (m_search->isRunning() && known != m_crawls.end() && known->second->index())
        text = tr("%1; %2 of %3 looked at")
                   .arg(text)
                   .arg(m_search->looked())
                   .arg(known->second->index()->size());
    return known == m_crawls.end() ? text : tr("%1. %2").arg(text, crawlText(*known->second));
}

QString QlumFindNodeView::crawlText(const QlumServerCrawl& crawl) const
{
    const QlumCrawlState& state = crawl.state();
    if (!crawl.index())
        return tr("What was known of the server is forgotten: its session has ended.");
    QString seen = tr("%Ln node(s) of the server seen", nullptr, static_cast<int>(crawl.index()->size()));
    if (state.late > 0)
        seen = tr("%1, %n call(s) not answered in time", nullptr, static_cast<int>(state.late)).arg(seen);
    if (crawl.isRunning()) {
        const QString queue = tr("%Ln to look below", nullptr, static_cast<int>(state.queue));
        const QString doing = state.phase == QlumCrawlState::Paused    ? tr("held")
                              : state.phase == QlumCrawlState::Waiting ? tr("waiting for the connection")
                                                                       : tr("reading");
        return tr("%1, %2, %3").arg(seen, queue, doing);
    }
    const QString when = crawl.finishedAt().isValid()
                             ? tr("read at %1").arg(qlumShowMinute(crawl.finishedAt()))
                             : tr("not all of them");
    return crawl.isOutdated()
               ? tr("%1, %2; the address space has changed since: press \"Read Again\"").arg(seen, when)
               : tr("%1, %2").arg(seen, when);
}
