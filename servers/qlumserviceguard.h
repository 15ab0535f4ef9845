// What may be sent to a server, by the role that the user has given it.
#pragma once
#include <app/api/qlumserverrole.h>
#include <app/api/qlumserviceneed.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicewatch.h>

#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

/// What the guards of all sessions with one server share. Any thread.
class QlumGuardedServer
{
public:
    QlumGuardedServer(unsigned int serverId, QlumServerRole role) : m_serverId(serverId), m_role(role) {}

    [[nodiscard]] unsigned int serverId() const { return m_serverId; }
    /// Changes hold for every call that begins afterwards.
    [[nodiscard]] QlumServerRole role() const { return m_role.load(std::memory_order_relaxed); }
    void setRole(QlumServerRole role) { m_role.store(role, std::memory_order_relaxed); }
    /// As the user sees it.
    [[nodiscard]] QString name() const;
    void setName(const QString& name);
    [[nodiscard]] QlumOwnSubscriptions& ownSubscriptions() { return m_ownSubscriptions; }

private:
    const unsigned int m_serverId;
    std::atomic<QlumServerRole> m_role;
    mutable std::mutex m_mutex;
    QString m_name;
    QlumOwnSubscriptions m_ownSubscriptions;
};

/// The guard of one session: what its server's role does not allow ends with qlumRefusal(), and the log says
/// so. It sees which subscriptions the session makes. Any thread.
class QlumServiceGuard final : public UaClientSdk::ServiceGuard
{
public:
    explicit QlumServiceGuard(std::shared_ptr<QlumGuardedServer> server);
    ~QlumServiceGuard() override;

    UaStatus mayCall(const UaClientSdk::ServiceCall& call) override;
    std::shared_ptr<UaClientSdk::ServiceObserver> witness(const UaClientSdk::ServiceCall& call) override;

private:
    const std::shared_ptr<QlumGuardedServer> m_server;
    const std::shared_ptr<UaClientSdk::ServiceObserver> m_subscriptionWitness;
};
