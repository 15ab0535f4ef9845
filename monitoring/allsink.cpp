#include <monitoring/allsink.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <mutex>
#include <span>
#include <unordered_set>
#include <utility>

namespace monitoring {

namespace {

constexpr std::size_t usualElement = 16; // of an array whose elements have a fixed size, and a bit more
constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

[[nodiscard]] std::size_t sizeOf(OpcUa_Int32 length)
{
    return length > 0 ? static_cast<std::size_t>(length) : 0;
}

// Of texts, and of strings in arrays, which have the same layout.
[[nodiscard]] std::size_t bytesOfArray(const OpcUa_Variant& value)
{
    const OpcUa_VariantArray& array = value.Value.Array;
    const std::size_t count = array.Data == nullptr ? 0 : sizeOf(array.Length);
    std::size_t bytes = count * usualElement;
    if (value.Datatype == OpcUaType_String)
        for (std::size_t i = 0; i < count; ++i)
            bytes += sizeOf(static_cast<const OpcUa_String*>(array.Data)[i].Length);
    else if (value.Datatype == OpcUaType_ByteString || value.Datatype == OpcUaType_XmlElement)
        for (std::size_t i = 0; i < count; ++i)
            bytes += sizeOf(static_cast<const OpcUa_ByteString*>(array.Data)[i].Length);
    return bytes;
}

// What a value has outside itself, roughly: a bound, no bookkeeping.
[[nodiscard]] std::size_t bytesOutside(const OpcUa_Variant& value)
{
    if (value.ArrayType != OpcUa_VariantArrayType_Scalar)
        return bytesOfArray(value);
    switch (value.Datatype) {
    case OpcUaType_String:
        return sizeOf(value.Value.String.Length);
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return sizeOf(value.Value.ByteString.Length);
    case OpcUaType_ExtensionObject:
        return value.Value.ExtensionObject != nullptr &&
                       value.Value.ExtensionObject->Encoding != OpcUa_ExtensionObjectEncoding_EncodeableObject
                   ? sizeOf(value.Value.ExtensionObject->Body.Binary.Length)
                   : sizeof(OpcUa_ExtensionObject);
    default:
        return 0;
    }
}

} // namespace

AllSink::AllSink(Ready ready, std::size_t capacity, std::shared_ptr<HandOverPacer> pacer)
    : Sink(std::move(ready), std::move(pacer)), m_capacity(std::max<std::size_t>(capacity, 1)),
      m_byteLimit(unlimited)
{
}

AllSink::AllSink(Ready ready, const Record& record, std::shared_ptr<HandOverPacer> pacer)
    : Sink(std::move(ready), std::move(pacer), true), m_capacity(std::max<std::size_t>(record.capacity, 1)),
      m_byteLimit(record.bytes)
{
}

AllSink::Batch AllSink::take()
{
    Batch batch;
    const HeldLock lock(m_mutex);
    batch.values.swap(m_values);
    batch.incidents.swap(m_incidents);
    for (Incident& incident : batch.incidents)
        incident.place = incident.place > m_before ? incident.place - m_before : 0;
    m_before += batch.values.size();
    m_bytes = 0;
    batch.changes = takeChangesLocked();
    batch.loss = std::exchange(m_loss, {});
    batch.overflowed = batch.loss.values;
    return batch;
}

std::size_t AllSink::size()
{
    const HeldLock lock(m_mutex);
    return m_values.size();
}

void AllSink::putLocked(const SinkItem& item, OpcUa_DataValue& value, const Arrival& arrival)
{
    assertLocked(m_mutex);
    if (m_byteLimit != unlimited) {
        m_bytes += bytesOutside(value.Value);
        while (m_bytes > m_byteLimit && !m_values.empty())
            loseFirstLocked();
    }
    if (m_values.size() >= m_capacity)
        loseFirstLocked();
    Value& added = m_values.emplace_back();
    added.key = item.key;
    added.origin = item.origin;
    added.received = arrival.received;
    added.sequenceNumber = arrival.sequenceNumber;
    added.value.attach(&value);
}

void AllSink::loseFirstLocked()
{
    assertLocked(m_mutex);
    const Value& first = m_values.front();
    if (m_byteLimit != unlimited)
        m_bytes -= std::min(m_bytes, bytesOutside(*first.value.value().get()));
    if (m_loss.values++ == 0)
        m_loss.from = first.received;
    m_loss.to = first.received;
    m_values.pop_front();
    ++m_before;
}

void AllSink::noteLocked(const Incident& incident)
{
    assertLocked(m_mutex);
    if (m_incidents.size() >= incidentCapacity) {
        m_incidents.pop_front();
        ++m_loss.incidents;
    }
    m_incidents.push_back(incident);
    m_incidents.back().place = m_before + m_values.size();
}

void AllSink::dropLocked(std::span<const SinkItem> items)
{
    assertLocked(m_mutex);
    if (m_values.empty() || keepsIncidents())
        return;
    std::unordered_set<OpcUa_UInt64> gone;
    for (const SinkItem& item : items)
        gone.insert(item.origin);
    std::erase_if(m_values, [&gone](const Value& value) { return gone.contains(value.origin); });
}

void AllSink::clearLocked()
{
    assertLocked(m_mutex);
    m_values.clear();
    m_incidents.clear();
}

} // namespace monitoring
