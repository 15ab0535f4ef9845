// A curve of samples on a plot.
#pragma once
#include <uawidgets/plot/qlumdecimation.h>
#include <uawidgets/plot/qlumplotcolors.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QColor>
#include <QMap>
#include <QPolygonF>
#include <QString>
#include <qwt_graphic.h>
#include <qwt_interval.h>
#include <qwt_plot_item.h>

#include <cstddef>
#include <cstdint>
#include <optional>

class QPainter;
class QRectF;
class QSizeF;
class QwtScaleMap;

/// How values between two samples are drawn.
enum class QlumCurveForm {
    Lines, ///< straight from one to the next
    Steps, ///< each holds until the next
};

/// Draws a store's samples as few points as the screen has room for, with breaks and marks for their quality.
/// Values are drawn in the curve's own range, which fills the height of the plot. GUI thread.
class QlumPlotCurve : public QwtPlotItem
{
public:
    /// Title and unit are plain text; unit may be empty.
    QlumPlotCurve(const QString& title, const QString& unit, QlumCurveForm form, std::size_t capacity);

    [[nodiscard]] QString name() const { return title().text(); }              ///< as given
    [[nodiscard]] const QString& unit() const { return m_unit; }               ///< as given
    [[nodiscard]] QlumSampleStore& samples() { return m_samples; }             ///< to add to
    [[nodiscard]] const QlumSampleStore& samples() const { return m_samples; } ///< to look at
    /// Number of the curve for its colour.
    void setNumber(int number) { m_number = number; }
    [[nodiscard]] int number() const { return m_number; } ///< as set
    /// Colours for the palette of the moment.
    void setColors(const QlumPlotColors& colors);
    /// A colour chosen for the curve; one of those that curves have by number follows the ground. Invalid:
    /// that of its number.
    void setOwnColor(const QColor& color);
    [[nodiscard]] QColor color() const; ///< of the line, on the ground of the moment
    /// Of the line, in pixels.
    void setWidth(int width);
    [[nodiscard]] int width() const { return m_width; } ///< as set; 1 at first
    /// Replaces that of the construction.
    void setForm(QlumCurveForm form);
    [[nodiscard]] QlumCurveForm form() const { return m_form; } ///< as set
    /// The range that the values usually have; invalid where nobody said.
    void setUsualRange(const QwtInterval& range) { m_usualRange = range; }
    [[nodiscard]] const QwtInterval& usualRange() const { return m_usualRange; } ///< as set
    /// Words for values, as for states: what the readings of the curve say besides the number.
    void setValueNames(const QMap<qint64, QString>& names) { m_valueNames = names; }
    [[nodiscard]] const QMap<qint64, QString>& valueNames() const { return m_valueNames; } ///< as set
    /// "Open (1)" for a value that has a name; else the number.
    [[nodiscard]] QString valueText(double value) const;
    /// The values at the bottom and the top of the plot.
    void setRange(const QwtInterval& range) { m_range = range; }
    [[nodiscard]] const QwtInterval& range() const { return m_range; } ///< as set

    /// The last sample at or before a time in milliseconds since 1970; none when it is a break or there is
    /// none.
    [[nodiscard]] std::optional<double> valueAt(double time) const;
    /// Of the values between two such times, those that hold at the first one and the next ones included.
    [[nodiscard]] QwtInterval extremes(double from, double to) const;
    /// First and last time; invalid without samples.
    [[nodiscard]] QwtInterval times() const;

    /// One of our items.
    int rtti() const override { return Rtti_PlotUserItem; }
    /// The maps are those of a plot whose vertical axis goes from 0 to 1.
    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
              const QRectF& canvas) const override;
    /// A line in the curve's colour.
    QwtGraphic legendIcon(int index, const QSizeF& size) const override;

private:
    struct Key
    {
        std::int64_t from = 0;
        std::int64_t to = 0;
        int columns = 0;
        std::uint64_t revision = 0;
        bool operator==(const Key&) const = default;
    };

    const QlumDecimatedCurve& decimated(const QwtScaleMap& xMap, const QRectF& canvas) const;
    void drawRun(QPainter* painter, QPolygonF& points, const QRectF& canvas) const;
    void drawMarks(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                   const QRectF& canvas) const;

    QString m_unit;
    QlumCurveForm m_form;
    QlumSampleStore m_samples;
    int m_number = 0;
    int m_width = 1;
    QwtInterval m_usualRange;
    QColor m_ownColor;
    QMap<qint64, QString> m_valueNames;
    QlumPlotColors m_colors;
    QwtInterval m_range{0, 1};
    mutable Key m_key;
    mutable QlumDecimatedCurve m_decimated;
    mutable QlumDecimationCache m_cache;
};
