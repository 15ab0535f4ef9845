#include <uawidgets/plot/qlumplotview.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

constexpr double shortest = 10; // ms; labels and places on the screen are still exact
constexpr double firstTime = -11'644'473'600'000.0;
constexpr double lastTime = 253'402'300'800'000.0;
constexpr std::size_t maximumEntries = 100;

QlumPlotView exchange(std::vector<QlumPlotView>& from, std::vector<QlumPlotView>& to, const QlumPlotView& now)
{
    to.push_back(now);
    QlumPlotView view = from.back();
    from.pop_back();
    return view;
}

} // namespace

QlumPlotView QlumPlotView::bounded() const
{
    QlumPlotView view = *this;
    if (!std::isfinite(from) || !std::isfinite(to) || !(from <= to))
        view.from = view.to = 0;
    const double length = std::clamp(view.to - view.from, shortest, lastTime - firstTime);
    const double middle = view.from + (view.to - view.from) / 2;
    view.from = std::clamp(middle - length / 2, firstTime, lastTime - length);
    view.to = view.from + length;
    return view;
}

QlumPlotView QlumPlotView::panned(double part) const
{
    QlumPlotView view = *this;
    const double distance = (to - from) * part;
    view.from += distance;
    view.to += distance;
    return view.bounded();
}

QlumPlotView QlumPlotView::zoomed(double factor, double place) const
{
    QlumPlotView view = *this;
    const double fixed = from + (to - from) * place;
    view.from = fixed - (fixed - from) * factor;
    view.to = fixed + (to - fixed) * factor;
    return view.bounded();
}

void QlumPlotHistory::leave(const QlumPlotView& view, bool goesOn)
{
    m_forward.clear();
    if (goesOn && !m_back.empty())
        return;
    m_back.push_back(view);
    if (m_back.size() > maximumEntries)
        m_back.erase(m_back.begin());
}

QlumPlotView QlumPlotHistory::back(const QlumPlotView& now)
{
    return exchange(m_back, m_forward, now);
}

QlumPlotView QlumPlotHistory::forward(const QlumPlotView& now)
{
    return exchange(m_forward, m_back, now);
}
