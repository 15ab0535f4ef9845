// Plots as pictures and as text.
#pragma once
#include <uawidgets/plot/qlumsamplestore.h>

#include <QImage>
#include <QSize>
#include <QString>

#include <cstddef>
#include <functional>
#include <vector>

class QIODevice;
class QlumPlotArea;
class QWidget;
class QwtPlot;

/// A plot with its scales and legend as a picture; size in pixels, drawn larger by a factor for fine screens
/// and paper. GUI thread.
[[nodiscard]] QImage qlumPlotImage(QwtPlot* plot, const QSize& size, double scale = 1.0);

/// The same as SVG; size in pixels of 1/96 inch. False when the device does not take it.
[[nodiscard]] bool qlumWritePlotSvg(QwtPlot* plot, const QSize& size, QIODevice* device);

/// What the ending of a file's name asks for.
enum class QlumPlotFile {
    Unknown, ///< nothing that a plot can be
    Png,     ///< a picture
    Svg,     ///< a drawing
    Csv      ///< text
};
/// Of a name, whatever the case of its ending.
[[nodiscard]] QlumPlotFile qlumPlotFileOf(const QString& fileName);

/// Writes a plot of that size as PNG or SVG; the picture is drawn twice as large. What was there stays unless
/// all was written. The reason when that failed, else empty. GUI thread.
[[nodiscard]] QString qlumWritePlotPicture(QwtPlot* plot, const QSize& size, const QString& fileName);

/// The user's choice of a file for a plot; empty for none. The text says what CSV holds: "Samples as text".
[[nodiscard]] QString qlumAskForPlotFile(QWidget* parent, const QString& csvText);

/// What the user reads of a file that was not written, for that reason; without one its ending is unknown.
[[nodiscard]] QString qlumPlotFileFault(const QString& fileName, const QString& reason);

/// What a curve gives to a file: a copy, so that samples may go on arriving.
struct QlumCurveSamples
{
    QString name;            ///< of the curve
    QString unit;            ///< may be empty
    QlumSampleStore samples; ///< shares its blocks with the curve
};

/// Those of the curves that are visible.
[[nodiscard]] std::vector<QlumCurveSamples> qlumVisibleSamples(const QlumPlotArea& area);

/// Samples as CSV (RFC 4180), UTF-8, a line each: time (UTC, up to 100 ns), name, unit, value, quality,
/// status, time of the server. A name that begins like a formula stays text: an apostrophe goes before it.
/// Every thousand lines the function is told how many are written; it returns false to end there. False when
/// that, or the device, failed. Any thread.
[[nodiscard]] bool qlumWritePlotCsv(const std::vector<QlumCurveSamples>& curves, QIODevice* device,
                                    const std::function<bool(std::size_t lines)>& goesOn);
