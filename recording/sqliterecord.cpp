#include <recording/sqliterecord.h>

#include <recording/recordlock.h>
#include <recording/recordtypes.h>
#include <recording/recordvalue.h>
#include <uabase/values/uadatavalue.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <utility>

namespace recording {

namespace {

struct SqliteRecordText
{
    Q_DECLARE_TR_FUNCTIONS(recording::SqliteRecord)
};

constexpr int rowsAtOnce = 40;
constexpr int columns = 9;
constexpr qint64 droppedAtOnce = 20'000;

// Times of the server as what they lie before the reception: small numbers take little room.
const QStringList& schema()
{
    static const QStringList list{
        QStringLiteral("CREATE TABLE item(id INTEGER PRIMARY KEY, server TEXT, server_url TEXT, node TEXT, "
                       "namespace TEXT, attribute INTEGER, index_range TEXT, name TEXT, path TEXT, "
                       "data_type TEXT, unit TEXT, settings TEXT)"),
        QStringLiteral("CREATE TABLE record(id INTEGER PRIMARY KEY, item INTEGER, received INTEGER, "
                       "source_age INTEGER, server_age INTEGER, type INTEGER, value, status INTEGER, "
                       "sequence INTEGER, picoseconds INTEGER)"),
        QStringLiteral("CREATE INDEX record_of_item ON record(item, received)"),
        QStringLiteral("CREATE TABLE mark(id INTEGER PRIMARY KEY, after_record INTEGER, time INTEGER, "
                       "kind TEXT, server TEXT, item INTEGER, count INTEGER, from_time INTEGER, to_time "
                       "INTEGER, first INTEGER, last INTEGER, status INTEGER, text TEXT)"),
        QStringLiteral(
            "CREATE VIEW sample AS SELECT r.id, i.server, i.name, i.node, i.namespace, r.value, r.type, "
            "r.status, r.sequence, "
            "datetime(r.received / 10000000 - 11644473600, 'unixepoch') || printf('.%07d', r.received % "
            "10000000) AS received_utc, "
            "datetime((r.received - r.source_age) / 10000000 - 11644473600, 'unixepoch') || "
            "printf('.%07d', (r.received - r.source_age) % 10000000) AS source_utc, "
            "datetime((r.received - r.server_age) / 10000000 - 11644473600, 'unixepoch') || "
            "printf('.%07d', (r.received - r.server_age) % 10000000) AS server_utc "
            "FROM record r JOIN item i ON i.id = r.item"),
        QStringLiteral("PRAGMA application_id = %1").arg(sqliteApplicationId),
        QStringLiteral("PRAGMA user_version = %1").arg(sqliteVersion)};
    return list;
}

QString insertOf(int rows)
{
    QStringList places;
    for (int i = 0; i < rows; ++i)
        places.append(QStringLiteral("(?,?,?,?,?,?,?,?,?)"));
    return QStringLiteral("INSERT INTO record(item, received, source_age, server_age, type, value, status, "
                          "sequence, picoseconds) VALUES") +
           places.join(QLatin1Char(','));
}

// A far date does not overflow.
QVariant ageOf(OpcUa_DateTime received, OpcUa_DateTime time)
{
    if (time <= 0)
        return QVariant();
    return static_cast<qlonglong>(static_cast<quint64>(received) - static_cast<quint64>(time));
}

void bindRecord(QSqlQuery& query, int first, ItemNumber item, const Record& record)
{
    const UaDataValue& value = record.value;
    StoredValue stored = storedValue(value.value());
    const unsigned int picoseconds =
        value.sourcePicoseconds() | static_cast<unsigned int>(value.serverPicoseconds()) << 16;
    query.bindValue(first, item);
    query.bindValue(first + 1, static_cast<qlonglong>(record.received));
    query.bindValue(first + 2, ageOf(record.received, value.sourceTimestamp()));
    query.bindValue(first + 3, ageOf(record.received, value.serverTimestamp()));
    query.bindValue(first + 4, stored.type);
    query.bindValue(first + 5, std::move(stored.value));
    query.bindValue(first + 6, static_cast<qlonglong>(value.statusCode().code()));
    query.bindValue(first + 7, static_cast<qlonglong>(record.sequenceNumber));
    query.bindValue(first + 8, picoseconds == 0 ? QVariant() : QVariant(static_cast<qlonglong>(picoseconds)));
}

QString keyOf(const RecordedItem& item)
{
    return QStringList{item.server, item.nodeId, item.namespaceUri, QString::number(item.attributeId),
                       item.indexRange}
        .join(QLatin1Char('\0'));
}

QString nextName()
{
    static std::atomic<int> last{0};
    return QStringLiteral("recording-%1").arg(++last);
}

} // namespace

SqliteRecord::SqliteRecord(const QString& path) : m_firstPath(path), m_path(path), m_connection(nextName()) {}

SqliteRecord::~SqliteRecord()
{
    SqliteRecord::close();
}

// ---- opening

bool SqliteRecord::open()
{
    QString isLocked;
    m_lock = lockRecording(m_path, isLocked);
    if (!m_lock)
        return fail(isLocked);
    if (makeFile() && openDatabase(m_path) && prepareFile() && knowFile())
        return true;
    const QString why = error();
    close();
    return fail(why);
}

bool SqliteRecord::openDatabase(const QString& path)
{
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    if (!m_database.isValid())
        return fail(SqliteRecordText::tr("The driver of SQLite files is not installed (libqt5sql5-sqlite)."));
    m_database.setDatabaseName(path);
    m_database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000"));
    return m_database.open() || fail(m_database.lastError().databaseText());
}

void SqliteRecord::closeDatabase()
{
    if (!m_database.isValid())
        return;
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connection);
}

// Beside its place, so that whoever finds a file there finds a whole one, whenever this process ends.
bool SqliteRecord::makeFile()
{
    if (QFileInfo(m_path).size() > 0)
        return true;
    const QString made = m_path + QStringLiteral(".new");
    for (const char* ending : {"", "-journal"})
        QFile::remove(made + QLatin1String(ending));
    bool isMade = openDatabase(made) && begin();
    for (const QString& statement : schema())
        isMade = isMade && run(statement);
    isMade = isMade && commit();
    const QString why = error();
    rollback();
    closeDatabase();
    // the log of a file that was taken away would be put into this one
    for (const char* ending : {"-wal", "-shm"})
        QFile::remove(m_path + QLatin1String(ending));
    if (isMade && ::rename(QFile::encodeName(made).constData(), QFile::encodeName(m_path).constData()) == 0)
        return true;
    QFile::remove(made);
    return fail(isMade ? SqliteRecordText::tr("The folder of %1 cannot be written to.").arg(m_path) : why);
}

bool SqliteRecord::prepareFile()
{
    if (number(QStringLiteral("PRAGMA application_id")).value_or(0) != sqliteApplicationId)
        return fail(SqliteRecordText::tr("%1 is no recording, and is left alone.").arg(m_path));
    if (number(QStringLiteral("PRAGMA user_version")).value_or(0) > sqliteVersion)
        return fail(SqliteRecordText::tr("%1 was made by a newer version.").arg(m_path));
    return run(QStringLiteral("PRAGMA journal_mode = WAL")) &&
           run(QStringLiteral("PRAGMA synchronous = NORMAL")) &&
           run(QStringLiteral("PRAGMA cache_size = -32768"));
}

bool SqliteRecord::knowFile()
{
    m_one = std::make_unique<QSqlQuery>(m_database);
    m_many = std::make_unique<QSqlQuery>(m_database);
    m_mark = std::make_unique<QSqlQuery>(m_database);
    m_item = std::make_unique<QSqlQuery>(m_database);
    m_itemChange = std::make_unique<QSqlQuery>(m_database);
    if (!m_one->prepare(insertOf(1)) || !m_many->prepare(insertOf(rowsAtOnce)) ||
        !m_mark->prepare(QStringLiteral("INSERT INTO mark(after_record, time, kind, server, item, count, "
                                        "from_time, to_time, first, last, status, text) "
                                        "VALUES(?,?,?,?,?,?,?,?,?,?,?,?)")) ||
        !m_item->prepare(QStringLiteral("INSERT INTO item(attribute, server, node, namespace, index_range, "
                                        "server_url, name, path, data_type, unit, settings) "
                                        "VALUES(?,?,?,?,?,?,?,?,?,?,?)")) ||
        // what is not known now may have been known once
        !m_itemChange->prepare(QStringLiteral(
            "UPDATE item SET server_url = ifnull(?, server_url), name = ifnull(?, name), path = ifnull(?, "
            "path), data_type = ifnull(?, data_type), unit = ifnull(?, unit), settings = ifnull(?, settings) "
            "WHERE id = ?")))
        return fail(SqliteRecordText::tr("%1 is damaged: %2").arg(m_path, m_one->lastError().databaseText()));
    const auto last = number(QStringLiteral("SELECT ifnull(max(id), 0) FROM record"));
    if (!last)
        return fail(SqliteRecordText::tr("%1 is damaged.").arg(m_path));
    m_lastId = m_committedId = *last;
    m_lastTime = std::max<qint64>(
        number(QStringLiteral("SELECT received FROM record ORDER BY id DESC LIMIT 1")).value_or(0),
        number(QStringLiteral("SELECT time FROM mark ORDER BY id DESC LIMIT 1")).value_or(0));
    struct stat file
    {
    };
    if (::stat(QFile::encodeName(m_path).constData(), &file) == 0) {
        m_inode = file.st_ino;
        m_knownSize = file.st_size;
    }
    return true;
}

void SqliteRecord::close()
{
    rollback();
    m_one.reset();
    m_many.reset();
    m_mark.reset();
    m_item.reset();
    m_itemChange.reset();
    m_numbers.clear();
    m_areItemsKnown = false;
    closeDatabase();
    m_lock.reset();
    m_inode = 0;
    m_isBroken = false;
}

// ---- writing

bool SqliteRecord::run(const QString& statement)
{
    QSqlQuery query(m_database);
    return query.exec(statement) || failBy(query);
}

bool SqliteRecord::execute(QSqlQuery& query)
{
    return query.exec() || failBy(query);
}

bool SqliteRecord::failBy(const QSqlQuery& query)
{
    const QString code = query.lastError().nativeErrorCode();
    m_isBroken = m_isBroken || code == QLatin1String("11") || code == QLatin1String("26");
    return fail(query.lastError().databaseText());
}

std::optional<qint64> SqliteRecord::number(const QString& statement)
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(statement) || !query.next())
        return std::nullopt;
    return query.value(0).toLongLong();
}

bool SqliteRecord::begin()
{
    if (m_isOpen)
        return true;
    m_isOpen = run(QStringLiteral("BEGIN IMMEDIATE"));
    return m_isOpen;
}

// Looked up here: a table has no index for this, and a hundred thousand items would each go through all.
bool SqliteRecord::knowItems()
{
    if (m_areItemsKnown)
        return true;
    m_items.clear();
    QSqlQuery known(m_database);
    known.setForwardOnly(true);
    if (!known.exec(QStringLiteral("SELECT server, node, namespace, attribute, index_range, id FROM item")))
        return failBy(known);
    while (known.next()) {
        RecordedItem item;
        item.server = known.value(0).toString();
        item.nodeId = known.value(1).toString();
        item.namespaceUri = known.value(2).toString();
        item.attributeId = known.value(3).toUInt();
        item.indexRange = known.value(4).toString();
        m_items.insert(keyOf(item), known.value(5).toUInt());
    }
    m_areItemsKnown = true;
    return true;
}

bool SqliteRecord::addItem(ItemNumber number, const RecordedItem& item)
{
    if (!begin() || !knowItems())
        return false;
    const QString key = keyOf(item);
    if (const auto known = m_items.constFind(key); known != m_items.constEnd()) {
        m_numbers[number] = *known;
        int place = 0;
        for (const QString& one :
             {item.serverUrl, item.name, item.path, item.dataType, item.unit, item.settings})
            m_itemChange->bindValue(place++, one.isEmpty() ? QVariant() : QVariant(one));
        m_itemChange->bindValue(place, *known);
        return execute(*m_itemChange);
    }
    m_item->bindValue(0, item.attributeId);
    int place = 1;
    for (const QString& one : {item.server, item.nodeId, item.namespaceUri, item.indexRange, item.serverUrl,
                               item.name, item.path, item.dataType, item.unit, item.settings})
        m_item->bindValue(place++, one.isNull() ? QStringLiteral("") : one);
    if (!execute(*m_item))
        return false;
    m_numbers[number] = m_items[key] = m_item->lastInsertId().toUInt();
    return true;
}

bool SqliteRecord::write(const Portion& portion)
{
    if (!begin())
        return false;
    std::size_t done = 0;
    for (const Portion::Placed& placed : portion.marks) {
        const std::size_t place = std::min(placed.place, portion.records.size());
        if (!writeRecords(portion, done, place) || !writeMark(placed.mark))
            return false;
        done = std::max(done, place);
    }
    return writeRecords(portion, done, portion.records.size());
}

bool SqliteRecord::writeRecords(const Portion& portion, std::size_t first, std::size_t last)
{
    const auto bind = [&](QSqlQuery& query, int row, const Record& record) {
        const auto found = m_numbers.find(record.item);
        bindRecord(query, row * columns, found == m_numbers.end() ? 0 : found->second, record);
    };
    while (first < last) {
        const bool areMany = last - first >= rowsAtOnce;
        QSqlQuery& query = areMany ? *m_many : *m_one;
        const int rows = areMany ? rowsAtOnce : 1;
        for (int row = 0; row < rows; ++row)
            bind(query, row, portion.records[first + static_cast<std::size_t>(row)]);
        if (!execute(query))
            return false;
        first += static_cast<std::size_t>(rows);
        m_lastId += rows;
    }
    return true;
}

bool SqliteRecord::writeMark(const Mark& mark)
{
    const auto orNull = [](qint64 value) { return value == 0 ? QVariant() : QVariant(value); };
    const auto item = m_numbers.find(mark.item);
    const QVariant cells[] = {m_lastId,
                              static_cast<qlonglong>(mark.time),
                              markWord(mark.kind),
                              mark.server,
                              item == m_numbers.end() ? QVariant() : QVariant(item->second),
                              orNull(static_cast<qint64>(mark.count)),
                              orNull(mark.from),
                              orNull(mark.to),
                              orNull(mark.first),
                              orNull(mark.last),
                              orNull(mark.status),
                              mark.text.isEmpty() ? QVariant() : QVariant(mark.text)};
    int place = 0;
    for (const QVariant& cell : cells)
        m_mark->bindValue(place++, cell);
    return execute(*m_mark);
}

bool SqliteRecord::commit()
{
    if (!m_isOpen)
        return true;
    if (!run(QStringLiteral("COMMIT")))
        return false;
    m_isOpen = false;
    m_committedId = m_lastId;
    return true;
}

void SqliteRecord::rollback()
{
    if (!std::exchange(m_isOpen, false))
        return;
    static_cast<void>(run(QStringLiteral("ROLLBACK"))); // a fault has rolled back by itself
    m_lastId = m_committedId;
    m_numbers.clear();
    m_areItemsKnown = false;
}

// ---- the file

// It only grows while it is written, since nothing of it is given back.
bool SqliteRecord::isIntact()
{
    struct stat file
    {
    };
    if (m_isBroken)
        return fail(SqliteRecordText::tr("%1 was damaged while it was recorded to.").arg(m_path));
    if (::stat(QFile::encodeName(m_path).constData(), &file) != 0)
        return fail(SqliteRecordText::tr("%1 was removed while it was recorded to.").arg(m_path));
    if (file.st_ino != m_inode)
        return fail(SqliteRecordText::tr("%1 was replaced while it was recorded to.").arg(m_path));
    if (file.st_size < m_knownSize)
        return fail(SqliteRecordText::tr("%1 was cut while it was recorded to.").arg(m_path));
    m_knownSize = file.st_size;
    return true;
}

void SqliteRecord::leaveFile()
{
    const QFileInfo info(m_firstPath);
    for (int count = 2;; ++count) {
        m_path = QStringLiteral("%1/%2-%3.%4")
                     .arg(info.path(), info.completeBaseName(), QString::number(count),
                          info.suffix().isEmpty() ? QStringLiteral("sqlite") : info.suffix());
        if (!QFileInfo::exists(m_path) && !QFileInfo::exists(m_path + QStringLiteral("-wal")))
            return;
    }
}

qint64 SqliteRecord::size()
{
    return QFileInfo(m_path).size() + QFileInfo(m_path + QStringLiteral("-wal")).size();
}

// ---- the past

// Room that is freed is used again, so the file stays as large as it once was.
bool SqliteRecord::keepWithin(const Bounds& bounds, OpcUa_DateTime now, Dropped& dropped)
{
    if (bounds.bytes <= 0 && bounds.seconds <= 0)
        return true;
    const auto first = number(QStringLiteral("SELECT min(id) FROM record")).value_or(0);
    if (first == 0 || m_lastId - first < droppedAtOnce)
        return true; // the newest stay
    const qint64 last = first + droppedAtOnce - 1;
    bool isDue = false;
    if (bounds.bytes > 0) {
        const qint64 pages = number(QStringLiteral("PRAGMA page_count")).value_or(0) -
                             number(QStringLiteral("PRAGMA freelist_count")).value_or(0);
        isDue = pages * number(QStringLiteral("PRAGMA page_size")).value_or(0) > bounds.bytes;
    }
    if (!isDue && bounds.seconds > 0) {
        const auto time = number(
            QStringLiteral("SELECT received FROM record WHERE id >= %1 ORDER BY id LIMIT 1").arg(last));
        isDue = time && *time < now - bounds.seconds * ticksOfSecond;
    }
    return !isDue || dropPortion(last, dropped);
}

bool SqliteRecord::dropPortion(qint64 lastId, Dropped& dropped)
{
    const auto time = [this](const QString& order) {
        return number(QStringLiteral("SELECT received FROM record WHERE id %1 LIMIT 1").arg(order))
            .value_or(0);
    };
    dropped.from = time(QStringLiteral("> 0 ORDER BY id"));
    dropped.to = time(QStringLiteral("<= %1 ORDER BY id DESC").arg(lastId));
    if (!begin())
        return false;
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("DELETE FROM record WHERE id <= %1").arg(lastId)))
        return failBy(query);
    dropped.records = static_cast<OpcUa_UInt64>(std::max(query.numRowsAffected(), 0));
    return run(QStringLiteral("DELETE FROM mark WHERE after_record < %1").arg(lastId)) && commit();
}

} // namespace recording
