#include <recording/recordvalue.h>

#include <app/api/qlumtext.h>
#include <recording/recordtypes.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string_view>
#include <system_error>

namespace recording {

namespace {

constexpr int arrayFlag = 32;
constexpr int matrixFlag = 64;
constexpr int textFlag = 128;
constexpr int typeMask = 31;

[[nodiscard]] StoredValue asText(int type, const UaVariant& value)
{
    UaString json;
    if (UaValueText::toJson(value, nullptr, json).isGood())
        return {type, toQString(json)};
    return {type | textFlag, toQString(value.toString())};
}

// Bytes that are no UTF-8 would change in a text.
[[nodiscard]] QVariant storedString(const OpcUa_String& string)
{
    if (string.Data == nullptr || string.Length < 0)
        return QVariant();
    const QByteArray bytes(string.Data, string.Length);
    const QString text = QString::fromUtf8(bytes);
    return text.toUtf8() == bytes && !bytes.contains('\0') ? QVariant(text) : QVariant(bytes);
}

// Not a number is null in a table; the type tells.
[[nodiscard]] QVariant storedNumber(double number)
{
    return std::isnan(number) ? QVariant() : QVariant(number);
}

template <typename Number>
void appendNumber(QByteArray& text, Number number)
{
    char digits[40];
    const auto [end, fault] = std::to_chars(digits, digits + sizeof digits, number);
    if (fault == std::errc())
        text.append(digits, static_cast<int>(end - digits));
}

[[nodiscard]] UaVariant restoredString(const QVariant& value)
{
    UaVariant result;
    result.setString(value.isNull() ? UaString()
                     : value.type() == QVariant::ByteArray
                         ? UaString(std::string_view(value.toByteArray().constData(),
                                                     static_cast<std::size_t>(value.toByteArray().size())))
                         : toUaString(value.toString()));
    return result;
}

[[nodiscard]] UaVariant restoredScalar(int type, const QVariant& value)
{
    UaVariant result;
    const bool isNumber = !value.isNull();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    switch (type) {
    case OpcUaType_Double:
        return UaVariant(isNumber ? value.toDouble() : nan);
    case OpcUaType_Float:
        return UaVariant(static_cast<float>(isNumber ? value.toDouble() : nan));
    case OpcUaType_String:
        return restoredString(value);
    case OpcUaType_ByteString: {
        const QByteArray bytes = value.toByteArray();
        result.setByteString(value.isNull() ? UaByteString()
                                            : UaByteString(bytes.size(), reinterpret_cast<const OpcUa_Byte*>(
                                                                             bytes.constData())));
        return result;
    }
    case OpcUaType_DateTime:
        return UaVariant(UaDateTime(value.toLongLong()));
    case OpcUaType_StatusCode:
        return UaVariant(UaStatusCode(static_cast<OpcUa_StatusCode>(value.toLongLong())));
    case OpcUaType_UInt64:
        return UaVariant(static_cast<OpcUa_UInt64>(value.toLongLong()));
    default:
        break;
    }
    UaVariant number(static_cast<OpcUa_Int64>(value.toLongLong()));
    return number.changeType(static_cast<OpcUa_BuiltInType>(type), false).isGood() ? number : UaVariant();
}

[[nodiscard]] bool isSimple(int type)
{
    return (type >= OpcUaType_Boolean && type <= OpcUaType_DateTime) || type == OpcUaType_ByteString ||
           type == OpcUaType_StatusCode;
}

} // namespace

StoredValue storedValue(const UaVariant& value)
{
    const OpcUa_Variant& raw = *value.get();
    const int type = value.type();
    if (raw.ArrayType != OpcUa_VariantArrayType_Scalar)
        return asText(type | (value.isMatrix() ? matrixFlag : arrayFlag), value);
    switch (type) {
    case OpcUaType_Null:
        return {};
    case OpcUaType_Double:
        return {type, storedNumber(raw.Value.Double)};
    case OpcUaType_Float:
        return {type, storedNumber(static_cast<double>(raw.Value.Float))};
    case OpcUaType_UInt64:
        return {type, static_cast<qlonglong>(raw.Value.UInt64)};
    case OpcUaType_String:
        return {type, storedString(raw.Value.String)};
    case OpcUaType_DateTime:
        return {type, static_cast<qlonglong>(raw.Value.DateTime)};
    case OpcUaType_StatusCode:
        return {type, static_cast<qlonglong>(raw.Value.StatusCode)};
    case OpcUaType_ByteString:
        return {type, raw.Value.ByteString.Data == nullptr
                          ? QVariant()
                          : QVariant(QByteArray(reinterpret_cast<const char*>(raw.Value.ByteString.Data),
                                                raw.Value.ByteString.Length))};
    default:
        return isSimple(type) ? StoredValue{type, static_cast<qlonglong>(value.toInt64())}
                              : asText(type, value);
    }
}

UaVariant restoredValue(int type, const QVariant& value)
{
    const int plain = type & typeMask;
    if (type == OpcUaType_Null)
        return UaVariant();
    if ((type & textFlag) != 0) {
        UaVariant text;
        text.setString(toUaString(value.toString()));
        return text;
    }
    if (type == plain && isSimple(plain))
        return restoredScalar(plain, value);
    UaVariant result;
    static_cast<void>(UaValueText::fromJson(value.toString().toStdString(), nullptr, result)); // else null
    return result;
}

void appendValueText(QByteArray& text, const UaVariant& value)
{
    const OpcUa_Variant& raw = *value.get();
    const int type = value.type();
    if (type == OpcUaType_Null)
        return;
    if (raw.ArrayType == OpcUa_VariantArrayType_Scalar) {
        switch (type) {
        case OpcUaType_Double:
            return appendNumber(text, raw.Value.Double);
        case OpcUaType_Float:
            return appendNumber(text, raw.Value.Float);
        case OpcUaType_UInt64:
            return appendNumber(text, raw.Value.UInt64);
        case OpcUaType_Int64:
            return appendNumber(text, raw.Value.Int64);
        case OpcUaType_Int32:
            return appendNumber(text, raw.Value.Int32);
        case OpcUaType_UInt32:
            return appendNumber(text, raw.Value.UInt32);
        case OpcUaType_String:
            if (raw.Value.String.Data != nullptr)
                text.append(raw.Value.String.Data, raw.Value.String.Length);
            return;
        case OpcUaType_DateTime:
            text.append(isoTime(raw.Value.DateTime));
            return;
        case OpcUaType_ByteString:
            if (raw.Value.ByteString.Data != nullptr)
                text.append(QByteArray(reinterpret_cast<const char*>(raw.Value.ByteString.Data),
                                       raw.Value.ByteString.Length)
                                .toBase64());
            return;
        case OpcUaType_Boolean:
            text.append(value.toBool() ? "true" : "false");
            return;
        default:
            break;
        }
        if (isSimple(type) && type != OpcUaType_StatusCode)
            return appendNumber(text, value.toInt64());
    }
    const StoredValue stored = storedValue(value);
    text.append(stored.value.type() == QVariant::String ? stored.value.toString().toUtf8()
                                                        : QByteArray(value.toString().toUtf8()));
}

QByteArray typeText(const UaVariant& value)
{
    if (value.isNull())
        return QByteArray();
    QByteArray name = qlumBuiltinTypeName(value.type()).toUtf8();
    if (!value.isScalar())
        name.append("[]");
    return name;
}

} // namespace recording
