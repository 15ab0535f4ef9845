// Random definitions with random values: as bytes, JSON and XML and back. The seed is fixed and printed, so
// that a failure can be repeated.
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr unsigned seed = 20261121;
constexpr int definitionCount = 40;
constexpr int valuesEach = 10;

class Random
{
public:
    explicit Random(unsigned start) : m_engine(start) {}
    int below(int end) { return static_cast<int>(m_engine() % static_cast<unsigned>(end)); }
    bool oneIn(int count) { return below(count) == 0; }

    UaString text()
    {
        constexpr const char* pieces[] = {"a", "<",  "&", "\"", "\\", "\n", "\xC3\xA4", "\xF0\x9F\x98\x80",
                                          " ", "]]>"};
        std::string made;
        for (int i = below(6); i > 0; --i)
            made += pieces[below(10)];
        return oneIn(5) ? UaString() : UaString(made);
    }
    UaByteString bytes()
    {
        std::vector<OpcUa_Byte> made(static_cast<std::size_t>(below(6)));
        for (OpcUa_Byte& byte : made)
            byte = static_cast<OpcUa_Byte>(m_engine());
        return oneIn(5) ? UaByteString() : UaByteString(std::span<const OpcUa_Byte>(made));
    }
    UaNodeId nodeId()
    {
        const auto space = static_cast<OpcUa_UInt16>(below(3));
        switch (below(4)) {
        case 0:
            return UaNodeId(UaString("n;=" + std::to_string(below(9))), space);
        case 1:
            return UaNodeId(UaByteString(std::span<const OpcUa_Byte>(letters, 3)), space);
        case 2:
            return UaNodeId(UaGuid::fromString("01234567-89ab-cdef-0123-456789abcdef"), space);
        default:
            return UaNodeId(static_cast<OpcUa_UInt32>(m_engine()), space);
        }
    }

    // Of a type that stands for itself; structures are the caller's.
    UaVariant scalar(OpcUa_BuiltInType type)
    {
        const auto bits = (OpcUa_UInt64{m_engine()} << 32) | m_engine();
        UaVariant value;
        switch (type) {
        case OpcUaType_Float:
            return UaVariant(static_cast<OpcUa_Float>(static_cast<OpcUa_Int64>(bits)) / 3);
        case OpcUaType_Double:
            return UaVariant(static_cast<OpcUa_Double>(static_cast<OpcUa_Int64>(bits)) / 7);
        case OpcUaType_String:
            value.setString(text());
            return value;
        case OpcUaType_DateTime:
            return UaVariant(UaDateTime(static_cast<OpcUa_DateTime>(bits % 2600000000000000000u)));
        case OpcUaType_ByteString:
            value.setByteString(bytes());
            return value;
        case OpcUaType_NodeId:
            return UaVariant(nodeId());
        case OpcUaType_ExpandedNodeId:
            return UaVariant(UaExpandedNodeId(nodeId(), UaString(), static_cast<OpcUa_UInt32>(below(2))));
        case OpcUaType_StatusCode:
            return UaVariant(UaStatusCode(static_cast<OpcUa_UInt32>(bits)));
        case OpcUaType_QualifiedName:
            return UaVariant(UaQualifiedName(text(), static_cast<OpcUa_UInt16>(below(9))));
        case OpcUaType_LocalizedText:
            return UaVariant(UaLocalizedText(text(), text()));
        case OpcUaType_Variant:
            return oneIn(4) ? UaVariant() : scalar(types[below(18)]);
        default:
            return integer(type, bits);
        }
    }

    static constexpr OpcUa_BuiltInType types[] = {
        OpcUaType_Boolean,    OpcUaType_SByte,         OpcUaType_Byte,          OpcUaType_Int16,
        OpcUaType_UInt16,     OpcUaType_Int32,         OpcUaType_UInt32,        OpcUaType_Int64,
        OpcUaType_UInt64,     OpcUaType_Float,         OpcUaType_Double,        OpcUaType_String,
        OpcUaType_DateTime,   OpcUaType_ByteString,    OpcUaType_NodeId,        OpcUaType_ExpandedNodeId,
        OpcUaType_StatusCode, OpcUaType_LocalizedText, OpcUaType_QualifiedName, OpcUaType_Variant};

private:
    static constexpr OpcUa_Byte letters[] = {'x', 0, 255};

    // Cut to the width of the type.
    static UaVariant integer(OpcUa_BuiltInType type, OpcUa_UInt64 bits)
    {
        OpcUa_Variant value;
        OpcUa_Variant_Initialize(&value);
        value.Datatype = static_cast<OpcUa_Byte>(type);
        if (type == OpcUaType_Boolean)
            value.Value.Boolean = bits % 2 != 0 ? OpcUa_True : OpcUa_False;
        else
            std::memcpy(&value.Value, &bits, OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(type)));
        return UaVariant(value);
    }

    std::mt19937 m_engine;
};

// Structures and unions, later ones with fields of earlier ones.
class RoundTrips : public testing::Test
{
protected:
    void SetUp() override
    {
        std::printf("seed %u\n", seed);
        for (int i = 0; i < definitionCount; ++i) {
            definitions.push_back(randomDefinition(i));
            store.add(definitions.back());
        }
    }

    UaStructureDefinition randomDefinition(int number)
    {
        const auto id = static_cast<OpcUa_UInt32>(100 + number);
        UaStructureDefinition made(UaString("Type" + std::to_string(number)), UaNodeId(id, 2),
                                   UaNodeId(id + 1000, 2));
        made.setUnion(random.oneIn(4));
        const bool optional = !made.isUnion() && random.oneIn(2);
        made.setHasOptionalFields(optional);
        for (int i = random.below(6) + (made.isUnion() ? 1 : 0); i > 0; --i) {
            const UaString name("Field" + std::to_string(i));
            const OpcUa_Int32 rank = random.oneIn(3) ? 1 + random.below(3) : -1;
            const bool isOptional = optional && random.oneIn(2);
            if (number > 0 && random.oneIn(3)) {
                const UaStructureDefinition& nested =
                    definitions[static_cast<std::size_t>(random.below(number))];
                made.addField(
                    UaStructureField(name, nested.dataTypeId(), OpcUaType_ExtensionObject, rank, isOptional));
            } else {
                const OpcUa_BuiltInType type = Random::types[random.below(20)];
                made.addField(UaStructureField(name, UaNodeId(static_cast<OpcUa_UInt32>(type)), type, rank,
                                               isOptional));
            }
        }
        return made;
    }

    UaVariant element(const UaStructureField& field, int depth)
    {
        if (field.builtInType() != OpcUaType_ExtensionObject)
            return random.scalar(field.builtInType());
        return UaVariant(structure(store.structure(field.dataTypeId()), depth + 1));
    }

    UaVariant fieldValue(const UaStructureField& field, int depth)
    {
        if (field.valueRank() < 0)
            return element(field, depth);
        std::vector<OpcUa_Int32> dimensions;
        int count = 1;
        for (OpcUa_Int32 i = 0; i < field.valueRank(); ++i) {
            dimensions.push_back(1 + random.below(depth > 2 ? 1 : 3));
            count *= dimensions.back();
        }
        std::vector<UaVariant> elements;
        for (int i = 0; i < count; ++i)
            elements.push_back(element(field, depth));
        UaVariant array;
        if (field.valueRank() == 1 && random.oneIn(5))
            EXPECT_TRUE(
                OpcUa_IsGood(array.attachArray(field.builtInType(), random.oneIn(2) ? -1 : 0, nullptr)));
        else if (OpcUa_IsBad(array.setArray(field.builtInType(), elements)) ||
                 OpcUa_IsBad(array.setDimensions(dimensions)))
            ADD_FAILURE() << "no array for field " << field.name().toUtf8();
        return array;
    }

    UaExtensionObject structure(const UaStructureDefinition& definition, int depth)
    {
        UaExtensionObject object;
        if (definition.isUnion()) {
            UaGenericUnionValue value(definition);
            const int chosen = random.below(definition.fieldCount() + 1);
            if (chosen > 0) {
                const UaVariant content = fieldValue(definition.field(chosen - 1), depth);
                EXPECT_TRUE(value.setValue(static_cast<OpcUa_UInt32>(chosen), content).isGood());
            }
            EXPECT_TRUE(value.encode(object).isGood());
            return object;
        }
        UaGenericStructureValue value(definition, &store);
        for (int i = 0; i < definition.fieldCount(); ++i) {
            const UaStructureField field = definition.field(i);
            if (!field.isOptional() || random.oneIn(2))
                EXPECT_TRUE(value.setField(i, fieldValue(field, depth)).isGood());
        }
        EXPECT_TRUE(value.encode(object).isGood()) << definition.name().toUtf8();
        return object;
    }

    void expectBytesRead(const UaExtensionObject& object, const UaStructureDefinition& definition)
    {
        UaExtensionObject again;
        if (definition.isUnion()) {
            UaGenericUnionValue value;
            ASSERT_TRUE(value.decode(object, definition, &store).isGood());
            ASSERT_TRUE(value.encode(again).isGood());
        } else {
            UaGenericStructureValue value;
            ASSERT_TRUE(value.decode(object, definition, &store).isGood());
            ASSERT_TRUE(value.encode(again).isGood());
        }
        EXPECT_EQ(object, again);
    }

    void expectTextsRead(const UaVariant& value)
    {
        UaString text;
        UaString error;
        UaVariant back;
        ASSERT_TRUE(UaValueText::toJson(value, &store, text).isGood());
        ASSERT_EQ(text.view().find("\"Encoding\""), std::string_view::npos) << "not taken apart";
        ASSERT_TRUE(UaValueText::fromJson(text.view(), &store, back, &error).isGood())
            << text.toUtf8() << '\n'
            << error.toUtf8();
        ASSERT_EQ(value, back) << text.toUtf8();
        ASSERT_TRUE(UaValueText::toXml(value, &store, text).isGood());
        ASSERT_TRUE(UaValueText::fromXml(text.view(), &store, back, &error).isGood()) << text.toUtf8() << '\n'
                                                                                      << error.toUtf8();
        ASSERT_EQ(value, back) << text.toUtf8();
    }

    Random random{seed};
    std::vector<UaStructureDefinition> definitions;
    UaTypeDefinitionStore store;
};

TEST_F(RoundTrips, RandomValuesOfRandomDefinitions)
{
    for (const UaStructureDefinition& definition : definitions) {
        for (int i = 0; i < valuesEach && !HasFatalFailure(); ++i) {
            SCOPED_TRACE(definition.name().toStdString() + ", value " + std::to_string(i));
            const UaExtensionObject object = structure(definition, 0);
            expectBytesRead(object, definition);
            expectTextsRead(UaVariant(object));
        }
    }
}

// Any byte of a body may be wrong: the decoder ends in a status or in a value that reads back.
TEST_F(RoundTrips, DamagedBodiesEndInAStatusOrAValue)
{
    int decoded = 0;
    int refused = 0;
    for (const UaStructureDefinition& definition : definitions) {
        UaByteString body;
        ASSERT_TRUE(OpcUa_IsGood(structure(definition, 0).binaryBody(body)));
        for (int i = 0; i < 50 && body.length() > 0 && !definition.isUnion(); ++i) {
            std::vector<OpcUa_Byte> damaged(body.bytes().begin(), body.bytes().end());
            damaged[static_cast<std::size_t>(random.below(body.length()))] =
                static_cast<OpcUa_Byte>(random.below(256));
            UaGenericStructureValue value;
            UaExtensionObject object;
            const UaByteString bytes{std::span<const OpcUa_Byte>(damaged)};
            if (value.decode(bytes, definition, &store).isBad()) {
                ++refused;
                continue;
            }
            ++decoded;
            ASSERT_TRUE(value.encode(object).isGood());
            UaGenericStructureValue again;
            EXPECT_TRUE(again.decode(object, definition, &store).isGood());
        }
    }
    EXPECT_GT(decoded, 100);
    EXPECT_GT(refused, 50);
}

} // namespace
