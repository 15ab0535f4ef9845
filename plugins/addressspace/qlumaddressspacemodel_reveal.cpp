// Finding a node in the tree that nobody has opened yet: upward on the server, then downward in the tree.
#include <app/api/qlumguithread.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <plugins/addressspace/qlumaddressspacemodel_p.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QDeadlineTimer>

#include <algorithm>
#include <deque>
#include <ranges>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {
constexpr std::size_t maximumAncestors = 1000; // a server may invent ever new ones
constexpr int waySlice = 80;                   // ms

using LoadedNodes =
    std::unordered_set<QlumAddressSpaceNode*, QlumAddressSpaceNode::ById, QlumAddressSpaceNode::ById>;

// Of several occurrences of a node the one that is nearest to the root.
LoadedNodes loadedNodes(QlumAddressSpaceNode* root)
{
    LoadedNodes loaded;
    std::deque<QlumAddressSpaceNode*> waiting{root};
    while (!waiting.empty()) {
        QlumAddressSpaceNode* node = waiting.front();
        waiting.pop_front();
        loaded.insert(node);
        for (int row = 0; row < node->childCount(); ++row)
            waiting.push_back(node->child(row));
    }
    return loaded;
}
} // namespace

QModelIndex QlumAddressSpaceModel::reveal(const UaNodeId& nodeId)
{
    qlumAssertGuiThread();
    if (!m_server || !m_services || m_caller.isWaiting())
        return {};
    const QDeadlineTimer deadline(QlumSettings::browseTimeout.value());
    Way way = wayTo(nodeId, deadline);
    QlumAddressSpaceNode* node = way.start;
    for (std::size_t i = 0; node && i < way.below.size(); ++i)
        node = childOf(node, way.below[i], deadline);
    return node && (node != m_root.get() || node->hasChildren()) ? indexOf(node) : QModelIndex();
}

// The nearest ancestor that is in the tree, and what leads from there to the node.
QlumAddressSpaceModel::Way QlumAddressSpaceModel::wayTo(const UaNodeId& nodeId,
                                                        const QDeadlineTimer& deadline)
{
    struct Step
    {
        UaNodeId id;
        std::size_t below; // the step that it was reached from
    };
    const LoadedNodes loaded = loadedNodes(m_root.get());
    if (const auto found = loaded.find(nodeId); found != loaded.end())
        return {*found, {}};
    if (refuse(*m_root))
        return {};
    std::vector<Step> steps{{nodeId, 0}};
    std::unordered_set<UaNodeId> seen{nodeId};
    m_wasCancelled = false;
    for (std::size_t i = 0; i < steps.size() && !deadline.hasExpired() && !m_wasCancelled; ++i) {
        for (UaNodeId& parent : parentsOf(steps[i].id)) {
            if (const auto found = loaded.find(parent); found != loaded.end()) {
                Way way{*found, {}};
                for (std::size_t step = i; step > 0; step = steps[step].below)
                    way.below.push_back(steps[step].id);
                way.below.push_back(nodeId);
                return way;
            }
            if (steps.size() < maximumAncestors && seen.insert(parent).second)
                steps.push_back({std::move(parent), i});
        }
    }
    return {};
}

// None when the server does not tell; more than one answer holds are not asked for.
std::vector<UaNodeId> QlumAddressSpaceModel::parentsOf(const UaNodeId& nodeId)
{
    UaClientSdk::ServiceSettings settings;
    settings.callTimeout = QlumSettings::browseTimeout.value();
    settings.purpose = toUaString(tr("Showing a node in the address space"));
    UaClientSdk::BrowseContext context = browseContext(*m_root);
    context.browseDirection = OpcUa_BrowseDirection_Inverse;
    context.nodeClassMask = 0;
    auto answer = m_caller.browse(settings, nodeId, context, toQString(nodeId.toXmlString()));
    callEnded(answer.has_value());
    std::vector<UaNodeId> parents;
    if (!answer)
        return parents;
    if (answer->status.isGood())
        for (OpcUa_ReferenceDescription& reference : answer->references)
            parents.emplace_back().attach(&reference.NodeId.NodeId);
    m_caller.giveBack(settings, answer->continuationPoint);
    return parents;
}

// Browses for it when it is not there yet; null when it is not among them in time.
QlumAddressSpaceNode* QlumAddressSpaceModel::childOf(QlumAddressSpaceNode* node, const UaNodeId& id,
                                                     const QDeadlineTimer& deadline)
{
    QlumAddressSpaceNode* child = node->findChild(id);
    if (!child && !m_wasCancelled)
        browseNode(node);
    const auto isUnderWay = [this, node] {
        return std::ranges::any_of(m_tasks, [node](const Task& task) { return task.node == node; });
    };
    while (!(child = node->findChild(id)) && isUnderWay() && !deadline.hasExpired())
        runTasks(waySlice);
    return child;
}
