// Every value in its order: for records and curves.
#pragma once

#include <monitoring/sink.h>
#include <uabase/values/uadatavalue.h>

#include <cstddef>
#include <deque>
#include <memory>
#include <span>
#include <vector>

namespace monitoring {

/// Keeps all values in the order in which they came, of all items together. When it is full, the oldest goes
/// and is counted.
class AllSink final : public Sink
{
public:
    /// Values that are kept unless the owner says otherwise.
    static constexpr std::size_t usualCapacity = 100'000;

    /// capacity: values, at least one.
    AllSink(Ready ready, std::size_t capacity = usualCapacity,
            std::shared_ptr<HandOverPacer> pacer = HandOverPacer::instance());

    /// One value of one item.
    struct Value
    {
        OpcUa_UInt64 key = 0;    ///< the tool's
        OpcUa_UInt64 origin = 0; ///< the same for values of one item
        UaDataValue value;       ///< as the server sent it
    };
    /// What came since the last time.
    struct Batch
    {
        std::deque<Value> values;        ///< in their order
        std::vector<ItemChange> changes; ///< in any order
        OpcUa_UInt64 overflowed = 0; ///< values that are lost; all of them came before the first of values
    };
    /// Never waits.
    [[nodiscard]] Batch take();

private:
    void putLocked(const SinkItem& item, OpcUa_DataValue& value) override;
    void dropLocked(std::span<const SinkItem> items) override;
    void clearLocked() override;

    const std::size_t m_capacity;
    std::deque<Value> m_values;
    OpcUa_UInt64 m_overflowed = 0;
};

} // namespace monitoring
