#include <uawidgets/plot/qlumbarplot.h>

#include <app/api/qlumactiontable.h>
#include <uawidgets/plot/qlumplotactions_p.h>
#include <uawidgets/plot/qlumplotcolors.h>
#include <uawidgets/plot/qlumplotemptytext.h>
#include <uawidgets/plot/qlumplotexport.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QAction>
#include <QByteArray>
#include <QColor>
#include <QEvent>
#include <QFont>
#include <QFontMetricsF>
#include <QFrame>
#include <QIODevice>
#include <QLayout>
#include <QList>
#include <QMetaMethod>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QSaveFile>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_item.h>
#include <qwt_scale_div.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_map.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace {

constexpr double halfBar = 0.4; // of the distance of two bars, 1
constexpr int edge = 6;         // around the numbers of the axes

// Names of bars in the place of numbers.
class NameScale : public QwtScaleDraw
{
public:
    explicit NameScale(std::vector<QString> names) : m_names(std::move(names))
    {
        enableComponent(Ticks, false);
    }

    [[nodiscard]] QwtText label(double value) const override
    {
        const auto place = static_cast<std::size_t>(std::lround(value));
        return QwtText(value >= 0 && place < m_names.size() ? m_names[place] : QString(), QwtText::PlainText);
    }
    // Qwt's leaves no room for what hangs below the line, as numbers have nothing there.
    [[nodiscard]] double extent(const QFont& font) const override
    {
        return QwtScaleDraw::extent(font) + QFontMetricsF(font).descent();
    }

private:
    std::vector<QString> m_names;
};

QwtText plain(const QString& text)
{
    return QwtText(text, QwtText::PlainText);
}

QByteArray numberText(double value)
{
    return std::isfinite(value) ? QByteArray::number(value, 'g', 17) : QByteArray();
}

// From one place to another, and from 0 to a height.
struct Column
{
    double from;
    double to;
    double height;
};

} // namespace

// Qwt's own bars are in headers that this language no longer takes.
class QlumBarPlot::Boxes : public QwtPlotItem
{
public:
    Boxes() { setItemAttribute(AutoScale, true); }

    std::vector<Column> boxes;
    QColor color;

    [[nodiscard]] QRectF boundingRect() const override
    {
        if (boxes.empty())
            return QwtPlotItem::boundingRect();
        double low = 0, high = 0;
        for (const Column& box : boxes) {
            low = std::min(low, box.height);
            high = std::max(high, box.height);
        }
        return {QPointF(boxes.front().from, low), QPointF(boxes.back().to, high)};
    }

    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
              const QRectF&) const override
    {
        for (const Column& box : boxes) {
            // a pixel apart, so that neighbours are told from each other
            const QPointF from(std::round(xMap.transform(box.from)), yMap.transform(box.height));
            const QPointF to(std::max(from.x() + 1, std::round(xMap.transform(box.to)) - 1),
                             yMap.transform(0));
            painter->fillRect(QRectF(from, to).normalized(), color);
        }
    }
};

std::vector<QlumHistogramBin> qlumHistogram(std::span<const double> values, int bins)
{
    std::vector<double> finite;
    std::copy_if(values.begin(), values.end(), std::back_inserter(finite),
                 [](double v) { return std::isfinite(v); });
    if (finite.empty() || bins < 1)
        return {};
    const auto [least, most] = std::minmax_element(finite.begin(), finite.end());
    const double from = *least, to = *most;
    if (from == to)
        return {{from, to, finite.size()}};
    // not by a width: the difference of the largest numbers is none
    const auto border = [&](int number) {
        const double part = static_cast<double>(number) / bins;
        return number == bins ? to : from * (1 - part) + to * part;
    };
    std::vector<QlumHistogramBin> result;
    for (int i = 0; i < bins; ++i)
        result.push_back({border(i), border(i + 1), 0});
    for (const double value : finite) {
        const auto above =
            std::upper_bound(result.begin(), result.end(), value,
                             [](double v, const QlumHistogramBin& bin) { return v < bin.from; });
        ++std::prev(above)->count;
    }
    return result;
}

QlumBarPlot::QlumBarPlot(QWidget* parent)
    : QwtPlot(parent), m_messages(new QlumMessageBar(this)), m_grid(std::make_unique<QwtPlotGrid>()),
      m_boxes(std::make_unique<Boxes>()), m_emptyText(std::make_unique<QlumPlotEmptyText>(*this))
{
    setAutoDelete(false); // items are members
    setAccessibleName(tr("Bar chart"));
    auto* ground = new QwtPlotCanvas(this);
    ground->setObjectName(QStringLiteral("canvas"));
    ground->setFrameStyle(QFrame::NoFrame);
    ground->setAccessibleName(tr("Bars"));
    setCanvas(ground);
    setContentsMargins(edge, edge, edge, edge);
    makeActions();
    m_grid->enableX(false);
    m_grid->attach(this);
    m_boxes->setZ(m_grid->z() + 1);
    m_boxes->attach(this);
    setEmptyText(tr("No figures yet"), tr("Bars appear here as soon as something was measured."));
    showBoxes();
}

QlumBarPlot::~QlumBarPlot()
{
    detachItems(QwtPlotItem::Rtti_PlotItem, false);
}

void QlumBarPlot::setBars(std::vector<QlumBar> bars, const QString& unit)
{
    m_bars = std::move(bars);
    m_bins.clear();
    m_boxes->boxes.clear();
    std::vector<QString> names;
    QList<double> ticks[QwtScaleDiv::NTickTypes];
    for (std::size_t i = 0; i < m_bars.size(); ++i) {
        const auto place = static_cast<double>(i);
        if (std::isfinite(m_bars[i].value))
            m_boxes->boxes.push_back({place - halfBar, place + halfBar, m_bars[i].value});
        names.push_back(m_bars[i].name);
        ticks[QwtScaleDiv::MajorTick].append(place);
    }
    setAxisScaleDraw(xBottom, new NameScale(std::move(names)));
    setAxisScaleDiv(xBottom,
                    QwtScaleDiv(-0.5, std::max(0.5, static_cast<double>(m_bars.size()) - 0.5), ticks));
    setAxisTitle(xBottom, QwtText());
    setAxisTitle(yLeft, plain(unit));
    showBoxes();
}

void QlumBarPlot::setHistogram(std::vector<QlumHistogramBin> bins, const QString& unit)
{
    m_bins = std::move(bins);
    m_bars.clear();
    m_boxes->boxes.clear();
    for (const QlumHistogramBin& bin : m_bins) {
        // equal values have a bin without width, which nobody would see
        const double margin = bin.from == bin.to ? std::max(0.5, std::abs(bin.from) * 1e-3) : 0;
        m_boxes->boxes.push_back({bin.from - margin, bin.to + margin, static_cast<double>(bin.count)});
    }
    setAxisScaleDraw(xBottom, new QwtScaleDraw);
    setAxisAutoScale(xBottom);
    setAxisTitle(xBottom, plain(unit));
    setAxisTitle(yLeft, plain(tr("Number")));
    showBoxes();
}

void QlumBarPlot::setEmptyText(const QString& headline, const QString& hint)
{
    m_emptyText->setText(headline, hint);
    applyColors();
}

void QlumBarPlot::showBoxes()
{
    m_emptyText->setVisible(m_bars.empty() && m_bins.empty());
    replot();
}

bool QlumBarPlot::writeCsv(QIODevice* device) const
{
    QByteArray text(m_bins.empty() ? "Name,Value\r\n" : "From,To,Number\r\n");
    for (const QlumBar& bar : m_bars)
        text.append(qlumCsvField(bar.name)).append(',').append(numberText(bar.value)).append("\r\n");
    for (const QlumHistogramBin& bin : m_bins) {
        text.append(numberText(bin.from)).append(',').append(numberText(bin.to)).append(',');
        text.append(QByteArray::number(static_cast<qulonglong>(bin.count))).append("\r\n");
    }
    return device->write(text) == text.size();
}

// ---- export

void QlumBarPlot::makeActions()
{
    // over the drawing, whose own parts Qwt lays out
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    layout->setContentsMargins(0, 0, 0, 0);
    m_messages->setAutoFillBackground(true);
    m_messages->raise();
    layout->addWidget(m_messages);
    layout->addStretch();
    m_actions = qlumBarPlotActions(this);
    connect(m_actions[QlumPlotAction::Export], &QAction::triggered, this, [this] {
        const QString name = qlumAskForPlotFile(this, tr("Figures as text"));
        if (!name.isEmpty())
            exportTo(name);
    });
    addActions(plotActions());
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

QList<QAction*> QlumBarPlot::plotActions() const
{
    return m_actions.list({QlumPlotAction::Export});
}

QString QlumBarPlot::writeFile(const QString& fileName)
{
    if (qlumPlotFileOf(fileName) != QlumPlotFile::Csv)
        return qlumWritePlotPicture(this, size(), fileName);
    QSaveFile file(fileName);
    const bool isWritten = file.open(QIODevice::WriteOnly) && writeCsv(&file) && file.commit();
    return isWritten ? QString() : file.errorString();
}

void QlumBarPlot::exportTo(const QString& fileName)
{
    const bool isKnown = qlumPlotFileOf(fileName) != QlumPlotFile::Unknown;
    const QString fault = isKnown ? writeFile(fileName) : QString();
    if (isKnown && fault.isEmpty()) {
        m_messages->dismiss();
        emit exported(fileName);
        return;
    }
    const QString message = qlumPlotFileFault(fileName, fault);
    if (isSignalConnected(QMetaMethod::fromSignal(&QlumBarPlot::exportFailed)))
        emit exportFailed(message);
    else
        m_messages->tell({QlumMessage::Error, {}, message, {}, {}, {}});
}

void QlumBarPlot::applyColors()
{
    const QlumPlotColors colors(palette());
    QPalette own = palette();
    own.setColor(QPalette::Window, colors.ground);
    canvas()->setPalette(own);
    m_grid->setPen(QPen(colors.grid, 0));
    m_boxes->color = colors.curve(0);
    m_emptyText->setColor(colors.text);
    replot();
}

void QlumBarPlot::changeEvent(QEvent* event)
{
    QwtPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_emptyText)
        applyColors();
}
