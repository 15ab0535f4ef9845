#pragma once
#include <cstddef>
#include <vector>

/// Asks for many nodes of a server that keeps fewer continuation points than there are nodes: those that got
/// none are asked again, as many at a time as got one before.
class QlumHistoryPortions
{
public:
    /// All of so many nodes at first.
    explicit QlumHistoryPortions(std::size_t nodes);

    /// Whom to ask now; empty when nobody is left, or when not even a single node gets a point.
    [[nodiscard]] const std::vector<std::size_t>& next();
    /// The server had no continuation point for a node of the portion that was asked last.
    void refuse(std::size_t node);
    /// Who has waited in vain once next() is empty.
    [[nodiscard]] const std::vector<std::size_t>& waiting() const { return m_waiting; }

private:
    std::vector<std::size_t> m_waiting;
    std::vector<std::size_t> m_asked;
    std::size_t m_size;
    std::size_t m_refused = 0;
};
