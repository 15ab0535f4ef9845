#pragma once
#include <app/api/qlumjob.h>
#include <opcua/opcua_platform.h>
#include <servers/doctor/qlumdiagnosis.h>
#include <servers/qlumendpoint.h>
#include <uabase/values/uabytestring.h>
#include <uaclientsdk/clientsecurityinfo.h>
#include <uaclientsdk/servicewatch.h>

#include <QString>
#include <QVector>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/// What a way to a server has brought.
struct QlumReached
{
    QVector<QlumEndpoint> endpoints;
    QlumEndpoint chosen;
    bool isChosen = false;
    QString unknownHost;
    std::optional<qint64> clockOffset; ///< ms
    UaByteString tlsCertificate;
    OpcUa_StatusCode tlsStatus = 0;
};

/// Goes to a server step by step, up to its endpoints, and chooses among these. Nothing that it sends is
/// secret. Each step is told when it begins and when it has ended; the first that fails is the last.
class QlumReachJob : public QlumJob
{
public:
    /// On the thread of the pool's owner.
    using Told = std::function<void(const QlumRung&)>;
    using Done = std::function<void(const QlumReached&)>;

    struct Question
    {
        QlumEndpoint wanted;
        QString ignoredHost;         ///< of an endpoint, that need not be found
        OpcUa_UInt32 timeout = 5000; ///< ms, of each step
        UaClientSdk::ClientSecurityInfo security;
        std::shared_ptr<UaClientSdk::ServiceObserver> observer; ///< of the one service; may be null
    };

    QlumReachJob(Question question, Told told, Done done);
    ~QlumReachJob() override;

    void run() override;

private:
    class Lines;
    using Climb = void (QlumReachJob::*)(QlumRung&);

    [[nodiscard]] bool climb(QlumRung::Step step, Climb function);
    void resolve(QlumRung& rung);
    void connect(QlumRung& rung);
    void greet(QlumRung& rung);
    void openChannel(QlumRung& rung);
    void askEndpoints(QlumRung& rung);
    void takeEndpoints(QlumRung& rung);
    void choose(QlumRung& rung);
    void checkHost(QlumRung& rung);
    void fail(QlumRung& rung, OpcUa_StatusCode status) const;
    [[nodiscard]] bool isHttps() const;
    [[nodiscard]] OpcUa_StatusCode judgeTls(OpcUa_StatusCode status, const OpcUa_ByteString& certificate);

    const Question m_question;
    const Told m_told;
    const Done m_done;
    const std::shared_ptr<Lines> m_lines;
    std::mutex m_tlsMutex; ///< for what is found out of TLS
    QlumReached m_reached;
};
