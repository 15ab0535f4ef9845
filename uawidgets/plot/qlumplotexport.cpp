#include <uawidgets/plot/qlumplotexport.h>

#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumsamplestore.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QByteArray>
#include <QFileDialog>
#include <QFileInfo>
#include <QIODevice>
#include <QImage>
#include <QLatin1Char>
#include <QLatin1String>
#include <QPainter>
#include <QPalette>
#include <QRect>
#include <QRectF>
#include <QSaveFile>
#include <QSize>
#include <QString>
#include <QSvgGenerator>
#include <QWidget>
#include <QtGlobal>
#include <qwt_plot.h>
#include <qwt_plot_renderer.h>
#include <qwt_scale_map.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <functional>

namespace {

constexpr std::size_t linesAtATime = 1000;
constexpr int screenResolution = 96;

// Remembers where the canvas and its values came to lie, for the value axes beside it.
class Renderer : public QwtPlotRenderer
{
public:
    void renderCanvas(const QwtPlot* plot, QPainter* painter, const QRectF& canvas,
                      const QwtScaleMap* maps) const override
    {
        m_canvas = canvas;
        m_map = maps[QwtPlot::yLeft];
        QwtPlotRenderer::renderCanvas(plot, painter, canvas, maps);
    }
    [[nodiscard]] QRectF canvas() const { return m_canvas; }
    [[nodiscard]] const QwtScaleMap& verticalMap() const { return m_map; }

private:
    mutable QRectF m_canvas;
    mutable QwtScaleMap m_map;
};

void paintPlot(QwtPlot* plot, QPainter* painter, const QSize& size)
{
    painter->fillRect(QRectF({0, 0}, size), plot->palette().color(QPalette::Window));
    auto* area = qobject_cast<QlumPlotArea*>(plot);
    const double scales = area != nullptr ? area->valueScalesWidth() : 0;
    Renderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
    const QRectF room =
        QRectF({0, 0}, size).marginsRemoved(plot->contentsMargins()); // which Qwt leaves out here
    renderer.render(plot, painter, room.adjusted(scales, 0, 0, 0));
    if (area != nullptr)
        area->drawValueScales(painter, renderer.canvas(), renderer.verticalMap());
    // rendering sets scales to the size of the picture
    plot->updateLayout();
    plot->replot();
}

const char* qualityOf(const QlumSample& sample)
{
    if (sample.isBad())
        return "Bad";
    return sample.isUncertain() ? "Uncertain" : "Good";
}

QByteArray csvLine(const QlumSample& sample, const QByteArray& nameAndUnit)
{
    const UaString time = UaDateTime(sample.time).toFullString();
    const UaString serverTime =
        sample.serverTime == 0 ? UaString() : UaDateTime(sample.serverTime).toFullString();
    std::array<char, 32> number{};
    char* end = number.data();
    if (std::isfinite(sample.value))
        end = std::to_chars(number.data(), number.data() + number.size(), sample.value).ptr;
    QByteArray line(time.toUtf8());
    line.append(',').append(nameAndUnit).append(number.data(), static_cast<int>(end - number.data()));
    line.append(',').append(qualityOf(sample)).append(",0x");
    line.append(QByteArray::number(sample.status, 16).rightJustified(8, '0'));
    line.append(',').append(serverTime.toUtf8()).append("\r\n");
    return line;
}

} // namespace

QImage qlumPlotImage(QwtPlot* plot, const QSize& size, double scale)
{
    QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.setDevicePixelRatio(scale);
    QPainter painter(&image);
    paintPlot(plot, &painter, size);
    return image;
}

bool qlumWritePlotSvg(QwtPlot* plot, const QSize& size, QIODevice* device)
{
    QSvgGenerator generator;
    generator.setOutputDevice(device);
    generator.setSize(size);
    generator.setViewBox(QRect({0, 0}, size));
    generator.setResolution(screenResolution);
    QPainter painter;
    if (!painter.begin(&generator))
        return false;
    paintPlot(plot, &painter, size);
    return painter.end();
}

QlumPlotFile qlumPlotFileOf(const QString& fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("png"))
        return QlumPlotFile::Png;
    if (suffix == QLatin1String("svg"))
        return QlumPlotFile::Svg;
    return suffix == QLatin1String("csv") ? QlumPlotFile::Csv : QlumPlotFile::Unknown;
}

QString qlumWritePlotPicture(QwtPlot* plot, const QSize& size, const QString& fileName)
{
    constexpr double pictureScale = 2;
    QSaveFile file(fileName);
    const auto write = [&] {
        return qlumPlotFileOf(fileName) == QlumPlotFile::Svg
                   ? qlumWritePlotSvg(plot, size, &file)
                   : qlumPlotImage(plot, size, pictureScale).save(&file, "PNG");
    };
    const bool isWritten = file.open(QIODevice::WriteOnly) && write() && file.commit();
    return isWritten ? QString() : file.errorString();
}

QString qlumAskForPlotFile(QWidget* parent, const QString& csvText)
{
    return QFileDialog::getSaveFileName(
        parent, QlumPlot::tr("Export Plot"), QString(),
        QlumPlot::tr("Picture (*.png);;Drawing (*.svg);;%1 (*.csv)").arg(csvText));
}

QString qlumPlotFileFault(const QString& fileName, const QString& reason)
{
    if (reason.isEmpty())
        return QlumPlot::tr("%1 was not written: a plot can be a .png, .svg or .csv file.").arg(fileName);
    return QlumPlot::tr("%1 was not written: %2. Choose another folder, or make room.").arg(fileName, reason);
}

std::vector<QlumCurveSamples> qlumVisibleSamples(const QlumPlotArea& area)
{
    std::vector<QlumCurveSamples> visible;
    for (const QlumPlotCurve* curve : area.curves())
        if (curve->isVisible())
            visible.push_back({curve->name(), curve->unit(), curve->samples()});
    return visible;
}

bool qlumWritePlotCsv(const std::vector<QlumCurveSamples>& curves, QIODevice* device,
                      const std::function<bool(std::size_t lines)>& goesOn)
{
    QByteArray part("Time,Name,Unit,Value,Quality,Status,Server Time\r\n");
    std::size_t lines = 0;
    for (const QlumCurveSamples& curve : curves) {
        const QByteArray nameAndUnit = qlumCsvField(curve.name) + ',' + qlumCsvField(curve.unit) + ',';
        for (std::size_t i = 0; i < curve.samples.size(); ++i) {
            part += csvLine(curve.samples.at(i), nameAndUnit);
            if (++lines % linesAtATime != 0)
                continue;
            if (device->write(part) != part.size() || !goesOn(lines))
                return false;
            part.clear();
        }
    }
    return device->write(part) == part.size();
}
