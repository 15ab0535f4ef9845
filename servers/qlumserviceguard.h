// What may be sent to a server, by the role that the user has given it.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjournal.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumserviceneed.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicewatch.h>

#include <QString>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace UaClientSdk {
class UaDiscovery;
class UaSession;
} // namespace UaClientSdk

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

/// As whom a session is logged in. Any thread.
class QlumSessionUser
{
public:
    [[nodiscard]] QString get() const;
    void set(const QString& user);

private:
    mutable std::mutex m_mutex;
    QString m_user;
};

/// The guard of one session: what its server's role does not allow ends with qlumRefusal(), and the log says
/// so. What changes something goes into the journal, sent or not. Any thread.
class QlumServiceGuard final : public UaClientSdk::ServiceGuard
{
public:
    explicit QlumServiceGuard(std::shared_ptr<QlumGuardedServer> server,
                              std::shared_ptr<QlumJournal> journal = QlumJournal::ofApplication());
    ~QlumServiceGuard() override;

    /// As whom the session is logged in, now and later.
    [[nodiscard]] const std::shared_ptr<QlumSessionUser>& user() const { return m_user; }

    UaStatus mayCall(const UaClientSdk::ServiceCall& call) override;
    std::shared_ptr<UaClientSdk::ServiceObserver> witness(const UaClientSdk::ServiceCall& call) override;

private:
    [[nodiscard]] std::vector<QlumJournalEntry> entriesOf(const UaClientSdk::ServiceCall& call) const;

    const std::shared_ptr<QlumGuardedServer> m_server;
    const std::shared_ptr<QlumJournal> m_journal;
    const std::shared_ptr<QlumSessionUser> m_user;
    const std::shared_ptr<UaClientSdk::ServiceObserver> m_subscriptionWitness;
};

/// Gives a session with the server its guard, and an observer for whoever wants to see its calls. Tells who
/// the session's user is.
std::shared_ptr<const QlumSessionUser> qlumWatchSession(UaClientSdk::UaSession& session,
                                                        const std::shared_ptr<QlumGuardedServer>& server);
/// Has the calls of a discovery client, too, seen by whoever wants to see them, as those of a server of the
/// project or of one that is called so.
void qlumWatchDiscovery(UaClientSdk::UaDiscovery& discovery, const QString& name,
                        unsigned int serverId = qlumNoServer);
