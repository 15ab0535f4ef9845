#include <recording/sqliterecord.h>

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
    if (!lock())
        return false;
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    if (!m_database.isValid())
        return fail(SqliteRecordText::tr("The driver of SQLite files is not installed (libqt5sql5-sqlite)."));
    m_database.setDatabaseName(m_path);
    m_database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000"));
    if (!m_database.open()) {
        const QString why = m_database.lastError().databaseText();
        close();
        return fail(why);
    }
    if (prepareFile() && knowFile())
        return true;
    const QString why = error();
    close();
    return fail(why);
}

// Dies with its process, so that a file is never locked by nobody.
bool SqliteRecord::lock()
{
    auto file = std::make_unique<QLockFile>(m_path + QStringLiteral(".lock"));
    file->setStaleLockTime(0);
    if (!file->tryLock(0)) {
        if (file->error() != QLockFile::LockFailedError)
            return fail(SqliteRecordText::tr("The folder of %1 cannot be written to.").arg(m_path));
        qint64 process = 0;
        QString computer, program;
        static_cast<void>(file->getLockInfo(&process, &computer, &program)); // else it is not named
        return fail(SqliteRecordText::tr("%1 is being recorded to already, by process %2 on %3.")
                        .arg(m_path, QString::number(process), computer));
    }
    m_lock = std::move(file);
    return true;
}

bool SqliteRecord::prepareFile()
{
    const bool isNew = number(QStringLiteral("SELECT count(*) FROM sqlite_master")).value_or(0) == 0;
    if (!isNew) {
        if (number(QStringLiteral("PRAGMA application_id")).value_or(0) != sqliteApplicationId)
            return fail(SqliteRecordText::tr("%1 is no recording, and is left alone.").arg(m_path));
        if (number(QStringLiteral("PRAGMA user_version")).value_or(0) > sqliteVersion)
            return fail(SqliteRecordText::tr("%1 was made by a newer version.").arg(m_path));
    }
    if (!run(QStringLiteral("PRAGMA journal_mode = WAL")) ||
        !run(QStringLiteral("PRAGMA synchronous = NORMAL")) ||
        !run(QStringLiteral("PRAGMA cache_size = -32768")))
        return false;
    if (isNew) {
        if (!begin())
            return false;
        m_lastId = 0;
        for (const QString& statement : schema())
            if (!run(statement))
                return false;
        if (!commit())
            return false;
    }
    return true;
}

bool SqliteRecord::knowFile()
{
    m_one = std::make_unique<QSqlQuery>(m_database);
    m_many = std::make_unique<QSqlQuery>(m_database);
    m_mark = std::make_unique<QSqlQuery>(m_database);
    if (!m_one->prepare(insertOf(1)) || !m_many->prepare(insertOf(rowsAtOnce)) ||
        !m_mark->prepare(QStringLiteral("INSERT INTO mark(after_record, time, kind, server, item, count, "
                                        "from_time, to_time, first, last, status, text) "
                                        "VALUES(?,?,?,?,?,?,?,?,?,?,?,?)")))
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
    m_numbers.clear();
    if (m_database.isValid()) {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connection);
    }
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

bool SqliteRecord::addItem(ItemNumber number, const RecordedItem& item)
{
    if (!begin())
        return false;
    QSqlQuery known(m_database);
    known.prepare(QStringLiteral("SELECT id FROM item WHERE server = ? AND node = ? AND namespace = ? AND "
                                 "attribute = ? AND index_range = ? LIMIT 1"));
    const auto text = [](const QString& one) { return one.isNull() ? QStringLiteral("") : one; };
    for (const QString& one : {item.server, item.nodeId, item.namespaceUri})
        known.addBindValue(text(one));
    known.addBindValue(item.attributeId);
    known.addBindValue(text(item.indexRange));
    if (!execute(known))
        return false;
    if (known.next()) {
        m_numbers[number] = known.value(0).toUInt();
        return true;
    }
    QSqlQuery add(m_database);
    add.prepare(
        QStringLiteral("INSERT INTO item(server, node, namespace, attribute, index_range, server_url, "
                       "name, path, data_type, unit, settings) VALUES(?,?,?,?,?,?,?,?,?,?,?)"));
    for (const QString& one : {item.server, item.nodeId, item.namespaceUri})
        add.addBindValue(text(one));
    add.addBindValue(item.attributeId);
    for (const QString& one :
         {item.indexRange, item.serverUrl, item.name, item.path, item.dataType, item.unit, item.settings})
        add.addBindValue(text(one));
    if (!execute(add))
        return false;
    m_numbers[number] = add.lastInsertId().toUInt();
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
