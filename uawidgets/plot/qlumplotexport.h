// Plots as pictures and as text.
#pragma once
#include <QImage>
#include <QSize>
#include <QString>

#include <cstddef>
#include <functional>

class QIODevice;
class QlumPlotArea;
class QwtPlot;

/// A plot with its scales and legend as a picture; size in pixels, drawn larger by a factor for fine screens
/// and paper. GUI thread.
[[nodiscard]] QImage qlumPlotImage(QwtPlot* plot, const QSize& size, double scale = 1.0);

/// The same as SVG; size in pixels of 1/96 inch. False when the device does not take it.
[[nodiscard]] bool qlumWritePlotSvg(QwtPlot* plot, const QSize& size, QIODevice* device);

/// The samples of the visible curves as CSV (RFC 4180), UTF-8, a line each: time (UTC, up to 100 ns), name,
/// unit, value, quality, status. A name that begins like a formula stays text: an apostrophe goes before it.
/// Every thousand lines the function is told how many are written; it returns false to end there. False when
/// that, or the device, failed.
[[nodiscard]] bool qlumWritePlotCsv(const QlumPlotArea* area, QIODevice* device,
                                    const std::function<bool(std::size_t lines)>& goesOn);

/// A field of a line of CSV, quoted where needed.
[[nodiscard]] QString qlumPlotCsvField(const QString& text);
