#include <servers/doctor/qlumdoctor.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumservicerecorder.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatechainmodel.h>
#include <certificates/qlumcertificateerror.h>
#include <certificates/qlumcertificates.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/doctor/qlumdoctorwords.h>
#include <servers/passwords/qlumpasswordkeeper.h>
#include <servers/qlumcertificatewatch.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumpkifolders.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/uaclient.h>

#include <QByteArray>
#include <QDateTime>
#include <QPointer>
#include <QUrl>

#include <utility>

using UaClientSdk::UaClient;

namespace {
double millisecondsBetween(QlumEntry::Time begin, QlumEntry::Time end)
{
    return std::chrono::duration<double, std::milli>(end - begin).count();
}

QlumRung rungOf(QlumRung::Step step, QlumRung::State state, const QString& finding = {})
{
    QlumRung rung;
    rung.step = step;
    rung.state = state;
    rung.finding = finding;
    return rung;
}
} // namespace

QlumDoctor::QlumDoctor(unsigned int serverId, const QlumDiscoverySetting& setting,
                       std::unique_ptr<QlumConnectPrompts> prompts, QObject* parent)
    : QObject(parent), m_serverId(serverId), m_log(tr("Server Node"), serverId), m_setting(setting),
      m_prompts(std::move(prompts)), m_worker(m_session)
{
    connect(&m_worker, &QlumConnectWorker::ended, this, &QlumDoctor::takeEntry);
}

QlumDoctor::~QlumDoctor()
{
    m_prompts->withdraw();
    leaveLookUp();
    m_pool.cancelAll();
    m_worker.stop();
    if (m_session.isConnected()) // while the watch lives
        static_cast<void>(m_session.disconnect(UaClientSdk::ServiceSettings(), true));
}

// ---- up the ladder

void QlumDoctor::start()
{
    if (m_isRunning)
        return;
    m_isRunning = true;
    m_isHostJudged = false;
    m_diagnosis = QlumDiagnosis();
    m_diagnosis.server = m_setting.displayName;
    m_diagnosis.url = QUrl(m_setting.endpoint.url).toDisplayString(QUrl::RemoveUserInfo);
    m_diagnosis.security = qlumSecurityWords(m_setting.endpoint);
    m_diagnosis.user = userWords();
    m_diagnosis.begun = QDateTime::currentDateTime();
    QlumReachJob::Question question;
    question.wanted = m_setting.endpoint;
    question.ignoredHost = m_setting.ignoredHost;
    question.timeout = QlumSettings::connectTimeout.value();
    question.observer = observer();
    qlumFillPkiFolders(question.security);
    m_pool.add({tr("Diagnosing the connection to %1").arg(m_setting.displayName), m_serverId},
               std::make_unique<QlumReachJob>(
                   std::move(question), [this](const QlumRung& rung) { changed(rung); },
                   [this](const QlumReached& reached) { takeReached(reached); }),
               [this](QlumWorkEnd work) {
                   if (work != QlumWorkEnd::Done)
                       end();
               });
}

// Of the call, or session, that is made next.
std::shared_ptr<UaClientSdk::ServiceObserver> QlumDoctor::observer() const
{
    return QlumServiceRecorder::ofApplication()->observerOf(
        m_serverId, [name = m_setting.displayName] { return name; });
}

void QlumDoctor::cancel()
{
    if (!m_isRunning)
        return;
    leaveLookUp();
    m_pool.cancelAll();
    if (m_worker.isRunning())
        return m_worker.cancel(); // takeEntry follows
    end();
}

void QlumDoctor::changed(const QlumRung& rung)
{
    m_diagnosis.rungs[rung.step] = rung;
    emit rungChanged(rung.step);
}

void QlumDoctor::end()
{
    m_isRunning = m_isEntering = false;
    for (QlumRung& rung : m_diagnosis.rungs) {
        if (rung.state != QlumRung::Running)
            continue;
        rung.state = QlumRung::Waiting;
        rung.finding = tr("Cancelled.");
    }
    m_security = UaClientSdk::SessionSecurityInfo(); // with what is secret in it
    qlumKeepDiagnosis(m_diagnosis);
    m_log.info(tr("Connection diagnosis: %1").arg(m_diagnosis.summary()));
    emit finished();
}

void QlumDoctor::takeReached(const QlumReached& reached)
{
    m_diagnosis.endpoints = reached.endpoints;
    m_diagnosis.chosen = reached.chosen;
    m_diagnosis.isChosen = reached.isChosen;
    m_diagnosis.unknownHost = reached.unknownHost;
    m_diagnosis.clockOffset = reached.clockOffset;
    m_diagnosis.tlsCertificate = reached.tlsCertificate;
    m_diagnosis.tlsStatus = reached.tlsStatus;
    if (!reached.isChosen || m_diagnosis.failed())
        return end();
    checkServerCertificate();
}

void QlumDoctor::checkServerCertificate()
{
    QlumEndpoint wanted = m_setting.endpoint;
    wanted.securityPolicyUri = m_diagnosis.chosen.securityPolicyUri;
    m_security = UaClientSdk::SessionSecurityInfo();
    qlumFillConnectSecurity(m_security, wanted, m_diagnosis.chosen, m_diagnosis.endpoints);
    m_security.basic128Rsa15Accepted = true; // nothing secret is read back, and a connect asks about it
    const auto begun = std::chrono::steady_clock::now();
    QlumRung rung = rungOf(QlumRung::ServerCertificate, QlumRung::Skipped);
    QlumDiscoverySetting setting = m_setting;
    setting.userTokenType = m_user ? m_user->tokenType : m_setting.userTokenType;
    if (m_security.serverCertificate.isEmpty()) {
        rung.finding = tr("The server shows no certificate.");
    } else if (!qlumNeedsServerCertificate(m_security, setting, m_diagnosis.chosen)) {
        rung.finding = tr("The connection is not secured, so nothing depends on the certificate.");
        m_security.serverCertificate.clear(); // the session takes one that it is given as judged
    } else {
        rung = judgeChain();
        rung.milliseconds = millisecondsBetween(begun, std::chrono::steady_clock::now());
    }
    if (m_security.isSecured() && rung.state == QlumRung::Skipped) {
        rung.state = QlumRung::Failed;
        rung.side = QlumRung::Server;
        rung.status = OpcUa_BadCertificateInvalid;
        rung.advice = tr("A secured connection needs one. Choose another endpoint, or have the server's "
                         "administrator look at it.");
        rung.fix = QlumRung::ChooseEndpoint;
    }
    changed(rung);
    if (rung.state == QlumRung::Failed)
        return end();
    lookUpPassword();
}

QlumRung QlumDoctor::judgeChain()
{
    QlumRung rung = rungOf(QlumRung::ServerCertificate, QlumRung::Passed);
    QlumCertificateChainModel chain(m_setting.endpoint.url, m_diagnosis.chosen.applicationUri,
                                    m_security.serverCertificate, &m_security);
    chain.update();
    if (chain.validationError() == QlumCertificateError::Error) {
        qlumExplainServerCertificate(rung, chain, m_diagnosis);
        m_isHostJudged = chain.isFound(OpcUa_BadCertificateHostNameInvalid);
        if (m_accepted == m_security.serverCertificate) {
            rung.state = QlumRung::Warned;
            rung.side = QlumRung::Nobody;
            rung.advice = tr("It was accepted for this diagnosis. A connect asks about it.");
        }
    } else {
        rung.finding = tr("This computer trusts the server's certificate.");
    }
    const QByteArray now = qlumFirstCertificate(m_diagnosis.chosen.serverCertificate);
    if (!m_setting.trustedCertificate.isEmpty() && m_setting.trustedCertificate != now &&
        rung.state != QlumRung::Failed) {
        rung.state = QlumRung::Warned;
        rung.finding = tr("The server's certificate is not the one that was trusted for it before.");
        rung.advice = tr("A connect asks about it. Ask the server's administrator whether it was replaced.");
    }
    rung.evidence = qlumCertificateWords(m_security.serverCertificate) + chain.findings();
    return rung;
}

// ---- into the server

void QlumDoctor::lookUpPassword()
{
    QlumPasswordKeeper* keeper = QlumPasswordKeeper::instance();
    const bool isWanted = keeper && !m_user && m_setting.userTokenType == QlumDiscoverySetting::UserName &&
                          m_setting.storePassword && m_setting.password.isEmpty();
    if (!isWanted)
        return enter();
    const QlumKeyringKey key = qlumPasswordKey(m_setting, m_diagnosis.chosen.applicationUri);
    m_lookUp = keeper->find(
        key, [this, kept = QPointer<QlumDoctor>(this)](const QlumSecretText& password, const QString&) {
            if (!kept || std::exchange(m_lookUp, 0) == 0)
                return;
            m_setting.password = password;
            enter();
        });
}

void QlumDoctor::leaveLookUp()
{
    const QlumPasswordKeeper::Ticket ticket = std::exchange(m_lookUp, 0);
    if (QlumPasswordKeeper* keeper = QlumPasswordKeeper::instance(); keeper && ticket != 0)
        keeper->giveUp(ticket);
}

void QlumDoctor::enter()
{
    m_logIn = identify();
    QlumRung own = rungOf(QlumRung::OwnCertificate, QlumRung::Running);
    if (m_security.isSecured() && m_security.clientCertificate.isEmpty()) {
        own.state = QlumRung::Failed;
        own.side = QlumRung::ThisComputer;
        own.finding = tr("This program has no certificate of its own.");
        own.advice = tr("Create one in the certificate manager.");
        changed(own);
        return end();
    }
    changed(own);
    UaClientSdk::SessionConnectInfo info = qlumConnectInfo(m_serverId, m_setting.sessionName);
    info.automaticReconnect = false;
    info.typeDictionaryMode = UaClient::Manual;
    m_watch = std::make_shared<QlumEntryWatch>(
        QlumEntryWatch::Rules{m_setting.endpoint.url, m_logIn == LogIn::Possible,
                              m_isHostJudged && m_accepted == m_security.serverCertificate});
    m_session.setServiceGuard(m_watch);
    m_session.setServiceObserver(observer());
    m_isEntering = true;
    m_worker.run(
        [this, info, security = m_security, watch = m_watch, url = toUaString(m_setting.endpoint.url)] {
            return m_session.connect(url, info, security, watch.get());
        });
}

QlumDoctor::LogIn QlumDoctor::identify()
{
    const int tokenType = m_user ? m_user->tokenType : m_setting.userTokenType;
    if (tokenType == QlumDiscoverySetting::Certificate) {
        const QlumUserChoice stored{tokenType, {}, {}, m_setting.certificateFile, m_setting.privateKeyFile};
        return qlumSetUserCertificate(m_security, m_user.value_or(stored)).isEmpty() ? LogIn::Possible
                                                                                     : LogIn::NoFile;
    }
    if (tokenType != QlumDiscoverySetting::UserName) {
        m_security.setAnonymousUserIdentity();
        return LogIn::Possible;
    }
    const QlumSecretText& password = m_user ? m_user->password : m_setting.password;
    const bool isUnprotected = qlumSendsUnprotectedPassword(m_diagnosis.chosen);
    if (!m_user && password.isEmpty())
        return LogIn::NoPassword;
    if (!m_user && isUnprotected)
        return LogIn::Unprotected; // a connect asks first
    m_security.setUserPasswordUserIdentity(toUaString(m_user ? m_user->userName : m_setting.userName),
                                           qlumToSecretBytes(password));
    m_security.plainPasswordAccepted = isUnprotected; // the question has said so
    return LogIn::Possible;
}

void QlumDoctor::takeEntry(const UaStatus& status)
{
    const bool isCancelled = m_worker.isCancelled() || !m_isRunning;
    if (std::exchange(m_isEntering, false) && !isCancelled) {
        const QlumEntry entry = m_watch->entry();
        takeOwnCertificate(entry, status);
        if (entry.create.begun)
            takeSession(entry, status);
        if (m_diagnosis.rungs.at(QlumRung::Session).state == QlumRung::Passed)
            takeUser(entry, status);
    }
    if (m_session.isConnected())
        return m_worker.run([this] { return m_session.disconnect(UaClientSdk::ServiceSettings(), true); });
    end();
}

void QlumDoctor::takeOwnCertificate(const QlumEntry& entry, const UaStatus& status)
{
    QlumRung rung = rungOf(QlumRung::OwnCertificate, QlumRung::Passed);
    rung.milliseconds =
        millisecondsBetween(entry.begun, entry.create.begun.value_or(std::chrono::steady_clock::now()));
    if (m_security.isSecured())
        rung.evidence = qlumCertificateWords(m_security.clientCertificate);
    if (!entry.create.begun)
        qlumExplainOwnCertificate(rung, entry.failedStep ? entry.error.statusCode() : status.statusCode(),
                                  m_diagnosis);
    else if (m_security.isSecured())
        rung.finding = tr("The server has opened a secured channel with our certificate.");
    else
        rung.finding = tr("The connection is not secured; the server asks for no certificate.");
    changed(rung);
}

void QlumDoctor::takeSession(const QlumEntry& entry, const UaStatus& status)
{
    QlumRung rung = rungOf(QlumRung::Session, QlumRung::Passed);
    const bool isStopped = entry.failedStep && *entry.failedStep != UaClient::ActivateSession;
    const auto ended = entry.create.ended.value_or(std::chrono::steady_clock::now());
    rung.milliseconds = millisecondsBetween(*entry.create.begun, ended);
    if (isStopped || !entry.create.ended || entry.create.status.isBad()) {
        const UaStatus error = isStopped ? entry.error : status;
        qlumExplainSession(rung, error.statusCode(), entry.isOurs);
        const QString details = qlumSingleLine(toQString(error.diagnosticText()));
        if (!details.isEmpty())
            rung.evidence << details;
    } else {
        rung.finding = tr("The server has made a session.");
        rung.evidence << tr("Time-out of the session: %1")
                             .arg(qlumDurationWords(static_cast<qint64>(m_session.revisedSessionTimeout())));
    }
    changed(rung);
}

void QlumDoctor::takeUser(const QlumEntry& entry, const UaStatus& status)
{
    QlumRung rung = rungOf(QlumRung::User, QlumRung::Passed);
    if (entry.activate.begun)
        rung.milliseconds = millisecondsBetween(
            *entry.activate.begun, entry.activate.ended.value_or(std::chrono::steady_clock::now()));
    if (m_logIn != LogIn::Possible) {
        rung.state = QlumRung::Skipped;
        rung.fix = QlumRung::ChooseUser;
        rung.finding = tr("No password is known here, so nobody was logged in.");
        rung.advice = tr("Enter it to try this step, too.");
        if (m_logIn == LogIn::Unprotected)
            rung.finding = tr("The password could be read on its way, and was not sent.");
        if (m_logIn == LogIn::NoFile) {
            rung.state = QlumRung::Failed;
            rung.side = QlumRung::ThisComputer;
            rung.finding = tr("The user's certificate or its private key could not be read.");
            rung.advice = tr("Check the files of the identity in the properties of the server.");
        }
    } else if (status.isBad()) {
        const UaStatus error = entry.failedStep ? entry.error : status;
        qlumExplainUser(rung, error.statusCode(), entry.isOurs || !entry.activate.begun, m_diagnosis);
    } else {
        rung.finding = tr("The server lets the user in: %1").arg(userWords());
        if (m_user)
            rung.advice =
                tr("He was tried here only. Enter him in the properties of the server to keep him.");
    }
    changed(rung);
}

// ---- fixes

void QlumDoctor::trustServer()
{
    if (m_isRunning)
        return;
    if (!m_diagnosis.tlsCertificate.isEmpty())
        return m_prompts->askTlsTrust(m_setting.displayName, m_setting.endpoint.url,
                                      m_diagnosis.tlsCertificate, UaStatusCode(m_diagnosis.tlsStatus),
                                      [this](bool isTrusted) {
                                          if (isTrusted)
                                              start();
                                      });
    UaClientSdk::SessionSecurityInfo security;
    QlumEndpoint wanted = m_setting.endpoint;
    wanted.securityPolicyUri = m_diagnosis.chosen.securityPolicyUri;
    qlumFillConnectSecurity(security, wanted, m_diagnosis.chosen, m_diagnosis.endpoints);
    const UaByteString shown = security.serverCertificate;
    const QString& name = m_diagnosis.chosen.applicationName;
    m_prompts->askCertificate({name.isEmpty() ? m_setting.displayName : name,
                               m_diagnosis.chosen.applicationUri, m_setting.endpoint.url, security},
                              [this, shown](const QlumCertificateVerdict& verdict) {
                                  if (!verdict.isAccepted)
                                      return;
                                  m_accepted = verdict.isForOnce ? shown : UaByteString();
                                  start();
                              });
}

QlumPasswordQuestion QlumDoctor::passwordQuestion() const
{
    QlumPasswordQuestion question;
    question.server = m_setting.displayName;
    question.userName = m_setting.userName;
    question.host = QUrl(m_setting.endpoint.url).host();
    if (qlumSendsClearPassword(m_diagnosis.chosen))
        question.danger = QlumPasswordDanger::Anyone;
    else if (qlumSendsUnprotectedPassword(m_diagnosis.chosen))
        question.danger = QlumPasswordDanger::FalseServer;
    return question;
}

void QlumDoctor::chooseUser()
{
    if (m_isRunning)
        return;
    const QlumUserChoice proposal{
        m_setting.userTokenType, m_setting.userName, {}, m_setting.certificateFile, m_setting.privateKeyFile};
    m_prompts->askUser(passwordQuestion(), m_user.value_or(proposal),
                       [this](const std::optional<QlumUserChoice>& choice) {
                           if (!choice)
                               return;
                           m_user = choice;
                           start();
                       });
}

void QlumDoctor::changeSetting()
{
    emit settingChanged(m_setting);
    start();
}

void QlumDoctor::keepDialledHost()
{
    if (m_isRunning || m_diagnosis.unknownHost.isEmpty())
        return;
    m_setting.ignoredHost = m_diagnosis.unknownHost;
    changeSetting();
}

void QlumDoctor::useEndpoint(const QlumEndpoint& endpoint)
{
    if (m_isRunning)
        return;
    const QlumDiscoverySetting before = m_setting;
    m_setting.endpoint.securityMode = endpoint.securityMode;
    m_setting.endpoint.securityPolicyUri = endpoint.securityPolicyUri;
    m_setting.endpoint.userTokens = endpoint.userTokens;
    m_setting.forgetWhatBelongsTo(before);
    m_user.reset(); // a password that was entered was meant for the endpoint before
    changeSetting();
}

QString QlumDoctor::userWords() const
{
    switch (m_user ? m_user->tokenType : m_setting.userTokenType) {
    case QlumDiscoverySetting::UserName:
        return tr("user name '%1'").arg(qlumCutText(m_user ? m_user->userName : m_setting.userName));
    case QlumDiscoverySetting::Certificate:
        return tr("certificate '%1'")
            .arg(qlumCutText(m_user ? m_user->certificateFile : m_setting.certificateFile));
    default:
        return tr("anonymous");
    }
}
