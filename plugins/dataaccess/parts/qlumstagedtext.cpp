#include <plugins/dataaccess/parts/qlumstagedtext.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumdatafield.h>

#include <QChar>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

#include <span>
#include <vector>

namespace {
QString stagedTextWords(const char* text)
{
    return QCoreApplication::translate("QlumStagedText", text);
}

// "[1, 2]", each element as its cell would take it.
bool readArray(const QString& text, OpcUa_BuiltInType type, const QlumValueContext& context, UaVariant& value)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (!document.isArray())
        return false;
    std::vector<UaVariant> elements;
    const QJsonArray array = document.array();
    for (const QJsonValue& element : array) {
        UaVariant read;
        // numbers of JSON have lost their digits beyond 53 bits, texts have not
        const QString given = element.isString() ? element.toString() : element.toVariant().toString();
        if (element.isArray() || element.isObject() || !qlumReadCell(given, type, context, read))
            return false;
        elements.push_back(read);
    }
    return OpcUa_IsGood(value.setArray(type, std::span<const UaVariant>(elements)));
}

bool readReversible(const QString& text, OpcUa_BuiltInType type, const QlumValueContext& context,
                    UaVariant& value)
{
    UaVariant read;
    const UaString utf8 = toUaString(text);
    const bool isRead = UaValueText::fromJson(utf8.view(), context.dictionary.get(), read).isNotBad() &&
                        (type == OpcUaType_Null || type == OpcUaType_Variant || read.type() == type) &&
                        !read.isNull();
    if (isRead)
        value = read;
    return isRead;
}
} // namespace

QString qlumReadStaged(const QString& text, const QlumValueContext& context, const UaVariant& shown,
                       const QString& indexRange, UaVariant& value)
{
    constexpr int longest = 60;
    const bool isDeclared = context.builtInType != OpcUaType_Null && context.builtInType != OpcUaType_Variant;
    const OpcUa_BuiltInType type = isDeclared ? context.builtInType : shown.type();
    UaVariant read;
    const bool isArray =
        indexRange.isEmpty() && (context.valueRank >= 0 || shown.isArray() || shown.isMatrix());
    bool isRead = false;
    if (type != OpcUaType_Null && !isArray)
        isRead = qlumReadCell(text, type, context, read) &&
                 (indexRange.isEmpty() || indexRange.contains(QLatin1Char(':')) ||
                  qlumWrapElement(indexRange, type, read));
    if (!isRead && type != OpcUaType_Null && text.trimmed().startsWith(QLatin1Char('[')))
        isRead = readArray(text, type, context, read);
    if (!isRead)
        isRead = readReversible(text, type, context, read);
    if (isRead) {
        value = read;
        return {};
    }
    if (type == OpcUaType_Null)
        return stagedTextWords("The type of the value is not known; edit it in its own window.");
    const QString shape = isArray ? stagedTextWords("an array of %1").arg(qlumBuiltinTypeName(type))
                                  : qlumBuiltinTypeName(type);
    return stagedTextWords("\"%1\" is no value of the type %2.")
        .arg(qlumCutText(qlumSingleLine(text), longest), shape);
}
