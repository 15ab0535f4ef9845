#include <servers/qlumserviceguard.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumstatuswords.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_types.h>

#include <QCoreApplication>
#include <QLatin1String>

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

// "Write" of "WriteRequest".
QString serviceName(const OpcUa_EncodeableType& requestType)
{
    QString name = QLatin1String(requestType.TypeName);
    name.chop(static_cast<int>(sizeof "Request") - 1);
    return name;
}
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

QlumServiceGuard::QlumServiceGuard(std::shared_ptr<QlumGuardedServer> server)
    : m_server(std::move(server)), m_subscriptionWitness(std::make_shared<SubscriptionWitness>(m_server))
{
}

QlumServiceGuard::~QlumServiceGuard() = default;

UaStatus QlumServiceGuard::mayCall(const ServiceCall& call)
{
    const QlumServerRole role = m_server->role();
    if (qlumNeedOf(call, m_server->ownSubscriptions()) <= role)
        return UaStatus();
    UaStatus refusal = qlumRefusal(role);
    const QString text = QCoreApplication::translate("QlumServiceGuard", "%1: %2.");
    QlumLog(QCoreApplication::translate("QlumServiceGuard", "Server Node"), m_server->serverId())
        .write(QlumLogLevel::Warning, text.arg(serviceName(call.type), qlumNotSentText(refusal)));
    return refusal;
}

std::shared_ptr<UaClientSdk::ServiceObserver> QlumServiceGuard::witness(const ServiceCall& call)
{
    return call.type.TypeId == OpcUaId_CreateSubscriptionRequest ? m_subscriptionWitness : nullptr;
}
