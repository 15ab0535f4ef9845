#include <uaclientsdk/subscription/subscriptionorphans.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/connection/linkfaults.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/pendingcall.h>
#include <uaclientsdk/services/servicenames.h>

#include <memory>
#include <utility>

namespace UaClientSdk {

namespace {

using Service = Services::DeleteSubscriptions;

constexpr ServiceNames orphanNames = namesOf<Service>("");

} // namespace

class SubscriptionOrphans::Call : public PendingCall
{
public:
    Call(SubscriptionOrphans& orphans, OpcUa_UInt32 id, Transaction&& transaction)
        : PendingCall(orphans.m_state.context), m_transaction(std::move(transaction)), m_orphans(orphans),
          m_id(id)
    {
    }

    void execute() override { m_orphans.answered(m_id, status()); }

private:
    Transaction m_transaction;
    SubscriptionOrphans& m_orphans;
    const OpcUa_UInt32 m_id;
};

void SubscriptionOrphans::found(OpcUa_UInt32 subscriptionId)
{
    FormerSubscriptions::Finding finding;
    bool mayRemove = false;
    {
        SessionLock lock(m_state.context.mutex);
        finding = m_state.former.find(subscriptionId);
        mayRemove = finding.isUnknown && m_state.creating == 0 && m_underWay < maxUnderWay;
        if (mayRemove)
            ++m_underWay;
        else if (finding.isUnknown)
            m_state.former.forget(subscriptionId); // another time
    }
    if (finding.isFirst) {
        UaTrace::tError("Error: UaSessionPrivate::publishCallback - Server sent invalid SubscriptionId %u",
                        subscriptionId);
    }
    if (mayRemove && !remove(subscriptionId))
        answered(subscriptionId, OpcUa_BadConnectionClosed);
}

bool SubscriptionOrphans::remove(OpcUa_UInt32 subscriptionId)
{
    SessionContext& context = m_state.context;
    GateRequest wanted;
    ServiceSettings settings;
    {
        SessionLock lock(context.mutex);
        wanted.epoch = context.connection.epoch();
        settings.callTimeout = context.connectInfo.internalServiceCallTimeout;
    }
    Transaction transaction;
    if (beginTransaction(context, orphanNames, 1, wanted, transaction).isBad())
        return false;
    BorrowingRequest<Service> request;
    request->NoOfSubscriptionIds = 1;
    request->SubscriptionIds = &subscriptionId;
    std::unique_ptr<PendingCall> call = std::make_unique<Call>(*this, subscriptionId, std::move(transaction));
    return PendingCall::send<Service>(call, wanted, settings, *request).isGood();
}

void SubscriptionOrphans::answered(OpcUa_UInt32 subscriptionId, OpcUa_StatusCode status)
{
    SessionLock lock(m_state.context.mutex);
    --m_underWay;
    if (concernsLink(status)) // what a server says is its last word
        m_state.former.forget(subscriptionId);
}

} // namespace UaClientSdk
