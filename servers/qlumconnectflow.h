#pragma once
#include <app/api/qlumlog.h>
#include <app/api/qlumtoolservices.h>
#include <servers/passwords/qlumkeyring.h>
#include <servers/passwords/qlumpasswordkeeper.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumconnectworker.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointfetcher.h>
#include <servers/qlumtlstrap.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QByteArray>
#include <QMetaObject>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

/// The steps of a connect, from the settings of a server to its session, and those of a change of the user.
/// Nothing here blocks: what a server must answer is waited for in the background, what the user must answer
/// comes from the prompts, and each step is an event of its own. A signal is the last thing that a step does,
/// so whoever hears one may delete the flow. GUI thread, where not said otherwise.
class QlumConnectFlow : public QObject
{
    Q_OBJECT
public:
    enum class Step {
        Idle,
        Endpoints,   ///< the server is asked for them
        Endpoint,    ///< one is chosen
        Host,        ///< it names a host that can be found, or the dialled one is kept to
        Policy,      ///< is it safe enough
        User,        ///< who is to log in
        Certificate, ///< the server's is judged
        Session,     ///< it is connected
        UserChange,  ///< of a session that stands; cannot be cancelled
        Ending       ///< after cancel()
    };
    Q_ENUM(Step)
    enum class Result {
        Connected,
        GivenUp,  ///< by the user, or before the session had its turn
        Refused,  ///< the session could not be connected
        Unchanged ///< a change of the user has ended, in whichever way; the connection is what it was
    };
    Q_ENUM(Result)

    /// The session calls back to the callback. All outlive the flow.
    QlumConnectFlow(const QlumLog& log, UaClientSdk::UaSession& session,
                    UaClientSdk::UaSessionCallback& callback, QlumConnectPrompts& prompts,
                    QObject* parent = nullptr);
    ~QlumConnectFlow() override;

    /// Begins a connect; the flow must be idle. The identity, unless it is null, stands before that of the
    /// setting. A setting without a policy takes the best that the server offers for the mode.
    void start(const QlumDiscoverySetting& setting, const UaClientSdk::SessionConnectInfo& info,
               const QlumIdentity& identity = nullptr);
    /// Begins a change of the user of the session; the flow must be idle.
    void startUserChange(const QlumDiscoverySetting& setting);
    /// Ends a connect in any step, at once or within a second; finished() tells when.
    void cancel();
    /// Ends whatever is under way and waits for the session, about a second; nothing is signalled.
    void stop();

    [[nodiscard]] Step step() const { return m_step; }
    [[nodiscard]] bool isIdle() const { return m_step == Step::Idle; }
    /// Where the connect goes to.
    [[nodiscard]] QString url() const { return m_setting.endpoint.url; }
    /// What the latest connect has asked for, with the policy that it has found.
    [[nodiscard]] const QlumEndpoint& endpoint() const { return m_setting.endpoint; }
    /// What the latest connect or change of the user has come to; BadRequestCancelledByClient when it was
    /// given up.
    [[nodiscard]] UaStatusCode outcome() const { return m_outcome; }
    /// The status with which the server has ended the latest connect; good when it has not.
    [[nodiscard]] UaStatusCode refusal() const { return m_refusal; }
    /// Why it has failed, for the user; nothing when it has not, or when it was he who ended it.
    [[nodiscard]] const std::optional<QlumConnectFailure>& failure() const { return m_failure; }
    /// What the user has entered this time for the setting; nothing when he was not asked.
    [[nodiscard]] const std::optional<QlumCredentials>& entered() const { return m_entered; }

    /// Whose password the latest connect has asked for or found, where it is kept for longer.
    [[nodiscard]] const QlumKeyringKey& passwordKey() const { return m_passwordKey; }
    /// Whether it was there already.
    [[nodiscard]] bool isPasswordFound() const { return m_isPasswordFound; }

    /// The server's certificate (DER) that the latest connect uses; empty when nobody has judged it.
    [[nodiscard]] const QByteArray& usedCertificate() const { return m_usedCertificate; }
    /// Whether it is trusted, and not only for once; and whether the user was asked about it.
    [[nodiscard]] bool isCertificateTrusted() const { return m_isCertificateTrusted; }
    [[nodiscard]] bool isCertificateDecided() const { return m_isCertificateDecided; }

    /// The host that the settings are to ignore from now on; empty for none.
    [[nodiscard]] QString newlyIgnoredHost() const { return m_newlyIgnoredHost; }
    /// Host and port that the latest connect has dialled where the server names others; empty when it names
    /// them.
    [[nodiscard]] QString dialledHost() const { return m_dialledHost; }

    /// Whether the caller is the connect under way, and not for example a reconnect. Any thread.
    [[nodiscard]] bool isConnectThread() const { return m_worker.isOwnThread(); }
    /// What the connect under way came upon; on its thread, where an error that the user may override waits
    /// for his answer. True goes on.
    [[nodiscard]] bool connectError(UaClientSdk::UaClient::ConnectServiceType step, const UaStatus& error,
                                    bool clientSideError);
    /// A TLS certificate that nobody trusts. False when it is not the connect under way that has failed with
    /// it; that one asks the user then, and tries again when he trusts it. Any thread; does not wait.
    [[nodiscard]] bool takeTlsFailure(const QlumTlsFailure& failure) { return m_tlsTrap.take(failure); }

signals:
    /// A step begins, begins to wait for the user, or goes on after his answer.
    void stepChanged(QlumConnectFlow::Step step, bool isAsking);
    /// The user is asked about a TLS certificate (DER) that nobody trusts.
    void untrustedCertificate(unsigned int status, const QByteArray& certificate);
    /// The flow is idle again.
    void finished(QlumConnectFlow::Result result);

private:
    struct Attempt ///< what a connect has found out so far
    {
        unsigned int discovery = 0; ///< status
        QVector<QlumEndpoint> endpoints;
        QlumEndpoint endpoint; ///< the chosen one, or the stored one when the user insists
        UaClientSdk::SessionSecurityInfo security;
        bool isHostJudged = false;     ///< the user knows that the certificate is of another host
        bool isChangeAccepted = false; ///< of the server's certificate
    };

    void begin();
    void allowOnlyFor(const QlumDiscoverySetting& setting);
    void enter(Step step);
    void run();
    void finish(Result result);
    void giveUp();
    void giveUpByUser();
    void fail(const QlumConnectFailure& failure);
    template <typename Work>
    void post(Work work);
    template <typename... Arguments>
    auto answer(void (QlumConnectFlow::*taken)(Arguments...));
    void asking();

    void takeEndpoints(unsigned int status, const QVector<QlumEndpoint>& endpoints);
    [[nodiscard]] bool isSetByHand() const;
    void takeDiscoveryTrust(bool isTrusted);
    [[nodiscard]] bool choosePolicy();
    void chooseEndpoint();
    void takeUnsupportedPolicy(bool isIgnored);
    void takeFirstCertificate();
    void checkHost();
    void takeHost(bool isFound);
    void takeDialledHost(bool isKept);
    void checkPolicy();
    void takeWeakPolicy(bool isAllowed);
    void identifyUser();
    void identify(const QString& told);
    void takeUser(const std::optional<QlumUserChoice>& choice);
    void identifyByName();
    [[nodiscard]] bool lookUpPassword();
    void takeLookedUp(const QlumSecretText& password, const QString& problem);
    void leaveLookUp();
    [[nodiscard]] bool isStoredPasswordUsed() const;
    [[nodiscard]] QlumPasswordQuestion passwordQuestion() const;
    void takeCredentials(const std::optional<QlumCredentials>& credentials);
    void identifyByCertificate();
    [[nodiscard]] bool loadUserCertificate();
    void userIsKnown();
    void judgeCertificate();
    void judgeChain();
    void takeChange(bool isAccepted);
    void takeVerdict(const QlumCertificateVerdict& verdict);
    void connectSession();
    void changeUser();
    void takeResult(const UaStatus& status);
    void takeConnectResult(const UaStatus& status);
    [[nodiscard]] bool isTooLate() const;
    void takeAnew(bool isWanted);
    [[nodiscard]] UaStatus openSession(const UaClientSdk::SessionSecurityInfo& security);
    [[nodiscard]] bool isTrustedNow(const QlumTlsFailure& failure);
    void askAboutTls(const QlumTlsFailure& failure, QlumConnectPrompts::Decided decided);
    [[nodiscard]] bool askOnWorker(const std::function<void(QlumConnectPrompts::Decided)>& open);
    void openForWorker(const std::function<void(QlumConnectPrompts::Decided)>& open,
                       const std::shared_ptr<QlumConnectWorker::Question>& question);

    const QlumLog m_log;
    UaClientSdk::UaSession& m_session;
    UaClientSdk::UaSessionCallback& m_callback;
    QlumConnectPrompts& m_prompts;
    QlumDiscoverySetting m_setting;
    UaClientSdk::SessionConnectInfo m_info;
    QlumIdentity m_identity; ///< null: that of the setting
    Attempt m_attempt;
    Step m_step = Step::Idle;
    unsigned int m_turn = 0; ///< rises with each step; what belongs to an older one is dropped
    bool m_isAsking = false;
    bool m_changesUser = false;
    UaStatusCode m_refusal;
    UaStatusCode m_outcome;
    std::optional<QlumConnectError> m_error; ///< the latest that the user was asked about
    std::optional<QlumCredentials> m_entered;
    bool m_isLookingUp = false;
    QlumKeyringKey m_passwordKey;
    QlumPasswordKeeper::Ticket m_passwordLookUp = 0; ///< under way; 0: none
    bool m_isPasswordLookedUp = false;
    bool m_isPasswordFound = false;
    QString m_passwordProblem;
    QString m_newlyIgnoredHost;
    QString m_dialledHost;
    QByteArray m_usedCertificate;
    bool m_isCertificateTrusted = false;
    bool m_isCertificateDecided = false;
    QStringList m_allowedFor; ///< URL, mode, policy and user; the user's word holds for nothing else
    bool m_weakPolicyAllowed = false;
    bool m_clearPasswordAllowed = false; ///< for the stored password
    bool m_keepsEntered = false;         ///< what is entered is for the setting
    bool m_isDeclined = false;           ///< by the user, who knows why it fails
    std::optional<QlumConnectFailure> m_failure;
    QlumTlsTrap m_tlsTrap;
    QlumEndpointFetcher m_fetcher; ///< a cancelled question ends in the background
    QlumConnectWorker m_worker;    ///< last: joined first
};

template <typename Work>
void QlumConnectFlow::post(Work work)
{
    QMetaObject::invokeMethod(
        this,
        [this, turn = m_turn, work = std::move(work)] {
            if (turn == m_turn)
                work();
        },
        Qt::QueuedConnection);
}

/// Prompts may answer at once; what follows from an answer comes by the event loop all the same.
template <typename... Arguments>
auto QlumConnectFlow::answer(void (QlumConnectFlow::*taken)(Arguments...))
{
    return [this, taken, turn = m_turn](const std::decay_t<Arguments>&... values) {
        if (turn != m_turn)
            return;
        post([this, taken, values...] {
            m_isAsking = false;
            (this->*taken)(values...);
        });
    };
}
