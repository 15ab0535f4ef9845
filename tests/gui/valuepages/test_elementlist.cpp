#include <opcua/opcua_builtintypes.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumelementlist.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QStringList>
#include <QVector>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {
using Plain = std::vector<UaVariant>;

class Dice
{
public:
    explicit Dice(unsigned seed) : m_engine(seed) {}
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_engine); }

private:
    std::mt19937 m_engine;
};

UaVariant someValue(OpcUa_BuiltInType type, Dice& dice)
{
    if (type == OpcUaType_Double)
        return UaVariant(dice.upTo(1000) / 4.0);
    if (type == OpcUaType_String || dice.upTo(1) == 0)
        return UaVariant(UaString(std::to_string(dice.upTo(1000))));
    UaVariant inner; // in an array of variants
    const OpcUa_Int32 numbers[] = {dice.upTo(9), dice.upTo(9)};
    EXPECT_TRUE(OpcUa_IsGood(inner.setArray(OpcUaType_Int32, 2, numbers)));
    return inner;
}

UaVariant packed(OpcUa_BuiltInType type, const Plain& values)
{
    UaVariant array;
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(type, values)));
    return array;
}

void editBoth(QlumElementList& list, Plain& plain, Dice& dice)
{
    const OpcUa_BuiltInType type = list.type();
    const int size = static_cast<int>(plain.size());
    const int first = dice.upTo(size);
    const int count = dice.upTo(std::min(size - first, 4));
    const auto begin = plain.begin() + first;
    switch (dice.upTo(4)) {
    case 0: {
        const UaVariant value = someValue(type, dice);
        EXPECT_EQ(list.fill(first, count, value), count > 0);
        std::fill(begin, begin + count, value);
        break;
    }
    case 1: {
        const UaVariant value = someValue(type, dice);
        EXPECT_TRUE(list.insert(first, 1 + count, value));
        plain.insert(begin, static_cast<std::size_t>(1 + count), value);
        break;
    }
    case 2:
        EXPECT_EQ(list.remove(first, count), count > 0);
        plain.erase(begin, begin + count);
        break;
    case 3: {
        const int before = dice.upTo(size);
        const bool moves = count > 0 && (before < first || before > first + count);
        EXPECT_EQ(list.move(first, count, before), moves);
        if (moves && before < first)
            std::rotate(plain.begin() + before, begin, begin + count);
        else if (moves)
            std::rotate(begin, begin + count, plain.begin() + before);
        break;
    }
    default: {
        const Plain values{someValue(type, dice), someValue(type, dice), someValue(type, dice)};
        EXPECT_TRUE(list.overwrite(first, packed(type, values)));
        plain.erase(begin, begin + std::min(size - first, 3));
        plain.insert(plain.begin() + first, values.begin(), values.end());
        break;
    }
    }
}

TEST(ElementList, RandomEditsAreThoseOfAPlainList)
{
    for (const OpcUa_BuiltInType type : {OpcUaType_Double, OpcUaType_String, OpcUaType_Variant}) {
        Dice dice(static_cast<unsigned>(type));
        Plain plain;
        for (int i = 0; i < 20; ++i)
            plain.push_back(someValue(type, dice));
        const UaVariant original = packed(type, plain);
        const Plain before = plain;
        QlumElementList list(original, type);
        EXPECT_EQ(list.whole(), original);
        for (int i = 0; i < 400; ++i) {
            editBoth(list, plain, dice);
            ASSERT_EQ(list.count(), static_cast<int>(plain.size())) << "edit " << i;
            for (int row = 0; row < list.count(); ++row)
                ASSERT_EQ(list.at(row), plain[static_cast<std::size_t>(row)]) << "edit " << i;
            if (i % 50 == 0)
                ASSERT_EQ(list.whole(), packed(type, plain)) << "edit " << i;
        }
        EXPECT_EQ(original, packed(type, before)) << "what came is another's, too";
    }
}

TEST(ElementList, KeepsWhatIsOfAnotherTypeOut)
{
    QlumElementList list(packed(OpcUaType_Double, {UaVariant(1.0)}), OpcUaType_Double);
    EXPECT_FALSE(list.fill(0, 1, UaVariant("text")));
    EXPECT_FALSE(list.insert(0, 1, UaVariant(1.0f)));
    EXPECT_FALSE(list.insert(0, std::numeric_limits<int>::max(), UaVariant(1.0)));
    EXPECT_FALSE(list.remove(0, 2));
    EXPECT_FALSE(list.overwrite(2, packed(OpcUaType_Double, {UaVariant(1.0)})));
    EXPECT_TRUE(list.isUnchanged());
}

TEST(ElementList, SortsNumbersAndTexts)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QlumElementList numbers(
        packed(OpcUaType_Double, {UaVariant(nan), UaVariant(2.0), UaVariant(-10.0), UaVariant(1.5)}),
        OpcUaType_Double);
    ASSERT_TRUE(numbers.sort(0, 4, true));
    EXPECT_EQ(numbers.at(0), UaVariant(2.0));
    EXPECT_EQ(numbers.at(2), UaVariant(-10.0));
    EXPECT_TRUE(std::isnan(numbers.at(3).toDouble())) << "what is no number has no place in an order";
    QlumElementList texts(packed(OpcUaType_String, {UaVariant("c"), UaVariant("b"), UaVariant("ab"),
                                                    UaVariant("a"), UaVariant("")}),
                          OpcUaType_String);
    ASSERT_TRUE(texts.sort(1, 3, false));
    EXPECT_EQ(texts.whole(), packed(OpcUaType_String, {UaVariant("c"), UaVariant("a"), UaVariant("ab"),
                                                       UaVariant("b"), UaVariant("")}));
}

TEST(TabbedRows, AreReadAsSpreadsheetsWriteThem)
{
    EXPECT_EQ(qlumTabbedRows("1\r\n2\r\n"), (QVector<QStringList>{{"1"}, {"2"}}));
    EXPECT_EQ(qlumTabbedRows("1\t2\n\n3\t"), (QVector<QStringList>{{"1", "2"}, {""}, {"3", ""}}));
    EXPECT_EQ(qlumTabbedRows("\"two\nlines and \"\"quotes\"\"\"\tx"),
              (QVector<QStringList>{{"two\nlines and \"quotes\"", "x"}}));
    EXPECT_EQ(qlumTabbedRows("\"said\"\t\"open\n2"), (QVector<QStringList>{{"\"said\"", "\"open"}, {"2"}}))
        << "only cells with breaks are quoted";
    EXPECT_TRUE(qlumTabbedRows("").isEmpty());
    for (const char* text : {"plain", "tab\there", "line\nhere", "\"quoted\"", "\"quoted\nline\""})
        EXPECT_EQ(qlumTabbedRows(qlumTabbedCell(text) + "\t2"), (QVector<QStringList>{{text, "2"}})) << text;
}
} // namespace
