// A point in time, UTC, in steps of 100 ns since 1601-01-01, OPC 10000-6, 5.2.2.5.
#pragma once

#include <uabase/values/uastring.h>

#include <compare>
#include <ctime>
#include <string_view>

/// Text forms and conversions clamp to 1601-01-01 ... 9999-12-31 23:59:59.999; the stored value is kept as
/// received.
class UaDateTime
{
public:
    constexpr UaDateTime() noexcept = default;
    constexpr explicit UaDateTime(OpcUa_DateTime value) noexcept : m_value(value) {}

    [[nodiscard]] static UaDateTime now() noexcept;
    [[nodiscard]] static UaDateTime fromTime_t(std::time_t seconds) noexcept;
    [[nodiscard]] static UaDateTime fromMSecsSinceEpoch(OpcUa_Int64 milliseconds) noexcept; ///< since 1970
    /// "2026-11-21T10:15:30[.fraction][Z|+hh:mm|-hh:mm]", also with a space for the T and as a date alone; no
    /// zone means UTC. Null on a fault; ok tells that apart.
    [[nodiscard]] static UaDateTime fromString(std::string_view text, bool* ok = nullptr) noexcept;

    /// "2026-11-21T10:15:30.123Z"; the null date is "1601-01-01T00:00:00.000Z".
    [[nodiscard]] UaString toString() const;
    /// The same with as many digits as it takes to read back as the same time, up to 100 ns.
    [[nodiscard]] UaString toFullString() const;
    [[nodiscard]] UaString toDateString() const; ///< "2026-11-21"
    [[nodiscard]] UaString toTimeString() const; ///< "10:15:30.123"
    std::time_t toTime_t() const noexcept;
    OpcUa_Int64 toMSecsSinceEpoch() const noexcept; ///< since 1970, rounded down

    bool isNull() const noexcept { return m_value == 0; }
    constexpr OpcUa_DateTime value() const noexcept { return m_value; }
    constexpr operator OpcUa_DateTime() const noexcept { return m_value; }

    /// Saturating.
    void addMilliSecs(OpcUa_Int64 milliseconds) noexcept;
    void addSecs(OpcUa_Int64 seconds) noexcept;
    OpcUa_Int64 msecsTo(const UaDateTime& later) const noexcept;

    friend constexpr bool operator==(const UaDateTime& left, const UaDateTime& right) noexcept
    {
        return left.m_value == right.m_value;
    }
    friend constexpr std::strong_ordering operator<=>(const UaDateTime& left,
                                                      const UaDateTime& right) noexcept
    {
        return left.m_value <=> right.m_value;
    }

private:
    OpcUa_DateTime m_value = 0;
};
