// Keeps a server so that it reports what tools want watched.
#pragma once

#include <monitoring/sink.h>
#include <monitoring/watch.h>
#include <uaclientsdk/uaclient.h>

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace UaClientSdk {
class UaSession;
}

namespace monitoring {

class MonitoredServerPrivate;

/// One for each server, shared by all tools. Items may be added at any time: they are created once there is a
/// connection, in portions that the server takes, by a thread of this object; they outlive an interruption,
/// and are created again in a session that replaces a lost one. What the server refuses is set apart with its
/// reason, and told to the sink as every other change of an item's state is.
///
/// Any thread. Nothing blocks but what says so. Tools may keep it longer than its owner does: what is left of
/// a removed server is harmless.
class MonitoredServer
{
public:
    /// Subscriptions of one server; items that would need one more are refused with
    /// BadTooManySubscriptions.
    static constexpr OpcUa_UInt32 maximumSubscriptions = 10;
    /// Items in one call, where the server does not set a lower limit and no call was too much for it.
    static constexpr OpcUa_UInt32 maximumBatch = 1000;

    MonitoredServer();
    ~MonitoredServer(); ///< after close()
    MonitoredServer(const MonitoredServer&) = delete;
    MonitoredServer& operator=(const MonitoredServer&) = delete;

    // ---- for the owner of the session

    /// The session to use from the next statusChanged on; borrowed until it is replaced or null. Waits until
    /// no call into the one before is under way and its subscriptions are gone, for up to the time of a call:
    /// a session that is disconnected first ends its calls at once. Not in a callback of a session.
    void setSession(UaClientSdk::UaSession* session);
    /// What the session's callback is told, in the same order, and the new places of namespaces: with
    /// Connected, or before it. Never waits, so it may be called there.
    void statusChanged(UaClientSdk::UaClient::ServerStatus status, const NamespaceMap& namespaces = {});

    /// The status at the moment at which the session tells it, on its thread: for the order of what is
    /// recorded, no more. From the first call on statusChanged() notes no incidents. Never waits.
    void noteLink(UaClientSdk::UaClient::ServerStatus status);

    /// The server is removed: setSession(nullptr), then its items end, and those that are added later end at
    /// once. Blocks as setSession does.
    void close();

    // ---- for tools

    /// Watches these; the ids in their order, 0 for one too many. Several wishes for one node are several
    /// items.
    [[nodiscard]] std::vector<ItemId> add(const std::shared_ptr<Sink>& sink, const ItemSettings& settings,
                                          std::span<const ItemWish> wishes);
    /// Other settings for these. Refused ones are tried again with them. A change that the server refuses is
    /// told with its status, and it goes on with what it had.
    void modify(std::span<const ItemId> items, const ItemSettings& settings);
    /// What has not been taken of these is dropped; nothing more comes once this has returned.
    void remove(std::span<const ItemId> items);
    /// Asks the server again for what it refused.
    void retry(std::span<const ItemId> items);
    /// The same for all refused items.
    void retryRefused();

    /// Null for an item that is none.
    [[nodiscard]] std::optional<ItemInfo> info(ItemId item) const;
    /// Those that items need just now.
    [[nodiscard]] std::vector<SubscriptionInfo> subscriptions() const;

private:
    std::unique_ptr<MonitoredServerPrivate> d;
};

} // namespace monitoring
