#include <uawidgets/editors/qlumjsonfault.h>

#include <app/api/qlumtextpatterns.h>

#include <QCoreApplication>

#include <array>
#include <optional>

namespace {
constexpr std::array faults{
    QT_TRANSLATE_NOOP("QlumJsonFault", "the text is too long at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "more text after the value at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "nested too deep at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "too many values at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "no value at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "no ] or , at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "no member name at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "no colon at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "no } or , at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "a control character in a string at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "a string without end at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "a string that is no UTF-8 at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "an unknown escape at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "half a surrogate pair at character %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "a value without a built-in type"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "nested too deep"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "a number was expected"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "no number of its type: %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "a text was expected"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "no time"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "no Base64"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "no Guid"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "an unknown kind of node id"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "true or false was expected"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "dimensions that do not fit the number of elements"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "elements of different types"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "nobody knows the type %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "fields were expected"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "fields that do not make a %1"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "a value that is not of the field's type"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "nobody knows its type"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "an array was expected"),
    QT_TRANSLATE_NOOP("QlumJsonFault", "rows of different length"),
};
} // namespace

// The path of a field may stand before it.
QString qlumJsonFault(const QString& fault)
{
    static const QlumTextPatterns patterns("QlumJsonFault", faults);
    const QString separator = QStringLiteral(": ");
    for (int begin = 0;; begin += separator.size()) {
        if (const std::optional<QString> words = patterns.inWords(fault.mid(begin)))
            return fault.left(begin) + *words;
        begin = fault.indexOf(separator, begin);
        if (begin < 0)
            return fault;
    }
}
