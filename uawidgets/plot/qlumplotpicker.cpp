#include <uawidgets/plot/qlumplotpicker.h>

#include <app/api/qlumtext.h>
#include <uawidgets/plot/qlumdecimation.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QBrush>
#include <QColor>
#include <QDateTime>
#include <QEvent>
#include <QFont>
#include <QLatin1Char>
#include <QLocale>
#include <QMouseEvent>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QString>
#include <qwt_interval.h>
#include <qwt_picker.h>
#include <qwt_plot.h>
#include <qwt_scale_map.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

namespace {

constexpr double pickerReach = 12;           // pixels
constexpr std::size_t pickerSamples = 2'000; // looked at on each side of the pointer
constexpr int pickerDigits = 10;

double heightOf(const QwtScaleMap& map, const QlumPlotCurve& curve, double value)
{
    const QwtInterval& range = curve.range();
    return map.transform((value - range.minValue()) / range.width());
}

} // namespace

QlumPlotPicker::QlumPlotPicker(QlumPlotArea* area)
    : QwtPlotPicker(QwtPlot::xBottom, QwtPlot::yLeft, NoRubberBand, AlwaysOn, area->canvas()), m_area(area)
{
    setObjectName(QStringLiteral("plotPicker"));
}

std::optional<QlumPlotPicker::Catch> QlumPlotPicker::nearest(const QPointF& place) const
{
    const QwtScaleMap times = m_area->canvasMap(QwtPlot::xBottom), values = m_area->canvasMap(QwtPlot::yLeft);
    std::optional<Catch> best;
    double bestDistance = pickerReach;
    for (QlumPlotCurve* curve : m_area->curves()) {
        const QlumSampleStore& samples = curve->samples();
        if (!curve->isVisible())
            continue;
        const auto look = [&](std::size_t index) {
            const QlumSample sample = samples.at(index);
            const QPointF at(times.transform(qlumPlotTime(sample.time)),
                             heightOf(values, *curve, sample.value));
            const double distance = std::hypot(at.x() - place.x(), at.y() - place.y());
            if (!sample.isBreak() && distance <= bestDistance) {
                bestDistance = distance;
                best = Catch{curve, index, at};
            }
            return std::abs(at.x() - place.x()) <= pickerReach;
        };
        const std::size_t middle = samples.lowerBound(qlumSampleTime(times.invTransform(place.x())));
        const std::size_t end = std::min(samples.size(), middle + pickerSamples);
        for (std::size_t index = middle; index < end && look(index);)
            ++index;
        const std::size_t begin = middle - std::min(middle, pickerSamples);
        for (std::size_t index = middle; index > begin && look(index - 1);)
            --index;
    }
    return best;
}

QlumPlotCurve* QlumPlotPicker::curveAt(const QPointF& place) const
{
    const QwtScaleMap values = m_area->canvasMap(QwtPlot::yLeft);
    const double from = m_area->timeAt(place.x() - pickerReach), to = m_area->timeAt(place.x() + pickerReach);
    QlumPlotCurve* best = nullptr;
    double bestDistance = pickerReach;
    for (QlumPlotCurve* curve : m_area->curves()) {
        const std::optional<double> here =
            curve->isVisible() ? curve->valueAt(m_area->timeAt(place.x())) : std::nullopt;
        const QwtInterval around = here ? curve->extremes(from, to) : QwtInterval();
        if (!around.isValid())
            continue;
        // between its extremes here the line passes
        const double top = heightOf(values, *curve, around.maxValue());
        const double bottom = heightOf(values, *curve, around.minValue());
        const double distance = std::max({0.0, top - place.y(), place.y() - bottom});
        if (distance < bestDistance) {
            best = curve;
            bestDistance = distance;
        }
    }
    return best;
}

QString QlumPlotPicker::timeText(double time) const
{
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(std::llround(time), m_area->timeZone());
    return QLocale().toString(moment, qlumDateTimeFormat());
}

QString QlumPlotPicker::textAt(const QPointF& place) const
{
    if (m_catches) {
        if (const std::optional<Catch> caught = nearest(place)) {
            const QlumSample sample = caught->curve->samples().at(caught->index);
            return qlumTrackerText(caught->curve->name(), caught->curve->color(),
                                   caught->curve->valueText(sample.value),
                                   timeText(qlumPlotTime(sample.time)));
        }
    }
    const QlumPlotCurve* curve = curveAt(place);
    const bool hasAxis = !m_area->units().empty();
    const QwtInterval range = curve != nullptr ? curve->range()
                              : hasAxis        ? m_area->valueRange(0)
                                               : QwtInterval(0, 1);
    const double part = m_area->canvasMap(QwtPlot::yLeft).invTransform(place.y());
    const QString value = QLocale().toString(range.minValue() + part * range.width(), 'g', pickerDigits);
    return qlumTrackerText(curve != nullptr ? curve->name() : QString(),
                           curve != nullptr ? curve->color() : QColor(), value,
                           timeText(m_area->timeAt(place.x())));
}

QwtText QlumPlotPicker::trackerText(const QPoint& place) const
{
    QwtText text(textAt(place), QwtText::RichText);
    text.setColor(Qt::black); // the ground is white on every palette
    text.setBackgroundBrush(QBrush(QColor(0xff, 0xff, 0xff)));
    return text;
}

QRect QlumPlotPicker::trackerRect(const QFont& font) const
{
    QRect rect = QwtPlotPicker::trackerRect(font);
    const std::optional<Catch> caught = m_catches ? nearest(trackerPosition()) : std::nullopt;
    if (caught)
        rect.translate(caught->place.toPoint() - trackerPosition());
    const QRect room = pickArea().boundingRect().toRect();
    rect.moveLeft(std::clamp(rect.left(), room.left(), std::max(room.left(), room.right() - rect.width())));
    rect.moveTop(std::clamp(rect.top(), room.top(), std::max(room.top(), room.bottom() - rect.height())));
    return rect;
}

void QlumPlotPicker::widgetMouseMoveEvent(QMouseEvent* event)
{
    QwtPlotPicker::widgetMouseMoveEvent(event);
    const std::optional<Catch> caught = nearest(event->pos());
    emit sampleNear(caught ? caught->curve : nullptr, caught ? caught->index : 0);
}

void QlumPlotPicker::widgetLeaveEvent(QEvent* event)
{
    QwtPlotPicker::widgetLeaveEvent(event);
    emit sampleNear(nullptr, 0);
}

QString qlumTrackerText(const QString& name, const QColor& color, const QString& value, const QString& time)
{
    const auto line = [](const QString& text) {
        return QStringLiteral("&nbsp;%1&nbsp;").arg(text.toHtmlEscaped());
    };
    const auto digits = [](int part) {
        return QString::number(part, 16).rightJustified(2, QLatin1Char('0')).toUpper();
    };
    QString text = line(value) + QStringLiteral("<br>") + line(time);
    if (!name.isEmpty())
        text.prepend(QStringLiteral("<font color=\"#%1%2%3\">%4</font><br>")
                         .arg(digits(color.red()), digits(color.green()), digits(color.blue()), line(name)));
    return text;
}
