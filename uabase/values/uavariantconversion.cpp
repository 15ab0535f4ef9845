// UaVariant::conversion and convertScalar of uavariant_p.h: conversions between built-in types, OPC 10000-4,
// 7.7.3.
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uatext_p.h>
#include <uabase/values/uavariant.h>
#include <uabase/values/uavariant_p.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

using Conversion = UaVariant::Conversion;

// Precedence of the numeric types; towards a smaller number a conversion is implicit. 0: not numeric.
constexpr int precedence(OpcUa_BuiltInType type) noexcept
{
    switch (type) {
    case OpcUaType_Double:
        return 1;
    case OpcUaType_Float:
        return 2;
    case OpcUaType_Int64:
        return 3;
    case OpcUaType_UInt64:
        return 4;
    case OpcUaType_Int32:
        return 5;
    case OpcUaType_UInt32:
        return 6;
    case OpcUaType_Int16:
        return 8;
    case OpcUaType_UInt16:
        return 9;
    case OpcUaType_SByte:
        return 10;
    case OpcUaType_Byte:
        return 11;
    case OpcUaType_Boolean:
        return 12;
    default:
        return 0;
    }
}

constexpr bool isNumeric(OpcUa_BuiltInType type) noexcept
{
    return precedence(type) != 0;
}

// Pairs beside those of two numbers.
struct Pair
{
    OpcUa_BuiltInType from;
    OpcUa_BuiltInType to;
    Conversion conversion;
};

constexpr Pair otherPairs[] = {
    {OpcUaType_String, OpcUaType_Guid, UaVariant::ImplicitConversion},
    {OpcUaType_String, OpcUaType_DateTime, UaVariant::ExplicitConversion},
    {OpcUaType_String, OpcUaType_NodeId, UaVariant::ExplicitConversion},
    {OpcUaType_String, OpcUaType_ExpandedNodeId, UaVariant::ExplicitConversion},
    {OpcUaType_String, OpcUaType_LocalizedText, UaVariant::ExplicitConversion},
    {OpcUaType_String, OpcUaType_QualifiedName, UaVariant::ExplicitConversion},
    {OpcUaType_DateTime, OpcUaType_String, UaVariant::ExplicitConversion},
    {OpcUaType_Guid, OpcUaType_String, UaVariant::ExplicitConversion},
    {OpcUaType_Guid, OpcUaType_ByteString, UaVariant::ExplicitConversion},
    {OpcUaType_ByteString, OpcUaType_Guid, UaVariant::ExplicitConversion},
    {OpcUaType_NodeId, OpcUaType_String, UaVariant::ImplicitConversion},
    {OpcUaType_NodeId, OpcUaType_ExpandedNodeId, UaVariant::ImplicitConversion},
    {OpcUaType_ExpandedNodeId, OpcUaType_String, UaVariant::ImplicitConversion},
    {OpcUaType_ExpandedNodeId, OpcUaType_NodeId, UaVariant::ExplicitConversion},
    {OpcUaType_LocalizedText, OpcUaType_String, UaVariant::ImplicitConversion},
    {OpcUaType_QualifiedName, OpcUaType_String, UaVariant::ImplicitConversion},
    {OpcUaType_QualifiedName, OpcUaType_LocalizedText, UaVariant::ImplicitConversion},
    {OpcUaType_StatusCode, OpcUaType_UInt16, UaVariant::ExplicitConversion},
    {OpcUaType_StatusCode, OpcUaType_Int32, UaVariant::ImplicitConversion},
    {OpcUaType_StatusCode, OpcUaType_UInt32, UaVariant::ImplicitConversion},
    {OpcUaType_StatusCode, OpcUaType_Int64, UaVariant::ImplicitConversion},
    {OpcUaType_StatusCode, OpcUaType_UInt64, UaVariant::ImplicitConversion},
    {OpcUaType_UInt16, OpcUaType_StatusCode, UaVariant::ImplicitConversion},
    {OpcUaType_Int32, OpcUaType_StatusCode, UaVariant::ExplicitConversion},
    {OpcUaType_UInt32, OpcUaType_StatusCode, UaVariant::ExplicitConversion},
    {OpcUaType_Int64, OpcUaType_StatusCode, UaVariant::ExplicitConversion},
    {OpcUaType_UInt64, OpcUaType_StatusCode, UaVariant::ExplicitConversion},
};

// A number of any type: one of three forms, none of which loses digits.
struct Number
{
    enum Form { Signed, Unsigned, Floating } form = Signed;
    OpcUa_Int64 integer = 0;
    OpcUa_UInt64 natural = 0;
    double floating = 0;
};

template <typename T>
T valueOf(const void* data) noexcept
{
    return *static_cast<const T*>(data);
}

Number signedNumber(OpcUa_Int64 value) noexcept
{
    return {Number::Signed, value, 0, 0};
}

Number naturalNumber(OpcUa_UInt64 value) noexcept
{
    return {Number::Unsigned, 0, value, 0};
}

Number readNumber(OpcUa_BuiltInType type, const void* data) noexcept
{
    switch (type) {
    case OpcUaType_Boolean:
        return naturalNumber(valueOf<OpcUa_Boolean>(data) ? 1 : 0);
    case OpcUaType_SByte:
        return signedNumber(valueOf<OpcUa_SByte>(data));
    case OpcUaType_Byte:
        return naturalNumber(valueOf<OpcUa_Byte>(data));
    case OpcUaType_Int16:
        return signedNumber(valueOf<OpcUa_Int16>(data));
    case OpcUaType_UInt16:
        return naturalNumber(valueOf<OpcUa_UInt16>(data));
    case OpcUaType_Int32:
        return signedNumber(valueOf<OpcUa_Int32>(data));
    case OpcUaType_UInt32:
    case OpcUaType_StatusCode:
        return naturalNumber(valueOf<OpcUa_UInt32>(data));
    case OpcUaType_Int64:
        return signedNumber(valueOf<OpcUa_Int64>(data));
    case OpcUaType_UInt64:
        return naturalNumber(valueOf<OpcUa_UInt64>(data));
    case OpcUaType_Float:
        return {Number::Floating, 0, 0, valueOf<OpcUa_Float>(data)};
    default:
        return {Number::Floating, 0, 0, valueOf<OpcUa_Double>(data)};
    }
}

// Nearest integer, halves upwards.
double rounded(double value) noexcept
{
    const double low = std::floor(value);
    return value - low >= 0.5 ? low + 1 : low;
}

template <typename T>
bool fitInteger(const Number& number, T& value) noexcept
{
    if (number.form == Number::Signed) {
        if (!std::in_range<T>(number.integer))
            return false;
        value = static_cast<T>(number.integer);
    } else if (number.form == Number::Unsigned) {
        if (!std::in_range<T>(number.natural))
            return false;
        value = static_cast<T>(number.natural);
    } else {
        const double whole = rounded(number.floating);
        // the upper bound is a power of two and exact, the greatest value of T may not be
        const double bound = std::ldexp(1.0, std::numeric_limits<T>::digits);
        const double low = std::numeric_limits<T>::is_signed ? -bound : 0.0;
        if (!(whole >= low && whole < bound)) // also when it is no number
            return false;
        value = static_cast<T>(whole);
    }
    return true;
}

double asDouble(const Number& number) noexcept
{
    if (number.form == Number::Signed)
        return static_cast<double>(number.integer);
    return number.form == Number::Unsigned ? static_cast<double>(number.natural) : number.floating;
}

bool fitFloat(const Number& number, OpcUa_Float& value) noexcept
{
    const double wide = asDouble(number);
    value = static_cast<OpcUa_Float>(wide);
    return std::isfinite(value) || !std::isfinite(wide);
}

template <typename T>
OpcUa_StatusCode storeInteger(const Number& number, OpcUa_BuiltInType type, UaVariant& result) noexcept
{
    T value{};
    if (!fitInteger(number, value))
        return OpcUa_BadOutOfRange;
    result = uabase::takeScalar(type, &value);
    return OpcUa_Good;
}

OpcUa_StatusCode storeNumber(const Number& number, OpcUa_BuiltInType type, UaVariant& result) noexcept
{
    switch (type) {
    case OpcUaType_Boolean:
        result.setBool(number.integer != 0 || number.natural != 0 || number.floating != 0);
        return OpcUa_Good;
    case OpcUaType_SByte:
        return storeInteger<OpcUa_SByte>(number, type, result);
    case OpcUaType_Byte:
        return storeInteger<OpcUa_Byte>(number, type, result);
    case OpcUaType_Int16:
        return storeInteger<OpcUa_Int16>(number, type, result);
    case OpcUaType_UInt16:
        return storeInteger<OpcUa_UInt16>(number, type, result);
    case OpcUaType_Int32:
        return storeInteger<OpcUa_Int32>(number, type, result);
    case OpcUaType_UInt32:
        return storeInteger<OpcUa_UInt32>(number, type, result);
    case OpcUaType_Int64:
        return storeInteger<OpcUa_Int64>(number, type, result);
    case OpcUaType_UInt64:
        return storeInteger<OpcUa_UInt64>(number, type, result);
    case OpcUaType_Float: {
        OpcUa_Float value = 0;
        if (!fitFloat(number, value))
            return OpcUa_BadOutOfRange;
        result.setFloat(value);
        return OpcUa_Good;
    }
    default:
        result.setDouble(asDouble(number));
        return OpcUa_Good;
    }
}

// The lexical forms of XML numbers. A whole number too large for 64 bits is out of range, not bad syntax.
OpcUa_StatusCode parseWhole(std::string_view text, Number& number) noexcept
{
    if (uabase::takePrefix(text, "+") && text.starts_with('-'))
        return OpcUa_BadSyntaxError;
    const std::string_view digits = text.starts_with('-') ? text.substr(1) : text;
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos)
        return OpcUa_BadSyntaxError;
    if (const auto integer = uabase::parseNumber<OpcUa_Int64>(text); integer)
        number = signedNumber(*integer);
    else if (const auto natural = uabase::parseNumber<OpcUa_UInt64>(text); natural)
        number = naturalNumber(*natural);
    else
        return OpcUa_BadOutOfRange;
    return OpcUa_Good;
}

OpcUa_StatusCode parseFloating(std::string_view text, Number& number) noexcept
{
    number.form = Number::Floating;
    if (text == "NaN" || text == "INF" || text == "+INF" || text == "-INF") {
        const double limit = std::numeric_limits<double>::infinity();
        number.floating = text == "NaN"    ? std::numeric_limits<double>::quiet_NaN()
                          : text == "-INF" ? -limit
                                           : limit;
        return OpcUa_Good;
    }
    if (uabase::takePrefix(text, "+") && text.starts_with('-'))
        return OpcUa_BadSyntaxError;
    if (text.find_first_not_of("0123456789+-.eE") != std::string_view::npos)
        return OpcUa_BadSyntaxError; // no hexadecimal forms, no "infinity"
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number.floating);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument)
        return OpcUa_BadSyntaxError;
    return error == std::errc() ? OpcUa_Good : OpcUa_BadOutOfRange;
}

OpcUa_StatusCode textToBoolean(std::string_view text, UaVariant& result) noexcept
{
    const bool yes = text == "true" || text == "1";
    if (!yes && text != "false" && text != "0")
        return OpcUa_BadSyntaxError;
    result.setBool(yes);
    return OpcUa_Good;
}

OpcUa_StatusCode textToNumber(std::string_view text, OpcUa_BuiltInType to, UaVariant& result) noexcept
{
    text = uabase::trimmed(text);
    if (to == OpcUaType_Boolean)
        return textToBoolean(text, result);
    Number number;
    OpcUa_StatusCode status = OpcUa_Good;
    if (to == OpcUaType_Float) {
        // straight to the narrow type, or the text would be rounded twice
        OpcUa_Float narrow = 0;
        status = parseFloating(text, number);
        const std::string_view digits = text.starts_with('+') ? text.substr(1) : text;
        const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), narrow);
        if (OpcUa_IsGood(status) && std::isfinite(number.floating)) {
            if (parsed.ec != std::errc())
                return OpcUa_BadOutOfRange;
            number.floating = narrow;
        }
    } else {
        status = to == OpcUaType_Double ? parseFloating(text, number) : parseWhole(text, number);
    }
    return OpcUa_IsGood(status) ? storeNumber(number, to, result) : status;
}

OpcUa_StatusCode textToOther(const UaString& text, OpcUa_BuiltInType to, UaVariant& result)
{
    bool ok = true;
    UaVariant made;
    const std::string_view trimmed = uabase::trimmed(text.view());
    if (to == OpcUaType_Guid)
        made.setGuid(UaGuid::fromString(trimmed, &ok));
    else if (to == OpcUaType_DateTime)
        made.setDateTime(UaDateTime::fromString(trimmed, &ok));
    else if (to == OpcUaType_NodeId)
        made.setNodeId(UaNodeId::fromString(text.view(), &ok));
    else if (to == OpcUaType_ExpandedNodeId)
        made.setExpandedNodeId(UaExpandedNodeId::fromString(text.view(), &ok));
    else if (to == OpcUaType_LocalizedText)
        made.setLocalizedText(UaLocalizedText(UaString(), text));
    else
        made.setQualifiedName(UaQualifiedName(text, 0));
    if (!ok)
        return OpcUa_BadSyntaxError;
    result = std::move(made);
    return OpcUa_Good;
}

// The text of a scalar that converts to String. A qualified name loses its namespace.
UaString textOf(const UaVariant& source)
{
    if (source.type() == OpcUaType_QualifiedName)
        return source.toQualifiedName().name();
    if (source.type() == OpcUaType_LocalizedText)
        return source.toLocalizedText().text();
    return source.toString();
}

// A status code turns into a 16-bit number by its upper half, into larger ones by its bits.
OpcUa_StatusCode fromStatusCode(OpcUa_StatusCode code, OpcUa_BuiltInType to, UaVariant& result) noexcept
{
    if (to == OpcUaType_UInt16)
        result.setUInt16(static_cast<OpcUa_UInt16>(code >> 16));
    else if (to == OpcUaType_Int32)
        result.setInt32(static_cast<OpcUa_Int32>(code));
    else
        return storeNumber(naturalNumber(code), to, result);
    return OpcUa_Good;
}

OpcUa_StatusCode toStatusCode(const UaVariant& source, UaVariant& result) noexcept
{
    OpcUa_StatusCode code = 0;
    if (source.type() == OpcUaType_UInt16)
        code = static_cast<OpcUa_StatusCode>(source.toUInt16()) << 16;
    else if (source.type() == OpcUaType_Int32)
        code = static_cast<OpcUa_StatusCode>(source.toInt32());
    else if (!fitInteger(readNumber(source.type(), uabase::scalarData(*source.get())), code))
        return OpcUa_BadOutOfRange;
    result.setStatusCode(code);
    return OpcUa_Good;
}

OpcUa_StatusCode convertOther(const UaVariant& source, UaVariant& result)
{
    if (source.type() == OpcUaType_Guid) {
        result.setByteString(source.toGuid().toByteString());
    } else if (source.type() == OpcUaType_ByteString) {
        bool ok = false;
        const UaGuid guid = UaGuid::fromByteString(source.toByteString(), &ok);
        if (!ok)
            return OpcUa_BadOutOfRange;
        result.setGuid(guid);
    } else if (source.type() == OpcUaType_NodeId) {
        result.setExpandedNodeId(UaExpandedNodeId(source.toNodeId()));
    } else if (source.type() == OpcUaType_ExpandedNodeId) {
        const UaExpandedNodeId id = source.toExpandedNodeId();
        if (!id.isLocal())
            return OpcUa_BadOutOfRange; // the node id alone would name another node
        result.setNodeId(id.nodeId());
    } else {
        result.setLocalizedText(UaLocalizedText(UaString(), source.toQualifiedName().name()));
    }
    return OpcUa_Good;
}

} // namespace

namespace uabase {

OpcUa_StatusCode convertScalar(const UaVariant& source, OpcUa_BuiltInType to, UaVariant& result)
{
    const OpcUa_BuiltInType from = source.type();
    const Conversion conversion = UaVariant::conversion(from, to);
    const void* data = scalarData(*source.get());
    if (conversion == UaVariant::NoConversion || !data)
        return OpcUa_BadTypeMismatch;
    if (conversion == UaVariant::SameType) {
        result = source;
        return OpcUa_Good;
    }
    if (isNumeric(from) && isNumeric(to))
        return storeNumber(readNumber(from, data), to, result);
    if (from == OpcUaType_StatusCode)
        return fromStatusCode(valueOf<OpcUa_StatusCode>(data), to, result);
    if (to == OpcUaType_StatusCode)
        return toStatusCode(source, result);
    if (from == OpcUaType_String) {
        const UaString text(*static_cast<const OpcUa_String*>(data));
        return isNumeric(to) ? textToNumber(text.view(), to, result) : textToOther(text, to, result);
    }
    if (to == OpcUaType_String) {
        result.setString(textOf(source));
        return OpcUa_Good;
    }
    return convertOther(source, result);
}

} // namespace uabase

UaVariant::Conversion UaVariant::conversion(OpcUa_BuiltInType from, OpcUa_BuiltInType to) noexcept
{
    if (from == to)
        return uabase::isBuiltInType(from) ? SameType : NoConversion;
    if (isNumeric(from) && isNumeric(to))
        return precedence(to) < precedence(from) ? ImplicitConversion : ExplicitConversion;
    if (isNumeric(from) && to == OpcUaType_String)
        return ExplicitConversion;
    if (from == OpcUaType_String && isNumeric(to))
        return ImplicitConversion;
    for (const Pair& pair : otherPairs)
        if (pair.from == from && pair.to == to)
            return pair.conversion;
    return NoConversion;
}
