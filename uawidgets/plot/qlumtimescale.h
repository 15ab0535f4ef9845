// The time axis of plots: round times of a zone, whatever its clocks do.
#pragma once
#include <QFont>
#include <QLocale>
#include <QString>
#include <QTimeZone>
#include <qwt_scale_div.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_engine.h>
#include <qwt_text.h>

#include <vector>

/// Round times between two, in milliseconds since 1970, UTC.
struct QlumTimeTicks
{
    double step = 0;           ///< milliseconds from one to the next; months and years are nominal
    std::vector<double> major; ///< rising
};

/// At most so many round times of the zone between two, ends included: full hours are those of its clocks,
/// days begin at its midnight, of an hour that comes twice both are there. Steps reach from 1 ms to
/// centuries.
[[nodiscard]] QlumTimeTicks qlumTimeTicks(double from, double to, int maximumCount, const QTimeZone& zone);

/// A time as fine as a step asks: years, months, days, minutes, seconds or milliseconds; in the locale's
/// order.
[[nodiscard]] QString qlumTimeLabel(double time, double step, const QTimeZone& zone, const QLocale& locale);

/// Makes round times for Qwt.
class QlumTimeScaleEngine : public QwtScaleEngine
{
public:
    /// Round times are those of the zone.
    explicit QlumTimeScaleEngine(const QTimeZone& zone);

    /// Only the step: the ends are times that were asked for.
    void autoScale(int maximumSteps, double& from, double& to, double& step) const override;
    /// Major ticks; the step comes from their number.
    QwtScaleDiv divideScale(double from, double to, int maximumMajor, int maximumMinor,
                            double step = 0.0) const override;

private:
    QTimeZone m_zone;
};

/// Writes times, and the date below the first and below each that begins another day.
class QlumTimeScaleDraw : public QwtScaleDraw
{
public:
    /// Times are those of the zone.
    explicit QlumTimeScaleDraw(const QTimeZone& zone);

    /// Plain text of one or two lines.
    [[nodiscard]] QwtText label(double time) const override;
    /// With room for what hangs below the line of a date, which numbers have not.
    [[nodiscard]] double extent(const QFont& font) const override;

private:
    QTimeZone m_zone;
};
