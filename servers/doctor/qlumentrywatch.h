#pragma once
#include <opcua/opcua_platform.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicewatch.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QString>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>

/// What was seen of a session while it was being opened.
struct QlumEntry
{
    using Time = std::chrono::steady_clock::time_point;
    struct Call
    {
        std::optional<Time> begun;
        std::optional<Time> ended;
        UaStatus status;
    };

    Time begun;
    Call create;
    Call activate;
    std::optional<UaClientSdk::UaClient::ConnectServiceType> failedStep;
    UaStatus error;
    bool isOurs = false; ///< the error was found on this side
};

/// Watches a session that is opened for a diagnosis: when each step of it began and ended, and what stopped
/// it. Any thread.
class QlumEntryWatch : public UaClientSdk::UaSessionCallback,
                       public UaClientSdk::ServiceObserver,
                       public UaClientSdk::ServiceGuard,
                       public std::enable_shared_from_this<QlumEntryWatch>
{
public:
    struct Rules
    {
        QString url;
        bool mayLogIn = true;      ///< else the session ends where a user would be named
        bool isHostJudged = false; ///< the user knows that the certificate is of another host
    };

    explicit QlumEntryWatch(const Rules& rules);

    [[nodiscard]] QlumEntry entry() const;

    void connectionStatusChanged(OpcUa_UInt32, UaClientSdk::UaClient::ServerStatus) override {}
    bool connectError(OpcUa_UInt32 clientConnectionId, UaClientSdk::UaClient::ConnectServiceType step,
                      const UaStatus& error, bool clientSideError) override;
    bool sslCertificateValidationFailed(OpcUa_UInt32 clientConnectionId, const UaStatus& status,
                                        const UaByteString& certificate) override;
    UaStatus mayCall(const UaClientSdk::ServiceCall& call) override;
    /// Itself: the session's observer is another one.
    std::shared_ptr<UaClientSdk::ServiceObserver> witness(const UaClientSdk::ServiceCall&) override
    {
        return shared_from_this();
    }
    void serviceBegun(OpcUa_UInt64 number, const UaClientSdk::ServiceCall& call) override;
    void serviceEnded(OpcUa_UInt64 number, const UaClientSdk::ServiceOutcome& outcome) override;

private:
    const Rules m_rules;
    mutable std::mutex m_mutex; ///< guards what follows
    QlumEntry m_entry;
    OpcUa_UInt64 m_createNumber = 0;
    OpcUa_UInt64 m_activateNumber = 0;
};
