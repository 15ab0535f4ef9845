#include <plugins/attributes/qlumattributedetails.h>

#include <app/api/qlumtext.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumvaluefacts.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace {
constexpr int maximumTexts = 100; // of an enumeration, in one row

class DetailsText
{
    Q_DECLARE_TR_FUNCTIONS(QlumAttributeDetails)
};

QString localized(const UaVariant& value)
{
    return value.type() == OpcUaType_LocalizedText ? toQString(value.toLocalizedText().text()) : QString();
}

UaVariant find(const std::map<std::string, UaVariant>& properties, const char* name)
{
    const auto found = properties.find(name);
    return found == properties.end() ? UaVariant() : found->second;
}

QString unitText(const UaVariant& unit)
{
    const UaGenericStructureValue fields = qlumStandardFields(unit, "EUInformation");
    if (fields.isNull())
        return {};
    const QString name = localized(fields.value(UaString("DisplayName")));
    const QString description = localized(fields.value(UaString("Description")));
    return description.isEmpty() || description == name ? name
                                                        : QStringLiteral("%1 (%2)").arg(name, description);
}

QString rangeText(const UaVariant& range)
{
    const UaGenericStructureValue fields = qlumStandardFields(range, "Range");
    return fields.isNull() ? QString()
                           : DetailsText::tr("%1 to %2")
                                 .arg(qlumEditText(fields.value(UaString("Low"))),
                                      qlumEditText(fields.value(UaString("High"))));
}

bool isWholeNumber(const UaVariant& value)
{
    return value.isScalar() && value.type() >= OpcUaType_SByte && value.type() <= OpcUaType_UInt64;
}

void addTexts(QList<QlumDetail>& details, const UaVariant& value,
              const std::map<std::string, UaVariant>& properties)
{
    const UaEnumDefinition names = qlumVariableNames(properties);
    const bool isState = value.type() == OpcUaType_Boolean && value.isScalar();
    QStringList all;
    for (int i = 0; i < std::min(names.valueCount(), maximumTexts); ++i) {
        const UaEnumValue named = names.valueAt(i);
        const QString number = !isState           ? QString::number(named.value)
                               : named.value != 0 ? QStringLiteral("true")
                                                  : QStringLiteral("false");
        all.append(QStringLiteral("%1 = %2").arg(number, toQString(named.name)));
    }
    const bool isNumber = isState || isWholeNumber(value);
    const QString present = isNumber ? toQString(names.valueName(value.toInt64())) : QString();
    if (!present.isEmpty())
        details.append({DetailsText::tr("Meaning"), present});
    if (!all.isEmpty())
        details.append({DetailsText::tr("Texts"), all.join(QLatin1String(", "))});
}

// What the elements are called; structures by their names.
QString elementName(const UaVariant& value, const QlumTypeHint& hint, UaDataTypeDictionary* dictionary)
{
    const bool hasElement = value.isScalar() || value.elementCount() > 0;
    if (value.type() == OpcUaType_ExtensionObject && hasElement) {
        const UaVariant element = value.isScalar() ? value : value.at(0);
        const UaStructureDefinition definition =
            qlumStructureDefinition(element.toExtensionObject(), hint, dictionary);
        if (!definition.isNull())
            return toQString(definition.name());
    }
    return qlumBuiltinTypeName(value.type());
}
} // namespace

const std::vector<std::string>& qlumDescribingProperties()
{
    static const std::vector<std::string> names{"EngineeringUnits", "EURange",         "InstrumentRange",
                                                "EnumStrings",      "EnumValues",      "FalseState",
                                                "TrueState",        "MaxStringLength", "MaxByteStringLength"};
    return names;
}

QString qlumTypeText(const UaVariant& value, const QlumTypeHint& hint, UaDataTypeDictionary* dictionary)
{
    if (value.isNull())
        return {};
    const QString name = elementName(value, hint, dictionary);
    if (value.isScalar())
        return name;
    if (!value.isMatrix())
        return DetailsText::tr("%1 Array[%2]").arg(name, QString::number(value.elementCount()));
    QString shape;
    for (const OpcUa_Int32 length : value.dimensions())
        shape += QStringLiteral("[%1]").arg(length);
    return DetailsText::tr("%1 Matrix %2").arg(name, shape);
}

QList<QlumDetail> qlumValueDetails(const QlumTypedValue& value,
                                   const std::map<std::string, UaVariant>& properties,
                                   UaDataTypeDictionary* dictionary)
{
    QList<QlumDetail> details;
    const auto add = [&details](const QString& name, const QString& text) {
        if (!text.isEmpty())
            details.append({name, text});
    };
    add(DetailsText::tr("Type"), qlumTypeText(value.value, value.hint, dictionary));
    add(DetailsText::tr("Unit"), unitText(find(properties, "EngineeringUnits")));
    add(DetailsText::tr("Range"), rangeText(find(properties, "EURange")));
    add(DetailsText::tr("Instrument Range"), rangeText(find(properties, "InstrumentRange")));
    addTexts(details, value.value, properties);
    return details;
}
