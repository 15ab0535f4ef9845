#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumlog.h>
#include <servers/doctor/qlumdiagnosis.h>
#include <servers/doctor/qlumentrywatch.h>
#include <servers/doctor/qlumreachjob.h>
#include <servers/passwords/qlumpasswordkeeper.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumconnectworker.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicewatch.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uasession.h>

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

/// Tries a connect to one server step by step, beside whatever connection there is, and says where it stops,
/// on whose side, and what helps. It asks nothing while it runs: where a connect would ask, the step says so
/// and offers a fix, and a fix that has worked begins anew. The session that it opens is closed at once. GUI
/// thread.
class QlumDoctor : public QObject
{
    Q_OBJECT
public:
    /// The prompts are those of the fixes.
    QlumDoctor(unsigned int serverId, const QlumDiscoverySetting& setting,
               std::unique_ptr<QlumConnectPrompts> prompts, QObject* parent = nullptr);
    /// Ends what runs, in about a second.
    ~QlumDoctor() override;

    /// Begins, or begins anew.
    void start();
    /// What was found until then stays.
    void cancel();
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    [[nodiscard]] const QlumDiagnosis& diagnosis() const { return m_diagnosis; }
    /// The latest as text.
    [[nodiscard]] QString report() const { return qlumDiagnosisReport(m_diagnosis); }
    [[nodiscard]] const QlumDiscoverySetting& setting() const { return m_setting; }

    // ---- fixes; only while nothing runs

    /// Asks about the certificate that has failed. One that is accepted for once counts for this doctor.
    void trustServer();
    /// Asks for another user, who counts for this doctor, and whose password is sent as the question says.
    void chooseUser();
    /// Keeps to the host that is dialled, from now on.
    void keepDialledHost();
    /// Asks for the security of that endpoint from now on.
    void useEndpoint(const QlumEndpoint& endpoint);

signals:
    /// A step has begun or ended.
    void rungChanged(int step);
    /// Nothing runs any more.
    void finished();
    /// A fix has changed the settings, which whoever owns them is to keep.
    void settingChanged(const QlumDiscoverySetting& setting);

private:
    enum class LogIn { Possible, NoPassword, Unprotected, NoFile };

    [[nodiscard]] std::shared_ptr<UaClientSdk::ServiceObserver> observer() const;
    void changed(const QlumRung& rung);
    void takeReached(const QlumReached& reached);
    void checkServerCertificate();
    [[nodiscard]] QlumRung judgeChain();
    void lookUpPassword();
    void leaveLookUp();
    void enter();
    [[nodiscard]] LogIn identify();
    void takeEntry(const UaStatus& status);
    void takeOwnCertificate(const QlumEntry& entry, const UaStatus& status);
    void takeSession(const QlumEntry& entry, const UaStatus& status);
    void takeUser(const QlumEntry& entry, const UaStatus& status);
    void end();
    void changeSetting();
    [[nodiscard]] QlumPasswordQuestion passwordQuestion() const;
    [[nodiscard]] QString userWords() const;

    const unsigned int m_serverId;
    const QlumLog m_log;
    QlumDiscoverySetting m_setting;
    const std::unique_ptr<QlumConnectPrompts> m_prompts;
    QlumDiagnosis m_diagnosis;
    std::optional<QlumUserChoice> m_user; ///< in the place of that of the settings
    UaByteString m_accepted;              ///< certificate, for once
    UaClientSdk::SessionSecurityInfo m_security;
    LogIn m_logIn = LogIn::Possible;
    bool m_isHostJudged = false;
    QlumPasswordKeeper::Ticket m_lookUp = 0; ///< under way; 0: none
    bool m_isRunning = false;
    bool m_isEntering = false; ///< the session is being opened, and not closed again
    std::shared_ptr<QlumEntryWatch> m_watch;
    UaClientSdk::UaSession m_session; ///< calls the watch back
    QlumJobPool m_pool;
    QlumConnectWorker m_worker; ///< last: joined first
};
