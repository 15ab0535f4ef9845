#include <plugins/addressspace/search/qlumcrawl.h>

#include <app/api/qlumsettings.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace {
using std::chrono::milliseconds;

constexpr milliseconds betweenTells(100);
constexpr int maximumRefusals = 20;         // that are told by name
constexpr int maximumBroken = 50;           // calls in a row that the link did not survive
constexpr OpcUa_UInt32 lastTimeout = 60000; // for a node that was not answered alone
constexpr std::size_t maximumReferencesOfNode = 1000000;
constexpr OpcUa_UInt32 resultMask = OpcUa_BrowseResultMask_NodeClass | OpcUa_BrowseResultMask_BrowseName |
                                    OpcUa_BrowseResultMask_DisplayName |
                                    OpcUa_BrowseResultMask_TypeDefinition;

QString crawlText(const char* source)
{
    return QCoreApplication::translate("QlumCrawl", source);
}

// What fewer nodes in a call may help against.
bool isTooMuch(const UaStatus& status)
{
    switch (status.statusCode()) {
    case OpcUa_BadTimeout:
    case OpcUa_BadRequestTimeout:
    case OpcUa_BadResponseTooLarge:
    case OpcUa_BadRequestTooLarge:
    case OpcUa_BadEncodingLimitsExceeded:
    case OpcUa_BadTcpMessageTooLarge:
    case OpcUa_BadTooManyOperations:
    case OpcUa_BadNoContinuationPoints:
    case OpcUa_BadDecodingError:
    case OpcUa_BadUnknownResponse:
        return true;
    default:
        return false;
    }
}
// A server that keeps few of them drops the oldest, and all of them with a session; the node is asked again.
bool isOfPoints(const UaStatus& status)
{
    return status.statusCode() == OpcUa_BadNoContinuationPoints ||
           status.statusCode() == OpcUa_BadContinuationPointInvalid;
}
} // namespace

// ---- control

void QlumCrawlControl::setPaused(bool paused)
{
    const std::lock_guard lock(m_mutex);
    m_isPaused = paused;
    m_changed.notify_all();
}

bool QlumCrawlControl::isPaused() const
{
    const std::lock_guard lock(m_mutex);
    return m_isPaused;
}

void QlumCrawlControl::stop()
{
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
    m_changed.notify_all();
}

bool QlumCrawlControl::rest(milliseconds time)
{
    std::unique_lock lock(m_mutex);
    return !m_changed.wait_for(lock, time, [this] { return m_isStopped; });
}

bool QlumCrawlControl::waitWhilePaused()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isStopped || !m_isPaused; });
    return !m_isStopped;
}

// ---- crawl

QlumCrawl::QlumCrawl(QlumJob& job, QlumSessionServices& session, QlumNodeIndex& index,
                     QlumCrawlControl& control, Tell tell, Options options)
    : m_job(job), m_session(session), m_index(index), m_control(control), m_tell(std::move(tell)),
      m_options(options), m_points(session.operationLimits().maxBrowseContinuationPoints)
{
}

QlumCrawl::QlumCrawl(QlumJob& job, QlumSessionServices& session, QlumNodeIndex& index,
                     QlumCrawlControl& control, Tell tell)
    : QlumCrawl(job, session, index, control, std::move(tell), Options())
{
}

void QlumCrawl::run()
{
    m_namespaces = m_session.namespaceTable();
    m_queue.push_back(0);
    while (goOn()) {
        const std::vector<Number> batch = nextBatch();
        if (batch.empty()) {
            m_state.phase = QlumCrawlState::Done;
            break;
        }
        browse(batch);
        readTypeNames();
        tell(false);
    }
    if (m_state.phase != QlumCrawlState::Done)
        m_state.phase = QlumCrawlState::Ended;
    tell(true);
}

// False when it is to end.
bool QlumCrawl::goOn()
{
    if (m_control.isPaused()) {
        m_state.phase = QlumCrawlState::Paused;
        tell(true);
        if (!m_control.waitWhilePaused())
            return false;
        m_state.phase = QlumCrawlState::Running;
        tell(true);
    }
    if (m_job.isCancelled() || !waitForConnection())
        return false;
    if (!m_state.remark.isEmpty())
        return false;
    if (m_index.size() >= m_options.maximumNodes) {
        m_state.remark =
            crawlText("The server does not come to an end of its nodes, or has more than can be kept; "
                      "the rest was not looked at.");
        return false;
    }
    return true;
}

bool QlumCrawl::waitForConnection()
{
    if (m_session.isConnected())
        return true;
    m_state.phase = QlumCrawlState::Waiting;
    tell(true);
    while (!m_session.isConnected())
        if (m_job.isCancelled() || !m_control.rest(m_options.betweenLooks))
            return false;
    m_state.phase = QlumCrawlState::Running;
    tell(true);
    return true;
}

// One call's worth, since the session would split a larger one into calls without a rest between them.
OpcUa_UInt32 QlumCrawl::batchSize() const
{
    OpcUa_UInt32 size = m_options.nodesPerCall;
    for (const OpcUa_UInt32 limit : {m_session.operationLimits().maxNodesPerBrowse, m_points})
        if (limit > 0)
            size = std::min(size, limit);
    return std::max<OpcUa_UInt32>(1, size);
}

std::vector<QlumCrawl::Number> QlumCrawl::nextBatch()
{
    std::vector<Number> batch;
    if (m_queue.empty() && !m_slow.empty()) {
        batch = std::move(m_slow.front());
        m_slow.pop_front();
        m_lastTimeout = batch.size() == 1 ? lastTimeout : 0;
        return batch;
    }
    m_lastTimeout = 0;
    const std::size_t count = std::min<std::size_t>(batchSize(), m_queue.size());
    batch.assign(m_queue.begin(), m_queue.begin() + static_cast<std::ptrdiff_t>(count));
    m_queue.erase(m_queue.begin(), m_queue.begin() + static_cast<std::ptrdiff_t>(count));
    return batch;
}

QlumSessionServices::Settings QlumCrawl::settings() const
{
    QlumSessionServices::Settings settings = m_job.serviceSettings();
    settings.callTimeout = std::max<OpcUa_UInt32>(QlumSettings::browseTimeout.value(), m_lastTimeout);
    return settings;
}

// A call and the rest that the server has earned by it.
template <typename Call>
UaStatus QlumCrawl::timed(Call&& call)
{
    const Clock::time_point begin = Clock::now();
    const UaStatus status = call();
    ++m_state.calls;
    const auto took = std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
    if (const auto rest = std::min(took, m_options.longestRest); rest.count() > 0)
        static_cast<void>(m_control.rest(rest)); // whoever goes on looks whether he may
    return status;
}

void QlumCrawl::browse(const std::vector<Number>& batch)
{
    UaBrowseDescriptions nodes(static_cast<OpcUa_UInt32>(batch.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(m_index.id(batch[i]).copyTo(&nodes[i].NodeId));
        nodes[i].ReferenceTypeId.Identifier.Numeric = OpcUaId_HierarchicalReferences;
        nodes[i].IncludeSubtypes = OpcUa_True;
        nodes[i].BrowseDirection = OpcUa_BrowseDirection_Forward;
        nodes[i].ResultMask = resultMask;
    }
    UaBrowseResults results;
    QlumSessionServices::Settings settings = this->settings();
    UaStatus status = timed([&] {
        return m_session.browseList(settings, UaNodeId(), m_options.maximumReferences, nodes, results);
    });
    if (status.isGood() && results.length() != nodes.length())
        status = UaStatus(OpcUa_BadUnknownResponse);
    if (status.isBad())
        return takeFailure(batch, status);
    m_broken = 0;
    std::vector<Rest> rests;
    for (OpcUa_UInt32 i = 0; i < results.length(); ++i)
        take({batch[i], {}, {}, 0}, results[i], rests);
    browseOn(std::move(rests));
}

void QlumCrawl::browseOn(std::vector<Rest> rests)
{
    while (!rests.empty()) {
        if (!goOn())
            return release(rests);
        UaByteStringArray points(static_cast<OpcUa_UInt32>(rests.size()));
        for (OpcUa_UInt32 i = 0; i < points.length(); ++i)
            static_cast<void>(rests[i].point.copyTo(&points[i]));
        UaBrowseResults results;
        QlumSessionServices::Settings settings = this->settings();
        UaStatus status = timed([&] { return m_session.browseListNext(settings, false, points, results); });
        if (status.isGood() && results.length() != points.length())
            status = UaStatus(OpcUa_BadUnknownResponse);
        if (status.isBad()) {
            if (UaClientSdk::keepsContinuationPoint(status))
                release(rests);
            std::vector<Number> again; // what is known of them already is not lost
            for (const Rest& rest : rests)
                again.push_back(rest.node);
            return takeFailure(again, status);
        }
        std::vector<Rest> next;
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i)
            take(std::move(rests[i]), results[i], next);
        rests = std::move(next);
        readTypeNames();
        tell(false);
    }
}

// So that the server forgets them sooner than the session ends.
void QlumCrawl::release(const std::vector<Rest>& rests)
{
    if (rests.empty() || !m_session.isConnected())
        return;
    UaByteStringArray points(static_cast<OpcUa_UInt32>(rests.size()));
    for (OpcUa_UInt32 i = 0; i < points.length(); ++i)
        static_cast<void>(rests[i].point.copyTo(&points[i]));
    UaBrowseResults none;
    QlumSessionServices::Settings settings = UaClientSdk::settingsOfRelease(this->settings());
    static_cast<void>(m_session.browseListNext(settings, true, points, none));
}

// One page of a node's references.
void QlumCrawl::take(Rest rest, OpcUa_BrowseResult& result, std::vector<Rest>& rests)
{
    if (result.NoOfReferences > 0) {
        m_fresh.clear();
        m_index.add(rest.node, result.NoOfReferences, result.References, m_namespaces, m_fresh);
        m_state.references += static_cast<std::size_t>(result.NoOfReferences);
        rest.references += static_cast<std::size_t>(result.NoOfReferences);
        for (const Number number : m_fresh)
            if (!m_index.isProperty(number))
                m_queue.push_back(number);
    }
    const UaStatus status(result.StatusCode);
    if (status.statusCode() == OpcUa_BadNoContinuationPoints)
        m_points = std::max<OpcUa_UInt32>(1, batchSize() / 2);
    if (isOfPoints(status) && m_lastTimeout == 0)
        return m_slow.push_back({rest.node});
    if (status.isBad())
        return refuse(rest.node, status);
    rest.point.attach(&result.ContinuationPoint);
    if (rest.point.isEmpty())
        return;
    rest.pages.take(static_cast<std::size_t>(std::max(0, result.NoOfReferences)), rest.point);
    if (!rest.pages.isStuck() && rest.references < maximumReferencesOfNode) {
        rests.push_back(std::move(rest));
        return;
    }
    refuse(rest.node, UaStatus(OpcUa_BadTooManyMatches));
    release({rest});
}

// Of a whole call.
void QlumCrawl::takeFailure(const std::vector<Number>& batch, const UaStatus& status)
{
    if (!m_session.isConnected() || !UaClientSdk::keepsContinuationPoint(status)) { // of the link
        m_queue.insert(m_queue.begin(), batch.begin(), batch.end());
        ++m_broken;
        static_cast<void>(m_control.rest(std::min(m_options.betweenLooks, milliseconds(m_broken * 20))));
        if (m_broken > maximumBroken)
            m_state.remark = qlumResultInWords(status);
        return;
    }
    if (status.statusCode() == OpcUa_BadTimeout || status.statusCode() == OpcUa_BadRequestTimeout)
        ++m_state.late;
    if (!isTooMuch(status) || (batch.size() == 1 && m_lastTimeout > 0)) {
        for (const Number node : batch)
            refuse(node, status);
        return;
    }
    const auto half = batch.begin() + static_cast<std::ptrdiff_t>((batch.size() + 1) / 2);
    m_slow.emplace_back(batch.begin(), half);
    if (half != batch.end())
        m_slow.emplace_back(half, batch.end());
}

void QlumCrawl::refuse(Number node, const UaStatus& status)
{
    ++m_state.refused;
    if (m_state.refusals.size() < maximumRefusals)
        m_state.refusals.append(
            crawlText("%1: %2").arg(toQString(m_index.id(node).toXmlString()), qlumResultInWords(status)));
}

// ---- names of type definitions

// The tree of types comes late in a crawl, if it is in the branch at all.
void QlumCrawl::readTypeNames()
{
    const Number count = m_index.typeCount();
    if (m_namedTypes == count)
        return;
    std::vector<Number> types;
    for (; m_namedTypes < count; ++m_namedTypes) {
        const Number number = m_index.find(m_index.typeId(m_namedTypes));
        if (number != QlumNodeIndex::none)
            m_index.setTypeName(m_namedTypes, m_index.copy(number).name);
        else
            types.push_back(m_namedTypes);
    }
    if (!types.empty())
        readTypeNames(types);
}

void QlumCrawl::readTypeNames(const std::vector<Number>& types)
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(types.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(m_index.typeId(types[i]).copyTo(&nodes[i].NodeId));
        nodes[i].AttributeId = OpcUa_Attributes_DisplayName;
    }
    UaDataValues values;
    QlumSessionServices::Settings settings = m_job.serviceSettings();
    const UaStatus status =
        timed([&] { return m_session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values); });
    if (status.isBad() || values.length() != nodes.length())
        return; // the ids are shown instead
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i)
        if (!OpcUa_IsBad(values[i].StatusCode))
            m_index.setTypeName(types[i], toQString(UaVariant(values[i].Value).toLocalizedText().text()));
}

void QlumCrawl::tell(bool isLast)
{
    const Clock::time_point now = Clock::now();
    if (!isLast && now - m_told < betweenTells)
        return;
    m_told = now;
    m_state.nodes = m_index.size();
    m_state.queue = m_queue.size();
    for (const std::vector<Number>& group : m_slow)
        m_state.queue += group.size();
    m_job.setProgress(static_cast<qint64>(m_state.nodes - std::min(m_state.queue, m_state.nodes)),
                      static_cast<qint64>(m_state.nodes));
    if (m_tell)
        m_tell(m_state);
}
