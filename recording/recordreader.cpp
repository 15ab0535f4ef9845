#include <recording/recordreader.h>

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

#include <atomic>
#include <cstddef>
#include <functional>
#include <limits>
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

} // namespace

RecordReader::RecordReader() : m_connection(nextReaderName()) {}

RecordReader::~RecordReader()
{
    close();
}

void RecordReader::close()
{
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

// From a medium that cannot be written, where the log cannot be looked at, what is in the file itself.
bool RecordReader::open(const QString& path)
{
    close();
    m_path = path;
    const QFileInfo info(path);
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

bool RecordReader::read(ItemNumber item, OpcUa_DateTime from, OpcUa_DateTime to, std::size_t most,
                        std::vector<Record>& found)
{
    found.clear();
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
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("PRAGMA integrity_check"));
    return run(query) &&
           ((query.next() && query.value(0).toString() == QLatin1String("ok")) ||
            fail(RecordReaderText::tr("%1 is damaged: %2").arg(m_path, query.value(0).toString())));
}

} // namespace recording
