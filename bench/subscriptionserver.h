// A canned server with one subscription, in the responder's process.
#pragma once

#include <bench/tableanswers.h>
#include <opcua/opcua_types.h>
#include <stack/encoding/messagecodec.h>
#include <uabase/values/uaarrays.h>

#include <optional>

class NodeTable;

namespace opcua::bench {

/// Makes and deletes its subscription and publishes what it has; of nodes a table answers, which outlives it.
class SubscriptionServer
{
public:
    /// interval: of publishing; ms.
    SubscriptionServer(NodeTable& table, double interval);
    virtual ~SubscriptionServer() = default;
    SubscriptionServer(const SubscriptionServer&) = delete;
    SubscriptionServer& operator=(const SubscriptionServer&) = delete;

    /// The answer to the body of a request.
    [[nodiscard]] std::optional<Bytes> answer(const Bytes& body);

protected:
    /// The results of the items that are asked for; there is one for each already.
    virtual void create(const OpcUa_CreateMonitoredItemsRequest& asked,
                        UaMonitoredItemCreateResults& results) = 0;
    /// Waits until something is due. False: nothing but a sign of life, else the notification.
    [[nodiscard]] virtual bool notify(OpcUa_ExtensionObject& notification) = 0;
    /// A method was called.
    virtual void called() {}

private:
    [[nodiscard]] Bytes publish(const DecodedMessage& request);

    const Answerer m_rest;
    const double m_interval;
    OpcUa_UInt32 m_sequenceNumber = 0;
};

} // namespace opcua::bench
