#include <uawidgets/plot/qlumsamplestore.h>

#include <uawidgets/plot/qlumsampleblock_p.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace {
constexpr std::size_t blockSize = QlumSampleBlock::capacity;
constexpr std::int64_t lastDate = 2'650'467'743'999'999'999; // the end of 9999
} // namespace

// ---- the block that grows

QlumSampleStore::Tail::Tail() : block(std::make_unique<QlumSampleBlock>()) {}
QlumSampleStore::Tail::Tail(const Tail& other) : block(std::make_unique<QlumSampleBlock>(*other.block)) {}
QlumSampleStore::Tail::Tail(Tail&& other) noexcept = default;
QlumSampleStore::Tail::~Tail() = default;

QlumSampleStore::Tail& QlumSampleStore::Tail::operator=(Tail other) noexcept
{
    block.swap(other.block);
    return *this;
}

// ---- samples that arrive

QlumSampleStore::QlumSampleStore(std::size_t capacity) : m_capacity(std::max<std::size_t>(capacity, 1)) {}

void QlumSampleStore::append(const QlumSample& received)
{
    QlumSample sample = received;
    sample.time = std::clamp<std::int64_t>(sample.time, 0, lastDate);
    ++m_received;
    ++m_revision;
    if (isEmpty() || sample.time >= timeAt(size() - 1)) {
        appendInOrder(sample);
        ++m_inOrder;
        return;
    }
    m_late.push_back(sample);
    if (m_late.size() >= m_capacity) // nobody sorts: memory is bounded all the same
        adopt(sorted());
}

void QlumSampleStore::append(std::span<const QlumSample> samples)
{
    for (const QlumSample& sample : samples)
        append(sample);
}

void QlumSampleStore::appendInOrder(const QlumSample& sample)
{
    if (m_tail.block->isFull()) {
        m_full.push_back(std::move(m_tail.block));
        m_tail.block = std::make_unique<QlumSampleBlock>();
    }
    m_tail.block->append(sample);
    if (size() <= m_capacity)
        return;
    ++m_first;
    if (m_first == blockSize && !m_full.empty()) {
        m_full.pop_front();
        m_first = 0;
    }
}

void QlumSampleStore::clear()
{
    const std::uint64_t revision = m_revision, generation = m_generation;
    *this = QlumSampleStore(m_capacity);
    m_revision = revision + 1;
    m_generation = generation + 1;
}

// ---- samples that are there

std::size_t QlumSampleStore::size() const noexcept
{
    return m_full.size() * blockSize + m_tail.block->size() - m_first;
}

std::uint64_t QlumSampleStore::dropped() const noexcept
{
    return m_received - size() - m_late.size();
}

const QlumSampleBlock& QlumSampleStore::block(std::size_t number) const
{
    return number < m_full.size() ? *m_full[number] : *m_tail.block;
}

QlumSampleStore::Place QlumSampleStore::placeOf(std::size_t index) const
{
    const std::size_t number = (m_first + index) / blockSize;
    return {&block(number), (m_first + index) % blockSize, number};
}

QlumSample QlumSampleStore::at(std::size_t index) const
{
    const Place place = placeOf(index);
    return place.block->at(place.offset);
}

std::int64_t QlumSampleStore::timeAt(std::size_t index) const
{
    const Place place = placeOf(index);
    return place.block->time(place.offset);
}

std::size_t QlumSampleStore::lowerBound(std::int64_t time, std::size_t from) const
{
    if (from >= size())
        return size();
    Place place = placeOf(from);
    if (place.block->lastTime() < time) {
        // which block, then where in it; most searches of a drawing end in the block that they begin in
        std::size_t low = place.blockNumber + 1, high = m_full.size() + (m_tail.block->size() > 0 ? 1 : 0);
        while (low < high) {
            const std::size_t middle = low + (high - low) / 2;
            if (block(middle).lastTime() < time)
                low = middle + 1;
            else
                high = middle;
        }
        if (low > m_full.size() || block(low).size() == 0)
            return size();
        place = {&block(low), 0, low};
    }
    return place.blockNumber * blockSize + place.block->lowerBound(time, place.offset) - m_first;
}

QlumSampleSummary QlumSampleStore::summary(std::size_t first, std::size_t last) const
{
    QlumSampleSummary result;
    while (first < last) {
        const Place place = placeOf(first);
        const std::size_t count = std::min(last - first, blockSize - place.offset);
        QlumSampleSummary part;
        place.block->summarize(place.offset, place.offset + count, 0, part);
        result.traits |= part.traits;
        if (part.minimum < result.minimum) {
            result.minimum = part.minimum;
            result.minimumAt = first - place.offset + part.minimumAt;
        }
        if (part.maximum > result.maximum) {
            result.maximum = part.maximum;
            result.maximumAt = first - place.offset + part.maximumAt;
        }
        first += count;
    }
    return result;
}

std::size_t QlumSampleStore::findFirst(QlumSampleTrait trait, std::size_t first, std::size_t last) const
{
    while (first < last) {
        const Place place = placeOf(first);
        const std::size_t end = place.offset + std::min(last - first, blockSize - place.offset);
        const std::size_t found = place.block->findFirst(trait, place.offset, end);
        if (found != end)
            return first + found - place.offset;
        first += end - place.offset;
    }
    return last;
}

std::size_t QlumSampleStore::findLast(QlumSampleTrait trait, std::size_t first, std::size_t last) const
{
    const std::size_t none = last;
    while (first < last) {
        const Place place = placeOf(last - 1);
        const std::size_t end = place.offset + 1;
        const std::size_t begin = end - std::min(last - first, end);
        const std::size_t found = place.block->findLast(trait, begin, end);
        if (found != end)
            return last - (end - found);
        last -= end - begin;
    }
    return none;
}

// ---- samples that come late

// What lies in the first blocks, shared with this store.
QlumSampleStore QlumSampleStore::keptBefore(std::size_t blocks) const
{
    QlumSampleStore result(m_capacity);
    result.m_full.assign(m_full.begin(), m_full.begin() + static_cast<std::ptrdiff_t>(blocks));
    result.m_first = blocks > 0 ? m_first : 0;
    return result;
}

QlumSampleStore QlumSampleStore::sorted() const
{
    if (m_late.empty())
        return *this;
    std::vector<QlumSample> late = m_late;
    std::stable_sort(late.begin(), late.end(),
                     [](const QlumSample& left, const QlumSample& right) { return left.time < right.time; });
    const std::size_t blocks = std::min((m_first + lowerBound(late.front().time)) / blockSize, m_full.size());
    QlumSampleStore result = keptBefore(blocks);
    auto next = late.cbegin();
    for (std::size_t index = blocks > 0 ? blocks * blockSize - m_first : 0; index < size(); ++index) {
        const QlumSample sample = at(index);
        for (; next != late.cend() && next->time < sample.time; ++next)
            result.appendInOrder(*next);
        result.appendInOrder(sample);
    }
    for (; next != late.cend(); ++next)
        result.appendInOrder(*next);
    result.m_received = m_received;
    result.m_inOrder = m_inOrder;
    result.m_revision = m_revision;
    result.m_generation = m_generation;
    result.m_lateTaken = late.size();
    return result;
}

bool QlumSampleStore::adopt(QlumSampleStore sorted)
{
    if (sorted.m_generation != m_generation)
        return false;
    const auto newer =
        static_cast<std::size_t>(std::min<std::uint64_t>(m_inOrder - sorted.m_inOrder, size()));
    for (std::size_t index = size() - newer; index < size(); ++index)
        sorted.appendInOrder(at(index));
    sorted.m_late.assign(m_late.begin() + static_cast<std::ptrdiff_t>(sorted.m_lateTaken), m_late.end());
    sorted.m_received = m_received;
    sorted.m_inOrder = m_inOrder;
    sorted.m_revision = m_revision + 1;
    sorted.m_generation = m_generation + 1;
    sorted.m_lateTaken = 0;
    *this = std::move(sorted);
    return true;
}
