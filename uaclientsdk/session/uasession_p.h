// The inside of a session: its collaborators and its thread.
#pragma once

#include <uabase/system/uarefcounter.h>
#include <uabase/system/uathread.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/channelconnector.h>
#include <uaclientsdk/connection/connectionmonitor.h>
#include <uaclientsdk/connection/sessionactivator.h>
#include <uaclientsdk/connection/sessioncontext.h>
#include <uaclientsdk/session/dictionaryjob.h>
#include <uaclientsdk/session/operationlimitsreader.h>
#include <uaclientsdk/subscription/subscriptionmanager.h>
#include <uaclientsdk/types/datatypedefinitions.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasessioncallback.h>

#include <chrono>
#include <condition_variable>
#include <memory>

namespace UaClientSdk {

class UaSession;

class UaSessionPrivate : public UaRefCounter, public UaThread, private SessionHousekeeping
{
public:
    explicit UaSessionPrivate(UaSession& session);
    ~UaSessionPrivate() override;

    UaStatus connect(const UaString& url, const SessionConnectInfo& connectInfo,
                     const SessionSecurityInfo& securityInfo, UaSessionCallback* callback);
    UaStatus disconnect(const ServiceSettings& settings, bool deleteSubscriptions);
    UaStatus changeUser(ServiceSettings& settings, const UaUserIdentityToken* identity);
    UaStatus updateNamespaceTable();
    /// Loads the definitions when nothing is loaded and the mode lets a look-up do it.
    void loadDefinitionsOnFirstUse();
    [[nodiscard]] bool waitForDataTypes(std::chrono::milliseconds limit) const
    {
        return m_dictionaryJob.waitFor(limit);
    }
    UaStatus loadDefinitions();

    SessionContext context;
    DataTypeDefinitions definitions;
    SubscriptionManager subscriptions;

private:
    using Clock = std::chrono::steady_clock;
    class ConnectGuard;

    void run() override;
    [[nodiscard]] bool turn();
    UaStatus connectGuarded(const UaString& url, const SessionConnectInfo& connectInfo,
                            const SessionSecurityInfo& securityInfo, UaSessionCallback* callback);
    void takeOver(const UaString& url, const SessionConnectInfo& connectInfo,
                  const SessionSecurityInfo& securityInfo, UaSessionCallback* callback);
    UaStatus openSession();
    UaStatus startWatching(UaClient::ServerStatus status);
    void giveUpConnect();
    UaStatus checkServerCertificate(SessionSecurityInfo& security);

    void afterConnect() override;
    void afterReconnect() override;
    bool isPublishingLocked() const override { return subscriptions.isPublishingLocked(); }
    UaStatus publish() override { return subscriptions.doPublish(); }
    void prepareResumed() override { subscriptions.prepareResumed(); }
    void finishResumed() override { subscriptions.finishResumed(); }
    void prepareReplaced() override { subscriptions.prepareReplaced(); }
    void finishReplaced() override { subscriptions.finishReplaced(); }
    void loadInBackground();
    [[nodiscard]] UaClient::TypeDictionaryMode dictionaryMode() const;

    bool apply(ConnectionState::Event event);
    [[nodiscard]] bool isRequested() const;

    /// The steps of a disconnect (uasession_disconnect.cpp).
    void endConnection(const ServiceSettings& settings, bool deleteSubscriptions, bool healthy,
                       UaStatus& result);
    [[nodiscard]] bool waitForThreads(Clock::time_point until);
    void endThreads();
    [[nodiscard]] bool threadsEnd(std::chrono::milliseconds limit);
    UaStatus endServerSession(const ServiceSettings& settings, bool deleteSubscriptions,
                              Clock::time_point deadline);

    UaSession& m_session;
    ChannelConnector m_connector;
    SessionActivator m_activator;
    OperationLimitsReader m_limitsReader;
    DictionaryJob m_dictionaryJob;
    std::unique_ptr<ConnectionMonitor> m_monitor; ///< of the connection that run() serves
    bool m_inTransition = false;                  ///< a connect or a disconnect runs; guarded by the mutex
    std::condition_variable_any m_transitionEnded;
};

} // namespace UaClientSdk
