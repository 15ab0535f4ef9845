#include <plugins/events/qlumeventtypes.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlumeventtypejob.h>

#include <utility>

namespace {
constexpr int threads = 2; // a slow server does not hold up another
constexpr std::size_t maximumNames = 10000;
} // namespace

QlumEventTypes::QlumEventTypes(QlumSessionServicesProvider services, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_pool(threads)
{
}

QlumEventTypes::~QlumEventTypes() = default;

// ---- the tree

QlumEventTypes::Tree QlumEventTypes::tree(unsigned int serverId) const
{
    const auto found = m_kept.find(serverId);
    return found != m_kept.end() ? found->second.tree : nullptr;
}

QString QlumEventTypes::gap(unsigned int serverId) const
{
    const auto found = m_kept.find(serverId);
    return found != m_kept.end() ? found->second.gap : QString();
}

void QlumEventTypes::request(unsigned int serverId)
{
    if (tree(serverId)) {
        const std::shared_ptr<QlumSessionServices> services = m_services(serverId);
        if (services && services->isConnected() && services->sessionId() != m_kept[serverId].session)
            forget(serverId); // of a session that is gone
    }
    if (tree(serverId) && !m_kept[serverId].hasFailed) {
        emit treeRead(serverId);
        return;
    }
    if (isReading(serverId))
        return;
    const auto read = [this, serverId](QlumJob& job) {
        const std::shared_ptr<QlumSessionServices> services = m_services(serverId);
        if (!services || !services->isConnected()) {
            job.post([this, serverId] { giveUp(serverId, tr("The server is not connected.")); });
            return;
        }
        Kept kept;
        kept.session = services->sessionId();
        QlumEventTypeReader reader(serverId, *services, job);
        kept.tree = reader.read();
        kept.hasFailed = reader.status().isBad();
        if (kept.hasFailed)
            kept.gap = qlumStatusWords(toQString(reader.status().toString()));
        else if (reader.isCut())
            kept.gap = tr("the server has more than the settings let this program read");
        if (kept.tree || kept.hasFailed) // else it was cancelled
            job.post([this, serverId, kept] { take(serverId, kept); });
    };
    const auto ended = [this, serverId](QlumWorkEnd end) {
        if (isReading(serverId))
            giveUp(serverId, end == QlumWorkEnd::Cancelled ? tr("The reading was cancelled.")
                                                           : tr("The reading failed; the log says more."));
    };
    m_reading[serverId] = m_pool.add({tr("Reading event types"), serverId}, read, ended);
}

void QlumEventTypes::giveUp(unsigned int serverId, const QString& why)
{
    if (m_reading.erase(serverId) != 0)
        emit treeFailed(serverId, why);
}

void QlumEventTypes::take(unsigned int serverId, Kept read)
{
    if (!read.tree) {
        giveUp(serverId, read.gap);
        return;
    }
    if (m_reading.erase(serverId) == 0)
        return;
    Kept& kept = m_kept[serverId];
    kept.tree = std::move(read.tree);
    kept.gap = read.gap;
    kept.hasFailed = read.hasFailed;
    kept.session = read.session;
    kept.tree->visit([&kept](const QlumEventNodeTypeTree& node) {
        if (node.kind() == QlumEventNodeTypeTree::EventType && node.parent())
            kept.names[node.nodeId()] = toQString(node.browseName().name());
    });
    emit treeRead(serverId);
    emit namesRead();
}

void QlumEventTypes::forget(unsigned int serverId)
{
    if (const auto reading = m_reading.find(serverId); reading != m_reading.end()) {
        m_pool.giveUp(reading->second);
        m_reading.erase(reading);
    }
    if (m_kept.erase(serverId) != 0)
        emit treeForgotten(serverId);
}

void QlumEventTypes::nodeChanged(unsigned int serverId, const UaNodeId& nodeId)
{
    const Tree known = tree(serverId);
    bool isKnown = false;
    if (known)
        known->visit(
            [&](const QlumEventNodeTypeTree& node) { isKnown = isKnown || node.nodeId() == nodeId; });
    if (isKnown)
        forget(serverId);
}

// The roots derive from the first one, although they stand side by side in the tree.
bool QlumEventTypes::derives(unsigned int serverId, const UaNodeId& type, const UaNodeId& base) const
{
    const Tree known = tree(serverId);
    if (type == base || base.isNumeric(OpcUaId_BaseEventType))
        return true;
    bool isBelow = false;
    if (known)
        known->visit([&](const QlumEventNodeTypeTree& node) {
            if (node.kind() != QlumEventNodeTypeTree::EventType || node.nodeId() != type)
                return;
            for (const QlumEventNodeTypeTree* one = &node; one; one = one->parent())
                isBelow = isBelow || (one->parent() && one->nodeId() == base);
        });
    return isBelow;
}

void QlumEventTypes::sessionRemoved(unsigned int serverId)
{
    m_pool.endServer(serverId);
    m_reading.erase(serverId);
    m_kept.erase(serverId);
}

// ---- names

QString QlumEventTypes::typeName(unsigned int serverId, const UaNodeId& typeId)
{
    if (typeId.isNull())
        return {};
    Kept& kept = m_kept[serverId];
    if (const auto found = kept.names.find(typeId); found != kept.names.end())
        return found->second;
    askName(serverId, typeId);
    return toQString(typeId.toXmlString());
}

void QlumEventTypes::askName(unsigned int serverId, const UaNodeId& typeId)
{
    Kept& kept = m_kept[serverId];
    if (kept.asked.size() > maximumNames || !kept.asked.insert(typeId).second)
        return;
    m_pool.add({QString(), serverId}, [this, serverId, typeId](QlumJob& job) {
        const std::shared_ptr<QlumSessionServices> services = m_services(serverId);
        QlumServerTypes* const types = services ? services->types() : nullptr;
        const QString name = types ? types->typeName(typeId) : QString();
        if (name.isEmpty())
            return;
        job.post([this, serverId, typeId, name] {
            m_kept[serverId].names[typeId] = name;
            emit namesRead();
        });
    });
}
