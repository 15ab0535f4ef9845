// Files: what goes in comes out again.
#include <recording/csvrecord.h>
#include <recording/recordreader.h>
#include <recording/sqliterecord.h>
#include <tests/gui/recording/recordingtest.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QString>
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace recording;
using testing::ElementsAre;

class RecordFiles : public RecordingTest
{
};

std::vector<UaVariant> valuesOfAllKinds()
{
    std::vector<UaVariant> values{UaVariant(),
                                  UaVariant(true),
                                  UaVariant(OpcUa_SByte(-128)),
                                  UaVariant(std::numeric_limits<OpcUa_UInt64>::max()),
                                  UaVariant(std::numeric_limits<OpcUa_Int64>::min()),
                                  UaVariant(1.5f),
                                  UaVariant(-0.0),
                                  UaVariant(std::numeric_limits<double>::infinity()),
                                  UaVariant(0.1),
                                  UaVariant("a, \"b\"\r\nc \xC3\xA4"),
                                  UaVariant("\xFF not UTF-8"),
                                  UaVariant(""),
                                  UaVariant(UaString()),
                                  UaVariant(UaDateTime(133'000'000'000'000'001)),
                                  UaVariant(UaByteString(3, reinterpret_cast<const OpcUa_Byte*>("\0\1\2"))),
                                  UaVariant(UaStatusCode(0x80340000u)),
                                  UaVariant(UaNodeId("Pump", 2)),
                                  UaVariant(UaLocalizedText("de", "Pumpe"))};
    UaVariant array;
    const std::vector<OpcUa_Int32> numbers{1, -2, 3, 4};
    static_cast<void>(array.setArray(OpcUaType_Int32, 4, numbers.data())); // null would be found below
    values.push_back(array);
    const std::vector<OpcUa_Int32> shape{2, 2};
    static_cast<void>(array.setDimensions(shape));
    values.push_back(array);
    UaVariant large;
    large.setByteString(UaByteString(std::vector<OpcUa_Byte>(16u << 20, 7)));
    values.push_back(large);
    return values;
}

TEST_F(RecordFiles, ValuesOfEveryKindComeOutAsTheyWentIn)
{
    const std::vector<UaVariant> values = valuesOfAllKinds();
    Recorder recorder(std::make_unique<SqliteRecord>(file("a.sqlite")), settings());
    const ItemNumber number = recorder.addItem(item("Speed"));
    recorder.start();
    std::vector<UaDataValue> sent;
    for (const UaVariant& value : values) {
        UaDataValue& one = sent.emplace_back(value, UaStatusCode(0x408F0000u));
        one.setSourceTimestamp(UaDateTime(133'000'000'000'000'000), 9);
        one.setServerTimestamp(UaDateTime(), 0);
        put(recorder, number, one, 134'000'000'000'000'007);
    }
    put(recorder, number, UaDataValue(UaVariant(std::nan(""))));
    recorder.stop();
    const Found found = readFile(file("a.sqlite"));
    EXPECT_EQ(found.error, QString());
    ASSERT_EQ(found.records.size(), sent.size() + 1);
    for (std::size_t i = 0; i < sent.size(); ++i) {
        EXPECT_EQ(found.records[i].value, sent[i]) << i << ' ' << found.values()[i].substr(0, 100);
        EXPECT_EQ(found.records[i].received, 134'000'000'000'000'007);
        EXPECT_EQ(found.records[i].sequenceNumber, i + 1);
    }
    EXPECT_TRUE(std::isnan(found.records.back().value.value().toDouble()));
}

TEST_F(RecordFiles, ARecordingGoesOnInItsFileAndARangeOfAnItemIsFound)
{
    for (int round = 0; round < 2; ++round) {
        Recorder recorder(std::make_unique<SqliteRecord>(file("a.sqlite")), settings());
        if (round == 1)
            static_cast<void>(recorder.addItem(item("Pressure"))); // takes the other's number
        const ItemNumber speed = recorder.addItem(item("Speed"));
        recorder.start();
        for (int i = 0; i < 3; ++i)
            put(recorder, speed, UaDataValue(UaVariant(OpcUa_Int32(round * 10 + i))), 1000 + round * 100 + i);
        recorder.stop();
    }
    RecordReader reader;
    ASSERT_TRUE(reader.open(file("a.sqlite"))) << reader.error().toStdString();
    std::vector<RecordReader::Item> items;
    ASSERT_TRUE(reader.items(items));
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].item.name, QStringLiteral("Speed"));
    EXPECT_EQ(items[0].item.namespaceUri, QStringLiteral("urn:plant"));
    EXPECT_EQ(items[0].records, 6u);
    EXPECT_EQ(items[0].last, 1102);
    EXPECT_EQ(items[1].records, 0u);
    std::vector<Record> records;
    ASSERT_TRUE(reader.read(items[0].number, 1002, 1100, 100, records));
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].value.value().toInt32(), 2);
    EXPECT_EQ(records[1].value.value().toInt32(), 10);
    std::vector<Mark> marks;
    ASSERT_TRUE(reader.marks(0, std::numeric_limits<OpcUa_DateTime>::max(), 100, marks));
    std::vector<std::string> words;
    for (const Mark& one : marks)
        words.push_back(markWord(one.kind).toStdString());
    EXPECT_THAT(words, ElementsAre("stopped", "gap", "started", "stopped", "started"));
}

// Reads RFC 4180 by the book.
std::vector<std::vector<std::string>> csvRows(const std::string& text)
{
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> row(1);
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (isQuoted && c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
            row.back() += '"';
            ++i;
        } else if (c == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && c == ',') {
            row.emplace_back();
        } else if (!isQuoted && c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            rows.push_back(row);
            row.assign(1, {});
            ++i;
        } else {
            row.back() += c;
        }
    }
    EXPECT_EQ(row, std::vector<std::string>(1)) << "the last row has no end";
    return rows;
}

TEST_F(RecordFiles, CsvRowsAreWholeAlsoAfterAFaultAndFilesRotate)
{
    const auto faults = std::make_shared<FaultySink::Faults>();
    Rotation rotation;
    rotation.bytes = 3000;
    Recorder recorder(
        std::make_unique<FaultySink>(std::make_unique<CsvRecord>(file("pump.csv"), rotation), faults),
        settings(), surroundings());
    const ItemNumber number = recorder.addItem(item("Speed, \"left\""));
    recorder.start();
    put(recorder, number, UaDataValue(UaVariant("a,\"b\"\r\nc")), 133'000'000'000'000'001);
    ASSERT_TRUE(recorder.flush(20'000));
    faults->writes = 1;
    constexpr int count = 100;
    for (int i = 0; i < count; ++i) {
        put(recorder, number, i);
        if (i % 10 == 9)
            ASSERT_TRUE(recorder.flush(20'000));
    }
    recorder.stop();
    std::vector<std::string> names = folder.names();
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return std::pair(a.size(), a) < std::pair(b.size(), b);
    });
    ASSERT_GT(names.size(), 2u);
    std::vector<std::string> values;
    for (const std::string& name : names) {
        EXPECT_EQ(name.rfind("pump_2", 0), 0u) << name;
        const auto rows = csvRows(TemporaryFolder::read(folder.file(name)));
        ASSERT_FALSE(rows.empty());
        EXPECT_EQ(rows[0][0], "Received");
        for (std::size_t i = 1; i < rows.size(); ++i) {
            ASSERT_EQ(rows[i].size(), rows[0].size());
            if (rows[i][13].empty())
                values.push_back(rows[i][6]);
        }
        if (name == names.front())
            EXPECT_EQ(rows[2][4], "Speed, \"left\"");
    }
    ASSERT_EQ(values.size(), count + 1u);
    EXPECT_EQ(values[0], "a,\"b\"\r\nc");
    EXPECT_EQ(values[count], std::to_string(count - 1));
}

} // namespace
