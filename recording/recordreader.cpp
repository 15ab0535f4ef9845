#include <recording/recordreader.h>

#include <recording/csvreader.h>
#include <recording/csvtable.h>
#include <recording/recordvalue.h>
#include <recording/sqliterecord.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatuscode.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace recording {

namespace {

struct RecordReaderText
{
    Q_DECLARE_TR_FUNCTIONS(recording::RecordReader)
};

constexpr std::size_t visitedAtOnce = 5000;

QString nextReaderName()
{
    static std::atomic<int> last{0};
    return QStringLiteral("recording-reader-%1").arg(++last);
}

const QString& recordColumns()
{
    static const QString columns = QStringLiteral(
        "id, item, received, source_age, server_age, type, value, status, sequence, picoseconds");
    return columns;
}

UaDateTime timeBefore(OpcUa_DateTime received, const QVariant& age)
{
    if (age.isNull())
        return UaDateTime();
    const auto time = static_cast<quint64>(received) - static_cast<quint64>(age.toLongLong());
    return UaDateTime(static_cast<OpcUa_DateTime>(time));
}

Record recordOf(const QSqlQuery& query)
{
    Record record;
    record.item = query.value(1).toUInt();
    record.received = query.value(2).toLongLong();
    record.sequenceNumber = query.value(8).toUInt();
    const auto picoseconds = query.value(9).toUInt();
    record.value.setValue(restoredValue(query.value(5).toInt(), query.value(6)));
    record.value.setStatusCode(UaStatusCode(static_cast<OpcUa_StatusCode>(query.value(7).toLongLong())));
    record.value.setSourceTimestamp(timeBefore(record.received, query.value(3)),
                                    static_cast<OpcUa_UInt16>(picoseconds & 0xFFFFu));
    record.value.setServerTimestamp(timeBefore(record.received, query.value(4)),
                                    static_cast<OpcUa_UInt16>(picoseconds >> 16));
    return record;
}

const QString& markColumns()
{
    static const QString columns = QStringLiteral("after_record, time, kind, server, item, count, from_time, "
                                                  "to_time, first, last, status, text");
    return columns;
}

Mark markOf(const QSqlQuery& query)
{
    Mark mark;
    mark.time = query.value(1).toLongLong();
    mark.kind = markKind(query.value(2).toString());
    mark.server = query.value(3).toString();
    mark.item = query.value(4).toUInt();
    mark.count = query.value(5).toULongLong();
    mark.from = query.value(6).toLongLong();
    mark.to = query.value(7).toLongLong();
    mark.first = query.value(8).toUInt();
    mark.last = query.value(9).toUInt();
    mark.status = static_cast<OpcUa_StatusCode>(query.value(10).toLongLong());
    mark.text = query.value(11).toString();
    return mark;
}

// Marks of a time that stand between two records.
class MarksInOrder
{
public:
    MarksInOrder(const QSqlDatabase& database, OpcUa_DateTime from, OpcUa_DateTime to) : m_query(database)
    {
        m_query.setForwardOnly(true);
        m_query.prepare(QStringLiteral("SELECT %1 FROM mark WHERE time >= ? AND time <= ? ORDER BY id")
                            .arg(markColumns()));
        m_query.addBindValue(static_cast<qlonglong>(from));
        m_query.addBindValue(static_cast<qlonglong>(to));
        m_has = m_query.exec() && m_query.next();
    }
    // Those that stand before this record.
    void addBefore(Portion& portion, qint64 record, const std::set<ItemNumber>& items)
    {
        for (; m_has && m_query.value(0).toLongLong() < record; m_has = m_query.next()) {
            const Mark mark = markOf(m_query);
            if (items.empty() || mark.item == 0 || items.contains(mark.item))
                portion.add(mark);
        }
    }

private:
    QSqlQuery m_query;
    bool m_has = false;
};

Portion partOf(const Portion& all, OpcUa_DateTime from, OpcUa_DateTime to, const std::set<ItemNumber>& items)
{
    Portion part;
    const auto isWanted = [&](OpcUa_DateTime time, ItemNumber item, bool isOfAll) {
        return time >= from && time <= to && (items.empty() || isOfAll || items.contains(item));
    };
    auto placed = all.marks.begin();
    for (std::size_t place = 0; place <= all.records.size(); ++place) {
        for (; placed != all.marks.end() && placed->place == place; ++placed)
            if (isWanted(placed->mark.time, placed->mark.item, placed->mark.item == 0))
                part.add(placed->mark);
        if (place < all.records.size() &&
            isWanted(all.records[place].received, all.records[place].item, false))
            part.records.push_back(all.records[place]);
    }
    return part;
}

} // namespace

RecordReader::RecordReader() : m_connection(nextReaderName()) {}

RecordReader::~RecordReader()
{
    close();
}

void RecordReader::close()
{
    m_text.reset();
    if (!m_database.isValid())
        return;
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connection);
}

bool RecordReader::fail(const QString& why)
{
    m_error = why;
    return false;
}

bool RecordReader::run(QSqlQuery& query)
{
    query.setForwardOnly(true);
    return query.exec() ||
           fail(RecordReaderText::tr("%1 cannot be read: %2").arg(m_path, query.lastError().databaseText()));
}

bool RecordReader::openText(const QString& path)
{
    m_text = std::make_unique<CsvReader>();
    return m_text->open(path) || fail(m_text->error());
}

// From a medium that cannot be written, where the log cannot be looked at, what is in the file itself.
bool RecordReader::open(const QString& path)
{
    close();
    m_path = path;
    const QFileInfo info(path);
    if (const QStringList parts = csvParts(path);
        !parts.isEmpty() && isCsvRecording(info.isFile() ? path : parts.first()))
        return openText(path);
    if (!info.isFile() || !info.isReadable())
        return fail(RecordReaderText::tr("%1 is not there, or may not be read.").arg(path));
    for (const bool isFixed : {false, true}) {
        m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
        m_database.setConnectOptions(
            QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=2000"));
        m_database.setDatabaseName(QUrl::fromLocalFile(info.absoluteFilePath()).toString(QUrl::FullyEncoded) +
                                   (isFixed ? QStringLiteral("?immutable=1") : QString()));
        if (m_database.open()) {
            QSqlQuery id(m_database);
            if (id.exec(QStringLiteral("PRAGMA application_id")) && id.next()) {
                QSqlQuery tables(m_database);
                if (tables.exec(QStringLiteral("SELECT count(*) FROM mark LIMIT 1")) && tables.next()) {
                    if (id.value(0).toInt() != sqliteApplicationId)
                        break;
                    QSqlQuery version(m_database);
                    if (version.exec(QStringLiteral("PRAGMA user_version")) && version.next() &&
                        version.value(0).toInt() > sqliteVersion)
                        return fail(RecordReaderText::tr("%1 was made by a newer version.").arg(path));
                    return true;
                }
            }
        }
        close();
    }
    close();
    return fail(RecordReaderText::tr("%1 is no recording.").arg(path));
}

bool RecordReader::items(std::vector<Item>& found)
{
    found.clear();
    if (m_text)
        return textItems(found);
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral(
        "SELECT i.id, i.server, i.server_url, i.node, i.namespace, i.attribute, i.index_range, i.name, "
        "i.path, i.data_type, i.unit, i.settings, ifnull(r.records, 0), ifnull(r.first, 0), ifnull(r.last, "
        "0) FROM item i LEFT JOIN (SELECT item, count(*) AS records, min(received) AS first, max(received) "
        "AS last FROM record GROUP BY item) r ON r.item = i.id ORDER BY i.id"));
    if (!run(query))
        return false;
    while (query.next()) {
        Item& one = found.emplace_back();
        one.number = query.value(0).toUInt();
        one.item = {query.value(1).toString(),  query.value(2).toString(), query.value(3).toString(),
                    query.value(4).toString(),  query.value(5).toUInt(),   query.value(6).toString(),
                    query.value(7).toString(),  query.value(8).toString(), query.value(9).toString(),
                    query.value(10).toString(), query.value(11).toString()};
        one.records = query.value(12).toULongLong();
        one.first = query.value(13).toLongLong();
        one.last = query.value(14).toLongLong();
    }
    return true;
}

bool RecordReader::textItems(std::vector<Item>& found)
{
    const auto count = [&found](const Portion& portion) {
        for (const Record& record : portion.records) {
            if (record.item > found.size())
                found.resize(record.item);
            Item& one = found[record.item - 1];
            one.first = one.records == 0 ? record.received : std::min(one.first, record.received);
            one.last = std::max(one.last, record.received);
            ++one.records;
        }
        return true;
    };
    if (!m_text->visit(count))
        return fail(m_text->error());
    found.resize(m_text->items().size()); // some have marks only
    for (std::size_t i = 0; i < found.size(); ++i) {
        found[i].number = static_cast<ItemNumber>(i + 1);
        found[i].item = m_text->items()[i];
    }
    return true;
}

bool RecordReader::readEach(const std::vector<ItemNumber>& items, OpcUa_DateTime from, OpcUa_DateTime to,
                            std::size_t most, std::vector<std::vector<Record>>& found)
{
    found.assign(items.size(), {});
    if (!m_text) {
        for (std::size_t i = 0; i < items.size(); ++i)
            if (!read(items[i], from, to, most, found[i]))
                return false;
        return true;
    }
    std::map<ItemNumber, std::size_t> places;
    for (std::size_t i = 0; i < items.size(); ++i)
        places[items[i]] = i;
    const auto take = [&](const Portion& portion) {
        for (const Record& record : portion.records)
            if (const auto place = places.find(record.item); place != places.end())
                if (std::vector<Record>& records = found[place->second]; records.size() < most)
                    records.push_back(record);
        return true;
    };
    if (!visit(from, to, items, take))
        return false;
    for (std::vector<Record>& records : found)
        std::stable_sort(records.begin(), records.end(),
                         [](const Record& a, const Record& b) { return a.received < b.received; });
    return true;
}

bool RecordReader::read(ItemNumber item, OpcUa_DateTime from, OpcUa_DateTime to, std::size_t most,
                        std::vector<Record>& found)
{
    found.clear();
    if (m_text) {
        std::vector<std::vector<Record>> each;
        const bool isDone = readEach({item}, from, to, most, each);
        found.swap(each.front());
        return isDone;
    }
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("SELECT %1 FROM record WHERE item = ? AND received >= ? AND received <= ? "
                                 "ORDER BY received, id LIMIT ?")
                      .arg(recordColumns()));
    query.addBindValue(item);
    query.addBindValue(static_cast<qlonglong>(from));
    query.addBindValue(static_cast<qlonglong>(to));
    query.addBindValue(static_cast<qlonglong>(most));
    if (!run(query))
        return false;
    while (query.next())
        found.push_back(recordOf(query));
    return true;
}

bool RecordReader::marks(OpcUa_DateTime from, OpcUa_DateTime to, std::size_t most, std::vector<Mark>& found)
{
    found.clear();
    if (m_text) {
        std::deque<Mark> newest;
        const auto take = [&](const Portion& portion) {
            for (const Portion::Placed& placed : portion.marks) {
                newest.push_front(placed.mark);
                if (newest.size() > most)
                    newest.pop_back();
            }
            return true;
        };
        const bool isDone = visit(from, to, {}, take);
        found.assign(newest.begin(), newest.end());
        return isDone;
    }
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("SELECT %1 FROM mark WHERE time >= ? AND time <= ? ORDER BY id DESC LIMIT ?")
                      .arg(markColumns()));
    query.addBindValue(static_cast<qlonglong>(from));
    query.addBindValue(static_cast<qlonglong>(to));
    query.addBindValue(static_cast<qlonglong>(most));
    if (!run(query))
        return false;
    while (query.next())
        found.push_back(markOf(query));
    return true;
}

bool RecordReader::visit(OpcUa_DateTime from, OpcUa_DateTime to, const std::vector<ItemNumber>& items,
                         const std::function<bool(const Portion&)>& visitor)
{
    const std::set<ItemNumber> wanted(items.begin(), items.end());
    if (m_text)
        return m_text->visit([&](const Portion& all) { return visitor(partOf(all, from, to, wanted)); }) ||
               fail(m_text->error());
    MarksInOrder marks(m_database, from, to);
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("SELECT %1 FROM record WHERE received >= ? AND received <= ? ORDER BY id")
                      .arg(recordColumns()));
    query.addBindValue(static_cast<qlonglong>(from));
    query.addBindValue(static_cast<qlonglong>(to));
    if (!run(query))
        return false;
    Portion portion;
    while (query.next()) {
        marks.addBefore(portion, query.value(0).toLongLong(), wanted);
        if (wanted.empty() || wanted.contains(query.value(1).toUInt()))
            portion.records.push_back(recordOf(query));
        if (portion.records.size() >= visitedAtOnce) {
            if (!visitor(portion))
                return true;
            portion.clear();
        }
    }
    if (query.lastError().isValid())
        return fail(
            RecordReaderText::tr("%1 cannot be read: %2").arg(m_path, query.lastError().databaseText()));
    constexpr qint64 behindAll = std::numeric_limits<qint64>::max();
    marks.addBefore(portion, behindAll, wanted);
    static_cast<void>(visitor(portion)); // there is nothing more anyway
    return true;
}

bool RecordReader::check()
{
    if (m_text)
        return m_text->visit([](const Portion&) { return true; }) || fail(m_text->error());
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("PRAGMA integrity_check"));
    return run(query) &&
           ((query.next() && query.value(0).toString() == QLatin1String("ok")) ||
            fail(RecordReaderText::tr("%1 is damaged: %2").arg(m_path, query.value(0).toString())));
}

} // namespace recording
