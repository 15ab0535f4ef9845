// Browsing: what the server is asked, and how the answers become rows.
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <plugins/addressspace/qlumaddressspacemodel_p.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QElapsedTimer>
#include <QLocale>
#include <QPersistentModelIndex>
#include <QTimer>

#include <algorithm>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {
using UaClientSdk::BrowseContext;
using UaClientSdk::ServiceSettings;

constexpr OpcUa_UInt32 hierarchicalReferences = 33;
constexpr OpcUa_UInt32 propertyType = 68;
constexpr int firstSlice = 30;      // ms, besides the call under way: most nodes are complete by then
constexpr int sortedAtOnce = 10000; // children
constexpr int maximumChildren = 1000000;
constexpr int maximumNameLength = 1024;
constexpr int maximumFailures = 3;         // in a row
constexpr int maximumBarrenResults = 1000; // in a row, without a single new node

QString nameOf(const OpcUa_ReferenceDescription& reference)
{
    const OpcUa_String& text = reference.DisplayName.Text;
    if (!text.Data || text.Length <= 0)
        return {};
    const int bytes = std::min(text.Length, maximumNameLength * 4); // more than any name that fits
    return QString::fromUtf8(text.Data, bytes).left(maximumNameLength);
}

std::unique_ptr<QlumAddressSpaceNode> makeNode(OpcUa_ReferenceDescription& reference, UaNodeId nodeId)
{
    UaNodeId typeDefinition;
    typeDefinition.attach(&reference.TypeDefinition.NodeId);
    auto node = std::make_unique<QlumAddressSpaceNode>(nameOf(reference), nodeId, typeDefinition,
                                                       static_cast<OpcUa_UInt32>(reference.NodeClass));
    if (typeDefinition.isNumeric(propertyType))
        node->setBrowsed(true); // properties have nothing below them
    return node;
}

bool isAtOrBelow(const QlumAddressSpaceNode* node, const QlumAddressSpaceNode* ancestor)
{
    while (node && node != ancestor)
        node = node->parent();
    return node != nullptr;
}
} // namespace

BrowseContext QlumAddressSpaceModel::browseContext(const QlumAddressSpaceNode& node) const
{
    BrowseContext context;
    context.referenceTypeId = UaNodeId(hierarchicalReferences);
    context.nodeClassMask = node.childNodeClassMask();
    context.maxReferencesToReturn = QlumSettings::maxReferences.value();
    return context;
}

void QlumAddressSpaceModel::browseNode(QlumAddressSpaceNode* node)
{
    qlumAssertGuiThread();
    if (!m_server || !m_services)
        return;
    for (const Task& task : m_tasks)
        if (task.node == node)
            return; // under way
    if (putOff([this, kept = QPersistentModelIndex(indexOf(node))] {
            if (kept.isValid() && !nodeAt(kept)->isBrowsed())
                browseNode(nodeAt(kept));
        }))
        return;
    if (refuse(*node))
        return stopAskingFor(node);
    Task task(node);
    task.settings.callTimeout = QlumSettings::browseTimeout.value();
    task.settings.purpose = toUaString(tr("Browsing"));
    task.budget = QlumSettings::maxBrowseNextCalls.value();
    auto answer = m_caller.browse(task.settings, node->nodeId(), browseContext(*node), node->name());
    callEnded(answer.has_value());
    if (m_caller.hasWaited() && (!answer || !answer->status.isGood()))
        stopAskingFor(node);
    if (!answer) {
        m_log.info(tr("Browsing was cancelled by user."));
        return;
    }
    task.continuationPoint = std::move(answer->continuationPoint);
    if (!answer->status.isGood()) {
        m_log.writeStatus(QlumLogLevel::Info, tr("Browse failed with error '%1'."),
                          answer->status.statusCode());
        if (!task.continuationPoint.isEmpty())
            release(task);
        return;
    }
    m_log.info(tr("Browse succeeded."));
    node->setBrowsed(true);
    task.pages.take(answer->references.length(), task.continuationPoint);
    addNodes(node, answer->references);
    m_tasks.push_front(std::move(task)); // the node that the user opened last comes first
    runTasks(firstSlice);
}

// A call on a connection that is lost waits for its whole time and fails; the user is told at once instead.
bool QlumAddressSpaceModel::refuse(const QlumAddressSpaceNode& node) const
{
    if (!m_server || m_server->connectionStatus() != QlumConnectionStatus::ConnectionError)
        return false;
    m_log.write(QlumLogLevel::Warning, tr("'%1' is not browsed: the connection to the server is lost.")
                                           .arg(qlumCutText(qlumSingleLine(node.name()))));
    return true;
}

// While the user waits for an answer nothing changes what it belongs to.
bool QlumAddressSpaceModel::putOff(std::function<void()> action)
{
    if (!m_caller.isWaiting())
        return false;
    m_putOff.push_back(std::move(action));
    return true;
}

// Not at once: whoever called has not taken the answer yet.
void QlumAddressSpaceModel::callEnded(bool answered)
{
    m_wasCancelled = !answered;
    if (!m_putOff.empty())
        QTimer::singleShot(0, this, [this] {
            for (const auto& action : std::exchange(m_putOff, {}))
                action();
        });
}

// A view that expands a node asks for its children until it has them, and at every layout after that: the
// user would wait again at once.
void QlumAddressSpaceModel::stopAskingFor(QlumAddressSpaceNode* node)
{
    m_inVain = node;
    QTimer::singleShot(0, this, [this, kept = QPersistentModelIndex(indexOf(node))] {
        if (kept.isValid() && m_observer.waitedInVain)
            m_observer.waitedInVain(kept);
        m_inVain = nullptr;
    });
}

void QlumAddressSpaceModel::runTasks(int milliseconds)
{
    qlumAssertGuiThread();
    if (!m_server)
        m_tasks.clear();
    if (!m_tasks.empty() && (m_tasks.front().isDone || runTask(m_tasks.front(), milliseconds))) {
        if (!m_tasks.front().isDone && m_tasks.front().node->childCount() > sortedAtOnce) {
            m_tasks.front().isDone = true; // putting them in order takes a turn of its own
            m_timer->start(0);
            return;
        }
        Task done = std::move(m_tasks.front());
        m_tasks.pop_front();
        finish(done);
    }
    if (!m_tasks.empty())
        m_timer->start(0);
}

// True when the task is done.
bool QlumAddressSpaceModel::runTask(Task& task, int milliseconds)
{
    QElapsedTimer slice;
    slice.start();
    while (!task.continuationPoint.isEmpty()) {
        if (!mayContinue(task))
            return true;
        if (!browseNext(task)) // the first is always made, as the budget is looked at afterwards
            return true;
        if (slice.elapsed() >= milliseconds)
            return task.continuationPoint.isEmpty();
    }
    return true;
}

// One BrowseNext; false when the budget allows no other.
bool QlumAddressSpaceModel::browseNext(Task& task)
{
    const UaByteString point = task.continuationPoint;
    auto answer = m_caller.browseNext(task.settings, point, task.node->name());
    callEnded(answer.has_value());
    if (!answer) {
        m_log.info(tr("Browsing was cancelled by user."));
        task.continuationPoint = UaByteString(); // given back when the answer comes
        return false;
    }
    task.continuationPoint = std::move(answer->continuationPoint);
    const UaStatus& status = answer->status;
    if (status.isGood()) {
        m_log.info(tr("BrowseNext succeeded."));
        task.failures = 0;
        task.pages.take(answer->references.length(), task.continuationPoint);
        task.barren = addNodes(task.node, answer->references) > 0 ? 0 : task.barren + 1;
    } else {
        m_log.writeStatus(QlumLogLevel::Info, tr("Browse failed with error '%1'."), status.statusCode());
        takeFailure(task, point, status);
    }
    task.progress->update(task.node->childCount());
    return task.budget < 0 || --task.budget > 0;
}

// A call that failed brings no continuation point back, but the server may still keep the one that was sent.
void QlumAddressSpaceModel::takeFailure(Task& task, const UaByteString& point, const UaStatus& status)
{
    ++task.failures;
    if (!task.continuationPoint.isEmpty() || !UaClientSdk::keepsContinuationPoint(status))
        return;
    task.continuationPoint = point;
    task.stopText = tr("The references are incomplete. Releasing current ContinuationPoint.");
}

// What ends a browse before the server or the budget does.
bool QlumAddressSpaceModel::mayContinue(Task& task)
{
    if (task.failures >= maximumFailures)
        task.stopText = tr("The server keeps refusing to continue. Releasing current ContinuationPoint.");
    else if (task.pages.isStuck() || task.barren >= maximumBarrenResults ||
             task.node->childCount() >= maximumChildren)
        task.stopText =
            tr("The server does not come to an end of its references. Releasing current ContinuationPoint.");
    else if (task.progress->wasCancelled())
        task.stopText = tr("Browsing was cancelled by user. Releasing current ContinuationPoint.");
    return task.stopText.isEmpty();
}

void QlumAddressSpaceModel::finish(Task& task)
{
    if (!task.continuationPoint.isEmpty()) {
        m_log.error(task.stopText.isEmpty()
                        ? tr("Server returned more ContinuationPoints than accepted by setting "
                             "'General.MaxBrowseNextCalls'. Releasing current ContinuationPoint.")
                        : task.stopText);
        release(task);
    }
    task.progress.reset();
    sortNode(task.node);
}

// False when the server did not take it, as it does when it is about to go; it forgets the point with the
// session.
bool QlumAddressSpaceModel::release(Task& task)
{
    return m_server && m_caller.giveBack(task.settings, task.continuationPoint);
}

// Called before nodes go: nothing may come back to them.
void QlumAddressSpaceModel::dropTasks(const QlumAddressSpaceNode* node)
{
    bool isAnswering = true; // whoever waits for one that is not waits once only
    for (auto task = m_tasks.begin(); task != m_tasks.end();) {
        if (!isAtOrBelow(task->node, node)) {
            ++task;
            continue;
        }
        if (isAnswering && !task->continuationPoint.isEmpty())
            isAnswering = release(*task);
        task = m_tasks.erase(task);
    }
}

// Takes the node ids out of the references; answers how many nodes are new.
int QlumAddressSpaceModel::addNodes(QlumAddressSpaceNode* parent, UaReferenceDescriptions& references)
{
    std::vector<std::unique_ptr<QlumAddressSpaceNode>> fresh;
    std::unordered_set<QlumAddressSpaceNode*, QlumAddressSpaceNode::ById, QlumAddressSpaceNode::ById> seen;
    fresh.reserve(references.length());
    seen.reserve(references.length());
    for (OpcUa_ReferenceDescription& reference : references) {
        UaNodeId nodeId;
        nodeId.attach(&reference.NodeId.NodeId);
        if (parent->findChild(nodeId) || seen.contains(nodeId))
            continue;
        fresh.push_back(makeNode(reference, std::move(nodeId)));
        seen.insert(fresh.back().get());
    }
    if (fresh.empty())
        return 0;
    const int first = parent->childCount();
    const int count = static_cast<int>(fresh.size());
    insertChildren(*parent, first, count, [&] {
        parent->reserveChildren(first + count);
        for (auto& node : fresh)
            parent->appendChild(std::move(node));
    });
    return count;
}

void QlumAddressSpaceModel::sortChildren(QlumAddressSpaceNode* node) const
{
    if (m_collator)
        node->sortChildren(*m_collator);
    else
        node->sortChildren();
}

void QlumAddressSpaceModel::sortNode(QlumAddressSpaceNode* node)
{
    const QlumWaitCursor wait;
    rearrange([this, node] { sortChildren(node); });
}

void QlumAddressSpaceModel::setReadingOrder(bool on)
{
    qlumAssertGuiThread();
    if (on == static_cast<bool>(m_collator) || putOff([this, on] { setReadingOrder(on); }))
        return;
    m_collator.reset();
    if (on) {
        // without a language there is no alphabet either, and digits would stay letters
        const QLocale locale = QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale();
        m_collator = std::make_unique<QCollator>(locale);
        m_collator->setNumericMode(true);
        m_collator->setCaseSensitivity(Qt::CaseInsensitive);
    }
    const QlumWaitCursor wait;
    rearrange([this] { sortAll(m_root.get()); });
}

void QlumAddressSpaceModel::sortAll(QlumAddressSpaceNode* node)
{
    sortChildren(node);
    for (int row = 0; row < node->childCount(); ++row)
        sortAll(node->child(row));
}

void QlumAddressSpaceModel::removeChildren(QlumAddressSpaceNode* node)
{
    dropTasks(node);
    if (node->childCount() == 0) {
        node->clearChildren();
        return;
    }
    QlumTreeModel::removeChildren(*node, 0, node->childCount(), [node] {
        node->clearChildren();
        node->setBrowsed(true); // nobody shall fetch while the rows go
    });
    node->setBrowsed(false);
}

void QlumAddressSpaceModel::refreshNodeId(QlumAddressSpaceNode* node, const UaNodeId& id)
{
    for (int row = 0; row < node->childCount(); ++row) {
        QlumAddressSpaceNode* child = node->child(row);
        if (child->nodeId() != id) {
            refreshNodeId(child, id);
            continue;
        }
        if (child->hasChildren())
            removeChildren(child);
        browseNode(child);
    }
}
