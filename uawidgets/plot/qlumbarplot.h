// Figures of measurements as bars.
#pragma once
#include <app/api/qlumactiontable.h>

#include <QList>
#include <QString>
#include <qwt_plot.h>

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

class QAction;
class QEvent;
class QIODevice;
class QlumMessageBar;
class QlumPlotEmptyText;
class QWidget;
class QwtPlotGrid;

/// A figure with its name.
struct QlumBar
{
    QString name;     ///< plain text
    double value = 0; ///< drawn from 0; what is not finite has no bar
};

/// How many values lie between two.
struct QlumHistogramBin
{
    double from = 0;       ///< included
    double to = 0;         ///< not included, but in the last bin
    std::size_t count = 0; ///< values in it
};

/// Values counted in bins of equal width from the smallest to the largest; equal values are in one bin. What
/// is not finite is left out. None for no values.
[[nodiscard]] std::vector<QlumHistogramBin> qlumHistogram(std::span<const double> values, int bins);

/// Shows bars with names or a histogram: whichever was set last. GUI thread.
class QlumBarPlot : public QwtPlot
{
    Q_OBJECT
public:
    /// Empty at first.
    explicit QlumBarPlot(QWidget* parent = nullptr);
    ~QlumBarPlot() override;

    /// The unit is written at the value axis.
    void setBars(std::vector<QlumBar> bars, const QString& unit);
    /// The unit is written at the axis of the values that were counted.
    void setHistogram(std::vector<QlumHistogramBin> bins, const QString& unit);
    /// What stands there while there is nothing to show. Plain texts.
    void setEmptyText(const QString& headline, const QString& hint);
    /// What is shown as CSV (RFC 4180), UTF-8. False when the device does not take it.
    [[nodiscard]] bool writeCsv(QIODevice* device) const;

    /// The commands, for menus and tool bars of the tool; they are in the context menu as well.
    [[nodiscard]] QList<QAction*> plotActions() const;
    /// Writes a file in the form of its ending: png, svg or csv. What was there stays unless all was written.
    void exportTo(const QString& fileName);

signals:
    /// A file was written.
    void exported(const QString& fileName);
    /// A file could not be written: what failed, as plain text. While nobody is connected, a message bar of
    /// the plot's own says it.
    void exportFailed(const QString& message);

protected:
    /// Colours follow the palette.
    void changeEvent(QEvent* event) override;

private:
    class Boxes;

    void applyColors();
    void showBoxes();
    void makeActions();
    [[nodiscard]] QString writeFile(const QString& fileName);

    QlumActionTable m_actions;
    QlumMessageBar* m_messages;
    std::vector<QlumBar> m_bars;
    std::vector<QlumHistogramBin> m_bins;
    std::unique_ptr<QwtPlotGrid> m_grid;
    std::unique_ptr<Boxes> m_boxes;
    std::unique_ptr<QlumPlotEmptyText> m_emptyText;
};
