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

/// A short format of the system locale with minutes, seconds and milliseconds, for QLocale::toString.
[[nodiscard]] QString qlumDateTimeFormat();
/// The same for the time alone.
[[nodiscard]] QString qlumTimeFormat();
