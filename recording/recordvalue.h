// Values as they stand in recordings.
#pragma once

#include <opcua/opcua_builtintypes.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <string>
#include <string_view>

namespace recording {

/// How a value is kept in a table: simple ones as what they are, all others as JSON that reads back as the
/// same value.
struct StoredValue
{
    int type = 0; ///< built-in type; 32 more for an array, 64 for a matrix, 128: only a text for people
    QVariant value;
};
/// Never fails.
[[nodiscard]] StoredValue storedValue(const UaVariant& value);
/// The reverse. Null for what makes no sense.
[[nodiscard]] UaVariant restoredValue(int type, const QVariant& value);
/// Appends a text without losses, for a field of CSV: numbers with as many digits as they have, all that is
/// not simple as JSON. Not quoted.
void appendValueText(QByteArray& text, const UaVariant& value);
/// "Double", "Int32[]" ...
[[nodiscard]] QByteArray typeText(const UaVariant& value);
/// What typeText and appendValueText have written. Null for what makes no sense.
[[nodiscard]] UaVariant restoredText(std::string_view typeName, const std::string& text);

/// "Good", or name and number, so that nothing of it is lost.
[[nodiscard]] QByteArray statusText(OpcUa_StatusCode status);
/// The reverse; bad for what is none.
[[nodiscard]] OpcUa_StatusCode restoredStatus(std::string_view text);

} // namespace recording
