#include <uawidgets/plot/qlumplotcursors.h>

#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcolors.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumplotview.h>

#include <QChar>
#include <QLatin1Char>
#include <QLatin1String>
#include <QObject>
#include <QPen>
#include <QString>
#include <QtGlobal>
#include <qwt_plot.h>
#include <qwt_plot_marker.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

namespace {
constexpr int reach = 5; // pixels from which a cursor can be taken
constexpr double aboveCurves = 40;
} // namespace

std::optional<double> QlumCursorReading::difference() const
{
    return a && b ? std::optional(*b - *a) : std::nullopt;
}

QlumPlotCursors::QlumPlotCursors(QlumPlotArea* area, QObject* parent) : QObject(parent), m_area(area)
{
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        m_lines[i] = std::make_unique<QwtPlotMarker>();
        m_lines[i]->setLineStyle(QwtPlotMarker::VLine);
        m_lines[i]->setLabel(QwtText(i == 0 ? QStringLiteral("A") : QStringLiteral("B"), QwtText::PlainText));
        m_lines[i]->setLabelAlignment(Qt::AlignTop | Qt::AlignRight);
        m_lines[i]->setZ(aboveCurves);
        m_lines[i]->setVisible(false);
        m_lines[i]->attach(area);
    }
    connect(area, &QlumPlotArea::colorsChanged, this, &QlumPlotCursors::applyColors);
    applyColors();
}

QlumPlotCursors::~QlumPlotCursors()
{
    for (const auto& line : m_lines)
        line->detach();
}

void QlumPlotCursors::applyColors()
{
    const QlumPlotColors colors(m_area->palette());
    for (const auto& line : m_lines) {
        line->setLinePen(QPen(colors.cursor, 0));
        QwtText label = line->label();
        label.setColor(colors.text);
        line->setLabel(label);
    }
}

void QlumPlotCursors::setVisible(bool visible)
{
    m_visible = visible;
    const QlumPlotView& view = m_area->view();
    const auto isInSight = [&view](double time) { return view.from <= time && time <= view.to; };
    if (visible && !std::any_of(m_times.begin(), m_times.end(), isInSight))
        m_times = {view.from + (view.to - view.from) / 3, view.from + (view.to - view.from) * 2 / 3};
    place();
}

void QlumPlotCursors::setTime(int cursor, double time)
{
    m_times.at(static_cast<std::size_t>(cursor)) = time;
    place();
}

void QlumPlotCursors::place()
{
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        m_lines[i]->setXValue(m_times[i]);
        m_lines[i]->setVisible(m_visible);
    }
    m_area->replot();
    emit changed();
}

std::optional<int> QlumPlotCursors::cursorAt(int canvasX) const
{
    if (!m_visible)
        return std::nullopt;
    const auto distance = [&](int cursor) {
        return std::abs(m_area->canvasMap(QwtPlot::xBottom).transform(time(cursor)) - canvasX);
    };
    const int nearer = distance(1) <= distance(0) ? 1 : 0;
    return distance(nearer) <= reach ? std::optional(nearer) : std::nullopt;
}

std::vector<QlumCursorReading> QlumPlotCursors::readings() const
{
    std::vector<QlumCursorReading> result;
    for (const QlumPlotCurve* curve : m_area->curves())
        if (curve->isVisible())
            result.push_back(
                {curve->name(), curve->unit(), curve->valueAt(m_times[0]), curve->valueAt(m_times[1])});
    return result;
}

QString qlumDurationText(double milliseconds)
{
    const qint64 total = std::llround(std::abs(milliseconds));
    const QString sign = milliseconds < 0 && total > 0 ? QStringLiteral("-") : QString();
    const qint64 days = total / 86'400'000;
    const auto digits = [](qint64 number, int width) {
        return QString::number(number).rightJustified(width, QLatin1Char('0'));
    };
    return sign + (days > 0 ? QStringLiteral("%1 d ").arg(days) : QString()) +
           digits(total / 3'600'000 % 24, 2) + QLatin1Char(':') + digits(total / 60'000 % 60, 2) +
           QLatin1Char(':') + digits(total / 1000 % 60, 2) + QLatin1Char('.') + digits(total % 1000, 3);
}
