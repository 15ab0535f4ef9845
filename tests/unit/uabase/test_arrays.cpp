// Typed arrays: who owns what. The memory checks of the sanitizer build do the rest.
#include <uabase/values/uaarray.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace {

UaStringArray texts(std::initializer_list<const char*> values)
{
    UaStringArray array(static_cast<OpcUa_UInt32>(values.size()));
    OpcUa_UInt32 i = 0;
    for (const char* value : values)
        EXPECT_TRUE(OpcUa_IsGood(UaString(value).detach(&array[i++])));
    return array;
}

std::string joined(const UaStringArray& array)
{
    std::string text;
    for (const OpcUa_String& element : array)
        text.append(UaString(element).view()).append("|");
    return text;
}

} // namespace

TEST(UaArray, CopiesDeeplyAndMovesCheaply)
{
    UaStringArray array = texts({"a", "b", "c"});
    UaStringArray copy(array);
    EXPECT_TRUE(OpcUa_IsGood(UaString("x").detach((OpcUa_String_Clear(&copy[0]), &copy[0]))));
    EXPECT_EQ(joined(array), "a|b|c|");
    EXPECT_EQ(joined(copy), "x|b|c|");

    const OpcUa_String* block = array.rawData();
    UaStringArray moved(std::move(array));
    EXPECT_EQ(moved.rawData(), block);
    EXPECT_TRUE(array.isEmpty()); // NOLINT(bugprone-use-after-move): the state is promised
    copy = moved;
    copy = std::move(copy);
    EXPECT_EQ(joined(copy), "a|b|c|");
}

TEST(UaArray, ResizeKeepsTheFirstElements)
{
    UaStringArray array = texts({"a", "b", "c"});
    ASSERT_TRUE(array.resize(4));
    EXPECT_TRUE(UaString(array[3]).isNull());
    ASSERT_TRUE(array.resize(2));
    EXPECT_EQ(joined(array), "a|b|");
    ASSERT_TRUE(array.resize(0));
    EXPECT_EQ(array.rawData(), nullptr);
    EXPECT_FALSE(array.resize(0xFFFFFFFFu)) << "more than a length on the wire can say";
    EXPECT_TRUE(array.create(1));
    EXPECT_FALSE(array.create(0x80000000u));
    EXPECT_EQ(array.length(), 0u);
}

TEST(UaArray, AppendsCopiesAndMovedElements)
{
    UaStringArray array = texts({"a"});
    ASSERT_TRUE(array.append(*UaString("b").get()));
    ASSERT_TRUE(array.append(array[0])) << "an element of its own";
    UaStringArray other = texts({"c", "d"});
    const char* data = other[0].Data;
    ASSERT_TRUE(array.appendMoved(std::move(other)));
    EXPECT_EQ(joined(array), "a|b|a|c|d|");
    EXPECT_EQ(array[3].Data, data);
    EXPECT_TRUE(other.isEmpty()); // NOLINT(bugprone-use-after-move)
}

TEST(UaArray, ChangesHandsWithCStructures)
{
    OpcUa_ReadRequest request;
    OpcUa_EncodeableObject_Initialize(&OpcUa_ReadRequest_EncodeableType, &request);
    UaReadValueIds nodes(2);
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId("abc", 2).copyTo(&nodes[1].NodeId)));
    UaReadValueIds kept = nodes;
    nodes.detach(&request.NoOfNodesToRead, &request.NodesToRead);
    EXPECT_EQ(request.NoOfNodesToRead, 2);
    EXPECT_TRUE(nodes.isEmpty());

    nodes.attachFrom(&request.NoOfNodesToRead, &request.NodesToRead);
    EXPECT_EQ(request.NodesToRead, nullptr);
    EXPECT_EQ(request.NoOfNodesToRead, 0);
    ASSERT_TRUE(kept.copyTo(&request.NoOfNodesToRead, &request.NodesToRead));
    EXPECT_EQ(UaNodeId(request.NodesToRead[1].NodeId), UaNodeId(nodes[1].NodeId));
    EXPECT_NE(request.NodesToRead, kept.rawData());
    OpcUa_EncodeableObject_Clear(&OpcUa_ReadRequest_EncodeableType, &request);

    nodes.attach(0, nullptr);
    EXPECT_TRUE(nodes.isEmpty());
    nodes.attach(-1, nullptr);
    EXPECT_TRUE(nodes.isEmpty());
    EXPECT_TRUE(UaUInt32Array(-1, nullptr).isEmpty());
}

TEST(UaArray, HoldsNumbersAndNestedStructures)
{
    UaDoubleArray numbers(3);
    EXPECT_EQ(numbers[2], 0.0);
    numbers[2] = 1.5;
    EXPECT_EQ(UaDoubleArray(numbers)[2], 1.5);

    UaBrowseResults results(1);
    UaReferenceDescriptions references(1);
    EXPECT_TRUE(OpcUa_IsGood(UaLocalizedText("en", "Server").copyTo(&references[0].DisplayName)));
    references.detach(&results[0].NoOfReferences, &results[0].References);
    const UaBrowseResults copy(results);
    results.clear();
    EXPECT_EQ(UaLocalizedText(copy[0].References[0].DisplayName).text(), "Server");

    UaDataValues values(2);
    EXPECT_TRUE(OpcUa_IsGood(UaDataValue(UaVariant("text"), OpcUa_UncertainInitialValue).detach(&values[1])));
    EXPECT_EQ(UaDataValue(values[1]).toString(), "text; UncertainInitialValue");
}
