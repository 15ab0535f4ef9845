#include <plugins/performance/qlumperformancework.h>

#include <app/api/qlumdiscoverysecurity.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/performance/qlummeasurer.h>
#include <plugins/performance/qlumnotificationrun.h>
#include <plugins/performance/qlumsamplelog.h>
#include <plugins/performance/qlumsessionrun.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>
#include <uawidgets/editors/qlummethodarguments.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace {
constexpr OpcUa_Byte canWrite = 0x2; // of an access level
constexpr int mostEndpoints = 100;

bool mayWrite(const OpcUa_DataValue& access)
{
    return OpcUa_IsGood(access.StatusCode) && access.Value.Datatype == OpcUaType_Byte &&
           access.Value.ArrayType == OpcUa_VariantArrayType_Scalar &&
           (access.Value.Value.Byte & canWrite) != 0;
}

QString textOf(const OpcUa_DataValue& value)
{
    if (OpcUa_IsBad(value.StatusCode) || value.Value.Datatype != OpcUaType_LocalizedText ||
        value.Value.ArrayType != OpcUa_VariantArrayType_Scalar || !value.Value.Value.LocalizedText)
        return {};
    return qlumSingleLine(toQString(UaString(value.Value.Value.LocalizedText->Text)));
}

// The object that has the method; null when it cannot be found.
UaNodeId objectOf(QlumSessionServices& services, QlumSessionServices::Settings& settings,
                  const UaNodeId& method)
{
    UaClientSdk::BrowseContext context;
    context.browseDirection = OpcUa_BrowseDirection_Inverse;
    context.referenceTypeId = UaNodeId(OpcUaId_HierarchicalReferences);
    context.maxReferencesToReturn = 1;
    UaByteString point;
    UaReferenceDescriptions parents;
    if (services.browse(settings, method, context, point, parents).isBad() || parents.isEmpty())
        return {};
    if (point.length() > 0) {
        UaReferenceDescriptions released;
        static_cast<void>(services.browseNext(settings, true, point, released));
    }
    return UaNodeId(parents[0].NodeId.NodeId);
}

QlumToolNodes describeNodes(QlumSessionServices& services, QlumJob& job, QlumToolNodes nodes)
{
    constexpr OpcUa_UInt32 attributes[] = {OpcUa_Attributes_NodeClass, OpcUa_Attributes_DisplayName};
    UaReadValueIds ids(static_cast<OpcUa_UInt32>(nodes.size() * 2));
    for (OpcUa_UInt32 i = 0; i < ids.length(); ++i) {
        ids[i].AttributeId = attributes[i % 2];
        static_cast<void>(nodes[i / 2].nodeId.copyTo(&ids[i].NodeId));
    }
    QlumSessionServices::Settings settings = job.serviceSettings();
    UaDataValues values;
    if (services.read(settings, 0, OpcUa_TimestampsToReturn_Neither, ids, values).isBad())
        values.clear();
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        QlumToolNode& node = nodes[i];
        const auto place = static_cast<OpcUa_UInt32>(i * 2);
        if (place + 1 < values.length()) {
            const OpcUa_Variant& nodeClass = values[place].Value;
            if (nodeClass.Datatype == OpcUaType_Int32 && nodeClass.ArrayType == OpcUa_VariantArrayType_Scalar)
                node.nodeClass = static_cast<OpcUa_NodeClass>(nodeClass.Value.Int32);
            node.name = textOf(values[place + 1]);
        }
        if (node.name.isEmpty())
            node.name = toQString(node.nodeId.toXmlString());
        if (node.nodeClass == OpcUa_NodeClass_Method && node.parentId.isNull() && !job.isCancelled())
            node.parentId = objectOf(services, settings, node.nodeId);
    }
    return nodes;
}

QString modeText(OpcUa_MessageSecurityMode mode)
{
    switch (mode) {
    case OpcUa_MessageSecurityMode_None:
        return QStringLiteral("None");
    case OpcUa_MessageSecurityMode_Sign:
        return QStringLiteral("Sign");
    case OpcUa_MessageSecurityMode_SignAndEncrypt:
        return QStringLiteral("SignAndEncrypt");
    default:
        return {};
    }
}

QlumWriteCheck writableOf(QlumSessionServices& services, QlumJob& job, const QlumMeasurementPlan& plan)
{
    constexpr OpcUa_UInt32 attributes[] = {OpcUa_Attributes_UserAccessLevel, OpcUa_Attributes_Value};
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(plan.nodes.size() * 2));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        nodes[i].AttributeId = attributes[i % 2];
        static_cast<void>(plan.nodes[i / 2].nodeId.copyTo(&nodes[i].NodeId));
    }
    UaDataValues values;
    QlumSessionServices::Settings settings = job.serviceSettings();
    const UaStatus status = services.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
    QlumWriteCheck check{plan, {}};
    check.plan.nodes.clear();
    check.plan.values.clear();
    for (OpcUa_UInt32 i = 0; i < nodes.length() / 2; ++i) {
        const QlumToolNode& node = plan.nodes[i];
        const auto leave = [&](const QString& why) {
            check.leftOut.append(QStringLiteral("%1: %2").arg(node.name, why));
        };
        if (status.isBad() || values.length() != nodes.length())
            leave(qlumResultInWords(status));
        else if (!mayWrite(values[i * 2]))
            leave(QlumPerformanceWork::tr("it may not be written by this user"));
        else if (OpcUa_IsBad(values[i * 2 + 1].StatusCode))
            leave(qlumResultInWords(UaStatus(values[i * 2 + 1].StatusCode)));
        else {
            check.plan.nodes.push_back(node);
            check.plan.values.emplace_back(values[i * 2 + 1].Value);
        }
    }
    return check;
}

// A server that does not say whether a method can be called lets everybody call it.
QString callFault(const OpcUa_DataValue& executable)
{
    if (executable.StatusCode == OpcUa_BadNodeIdUnknown || executable.StatusCode == OpcUa_BadNodeIdInvalid)
        return qlumResultInWords(UaStatus(executable.StatusCode));
    const bool isRefused = OpcUa_IsGood(executable.StatusCode) &&
                           executable.Value.Datatype == OpcUaType_Boolean &&
                           executable.Value.Value.Boolean == 0;
    return isRefused ? QlumPerformanceWork::tr("it may not be called by this user") : QString();
}

QlumCallCheck callableOf(const std::shared_ptr<QlumSessionServices>& services, QlumJob& job,
                         const QlumMeasurementPlan& plan)
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(plan.nodes.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        nodes[i].AttributeId = OpcUa_Attributes_UserExecutable;
        static_cast<void>(plan.nodes[i].nodeId.copyTo(&nodes[i].NodeId));
    }
    UaDataValues executable;
    QlumSessionServices::Settings settings = job.serviceSettings();
    const UaStatus read = services->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, executable);
    QlumCallCheck check{plan, {}, {}};
    check.plan.nodes.clear();
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        const QlumToolNode& method = plan.nodes[i];
        const QString fault =
            read.isBad() || i >= executable.length() ? qlumResultInWords(read) : callFault(executable[i]);
        if (!fault.isEmpty()) {
            check.leftOut.append(QStringLiteral("%1: %2").arg(method.name, fault));
            continue;
        }
        QlumMethodArguments inputs;
        QlumMethodArguments outputs;
        const UaStatus status = qlumReadArguments(services, job, method.nodeId, inputs, outputs);
        if (status.isBad()) {
            check.leftOut.append(QStringLiteral("%1: %2").arg(method.name, qlumResultInWords(status)));
            continue;
        }
        check.plan.nodes.push_back(method);
        check.inputs.push_back(std::move(inputs));
    }
    return check;
}

UaStatus endpointsOf(const UaString& url, QlumJob& job, std::vector<QlumOfferedEndpoint>& found)
{
    const auto discovery = std::make_shared<UaClientSdk::UaDiscovery>();
    job.whenCancelled([discovery] { discovery->cancel(); });
    UaEndpointDescriptions endpoints;
    QlumSessionServices::Settings settings = job.serviceSettings();
    const UaStatus status =
        discovery->getEndpoints(settings, url, qlumDiscoverySecurity(toQString(url)), endpoints);
    std::set<QString> texts; // transports of one security are one here
    for (const OpcUa_EndpointDescription& endpoint : endpoints) {
        QlumOfferedEndpoint offer;
        offer.endpoint.mode = endpoint.SecurityMode;
        offer.endpoint.securityPolicy = toQString(UaString(endpoint.SecurityPolicyUri));
        offer.text = QStringLiteral("%1 - %2").arg(
            offer.endpoint.securityPolicy.section(QLatin1Char('#'), -1).left(60),
            modeText(endpoint.SecurityMode));
        if (found.size() < mostEndpoints && texts.insert(offer.text).second)
            found.push_back(offer);
    }
    return status;
}

// In the job, so that nobody waits for the server's answer when the last one lets go of it.
void closeSession(UaClientSdk::UaSession& session, QlumJob& job)
{
    UaClientSdk::ServiceSettings settings = job.serviceSettings();
    static_cast<void>(session.disconnect(settings, true));
}
} // namespace

QlumPerformanceWork::QlumPerformanceWork(QlumSessionServicesProvider services, QObject* parent)
    : QObject(parent), m_services(std::move(services))
{
}

QlumPerformanceWork::~QlumPerformanceWork()
{
    blockSignals(true);
    cancel();
    m_pool.cancelAll();
    m_questions.cancelAll();
}

QString QlumPerformanceWork::stepText() const
{
    return m_stepCount > 1 ? tr("run %1 of %2").arg(m_stepCount - m_steps.size()).arg(m_stepCount)
                           : QString();
}

void QlumPerformanceWork::setBusy(bool isBusy)
{
    m_isBusy = isBusy;
    emit stateChanged();
}

quint32 QlumPerformanceWork::nodesLimit(unsigned int serverId, QlumMeasuredKind kind) const
{
    const auto services = m_services(serverId);
    return services ? qlumNodesLimit(kind, services->operationLimits()) : 0;
}

QString QlumPerformanceWork::endpointText(unsigned int serverId) const
{
    const auto services = m_services(serverId);
    const auto session = services ? services->session() : nullptr;
    return session ? qlumSingleLine(toQString(session->currentlyUsedEndpointUrl())) : QString();
}

// ---- before a run

void QlumPerformanceWork::describe(const QlumToolNodes& nodes)
{
    std::map<unsigned int, QlumToolNodes> byServer;
    for (const QlumToolNode& node : nodes)
        byServer[node.serverId].push_back(node);
    for (const auto& [serverId, ofServer] : byServer)
        if (const auto services = m_services(serverId))
            m_questions.add(
                {tr("Reading names of nodes"), serverId}, [this, services, asked = ofServer](QlumJob& job) {
                    job.post([this, known = describeNodes(*services, job, asked)] { emit described(known); });
                });
}

void QlumPerformanceWork::prepare(const QString& text, unsigned int serverId, const Question& question)
{
    setBusy(true);
    m_pool.add(
        {text, serverId},
        [this, question](QlumJob& job) {
            job.post([this, tell = question(job)] {
                setBusy(false);
                tell();
            });
        },
        [this](QlumWorkEnd end) {
            if (end != QlumWorkEnd::Done)
                setBusy(false);
        });
}

void QlumPerformanceWork::checkWrite(const QlumMeasurementPlan& plan)
{
    const auto services = m_services(plan.serverId);
    if (services && !m_isBusy)
        prepare(tr("Reading what would be written"), plan.serverId, [this, services, plan](QlumJob& job) {
            return [this, check = writableOf(*services, job, plan)] { emit checked(check); };
        });
}

void QlumPerformanceWork::readArguments(const QlumMeasurementPlan& plan)
{
    const auto services = m_services(plan.serverId);
    if (services && !m_isBusy)
        prepare(tr("Reading the arguments of methods"), plan.serverId, [this, services, plan](QlumJob& job) {
            return [this, check = callableOf(services, job, plan)] { emit argumentsKnown(check); };
        });
}

void QlumPerformanceWork::listEndpoints(unsigned int serverId)
{
    const auto services = m_services(serverId);
    const auto session = services ? services->session() : nullptr;
    if (m_isBusy)
        return;
    if (!session)
        return emit offered({}, tr("The server is not connected."));
    prepare(tr("Asking for the server's endpoints"), serverId, [this, session](QlumJob& job) {
        std::vector<QlumOfferedEndpoint> found;
        const UaStatus status = endpointsOf(session->currentlyUsedEndpointUrl(), job, found);
        const QString problem = status.isBad() ? qlumResultInWords(status) : QString();
        return [this, found, problem] { emit offered(found, problem); };
    });
}

// ---- runs

void QlumPerformanceWork::measure(const QlumMeasurementRun& run)
{
    m_over.reset();
    begin({{run, std::nullopt}});
}

void QlumPerformanceWork::sweep(const QlumMeasurementRun& run, QlumSweepOver over, quint32 largest)
{
    std::deque<Step> steps;
    for (const quint32 size : qlumSweepSizes(largest)) {
        QlumMeasurementRun step = run;
        step.plan = qlumSweepStep(run.plan, over, size);
        step.name = QStringLiteral("%1 %2").arg(run.name).arg(size);
        steps.push_back({step, std::nullopt});
    }
    m_over = over;
    m_points.clear();
    begin(std::move(steps));
}

void QlumPerformanceWork::compare(const QlumMeasurementRun& run,
                                  const std::vector<QlumOfferedEndpoint>& endpoints)
{
    std::deque<Step> steps;
    for (const QlumOfferedEndpoint& offer : endpoints) {
        QlumMeasurementRun step = run;
        step.endpoint = offer.text;
        step.name = QStringLiteral("%1 %2").arg(run.name, offer.text);
        steps.push_back({step, offer.endpoint});
    }
    m_over.reset();
    begin(std::move(steps));
}

void QlumPerformanceWork::begin(std::deque<Step> steps)
{
    if (m_isBusy || steps.empty())
        return;
    m_serverId = steps.front().run.plan.serverId;
    m_steps = std::move(steps);
    m_stepCount = m_steps.size();
    setBusy(true);
    next();
}

void QlumPerformanceWork::next()
{
    m_current.reset();
    m_cancel = nullptr;
    if (m_steps.empty()) {
        m_stepCount = 0;
        m_serverId = qlumNoServer;
        setBusy(false);
        if (m_over)
            emit swept(m_points, *m_over);
        emit finished();
        return;
    }
    Step step = std::move(m_steps.front());
    m_steps.pop_front();
    emit stateChanged();
    if (step.endpoint)
        open(step);
    else
        runStep(step.run, m_services(step.run.plan.serverId), nullptr);
}

// The user may give up while he is asked about the endpoint, or the server be removed: what comes then is
// late.
void QlumPerformanceWork::open(const Step& step)
{
    const quint64 number = ++m_opening;
    const unsigned int serverId = step.run.plan.serverId;
    m_cancel = [this] {
        ++m_opening;
        next();
    };
    const auto done = [this, number, serverId, run = step.run](SideSession session, const UaStatus& status) {
        if (number == m_opening && session)
            return runStep(run, qlumServicesOf(session), session);
        if (session)
            m_pool.add({tr("Closing a session"), serverId},
                       [session = std::move(session)](QlumJob& job) { closeSession(*session, job); });
        if (number != m_opening)
            return;
        emit leftOut(run.endpoint, qlumResultInWords(status));
        next();
    };
    QlumToolServices* tools = QlumToolServices::instance();
    if (!tools || !tools->sideSession(serverId, *step.endpoint, nullptr, this, done))
        done(nullptr, UaStatus(OpcUa_BadNotSupported));
}

template <typename Measurer>
void QlumPerformanceWork::runOn(const std::shared_ptr<Measurer>& measurer, unsigned int serverId,
                                SideSession side)
{
    m_cancel = [measurer] { measurer->cancel(); };
    const auto isTaken = std::make_shared<bool>(false);
    m_pool.add(
        {tr("Measuring"), serverId},
        [this, measurer, isTaken, side = std::move(side)](QlumJob& job) {
            job.whenCancelled([measurer] { measurer->cancel(); });
            const QlumMeasurementRun run = measurer->run();
            if (side)
                closeSession(*side, job);
            job.post([this, isTaken, run] {
                *isTaken = true;
                take(run);
            });
        },
        [this, isTaken](QlumWorkEnd) {
            if (*isTaken)
                return;
            m_steps.clear();
            next();
        });
}

void QlumPerformanceWork::runStep(QlumMeasurementRun run, std::shared_ptr<QlumSessionServices> services,
                                  SideSession side)
{
    m_current = std::make_shared<QlumSampleLog>();
    const unsigned int serverId = run.plan.serverId;
    if (!services) {
        run.end = QlumRunEnd::Broken;
        run.remarks.append(tr("The server is not connected."));
        return take(run);
    }
    if (run.plan.kind == QlumMeasuredKind::Session) {
        m_sessionRun = new QlumSessionRun(
            std::move(run), m_current, [this](const QlumMeasurementRun& done) { take(done); }, this);
        m_cancel = [sessionRun = m_sessionRun] {
            if (sessionRun)
                sessionRun->cancel();
        };
        return m_sessionRun->start();
    }
    if (run.plan.kind == QlumMeasuredKind::Notifications)
        runOn(std::make_shared<QlumNotificationRun>(std::move(run), std::move(services), m_current), serverId,
              std::move(side));
    else
        runOn(std::make_shared<QlumMeasurer>(std::move(run), std::move(services), m_current), serverId,
              std::move(side));
}

void QlumPerformanceWork::take(const QlumMeasurementRun& run)
{
    if (m_sessionRun)
        m_sessionRun->deleteLater();
    if (run.end != QlumRunEnd::Done)
        m_steps.clear(); // a sweep with a hole tells nothing, and the user has had enough
    if (m_over && run.figures.duration)
        m_points.push_back(qlumSweepPoint(run, *m_over));
    // the server takes no more than before, so larger steps would be the same
    const std::size_t points = m_points.size();
    if (m_over == QlumSweepOver::NodesPerCall && points > 1 &&
        m_points[points - 1].size <= m_points[points - 2].size)
        m_steps.clear();
    emit ended(run);
    next();
}

void QlumPerformanceWork::cancel()
{
    m_steps.clear();
    if (const auto cancelRun = m_cancel)
        cancelRun(); // which may take the place of m_cancel
}

void QlumPerformanceWork::endServer(unsigned int serverId)
{
    if (m_serverId == serverId)
        cancel();
    m_questions.endServer(serverId);
    m_pool.endServer(serverId);
    if (m_serverId == serverId) { // nobody tells of the end any more
        delete m_sessionRun;
        m_over.reset();
        next();
    }
}
