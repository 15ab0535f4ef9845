#include <stack/transport/servicecall.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/callmeasure.h>
#include <stack/encoding/memory.h>
#include <stack/transport/trace.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <utility>

namespace opcua {

namespace {

constexpr OpcUa_UInt32 defaultTimeout = 10'000; // ms

// A server may hold a Publish back until its hint is over, and its answer is on its way then: giving up at
// the hint would lose the notifications in it.
constexpr Milliseconds publishMargin{10'000};

constexpr size_t keptCapacity = 64 * 1024;

// A thread's requests take turns in one buffer.
thread_local ByteBuffer t_spareBuffer;

thread_local OpcUa_CallMeasure* t_nextMeasure = nullptr;

class PreparedRequest
{
public:
    PreparedRequest() : m_buffer(std::move(t_spareBuffer)) {}
    ~PreparedRequest()
    {
        if (m_buffer.size() > 0)
            ::explicit_bzero(m_buffer.data(), m_buffer.size()); // it may have held a password
        m_buffer.clear();
        m_buffer.trim(keptCapacity);
        t_spareBuffer = std::move(m_buffer);
    }
    PreparedRequest(const PreparedRequest&) = delete;
    PreparedRequest& operator=(const PreparedRequest&) = delete;

    [[nodiscard]] ByteBuffer& buffer() { return m_buffer; }
    [[nodiscard]] ByteView body() const { return m_buffer.view(); }

    TimePoint deadline;

private:
    ByteBuffer m_buffer;
};

OpcUa_StatusCode prepare(const Channel& channel, const OpcUa_EncodeableType& type, const void* request,
                         OpcUa_CallMeasure* measure, PreparedRequest& prepared)
{
    const OpcUa_UInt32 hint = static_cast<const OpcUa_RequestHeader*>(request)->TimeoutHint;
    prepared.deadline = std::chrono::steady_clock::now() + Milliseconds{hint == 0 ? defaultTimeout : hint};
    const OpcUa_StatusCode status =
        encodeMessage(type, request, channel.runtime().encodingLimits(), prepared.buffer());
    if (OpcUa_IsBad(status))
        return status;
    if (measure != nullptr)
        measure->Encoded = stampOfNow();
    traceContent("Sending", type, prepared.body());
    return OpcUa_Good;
}

// A caller that went on; decoding and callback are the callback thread's.
class CallbackCall final : public Call, public CallbackJob, public std::enable_shared_from_this<CallbackCall>
{
public:
    CallbackCall(std::shared_ptr<Channel> channel, const OpcUa_EncodeableType& responseType,
                 ServiceCompletion completion, OpcUa_CallMeasure* measure)
        : Call(measure), m_channel(std::move(channel)), m_responseType(responseType),
          m_completion(std::move(completion))
    {
    }

    void complete(OpcUa_StatusCode status, Bytes&& body) noexcept override
    {
        m_status = status;
        m_body = std::move(body);
        m_channel->callbacks().post(std::shared_ptr<CallbackJob>(shared_from_this()));
    }

private:
    void run() override
    {
        DecodedMessage response;
        OpcUa_StatusCode status = m_status;
        if (OpcUa_IsGood(status))
            status = takeResponse(m_body, m_channel->runtime().encodingLimits(), m_responseType, response,
                                  measure());
        m_body = {};
        m_completion(status, std::move(response));
    }

    std::shared_ptr<Channel> m_channel;
    const OpcUa_EncodeableType& m_responseType;
    ServiceCompletion m_completion;
    OpcUa_StatusCode m_status = 0;
    Bytes m_body;
};

} // namespace

void measureNextCall(OpcUa_CallMeasure* measure)
{
    t_nextMeasure = measure;
}

OpcUa_CallMeasure* takeNextMeasure()
{
    return std::exchange(t_nextMeasure, nullptr);
}

OpcUa_StatusCode takeResponse(ByteView body, const EncodingLimits& limits,
                              const OpcUa_EncodeableType& responseType, DecodedMessage& response,
                              OpcUa_CallMeasure* measure)
{
    const OpcUa_StatusCode status = decodeMessage(body, limits, response);
    if (status == OpcUa_BadDataTypeIdUnknown)
        return OpcUa_BadUnknownResponse;
    if (OpcUa_IsBad(status))
        return status;
    if (measure != nullptr)
        measure->Decoded = stampOfNow();
    traceContent("Received", *response.type, body);
    const bool fault = response.type == &OpcUa_ServiceFault_EncodeableType;
    if (!fault && response.type != &responseType)
        return OpcUa_BadUnknownResponse;
    const OpcUa_StatusCode result = static_cast<const OpcUa_ResponseHeader*>(response.object)->ServiceResult;
    if (OpcUa_IsBad(result))
        return result;
    return fault ? OpcUa_BadUnknownResponse : OpcUa_Good;
}

OpcUa_StatusCode invokeService(Channel& channel, const OpcUa_EncodeableType& requestType, const void* request,
                               const OpcUa_EncodeableType& responseType, void* response,
                               OpcUa_CallMeasure* measure)
{
    PreparedRequest prepared;
    OpcUa_StatusCode status = prepare(channel, requestType, request, measure, prepared);
    if (OpcUa_IsBad(status))
        return status;
    const auto call = std::make_shared<AwaitedCall>(measure);
    status = channel.fetch(call, prepared.body(), prepared.deadline);
    if (OpcUa_IsBad(status))
        return status;
    Bytes body;
    status = call->wait(body);
    if (OpcUa_IsBad(status))
        return status;
    DecodedMessage message;
    status = takeResponse(body, channel.runtime().encodingLimits(), responseType, message, measure);
    if (OpcUa_IsBad(status))
        return status;
    // the fields move over, the shell goes back
    void* const shell = message.release();
    std::memcpy(response, shell, responseType.AllocationSize);
    freeMemory(shell);
    return OpcUa_Good;
}

OpcUa_StatusCode beginService(const std::shared_ptr<Channel>& channel,
                              const OpcUa_EncodeableType& requestType, const void* request,
                              const OpcUa_EncodeableType& responseType, ServiceCompletion completion,
                              OpcUa_CallMeasure* measure)
{
    PreparedRequest prepared;
    const OpcUa_StatusCode status = prepare(*channel, requestType, request, measure, prepared);
    if (OpcUa_IsBad(status))
        return status;
    channel->callbacks().start();
    if (&requestType == &OpcUa_PublishRequest_EncodeableType)
        prepared.deadline += publishMargin;
    auto call = std::make_shared<CallbackCall>(channel, responseType, std::move(completion), measure);
    return channel->send(std::move(call), prepared.body(), prepared.deadline, false);
}

} // namespace opcua
