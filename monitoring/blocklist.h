// A list for many small things.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace monitoring {

/// Grows by blocks, so that what is in it stays where it is and hardly any memory is left over.
template <typename T>
class BlockList
{
public:
    /// Goes through a list from the first to the last.
    template <typename List, typename Element>
    class Iterator
    {
    public:
        Iterator(List& list, std::size_t place) : m_list(&list), m_place(place) {} ///< at a place
        Element& operator*() const { return (*m_list)[m_place]; }                  ///< what is there
        /// To the next place.
        Iterator& operator++()
        {
            ++m_place;
            return *this;
        }
        bool operator==(const Iterator& other) const { return m_place == other.m_place; } ///< of one list

    private:
        List* m_list;
        std::size_t m_place;
    };

    [[nodiscard]] std::size_t size() const { return m_size; } ///< elements
    [[nodiscard]] bool empty() const { return m_size == 0; }  ///< none
    T& operator[](std::size_t place)
    {
        return (*m_blocks[place / blockSize])[place % blockSize];
    } ///< below size
    /// The same.
    const T& operator[](std::size_t place) const { return (*m_blocks[place / blockSize])[place % blockSize]; }
    auto begin() { return Iterator<BlockList, T>(*this, 0); }                      ///< the first
    auto end() { return Iterator<BlockList, T>(*this, m_size); }                   ///< behind the last
    auto begin() const { return Iterator<const BlockList, const T>(*this, 0); }    ///< the first
    auto end() const { return Iterator<const BlockList, const T>(*this, m_size); } ///< behind the last

    /// Adds a new one at the end.
    T& add()
    {
        if (m_size % blockSize == 0)
            m_blocks.push_back(std::make_unique<Block>());
        return (*this)[m_size++];
    }
    /// Keeps the others in their order.
    template <typename Predicate>
    void removeIf(const Predicate& predicate)
    {
        BlockList kept;
        for (T& one : *this)
            if (!predicate(one))
                kept.add() = std::move(one);
        *this = std::move(kept);
    }
    /// The list is empty afterwards.
    [[nodiscard]] BlockList release()
    {
        BlockList all;
        std::swap(all.m_blocks, m_blocks);
        std::swap(all.m_size, m_size);
        return all;
    }

private:
    static constexpr std::size_t blockSize = 64;
    using Block = std::array<T, blockSize>;

    std::vector<std::unique_ptr<Block>> m_blocks;
    std::size_t m_size = 0;
};

} // namespace monitoring
