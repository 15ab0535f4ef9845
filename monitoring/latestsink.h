// Newest values only: for views, which show what is.
#pragma once

#include <monitoring/blocklist.h>
#include <monitoring/sink.h>
#include <uabase/values/uadatavalue.h>

#include <span>
#include <vector>

namespace monitoring {

/// Keeps the newest value of each item; older ones that nobody took are merged into it and counted.
class LatestSink final : public Sink
{
public:
    using Sink::Sink;

    /// The newest value of one item.
    struct Value
    {
        OpcUa_UInt64 key = 0;    ///< the tool's
        OpcUa_UInt32 merged = 0; ///< values before this one that were not taken
        bool isGone = false;     ///< only inside: its item was removed
        UaDataValue value;       ///< as the server sent it
    };
    /// What came since the last time.
    struct Batch
    {
        BlockList<Value> values;         ///< in the order in which their items first changed
        std::vector<ItemChange> changes; ///< in any order
    };
    /// Never waits.
    [[nodiscard]] Batch take();

private:
    void putLocked(const SinkItem& item, OpcUa_DataValue& value, const Arrival& arrival) override;
    void dropLocked(std::span<const SinkItem> items) override;
    void clearLocked() override;
    [[nodiscard]] Value* findLocked(const SinkMark& mark);

    BlockList<Value> m_values;
    OpcUa_UInt32 m_round = 1; ///< marks of older ones are void
    bool m_someGone = false;
};

} // namespace monitoring
