#include <uawidgets/editors/qlumvaluefacts.h>

#include <app/api/qlumtext.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>

#include <algorithm>

namespace {
constexpr OpcUa_UInt32 mostNames = 5000; // of a variable

QString accessText(const char* text)
{
    return QCoreApplication::translate("QlumValueFacts", text);
}

UaVariant property(const std::map<std::string, UaVariant>& properties, const char* name)
{
    const auto found = properties.find(name);
    return found == properties.end() ? UaVariant() : found->second;
}

void addName(UaEnumDefinition& names, OpcUa_Int64 number, const UaVariant& text)
{
    if (const UaString name = text.toLocalizedText().text(); !name.isEmpty() && !names.hasValue(number))
        names.addValue(number, name);
}

// A range whose ends are the wrong way round says nothing.
std::optional<QlumValueRange> rangeOf(const UaVariant& value)
{
    const UaGenericStructureValue fields = qlumStandardFields(value, "Range");
    if (fields.isNull())
        return std::nullopt;
    const QlumValueRange range{fields.value(UaString("Low")).toDouble(),
                               fields.value(UaString("High")).toDouble()};
    return range.low < range.high ? std::optional(range) : std::nullopt;
}

bool lacksWrite(std::optional<OpcUa_Byte> level)
{
    return level && !(*level & OpcUa_AccessLevelType_CurrentWrite);
}
} // namespace

const std::vector<std::string>& qlumEditingProperties()
{
    static const std::vector<std::string> names{"EURange",         "InstrumentRange",     "EngineeringUnits",
                                                "MaxStringLength", "MaxByteStringLength", "EnumStrings",
                                                "EnumValues",      "FalseState",          "TrueState"};
    return names;
}

void qlumTakeFacts(const QlumValueFacts& facts, QlumValueContext& context)
{
    context.dataType = facts.dataType;
    context.valueRank = facts.valueRank;
    context.arrayDimensions.assign(facts.arrayDimensions.begin(), facts.arrayDimensions.end());
    context.accessFault = qlumAccessFault(facts.accessLevel, facts.userAccessLevel);
    context.euRange = rangeOf(property(facts.properties, "EURange"));
    context.instrumentRange = rangeOf(property(facts.properties, "InstrumentRange"));
    const UaGenericStructureValue unit =
        qlumStandardFields(property(facts.properties, "EngineeringUnits"), "EUInformation");
    if (!unit.isNull())
        context.unit = toQString(unit.value(UaString("DisplayName")).toLocalizedText().text());
    context.valueNames = qlumVariableNames(facts.properties);
    for (const char* name : {"MaxStringLength", "MaxByteStringLength"})
        if (const UaVariant length = property(facts.properties, name); length.type() == OpcUaType_UInt32)
            if (const OpcUa_UInt32 maximum = length.toUInt32(); maximum > 0) // 0: not limited
                context.maxStringLength = maximum;
}

UaEnumDefinition qlumVariableNames(const std::map<std::string, UaVariant>& properties)
{
    UaEnumDefinition names;
    const UaVariant strings = property(properties, "EnumStrings");
    if (strings.isArray() && strings.type() == OpcUaType_LocalizedText)
        for (OpcUa_UInt32 i = 0; i < std::min(strings.elementCount(), mostNames); ++i)
            addName(names, i, strings.at(i));
    const UaVariant values = property(properties, "EnumValues");
    for (OpcUa_UInt32 i = 0; values.isArray() && i < std::min(values.elementCount(), mostNames); ++i)
        if (const UaGenericStructureValue fields = qlumStandardFields(values.at(i), "EnumValueType");
            !fields.isNull())
            addName(names, fields.value(UaString("Value")).toInt64(), fields.value(UaString("DisplayName")));
    for (const bool state : {false, true})
        addName(names, state, property(properties, state ? "TrueState" : "FalseState"));
    return names;
}

QString qlumAccessFault(std::optional<OpcUa_Byte> accessLevel, std::optional<OpcUa_Byte> userAccessLevel)
{
    if (lacksWrite(accessLevel))
        return accessText("Nobody may write it: AccessLevel has no CurrentWrite.");
    if (lacksWrite(userAccessLevel))
        return accessText("The user who is logged in may not write it: UserAccessLevel has no CurrentWrite.");
    return {};
}

UaGenericStructureValue qlumStandardFields(const UaVariant& value, const char* structure)
{
    UaGenericStructureValue fields;
    if (value.type() != OpcUaType_ExtensionObject || !value.isScalar())
        return fields;
    const UaExtensionObject object = value.toExtensionObject();
    const UaStructureDefinition definition = uaNamespaceZeroStructure(object.encodingId());
    if (definition.name() != UaString(structure) || fields.decode(object, definition).isBad())
        return {};
    return fields;
}
