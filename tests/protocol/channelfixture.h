// What tests of the C interface over sockets share.
#pragma once

#include <opcua/opcua.h>
#include <stack/encoding/messagecodec.h>
#include <tests/protocol/loopbackpeer.h>

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace opcua::test {

using namespace std::chrono_literals;
inline constexpr auto patience = 20s; ///< far beyond what anything here takes, also under sanitizers

/// Values that a callback's thread leaves and the test waits for.
template <typename T>
class Mailbox
{
public:
    void put(T value)
    {
        const std::lock_guard lock(m_mutex);
        m_values.push_back(std::move(value));
        m_changed.notify_all();
    }
    [[nodiscard]] bool waitForCount(size_t count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, patience, [&] { return m_values.size() >= count; });
    }
    [[nodiscard]] std::vector<T> values()
    {
        const std::lock_guard lock(m_mutex);
        return m_values;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<T> m_values;
};

template <typename T>
Bytes encoded(const OpcUa_EncodeableType& type, const T& object)
{
    Bytes bytes;
    EXPECT_EQ(encodeMessage(type, &object, {}, bytes), OpcUa_Good);
    return bytes;
}

inline Bytes findServersResponse(OpcUa_StatusCode serviceResult = OpcUa_Good)
{
    OpcUa_FindServersResponse response;
    OpcUa_FindServersResponse_Initialize(&response);
    response.ResponseHeader.ServiceResult = serviceResult;
    return encoded(OpcUa_FindServersResponse_EncodeableType, response);
}

inline void answerAtOnce(ServerChannel& channel, OpcUa_UInt32 id, const Bytes&)
{
    channel.respond(id, findServersResponse());
}
inline void answerNever(ServerChannel&, OpcUa_UInt32, const Bytes&) {}

inline LoopbackPeer::Script serving(PeerServer::Answer answer, ServerChannelConfig config = {})
{
    return [answer = std::move(answer), config](PeerSocket& socket) {
        PeerServer(answer, config).serve(socket);
    };
}

class Channel
{
public:
    Channel() { EXPECT_EQ(OpcUa_Channel_Create(&m_handle), OpcUa_Good); }
    ~Channel() { OpcUa_Channel_Delete(&m_handle); }
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    OpcUa_StatusCode connect(const std::string& url, OpcUa_UInt32 timeout = 10'000)
    {
        info.Url = url.c_str();
        info.ConnectTimeout = timeout;
        return OpcUa_Channel_Connect(m_handle, &info, nullptr);
    }
    OpcUa_StatusCode call(OpcUa_UInt32 timeout = 10'000)
    {
        OpcUa_FindServersRequest request;
        OpcUa_FindServersRequest_Initialize(&request);
        request.RequestHeader.TimeoutHint = timeout;
        OpcUa_FindServersResponse response;
        const OpcUa_StatusCode status = OpcUa_ClientApi_FindServers(m_handle, &request, &response);
        OpcUa_FindServersResponse_Clear(&response);
        return status;
    }
    using Completed = std::function<void(OpcUa_StatusCode)>;
    /// completed must live until it has been called
    OpcUa_StatusCode begin(Completed& completed, OpcUa_UInt32 timeout = 10'000)
    {
        OpcUa_FindServersRequest request;
        OpcUa_FindServersRequest_Initialize(&request);
        request.RequestHeader.TimeoutHint = timeout;
        return OpcUa_ClientApi_BeginFindServers(m_handle, &request, &Channel::complete, &completed);
    }
    void listen(std::function<void(OpcUa_Channel_Event, OpcUa_StatusCode)> listener)
    {
        m_listener = std::move(listener);
        info.CallbackContext = &m_listener;
        info.Callback = [](OpcUa_Channel, OpcUa_Channel_Event event, OpcUa_StatusCode status, void*,
                           void* context) {
            (*static_cast<decltype(m_listener)*>(context))(event, status);
            return OpcUa_StatusCode{OpcUa_Good};
        };
    }
    OpcUa_Channel handle() { return m_handle; }
    /// Who asks for it deletes it.
    OpcUa_Channel release() { return std::exchange(m_handle, nullptr); }

    OpcUa_ChannelConnectInfo info = defaultInfo();

private:
    static OpcUa_ChannelConnectInfo defaultInfo()
    {
        OpcUa_ChannelConnectInfo result{};
        result.TransportProfileUri = OpcUa_TransportProfile_UaTcp;
        result.SecurityPolicyUri = OpcUa_SecurityPolicy_None;
        result.SecurityMode = OpcUa_MessageSecurityMode_None;
        return result;
    }
    static void complete(OpcUa_Channel, void* response, const OpcUa_EncodeableType* type, void* data,
                         OpcUa_StatusCode status)
    {
        EXPECT_EQ(response != nullptr, OpcUa_IsGood(status));
        if (response != nullptr)
            OpcUa_EncodeableObject_Delete(type, &response);
        (*static_cast<Completed*>(data))(status);
    }

    OpcUa_Channel m_handle = nullptr;
    std::function<void(OpcUa_Channel_Event, OpcUa_StatusCode)> m_listener;
};

class StackTransport : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(OpcUa_ProxyStub_Initialize(nullptr), OpcUa_Good); }
    void TearDown() override { OpcUa_ProxyStub_Clear(); }
};

} // namespace opcua::test
