// What can be said of a value before it is sent: by what the server has declared of the place that it is for.
#pragma once
#include <uabase/values/uaarray.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>

/// What the checks have found, in words of the user's language.
struct QlumValueCheck
{
    QString refused; ///< why the server will refuse it by its own data; empty when nothing speaks for that
    QString unusual; ///< what is odd but legal; empty for nothing

    /// Both, one below the other.
    [[nodiscard]] QString text() const;
    /// Takes over what is not said yet.
    void add(const QlumValueCheck& other);
};

/// Everything: access, type, rank, dimensions, and each element by qlumCheckElement(); of several faulty
/// elements the first, with its place. Takes as long as there are elements.
[[nodiscard]] QlumValueCheck qlumCheckValue(const UaVariant& value, const QlumValueContext& context);
/// One scalar, or one element of an array: type, MaxStringLength, the names of an enumeration or option set,
/// EURange and InstrumentRange. Its time does not depend on the value's size.
[[nodiscard]] QlumValueCheck qlumCheckElement(const UaVariant& element, const QlumValueContext& context);
/// Access, rank and dimensions of the whole, without a look at its elements.
[[nodiscard]] QlumValueCheck qlumCheckShape(const UaVariant& value, const QlumValueContext& context);

/// Why the server will refuse values of that built-in type; empty when it will not.
[[nodiscard]] QString qlumCheckType(OpcUa_BuiltInType type, const QlumValueContext& context);
/// The rank and dimensions of an array or matrix of these lengths; without any, of a scalar.
[[nodiscard]] QString qlumCheckLengths(const UaArray<OpcUa_Int32>& lengths, const QlumValueContext& context);
/// Why the server will refuse a text or byte string of so many bytes; empty when it will not.
[[nodiscard]] QString qlumCheckLength(OpcUa_Int64 bytes, const QlumValueContext& context);

/// A rank in words: "a scalar", "an array", "2 dimensions, at most 3 x 4"; empty when any will do.
[[nodiscard]] QString qlumRankText(const QlumValueContext& context);
