// What part of its curves a plot shows, and what it showed before.
#pragma once
#include <utility>
#include <vector>

/// A stretch of time and of each value axis.
struct QlumPlotView
{
    double from = 0; ///< milliseconds since 1970, UTC
    double to = 1;   ///< later than from
    /// Lowest and highest value of each axis; empty: what the curves need.
    std::vector<std::pair<double, double>> values;

    /// Exactly the same.
    bool operator==(const QlumPlotView&) const = default;

    /// With times that exist, at least 10 ms apart.
    [[nodiscard]] QlumPlotView bounded() const;
    /// Times moved by a part of their distance.
    [[nodiscard]] QlumPlotView panned(double part) const;
    /// Times wider by a factor (less than 1 for closer) around a place between 0 and 1.
    [[nodiscard]] QlumPlotView zoomed(double factor, double place) const;
};

/// Views to go back to, and forward again; the oldest of a hundred are forgotten.
class QlumPlotHistory
{
public:
    /// Call before a view is left for another that the user chose. A gesture of many small steps is one entry
    /// when the later steps say that they go on.
    void leave(const QlumPlotView& view, bool goesOn = false);
    /// The view before, in exchange for the one of the moment. Call only when there is one.
    [[nodiscard]] QlumPlotView back(const QlumPlotView& now);
    /// The view that was left by going back. Call only when there is one.
    [[nodiscard]] QlumPlotView forward(const QlumPlotView& now);
    [[nodiscard]] bool hasBack() const { return !m_back.empty(); } ///< whether there is a view before
    [[nodiscard]] bool hasForward() const
    {
        return !m_forward.empty();
    } ///< whether one was left by going back

private:
    std::vector<QlumPlotView> m_back;
    std::vector<QlumPlotView> m_forward;
};
