// The stack's channel against a server that is not ours.
#include <opcua/opcua.h>
#include <tests/support/demoserverinfo.h>

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>

namespace {

class StackAgainstDemoServer : public testing::Test
{
protected:
    void SetUp() override
    {
        m_url = demoserver::endpointUrl();
        ASSERT_FALSE(m_url.empty());
        ASSERT_EQ(OpcUa_ProxyStub_Initialize(nullptr), OpcUa_Good);
        ASSERT_EQ(OpcUa_Channel_Create(&m_channel), OpcUa_Good);
    }
    void TearDown() override
    {
        OpcUa_Channel_Delete(&m_channel);
        OpcUa_ProxyStub_Clear();
    }

    OpcUa_StatusCode connect(OpcUa_UInt32& lifetime)
    {
        OpcUa_ChannelConnectInfo info{};
        info.Url = m_url.c_str();
        info.SecurityPolicyUri = OpcUa_SecurityPolicy_None;
        info.SecurityMode = OpcUa_MessageSecurityMode_None;
        info.RequestedLifetime = 3'600'000;
        info.ConnectTimeout = 10'000;
        return OpcUa_Channel_Connect(m_channel, &info, &lifetime);
    }

    std::string m_url;
    OpcUa_Channel m_channel = nullptr;
};

struct Answers
{
    std::mutex mutex;
    std::condition_variable changed;
    int good = 0;
    int all = 0;
};

void countAnswer(OpcUa_Channel, void* response, const OpcUa_EncodeableType* type, void* data,
                 OpcUa_StatusCode status)
{
    auto& answers = *static_cast<Answers*>(data);
    if (OpcUa_IsGood(status))
        OpcUa_EncodeableObject_Delete(type, &response);
    const std::lock_guard lock(answers.mutex);
    answers.good += OpcUa_IsGood(status);
    ++answers.all;
    answers.changed.notify_all();
}

TEST_F(StackAgainstDemoServer, ListsItsEndpointsAndReconnects)
{
    for (int round = 0; round < 3; ++round) {
        OpcUa_UInt32 lifetime = 0;
        ASSERT_EQ(connect(lifetime), OpcUa_Good);
        EXPECT_GT(lifetime, 0u);
        OpcUa_GetEndpointsRequest request;
        OpcUa_GetEndpointsRequest_Initialize(&request);
        ASSERT_EQ(OpcUa_String_Assign(&request.EndpointUrl, m_url.c_str(), -1), OpcUa_Good);
        OpcUa_GetEndpointsResponse response;
        ASSERT_EQ(OpcUa_ClientApi_GetEndpoints(m_channel, &request, &response), OpcUa_Good);
        // None, and three policies with two modes each
        EXPECT_GE(response.NoOfEndpoints, 7);
        OpcUa_GetEndpointsResponse_Clear(&response);
        OpcUa_GetEndpointsRequest_Clear(&request);
        EXPECT_EQ(OpcUa_Channel_Disconnect(m_channel), OpcUa_Good);
    }
}

TEST_F(StackAgainstDemoServer, AnswersManyCallsAtOnce)
{
    OpcUa_UInt32 lifetime = 0;
    ASSERT_EQ(connect(lifetime), OpcUa_Good);
    OpcUa_FindServersRequest request;
    OpcUa_FindServersRequest_Initialize(&request);
    Answers answers;
    constexpr int calls = 100;
    for (int n = 0; n < calls; ++n)
        ASSERT_EQ(OpcUa_ClientApi_BeginFindServers(m_channel, &request, countAnswer, &answers), OpcUa_Good);
    std::unique_lock lock(answers.mutex);
    EXPECT_TRUE(
        answers.changed.wait_for(lock, std::chrono::seconds(20), [&] { return answers.all == calls; }));
    EXPECT_EQ(answers.good, calls);
}

TEST_F(StackAgainstDemoServer, TellsTheServersFaultAsStatus)
{
    OpcUa_UInt32 lifetime = 0;
    ASSERT_EQ(connect(lifetime), OpcUa_Good);
    OpcUa_ReadRequest request;
    OpcUa_ReadRequest_Initialize(&request);
    OpcUa_ReadResponse response;
    EXPECT_EQ(OpcUa_ClientApi_Read(m_channel, &request, &response),
              OpcUa_BadSessionIdInvalid); // there is none
    EXPECT_TRUE(OpcUa_Channel_IsConnected(m_channel));
}

} // namespace
