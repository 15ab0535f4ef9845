#include <uaclientsdk/subscription/subscriptionmanager.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/subscription/subscriptionservices.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace UaClientSdk {

// A service that adds a subscription is under way.
class SubscriptionManager::Creating
{
public:
    explicit Creating(PublishState& state) : m_state(state)
    {
        SessionLock lock(state.context.mutex);
        ++state.creating;
        epoch = state.context.connection.epoch();
    }
    ~Creating()
    {
        SessionLock lock(m_state.context.mutex);
        --m_state.creating;
        m_state.changed.notify_all();
    }
    Creating(const Creating&) = delete;
    Creating& operator=(const Creating&) = delete;

    ConnectionEpoch epoch;

private:
    PublishState& m_state;
};

class SubscriptionManager::Job : public CallbackJob
{
public:
    explicit Job(std::function<void()> work) : m_work(std::move(work)) {}
    void execute() override { m_work(); }

private:
    std::function<void()> m_work;
};

SubscriptionManager::SubscriptionManager(SessionContext& context)
    : m_context(context), m_state(context), m_dispatcher(m_state), m_recovery(m_state, m_dispatcher),
      m_orphans(m_state), m_engine(m_state, *this)
{
}

SubscriptionManager::~SubscriptionManager() = default;

// ---- services

UaStatus SubscriptionManager::createSubscription(ServiceSettings& settings, UaSubscriptionCallback& callback,
                                                 OpcUa_UInt32 clientSubscriptionHandle,
                                                 const SubscriptionSettings& wanted, bool publishingEnabled,
                                                 UaSubscription** subscription)
{
    const Creating creating(m_state);
    SubscriptionSettings revised = wanted;
    OpcUa_UInt32 id = 0;
    const UaStatus status = callCreateSubscription(m_context, settings, revised, publishingEnabled, id);
    if (status.isBad())
        return status;
    const auto inside =
        SubscriptionRef::adopt(new UaSubscriptionPrivate(m_context, callback, clientSubscriptionHandle, id));
    inside->settings = revised;
    inside->isNumberedFromOne = true;
    inside->publishingEnabled = publishingEnabled;
    *subscription = add(inside, creating.epoch);
    return *subscription ? status : UaStatus(OpcUa_BadConnectionClosed);
}

UaStatus SubscriptionManager::transferSubscription(
    ServiceSettings& settings, UaSubscriptionCallback& callback, OpcUa_UInt32 clientSubscriptionHandle,
    OpcUa_UInt32 subscriptionId, const SubscriptionSettings& known, bool publishingEnabled,
    bool sendInitialValues, UaUInt32Array& availableSequenceNumbers, UaSubscription** subscription)
{
    const Creating creating(m_state);
    const UaStatus status = callTransferSubscription(m_context, settings, subscriptionId, sendInitialValues,
                                                     availableSequenceNumbers);
    if (status.isBad())
        return status;
    const auto inside = SubscriptionRef::adopt(
        new UaSubscriptionPrivate(m_context, callback, clientSubscriptionHandle, subscriptionId));
    inside->settings = known;
    inside->publishingEnabled = publishingEnabled;
    *subscription = add(inside, creating.epoch);
    return *subscription ? status : UaStatus(OpcUa_BadConnectionClosed);
}

UaSubscription* SubscriptionManager::add(const SubscriptionRef& inside, const ConnectionEpoch& epoch)
{
    Owned owned{std::make_unique<UaSubscription>(inside), inside};
    UaSubscription* const face = owned.face.get();
    Refs replaced;
    {
        SetPointTrace trace(m_context);
        SessionLock lock(m_context.mutex);
        if (!m_context.connection.isSameSession(epoch))
            return nullptr;
        m_owned.push_back(std::move(owned));
        SubscriptionRef& entry = m_state.subscriptions[inside->id];
        if (entry)
            replaced.push_back(entry); // the server has used its number again
        entry = inside;
        m_state.former.forget(inside->id);
        m_state.calculateSetPointPublishCountLocked(false, trace);
        m_context.sessionThread.raiseLocked(lock);
    }
    tellEnded(std::move(replaced));
    return face;
}

SubscriptionManager::Owned SubscriptionManager::takeOwnedLocked(const UaSubscription* subscription)
{
    m_context.mutex.assertLocked();
    const auto found = std::find_if(m_owned.begin(), m_owned.end(), [subscription](const Owned& owned) {
        return owned.face.get() == subscription;
    });
    if (found == m_owned.end())
        return {};
    Owned owned = std::move(*found);
    m_owned.erase(found);
    return owned;
}

bool SubscriptionManager::owns(const UaSubscription* subscription) const
{
    SessionLock lock(m_context.mutex);
    return std::any_of(m_owned.begin(), m_owned.end(),
                       [subscription](const Owned& owned) { return owned.face.get() == subscription; });
}

UaStatus SubscriptionManager::deleteSubscription(ServiceSettings& settings, UaSubscription** subscription)
{
    Owned owned;
    bool onServer = false;
    {
        SetPointTrace trace(m_context);
        SessionLock lock(m_context.mutex);
        owned = takeOwnedLocked(*subscription);
        if (!owned.face)
            return UaStatus(OpcUa_BadInvalidArgument);
        onServer = owned.inside->valid;
        owned.inside->invalidateLocked();
        m_state.removeLocked(*owned.inside, trace);
    }
    *subscription = nullptr;
    const UaStatus status =
        onServer ? callDeleteSubscription(m_context, settings, owned.inside->id) : UaStatus();
    if (status.isBad() && status != OpcUa_BadSubscriptionIdInvalid) {
        SessionLock lock(m_context.mutex);
        m_state.former.forget(owned.inside->id); // the server may well have it still
    }
    owned.inside->waitForCallbacks();
    return status;
}

UaStatus SubscriptionManager::setPublishingMode(ServiceSettings& settings, bool publishingEnabled,
                                                const UaUInt32Array& subscriptionIds,
                                                UaStatusCodeArray& results,
                                                UaDiagnosticInfos& diagnosticInfos)
{
    const UaStatus status = callSetPublishingMode(m_context, settings, publishingEnabled, subscriptionIds,
                                                  results, diagnosticInfos);
    SessionLock lock(m_context.mutex);
    for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
        const auto found = m_state.subscriptions.find(subscriptionIds[i]);
        if (OpcUa_IsGood(results[i]) && found != m_state.subscriptions.end())
            found->second->publishingEnabled = publishingEnabled;
    }
    return status;
}

// ---- notifications

void SubscriptionManager::notificationReceived(OpcUa_PublishResponse& response)
{
    if (m_recovery.closeGap(response) && !m_dispatcher.dispatchPublish(response))
        m_orphans.found(response.SubscriptionId);
}

void SubscriptionManager::doSubscriptionStatusCheck()
{
    m_recovery.doSubscriptionStatusCheck();
}

void SubscriptionManager::tellEnded(Refs subscriptions)
{
    if (subscriptions.empty())
        return;
    // behind what was received before
    m_engine.queue(std::make_unique<Job>([this, ended = std::move(subscriptions)] {
        for (const SubscriptionRef& subscription : ended)
            m_dispatcher.endSubscription(*subscription, UaStatus(OpcUa_BadSubscriptionIdInvalid));
    }));
}

// ---- connection

void SubscriptionManager::prepareResumed()
{
    SetPointTrace trace(m_context);
    SessionLock lock(m_context.mutex);
    m_state.startLinkLocked();
    m_state.republishing = !m_state.subscriptions.empty();
    m_state.calculateSetPointPublishCountLocked(false, trace);
}

void SubscriptionManager::finishResumed()
{
    ConnectionEpoch epoch;
    {
        SessionLock lock(m_context.mutex);
        if (!m_state.republishing)
            return;
        epoch = m_context.connection.epoch();
    }
    m_engine.queue(std::make_unique<Job>([this, epoch] { m_recovery.doRepublishAfterReconnect(epoch); }));
}

void SubscriptionManager::prepareReplaced()
{
    SessionLock lock(m_context.mutex);
    m_state.startLinkLocked();
    for (auto& [id, subscription] : m_state.removeAllLocked()) {
        subscription->valid = false;
        m_dropped.push_back(std::move(subscription));
    }
}

void SubscriptionManager::finishReplaced()
{
    tellEnded(std::exchange(m_dropped, {}));
}

void SubscriptionManager::waitForAnswers(std::chrono::milliseconds limit)
{
    m_engine.waitForAnswers(limit);
}

void SubscriptionManager::waitForCallbacks(std::chrono::milliseconds limit)
{
    m_engine.waitIdle(limit);
}

UaStatus SubscriptionManager::doPublish()
{
    bool force = false;
    {
        SessionLock lock(m_context.mutex);
        force = std::exchange(m_state.publishAtOnce, false);
    }
    return m_engine.doPublish(force);
}

void SubscriptionManager::clear()
{
    SessionLock lock(m_context.mutex);
    m_state.startLinkLocked();
    static_cast<void>(m_state.removeAllLocked());
    m_dropped.clear();
    for (const Owned& owned : m_owned) // also those that have ended and were not told yet
        owned.inside->invalidateLocked();
}

} // namespace UaClientSdk
