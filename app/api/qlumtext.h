// Text between the OPC UA value types and Qt.
#pragma once
#include <opcua/opcua_builtintypes.h>
#include <uabase/values/uastring.h>

#include <QDateTime>
#include <QString>

/// Invalid UTF-8 becomes replacement characters; a null string becomes a null QString.
[[nodiscard]] QString toQString(const UaString& text);
/// As UTF-8; a null QString becomes a null string.
[[nodiscard]] UaString toUaString(const QString& text);

/// Name of a status code as the user sees it.
[[nodiscard]] QString qlumStatusText(OpcUa_StatusCode code);
/// Name of a built-in type ("Int32"); its number in parentheses for an unknown one.
[[nodiscard]] QString qlumBuiltinTypeName(unsigned int builtInType);

/// Local time. The ends of the range (0 and the largest number) stand for no date and give an invalid
/// QDateTime.
[[nodiscard]] QDateTime qlumDateTime(OpcUa_DateTime value);
/// 0 for an invalid QDateTime; dates outside the range are cut to its ends.
[[nodiscard]] OpcUa_DateTime qlumUaDateTime(const QDateTime& value);

/// How the user wants times to be shown.
struct QlumTimeLook
{
    bool isUtc = false; ///< else local time
    bool isIso = false; ///< year-month-day and 24 hours, else as the system has it
};

/// From now on times are shown so. Any thread.
void qlumSetTimeLook(QlumTimeLook look);
/// Any thread.
[[nodiscard]] QlumTimeLook qlumTimeLook();
/// The format of dates with times: minutes, seconds and milliseconds are in it. For fields that times are
/// entered in; texts come from the functions below.
[[nodiscard]] QString qlumDateTimeFormat();
/// A moment as all windows show it: in local time, or in UTC, which the text then says. Empty for no date.
[[nodiscard]] QString qlumShowDateTime(const QDateTime& moment);
/// The same of a server's time.
[[nodiscard]] QString qlumShowDateTime(OpcUa_DateTime moment);
/// The same without the date.
[[nodiscard]] QString qlumShowTime(const QDateTime& moment);
/// The same to the minute and with all digits of the year, where a list need not tell more.
[[nodiscard]] QString qlumShowMinute(const QDateTime& moment);
