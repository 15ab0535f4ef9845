#include <uawidgets/plot/qlumplotarea.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <uawidgets/plot/qlumplotcolors.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumplotemptytext.h>
#include <uawidgets/plot/qlumplotview.h>
#include <uawidgets/plot/qlumtimescale.h>

#include <QDateTime>
#include <QEvent>
#include <QFontMetricsF>
#include <QFrame>
#include <QList>
#include <QMap>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QPoint>
#include <QRectF>
#include <QResizeEvent>
#include <QString>
#include <QTimeZone>
#include <QWidget>
#include <qwt_interval.h>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_div.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_engine.h>
#include <qwt_scale_map.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr double pixelsOfTimeLabel = 110;
constexpr double flatRectangle = 12; // pixels; lower ones choose times only
constexpr double scaleGap = 6;
constexpr int valueSteps = 8;

// The numbers of an axis, or the names of the states that they stand for.
class ValueScaleDraw : public QwtScaleDraw
{
public:
    void setNames(const QMap<qint64, QString>& names)
    {
        if (names == m_names)
            return;
        m_names = names;
        invalidateCache();
    }

    QwtText label(double value) const override
    {
        constexpr int shownCharacters = 16;
        if (m_names.isEmpty())
            return QwtScaleDraw::label(value);
        return QwtText(qlumSingleLine(qlumCutText(m_names.value(std::llround(value)), shownCharacters)),
                       QwtText::PlainText);
    }

private:
    QMap<qint64, QString> m_names;
};

// One tick for each name in sight.
QwtScaleDiv statesWithin(const QwtInterval& range, const QMap<qint64, QString>& names)
{
    QList<double> ticks[QwtScaleDiv::NTickTypes];
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        if (range.contains(static_cast<double>(name.key())))
            ticks[QwtScaleDiv::MajorTick].append(static_cast<double>(name.key()));
    return QwtScaleDiv(range.minValue(), range.maxValue(), ticks);
}

// Not a range of its own: where all values are equal there is room above and below.
QwtInterval widened(const QwtInterval& range)
{
    if (!range.isValid())
        return {0, 1};
    if (range.width() > 0)
        return range;
    const double margin = std::max(std::abs(range.minValue()) * 0.05, 0.5);
    return {range.minValue() - margin, range.maxValue() + margin};
}

} // namespace

QlumPlotArea::QlumPlotArea(QWidget* parent)
    : QwtPlot(parent), m_zone(QTimeZone::systemTimeZone()), m_grid(std::make_unique<QwtPlotGrid>()),
      m_emptyText(std::make_unique<QlumPlotEmptyText>(*this))
{
    auto* canvas = new QwtPlotCanvas(this);
    canvas->setFrameStyle(QFrame::NoFrame);
    canvas->setObjectName(QStringLiteral("canvas"));
    canvas->setAccessibleName(tr("Curves"));
    canvas->setFocusPolicy(Qt::StrongFocus);
    setCanvas(canvas);
    setAutoReplot(false);
    setAutoDelete(false); // items are members
    enableAxis(yLeft, false);
    setContentsMargins(0, fontMetrics().height(), fontMetrics().height(),
                       0); // for halves of the outermost labels
    setAxisScale(yLeft, 0, 1);
    m_grid->attach(this);
    setTimeZone(m_zone);
    applyColors();
    // a time that nobody wonders about while there is nothing to show
    const auto now = static_cast<double>(QDateTime::currentMSecsSinceEpoch());
    m_view = QlumPlotView{now - 60'000, now, {}};
    refresh();
}

QlumPlotArea::~QlumPlotArea()
{
    detachItems(QwtPlotItem::Rtti_PlotItem, false);
}

// ---- curves and axes

QlumPlotCurve* QlumPlotArea::addCurve(const QString& name, const QString& unit, QlumCurveForm form,
                                      std::size_t capacity)
{
    qlumAssertGuiThread();
    auto& curve = m_curves.emplace_back(std::make_unique<QlumPlotCurve>(name, unit, form, capacity));
    curve->setNumber(m_nextNumber++);
    curve->setColors(QlumPlotColors(palette()));
    static_cast<void>(axisOf(unit));
    curve->attach(this);
    refresh();
    return curve.get();
}

void QlumPlotArea::removeCurve(QlumPlotCurve* curve)
{
    qlumAssertGuiThread();
    curve->detach();
    std::erase_if(m_curves, [curve](const auto& one) { return one.get() == curve; });
    removeUnusedAxes();
    refresh();
}

std::vector<QlumPlotCurve*> QlumPlotArea::curves() const
{
    std::vector<QlumPlotCurve*> result;
    for (const auto& curve : m_curves)
        result.push_back(curve.get());
    return result;
}

std::vector<QString> QlumPlotArea::units() const
{
    std::vector<QString> result;
    for (const Axis& axis : m_axes)
        result.push_back(axis.unit);
    return result;
}

std::size_t QlumPlotArea::axisOf(const QString& unit)
{
    const auto found =
        std::find_if(m_axes.begin(), m_axes.end(), [&unit](const Axis& axis) { return axis.unit == unit; });
    if (found != m_axes.end())
        return static_cast<std::size_t>(found - m_axes.begin());
    Axis axis{unit, std::make_unique<ValueScaleDraw>(), QwtInterval(0, 1)};
    axis.scale->setAlignment(QwtScaleDraw::LeftScale);
    m_axes.push_back(std::move(axis));
    // chosen values stay; of the new axis nothing was chosen
    if (!m_view.values.empty()) {
        const QwtInterval range = neededRange(unit);
        m_view.values.emplace_back(range.minValue(), range.maxValue());
    }
    return m_axes.size() - 1;
}

void QlumPlotArea::removeUnusedAxes()
{
    for (std::size_t i = m_axes.size(); i-- > 0;) {
        const auto isOfAxis = [&](const auto& curve) { return curve->unit() == m_axes[i].unit; };
        if (std::any_of(m_curves.begin(), m_curves.end(), isOfAxis))
            continue;
        m_axes.erase(m_axes.begin() + static_cast<std::ptrdiff_t>(i));
        if (i < m_view.values.size())
            m_view.values.erase(m_view.values.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

// ---- view

void QlumPlotArea::setView(const QlumPlotView& view)
{
    m_view = view.bounded();
    refresh();
    emit viewChanged();
}

QlumPlotView QlumPlotArea::wholeView() const
{
    QwtInterval times;
    for (const auto& curve : m_curves)
        if (curve->isVisible())
            times |= curve->times();
    if (!times.isValid())
        return {m_view.from, m_view.to, {}};
    return QlumPlotView{times.minValue(), times.maxValue(), {}}.bounded();
}

double QlumPlotArea::timeAt(double canvasX) const
{
    return canvasMap(xBottom).invTransform(canvasX);
}

QlumPlotView QlumPlotArea::viewUnder(const QRectF& canvasRect) const
{
    QlumPlotView view = m_view;
    view.from = timeAt(canvasRect.left());
    view.to = timeAt(canvasRect.right());
    if (canvasRect.height() < flatRectangle)
        return view.bounded();
    const QwtScaleMap map = canvasMap(yLeft);
    const double low = map.invTransform(canvasRect.bottom()), high = map.invTransform(canvasRect.top());
    view.values.clear();
    for (const Axis& axis : m_axes) {
        const double bottom = axis.range.minValue(), height = axis.range.width();
        view.values.emplace_back(bottom + low * height, bottom + high * height);
    }
    return view.bounded();
}

QlumPlotView QlumPlotArea::viewMoved(const QPoint& distance) const
{
    const QwtScaleMap times = canvasMap(xBottom), values = canvasMap(yLeft);
    QlumPlotView view = m_view.panned(-distance.x() / std::max(1.0, std::abs(times.pDist())));
    const double part = distance.y() / std::max(1.0, std::abs(values.pDist()));
    for (auto& [low, high] : view.values) {
        const double height = high - low;
        low += part * height;
        high += part * height;
    }
    return view;
}

void QlumPlotArea::setShowsUsualRanges(bool shows)
{
    m_showsUsualRanges = shows;
    refresh();
}

void QlumPlotArea::setTimeZone(const QTimeZone& zone)
{
    m_zone = zone;
    setAxisScaleEngine(xBottom, new QlumTimeScaleEngine(zone));
    setAxisScaleDraw(xBottom, new QlumTimeScaleDraw(zone));
    setAxisTitle(xBottom, QwtText(zone == QTimeZone::utc() ? tr("UTC") : QString(), QwtText::PlainText));
    refresh();
}

void QlumPlotArea::setEmptyText(const QString& headline, const QString& hint)
{
    m_emptyText->setText(headline, hint);
    refresh();
}

// ---- painting

void QlumPlotArea::refresh()
{
    if (!m_emptyText)
        return;
    const bool empty = std::all_of(m_curves.begin(), m_curves.end(),
                                   [](const auto& curve) { return curve->samples().isEmpty(); });
    m_emptyText->setVisible(empty);
    applyRanges();
    applyTimes();
    applyGrid();
    replot();
}

void QlumPlotArea::replot()
{
    QwtPlot::replot();
    emit scalesChanged();
}

void QlumPlotArea::updateLayout()
{
    QwtPlot::updateLayout();
    emit scalesChanged();
}

void QlumPlotArea::applyTimes()
{
    const double width = canvas() == nullptr ? 0 : canvas()->width();
    setAxisMaxMajor(xBottom, std::max(2, static_cast<int>(width / pixelsOfTimeLabel)));
    setAxisScale(xBottom, m_view.from, m_view.to);
}

QwtInterval QlumPlotArea::neededRange(const QString& unit) const
{
    QwtInterval range;
    for (const auto& curve : m_curves)
        if (curve->isVisible() && curve->unit() == unit)
            range |= m_showsUsualRanges ? curve->extremes(m_view.from, m_view.to) | curve->usualRange()
                                        : curve->extremes(m_view.from, m_view.to);
    range = widened(range);
    double low = range.minValue(), high = range.maxValue(), step = 0;
    QwtLinearScaleEngine().autoScale(valueSteps, low, high, step);
    return low < high ? QwtInterval(low, high) : range;
}

// Those of all curves of the unit, as far as they agree and are few enough to be read.
QMap<qint64, QString> QlumPlotArea::stateNames(const QString& unit) const
{
    constexpr int mostStates = 20;
    const QlumPlotCurve* first = nullptr;
    for (const auto& curve : m_curves) {
        if (curve->unit() != unit || !curve->isVisible())
            continue;
        if (first == nullptr)
            first = curve.get();
        if (curve->valueNames() != first->valueNames())
            return {};
    }
    return first != nullptr && first->valueNames().size() <= mostStates ? first->valueNames()
                                                                        : QMap<qint64, QString>();
}

void QlumPlotArea::applyRanges()
{
    for (std::size_t i = 0; i < m_axes.size(); ++i) {
        Axis& axis = m_axes[i];
        axis.range = i < m_view.values.size()
                         ? widened(QwtInterval(m_view.values[i].first, m_view.values[i].second).normalized())
                         : neededRange(axis.unit);
        const QMap<qint64, QString> names = stateNames(axis.unit);
        static_cast<ValueScaleDraw*>(axis.scale.get())->setNames(names);
        axis.scale->setScaleDiv(names.isEmpty()
                                    ? QwtLinearScaleEngine().divideScale(axis.range.minValue(),
                                                                         axis.range.maxValue(), valueSteps, 5)
                                    : statesWithin(axis.range, names));
        for (const auto& curve : m_curves)
            if (curve->unit() == axis.unit)
                curve->setRange(axis.range);
    }
}

// The lines of the grid are those of the axis next to the canvas.
void QlumPlotArea::applyGrid()
{
    QList<double> ticks[QwtScaleDiv::NTickTypes];
    if (!m_axes.empty()) {
        const QwtInterval range = m_axes.front().range;
        for (const double tick : m_axes.front().scale->scaleDiv().ticks(QwtScaleDiv::MajorTick))
            ticks[QwtScaleDiv::MajorTick].append((tick - range.minValue()) / range.width());
    }
    setAxisScaleDiv(yLeft, QwtScaleDiv(0, 1, ticks));
}

void QlumPlotArea::applyColors()
{
    const QlumPlotColors colors(palette());
    if (auto* canvas = qobject_cast<QwtPlotCanvas*>(this->canvas())) {
        QPalette own = palette();
        own.setColor(QPalette::Window, colors.ground);
        canvas->setPalette(own);
    }
    m_grid->setPen(QPen(colors.grid, 0));
    m_emptyText->setColor(colors.text);
    for (const auto& curve : m_curves)
        curve->setColors(colors);
    emit colorsChanged();
}

void QlumPlotArea::changeEvent(QEvent* event)
{
    QwtPlot::changeEvent(event);
    if (!m_grid || (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange))
        return;
    applyColors();
    refresh();
}

void QlumPlotArea::resizeEvent(QResizeEvent* event)
{
    QwtPlot::resizeEvent(event);
    applyTimes();
    replot();
}

// ---- value axes

double QlumPlotArea::axisWidth(const Axis& axis) const
{
    return axis.scale->extent(font()) + (axis.unit.isEmpty() ? 0 : QFontMetricsF(font()).height()) + scaleGap;
}

double QlumPlotArea::valueScalesWidth() const
{
    double width = 0;
    for (const Axis& axis : m_axes)
        width += axisWidth(axis);
    return std::ceil(width);
}

void QlumPlotArea::drawValueScales(QPainter* painter, const QRectF& canvas, const QwtScaleMap& verticalMap)
{
    const double top = verticalMap.transform(1), length = std::max(1.0, verticalMap.transform(0) - top);
    painter->save();
    painter->setFont(font());
    double right = canvas.left() - 1;
    for (const Axis& axis : m_axes) {
        axis.scale->move(right, top);
        axis.scale->setLength(length);
        axis.scale->draw(painter, palette());
        const double extent = axis.scale->extent(font()), height = QFontMetricsF(font()).height();
        if (!axis.unit.isEmpty()) {
            painter->save();
            painter->setPen(palette().color(QPalette::WindowText));
            painter->translate(right - extent - height, canvas.bottom());
            painter->rotate(-90);
            painter->drawText(QRectF(0, 0, canvas.height(), height), Qt::AlignCenter | Qt::TextSingleLine,
                              axis.unit);
            painter->restore();
        }
        right -= axisWidth(axis);
    }
    painter->restore();
}
