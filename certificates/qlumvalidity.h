// How long certificates and revocation lists are still good, and how that is shown.
#pragma once
#include <uabase/values/uadatetime.h>

#include <QIcon>
#include <QString>

/// The numbers are those of the entries' validState().
enum QlumValidity { QlumValid = 0, QlumNotYetValid = 1, QlumExpiresSoon = 2, QlumExpired = 3 };

/// From so many days on the lists warn; the question at start-up comes a day later.
constexpr qint64 qlumWarnDays = 14;
constexpr qint64 qlumAskDays = 13;

/// Days between today and the day of the end, in local time as the dates are shown; negative for a past day.
[[nodiscard]] qint64 qlumDaysLeft(const UaDateTime& end);
/// A null date is long past.
[[nodiscard]] QlumValidity qlumValidity(const UaDateTime& from, const UaDateTime& to);
/// Local time in the locale's format, the year with all its digits.
[[nodiscard]] QString qlumValidityTime(const UaDateTime& time);
/// The icon with a sign in its corner for what expires soon or is not valid.
[[nodiscard]] QIcon qlumValidityIcon(const QIcon& icon, QlumValidity validity);
