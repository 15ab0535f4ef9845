#include <bench/subscriptionserver.h>

#include <stack/encoding/messagecodec.h>

#include <algorithm>
#include <optional>

namespace opcua::bench {

SubscriptionServer::SubscriptionServer(NodeTable& table, double interval)
    : m_rest(answersOf(table)), m_interval(interval)
{
}

std::optional<Bytes> SubscriptionServer::answer(const Bytes& body)
{
    DecodedMessage request;
    if (OpcUa_IsBad(decodeMessage(body, {}, request)))
        return std::nullopt;
    if (request.type == &OpcUa_CreateSubscriptionRequest_EncodeableType)
        return respond<OpcUa_CreateSubscriptionResponse>(OpcUa_CreateSubscriptionResponse_EncodeableType,
                                                         request, [this](auto& response) {
                                                             response.SubscriptionId = 1;
                                                             response.RevisedPublishingInterval = m_interval;
                                                             response.RevisedLifetimeCount = 10'000;
                                                             response.RevisedMaxKeepAliveCount = 100;
                                                         });
    if (request.type == &OpcUa_CreateMonitoredItemsRequest_EncodeableType)
        return respond<OpcUa_CreateMonitoredItemsResponse>(
            OpcUa_CreateMonitoredItemsResponse_EncodeableType, request, [&](auto& response) {
                const auto& asked = *static_cast<const OpcUa_CreateMonitoredItemsRequest*>(request.object);
                UaMonitoredItemCreateResults results(static_cast<OpcUa_UInt32>(asked.NoOfItemsToCreate));
                create(asked, results);
                results.detach(&response.NoOfResults, &response.Results);
            });
    if (request.type == &OpcUa_CallRequest_EncodeableType) {
        called();
        return respond<OpcUa_CallResponse>(OpcUa_CallResponse_EncodeableType, request, [](auto& response) {
            UaCallMethodResults(1u).detach(&response.NoOfResults, &response.Results);
        });
    }
    if (request.type == &OpcUa_PublishRequest_EncodeableType)
        return publish(request);
    if (request.type == &OpcUa_DeleteSubscriptionsRequest_EncodeableType)
        return respond<OpcUa_DeleteSubscriptionsResponse>(
            OpcUa_DeleteSubscriptionsResponse_EncodeableType, request,
            [](auto& response) { UaStatusCodeArray(1u).detach(&response.NoOfResults, &response.Results); });
    return m_rest(body);
}

Bytes SubscriptionServer::publish(const DecodedMessage& request)
{
    const auto& asked = *static_cast<const OpcUa_PublishRequest*>(request.object);
    UaExtensionObjectArray data(1u);
    const bool isNews = notify(data[0]);
    return respond<OpcUa_PublishResponse>(OpcUa_PublishResponse_EncodeableType, request, [&](auto& response) {
        response.SubscriptionId = 1;
        UaStatusCodeArray(static_cast<OpcUa_UInt32>(std::max(0, asked.NoOfSubscriptionAcknowledgements)))
            .detach(&response.NoOfResults, &response.Results);
        response.NotificationMessage.SequenceNumber = m_sequenceNumber + 1;
        if (!isNews)
            return;
        ++m_sequenceNumber;
        data.detach(&response.NotificationMessage.NoOfNotificationData,
                    &response.NotificationMessage.NotificationData);
    });
}

} // namespace opcua::bench
