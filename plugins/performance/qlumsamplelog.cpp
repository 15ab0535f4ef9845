#include <plugins/performance/qlumsamplelog.h>

#include <algorithm>
#include <new>
#include <utility>

void QlumSampleLog::append(const QlumCallSample& sample)
{
    const std::lock_guard lock(m_mutex);
    const std::size_t size = m_size.load(std::memory_order_relaxed);
    try {
        if (size == m_blocks.size() * blockSize) {
            std::unique_ptr<Block> block(new Block); // not nulled: it is written before it is read
            m_blocks.push_back(std::move(block));
        }
    } catch (const std::bad_alloc&) {
        ++m_lost;
        return;
    }
    (*m_blocks.back())[size % blockSize] = sample;
    m_size.store(size + 1, std::memory_order_release);
}

std::vector<QlumCallSample> QlumSampleLog::from(std::size_t first) const
{
    const std::lock_guard lock(m_mutex);
    const std::size_t size = m_size.load(std::memory_order_relaxed);
    std::vector<QlumCallSample> samples;
    if (first >= size)
        return samples;
    samples.reserve(size - first);
    for (std::size_t at = first; at < size;) {
        const std::size_t inBlock = at % blockSize;
        const std::size_t count = std::min(size - at, blockSize - inBlock);
        const auto from = m_blocks[at / blockSize]->begin() + static_cast<std::ptrdiff_t>(inBlock);
        samples.insert(samples.end(), from, from + static_cast<std::ptrdiff_t>(count));
        at += count;
    }
    return samples;
}
