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
#include <uaclientsdk/subscription/subscriptionmanager.h>
#include <uaclientsdk/types/datatypedefinitions.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasessioncallback.h>

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
    UaStatus loadDefinitions();

    SessionContext context;
    DataTypeDefinitions definitions;
    SubscriptionManager subscriptions;

private:
    class ConnectGuard;

    void run() override;
    UaStatus connectGuarded(const UaString& url, const SessionConnectInfo& connectInfo,
                            const SessionSecurityInfo& securityInfo, UaSessionCallback* callback);
    UaStatus startWatching(bool good);
    void afterConnect() override;
    void afterReconnect() override;
    bool isPublishingLocked() const override { return subscriptions.isPublishingLocked(); }
    UaStatus publish() override { return subscriptions.doPublish(); }
    void prepareResumed() override { subscriptions.prepareResumed(); }
    void finishResumed() override { subscriptions.finishResumed(); }
    void prepareReplaced() override { subscriptions.prepareReplaced(); }
    void finishReplaced() override { subscriptions.finishReplaced(); }
    void takeOver(const UaString& url, const SessionConnectInfo& connectInfo,
                  const SessionSecurityInfo& securityInfo, UaSessionCallback* callback);
    UaStatus openSession();
    [[nodiscard]] bool userIsRefused() const;
    UaStatus checkServerCertificate(SessionSecurityInfo& security);
    void endThread();

    /// The steps of a disconnect. The first is false when nothing was connected.
    bool withdrawConnect();
    UaStatus endServerSession(const ServiceSettings& settings, bool deleteSubscriptions);
    void setDisconnected();
    [[nodiscard]] bool dictionaryModeIs(bool (*wanted)(UaClient::TypeDictionaryMode)) const;

    UaSession& m_session;
    ChannelConnector m_connector;
    SessionActivator m_activator;
    std::unique_ptr<ConnectionMonitor> m_monitor; ///< of the connection that run() serves
};

} // namespace UaClientSdk
