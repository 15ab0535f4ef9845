#include <servers/doctor/qlumreachjob.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumtlsoverrules.h>
#include <opcua/opcua_clientapi.h>
#include <opcua/opcua_endpointurl.h>
#include <opcua/opcua_probe.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/doctor/qlumdoctor.h>
#include <servers/doctor/qlumdoctorwords.h>
#include <servers/qlumendpointchoice.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/observedcall.h>
#include <uaclientsdk/generated/servicetraits.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QUrl>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace {
struct ReachTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumDoctor)
};

constexpr int shownEndpoints = 20;
constexpr qint64 unitsInMillisecond = 10'000; // of the protocol's times

int portOf(const QString& url)
{
    return QUrl(url).port(OPCUA_DEFAULT_PORT);
}
} // namespace

// What a cancel ends, on whatever thread. Nothing that it looks at goes while it does.
class QlumReachJob::Lines
{
public:
    Lines() = default;
    ~Lines() { close(); }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    OpcUa_StatusCode open(const QByteArray& url)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_ending == 0; });
        if (m_isCancelled)
            return OpcUa_BadRequestCancelledByClient;
        OpcUa_Probe_Delete(&m_probe);
        const OpcUa_StatusCode status = OpcUa_Probe_Create(url.constData(), &m_probe);
        return OpcUa_IsGood(status) && !m_channel ? OpcUa_Channel_Create(&m_channel) : status;
    }
    void cancel()
    {
        std::unique_lock lock(m_mutex);
        m_isCancelled = true;
        ++m_ending;
        const OpcUa_Probe probe = m_probe;
        const OpcUa_Channel channel = m_channel;
        lock.unlock();
        OpcUa_Probe_Cancel(probe);
        static_cast<void>(OpcUa_Channel_Disconnect(channel)); // good or not, nobody waits for it
        lock.lock();
        --m_ending;
        m_changed.notify_all();
    }
    // No callback of the channel runs afterwards.
    void close()
    {
        std::unique_lock lock(m_mutex);
        m_isCancelled = true;
        m_changed.wait(lock, [this] { return m_ending == 0; });
        OpcUa_Channel channel = std::exchange(m_channel, nullptr);
        OpcUa_Probe probe = std::exchange(m_probe, nullptr);
        lock.unlock();
        OpcUa_Channel_Delete(&channel);
        OpcUa_Probe_Delete(&probe);
    }
    // For the job, which alone opens and closes.
    [[nodiscard]] OpcUa_Probe probe() const { return m_probe; }
    [[nodiscard]] OpcUa_Channel channel() const { return m_channel; }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_ending = 0; // how many threads look at the handles
    bool m_isCancelled = false;
    OpcUa_Probe m_probe = nullptr;
    OpcUa_Channel m_channel = nullptr;
};

QlumReachJob::QlumReachJob(Question question, Told told, Done done)
    : m_question(std::move(question)), m_told(std::move(told)), m_done(std::move(done)),
      m_lines(std::make_shared<Lines>())
{
}

QlumReachJob::~QlumReachJob() = default;

void QlumReachJob::run()
{
    static constexpr std::array<std::pair<QlumRung::Step, Climb>, 5> ladder{
        std::pair{QlumRung::Name, &QlumReachJob::resolve},
        std::pair{QlumRung::Connection, &QlumReachJob::connect},
        std::pair{QlumRung::Hello, &QlumReachJob::greet},
        std::pair{QlumRung::Channel, &QlumReachJob::openChannel},
        std::pair{QlumRung::Endpoints, &QlumReachJob::askEndpoints}};
    whenCancelled([lines = m_lines] { lines->cancel(); });
    for (const auto& [step, function] : ladder) {
        setProgress(step, QlumRung::StepCount);
        if (isCancelled() || !climb(step, function))
            break;
    }
    m_lines->close();
    post([done = m_done, reached = m_reached] { done(reached); });
}

bool QlumReachJob::climb(QlumRung::Step step, Climb function)
{
    QlumRung rung;
    rung.step = step;
    rung.state = QlumRung::Running;
    post([told = m_told, rung] { told(rung); });
    const auto begun = std::chrono::steady_clock::now();
    (this->*function)(rung);
    if (rung.state != QlumRung::Skipped)
        rung.milliseconds =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begun).count();
    if (rung.state == QlumRung::Running)
        rung.state = QlumRung::Passed;
    post([told = m_told, rung] { told(rung); });
    return rung.state != QlumRung::Failed;
}

void QlumReachJob::fail(QlumRung& rung, OpcUa_StatusCode status) const
{
    const QString& url = m_question.wanted.url;
    qlumExplainReach(rung, status, qlumSingleLine(QUrl(url).host()), portOf(url));
}

bool QlumReachJob::isHttps() const
{
    return qlumSchemeOf(m_question.wanted.url) == QLatin1String("https");
}

// ---- the steps

void QlumReachJob::resolve(QlumRung& rung)
{
    OpcUa_StatusCode status = m_lines->open(m_question.wanted.url.toUtf8());
    if (OpcUa_IsGood(status))
        status = OpcUa_Probe_Resolve(m_lines->probe(), m_question.timeout);
    if (OpcUa_IsBad(status))
        return fail(rung, status);
    const OpcUa_UInt32 count = OpcUa_Probe_GetAddressCount(m_lines->probe());
    for (OpcUa_UInt32 i = 0; i < count; ++i)
        rung.evidence << QString::fromUtf8(OpcUa_Probe_GetAddress(m_lines->probe(), i));
    rung.finding = count == 1 ? ReachTexts::tr("One address: %1").arg(rung.evidence.first())
                              : ReachTexts::tr("%1 addresses, the first is %2")
                                    .arg(QString::number(count), rung.evidence.first());
}

void QlumReachJob::connect(QlumRung& rung)
{
    const OpcUa_StatusCode status = OpcUa_Probe_Connect(m_lines->probe(), m_question.timeout);
    if (OpcUa_IsBad(status))
        return fail(rung, status);
    rung.finding =
        ReachTexts::tr("Connected to %1").arg(QString::fromUtf8(OpcUa_Probe_GetPeer(m_lines->probe())));
}

void QlumReachJob::greet(QlumRung& rung)
{
    if (isHttps()) {
        rung.state = QlumRung::Skipped;
        rung.finding = ReachTexts::tr("HTTPS has no greeting; its TLS belongs to the next step.");
        return;
    }
    OpcUa_ProbeHello hello{};
    const OpcUa_StatusCode status = OpcUa_Probe_Hello(m_lines->probe(), m_question.timeout, &hello);
    if (OpcUa_IsBad(status)) {
        fail(rung, status);
        const QString reason = QString::fromUtf8(hello.Reason);
        if (!reason.isEmpty())
            rung.evidence << ReachTexts::tr("The server says: %1").arg(qlumCutText(reason));
        if (hello.AnswerLength > 0)
            rung.evidence << ReachTexts::tr("The answer begins with: %1")
                                 .arg(qlumAnswerWords(QByteArray(reinterpret_cast<const char*>(hello.Answer),
                                                                 static_cast<int>(hello.AnswerLength))));
        return;
    }
    rung.finding = ReachTexts::tr("The server speaks OPC UA, protocol version %1").arg(hello.ProtocolVersion);
    rung.evidence << ReachTexts::tr("Buffers: it receives %1 and sends %2 bytes")
                         .arg(hello.ReceiveBufferSize)
                         .arg(hello.SendBufferSize)
                  << ReachTexts::tr("Longest message: %1 bytes in %2 chunks (0: no limit)")
                         .arg(hello.MaxMessageSize)
                         .arg(hello.MaxChunkCount);
}

OpcUa_StatusCode QlumReachJob::judgeTls(OpcUa_StatusCode status, const OpcUa_ByteString& certificate)
{
    const UaByteString bytes(certificate);
    if (qlumIsTlsOverruled(m_question.wanted.url, bytes, status))
        return OpcUa_Good;
    const std::lock_guard lock(m_tlsMutex);
    m_reached.tlsCertificate = bytes;
    m_reached.tlsStatus = status;
    return status;
}

void QlumReachJob::openChannel(QlumRung& rung)
{
    const QByteArray url = m_question.wanted.url.toUtf8();
    const UaClientSdk::PkiFolders& folders = m_question.security.httpsPki();
    const OpcUa_PkiConfiguration pki{folders.trustedCertificates.toUtf8(),
                                     folders.trustedRevocationLists.toUtf8(), nullptr, nullptr};
    OpcUa_ChannelConnectInfo info{};
    info.Url = url.constData();
    info.SecurityPolicyUri = OpcUa_SecurityPolicy_None;
    info.SecurityMode = OpcUa_MessageSecurityMode_None;
    info.ConnectTimeout = m_question.timeout;
    info.PkiConfiguration = isHttps() ? &pki : nullptr;
    info.CallbackContext = this;
    info.Callback = [](OpcUa_Channel, OpcUa_Channel_Event event, OpcUa_StatusCode, void* details,
                       void* context) -> OpcUa_StatusCode {
        if (event != OpcUa_Channel_Event_VerifyCertificate)
            return OpcUa_Good;
        const auto& validation = *static_cast<const OpcUa_CertificateValidation*>(details);
        return static_cast<QlumReachJob*>(context)->judgeTls(validation.Status, validation.Certificate);
    };
    const OpcUa_StatusCode status = OpcUa_Channel_Connect(m_lines->channel(), &info, nullptr);
    const std::lock_guard lock(m_tlsMutex); // one whose time was over may still be judged
    if (OpcUa_IsBad(status) && !m_reached.tlsCertificate.isEmpty()) {
        qlumExplainTls(rung, m_reached.tlsStatus);
        rung.evidence += qlumCertificateWords(m_reached.tlsCertificate);
        return;
    }
    if (OpcUa_IsBad(status))
        return fail(rung, status);
    rung.finding = isHttps() ? ReachTexts::tr("TLS is set up, its certificate passes.")
                             : ReachTexts::tr("An unsecured channel, to ask for the endpoints, is open.");
}

void QlumReachJob::askEndpoints(QlumRung& rung)
{
    const QByteArray url = m_question.wanted.url.toUtf8();
    OpcUa_GetEndpointsRequest request;
    OpcUa_GetEndpointsResponse response;
    OpcUa_EncodeableObject_Initialize(&OpcUa_GetEndpointsRequest_EncodeableType, &request);
    OpcUa_EncodeableObject_Initialize(&OpcUa_GetEndpointsResponse_EncodeableType, &response);
    const OpcUa_DateTime asked = OpcUa_DateTime_UtcNow();
    request.RequestHeader.Timestamp = asked;
    request.RequestHeader.TimeoutHint = m_question.timeout;
    OpcUa_StatusCode status = OpcUa_String_Assign(&request.EndpointUrl, url.constData(), url.size());
    if (OpcUa_IsGood(status)) {
        const UaString purpose = serviceSettings().purpose;
        const auto observed = UaClientSdk::ObservedCall::ofOne(
            m_question.observer, {OpcUa_GetEndpointsRequest_EncodeableType, &request, purpose, nullptr});
        status = OpcUa_ClientApi_GetEndpoints(m_lines->channel(), &request, &response);
        UaClientSdk::endObserved<UaClientSdk::Services::GetEndpoints>(observed, status, response);
    }
    const OpcUa_DateTime answered = OpcUa_DateTime_UtcNow();
    if (OpcUa_IsGood(status)) {
        const int count = std::min<int>(response.NoOfEndpoints, QlumEndpointLimits::endpoints);
        for (int i = 0; i < count; ++i)
            m_reached.endpoints.append(qlumEndpoint(response.Endpoints[i]));
        // as distances, since the server's number may be anything
        if (response.ResponseHeader.Timestamp > 0)
            m_reached.clockOffset =
                (response.ResponseHeader.Timestamp - (asked / 2 + answered / 2)) / unitsInMillisecond;
    }
    OpcUa_EncodeableObject_Clear(&OpcUa_GetEndpointsRequest_EncodeableType, &request);
    OpcUa_EncodeableObject_Clear(&OpcUa_GetEndpointsResponse_EncodeableType, &response);
    if (OpcUa_IsBad(status))
        return fail(rung, status);
    takeEndpoints(rung);
}

void QlumReachJob::takeEndpoints(QlumRung& rung)
{
    const QVector<QlumEndpoint>& endpoints = m_reached.endpoints;
    for (int i = 0; i < std::min(endpoints.size(), shownEndpoints); ++i) {
        const QlumEndpoint& endpoint = endpoints.at(i);
        rung.evidence << ReachTexts::tr("%1 at %2 (log-in: %3)")
                             .arg(qlumSecurityWords(endpoint), qlumCutText(qlumSingleLine(endpoint.url)),
                                  qlumTokenWords(endpoint));
    }
    if (endpoints.size() > shownEndpoints)
        rung.evidence << ReachTexts::tr("and %1 more").arg(endpoints.size() - shownEndpoints);
    QlumDiagnosis clocks;
    clocks.clockOffset = m_reached.clockOffset;
    const QString words = qlumClockWords(clocks);
    if (!words.isEmpty()) {
        rung.evidence.prepend(words);
        rung.state = QlumRung::Warned;
        rung.advice = ReachTexts::tr("Set the clock that is wrong: certificates and times of values depend "
                                     "on it.");
    }
    choose(rung);
    if (rung.state == QlumRung::Failed)
        return;
    rung.finding =
        ReachTexts::tr("%n endpoints; '%1' is among them", nullptr, static_cast<int>(endpoints.size()))
            .arg(qlumSecurityWords(m_reached.chosen));
    if (!words.isEmpty())
        rung.finding = words;
    checkHost(rung);
}

void QlumReachJob::choose(QlumRung& rung)
{
    QlumEndpoint wanted = m_question.wanted;
    if (wanted.securityPolicyUri.isEmpty())
        wanted.securityPolicyUri = qlumBestPolicy(m_reached.endpoints, wanted.url, wanted.securityMode);
    const QlumEndpointChoice choice =
        qlumChooseEndpoint(m_reached.endpoints, wanted.url, wanted.securityPolicyUri, wanted.securityMode);
    m_reached.isChosen = choice.match != QlumEndpointChoice::NoMatch;
    if (!m_reached.isChosen)
        return qlumExplainNoEndpoint(rung, m_question.wanted);
    m_reached.chosen = m_reached.endpoints.at(choice.index);
}

// A connect asks about a host that nobody knows, and about nothing else of it.
void QlumReachJob::checkHost(QlumRung& rung)
{
    const QString host = QUrl(m_reached.chosen.url).host();
    if (host.isEmpty() || host == QUrl(m_question.wanted.url).host() || host == m_question.ignoredHost)
        return;
    rung.evidence.prepend(ReachTexts::tr("The endpoint names the host '%1', dialled is '%2'")
                              .arg(qlumCutText(host), QUrl(m_question.wanted.url).host()));
    OpcUa_StatusCode status = m_lines->open(m_reached.chosen.url.toUtf8());
    if (OpcUa_IsGood(status))
        status = OpcUa_Probe_Resolve(m_lines->probe(), m_question.timeout);
    if (OpcUa_IsGood(status) || isCancelled())
        return;
    m_reached.unknownHost = host;
    rung.state = QlumRung::Warned;
    rung.status = status;
    rung.fix = QlumRung::KeepDialledHost;
    rung.finding =
        ReachTexts::tr("The server names the host '%1', which nobody knows here.").arg(qlumCutText(host));
    rung.advice = ReachTexts::tr("Keep to the host that was dialled, if that is the server that is meant.");
}
