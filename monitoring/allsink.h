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
    /// Incidents that a record keeps.
    static constexpr std::size_t incidentCapacity = 100'000;

    /// How much a record keeps that nobody has taken yet.
    struct Record
    {
        std::size_t capacity = usualCapacity; ///< values, at least one
        std::size_t bytes = 256u << 20;       ///< of what values have outside themselves: texts, arrays ...
    };

    /// capacity: values, at least one.
    AllSink(Ready ready, std::size_t capacity = usualCapacity,
            std::shared_ptr<HandOverPacer> pacer = HandOverPacer::instance());
    /// For a record, which has to say what is missing: keeps incidents, too, and what came of items that were
    /// removed before it was taken.
    AllSink(Ready ready, const Record& record,
            std::shared_ptr<HandOverPacer> pacer = HandOverPacer::instance());

    /// One value of one item.
    struct Value
    {
        OpcUa_UInt64 key = 0;            ///< the tool's
        OpcUa_UInt64 origin = 0;         ///< the same for values of one item
        OpcUa_DateTime received{};       ///< by this computer
        OpcUa_UInt32 sequenceNumber = 0; ///< of its notification message; 0: not known
        UaDataValue value;               ///< as the server sent it
    };
    /// What was lost because nobody took it in time.
    struct Loss
    {
        OpcUa_UInt64 values = 0;    ///< all of them came before the first of a batch's values
        OpcUa_UInt64 incidents = 0; ///< the same
        OpcUa_DateTime from{};      ///< when the first of the values was received
        OpcUa_DateTime to{};        ///< when the last was
    };
    /// What came since the last time.
    struct Batch
    {
        std::deque<Value> values;        ///< in their order
        std::deque<Incident> incidents;  ///< in their order; place: of the value before which it happened
        std::vector<ItemChange> changes; ///< in any order
        OpcUa_UInt64 overflowed = 0; ///< values that are lost; all of them came before the first of values
        Loss loss;                   ///< the same with more detail
    };
    /// Never waits.
    [[nodiscard]] Batch take();
    /// Values that have not been taken. Never waits.
    [[nodiscard]] std::size_t size();

private:
    void putLocked(const SinkItem& item, OpcUa_DataValue& value, const Arrival& arrival) override;
    void noteLocked(const Incident& incident) override;
    void dropLocked(std::span<const SinkItem> items) override;
    void clearLocked() override;
    void loseFirstLocked();

    const std::size_t m_capacity;
    const std::size_t m_byteLimit;
    std::deque<Value> m_values;
    std::deque<Incident> m_incidents;
    OpcUa_UInt64 m_before = 0; ///< values that came before the first that is kept
    std::size_t m_bytes = 0;
    Loss m_loss;
};

} // namespace monitoring
