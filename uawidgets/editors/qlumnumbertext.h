// Numbers as text that can be edited and read back, without loss.
#pragma once
#include <uabase/values/uavariant.h>

#include <QString>

/// How whole numbers are written.
enum class QlumNumberBase {
    Decimal = 10,
    Hexadecimal = 16, ///< "0x1f"; as wide as the type where the number is negative
    Binary = 2        ///< "0b1 1111", likewise
};

/// Whether it is a whole number, with a sign or without.
[[nodiscard]] bool qlumIsInteger(OpcUa_BuiltInType type);
/// Whether it is a whole number without a sign.
[[nodiscard]] bool qlumIsUnsigned(OpcUa_BuiltInType type);
/// Whether it is a number of any kind.
[[nodiscard]] bool qlumIsNumber(OpcUa_BuiltInType type);

/// The text of a whole number or of a status code's number.
[[nodiscard]] QString qlumIntegerText(const UaVariant& value, QlumNumberBase base);
/// As few digits as tell the number from all others.
[[nodiscard]] QString qlumFloatText(float number);
/// The same for double precision.
[[nodiscard]] QString qlumDoubleText(double number);
/// Reads a number of the type: decimal, or with 0x or 0b, where a number with a sign may also be given as the
/// bits that it has. Fractions are written with a point or as the user's locale does. False, and value
/// unchanged, when it is none or does not fit.
[[nodiscard]] bool qlumFromNumberText(const QString& text, OpcUa_BuiltInType type, UaVariant& value);
/// "-128 to 127"; empty for fractions.
[[nodiscard]] QString qlumNumberRangeText(OpcUa_BuiltInType type);
