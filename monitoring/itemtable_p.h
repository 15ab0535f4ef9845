// The items of one server.
#pragma once

#include <monitoring/blocklist.h>
#include <monitoring/sink.h>
#include <monitoring/watch.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uashared.h>
#include <uabase/values/uastring.h>

#include <memory>
#include <vector>

namespace monitoring {

/// Where an item is, in more detail than tools are told.
enum class Phase : unsigned char {
    Free,
    Waiting,  ///< for its turn
    Creating, ///< a call is under way
    Leaving,  ///< the same, and it was removed in the meantime
    Watched,
    Refused,
    Ended
};

/// What few items have.
struct ItemPart
{
    UaString indexRange;
    UaQualifiedName dataEncoding;
};

constexpr unsigned char noGroup = 0xFF;

/// There may be a hundred thousand of them, so it is kept small.
struct Item
{
    UaNodeId nodeId;
    UaSharedPtr<ItemSettings> settings;
    std::unique_ptr<ItemPart> part;
    OpcUa_UInt64 key = 0;
    OpcUa_UInt64 count = 0;
    OpcUa_DateTime lastHeard{};
    double revisedSamplingInterval = 0.0;
    OpcUa_UInt32 revisedQueueSize = 0;
    OpcUa_UInt32 overflows = 0;
    OpcUa_UInt32 gapsBefore = 0; ///< of its group, when it was added
    OpcUa_UInt32 answer = 0;     ///< the server's id of a watched item, why for a refused one
    SinkMark mark;
    unsigned short generation = 0;
    unsigned short sink = 0;
    unsigned char group = noGroup;
    Phase phase = Phase::Free;
    unsigned char attributeId = 0; ///< the largest stands for all that are none
    unsigned char mode : 2 = 0;    ///< that the server has
    bool isModified : 1 = false;   ///< waits for that
    bool isHomeless : 1 = false;   ///< its namespace is gone
};

/// An item's id is its place with a number that changes when the place is used again, so that a late word
/// about an item never reaches its successor. Not thread-safe.
class ItemTable
{
public:
    /// The new item, and its id; null when there are too many.
    [[nodiscard]] Item* add(ItemId& id);
    void remove(ItemId id);
    /// Null for an id that is none, whoever says it.
    [[nodiscard]] Item* find(ItemId id)
    {
        const OpcUa_UInt32 place = (id & placeMask) - 1u;
        if (place >= m_list.size())
            return nullptr;
        Item& item = m_list[place];
        return item.phase != Phase::Free && item.generation == id >> placeBits ? &item : nullptr;
    }
    template <typename Visit>
    void forEach(const Visit& visit)
    {
        for (OpcUa_UInt32 place = 0; place < m_list.size(); ++place)
            if (Item& item = m_list[place]; item.phase != Phase::Free)
                visit(idOf(place, item), item);
    }

private:
    static constexpr unsigned int placeBits = 22;
    static constexpr OpcUa_UInt32 placeMask = (1u << placeBits) - 1u;

    [[nodiscard]] static ItemId idOf(OpcUa_UInt32 place, const Item& item)
    {
        return static_cast<ItemId>(item.generation) << placeBits | (place + 1u);
    }

    BlockList<Item> m_list;
    std::vector<OpcUa_UInt32> m_free;
};

} // namespace monitoring
