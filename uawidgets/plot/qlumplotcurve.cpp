#include <uawidgets/plot/qlumplotcurve.h>

#include <uawidgets/plot/qlumdecimation.h>
#include <uawidgets/plot/qlumplotcolors.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QLocale>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <qwt_clipper.h>
#include <qwt_graphic.h>
#include <qwt_interval.h>
#include <qwt_painter.h>
#include <qwt_plot_item.h>
#include <qwt_scale_map.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

namespace {

constexpr double markSize = 3;
constexpr double markDistance = 2 * markSize + 1; // closer marks say nothing more
constexpr double aboveGrid = 20;
constexpr int digitsOfValue = 10;

// From a value to its place. The vertical map of a plot goes from 0 to 1, over the range of each curve.
struct Line
{
    double factor;
    double constant;

    [[nodiscard]] double operator()(double value) const { return factor * value + constant; }
};

Line placeOf(const QwtScaleMap& map, const QwtInterval& range)
{
    const double low = map.transform(0), high = map.transform(1);
    const double factor = (high - low) / range.width();
    return {factor, low - factor * range.minValue()};
}

} // namespace

QlumPlotCurve::QlumPlotCurve(const QString& title, const QString& unit, QlumCurveForm form,
                             std::size_t capacity)
    : QwtPlotItem(QwtText(title, QwtText::PlainText)), m_unit(unit), m_form(form), m_samples(capacity),
      m_colors(QPalette())
{
    setZ(aboveGrid);
    setItemAttribute(Legend, true);
}

void QlumPlotCurve::setColors(const QlumPlotColors& colors)
{
    m_colors = colors;
    legendChanged();
}

void QlumPlotCurve::setOwnColor(const QColor& color)
{
    m_ownColor = color;
    legendChanged();
    itemChanged();
}

QColor QlumPlotCurve::color() const
{
    return m_ownColor.isValid() ? m_colors.adapted(m_ownColor) : m_colors.curve(m_number);
}

void QlumPlotCurve::setWidth(int width)
{
    m_width = std::max(1, width);
    itemChanged();
}

void QlumPlotCurve::setForm(QlumCurveForm form)
{
    m_form = form;
    itemChanged();
}

// ---- values

QString QlumPlotCurve::valueText(double value) const
{
    const QString number = QLocale().toString(value, 'g', digitsOfValue);
    const auto name = m_valueNames.constFind(std::llround(value));
    const bool isNamed = name != m_valueNames.constEnd() && std::floor(value) == value;
    return isNamed ? QStringLiteral("%1 (%2)").arg(*name, number) : number;
}

std::optional<double> QlumPlotCurve::valueAt(double time) const
{
    const std::size_t behind = m_samples.lowerBound(qlumSampleTime(time) + 1);
    if (behind == 0)
        return std::nullopt;
    const QlumSample sample = m_samples.at(behind - 1);
    return sample.isBreak() ? std::nullopt : std::optional(sample.value);
}

QwtInterval QlumPlotCurve::extremes(double from, double to) const
{
    std::size_t first = m_samples.lowerBound(qlumSampleTime(from));
    const std::size_t behind = m_samples.lowerBound(qlumSampleTime(to), first);
    first -= first > 0 ? 1 : 0;
    const QlumSampleSummary summary = m_samples.summary(first, std::min(behind + 1, m_samples.size()));
    return summary.hasValue() ? QwtInterval(summary.minimum, summary.maximum) : QwtInterval();
}

QwtInterval QlumPlotCurve::times() const
{
    if (m_samples.isEmpty())
        return {};
    return {qlumPlotTime(m_samples.timeAt(0)), qlumPlotTime(m_samples.timeAt(m_samples.size() - 1))};
}

// ---- drawing

const QlumDecimatedCurve& QlumPlotCurve::decimated(const QwtScaleMap& xMap, const QRectF& canvas) const
{
    const Key key{qlumSampleTime(xMap.s1()), qlumSampleTime(xMap.s2()),
                  std::max(1, static_cast<int>(std::ceil(canvas.width()))), m_samples.revision()};
    if (!(key == m_key)) {
        m_decimated = qlumDecimate(m_samples, key.from, key.to, key.columns, &m_cache);
        m_key = key;
    }
    return m_decimated;
}

void QlumPlotCurve::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                         const QRectF& canvas) const
{
    const QlumDecimatedCurve& curve = decimated(xMap, canvas);
    const Line y = placeOf(yMap, m_range);
    const bool rounded = QwtPainter::roundingAlignment(painter);
    const auto place = [&](double time, double value) {
        const QPointF exact(xMap.transform(time), y(value));
        return rounded ? QPointF(std::round(exact.x()), std::round(exact.y())) : exact;
    };

    painter->save();
    painter->setPen(QPen(color(), m_width == 1 ? 0 : m_width));
    QPolygonF points;
    for (std::size_t run = 0; run < curve.runs.size(); ++run) {
        const std::size_t end = run + 1 < curve.runs.size() ? curve.runs[run + 1] : curve.points.size();
        points.clear();
        for (std::size_t i = curve.runs[run]; i < end; ++i) {
            const QPointF point = place(curve.points[i].x(), curve.points[i].y());
            if (m_form == QlumCurveForm::Steps && !points.isEmpty())
                points.append({point.x(), points.last().y()});
            points.append(point);
        }
        if (m_form == QlumCurveForm::Steps && !std::isnan(curve.ends[run]))
            points.append({place(curve.ends[run], 0).x(), points.last().y()});
        drawRun(painter, points, canvas);
    }
    drawMarks(painter, xMap, yMap, canvas);
    painter->restore();
}

// Lines end at the border here: far outside, a paint engine's numbers overflow.
void QlumPlotCurve::drawRun(QPainter* painter, QPolygonF& points, const QRectF& canvas) const
{
    if (points.size() == 1) {
        if (canvas.contains(points.first()))
            painter->fillRect(QRectF(points.first().x() - 1, points.first().y() - 1, 3, 3), color());
        return;
    }
    const QRectF room = canvas.adjusted(-10, -10, 10, 10);
    if (room.contains(points.boundingRect()))
        QwtPainter::drawPolyline(painter, points);
    else
        QwtPainter::drawPolyline(painter, QwtClipper::clipPolygonF(room, points, false));
}

void QlumPlotCurve::drawMarks(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                              const QRectF& canvas) const
{
    const Line y = placeOf(yMap, m_range);
    double last = -std::numeric_limits<double>::infinity();
    painter->setPen(QPen(m_colors.uncertain, 0));
    for (const QPointF& point : m_decimated.uncertain) {
        const QPointF place(xMap.transform(point.x()), y(point.y()));
        if (!canvas.contains(place) || place.x() < last + markDistance)
            continue;
        painter->drawEllipse(place, markSize, markSize);
        last = place.x();
    }
    // a bad sample has no value: its mark is a cross on the time axis
    last = -std::numeric_limits<double>::infinity();
    painter->setPen(QPen(m_colors.bad, 0));
    const double bottom = canvas.bottom() - markSize - 1;
    for (const double time : m_decimated.bad) {
        const double place = xMap.transform(time);
        if (place < canvas.left() || place > canvas.right() || place < last + markDistance)
            continue;
        painter->drawLine(QPointF(place - markSize, bottom - markSize),
                          QPointF(place + markSize, bottom + markSize));
        painter->drawLine(QPointF(place - markSize, bottom + markSize),
                          QPointF(place + markSize, bottom - markSize));
        last = place;
    }
}

QwtGraphic QlumPlotCurve::legendIcon(int, const QSizeF& size) const
{
    QwtGraphic graphic;
    graphic.setDefaultSize(size);
    QPainter painter(&graphic);
    painter.setPen(QPen(color(), 2));
    painter.drawLine(QPointF(0, size.height() / 2), QPointF(size.width(), size.height() / 2));
    return graphic;
}
