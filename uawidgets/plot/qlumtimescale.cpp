#include <uawidgets/plot/qlumtimescale.h>

#include <QDate>
#include <QDateTime>
#include <QFont>
#include <QFontMetricsF>
#include <QList>
#include <QLocale>
#include <QString>
#include <QTime>
#include <QTimeZone>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

constexpr double second = 1000;
constexpr double minute = 60 * second;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;
constexpr double month = 30.4375 * day;
constexpr double year = 12 * month;
// of the dates that a sample can have, and a little more
constexpr double earliest = -1.2e13;
constexpr double latest = 2.6e14;

constexpr std::array<double, 36> steps{1,           2,           5,           10,      20,         50,
                                       100,         200,         500,         second,  2 * second, 5 * second,
                                       10 * second, 15 * second, 30 * second, minute,  2 * minute, 5 * minute,
                                       10 * minute, 15 * minute, 30 * minute, hour,    2 * hour,   3 * hour,
                                       6 * hour,    12 * hour,   day,         2 * day, 7 * day,    14 * day,
                                       month,       3 * month,   6 * month,   year,    2 * year,   5 * year};

QDateTime dateTime(double time, const QTimeZone& zone)
{
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::floor(std::clamp(time, earliest, latest))),
                                          zone);
}

double offset(double time, const QTimeZone& zone)
{
    return dateTime(time, zone).offsetFromUtc() * second;
}

double stepFor(double length, int maximumCount)
{
    const double least = length / std::max(maximumCount - 1, 1);
    for (const double step : steps)
        if (step >= least)
            return step;
    double step = 10 * year;
    for (int turn = 0; step < least; ++turn)
        step *= turn % 3 == 1 ? 2.5 : 2; // 10, 20, 50, 100 years
    return step;
}

// ---- times of a day

// Clocks are set by quarters of an hour at least, so a walk by those, or by the step where that is finer,
// meets every round time. A round time that follows too soon on another is the second one of an hour that
// comes twice.
std::vector<double> ticksOfDay(double from, double to, double step, const QTimeZone& zone)
{
    const double grain = std::min(step, 15 * minute);
    const double shift =
        std::fmod(offset(from, zone), grain); // offsets of former times have odd minutes and seconds
    std::vector<double> ticks;
    double time = std::floor((from + shift) / grain) * grain - shift;
    for (; time <= to; time += grain) {
        const double reading = time + offset(time, zone);
        const bool isRound = step < 15 * minute || std::fmod(std::fmod(reading, day) + day, step) == 0;
        if (time >= from && isRound && (ticks.empty() || time - ticks.back() > 0.75 * step))
            ticks.push_back(time);
    }
    return ticks;
}

// ---- days, months, years

QDate firstDate(const QDate& date, double step)
{
    if (step >= year) {
        const int years = static_cast<int>(std::lround(step / year));
        return QDate(std::max(date.year() / years * years, 1), 1, 1);
    }
    if (step >= month) {
        const int months = static_cast<int>(std::lround(step / month));
        return QDate(date.year(), (date.month() - 1) / months * months + 1, 1);
    }
    const qint64 days = std::llround(step / day);
    // weeks begin with Monday, as day 0 of the Julian calendar did
    return QDate::fromJulianDay(date.toJulianDay() / days * days);
}

QDate nextDate(const QDate& date, double step)
{
    if (step >= year)
        return date.addYears(static_cast<int>(std::lround(step / year)));
    if (step >= month)
        return date.addMonths(static_cast<int>(std::lround(step / month)));
    return date.addDays(std::llround(step / day));
}

std::vector<double> ticksOfDates(double from, double to, double step, const QTimeZone& zone)
{
    std::vector<double> ticks;
    QDate date = firstDate(dateTime(from, zone).date(), step);
    for (;; date = nextDate(date, step)) {
        // not midnight: where clocks are set at midnight, a day begins at another time
        const auto time = static_cast<double>(date.startOfDay(zone).toMSecsSinceEpoch());
        if (!date.isValid() || time > to)
            return ticks;
        if (time >= from)
            ticks.push_back(time);
    }
}

bool isSameDay(double left, double right, const QTimeZone& zone)
{
    return dateTime(left, zone).date() == dateTime(right, zone).date();
}

} // namespace

QlumTimeTicks qlumTimeTicks(double from, double to, int maximumCount, const QTimeZone& zone)
{
    from = std::max(from, earliest);
    to = std::min(to, latest);
    if (!(from < to))
        return {};
    const double step = stepFor(to - from, maximumCount);
    return {step, step < day ? ticksOfDay(from, to, step, zone) : ticksOfDates(from, to, step, zone)};
}

QString qlumTimeLabel(double time, double step, const QTimeZone& zone, const QLocale& locale)
{
    const QDateTime moment = dateTime(std::round(time), zone);
    if (step >= year)
        return QString::number(moment.date().year());
    if (step >= month)
        return locale.toString(moment.date(), QStringLiteral("MMM yyyy"));
    if (step >= day)
        return locale.toString(moment.date(), QLocale::ShortFormat);
    if (step >= minute)
        return locale.toString(moment.time(), QLocale::ShortFormat);
    const bool isWhole = step >= second;
    return moment.time().toString(isWhole ? QStringLiteral("HH:mm:ss") : QStringLiteral("HH:mm:ss.zzz"));
}

// ---- engine

QlumTimeScaleEngine::QlumTimeScaleEngine(const QTimeZone& zone) : m_zone(zone) {}

void QlumTimeScaleEngine::autoScale(int maximumSteps, double& from, double& to, double& step) const
{
    if (!(from < to)) {
        from -= second / 2;
        to = from + second;
    }
    step = qlumTimeTicks(from, to, maximumSteps, m_zone).step;
}

QwtScaleDiv QlumTimeScaleEngine::divideScale(double from, double to, int maximumMajor, int, double) const
{
    QList<double> ticks[QwtScaleDiv::NTickTypes];
    for (const double time : qlumTimeTicks(from, to, maximumMajor, m_zone).major)
        ticks[QwtScaleDiv::MajorTick].append(time);
    return QwtScaleDiv(from, to, ticks);
}

// ---- labels

QlumTimeScaleDraw::QlumTimeScaleDraw(const QTimeZone& zone) : m_zone(zone) {}

QwtText QlumTimeScaleDraw::label(double time) const
{
    const QList<double> ticks = scaleDiv().ticks(QwtScaleDiv::MajorTick);
    // the shortest distance: months differ, and clocks are set
    double step = ticks.size() < 2 ? scaleDiv().range() / 2 : ticks[1] - ticks[0];
    for (int i = 2; i < ticks.size(); ++i)
        step = std::min(step, ticks[i] - ticks[i - 1]);
    if (step >= 23 * hour && step < day)
        step = day;
    else if (step >= 28 * day && step < month)
        step = month;
    else if (step >= 365 * day - hour && step < year)
        step = year;
    const QLocale locale;
    QString text = qlumTimeLabel(time, step, m_zone, locale);
    const int place = static_cast<int>(std::lower_bound(ticks.begin(), ticks.end(), time) - ticks.begin());
    if (step < day && (place == 0 || place >= ticks.size() || !isSameDay(ticks[place - 1], time, m_zone)))
        text += QLatin1Char('\n') + locale.toString(dateTime(time, m_zone).date(), QLocale::ShortFormat);
    return QwtText(text, QwtText::PlainText);
}

double QlumTimeScaleDraw::extent(const QFont& font) const
{
    return QwtScaleDraw::extent(font) + QFontMetricsF(font).descent();
}
