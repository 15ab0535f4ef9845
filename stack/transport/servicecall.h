// Service calls over a channel: encodes the request, waits, decodes and judges the answer.
#pragma once

#include <stack/transport/channel.h>

#include <functional>
#include <memory>

namespace opcua {

/// As OpcUa_Channel_MeasureNextCall.
void measureNextCall(OpcUa_CallMeasure* measure);
/// What it was last called with on this thread, once; else null.
[[nodiscard]] OpcUa_CallMeasure* takeNextMeasure();

/// As OpcUa_Channel_InvokeService and OpcUa_Channel_BeginInvokeService, arguments already checked. measure
/// may be null.
[[nodiscard]] OpcUa_StatusCode invokeService(Channel& channel, const OpcUa_EncodeableType& requestType,
                                             const void* request, const OpcUa_EncodeableType& responseType,
                                             void* response, OpcUa_CallMeasure* measure);

/// Runs on the channel's callback thread; owns the response on Good.
using ServiceCompletion = std::function<void(OpcUa_StatusCode status, DecodedMessage&& response)>;
[[nodiscard]] OpcUa_StatusCode beginService(const std::shared_ptr<Channel>& channel,
                                            const OpcUa_EncodeableType& requestType, const void* request,
                                            const OpcUa_EncodeableType& responseType,
                                            ServiceCompletion completion, OpcUa_CallMeasure* measure);

/// The response in a message body. BadUnknownResponse for other types; the service result when that is bad,
/// from a ServiceFault too; the codec's status.
[[nodiscard]] OpcUa_StatusCode takeResponse(ByteView body, const EncodingLimits& limits,
                                            const OpcUa_EncodeableType& responseType,
                                            DecodedMessage& response, OpcUa_CallMeasure* measure);

} // namespace opcua
