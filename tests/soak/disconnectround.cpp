#include <tests/soak/disconnectround.h>

#include <opcua/opcua.h>
#include <tests/soak/identity.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>

#include <cstdio>
#include <stop_token>
#include <thread>
#include <utility>

namespace soak {

namespace {

using namespace std::chrono_literals;
using namespace UaClientSdk;
using Clock = std::chrono::steady_clock;

constexpr OpcUa_UInt16 demoNs = 2;
constexpr OpcUa_UInt32 itemCount = 20;
constexpr OpcUa_UInt32 readCount = 50;
constexpr auto turn = 10ms;
constexpr auto strikesWithin = 2s; // a session tries again twice a second

std::chrono::milliseconds since(Clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - time);
}

// Checks come quickly, but what hangs may hang for the times that applications use: a disconnect that waits
// for it would show.
SessionConnectInfo connectInfo()
{
    SessionConnectInfo info;
    info.applicationUri = UaString("urn:localhost:Korvanda:Soak");
    info.sessionName = UaString("disconnects");
    info.clientConnectionId = Witness::connectionId;
    info.watchdogTime = 200;
    info.watchdogTimeout = 10000;
    info.connectTimeout = 10000;
    info.internalServiceCallTimeout = 10000;
    info.sessionTimeout = 30000;
    return info;
}

UaReadValueIds someNodes()
{
    UaReadValueIds nodes(readCount);
    OpcUa_UInt32 number = 100000;
    for (OpcUa_ReadValueId& node : nodes) {
        static_cast<void>(UaNodeId(number++, 4).copyTo(&node.NodeId));
        node.AttributeId = OpcUa_Attributes_Value;
    }
    return nodes;
}

// ---- plan

struct Plan
{
    Plan(const Kind& kind, std::mt19937_64& random);
    [[nodiscard]] std::string text() const;

    bool firstConnect; // the session is still trying its first connect when the fault strikes
    bool subscribing;
    bool beginning;
    bool calling;
    bool typed;
    bool changingUser;
    bool elsewhere; // another thread than the one that connected disconnects
    bool deleting;
    std::chrono::milliseconds untilFault;
    bool struckFirst; // the time until the disconnect counts from when the fault finds the session
    std::chrono::milliseconds untilPress;
};

Plan::Plan(const Kind& kind, std::mt19937_64& random)
{
    const auto oneIn = [&random](unsigned int count) { return random() % count == 0; };
    const bool connects = kind.hitsConnects();
    const bool first = oneIn(4);
    firstConnect = kind.onlyFirstConnect || first;
    subscribing = !oneIn(3);
    beginning = !oneIn(3);
    calling = oneIn(2);
    typed = oneIn(4);
    changingUser = oneIn(3);
    elsewhere = oneIn(2);
    deleting = oneIn(2);
    untilFault = std::chrono::milliseconds(random() % (firstConnect && !connects ? 700 : 150));
    struckFirst = connects && kind.isCounted() && !oneIn(4);
    untilPress = std::chrono::milliseconds(random() % (connects || firstConnect ? 1000 : 600));
}

std::string Plan::text() const
{
    std::string text = firstConnect ? "first connect" : "connected";
    const auto add = [&text](bool holds, const char* what) {
        if (holds)
            text += std::string(", ") + what;
    };
    add(subscribing && !firstConnect, "subscription");
    add(beginning, "calls begun");
    add(calling, "calls waited for");
    add(typed, "types");
    add(changingUser, "change of user");
    add(elsewhere, "from another thread");
    return text + ", fault after " + std::to_string(untilFault.count()) + " ms, pressed " +
           std::to_string(untilPress.count()) + (struckFirst ? " ms after it struck" : " ms later");
}

// ---- round

class Round
{
public:
    explicit Round(const RoundSettings& settings)
        : m_settings(settings), m_random(settings.seed), m_plan(*settings.kind, m_random),
          m_scene(UaSession::getPortFromUrl(UaString(settings.server->url().c_str())), *settings.server,
                  m_random),
          m_url(withPort(settings.server->url(), m_scene.relay.port()).c_str())
    {
        m_scene.secured = settings.security.isSecured();
        m_scene.firstConnect = m_plan.firstConnect;
    }

    Outcome run()
    {
        Outcome outcome;
        outcome.plan = m_plan.text();
        if (connect()) {
            startCallers();
            std::this_thread::sleep_for(m_plan.untilFault);
            strike();
            waitToPress();
            if (m_settings.kind->applyLate)
                m_settings.kind->applyLate(m_scene);
            outcome.took = disconnect();
        }
        outcome.struck = hasStruck();
        if (!m_scene.heal())
            m_witness->violation("the server did not come up again");
        else
            connectAgain();
        outcome.completions = m_witness->completed();
        outcome.notifications = m_witness->notified();
        outcome.witnesses = {m_witness, m_second};
        return outcome;
    }

private:
    bool connect();
    void subscribe();
    void startCallers();
    void strike();
    void waitToPress() const;
    [[nodiscard]] bool hasStruck() const;
    [[nodiscard]] std::chrono::milliseconds disconnect();
    void press();
    void checkDisconnected();
    void connectAgain();
    void beginReads();
    void readOnce();
    void changeUser();

    const RoundSettings& m_settings;
    std::mt19937_64 m_random;
    const Plan m_plan;
    Scene m_scene;
    const UaString m_url;
    const std::shared_ptr<Witness> m_witness = std::make_shared<Witness>();
    const std::shared_ptr<Witness> m_second = std::make_shared<Witness>();
    std::size_t m_before = 0; // faults that struck while the round was prepared
    UaSession m_session;
    UaSubscription* m_subscription = nullptr;
    std::vector<std::jthread> m_callers;
};

bool Round::connect()
{
    SessionConnectInfo info = connectInfo();
    info.retryInitialConnect = m_plan.firstConnect;
    if (m_plan.typed)
        info.typeDictionaryMode = UaClient::Reconnect;
    m_scene.relay.refuse(m_plan.firstConnect);
    const UaStatus status = m_session.connect(m_url, info, m_settings.security, m_witness.get());
    m_before = m_scene.relay.struck();
    if (status.isBad() || (status == OpcUa_GoodCompletesAsynchronously) != m_plan.firstConnect) {
        m_witness->violation(std::string("the connect ended as ") + status.toString().toUtf8());
        return status.isGood();
    }
    // faults of connects must be there before the session comes
    if (m_plan.firstConnect && m_settings.kind->hitsConnects())
        m_settings.kind->apply(m_scene);
    m_scene.relay.refuse(false);
    if (m_plan.subscribing && !m_plan.firstConnect)
        subscribe();
    return true;
}

void Round::subscribe()
{
    ServiceSettings settings;
    SubscriptionSettings wanted;
    wanted.publishingInterval = 50;
    wanted.maxKeepAliveCount = 4;
    wanted.lifetimeCount = 3000;
    UaStatus status = m_session.createSubscription(settings, m_witness.get(), Witness::subscriptionHandle,
                                                   wanted, true, &m_subscription);
    if (status.isGood()) {
        UaMonitoredItemCreateRequests items(itemCount);
        for (OpcUa_UInt32 n = 0; n < itemCount; ++n) {
            OpcUa_MonitoredItemCreateRequest& request = items[n];
            char id[16];
            std::snprintf(id, sizeof id, "Fast.%03u", n);
            static_cast<void>(UaNodeId(UaString(id), demoNs).copyTo(&request.ItemToMonitor.NodeId));
            request.ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
            request.MonitoringMode = OpcUa_MonitoringMode_Reporting;
            request.RequestedParameters.ClientHandle = n;
            request.RequestedParameters.SamplingInterval = 100;
            request.RequestedParameters.QueueSize = 1;
        }
        UaMonitoredItemCreateResults results;
        UaDiagnosticInfos diagnostics;
        status = m_subscription->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both, items, results,
                                                      diagnostics);
    }
    if (status.isBad())
        m_witness->violation(std::string("no subscription: ") + status.toString().toUtf8());
}

// ---- what is under way

void Round::startCallers()
{
    const auto repeat = [this](void (Round::*call)()) {
        m_callers.emplace_back([this, call](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                (this->*call)();
                std::this_thread::sleep_for(turn);
            }
        });
    };
    if (m_plan.beginning)
        repeat(&Round::beginReads);
    if (m_plan.calling)
        repeat(&Round::readOnce);
    if (m_plan.changingUser)
        repeat(&Round::changeUser);
}

void Round::beginReads()
{
    const bool over = m_witness->isOver();
    ServiceSettings settings;
    const OpcUa_UInt32 transaction = m_witness->begin();
    const UaStatus status =
        m_session.beginRead(settings, 0, OpcUa_TimestampsToReturn_Both, someNodes(), transaction);
    m_witness->begun(transaction, status);
    if (over && status.isGood())
        m_witness->violation("a call was begun after the disconnect");
}

void Round::readOnce()
{
    const bool over = m_witness->isOver();
    ServiceSettings settings;
    UaDataValues values;
    UaDiagnosticInfos diagnostics;
    const UaStatus status =
        m_session.read(settings, 0, OpcUa_TimestampsToReturn_Both, someNodes(), values, diagnostics);
    if (status.isGood() && values.length() != readCount)
        m_witness->violation("a read answered with another number of values");
    if (over && status.isGood())
        m_witness->violation("a read went well after the disconnect");
}

void Round::changeUser()
{
    const bool over = m_witness->isOver();
    ServiceSettings settings;
    const UaUserNameIdentityToken demo(UaString("demo"), UaString("demo"));
    if (m_session.changeUser(settings, &demo).isGood() && over)
        m_witness->violation("a user was taken after the disconnect");
}

// ---- fault and disconnect

void Round::strike()
{
    const Kind& kind = *m_settings.kind;
    const bool connects = kind.hitsConnects();
    if (!connects || !m_plan.firstConnect)
        kind.apply(m_scene);
    if (!connects || m_plan.firstConnect)
        return;
    if (m_random() % 2 == 0)
        m_scene.relay.hangUp();
    else
        m_scene.relay.reset();
}

bool Round::hasStruck() const
{
    return !m_settings.kind->isCounted() || m_scene.relay.struck() > m_before;
}

void Round::waitToPress() const
{
    const auto begin = Clock::now();
    while (m_plan.struckFirst && !hasStruck() && since(begin) < strikesWithin)
        std::this_thread::sleep_for(1ms);
    std::this_thread::sleep_for(m_plan.untilPress);
}

void Round::press()
{
    ServiceSettings settings;
    const UaStatus status = m_session.disconnect(settings, m_plan.deleting);
    m_witness->disconnected();
    if (status == OpcUa_BadInternalError || status == OpcUa_BadInvalidState)
        m_witness->violation(std::string("the disconnect ended as ") + status.toString().toUtf8());
}

std::chrono::milliseconds Round::disconnect()
{
    const auto begin = Clock::now();
    if (m_plan.elsewhere)
        std::jthread([this] { press(); }).join();
    else
        press();
    const auto took = since(begin);
    checkDisconnected();
    return took;
}

void Round::checkDisconnected()
{
    const auto begin = Clock::now();
    if (m_session.serverStatus() != UaClient::Disconnected || m_session.isConnected())
        m_witness->violation("the session says that it is connected");
    for (std::jthread& caller : m_callers)
        caller.request_stop();
    m_callers.clear();
    if (since(begin) > m_settings.limit)
        m_witness->violation("a call returned " + std::to_string(since(begin).count()) +
                             " ms after the disconnect");
}

void Round::connectAgain()
{
    if (m_subscription) {
        ServiceSettings settings;
        static_cast<void>(m_session.deleteSubscription(settings, &m_subscription)); // the server has none
    }
    UaStatus status = m_session.connect(m_url, connectInfo(), m_settings.security, m_second.get());
    if (status.isGood()) {
        ServiceSettings settings;
        UaDataValues values;
        UaDiagnosticInfos diagnostics;
        status = m_session.read(settings, 0, OpcUa_TimestampsToReturn_Both, someNodes(), values, diagnostics);
        const UaStatus ended = m_session.disconnect(settings, true);
        m_second->disconnected();
        if (status.isGood())
            status = ended;
    }
    if (!status.isGood())
        m_second->violation(std::string("cannot connect again: ") + status.toString().toUtf8());
}

} // namespace

Outcome runRound(const RoundSettings& settings)
{
    return Round(settings).run();
}

} // namespace soak
