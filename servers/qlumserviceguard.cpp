#include <servers/qlumserviceguard.h>

#include <app/api/qlumlog.h>
#include <app/api/qlumservicerecorder.h>
#include <app/api/qlumstatuswords.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_types.h>
#include <servers/qlumjournalentries.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>

#include <QCoreApplication>
#include <QDateTime>

#include <utility>

namespace {
using UaClientSdk::ServiceCall;
using UaClientSdk::ServiceOutcome;

class SubscriptionWitness : public UaClientSdk::ServiceObserver
{
public:
    explicit SubscriptionWitness(std::shared_ptr<QlumGuardedServer> server) : m_server(std::move(server)) {}

    void serviceBegun(OpcUa_UInt64, const ServiceCall&) override {}
    void serviceEnded(OpcUa_UInt64, const ServiceOutcome& outcome) override
    {
        if (outcome.status.isNotBad() && outcome.response &&
            outcome.type->TypeId == OpcUaId_CreateSubscriptionResponse)
            m_server->ownSubscriptions().add(
                static_cast<const OpcUa_CreateSubscriptionResponse*>(outcome.response)->SubscriptionId);
    }

private:
    const std::shared_ptr<QlumGuardedServer> m_server;
};

// What a user who is logged in from now on is called.
class UserWitness : public UaClientSdk::ServiceObserver
{
public:
    UserWitness(std::shared_ptr<QlumSessionUser> session, QString user)
        : m_session(std::move(session)), m_user(std::move(user))
    {
    }

    void serviceBegun(OpcUa_UInt64, const ServiceCall&) override {}
    void serviceEnded(OpcUa_UInt64, const ServiceOutcome& outcome) override
    {
        if (outcome.status.isNotBad())
            m_session->set(m_user);
    }

private:
    const std::shared_ptr<QlumSessionUser> m_session;
    const QString m_user;
};

// Holds the entries until it is known what they have come to.
class JournalWitness : public UaClientSdk::ServiceObserver
{
public:
    JournalWitness(std::shared_ptr<QlumJournal> journal, std::vector<QlumJournalEntry> entries)
        : m_journal(std::move(journal)), m_entries(std::move(entries))
    {
    }

    void serviceBegun(OpcUa_UInt64, const ServiceCall&) override {}
    void serviceEnded(OpcUa_UInt64, const ServiceOutcome& outcome) override
    {
        qlumTakeOutcome(m_entries, outcome);
        m_journal->append(m_entries);
    }

private:
    const std::shared_ptr<QlumJournal> m_journal;
    std::vector<QlumJournalEntry> m_entries;
};
} // namespace

QString QlumGuardedServer::name() const
{
    const std::lock_guard lock(m_mutex);
    return m_name;
}

void QlumGuardedServer::setName(const QString& name)
{
    const std::lock_guard lock(m_mutex);
    m_name = name;
}

QString QlumSessionUser::get() const
{
    const std::lock_guard lock(m_mutex);
    return m_user;
}

void QlumSessionUser::set(const QString& user)
{
    const std::lock_guard lock(m_mutex);
    m_user = user;
}

QlumServiceGuard::QlumServiceGuard(std::shared_ptr<QlumGuardedServer> server,
                                   std::shared_ptr<QlumJournal> journal)
    : m_server(std::move(server)), m_journal(std::move(journal)), m_user(std::make_shared<QlumSessionUser>()),
      m_subscriptionWitness(std::make_shared<SubscriptionWitness>(m_server))
{
}

QlumServiceGuard::~QlumServiceGuard() = default;

UaStatus QlumServiceGuard::mayCall(const ServiceCall& call)
{
    const QlumServerRole role = m_server->role();
    if (qlumNeedOf(call, m_server->ownSubscriptions()) <= role)
        return UaStatus();
    UaStatus refusal = qlumRefusal(role);
    const QString text = qlumNotSentText(refusal);
    QlumLog(QCoreApplication::translate("QlumServiceGuard", "Server Node"), m_server->serverId())
        .write(
            QlumLogLevel::Warning,
            QCoreApplication::translate("QlumServiceGuard", "%1: %2.").arg(qlumServiceName(call.type), text));
    std::vector<QlumJournalEntry> entries = entriesOf(call);
    for (QlumJournalEntry& entry : entries)
        entry.status = text;
    m_journal->append(entries);
    return refusal;
}

std::shared_ptr<UaClientSdk::ServiceObserver> QlumServiceGuard::witness(const ServiceCall& call)
{
    switch (call.type.TypeId) {
    case OpcUaId_CreateSubscriptionRequest:
        return m_subscriptionWitness;
    case OpcUaId_ActivateSessionRequest:
        return std::make_shared<UserWitness>(
            m_user, qlumUserOf(*static_cast<const OpcUa_ActivateSessionRequest*>(call.request)));
    default:
        break;
    }
    if (qlumServiceRule(call.type) == QlumServiceRule::Look ||
        qlumNeedOf(call, m_server->ownSubscriptions()) == QlumServerRole::Look)
        return nullptr;
    return std::make_shared<JournalWitness>(m_journal, entriesOf(call));
}

std::vector<QlumJournalEntry> QlumServiceGuard::entriesOf(const ServiceCall& call) const
{
    std::vector<QlumJournalEntry> entries = qlumJournalEntries(call);
    const QDateTime now = QDateTime::currentDateTime();
    for (QlumJournalEntry& entry : entries) {
        entry.time = now;
        entry.server = m_server->name();
        entry.user = m_user->get();
    }
    return entries;
}

std::shared_ptr<const QlumSessionUser> qlumWatchSession(UaClientSdk::UaSession& session,
                                                        const std::shared_ptr<QlumGuardedServer>& server)
{
    auto guard = std::make_shared<QlumServiceGuard>(server);
    const std::shared_ptr<const QlumSessionUser> user = guard->user();
    session.setServiceGuard(std::move(guard));
    session.setServiceObserver(QlumServiceRecorder::ofApplication()->observerOf(
        server->serverId(), [server] { return server->name(); }));
    return user;
}

void qlumWatchDiscovery(UaClientSdk::UaDiscovery& discovery, const QString& name, unsigned int serverId)
{
    discovery.setServiceObservers([name, serverId] {
        return QlumServiceRecorder::ofApplication()->observerOf(
            serverId, [name] { return name; });
    });
}
