// Structures of a made-up plant: nested, optional, recursive, a union, open types; and values of them by
// chance.
#pragma once
#include <opcua/opcua_types.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace plant {

inline const UaNodeId modeId(3000, 2);
inline const UaNodeId flagsId(3001, 2);
inline const UaNodeId limitsId(5001, 2);
inline const UaNodeId limitsEncodingId(5101, 2);
inline const UaNodeId orderId(5002, 2);
inline const UaNodeId choiceId(5003, 2);

inline UaStructureField field(const char* name, const UaNodeId& type, OpcUa_BuiltInType builtIn,
                              OpcUa_Int32 rank = -1, bool isOptional = false)
{
    return UaStructureField(UaString(name), type, builtIn, rank, isOptional);
}

inline UaStructureField field(const char* name, OpcUa_BuiltInType builtIn, OpcUa_Int32 rank = -1,
                              bool isOptional = false)
{
    return field(name, UaNodeId(static_cast<OpcUa_UInt32>(builtIn), 0), builtIn, rank, isOptional);
}

inline std::shared_ptr<UaTypeDefinitionStore> makeDefinitions()
{
    auto store = std::make_shared<UaTypeDefinitionStore>();
    UaEnumDefinition mode(UaString("Mode"), modeId);
    mode.addValue(0, UaString("Off"));
    mode.addValue(1, UaString("Running"));
    store->add(mode);
    UaOptionSetDefinition flags(UaString("Flags"), flagsId, OpcUaType_UInt32);
    flags.addBit(0, UaString("Wet"));
    flags.addBit(2, UaString("Hot"));
    store->add(flags);
    UaStructureDefinition limits(UaString("Limits"), limitsId, limitsEncodingId);
    limits.addField(field("Low", OpcUaType_Double));
    limits.addField(field("High", OpcUaType_Double));
    store->add(limits);
    UaStructureDefinition choice(UaString("Choice"), choiceId, UaNodeId(5103, 2));
    choice.setUnion(true);
    choice.addField(field("Number", OpcUaType_Int32));
    choice.addField(field("Limits", limitsId, OpcUaType_ExtensionObject));
    store->add(choice);
    UaStructureDefinition order(UaString("Order"), orderId, UaNodeId(5102, 2));
    order.addField(field("Name", OpcUaType_String));
    order.addField(field("Count", OpcUaType_Int32));
    order.addField(field("Limits", limitsId, OpcUaType_ExtensionObject));
    order.addField(field("Note", OpcUaType_String, -1, true));
    order.addField(field("Samples", OpcUaType_Int32, 1));
    order.addField(field("Parts", limitsId, OpcUaType_ExtensionObject, 1));
    order.addField(field("Mode", modeId, OpcUaType_Int32));
    order.addField(field("Flags", flagsId, OpcUaType_UInt32));
    order.addField(field("Any", OpcUaType_Variant));
    order.addField(field("Choice", choiceId, OpcUaType_ExtensionObject));
    UaStructureField part = field("Part", UaNodeId(OpcUaType_ExtensionObject, 0), OpcUaType_ExtensionObject);
    part.setAllowSubTypes(true);
    order.addField(part);
    order.addField(field("Next", orderId, OpcUaType_ExtensionObject, -1, true));
    store->add(order);
    return store;
}

inline const std::shared_ptr<UaTypeDefinitionStore>& definitions()
{
    static const std::shared_ptr<UaTypeDefinitionStore> store = makeDefinitions();
    return store;
}

/// Of an order.
inline QlumValueContext context()
{
    QlumValueContext context;
    context.dataType = orderId;
    context.builtInType = OpcUaType_ExtensionObject;
    context.valueRank = -1;
    context.dictionary = definitions();
    context.concreteTypes = [](const UaNodeId& type) {
        return type.isNumeric(OpcUaType_ExtensionObject) ? std::vector<UaNodeId>{limitsId, orderId}
                                                         : std::vector<UaNodeId>{};
    };
    return context;
}

inline UaVariant encoded(const UaGenericStructureValue& value)
{
    UaExtensionObject object;
    EXPECT_TRUE(value.encode(object).isGood());
    return UaVariant(object);
}

inline UaVariant randomLimits(std::mt19937& dice)
{
    UaGenericStructureValue limits(definitions()->structure(limitsId));
    EXPECT_TRUE(limits.setField(0, UaVariant(static_cast<double>(dice() % 100))).isGood());
    EXPECT_TRUE(limits.setField(1, UaVariant(static_cast<double>(dice() % 100) + 100)).isGood());
    return encoded(limits);
}

inline UaVariant randomChoice(std::mt19937& dice)
{
    UaGenericUnionValue choice(definitions()->structure(choiceId));
    const bool isNumber = dice() % 2 == 0;
    const UaVariant member =
        isNumber ? UaVariant(static_cast<OpcUa_Int32>(dice() % 100)) : randomLimits(dice);
    if (dice() % 3 > 0)
        EXPECT_TRUE(choice.setValue(isNumber ? 1 : 2, member).isGood());
    UaExtensionObject object;
    EXPECT_TRUE(choice.encode(object).isGood());
    return UaVariant(object);
}

/// With up to so many orders within it.
inline UaVariant randomOrder(std::mt19937& dice, int within)
{
    UaGenericStructureValue order(definitions()->structure(orderId), definitions().get());
    const auto set = [&order](const char* name, const UaVariant& value) {
        EXPECT_TRUE(order.setField(UaString(name), value).isGood()) << name;
    };
    set("Name", UaVariant(UaString(std::to_string(dice() % 1000))));
    set("Count", UaVariant(static_cast<OpcUa_Int32>(dice() % 1000)));
    set("Limits", randomLimits(dice));
    if (dice() % 2 == 0)
        set("Note", UaVariant("by hand"));
    std::vector<UaVariant> samples;
    std::vector<UaVariant> parts;
    for (auto i = dice() % 4; i > 0; --i) {
        samples.emplace_back(static_cast<OpcUa_Int32>(dice() % 1000));
        parts.push_back(randomLimits(dice));
    }
    UaVariant array;
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_Int32, samples)));
    set("Samples", array);
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_ExtensionObject, parts)));
    set("Parts", array);
    set("Mode", UaVariant(static_cast<OpcUa_Int32>(dice() % 3)));
    set("Flags", UaVariant(static_cast<OpcUa_UInt32>(dice() % 8)));
    set("Any", dice() % 2 == 0 ? UaVariant(1.5) : UaVariant("any"));
    set("Choice", randomChoice(dice));
    set("Part", randomLimits(dice));
    if (within > 0)
        set("Next", randomOrder(dice, within - 1));
    return encoded(order);
}

/// The order with another one within it.
inline UaVariant withNext(const UaVariant& order, const UaVariant& next)
{
    UaGenericStructureValue fields;
    EXPECT_TRUE(
        fields.decode(order.toExtensionObject(), definitions()->structure(orderId), definitions().get())
            .isGood());
    EXPECT_TRUE(fields.setField(UaString("Next"), next).isGood());
    return encoded(fields);
}

/// Another value of the type.
inline UaVariant otherThan(const UaVariant& value)
{
    switch (value.type()) {
    case OpcUaType_Int32:
        return UaVariant(value.toInt32() + 1);
    case OpcUaType_UInt32:
        return UaVariant(value.toUInt32() ^ 4u);
    case OpcUaType_Double:
        return UaVariant(value.toDouble() + 0.5);
    default:
        return UaVariant(UaString((std::string(value.toString().view()) + "x").c_str()));
    }
}

/// Scalars by the names that lead to them; what is absent is not there.
using Flat = std::map<std::string, UaVariant>;

inline void flatten(const UaVariant& value, const std::string& path, Flat& flat);

inline void flattenStructure(const UaExtensionObject& object, const UaStructureDefinition& type,
                             const std::string& path, Flat& flat)
{
    const std::string prefix = path.empty() ? path : path + ".";
    const auto add = [&](const UaStructureField& field, const UaVariant& value) {
        flatten(value, prefix + std::string(field.name().view()), flat);
    };
    if (type.isUnion()) {
        UaGenericUnionValue members;
        EXPECT_TRUE(members.decode(object, type, definitions().get()).isGood()) << path;
        if (members.switchValue() > 0)
            add(members.field(), members.value());
        return;
    }
    UaGenericStructureValue fields;
    EXPECT_TRUE(fields.decode(object, type, definitions().get()).isGood()) << path;
    for (int i = 0; i < fields.fieldCount(); ++i)
        if (fields.isFieldSet(i))
            add(type.field(i), fields.value(i));
}

inline void flatten(const UaVariant& value, const std::string& path, Flat& flat)
{
    for (OpcUa_UInt32 i = 0; i < value.elementCount(); ++i)
        flatten(value.at(i), path + "[" + std::to_string(i) + "]", flat);
    if (!value.isScalar())
        return;
    const UaExtensionObject object = value.toExtensionObject();
    const UaStructureDefinition type = value.type() == OpcUaType_ExtensionObject
                                           ? definitions()->structure(object.encodingId())
                                           : UaStructureDefinition();
    if (type.isNull())
        flat[path] = value;
    else
        flattenStructure(object, type, path, flat);
}

inline Flat flat(const UaVariant& value)
{
    Flat flat;
    flatten(value, "", flat);
    return flat;
}

} // namespace plant
