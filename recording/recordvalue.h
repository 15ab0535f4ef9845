// Values as they stand in recordings.
#pragma once

#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QString>
#include <QVariant>

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

} // namespace recording
