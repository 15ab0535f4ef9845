#include <uawidgets/editors/qlumvaluefacts.h>

#include <app/api/qlumtext.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>

namespace {
QString accessText(const char* text)
{
    return QCoreApplication::translate("QlumValueFacts", text);
}

UaVariant property(const QlumValueFacts& facts, const char* name)
{
    const auto found = facts.properties.find(name);
    return found == facts.properties.end() ? UaVariant() : found->second;
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
    static const std::vector<std::string> names{"EURange", "InstrumentRange", "EngineeringUnits",
                                                "MaxStringLength", "MaxByteStringLength"};
    return names;
}

void qlumTakeFacts(const QlumValueFacts& facts, QlumValueContext& context)
{
    context.dataType = facts.dataType;
    context.valueRank = facts.valueRank;
    context.arrayDimensions.assign(facts.arrayDimensions.begin(), facts.arrayDimensions.end());
    context.accessFault = qlumAccessFault(facts.accessLevel, facts.userAccessLevel);
    context.euRange = rangeOf(property(facts, "EURange"));
    context.instrumentRange = rangeOf(property(facts, "InstrumentRange"));
    const UaGenericStructureValue unit =
        qlumStandardFields(property(facts, "EngineeringUnits"), "EUInformation");
    if (!unit.isNull())
        context.unit = toQString(unit.value(UaString("DisplayName")).toLocalizedText().text());
    for (const char* name : {"MaxStringLength", "MaxByteStringLength"})
        if (const UaVariant length = property(facts, name); length.type() == OpcUaType_UInt32)
            if (const OpcUa_UInt32 maximum = length.toUInt32(); maximum > 0) // 0: not limited
                context.maxStringLength = maximum;
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
