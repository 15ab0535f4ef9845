// Index ranges: their text, and the elements that they mean.
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanumericrange.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

UaNumericRange range(const char* text)
{
    bool ok = false;
    const UaNumericRange made = UaNumericRange::fromString(text, &ok);
    EXPECT_TRUE(ok) << text;
    EXPECT_EQ(made.toString(), UaString(text));
    return made;
}

UaVariant numbers(int count, const std::vector<OpcUa_Int32>& dimensions = {})
{
    std::vector<UaVariant> elements;
    for (int i = 0; i < count; ++i)
        elements.emplace_back(OpcUa_Int32{i});
    UaVariant array;
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_Int32, elements)));
    EXPECT_TRUE(dimensions.empty() || OpcUa_IsGood(array.setDimensions(dimensions)));
    return array;
}

std::string read(const UaVariant& value, const char* text)
{
    UaVariant part;
    const UaStatusCode status = range(text).read(value, part);
    return (status.isBad() ? status.toString() : part.toString()).toStdString();
}

TEST(NumericRange, FaultyTextsAreRefused)
{
    for (const char* text :
         {"a", "-1", "1:", ":1", "2:1", "1:1", "1,", ",1", "1:2:3", "4294967296", " 1", "1,,2"}) {
        bool ok = true;
        EXPECT_TRUE(UaNumericRange::fromString(text, &ok).isEmpty()) << text;
        EXPECT_FALSE(ok) << text;
    }
    std::string many = "0";
    for (int i = 0; i < 100; ++i)
        many += ",0";
    bool ok = true;
    EXPECT_TRUE(UaNumericRange::fromString(many, &ok).isEmpty());
    EXPECT_FALSE(ok);
}

TEST(NumericRange, ReadsPartsOfArraysMatricesAndTexts)
{
    EXPECT_EQ(read(numbers(5), "1:2"), "{1|2}");
    EXPECT_EQ(read(numbers(5), "3:4294967295"), "{3|4}");
    EXPECT_EQ(read(numbers(5), "5"), "BadIndexRangeNoData");
    EXPECT_EQ(read(numbers(0), "0"), "BadIndexRangeNoData");
    EXPECT_EQ(read(numbers(5), "0,0"), "BadIndexRangeInvalid");
    EXPECT_EQ(read(numbers(12, {2, 3, 2}), "1,0:1,1"), "[1,2,1]{7|9}");
    EXPECT_EQ(read(numbers(6, {2, 3}), "0"), "BadIndexRangeInvalid");
    EXPECT_EQ(read(UaVariant("hello"), "1:3"), "ell");
    EXPECT_EQ(read(UaVariant("hello"), "0:4294967295"), "hello");
    EXPECT_EQ(read(UaVariant("hello"), "4:9"), "o");
    EXPECT_EQ(read(UaVariant("hello"), "5:9"), "BadIndexRangeNoData");
    EXPECT_EQ(read(UaVariant(1.5), "0"), "BadIndexRangeInvalid");
    UaVariant texts;
    const UaVariant words[] = {UaVariant("abc"), UaVariant("def")};
    ASSERT_TRUE(OpcUa_IsGood(texts.setArray(OpcUaType_String, words)));
    EXPECT_EQ(read(texts, "0:1,1"), "{b|e}");
}

TEST(NumericRange, WritesPartsOfTheSameShapeOnly)
{
    UaVariant matrix = numbers(6, {2, 3});
    UaVariant part = numbers(2, {2, 1});
    ASSERT_TRUE(range("0:1,2").write(matrix, part).isGood());
    EXPECT_EQ(matrix.toString(), UaString("[2,3]{0|1|0|3|4|1}"));
    const UaVariant before = matrix;
    EXPECT_EQ(range("0:1,1:2").write(matrix, part).code(), OpcUa_StatusCode(OpcUa_BadIndexRangeInvalid));
    EXPECT_EQ(range("0:2,2").write(matrix, part).code(), OpcUa_StatusCode(OpcUa_BadIndexRangeNoData));
    EXPECT_EQ(range("0:1,2").write(matrix, UaVariant(1.0)).code(), OpcUa_StatusCode(OpcUa_BadTypeMismatch));
    EXPECT_EQ(matrix, before);
    UaVariant text("hello");
    ASSERT_TRUE(range("0").write(text, UaVariant("J")).isGood());
    EXPECT_EQ(text, UaVariant("Jello"));
    EXPECT_EQ(range("4:5").write(text, UaVariant("xx")).code(), OpcUa_StatusCode(OpcUa_BadIndexRangeNoData));
    for (const char* other : {"x", "xxx"})
        EXPECT_EQ(range("1:2").write(text, UaVariant(other)).code(),
                  OpcUa_StatusCode(OpcUa_BadIndexRangeInvalid));
    const UaByteString bytes(2, reinterpret_cast<const OpcUa_Byte*>("xx"));
    for (const UaVariant& other : {UaVariant(bytes), UaVariant(1.0), numbers(2)})
        EXPECT_EQ(range("1:2").write(text, other).code(), OpcUa_StatusCode(OpcUa_BadTypeMismatch));
    EXPECT_EQ(text, UaVariant("Jello"));
    UaVariant texts;
    UaVariant letters;
    const UaVariant words[] = {UaVariant("abc"), UaVariant("def"), UaVariant("g")};
    ASSERT_TRUE(OpcUa_IsGood(texts.setArray(OpcUaType_String, words)));
    const UaVariant parts[] = {UaVariant("X"), UaVariant("Y")};
    ASSERT_TRUE(OpcUa_IsGood(letters.setArray(OpcUaType_String, parts)));
    ASSERT_TRUE(range("0:1,1").write(texts, letters).isGood());
    EXPECT_EQ(texts.toString(), UaString("{aXc|dYf|g}"));
    EXPECT_TRUE(range("1:2,1").write(texts, letters).isBad());
    EXPECT_EQ(texts.toString(), UaString("{aXc|dYf|g}")) << "all or nothing";
}

} // namespace
