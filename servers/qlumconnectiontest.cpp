#include <servers/qlumconnectiontest.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumconnectprogress.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumserviceguard.h>
#include <servers/qlumsideconnect.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/uasession.h>

#include <QLocale>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>
#include <utility>

namespace {
using UaClientSdk::UaSession;

constexpr std::array<OpcUa_UInt32, 3> toldNodes{OpcUaId_Server_ServerStatus_State,
                                                OpcUaId_Server_ServerStatus_BuildInfo_ProductName,
                                                OpcUaId_Server_ServerStatus_BuildInfo_SoftwareVersion};

// What a server says of itself, as far as this user may read it.
struct ServerAnswer
{
    UaStatus status;
    int state = -1;
    QString product;
    double sessionTimeout = 0;
};

ServerAnswer askServer(UaSession& session, UaClientSdk::ServiceSettings settings)
{
    ServerAnswer answer;
    answer.sessionTimeout = session.revisedSessionTimeout();
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(toldNodes.size()));
    if (nodes.length() != toldNodes.size()) {
        answer.status = OpcUa_BadOutOfMemory;
        return answer;
    }
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(UaNodeId(toldNodes[i]).copyTo(&nodes[i].NodeId));
        nodes[i].AttributeId = OpcUa_Attributes_Value;
    }
    UaDataValues values;
    UaDiagnosticInfos diagnostics;
    answer.status = session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnostics);
    if (answer.status.isBad() || values.length() != nodes.length())
        return answer;
    bool isNumber = false;
    const OpcUa_Int32 state = UaVariant(values[0].Value).toInt32(&isNumber);
    answer.state = isNumber ? state : -1;
    QStringList product;
    for (OpcUa_UInt32 i = 1; i < values.length(); ++i)
        if (OpcUa_IsGood(values[i].StatusCode))
            product.append(
                qlumCutText(qlumSingleLine(toQString(UaVariant(values[i].Value).toString())), 100));
    answer.product = product.join(QLatin1Char(' ')).trimmed();
    return answer;
}

struct TestTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumConnectionTest)
};

QString stateText(int state)
{
    const std::array names{TestTexts::tr("running"),
                           TestTexts::tr("failed"),
                           TestTexts::tr("not configured"),
                           TestTexts::tr("suspended"),
                           TestTexts::tr("shut down"),
                           TestTexts::tr("in test"),
                           TestTexts::tr("in a communication fault")};
    return state >= 0 && static_cast<std::size_t>(state) < names.size()
               ? names[static_cast<std::size_t>(state)]
               : TestTexts::tr("in an unknown state");
}

// What has been tested, so that a good end is not taken for one of other settings.
QString testedText(const QlumDiscoverySetting& setting)
{
    const QlumEndpoint& endpoint = setting.endpoint;
    const QString security = QStringLiteral("%1, %2").arg(qlumPolicyName(endpoint.securityPolicyUri),
                                                          qlumSecurityModeName(endpoint.securityMode));
    const QString user = setting.userTokenType == QlumDiscoverySetting::UserName
                             ? TestTexts::tr("as user '%1'").arg(qlumCutText(setting.userName, 64))
                         : setting.userTokenType == QlumDiscoverySetting::Certificate
                             ? TestTexts::tr("with a user certificate")
                             : TestTexts::tr("anonymously");
    return TestTexts::tr("%1, %2").arg(security, user);
}
} // namespace

QlumConnectionTest::QlumConnectionTest(MakePrompts makePrompts, QObject* parent)
    : QObject(parent), m_makePrompts(std::move(makePrompts))
{
}

QlumConnectionTest::~QlumConnectionTest()
{
    m_isRunning = false; // nobody is left to tell
    delete m_connect;
}

void QlumConnectionTest::start(const QlumDiscoverySetting& setting)
{
    if (m_isRunning)
        return;
    m_isRunning = true;
    m_setting = setting;
    m_setting.session.typeDictionaryMode = QStringLiteral("Manual"); // nobody reads structures here
    m_ignoredHost.clear();
    m_answering = 0;
    m_timer.start();
    m_connect = new QlumSideConnect(
        std::make_shared<QlumGuardedServer>(qlumNoServer, QlumServerRole::Look), m_setting, nullptr,
        m_makePrompts(),
        [this](const std::shared_ptr<UaSession>& session, const UaStatus& status) {
            takeSession(session, status);
        },
        this);
    connect(&m_connect->flow(), &QlumConnectFlow::stepChanged, this, &QlumConnectionTest::takeStep);
}

// The user's time is not the server's.
void QlumConnectionTest::takeStep(QlumConnectFlow::Step step, bool isAsking)
{
    if (isAsking)
        m_askedAt = m_timer.elapsed();
    else if (const qint64 asked = std::exchange(m_askedAt, -1); asked >= 0)
        m_answering += m_timer.elapsed() - asked;
    emit stepChanged(isAsking ? tr("Waiting for your answer") : QlumConnectProgress::textOf(step));
}

void QlumConnectionTest::cancel()
{
    if (m_connect && !m_connect->flow().isIdle())
        return m_connect->flow().cancel();
    m_pool.cancelAll();
    if (m_isRunning)
        finish(false, tr("The test was cancelled."), QString());
}

void QlumConnectionTest::takeSession(const std::shared_ptr<UaSession>& session, const UaStatus& status)
{
    if (!m_isRunning)
        return;
    const QlumConnectFlow& flow = m_connect->flow();
    m_ignoredHost = flow.newlyIgnoredHost();
    if (session)
        return lookAt(session);
    if (const std::optional<QlumConnectFailure>& failure = flow.failure())
        return finish(false, tr("The test has failed: %1").arg(failure->reason), failure->advice);
    if (status == OpcUa_BadRequestCancelledByClient)
        return finish(false, tr("The test was cancelled."), QString());
    finish(false, tr("The test has failed: %1").arg(qlumConnectFailure(status).reason), QString());
}

// Its last holder closes it, which is a call that waits for the server.
void QlumConnectionTest::lookAt(std::shared_ptr<UaSession> session)
{
    emit stepChanged(tr("Looking at the server's state"));
    const qint64 needed = m_timer.elapsed() - m_answering;
    m_pool.add(
        {tr("Testing the connection to %1").arg(qlumCutText(m_setting.endpoint.url))},
        [this, held = std::move(session), needed](QlumJob& job) mutable {
            const ServerAnswer answer = askServer(*held, job.serviceSettings());
            job.post([this, answer, needed] {
                const QLocale locale;
                const QString time = locale.toString(needed);
                if (answer.status.isBad())
                    return finish(true, tr("Connected in %1 ms (%2).").arg(time, testedText(m_setting)),
                                  tr("The server's state cannot be read: %1.")
                                      .arg(qlumStatusText(answer.status.statusCode())));
                const QString product = answer.product.isEmpty() ? tr("The server") : answer.product;
                finish(true, tr("Connected in %1 ms (%2).").arg(time, testedText(m_setting)),
                       tr("%1 is %2. It keeps the session for %3 s without a connection.")
                           .arg(product, stateText(answer.state),
                                locale.toString(answer.sessionTimeout / 1000, 'f', 0)));
            });
            held.reset();
        },
        [this](QlumWorkEnd end) {
            if (m_isRunning)
                finish(false,
                       end == QlumWorkEnd::Cancelled ? tr("The test was cancelled.")
                                                     : tr("The test has failed."),
                       QString());
        });
}

void QlumConnectionTest::finish(bool isGood, const QString& what, const QString& why)
{
    m_isRunning = false;
    m_setting = QlumDiscoverySetting(); // with what is secret in it
    emit finished(isGood, what, why);
}
