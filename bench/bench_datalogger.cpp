// What recording costs: CPU beside a bare writer of the same rows to the same file system, bytes of a record,
// a range out of ten million.
#include <bench/budgets.h>
#include <monitoring/allsink.h>
#include <recording/csvrecord.h>
#include <recording/recorder.h>
#include <recording/recordreader.h>
#include <recording/sqliterecord.h>
#include <uabase/values/uadatetime.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace recording;

namespace {

constexpr int itemCount = 1000;
constexpr int perSecond = 50'000;
constexpr int messagesOfASecond = 20;
constexpr int perMessage = perSecond / messagesOfASecond;
const int seconds = isQuick()                                 ? 1
                    : std::getenv("BENCH_SECONDS") != nullptr ? std::atoi(std::getenv("BENCH_SECONDS"))
                                                              : 10;
const int rangeRecords = isQuick() ? 100'000 : 10'000'000;

[[noreturn]] void give(const QString& why)
{
    std::fprintf(stderr, "%s\n", why.toUtf8().constData());
    std::exit(1);
}

OpcUa_DataValue valueAt(int number, OpcUa_DateTime now)
{
    OpcUa_DataValue raw;
    OpcUa_DataValue_Initialize(&raw);
    raw.Value.Datatype = OpcUaType_Double;
    raw.Value.Value.Double = number * 0.37;
    raw.SourceTimestamp = now - 123'456;
    raw.ServerTimestamp = now - 23'456;
    return raw;
}

RecordedItem itemAt(int number)
{
    RecordedItem item;
    item.server = QStringLiteral("Plant");
    item.nodeId = QStringLiteral("s=Line.Station%1.Temperature").arg(number);
    item.namespaceUri = QStringLiteral("urn:plant");
    item.name = QStringLiteral("Temperature %1").arg(number);
    return item;
}

// In time, message by message, as a server sends; us of CPU for a record.
template <typename Send, typename End>
double paced(const Send& send, const End& end)
{
    const double before = processCpu();
    auto due = std::chrono::steady_clock::now();
    int number = 0;
    for (int message = 0; message < seconds * messagesOfASecond; ++message) {
        send(number);
        number += perMessage;
        due += std::chrono::milliseconds(1000 / messagesOfASecond);
        std::this_thread::sleep_until(due);
    }
    end();
    return (processCpu() - before) / number;
}

struct Outcome
{
    double cpu = 0;
    double bytes = 0; // of a record
};

Outcome measureRecorder(std::unique_ptr<RecordSink> sink)
{
    RecordSink* const file = sink.get();
    RecorderSettings settings;
    settings.freeFloor = 0;
    Recorder recorder(std::move(sink), settings);
    for (int i = 0; i < itemCount; ++i)
        static_cast<void>(recorder.addItem(itemAt(i)));
    const auto source = recorder.source(QStringLiteral("Plant"));
    recorder.start();
    if (!recorder.flush(10'000))
        give(recorder.status().error);
    std::vector<monitoring::SinkMark> marks(itemCount);
    Outcome outcome;
    outcome.cpu = paced(
        [&](int first) {
            const OpcUa_DateTime now = UaDateTime::now().value();
            monitoring::Sink::Filling filling;
            for (int i = first; i < first + perMessage; ++i) {
                OpcUa_DataValue raw = valueAt(i, now);
                const auto item = static_cast<OpcUa_UInt64>(i % itemCount);
                filling.put(*source, {item + 1, item + 1, marks[item]}, raw,
                            {now, static_cast<OpcUa_UInt32>(i)});
            }
        },
        [&] { recorder.stop(); });
    const RecorderStatus status = recorder.status();
    if (status.lost > 0 || status.records != static_cast<OpcUa_UInt64>(seconds) * perSecond)
        give(QStringLiteral("values are lost: %1 of %2").arg(status.lost).arg(status.records));
    outcome.bytes =
        static_cast<double>(file == nullptr ? 0 : status.bytes) / static_cast<double>(status.records);
    return outcome;
}

// A prepared insert of the same rows into the same tables, one after the other, a transaction for each
// message.
double measureBareTable(const QString& path)
{
    {
        SqliteRecord made(path);
        if (!made.open())
            give(made.error());
    }
    double cpu = 0;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bare"));
        database.setDatabaseName(path);
        if (!database.open())
            give(QStringLiteral("no database"));
        QSqlQuery setting(database);
        setting.exec(QStringLiteral("PRAGMA journal_mode = WAL"));
        setting.exec(QStringLiteral("PRAGMA synchronous = NORMAL"));
        QSqlQuery insert(database);
        insert.prepare(
            QStringLiteral("INSERT INTO record(item, received, source_age, server_age, type, value, "
                           "status, sequence, picoseconds) VALUES(?,?,?,?,?,?,?,?,?)"));
        cpu = paced(
            [&](int first) {
                const OpcUa_DateTime now = UaDateTime::now().value();
                database.transaction();
                for (int i = first; i < first + perMessage; ++i) {
                    const OpcUa_DataValue raw = valueAt(i, now);
                    insert.bindValue(0, i % itemCount);
                    insert.bindValue(1, static_cast<qlonglong>(now));
                    insert.bindValue(2, static_cast<qlonglong>(now - raw.SourceTimestamp));
                    insert.bindValue(3, static_cast<qlonglong>(now - raw.ServerTimestamp));
                    insert.bindValue(4, 11);
                    insert.bindValue(5, raw.Value.Value.Double);
                    insert.bindValue(6, 0);
                    insert.bindValue(7, i);
                    insert.bindValue(8, QVariant());
                    if (!insert.exec())
                        give(QStringLiteral("no insert"));
                }
                database.commit();
            },
            [&] { database.close(); });
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bare"));
    return cpu;
}

void printTime(char* text, std::size_t size, OpcUa_DateTime time)
{
    const std::time_t unixTime = static_cast<std::time_t>(time / 10'000'000 - 11'644'473'600);
    std::tm parts{};
    gmtime_r(&unixTime, &parts);
    const std::size_t length = std::strftime(text, size, "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text + length, size - length, ".%07uZ", static_cast<unsigned int>(time % 10'000'000));
}

// The same rows by fprintf.
double measureBareText(const QString& path)
{
    std::FILE* const file = std::fopen(path.toUtf8().constData(), "w");
    if (file == nullptr)
        give(QStringLiteral("no file"));
    std::vector<std::string> cells;
    for (int i = 0; i < itemCount; ++i) {
        const RecordedItem item = itemAt(i);
        cells.push_back(
            (item.server + ',' + item.nodeId + ',' + item.namespaceUri + ',' + item.name).toStdString());
    }
    return paced(
        [&](int first) {
            const OpcUa_DateTime now = UaDateTime::now().value();
            for (int i = first; i < first + perMessage; ++i) {
                const OpcUa_DataValue raw = valueAt(i, now);
                char received[40], source[40], server[40];
                printTime(received, sizeof received, now);
                printTime(source, sizeof source, raw.SourceTimestamp);
                printTime(server, sizeof server, raw.ServerTimestamp);
                std::fprintf(file, "%s,%s,Double,%.17g,Good,%s,,%s,,%d,,,,\r\n", received,
                             cells[static_cast<std::size_t>(i % itemCount)].c_str(), raw.Value.Value.Double,
                             source, server, i);
            }
            std::fflush(file);
        },
        [&] { std::fclose(file); });
}

// ms for a range of one item; of 200 ranges the slowest.
double measureRange(const QString& path)
{
    SqliteRecord sink(path);
    if (!sink.open())
        give(sink.error());
    for (int i = 0; i < itemCount; ++i)
        if (!sink.addItem(static_cast<ItemNumber>(i + 1), itemAt(i)))
            give(sink.error());
    constexpr OpcUa_DateTime begin = 134'000'000'000'000'000;
    constexpr int portionSize = 50'000;
    for (int first = 0; first < rangeRecords; first += portionSize) {
        Portion portion;
        portion.records.resize(portionSize);
        for (int i = 0; i < portionSize; ++i) {
            Record& record = portion.records[static_cast<std::size_t>(i)];
            const OpcUa_DateTime now = begin + static_cast<OpcUa_DateTime>(first + i) * 1000;
            OpcUa_DataValue raw = valueAt(first + i, now);
            record.item = static_cast<ItemNumber>((first + i) % itemCount + 1);
            record.received = now;
            record.value.attach(&raw);
        }
        if (!sink.write(portion) || !sink.commit())
            give(sink.error());
    }
    std::printf("%d records: %.1f bytes each\n", rangeRecords,
                static_cast<double>(QFileInfo(path).size()) / rangeRecords);
    sink.close();
    RecordReader reader;
    if (!reader.open(path))
        give(reader.error());
    double slowest = 0;
    std::vector<Record> found;
    constexpr int lookups = 200;
    constexpr OpcUa_DateTime width = 1'000'000'000; // a thousand records of each item
    for (int i = 0; i < lookups; ++i) {
        const OpcUa_DateTime from = begin + static_cast<OpcUa_DateTime>(i) *
                                                (static_cast<OpcUa_DateTime>(rangeRecords) * 1000 - width) /
                                                lookups;
        const auto start = std::chrono::steady_clock::now();
        if (!reader.read(static_cast<ItemNumber>(i * 5 % itemCount + 1), from, from + width - 1, 1'000'000,
                         found) ||
            (found.empty() && !isQuick()))
            give(reader.error());
        slowest = std::max(
            slowest,
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::printf("a range of %zu records of one item among %d: %.2f ms at most\n", found.size(), rangeRecords,
                slowest);
    return slowest;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const double bareTable = measureBareTable(folder.filePath(QStringLiteral("bare.sqlite")));
    const Outcome table =
        measureRecorder(std::make_unique<SqliteRecord>(folder.filePath(QStringLiteral("a.sqlite"))));
    const double bareText = measureBareText(folder.filePath(QStringLiteral("bare.csv")));
    const Outcome text =
        measureRecorder(std::make_unique<CsvRecord>(folder.filePath(QStringLiteral("a.csv")), Rotation()));
    std::printf(
        "%d records a second for %d s without loss; of a record SQLite %.2f us (bare %.2f us), CSV %.2f us "
        "(bare %.2f us)\n",
        perSecond, seconds, table.cpu, bareTable, text.cpu, bareText);
    const double range = measureRange(folder.filePath(QStringLiteral("range.sqlite")));
    printRatio("datalogger_sqlite_to_bare", table.cpu, bareTable, 2.0);
    printRatio("datalogger_csv_to_bare", text.cpu, bareText, 2.0);
    printBudget("datalogger_bytes_of_a_record", table.bytes, 90.0, table.bytes > 0);
    printBudget("datalogger_range_ms", range, 50.0, range > 0);
    return 0;
}
