#include <uawidgets/editors/qlumnumbertext.h>

#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>

#include <QChar>
#include <QCoreApplication>
#include <QLatin1Char>
#include <QLatin1String>
#include <QLocale>
#include <QString>
#include <QtGlobal>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {
int widthOf(OpcUa_BuiltInType type)
{
    switch (type) {
    case OpcUaType_SByte:
    case OpcUaType_Byte:
        return 8;
    case OpcUaType_Int16:
    case OpcUaType_UInt16:
        return 16;
    case OpcUaType_Int32:
    case OpcUaType_UInt32:
    case OpcUaType_StatusCode:
        return 32;
    default:
        return 64;
    }
}

quint64 maskOf(OpcUa_BuiltInType type)
{
    return std::numeric_limits<quint64>::max() >> (64 - widthOf(type));
}

bool hasSign(OpcUa_BuiltInType type)
{
    return qlumIsInteger(type) && !qlumIsUnsigned(type);
}

// The number's bits, those of a negative one as wide as its type.
quint64 patternOf(const UaVariant& value)
{
    if (value.type() == OpcUaType_StatusCode)
        return value.toStatusCode().code();
    if (hasSign(value.type()))
        return static_cast<quint64>(value.toInt64()) & maskOf(value.type());
    return value.toUInt64();
}

void setPattern(UaVariant& value, OpcUa_BuiltInType type, quint64 pattern)
{
    switch (type) {
    case OpcUaType_SByte:
        return value.setSByte(static_cast<OpcUa_SByte>(pattern));
    case OpcUaType_Byte:
        return value.setByte(static_cast<OpcUa_Byte>(pattern));
    case OpcUaType_Int16:
        return value.setInt16(static_cast<OpcUa_Int16>(pattern));
    case OpcUaType_UInt16:
        return value.setUInt16(static_cast<OpcUa_UInt16>(pattern));
    case OpcUaType_Int32:
        return value.setInt32(static_cast<OpcUa_Int32>(pattern));
    case OpcUaType_UInt32:
        return value.setUInt32(static_cast<OpcUa_UInt32>(pattern));
    case OpcUaType_Int64:
        return value.setInt64(static_cast<OpcUa_Int64>(pattern));
    case OpcUaType_StatusCode:
        return value.setStatusCode(UaStatusCode(static_cast<OpcUa_StatusCode>(pattern)));
    default:
        return value.setUInt64(pattern);
    }
}

// ---- reading

struct Digits
{
    bool isNegative = false;
    int base = 10;
    QString text;
};

Digits digitsOf(const QString& text)
{
    Digits digits;
    digits.text = text.trimmed();
    if (digits.text.startsWith(QLatin1Char('-')) || digits.text.startsWith(QLatin1Char('+'))) {
        digits.isNegative = digits.text.at(0) == QLatin1Char('-');
        digits.text.remove(0, 1);
    }
    const QString prefix = digits.text.left(2).toLower();
    digits.base = prefix == QLatin1String("0x") ? 16 : prefix == QLatin1String("0b") ? 2 : 10;
    if (digits.base != 10)
        digits.text.remove(0, 2).remove(QLatin1Char(' ')).remove(QLatin1Char('_'));
    return digits;
}

int digitOf(QChar character)
{
    const ushort code = character.toLower().unicode();
    if (code >= '0' && code <= '9')
        return code - '0';
    return code >= 'a' && code <= 'f' ? code - 'a' + 10 : 16;
}

bool readMagnitude(const Digits& digits, quint64& magnitude)
{
    magnitude = 0;
    const auto base = static_cast<quint64>(digits.base);
    for (const QChar character : digits.text) {
        const int digit = digitOf(character);
        if (digit >= digits.base)
            return false;
        const auto added = static_cast<quint64>(digit);
        if (magnitude > (std::numeric_limits<quint64>::max() - added) / base)
            return false;
        magnitude = magnitude * base + added;
    }
    return !digits.text.isEmpty();
}

bool readInteger(const QString& text, OpcUa_BuiltInType type, UaVariant& value)
{
    const Digits digits = digitsOf(text);
    quint64 magnitude = 0;
    if (!readMagnitude(digits, magnitude))
        return false;
    const quint64 mask = maskOf(type);
    const quint64 half = mask / 2 + 1; // of a type with a sign, the smallest number's magnitude
    if (digits.isNegative) {
        if (magnitude > (hasSign(type) ? half : 0))
            return false;
        setPattern(value, type, (~magnitude + 1) & mask);
        return true;
    }
    const bool isDecimal = digits.base == 10;
    if (magnitude > (hasSign(type) && isDecimal ? half - 1 : mask))
        return false;
    setPattern(value, type, magnitude);
    return true;
}

// With a point, or as the user's locale writes it.
bool readDouble(const QString& text, double& number)
{
    const QString trimmed = text.trimmed();
    bool ok = false;
    number = QLocale::c().toDouble(trimmed, &ok);
    if (!ok)
        number = QLocale().toDouble(trimmed, &ok);
    return ok;
}

bool readFloating(const QString& text, OpcUa_BuiltInType type, UaVariant& value)
{
    double number = 0;
    if (!readDouble(text, number))
        return false;
    if (type == OpcUaType_Double) {
        value.setDouble(number);
        return true;
    }
    // Up to here a number still rounds to the largest float, whose own shortest text lies above it.
    constexpr double limit = 0x1.ffffffp127;
    if (std::isfinite(number) && std::abs(number) >= limit)
        return false;
    value.setFloat(static_cast<float>(number));
    return true;
}

template <typename T>
QString range()
{
    return QCoreApplication::translate("QlumValueText", "%1 to %2")
        .arg(std::numeric_limits<T>::min())
        .arg(std::numeric_limits<T>::max());
}

// In fours, which can be counted.
QString binaryText(quint64 pattern)
{
    QString text = QString::number(pattern, 2);
    for (int i = text.size() - 4; i > 0; i -= 4)
        text.insert(i, QLatin1Char(' '));
    return QLatin1String("0b") + text;
}
} // namespace

bool qlumIsInteger(OpcUa_BuiltInType type)
{
    return type >= OpcUaType_SByte && type <= OpcUaType_UInt64;
}

bool qlumIsUnsigned(OpcUa_BuiltInType type)
{
    return type == OpcUaType_Byte || type == OpcUaType_UInt16 || type == OpcUaType_UInt32 ||
           type == OpcUaType_UInt64;
}

bool qlumIsNumber(OpcUa_BuiltInType type)
{
    return type >= OpcUaType_SByte && type <= OpcUaType_Double;
}

QString qlumIntegerText(const UaVariant& value, QlumNumberBase base)
{
    if (base == QlumNumberBase::Binary)
        return binaryText(patternOf(value));
    if (base == QlumNumberBase::Hexadecimal)
        return QLatin1String("0x") + QString::number(patternOf(value), 16);
    return hasSign(value.type()) ? QString::number(value.toInt64()) : QString::number(patternOf(value));
}

QString qlumFloatText(float number)
{
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    return QString::fromLatin1(text.data(), static_cast<int>(end - text.data()));
}

QString qlumDoubleText(double number)
{
    return QLocale::c().toString(number, 'g', QLocale::FloatingPointShortest);
}

bool qlumFromNumberText(const QString& text, OpcUa_BuiltInType type, UaVariant& value)
{
    if (type == OpcUaType_Float || type == OpcUaType_Double)
        return readFloating(text, type, value);
    return (qlumIsInteger(type) || type == OpcUaType_StatusCode) && readInteger(text, type, value);
}

QString qlumNumberRangeText(OpcUa_BuiltInType type)
{
    switch (type) {
    case OpcUaType_SByte:
        return range<OpcUa_SByte>();
    case OpcUaType_Byte:
        return range<OpcUa_Byte>();
    case OpcUaType_Int16:
        return range<OpcUa_Int16>();
    case OpcUaType_UInt16:
        return range<OpcUa_UInt16>();
    case OpcUaType_Int32:
        return range<OpcUa_Int32>();
    case OpcUaType_UInt32:
        return range<OpcUa_UInt32>();
    case OpcUaType_Int64:
        return range<OpcUa_Int64>();
    case OpcUaType_UInt64:
        return range<OpcUa_UInt64>();
    default:
        return {};
    }
}
