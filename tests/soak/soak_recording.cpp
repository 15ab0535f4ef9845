// Kills a process that records, again and again, and looks at what it has left: --rounds N [--seed S].
#include <recording/csvrecord.h>
#include <recording/recorder.h>
#include <recording/recordreader.h>
#include <recording/sqliterecord.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>

using namespace recording;

namespace {

constexpr int roundsOfAFile = 10;
constexpr OpcUa_Int64 valuesAtOnce = 200;
constexpr OpcUa_Int64 loopPause = 2; // ms

// Counts on from a number, and says what is committed for certain.
int recordUntilKilled(const QString& path, OpcUa_Int64 first)
{
    std::unique_ptr<RecordSink> sink;
    if (path.endsWith(QLatin1String("csv")))
        sink = std::make_unique<CsvRecord>(path, Rotation());
    else
        sink = std::make_unique<SqliteRecord>(path);
    RecorderSettings settings;
    settings.freeFloor = 0;
    settings.commitInterval = 50;
    Recorder recorder(std::move(sink), settings);
    RecordedItem item;
    item.server = QStringLiteral("Counter");
    item.nodeId = QStringLiteral("i=1");
    const ItemNumber number = recorder.addItem(item);
    const auto source = recorder.source(item.server);
    recorder.start();
    monitoring::SinkMark mark;
    for (OpcUa_Int64 value = first;;) {
        for (const OpcUa_Int64 end = value + valuesAtOnce; value < end; ++value) {
            OpcUa_DataValue raw;
            OpcUa_DataValue_Initialize(&raw);
            raw.Value.Datatype = OpcUaType_Int64;
            raw.Value.Value.Int64 = value;
            monitoring::Sink::Filling filling;
            filling.put(*source, {1, number, mark}, raw, {UaDateTime::now().value(), 1});
        }
        std::printf("%lld\n",
                    static_cast<long long>(first + static_cast<OpcUa_Int64>(recorder.status().records)));
        std::fflush(stdout);
        std::this_thread::sleep_for(std::chrono::milliseconds(loopPause));
    }
}

// Where the counting ends in a file that has every number from first on; below first for one that has not.
OpcUa_Int64 endOfTable(const QString& path, OpcUa_Int64 first)
{
    RecordReader reader;
    OpcUa_Int64 next = first;
    bool isWhole = reader.open(path) && reader.check();
    isWhole = isWhole &&
              reader.visit(0, std::numeric_limits<OpcUa_DateTime>::max(), {}, [&](const Portion& portion) {
                  for (const Record& record : portion.records)
                      isWhole = isWhole && record.value.value().toInt64() == next++;
                  return isWhole;
              });
    if (!isWhole)
        std::fprintf(stderr, "%s at %lld\n", reader.error().toUtf8().constData(),
                     static_cast<long long>(next));
    return isWhole ? next : first - 1;
}

// The last row may be half written; no other.
OpcUa_Int64 endOfText(const QString& path, OpcUa_Int64 first)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return first;
    OpcUa_Int64 next = first;
    for (QByteArray line = file.readLine(); line.endsWith("\r\n"); line = file.readLine()) {
        const QList<QByteArray> cells = line.split(',');
        if (cells.size() == 18 && cells[5] == "Int64" && cells[6].toLongLong() != next++) {
            std::fprintf(stderr, "%s at %lld\n", line.constData(), static_cast<long long>(next));
            return first - 1;
        }
    }
    return file.atEnd() ? next : first - 1;
}

struct Round
{
    OpcUa_Int64 told = 0; // to be committed
    bool isKilled = false;
};

Round killOne(const QString& path, OpcUa_Int64 first, int milliseconds)
{
    Round round;
    QProcess victim;
    victim.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    victim.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("--victim"), path, QString::number(first)});
    if (!victim.waitForStarted() || !victim.waitForReadyRead())
        return round;
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    victim.kill();
    victim.waitForFinished();
    round.isKilled = victim.exitStatus() == QProcess::CrashExit;
    const QList<QByteArray> lines = victim.readAllStandardOutput().split('\n');
    for (const QByteArray& line : lines)
        if (line.toLongLong() > round.told)
            round.told = line.toLongLong();
    return round;
}

int runRounds(int rounds, unsigned int seed)
{
    const QTemporaryDir folder;
    std::mt19937 random(seed);
    OpcUa_Int64 next = 0;
    for (int round = 0; round < rounds; ++round) {
        const bool isTable = round % 4 != 3;
        const int file = round / roundsOfAFile;
        if (round % roundsOfAFile == 0)
            next = 0;
        const QString path = folder.filePath(isTable ? QStringLiteral("a%1.sqlite").arg(file)
                                                     : QStringLiteral("t%1.csv").arg(round));
        const OpcUa_Int64 first = isTable ? next : 0;
        const Round result = killOne(path, first, static_cast<int>(random() % 400));
        const QStringList texts =
            QDir(folder.path()).entryList({QStringLiteral("t%1_*.csv").arg(round)}, QDir::Files);
        OpcUa_Int64 end = 0;
        if (isTable)
            end = QFile::exists(path) ? endOfTable(path, 0) : 0;
        else if (!texts.isEmpty())
            end = endOfText(folder.filePath(texts.first()), 0);
        if (!result.isKilled || end < result.told || end < first) {
            std::fprintf(stderr, "round %d of seed %u: %s ends at %lld, %lld were committed\n", round, seed,
                         path.toUtf8().constData(), static_cast<long long>(end),
                         static_cast<long long>(result.told));
            return 1;
        }
        if (isTable)
            next = end;
        else
            QFile::remove(folder.filePath(texts.value(0)));
    }
    std::printf("%d kills, every file was whole\n", rounds);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (const int victim = arguments.indexOf(QStringLiteral("--victim")); victim > 0)
        return recordUntilKilled(arguments.value(victim + 1), arguments.value(victim + 2).toLongLong());
    const auto number = [&arguments](const QString& name, int standard) {
        const int place = arguments.indexOf(name);
        return place < 0 ? standard : arguments.value(place + 1).toInt();
    };
    return runRounds(number(QStringLiteral("--rounds"), 20),
                     static_cast<unsigned int>(number(QStringLiteral("--seed"), 1)));
}
