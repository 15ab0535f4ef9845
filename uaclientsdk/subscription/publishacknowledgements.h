// Notifications that the server may forget.
#pragma once

#include <opcua/opcua_types.h>

#include <deque>
#include <vector>

namespace UaClientSdk {

/// In the order of their arrival. Bounded: a server that takes none of them does not make it grow for ever,
/// the oldest are forgotten first. Not thread-safe.
class PublishAcknowledgements
{
public:
    static constexpr std::size_t maxLength = 10000;
    static constexpr OpcUa_Byte maxAttempts = 3; ///< requests that may carry one in vain

    /// What one request carries.
    struct Batch
    {
        std::vector<OpcUa_SubscriptionAcknowledgement> items; ///< as the stack takes them
        std::vector<OpcUa_Byte> attempts;
    };

    void add(OpcUa_UInt32 subscriptionId, OpcUa_UInt32 sequenceNumber);
    /// All of them; the list is empty afterwards.
    [[nodiscard]] Batch take();
    /// Puts those of a request that the server has not seen back to the front.
    void restore(const Batch& batch);
    void forget(OpcUa_UInt32 subscriptionId);
    void clear() { m_list.clear(); }
    [[nodiscard]] std::size_t length() const { return m_list.size(); }

private:
    struct Entry
    {
        OpcUa_SubscriptionAcknowledgement value;
        OpcUa_Byte attempts;
    };
    std::deque<Entry> m_list;
};

} // namespace UaClientSdk
