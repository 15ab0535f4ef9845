#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumlog.h>
#include <opcua/opcua_platform.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <QObject>
#include <QTimer>

#include <atomic>
#include <map>

namespace UaClientSdk {
class UaSession;
class UaSubscription;
} // namespace UaClientSdk

/// Hears from a server when its address space changes, by a subscription that is the server node's own. It is
/// made in the background, and made again whenever the server has lost it. GUI thread.
class QlumModelEvents : public QObject, private UaClientSdk::UaSubscriptionCallback
{
    Q_OBJECT
public:
    /// Between two signals for one node, milliseconds: servers tell of each reference by an event of its own.
    static constexpr int pause = 500;
    /// Nodes that may wait for their turn; of more than that nobody would look at the trees.
    static constexpr std::size_t maximumNodes = 1000;

    /// The session is borrowed, and disconnected before this goes.
    QlumModelEvents(unsigned int serverId, UaClientSdk::UaSession& session, QObject* parent = nullptr);
    ~QlumModelEvents() override;

    /// The session has a connection, a new one or one that was lost for a while.
    void connected();
    /// The server does not know the session that had the subscription.
    void sessionReplaced();
    /// The user has disconnected the session.
    void disconnected();
    /// The user may want it or not.
    void applySetting();

signals:
    /// A node has changed; the verbs of all changes that were told since the last signal.
    void modelChanged(const UaNodeId& node, OpcUa_Byte verbs);

private:
    void subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status) override;
    void dataChange(OpcUa_UInt32, UaMonitoredItemNotifications&, UaDiagnosticInfos&) override {}
    void newEvents(OpcUa_UInt32 handle, UaEventFieldLists& events) override;

    void synchronise();
    void subscribe();
    void unsubscribe(bool isTold);
    [[nodiscard]] UaStatus createItem();
    void take(const std::map<UaNodeId, OpcUa_Byte>& changes);
    void flush();

    const QlumLog m_log;
    const unsigned int m_serverId;
    UaClientSdk::UaSession& m_session;
    bool m_isConnected = false;
    std::atomic<bool> m_isWanted{false};
    std::atomic<bool> m_isLost{false};
    UaClientSdk::UaSubscription* m_subscription = nullptr; ///< of the pool's thread
    std::map<UaNodeId, OpcUa_Byte> m_waiting;
    QTimer m_timer;
    QlumJobPool m_pool; ///< last: joined first
};
