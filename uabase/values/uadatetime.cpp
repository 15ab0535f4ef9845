#include <uabase/values/uadatetime.h>

#include <uabase/values/uatext_p.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace {

constexpr OpcUa_Int64 ticksPerMillisecond = 10000;
constexpr OpcUa_Int64 ticksPerSecond = 1000 * ticksPerMillisecond;
constexpr OpcUa_Int64 ticksPerDay = 86400 * ticksPerSecond;
constexpr std::chrono::sys_days firstDay{std::chrono::year(1601) / 1 / 1};
constexpr std::chrono::sys_days lastDay{std::chrono::year(9999) / 12 / 31};
constexpr OpcUa_Int64 millisecondsTo1970 = -OpcUa_Int64{firstDay.time_since_epoch().count()} * 86400 * 1000;
// The last second of the calendar stands for every later time.
constexpr OpcUa_Int64 endOfTime = ((lastDay - firstDay).count() + 1) * ticksPerDay - ticksPerSecond;
constexpr OpcUa_Int64 lastTick = endOfTime + ticksPerSecond - 1;

OpcUa_Int64 saturatingAdd(OpcUa_Int64 left, OpcUa_Int64 right) noexcept
{
    OpcUa_Int64 sum = 0;
    if (__builtin_add_overflow(left, right, &sum))
        return right < 0 ? 0 : INT64_MAX;
    return std::max<OpcUa_Int64>(sum, 0);
}

OpcUa_Int64 saturatingTicks(OpcUa_Int64 count, OpcUa_Int64 ticks) noexcept
{
    OpcUa_Int64 product = 0;
    if (__builtin_mul_overflow(count, ticks, &product))
        return count < 0 ? INT64_MIN : INT64_MAX;
    return product;
}

struct Fields
{
    int year, month, day, hour, minute, second, millisecond;
};

Fields fieldsOf(OpcUa_DateTime value) noexcept
{
    const OpcUa_Int64 ticks = std::clamp<OpcUa_Int64>(value, 0, lastTick);
    const auto date = std::chrono::year_month_day(firstDay + std::chrono::days(ticks / ticksPerDay));
    const int milliseconds = static_cast<int>(ticks % ticksPerDay / ticksPerMillisecond);
    return {int(date.year()),
            static_cast<int>(unsigned(date.month())),
            static_cast<int>(unsigned(date.day())),
            milliseconds / 3600000,
            milliseconds / 60000 % 60,
            milliseconds / 1000 % 60,
            milliseconds % 1000};
}

template <typename... Arguments>
UaString formatted(const char* format, Arguments... arguments)
{
    char buffer[64];
    const int length = std::snprintf(buffer, sizeof buffer, format, arguments...);
    return UaString(std::string_view(buffer, static_cast<std::size_t>(std::max(length, 0))));
}

// Takes exactly count digits that form a number within [low, high].
bool takeDigits(std::string_view& text, std::size_t count, int low, int high, int& number) noexcept
{
    number = 0;
    if (text.size() < count)
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        number = number * 10 + (text[i] - '0');
    }
    text.remove_prefix(count);
    return number >= low && number <= high;
}

bool takeDate(std::string_view& text, std::chrono::sys_days& day) noexcept
{
    int year = 0;
    int month = 0;
    int dayOfMonth = 0;
    if (!takeDigits(text, 4, 1, 9999, year) || !uabase::takePrefix(text, "-") ||
        !takeDigits(text, 2, 1, 12, month) || !uabase::takePrefix(text, "-") ||
        !takeDigits(text, 2, 1, 31, dayOfMonth))
        return false;
    const std::chrono::year_month_day date(std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(dayOfMonth)));
    day = std::chrono::sys_days(date);
    return date.ok();
}

// Digits after the point; those beyond 100 ns are dropped.
bool takeFraction(std::string_view& text, OpcUa_Int64& ticks) noexcept
{
    OpcUa_Int64 weight = ticksPerSecond;
    std::size_t digits = 0;
    for (; digits < text.size() && text[digits] >= '0' && text[digits] <= '9'; ++digits) {
        weight /= 10;
        ticks += weight * (text[digits] - '0');
    }
    text.remove_prefix(digits);
    return digits > 0;
}

bool takeTime(std::string_view& text, OpcUa_Int64& ticks) noexcept
{
    int hour = 0;
    int minute = 0;
    int second = 0;
    if (!takeDigits(text, 2, 0, 23, hour) || !uabase::takePrefix(text, ":") ||
        !takeDigits(text, 2, 0, 59, minute))
        return false;
    if (uabase::takePrefix(text, ":")) {
        if (!takeDigits(text, 2, 0, 59, second))
            return false;
        if (uabase::takePrefix(text, ".") && !takeFraction(text, ticks))
            return false;
    }
    ticks += ((hour * 60 + minute) * 60 + second) * ticksPerSecond;
    return true;
}

bool takeZone(std::string_view& text, OpcUa_Int64& ticks) noexcept
{
    if (text.empty() || uabase::takePrefix(text, "Z"))
        return text.empty();
    const int sign = text.front() == '+' ? 1 : -1;
    int hours = 0;
    int minutes = 0;
    if (!uabase::takePrefix(text, "+") && !uabase::takePrefix(text, "-"))
        return false;
    if (!takeDigits(text, 2, 0, 14, hours) || !uabase::takePrefix(text, ":") ||
        !takeDigits(text, 2, 0, 59, minutes))
        return false;
    ticks -= sign * (hours * 60 + minutes) * 60 * ticksPerSecond;
    return text.empty();
}

} // namespace

UaDateTime UaDateTime::now() noexcept
{
    return UaDateTime(OpcUa_DateTime_UtcNow());
}

UaDateTime UaDateTime::fromTime_t(std::time_t seconds) noexcept
{
    return fromMSecsSinceEpoch(saturatingTicks(seconds, 1000));
}

UaDateTime UaDateTime::fromMSecsSinceEpoch(OpcUa_Int64 milliseconds) noexcept
{
    OpcUa_Int64 since1601 = 0;
    if (__builtin_add_overflow(milliseconds, millisecondsTo1970, &since1601))
        return UaDateTime(INT64_MAX);
    return UaDateTime(std::max<OpcUa_Int64>(saturatingTicks(since1601, ticksPerMillisecond), 0));
}

UaDateTime UaDateTime::fromString(std::string_view text, bool* ok) noexcept
{
    std::chrono::sys_days day;
    OpcUa_Int64 ticks = 0;
    text = uabase::trimmed(text);
    bool valid = takeDate(text, day);
    if (valid && !text.empty())
        valid = (uabase::takePrefix(text, "T") || uabase::takePrefix(text, " ")) && takeTime(text, ticks) &&
                takeZone(text, ticks);
    if (ok)
        *ok = valid;
    if (!valid)
        return {};
    ticks += (day - firstDay).count() * ticksPerDay;
    return UaDateTime(ticks >= endOfTime ? INT64_MAX : std::max<OpcUa_Int64>(ticks, 0));
}

UaString UaDateTime::toString() const
{
    const Fields f = fieldsOf(m_value);
    return formatted("%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", f.year, f.month, f.day, f.hour, f.minute,
                     f.second, f.millisecond);
}

UaString UaDateTime::toFullString() const
{
    const OpcUa_Int64 ticks = std::clamp<OpcUa_Int64>(m_value, 0, lastTick) % ticksPerSecond;
    std::string text = toString().toStdString();
    text.resize(text.find('.'));
    if (ticks != 0) {
        const std::string digits = std::to_string(ticksPerSecond + ticks).substr(1);
        text += '.' + digits.substr(0, digits.find_last_not_of('0') + 1);
    }
    return UaString(text + 'Z');
}

UaString UaDateTime::toDateString() const
{
    const Fields f = fieldsOf(m_value);
    return formatted("%04d-%02d-%02d", f.year, f.month, f.day);
}

UaString UaDateTime::toTimeString() const
{
    const Fields f = fieldsOf(m_value);
    return formatted("%02d:%02d:%02d.%03d", f.hour, f.minute, f.second, f.millisecond);
}

std::time_t UaDateTime::toTime_t() const noexcept
{
    const OpcUa_Int64 ticks = std::clamp<OpcUa_Int64>(m_value, 0, lastTick);
    return ticks / ticksPerSecond - millisecondsTo1970 / 1000;
}

OpcUa_Int64 UaDateTime::toMSecsSinceEpoch() const noexcept
{
    const OpcUa_Int64 ticks = std::clamp<OpcUa_Int64>(m_value, 0, lastTick);
    return ticks / ticksPerMillisecond - millisecondsTo1970;
}

void UaDateTime::addMilliSecs(OpcUa_Int64 milliseconds) noexcept
{
    m_value = saturatingAdd(m_value, saturatingTicks(milliseconds, ticksPerMillisecond));
}

void UaDateTime::addSecs(OpcUa_Int64 seconds) noexcept
{
    m_value = saturatingAdd(m_value, saturatingTicks(seconds, ticksPerSecond));
}

OpcUa_Int64 UaDateTime::msecsTo(const UaDateTime& later) const noexcept
{
    return later.toMSecsSinceEpoch() - toMSecsSinceEpoch();
}
