// Which endpoint a connect goes to, and by which host.
#include <servers/qlumconnectflow.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumtlstrustquestion.h>

#include <QHostInfo>
#include <QTimer>
#include <QUrl>

#include <optional>
#include <utility>

void QlumConnectFlow::takeEndpoints(unsigned int status, const QVector<QlumEndpoint>& endpoints)
{
    const std::optional<QlumTlsFailure> failure = m_tlsTrap.release();
    m_attempt.discovery = status;
    m_attempt.endpoints = endpoints;
    if (OpcUa_IsGood(status))
        return enter(Step::Endpoint);
    if (!failure && isSetByHand() && !qlumIsUnreachable(status)) {
        m_log.write(QlumLogLevel::Warning,
                    tr("The server does not list its endpoints (%1). What was set by hand is used.")
                        .arg(qlumStatusText(status)));
        m_attempt.endpoint = m_setting.endpoint;
        m_attempt.endpoint.serverCertificate = m_setting.givenCertificate;
        return enter(Step::Policy);
    }
    if (!failure) {
        m_failure = qlumConnectFailure(status);
        return takeDiscoveryTrust(false);
    }
    askAboutTls(*failure, answer(&QlumConnectFlow::takeDiscoveryTrust));
}

// All that is needed of an endpoint that nobody lists.
bool QlumConnectFlow::isSetByHand() const
{
    const QlumEndpoint& endpoint = m_setting.endpoint;
    return !m_setting.givenCertificate.isEmpty() && !endpoint.securityPolicyUri.isEmpty() &&
           endpoint.securityMode > OpcUa_MessageSecurityMode_None &&
           qlumSchemeOf(endpoint.url) == QLatin1String("opc.tcp");
}

void QlumConnectFlow::takeDiscoveryTrust(bool isTrusted)
{
    if (isTrusted)
        return enter(Step::Endpoints);
    m_outcome = m_attempt.discovery;
    m_log.error(tr("Could not connect to server: ") + qlumStatusText(m_attempt.discovery));
    giveUp();
}

void QlumConnectFlow::askAboutTls(const QlumTlsFailure& failure, QlumConnectPrompts::Decided decided)
{
    QlumTlsTrustQuestion::log(m_log, m_setting.displayName, failure.status);
    post([this, failure] { emit untrustedCertificate(failure.status, failure.certificate); });
    m_prompts.askTlsTrust(m_setting.displayName, m_setting.endpoint.url,
                          qlumToUaByteString(failure.certificate), UaStatusCode(failure.status),
                          std::move(decided));
    asking();
}

bool QlumConnectFlow::choosePolicy()
{
    QlumEndpoint& wanted = m_setting.endpoint;
    if (wanted.securityPolicyUri.isEmpty())
        wanted.securityPolicyUri = qlumBestPolicy(m_attempt.endpoints, wanted.url, wanted.securityMode);
    return !wanted.securityPolicyUri.isEmpty();
}

void QlumConnectFlow::chooseEndpoint()
{
    if (!choosePolicy()) {
        m_outcome = OpcUa_BadSecurityModeRejected;
        m_log.error(tr("The server does not support the security mode '%1'.")
                        .arg(qlumSecurityModeName(m_setting.endpoint.securityMode)));
        return fail(qlumConnectFailure(m_outcome));
    }
    const QlumEndpoint& wanted = m_setting.endpoint;
    const QVector<QlumEndpoint>& endpoints = m_attempt.endpoints;
    const QlumEndpointChoice choice =
        qlumChooseEndpoint(endpoints, wanted.url, wanted.securityPolicyUri, wanted.securityMode);
    for (const int index : choice.qualified) {
        m_log.write(QlumLogLevel::Data, tr("Endpoint: '%1'").arg(endpoints.at(index).url));
        m_log.write(QlumLogLevel::Data,
                    tr("Security policy: '%1'").arg(endpoints.at(index).securityPolicyUri));
    }
    const bool isFound = choice.match != QlumEndpointChoice::NoMatch;
    m_attempt.endpoint = isFound ? endpoints.at(choice.index) : wanted;
    if (!isFound || m_attempt.endpoint.serverCertificate.isEmpty()) // what was once stored proves nothing
        m_attempt.endpoint.serverCertificate = m_setting.givenCertificate;
    m_log.write(QlumLogLevel::Data,
                tr("ApplicationUri: '%1'").arg(isFound ? m_attempt.endpoint.applicationUri : QString()));
    if (choice.match == QlumEndpointChoice::Exact)
        return enter(Step::Host);
    if (isFound) {
        m_prompts.tellFirstCertificate(answer(&QlumConnectFlow::takeFirstCertificate));
        return asking();
    }
    m_log.error(
        tr("The server does not support the configured security policy '%1'.").arg(wanted.securityPolicyUri));
    m_prompts.askUnsupportedPolicy(answer(&QlumConnectFlow::takeUnsupportedPolicy));
    asking();
}

void QlumConnectFlow::takeFirstCertificate()
{
    enter(Step::Host);
}

void QlumConnectFlow::takeUnsupportedPolicy(bool isIgnored)
{
    if (isIgnored)
        enter(Step::Policy);
    else
        giveUp();
}

// What is dialled is the URL of the settings in any case. A server that names a host nobody knows is perhaps
// not the one that is meant; one that names a known host may do so by the name that it has at home.
void QlumConnectFlow::checkHost()
{
    const QUrl named(m_attempt.endpoint.url);
    const QUrl dialled(url());
    const QString host = named.host();
    m_dialledHost = qlumAuthority(named) == qlumAuthority(dialled) ? QString() : qlumAuthority(dialled);
    if (host.isEmpty() || host == dialled.host() || host == m_setting.ignoredHost)
        return enter(Step::Policy);
    m_isLookingUp = true;
    const auto found = [this, turn = m_turn](bool isFound) {
        if (turn == m_turn)
            takeHost(isFound);
    };
    QHostInfo::lookupHost(
        host, this, [found](const QHostInfo& info) { found(info.error() == QHostInfo::NoError); });
    QTimer::singleShot(static_cast<int>(m_info.connectTimeout), this, [found] { found(false); });
}

void QlumConnectFlow::takeHost(bool isFound)
{
    if (!std::exchange(m_isLookingUp, false)) // it is answered, or has taken too long
        return;
    const QString named = QUrl(m_attempt.endpoint.url).host();
    if (isFound) {
        m_log.write(QlumLogLevel::Data,
                    tr("The server calls its host '%1'; '%2', where it has answered, is kept to.")
                        .arg(named, m_dialledHost));
        return enter(Step::Policy);
    }
    m_prompts.askDialledHost(m_setting.displayName, named, QUrl(url()).host(),
                             answer(&QlumConnectFlow::takeDialledHost));
    asking();
}

void QlumConnectFlow::takeDialledHost(bool isKept)
{
    if (!isKept)
        return giveUpByUser();
    m_newlyIgnoredHost = QUrl(m_attempt.endpoint.url).host();
    enter(Step::Policy);
}

// Answers about its padding let an attacker find out what was encrypted, so it is used only where somebody
// has said so for this server.
void QlumConnectFlow::checkPolicy()
{
    const QString& policy = m_setting.endpoint.securityPolicyUri;
    if (qlumPolicyName(policy) != QLatin1String("Basic128Rsa15") || m_weakPolicyAllowed)
        return enter(Step::User);
    m_prompts.askWeakPolicy(m_setting.displayName, answer(&QlumConnectFlow::takeWeakPolicy));
    asking();
}

void QlumConnectFlow::takeWeakPolicy(bool isAllowed)
{
    if (!isAllowed)
        return giveUpByUser();
    m_log.write(QlumLogLevel::Warning, tr("The unsafe security policy 'Basic128Rsa15' is used."));
    m_weakPolicyAllowed = true;
    enter(Step::User);
}
