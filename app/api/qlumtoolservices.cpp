#include <app/api/qlumtoolservices.h>

#include <app/api/qlumguithread.h>
#include <uaclientsdk/uasession.h>

#include <QPointer>

#include <algorithm>
#include <iterator>
#include <ranges>

namespace {
QlumToolServices* g_services = nullptr;

bool accepts(const QlumNodeTaker& taker, const QlumToolNode& node)
{
    return !taker.accepts || taker.accepts(node);
}
} // namespace

QlumToolServices::QlumToolServices(QObject* parent) : QObject(parent)
{
    g_services = this;
}

QlumToolServices::~QlumToolServices()
{
    if (g_services == this)
        g_services = nullptr;
}

QlumToolServices* QlumToolServices::instance() noexcept
{
    return g_services;
}

// ---- takers

void QlumToolServices::watch(QObject* owner)
{
    qlumAssertGuiThread();
    if (!m_owners.contains(owner)) {
        m_owners.append(owner);
        connect(owner, &QObject::destroyed, this, &QlumToolServices::removeTakers);
    }
    emit takersChanged();
}

void QlumToolServices::removeTakers(QObject* owner)
{
    qlumAssertGuiThread();
    if (!m_owners.removeOne(owner))
        return;
    disconnect(owner, &QObject::destroyed, this, &QlumToolServices::removeTakers);
    m_chooseNode.remove(owner);
    m_reveal.remove(owner);
    m_nodes.remove(owner);
    m_nodeTools.remove(owner);
    m_samples.remove(owner);
    m_callMethod.remove(owner);
    m_showCertificate.remove(owner);
    m_showValue.remove(owner);
    m_values.remove(owner);
    m_sideSession.remove(owner);
    m_reconnectWith.remove(owner);
    m_sessionUser.remove(owner);
    m_documents.remove(owner);
    emit takersChanged();
}

const QlumNodeTaker* QlumToolServices::nodeTaker(const QString& documentType) const
{
    const auto& entries = m_nodes.entries;
    const auto found = std::find_if(entries.rbegin(), entries.rend(), [&](const auto& entry) {
        return entry.second.documentType == documentType;
    });
    return found == entries.rend() ? nullptr : &found->second;
}

const QlumValueTaker* QlumToolServices::valueTaker(const UaVariant& value, const UaNodeId& dataType) const
{
    const auto& entries = m_values.entries;
    const auto found = std::find_if(entries.rbegin(), entries.rend(),
                                    [&](const auto& entry) { return entry.second.accepts(value, dataType); });
    return found == entries.rend() ? nullptr : &found->second;
}

// ---- calls

UaNodeId QlumToolServices::chooseNode(QWidget* parent, unsigned int serverId, const UaNodeId& start)
{
    qlumAssertGuiThread();
    return canChooseNode() ? m_chooseNode.last()(parent, serverId, start) : UaNodeId();
}

bool QlumToolServices::revealNode(unsigned int serverId, const UaNodeId& nodeId)
{
    qlumAssertGuiThread();
    return canReveal() && m_reveal.last()(serverId, nodeId);
}

std::vector<QlumNodeTool> QlumToolServices::nodeTools() const
{
    std::vector<QlumNodeTool> tools;
    for (const auto& [owner, tool] : m_nodeTools.entries)
        tools.push_back(tool);
    return tools;
}

QStringList QlumToolServices::documentTypes() const
{
    QStringList types;
    for (const auto& [owner, taker] : m_nodes.entries)
        if (!types.contains(taker.documentType))
            types.append(taker.documentType);
    return types;
}

QStringList QlumToolServices::documentTypes(std::span<const QlumToolNode> nodes) const
{
    QStringList types;
    for (const QString& type : documentTypes()) {
        const QlumNodeTaker* taker = nodeTaker(type);
        if (std::ranges::any_of(nodes, [taker](const QlumToolNode& node) { return accepts(*taker, node); }))
            types.append(type);
    }
    return types;
}

bool QlumToolServices::showSamples(std::span<const QlumToolCurve> curves)
{
    qlumAssertGuiThread();
    if (!canShowSamples() || curves.empty())
        return false;
    const QlumSampleTaker taker = m_samples.last();
    QWidget* document = m_documents.last()(taker.documentType);
    if (!document)
        return false;
    taker.show(document, curves);
    return true;
}

bool QlumToolServices::openNodes(const QString& documentType, std::span<const QlumToolNode> nodes)
{
    qlumAssertGuiThread();
    const QlumNodeTaker* found = nodeTaker(documentType);
    if (!found || !m_documents.has())
        return false;
    const QlumNodeTaker taker = *found;
    QlumToolNodes accepted;
    std::ranges::copy_if(nodes, std::back_inserter(accepted),
                         [&taker](const QlumToolNode& node) { return accepts(taker, node); });
    if (accepted.empty())
        return false; // no document is opened for nothing
    QWidget* document = m_documents.last()(documentType);
    if (!document)
        return false;
    taker.add(document, accepted);
    return true;
}

bool QlumToolServices::callMethod(unsigned int serverId, const UaNodeId& objectId, const UaNodeId& methodId)
{
    qlumAssertGuiThread();
    if (!canCallMethod())
        return false;
    m_callMethod.last()(serverId, objectId, methodId);
    return true;
}

bool QlumToolServices::showCertificate(const UaByteString& der)
{
    qlumAssertGuiThread();
    if (!canShowCertificate())
        return false;
    m_showCertificate.last()(der);
    return true;
}

bool QlumToolServices::showValue(unsigned int serverId, const UaVariant& value, const UaNodeId& dataType,
                                 const QlumToolNode& origin)
{
    qlumAssertGuiThread();
    if (canShowInDocument(value, dataType)) {
        const QlumValueTaker taker = *valueTaker(value, dataType);
        if (QWidget* document = m_documents.last()(taker.documentType)) {
            taker.show(document, serverId, value, dataType, origin);
            return true;
        }
    }
    if (!canShowValue())
        return false;
    m_showValue.last()(serverId, value, dataType);
    return true;
}

bool QlumToolServices::canShowInDocument(const UaVariant& value, const UaNodeId& dataType) const
{
    return m_documents.has() && valueTaker(value, dataType) != nullptr;
}

bool QlumToolServices::sideSession(unsigned int serverId, const QlumSideEndpoint& endpoint,
                                   const QlumIdentity& identity, QObject* receiver,
                                   const QlumSideSessionDone& done)
{
    qlumAssertGuiThread();
    if (!canOpenSideSession())
        return false;
    const auto tell = [guard = QPointer<QObject>(receiver),
                       done](std::shared_ptr<UaClientSdk::UaSession> session, const UaStatus& status) {
        if (guard)
            done(std::move(session), status);
    };
    m_sideSession.last()(serverId, endpoint, identity, tell);
    return true;
}

bool QlumToolServices::reconnectWith(unsigned int serverId, OpcUa_MessageSecurityMode mode,
                                     const QlumIdentity& identity)
{
    qlumAssertGuiThread();
    return canReconnectWith() && m_reconnectWith.last()(serverId, mode, identity);
}

QString QlumToolServices::sessionUser(unsigned int serverId) const
{
    qlumAssertGuiThread();
    return m_sessionUser.has() ? m_sessionUser.last()(serverId) : QString();
}
