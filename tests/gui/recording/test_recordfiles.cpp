// Files: what goes in comes out again.
#include <recording/csvrecord.h>
#include <recording/recordlock.h>
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

#include <QLockFile>
#include <QString>
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace recording;
using testing::ElementsAre;

class RecordFiles : public RecordingTest
{
protected:
    // Values one after the other, each in a CSV file of its own; the names of all files.
    std::vector<std::string> recordParts(int first, int count, const Bounds& bounds = {})
    {
        RecorderSettings wanted = settings();
        wanted.bounds = bounds;
        Rotation rotation;
        rotation.bytes = 1;
        Recorder recorder(std::make_unique<CsvRecord>(file("pump.csv"), rotation), wanted, surroundings());
        const ItemNumber number = recorder.addItem(item("Speed"));
        recorder.start();
        for (int value = first; value < first + count; ++value) {
            put(recorder, number, value);
            EXPECT_TRUE(recorder.flush(20'000));
        }
        recorder.stop();
        std::vector<std::string> names = folder.names();
        std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
            return std::tuple(a.substr(0, 21), a.size(), a) < std::tuple(b.substr(0, 21), b.size(), b);
        });
        return names;
    }
};

std::unique_ptr<RecordSink> makeSink(const QString& path)
{
    if (path.endsWith(QLatin1String("csv")))
        return std::make_unique<CsvRecord>(path, Rotation());
    return std::make_unique<SqliteRecord>(path);
}

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

// The type changes from value to value, and the times of the source are out of order.
TEST_F(RecordFiles, ValuesOfEveryKindComeOutAsTheyWentIn)
{
    const std::vector<UaVariant> values = valuesOfAllKinds();
    for (const bool isTable : {true, false}) {
        const QString path = file(isTable ? "a.sqlite" : "a.csv");
        Recorder recorder(makeSink(path), settings());
        const ItemNumber number = recorder.addItem(item("Speed"));
        recorder.start();
        sequence = 0;
        std::vector<UaDataValue> sent;
        for (const UaVariant& value : values) {
            UaDataValue& one = sent.emplace_back(value, UaStatusCode(0x408F0480u));
            const auto moment = static_cast<OpcUa_DateTime>(sent.size());
            one.setSourceTimestamp(UaDateTime(134'000'000'000'000'009 - moment),
                                   9); // later than received, too
            one.setServerTimestamp(UaDateTime(), 0);
            put(recorder, number, one, 134'000'000'000'000'007);
        }
        put(recorder, number, UaDataValue(UaVariant(std::nan(""))));
        recorder.stop();
        const Found found = readFile(path);
        EXPECT_EQ(found.error, QString());
        ASSERT_EQ(found.records.size(), sent.size() + 1);
        for (std::size_t i = 0; i < sent.size(); ++i) {
            const bool isNullText = !isTable && sent[i].value() == UaVariant(UaString());
            if (isNullText)
                sent[i].setValue(UaVariant("")); // a cell cannot tell
            EXPECT_EQ(found.records[i].value, sent[i]) << i << ' ' << found.values()[i].substr(0, 100);
            EXPECT_EQ(found.records[i].received, 134'000'000'000'000'007);
            EXPECT_EQ(found.records[i].sequenceNumber, i + 1);
        }
        EXPECT_TRUE(std::isnan(found.records.back().value.value().toDouble()));
    }
}

TEST_F(RecordFiles, ARecordingGoesOnInItsFileAndARangeOfAnItemIsFound)
{
    for (int round = 0; round < 2; ++round) {
        Recorder recorder(std::make_unique<SqliteRecord>(file("a.sqlite")), settings());
        if (round == 1)
            static_cast<void>(recorder.addItem(item("Pressure"))); // takes the other's number
        const ItemNumber speed = recorder.addItem(item("Speed"));
        recorder.start();
        if (round == 0) { // at a time when its server is not known yet; the next start knows as little
            ASSERT_TRUE(recorder.flush(20'000));
            RecordedItem told = item("Speed");
            told.unit = QStringLiteral("1/min");
            recorder.changeItem(speed, told);
        }
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
    EXPECT_EQ(items[0].item.unit, QStringLiteral("1/min"));
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

TEST_F(RecordFiles, AnyFileOfACsvSetOpensAllAndWhatIsMissingIsSaid)
{
    static_cast<void>(recordParts(1, 3));
    const std::vector<std::string> names = recordParts(4, 3); // after a new start
    ASSERT_GE(names.size(), 6u);
    const std::vector<std::string> last = csvRows(TemporaryFolder::read(folder.file(names.back()))).back();
    EXPECT_EQ(last[13], "stopped");
    const Found all = readFile(file(names[2].c_str()));
    EXPECT_EQ(all.error, QString());
    EXPECT_THAT(all.values(), ElementsAre("1", "2", "3", "4", "5", "6"));
    const auto gaps = [](const Found& found) {
        std::vector<std::string> texts;
        for (const Mark& one : found.marks)
            if (one.kind == MarkKind::Gap || one.kind == MarkKind::FileTrouble)
                texts.push_back(one.text.toStdString());
        return texts;
    };
    EXPECT_THAT(gaps(all), ElementsAre("")) << "between the two starts";
    const Mark* const gap = all.find(MarkKind::Gap);
    ASSERT_NE(gap, nullptr);
    EXPECT_LT(gap->from, gap->to);

    // a clock that was wrong has spoiled the order of the names; one file is lost, and one is cut
    std::filesystem::rename(folder.file(names.back()), folder.file("pump_20000101T000000Z.csv"));
    std::filesystem::remove(folder.file(names[1]));
    const auto cut = std::filesystem::file_size(folder.file(names[0]));
    std::filesystem::resize_file(folder.file(names[0]), cut - 3);
    const Found rest = readFile(file("pump.csv"));
    EXPECT_EQ(rest.error, QString());
    EXPECT_EQ(rest.values().back(), "6");
    EXPECT_EQ(rest.marks.back().kind, MarkKind::Stopped);
    EXPECT_THAT(gaps(rest), ElementsAre(names[0] + " is damaged: rows that are not whole were left out.",
                                        names[1] + " is not there.", ""));
    std::filesystem::remove(folder.file(names[0]));
    EXPECT_THAT(gaps(readFile(file(names[2].c_str()))),
                ElementsAre("What was recorded before, " + names[1] + ", is not there.", ""));
}

TEST_F(RecordFiles, BoundsOfACsvSetHoldForFormerStartsAndOneProgramWritesIt)
{
    const std::vector<std::string> names = recordParts(1, 4);
    const std::string exported = folder.file("pump.csv"); // of this name, but none of the set
    std::filesystem::copy(folder.file(names[0]), exported);
    Bounds bounds;
    bounds.bytes = 1500;
    CsvRecord other(file("pump.csv"), {});
    {
        CsvRecord first(file("pump.csv"), {});
        ASSERT_TRUE(first.open()) << first.error().toStdString();
        EXPECT_FALSE(other.open());
        EXPECT_TRUE(other.error().contains("is being recorded to already")) << other.error().toStdString();
        Dropped dropped;
        const qint64 before = first.size();
        ASSERT_TRUE(first.keepWithin(bounds, UaDateTime::now().value(), dropped));
        EXPECT_EQ(dropped.records, 1u);
        EXPECT_GT(dropped.from, 0);
        EXPECT_LT(first.size(), before);
    }
    EXPECT_TRUE(other.open());
    other.close();
    EXPECT_THAT(readFile(file("pump.csv")).values(), ElementsAre("1"));
    EXPECT_THAT(readFile(file(names[2].c_str())).values(), ElementsAre("2", "3", "4"));
}

TEST_F(RecordFiles, ARowThatIsJustBeingWrittenIsNoDamage)
{
    const std::string last = folder.file(recordParts(1, 2).back());
    std::filesystem::resize_file(last, std::filesystem::file_size(last) - 3);
    const auto isDamaged = [this] {
        const Found found = readFile(file("pump.csv"));
        EXPECT_THAT(found.values(), ElementsAre("1", "2"));
        return found.find(MarkKind::FileTrouble) != nullptr;
    };
    QString why;
    std::unique_ptr<QLockFile> writer = lockRecording(file("pump.csv"), why);
    ASSERT_NE(writer, nullptr) << why.toStdString();
    EXPECT_FALSE(isDamaged());
    writer.reset();
    EXPECT_TRUE(isDamaged()) << "nobody will write the rest";
}

// Nothing of a file that is full already may be written again.
TEST_F(RecordFiles, AFileThatCannotBeFollowedByAnotherGoesOn)
{
    Rotation rotation;
    rotation.bytes = 1;
    Recorder recorder(std::make_unique<CsvRecord>(file("pump.csv"), rotation), settings(), surroundings());
    const ItemNumber number = recorder.addItem(item("Speed"));
    recorder.start();
    ASSERT_TRUE(recorder.flush(20'000));
    rlimit former{};
    ::getrlimit(RLIMIT_NOFILE, &former);
    const rlimit none{0, former.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    put(recorder, number, 1);
    const bool isWritten = recorder.flush(20'000);
    ::setrlimit(RLIMIT_NOFILE, &former);
    EXPECT_TRUE(isWritten);
    put(recorder, number, 2);
    recorder.stop();
    EXPECT_THAT(readFile(file("pump.csv")).values(), ElementsAre("1", "2"));
}

TEST_F(RecordFiles, AHundredThousandItemsAreKnownAtOnceAlsoAtTheNextStart)
{
    constexpr OpcUa_UInt32 count = 100'000;
    for (int round = 0; round < 2; ++round) {
        RecorderSettings wanted = settings();
        wanted.queue.capacity = count;
        Recorder recorder(std::make_unique<SqliteRecord>(file("a.sqlite")), wanted, surroundings());
        RecordedItem one = item("");
        for (OpcUa_UInt32 i = 0; i < count; ++i) {
            one.nodeId = QStringLiteral("i=%1").arg(i);
            static_cast<void>(recorder.addItem(one)); // in their order
        }
        for (ItemNumber number = 1; number <= count; ++number)
            put(recorder, number, round);
        recorder.start();
        ASSERT_TRUE(recorder.flush(20'000)) << recorder.status().error.toStdString();
    }
    RecordReader reader;
    std::vector<RecordReader::Item> items;
    ASSERT_TRUE(reader.open(file("a.sqlite")) && reader.items(items));
    ASSERT_EQ(items.size(), count);
    EXPECT_EQ(items.back().item.nodeId, QStringLiteral("i=%1").arg(count - 1));
    EXPECT_EQ(items.back().records, 2u);
}

} // namespace
