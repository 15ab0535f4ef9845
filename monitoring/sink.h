// Where values of watched items end, until their owner takes them.
#pragma once

#include <monitoring/handoverpacer.h>
#include <monitoring/heldmutex.h>
#include <monitoring/watch.h>
#include <uabase/system/uamutex.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uastatuscode.h>
#include <uaclientsdk/uaclient.h>

#include <functional>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

namespace monitoring {

/// What a sink notes at an item, for itself.
struct SinkMark
{
    OpcUa_UInt32 round = 0; ///< in which it was noted
    OpcUa_UInt32 place = 0; ///< where its value is
};

/// An item as its sink knows it.
struct SinkItem
{
    OpcUa_UInt64 origin; ///< the same for no two items
    OpcUa_UInt64 key;    ///< the tool's
    SinkMark& mark;      ///< the item's
};

/// How a value came.
struct Arrival
{
    OpcUa_DateTime received{};       ///< by this computer
    OpcUa_UInt32 sequenceNumber = 0; ///< of the notification message; 0: not known
};

/// What happened between the values that came, for those who have to know what is missing.
struct Incident
{
    /// What it is about.
    enum class Kind : unsigned char {
        Link,             ///< the connection has another status
        SubscriptionLost, ///< the server has ended a subscription
        Missing,          ///< notification messages did not arrive, and cannot be fetched
        Republished,      ///< one that had not arrived was fetched: its values follow
        Item              ///< an item is in another state
    };

    Kind kind = Kind::Link;                                                         ///< what it is about
    UaClientSdk::UaClient::ServerStatus link = UaClientSdk::UaClient::Disconnected; ///< of Link
    ItemState state = ItemState::Waiting;                                           ///< of Item
    UaStatusCode status;             ///< of Item and SubscriptionLost: why
    OpcUa_UInt32 subscriptionId = 0; ///< the server's; of a subscription's incidents
    OpcUa_UInt32 first = 0;          ///< sequence number; of Missing and Republished
    OpcUa_UInt32 last = 0;           ///< the same
    OpcUa_UInt64 key = 0;            ///< the tool's; of Item
    OpcUa_UInt64 origin = 0;         ///< the same
    OpcUa_UInt64 server = 0;         ///< the same for incidents of one server
    OpcUa_DateTime time{};           ///< of this computer
    OpcUa_UInt64 place = 0;          ///< values that came before it, counted by its sink
};

/// A tool makes one for its view (with std::make_shared), or several, and gives it to the servers that it
/// watches items of. It holds what has come until the tool takes it, and calls the tool's function once when
/// there is something: the next call comes after the tool has taken, and at most twenty times a second. So a
/// tool that is slow gets larger portions, not more of them.
///
/// Any thread may take. The servers fill it on threads of their sessions.
class Sink : public std::enable_shared_from_this<Sink>
{
public:
    /// Called on the pacer's thread without a lock. It holds up other sinks while it runs, and must not
    /// destroy the sink.
    using Ready = std::function<void()>;

    /// ready: may be empty for a tool that looks by itself.
    explicit Sink(Ready ready, std::shared_ptr<HandOverPacer> pacer = HandOverPacer::instance());
    virtual ~Sink();
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    [[nodiscard]] bool keepsIncidents() const { return m_keepsIncidents; } ///< those who do not are not told

    /// The function is not called any more once this has returned, and nothing is kept from now on.
    void close();

    /// Fills sinks, one after the other; each is locked while it is the current one. It is made before the
    /// caller's own lock, so that it tells the owners after that is free again.
    class Filling
    {
    public:
        Filling() = default;
        ~Filling(); ///< tells the owners
        Filling(const Filling&) = delete;
        Filling& operator=(const Filling&) = delete;

        /// Takes the value.
        void put(Sink& sink, const SinkItem& item, OpcUa_DataValue& value, const Arrival& arrival = {})
        {
            if (&sink == m_open || select(sink))
                sink.putLocked(item, value, arrival);
        }
        /// Only sinks that keep incidents do something with it.
        void note(Sink& sink, const Incident& incident);
        /// Replaces what is to be told of the item.
        void change(Sink& sink, const SinkItem& item, const ItemChange& news);
        /// Drops what has not been taken of items that are no more.
        void drop(Sink& sink, std::span<const SinkItem> items);
        /// Lets go of the current one.
        void release();

    private:
        bool select(Sink& sink); ///< false for one that is closed

        Sink* m_sink = nullptr;
        const Sink* m_open = nullptr; ///< the same, once it is known to take values
        HeldLock m_lock;
        std::vector<std::shared_ptr<Sink>> m_raised;
    };

protected:
    /// For kinds that keep incidents.
    Sink(Ready ready, std::shared_ptr<HandOverPacer> pacer, bool keepsIncidents);
    /// For take of the kinds: forgets that there is something.
    [[nodiscard]] std::vector<ItemChange> takeChangesLocked();

    UaMutex m_mutex; ///< guards all of a sink

private:
    friend class HandOverPacer;
    virtual void putLocked(const SinkItem& item, OpcUa_DataValue& value, const Arrival& arrival) = 0;
    virtual void noteLocked(const Incident& incident); ///< keeps nothing
    virtual void dropLocked(std::span<const SinkItem> items) = 0;
    virtual void clearLocked() = 0;
    void tell(); ///< the pacer's

    const Ready m_ready;
    const std::shared_ptr<HandOverPacer> m_pacer;
    const bool m_keepsIncidents = false;
    std::unordered_map<OpcUa_UInt64, ItemChange> m_changes;
    bool m_raised = false; ///< since the last take
    bool m_closed = false;
};

} // namespace monitoring
