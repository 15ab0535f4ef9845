// What was measured, call by call.
#pragma once
#include <opcua/opcua_types.h>

#include <QtGlobal>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

/// One measured call, or one notification.
struct QlumCallSample
{
    quint32 begun = 0;           ///< since the run began, in units of 10 us
    float duration = 0;          ///< us; the delay of a notification may be negative
    float own = 0;               ///< us of that were this program's: making the request, reading the answer
    OpcUa_StatusCode status = 0; ///< of the service
};
static_assert(sizeof(QlumCallSample) == 16);

/// Samples of one run in the order in which their calls ended. It grows by blocks of the same size, so that a
/// long run costs no call a copy of what was there. Any thread.
class QlumSampleLog
{
public:
    /// Samples in a block.
    static constexpr std::size_t blockSize = 4000;

    /// Adds one; without memory it is counted as lost.
    void append(const QlumCallSample& sample);
    /// How many there are.
    [[nodiscard]] std::size_t size() const { return m_size.load(std::memory_order_acquire); }
    /// Those that found no memory.
    [[nodiscard]] std::size_t lost() const { return m_lost.load(); }
    /// Those from that one on.
    [[nodiscard]] std::vector<QlumCallSample> from(std::size_t first) const;

private:
    using Block = std::array<QlumCallSample, blockSize>;

    mutable std::mutex m_mutex;
    std::vector<std::unique_ptr<Block>> m_blocks;
    std::atomic<std::size_t> m_size{0};
    std::atomic<std::size_t> m_lost{0};
};
