// Guard and observer of a session see every call that it makes.
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/servicewatch.h>
#include <uaclientsdk/uadiscovery.h>

#include <gmock/gmock.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace {

using UaClientSdk::ServiceCall;
using UaClientSdk::ServiceOutcome;
using UaClientSdk::ServiceSettings;

class Witness : public UaClientSdk::ServiceObserver
{
public:
    void serviceBegun(OpcUa_UInt64 number, const ServiceCall& call) override
    {
        std::lock_guard lock(m_mutex);
        const auto& header = *static_cast<const OpcUa_RequestHeader*>(call.request);
        m_open[number] = std::string(call.type.TypeName) + " " + call.purpose.toStdString();
        m_handles.push_back(header.RequestHandle);
    }
    void serviceEnded(OpcUa_UInt64 number, const ServiceOutcome& outcome) override
    {
        std::lock_guard lock(m_mutex);
        const auto found = m_open.find(number);
        ASSERT_NE(found, m_open.end()) << "ended twice, or never begun";
        m_ended.push_back(found->second + " " + outcome.status.toString().toStdString() +
                          (outcome.response ? " answered" : ""));
        m_open.erase(found);
        EXPECT_GT(outcome.passed, 0u);
    }
    std::vector<std::string> ended()
    {
        std::lock_guard lock(m_mutex);
        return m_ended;
    }
    std::size_t open()
    {
        std::lock_guard lock(m_mutex);
        return m_open.size();
    }

private:
    std::mutex m_mutex;
    std::map<OpcUa_UInt64, std::string> m_open;
    std::vector<OpcUa_UInt32> m_handles;
    std::vector<std::string> m_ended;
};

class Sentry : public UaClientSdk::ServiceGuard
{
public:
    UaStatus mayCall(const ServiceCall& call) override
    {
        const bool harmless = call.type.TypeName != std::string("WriteRequest") || call.purpose == "allowed";
        return harmless ? UaStatus() : UaStatus(OpcUa_BadUserAccessDenied, UaString("Not sent"));
    }
};

class ServiceWatchTest : public SessionTest
{
protected:
    UaStatus write(const char* purpose)
    {
        ServiceSettings settings;
        settings.purpose = UaString(purpose);
        UaWriteValues values(1u);
        UaStatusCodeArray results;
        UaDiagnosticInfos diagnosticInfos;
        return session.write(settings, values, results, diagnosticInfos);
    }
    void takeWrites()
    {
        stack.on(
            OpcUa_WriteRequest_EncodeableType,
            [](const void*, void* answer) {
                auto& response = *static_cast<OpcUa_WriteResponse*>(answer);
                UaStatusCodeArray results(1u);
                results.detach(&response.NoOfResults, &response.Results);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
    }

    std::shared_ptr<Witness> witness = std::make_shared<Witness>();
};

TEST_F(ServiceWatchTest, ObserverSeesTheWholeLifeOfASession)
{
    session.setServiceObserver(witness);
    ASSERT_TRUE(connect().isGood());
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadTcpServerTooBusy});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitForCount(2));
    passWatchdogTime();
    ASSERT_TRUE(callback.waitForCount(3));
    takeWrites();
    EXPECT_TRUE(write("wish").isGood());
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_EQ(witness->open(), 0u);
    EXPECT_THAT(
        witness->ended(),
        testing::IsSupersetOf({"CreateSessionRequest  Good answered", "ActivateSessionRequest  Good answered",
                               "ReadRequest  Good answered", "ReadRequest  BadTcpServerTooBusy",
                               "WriteRequest wish Good answered", "CloseSessionRequest  Good answered"}));
    session.setServiceObserver(nullptr);
    const auto before = witness->ended();
    ASSERT_TRUE(connect().isGood());
    EXPECT_EQ(witness->ended(), before);
}

TEST_F(ServiceWatchTest, AsynchronousCallsEndOnceHoweverTheyEnd)
{
    ASSERT_TRUE(connect().isGood());
    session.setServiceObserver(witness);
    stack.refuseNextBegin(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadResourceUnavailable});
    stack.holdAnswers(OpcUa_ReadRequest_EncodeableType, true);
    UaReadValueIds nodes(1u);
    ServiceSettings settings;
    EXPECT_TRUE(session.beginRead(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, 1).isBad());
    EXPECT_TRUE(session.beginRead(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, 2).isGood());
    EXPECT_TRUE(session.beginRead(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, 3).isGood());
    stack.releaseAnswers(OpcUa_ReadRequest_EncodeableType, 1);
    EXPECT_TRUE(waitUntil([this] { return witness->ended().size() == 2; }));
    stack.loseLink();
    EXPECT_TRUE(waitUntil([this] { return witness->ended().size() >= 3; }));
    EXPECT_THAT(witness->ended(),
                testing::ElementsAre("ReadRequest  BadResourceUnavailable", "ReadRequest  Good answered",
                                     "ReadRequest  BadConnectionClosed"));
    EXPECT_EQ(witness->open(), 0u);
}

// Wants to know of writes only.
class Clerk : public Sentry
{
public:
    std::shared_ptr<UaClientSdk::ServiceObserver> witness(const ServiceCall& call) override
    {
        return call.type.TypeName == std::string("WriteRequest") ? written : nullptr;
    }
    const std::shared_ptr<Witness> written = std::make_shared<Witness>();
};

class Dozer : public Witness
{
public:
    using Witness::setLooking;
};

TEST_F(ServiceWatchTest, AWitnessHearsOfItsCallsAndAnObserverThatDoesNotLookOfNone)
{
    ASSERT_TRUE(connect().isGood());
    const auto clerk = std::make_shared<Clerk>();
    const auto dozer = std::make_shared<Dozer>();
    session.setServiceGuard(clerk);
    session.setServiceObserver(dozer);
    takeWrites();
    dozer->setLooking(false);
    EXPECT_TRUE(write("allowed").isGood());
    EXPECT_TRUE(write("").isBad());
    EXPECT_THAT(clerk->written->ended(), testing::ElementsAre("WriteRequest allowed Good answered"));
    EXPECT_TRUE(dozer->ended().empty());
    dozer->setLooking(true);
    EXPECT_TRUE(write("allowed").isGood());
    EXPECT_EQ(dozer->ended(), std::vector<std::string>{"WriteRequest allowed Good answered"});
    EXPECT_EQ(clerk->written->ended().size(), 2u);
}

TEST_F(ServiceWatchTest, WhatTheGuardRefusesIsNotSent)
{
    ASSERT_TRUE(connect().isGood());
    session.setServiceGuard(std::make_shared<Sentry>());
    session.setServiceObserver(witness);
    takeWrites();
    const UaStatus refused = write("");
    EXPECT_EQ(refused.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadUserAccessDenied));
    EXPECT_EQ(refused.diagnosticText(), UaString("Not sent"));
    UaWriteValues values(1u);
    ServiceSettings settings;
    EXPECT_EQ(session.beginWrite(settings, values, 1).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadUserAccessDenied));
    EXPECT_EQ(stack.calls(OpcUa_WriteRequest_EncodeableType), 0);
    EXPECT_TRUE(witness->ended().empty());
    EXPECT_TRUE(write("allowed").isGood());
    EXPECT_EQ(stack.calls(OpcUa_WriteRequest_EncodeableType), 1);
}

TEST_F(ServiceWatchTest, CallsWithoutASessionOfTheCallersAreSeenAsWell)
{
    std::vector<std::shared_ptr<Witness>> made;
    UaClientSdk::UaDiscovery discovery;
    discovery.setServiceObservers([&made] { return made.emplace_back(std::make_shared<Witness>()); });
    ServiceSettings settings;
    settings.purpose = UaString("Looking");
    const UaString url("opc.tcp://lds:4840");
    const UaClientSdk::ClientSecurityInfo security;
    UaEndpointDescriptions endpoints;
    stack.on(OpcUa_GetEndpointsRequest_EncodeableType,
             [](const void*, void*) { return static_cast<OpcUa_StatusCode>(OpcUa_Good); });
    EXPECT_TRUE(discovery.getEndpoints(settings, url, security, endpoints).isGood());
    UaApplicationDescriptions servers;
    EXPECT_TRUE(discovery.findServers(settings, url, security, servers).isBad());
    UaDateTime reset;
    UaServerOnNetworks listed;
    EXPECT_TRUE(discovery.queryDirectory(settings, url, 0, 0, reset, listed).isBad()); // it is no directory
    stack.setConnectResult(OpcUa_BadConnectionRejected);
    EXPECT_TRUE(discovery.getEndpoints(settings, url, security, endpoints).isBad());
    ASSERT_EQ(made.size(), 3u) << "what was not connected has called nothing";
    EXPECT_THAT(made[0]->ended(), testing::ElementsAre("GetEndpointsRequest Looking Good answered"));
    EXPECT_THAT(made[1]->ended(), testing::ElementsAre("FindServersRequest Looking BadServiceUnsupported"));
    EXPECT_THAT(made[2]->ended(), testing::IsSupersetOf({"CreateSessionRequest  Good answered",
                                                         "CloseSessionRequest Looking Good answered"}));
    for (const auto& each : made)
        EXPECT_EQ(each->open(), 0u);
}

} // namespace
