#include <servers/qlumconnectflow.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatechainmodel.h>
#include <certificates/qlumcertificateerror.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumcertificatewatch.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumtlstrustquestion.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/servicesettings.h>

#include <QDebug>
#include <QHostInfo>
#include <QMetaObject>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <type_traits>
#include <utility>

using UaClientSdk::ServiceSettings;
using UaClientSdk::UaClient;

QlumConnectFlow::QlumConnectFlow(const QlumLog& log, UaClientSdk::UaSession& session,
                                 UaClientSdk::UaSessionCallback& callback, QlumConnectPrompts& prompts,
                                 QObject* parent)
    : QObject(parent), m_log(log), m_session(session), m_callback(callback), m_prompts(prompts),
      m_worker(session)
{
    connect(&m_fetcher, &QlumEndpointFetcher::finished, this, &QlumConnectFlow::takeEndpoints);
    connect(&m_fetcher, &QlumEndpointFetcher::untrustedCertificate, this,
            [this](unsigned int status, const QByteArray& certificate) {
                static_cast<void>(m_tlsTrap.take({status, certificate})); // takeEndpoints looks for it
            });
    connect(&m_worker, &QlumConnectWorker::ended, this, &QlumConnectFlow::takeResult);
}

QlumConnectFlow::~QlumConnectFlow()
{
    stop();
}

void QlumConnectFlow::stop()
{
    m_step = Step::Idle;
    ++m_turn;
    leaveLookUp();
    if (std::exchange(m_isAsking, false))
        m_prompts.withdraw();
    m_fetcher.cancel();
    m_worker.stop();
}

// ---- from step to step

void QlumConnectFlow::start(const QlumDiscoverySetting& setting, const UaClientSdk::SessionConnectInfo& info,
                            const QlumIdentity& identity)
{
    m_setting = setting;
    m_info = info;
    m_identity = identity;
    if (identity)
        qlumSetIdentity(m_setting, *identity);
    begin();
}

void QlumConnectFlow::begin()
{
    m_outcome = OpcUa_BadRequestCancelledByClient;
    m_changesUser = false;
    m_refusal = UaStatusCode();
    m_entered.reset();
    m_failure.reset();
    m_error.reset();
    m_isDeclined = false;
    m_isPasswordLookedUp = m_isPasswordFound = false;
    m_passwordProblem.clear();
    m_keepsEntered = !m_identity;
    m_newlyIgnoredHost.clear();
    m_dialledHost.clear();
    m_usedCertificate.clear();
    m_isCertificateTrusted = m_isCertificateDecided = false;
    allowOnlyFor(m_setting);
    enter(Step::Endpoints);
}

void QlumConnectFlow::startUserChange(const QlumDiscoverySetting& setting)
{
    m_setting = setting;
    m_identity.reset();
    m_error.reset();
    m_attempt.endpoint = setting.endpoint;
    allowOnlyFor(setting);
    m_changesUser = true;
    m_outcome = OpcUa_BadRequestCancelledByClient;
    m_refusal = UaStatusCode();
    m_entered.reset();
    m_failure.reset();
    m_isPasswordLookedUp = true; // whoever changes the user enters one
    m_isPasswordFound = false;
    m_passwordProblem.clear();
    m_keepsEntered = setting.userTokenType == QlumDiscoverySetting::UserName;
    enter(Step::User);
}

// What the user has agreed to holds for no other server, security or user.
void QlumConnectFlow::allowOnlyFor(const QlumDiscoverySetting& setting)
{
    const QlumEndpoint& endpoint = setting.endpoint;
    const QStringList wanted{endpoint.url, QString::number(endpoint.securityMode), endpoint.securityPolicyUri,
                             setting.userName};
    if (wanted == m_allowedFor)
        return;
    m_allowedFor = wanted;
    m_weakPolicyAllowed = m_clearPasswordAllowed = false;
}

void QlumConnectFlow::enter(Step step)
{
    m_step = step;
    ++m_turn;
    post([this] { run(); });
    emit stepChanged(step, false);
}

void QlumConnectFlow::run()
{
    switch (m_step) {
    case Step::Endpoints:
        m_tlsTrap.set();
        m_fetcher.setServer(m_setting.displayName, m_info.clientConnectionId);
        return m_fetcher.fetch(m_setting.endpoint.url, static_cast<int>(m_info.connectTimeout));
    case Step::Endpoint:
        return chooseEndpoint();
    case Step::Host:
        return checkHost();
    case Step::Policy:
        return checkPolicy();
    case Step::User:
        return identifyUser();
    case Step::Certificate:
        return judgeCertificate();
    case Step::Session:
        return connectSession();
    case Step::UserChange:
        return changeUser();
    case Step::Idle:
    case Step::Ending:
        break;
    }
}

void QlumConnectFlow::asking()
{
    m_isAsking = true;
    emit stepChanged(m_step, true);
}

void QlumConnectFlow::finish(Result result)
{
    m_step = Step::Idle;
    ++m_turn;
    leaveLookUp();
    static_cast<void>(m_tlsTrap.release());
    if (std::exchange(m_isAsking, false))
        m_prompts.withdraw();
    m_identity.reset();
    m_attempt = Attempt(); // with what is secret in it
    m_setting.password.clear();
    emit finished(result);
}

void QlumConnectFlow::giveUp()
{
    finish(m_changesUser ? Result::Unchanged : Result::GivenUp);
}

void QlumConnectFlow::giveUpByUser()
{
    m_log.info(m_changesUser ? tr("Aborting changing user of current session")
                             : tr("Aborting connection attempt"));
    giveUp();
}

void QlumConnectFlow::fail(const QlumConnectFailure& failure)
{
    m_failure = failure;
    giveUp();
}

void QlumConnectFlow::cancel()
{
    if (m_step == Step::Idle || m_step == Step::Ending || m_step == Step::UserChange)
        return;
    m_fetcher.cancel();
    if (!m_worker.isRunning()) {
        m_outcome = OpcUa_BadRequestCancelledByClient;
        return giveUpByUser();
    }
    m_step = Step::Ending;
    ++m_turn;
    if (std::exchange(m_isAsking, false))
        m_prompts.withdraw();
    m_worker.cancel();
    emit stepChanged(m_step, false);
}

// ---- who the server is

void QlumConnectFlow::judgeCertificate()
{
    const QlumEndpoint& wanted = m_setting.endpoint;
    UaClientSdk::SessionSecurityInfo& security = m_attempt.security;
    qDebug().noquote() << tr("Try connect using SecurityPolicy '%1', MessageSecurityMode '%2'")
                              .arg(wanted.securityPolicyUri, qlumSecurityModeName(wanted.securityMode));
    qlumFillConnectSecurity(security, wanted, m_attempt.endpoint, m_attempt.endpoints);
    security.basic128Rsa15Accepted = m_weakPolicyAllowed;
    if (security.serverCertificate.isEmpty()) {
        m_log.write(QlumLogLevel::Warning,
                    tr("The server returned no certificate, all certificate checks will be skipped."));
        return enter(Step::Session);
    }
    if (!qlumNeedsServerCertificate(security, m_setting, m_attempt.endpoint)) {
        m_log.write(QlumLogLevel::Warning,
                    tr("The connection is not secured, the server's certificate is not checked."));
        security.serverCertificate.clear(); // the session takes one that it is given as judged
        return enter(Step::Session);
    }
    judgeChain();
}

void QlumConnectFlow::judgeChain()
{
    const QlumEndpoint& chosen = m_attempt.endpoint;
    UaClientSdk::SessionSecurityInfo& security = m_attempt.security;
    QlumCertificateChainModel chain(url(), chosen.applicationUri, security.serverCertificate, &security);
    chain.update();
    const bool isTrusted = chain.validationError() != QlumCertificateError::Error;
    const QByteArray now = qlumFirstCertificate(chosen.serverCertificate);
    const QByteArray& before =
        m_setting.givenCertificate.isEmpty() ? m_setting.trustedCertificate : m_setting.givenCertificate;
    if (!before.isEmpty() && before != now && !m_attempt.isChangeAccepted) {
        m_log.write(QlumLogLevel::Warning,
                    tr("The server's certificate is not the one that was trusted for it."));
        m_prompts.askChangedCertificate(
            {m_setting.displayName, url(), qlumToUaByteString(before), qlumToUaByteString(now), isTrusted},
            answer(&QlumConnectFlow::takeChange));
        return asking();
    }
    if (isTrusted)
        return takeVerdict({true, chain.validationResult().isBad(), chain.findings()});
    m_attempt.isHostJudged = chain.isFound(OpcUa_BadCertificateHostNameInvalid);
    m_isCertificateDecided = true;
    const QString& name = chosen.applicationName;
    m_prompts.askCertificate(
        {name.isEmpty() ? m_setting.displayName : name, chosen.applicationUri, url(), security},
        answer(&QlumConnectFlow::takeVerdict));
    asking();
}

void QlumConnectFlow::takeChange(bool isAccepted)
{
    if (!isAccepted)
        return takeVerdict({});
    m_attempt.isChangeAccepted = m_isCertificateDecided = true;
    judgeChain();
}

void QlumConnectFlow::takeVerdict(const QlumCertificateVerdict& verdict)
{
    if (!verdict.isAccepted) {
        m_log.error(tr("Connecting cancelled by user."));
        return giveUp();
    }
    for (const QString& finding : verdict.findings)
        m_log.write(QlumLogLevel::Warning, tr("Certificate of the server: %1").arg(finding));
    if (verdict.isForOnce)
        m_log.write(QlumLogLevel::Warning,
                    tr("The user has accepted the server's certificate for this session."));
    m_usedCertificate = qlumFirstCertificate(m_attempt.endpoint.serverCertificate);
    m_isCertificateTrusted = !verdict.isForOnce;
    enter(Step::Session);
}

// ---- the session

void QlumConnectFlow::connectSession()
{
    m_info.endpointUrl = toUaString(m_attempt.endpoint.url); // the one that was chosen, whatever is dialled
    m_worker.run([this, security = m_attempt.security] { return openSession(security); });
}

// While the user looks at a TLS certificate the channel that met it is closed, so no call's time runs out,
// and his word is followed by another attempt.
UaStatus QlumConnectFlow::openSession(const UaClientSdk::SessionSecurityInfo& security)
{
    const UaString url = toUaString(m_setting.endpoint.url);
    UaStatus status;
    std::optional<QlumTlsFailure> failure;
    do {
        m_tlsTrap.set();
        status = m_session.connect(url, m_info, security, &m_callback);
        failure = m_tlsTrap.release();
    } while (status.isBad() && failure && isTrustedNow(*failure));
    return status;
}

void QlumConnectFlow::changeUser()
{
    m_worker.run([this, identity = m_attempt.security.userIdentityToken()] {
        ServiceSettings settings;
        settings.callTimeout = qlumCallTimeout();
        return m_session.changeUser(settings, identity.get());
    });
}

void QlumConnectFlow::takeResult(const UaStatus& status)
{
    if (m_step == Step::Session)
        return takeConnectResult(status);
    if (m_step == Step::UserChange) {
        m_outcome = status.statusCode();
        if (status.isGood()) {
            m_log.info(tr("ChangeUser succeeded."));
            return giveUp();
        }
        m_log.error(tr("ChangeUser failed with error '%1'").arg(toQString(status.toString())));
        return fail(qlumConnectFailure(m_outcome));
    }
    if (!m_session.isConnected())
        return giveUpByUser();
    m_worker.run([this] { return m_session.disconnect(ServiceSettings(), true); }); // it was quicker
}

void QlumConnectFlow::takeConnectResult(const UaStatus& status)
{
    m_outcome = status.statusCode();
    if (!status.isGood()) {
        m_log.error(tr("Connecting failed with error '%1'").arg(toQString(status.toString())));
        if (isTooLate()) {
            ++m_turn; // the answer to the error has nowhere to go
            m_prompts.askConnectAnew(*m_error, answer(&QlumConnectFlow::takeAnew));
            return asking();
        }
        if (!m_isDeclined)
            m_failure = qlumConnectFailure(m_refusal.isBad() ? m_refusal : m_outcome);
        return finish(Result::Refused);
    }
    m_log.info(tr("Successfully connected UA server."));
    m_log.info(tr("Revised values: SessionTimeout=%1, SecureChannelLifetime=%2")
                   .arg(QString::number(m_session.revisedSessionTimeout(), 'g', 12),
                        QString::number(m_session.revisedSecureChannelLifetime())));
    finish(Result::Connected);
}

// The user would have gone on, or may still want to, but what he was asked about is there no longer.
bool QlumConnectFlow::isTooLate() const
{
    if (!m_error || m_isDeclined)
        return false;
    switch (m_outcome.code()) {
    case OpcUa_BadConnectionClosed:
    case OpcUa_BadSecureChannelClosed:
    case OpcUa_BadSecureChannelIdInvalid:
    case OpcUa_BadSessionIdInvalid:
    case OpcUa_BadSessionClosed:
        return true;
    default:
        return m_worker.hasExpired();
    }
}

void QlumConnectFlow::takeAnew(bool isWanted)
{
    if (!isWanted)
        return finish(Result::Refused);
    m_attempt = Attempt();
    begin();
}

bool QlumConnectFlow::connectError(UaClient::ConnectServiceType step, const UaStatus& error,
                                   bool clientSideError)
{
    if (m_worker.isCancelled()) // whatever it is, it follows from that
        return false;
    if (clientSideError && m_attempt.isHostJudged && error.code() == OpcUa_BadCertificateHostNameInvalid)
        return true;
    const QlumConnectError told{toQString(error.toString()), qlumConnectStepName(step),
                                toQString(error.diagnosticText())};
    if (!clientSideError) {
        m_log.error(tr("Error '%1' was returned during %2").arg(told.status, told.step));
        if (!told.details.isEmpty())
            m_log.error(told.details);
        const bool isServers = step != UaClient::CertificateValidation && !m_tlsTrap.hasFailure();
        m_refusal = isServers ? error.statusCode() : OpcUa_Good;
        return false;
    }
    if (m_changesUser && error == OpcUa_BadSecurityModeInsufficient &&
        m_attempt.security.plainPasswordAccepted)
        return true; // the question for the user has said so
    return askOnWorker([this, told](const QlumConnectPrompts::Decided& decided) {
        m_error = told;
        m_prompts.askConnectError(told, decided);
        asking();
    });
}

bool QlumConnectFlow::isTrustedNow(const QlumTlsFailure& failure)
{
    return askOnWorker(
        [this, failure](const QlumConnectPrompts::Decided& decided) { askAboutTls(failure, decided); });
}

bool QlumConnectFlow::askOnWorker(const std::function<void(QlumConnectPrompts::Decided)>& open)
{
    // the server waits no longer than that for its new session to be used
    constexpr double longest = 24 * 3600 * 1000.0;
    const std::chrono::milliseconds limit(static_cast<int>(std::clamp(m_info.sessionTimeout, 1.0, longest)));
    return m_worker.ask([this, open](const auto& question) { openForWorker(open, question); }, limit);
}

void QlumConnectFlow::openForWorker(const std::function<void(QlumConnectPrompts::Decided)>& open,
                                    const std::shared_ptr<QlumConnectWorker::Question>& question)
{
    if (m_step != Step::Session && m_step != Step::UserChange)
        return m_worker.answer(*question, false);
    open([this, question, turn = m_turn](bool decided) {
        if (turn != m_turn)
            return;
        post([this, question, decided] {
            m_isAsking = false;
            m_isDeclined = m_isDeclined || !decided;
            m_worker.answer(*question, decided);
            emit stepChanged(m_step, false);
        });
    });
}
